// "DblBuffer": a vector of numbers (IDblVector).
#pragma once

#include <vector>

#include "runtime/object.h"

class CDblBuffer : public CObjectImpl<CDblBuffer, IDblVector> {
 public:
  static constexpr wchar_t kObjectName[] = L"DblBuffer";
  static constexpr InterfaceEntry<CDblBuffer> kInterfaces[] = {
      {&IID_IObjectInfo, InterfaceOf<CDblBuffer, IObjectInfo>},
      {&IID_IDblVector, InterfaceOf<CDblBuffer, IDblVector>},
  };

  HRESULT get_Count(int32_t* count) override;
  // Inserts at `position` (0 to count); -1 appends.
  HRESULT Append(double value, int32_t position) override;
  HRESULT get_Number(int32_t index, double* value) override;
  // A capacity hint; hints above kMaxReserve numbers are cut to it.
  HRESULT Reserve(int32_t count) override;

  static constexpr int32_t kMaxReserve = 1 << 20;

 private:
  std::vector<double> m_Numbers;
};

// Fuzz target: IVCreateConvert, _IS2Integer in bases 2 to 36 and _IS2Double on arbitrary text.
#include "fuzz_support.h"
#include "strings/conversions.h"

using namespace fuzz_support;

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  Initialize();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size == 0) return 0;
  const int base = 2 + data[0] % 35;
  std::wstring text = WideOf(data + 1, size - 1);
  CREFString view(text.c_str(), static_cast<int32_t>(text.size()));
  _IS2Integer(view, base);
  _IS2Double(view);
  SmartPtr<IVariant> value = SmartPtr<IVariant>::Adopt(IVCreateConvert(view));
  if (value) {
    SmartPtr<IString> shown = SmartPtr<IString>::Adopt(ISCreate(value.get(), static_cast<int16_t>(data[0] % 20 - 3)));
  }
  return 0;
}

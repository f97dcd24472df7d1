// "StringCollection": the lines of a text (IStringCollection), the text being
// given through its ICreatableString setter (SetText) or appended.
//
// Lines end at LF, CR LF or CR; "\r\r" ends two lines. The line ends are not
// part of the lines. A line end at the very end of the text starts no further
// line, so "a\n" is one line and "a\n\n" two ("a" and ""); an empty text has
// no lines. GetBuffer gives the whole text as it was set.
#pragma once

#include <string>
#include <vector>

#include "runtime/object.h"
#include "runtime/reserved_slots.h"

class CStringCollection : public CObjectImpl<CStringCollection, StringCollectionSlots, ICreatableString> {
 public:
  static constexpr wchar_t kObjectName[] = L"StringCollection";
  static constexpr InterfaceEntry<CStringCollection> kInterfaces[] = {
      {&IID_IObjectInfo, InterfaceOf<CStringCollection, IObjectInfo>},
      {&IID_IStringCollection, InterfaceOf<CStringCollection, IStringCollection>},
      {&IID_IString, InterfaceOf<CStringCollection, ICreatableString>},
      {&IID_ICreatableString, InterfaceOf<CStringCollection, ICreatableString>},
  };

  // IStringCollection
  HRESULT get_Count(int32_t* count) override;
  // A new string holding the line (answers IString).
  HRESULT get_Item(int32_t index, IUnknown** line) override;
  HRESULT Reset(int32_t reserved) override;
  // ICreatableString
  HRESULT GetBuffer(const wchar_t** text, int32_t* length) override;
  HRESULT SetText(tagREFString text) override;
  HRESULT Append(tagREFString text) override;

 private:
  struct Line {
    size_t start;
    size_t length;
  };

  // Splits the text from `from` (the start of a line) to its end into lines.
  void SplitFrom(size_t from);

  std::wstring m_Text;
  std::vector<Line> m_Lines;
};

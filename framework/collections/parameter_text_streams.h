// "CSVStream" and "INIStream": a parameter set written to and read from CSV and INI text files.
#pragma once

#include <string_view>

#include "parameter_text_stream.h"

// Writing asks the set for its CSV line (Params_SaveCSV with the caller's
// flags; the set writes through WriteText). Reading splits each line at
// every "," and each field at its first "=": a field with a name updates or
// adds that parameter; a field without one sets the value of the parameter at
// the field's position in the file, or adds "Item<position>" (1-based) beyond
// the set's end. Values come back as text.
class CCSVStream : public CParameterTextStream<CCSVStream, ICSVStream> {
 public:
  static constexpr wchar_t kObjectName[] = L"CSVStream";
  static constexpr InterfaceEntry<CCSVStream> kInterfaces[] = {
      {&IID_IObjectInfo, InterfaceOf<CCSVStream, IObjectInfo>},
      {&IID_IDataStream, InterfaceOf<CCSVStream, ICSVStream>},
      {&IID_ICSVStream, InterfaceOf<CCSVStream, ICSVStream>},
  };

  HRESULT WriteSet(IParameters* set, int32_t flags);
  HRESULT ReadSet(std::wstring_view text, IParameters* set);
};

// Writing gives one name=value line per parameter in set order ("Item<n>" for
// an unnamed one; values that are objects are left out; flags are not used).
// Reading takes the name=value lines of every section (IniDocument rules) in
// file order and updates or adds each parameter. Values come back as text.
class CINIStream : public CParameterTextStream<CINIStream, IINIStream> {
 public:
  static constexpr wchar_t kObjectName[] = L"INIStream";
  static constexpr InterfaceEntry<CINIStream> kInterfaces[] = {
      {&IID_IObjectInfo, InterfaceOf<CINIStream, IObjectInfo>},
      {&IID_IDataStream, InterfaceOf<CINIStream, IINIStream>},
      {&IID_IINIStream, InterfaceOf<CINIStream, IINIStream>},
  };

  HRESULT WriteSet(IParameters* set, int32_t flags);
  HRESULT ReadSet(std::wstring_view text, IParameters* set);
};

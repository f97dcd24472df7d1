// Fuzz target: one file of arbitrary bytes read as CSV and INI parameters
// ("CSVStream", "INIStream"), as a settings file ("INIFileEx") and by the
// settings store ("Registry").
#include "fuzz_support.h"

using namespace fuzz_support;

namespace {

template <class Stream>
void ReadAsParameters(const wchar_t* className, IString* name) {
  SmartPtr<Stream> stream = CreateObjectAs<Stream>(className);
  SmartPtr<IParametersCreatable> set = CreateObjectAs<IParametersCreatable>(L"ParametersCreatable");
  stream->put_Parameters(set.get());
  stream->Load(name, kLoadReplace);
}

// Every value of every section the module and the framework ask for.
void ReadSettings(IString* name) {
  SmartPtr<IINIFileEx> file = CreateObjectAs<IINIFileEx>(L"INIFileEx");
  file->Open(name);
  SmartPtr<IRegistryEx> store = CreateObjectAs<IRegistryEx>(L"Registry");
  store->Reload();
  for (const wchar_t* section : {L"Workspace", L"UI", L"Mappings"}) {
    int32_t count = 0;
    file->get_SectionCount(Ref(section), &count);
    for (int32_t i = 0; i < count && i < 64; ++i) {
      SmartPtr<IString> entry, value;
      file->get_SectionName(Ref(section), i, entry.Receive());
      file->get_SectionValue(Ref(section), i, value.Receive());
    }
    store->get_ListCount(Ref(section), &count);
    for (int32_t i = 0; i < count && i < 64; ++i) {
      SmartPtr<IString> entry;
      SmartPtr<IVariant> value;
      store->get_ListName(Ref(section), i, entry.Receive());
      store->get_ListValue(Ref(section), i, value.Receive());
    }
  }
  SmartPtr<IString> path;
  store->GetString(Ref(L"Workspace"), Ref(L"InstallPath"), path.Receive());
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  Initialize();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::string path = WriteScratch(data, size, ".ini");
  setenv("PARAMS_SETTINGS", path.c_str(), 1);
  SmartPtr<ICreatableString> name = MakeString(WideOf(path));
  ReadAsParameters<ICSVStream>(L"CSVStream", name.get());
  ReadAsParameters<IINIStream>(L"INIStream", name.get());
  ReadSettings(name.get());
  return 0;
}

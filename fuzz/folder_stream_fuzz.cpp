// Fuzz target: a folder-stream file of arbitrary bytes, loaded by "FolderStream"
// and read into a parameter set.
#include "fuzz_support.h"

using namespace fuzz_support;

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  Initialize();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  SmartPtr<ICreatableString> name = MakeString(WideOf(WriteScratch(data, size, ".tab")));
  SmartPtr<IFolderStream> folder = CreateObjectAs<IFolderStream>(L"FolderStream");
  if (folder->LoadFromFile(name.get()) < 0) return 0;
  SmartPtr<IParametersCreatable> set = CreateObjectAs<IParametersCreatable>(L"ParametersCreatable");
  set->Params_LoadFolderStream(folder.get(), kLoadReplace);
  SmartPtr<IFolderStream> out = CreateObjectAs<IFolderStream>(L"FolderStream");
  set->Params_SaveFolderStream(out.get(), 0);
  return 0;
}

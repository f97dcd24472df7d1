// Fuzz target: "ParametersCreator" Create with arbitrary text and separators,
// then a Find over the result with an arbitrary condition.
#include <fuzzer/FuzzedDataProvider.h>

#include "fuzz_support.h"

using namespace fuzz_support;

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  Initialize();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  FuzzedDataProvider input(data, size);
  SmartPtr<ICreatableString> separators = MakeString(WideOf(input.ConsumeRandomLengthString(4)));
  SmartPtr<ICreatableString> condition = MakeString(WideOf(input.ConsumeRandomLengthString(32)));
  SmartPtr<ICreatableString> text = MakeString(WideOf(input.ConsumeRemainingBytesAsString()));
  SmartPtr<IParametersCreator> creator = CreateObjectAs<IParametersCreator>(L"ParametersCreator");
  SmartPtr<IParametersCreatable> target = CreateObjectAs<IParametersCreatable>(L"ParametersCreatable");
  creator->Create(text.get(), separators.get(), target.get());
  SmartPtr<IPMSearch> search = QueryAs<IPMSearch>(target.get());
  SmartPtr<IUnknown> found;
  if (search) search->Find(condition.get(), 0, found.Receive());
  return 0;
}

// Fuzz target: "TextParser" ParseTags and Translate with arbitrary tags, values and templates.
#include <fuzzer/FuzzedDataProvider.h>

#include "fuzz_support.h"

using namespace fuzz_support;

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  Initialize();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  FuzzedDataProvider input(data, size);
  SmartPtr<ICreatableString> opening = MakeString(WideOf(input.ConsumeRandomLengthString(8)));
  SmartPtr<ICreatableString> closing = MakeString(WideOf(input.ConsumeRandomLengthString(8)));
  const int32_t dropUnknown = input.ConsumeBool() ? 1 : 0;
  SmartPtr<IParametersCreatable> values = CreateObjectAs<IParametersCreatable>(L"ParametersCreatable");
  for (int i = 0; i < 3; ++i) {
    SmartPtr<IVariant> value = SmartPtr<IVariant>::Adopt(CREFString::CreateVariant());
    value->SetString(MakeString(WideOf(input.ConsumeRandomLengthString(16))).get());
    values->Add(MakeString(WideOf(input.ConsumeRandomLengthString(16))).get(), value.get(), nullptr, 0);
  }
  SmartPtr<ICreatableString> text = MakeString(WideOf(input.ConsumeRemainingBytesAsString()));

  SmartPtr<ITextParser> parser = CreateObjectAs<ITextParser>(L"TextParser");
  parser->put_Tags(opening.get(), closing.get());
  SmartPtr<IString> result;
  parser->ParseTags(text.get(), result.Receive(), values.get(), dropUnknown);
  SmartPtr<IString> translated;
  parser->Translate(text.get(), translated.Receive(), values.get());
  return 0;
}

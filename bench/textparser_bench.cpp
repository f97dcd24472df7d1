// Filling a template: ParseTags on a 10 MB template with a tag every 80
// characters, against memcpy of the same bytes as the reference.
#include <cstring>
#include <vector>

#include "bench_support.h"

namespace {

using bench_support::MakeName;

constexpr size_t kTemplateBytes = 10 * 1024 * 1024;
constexpr size_t kBlockLength = 80;  // characters per tag
constexpr int kNames = 16;

// Values: half numbers (formatted with automatic decimals), half texts.
SmartPtr<IParametersCreatable> Values() {
  SmartPtr<IParametersCreatable> set = CreateObjectAs<IParametersCreatable>(L"ParametersCreatable");
  for (int i = 0; i < kNames; ++i) {
    SmartPtr<IVariant> value = SmartPtr<IVariant>::Adopt(CREFString::CreateVariant());
    if (i % 2)
      value->SetDouble(i + 0.25);
    else
      value->SetString(MakeName(L"text value " + std::to_wstring(i)).get());
    set->Add(MakeName(L"Name" + std::to_wstring(i)).get(), value.get(), nullptr, 0);
  }
  return set;
}

// Blocks of 80 characters, each holding one tag; `lineEveryBlock` ends every block with a line end.
SmartPtr<ICreatableString> Template(bool lineEveryBlock) {
  std::wstring text;
  text.reserve(kTemplateBytes / sizeof(wchar_t));
  for (int i = 0; text.size() + kBlockLength <= kTemplateBytes / sizeof(wchar_t); ++i) {
    std::wstring block = L"Value " + std::to_wstring(i % 1000) + L" is __Name" + std::to_wstring(i % kNames) + L"__ ";
    block.resize(kBlockLength - 1, L'.');
    block += lineEveryBlock ? L'\n' : L' ';
    text += block;
  }
  return MakeName(text);
}

void TimeParseTags(benchmark::State& state, bool lineEveryBlock) {
  SmartPtr<IParametersCreatable> values = Values();
  SmartPtr<ICreatableString> text = Template(lineEveryBlock);
  SmartPtr<ITextParser> parser = CreateObjectAs<ITextParser>(L"TextParser");
  const wchar_t* buffer = nullptr;
  int32_t length = 0;
  text->GetBuffer(&buffer, &length);
  for (auto _ : state) {
    SmartPtr<IString> out;
    parser->ParseTags(text.get(), out.Receive(), values.get(), 0);
    benchmark::DoNotOptimize(out.get());
  }
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(length) * static_cast<int64_t>(sizeof(wchar_t)));
}

void BM_ParseTagsLines(benchmark::State& state) { TimeParseTags(state, true); }
BENCHMARK(BM_ParseTagsLines)->Unit(benchmark::kMillisecond);

void BM_ParseTagsOneLine(benchmark::State& state) { TimeParseTags(state, false); }
BENCHMARK(BM_ParseTagsOneLine)->Unit(benchmark::kMillisecond);

void BM_MemcpyReference(benchmark::State& state) {
  std::vector<char> from(kTemplateBytes, 'x'), to(kTemplateBytes);
  for (auto _ : state) {
    std::memcpy(to.data(), from.data(), from.size());
    benchmark::DoNotOptimize(to.data());
    benchmark::ClobberMemory();
  }
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(kTemplateBytes));
}
BENCHMARK(BM_MemcpyReference)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();

// paramtool explain: prints how a formula is read, piece by piece, with its pitfalls.
#include "explain_command.h"

#include <cstdio>

#include "host.h"
#include "runtime/module_loader.h"
#include "strings/conversions.h"
#include "strings/ref_string.h"
#include "wide_text.h"

int RunExplain(const std::wstring& formula, IParameters* set, const OriginOfName& originOf, bool json) {
  // The explanation's scanner lives in the tool and makes its framework objects through the host's collection.
  const FormulaExplanation explanation = ExplainFormula(formula, set, originOf);
  const std::string out = json ? ExplanationJson(explanation) : ExplanationText(explanation);
  std::fwrite(out.data(), 1, out.size(), stdout);
  std::fflush(stdout);
  if (explanation.moduleEvaluated && !explanation.agrees) {
    std::fprintf(stderr, "paramtool: explain: the explanation gives %.17g but the module gives %.17g\n",
                 explanation.value, explanation.moduleValue);
    return 2;
  }
  return 0;
}

int RunExplainCommand(const Host& host, const std::string& formula, const std::vector<std::string>& bindings,
                      bool json) {
  SmartPtr<IParametersCreatable> set = host.Create<IParametersCreatable>(L"ParametersCreatable");
  if (!set) {
    std::fprintf(stderr, "paramtool: explain: the class \"ParametersCreatable\" could not be created\n");
    return 2;
  }
  for (const std::string& binding : bindings) {
    const size_t equals = binding.find('=');
    if (equals == std::string::npos || equals == 0) {
      std::fprintf(stderr, "paramtool: explain: \"%s\" is no NAME=VALUE binding\n", binding.c_str());
      return 2;
    }
    const std::wstring name = WideOf(std::string_view(binding).substr(0, equals));
    const std::wstring value = WideOf(std::string_view(binding).substr(equals + 1));
    CREFString valueView(value.c_str(), static_cast<int32_t>(value.size()));
    const tagREFString nameView{static_cast<int32_t>(name.size()), name.c_str()};
    SmartPtr<IString> key = SmartPtr<IString>::Adopt(ISCreate(nameView));
    SmartPtr<IVariant> variant = SmartPtr<IVariant>::Adopt(IVCreateConvert(valueView));
    if (!key || !variant || FAILED(set->Add(key.get(), variant.get(), nullptr, 0))) {
      std::fprintf(stderr, "paramtool: explain: cannot bind \"%s\"\n", binding.c_str());
      return 2;
    }
  }
  return RunExplain(WideOf(formula), set.get(),
                    [](const std::wstring&) { return std::string("a NAME=VALUE binding"); }, json);
}

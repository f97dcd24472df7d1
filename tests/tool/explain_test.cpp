// The formula explanation: its value agrees with an "Expression" object, its steps and warnings, its text and JSON.
#include <nlohmann/json.hpp>

#include <algorithm>
#include <cmath>
#include <optional>

#include "expression/expression_test_support.h"
#include "formula_explanation.h"

namespace {

using namespace expression_test;

SmartPtr<IParametersCreatable> MachineSet() {
  return SetOf({{L"Speed", MakeDouble(12)}, {L"Ratio", MakeDouble(0.5)}, {L"Name", MakeText(L"hello")}});
}

std::string OriginOf(const std::wstring& name) { return name == L"Speed" ? "machine.xml" : ""; }

bool Warns(const FormulaExplanation& e, PitfallKind kind) {
  return std::any_of(e.warnings.begin(), e.warnings.end(), [&](const ExplanationWarning& w) { return w.kind == kind; });
}

std::wstring Nested(int depth) { return std::wstring(depth, L'(') + L"1" + std::wstring(depth, L')'); }

// Every operand kind and every pitfall: the explanation's value (worked out by
// hand) is the module's, and exactly the expected pitfall is warned about.
TEST(FormulaExplanation, AgreesWithTheModuleAndWarnsOfEachPitfall) {
  // No pitfall: the formula reads cleanly.
  struct PitfallCase { std::wstring formula; double expected; std::optional<PitfallKind> pitfall; };
  const PitfallCase cases[] = {
      {L"2+3*4", 20, PitfallKind::kNoPrecedence}, {L"2+(3*4)", 14, std::nullopt},
      {L"Max(1+5, 9)", 6, PitfallKind::kArgumentNotSingleOperand}, {L"Max((1+5), 9)", 9, std::nullopt},
      {L"Speed*2", 24, std::nullopt}, {L"Speed + Missing", 12, PitfallKind::kUnknownName},
      {L"Speed/0+1", 1000000001, PitfallKind::kDivisionByZero}, {L"7 % 0.5", 1000000000, PitfallKind::kDivisionByZero},
      {L"1.5e3", 1.5, PitfallKind::kExponentNotRead}, {Nested(101) + L"+1", 0, PitfallKind::kTooDeep},
      {L"#FF AND 15", 15, std::nullopt}, {L"-(1+2)", -3, std::nullopt},
      {L"Sqrt 16 + 1", 5, std::nullopt}, {L"StrLen(Name)", 5, std::nullopt},
      {L"Name*2", 0, PitfallKind::kTextValue}, {L"If(Speed, 0, 10, 1, 0)", 0, std::nullopt},
      {L"3 4", 3, PitfallKind::kTextNotRead}, {L"+2", 0, PitfallKind::kNotANumber},
      {L"(1+2", 3, PitfallKind::kUnclosedParenthesis}, {L"1 + 2 ; the sum", 3, std::nullopt},
      {L"Ratio*4 + EULER", 4.718281828459045, std::nullopt}, {L"Random(5, 5)", 5, std::nullopt},
  };
  SmartPtr<IParametersCreatable> set = MachineSet();
  for (const PitfallCase& c : cases) {
    SCOPED_TRACE(testing::PrintToString(c.formula));
    const FormulaExplanation e = ExplainFormula(c.formula, set.get(), OriginOf);
    EXPECT_NEAR(e.value, c.expected, 1e-12);
    ASSERT_TRUE(e.moduleEvaluated);
    EXPECT_EQ(e.moduleValue, e.value);
    EXPECT_TRUE(e.agrees);
    if (c.pitfall) {
      EXPECT_TRUE(Warns(e, *c.pitfall)) << ExplanationText(e);
    } else {
      EXPECT_TRUE(e.warnings.empty()) << ExplanationText(e);
    }
  }
}

// The text underlines each piece beneath the formula, proposes the fix with
// its value, and shouts when the cross-check fails.
TEST(FormulaExplanation, TextShowsPiecesFixesAndMismatches) {
  const std::string text = ExplanationText(ExplainFormula(L"2+3*4", nullptr, OriginOf));
  EXPECT_NE(text.find("Value     20\n"), std::string::npos) << text;
  EXPECT_NE(text.find("  2+3*4   piece"), std::string::npos) << text;
  EXPECT_NE(text.find("\n     ^~   * 4 "), std::string::npos) << text;
  EXPECT_NE(text.find("write 2+(3*4): the formula then gives 14."), std::string::npos) << text;
  EXPECT_EQ(text.find("MISMATCH"), std::string::npos);

  FormulaExplanation wrong = ExplainFormula(L"1+1", nullptr, OriginOf);
  wrong.moduleValue = 3;
  wrong.agrees = false;
  EXPECT_NE(ExplanationText(wrong).find("!!! MISMATCH: the reading explained below gives 2, but the module's"),
            std::string::npos);
}

// The steps in reading order as the JSON carries them (each key given is
// compared; null: absent). In "Max(1+5, 9) * 2" the call ends after its first
// argument, the chain adds 5, drops ", 9" and stops at the ")".
TEST(FormulaExplanation, JsonCarriesTheStepsInReadingOrder) {
  struct Case { std::wstring formula; std::vector<const char*> steps; } cases[] = {
      {L"Max(1+5, 9) * 2",
       {R"({"kind": "function", "depth": 0, "parent": -1, "begin": 0, "end": 5, "word": "Max", "arguments": 1,
            "value": 1, "running": 1})",
        R"({"kind": "number", "depth": 1, "parent": 0, "begin": 4, "end": 5, "value": 1, "running": null})",
        R"({"kind": "number", "depth": 0, "text": "+5", "operator": "+", "value": 5, "running": 6})",
        R"({"kind": "dropped", "begin": 7, "end": 8, "value": null})", R"({"kind": "dropped", "text": "9"})",
        R"({"kind": "ignored", "text": ") * 2", "running": null})"}},
      {L"Speed + Other",
       {R"({"kind": "name", "word": "Speed", "origin": "machine.xml"})",
        R"({"kind": "unknown-name", "word": "Other", "operator": "+", "origin": null})"}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::PrintToString(c.formula));
    const nlohmann::json json =
        nlohmann::json::parse(ExplanationJson(ExplainFormula(c.formula, MachineSet().get(), OriginOf)));
    ASSERT_EQ(json["steps"].size(), c.steps.size()) << json.dump(1);
    for (size_t i = 0; i < c.steps.size(); ++i) {
      const nlohmann::json expectedStep = nlohmann::json::parse(c.steps[i]), &step = json["steps"][i];
      for (const auto& [key, expected] : expectedStep.items()) {
        if (expected.is_null()) {
          EXPECT_FALSE(step.contains(key)) << i << " " << key;
        } else {
          EXPECT_EQ(step.value(key, nlohmann::json()), expected) << i << " " << key;
        }
      }
    }
  }
  const nlohmann::json json =
      nlohmann::json::parse(ExplanationJson(ExplainFormula(L"Max(1+5, 9) * 2", nullptr, OriginOf)));
  EXPECT_EQ(json["value"], 6.0);
  EXPECT_EQ(json["agrees"], true);
  ASSERT_EQ(json["skipped"].size(), 3u);
  EXPECT_EQ(json["skipped"][2]["text"], ") * 2");
  ASSERT_EQ(json["warnings"].size(), 3u);
  EXPECT_EQ(json["warnings"][0]["kind"], "argument-not-single-operand");
  EXPECT_TRUE(nlohmann::json::parse(ExplanationJson(ExplainFormula(L"Sqrt(-1)", nullptr, OriginOf)))["value"].is_null())
      << "NaN becomes null";
}

}  // namespace

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
  struct PitfallCase {
    std::wstring formula;
    double expected;
    std::optional<PitfallKind> pitfall;  // none: the formula reads cleanly
  };
  const PitfallCase cases[] = {
      {L"2+3*4", 20, PitfallKind::kNoPrecedence},
      {L"2+(3*4)", 14, std::nullopt},
      {L"Max(1+5, 9)", 6, PitfallKind::kArgumentNotSingleOperand},
      {L"Max((1+5), 9)", 9, std::nullopt},
      {L"Speed*2", 24, std::nullopt},
      {L"Speed + Missing", 12, PitfallKind::kUnknownName},
      {L"Speed/0+1", 1000000001, PitfallKind::kDivisionByZero},
      {L"7 % 0.5", 1000000000, PitfallKind::kDivisionByZero},
      {L"1.5e3", 1.5, PitfallKind::kExponentNotRead},
      {Nested(101) + L"+1", 0, PitfallKind::kTooDeep},
      {L"#FF AND 15", 15, std::nullopt},
      {L"-(1+2)", -3, std::nullopt},
      {L"Sqrt 16 + 1", 5, std::nullopt},
      {L"StrLen(Name)", 5, std::nullopt},
      {L"Name*2", 0, PitfallKind::kTextValue},
      {L"If(Speed, 0, 10, 1, 0)", 0, std::nullopt},
      {L"3 4", 3, PitfallKind::kTextNotRead},
      {L"+2", 0, PitfallKind::kNotANumber},
      {L"(1+2", 3, PitfallKind::kUnclosedParenthesis},
      {L"1 + 2 ; the sum", 3, std::nullopt},
      {L"Ratio*4 + EULER", 4.718281828459045, std::nullopt},
      {L"Random(5, 5)", 5, std::nullopt},
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

// The pieces of "Max(1+5, 9) * 2" in reading order: the call ends after its
// first argument, the chain adds 5, drops ", 9" and stops at the ")".
TEST(FormulaExplanation, StepsFollowTheReading) {
  struct StepCase {
    StepKind kind;
    int depth, parent;
    size_t begin, end;
    wchar_t op;
    double value;
    std::optional<double> running;
  };
  const StepCase expected[] = {
      {StepKind::kFunction, 0, -1, 0, 5, 0, 1, 1}, {StepKind::kNumber, 1, 0, 4, 5, 0, 1, std::nullopt},
      {StepKind::kNumber, 0, -1, 5, 7, L'+', 5, 6}, {StepKind::kDropped, 0, -1, 7, 8, 0, 0, std::nullopt},
      {StepKind::kDropped, 0, -1, 9, 10, 0, 0, std::nullopt}, {StepKind::kIgnored, 0, -1, 10, 15, 0, 0, std::nullopt},
  };
  const FormulaExplanation e = ExplainFormula(L"Max(1+5, 9) * 2", nullptr, OriginOf);
  ASSERT_EQ(e.steps.size(), std::size(expected));
  for (size_t i = 0; i < e.steps.size(); ++i) {
    SCOPED_TRACE(i);
    const ExplanationStep& s = e.steps[i];
    EXPECT_EQ(s.kind, expected[i].kind);
    EXPECT_EQ(s.depth, expected[i].depth);
    EXPECT_EQ(s.parent, expected[i].parent);
    EXPECT_EQ(s.begin, expected[i].begin);
    EXPECT_EQ(s.end, expected[i].end);
    EXPECT_EQ(s.op, expected[i].op);
    if (s.kind != StepKind::kDropped && s.kind != StepKind::kIgnored) {
      EXPECT_EQ(s.value, expected[i].value);
    }
    EXPECT_EQ(s.hasRunning, expected[i].running.has_value());
    if (expected[i].running) {
      EXPECT_EQ(s.running, *expected[i].running);
    }
  }
  EXPECT_EQ(e.steps[0].arguments, 1);

  const FormulaExplanation named = ExplainFormula(L"Speed + Other", MachineSet().get(), OriginOf);
  ASSERT_EQ(named.steps.size(), 2u);
  EXPECT_EQ(named.steps[0].kind, StepKind::kName);
  EXPECT_EQ(named.steps[0].origin, "machine.xml");
  EXPECT_EQ(named.steps[1].kind, StepKind::kUnknownName);
  EXPECT_EQ(named.steps[1].origin, "");
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

// The JSON parses and carries values, steps, skipped text and warnings; NaN becomes null.
TEST(FormulaExplanation, JsonIsWellFormed) {
  const nlohmann::json json =
      nlohmann::json::parse(ExplanationJson(ExplainFormula(L"Max(1+5, 9) * 2", nullptr, OriginOf)));
  EXPECT_EQ(json["formula"], "Max(1+5, 9) * 2");
  EXPECT_EQ(json["value"], 6.0);
  EXPECT_EQ(json["agrees"], true);
  ASSERT_EQ(json["steps"].size(), 6u);
  EXPECT_EQ(json["steps"][0]["word"], "Max");
  EXPECT_EQ(json["steps"][2]["operator"], "+");
  EXPECT_EQ(json["steps"][2]["running"], 6.0);
  ASSERT_EQ(json["skipped"].size(), 3u);
  EXPECT_EQ(json["skipped"][2]["text"], ") * 2");
  ASSERT_EQ(json["warnings"].size(), 3u);
  EXPECT_EQ(json["warnings"][0]["kind"], "argument-not-single-operand");

  const nlohmann::json nan = nlohmann::json::parse(ExplanationJson(ExplainFormula(L"Sqrt(-1)", nullptr, OriginOf)));
  EXPECT_TRUE(nan["value"].is_null());
}

}  // namespace

// An expression evaluated again runs the program recorded from its first
// evaluation: it must answer exactly as scanning the text does, see every
// change of the parameters, and follow every change of its text.
#include <cstring>
#include <random>

#include "expression_test_support.h"

namespace {

using namespace expression_test;

bool SameDouble(double a, double b) {
  return (std::isnan(a) && std::isnan(b)) || std::memcmp(&a, &b, sizeof a) == 0;
}

// Random texts from the pieces of the language (and junk); each is evaluated
// by a fresh expression, whose first evaluation scans and records, and then
// again from the program. Random() is left out: it draws anew each time.
TEST(CompiledFormula, AgreesWithScanningOnRandomTexts) {
  const wchar_t* const pieces[] = {
      L"1",     L"2.5",   L"#1F",   L"0",      L"-",      L"+",     L"*",      L"/",     L"%",       L" AND ",
      L" or ",  L" an ",  L"(",     L")",      L",",      L" ",     L"a",      L"B",     L"alpha",   L"unknown",
      L"e3",    L"x1",    L"Max(",  L"min(",   L"Sum(",   L"Mean(", L"StdDev(", L"Pow(", L"ATan2(",  L"If(",
      L"Round(", L"Round ", L"Err(", L"Score", L"Cir(",  L"Limit(", L"Sqrt",   L"Pi",    L"Euler",   L"Sin ",
      L"LoByte(", L"abs",  L";",    L"1.5e3",  L"12abc",  L"zero",  L"..",     L"StrLen(s)", L"\u00E9", L"\t",
  };
  SmartPtr<IParametersCreatable> set =
      SetOf({{L"a", MakeDouble(4)}, {L"B", MakeDouble(-2.5)}, {L"alpha", MakeLong(7)}, {L"x1", MakeDouble(0.125)},
             {L"e3", MakeDouble(100)}, {L"zero", MakeDouble(0)}, {L"s", MakeText(L"text")}});
  std::mt19937 random(20261123);
  std::uniform_int_distribution<size_t> piece(0, std::size(pieces) - 1);
  std::uniform_int_distribution<int> length(1, 24);
  for (int round = 0; round < 3000; ++round) {
    std::wstring formula;
    for (int n = length(random); n > 0; --n) formula += pieces[piece(random)];
    SmartPtr<IExpression> expression = NewExpression();
    const double scanned = ValueAfter(expression.get(), formula, set.get());
    const double compiled = ValueAfter(expression.get(), formula, set.get());
    ASSERT_TRUE(SameDouble(scanned, compiled)) << testing::PrintToString(formula) << ": " << scanned << " then " << compiled;
  }
}

// Names are looked up at every evaluation: new values, parameters that appear
// and disappear, and another set are all seen.
TEST(CompiledFormula, ReadsTheParametersAtEveryEvaluation) {
  SmartPtr<IParametersCreatable> set = SetOf({{L"a", MakeDouble(3)}});
  SmartPtr<IExpression> expression = NewExpression();
  const std::wstring formula = L"Max(a, b) * 2 + c";
  EXPECT_EQ(ValueAfter(expression.get(), formula, set.get()), 6);
  set->Add(MakeString(L"b").get(), MakeDouble(10).get(), nullptr, 0);
  set->Add(MakeString(L"c").get(), MakeDouble(0.5).get(), nullptr, 0);
  EXPECT_EQ(ValueAfter(expression.get(), formula, set.get()), 20.5);
  set->Set(MakeString(L"a").get(), MakeDouble(12).get(), nullptr, 0, 0);
  EXPECT_EQ(ValueAfter(expression.get(), formula, set.get()), 24.5);
  // Earlier parameters removed, renamed in place and renamed through the set move the names' places.
  set->Remove(0);
  EXPECT_EQ(ValueAfter(expression.get(), formula, set.get()), 20.5) << "a is gone";
  SmartPtr<IString> name;
  ASSERT_EQ(set->get_ItemName(0, name.Receive()), S_OK);
  QueryAs<ICreatableString>(name.get())->SetText(Ref(L"c"));
  EXPECT_EQ(ValueAfter(expression.get(), formula, set.get()), 10) << "b is now the first c";
  ASSERT_EQ(set->Rename(1, MakeString(L"b").get()), S_OK);
  EXPECT_EQ(ValueAfter(expression.get(), formula, set.get()), 11) << "the second c is now b";
  SmartPtr<IParametersCreatable> other = SetOf({{L"c", MakeDouble(-1)}});
  EXPECT_EQ(ValueAfter(expression.get(), formula, other.get()), -1);
  EXPECT_EQ(ValueAfter(expression.get(), formula, nullptr), 0);
}

// The text object handed out by get_Expression may be edited in place; the
// next evaluation follows the new text.
TEST(CompiledFormula, FollowsTheTextEditedInPlace) {
  SmartPtr<IExpression> expression = NewExpression();
  EXPECT_EQ(ValueAfter(expression.get(), L"2*3", nullptr), 6);
  EXPECT_EQ(expression->Evaluate(nullptr), S_OK);
  SmartPtr<IString> text;
  ASSERT_EQ(expression->get_Expression(text.Receive()), S_OK);
  SmartPtr<ICreatableString> editable = QueryAs<ICreatableString>(text.get());
  ASSERT_TRUE(editable);
  for (const wchar_t* edited : {L"2*4", L"2*4 ; comment", L"Sqrt 81", L"2*3"}) {
    editable->SetText(Ref(edited));
    ASSERT_EQ(expression->Evaluate(nullptr), S_OK);
    SmartPtr<IVariant> value;
    ASSERT_EQ(expression->get_Value(value.Receive()), S_OK);
    EXPECT_EQ(value->GetDouble(), edited[0] == L'S' ? 9 : edited[2] == L'4' ? 8 : 6) << testing::PrintToString(edited);
  }
}

}  // namespace

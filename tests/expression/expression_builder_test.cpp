// "ExpressionBuilder": literal text with formatted formula pieces in braces.
#include "expression_test_support.h"

namespace {

using namespace expression_test;

TEST(ExpressionBuilder, BuildsTextFromFormattedPieces) {
  SmartPtr<IParametersCreatable> set =
      SetOf({{L"Speed", MakeDouble(12.5)}, {L"Count", MakeLong(3)}, {L"name", MakeText(L"Hi")}});
  struct BuildCase { std::wstring text, built; } cases[] = {
      {L"Speed {Speed*2:%.1f} km/h", L"Speed 25.0 km/h"}, {L"{Count} items", L"3 items"}, {L"{Speed}", L"12.5"},
      {L"{{literal}} }}", L"{literal} }"},
      {L"{Count:%03d}", L"003"}, {L"{255:%X}", L"FF"}, {L"{-1:%u}", L"4294967295"}, {L"{Speed:%.2f%%}", L"12.50%"},
      {L"{Count:n=%d!}", L"n=3!"}, {L"{1:%-5d}|", L"1    |"}, {L"{1:%+.1f}", L"+1.0"}, {L"{1:%e}", L"1.000000e+00"},
      {L"{1.5:%d}", L"1"}, {L"{Speed:%s}", L"12.5"}, {L"{1:%n}", L"1"}, {L"{1:%ld}", L"1"}, {L"{1:%d %d}", L"1"},
      {L"{1:%999f}", L"1"}, {L"{unknown}", L"0"}, {L"{1 ; a comment}", L"1"},
      {L"{Chr(name, 0)}", L"72"}, {L"{1:%.1f}{2:%.1f}", L"1.02.0"},
      {L"a { b", L"a { b"},
      {L"}", L"}"},
      {L"", L""},
  };
  SmartPtr<IExpression> builder = NewExpression(L"ExpressionBuilder");
  ASSERT_TRUE(builder);
  SmartPtr<IVariant> none;
  EXPECT_EQ(builder->get_Value(none.Receive()), E_FAIL) << "no value before evaluation";
  for (const BuildCase& c : cases) {
    SCOPED_TRACE(testing::PrintToString(c.text));
    builder->put_Expression(Ref(c.text));
    ASSERT_EQ(builder->Evaluate(set.get()), S_OK);
    SmartPtr<IVariant> value;
    ASSERT_EQ(builder->get_Value(value.Receive()), S_OK);
    EXPECT_EQ(DescribeValue(value.get()), L"t'" + c.built + L"'");
  }
  builder->put_Expression(Ref(L"x={x}"));
  ASSERT_EQ(builder->Evaluate(nullptr), S_OK);
  SmartPtr<IVariant> value;
  ASSERT_EQ(builder->get_Value(value.Receive()), S_OK);
  EXPECT_EQ(DescribeValue(value.get()), L"t'x=0'") << "without a set";
}

}  // namespace

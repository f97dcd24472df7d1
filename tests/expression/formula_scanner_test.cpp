// The formula language's syntax: the operator chain, operands, names from a
// parameter set, comments, hexadecimal words and bounded nesting.
#include "expression_test_support.h"

namespace {

using namespace expression_test;

// Every operator has the same precedence; division and remainder by zero give 1000000000.
TEST(FormulaScanner, OperatorChainIsLeftToRight) {
  const Case cases[] = {
      {L"2+3*4", 20},          {L"2+(3*4)", 14},      {L"8/2/2", 2},          {L"10-2-3", 5},
      {L"5/0", 1e9},           {L"5/0+1", 1000000001}, {L"1+5/0", 1e9},       {L"7 % 3", 1},
      {L"-7 % 3", -1},         {L"7.9 % 2.5", 1},     {L"7 % 0", 1e9},        {L"7 % 0.5", 1e9},
      {L"6 AND 3", 2},         {L"6 and 3", 2},       {L"6 AN 3", 2},         {L"6 OR 1", 7},
      {L"6 oR 1", 7},          {L"6 ANDX 3", 6},      {L"6 ORX 1", 6},        {L"6 A 3", 6},
      {L"-2.7 AND 7", 6},      {L"3000000000 OR 0", 2147483647},              {L"3 4", 3},
      {L"1+2)+5", 3},          {L"2 = 3", 2},         {L"2 ^ 3 + 1", 3},      {L"5 +", 5},
      {L"2*3\t\r\n", 6},       {L"1+2+3+4", 10},      {L"2 * -3", -6},
  };
  ExpectAll(cases);
}

// A leading "+" has no rule (the word "+" is 0), "-" negates, "(" groups and
// may stay open, numbers stop at their first other character.
TEST(FormulaScanner, OperandRules) {
  const Case cases[] = {
      {L"--2", 2},       {L"-(1+2)", -3},  {L"+2", 0},       {L"(1+2", 3},     {L"((2))*3", 6},
      {L"1.5e3", 1.5},   {L"1.5e+3", 1.5}, {L"12abc", 12},   {L".5", 0},       {L"1.2.3", 1.2},
      {L"", 0},          {L"   ", 0},      {L"; comment", 0}, {L"1 + 2 ; the sum", 3},
      {L"  4;5", 4},     {L"\u00EF\u00FE7+1", 8},            {L"\"12\"", 12}, {L"0.125", 0.125},
      {L"123456789012", 123456789012.0},   {L"1.0000000000000000009", 1},
  };
  ExpectAll(cases);
}

// "#" followed by hexadecimal digits is one number word, wrapping in 32 bits;
// a lone "#" is 0 (though the string views' own word rule cuts "#" off as punctuation).
TEST(FormulaScanner, HexadecimalWords) {
  const Case cases[] = {
      {L"#FF", 255},  {L"#ff", 255}, {L"#", 0},      {L"#10+1", 17}, {L"#FFFFFFFF", -1}, {L"#1G", 1},
      {L"#G", 0},     {L"# FF", 0},  {L"-#10", -16}, {L"#FF AND #0F", 15}, {L"#7fffffff+1", 2147483648.0},
  };
  ExpectAll(cases);
}

// Names begin with a letter and match whole, case-insensitively; functions win over parameters.
TEST(FormulaScanner, NamesFromTheParameterSet) {
  SmartPtr<IExpression> stored = NewExpression();
  stored->put_Expression(Ref(L"1+1"));
  stored->put_Value(MakeDouble(10).get());
  SmartPtr<IExpression> empty = NewExpression();
  SmartPtr<IParametersCreatable> set =
      SetOf({{L"a", MakeDouble(4)}, {L"Alpha", MakeDouble(2.5)}, {L"_x", MakeDouble(7)}, {L"x1", MakeLong(3)},
             {L"e3", MakeDouble(100)}, {L"2", MakeDouble(5)}, {L"pi", MakeDouble(3)}, {L"n", MakeLong(7)},
             {L"a", MakeDouble(99)}, {L"zero", MakeDouble(0)}});
  set->Add(MakeString(L"stored").get(), stored.get(), nullptr, 0);
  set->Add(MakeString(L"empty").get(), empty.get(), nullptr, 0);
  const Case cases[] = {
      {L"a", 4},           {L"A", 4},         {L"-a", -4},        {L"alpha*2", 5},   {L"ALPHA", 2.5},
      {L"alph", 0},        {L"alphabet", 0},  {L"_x", 0},         {L"x1+1", 4},      {L"unknown", 0},
      {L"pi", 3.141592653589793},             {L"1.5e3", 1.5},    {L"2", 2},         {L"n/2", 3.5},
      {L"stored*2", 20},   {L"empty+1", 1},   {L"Sin zero + 1", 1}, {L"(a)", 4},     {L"a a", 4},
  };
  ExpectAll(cases, set.get());
  SmartPtr<IVariant> untouched;
  ASSERT_EQ(stored->get_Value(untouched.Receive()), S_OK);
  EXPECT_EQ(untouched->GetDouble(), 10) << "a stored expression is read, not evaluated again";
  EXPECT_EQ(Evaluate(L"a+1", nullptr), 1) << "without a set names are 0";
}

// Operands nested more than 100 deep count as 0: any text evaluates in bounded
// stack space, and a long flat chain is read in one pass.
TEST(FormulaScanner, NestingIsBounded) {
  const auto repeat = [](const std::wstring& piece, int count) {
    std::wstring text;
    for (int i = 0; i < count; ++i) text += piece;
    return text;
  };
  const Case cases[] = {
      {repeat(L"(", 99) + L"7" + repeat(L")", 99), 7}, {repeat(L"(", 100) + L"7" + repeat(L")", 100), 0},
      {repeat(L"(", 100000) + L"1" + repeat(L")", 100000), 0},
      // 100 signs make the first operand; then each "-" operator is followed by an operand of 100
      // signs, until 11 signs and the 1 are left: 0 - (+1).
      {repeat(L"-", 100000) + L"1", -1}, {repeat(L"Abs(", 40) + L"-3" + repeat(L")", 40), 3},
      {repeat(L"Max(", 100000) + L"1", 0}, {repeat(L"Sin(", 100000) + L"1", 0},
      {repeat(L"1+", 100000) + L"1", 100001},
  };
  ExpectAll(cases);
}

}  // namespace

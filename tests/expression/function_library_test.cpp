// The function library: every function with its argument reading, defaults
// and quirks, the string functions over a parameter set and the generator's bounds.
#include <cmath>

#include "expression_test_support.h"

namespace {

using namespace expression_test;

constexpr double kPi = 3.141592653589793;
constexpr double kE = 2.718281828459045;

// One operand: "Sin x" and "Sin(x)" alike; "Sqr 2 + 1" is Sqr(2) + 1; constants.
TEST(FunctionLibrary, FunctionsOfOneOperand) {
  const Case cases[] = {
      {L"Sqr(-3)", 9},         {L"Sqrt 16", 4},        {L"sqrt(16)", 4},        {L"SQRT 16", 4},
      {L"Abs(-2.5)", 2.5},     {L"log(100)", 2},       {L"log10(100)", 2},      {L"log(-100)", -2},
      {L"ln(-1)", 0},          {L"ln(EULER)", 1, 1e-15}, {L"log(0)", -INFINITY}, {L"TRUNC(-2.7)", -2},
      {L"trunc 2.7", 2},       {L"Floor(-2.7)", -3},   {L"Cos(0)", 1},          {L"Sin(0)", 0},
      {L"Tan(0)", 0},          {L"ArcCos(1)", 0},      {L"ArcSin(1)", kPi / 2}, {L"ArcTan(1)", kPi / 4},
      {L"ATan(1)", kPi / 4},   {L"exp(1)", kE, 1e-15}, {L"Sqrt(-1)", NAN},      {L"Sqr 2 + 1", 5},
      {L"LoByte(4660)", 52},   {L"HiByte(4660)", 18},  {L"LoWord(-1)", 65535},  {L"HiWord(-1)", 65535},
      {L"HiWord(196613)", 3},  {L"LoByte(-1)", 255},   {L"HiByte(-1)", 255},    {L"LoWord(70000.9)", 4464},
      {L"COS(0)", 1},          {L"cOs 0", 1},          {L"Cosine(0)", 0},       {L"Abs -(2)", 2},
      // Constants read nothing after their name.
      {L"pi", kPi},            {L"PI*2", 2 * kPi},     {L"EULER", kE},          {L"euler", kE}, {L"pi(5)", kPi},
  };
  ExpectAll(cases);
}

// Several operands: each argument is one operand, so "Max(1+5, 9)" is 6; defaults fill missing ones.
TEST(FunctionLibrary, FunctionsOfSeveralOperands) {
  const Case cases[] = {
      {L"POW(2, 10)", 1024},        {L"POW(5)", 1},               {L"POW(2+1, 3)", 2},
      {L"ATan2(1, 0)", kPi / 2},    {L"ArcTan2(0, -1)", kPi},     {L"Min(3, 1, 2)", 1},
      {L"Max(3, 1, 2)", 3},         {L"Min(-1, -5)", -5},         {L"Sum(1, 2, 3)", 6},
      {L"Sum 1, 2", 3},             {L"Max 3", 3},                {L"Mean(1, 2, 3, 4)", 2.5},
      {L"Mean()", 0},               {L"StdDev(2, 4, 4, 4, 5, 5, 7, 9)", 2.138089935299395, 1e-12},
      {L"StdDev(5)", 0},            {L"StdDev(3, 3)", 0},         {L"Max(1+5, 9)", 6},
      {L"Max((1+5), 9)", 9},        {L"Max ( 1 , 2 ) * 2", 4},
  };
  ExpectAll(cases);
}

// Round's factor is 10^d in 32-bit arithmetic with d capped at 10 (so it wraps), the rounded value saturates.
TEST(FunctionLibrary, RoundLimitCirIfErrScore) {
  const Case cases[] = {
      {L"Round(2.5)", 3},                 {L"Round(-2.5)", -3},              {L"Round(3.14159, 2)", 3.14},
      {L"Round(1.5, -1)", 2},             {L"Round 2.5", 3},                 {L"Round 2.5, 2", 3},
      {L"Round(1.23456789, 12)", 1.23456789, 1e-9},                          {L"Round(5000000000)", 2147483647},
      {L"Limit(15, 0, 10)", 10},          {L"Limit(-5, 0, 10)", 0},          {L"Limit(5, 8, 2)", 2},
      {L"Limit(5)", 0},                   {L"Limit(-5, -10)", -5},           {L"Limit(5, -10)", 0},
      {L"Cir(370, 0, 360)", 10},          {L"Cir(-30, 0, 360)", 330},        {L"Cir(5000, 0, 360)", 1400},
      {L"Cir(-5000, 0, 360)", -1400},     {L"Cir(7, 3, 3)", 7},              {L"Cir(-3, -5)", -3},
      {L"If(5, 0, 10, 1, 0)", 1},         {L"If(11, 0, 10, 1, 0)", 0},       {L"If(11, 0, 10)", 11},
      {L"If(5, 0, 10)", 0},               {L"If(10, 0, 10, 7)", 7},          {L"If(-1, 0, 10, 7)", -1},
      {L"Err(110, 100)", 10.0 / 105, 1e-15}, {L"Score(110, 100)", 1 - 10.0 / 105, 1e-15},
      {L"Err(1, -1)", 1},                 {L"Score(1, -1)", 0},              {L"Err", -2},
      {L"Score", 3},                      {L"Err(3)", 1},                    {L"Err + 1", -1},
  };
  ExpectAll(cases);
}

TEST(FunctionLibrary, RandomStaysWithinItsBounds) {
  const Case cases[] = {{L"Random(5, 5)", 5}, {L"Random(2, 2) + 1", 3}, {L"Random(-1, -1)", -1}};
  ExpectAll(cases);
  SmartPtr<IExpression> expression = NewExpression();
  struct Bounds {
    std::wstring formula;
    double low, high;
  } bounds[] = {{L"Random", 0, 100}, {L"Random()", 0, 100}, {L"Random(10)", 10, 100}, {L"Random(10, 20)", 10, 20},
                {L"Random(20, 10)", 10, 20}};
  for (const Bounds& b : bounds)
    for (int draw = 0; draw < 50; ++draw) {
      const double value = ValueAfter(expression.get(), b.formula, nullptr);
      EXPECT_TRUE(value >= b.low && value <= b.high) << testing::PrintToString(b.formula) << " gave " << value;
    }
}

// String functions name a parameter by a plain word and read its text.
TEST(FunctionLibrary, StringFunctions) {
  SmartPtr<IParametersCreatable> set =
      SetOf({{L"s", MakeText(L"Hello")}, {L"n", MakeLong(42)},   {L"h", MakeText(L"#1F")},
             {L"d", MakeText(L"12345")}, {L"u", MakeText(L"WORLD")}, {L"needle", MakeText(L"LO")},
             {L"x", MakeText(L"ff")},    {L"e", MakeText(L"")}});
  const Case cases[] = {
      {L"StrLen(s)", 5},           {L"StrLen s", 5},            {L"StrLen(S)", 5},            {L"StrLen(n)", 0},
      {L"StrLen(none)", 0},        {L"StrLen()", 0},            {L"StrLen(e)", 0},            {L"StrLen(s) * 2", 10},
      {L"Chr(s, 1)", 101},         {L"Chr(s, 0)", 72},          {L"Chr(s, 5)", 0},            {L"Chr(s, -1)", 0},
      {L"Chr(s, 1+1)", 102},       {L"Chr(none, 0)", 0},        {L"Find(s, ll)", 3},          {L"Find(s, LL)", 3},
      {L"Find(s, o)", 5},          {L"Find(s, u)", 0},          {L"Find(s, needle)", 4},      {L"Find(s, xyz)", 0},
      {L"Find(none, a)", 0},       {L"Find(s, )", 0},           {L"Find(s, lo) + 1", 5},      {L"Find(e, a)", 0},
      {L"StrToNum(d)", 12345},     {L"StrToNum(d, 1)", 2345},   {L"StrToNum(d, 1, 2)", 23},   {L"StrToNum(d, 10)", 0},
      {L"StrToNum(h)", 31},        {L"StrToNum(x, 0, 0, 16)", 255}, {L"StrToNum(none)", 0},   {L"StrToNum(n)", 0},
  };
  ExpectAll(cases, set.get());
  EXPECT_EQ(Evaluate(L"StrLen(s)", nullptr), 0) << "no set attached";
}

}  // namespace

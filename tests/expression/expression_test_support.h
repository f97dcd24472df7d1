// Helpers of the formula tests: expressions created by class name and
// evaluation of a formula text (parameter sets come from the persistence helpers).
#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "../parameters/persistence_test_support.h"

namespace expression_test {

using namespace persistence_test;

inline SmartPtr<IExpression> NewExpression(const wchar_t* className = L"Expression") {
  return CreateObjectAs<IExpression>(className);
}

// The number an expression object holds after evaluating `formula` against `parameters`.
inline double ValueAfter(IExpression* expression, const std::wstring& formula, IParameters* parameters) {
  expression->put_Expression(Ref(formula));
  EXPECT_EQ(expression->Evaluate(parameters), S_OK);
  SmartPtr<IVariant> value;
  if (expression->get_Value(value.Receive()) != S_OK || !value) return NAN;
  EXPECT_EQ(value->GetType(), kVariantReal) << "Evaluate stores a double";
  return value->GetDouble();
}

inline double Evaluate(const std::wstring& formula, IParameters* parameters = nullptr) {
  SmartPtr<IExpression> expression = NewExpression();
  return expression ? ValueAfter(expression.get(), formula, parameters) : NAN;
}

// A formula and the value it must give; `tolerance` 0 asks for the exact value.
struct Case { std::wstring formula; double expected; double tolerance = 0; };

inline void ExpectValue(const Case& c, double actual) {
  SCOPED_TRACE(testing::PrintToString(c.formula));
  if (std::isnan(c.expected)) {
    EXPECT_TRUE(std::isnan(actual)) << actual;
  } else if (c.tolerance > 0) {
    EXPECT_NEAR(actual, c.expected, c.tolerance);
  } else {
    EXPECT_EQ(actual, c.expected);
  }
}

// Each formula is evaluated twice: the first evaluation scans the text, the
// second runs the program recorded from that scan.
template <size_t N>
void ExpectAll(const Case (&cases)[N], IParameters* parameters = nullptr) {
  SmartPtr<IExpression> expression = NewExpression();
  ASSERT_TRUE(expression);
  for (const Case& c : cases) {
    ExpectValue(c, ValueAfter(expression.get(), c.formula, parameters));
    ExpectValue(c, ValueAfter(expression.get(), c.formula, parameters));
  }
}

}  // namespace expression_test

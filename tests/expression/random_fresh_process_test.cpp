// The generator behind Random is seeded with 0 once per process, so the first
// draws of a fresh process are always the same: those of MT19937 seeded with 0.
// This executable holds this one test so that its draws are the process's first.
#include <random>

#include "expression_test_support.h"

namespace {

using namespace expression_test;

TEST(RandomInAFreshProcess, FirstDrawsAreThoseOfSeedZero) {
  std::mt19937 reference(0);
  SmartPtr<IExpression> expression = NewExpression();
  const Case cases[] = {
      {L"Random", 100 * (reference() / 4294967295.0)}, {L"Random(10, 20)", 10 + 10 * (reference() / 4294967295.0)},
      {L"Random(0, 4294967295)", static_cast<double>(reference()), 1e-3},
  };
  for (const Case& c : cases) ExpectValue(c, ValueAfter(expression.get(), c.formula, nullptr));
  // The state is regenerated after 624 words: draw past it and stay in step.
  for (int i = 0; i < 700; ++i) reference();
  for (int i = 0; i < 700; ++i) ValueAfter(expression.get(), L"Random", nullptr);
  ExpectValue({L"Random(0, 4294967295)", static_cast<double>(reference()), 1e-3},
              ValueAfter(expression.get(), L"Random(0, 4294967295)", nullptr));
}

}  // namespace

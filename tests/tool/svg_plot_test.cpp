// Tick positions of the SVG plot: 1, 2 or 5 times a power of ten apart, covering the range.
#include "svg_plot.h"

#include <gtest/gtest.h>

namespace {

TEST(NiceTicksTest, RoundStepsCoverTheRange) {
  struct Case { double low, high; std::vector<double> ticks; } cases[] = {
      {-3, 7, {-4, -2, 0, 2, 4, 6, 8}},
      {0.1, 0.95, {0, 0.2, 0.4, 0.6, 0.8, 1}},
      {5, 5, {}},  // an empty range has no ticks
  };
  for (const Case& c : cases) {
    const std::vector<double> ticks = NiceTicks(c.low, c.high, 6);
    ASSERT_EQ(ticks.size(), c.ticks.size()) << c.low << ".." << c.high;
    for (size_t i = 0; i < ticks.size(); ++i) EXPECT_NEAR(ticks[i], c.ticks[i], 1e-9) << c.low << ".." << c.high;
  }
}

}  // namespace

// A line plot as a self-contained SVG document: axes with nice ticks, labels and a title.
#pragma once

#include <string>
#include <vector>

struct PlotLabels {
  std::string title;
  std::string xLabel;
  std::string yLabel;
};

// Round tick positions (1, 2 or 5 times a power of ten apart) covering [low, high], about `wanted` of them.
std::vector<double> NiceTicks(double low, double high, int wanted);

// The points (x[i], y[i]) joined by a line; points whose y is not finite break the line.
std::string SvgLinePlot(const std::vector<double>& x, const std::vector<double>& y, const PlotLabels& labels);

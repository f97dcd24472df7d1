// A line plot as a self-contained SVG document: axes with nice ticks, labels and a title.
#include "svg_plot.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace {

constexpr double kWidth = 640, kHeight = 400;
constexpr double kLeft = 80, kRight = 24, kTop = 44, kBottom = 56;
constexpr size_t kMaxMarkedPoints = 50;

std::string Escaped(const std::string& text) {
  std::string escaped;
  for (char character : text) {
    switch (character) {
      case '&': escaped += "&amp;"; break;
      case '<': escaped += "&lt;"; break;
      case '>': escaped += "&gt;"; break;
      case '"': escaped += "&quot;"; break;
      default: escaped += character;
    }
  }
  return escaped;
}

// A coordinate with two decimals.
std::string Coordinate(double value) {
  char digits[32];
  auto written = std::to_chars(digits, digits + sizeof(digits), value, std::chars_format::fixed, 2);
  return std::string(digits, written.ptr);
}

// A tick label with as many decimals as the tick spacing needs.
std::string TickLabel(double value, double step) {
  const int decimals = std::clamp(static_cast<int>(-std::floor(std::log10(step) + 1e-9)), 0, 12);
  if (std::fabs(value) < step * 1e-9) value = 0;  // no "-0"
  char digits[64];
  auto written = std::to_chars(digits, digits + sizeof(digits), value, std::chars_format::fixed, decimals);
  return std::string(digits, written.ptr);
}

// The range a set of values spans, widened when it is a single value.
void Range(const std::vector<double>& values, double* low, double* high) {
  *low = INFINITY;
  *high = -INFINITY;
  for (double value : values) {
    if (!std::isfinite(value)) continue;
    *low = std::min(*low, value);
    *high = std::max(*high, value);
  }
  if (!std::isfinite(*low)) *low = 0, *high = 1;
  if (*high - *low < 1e-300) {
    const double margin = std::fabs(*low) > 0 ? std::fabs(*low) * 0.1 : 1;
    *low -= margin;
    *high += margin;
  }
}

double Step(const std::vector<double>& ticks) { return ticks.size() > 1 ? ticks[1] - ticks[0] : 1; }

}  // namespace

std::vector<double> NiceTicks(double low, double high, int wanted) {
  std::vector<double> ticks;
  if (!(high > low) || wanted < 2) return ticks;
  const double rough = (high - low) / (wanted - 1);
  const double power = std::pow(10, std::floor(std::log10(rough)));
  const double fraction = rough / power;
  const double step = (fraction <= 1.5 ? 1 : fraction <= 3 ? 2 : fraction <= 7 ? 5 : 10) * power;
  const double first = std::floor(low / step + 1e-9);
  const double last = std::ceil(high / step - 1e-9);
  for (double k = first; k <= last && ticks.size() < 100; ++k) ticks.push_back(k * step);
  return ticks;
}

std::string SvgLinePlot(const std::vector<double>& x, const std::vector<double>& y, const PlotLabels& labels) {
  double xLow, xHigh, yLow, yHigh;
  Range(x, &xLow, &xHigh);
  Range(y, &yLow, &yHigh);
  const std::vector<double> xTicks = NiceTicks(xLow, xHigh, 6), yTicks = NiceTicks(yLow, yHigh, 6);
  // The axes span the outer ticks, so the curve never leaves the frame.
  xLow = std::min(xLow, xTicks.front()), xHigh = std::max(xHigh, xTicks.back());
  yLow = std::min(yLow, yTicks.front()), yHigh = std::max(yHigh, yTicks.back());
  const double plotWidth = kWidth - kLeft - kRight, plotHeight = kHeight - kTop - kBottom;
  auto screenX = [&](double value) { return kLeft + (value - xLow) / (xHigh - xLow) * plotWidth; };
  auto screenY = [&](double value) { return kTop + (yHigh - value) / (yHigh - yLow) * plotHeight; };

  std::string svg = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" +
                    Coordinate(kWidth) + "\" height=\"" + Coordinate(kHeight) + "\" viewBox=\"0 0 " +
                    Coordinate(kWidth) + " " + Coordinate(kHeight) +
                    "\" font-family=\"sans-serif\" font-size=\"12\">\n"
                    "<rect width=\"100%\" height=\"100%\" fill=\"white\"/>\n";
  svg += "<text x=\"" + Coordinate(kWidth / 2) + "\" y=\"26\" text-anchor=\"middle\" font-size=\"15\">" +
         Escaped(labels.title) + "</text>\n<g stroke=\"#dddddd\">\n";
  for (double tick : xTicks)
    svg += "<line x1=\"" + Coordinate(screenX(tick)) + "\" y1=\"" + Coordinate(kTop) + "\" x2=\"" +
           Coordinate(screenX(tick)) + "\" y2=\"" + Coordinate(kTop + plotHeight) + "\"/>\n";
  for (double tick : yTicks)
    svg += "<line x1=\"" + Coordinate(kLeft) + "\" y1=\"" + Coordinate(screenY(tick)) + "\" x2=\"" +
           Coordinate(kLeft + plotWidth) + "\" y2=\"" + Coordinate(screenY(tick)) + "\"/>\n";
  svg += "</g>\n<rect x=\"" + Coordinate(kLeft) + "\" y=\"" + Coordinate(kTop) + "\" width=\"" +
         Coordinate(plotWidth) + "\" height=\"" + Coordinate(plotHeight) + "\" fill=\"none\" stroke=\"black\"/>\n";
  svg += "<g text-anchor=\"middle\">\n";
  for (double tick : xTicks)
    svg += "<text x=\"" + Coordinate(screenX(tick)) + "\" y=\"" + Coordinate(kTop + plotHeight + 18) + "\">" +
           TickLabel(tick, Step(xTicks)) + "</text>\n";
  svg += "</g>\n<g text-anchor=\"end\">\n";
  for (double tick : yTicks)
    svg += "<text x=\"" + Coordinate(kLeft - 8) + "\" y=\"" + Coordinate(screenY(tick) + 4) + "\">" +
           TickLabel(tick, Step(yTicks)) + "</text>\n";
  svg += "</g>\n<text x=\"" + Coordinate(kLeft + plotWidth / 2) + "\" y=\"" + Coordinate(kHeight - 14) +
         "\" text-anchor=\"middle\">" + Escaped(labels.xLabel) + "</text>\n";
  svg += "<text transform=\"translate(18 " + Coordinate(kTop + plotHeight / 2) +
         ") rotate(-90)\" text-anchor=\"middle\">" + Escaped(labels.yLabel) + "</text>\n";

  std::string points;
  auto flush = [&] {
    if (!points.empty())
      svg += "<polyline fill=\"none\" stroke=\"#1f77b4\" stroke-width=\"2\" points=\"" + points + "\"/>\n";
    points.clear();
  };
  for (size_t i = 0; i < x.size() && i < y.size(); ++i) {
    if (!std::isfinite(x[i]) || !std::isfinite(y[i])) {
      flush();
      continue;
    }
    if (!points.empty()) points += ' ';
    points += Coordinate(screenX(x[i])) + "," + Coordinate(screenY(y[i]));
  }
  flush();
  // Few enough points to tell apart: each gets a dot.
  if (x.size() <= kMaxMarkedPoints) {
    svg += "<g fill=\"#1f77b4\">\n";
    for (size_t i = 0; i < x.size() && i < y.size(); ++i)
      if (std::isfinite(x[i]) && std::isfinite(y[i]))
        svg += "<circle cx=\"" + Coordinate(screenX(x[i])) + "\" cy=\"" + Coordinate(screenY(y[i])) + "\" r=\"3\"/>\n";
    svg += "</g>\n";
  }
  return svg + "</svg>\n";
}

// Pictures of a range analysis: the class grid (SVG and terminal), the equity distribution curve and
// bar charts, all colored from one viridis scale.
#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "analysis/svg_writer.h"
#include "pokermath/analysis.h"
#include "pokermath/cards.h"

namespace pokermath {

namespace {

using detail::Anchor;
using detail::fixed_number;
using detail::Stroke;
using detail::SvgWriter;

// ---- the color scale ------------------------------------------------------------------------------

struct Rgb {
  int r = 0, g = 0, b = 0;
};

// Viridis sampled at nine evenly spaced points: dark purple to yellow, light rising steadily, so the
// order of the values reads the same with any kind of color vision and in grey.
constexpr std::array<Rgb, 9> kViridis = {{{0x44, 0x01, 0x54},
                                          {0x47, 0x2d, 0x7b},
                                          {0x3b, 0x52, 0x8b},
                                          {0x2c, 0x72, 0x8e},
                                          {0x21, 0x90, 0x8c},
                                          {0x27, 0xad, 0x81},
                                          {0x5d, 0xc8, 0x63},
                                          {0xaa, 0xdc, 0x32},
                                          {0xfd, 0xe7, 0x25}}};

constexpr std::string_view kEmptyFill = "#e6e6e6", kEmptyText = "#555", kDataColor = "#3b528b";
constexpr std::string_view kGuideColor = "#0072b2", kEquityColor = "#d55e00", kGridColor = "#ddd";

// The value clamped to 0..1 (NaN is left to the callers, which treat it as an empty cell).
double unit(double value) { return std::clamp(value, 0.0, 1.0); }

// The scale's color for a value 0..1, interpolated linearly between the two nearest stops.
Rgb scale_color(double value) {
  const double position = unit(value) * (kViridis.size() - 1);
  const size_t low = std::min(static_cast<size_t>(position), kViridis.size() - 2);
  const double t = position - static_cast<double>(low);
  const auto mix = [t](int a, int b) { return static_cast<int>(std::lround(a + (b - a) * t)); };
  const Rgb &a = kViridis[low], &b = kViridis[low + 1];
  return {mix(a.r, b.r), mix(a.g, b.g), mix(a.b, b.b)};
}

std::string hex_color(Rgb color) {
  static constexpr char kDigits[] = "0123456789abcdef";
  std::string out = "#";
  for (int c : {color.r, color.g, color.b}) {
    out += kDigits[c >> 4];
    out += kDigits[c & 15];
  }
  return out;
}

// Whether black text reads better than white on the color: its relative luminance (sRGB) is above
// 0.179, where the contrast ratios against black and against white are equal.
bool dark_text_on(Rgb color) {
  const auto linear = [](int c) {
    const double s = c / 255.0;
    return s <= 0.04045 ? s / 12.92 : std::pow((s + 0.055) / 1.055, 2.4);
  };
  const double luminance = 0.2126 * linear(color.r) + 0.7152 * linear(color.g) + 0.0722 * linear(color.b);
  return luminance > 0.179;
}

// The nearest of the 256-color palette's 6 x 6 x 6 cube (16..231) and grey ramp (232..255).
int ansi_color(Rgb color) {
  static constexpr std::array<int, 6> kLevels = {0, 95, 135, 175, 215, 255};
  const auto distance = [&](Rgb other) {
    const int dr = color.r - other.r, dg = color.g - other.g, db = color.b - other.b;
    return dr * dr + dg * dg + db * db;
  };
  const auto nearest_level = [](int c) {
    int best = 0;
    for (int i = 1; i < 6; ++i) {
      if (std::abs(kLevels[i] - c) < std::abs(kLevels[best] - c)) best = i;
    }
    return best;
  };
  const int r = nearest_level(color.r), g = nearest_level(color.g), b = nearest_level(color.b);
  int best = 16 + 36 * r + 6 * g + b, best_distance = distance({kLevels[r], kLevels[g], kLevels[b]});
  for (int i = 0; i < 24; ++i) {
    const int grey = 8 + 10 * i;
    if (distance({grey, grey, grey}) < best_distance) {
      best = 232 + i;
      best_distance = distance({grey, grey, grey});
    }
  }
  return best;
}

// "62%": a share 0..1 as a whole per cent.
std::string whole_percent(double share) { return fixed_number(100 * share, 0) + '%'; }

std::string_view scale_meaning(GridScale scale) { return scale == GridScale::Weight ? "weight" : "equity"; }

// ---- shared layout --------------------------------------------------------------------------------

constexpr double kMargin = 12, kTitleBaseline = 28, kTop = 44;

// The title across the top of a picture `width` pixels wide. A long title (a long range) is set
// smaller, down to 10 px, so that it fits; one still too long is cut and ends in "...". Bold sans
// glyphs take up to about 0.7 of the font size.
void title_line(SvgWriter& svg, std::string_view title, double width) {
  constexpr double kLargest = 18, kSmallest = 10, kGlyph = 0.7;
  const double room = width - 2 * kMargin;
  const double length = static_cast<double>(title.size());
  const double size = std::clamp(room / (kGlyph * std::max(1.0, length)), kSmallest, kLargest);
  std::string shown(title);
  const auto fits = static_cast<size_t>(room / (kGlyph * kSmallest));
  if (shown.size() > fits) {
    shown.resize(fits - 3);
    while (!shown.empty() && (static_cast<unsigned char>(shown.back()) & 0xC0) == 0x80) shown.pop_back();
    if (!shown.empty() && static_cast<unsigned char>(shown.back()) >= 0xC0) shown.pop_back();  // a cut character
    shown += "...";
  }
  svg.text(kMargin, kTitleBaseline, shown, {.size = std::floor(size), .bold = true});
}

}  // namespace

// ---- the class grid -------------------------------------------------------------------------------

namespace {

// The grid stands 20 px in from the sides, room for the legend's end labels to be centred on their ticks.
constexpr double kCell = 44, kGridSide = 13 * kCell, kGridLeft = 20, kLegendBar = 14;
constexpr int kGridWidth = static_cast<int>(kGridSide + 2 * kGridLeft);
constexpr int kGridHeight = static_cast<int>(kTop + kGridSide + 84);

}  // namespace

std::string range_grid_svg(const std::array<double, 169>& values, GridScale scale, std::string_view title) {
  SvgWriter svg(kGridWidth, kGridHeight);
  std::vector<std::string> stops;
  for (const Rgb& stop : kViridis) stops.push_back(hex_color(stop));
  svg.gradient("scale", stops);
  title_line(svg, title, kGridWidth);

  const Stroke cell_border{.color = "#fff", .width = 1};
  for (int cell = 0; cell < 169; ++cell) {
    const double x = kGridLeft + (cell % 13) * kCell, y = kTop + (cell / 13) * kCell, middle = x + kCell / 2;
    const std::string name = hand_class_name(cell);
    if (std::isnan(values[cell])) {
      svg.rect(x, y, kCell, kCell, kEmptyFill, &cell_border);
      svg.text(middle, y + kCell / 2 + 4, name, {.size = 12, .anchor = Anchor::Middle, .fill = kEmptyText});
      continue;
    }
    const Rgb color = scale_color(values[cell]);
    const std::string_view ink = dark_text_on(color) ? "#000" : "#fff";
    svg.rect(x, y, kCell, kCell, hex_color(color), &cell_border);
    svg.text(middle, y + 19, name, {.size = 13, .anchor = Anchor::Middle, .fill = ink, .bold = true});
    svg.text(middle, y + 35, whole_percent(unit(values[cell])), {.size = 11, .anchor = Anchor::Middle, .fill = ink});
  }

  // The legend: the scale as a bar, ticks every 10% and what the colors measure.
  const double bar_top = kTop + kGridSide + 14, bar_bottom = bar_top + kLegendBar;
  svg.rect(kGridLeft, bar_top, kGridSide, kLegendBar, "url(#scale)");
  for (int tick = 0; tick <= 10; ++tick) {
    const double x = kGridLeft + kGridSide * tick / 10;
    svg.line(x, bar_bottom, x, bar_bottom + 5, {});
    svg.text(x, bar_bottom + 18, std::to_string(10 * tick) + '%', {.size = 11, .anchor = Anchor::Middle});
  }
  svg.text(kGridLeft + kGridSide / 2, bar_bottom + 40, scale_meaning(scale), {.size = 13, .anchor = Anchor::Middle});
  return svg.finish();
}

namespace {

// The text padded with blanks to `width` columns (names and per cents are ASCII).
std::string padded(std::string text, size_t width) {
  if (text.size() < width) text.append(width - text.size(), ' ');
  return text;
}

// A span of terminal text on the scale's color for the value, in black or white by luminance.
std::string colored(const std::string& text, double value) {
  const Rgb color = scale_color(value);
  return "\x1b[48;5;" + std::to_string(ansi_color(color)) + "m\x1b[38;5;" + (dark_text_on(color) ? "16" : "231") + 'm' +
         text + "\x1b[0m";
}

}  // namespace

std::string range_grid_terminal(const std::array<double, 169>& values, GridScale scale, bool color) {
  std::string out;
  for (int cell = 0; cell < 169; ++cell) {
    const std::string name = hand_class_name(cell);
    const bool held = !std::isnan(values[cell]);
    if (color) {
      out += held ? colored(padded(name, 5), values[cell]) : padded(name, 5);
    } else {
      // Without colors the value takes their place: the name, then the per cent right-aligned.
      const std::string value = held ? whole_percent(unit(values[cell])) : "";
      out += padded(name, 4) + std::string(4 - value.size(), ' ') + value + ' ';
    }
    if (cell % 13 == 12) out += '\n';
  }
  out += scale_meaning(scale);
  if (color) {
    out += ": ";
    for (int step = 0; step <= 4; ++step) out += colored(padded(' ' + whole_percent(step / 4.0), 6), step / 4.0);
    out += "  plain: not in the range\n";
  } else {
    out += " in per cent; no value: not in the range\n";
  }
  return out;
}

// ---- the distribution curve -----------------------------------------------------------------------

namespace {

constexpr int kPlotWidth = 640, kPlotHeight = 440;
constexpr double kPlotLeft = 72, kPlotTop = 48, kPlotRight = kPlotWidth - 28, kPlotBottom = kPlotHeight - 72;

double plot_x(double share) { return kPlotLeft + unit(share) * (kPlotRight - kPlotLeft); }
double plot_y(double equity) { return kPlotBottom - unit(equity) * (kPlotBottom - kPlotTop); }

// The frame: grid lines and ticks every 10% on both axes, their per cents and the axis names.
void plot_axes(SvgWriter& svg) {
  for (int tick = 0; tick <= 10; ++tick) {
    const double x = plot_x(tick / 10.0), y = plot_y(tick / 10.0);
    const std::string label = std::to_string(10 * tick) + '%';
    svg.line(x, kPlotTop, x, kPlotBottom, {.color = kGridColor});
    svg.line(kPlotLeft, y, kPlotRight, y, {.color = kGridColor});
    svg.line(x, kPlotBottom, x, kPlotBottom + 5, {});
    svg.line(kPlotLeft - 5, y, kPlotLeft, y, {});
    svg.text(x, kPlotBottom + 18, label, {.size = 11, .anchor = Anchor::Middle});
    svg.text(kPlotLeft - 8, y + 4, label, {.size = 11, .anchor = Anchor::End});
  }
  svg.line(kPlotLeft, kPlotBottom, kPlotRight, kPlotBottom, {});
  svg.line(kPlotLeft, kPlotTop, kPlotLeft, kPlotBottom, {});
  svg.text((kPlotLeft + kPlotRight) / 2, kPlotBottom + 44, "share of range", {.size = 13, .anchor = Anchor::Middle});
  svg.text(24, (kPlotTop + kPlotBottom) / 2, "equity", {.size = 13, .anchor = Anchor::Middle, .rotate = -90});
}

}  // namespace

std::string distribution_svg(const EquityDistribution& distribution, std::string_view title) {
  SvgWriter svg(kPlotWidth, kPlotHeight);
  title_line(svg, title, kPlotWidth);
  plot_axes(svg);

  // Each step is a flat run at its equity; consecutive runs meet in vertical drops, and runs at the
  // same equity (combinations alike but for their suits) merge into one.
  std::vector<std::pair<double, double>> points;
  for (size_t i = 0; i < distribution.steps.size(); ++i) {
    const DistributionStep& step = distribution.steps[i];
    if (i > 0 && step.equity == distribution.steps[i - 1].equity) {
      points.back().first = plot_x(step.to);
      continue;
    }
    points.emplace_back(plot_x(step.from), plot_y(step.equity));
    points.emplace_back(plot_x(step.to), plot_y(step.equity));
  }
  if (!points.empty()) svg.polyline(points, {.color = kDataColor, .width = 2});

  // The 50% and 33% guides, each marked where the curve crosses it and labelled with the share of
  // the range that has at least that much equity.
  for (const auto& [level, name] : {std::pair{0.5, "50%"}, std::pair{1.0 / 3, "33%"}}) {
    const double share = distribution.share_at_least(level), y = plot_y(level), x = plot_x(share);
    svg.line(kPlotLeft, y, kPlotRight, y, {.color = kGuideColor, .dash = "6 4"});
    svg.line(x, y, x, kPlotBottom, {.color = kGuideColor, .dash = "2 3"});
    svg.circle(x, y, 4, kGuideColor);
    svg.text(kPlotRight - 4, y - 5,
             std::string("at least ") + name + " equity: " + fixed_number(100 * share, 1) + "% of range",
             {.size = 11, .anchor = Anchor::End, .fill = kGuideColor});
  }

  const double y = plot_y(distribution.equity);
  svg.line(kPlotLeft, y, kPlotRight, y, {.color = kEquityColor, .width = 2, .dash = "10 4"});
  svg.text(kPlotLeft + 6, y - 5, "range equity " + fixed_number(100 * distribution.equity, 1) + '%',
           {.size = 11, .fill = kEquityColor, .bold = true});
  return svg.finish();
}

// ---- bar charts -----------------------------------------------------------------------------------

namespace {

constexpr int kChartWidth = 640;
constexpr double kRow = 22, kLabelRight = 196, kBarLeft = 204, kBarLength = 300, kSection = 26;

// "45" or "45.5": a count rounded to one decimal, the decimal shown only when it is not zero.
std::string count_text(double count) {
  std::string text = fixed_number(count, 1);
  if (text.ends_with(".0")) text.resize(text.size() - 2);
  return text;
}

// Draws the bars one row each from `top`: the label, a track with the bar, "12.3% (45)". Returns the
// y below the last row.
double draw_bars(SvgWriter& svg, const std::vector<ChartBar>& bars, double top) {
  for (const ChartBar& bar : bars) {
    const double share = std::isnan(bar.share) ? 0 : bar.share;
    svg.text(kLabelRight, top + 15, bar.label, {.size = 12, .anchor = Anchor::End});
    svg.rect(kBarLeft, top + 3, kBarLength, kRow - 6, "#eee");
    if (share > 0) svg.rect(kBarLeft, top + 3, kBarLength * unit(share), kRow - 6, kDataColor);
    svg.text(kBarLeft + kBarLength + 8, top + 15, fixed_number(100 * share, 1) + "% (" + count_text(bar.count) + ')',
             {.size = 12});
    top += kRow;
  }
  return top;
}

int rows_height(double rows) { return static_cast<int>(rows * kRow); }

}  // namespace

std::string bar_chart_svg(const std::vector<ChartBar>& bars, std::string_view title) {
  SvgWriter svg(kChartWidth, static_cast<int>(kTop + kMargin) + rows_height(static_cast<double>(bars.size())));
  title_line(svg, title, kChartWidth);
  draw_bars(svg, bars, kTop);
  return svg.finish();
}

std::string board_hits_svg(const BoardHits& hits, std::string_view title) {
  const auto share = [&](double weight) { return hits.weight > 0 ? weight / hits.weight : 0.0; };
  std::vector<ChartBar> made, draws;
  for (int i = 0; i < kMadeHands; ++i) {
    made.push_back({made_hand_name(static_cast<MadeHand>(i)), share(hits.made_weight[i]), hits.made_weight[i]});
  }
  for (int i = 0; i < kDraws; ++i) {
    draws.push_back({draw_name(static_cast<Draw>(1u << i)), share(hits.draw_weight[i]), hits.draw_weight[i]});
  }

  std::string heading(title);
  heading += heading.empty() ? "board" : " - board";
  for (int card : hits.board) heading += ' ' + card_to_string(card);

  const int height = static_cast<int>(kTop + 2 * kSection + kMargin + kMargin) + rows_height(kMadeHands + kDraws);
  SvgWriter svg(kChartWidth, height);
  title_line(svg, heading, kChartWidth);
  double y = kTop;
  for (const auto& [name, bars] : {std::pair{"made hands", &made}, std::pair{"draws", &draws}}) {
    svg.text(kMargin, y + 18, name, {.size = 14, .bold = true});
    y = draw_bars(svg, *bars, y + kSection) + kMargin;
  }
  return svg.finish();
}

}  // namespace pokermath

// The analysis pictures: every SVG kind parsed by a real XML parser and rasterised, its image size
// checked against its width/height, its labels present; the terminal grid with and without color.
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdlib>
#include <regex>
#include <string>
#include <utility>
#include <vector>

#include "pokermath/analysis.h"
#include "pokermath/cards.h"
#include "temp_dir.h"

namespace {

using namespace pokermath;

// Fails with the Debian package to install when a command the checks need is missing.
bool have_tool(const std::string& tool, const std::string& package) {
  if (std::system(("command -v " + tool + " > /dev/null 2>&1").c_str()) == 0) return true;
  ADD_FAILURE() << tool << " is missing: install the Debian package " << package;
  return false;
}

// The width and height attributes of the document's <svg> element, or {-1, -1}.
std::pair<int, int> svg_size(const std::string& svg) {
  std::smatch match;
  static const std::regex kSize("<svg [^>]*width=\"(\\d+)\" height=\"(\\d+)\"");
  if (!std::regex_search(svg, match, kSize)) return {-1, -1};
  return {std::stoi(match[1]), std::stoi(match[2])};
}

using Documents = std::vector<std::pair<std::string, std::string>>;  // name, SVG text

// Writes the documents, parses them as XML (one parser run for all: it is slow to start), rasterises
// each and compares the PNG's size (IHDR) to the document's own.
void check_documents(const Documents& documents) {
  if (!have_tool("python3", "python3") || !have_tool("rsvg-convert", "librsvg2-bin")) return;
  test_util::TempDir dir;
  std::string files, names;
  for (const auto& [name, svg] : documents) {
    test_util::write_bytes(dir / (name + ".svg"), svg);
    files += " '" + (dir / (name + ".svg")).string() + "'";
    names += ' ' + name;
  }
  const std::string parse = "python3 -c \"import sys, xml.etree.ElementTree as E; [E.parse(f) for f in sys.argv[1:]]\"";
  EXPECT_EQ(std::system((parse + files).c_str()), 0) << "not well-formed XML among:" << names;
  for (const auto& [name, svg] : documents) {
    const std::string file = (dir / (name + ".svg")).string(), png = file + ".png";
    ASSERT_EQ(std::system(("rsvg-convert -o '" + png + "' '" + file + "'").c_str()), 0) << name;
    const std::string bytes = test_util::read_bytes(png);
    ASSERT_GE(bytes.size(), 24u);
    ASSERT_EQ(bytes.substr(1, 3), "PNG");
    const auto be32 = [&](size_t at) {
      uint32_t value = 0;
      for (size_t i = 0; i < 4; ++i) value = value << 8 | static_cast<unsigned char>(bytes[at + i]);
      return static_cast<int>(value);
    };
    const auto [width, height] = svg_size(svg);
    EXPECT_GT(width, 0) << name;
    EXPECT_EQ(std::pair(be32(16), be32(20)), std::pair(width, height)) << name;
    EXPECT_LT(svg.size(), 64u * 1024) << name;
  }
}

void expect_labels(const std::string& svg, const std::vector<std::string>& labels, const std::string& name) {
  for (const std::string& label : labels) EXPECT_NE(svg.find(label), std::string::npos) << name << ": " << label;
}

// A grid with the extremes, a middle value, and a few empty classes (AKo, 72o, 32s).
std::array<double, 169> sample_grid() {
  std::array<double, 169> values{};
  for (int cell = 0; cell < 169; ++cell) values[cell] = (cell % 17) / 16.0;
  values[0] = 1, values[1] = 0.62, values[13] = NAN, values[13 * 12 + 7] = NAN, values[13 * 11 + 12] = NAN;
  return values;
}

TEST(AnalysisPictures, RangeGridInBothScales) {
  Documents documents;
  for (GridScale scale : {GridScale::Weight, GridScale::Equity}) {
    const std::string name = scale == GridScale::Weight ? "weight" : "equity";
    const std::string svg = range_grid_svg(sample_grid(), scale, "BTN <&\"> " + name);
    EXPECT_EQ(svg, range_grid_svg(sample_grid(), scale, "BTN <&\"> " + name)) << "not deterministic";
    documents.emplace_back("grid_" + name, svg);
    expect_labels(svg, {"BTN &lt;&amp;&quot;&gt; " + name, ">62%<", ">100%<", ">0%<", ">" + name + "<"}, name);
    for (int cell = 0; cell < 169; ++cell) expect_labels(svg, {'>' + hand_class_name(cell) + '<'}, name);
  }
  check_documents(documents);
}

TEST(AnalysisPictures, TerminalGridLinesUpTheClassesWithAndWithoutColor) {
  for (bool color : {true, false}) {
    const std::string text = range_grid_terminal(sample_grid(), GridScale::Equity, color);
    ASSERT_FALSE(text.empty());
    EXPECT_EQ(text.back(), '\n');
    std::vector<std::string> lines;
    for (size_t begin = 0, end; (end = text.find('\n', begin)) != std::string::npos; begin = end + 1) {
      lines.push_back(text.substr(begin, end - begin));
    }
    ASSERT_EQ(lines.size(), 14u) << text;  // 13 rows of classes, then the legend
    for (int row = 0; row < 13; ++row) {
      size_t at = 0;
      for (int column = 0; column < 13; ++column) {
        at = lines[row].find(hand_class_name(13 * row + column), at);
        ASSERT_NE(at, std::string::npos) << "row " << row << " column " << column << ": " << lines[row];
      }
      if (!color) {
        EXPECT_EQ(lines[row].size(), lines[0].size()) << "row " << row;
      }
    }
    EXPECT_EQ(text.find("\x1b[48;5;") != std::string::npos, color);
    EXPECT_EQ(text.find('\x1b') != std::string::npos, color);
    EXPECT_NE(lines[13].find("equity"), std::string::npos);
    if (color) {
      EXPECT_EQ(lines[1].find("AKo  "), 0u) << "an empty class keeps no color";
    } else {
      EXPECT_NE(lines[0].find("AKs  62%"), std::string::npos) << lines[0];
    }
  }
}

TEST(AnalysisPictures, DistributionCurveWithGuidesAndEquityLine) {
  EquityDistribution distribution;
  distribution.steps = {{0, 0.2, 0.85, "AsAh"},
                        {0.2, 0.35, 0.6, "KsQs"},
                        {0.35, 0.5, 0.6, "KhQh"},
                        {0.5, 0.8, 0.4, "9c8c"},
                        {0.8, 1, 0.2, "7d2c"}};
  distribution.equity = 0.47;
  const std::string svg = distribution_svg(distribution, "SB <&> BB\x01\xff");  // a control and a stray byte too
  expect_labels(svg,
                {"SB &lt;&amp;&gt; BB", "share of range", ">equity<", ">100%<", "at least 50% equity: 50.0%",
                 "at least 33% equity: 80.0%", "range equity 47.0%", "<polyline"},
                "distribution");
  check_documents({{"distribution", svg}, {"empty_distribution", distribution_svg(EquityDistribution{}, "empty")}});
}

TEST(AnalysisPictures, BarChartsAndBoardHits) {
  const std::string bars = bar_chart_svg({{"pairs <&>", 0.123, 45}, {"suited", 0.5, 12.34}, {"none", 0, 0}}, "classes");
  expect_labels(bars, {">classes<", "pairs &lt;&amp;&gt;", "12.3% (45)", "50.0% (12.3)", "0.0% (0)"}, "bars");

  BoardHits hits;
  hits.board = {GetCardByName(L"Ah"), GetCardByName(L"Kd"), GetCardByName(L"7c")};
  hits.weight = 10;
  hits.made_weight[static_cast<int>(MadeHand::TopPairTopKicker)] = 2.5;
  hits.draw_weight[3] = 1;  // gutshot
  const std::string svg = board_hits_svg(hits, "BTN <&>");
  expect_labels(svg,
                {"BTN &lt;&amp;&gt; - board Ah Kd 7c", ">made hands<", ">draws<", ">top pair, top kicker<",
                 "25.0% (2.5)", ">gutshot<", "10.0% (1)", ">straight flush<", ">backdoor straight draw<"},
                "board hits");

  hits.weight = 0;  // nothing left on the board: every share is 0, none NaN
  const std::string empty = board_hits_svg(hits, "");
  check_documents({{"bars", bars}, {"board_hits", svg}, {"board_hits_empty", empty}});
  EXPECT_EQ(empty.find("nan"), std::string::npos);
  expect_labels(empty, {">board Ah Kd 7c<", "0.0% (2.5)"}, "empty board hits");
}

}  // namespace

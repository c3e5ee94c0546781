// Range analysis: a Hold'em range's equity broken down by hand class and by combination, the
// distribution of those equities, how a range hits a flop or a turn, and pictures of them (SVG
// images and a colored grid for the terminal). docs/analysis.md shows each with its pictures.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "pokermath/equity.h"
#include "pokermath/ranges.h"

namespace pokermath {

// ---- equity by hand class ------------------------------------------------------------------------

// One combination of the analysed player's range and its exact equity against the other players.
struct ComboEquity {
  int card1 = 0, card2 = 0;  // card codes, the higher first
  double weight = 100;       // its weight in the range
  double equity = 0;         // the pot share it wins, 0..1, over the deals it can be dealt in
  double win = 0, tie = 0;   // the shares won alone and split
  friend bool operator==(const ComboEquity&, const ComboEquity&) = default;
};

// One class cell of the 13 x 13 grid: the combinations of the range in it and their equity.
struct ClassEquity {
  int cell = 0;        // 0..168 (hand_class_name)
  int combos = 0;      // combinations of the range in the class that can be dealt
  double weight = 0;   // the weight they carry in the deals: see RangeBreakdown
  double equity = 0;   // their weighted mean equity; NaN when the class has no combination
};

// The equity of a player's range broken down exactly. Each combination's equity is the equity of
// the request with that player holding that combination; `deal_weight` is the weight of the deals
// it is part of (its own weight x the sum of the weight products of the other players' compatible
// holdings): the range's equity is the deal_weight-weighted mean of its combinations' equities.
struct RangeBreakdown {
  int player = 0;
  double equity = 0;                   // the player's equity in the whole request
  std::vector<ComboEquity> combos;     // the combinations that can be dealt, ascending
  std::vector<double> deal_weight;     // per combination, as above
  std::array<ClassEquity, 169> classes{};
  double seconds = 0;

  // Each class cell's equity, NaN where the range holds none: what the equity grid shows.
  std::array<double, 169> class_equities() const;
};

// Breaks down the equity of `player`'s range in a Hold'em or short-deck request, counting every
// deal exactly (the request's method must be Auto or Exact). Throws Error for a bad request (as
// compute_equity), a player index out of range, a game that is not Hold'em or the short deck, or a
// request too large to count exactly; Cancelled when stopped.
RangeBreakdown equity_by_class(const EquityRequest& request, int player = 0);

// ---- equity distribution ---------------------------------------------------------------------------

// The combinations of a range sorted by equity, strongest first, each a step of the curve the
// commercial tools draw: it covers the share of the range's weight from `from` to `to` (0..1).
struct DistributionStep {
  double from = 0, to = 0;
  double equity = 0;
  std::string combo;  // "AsKs"
};
struct EquityDistribution {
  std::vector<DistributionStep> steps;
  double equity = 0;  // the range's equity
  // The share of the range's weight (0..1) whose equity is at least `equity`.
  double share_at_least(double equity) const;
};
// Weighs each combination by its deal weight (see RangeBreakdown).
EquityDistribution equity_distribution(const RangeBreakdown& breakdown);

// ---- hand classes on a board ---------------------------------------------------------------------

// The made hand of a two-card combination on a flop or a turn, strongest first; docs/analysis.md
// defines each. Every combination falls in exactly one.
enum class MadeHand {
  StraightFlush,
  Quads,
  FullHouse,
  Flush,
  Straight,
  Set,
  Trips,
  TwoPair,
  Overpair,
  TopPairTopKicker,
  TopPairGoodKicker,
  TopPairWeakKicker,
  SecondPair,
  WeakPair,  // an underpair, or a pair with the third or a lower board rank
  BoardPairOnly,
  NoMadeHand,
};
inline constexpr int kMadeHands = 16;

// Draws, independent of the made hand and of each other (bit flags of DrawFlags).
enum Draw : uint32_t {
  kFlushDraw = 1u << 0,
  kNutFlushDraw = 1u << 1,
  kOpenEndedDraw = 1u << 2,  // two or more ranks complete a straight (double gutshots too)
  kGutshot = 1u << 3,        // exactly one rank does
  kComboDraw = 1u << 4,      // a flush draw and a straight draw
  kBackdoorFlushDraw = 1u << 5,
  kBackdoorStraightDraw = 1u << 6,
};
inline constexpr int kDraws = 7;

// "straight flush", "quads", "full house", "flush", "straight", "set", "trips", "two pair",
// "overpair", "top pair, top kicker", "top pair, good kicker", "top pair, weak kicker", "second
// pair", "underpair or weak pair", "board pair only", "no made hand".
std::string made_hand_name(MadeHand hand);
// "flush draw", "nut flush draw", "open-ended straight draw", "gutshot", "combo draw", "backdoor
// flush draw", "backdoor straight draw", for one flag.
std::string draw_name(Draw draw);

struct HandOnBoard {
  MadeHand made = MadeHand::NoMadeHand;
  uint32_t draws = 0;  // Draw flags
};
// Classifies two hole cards on a board of 3 or 4 cards. Throws Error for a board of another size, a
// code outside 0..51 or a card given twice.
HandOnBoard classify_on_board(int card1, int card2, const std::vector<int>& board);

// How a range hits a board: the combinations that share no card with it, counted by made hand and
// by draw, with their weights (sum / 100).
struct BoardHits {
  std::vector<int> board;
  int combos = 0;           // combinations left once the board cards are removed
  double weight = 0;        // their weight / 100
  std::array<int, kMadeHands> made_combos{};
  std::array<double, kMadeHands> made_weight{};
  std::array<int, kDraws> draw_combos{};  // by bit number of the Draw flag
  std::array<double, kDraws> draw_weight{};
};
// Throws Error as classify_on_board does for the board.
BoardHits board_hits(const WeightedRange& range, const std::vector<int>& board);

// ---- pictures --------------------------------------------------------------------------------------

// What the 169 values of a grid are: a weight share (0..1, the class's weight over its combinations)
// or an equity (0..1). NaN marks an empty cell.
enum class GridScale { Weight, Equity };

// A 13 x 13 heat map of the classes (pairs on the diagonal, suited above it), each cell labelled
// with its class and value, a legend and a title; colors from a scale readable with any color
// vision (viridis). Returns a complete SVG document.
std::string range_grid_svg(const std::array<double, 169>& values, GridScale scale, std::string_view title);

// The same grid for a terminal: 13 lines of 13 cells, each the class name padded to 5 columns; with
// `color` each held cell gets a 256-color ANSI background by value (the same scale) and empty cells
// stay plain, and a legend line follows; without it a held cell shows its value in per cent
// instead of the color. Ends with a newline.
std::string range_grid_terminal(const std::array<double, 169>& values, GridScale scale, bool color);

// The distribution curve: equity (y, 0..100%) against the share of the range (x, 0..100%), with
// marks where it crosses 50% and 33% equity and the range's equity as a line. A complete SVG document.
std::string distribution_svg(const EquityDistribution& distribution, std::string_view title);

// One bar of a bar chart: a label, its share (0..1) and the count printed beside it.
struct ChartBar {
  std::string label;
  double share = 0;
  double count = 0;
};
// Horizontal bars under a title, in the order given, each labelled with its name, per cent and
// count. A complete SVG document.
std::string bar_chart_svg(const std::vector<ChartBar>& bars, std::string_view title);

// The board hits as two bar charts in one image: made hands, then draws (shares of the range's weight).
std::string board_hits_svg(const BoardHits& hits, std::string_view title);

}  // namespace pokermath

#include "equity/omaha_preflop.h"

#include <algorithm>
#include <array>
#include <bit>
#include <unordered_map>

#include "equity/engine.h"
#include "equity/requests.h"
#include "eval/hand_key.h"
#include "omaha/low_sets.h"
#include "pokermath/ranges.h"
#include "pokermath/support.h"

namespace pokermath::detail {

namespace {

constexpr int kMaxHole = 6;
constexpr int kHighValues = 7462;  // high values are 1..7462

// C(n, k) for n <= 52, k <= kMaxHole.
struct Binomials {
  std::array<std::array<uint32_t, kMaxHole + 1>, 53> c{};
  constexpr Binomials() {
    for (int n = 0; n <= 52; ++n) {
      c[n][0] = 1;
      for (int k = 1; k <= kMaxHole; ++k) c[n][k] = n == 0 ? 0 : c[n - 1][k - 1] + c[n - 1][k];
    }
  }
};
constexpr Binomials kBinomials;

uint32_t binomial(int n, int k) { return kBinomials.c[static_cast<size_t>(n)][static_cast<size_t>(k)]; }

// The combinatorial index of ascending numbers x0 < x1 < ...: sum of C(x_i, i + 1). Sets of k
// numbers below n get the indices 0 .. C(n, k) - 1.
uint32_t combination_index(const uint8_t* x, int k) {
  uint32_t index = 0;
  for (int i = 0; i < k; ++i) index += binomial(x[i], i + 1);
  return index;
}

// Calls visit(x) for every ascending set x of k numbers below n.
template <typename Visit>
void for_each_combination(int n, int k, Visit visit) {
  std::array<uint8_t, kMaxHole> x{};
  for (int i = 0; i < k; ++i) x[static_cast<size_t>(i)] = static_cast<uint8_t>(i);
  if (k > n) return;
  for (;;) {
    visit(x.data());
    int i = k - 1;
    while (i >= 0 && x[static_cast<size_t>(i)] == n - k + i) --i;
    if (i < 0) return;
    ++x[static_cast<size_t>(i)];
    for (int j = i + 1; j < k; ++j) x[static_cast<size_t>(j)] = static_cast<uint8_t>(x[static_cast<size_t>(j - 1)] + 1);
  }
}

// One holding on one board: its cards as indices among the live cards, its values and its class.
struct Holding {
  std::array<uint8_t, kMaxHole> live;
  uint16_t high;   // larger is stronger
  uint8_t low;     // the best low's rank set, smaller is stronger; 0: no low
  uint32_t klass;  // its holding class
};

// Counts of the holdings added so far that contain each set of fewer than h live cards (sets of
// size k by combinatorial index, after the counters of the smaller sizes), from which the number of
// them sharing no card with a holding follows by inclusion-exclusion.
class SubsetCounts {
 public:
  SubsetCounts(int live, int hole) : m_hole(hole) {
    uint32_t offset = 0;
    std::array<uint32_t, kMaxHole> offsets{};
    for (int k = 0; k < hole; ++k) {
      offsets[static_cast<size_t>(k)] = offset;
      offset += binomial(live, k);
    }
    m_counts.assign(offset, 0);
    // The proper subsets of a holding's h positions: where their counters start, their positions.
    for (uint32_t s = 0; s + 1 < (1u << hole); ++s) {
      Subset subset{};
      for (int i = 0; i < hole; ++i)
        if (s >> i & 1) subset.positions[static_cast<size_t>(subset.size++)] = static_cast<uint8_t>(i);
      subset.offset = offsets[static_cast<size_t>(subset.size)];
      m_subsets.push_back(subset);
    }
  }
  void clear() { std::fill(m_counts.begin(), m_counts.end(), 0); }
  void add(const uint8_t* cards) {
    for (const Subset& s : m_subsets) ++m_counts[index(s, cards)];
  }
  // The holdings added that share no card with `cards`; `self` says whether `cards` itself was added.
  int64_t disjoint(const uint8_t* cards, bool self) const {
    int64_t sum = 0;
    for (const Subset& s : m_subsets) sum += s.size % 2 == 0 ? m_counts[index(s, cards)] : -m_counts[index(s, cards)];
    if (self) sum += m_hole % 2 == 0 ? 1 : -1;
    return sum;
  }

 private:
  struct Subset {
    uint32_t offset;
    int size;
    std::array<uint8_t, kMaxHole> positions;
  };
  static uint32_t index(const Subset& s, const uint8_t* cards) {
    uint32_t i = s.offset;
    for (int j = 0; j < s.size; ++j) i += binomial(cards[s.positions[static_cast<size_t>(j)]], j + 1);
    return i;
  }

  int m_hole;
  std::vector<int32_t> m_counts;
  std::vector<Subset> m_subsets;
};

// Sweeps the holdings in `order` (weakest first, `same` true between equal neighbours) through
// `counts` (cleared first), adding those `added` says; calls answer(i, below, equal) for each
// holding i: the added holdings sharing no card with it that are weaker and that are equal.
template <typename Same, typename Added, typename Answer>
void sweep(const std::vector<Holding>& holdings, const std::vector<uint32_t>& order, SubsetCounts& counts, Same same,
           Added added, Answer answer) {
  counts.clear();
  std::vector<int64_t> below;
  for (size_t first = 0; first < order.size();) {
    size_t end = first + 1;
    while (end < order.size() && same(order[first], order[end])) ++end;
    below.clear();
    for (size_t i = first; i < end; ++i) below.push_back(counts.disjoint(holdings[order[i]].live.data(), false));
    for (size_t i = first; i < end; ++i)
      if (added(order[i])) counts.add(holdings[order[i]].live.data());
    for (size_t i = first; i < end; ++i) {
      const Holding& h = holdings[order[i]];
      const int64_t at_most = counts.disjoint(h.live.data(), added(order[i]));
      answer(order[i], below[i - first], at_most - below[i - first]);
    }
    first = end;
  }
}

}  // namespace

int PreflopProblem::cards() const { return std::popcount(deck); }

double PreflopProblem::deals_per_holding() const {
  const int rest = cards() - hole;
  return static_cast<double>(binomial(rest, 5)) * static_cast<double>(binomial(rest - 5, hole));
}

HoldingClasses::HoldingClasses(const PreflopProblem& problem) : m_hole(problem.hole), m_position(52, 255) {
  if (problem.hole < 4 || problem.hole > kMaxHole) throw Error("Omaha holdings have 4, 5 or 6 cards");
  std::vector<int> cards;
  for (int c = 0; c < 52; ++c)
    if (problem.deck >> c & 1) {
      m_position[static_cast<size_t>(c)] = static_cast<uint8_t>(cards.size());
      cards.push_back(c);
    }
  const int n = static_cast<int>(cards.size());
  std::vector<uint64_t> class_masks(binomial(n, m_hole));
  for_each_combination(n, m_hole, [&](const uint8_t* x) {
    uint64_t mask = 0;
    for (int i = 0; i < m_hole; ++i) mask |= uint64_t{1} << cards[x[i]];
    class_masks[combination_index(x, m_hole)] = omaha_suit_class(mask);
  });
  m_classes = class_masks;
  std::sort(m_classes.begin(), m_classes.end());
  m_classes.erase(std::unique(m_classes.begin(), m_classes.end()), m_classes.end());
  m_sizes.assign(m_classes.size(), 0);
  m_class_of.resize(class_masks.size());
  for (size_t i = 0; i < class_masks.size(); ++i) {
    const auto k =
        static_cast<uint32_t>(std::lower_bound(m_classes.begin(), m_classes.end(), class_masks[i]) - m_classes.begin());
    m_class_of[i] = k;
    ++m_sizes[k];
  }
}

uint32_t HoldingClasses::class_of(const uint8_t* positions) const {
  return m_class_of[combination_index(positions, m_hole)];
}

std::vector<BoardClass> preflop_board_classes(const PreflopProblem& problem) {
  std::vector<int> cards;
  for (int c = 0; c < 52; ++c)
    if (problem.deck >> c & 1) cards.push_back(c);
  std::unordered_map<uint64_t, uint32_t> count;
  for_each_combination(static_cast<int>(cards.size()), 5, [&](const uint8_t* x) {
    uint64_t board = 0;
    for (int i = 0; i < 5; ++i) board |= uint64_t{1} << cards[x[i]];
    ++count[omaha_suit_class(board)];  // the smallest image of the board under the suit permutations
  });
  std::vector<BoardClass> out;
  out.reserve(count.size());
  for (const auto& [board, boards] : count) out.push_back({board, boards});
  std::sort(out.begin(), out.end(), [](const BoardClass& a, const BoardClass& b) { return a.board < b.board; });
  return out;
}

std::vector<int64_t> count_preflop_boards(const PreflopProblem& problem, const HoldingClasses& holdings_of,
                                          const std::vector<BoardClass>& boards, size_t first, size_t last) {
  const int h = problem.hole;
  std::vector<int64_t> pot(holdings_of.classes().size(), 0);
  std::vector<Holding> holdings;
  std::vector<uint32_t> order, low_order, starts;
  std::vector<int64_t> below_all, equal_all, below_low, equal_low, worse_low, tied_low, with_low;
  const int live_count = problem.cards() - 5;
  SubsetCounts counts(live_count, h);
  const int64_t opponents = binomial(live_count - h, h);

  for (size_t b = first; b < last; ++b) {
    const uint64_t board = boards[b].board;
    std::array<int, 5> board_cards{};
    std::vector<int> live;
    for (int c = 0, i = 0; c < 52; ++c) {
      if (!(problem.deck >> c & 1)) continue;
      if (board >> c & 1)
        board_cards[static_cast<size_t>(i++)] = c;
      else
        live.push_back(c);
    }
    // Each pair of live cards with its best three board cards.
    std::array<uint64_t, 10> triple_key{}, triple_mask{};
    for (int i = 0, t = 0; i < 5; ++i)
      for (int j = i + 1; j < 5; ++j)
        for (int k = j + 1; k < 5; ++k, ++t) {
          for (int c : {board_cards[i], board_cards[j], board_cards[k]}) {
            triple_key[t] += kCardKeys[c];
            triple_mask[t] |= uint64_t{1} << c;
          }
        }
    std::vector<uint16_t> pair_value(static_cast<size_t>(live_count * live_count));
    for (int x = 0; x < live_count; ++x)
      for (int y = x + 1; y < live_count; ++y) {
        const uint64_t key = kKeyStart + kCardKeys[live[x]] + kCardKeys[live[y]];
        const uint64_t mask = uint64_t{1} << live[x] | uint64_t{1} << live[y];
        int best = 0;
        for (int t = 0; t < 10; ++t)
          best = std::max(best, hand_value_of<Ranking::Holdem, 5>(key + triple_key[t], mask | triple_mask[t]));
        pair_value[static_cast<size_t>(x * live_count + y)] = static_cast<uint16_t>(best);
      }
    const uint32_t board_low = low_rank_set(board_cards.data(), 5);

    holdings.clear();
    for_each_combination(live_count, h, [&](const uint8_t* x) {
      Holding hold{};
      uint8_t positions[kMaxHole];
      uint32_t low_ranks = 0;
      int high = 0;
      for (int i = 0; i < h; ++i) {
        hold.live[static_cast<size_t>(i)] = x[i];
        positions[i] = holdings_of.position()[static_cast<size_t>(live[x[i]])];
        low_ranks |= low_rank_bit(live[x[i]]);
        for (int j = i + 1; j < h; ++j)
          high = std::max<int>(high, pair_value[static_cast<size_t>(x[i] * live_count + x[j])]);
      }
      hold.high = static_cast<uint16_t>(high);
      hold.low = problem.hi_lo ? best_low_set(low_ranks, board_low) : 0;
      hold.klass = holdings_of.class_of(positions);
      holdings.push_back(hold);
    });
    const size_t n = holdings.size();
    // Weakest first, by a counting sort on the high value (at most 7462).
    starts.assign(kHighValues + 2, 0);
    for (const Holding& hold : holdings) ++starts[hold.high + 1u];
    for (size_t v = 1; v < starts.size(); ++v) starts[v] += starts[v - 1];
    order.resize(n);
    for (size_t i = 0; i < n; ++i) order[starts[holdings[i].high]++] = static_cast<uint32_t>(i);
    const auto same_high = [&](uint32_t a, uint32_t c) { return holdings[a].high == holdings[c].high; };
    below_all.assign(n, 0);
    equal_all.assign(n, 0);
    sweep(
        holdings, order, counts, same_high, [](uint32_t) { return true; },
        [&](uint32_t i, int64_t below, int64_t equal) { below_all[i] = below, equal_all[i] = equal; });

    const int64_t weight = boards[b].boards;
    if (!problem.hi_lo) {
      for (size_t i = 0; i < n; ++i) pot[holdings[i].klass] += weight * (4 * below_all[i] + 2 * equal_all[i]);
      continue;
    }
    // Hi/Lo: the high comparison against the opponents with a low, then the low comparison among them
    // (a larger rank set is a worse low, so the weakest come first in descending order of the set).
    const auto has_low = [&](uint32_t i) { return holdings[i].low != 0; };
    below_low.assign(n, 0);
    equal_low.assign(n, 0);
    sweep(holdings, order, counts, same_high, has_low,
          [&](uint32_t i, int64_t below, int64_t equal) { below_low[i] = below, equal_low[i] = equal; });
    low_order.clear();
    for (uint32_t i : order)
      if (has_low(i)) low_order.push_back(i);
    std::stable_sort(low_order.begin(), low_order.end(),
                     [&](uint32_t a, uint32_t c) { return holdings[a].low > holdings[c].low; });
    worse_low.assign(n, 0);
    tied_low.assign(n, 0);
    sweep(
        holdings, low_order, counts, [&](uint32_t a, uint32_t c) { return holdings[a].low == holdings[c].low; },
        has_low, [&](uint32_t i, int64_t below, int64_t equal) { worse_low[i] = below, tied_low[i] = equal; });
    // The opponents with a low that share no card with each hero: the low counters hold them all now.
    with_low.assign(n, 0);
    for (size_t i = 0; i < n; ++i)
      with_low[i] = counts.disjoint(holdings[i].live.data(), has_low(static_cast<uint32_t>(i)));
    for (size_t i = 0; i < n; ++i) {
      int64_t quarters;
      if (holdings[i].low != 0) {
        // Every deal has a low: half the pot by high, half by low (won outright against no low).
        quarters = 2 * below_all[i] + equal_all[i] + 2 * (opponents - with_low[i]) + 2 * worse_low[i] + tied_low[i];
      } else {
        // The whole pot by high against no low; only the high half against a low.
        quarters =
            4 * (below_all[i] - below_low[i]) + 2 * (equal_all[i] - equal_low[i]) + 2 * below_low[i] + equal_low[i];
      }
      pot[holdings[i].klass] += weight * quarters;
    }
  }
  return pot;
}

std::vector<int64_t> count_preflop_range(const PreflopProblem& problem, const HoldingClasses& holdings,
                                         const std::vector<BoardClass>& boards, size_t first, size_t last,
                                         const RunControl& control) {
  // Pieces of a few boards, each summed into counts of its own thread; integer sums, so any order
  // gives the same totals.
  struct Pots {
    std::vector<int64_t> pot;
    void add(const Pots& other) {
      for (size_t i = 0; i < pot.size(); ++i) pot[i] += other.pot[i];
    }
  };
  // A 4-card board takes milliseconds, a 5- or 6-card one up to seconds: one board a piece then, so
  // that many threads share even a short range.
  const size_t kBoardsPerPiece = problem.hole == 4 ? 16 : 1;
  const size_t pieces = (last - first + kBoardsPerPiece - 1) / kBoardsPerPiece;
  return run_exact_units(static_cast<int>(pieces), Pots{std::vector<int64_t>(holdings.classes().size(), 0)}, control,
                         [&](int piece, Pots& out) {
                           const size_t from = first + static_cast<size_t>(piece) * kBoardsPerPiece;
                           const std::vector<int64_t> pot = count_preflop_boards(
                               problem, holdings, boards, from, std::min(last, from + kBoardsPerPiece));
                           for (size_t i = 0; i < pot.size(); ++i) out.pot[i] += pot[i];
                         })
      .pot;
}

PreflopProblem preflop_problem(EquityGame game, uint64_t deck) {
  const OmahaGame omaha = omaha_game(game);
  PreflopProblem problem{omaha.hole, omaha.hi_lo, deck & ((uint64_t{1} << 52) - 1)};
  if (problem.cards() < 2 * problem.hole + 5)
    throw Error("a deck of " + std::to_string(problem.cards()) + " cards cannot deal two holdings of " +
                std::to_string(problem.hole) + " and a board");
  return problem;
}

}  // namespace pokermath::detail

namespace pokermath {

uint64_t deck_of_ranks(std::string_view ranks) {
  if (ranks.empty()) return (uint64_t{1} << 52) - 1;
  uint64_t deck = 0;
  for (char letter : ranks) {
    const std::string_view kRanks = "23456789TJQKA";
    const size_t rank = kRanks.find(static_cast<char>(std::toupper(static_cast<unsigned char>(letter))));
    if (rank == std::string_view::npos)
      throw Error("ranks '" + std::string(ranks) + "': rank letters are 2 3 4 5 6 7 8 9 T J Q K A");
    for (int suit = 0; suit < 4; ++suit) deck |= uint64_t{1} << (13 * suit + static_cast<int>(rank));
  }
  return deck;
}

std::vector<OmahaPreflopEquity> compute_omaha_preflop(EquityGame game, uint64_t deck, int threads,
                                                      const WorkProgress& progress, std::stop_token stop) {
  if (threads < 0) throw Error("threads must be 0 (every core) or more, got " + std::to_string(threads));
  const detail::PreflopProblem problem = detail::preflop_problem(game, deck);
  const detail::HoldingClasses holdings(problem);
  const std::vector<detail::BoardClass> boards = detail::preflop_board_classes(problem);
  detail::RunControl control;
  control.threads = detail::threads_for(threads);
  control.progress = &progress;
  control.stop = std::move(stop);
  const std::vector<int64_t> pot = detail::count_preflop_range(problem, holdings, boards, 0, boards.size(), control);
  std::vector<OmahaPreflopEquity> out;
  const double deals = problem.deals_per_holding();
  for (size_t i = 0; i < holdings.classes().size(); ++i)
    out.push_back({holdings.classes()[i], holdings.sizes()[i],
                   static_cast<double>(pot[i]) / (4.0 * holdings.sizes()[i] * deals)});
  return out;
}

}  // namespace pokermath

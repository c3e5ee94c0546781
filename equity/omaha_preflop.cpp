#include "equity/omaha_preflop.h"

#include <algorithm>
#include <array>
#include <bit>
#include <memory>
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

// Card types on one board. The board cannot tell apart the live cards of one rank except the card of
// its flush suit (the suit with three or more board cards; a five-card board has at most one): so a
// rank's plain cards form one type (ids 0..12, by rank) and the flush suit's card of a rank its own
// (ids 13..25). A holding's type is the multiset of its cards' types; every holding of a type has
// the same values, and the permutations of each rank's plain cards map each type onto itself.
constexpr int kTypeIds = 26;

int rank_of_id(int id) { return id % 13; }

// The multiset index of ascending numbers x0 <= x1 <= ...: the combinatorial index of the distinct
// numbers x_i + i. Multisets of k numbers below n get the indices 0 .. C(n + k - 1, k) - 1.
uint32_t multiset_term(int x, int position) { return binomial(x + position, position + 1); }

// One holding type on one board.
struct HoldingType {
  std::array<uint8_t, kMaxHole> kind_id;     // its distinct card types, ascending
  std::array<uint8_t, kMaxHole> kind_count;  // how many cards of each
  int kinds;
  int64_t holdings;     // the live holdings of this type
  uint16_t high;        // larger is stronger
  uint8_t low;          // the best low's rank set, smaller is stronger; 0: no low
  uint32_t rank_index;  // the multiset index of its ranks
};

// Counters of the holdings swept so far that contain a given set of fewer than h live cards. A sweep
// adds whole types, and the permutations of a rank's plain cards keep every type, so two sets of the
// same type are contained in equally many of them: one counter per type of set (a multiset of card
// types, by its multiset index, after the counters of the smaller sizes). From these, the number of
// swept holdings sharing no card with a holding follows by inclusion-exclusion over its subsets.
class TypeCounts {
 public:
  explicit TypeCounts(int hole) : m_hole(hole) {
    uint32_t offset = 0;
    for (int k = 0; k < hole; ++k) {
      m_offset[static_cast<size_t>(k)] = offset;
      offset += binomial(kTypeIds + k - 1, k);
    }
    m_counts.assign(offset, 0);
  }
  void clear() { std::fill(m_counts.begin(), m_counts.end(), 0); }
  // Adds every holding of type t; `live` counts the live cards of each card type.
  void add(const HoldingType& t, const std::array<int, kTypeIds>& live) {
    for_each_subtype(t, live, [&](int size, uint32_t index, int64_t, int64_t containing) {
      m_counts[m_offset[static_cast<size_t>(size)] + index] += containing;
    });
  }
  // The swept holdings sharing no card with one holding of type t; `self` says whether t was swept.
  int64_t disjoint(const HoldingType& t, const std::array<int, kTypeIds>& live, bool self) const {
    int64_t sum = 0;
    for_each_subtype(t, live, [&](int size, uint32_t index, int64_t subsets, int64_t) {
      const int64_t term = subsets * m_counts[m_offset[static_cast<size_t>(size)] + index];
      sum += size % 2 == 0 ? term : -term;
    });
    if (self) sum += m_hole % 2 == 0 ? 1 : -1;  // the holding itself, which contains all its cards
    return sum;
  }

 private:
  // Calls visit(size, index, subsets, containing) for each type of proper subset of a holding of
  // type t: its size and multiset index, how many subsets of one such holding have it, and how many
  // holdings of type t contain one given set of it.
  template <typename Visit>
  void for_each_subtype(const HoldingType& t, const std::array<int, kTypeIds>& live, Visit visit) const {
    const auto step = [&](const auto& self, int kind, int size, uint32_t index, int64_t subsets,
                          int64_t containing) -> void {
      if (kind == t.kinds) {
        if (size < m_hole) visit(size, index, subsets, containing);
        return;
      }
      const int id = t.kind_id[static_cast<size_t>(kind)], count = t.kind_count[static_cast<size_t>(kind)];
      const int cards = live[static_cast<size_t>(id)];
      for (int u = 0;; ++u) {
        self(self, kind + 1, size + u, index, subsets * binomial(count, u),
             containing * binomial(cards - u, count - u));
        if (u == count) break;
        index += multiset_term(id, size + u);  // one more card of this type at position size + u
      }
    };
    step(step, 0, 0, 0, 1, 1);
  }

  int m_hole;
  std::array<uint32_t, kMaxHole> m_offset{};
  std::vector<int64_t> m_counts;
};

// Answers every holding on one board at a time and adds its pot to its class. The work per board
// is one pass over the holding types (a few thousand; tens of thousands with a flush suit) and one
// streaming pass over the holdings, which only looks up its type's answer and its class.
class BoardCounter {
 public:
  BoardCounter(const PreflopProblem& problem, const HoldingClasses& classes)
      : m_problem(problem),
        m_classes(classes),
        m_hole(problem.hole),
        m_rank_multisets(binomial(13 + problem.hole - 1, problem.hole)),
        m_counts(problem.hole),
        m_score(static_cast<size_t>(m_rank_multisets) << problem.hole) {}

  void count(const BoardClass& board, std::vector<int64_t>& pot) {
    find_types(board.board);
    answer_types();
    stream(static_cast<int64_t>(board.boards), pot);
  }

 private:
  // The live cards and their types, the pair values and the holding types of the board.
  void find_types(uint64_t board) {
    const uint64_t live_mask = m_problem.deck & ~board;
    int flush_suit = -1;
    for (int suit = 0; suit < 4; ++suit)
      if (std::popcount(board >> (13 * suit) & 0x1FFF) >= 3) flush_suit = suit;
    m_live.fill(0);
    std::array<std::array<int, 2>, kTypeIds> sample{};  // up to two live cards of each type
    m_positions.clear();
    m_ranks.clear();
    m_flush_cards.clear();
    const std::vector<int>& deck = m_classes.cards();
    for (size_t p = 0; p < deck.size(); ++p) {
      const int card = deck[p];
      if (!(live_mask >> card & 1)) continue;
      const bool flush = card / 13 == flush_suit;
      const int id = card % 13 + (flush ? 13 : 0);
      if (m_live[static_cast<size_t>(id)] < 2)
        sample[static_cast<size_t>(id)][static_cast<size_t>(m_live[static_cast<size_t>(id)])] = card;
      ++m_live[static_cast<size_t>(id)];
      m_positions.push_back(static_cast<uint32_t>(p));
      m_ranks.push_back(static_cast<uint32_t>(card % 13));
      m_flush_cards.push_back(flush ? 1u : 0u);
    }

    // Each pair of card types with its best three board cards.
    std::array<int, 5> board_cards{};
    for (int c = 0, i = 0; c < 52; ++c)
      if (board >> c & 1) board_cards[static_cast<size_t>(i++)] = c;
    std::array<uint64_t, 10> triple_key{}, triple_mask{};
    for (int i = 0, t = 0; i < 5; ++i)
      for (int j = i + 1; j < 5; ++j)
        for (int k = j + 1; k < 5; ++k, ++t)
          for (int c : {board_cards[i], board_cards[j], board_cards[k]}) {
            triple_key[t] += kCardKeys[c];
            triple_mask[t] |= uint64_t{1} << c;
          }
    for (int a = 0; a < kTypeIds; ++a)
      for (int b = a; b < kTypeIds; ++b) {
        const int need = a == b ? 2 : 1;
        if (m_live[static_cast<size_t>(a)] < need || m_live[static_cast<size_t>(b)] < need) continue;
        const int x = sample[static_cast<size_t>(a)][0], y = sample[static_cast<size_t>(b)][a == b ? 1 : 0];
        const uint64_t key = kKeyStart + kCardKeys[x] + kCardKeys[y];
        const uint64_t mask = uint64_t{1} << x | uint64_t{1} << y;
        int best = 0;
        for (int t = 0; t < 10; ++t)
          best = std::max(best, hand_value_of<Ranking::Holdem, 5>(key + triple_key[t], mask | triple_mask[t]));
        m_pair_value[static_cast<size_t>(a)][static_cast<size_t>(b)] = static_cast<uint16_t>(best);
      }
    const uint32_t board_low = low_rank_set(board_cards.data(), 5);

    // Every multiset of h card types that the live cards can fill.
    m_types.clear();
    std::array<uint8_t, kMaxHole> slots{};
    const auto choose = [&](const auto& self, int id, int size, HoldingType& t) -> void {
      if (size == m_hole) {
        add_type(t, slots, board_low);
        return;
      }
      if (id == kTypeIds) return;
      self(self, id + 1, size, t);
      const int most = std::min(m_live[static_cast<size_t>(id)], m_hole - size);
      if (most == 0) return;
      t.kind_id[static_cast<size_t>(t.kinds)] = static_cast<uint8_t>(id);
      ++t.kinds;
      for (int c = 1; c <= most; ++c) {
        slots[static_cast<size_t>(size + c - 1)] = static_cast<uint8_t>(id);
        t.kind_count[static_cast<size_t>(t.kinds - 1)] = static_cast<uint8_t>(c);
        self(self, id + 1, size + c, t);
      }
      --t.kinds;
    };
    HoldingType t{};
    choose(choose, 0, 0, t);
  }

  void add_type(HoldingType t, const std::array<uint8_t, kMaxHole>& slots, uint32_t board_low) {
    t.holdings = 1;
    for (int k = 0; k < t.kinds; ++k)
      t.holdings *= binomial(m_live[t.kind_id[static_cast<size_t>(k)]], t.kind_count[static_cast<size_t>(k)]);
    int high = 0;
    uint32_t low_ranks = 0;
    std::array<int, kMaxHole> ranks{};
    for (int i = 0; i < m_hole; ++i) {
      for (int j = i + 1; j < m_hole; ++j)
        high = std::max<int>(high, m_pair_value[slots[static_cast<size_t>(i)]][slots[static_cast<size_t>(j)]]);
      ranks[static_cast<size_t>(i)] = rank_of_id(slots[static_cast<size_t>(i)]);
      low_ranks |= low_rank_bit(ranks[static_cast<size_t>(i)]);  // a rank is its own card code's rank
    }
    for (int i = 1; i < m_hole; ++i)  // insertion sort of a handful
      for (int j = i; j > 0 && ranks[static_cast<size_t>(j - 1)] > ranks[static_cast<size_t>(j)]; --j)
        std::swap(ranks[static_cast<size_t>(j - 1)], ranks[static_cast<size_t>(j)]);
    t.rank_index = 0;
    for (int i = 0; i < m_hole; ++i) t.rank_index += multiset_term(ranks[static_cast<size_t>(i)], i);
    t.high = static_cast<uint16_t>(high);
    t.low = m_problem.hi_lo ? best_low_set(low_ranks, board_low) : 0;
    m_types.push_back(t);
  }

  // Sweeps the types in `order` (weakest first, `same` true between equal neighbours) through the
  // counters (cleared first), adding those `added` says; calls answer(i, below, equal) for each
  // type i: the added holdings sharing no card with one of its holdings that are weaker and equal.
  template <typename Same, typename Added, typename Answer>
  void sweep(const std::vector<uint32_t>& order, Same same, Added added, Answer answer) {
    m_counts.clear();
    for (size_t first = 0; first < order.size();) {
      size_t end = first + 1;
      while (end < order.size() && same(order[first], order[end])) ++end;
      m_below.clear();
      for (size_t i = first; i < end; ++i) m_below.push_back(m_counts.disjoint(m_types[order[i]], m_live, false));
      for (size_t i = first; i < end; ++i)
        if (added(order[i])) m_counts.add(m_types[order[i]], m_live);
      for (size_t i = first; i < end; ++i) {
        const int64_t at_most = m_counts.disjoint(m_types[order[i]], m_live, added(order[i]));
        answer(order[i], m_below[i - first], at_most - m_below[i - first]);
      }
      first = end;
    }
  }

  // The pot in quarters that each holding of each type wins against all opponent holdings.
  void answer_types() {
    const size_t n = m_types.size();
    m_order.resize(n);
    for (size_t i = 0; i < n; ++i) m_order[i] = static_cast<uint32_t>(i);
    std::stable_sort(m_order.begin(), m_order.end(),
                     [&](uint32_t a, uint32_t c) { return m_types[a].high < m_types[c].high; });
    const auto same_high = [&](uint32_t a, uint32_t c) { return m_types[a].high == m_types[c].high; };
    m_below_all.assign(n, 0);
    m_equal_all.assign(n, 0);
    sweep(
        m_order, same_high, [](uint32_t) { return true; },
        [&](uint32_t i, int64_t below, int64_t equal) { m_below_all[i] = below, m_equal_all[i] = equal; });
    m_type_score.assign(n, 0);
    if (!m_problem.hi_lo) {
      for (size_t i = 0; i < n; ++i) m_type_score[i] = 4 * m_below_all[i] + 2 * m_equal_all[i];
    } else {
      answer_hi_lo();
    }
    // The answers by (flush-card slots, rank multiset), the way the streaming pass finds them: its
    // holdings come with their cards by rank, and the flush suit's card of a rank may sit anywhere
    // among that rank's cards, so every such slot gets the answer.
    for (size_t i = 0; i < n; ++i) {
      const HoldingType& t = m_types[i];
      std::array<int, kMaxHole> run_start{}, run_length{};
      int runs = 0;
      // Slots of each rank in the holding's sorted ranks.
      std::array<int, 13> first_slot{}, count{};
      for (int k = 0; k < t.kinds; ++k)
        count[static_cast<size_t>(rank_of_id(t.kind_id[static_cast<size_t>(k)]))] +=
            t.kind_count[static_cast<size_t>(k)];
      for (int r = 0, slot = 0; r < 13; ++r) {
        first_slot[static_cast<size_t>(r)] = slot;
        slot += count[static_cast<size_t>(r)];
      }
      for (int k = 0; k < t.kinds; ++k)
        if (t.kind_id[static_cast<size_t>(k)] >= 13) {
          const int r = rank_of_id(t.kind_id[static_cast<size_t>(k)]);
          run_start[static_cast<size_t>(runs)] = first_slot[static_cast<size_t>(r)];
          run_length[static_cast<size_t>(runs)] = count[static_cast<size_t>(r)];
          ++runs;
        }
      std::array<int, kMaxHole> at{};
      for (;;) {
        uint32_t mask = 0;
        for (int r = 0; r < runs; ++r) mask |= 1u << (run_start[static_cast<size_t>(r)] + at[static_cast<size_t>(r)]);
        m_score[static_cast<size_t>(mask) * m_rank_multisets + t.rank_index] = m_type_score[i];
        int r = 0;
        while (r < runs && ++at[static_cast<size_t>(r)] == run_length[static_cast<size_t>(r)])
          at[static_cast<size_t>(r++)] = 0;
        if (r == runs) break;
      }
    }
  }

  // Hi/Lo: the high comparison against the opponents with a low, then the low comparison among them
  // (a larger rank set is a worse low, so the weakest come first in descending order of the set).
  void answer_hi_lo() {
    const size_t n = m_types.size();
    const auto has_low = [&](uint32_t i) { return m_types[i].low != 0; };
    const auto same_high = [&](uint32_t a, uint32_t c) { return m_types[a].high == m_types[c].high; };
    std::vector<int64_t> below_low(n), equal_low(n), worse_low(n), tied_low(n);
    sweep(m_order, same_high, has_low,
          [&](uint32_t i, int64_t below, int64_t equal) { below_low[i] = below, equal_low[i] = equal; });
    std::vector<uint32_t> low_order;
    for (uint32_t i : m_order)
      if (has_low(i)) low_order.push_back(i);
    std::stable_sort(low_order.begin(), low_order.end(),
                     [&](uint32_t a, uint32_t c) { return m_types[a].low > m_types[c].low; });
    sweep(
        low_order, [&](uint32_t a, uint32_t c) { return m_types[a].low == m_types[c].low; }, has_low,
        [&](uint32_t i, int64_t below, int64_t equal) { worse_low[i] = below, tied_low[i] = equal; });
    const int live_count = static_cast<int>(m_positions.size());
    const int64_t opponents = binomial(live_count - m_hole, m_hole);
    for (size_t i = 0; i < n; ++i) {
      const auto u = static_cast<uint32_t>(i);
      if (has_low(u)) {
        // Every deal has a low: half the pot by high, half by low (won outright against no low). The
        // low counters hold every holding with a low now.
        const int64_t with_low = m_counts.disjoint(m_types[i], m_live, true);
        m_type_score[i] =
            2 * m_below_all[i] + m_equal_all[i] + 2 * (opponents - with_low) + 2 * worse_low[i] + tied_low[i];
      } else {
        // The whole pot by high against no low; only the high half against a low.
        m_type_score[i] =
            4 * (m_below_all[i] - below_low[i]) + 2 * (m_equal_all[i] - equal_low[i]) + 2 * below_low[i] + equal_low[i];
      }
    }
  }

  // Adds each live holding's answer to its class, visiting the holdings in order of their
  // combinatorial index so that the class lookups stream through memory: the largest card in the
  // outer loop, the smallest in the inner one.
  void stream(int64_t weight, std::vector<int64_t>& pot) {
    m_pot = pot.data();
    m_weight = weight;
    m_class_by_index = m_classes.class_by_index().data();
    m_inner.resize(m_ranks.size());
    for (size_t i = 0; i < m_ranks.size(); ++i)
      m_inner[i] = m_ranks[i] + (m_flush_cards[i] ? m_rank_multisets : 0);  // the smallest card's slot 0
    stream_level(m_hole - 1, static_cast<int>(m_positions.size()), 0, 0, 0);
  }

  void stream_level(int level, int end, uint32_t index, uint32_t rank_index, uint32_t flush_slots) {
    if (level == 0) {
      const int64_t* score = m_score.data() + static_cast<size_t>(flush_slots) * m_rank_multisets + rank_index;
      const uint32_t* class_of = m_class_by_index + index;
      for (int i = 0; i < end; ++i)
        m_pot[class_of[m_positions[static_cast<size_t>(i)]]] += m_weight * score[m_inner[static_cast<size_t>(i)]];
      return;
    }
    for (int i = level; i < end; ++i) {
      const auto u = static_cast<size_t>(i);
      stream_level(level - 1, i, index + binomial(static_cast<int>(m_positions[u]), level + 1),
                   rank_index + multiset_term(static_cast<int>(m_ranks[u]), level),
                   flush_slots | m_flush_cards[u] << level);
    }
  }

  const PreflopProblem& m_problem;
  const HoldingClasses& m_classes;
  int m_hole;
  uint32_t m_rank_multisets;           // multisets of h ranks
  std::array<int, kTypeIds> m_live{};  // live cards of each card type
  std::array<std::array<uint16_t, kTypeIds>, kTypeIds> m_pair_value{};
  std::vector<uint32_t> m_positions, m_ranks, m_flush_cards, m_inner;  // per live card, by deck position
  std::vector<HoldingType> m_types;
  std::vector<uint32_t> m_order;
  std::vector<int64_t> m_below, m_below_all, m_equal_all, m_type_score;
  TypeCounts m_counts;
  std::vector<int64_t> m_score;  // by (flush-card slots, rank multiset index)
  int64_t* m_pot = nullptr;
  int64_t m_weight = 0;
  const uint32_t* m_class_by_index = nullptr;
};

}  // namespace

int PreflopProblem::cards() const { return std::popcount(deck); }

double PreflopProblem::deals_per_holding() const {
  const int rest = cards() - hole;
  return static_cast<double>(binomial(rest, 5)) * static_cast<double>(binomial(rest - 5, hole));
}

HoldingClasses::HoldingClasses(const PreflopProblem& problem) : m_hole(problem.hole) {
  if (problem.hole < 4 || problem.hole > kMaxHole) throw Error("Omaha holdings have 4, 5 or 6 cards");
  // Positions by rank, then suit: a holding's cards in ascending positions have ascending ranks.
  std::vector<int>& cards = m_cards;
  for (int rank = 0; rank < 13; ++rank)
    for (int suit = 0; suit < 4; ++suit) {
      const int c = 13 * suit + rank;
      if (!(problem.deck >> c & 1)) continue;
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

std::vector<int64_t> count_preflop_range(const PreflopProblem& problem, const HoldingClasses& holdings,
                                         const std::vector<BoardClass>& boards, size_t first, size_t last,
                                         const RunControl& control) {
  // Pieces of a few boards, each summed into counts of its own thread; integer sums, so any order
  // gives the same totals. Each thread keeps its board counter (its buffers take megabytes for 6-card
  // holdings), made at its first piece.
  struct Pots {
    std::vector<int64_t> pot;
    std::shared_ptr<BoardCounter> counter;
    void add(const Pots& other) {
      for (size_t i = 0; i < pot.size(); ++i) pot[i] += other.pot[i];
    }
  };
  // A 4- or 5-card board takes milliseconds, a 6-card one a good part of a second: fewer boards a
  // piece then, so that many threads share even a short range.
  const size_t kBoardsPerPiece = problem.hole == 6 ? 2 : 16;
  const size_t pieces = (last - first + kBoardsPerPiece - 1) / kBoardsPerPiece;
  return run_exact_units(static_cast<int>(pieces), Pots{std::vector<int64_t>(holdings.classes().size(), 0), nullptr},
                         control,
                         [&](int piece, Pots& out) {
                           if (!out.counter) out.counter = std::make_shared<BoardCounter>(problem, holdings);
                           const size_t from = first + static_cast<size_t>(piece) * kBoardsPerPiece;
                           for (size_t b = from; b < std::min(last, from + kBoardsPerPiece); ++b)
                             out.counter->count(boards[b], out.pot);
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

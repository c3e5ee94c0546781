// The best Omaha hand on a five-card board, one table read per hole pair.
//
// An Omaha hand plays exactly two hole cards and three board cards, so once the board is known the
// best hand of a hole pair depends only on the pair's two ranks, unless both cards are of the board's
// flush suit (a five-card board has at most one suit with three or more cards). Two tables hold the
// answers: for every multiset of five board ranks, the best non-flush value of each of the 91 rank
// pairs; and for every set of three to five board ranks of one suit, the best flush of each pair of
// that suit. Together about 1.6 MB, so a random deal reads from the caches, not from memory.
//
// eval_rank7_via_ofsm7 returns what the walk over "omaha-7.bin" returns (T[T[S + hole i] + hole j]
// from board state S, the largest over the pairs) on every valid deal, without reading the file:
// a random deal through the machine's 311 MB waits on memory for about ten reads.
#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <vector>

#include "eval/five_card_internal.h"
#include "pokermath/cards.h"
#include "pokermath/eval.h"

namespace pokermath::detail {

namespace {

constexpr int kRanks = 13;
constexpr int kPairs = 91;     // multisets of two ranks
constexpr int kTriples = 455;  // multisets of three ranks
constexpr uint32_t kRankMask = 0x1FFF;

// What the evaluation needs of a card code, in one small array per field (read with the code as the
// index, no address arithmetic): its bit in a mask with one 16-bit lane per suit (ranks in bits 0..12
// of the lane), a one in its suit's nibble (summed over the board, the nibbles count the cards of
// each suit), and its rank times 1, 13 and 169 for the pair and triple indexes. Codes 52..63 get a
// bit no card has, so the fast path checks its codes with one OR and one comparison (a code outside
// 0..63 fails the comparison) and finds these among its unusual bits.
constexpr uint64_t kNotACard = uint64_t{1} << 15;

template <typename T, typename F>
constexpr std::array<T, 64> per_code(F field) {
  std::array<T, 64> values{};
  for (int c = 0; c < 52; ++c) values[c] = static_cast<T>(field(c / 13, c % 13));
  return values;
}

constexpr auto kCardBit = [] {
  auto bits = per_code<uint64_t>([](int suit, int rank) { return uint64_t{1} << (16 * suit + rank); });
  for (int c = 52; c < 64; ++c) bits[c] = kNotACard;
  return bits;
}();
constexpr auto kSuitOne = per_code<uint16_t>([](int suit, int) { return 1 << (4 * suit); });
constexpr auto kRank1 = per_code<uint8_t>([](int, int rank) { return rank; });
constexpr auto kRank13 = per_code<uint8_t>([](int, int rank) { return kRanks * rank; });
constexpr auto kRank169 = per_code<uint16_t>([](int, int rank) { return kRanks * kRanks * rank; });

struct Tables {
  std::array<uint8_t, kRanks * kRanks> pair_index{};                          // (x, y) -> 0..90, either order
  std::array<uint16_t, kRanks * kRanks * kRanks> triple_index{};              // (x, y, z) -> 0..454, any order
  std::vector<uint16_t> board_id = std::vector<uint16_t>(kPairs * kTriples);  // pair, triple -> board
  std::vector<uint16_t> nonflush;                                             // kPairs values per board rank multiset
  std::array<uint16_t, 1 << kRanks> flush_id{};  // suited board ranks -> row; 0 (all zeros) below three
  std::vector<uint16_t> flush;                   // kPairs values per set of suited board ranks
};

int value_of_class(int five_card_class_value) { return 7463 - five_card_class_value; }

// Value of five ranks as a hand that is not a flush; no rank may appear five times.
int rank_only_value(const int* ranks) {
  uint32_t bits = 0, product = 1;
  for (int k = 0; k < 5; ++k) {
    bits |= 1u << (16 + ranks[k]);
    product *= static_cast<uint32_t>(kRankPrimes[ranks[k]]);
  }
  return value_of_class(five_card_class(bits, 0, product));
}

// The best non-flush value of rank pair (x, y) with three of the five board ranks.
int best_rank_only(int x, int y, const int* board) {
  int best = 0;
  for (int i = 0; i < 5; ++i)
    for (int j = i + 1; j < 5; ++j)
      for (int k = j + 1; k < 5; ++k) {
        const int five[5] = {x, y, board[i], board[j], board[k]};
        if (x == y && y == board[i] && board[i] == board[j] && board[j] == board[k]) continue;
        best = std::max(best, rank_only_value(five));
      }
  return best;
}

// The best flush of suited hole ranks x and y with three of the suited board ranks.
int best_flush(int x, int y, uint32_t board) {
  int best = 0;
  for (uint32_t sub = board; sub; sub = (sub - 1) & board)
    if (std::popcount(sub) == 3) best = std::max(best, value_of_class(kFlushes[sub | 1u << x | 1u << y]));
  return best;
}

Tables build_tables() {
  Tables t;
  std::vector<std::array<int, 2>> pairs;
  for (int x = 0; x < kRanks; ++x)
    for (int y = x; y < kRanks; ++y) {
      t.pair_index[kRanks * x + y] = t.pair_index[kRanks * y + x] = static_cast<uint8_t>(pairs.size());
      pairs.push_back({x, y});
    }
  std::vector<std::array<int, 3>> triples;
  for (int x = 0; x < kRanks; ++x)
    for (int y = x; y < kRanks; ++y)
      for (int z = y; z < kRanks; ++z) {
        const int perms[6][3] = {{x, y, z}, {x, z, y}, {y, x, z}, {y, z, x}, {z, x, y}, {z, y, x}};
        for (const auto& p : perms) t.triple_index[(kRanks * p[0] + p[1]) * kRanks + p[2]] = triples.size();
        triples.push_back({x, y, z});
      }

  // Every board rank multiset, found from each split into its first two and last three ranks.
  std::vector<int> id_of_sorted(kRanks * kRanks * kRanks * kRanks * kRanks, -1);
  for (int p = 0; p < kPairs; ++p)
    for (int q = 0; q < kTriples; ++q) {
      int board[5] = {pairs[p][0], pairs[p][1], triples[q][0], triples[q][1], triples[q][2]};
      std::sort(board, board + 5);
      if (board[0] == board[4]) continue;  // five of a rank: no board has it
      int key = 0;
      for (int r : board) key = key * kRanks + r;
      int& id = id_of_sorted[key];
      if (id < 0) {
        id = static_cast<int>(t.nonflush.size() / kPairs);
        for (const auto& [x, y] : pairs) t.nonflush.push_back(static_cast<uint16_t>(best_rank_only(x, y, board)));
      }
      t.board_id[kTriples * p + q] = static_cast<uint16_t>(id);
    }

  t.flush.assign(kPairs, 0);  // row 0: no flush
  for (uint32_t board = 0; board <= kRankMask; ++board) {
    if (std::popcount(board) < 3 || std::popcount(board) > 5) continue;
    t.flush_id[board] = static_cast<uint16_t>(t.flush.size() / kPairs);
    for (const auto& [x, y] : pairs) {
      const bool possible = x != y && !((board >> x) & 1) && !((board >> y) & 1);
      t.flush.push_back(static_cast<uint16_t>(possible ? best_flush(x, y, board) : 0));
    }
  }
  return t;
}

const Tables& tables() {
  static const Tables t = build_tables();
  return t;
}

// The board's part of the evaluation: its row of non-flush values, and the lane of the suit that
// has three or more board cards. A nibble of 3, 4 or 5 (at most one suit has that many) plus 5 sets
// the nibble's top bit. With no such suit the lane is the last suit's, which then has fewer than
// three board cards, and has_flush_suit is 0. All without branches: a board can make a flush 37%
// of the time, too often one way and too often the other for a branch to be predicted.
struct BoardView {
  const uint16_t* row;
  uint64_t bits;
  uint64_t sum;  // the sum of the card bits: equal to `bits` when no card appears twice
  int lane;
  uint32_t has_flush_suit;  // 1 or 0
};

inline BoardView view_board(const Tables& t, const int* board) {
  BoardView v{};
  uint32_t suit_counts = 0;
  for (int k = 0; k < 5; ++k) {
    v.bits |= kCardBit[board[k]];
    v.sum += kCardBit[board[k]];
    suit_counts += kSuitOne[board[k]];
  }
  const int id = t.board_id[kTriples * t.pair_index[kRank13[board[0]] + kRank1[board[1]]] +
                            t.triple_index[kRank169[board[2]] + kRank13[board[3]] + kRank1[board[4]]]];
  v.row = t.nonflush.data() + kPairs * id;
  const uint32_t flush_flags = (suit_counts + 0x5555) & 0x8888;
  v.lane = std::countr_zero(flush_flags | 0x8000) / 4 * 16;
  v.has_flush_suit = (flush_flags + 0x7FFF) >> 15;
  return v;
}

const uint16_t* flush_row(const Tables& t, const BoardView& v) {
  return t.flush.data() + kPairs * t.flush_id[(v.bits >> v.lane) & kRankMask];
}

// The best flush over pairs of the suited hole ranks.
int best_flush_of_pairs(const Tables& t, const uint16_t* row, uint32_t hole_suited) {
  int best = 0;
  for (uint32_t a = hole_suited; a; a &= a - 1) {
    const int x = kRanks * std::countr_zero(a);
    for (uint32_t b = a & (a - 1); b; b &= b - 1)
      best = std::max<int>(best, row[t.pair_index[x + std::countr_zero(b)]]);
  }
  return best;
}

// Any input: codes checked, a repeated board card gives 0, and a hole pair holding a card twice or a
// card also on the board counts 0 while the other pairs count as usual.
[[gnu::noinline, gnu::cold]] int best_of_pairs_checked(const Tables& t, const int* hole, int count, const int* board) {
  for (int k = 0; k < 5; ++k)
    if (static_cast<unsigned>(board[k]) > 51) return 0;
  for (int i = 0; i < count; ++i)
    if (static_cast<unsigned>(hole[i]) > 51) return 0;
  const BoardView v = view_board(t, board);
  if (v.sum != v.bits) return 0;
  const uint16_t* flushes = flush_row(t, v);
  int best = 0;
  for (int i = 0; i < count; ++i)
    for (int j = i + 1; j < count; ++j) {
      const uint64_t bi = kCardBit[hole[i]], bj = kCardBit[hole[j]];
      if (bi == bj || ((bi | bj) & v.bits)) continue;
      const int p = t.pair_index[kRank13[hole[i]] + kRank1[hole[j]]];
      const bool suited = v.has_flush_suit && ((bi >> v.lane) & kRankMask) && ((bj >> v.lane) & kRankMask);
      best = std::max<int>(best, std::max(v.row[p], suited ? flushes[p] : uint16_t{0}));
    }
  return best;
}

// The hot path of random deals, for kCount hole cards (0: `count` of them). Codes and repeats are
// checked with masks as the cards arrive; anything unusual goes to the checked path.
template <int kCount>
int best_of_pairs(const int* hole, int count, const int* board) {
  const int n = kCount ? kCount : count;
  unsigned codes = 0;
  for (int k = 0; k < 5; ++k) codes |= static_cast<unsigned>(board[k]);
  for (int i = 0; i < n; ++i) codes |= static_cast<unsigned>(hole[i]);
  if (codes > 63) return 0;

  const Tables& t = tables();
  const BoardView v = view_board(t, board);
  uint64_t bits = v.bits, sum = v.sum;
  for (int i = 0; i < n; ++i) {
    bits |= kCardBit[hole[i]];
    sum += kCardBit[hole[i]];
  }
  // The sum of distinct bits is their OR; a repeated card (or two codes from 52..63) makes it larger.
  if ((sum != bits) | ((bits & kNotACard) != 0)) return best_of_pairs_checked(t, hole, n, board);

  int best = 0;
  for (int i = 0; i < n; ++i)
    for (int j = i + 1; j < n; ++j) best = std::max<int>(best, v.row[t.pair_index[kRank13[hole[i]] + kRank1[hole[j]]]]);
  // Two or more hole cards of a suit with three or more on the board: about 7% of random deals.
  const uint32_t hole_suited = ((bits ^ v.bits) >> v.lane) & kRankMask & (0 - v.has_flush_suit);
  if (hole_suited & (hole_suited - 1)) best = std::max(best, best_flush_of_pairs(t, flush_row(t, v), hole_suited));
  return best;
}

}  // namespace
}  // namespace pokermath::detail

int eval_rank7_via_ofsm7(const int* hole, int count, const int* board) {
  using pokermath::detail::best_of_pairs;
  switch (count) {
    case 4: return best_of_pairs<4>(hole, count, board);
    case 5: return best_of_pairs<5>(hole, count, board);
    case 6: return best_of_pairs<6>(hole, count, board);
    case 2:
    case 3: return best_of_pairs<0>(hole, count, board);
    default: return 0;
  }
}

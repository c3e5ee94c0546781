// Exact counting of every board of a Hold'em deal by rank patterns.
//
// A player's hand is a flush only when some suit holds five of the player's seven cards, which
// takes three board cards of that suit or more: so at most one suit per board matters, and only
// where some player can reach five in it. Every other board is decided by ranks alone. The count
// therefore runs in two passes:
//   1. every multiset of ranks the missing board cards can have, weighted by the number of ways the
//      unseen cards deal it, valued as if no hand were a flush;
//   2. for each suit in which a player can make a flush, every set F of ranks the missing cards take
//      in that suit (as many as a flush needs, or more), with every multiset of ranks the other
//      missing cards take in the other suits: these boards were counted in pass 1 with the outcome
//      without flushes, so each adds its weight under its real winners and takes it away from the
//      winners pass 1 gave it (read back from a table by the board's rank multiset).
// A pre-flop heads-up deal needs about 6,000 rank patterns and 30,000 flush patterns instead of
// 1,712,304 boards; a flop about 300 instead of 990.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "equity/engine.h"
#include "eval/hand_key.h"

namespace pokermath::detail {

// One deal to count: the players' hole cards, the board so far and the cards out of play.
struct HoldemDeal {
  int players = 0;
  std::array<std::array<int, 2>, kMaxPlayers> holes{};
  std::array<int, 5> board{};
  int board_size = 0;
  uint64_t dead = 0;  // cards no board card can be (dead cards; the deuces to fives of the short deck)
};

// The slot of a rank multiset of five cards in the five-card table of ranking R: a dense index.
template <Ranking R>
inline uint32_t five_rank_slot(uint32_t sum) {
  constexpr RankTable t = rank_table<R, 5>();
  return (sum & ((1u << t.shift) - 1)) + t.rows[(sum & kSumMask) >> t.shift];
}

// The number of slots five_rank_slot can return.
template <Ranking R>
constexpr int five_rank_slots() {
  return R == Ranking::Holdem ? static_cast<int>(sizeof(kHoldemValues5) / sizeof(kHoldemValues5[0]))
                              : static_cast<int>(sizeof(kShortDeckValues5) / sizeof(kShortDeckValues5[0]));
}

// Adds every completion of the deal's board, `times` over, to counts (by winners).
template <Ranking R>
void count_boards(const HoldemDeal& deal, OutcomeCounts& counts, int64_t times);

// About how many patterns count_boards visits for `missing` board cards and `players` players,
// in lookups: the unit of the work estimates.
double board_pattern_work(int missing, int players);

extern template void count_boards<Ranking::Holdem>(const HoldemDeal&, OutcomeCounts&, int64_t);
extern template void count_boards<Ranking::ShortDeck>(const HoldemDeal&, OutcomeCounts&, int64_t);
extern template void count_boards<Ranking::China>(const HoldemDeal&, OutcomeCounts&, int64_t);

}  // namespace pokermath::detail

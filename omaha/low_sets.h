// Eight-or-better lows from sets of low ranks, for the engines that value many holdings per board.
//
// A low is five different ranks from ace to eight, two from the hole and three from the board.
// Written as the set of its ranks (bit 0 the ace, bit 1 the two, ..., bit 7 the eight), two lows
// compare as numbers: the larger set holds the higher top card, or the same top cards down to a
// higher one. So the best low of a hand is the smallest such set, found for every pair of hole and
// board rank sets once, in a 64 KB table.
#pragma once

#include <cstdint>

namespace pokermath::detail {

// The low-rank bit of a card code: the ace 1, the two 2, ..., the eight 128; 0 for nine to king.
inline uint32_t low_rank_bit(int card) {
  const int rank = card % 13;  // 0..12 = 2..A
  return rank == 12 ? 1u : rank <= 6 ? 2u << rank : 0u;
}

inline uint32_t low_rank_set(const int* cards, int count) {
  uint32_t set = 0;
  for (int i = 0; i < count; ++i) set |= low_rank_bit(cards[i]);
  return set;
}

// The best low of a hand whose hole cards hold the low ranks `hole` and whose board holds `board`
// (8-bit sets): the set of its five ranks, smaller is better; 0 when there is no low.
uint8_t best_low_set(uint32_t hole, uint32_t board);

}  // namespace pokermath::detail

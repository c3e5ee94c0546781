// The cache-resident evaluator: a hand as one 64-bit key and a card mask, valued by two reads from
// tables of about 130 KB (Hold'em) that stay in the caches.
//
// A card's key holds its rank key in bits 0..31 and a one in its suit's nibble in bits 32..47. A
// hand's key is the sum of its cards' keys plus kKeyStart, so adding a card is one addition and a
// board's key plus a hole pair's key is the key of the seven cards:
//   - bits 0..31: the sum of the rank keys. Multisets of ranks of one size have distinct sums modulo
//     2^kSumBits (the generator's search), and a perfect hash maps the sum to the best value the
//     ranks make without a flush;
//   - bits 32..47: the cards of each suit, counted from 3, so bit 3 of a nibble is set exactly when
//     the suit holds five cards or more: then the hand is a flush (a flush beats whatever else five
//     to seven cards make), valued by the suit's ranks, read from the mask.
#pragma once

#include <array>
#include <bit>
#include <cstdint>

#include "hand_tables.h"

namespace pokermath::detail {

inline constexpr uint64_t kKeyStart = uint64_t{0x3333} << 32;
inline constexpr uint64_t kFlushBits = uint64_t{0x8888} << 32;
inline constexpr uint32_t kSumMask = (1u << kSumBits) - 1;

// The key of each card code.
inline constexpr std::array<uint64_t, 52> kCardKeys = [] {
  std::array<uint64_t, 52> keys{};
  for (int c = 0; c < 52; ++c) keys[c] = kRankKeys[c % 13] | uint64_t{1} << (32 + 4 * (c / 13));
  return keys;
}();

// The sum of the rank keys of each 13-bit set of ranks (bit r = rank r): the rank part of the key of
// one suit's cards (32 KB, computed by the compiler).
inline constexpr std::array<uint32_t, 8192> kRankSetSums = [] {
  std::array<uint32_t, 8192> sums{};
  for (uint32_t set = 1; set < 8192; ++set)
    sums[set] = sums[set & (set - 1)] + kRankKeys[std::countr_zero(set)];
  return sums;
}();

// The rankings the tables answer for.
enum class Ranking { Holdem, ShortDeck, China };

// The tables of one ranking and hand size.
struct RankTable {
  const uint16_t* rows;
  const uint16_t* values;
  int shift;
};

template <Ranking R, int Cards>
constexpr RankTable rank_table() {
  static_assert(Cards >= 5 && Cards <= 7);
  if constexpr (R == Ranking::Holdem) {
    if constexpr (Cards == 5) return {kHoldemRows5, kHoldemValues5, kHoldemShift5};
    if constexpr (Cards == 6) return {kHoldemRows6, kHoldemValues6, kHoldemShift6};
    if constexpr (Cards == 7) return {kHoldemRows7, kHoldemValues7, kHoldemShift7};
  } else {
    constexpr bool china = R == Ranking::China;
    if constexpr (Cards == 5) return {kShortDeckRows5, china ? kChinaValues5 : kShortDeckValues5, kShortDeckShift5};
    if constexpr (Cards == 6) return {kShortDeckRows6, china ? kChinaValues6 : kShortDeckValues6, kShortDeckShift6};
    if constexpr (Cards == 7) return {kShortDeckRows7, china ? kChinaValues7 : kShortDeckValues7, kShortDeckShift7};
  }
}

// The best value of Cards cards without a flush, from the rank part of their key.
template <Ranking R, int Cards>
inline int rank_value(uint32_t sum) {
  constexpr RankTable t = rank_table<R, Cards>();
  const uint32_t row = (sum & kSumMask) >> t.shift;
  return t.values[(sum & ((1u << t.shift) - 1)) + t.rows[row]];
}

// The best flush of a suit's ranks (13 bits, five or more set).
template <Ranking R>
inline int flush_value(uint32_t ranks) {
  if constexpr (R == Ranking::Holdem)
    return kHoldemFlush[ranks];
  else
    return kShortDeckFlush[ranks >> 4];
}

// The suit whose nibble is full, given a key with some bit of kFlushBits set.
inline int flush_suit(uint64_t key) { return (std::countr_zero(key & kFlushBits) - 35) / 4; }

// The value of Cards cards from their key and card mask.
template <Ranking R, int Cards>
inline int hand_value_of(uint64_t key, uint64_t mask) {
  if (key & kFlushBits) [[unlikely]]
    return flush_value<R>(static_cast<uint32_t>(mask >> (13 * flush_suit(key))) & 0x1FFF);
  return rank_value<R, Cards>(static_cast<uint32_t>(key));
}

// The cards below six: ranks 2..5 of every suit.
inline constexpr uint64_t kBelowSix =
    uint64_t{0xF} | uint64_t{0xF} << 13 | uint64_t{0xF} << 26 | uint64_t{0xF} << 39;

// The value of a hand given as a card mask; `bad` is set (never cleared) when the mask is not a hand
// of 5 to 7 cards of the ranking's deck. The rank part of the key is the sum of the four suits'
// entries in kRankSetSums.
template <Ranking R>
inline int mask_value(uint64_t mask, bool& bad) {
  const int n = std::popcount(mask);
  if ((mask >> 52) != 0 || n < 5 || n > 7 || (R != Ranking::Holdem && (mask & kBelowSix) != 0)) [[unlikely]] {
    bad = true;
    return 0;
  }
  const uint32_t suits[4] = {static_cast<uint32_t>(mask) & 0x1FFF, static_cast<uint32_t>(mask >> 13) & 0x1FFF,
                             static_cast<uint32_t>(mask >> 26) & 0x1FFF, static_cast<uint32_t>(mask >> 39) & 0x1FFF};
  for (uint32_t s : suits)
    if (std::popcount(s) >= 5) return flush_value<R>(s);
  const uint32_t sum = kRankSetSums[suits[0]] + kRankSetSums[suits[1]] + kRankSetSums[suits[2]] + kRankSetSums[suits[3]];
  switch (n) {
    case 5: return rank_value<R, 5>(sum);
    case 6: return rank_value<R, 6>(sum);
    default: return rank_value<R, 7>(sum);
  }
}

// A hand built one card at a time. The engines build the board's state once and add each player's
// hole cards on top: the sum of their two card keys and the OR of their bits.
struct HandState {
  uint64_t key = kKeyStart;
  uint64_t mask = 0;

  void add(int card) {
    key += kCardKeys[card];
    mask |= uint64_t{1} << card;
  }
};

}  // namespace pokermath::detail

// Helpers shared by the Omaha range sources: holding enumeration, the hand-type test and the printed
// forms of numbers and holdings.
#pragma once

#include <algorithm>
#include <bit>
#include <cstdint>
#include <string>
#include <vector>

#include "pokermath/ranges.h"

namespace pokermath::detail {

inline constexpr uint64_t kFullDeck = (uint64_t{1} << 52) - 1;

// True for a mask of exactly `hole_cards` cards among codes 0..51.
inline bool valid_holding(uint64_t cards, int hole_cards) {
  return (cards & ~kFullDeck) == 0 && std::popcount(cards) == hole_cards;
}

// The next larger mask with the same number of bits (Gosper's hack). Walking from the smallest mask
// of k bits visits every k-card holding in ascending order, so a filtered walk needs no sort.
inline uint64_t next_same_popcount(uint64_t x) {
  const uint64_t low = x & (~x + 1);
  const uint64_t ripple = x + low;
  return ripple | (((x ^ ripple) >> 2) >> std::countr_zero(x));
}

// Calls f(mask) for every holding of `hole_cards` cards, ascending.
template <class F>
void for_each_holding(int hole_cards, F&& f) {
  for (uint64_t x = (uint64_t{1} << hole_cards) - 1; x <= kFullDeck; x = next_same_popcount(x)) f(x);
}

// The 13-bit rank set of each suit (clubs first).
inline void suit_words(uint64_t cards, uint32_t words[4]) {
  for (int s = 0; s < 4; ++s) words[s] = static_cast<uint32_t>((cards >> (13 * s)) & 0x1FFF);
}

// Walks two ascending holding lists together; `take(a, b)` gets the holding of each side (nullptr
// when absent) and returns the weight to keep, 0 to drop the holding.
template <class Take>
std::vector<OmahaHolding> merge_holdings(const std::vector<OmahaHolding>& a, const std::vector<OmahaHolding>& b,
                                         Take take) {
  std::vector<OmahaHolding> out;
  out.reserve(std::max(a.size(), b.size()));
  size_t i = 0, j = 0;
  while (i < a.size() || j < b.size()) {
    const OmahaHolding* x = i < a.size() && (j == b.size() || a[i].cards <= b[j].cards) ? &a[i] : nullptr;
    const OmahaHolding* y = j < b.size() && (i == a.size() || b[j].cards <= a[i].cards) ? &b[j] : nullptr;
    const uint64_t cards = x ? x->cards : y->cards;
    if (const double w = take(x, y); w > 0) out.push_back({cards, w});
    i += x != nullptr;
    j += y != nullptr;
  }
  return out;
}

// omaha_hand_type without the check of the mask.
OmahaHandType hand_type_unchecked(uint64_t cards);

// Writes the members of the suit class of `cards` to `out` (appended, unsorted, without duplicates).
void append_suit_class_members(uint64_t cards, std::vector<uint64_t>& out);

// The shortest decimal form that reads back to `value`, without exponent or trailing zeros ("50",
// "2.5").
std::string format_number(double value);

// A holding as text: cards from the highest rank down, equal ranks clubs first ("AsKsQhJh").
std::string holding_to_string(uint64_t cards);

// The holdings themselves as a range text: "AsKsQhJh,AcKcQdJd@50" (empty for no holdings).
std::string holdings_text(const std::vector<OmahaHolding>& holdings);

}  // namespace pokermath::detail

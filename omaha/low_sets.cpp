// The table behind best_low_set: for every hole and board rank set, the best two-plus-three low.
#include "omaha/low_sets.h"

#include <array>
#include <bit>

namespace pokermath::detail {

namespace {

// The three lowest ranks of `ranks`, or 0 when it holds fewer than three.
uint32_t lowest_three(uint32_t ranks) {
  if (std::popcount(ranks) < 3) return 0;
  uint32_t out = 0;
  for (int i = 0; i < 3; ++i) {
    out |= ranks & -ranks;
    ranks &= ranks - 1;
  }
  return out;
}

std::array<uint8_t, 65536> make_table() {
  std::array<uint8_t, 65536> table{};
  for (uint32_t hole = 0; hole < 256; ++hole)
    for (uint32_t board = 0; board < 256; ++board) {
      uint32_t best = 0;
      for (uint32_t a = hole; a; a &= a - 1)
        for (uint32_t b = a & (a - 1); b; b &= b - 1) {
          const uint32_t pair = (a & -a) | (b & -b);
          const uint32_t three = lowest_three(board & ~pair);
          if (three && (!best || (pair | three) < best)) best = pair | three;
        }
      table[hole << 8 | board] = static_cast<uint8_t>(best);
    }
  return table;
}

}  // namespace

uint8_t best_low_set(uint32_t hole, uint32_t board) {
  static const std::array<uint8_t, 65536> table = make_table();
  return table[(hole & 0xFF) << 8 | (board & 0xFF)];
}

}  // namespace pokermath::detail

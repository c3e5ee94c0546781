// Exact Hold'em enumeration shared by the classic engines and the pokermath:: API.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "pokermath/eval.h"

namespace pokermath::detail {

// Boards won, tied and counted for the first of two hands.
struct HeadsUpCounts {
  int64_t wins = 0;
  int64_t ties = 0;
  int64_t boards = 0;
};

// Two hands of two card codes over every completion of `board` to five cards (missing 5) or, with
// `to_turn`, to four cards, from the seven-card table (HR).
HeadsUpCounts heads_up_counts(const uint32_t* HR, const int* hero, const int* villain, const int* board, int boardCount,
                              uint64_t dead_cards, bool to_turn = false);

// Several hands over every completion of the board to five cards: for each player the deals won
// alone, the deals split, and its share of the pots in units of 1/2520 (2520 = lcm(1..10), so a
// k-way split is a whole number of units).
struct MultiwayCounts {
  std::vector<int64_t> wins, ties, share_units;
  int64_t boards = 0;
};
inline constexpr int64_t kShareUnit = 2520;
void add_multiway_counts(const uint32_t* HR, const std::array<int, 2>* hands, int players, const int* board,
                         int boardCount, uint64_t dead_cards, MultiwayCounts& counts);

}  // namespace pokermath::detail

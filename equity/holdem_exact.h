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

}  // namespace pokermath::detail

// The board walk of the Omaha ("Common") engines: every completion of a board, each player's best
// two-plus-three value on it. Walked through "omaha-7.bin" when it is loaded (the board's state
// carried from loop to loop, two reads per hole pair), else by eval_rank7_via_ofsm7 board by board
// (the same values, about 15% slower, no 311 MB table).
#pragma once

#include <algorithm>
#include <cstdint>

#include "equity/engine.h"
#include "pokermath/omaha.h"

namespace pokermath::detail {

inline constexpr int kMaxHole = 6;

// Each player's hole cards, one after another.
struct Hands {
  const int* cards;  // players x h card codes, the hero first
  int h;
  int players;
};

// Best value of each player on the complete board `board` (five card codes).
inline void values_on_board(const Hands& hands, const int* board, int* values) {
  for (int p = 0; p < hands.players; ++p) values[p] = eval_rank7_via_ofsm7(hands.cards + p * hands.h, hands.h, board);
}

// Calls visit(values, board) for every completion of the board by the cards not in `dead`: each
// player's best value and the five board cards.
template <typename Visit>
void for_each_board(const Hands& hands, const int* board, int boardCount, uint64_t dead, Visit visit) {
  const int* T = ofsm_omaha7::table;
  int values[kMaxPlayers];
  if (!T) {
    int full[5];
    std::copy(board, board + boardCount, full);
    const int missing = 5 - boardCount;
    auto level = [&](auto& self, int depth, int first) -> void {
      for (int c = first; c < 52; ++c) {
        if (dead >> c & 1) continue;
        full[boardCount + depth] = c;
        if (depth + 1 == missing) {
          values_on_board(hands, full, values);
          visit(static_cast<const int*>(values), static_cast<const int*>(full));
        } else {
          self(self, depth + 1, c + 1);
        }
      }
    };
    if (missing == 0) {
      values_on_board(hands, full, values);
      visit(static_cast<const int*>(values), static_cast<const int*>(full));
    } else {
      level(level, 0, 0);
    }
    return;
  }
  // The state machine: rank-major codes, the board's state carried down the loop levels.
  int hole[kMaxPlayers][kMaxHole];
  for (int p = 0; p < hands.players; ++p)
    for (int i = 0; i < hands.h; ++i) hole[p][i] = pokermath::kRankMajorCodes[hands.cards[p * hands.h + i]];
  uint64_t dead_major = 0;
  for (int c = 0; c < 52; ++c)
    if (dead >> c & 1) dead_major |= uint64_t{1} << pokermath::kRankMajorCodes[c];
  int start = 52;
  int full[5];
  std::copy(board, board + boardCount, full);
  for (int i = 0; i < boardCount; ++i) start = T[start + pokermath::kRankMajorCodes[board[i]]];
  auto evaluate = [&](int state) {
    for (int p = 0; p < hands.players; ++p) {
      int best = 0;
      for (int i = 0; i + 1 < hands.h; ++i) {
        const int* row = T + T[state + hole[p][i]];
        for (int j = i + 1; j < hands.h; ++j) best = std::max(best, row[hole[p][j]]);
      }
      values[p] = best;
    }
    visit(static_cast<const int*>(values), static_cast<const int*>(full));
  };
  const int missing = 5 - boardCount;
  auto level = [&](auto& self, int depth, int first, int state) -> void {
    for (int x = first; x < 52; ++x) {
      if (dead_major >> x & 1) continue;
      full[boardCount + depth] = 13 * (x % 4) + x / 4;  // the card code of rank-major code x
      const int next = T[state + x];
      if (depth + 1 == missing)
        evaluate(next);
      else
        self(self, depth + 1, x + 1, next);
    }
  };
  if (missing == 0)
    evaluate(start);
  else
    level(level, 0, 0, start);
}

}  // namespace pokermath::detail

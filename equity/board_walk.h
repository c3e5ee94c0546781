// The enumeration skeleton of the exact equity engines.
//
// Every engine counts the same thing: each completion of the board by the missing cards, once. The
// order in which completions are visited does not change a count, so the walk goes in the order
// that suits the evaluator: the seven-card table is walked in its own card order (one-based
// rank-major codes 1..52), and each player's table state is carried down the loop levels, so the
// innermost loop costs one read per player.
#pragma once

#include <cstdint>

namespace pokermath::detail {

inline constexpr int kMaxWalkPlayers = 10;

// Walks every completion by `missing` (1..5) cards, leaving the last card to the caller:
// visit_rows(states, first) gets each player's table state before the last card and the first
// code the last card may take, and sweeps the rows itself (HR + state, codes first..52): a tight
// loop the compiler vectorises. `states` holds each player's state after its known cards; `dead`
// has bit x set for each one-based code x already in play.
template <int Depth, typename Visit>
void walk_table_rows_level(const uint32_t* HR, const uint32_t* states, int players, uint64_t dead, int first,
                           Visit& visit_rows) {
  if constexpr (Depth == 1) {
    visit_rows(states, first);
  } else {
    uint32_t next[kMaxWalkPlayers];
    for (int x = first; x <= 52; ++x) {
      if (dead >> x & 1) continue;
      for (int p = 0; p < players; ++p) next[p] = HR[states[p] + x];
      walk_table_rows_level<Depth - 1>(HR, next, players, dead, x + 1, visit_rows);
    }
  }
}

template <typename Visit>
void walk_seven_card_table_rows(const uint32_t* HR, const uint32_t* states, int players, uint64_t dead, int missing,
                                Visit visit_rows) {
  switch (missing) {
    case 1: walk_table_rows_level<1>(HR, states, players, dead, 1, visit_rows); break;
    case 2: walk_table_rows_level<2>(HR, states, players, dead, 1, visit_rows); break;
    case 3: walk_table_rows_level<3>(HR, states, players, dead, 1, visit_rows); break;
    case 4: walk_table_rows_level<4>(HR, states, players, dead, 1, visit_rows); break;
    default: walk_table_rows_level<5>(HR, states, players, dead, 1, visit_rows); break;
  }
}

// The same with one call per completion: visit(states) gets each player's state after all missing
// cards (the seven-card values when the hands reach seven cards).
template <typename Visit>
void walk_seven_card_table(const uint32_t* HR, const uint32_t* states, int players, uint64_t dead, int missing,
                           Visit visit) {
  if (missing == 0) {
    visit(states);
    return;
  }
  walk_seven_card_table_rows(HR, states, players, dead, missing, [&](const uint32_t* before_last, int first) {
    uint32_t last[kMaxWalkPlayers];
    for (int x = first; x <= 52; ++x) {
      if (dead >> x & 1) continue;
      for (int p = 0; p < players; ++p) last[p] = HR[before_last[p] + x];
      visit(static_cast<const uint32_t*>(last));
    }
  });
}

// 1 for each one-based code 1..52 not in `dead`, 0 otherwise (index 0 unused): multiplying by it
// skips cards in play without a branch in the innermost loop.
struct AliveCodes {
  uint32_t alive[53];
  explicit AliveCodes(uint64_t dead) {
    for (int x = 0; x <= 52; ++x) alive[x] = x > 0 && !(dead >> x & 1);
  }
};

// The seven-card table's state after the given card codes (any order): HR[53 + x1], then
// HR[p + xk] with one-based rank-major codes x. With no cards it is the start block 53.
inline uint32_t table_state(const uint32_t* HR, const int* cards, int n) {
  uint32_t p = 53;
  for (int i = 0; i < n; ++i) p = HR[p + static_cast<uint32_t>(4 * (cards[i] % 13) + cards[i] / 13 + 1)];
  return p;
}

// The mask of one-based rank-major codes of the given card codes.
inline uint64_t one_based_mask(const int* cards, int n) {
  uint64_t mask = 0;
  for (int i = 0; i < n; ++i) mask |= uint64_t{1} << (4 * (cards[i] % 13) + cards[i] / 13 + 1);
  return mask;
}

// Calls visit(cards) for every strictly increasing set of `missing` card codes not in `dead`, in
// increasing order (the first card slowest): the plain enumeration for evaluators without state.
template <typename Visit>
void for_each_completion(uint64_t dead, int missing, Visit visit) {
  int cards[5];
  auto level = [&](auto& self, int depth, int first) -> void {
    if (depth >= 5) return;  // at most five missing cards
    for (int c = first; c < 52; ++c) {
      if (dead >> c & 1) continue;
      cards[depth] = c;
      if (depth + 1 == missing)
        visit(static_cast<const int*>(cards));
      else
        self(self, depth + 1, c + 1);
    }
  };
  if (missing == 0)
    visit(static_cast<const int*>(cards));
  else
    level(level, 0, 0);
}

}  // namespace pokermath::detail

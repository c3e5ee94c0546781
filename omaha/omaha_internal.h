// Helpers shared by the Omaha outs, nuts and the pokermath:: Omaha API.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "cards/draw.h"
#include "pokermath/omaha.h"

namespace pokermath::detail {

// The mask of the hole and board cards.
uint64_t seen_cards(const int* hole, int nHole, const int* board, int nBoard);

// Calls visit(card) for every card not in `seen`, in ascending code order.
template <typename Visit>
void for_each_unseen(uint64_t seen, Visit visit) {
  for (int c = 0; c < 52; ++c)
    if (!(seen >> c & 1)) visit(c);
}

// Calls visit(a, b) for every pair a < b of cards not in `seen`, in ascending order.
template <typename Visit>
void for_each_unseen_pair(uint64_t seen, Visit visit) {
  for (int a = 0; a < 51; ++a) {
    if (seen >> a & 1) continue;
    for (int b = a + 1; b < 52; ++b)
      if (!(seen >> b & 1)) visit(a, b);
  }
}

// State-machine value of a two-card holding with the board.
int best_pair_value(const int* pair, const int* board, int nBoard);

// The best two-card holdings of unseen cards on a board: their value and the pairs reaching it.
struct NutHoldings {
  int value = -1;
  std::vector<std::array<int, 2>> holdings;
};
NutHoldings nut_holdings(uint64_t seen, const int* board, int nBoard);

// Calls visit(card, new value, new category) for every unseen card that is an out of the hand:
// it lifts the state-machine category; or, from a straight, makes a better straight with higher
// hole cards (the hole ranks used add up to more); or, from a full house, makes a better one.
template <typename Visit>
void for_each_state_machine_out(const int* hole, int nHole, const int* board, int nBoard, Visit visit) {
  int used[5];
  const int value = getCombinationOmahaFsm5Common(hole, nHole, board, nBoard, used);
  const int category = Get_rankFsm5(value);
  const int hole_sum = hole[used[0]] % 13 + hole[used[1]] % 13;
  int extended[6];
  std::copy(board, board + nBoard, extended);
  for_each_unseen(seen_cards(hole, nHole, board, nBoard), [&](int card) {
    extended[nBoard] = card;
    const int new_value = getCombinationOmahaFsm5Common(hole, nHole, extended, nBoard + 1, used);
    const int new_category = Get_rankFsm5(new_value);
    const bool better_straight =
        category == 5 && new_value > value && hole[used[0]] % 13 + hole[used[1]] % 13 > hole_sum;
    const bool better_full_house = category == 7 && new_value > value;
    if (new_category > category || better_straight || better_full_house) visit(card, new_value, new_category);
  });
}

// The deals of the multiway Omaha Monte Carlo engines: the hero's four cards and the given board
// are known; each deal completes the board, then deals the opponents, every card drawn against all
// the cards known so far in the deal. The generator is the process-wide one, seeded from the clock.
class OmahaDeals {
 public:
  OmahaDeals(const int* hole, const int* board, int nBoard) : m_given(4 + nBoard), m_board_cards(nBoard) {
    std::copy(hole, hole + 4, m_known);
    std::copy(board, board + nBoard, m_known + 4);
    std::copy(board, board + nBoard, m_board);
    m_random.SetTimerSeed();
  }

  // Starts a deal and returns its complete five-card board.
  const int* next_board() {
    std::fill(m_known + m_given, m_known + 64, -1);
    m_count = m_given;
    for (int i = m_board_cards; i < 5; ++i) m_board[i] = draw_unknown_card(m_random, m_known, m_count);
    return m_board;
  }

  // Deals the next opponent's four cards.
  void next_opponent(int* cards) {
    for (int i = 0; i < 4; ++i) cards[i] = draw_unknown_card(m_random, m_known, m_count);
  }

 private:
  int m_known[64];
  int m_board[5];
  int m_given, m_board_cards, m_count = 0;
  EasyRandom m_random{0, 51};
};

}  // namespace pokermath::detail

// Validation of Omaha cards at the pokermath:: edge. Every check throws pokermath::Error with a
// message that names the bad input: the group (hole, board, hand), the position and the card.
#pragma once

#include <span>

namespace pokermath::detail {

// Checks 4 to 6 hole cards and min_board to max_board board cards: codes 0..51, and no card twice,
// whether within the hole, within the board or in both.
void check_hole_and_board(std::span<const int> hole, std::span<const int> board, int min_board, int max_board);

// Checks a four-card starting hand: exactly four distinct codes 0..51.
void check_starting_hand(std::span<const int> hand);

}  // namespace pokermath::detail

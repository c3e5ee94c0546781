// The checks of the pokermath:: evaluation calls, with the messages they throw.
#pragma once

#include <span>

namespace pokermath::detail {

// Throws Error unless `cards` holds low..high distinct card codes 0..51.
void check_hand(std::span<const int> cards, int low, int high);
// The same, and every card a six or higher (the short deck).
void check_short_deck_hand(std::span<const int> cards, int low, int high);

}  // namespace pokermath::detail

// Validation of Omaha cards at the pokermath:: edge.
#include "omaha/input_checks.h"

#include <cstdint>
#include <string>

#include "pokermath/cards.h"

namespace pokermath::detail {

namespace {

void check_count(std::span<const int> cards, int low, int high, const std::string& what) {
  const int n = static_cast<int>(cards.size());
  if (n >= low && n <= high) return;
  const std::string range = low == high ? std::to_string(low) : std::to_string(low) + " to " + std::to_string(high);
  throw Error("expected " + range + " " + what + ", got " + std::to_string(n));
}

// Adds the group's cards to `seen`. `group` names the cards in messages ("hole card"); `other` is
// the group already seen, for the message of a card that is in both.
void add_cards(std::span<const int> cards, const std::string& group, const char* other, uint64_t& seen) {
  const uint64_t before = seen;
  for (size_t i = 0; i < cards.size(); ++i) {
    const int card = cards[i];
    const std::string where = " at " + group + " position " + std::to_string(i + 1);
    if (card < 0 || card > 51) throw Error("bad card code " + std::to_string(card) + where + ": must be 0..51");
    const uint64_t bit = uint64_t{1} << card;
    if (before & bit) throw Error("card '" + card_to_string(card) + "'" + where + " is also " + other);
    if (seen & bit) throw Error("duplicate card '" + card_to_string(card) + "'" + where);
    seen |= bit;
  }
}

}  // namespace

void check_hole_and_board(std::span<const int> hole, std::span<const int> board, int min_board, int max_board) {
  check_count(hole, 4, 6, "hole cards");
  check_count(board, min_board, max_board, "board cards");
  uint64_t seen = 0;
  add_cards(hole, "hole", "", seen);
  add_cards(board, "board", "in the hole", seen);
}

void check_starting_hand(std::span<const int> hand) {
  check_count(hand, 4, 4, "cards in an Omaha starting hand");
  uint64_t seen = 0;
  add_cards(hand, "hand", "", seen);
}

}  // namespace pokermath::detail

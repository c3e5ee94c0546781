// The players of a Hold'em equity request: the hands each may hold, whether they can be dealt
// together, and the tuples of hands grouped by permutations of suits.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "equity/engine.h"
#include "equity/matchups.h"
#include "pokermath/equity.h"

namespace pokermath::detail {

// A two-card hand and its weight in the player's range, 0 < weight <= 1 (a range's "@50" is 0.5).
struct Combo {
  std::array<int, 2> cards;
  uint64_t mask;
  double weight = 1;
};

struct HoldemPlayer {
  std::string text;
  std::vector<Combo> combos;  // the hands the player may hold, none touching a known card
  bool fixed = false;         // one given hand
  bool random = false;        // any hand
  bool weighted = false;      // the combos' weights differ: deals count in proportion to them
};

// True when some player's combos carry different weights.
bool any_weighted(const std::vector<HoldemPlayer>& players);

// Reads the players of a request. `known` holds the board and dead cards; the given hands' cards
// are added to it. `deck` is the mask of the cards in play (all 52, or the short deck). Throws
// Error naming the player for a bad hand or range, a card already in play, or a range with no hand
// left.
std::vector<HoldemPlayer> read_holdem_players(const EquityRequest& request, uint64_t& known, uint64_t deck);

// True when some tuple of one hand per player shares no card.
bool dealable(const std::vector<HoldemPlayer>& players);

// At least the number of tuples: the product of the numbers of hands.
double tuple_bound(const std::vector<HoldemPlayer>& players);

// The tuples of one hand per player that share no card, grouped by suit permutations (those that keep
// the board and the dead cards in place: a tuple and its image under such a permutation have the
// same equities). Each class keeps one tuple, how many it stands for and the sum of their weights
// (each tuple weighs the product of its hands' weights).
struct TupleClass {
  std::array<std::array<uint8_t, 2>, kMaxPlayers> holes;  // card codes (bytes: millions of classes fit)
  int64_t tuples;
  double weight;

  std::array<int, 2> hole(int player) const { return {holes[player][0], holes[player][1]}; }
};
// One tuple seen by tuple_classes when `members` is asked for: its class, the index of the hand the
// focus player holds in it (in that player's combos) and its weight.
struct TupleMember {
  uint32_t tuple_class;
  uint16_t combo;
  double weight;
};
std::vector<TupleClass> tuple_classes(const std::vector<HoldemPlayer>& players,
                                      const std::vector<SuitPermutation>& symmetries,
                                      std::vector<TupleMember>* members = nullptr, int focus = 0);

}  // namespace pokermath::detail

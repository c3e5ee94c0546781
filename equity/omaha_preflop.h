// The exact pre-flop equity of every Omaha holding against one random holding, high or Hi/Lo:
// every five-card board once up to a permutation of suits, and on each board every holding
// answered together.
//
// A board cannot tell apart the live cards of one rank, except the card of its flush suit (three or
// more board cards of one suit; a five-card board has at most one such suit). So on a board the
// holdings fall into types, multisets of card types (a rank's plain cards; a rank's flush-suit
// card): a few thousand types for 4 and 5 hole cards, tens of thousands with a flush suit, against
// 178,365 to 10.7 million holdings. Every holding of a type has the same high value (the best of its
// pairs' values, each pair valued with its best three board cards once per board) and the same low,
// and wins the same pot: the types are swept in order of value, and a hero's opponents below it (and
// equal to it) that share no card with it are counted by inclusion-exclusion over the cards they
// share,
//   disjoint(hero) = sum over the subsets S of the hero's cards of (-1)^|S| x (holdings containing S),
// where the swept holdings containing a set depend only on the set's type (permuting a rank's plain
// cards maps every type onto itself): one counter per type of set. Then one pass over the holdings,
// in the order of their class lookups in memory, adds each holding's answer to its class.
//
// Hi/Lo splits the pot by both values, but a hero's pot share against an opponent depends only on
// the high comparison, the low comparison and whether either has a low; so three one-dimensional
// sweeps answer it: the high sweep over all opponents, the same over opponents with a low, and a low
// sweep over opponents with a low.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "equity/engine.h"
#include "pokermath/equity.h"

namespace pokermath::detail {

// The question: every holding of `hole` cards (4, 5 or 6) from `deck` against one random holding of
// the rest, over every five-card board of the rest. Tests use decks of fewer ranks.
struct PreflopProblem {
  int hole = 4;
  bool hi_lo = false;
  uint64_t deck = (uint64_t{1} << 52) - 1;

  int cards() const;
  // Deals each hero holding takes part in: boards x opponent holdings.
  double deals_per_holding() const;
};

// The holdings of the deck up to a permutation of suits.
class HoldingClasses {
 public:
  explicit HoldingClasses(const PreflopProblem& problem);

  // The classes' smallest masks (omaha_suit_class), ascending, and how many holdings each has.
  const std::vector<uint64_t>& classes() const { return m_classes; }
  const std::vector<uint32_t>& sizes() const { return m_sizes; }
  // The deck's cards by position: by rank, then suit.
  const std::vector<int>& cards() const { return m_cards; }
  // The class of each holding by the combinatorial index of its ascending positions.
  const std::vector<uint32_t>& class_by_index() const { return m_class_of; }

 private:
  int m_hole;
  std::vector<int> m_cards;
  std::vector<uint64_t> m_classes;
  std::vector<uint32_t> m_sizes;
  std::vector<uint32_t> m_class_of;  // by combinatorial index of the holding's deck positions
};

// The five-card boards of the deck up to a permutation of suits: one board each and how many it
// stands for, in ascending order of the board's mask.
struct BoardClass {
  uint64_t board;
  uint32_t boards;
};
std::vector<BoardClass> preflop_board_classes(const PreflopProblem& problem);

// The pot won by each holding class over the boards of classes [first, last): per class, the sum
// over its holdings, those boards (each as many times as its class stands for) and the opponent
// holdings sharing no card with either, of the pot share in quarters (a whole pot 4, half 2; Hi/Lo
// splits into quarters). A class's equity is its total over all boards / (4 x its size x
// deals_per_holding). Runs on control.threads threads, in pieces of a few boards; reports progress
// and stops (throwing Cancelled) through `control`.
std::vector<int64_t> count_preflop_range(const PreflopProblem& problem, const HoldingClasses& holdings,
                                         const std::vector<BoardClass>& boards, size_t first, size_t last,
                                         const RunControl& control);

// The question an Omaha game asks on `deck`; throws Error for a game that is not Omaha or a deck too
// small for two holdings and a board.
PreflopProblem preflop_problem(EquityGame game, uint64_t deck);

}  // namespace pokermath::detail

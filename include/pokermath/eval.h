// Hand evaluation: the prime-product five-card evaluator with its six- and seven-card forms,
// PokerLogic (the central object of the engines), and the readable hand comparison that values
// CDeck hands and describes them in words.
//
// Scales, never to be mixed:
//   - five-card class 1..7462, SMALLER is stronger (1 = royal flush, 7462 = 7-5-4-3-2 offsuit);
//   - CDeck::m_value, six ints compared lexicographically, LARGER is stronger.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "pokermath/cards.h"

// ---- five-card evaluator (classes 1..7462, smaller is stronger) ------------------------------------

// Class of five distinct cards given as prime-product card words; the paired-hand lookup is a
// binary search. A hand that is not five distinct cards prints "ERROR:  no match found; key = %d"
// to stderr and gives an invalid class.
int eval_5cards(int c1, int c2, int c3, int c4, int c5);
// The same class through the perfect hash (the fast path). Undefined for invalid hands.
int eval_5hand_fast(int c1, int c2, int c3, int c4, int c5);
// eval_5cards of five consecutive card words.
int eval_5hand(const int* hand);
// Smallest class over the 6 five-card subsets of six card words (9999 if every subset fails).
int eval_6hand(const int* hand);
// Smallest class over the 21 five-card subsets of seven card words (9999 if every subset fails).
int eval_7hand(const int* hand);
// Index of `key` in the ascending array[low..high] (inclusive bounds), or -1.
int bsearch(const int* array, int low, int high, int key);

// ---- PokerLogic ----------------------------------------------------------------------------------

// The central object of the classic engines. It holds the prime-product card words and the
// helpers of the hand comparison. Create one and keep it.
class PokerLogic {
 public:
  CPokerDeck m_deck;  // prime-product card words by card code

  PokerLogic() = default;

  // Class (1..7462, smaller is stronger) of five card codes, through the perfect hash.
  int eval_5handHoldem(const int* cards) const;
  // Smallest class over the six five-card subsets of six card codes.
  int eval_6handHoldem(const int* cards) const;

  // Sorts the card codes strongest first (comparefun) and fills the parallel rank (code % 13) and
  // suit (code / 13) lists and the count of cards per suit (zeroed first).
  void sortHand(std::vector<int>& cards, std::vector<int>& ranks, std::vector<int>& suits, int suitCount[4]) const;
  // Top rank index of the highest straight in a rank list sorted high to low (3 = the wheel), or -1.
  int isStraight(const std::vector<int>& ranks) const;
  // Highest rank of the first suit holding five or more cards, or -1.
  int isFlush(const std::vector<int>& ranks, const std::vector<int>& suits, int suitCount[4]) const;
  // Top rank of a straight inside the flush suit, or -1.
  int isStraightFlush(const std::vector<int>& ranks, const std::vector<int>& suits, int suitCount[4]) const;
  // 12 for a royal flush, else -1. Only the first five matching cards of the suit are walked, so
  // A-K-Q-J-T-9 of one suit is deliberately not reported here (it is valued as a straight flush).
  int isRoyalFlush(const std::vector<int>& ranks, const std::vector<int>& suits, int suitCount[4]) const;
};

// ---- showdown comparisons (CDeck values, larger is stronger) ------------------------------------------

// 1 when the hero's two cards make the better hand with the board, -1 when the villain's do, 0 split.
int FindMaxCombination(const int hero[2], const int villain[2], const int* board, int boardCount, PokerLogic& logic);
// FindMaxCombination, or without a board (boardCount 0) the pre-flop comparison WhatHandIsBetter.
int WhoIsWinner(const int hero[2], const int villain[2], const int* board, int boardCount, PokerLogic& logic);
// Pre-flop comparison by ranks only: a pair beats a non-pair, else the first cards, then the second
// cards decide, in the order given (the cards are deliberately not sorted). 1, -1 or 0.
int WhatHandIsBetter(const int hand1[2], const int hand2[2]);

// ---- the pokermath:: evaluation API ---------------------------------------------------------------
namespace pokermath {

// Hand categories, weakest to strongest.
enum class Category {
  HighCard = 1,
  OnePair,
  TwoPair,
  ThreeOfAKind,
  Straight,
  Flush,
  FullHouse,
  FourOfAKind,
  StraightFlush
};

// The category of a five-card class (1..7462, smaller is stronger); throws Error outside 1..7462.
Category category_of_class(int hand_class);

// "high card", "one pair", ..., "straight flush".
std::string_view category_name(Category category);

// A hand of five to seven cards, evaluated.
struct HandEvaluation {
  int hand_class = 0;  // five-card class 1..7462, SMALLER is stronger
  Category category = Category::HighCard;
  std::array<int, 5> best_five{};  // the five cards that make the class, strongest rank first
  std::string description;         // words of CDeck::display for the best five, without its blanks
};

// Evaluates 5, 6 or 7 distinct card codes. Throws Error for another count, a code outside 0..51
// or a repeated card.
HandEvaluation evaluate_hand(std::span<const int> cards);

}  // namespace pokermath

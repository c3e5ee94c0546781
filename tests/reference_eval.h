// A plain reference evaluator for the tests, written from the rules of poker and sharing no code
// or tables with the library: rank counts, a flush test and a straight test give a key that is
// LARGER for stronger hands and equal exactly for hands of equal strength.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <vector>

namespace reference {

enum Category { kHighCard = 1, kPair, kTwoPair, kTrips, kStraight, kFlush, kFullHouse, kQuads, kStraightFlush };

// The ranking rules a key is built for.
enum class Rules {
  kStandard,      // A-2-3-4-5 the lowest straight
  kDeuceToSeven,  // the ace is high only: A-2-3-4-5 is no straight (ranked as a high hand; the best
                  // deuce-to-seven hand has the smallest key)
  kShortDeck,     // 36 cards: A-6-7-8-9 the lowest straight; three of a kind beats a straight and
                  // a flush beats a full house
  kChina,         // short deck, but a straight beats three of a kind
};

inline int category_of(int64_t key) { return static_cast<int>(key >> 20); }

// Key of exactly five distinct card codes (13 * suit + rank index): the category's place in the
// rules' order << 20, then the ranks ordered by (count, rank) descending, four bits each; straights
// carry only their top rank. Under kStandard and kDeuceToSeven the place is the Category number.
inline int64_t five_card_key(const std::array<int, 5>& cards, Rules rules = Rules::kStandard) {
  int count[13] = {};
  bool flush = true;
  for (int c : cards) {
    ++count[c % 13];
    flush = flush && c / 13 == cards[0] / 13;
  }
  int ranks[5], distinct = 0;  // by count descending, then rank descending
  for (int n = 4; n >= 1; --n)
    for (int r = 12; r >= 0; --r)
      if (count[r] == n) ranks[distinct++] = r;
  int straight_top = -1;
  if (distinct == 5) {
    if (ranks[0] - ranks[4] == 4) straight_top = ranks[0];
    if (rules == Rules::kStandard && ranks[0] == 12 && ranks[1] == 3) straight_top = 3;  // 5-4-3-2-A
    if ((rules == Rules::kShortDeck || rules == Rules::kChina) && ranks[0] == 12 && ranks[1] == 7 && ranks[4] == 4)
      straight_top = 7;  // 9-8-7-6-A
  }
  int category;
  if (straight_top >= 0 && flush)
    category = kStraightFlush;
  else if (count[ranks[0]] == 4)
    category = kQuads;
  else if (count[ranks[0]] == 3 && count[ranks[1]] == 2)
    category = kFullHouse;
  else if (flush)
    category = kFlush;
  else if (straight_top >= 0)
    category = kStraight;
  else if (count[ranks[0]] == 3)
    category = kTrips;
  else if (count[ranks[0]] == 2 && count[ranks[1]] == 2)
    category = kTwoPair;
  else if (count[ranks[0]] == 2)
    category = kPair;
  else
    category = kHighCard;

  // The place of each category in the rules' order, weakest first.
  static constexpr int kShortDeckPlace[10] = {0, 1, 2, 3, 5, 4, 7, 6, 8, 9};  // trips over straight, flush over boat
  static constexpr int kChinaPlace[10] = {0, 1, 2, 3, 4, 5, 7, 6, 8, 9};      // flush over boat
  int place = category;
  if (rules == Rules::kShortDeck) place = kShortDeckPlace[category];
  if (rules == Rules::kChina) place = kChinaPlace[category];

  int64_t key = static_cast<int64_t>(place) << 20;
  if (straight_top >= 0) return key | (static_cast<int64_t>(straight_top) << 16);
  for (int i = 0; i < distinct; ++i) key |= static_cast<int64_t>(ranks[i]) << (16 - 4 * i);
  return key;
}

// Best key over the five-card subsets of 5 to 7 cards.
inline int64_t best_key(const int* cards, int n, Rules rules = Rules::kStandard) {
  int64_t best = -1;
  for (int a = 0; a < n; ++a)
    for (int b = a + 1; b < n; ++b)
      for (int c = b + 1; c < n; ++c)
        for (int d = c + 1; d < n; ++d)
          for (int e = d + 1; e < n; ++e)
            best = std::max(best, five_card_key({cards[a], cards[b], cards[c], cards[d], cards[e]}, rules));
  return best;
}

inline int64_t best_key(const std::vector<int>& cards, Rules rules = Rules::kStandard) {
  return best_key(cards.data(), static_cast<int>(cards.size()), rules);
}

}  // namespace reference

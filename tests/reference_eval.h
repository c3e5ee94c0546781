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

inline int category_of(int64_t key) { return static_cast<int>(key >> 20); }

// Key of exactly five distinct card codes (13 * suit + rank index): category << 20, then the ranks
// ordered by (count, rank) descending, four bits each; straights carry only their top rank.
inline int64_t five_card_key(const std::array<int, 5>& cards) {
  int count[13] = {};
  bool flush = true;
  for (int c : cards) {
    ++count[c % 13];
    flush = flush && c / 13 == cards[0] / 13;
  }
  std::vector<int> ranks;  // by count descending, then rank descending
  for (int n = 4; n >= 1; --n)
    for (int r = 12; r >= 0; --r)
      if (count[r] == n) ranks.push_back(r);
  int straight_top = -1;
  if (ranks.size() == 5) {
    if (ranks[0] - ranks[4] == 4) straight_top = ranks[0];
    if (ranks[0] == 12 && ranks[1] == 3) straight_top = 3;  // A-5-4-3-2
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

  int64_t key = static_cast<int64_t>(category) << 20;
  if (straight_top >= 0) return key | (static_cast<int64_t>(straight_top) << 16);
  int shift = 16;
  for (int r : ranks) {
    key |= static_cast<int64_t>(r) << shift;
    shift -= 4;
  }
  return key;
}

// Best key over the five-card subsets of 5 to 7 cards.
inline int64_t best_key(const std::vector<int>& cards) {
  const int n = static_cast<int>(cards.size());
  int64_t best = -1;
  for (int a = 0; a < n; ++a)
    for (int b = a + 1; b < n; ++b)
      for (int c = b + 1; c < n; ++c)
        for (int d = c + 1; d < n; ++d)
          for (int e = d + 1; e < n; ++e)
            best = std::max(best, five_card_key({cards[a], cards[b], cards[c], cards[d], cards[e]}));
  return best;
}

}  // namespace reference

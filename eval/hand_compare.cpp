// The readable Hold'em evaluator: CDeck::m_value, its comparison and description, and the showdown
// helpers built on it. Slower than the table evaluators; used to describe hands and decide single
// showdowns.
#include <algorithm>

#include "eval/straight.h"
#include "pokermath/eval.h"

void PokerLogic::sortHand(std::vector<int>& cards, std::vector<int>& ranks, std::vector<int>& suits,
                          int suitCount[4]) const {
  std::sort(cards.begin(), cards.end(), comparefun);
  ranks.clear();
  suits.clear();
  std::fill(suitCount, suitCount + 4, 0);
  for (int card : cards) {
    ranks.push_back(card % 13);
    suits.push_back(card / 13);
    ++suitCount[card / 13];
  }
}

int PokerLogic::isStraight(const std::vector<int>& ranks) const {
  if (ranks.size() < 5) return -1;
  return pokermath::detail::straight_top(ranks.data(), static_cast<int>(ranks.size()), 3, 0);
}

namespace {

// The first suit (in suit order) holding five or more cards, or -1.
int flush_suit(int n, const int suitCount[4]) {
  if (n < 5) return -1;
  for (int s = 0; s < 4; ++s)
    if (suitCount[s] >= 5) return s;
  return -1;
}

// The ranks of one suit's cards, in the sorted order of the hand.
std::vector<int> ranks_of_suit(const std::vector<int>& ranks, const std::vector<int>& suits, int suit) {
  std::vector<int> out;
  for (size_t i = 0; i < ranks.size(); ++i)
    if (suits[i] == suit) out.push_back(ranks[i]);
  return out;
}

}  // namespace

int PokerLogic::isFlush(const std::vector<int>& ranks, const std::vector<int>& suits, int suitCount[4]) const {
  const int suit = flush_suit(static_cast<int>(ranks.size()), suitCount);
  if (suit < 0) return -1;
  for (size_t i = 0; i < ranks.size(); ++i)
    if (suits[i] == suit) return ranks[i];
  return -1;
}

int PokerLogic::isStraightFlush(const std::vector<int>& ranks, const std::vector<int>& suits, int suitCount[4]) const {
  const int suit = flush_suit(static_cast<int>(ranks.size()), suitCount);
  if (suit < 0) return -1;
  return isStraight(ranks_of_suit(ranks, suits, suit));
}

int PokerLogic::isRoyalFlush(const std::vector<int>& ranks, const std::vector<int>& suits, int suitCount[4]) const {
  const int suit = flush_suit(static_cast<int>(ranks.size()), suitCount);
  if (suit < 0) return -1;
  int expected = 12, found = 0;
  for (size_t i = 0; i < ranks.size(); ++i) {
    if (suits[i] == suit && ranks[i] == expected) {
      --expected;
      ++found;
    }
    if (found > 5) break;  // a sixth find (the nine) leaves the expectation at 6: not royal
  }
  return expected == 7 ? 12 : -1;
}

int CDeck::isFlush(const std::vector<int>& ranks, const std::vector<int>& suits, int suitCount[4]) {
  const int suit = flush_suit(static_cast<int>(ranks.size()), suitCount);
  if (suit < 0) return -1;
  int written = 0;
  for (size_t i = 0; i < ranks.size() && written < 5; ++i)
    if (suits[i] == suit) m_value[1 + written++] = ranks[i];
  return m_value[1];
}

namespace {

// Writes into value[from..] the first `count` ranks of the sorted list that differ from both
// excluded ranks (fewer when the hand runs out of cards).
void fill_kickers(int* value, int from, int count, const std::vector<int>& ranks, int exclude1, int exclude2 = -1) {
  for (size_t i = 0; i < ranks.size() && count > 0; ++i)
    if (ranks[i] != exclude1 && ranks[i] != exclude2) {
      value[from++] = ranks[i];
      --count;
    }
}

}  // namespace

void CDeck::SetValueCombination(PokerLogic& logic) {
  std::vector<int> cards, ranks, suits;
  int suitCount[4];
  for (const CCard& card : m_cards) cards.push_back(card.GetInt());
  logic.sortHand(cards, ranks, suits, suitCount);
  int rankCount[14] = {};
  for (int r : ranks) ++rankCount[r];

  if (logic.isRoyalFlush(ranks, suits, suitCount) == 12) {
    std::fill(m_value, m_value + 6, 0);
    m_value[0] = 10;
    return;
  }

  const bool flush = isFlush(ranks, suits, suitCount) != -1;
  int flushRanks[5];
  std::copy(m_value + 1, m_value + 6, flushRanks);

  // The largest and second-largest rank counts; walking down with strict tests lets the higher rank
  // win between equal counts.
  int largest = 1, second = 1, largestRank = -1, secondRank = -1;
  for (int r = 13; r >= 0; --r) {
    if (rankCount[r] > largest) {
      if (largest != 1) {
        second = largest;
        secondRank = largestRank;
      }
      largest = rankCount[r];
      largestRank = r;
    } else if (rankCount[r] > second) {
      second = rankCount[r];
      secondRank = r;
    }
  }

  const int straightTop = logic.isStraight(ranks);
  const bool straight = straightTop != -1;

  // Clear, then assign category by category; a later assignment replaces an earlier one.
  std::fill(m_value, m_value + 6, 0);
  auto assign = [&](int category) {
    std::fill(m_value, m_value + 6, 0);
    m_value[0] = category;
  };
  if (largest == 1 && !straight) {
    assign(1);
    fill_kickers(m_value, 1, 5, ranks, -1);
  }
  if (largest == 2 && second == 1 && !straight) {
    assign(2);
    m_value[1] = largestRank;
    fill_kickers(m_value, 2, 3, ranks, largestRank);
  }
  if (largest == 2 && second == 2 && !straight) {
    assign(3);
    m_value[1] = largestRank;
    m_value[2] = secondRank;
    fill_kickers(m_value, 3, 1, ranks, largestRank, secondRank);
  }
  if (largest == 3 && second < 2 && !straight) {
    assign(4);
    m_value[1] = largestRank;
    fill_kickers(m_value, 2, 2, ranks, largestRank);
  }
  if (straight && !flush) {
    assign(5);
    m_value[1] = straightTop;
  }
  if (flush && !straight) {
    assign(6);
    std::copy(flushRanks, flushRanks + 5, m_value + 1);
  }
  if (largest == 3 && second >= 2) {
    assign(7);
    m_value[1] = largestRank;
    m_value[2] = secondRank;
  }
  if (largest == 4) {
    assign(8);
    m_value[1] = largestRank;
    fill_kickers(m_value, 2, 1, ranks, largestRank);
  }
  if (straight && flush) {
    if (const int top = logic.isStraightFlush(ranks, suits, suitCount); top != -1) {
      assign(9);
      m_value[1] = top;
    } else {
      // A flush and a separate straight: valued as a flush of the five highest ranks of the whole
      // hand, not of the flush suit. Kept on purpose; callers depend on this value.
      assign(6);
      fill_kickers(m_value, 1, 5, ranks, -1);
    }
  }
}

int CDeck::compareTo(CDeck other) const {
  for (int i = 0; i < 6; ++i) {
    if (m_value[i] > other.m_value[i]) return 1;
    if (m_value[i] < other.m_value[i]) return -1;
  }
  return 0;
}

CString CDeck::display() const {
  auto name = [this](int k) { return CString(kRankNames[(m_value[k] + 1) % 13]); };
  CString text;
  switch (m_value[0]) {
    case 1: text = L"high card " + name(1) + L" high"; break;
    case 2: text = L"pair of " + name(1) + L" kicker " + name(2) + L" kicker " + name(3); break;
    case 3: text = L"two pair " + name(1) + L" " + name(2) + L" kicker " + name(3); break;
    case 4: text = L"three of a kind " + name(1) + L" kicker " + name(2) + L" kicker " + name(3); break;
    case 5: text = name(1) + L" high straight"; break;
    case 6: text = L"flush " + name(1) + L" high"; break;
    case 7: text = L"full house " + name(1) + L" over " + name(2); break;
    case 8: text = L"four of a kind " + name(1); break;
    case 9: text = L"straight flush " + name(1) + L" high"; break;
    case 10: text = L"RoyalFlush "; break;
    default: text = L"error in Hand.display: m_value[0] contains invalid value"; break;
  }
  return CString(16, L' ') + text;
}

int FindMaxCombination(const int hero[2], const int villain[2], const int* board, int boardCount, PokerLogic& logic) {
  CDeck heroDeck, villainDeck;
  for (int i = 0; i < 2; ++i) {
    heroDeck.AddCard(CCard(hero[i]));
    villainDeck.AddCard(CCard(villain[i]));
  }
  for (int i = 0; i < boardCount; ++i) {
    heroDeck.AddCard(CCard(board[i]));
    villainDeck.AddCard(CCard(board[i]));
  }
  heroDeck.SetValueCombination(logic);
  villainDeck.SetValueCombination(logic);
  return heroDeck.compareTo(villainDeck);
}

int WhoIsWinner(const int hero[2], const int villain[2], const int* board, int boardCount, PokerLogic& logic) {
  if (boardCount != 0) return FindMaxCombination(hero, villain, board, boardCount, logic);
  return WhatHandIsBetter(hero, villain);
}

int WhatHandIsBetter(const int hand1[2], const int hand2[2]) {
  const CCard a1(hand1[0]), a2(hand1[1]), b1(hand2[0]), b2(hand2[1]);
  const bool pair1 = a1 == a2, pair2 = b1 == b2;
  if (!pair1 && pair2) return -1;
  if (pair1 && !pair2) return 1;
  if (a1 > b1) return 1;
  if (a1 < b1) return -1;
  if (a2 > b2) return 1;
  if (a2 < b2) return -1;
  return 0;
}

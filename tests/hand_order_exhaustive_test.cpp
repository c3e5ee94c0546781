// The hand comparison (CDeck::m_value) and the five-card classes agree on which of two seven-card
// hands is stronger, apart from the two values the comparison keeps on purpose:
//   - a flush plus a separate straight is valued by the five highest ranks of all seven cards;
//   - A-K-Q-J-T-9 of one suit is valued as a straight flush, not a royal flush.
#include <gtest/gtest.h>

#include "reference_eval.h"
#include "test_util.h"

namespace {

using test_util::cards;

int sign(int x) { return (x > 0) - (x < 0); }

CDeck valued(const std::vector<int>& hand, PokerLogic& logic) {
  CDeck deck;
  for (int c : hand) deck.AddCard(CCard(c));
  deck.SetValueCombination(logic);
  return deck;
}

// True when the comparison's deliberate fallbacks apply: five cards of a suit and a straight
// among all the ranks, with no straight flush; or a royal flush with the nine of its suit.
bool uses_a_deliberate_fallback(const std::vector<int>& hand) {
  int suit_count[4] = {};
  unsigned ranks = 0;
  for (int c : hand) {
    ++suit_count[c / 13];
    ranks |= 1u << (c % 13);
  }
  int flush_suit = -1;
  for (int s = 0; s < 4; ++s)
    if (suit_count[s] >= 5) flush_suit = s;
  if (flush_suit < 0) return false;
  auto has_straight = [](unsigned r) {
    if ((r & 0x100F) == 0x100F) return true;
    for (int top = 4; top <= 12; ++top)
      if (((r >> (top - 4)) & 0x1F) == 0x1F) return true;
    return false;
  };
  unsigned suited = 0;
  for (int c : hand)
    if (c / 13 == flush_suit) suited |= 1u << (c % 13);
  if (has_straight(ranks) && !has_straight(suited)) return true;
  return (suited & 0x1F80) == 0x1F80;  // A K Q J T 9 of the flush suit
}

TEST(HandOrder, ComparisonAndClassesAgreeOnMillionsOfRandomPairs) {
  PokerLogic logic;
  std::mt19937 engine(20261121);
  int compared = 0, skipped = 0;
  for (int i = 0; i < 1500000; ++i) {
    const std::vector<int> a = test_util::random_cards(engine, 7);
    const std::vector<int> b = test_util::random_cards(engine, 7);
    if (uses_a_deliberate_fallback(a) || uses_a_deliberate_fallback(b)) {
      ++skipped;
      continue;
    }
    ++compared;
    const int by_class = sign(eval_7hand(test_util::words(b).data()) - eval_7hand(test_util::words(a).data()));
    const int by_value = valued(a, logic).compareTo(valued(b, logic));
    ASSERT_EQ(by_value, by_class) << test_util::names(a) << " against " << test_util::names(b);
  }
  EXPECT_GT(skipped, 0);
  EXPECT_GT(compared, 1400000);
}

TEST(HandOrder, ComparisonMatchesTheReferenceOnEveryCategoryBoundary) {
  // Hands built to sit on category edges, compared pairwise by the reference key and m_value.
  const char* hands[] = {"AsKsQsJsTs2c3d", "9h8h7h6h5h2c2d", "5d4d3d2dAdKc9s", "AcAdAhAsKc2d3h",
                         "2c2d2h2s3c4d5h", "AcAdAhKsKcQd2h", "2c2d2h3s3c3d4h", "AhKhQhJh9h2c3d",
                         "7h5h4h3h2hKcKs", "AcKdQhJsTc2d3h", "5c4d3h2sAcKdKh", "AcAdAhKsQc2d3h",
                         "AcAdKhKsQcQd2h", "AcAdKhQsJc9d7h", "AcKdQhJs9c7d6h", "7c5d4h3s2c9dTh"};
  PokerLogic logic;
  for (const char* x : hands)
    for (const char* y : hands) {
      const std::vector<int> a = cards(x), b = cards(y);
      const int64_t ka = reference::best_key(a), kb = reference::best_key(b);
      EXPECT_EQ(valued(a, logic).compareTo(valued(b, logic)), sign(static_cast<int>((ka > kb) - (ka < kb))))
          << x << " against " << y;
    }
}

TEST(HandOrder, FlushWithASeparateStraightUsesTheTopRanksOfAllCards) {
  PokerLogic logic;
  // Hearts A 9 7 5 2 make the flush; 9 8 7 6 5 of mixed suits the straight.
  const CDeck fallback = valued(cards("Ah9h7h5h2h8c6d"), logic);
  const int expected[6] = {6, 12, 7, 6, 5, 4};  // A 9 8 7 6, not the hearts A 9 7 5 2
  EXPECT_TRUE(std::equal(expected, expected + 6, fallback.m_value));
  // So it beats a spade flush A 9 7 6 3 that the classes rank above it.
  const std::vector<int> spades = cards("As9s7s6s3sKdQc");
  EXPECT_EQ(fallback.compareTo(valued(spades, logic)), 1);
  EXPECT_LT(eval_7hand(test_util::words(spades).data()), eval_7hand(test_util::words(cards("Ah9h7h5h2h8c6d")).data()));
}

TEST(HandOrder, RoyalFlushWithTheNineOfItsSuitIsValuedAsAStraightFlush) {
  PokerLogic logic;
  const CDeck deck = valued(cards("AhKhQhJhTh9h2c"), logic);
  const int expected[6] = {9, 12, 0, 0, 0, 0};
  EXPECT_TRUE(std::equal(expected, expected + 6, deck.m_value));
  EXPECT_EQ(eval_7hand(test_util::words(cards("AhKhQhJhTh9h2c")).data()), 1);
  const CDeck royal = valued(cards("AsKsQsJsTs2c3d"), logic);
  EXPECT_EQ(royal.m_value[0], 10);
  EXPECT_EQ(royal.compareTo(deck), 1);
}

}  // namespace

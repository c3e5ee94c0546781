// Decks, the random source, random hands and the two enumerators.
#include <gtest/gtest.h>

#include <bit>
#include <cstdlib>
#include <set>

#include "test_util.h"

namespace {

TEST(Decks, EasyRandomStaysInItsInterval) {
  std::srand(12345);
  EasyRandom random(0, 51);
  int low = 99, high = -1;
  for (int i = 0; i < 20000; ++i) {
    const int d = random.DrawRandomNumber();
    low = std::min(low, d);
    high = std::max(high, d);
  }
  EXPECT_EQ(low, 0);
  EXPECT_EQ(high, 51);

  random.SetInterval(5, 2);  // reversed: silently 0..1
  EXPECT_EQ(random.m_low, 0);
  EXPECT_EQ(random.m_high, 1);
  EXPECT_EQ(random.m_width, 2);
  for (int i = 0; i < 1000; ++i) {
    const int d = random.DrawRandomNumber();
    EXPECT_TRUE(d == 0 || d == 1);
  }
}

TEST(Decks, EveryEasyRandomDrawsFromTheOneSharedGenerator) {
  std::srand(99);
  const int first = std::rand(), second = std::rand();
  std::srand(99);
  const EasyRandom a(0, RAND_MAX - 1), b(0, RAND_MAX - 1);
  EXPECT_EQ(a.DrawRandomNumber(), first % RAND_MAX);
  EXPECT_EQ(b.DrawRandomNumber(), second % RAND_MAX);
}

TEST(Decks, RandomHandsAreDistinctCards) {
  std::srand(7);
  EasyRandom random(0, 51);
  EXPECT_EQ(GetRandomHand(52, random), 0x000FFFFFFFFFFFFFull);
  EXPECT_EQ(std::popcount(GetRandomHand(7, random)), 7);

  std::mt19937 engine(42);
  EXPECT_EQ(GetRandomHand(52, engine), 0x000FFFFFFFFFFFFFull);
  EXPECT_EQ(std::popcount(GetRandomHand(9, engine)), 9);

  random.SetInterval(0, 35);
  uint64_t short_deck = 0;
  for (int c = 0; c < 52; ++c)
    if (c % 13 >= 4) short_deck |= 1ull << c;
  EXPECT_EQ(GetRandomHand36(36, random), short_deck);
  const uint64_t hand = GetRandomHand36(5, random);
  EXPECT_EQ(std::popcount(hand), 5);
  EXPECT_EQ(hand & ~short_deck, 0u);
}

TEST(Decks, OdometerTurnsPositionZeroFastestAndWraps) {
  CRoundEnumerate odometer;
  odometer.AddDim(2);
  odometer.AddDim(3);
  EXPECT_EQ(odometer.GetSize(), 2);
  std::vector<std::vector<int>> seen = {odometer.first()};
  EXPECT_EQ(odometer.m_total, 6u);
  for (int i = 0; i < 5; ++i) seen.push_back(odometer.next());
  const std::vector<std::vector<int>> expected = {{0, 0}, {1, 0}, {0, 1}, {1, 1}, {0, 2}, {1, 2}};
  EXPECT_EQ(seen, expected);
  EXPECT_EQ(odometer.m_index, 6u);
  EXPECT_EQ(odometer.next(), (std::vector<int>{0, 0}));  // the seventh wraps
  EXPECT_EQ(odometer.first(), (std::vector<int>{0, 0}));
  EXPECT_EQ(odometer.m_index, 1u);
}

TEST(Decks, SubsetEnumeratorWalksInLexicographicOrder) {
  CRoundBoardEnumerate small(2, 4);
  std::vector<std::vector<int>> seen;
  for (std::vector<int> pos = small.first(); small.m_index <= small.m_total; pos = small.next()) seen.push_back(pos);
  const std::vector<std::vector<int>> expected = {{0, 1}, {0, 2}, {0, 3}, {1, 2}, {1, 3}, {2, 3}};
  EXPECT_EQ(seen, expected);
  EXPECT_EQ(small.m_total, 6);

  CRoundBoardEnumerate boards(5, 48);
  std::vector<int> previous = boards.first();
  EXPECT_EQ(boards.m_total, 1712304);
  int visited = 1;
  while (true) {
    const std::vector<int> pos = boards.next();
    if (boards.m_index > boards.m_total) break;
    ASSERT_LT(previous, pos);
    for (int i = 1; i < 5; ++i) ASSERT_LT(pos[i - 1], pos[i]);
    ASSERT_LT(pos[4], 48);
    previous = pos;
    ++visited;
  }
  EXPECT_EQ(visited, 1712304);
  EXPECT_EQ(previous, (std::vector<int>{43, 44, 45, 46, 47}));

  CRoundBoardEnumerate sevens(7, 52);
  sevens.first();
  EXPECT_EQ(sevens.m_total, 133784560);
  EXPECT_EQ(sevens.m_start.size(), 7u);
  sevens.first();
  EXPECT_EQ(sevens.m_start.size(), 14u);  // appended again on every restart

  CRoundBoardEnumerate none(0, 10);
  EXPECT_TRUE(none.first().empty());
  EXPECT_EQ(none.m_index, 0);
}

TEST(Decks, CDeckKeepsItsValueWhenEmptied) {
  PokerLogic logic;
  CDeck deck;
  for (int c : test_util::cards("AsAdKcKh2d")) deck.AddCard(CCard(c));
  EXPECT_EQ(deck.GetTotalCards(), 5);
  deck.SetValueCombination(logic);
  deck.DeleteCards();
  EXPECT_EQ(deck.GetTotalCards(), 0);
  EXPECT_EQ(deck.m_value[0], 3);  // two pair, kept
  EXPECT_EQ(deck.m_value[1], 12);
}

}  // namespace

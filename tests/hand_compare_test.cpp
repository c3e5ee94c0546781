// The readable hand comparison: m_value layouts, the straight and flush helpers, descriptions and
// the showdown functions.
#include <gtest/gtest.h>

#include "test_util.h"

namespace {

using test_util::cards;

CDeck valued(const std::string& text) {
  static PokerLogic logic;
  CDeck deck;
  for (int c : cards(text)) deck.AddCard(CCard(c));
  deck.SetValueCombination(logic);
  return deck;
}

std::vector<int> value_of(const std::string& text) {
  const CDeck deck = valued(text);
  return {deck.m_value, deck.m_value + 6};
}

TEST(HandCompare, ValueLayoutOfEachCategory) {
  const std::pair<const char*, std::vector<int>> cases[] = {
      {"AcJd9h5s3c", {1, 12, 9, 7, 3, 1}},
      {"AcJd9h5s3c2h7d", {1, 12, 9, 7, 5, 3}},
      {"9c9dAhKs3c", {2, 7, 12, 11, 1, 0}},
      {"9c9d5h5sKc", {3, 7, 3, 11, 0, 0}},
      {"9c9d5h5sKcKd2h", {3, 11, 7, 3, 0, 0}},  // three pairs: the third pair's rank is the kicker
      {"9c9d5h5s4c4d2h", {3, 7, 3, 2, 0, 0}},   // ...when it is above every single card
      {"7c7d7hAs2c", {4, 5, 12, 0, 0, 0}},
      {"5c4d3h2sAc", {5, 3, 0, 0, 0, 0}},  // the wheel is named by its five
      {"TcJdQhKsAc", {5, 12, 0, 0, 0, 0}},
      {"Kh9h7h4h2hKc", {6, 11, 7, 5, 2, 0}},
      {"7c7d7h2s2c", {7, 5, 0, 0, 0, 0}},
      {"7c7d7h2s2c2d", {7, 5, 0, 0, 0, 0}},  // two sets of trips: the higher over the lower
      {"8c8d8h8sAcAd", {8, 6, 12, 0, 0, 0}},
      {"9s8s7s6s5s", {9, 7, 0, 0, 0, 0}},
      {"5h4h3h2hAh", {9, 3, 0, 0, 0, 0}},
      {"AdKdQdJdTd", {10, 0, 0, 0, 0, 0}},
      {"AcAd", {2, 12, 0, 0, 0, 0}},  // fewer than five cards: missing kickers stay 0
  };
  for (const auto& [hand, expected] : cases) EXPECT_EQ(value_of(hand), expected) << hand;
}

TEST(HandCompare, DescriptionsFollowTheValue) {
  const std::pair<const char*, const wchar_t*> cases[] = {
      {"AcJd9h5s3c", L"high card Ace high"},       {"9c9dAhKs3c", L"pair of 9 kicker Ace kicker King"},
      {"9c9d5h5sKc", L"two pair 9 5 kicker King"}, {"7c7d7hAsTc", L"three of a kind 7 kicker Ace kicker 10"},
      {"5c4d3h2sAc", L"5 high straight"},          {"Kh9h7h4h2h", L"flush King high"},
      {"JcJdJh2s2c", L"full house Jack over 2"},   {"QcQdQhQsAc", L"four of a kind Queen"},
      {"9s8s7s6s5s", L"straight flush 9 high"},    {"AdKdQdJdTd", L"RoyalFlush "},
  };
  for (const auto& [hand, text] : cases) EXPECT_EQ(valued(hand).display(), CString(16, L' ') + text) << hand;
  EXPECT_EQ(CDeck().display(), CString(16, L' ') + L"error in Hand.display: m_value[0] contains invalid value");
}

// compareTo's result on millions of random pairs: hand_order_exhaustive_test.

TEST(HandCompare, StraightHelperSkipsRepeatsAndFindsTheWheel) {
  PokerLogic logic;
  EXPECT_EQ(logic.isStraight({12, 11, 10, 9, 8}), 12);
  EXPECT_EQ(logic.isStraight({9, 8, 8, 7, 6, 6, 5}), 9);
  EXPECT_EQ(logic.isStraight({10, 9, 8, 7, 6, 5, 4}), 10);  // the highest straight wins
  EXPECT_EQ(logic.isStraight({12, 3, 2, 1, 0}), 3);
  EXPECT_EQ(logic.isStraight({12, 12, 3, 2, 1, 1, 0}), 3);
  EXPECT_EQ(logic.isStraight({12, 11, 3, 2, 1}), -1);
  EXPECT_EQ(logic.isStraight({11, 3, 2, 1, 0}), -1);  // 5-4-3-2 without an ace
  EXPECT_EQ(logic.isStraight({4, 3, 2, 1}), -1);      // fewer than five entries
  EXPECT_EQ(logic.isStraight({9, 8, 6, 5, 4, 3, 2}), 6);
}

TEST(HandCompare, SortedHandAndFlushHelpers) {
  PokerLogic logic;
  std::vector<int> hand = cards("2h Ah Kd Ad 9h 5h 3h"), ranks, suits;
  int suit_count[4] = {9, 9, 9, 9};
  logic.sortHand(hand, ranks, suits, suit_count);
  EXPECT_EQ(test_util::names(hand), "Ah Ad Kd 9h 5h 3h 2h");  // among equal ranks the higher code first
  EXPECT_EQ(ranks, (std::vector<int>{12, 12, 11, 7, 3, 1, 0}));
  EXPECT_EQ(suits, (std::vector<int>{2, 1, 1, 2, 2, 2, 2}));
  EXPECT_EQ(std::vector<int>(suit_count, suit_count + 4), (std::vector<int>{0, 2, 5, 0}));
  EXPECT_EQ(logic.isFlush(ranks, suits, suit_count), 12);
  EXPECT_EQ(logic.isStraightFlush(ranks, suits, suit_count), -1);
  EXPECT_EQ(logic.isRoyalFlush(ranks, suits, suit_count), -1);

  CDeck deck;
  EXPECT_EQ(deck.isFlush(ranks, suits, suit_count), 12);
  EXPECT_EQ(std::vector<int>(deck.m_value + 1, deck.m_value + 6), (std::vector<int>{12, 7, 3, 1, 0}));

  hand = cards("AsKsQsJsTs9s2c");
  logic.sortHand(hand, ranks, suits, suit_count);
  EXPECT_EQ(logic.isRoyalFlush(ranks, suits, suit_count), -1);  // the nine is a sixth find
  EXPECT_EQ(logic.isStraightFlush(ranks, suits, suit_count), 12);
  hand = cards("AsKsQsJsTs2c3c");
  logic.sortHand(hand, ranks, suits, suit_count);
  EXPECT_EQ(logic.isRoyalFlush(ranks, suits, suit_count), 12);
}

TEST(HandCompare, ShowdownOnABoard) {
  PokerLogic logic;
  const std::vector<int> board = cards("Ah Kd 7c 7s 2d");
  const int aces[2] = {cards("Ac")[0], cards("3c")[0]};
  const int kings[2] = {cards("Kc")[0], cards("Ks")[0]};
  const int junk[2] = {cards("4c")[0], cards("3d")[0]};
  const int junk2[2] = {cards("4d")[0], cards("3h")[0]};
  EXPECT_EQ(FindMaxCombination(kings, aces, board.data(), 5, logic), 1);  // full house beats two pair
  EXPECT_EQ(FindMaxCombination(aces, kings, board.data(), 5, logic), -1);
  EXPECT_EQ(FindMaxCombination(junk, junk2, board.data(), 5, logic), 0);  // the board plays
  EXPECT_EQ(WhoIsWinner(kings, aces, board.data(), 3, logic), 1);
}

TEST(HandCompare, PreFlopComparisonLooksAtTheCardsInTheOrderGiven) {
  const int deuces[2] = {0, 13};
  const int ace_king[2] = {cards("As")[0], cards("Kd")[0]};
  const int king_ace[2] = {cards("Kd")[0], cards("As")[0]};
  const int ace_queen[2] = {cards("Ah")[0], cards("Qc")[0]};
  EXPECT_EQ(WhatHandIsBetter(deuces, ace_king), 1);
  EXPECT_EQ(WhatHandIsBetter(ace_king, deuces), -1);
  EXPECT_EQ(WhatHandIsBetter(ace_king, ace_queen), 1);
  EXPECT_EQ(WhatHandIsBetter(king_ace, ace_queen), -1);  // the king meets the ace first
  EXPECT_EQ(WhatHandIsBetter(ace_king, ace_king), 0);
  PokerLogic logic;
  EXPECT_EQ(WhoIsWinner(king_ace, ace_queen, nullptr, 0, logic), -1);
}

}  // namespace

// Omaha best-hand searches on known hands: the two-plus-three rule, tie-breaks, out[] contents,
// the combination-map search and the flush classifier.
#include <gtest/gtest.h>

#include "test_util.h"

namespace {

using test_util::cards;

TEST(OmahaBestHand, RoyalFlushWithTwoHoleSpadesOnEveryScale) {
  PokerLogic logic;
  const std::vector<int> hole = cards("As Ks 7d 2c"), board = cards("Qs Js Ts 3h 2d");
  int out[5];
  EXPECT_EQ(logic.getCombinationOmaha(hole.data(), board.data(), out), 1);
  EXPECT_EQ(test_util::names({out, out + 5}), "As Ks Qs Js Ts");  // card codes
  EXPECT_EQ(logic.getCombinationOmahaCommon(hole.data(), 4, board.data(), 5, out), 1);
  EXPECT_EQ(std::vector<int>(out, out + 5), (std::vector<int>{0, 1, 0, 1, 2}));  // positions
  EXPECT_EQ(getCombinationOmahaFsm5(hole.data(), board.data(), out), 7462);
  EXPECT_EQ(get_rank7(hole.data(), board.data()), 7462);
  std::vector<int> nine = hole;
  nine.insert(nine.end(), board.begin(), board.end());
  EXPECT_EQ(logic.LookupHandsOmaha(nine.data()), 9 * 4096 + 10);
  const CHandOmahaType type(hole.data(), board.data(), 5);
  EXPECT_EQ(type.getOmahaHand(), 117);
  EXPECT_EQ(type.isRoyalFlushOmaha(), 1);
}

TEST(OmahaBestHand, ExactlyTwoHoleCardsAndThreeBoardCards) {
  PokerLogic logic;
  int out[5];
  // Four spades in the hole and one on the board: no flush.
  const std::vector<int> spades = cards("As Ks 9s 4s"), board = cards("2s 7h Td Jc 3d");
  EXPECT_EQ(pokermath::category_of_class(logic.getCombinationOmaha(spades.data(), board.data(), out)),
            pokermath::Category::HighCard);
  EXPECT_EQ(CHandOmahaType(spades.data(), board.data(), 5).flushSuit, -1);
  // Four aces on K K Q Q J: one hole pair plays, so aces and kings with a queen, not four aces.
  const std::vector<int> aces = cards("Ac Ad Ah As"), paired = cards("Kc Kd Qh Qs Jc");
  EXPECT_EQ(logic.getCombinationOmaha(aces.data(), paired.data(), out), 2468);  // A A K K Q
  EXPECT_EQ(getCombinationOmahaFsm5(aces.data(), paired.data(), out), 7463 - 2468);
}

TEST(OmahaBestHand, EqualValuesKeepTheFirstCombination) {
  PokerLogic logic;
  // Four nines with a king: pair 0-1 and the first triple 9h 9s Kc; 9h 9s Kd gives the same value.
  const std::vector<int> hole = cards("9c 9d 2h 3s"), board = cards("9h 9s Kc Kd 5c");
  int out[5];
  logic.getCombinationOmahaCommon(hole.data(), 4, board.data(), 5, out);
  EXPECT_EQ(std::vector<int>(out, out + 5), (std::vector<int>{0, 1, 0, 1, 2}));
  getCombinationOmahaFsm5Common(hole.data(), 4, board.data(), 5, out);
  EXPECT_EQ(std::vector<int>(out, out + 5), (std::vector<int>{0, 1, 0, 1, 2}));
  const std::vector<int> flop = cards("Ac 8d 8h");
  getCombinationOmahaFlopFsm5(hole.data(), flop.data(), out);
  EXPECT_EQ(std::vector<int>(out + 2, out + 5), (std::vector<int>{0, 1, 2}));
}

TEST(OmahaBestHand, TooFewCardsGiveTheInitialValuesAndLeaveOutAlone) {
  PokerLogic logic;
  const std::vector<int> hole = cards("As Ks Qs Js"), board = cards("2c 3c 4c 5c 6c");
  int out[5] = {-7, -7, -7, -7, -7};
  EXPECT_EQ(logic.getCombinationOmahaCommon(hole.data(), 1, board.data(), 5, out), 100000);
  EXPECT_EQ(logic.getCombinationOmahaCommon(hole.data(), 4, board.data(), 2, out), 100000);
  EXPECT_EQ(getCombinationOmahaFsm5Common(hole.data(), 4, board.data(), 2, out), -1);
  EXPECT_EQ(std::vector<int>(out, out + 5), std::vector<int>(5, -7));
}

TEST(OmahaBestHand, CombinationMapSearch) {
  PokerLogic logic;
  const std::vector<int> hole = cards("Ah Kd 7c 7s"), board = cards("7h Ks 2d 2c Qh");
  // With an empty map every key takes part as itself: the smallest key wins.
  int smallest = 999999;
  for (int i = 0; i < 4; ++i)
    for (int j = i + 1; j < 4; ++j)
      for (int k = 0; k < 5; ++k)
        for (int l = k + 1; l < 5; ++l)
          for (int m = l + 1; m < 5; ++m) {
            int five[5] = {hole[i], hole[j], board[k], board[l], board[m]};
            std::sort(five, five + 5);
            int key = 0;
            for (int c : five) key = key << 6 | c;
            smallest = std::min(smallest, key);
            logic.m_combinations[key] = eval_5hand(test_util::words({five, five + 5}).data());
          }
  PokerLogic empty;
  EXPECT_EQ(empty.eval_7handOmaha(hole.data(), board.data()), smallest);
  // With the combinations in the map it is the best class.
  int out[5];
  EXPECT_EQ(logic.eval_7handOmaha(hole.data(), board.data()),
            logic.getCombinationOmaha(hole.data(), board.data(), out));
}

TEST(OmahaBestHand, DeckValueOfTheBestCombination) {
  PokerLogic logic;
  CDeck deck;
  for (int c : cards("As Ks 7d 2c Qs Js Ts 3h 2d")) deck.AddCard(CCard(c));
  deck.m_lowValue = 54321;
  deck.SetValueCombinationOmaha(logic);
  EXPECT_EQ(deck.m_value[0], 10);
  EXPECT_EQ(deck.m_lowValue, 0);
  CDeck short_deck;
  for (int c : cards("As Ks 7d 2c Qs Js")) short_deck.AddCard(CCard(c));
  short_deck.m_value[0] = 3;
  short_deck.SetValueCombinationOmaha(logic);
  EXPECT_EQ(std::vector<int>(short_deck.m_value, short_deck.m_value + 6), std::vector<int>(6, 0));
}

TEST(OmahaBestHand, PairTableSearchOnCardsHeldTwiceAndBadInput) {
  // A repeated board card gives 0; a pair holding one card twice, or a card also on the board,
  // counts 0 and the other pairs count as usual. (The walk has no such rule: in a suit that can no
  // longer make a flush the machine knows only ranks, so a repeated card there reads as one more
  // card of its rank.)
  std::mt19937 engine(7);
  std::uniform_int_distribution<int> any_card(0, 51), small(0, 12);
  for (int i = 0; i < 200000; ++i) {
    const int holes = 4 + i % 3;
    int cards[11];
    for (int k = 0; k < holes + 5; ++k) cards[k] = small(engine) < 3 ? 13 * (k % 2) + small(engine) : any_card(engine);
    const int* board = cards + holes;
    const uint64_t board_mask = ArrayToInt64(5, board);
    int expected = 0;
    for (int a = 0; a < holes && std::popcount(board_mask) == 5; ++a)
      for (int b = a + 1; b < holes; ++b) {
        const int pair[2] = {cards[a], cards[b]};
        if (pair[0] != pair[1] && !(board_mask & ((uint64_t{1} << pair[0]) | (uint64_t{1} << pair[1]))))
          expected = std::max(expected, test_util::best_two_plus_three(pair, 2, board));
      }
    ASSERT_EQ(eval_rank7_via_ofsm7(cards, holes, board), expected)
        << test_util::names(std::vector<int>(cards, cards + holes + 5));
  }
  // 2c 3c 4c 5c on Qc Kc Ac 2d 3d: the best is the ace-high flush A K Q 5 4 (no five clubs make a
  // straight flush with only two from the hole).
  const int hole[6] = {0, 1, 2, 3, 4, 5}, board[5] = {10, 11, 12, 13, 14}, bad[5] = {10, 11, 12, 13, 52};
  EXPECT_EQ(eval_rank7_via_ofsm7(hole, 4, board), test_util::best_two_plus_three(hole, 4, board));
  EXPECT_EQ(Get_rankFsm5(eval_rank7_via_ofsm7(hole, 4, board)), 6);
  EXPECT_EQ(eval_rank7_via_ofsm7(hole, 1, board), 0);
  EXPECT_EQ(eval_rank7_via_ofsm7(hole, 7, board), 0);
  EXPECT_EQ(eval_rank7_via_ofsm7(hole, 4, bad), 0);
}

TEST(OmahaBestHand, FlushClassifier) {
  const std::vector<int> hole = cards("Ah 9h 9c 2h"), board = cards("Kh 7h 3h 3d");
  const CHandOmahaType hand(hole.data(), board.data(), 4);
  EXPECT_EQ(test_util::names({hand.hole, hand.hole + 4}), "Ah 9h 2h 9c");  // by code, descending
  EXPECT_EQ(hand.flushSuit, 2);
  EXPECT_EQ(std::vector<int>(hand.flushHoleRank, hand.flushHoleRank + hand.flushHoleCount),
            (std::vector<int>{12, 7, 0}));
  EXPECT_EQ(std::vector<int>(hand.flushBoardRank, hand.flushBoardRank + hand.flushBoardCount),
            (std::vector<int>{11, 5, 1}));
  EXPECT_EQ(hand.getOmahaHand(), 65);
  EXPECT_EQ(hand.isStraightFlush(), -1);
  int suits[4], count = -1;
  EXPECT_EQ(hand.isFlushDrawOmaha(suits, count), 1);
  EXPECT_EQ(suits[0], 2);

  // A royal flush needs exactly two hole cards: three royal cards in the hole do not count.
  const std::vector<int> three = cards("As Ks Qs 2c"), rest = cards("Js Ts 9s 4d");
  EXPECT_EQ(CHandOmahaType(three.data(), rest.data(), 4).isRoyalFlushOmaha(), -1);
  const std::vector<int> two = cards("As Ks 3c 2c"), royal_board = cards("Qs Js Ts 4d");
  EXPECT_EQ(CHandOmahaType(two.data(), royal_board.data(), 4).isRoyalFlushOmaha(), 1);

  // getOmahaHand never reports a straight flush.
  std::mt19937 engine(8);
  for (int i = 0; i < 20000; ++i) {
    int c[9];
    test_util::random_cards(engine, 9, c);
    ASSERT_NE(CHandOmahaType(c, c + 4, 5).getOmahaHand(), 104);
  }
}

}  // namespace

// Omaha outs, draws and nuts on known hands, and the pokermath:: Omaha API.
#include <gtest/gtest.h>

#include "test_util.h"

namespace {

using test_util::cards;

TEST(OmahaOuts, HoldemFlushDraw) {
  PokerLogic logic;
  const std::vector<int> hole = cards("Ah 9c"), board = cards("Kh 7h 2h 3d");
  EXPECT_EQ(logic.isFlushDraw(hole.data(), board.data(), 4), 12);
  EXPECT_EQ(logic.isFlushDraw(cards("Ac 9c").data(), board.data(), 4), -1);
  EXPECT_EQ(logic.isFlushDraw(cards("2h 9c").data(), cards("Kh 7h 5h").data(), 3), 0);  // the deuce of the suit
  EXPECT_EQ(logic.isFlushDraw(hole.data(), board.data(), 2), 0);
}

TEST(OmahaOuts, FlushDrawOutsOnAFlop) {
  PokerLogic logic;
  const std::vector<int> hole = cards("Ah Kh 9c 8c"), flop = cards("Qh 7h 2d");
  // Nine hearts remain; all but 2h (which pairs the board) make the nut flush.
  std::string flush, nut;
  for (const auto& out : pokermath::omaha_outs(hole, flop).outs)
    if (out.category == pokermath::Category::Flush) {
      flush += pokermath::card_to_string(out.card) + " ";
      if (out.nut) nut += pokermath::card_to_string(out.card) + " ";
    }
  EXPECT_EQ(flush, "2h 3h 4h 5h 6h 8h 9h Th Jh ");
  EXPECT_EQ(nut, "3h 4h 5h 6h 8h 9h Th Jh ");
  CHandOmahaType hand(hole.data(), flop.data(), 3);
  int flush_outs = -1, straight_flush_outs = -1;
  EXPECT_EQ(logic.GetFlushDrawOutsOmaha(hand, flush_outs, straight_flush_outs), 1);
  EXPECT_EQ(flush_outs, 9 + 8 * 100);  // nine outs, eight of them to the nuts
  EXPECT_EQ(straight_flush_outs, 0);

  int by_category[11], nut_by_category[11], table_outs[10], table_nuts[10];
  EXPECT_EQ(getOutsOmahaFsm5Common(hole.data(), 4, flop.data(), 3, by_category, nut_by_category), 1);
  EXPECT_EQ(logic.getOutsOmahaCommon(hole.data(), 4, flop.data(), 3, table_outs, table_nuts), 1);
  EXPECT_EQ((std::vector<int>{by_category[6], nut_by_category[6], table_outs[6], table_nuts[6]}),
            (std::vector<int>{9, 8, 9, 8}));
}

TEST(OmahaOuts, StraightAndFullHouseDraws) {
  PokerLogic logic;
  int outs = -1, boats = -1, quads = -1;
  // A made straight: the question does not apply.
  EXPECT_EQ(logic.GetStraightDrawOutsOmaha(cards("9c 8d 2s 2h").data(), cards("Ts Jh 7c").data(), 3, outs), 5);
  EXPECT_EQ(outs, 0);
  // 9-8 on T-7-2: a six or a jack makes a straight (8 cards); the jack's straight is the nuts.
  const std::vector<int> draw = cards("9c 8d 3s 3h");
  EXPECT_EQ(logic.GetStraightDrawOutsOmaha(draw.data(), cards("Ts 7h 2c").data(), 3, outs), 1);
  EXPECT_EQ(outs % 100, 8);
  // Two pair on the flop: boats and quads.
  EXPECT_EQ(logic.GetFullHouseOutsOmaha(cards("Ks 7d 4c 4h").data(), cards("Kh 7c 2d").data(), 3, boats, quads), 1);
  EXPECT_EQ(boats % 100, 4);  // Kc Kd 7h 7s
  EXPECT_EQ(quads, 0);
  // High card: the question does not apply.
  EXPECT_EQ(logic.GetFullHouseOutsOmaha(draw.data(), cards("As Qd 2h").data(), 3, boats, quads), 7);
}

TEST(OmahaOuts, NoNextCardAfterTheRiver) {
  PokerLogic logic;
  const std::vector<int> hole = cards("Ah Kh 9c 8c"), river = cards("Qh 7h 2d 5s 3c");
  int a = -1, b = -1, table[10], nuts[10], machine[11], machine_nuts[11];
  EXPECT_EQ(logic.GetStraightDrawOutsOmaha(hole.data(), river.data(), 5, a), -5);
  EXPECT_EQ(logic.GetFullHouseOutsOmaha(hole.data(), river.data(), 5, a, b), -5);
  EXPECT_EQ(logic.getOutsOmahaCommon(hole.data(), 4, river.data(), 5, table, nuts), -5);
  EXPECT_EQ(getOutsOmahaFsm5Common(hole.data(), 4, river.data(), 5, machine, machine_nuts), -5);
  EXPECT_EQ(getOutsOmahaFsm5CommonTwoPairs(hole.data(), 4, river.data(), 5, a), -5);
  CHandOmahaType hand(hole.data(), river.data(), 5);
  EXPECT_EQ(logic.GetFlushDrawOutsOmaha(hand, a, b), -5);
  Spec nut_hands;
  int found[2];
  EXPECT_EQ(FindAllNuts(hole.data(), 4, river.data(), 5, nut_hands, found), 0);
  // The nut checks take a river.
  EXPECT_GE(logic.IsMyHandNutsOmaha(hole.data(), river.data(), 5), 0);
  EXPECT_GE(IsMyHandNutsOmahaFsm5Common(hole.data(), 4, river.data(), 5), 0);
  EXPECT_EQ(IsMyHandNutsOmahaFsm5Common(hole.data(), 4, river.data(), 2), -5);
}

TEST(OmahaOuts, RoyalFlushOnTheBoardIsNobodysHand) {
  PokerLogic logic;
  // No player can play all five board cards: the nut check compares real two-plus-three hands.
  const std::vector<int> board = cards("Ah Kh Qh Jh Th");
  const std::vector<int> nine_high = cards("9h 8h 2c 3c");  // 9h 8h with Q J T: a queen-high straight flush
  EXPECT_EQ(logic.IsMyHandNutsOmaha(nine_high.data(), board.data(), 5), 0);
  EXPECT_EQ(IsMyHandNutsOmahaFsm5Common(nine_high.data(), 4, board.data(), 5), 0);
  EXPECT_GT(logic.IsMyHandNutsOmaha(cards("2c 3d 4s 5s").data(), board.data(), 5), 0);
  const pokermath::OmahaNuts nuts = pokermath::omaha_nuts(board);
  EXPECT_EQ(Get_rankFsm5(nuts.value), 9);
  ASSERT_EQ(nuts.holdings.size(), 1u);
  EXPECT_EQ(test_util::names({nuts.holdings[0][0], nuts.holdings[0][1]}), "8h 9h");
}

TEST(OmahaOuts, TwoPairOuts) {
  int outs = -1;
  const std::vector<int> hole = cards("Ah Kd 6c 5s");
  EXPECT_EQ(getOutsOmahaFsm5CommonTwoPairs(hole.data(), 4, cards("7s 7d 2c").data(), 3, outs), 0);  // paired board
  // Aces and sixes already (Ah 6c with As 6d). A king makes aces and kings with Ah Kd: a new two
  // pair. A five pairs the 5s, but aces and sixes stay best: the same hole ranks, no new two pair.
  EXPECT_EQ(getOutsOmahaFsm5CommonTwoPairs(hole.data(), 4, cards("As 6d 2c").data(), 3, outs), 3);
  EXPECT_EQ(outs, 3);  // Kc Kh Ks
  // From high card: A-K on 9-7-2 makes two pair with an ace or a king... only with two new cards,
  // so on the flop nothing counts; a card pairing one hole card gives one pair.
  EXPECT_EQ(getOutsOmahaFsm5CommonTwoPairs(hole.data(), 4, cards("9h 7c 2s").data(), 3, outs), 0);
}

TEST(OmahaOuts, FindAllNutsOnAFlop) {
  Spec nut_hands;
  int outs[2] = {-1, -1};
  EXPECT_EQ(FindAllNuts(cards("Ah Kh 9c 8c").data(), 4, cards("Qh 7h 2d").data(), 3, nut_hands, outs),
            3);  // QcQd QcQs QdQs
  EXPECT_EQ(nut_hands.GetSize(), 3);
  EXPECT_EQ(outs[1], 8);  // the cards that make my hand the nuts: the eight nut flush cards
  EXPECT_GE(outs[0], 9);  // at least the nine flush cards reach top set's value
}

TEST(OmahaOuts, ApiValidatesItsInput) {
  using pokermath::Error;
  const std::vector<int> hole = cards("Ah Kh 9c 8c"), flop = cards("Qh 7h 2d");
  // Three hole cards, a board of two, a card twice and outs on a river: the omaha CLI test's messages.
  EXPECT_THROW(pokermath::omaha_best(cards("Ah Kh 9c 8c 7c 6c 5c"), flop), Error);
  EXPECT_THROW(pokermath::omaha_nuts(flop, cards("Qh")), Error);
  const pokermath::OmahaHand best = pokermath::omaha_best(hole, cards("Qh 7h 2d 3h 4c"));
  EXPECT_EQ(best.category, pokermath::Category::Flush);
  EXPECT_EQ(pokermath::cards_to_string(best.hole_used), "Ah Kh");
  EXPECT_EQ(best.description, "flush Ace high");
}

}  // namespace

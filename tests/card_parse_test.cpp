// The pokermath:: card API: parsing, printing and the validated hand evaluation.
#include <gtest/gtest.h>

#include "test_util.h"

namespace {

using pokermath::Error;

using test_util::error_of;

TEST(CardParse, OneCardInAnyCase) {
  EXPECT_EQ(pokermath::parse_card("As"), 51);
  EXPECT_EQ(pokermath::parse_card("as"), 51);
  EXPECT_EQ(pokermath::parse_card("AS"), 51);
  EXPECT_EQ(pokermath::parse_card("td"), 21);
  EXPECT_EQ(pokermath::parse_card("10d"), 21);
  EXPECT_EQ(pokermath::parse_card(" 2c "), 0);
  for (int c = 0; c < 52; ++c) EXPECT_EQ(pokermath::parse_card(pokermath::card_to_string(c)), c);
}

TEST(CardParse, BadCardsNameTheTextAndTheProblem) {
  EXPECT_EQ(error_of([] { pokermath::parse_card("Ax"); }), "bad card 'Ax': suit must be one of c d h s");
  EXPECT_EQ(error_of([] { pokermath::parse_card("1s"); }),
            "bad card '1s': rank must be one of 2 3 4 5 6 7 8 9 T J Q K A");
  EXPECT_EQ(error_of([] { pokermath::parse_card("Asd"); }),
            "bad card 'Asd': a card is a rank and a suit, e.g. 'As' or 'Td'");
  EXPECT_EQ(error_of([] { pokermath::parse_card(""); }), "bad card '': a card is a rank and a suit, e.g. 'As' or 'Td'");
}

TEST(CardParse, ListsInEveryNotation) {
  const std::vector<int> expected = {51, 50};
  EXPECT_EQ(pokermath::parse_cards("AsKs"), expected);
  EXPECT_EQ(pokermath::parse_cards("As Ks"), expected);
  EXPECT_EQ(pokermath::parse_cards("As,Ks"), expected);
  EXPECT_EQ(pokermath::parse_cards("  as , KS\t"), expected);
  EXPECT_EQ(pokermath::parse_cards("10h10s"), (std::vector<int>{34, 47}));
  EXPECT_TRUE(pokermath::parse_cards("").empty());
  const std::vector<std::string> args = {"AhKh", "Qh", "Jh,Th"};
  EXPECT_EQ(pokermath::cards_to_string(pokermath::parse_cards(args)), "Ah Kh Qh Jh Th");
}

TEST(CardParse, ListErrorsGiveThePosition) {
  EXPECT_EQ(error_of([] { pokermath::parse_cards("AsKsQx"); }),
            "bad card 'Qx' at position 3: suit must be one of c d h s");
  EXPECT_EQ(error_of([] { pokermath::parse_cards("AsK"); }),
            "bad card 'K' at position 2: a card is a rank and a suit, e.g. 'As' or 'Td'");
  EXPECT_EQ(error_of([] { pokermath::parse_cards("As Kd as"); }), "duplicate card 'as' at position 3");
  const std::vector<std::string> args = {"AsKs", "Ks"};
  EXPECT_EQ(error_of([&] { pokermath::parse_cards(args); }), "duplicate card 'Ks' at position 3");
}

TEST(CardParse, PrintingAndMasks) {
  EXPECT_EQ(pokermath::card_to_string(0), "2c");
  EXPECT_EQ(pokermath::card_to_string(34), "Th");
  EXPECT_EQ(error_of([] { pokermath::card_to_string(52); }), "bad card code 52: must be 0..51");
  EXPECT_EQ(pokermath::cards_to_mask(std::vector<int>{0, 51}), 0x0008000000000001ull);
  EXPECT_EQ(error_of([] { pokermath::cards_to_mask(std::vector<int>{5, 5}); }), "duplicate card '7c'");
  EXPECT_EQ(error_of([] { pokermath::cards_to_mask(std::vector<int>{-1}); }), "bad card code -1: must be 0..51");
}

// The royal flush and a full house are shown in full through the CLI tests.
TEST(EvaluateHand, ClassCategoryBestFiveAndWords) {
  const auto wheel = pokermath::evaluate_hand(test_util::cards("Ac 2d 3h 4s 5c Kd"));
  EXPECT_EQ(wheel.hand_class, 1609);
  EXPECT_EQ(pokermath::cards_to_string(wheel.best_five), "5c 4s 3h 2d Ac");
  EXPECT_EQ(wheel.description, "5 high straight");

  // A flush with a separate straight is described by the five it plays, the flush.
  const auto flush = pokermath::evaluate_hand(test_util::cards("Ah9h7h5h2h8c6d"));
  EXPECT_EQ(flush.category, pokermath::Category::Flush);
  EXPECT_EQ(pokermath::cards_to_string(flush.best_five), "Ah 9h 7h 5h 2h");
  EXPECT_EQ(flush.description, "flush Ace high");
}

TEST(EvaluateHand, RejectsBadInput) {
  EXPECT_EQ(error_of([] { pokermath::evaluate_hand(test_util::cards("AsKsQsJs")); }), "expected 5 to 7 cards, got 4");
  EXPECT_EQ(error_of([] { pokermath::evaluate_hand(test_util::cards("AsKsQsJsTs9s8s7s")); }),
            "expected 5 to 7 cards, got 8");
  EXPECT_EQ(error_of([] { pokermath::evaluate_hand(std::vector<int>{1, 2, 3, 4, 4}); }), "duplicate card '6c'");
  EXPECT_EQ(error_of([] {
              pokermath::evaluate_hand(std::vector<int>{1, 2, 3, 4, 60});
            }),
            "bad card code 60: must be 0..51");
}

}  // namespace

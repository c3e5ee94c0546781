// Known hands on the five-card evaluator and its six- and seven-card forms.
#include <gtest/gtest.h>

#include "test_util.h"

namespace {

using test_util::cards;

int fast(const std::string& text) {
  const std::vector<int> w = test_util::words(cards(text));
  return eval_5hand_fast(w[0], w[1], w[2], w[3], w[4]);
}

// The class of every five-card hand, its category and its place in the reference order are checked
// in five_card_exhaustive_test; seven-card hands against their subsets in seven_card_tables_test.

TEST(FiveCardEval, OrderOfTheCardsDoesNotMatter) {
  std::vector<int> w = test_util::words(cards("Qh Qd 7c 7s 2d"));
  std::sort(w.begin(), w.end());
  const int expected = eval_5cards(w[0], w[1], w[2], w[3], w[4]);
  do {
    EXPECT_EQ(eval_5hand_fast(w[0], w[1], w[2], w[3], w[4]), expected);
  } while (std::next_permutation(w.begin(), w.end()));
}

TEST(FiveCardEval, SixAndSevenCardFormsTakeTheBestSubset) {
  // Trips plus two pairs: the best five is the full house of the trips over the higher pair.
  EXPECT_EQ(eval_7hand(test_util::words(cards("9c9d9h5s5c3d3h")).data()), fast("9c9d9h5s5c"));
  EXPECT_EQ(eval_6hand(test_util::words(cards("AhKhQhJh2h2c")).data()), fast("AhKhQhJh2h"));
  PokerLogic logic;
  const std::vector<int> six = cards("7c7d7h2s2c As");
  EXPECT_EQ(logic.eval_6handHoldem(six.data()), eval_6hand(test_util::words(six).data()));
  const std::vector<int> five = cards("Tc9c8c7c6c");
  EXPECT_EQ(logic.eval_5handHoldem(five.data()), 5);  // the ten-high straight flush
}

TEST(FiveCardEval, ProductPathReportsAnImpossibleHand) {
  // Five deuces (one card word repeated) have the prime product 2^5 = 32, which no hand has.
  const int deuce = static_cast<int>(pokermath::prime_word(0));
  const int other_deuce = static_cast<int>(pokermath::prime_word(13));
  testing::internal::CaptureStderr();
  const int cls = eval_5cards(deuce, other_deuce, deuce, other_deuce, deuce);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "ERROR:  no match found; key = 32\n");
  EXPECT_EQ(cls, -1);
}

TEST(FiveCardEval, BinarySearchFindsOrReportsMinusOne) {
  const int sorted[] = {3, 8, 8, 15, 42, 99};
  EXPECT_EQ(sorted[bsearch(sorted, 0, 5, 8)], 8);
  // first, last, not found inside, below, above, an empty range, outside the given bounds
  const std::tuple<int, int, int, int> cases[] = {{0, 5, 3, 0},    {0, 5, 99, 5},  {0, 5, 16, -1}, {0, 5, 1, -1},
                                                  {0, 5, 100, -1}, {3, 2, 15, -1}, {2, 4, 3, -1}};
  for (const auto& [low, high, key, expected] : cases) EXPECT_EQ(bsearch(sorted, low, high, key), expected) << key;
}

TEST(FiveCardEval, ClassesOutsideTheScaleHaveNoCategory) {
  EXPECT_THROW(pokermath::category_of_class(0), pokermath::Error);
  EXPECT_THROW(pokermath::category_of_class(7463), pokermath::Error);
  EXPECT_EQ(pokermath::category_name(pokermath::Category::ThreeOfAKind), "three of a kind");
}

}  // namespace

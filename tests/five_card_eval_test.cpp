// Known hands on the five-card evaluator and its six- and seven-card forms.
#include <gtest/gtest.h>

#include "test_util.h"

namespace {

using test_util::cards;

int fast(const std::string& text) {
  const std::vector<int> w = test_util::words(cards(text));
  return eval_5hand_fast(w[0], w[1], w[2], w[3], w[4]);
}

int slow(const std::string& text) { return eval_5hand(test_util::words(cards(text)).data()); }

TEST(FiveCardEval, LandmarkHandsHaveTheirClasses) {
  const std::pair<const char*, int> hands[] = {
      {"AsKsQsJsTs", 1},    {"5d4d3d2dAd", 10},   {"7c5d4h3s2c", 7462}, {"AcAdAhAsKc", 11},   {"2c2d2h2s3c", 166},
      {"AcKdQhJsTc", 1600}, {"5c4d3h2sAc", 1609}, {"AcAdAhKsKc", 167},  {"2c2d2h3s3c", 322},  {"AhKhQhJh9h", 323},
      {"7h5h4h3h2h", 1599}, {"AcAdAhKsQc", 1610}, {"AcAdKhKsQc", 2468}, {"AcAdKhQsJc", 3326}, {"AcKdQhJs9c", 6186},
      {"3c2d2h4s5c", 6185}, {"2c2dAhKsQc", 5966},
  };
  for (auto [hand, cls] : hands) {
    EXPECT_EQ(fast(hand), cls) << hand;
    EXPECT_EQ(slow(hand), cls) << hand;
  }
}

TEST(FiveCardEval, OrderOfTheCardsDoesNotMatter) {
  std::vector<int> w = test_util::words(cards("Qh Qd 7c 7s 2d"));
  std::sort(w.begin(), w.end());
  const int expected = eval_5cards(w[0], w[1], w[2], w[3], w[4]);
  do {
    EXPECT_EQ(eval_5hand_fast(w[0], w[1], w[2], w[3], w[4]), expected);
  } while (std::next_permutation(w.begin(), w.end()));
}

TEST(FiveCardEval, SevenCardsHoldingARoyalFlushAreClassOne) {
  const std::vector<int> royal = cards("AsKsQsJsTs");
  for (int x = 0; x < 52; ++x)
    for (int y = x + 1; y < 52; ++y) {
      std::vector<int> hand = royal;
      if (std::find(hand.begin(), hand.end(), x) != hand.end() || std::find(hand.begin(), hand.end(), y) != hand.end())
        continue;
      hand.push_back(x);
      hand.push_back(y);
      EXPECT_EQ(eval_7hand(test_util::words(hand).data()), 1) << test_util::names(hand);
    }
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
  EXPECT_EQ(bsearch(sorted, 0, 5, 3), 0);
  EXPECT_EQ(bsearch(sorted, 0, 5, 99), 5);
  EXPECT_EQ(sorted[bsearch(sorted, 0, 5, 8)], 8);
  EXPECT_EQ(bsearch(sorted, 0, 5, 16), -1);
  EXPECT_EQ(bsearch(sorted, 0, 5, 1), -1);
  EXPECT_EQ(bsearch(sorted, 0, 5, 100), -1);
  EXPECT_EQ(bsearch(sorted, 3, 2, 15), -1);  // empty range
  EXPECT_EQ(bsearch(sorted, 2, 4, 3), -1);   // outside the given bounds
}

TEST(FiveCardEval, ClassesMapToCategories) {
  using pokermath::Category;
  EXPECT_EQ(pokermath::category_of_class(1), Category::StraightFlush);
  EXPECT_EQ(pokermath::category_of_class(10), Category::StraightFlush);
  EXPECT_EQ(pokermath::category_of_class(11), Category::FourOfAKind);
  EXPECT_EQ(pokermath::category_of_class(322), Category::FullHouse);
  EXPECT_EQ(pokermath::category_of_class(323), Category::Flush);
  EXPECT_EQ(pokermath::category_of_class(1609), Category::Straight);
  EXPECT_EQ(pokermath::category_of_class(1610), Category::ThreeOfAKind);
  EXPECT_EQ(pokermath::category_of_class(3325), Category::TwoPair);
  EXPECT_EQ(pokermath::category_of_class(6185), Category::OnePair);
  EXPECT_EQ(pokermath::category_of_class(7462), Category::HighCard);
  EXPECT_THROW(pokermath::category_of_class(0), pokermath::Error);
  EXPECT_THROW(pokermath::category_of_class(7463), pokermath::Error);
  EXPECT_EQ(pokermath::category_name(Category::ThreeOfAKind), "three of a kind");
}

}  // namespace

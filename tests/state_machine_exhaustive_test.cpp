// The built-in five-card machine and the deuce-to-seven ranking on every five-card hand.
#include <gtest/gtest.h>

#include <map>

#include "reference_eval.h"
#include "test_util.h"

namespace {

// Every five-card hand of the 52-card deck, or of the short deck (cards six to ace).
template <typename Visit>
void for_each_five_card_hand(Visit visit, bool short_deck = false) {
  uint64_t low_cards = 0;
  for (int c = 0; c < 52; ++c)
    if (short_deck && c % 13 < 4) low_cards |= 1ull << c;
  test_util::for_each_set(5, low_cards, [&](const int* c) { visit(std::array<int, 5>{c[0], c[1], c[2], c[3], c[4]}); });
}

TEST(StateMachineExhaustive, BuiltInFiveCardMachineOnEveryHand) {
  int64_t hands = 0, mismatches = 0;
  std::string first;
  for_each_five_card_hand([&](const std::array<int, 5>& c) {
    ++hands;
    const std::vector<int> w = test_util::words({c.begin(), c.end()});
    const int expected = 7463 - eval_5hand_fast(w[0], w[1], w[2], w[3], w[4]);
    if (LookupFsm5(c.data()) != expected && mismatches++ == 0) first = test_util::names({c.begin(), c.end()});
  });
  EXPECT_EQ(hands, 2598960);
  EXPECT_EQ(mismatches, 0) << first;
}

// Values must order hands exactly as reference keys do: equal values for equal keys, larger
// values for larger keys. Returns the number of distinct values.
template <typename Value>
int check_order(Value value, reference::Rules rules, std::string& problem) {
  std::map<int, int64_t> key_of_value;
  for_each_five_card_hand(
      [&](const std::array<int, 5>& c) {
        const int v = value(c);
        const int64_t key = reference::five_card_key(c, rules);
        auto [it, inserted] = key_of_value.emplace(v, key);
        if (!inserted && it->second != key && problem.empty())
          problem =
              test_util::names({c.begin(), c.end()}) + " shares value " + std::to_string(v) + " with another hand";
      },
      rules == reference::Rules::kShortDeck);
  int64_t previous = -1;
  for (auto [v, key] : key_of_value) {
    if (key <= previous && problem.empty()) problem = "value " + std::to_string(v) + " is out of order";
    previous = key;
  }
  return static_cast<int>(key_of_value.size());
}

TEST(StateMachineExhaustive, DeuceToSevenOrdersEveryHand) {
  // Smaller deuce-to-seven values are better lows, that is weaker high hands with the ace high only.
  std::string problem;
  const int values = check_order([](const std::array<int, 5>& c) { return Lookup27Lowball(c.data()); },
                                 reference::Rules::kDeuceToSeven, problem);
  EXPECT_TRUE(problem.empty()) << problem;
  EXPECT_EQ(values, 7462);
  EXPECT_EQ(Lookup27Lowball(test_util::cards("7c5d4h3s2c").data()), 1);
  EXPECT_EQ(Lookup27Lowball(test_util::cards("Ac5d4h3s2c").data()), 785);
  EXPECT_EQ(Lookup27Lowball(test_util::cards("Ac6d4h3s2c").data()), 786);
  EXPECT_EQ(Lookup27Lowball(test_util::cards("Ad5d4d3d2d").data()), 6648);
}

TEST(StateMachineExhaustive, ShortDeckOnTheFiftyTwoCardScale) {
  std::string problem;
  const int values = check_order(
      [&](const std::array<int, 5>& c) {
        const int v = LookupHoldem6PlusFsm5(c.data());
        // Category numbers follow the short-deck order, with 10 for the ace-high straight flush.
        const int64_t key = reference::five_card_key(c, reference::Rules::kShortDeck);
        const int place = reference::category_of(key);
        const int expected = place == 9 && ((key >> 16) & 0xF) == 12 ? 10 : place;
        if (Get_rankHoldem6PlusFsm5(v) != expected && problem.empty())
          problem =
              test_util::names({c.begin(), c.end()}) + " has category " + std::to_string(Get_rankHoldem6PlusFsm5(v));
        return v;
      },
      reference::Rules::kShortDeck, problem);
  EXPECT_TRUE(problem.empty()) << problem;
  EXPECT_EQ(values, 1404);
  EXPECT_EQ(LookupHoldem6PlusFsm5(test_util::cards("Ac 6d 7h 8s 9c").data()), 4996);
  EXPECT_EQ(Get_rankHoldem6PlusFsm5(4996), 4);
  EXPECT_EQ(LookupHoldem6PlusFsm5(test_util::cards("Ah 6h 7h 8h 9h").data()), 7453);
  EXPECT_EQ(Get_rankHoldem6PlusFsm5(7453), 9);
  EXPECT_EQ(LookupHoldem6PlusFsm5(test_util::cards("Ah 5h 7h 8h 9h").data()), -1);
}

TEST(StateMachineExhaustive, CategoryNumbersAndNames) {
  // Every value: the category of its class, 10 for the royal flush; 0 below the scale.
  for (int v = 1; v <= 7462; ++v)
    ASSERT_EQ(Get_rankFsm5(v), v == 7462 ? 10 : static_cast<int>(pokermath::category_of_class(7463 - v))) << v;
  EXPECT_EQ(Get_rankFsm5(0), 0);
  CString name;
  EXPECT_EQ(verify_rankFsm5(0, name), 1);
  const std::pair<int, const wchar_t*> names[] = {
      {0, L"Error"}, {7462, L"Royal Flush"}, {7300, L"four of kind"}, {5000, L"three of kind"}, {4138, L"two pairs"}};
  for (const auto& [value, text] : names) {
    verify_rankFsm5(value, name);
    EXPECT_EQ(name, text) << value;
  }
  EXPECT_EQ(Get_rank36(1404), 10);
  EXPECT_EQ(Get_rank36(883), 5);
  EXPECT_EQ(Get_rank36(882), 4);
  EXPECT_EQ(Get_rank36(0), 0);
  EXPECT_EQ(Get_rank36China(1129), 5);
  EXPECT_EQ(Get_rank36China(1128), 4);
  EXPECT_EQ(Get_rank36China(-3), 0);
}

}  // namespace

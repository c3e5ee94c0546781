// The pokermath:: evaluation API: validated input, the class, category, best five cards and words.
#include <algorithm>

#include "eval/hand_input.h"
#include "pokermath/eval.h"

namespace pokermath {

namespace {

constexpr int kWheelStraightFlush = 10;
constexpr int kWheelStraight = 1609;

// Orders the best five for reading: bigger rank groups first (K K K 2 2, Q Q 9 9 A), higher ranks
// first within a group size, and the ace of a five-high straight last (5 4 3 2 A).
void order_for_display(std::array<int, 5>& cards, int hand_class) {
  int count[13] = {};
  for (int c : cards) ++count[c % 13];
  std::sort(cards.begin(), cards.end(), [&](int a, int b) {
    if (count[a % 13] != count[b % 13]) return count[a % 13] > count[b % 13];
    return comparefun(a, b);
  });
  if (hand_class == kWheelStraightFlush || hand_class == kWheelStraight)
    std::rotate(cards.begin(), cards.begin() + 1, cards.end());
}

}  // namespace

namespace detail {

void check_hand(std::span<const int> cards, int low, int high) {
  const int n = static_cast<int>(cards.size());
  if (n < low || n > high) {
    const std::string range = low == high ? std::to_string(low) : std::to_string(low) + " to " + std::to_string(high);
    throw Error("expected " + range + " cards, got " + std::to_string(n));
  }
  cards_to_mask(cards);  // throws for codes outside 0..51 and repeated cards
}

void check_short_deck_hand(std::span<const int> cards, int low, int high) {
  check_hand(cards, low, high);
  for (size_t i = 0; i < cards.size(); ++i)
    if (short_deck_code(cards[i]) < 0)
      throw Error("card '" + card_to_string(cards[i]) + "' at position " + std::to_string(i + 1) +
                  " is not in the short deck (36 cards, 6 to A)");
}

}  // namespace detail

namespace {

std::string short_deck_category(int number, ShortDeckRules rules) {
  static constexpr const char* kNames[] = {"invalid",        "high card",       "one pair",   "two pair",
                                           "straight",       "three of a kind", "full house", "flush",
                                           "four of a kind", "straight flush",  "royal flush"};
  // The China order swaps the places of the straight and three of a kind.
  if (rules == ShortDeckRules::China && (number == 4 || number == 5)) return kNames[9 - number];
  return kNames[number];
}

}  // namespace

Category category_of_class(int hand_class) {
  if (hand_class < 1 || hand_class > 7462)
    throw Error("bad hand class " + std::to_string(hand_class) + ": must be 1..7462");
  constexpr int kLastClass[] = {10, 166, 322, 1599, 1609, 2467, 3325, 6185, 7462};
  constexpr Category kCategories[] = {Category::StraightFlush, Category::FourOfAKind, Category::FullHouse,
                                      Category::Flush,         Category::Straight,    Category::ThreeOfAKind,
                                      Category::TwoPair,       Category::OnePair,     Category::HighCard};
  int i = 0;
  while (hand_class > kLastClass[i]) ++i;
  return kCategories[i];
}

std::string_view category_name(Category category) {
  switch (category) {
    case Category::HighCard: return "high card";
    case Category::OnePair: return "one pair";
    case Category::TwoPair: return "two pair";
    case Category::ThreeOfAKind: return "three of a kind";
    case Category::Straight: return "straight";
    case Category::Flush: return "flush";
    case Category::FullHouse: return "full house";
    case Category::FourOfAKind: return "four of a kind";
    case Category::StraightFlush: return "straight flush";
  }
  return "unknown";
}

HandEvaluation evaluate_hand(std::span<const int> cards) {
  const int value = hand_value(cards);  // checks the cards
  const int n = static_cast<int>(cards.size());

  // The best five: the first five-card subset, in the order of the loops, with the hand's value.
  HandEvaluation result;
  result.hand_class = 7463 - value;
  for (int a = 0; a < n; ++a)
    for (int b = a + 1; b < n; ++b)
      for (int c = b + 1; c < n; ++c)
        for (int d = c + 1; d < n; ++d)
          for (int e = d + 1; e < n; ++e) {
            const std::array<int, 5> five = {cards[a], cards[b], cards[c], cards[d], cards[e]};
            if (hand_value(five) != value) continue;
            result.best_five = five;
            a = b = c = d = e = n;  // found: leave every loop
          }
  result.category = category_of_class(result.hand_class);
  order_for_display(result.best_five, result.hand_class);

  // The words describe the best five alone, so a seven-card hand reads like the five it plays.
  static PokerLogic logic;  // only its const helpers run, so one object serves every thread
  CDeck deck;
  for (int c : result.best_five) deck.AddCard(CCard(c));
  deck.SetValueCombination(logic);
  result.description = narrow(deck.display().substr(16));
  return result;
}

ShortDeckEvaluation evaluate_short_deck(std::span<const int> cards, ShortDeckRules rules) {
  ShortDeckEvaluation result;
  result.value = hand_value(cards, rules);  // checks the cards
  const int n = static_cast<int>(cards.size());
  if (rules == ShortDeckRules::China) {
    result.category_number = Get_rank36China(result.value);
  } else {
    result.category_number = Get_rank36(result.value);
    // The 52-card scale: the best five-card subset, as eval_7hand6PlusFsm5 takes it for seven cards.
    for (int a = 0; a < n; ++a)
      for (int b = a + 1; b < n; ++b)
        for (int c = b + 1; c < n; ++c)
          for (int d = c + 1; d < n; ++d)
            for (int e = d + 1; e < n; ++e) {
              const int five[5] = {cards[a], cards[b], cards[c], cards[d], cards[e]};
              result.value52 = std::max(result.value52, LookupHoldem6PlusFsm5(five));
            }
  }
  result.category = short_deck_category(result.category_number, rules);
  return result;
}

int evaluate_deuce_to_seven(std::span<const int> cards) {
  detail::check_hand(cards, 5, 5);
  return Lookup27Lowball(cards.data());
}

}  // namespace pokermath

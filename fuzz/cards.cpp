// Card text: the pokermath:: card parsers and the classic name functions on any bytes, then every
// evaluator on the first five to seven cards that parsed, checked against each other.
#include <array>
#include <bit>
#include <vector>

#include "fuzz_input.h"
#include "pokermath/pokermath.h"

using namespace pokermath;
using pokermath::fuzz::expect;

namespace {

// The classic functions take wide text: exact two-letter names, single letters and CCard. Text gets
// there through widen, which must turn every byte that is not UTF-8 into U+FFFD, or a name could be
// spelt in bytes that the checked parser refuses.
void classic_names(std::string_view text) {
  const std::wstring wide = widen(text);
  if (wide.find(L'\xFFFD') == std::wstring::npos)
    expect(narrow(wide) == text, "widen decodes bytes that are not UTF-8");
  if (const int code = GetCardByName(wide); code >= 0) {
    try {
      expect(parse_card(text) == code, "GetCardByName and parse_card disagree");
    } catch (const Error&) {
      fuzz::fail("parse_card refuses a name GetCardByName reads");
    }
  }
  if (wide.size() < 2) return;
  const int rank = GetCardRankByName(wide[0]), suit = GetCardSuitByName(wide[1]);
  if (rank >= 0 && suit >= 0) {
    const CCard card(wide[0], wide[1]);
    expect(card.GetInt() == 13 * suit + rank, "CCard(letters) code");
    expect(GetCardByName(card.GetName2()) == card.GetInt(), "CCard::GetName2 does not read back");
  }
  const CCard any_case(wide.substr(0, 1), wide.substr(1, 1));
  if (any_case.GetRank() != 0) (void)any_case.GetCardName();

  const std::string terminated(text.substr(0, text.find('\0')));
  wchar_t* converted = nullptr;
  charTOwchar(terminated.c_str(), converted);
  delete[] converted;
}

// hand_value, evaluate_hand, the prime-product evaluator and the built-in five-card machine value the
// same hand; their scales differ by the documented 7463 - class.
void evaluate(std::span<const int> cards) {
  const int value = hand_value(cards);
  const HandEvaluation hand = evaluate_hand(cards);
  const std::string shown = cards_to_string(cards);
  expect(value == 7463 - hand.hand_class, "hand_value and evaluate_hand disagree on " + shown);
  expect(category_of_class(hand.hand_class) == hand.category, "category of " + shown);
  expect(hand_value(hand.best_five) == value, "best five of " + shown);

  std::array<int, 7> words{};
  for (size_t i = 0; i < cards.size(); ++i) words[i] = static_cast<int>(prime_word(cards[i]));
  const int prime_class = cards.size() == 5   ? eval_5hand(words.data())
                          : cards.size() == 6 ? eval_6hand(words.data())
                                              : eval_7hand(words.data());
  expect(prime_class == hand.hand_class, "prime-product class of " + shown);
  if (cards.size() == 5) {
    expect(LookupFsm5(cards.data()) == value, "LookupFsm5 of " + shown);
    (void)evaluate_deuce_to_seven(cards);
  }
  bool short_deck = true;
  for (int card : cards) short_deck = short_deck && card % 13 >= 4;
  if (short_deck) {
    const ShortDeckEvaluation standard = evaluate_short_deck(cards, ShortDeckRules::Standard);
    expect(standard.value == hand_value(cards, ShortDeckRules::Standard), "short-deck value of " + shown);
    (void)hand_value(cards, ShortDeckRules::China);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  classic_names(text.substr(0, 8));
  try {
    (void)parse_card(text);
  } catch (const Error&) {
  }

  std::vector<int> cards;
  try {
    cards = parse_cards(text);
  } catch (const Error&) {
    return 0;
  }
  expect(parse_cards(cards_to_string(cards)) == cards, "cards_to_string does not read back");
  expect(std::popcount(cards_to_mask(cards)) == static_cast<int>(cards.size()), "a repeated card parsed");
  if (cards.size() >= 5) evaluate(std::span<const int>(cards).first(std::min<size_t>(cards.size(), 7)));
  return 0;
}

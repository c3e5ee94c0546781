// Card parsing and printing for the pokermath:: API.
#include <cctype>

#include "pokermath/cards.h"

namespace pokermath {

namespace {

constexpr std::string_view kRankChars = "23456789TJQKA";
constexpr std::string_view kSuitChars = "cdhs";

std::string quoted(std::string_view text) { return "'" + std::string(text) + "'"; }

// Parses one card token (already isolated); `position` is only used in messages (0 = none).
int parse_token(std::string_view token, int position) {
  const std::string where = position > 0 ? " at position " + std::to_string(position) : "";
  auto fail = [&](const std::string& why) -> int { throw Error("bad card " + quoted(token) + where + ": " + why); };

  std::string_view rank_text = token.substr(0, token.size() >= 3 && token.substr(0, 2) == "10" ? 2 : 1);
  const std::string_view suit_text = token.substr(rank_text.size());
  if (token.empty() || suit_text.size() != 1) return fail("a card is a rank and a suit, e.g. 'As' or 'Td'");

  int rank = rank_text == "10" ? 8 : -1;
  if (rank < 0) {
    const auto pos = kRankChars.find(static_cast<char>(std::toupper(static_cast<unsigned char>(rank_text[0]))));
    if (pos == std::string_view::npos) return fail("rank must be one of 2 3 4 5 6 7 8 9 T J Q K A");
    rank = static_cast<int>(pos);
  }
  const auto suit = kSuitChars.find(static_cast<char>(std::tolower(static_cast<unsigned char>(suit_text[0]))));
  if (suit == std::string_view::npos) return fail("suit must be one of c d h s");
  return 13 * static_cast<int>(suit) + rank;
}

bool is_separator(char c) { return c == ',' || std::isspace(static_cast<unsigned char>(c)); }

// Splits a run of cards written together ("AsKs", "10hJh") into card tokens.
void split_run(std::string_view run, std::vector<std::string_view>& tokens) {
  while (!run.empty()) {
    const size_t length = run.size() >= 3 && run.substr(0, 2) == "10" ? 3 : std::min<size_t>(2, run.size());
    tokens.push_back(run.substr(0, length));
    run.remove_prefix(length);
  }
}

void tokenize(std::string_view text, std::vector<std::string_view>& tokens) {
  size_t i = 0;
  while (i < text.size()) {
    if (is_separator(text[i])) {
      ++i;
      continue;
    }
    size_t j = i;
    while (j < text.size() && !is_separator(text[j])) ++j;
    split_run(text.substr(i, j - i), tokens);
    i = j;
  }
}

std::vector<int> parse_tokens(const std::vector<std::string_view>& tokens) {
  std::vector<int> cards;
  uint64_t seen = 0;
  for (size_t i = 0; i < tokens.size(); ++i) {
    const int position = static_cast<int>(i) + 1;
    const int card = parse_token(tokens[i], position);
    if (seen & (uint64_t{1} << card))
      throw Error("duplicate card " + quoted(tokens[i]) + " at position " + std::to_string(position));
    seen |= uint64_t{1} << card;
    cards.push_back(card);
  }
  return cards;
}

}  // namespace

int parse_card(std::string_view text) {
  while (!text.empty() && is_separator(text.front())) text.remove_prefix(1);
  while (!text.empty() && is_separator(text.back())) text.remove_suffix(1);
  return parse_token(text, 0);
}

std::vector<int> parse_cards(std::string_view text) {
  std::vector<std::string_view> tokens;
  tokenize(text, tokens);
  return parse_tokens(tokens);
}

std::vector<int> parse_cards(std::span<const std::string> texts) {
  std::vector<std::string_view> tokens;
  for (const std::string& text : texts) tokenize(text, tokens);
  return parse_tokens(tokens);
}

std::string card_to_string(int card) {
  if (card < 0 || card > 51) throw Error("bad card code " + std::to_string(card) + ": must be 0..51");
  return {kRankChars[card % 13], kSuitChars[card / 13]};
}

std::string cards_to_string(std::span<const int> cards) {
  std::string text;
  for (int card : cards) {
    if (!text.empty()) text += ' ';
    text += card_to_string(card);
  }
  return text;
}

uint64_t cards_to_mask(std::span<const int> cards) {
  uint64_t mask = 0;
  for (int card : cards) {
    if (card < 0 || card > 51) throw Error("bad card code " + std::to_string(card) + ": must be 0..51");
    const uint64_t bit = uint64_t{1} << card;
    if (mask & bit) throw Error("duplicate card '" + card_to_string(card) + "'");
    mask |= bit;
  }
  return mask;
}

}  // namespace pokermath

// pokermath::OmahaRange and the functions on single Omaha holdings: suit classes and hand types.
#include <algorithm>
#include <charconv>
#include <cmath>

#include "ranges/omaha_range_internal.h"

namespace pokermath {

namespace detail {

std::string format_number(double value) {
  char buffer[64];
  const auto result = std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed);
  return std::string(buffer, result.ptr);
}

std::string holding_to_string(uint64_t cards) {
  int codes[52];
  int count = 0;
  Int64ToArray(cards, count, codes);
  std::sort(codes, codes + count, [](int a, int b) { return a % 13 != b % 13 ? a % 13 > b % 13 : a < b; });
  std::string text;
  for (int i = 0; i < count; ++i) text += card_to_string(codes[i]);
  return text;
}

std::string holdings_text(const std::vector<OmahaHolding>& holdings) {
  std::string text;
  for (const OmahaHolding& h : holdings) {
    if (!text.empty()) text += ',';
    text += holding_to_string(h.cards);
    if (h.weight != 100) text += '@' + format_number(h.weight);
  }
  return text;
}

OmahaHandType hand_type_unchecked(uint64_t cards) {
  uint32_t words[4];
  suit_words(cards, words);
  OmahaHandType type;
  int suited = 0;
  for (const uint32_t w : words) {
    if (std::popcount(w) >= 2) ++suited;
    if ((w & (1u << 12)) && std::popcount(w) >= 2) type.suited_ace = true;
  }
  type.suits = suited >= 2 ? OmahaSuits::DoubleSuited : suited == 1 ? OmahaSuits::SingleSuited : OmahaSuits::Rainbow;

  // Rank multiplicities through bit-sliced counters: `at_least[k]` holds the ranks seen more than k times.
  uint32_t at_least[4] = {0, 0, 0, 0};
  for (const uint32_t w : words) {
    at_least[3] |= at_least[2] & w;
    at_least[2] |= at_least[1] & w;
    at_least[1] |= at_least[0] & w;
    at_least[0] |= w;
  }
  if (at_least[3]) {
    type.pairs = OmahaPairs::Quads;
  } else if (at_least[2]) {
    type.pairs = OmahaPairs::Trips;
  } else {
    const int paired = std::popcount(at_least[1]);
    type.pairs = paired >= 2 ? OmahaPairs::TwoPair : paired == 1 ? OmahaPairs::OnePair : OmahaPairs::NoPair;
  }

  const uint32_t ranks = at_least[0];
  const int n = std::popcount(cards);
  if (at_least[1] == 0) {
    // Consecutive ranks form one block of ones; the ace also counts below the deuce.
    const uint32_t block = (1u << n) - 1;
    const uint32_t ace_low = ((ranks & 0xFFF) << 1) | (ranks >> 12);
    type.rundown = (ranks >> std::countr_zero(ranks)) == block || ((ranks & (1u << 12)) != 0 && ace_low == block);
  }
  type.broadway = (ranks & 0xFF) == 0;  // no rank below the ten
  return type;
}

void append_suit_class_members(uint64_t cards, std::vector<uint64_t>& out) {
  // Permuting suits permutes the four suit words; next_permutation over the sorted words visits each
  // distinct arrangement once, so equal words (two empty suits, say) give no duplicates.
  uint32_t words[4];
  suit_words(cards, words);
  std::sort(words, words + 4);
  do {
    out.push_back(uint64_t{words[0]} | (uint64_t{words[1]} << 13) | (uint64_t{words[2]} << 26) |
                  (uint64_t{words[3]} << 39));
  } while (std::next_permutation(words, words + 4));
}

}  // namespace detail

namespace {

void check_hole_cards(int hole_cards) {
  if (hole_cards < 4 || hole_cards > 6)
    throw Error("Omaha holdings have 4, 5 or 6 cards, not " + std::to_string(hole_cards));
}

void check_same_size(const OmahaRange& a, const OmahaRange& b) {
  if (a.hole_cards() != b.hole_cards())
    throw Error("cannot combine ranges of " + std::to_string(a.hole_cards()) + "-card and " +
                std::to_string(b.hole_cards()) + "-card holdings");
}

// An operand's text as it must be written on one side of an operator of precedence `level` (1 for
// ",", 2 for ":" and "!"): ranges printed without operators need no parentheses.
std::string operand_text(const std::string& text, bool right, int level) {
  if (level == 1) return text;
  int depth = 0;
  for (const char c : text) {
    if (c == '(') ++depth;
    if (c == ')') --depth;
    if (depth == 0 && (c == ',' || (right && (c == ':' || c == '!')))) return '(' + text + ')';
  }
  return text;
}

// The text of a combination: both texts joined, or the holdings themselves when either range has no
// text (ranges built from holdings print the holdings).
std::string joined_text(const OmahaRange& a, const OmahaRange& b, char op) {
  if (a.text().empty() || b.text().empty()) return {};
  const int level = op == ',' ? 1 : 2;
  return operand_text(a.text(), false, level) + op + operand_text(b.text(), true, level);
}

}  // namespace

OmahaRange::OmahaRange(int hole_cards, std::vector<OmahaHolding> holdings, std::string text)
    : m_holeCards(hole_cards), m_holdings(std::move(holdings)), m_text(std::move(text)) {
  check_hole_cards(hole_cards);
  for (const OmahaHolding& h : m_holdings) {
    if (!detail::valid_holding(h.cards, hole_cards))
      throw Error("Omaha holding mask " + std::to_string(h.cards) + " does not hold " + std::to_string(hole_cards) +
                  " cards");
    if (!(h.weight > 0 && h.weight <= 100))
      throw Error("weight " + detail::format_number(h.weight) + " of " + detail::holding_to_string(h.cards) +
                  " is outside 0 < weight <= 100");
  }
  const auto by_cards = [](const OmahaHolding& x, const OmahaHolding& y) { return x.cards < y.cards; };
  if (!std::is_sorted(m_holdings.begin(), m_holdings.end(), by_cards))
    std::sort(m_holdings.begin(), m_holdings.end(), by_cards);
  // A holding given twice keeps its largest weight.
  size_t kept = 0;
  for (size_t i = 0; i < m_holdings.size(); ++i) {
    if (kept > 0 && m_holdings[kept - 1].cards == m_holdings[i].cards)
      m_holdings[kept - 1].weight = std::max(m_holdings[kept - 1].weight, m_holdings[i].weight);
    else
      m_holdings[kept++] = m_holdings[i];
  }
  m_holdings.resize(kept);
  if (m_text.empty()) m_text = detail::holdings_text(m_holdings);
}

double OmahaRange::total_weight() const {
  double sum = 0;
  for (const OmahaHolding& h : m_holdings) sum += h.weight;
  return sum / 100;
}

double OmahaRange::weight(uint64_t cards) const {
  const auto it = std::lower_bound(m_holdings.begin(), m_holdings.end(), cards,
                                   [](const OmahaHolding& h, uint64_t c) { return h.cards < c; });
  return it != m_holdings.end() && it->cards == cards ? it->weight : 0;
}

OmahaRange OmahaRange::without(uint64_t cards) const {
  std::vector<OmahaHolding> kept;
  for (const OmahaHolding& h : m_holdings)
    if ((h.cards & cards) == 0) kept.push_back(h);
  return OmahaRange(m_holeCards, std::move(kept));
}

OmahaRange operator|(const OmahaRange& a, const OmahaRange& b) {
  check_same_size(a, b);
  auto held = detail::merge_holdings(a.m_holdings, b.m_holdings, [](const OmahaHolding* x, const OmahaHolding* y) {
    return std::max(x ? x->weight : 0.0, y ? y->weight : 0.0);
  });
  return OmahaRange(a.m_holeCards, std::move(held), joined_text(a, b, ','));
}

OmahaRange operator&(const OmahaRange& a, const OmahaRange& b) {
  check_same_size(a, b);
  auto held = detail::merge_holdings(a.m_holdings, b.m_holdings, [](const OmahaHolding* x, const OmahaHolding* y) {
    return x && y ? std::min(x->weight, y->weight) : 0.0;
  });
  return OmahaRange(a.m_holeCards, std::move(held), joined_text(a, b, ':'));
}

OmahaRange operator-(const OmahaRange& a, const OmahaRange& b) {
  check_same_size(a, b);
  auto held = detail::merge_holdings(a.m_holdings, b.m_holdings,
                    [](const OmahaHolding* x, const OmahaHolding* y) { return x && !y ? x->weight : 0.0; });
  return OmahaRange(a.m_holeCards, std::move(held), joined_text(a, b, '!'));
}

std::string omaha_holding_to_string(uint64_t holding) {
  if (holding & ~detail::kFullDeck) throw Error("a holding's cards are codes 0..51");
  return detail::holding_to_string(holding);
}

uint64_t omaha_holdings_count(int hole_cards) {
  check_hole_cards(hole_cards);
  uint64_t count = 1;
  for (int i = 0; i < hole_cards; ++i) count = count * static_cast<uint64_t>(52 - i) / static_cast<uint64_t>(i + 1);
  return count;
}

uint64_t omaha_suit_class(uint64_t holding) {
  // Permuting suits permutes the four 13-bit words; the smallest mask puts the largest word in the
  // lowest suit (clubs) and the smallest in the highest (spades). A sorting network of five
  // compare-exchanges orders the four words.
  uint64_t w0 = holding & 0x1FFF, w1 = (holding >> 13) & 0x1FFF, w2 = (holding >> 26) & 0x1FFF, w3 = holding >> 39;
  const auto order = [](uint64_t& hi, uint64_t& lo) {
    const uint64_t a = std::max(hi, lo), b = std::min(hi, lo);
    hi = a;
    lo = b;
  };
  order(w0, w1);
  order(w2, w3);
  order(w0, w2);
  order(w1, w3);
  order(w1, w2);
  return w0 | (w1 << 13) | (w2 << 26) | (w3 << 39);
}

std::vector<uint64_t> omaha_suit_class_members(uint64_t holding) {
  std::vector<uint64_t> members;
  detail::append_suit_class_members(holding, members);
  std::sort(members.begin(), members.end());
  return members;
}

OmahaHandType omaha_hand_type(uint64_t holding) {
  const int n = std::popcount(holding);
  if ((holding & ~detail::kFullDeck) != 0 || n < 4 || n > 6)
    throw Error("omaha_hand_type needs 4, 5 or 6 cards among codes 0..51, got mask " + std::to_string(holding));
  return detail::hand_type_unchecked(holding);
}

std::vector<OmahaTypeCount> omaha_hand_types(const OmahaRange& range) {
  std::vector<OmahaTypeCount> counts;
  for (const char* name : {"double-suited", "single-suited", "rainbow", "no pair", "one pair", "two pair", "trips",
                           "quads", "rundown", "broadway", "suited ace"})
    counts.push_back({name, 0, 0});
  for (const OmahaHolding& h : range.holdings()) {
    const OmahaHandType t = detail::hand_type_unchecked(h.cards);
    const auto add = [&](size_t i) {
      ++counts[i].holdings;
      counts[i].weight += h.weight / 100;
    };
    add(static_cast<size_t>(t.suits));
    add(3 + static_cast<size_t>(t.pairs));
    if (t.rundown) add(8);
    if (t.broadway) add(9);
    if (t.suited_ace) add(10);
  }
  return counts;
}

}  // namespace pokermath

// pokermath::WeightedRange: a Hold'em range whose combinations carry weights, and its text.
#include <algorithm>
#include <charconv>
#include <limits>
#include <map>

#include "ranges/hand_classes.h"

namespace pokermath {

namespace {

void check_codes(int card1, int card2) {
  if (!detail::valid_card(card1) || !detail::valid_card(card2))
    throw Error("a combination needs two card codes 0..51, got " + std::to_string(card1) + " and " +
                std::to_string(card2));
  if (card1 == card2) throw Error("a combination needs two different cards, got '" + card_to_string(card1) + "' twice");
}

// The codes of combination number 0..1325, the higher code first.
struct ComboCards {
  std::array<std::array<uint8_t, 2>, 1326> cards{};
  ComboCards() {
    for (int high = 1; high < 52; ++high)
      for (int low = 0; low < high; ++low) cards[static_cast<size_t>(combo_index(high, low))] = {
          static_cast<uint8_t>(high), static_cast<uint8_t>(low)};
  }
};
const ComboCards kComboCards;

// The weight printed after "@": the shortest decimal that reads back to the same double ("50",
// "12.5"), never an exponent.
std::string weight_text(double weight) {
  char text[64];
  const auto end = std::to_chars(text, text + sizeof text, weight, std::chars_format::fixed).ptr;
  return std::string(text, end);
}

}  // namespace

int hand_class_of(int card1, int card2) {
  check_codes(card1, card2);
  return detail::combo_cell(card1, card2);
}

int combo_index(int card1, int card2) {
  const int low = std::min(card1, card2), high = std::max(card1, card2);
  // Pairs (low, high) in lexicographic order: the pairs before low = low, high = low + 1.
  return low * (103 - low) / 2 + (high - low - 1);
}

WeightedRange::WeightedRange(const Spec& range, double weight) {
  if (!(weight > 0 && weight <= 100))
    throw Error("a weight must lie in 0 < weight <= 100, got " + std::to_string(weight));
  for (const auto& [a, b] : range.m_hands)
    if (detail::valid_card(a) && detail::valid_card(b) && a != b) set_weight(a, b, weight);
}

double WeightedRange::weight(int card1, int card2) const {
  check_codes(card1, card2);
  return m_weights[static_cast<size_t>(combo_index(card1, card2))];
}

void WeightedRange::set_weight(int card1, int card2, double weight) {
  check_codes(card1, card2);
  if (!(weight >= 0 && weight <= 100))
    throw Error("a weight must lie in 0 <= weight <= 100, got " + std::to_string(weight));
  double& slot = m_weights[static_cast<size_t>(combo_index(card1, card2))];
  m_count += (weight > 0) - (slot > 0);
  slot = weight;
}

std::vector<WeightedCombo> WeightedRange::combos() const {
  std::vector<WeightedCombo> out;
  out.reserve(m_count);
  for (size_t i = 0; i < m_weights.size(); ++i)
    if (m_weights[i] > 0) out.push_back({kComboCards.cards[i][0], kComboCards.cards[i][1], m_weights[i]});
  std::sort(out.begin(), out.end(), [](const WeightedCombo& x, const WeightedCombo& y) {
    return x.card1 != y.card1 ? x.card1 < y.card1 : x.card2 < y.card2;
  });
  return out;
}

double WeightedRange::total_weight() const {
  double sum = 0;
  for (double w : m_weights) sum += w;
  return sum / 100;
}

std::array<double, 169> WeightedRange::class_weights() const {
  std::array<double, 169> out{};
  for (size_t i = 0; i < m_weights.size(); ++i)
    if (m_weights[i] > 0)
      out[static_cast<size_t>(detail::combo_cell(kComboCards.cards[i][0], kComboCards.cards[i][1]))] +=
          m_weights[i] / 100;
  return out;
}

std::array<double, 169> WeightedRange::class_shares() const {
  std::array<double, 169> out = class_weights();
  for (int cell = 0; cell < 169; ++cell)
    out[cell] = out[cell] > 0 ? out[cell] / hand_class_combos(cell) : std::numeric_limits<double>::quiet_NaN();
  return out;
}

bool WeightedRange::weighted() const {
  return std::any_of(m_weights.begin(), m_weights.end(), [](double w) { return w > 0 && w < 100; });
}

Spec WeightedRange::to_spec() const {
  Spec spec;
  for (const WeightedCombo& c : combos()) spec.AddCard(c.card1, c.card2);
  return spec;
}

std::string WeightedRange::text() const {
  // The combinations of each weight, heaviest first, printed as range_to_string prints them.
  std::map<double, Spec, std::greater<>> by_weight;
  for (size_t i = 0; i < m_weights.size(); ++i)
    if (m_weights[i] > 0) by_weight[m_weights[i]].AddCard(kComboCards.cards[i][0], kComboCards.cards[i][1]);
  std::string text;
  for (const auto& [weight, spec] : by_weight) {
    const std::string items = range_to_string(spec);
    std::string suffix;
    if (weight != 100) suffix.append("@").append(weight_text(weight));
    std::string_view rest = items;
    while (!rest.empty()) {
      const size_t comma = rest.find(',');
      if (!text.empty()) text += ',';
      text += rest.substr(0, comma);
      text += suffix;
      rest = comma == std::string_view::npos ? std::string_view{} : rest.substr(comma + 1);
    }
  }
  return text;
}

}  // namespace pokermath

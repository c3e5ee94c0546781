// The classic Omaha range classes CRange64, CSpec64 and CSpecOmaha over pokermath::OmahaRange.
#include <algorithm>

#include "ranges/omaha_range_internal.h"

namespace {

// The text a set of holdings keeps when it takes a range's holdings: the range's text, unless that
// text carries weights the holdings no longer have.
std::string text_without_weights(const pokermath::OmahaRange& range) {
  const auto& held = range.holdings();
  const bool full = std::all_of(held.begin(), held.end(), [](const pokermath::OmahaHolding& h) { return h.weight == 100; });
  return full ? range.text() : std::string();
}

}  // namespace

// ---- CRange64 ------------------------------------------------------------------------------------

bool CRange64::SetRange(const std::string& text) {
  try {
    const pokermath::OmahaRange range = pokermath::parse_omaha_range(text, m_holeCards);
    std::set<uint64_t> hands;
    for (const pokermath::OmahaHolding& h : range.holdings()) hands.insert(hands.end(), h.cards);
    m_hands = std::move(hands);
    m_text = range.text();
    return true;
  } catch (const pokermath::Error&) {
    return false;
  }
}

std::string CRange64::GetRange() const {
  if (!m_text.empty()) return m_text;
  std::vector<pokermath::OmahaHolding> held;
  for (const uint64_t h : m_hands) held.push_back({h, 100});
  return pokermath::detail::holdings_text(held);
}

bool CRange64::AddHand(uint64_t hand) {
  if (!pokermath::detail::valid_holding(hand, m_holeCards)) return false;
  m_hands.insert(hand);
  m_text.clear();
  return true;
}

pokermath::OmahaRange CRange64::ToRange() const {
  std::vector<pokermath::OmahaHolding> held;
  held.reserve(m_hands.size());
  for (const uint64_t h : m_hands) held.push_back({h, 100});
  return pokermath::OmahaRange(m_holeCards, std::move(held), m_text);
}

CRange64 CRange64::FromRange(const pokermath::OmahaRange& range) {
  CRange64 out(range.hole_cards());
  for (const pokermath::OmahaHolding& h : range.holdings()) out.m_hands.insert(out.m_hands.end(), h.cards);
  out.m_text = text_without_weights(range);
  return out;
}

// ---- CSpec64 -------------------------------------------------------------------------------------

bool CSpec64::SetRange(const std::string& text) {
  try {
    const pokermath::OmahaRange range = pokermath::parse_omaha_range(text, m_holeCards);
    std::map<uint64_t, double> weights;
    for (const pokermath::OmahaHolding& h : range.holdings()) weights.emplace_hint(weights.end(), h.cards, h.weight);
    m_weights = std::move(weights);
    m_text = range.text();
    return true;
  } catch (const pokermath::Error&) {
    return false;
  }
}

std::string CSpec64::GetRange() const {
  if (!m_text.empty()) return m_text;
  std::vector<pokermath::OmahaHolding> held;
  for (const auto& [hand, weight] : m_weights) held.push_back({hand, weight});
  return pokermath::detail::holdings_text(held);
}

bool CSpec64::SetWeight(uint64_t hand, double weight) {
  if (!pokermath::detail::valid_holding(hand, m_holeCards) || !(weight >= 0 && weight <= 100)) return false;
  if (weight == 0)
    m_weights.erase(hand);
  else
    m_weights[hand] = weight;
  m_text.clear();
  return true;
}

double CSpec64::GetWeight(uint64_t hand) const {
  const auto it = m_weights.find(hand);
  return it == m_weights.end() ? 0 : it->second;
}

CRange64 CSpec64::GetRange64() const {
  CRange64 out(m_holeCards);
  bool full = true;
  for (const auto& [hand, weight] : m_weights) {
    out.m_hands.insert(out.m_hands.end(), hand);
    full = full && weight == 100;
  }
  if (full) out.m_text = m_text;
  return out;
}

pokermath::OmahaRange CSpec64::ToRange() const {
  std::vector<pokermath::OmahaHolding> held;
  held.reserve(m_weights.size());
  for (const auto& [hand, weight] : m_weights) held.push_back({hand, weight});
  return pokermath::OmahaRange(m_holeCards, std::move(held), m_text);
}

CSpec64 CSpec64::FromRange(const pokermath::OmahaRange& range) {
  CSpec64 out(range.hole_cards());
  for (const pokermath::OmahaHolding& h : range.holdings()) out.m_weights.emplace_hint(out.m_weights.end(), h.cards, h.weight);
  out.m_text = range.text();
  return out;
}

// ---- CSpecOmaha ----------------------------------------------------------------------------------

OmahaRange CSpecOmaha::GetOmahaRange() const {
  OmahaRange out;
  for (const auto& [hand, weight] : m_weights) {
    std::set<int> cards;
    for (uint64_t left = hand; left; left &= left - 1) cards.insert(cards.end(), std::countr_zero(left));
    out.insert(std::move(cards));
  }
  return out;
}

// CStatSpectr, CUserFolder and the Sklansky groups: ranges by percentage of all combinations.
#include <algorithm>
#include <cmath>

#include "ranges/hand_classes.h"
#include "ranges/tables.h"

using namespace pokermath::detail;

namespace {

constexpr int kHoldemCombos = 1326;

// The key of a Hold'em equity entry: the share of all combinations in per cent, rounded to one
// decimal; the first entry is stored as 0.45.
double equity_key(int entry, int combos) {
  if (entry == 0) return 0.45;
  return std::round(combos * 1000.0 / kHoldemCombos) / 10;
}

// Adds the classes of a blank-separated list to a range.
void add_classes(Spec& spec, std::wstring_view names) {
  for (int cell : cells_of_class_list(names)) add_class(spec, cell);
}

// The Sklansky group of every class cell (0 for none).
const std::array<int, kClasses>& sklansky_group_of_cell() {
  static const std::array<int, kClasses> groups = [] {
    std::array<int, kClasses> table{};
    for (size_t g = 0; g < kSklanskyGroups.size(); ++g)
      for (int cell : cells_of_class_list(kSklanskyGroups[g])) table[cell] = static_cast<int>(g) + 1;
    return table;
  }();
  return groups;
}

// The rank index (0..12, ace 12) of a CCard rank (ace 1), or -1 outside 1..13.
int rank_index(const CCard& card) {
  const int rank = card.GetRank();
  if (rank < 1 || rank > 13) return -1;
  return rank == 1 ? 12 : rank - 2;
}

// The user table from a source's percentage order: cumulative ranges keyed by cumulative per cent.
void make_user_table(const Spec& source, bool short_deck, std::map<double, Spec>& table,
                     std::map<double, CString>& texts) {
  table.clear();
  texts.clear();
  Spec cumulative;
  for (const auto& [key, token] : source.m_percentToHand) {
    source.AddStringToSpectr(token, cumulative);
    table[key] = cumulative;
    texts[key] = table_text(cumulative, short_deck);
  }
}

}  // namespace

void CStatSpectr::Init() {
  Spec cumulative;
  for (const GroupStep& step : kGroupSteps) {
    add_classes(cumulative, step.classes);
    m_groupTable[step.key] = cumulative;
  }
}

void CStatSpectr::InitEquil() {
  m_equityTable.clear();
  const std::vector<Spec> ranges = cumulative_ranges(equity_order());
  int combos = 0;
  for (size_t i = 0; i < ranges.size(); ++i) {
    combos += class_combos(equity_order()[i]);
    const double key = equity_key(static_cast<int>(i), combos);
    m_equityTable[key] = ranges[i];
    m_equityText[key] = table_text(ranges[i], false);
  }
}

void CStatSpectr::InitEquil6Plus() {
  m_equityTable.clear();
  const std::vector<Spec> ranges = cumulative_ranges(short_deck_equity_order());
  for (size_t i = 0; i < ranges.size(); ++i) {
    const double key = kShortDeckEquityOrder[i].key;
    m_equityTable[key] = ranges[i];
    m_equityText[key] = table_text(ranges[i], true);
  }
  for (const StoredText& stored : kShortDeckStoredTexts)
    m_equityText[kShortDeckEquityOrder[stored.entry - 1].key] = stored.text;
}

void CStatSpectr::InitBrenmark() {
  m_brenmarkTable.clear();
  Spec cumulative;
  add_classes(cumulative, L"AA");
  m_brenmarkTable[kBrenmarkTexts[0].key] = cumulative;
  // The group steps from 0.9 up to 30.0, then the table's own last step.
  for (size_t i = 0; i + 1 < kGroupSteps.size(); ++i) {
    add_classes(cumulative, kGroupSteps[i].classes);
    m_brenmarkTable[kGroupSteps[i].key] = cumulative;
  }
  add_classes(cumulative, kBrenmarkLastStep);
  m_brenmarkTable[kGroupSteps.back().key] = cumulative;
  for (const KeyedText& entry : kBrenmarkTexts) m_brenmarkText[entry.key] = entry.text;
}

void CStatSpectr::GetSpecByPercent(double percent, Spec& out, CString& text, int table) const {
  if (table == 1)
    select_entry(m_brenmarkTable, m_brenmarkText, percent, out, text);
  else
    select_entry(m_equityTable, m_equityText, percent, out, text);
}

int CStatSpectr::numSklanskyGroup(CCard card1, CCard card2, double percent) const {
  const int group = SklanskyGroup(card1, card2);
  if (group == 0) return 0;
  const bool aces = card1.GetRank() == 1 && card2.GetRank() == 1;
  const bool kings = card1.GetRank() == 13 && card2.GetRank() == 13;
  if (percent < 1.0) return aces ? 1 : 0;
  if (percent < 3.1) return aces || kings ? 1 : 0;
  if (percent > 40.1) return 1;  // every grouped hand
  // The limits sit just above the group table's keys.
  const int limit = percent > 30.1    ? 8
                    : percent > 23.41 ? 7
                    : percent > 20.11 ? 6
                    : percent > 12.21 ? 5
                    : percent > 8.41  ? 4
                    : percent > 7.11  ? 3
                    : percent > 4.71  ? 2
                                      : 1;
  return group <= limit ? 1 : 0;
}

int SklanskyGroup(CCard card1, CCard card2) {
  const int r1 = rank_index(card1), r2 = rank_index(card2);
  if (r1 < 0 || r2 < 0) return 0;
  const ClassKind kind = r1 == r2                             ? ClassKind::Pair
                         : card1.GetSuit() == card2.GetSuit() ? ClassKind::Suited
                                                              : ClassKind::Offsuit;
  return sklansky_group_of_cell()[class_cell(std::max(r1, r2), std::min(r1, r2), kind)];
}

void CUserFolder::MakeInterpolation() { make_user_table(m_source, false, m_userTable, m_userText); }

void CUserFolder::MakeInterpolation6Plus() { make_user_table(m_source, true, m_userTable, m_userText); }

void CUserFolder::GetSpecByPercent(double percent, Spec& out, CString& text) const {
  select_entry(m_userTable, m_userText, percent, out, text);
}

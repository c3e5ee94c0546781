// Spec: adding combinations, the class matrix and its printed string, suit matrices, counts.
#include <algorithm>
#include <cwctype>

#include "ranges/hand_classes.h"

namespace {

using pokermath::detail::combo_cell;
using pokermath::detail::valid_card;

// Inserts two cards with the higher-ranked one first; on equal ranks `second` goes first.
void insert_higher_first(Spec& spec, int first, int second) {
  if (GetCardRank(first) <= GetCardRank(second))
    spec.m_hands.emplace(second, first);
  else
    spec.m_hands.emplace(first, second);
}

// MakeMatrix and MakeMatrix6Plus: the short deck skips combinations with a card below "6".
void fill_matrix(const Spec& spec, bool short_deck, int matrix[169]) {
  std::fill(matrix, matrix + 169, 0);
  for (const auto& [a, b] : spec.m_hands) {
    const int cell = combo_cell(a, b);
    if (cell < 0) continue;
    if (short_deck && std::min(GetCardRank(a), GetCardRank(b)) < pokermath::detail::kShortDeckLowestRank) continue;
    matrix[cell] = 1;
  }
}

}  // namespace

void Spec::AddPair(int rank) {
  for (int s1 = 0; s1 < 3; ++s1)
    for (int s2 = s1 + 1; s2 < 4; ++s2) m_hands.emplace(13 * s1 + rank, 13 * s2 + rank);
}

void Spec::AddSuit(int rank1, int rank2) {
  for (int s = 0; s < 4; ++s) insert_higher_first(*this, 13 * s + rank1, 13 * s + rank2);
}

void Spec::AddNonSuit(int rank1, int rank2) {
  for (int s1 = 0; s1 < 4; ++s1)
    for (int s2 = 0; s2 < 4; ++s2)
      if (s1 != s2) insert_higher_first(*this, 13 * s1 + rank1, 13 * s2 + rank2);
}

void Spec::AddCard(int card1, int card2) {
  if (card1 != card2) insert_higher_first(*this, card1, card2);
}

void Spec::AddCard(const CCard& card1, const CCard& card2) { AddCard(card1.GetInt(), card2.GetInt()); }

void Spec::MakeRandom() {
  m_hands.clear();
  for (int c1 = 0; c1 < 51; ++c1)
    for (int c2 = c1 + 1; c2 < 52; ++c2) AddCard(c1, c2);
}

void Spec::Exclude(const std::vector<int>& dead, Spec& out) const {
  for (const auto& hand : m_hands)
    if (std::find(dead.begin(), dead.end(), hand.first) == dead.end() &&
        std::find(dead.begin(), dead.end(), hand.second) == dead.end())
      out.m_hands.insert(hand);
}

void Spec::MakeMatrix(int matrix[169]) const { fill_matrix(*this, false, matrix); }

void Spec::MakeMatrix6Plus(int matrix[169]) const { fill_matrix(*this, true, matrix); }

CString Spec::MakeString() const {
  return pokermath::detail::matrix_to_string(pokermath::detail::matrix_of(*this, false).data(), L"");
}

CString Spec::MakeString6Plus() const {
  return pokermath::detail::matrix_to_string(pokermath::detail::matrix_of(*this, true).data(), L"");
}

void MakeStr(int first, int last, int top, const CString& firstName, const CString& lastName, CString& out) {
  if (!out.empty()) out += L',';
  if (first != top) {
    out += firstName;
    if (last != first) out += L'-' + lastName;
  } else {
    out += lastName;
    if (last != top) out += L'+';
  }
}

Spec Spec::MakeSuitMatrix(int rank1, int rank2, int kind, int matrix[16]) const {
  const int high = std::max(rank1, rank2), low = std::min(rank1, rank2);
  std::fill(matrix, matrix + 16, 0);
  Spec result;
  for (const auto& [a, b] : m_hands) {
    if (!valid_card(a) || !valid_card(b) || GetCardRank(a) != high || GetCardRank(b) != low) continue;
    const int sa = a / 13, sb = b / 13;
    if (kind == 0 && sa == sb) continue;
    if (kind == 1 && sa != sb) continue;
    if (kind != 0 && kind != 1 && high != low) continue;
    matrix[4 * sa + sb] = 1;
    result.m_hands.emplace(a, b);
  }
  return result;
}

Spec SpecBySuitMatrix(int rank1, int rank2, const int matrix[16]) {
  Spec result;
  for (int i = 0; i < 16; ++i) {
    if (matrix[i] == 0) continue;
    const int c1 = 13 * (i / 4) + rank1, c2 = 13 * (i % 4) + rank2;
    result.m_hands.emplace(std::max(c1, c2), std::min(c1, c2));
  }
  return result;
}

void Spec::CalcStat(int& pairs, int& aceHands, int& suited, int& kingHands) const {
  constexpr int kAce = 12, kKing = 11;
  pairs = aceHands = suited = kingHands = 0;
  for (const auto& [a, b] : m_hands) {
    if (GetCardRank(a) == GetCardRank(b)) {
      ++pairs;
    } else {
      if (GetCardRank(a) == kAce) ++aceHands;
      if (GetCardRank(a) == kKing) ++kingHands;
    }
    if (isSuit(a, b)) ++suited;
  }
}

void Spec::CalcSuits(int& count, int suit) const {
  const bool any_suit = suit < 0 || suit > 3;
  count = 0;
  for (const auto& [a, b] : m_hands)
    if (isSuit(a, b) && (any_suit || a / 13 == suit)) ++count;
}

void Spec::CalcSuits(int& count, const CString& suitName) const {
  int suit = -1;  // any suit
  if (!suitName.empty()) {
    const auto letter = static_cast<wchar_t>(std::towlower(suitName[0]));
    for (int s = 0; s < 4 && suit < 0; ++s)
      if (letter == kSuitNames[s][0]) suit = s;
  }
  CalcSuits(count, suit);
}

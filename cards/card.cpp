// CCard and the free functions on card codes.
#include <algorithm>
#include <cstdlib>
#include <cwctype>

#include "pokermath/cards.h"

namespace {

// Position of a letter in an alphabet, or -1.
int position_in(std::wstring_view alphabet, wchar_t letter) {
  const size_t pos = alphabet.find(letter);
  return pos == std::wstring_view::npos ? -1 : static_cast<int>(pos);
}

// The rank with the ace counted 14, used by every CCard comparison.
int ace_high(int rank) { return rank == 1 ? 14 : rank; }

}  // namespace

CCard::CCard(int code) {
  const int r = code % 13;
  m_rank = r == 12 ? 1 : r + 2;
  m_suit = static_cast<Suit>(code / 13);
}

CCard::CCard(Suit suit, int rank) : m_rank(rank), m_suit(suit) {}

CCard::CCard(int rank, Suit suit) : m_rank(rank), m_suit(suit) {}

CCard::CCard(wchar_t rank, wchar_t suit) {
  if (const int s = position_in(kSuitLetters, suit); s >= 0) m_suit = static_cast<Suit>(s);
  if (const int r = position_in(kCCardRankLetters, rank); r >= 0) m_rank = r + 1;
}

CCard::CCard(const CString& rank, const CString& suit) {
  // Only the first letter of each text counts, in any case.
  if (!suit.empty())
    if (const int s = position_in(kSuitLetters, static_cast<wchar_t>(std::towlower(suit[0]))); s >= 0)
      m_suit = static_cast<Suit>(s);
  if (!rank.empty())
    if (const int r = position_in(kCCardRankLetters, static_cast<wchar_t>(std::towupper(rank[0]))); r >= 0)
      m_rank = r + 1;
}

int CCard::GetSuitAsInt() const {
  const int s = static_cast<int>(m_suit);
  return s >= 0 && s <= 3 ? s : 0;
}

int CCard::GetInt() const { return 13 * static_cast<int>(m_suit) + (m_rank == 1 ? 12 : m_rank - 2); }

bool CCard::operator<(const CCard& other) const { return ace_high(m_rank) < ace_high(other.m_rank); }
bool CCard::operator>(const CCard& other) const { return ace_high(m_rank) > ace_high(other.m_rank); }
bool CCard::operator==(const CCard& other) const { return m_rank == other.m_rank; }
bool CCard::operator!=(const CCard& other) const { return m_rank != other.m_rank; }

CString CCard::GetCardName() const { return CString(kRankNames[m_rank - 1]) + L" of " + kSuitNames[GetSuitAsInt()]; }

CString CCard::GetName2() const {
  const wchar_t rank = m_rank == 10 ? L'T' : kRankNames[m_rank - 1][0];
  return CString{rank, kSuitNames[GetSuitAsInt()][0]};
}

int GetCardByName(CString name) {
  for (int code = 0; code < 52; ++code)
    if (name == kCardNames[code]) return code;
  return -1;
}

int GetCardRankByName(wchar_t letter) { return position_in(kRankLetters, letter); }

int GetCardSuitByName(wchar_t letter) { return position_in(kSuitLetters, letter); }

int GetCardRank(int code) { return code % 13; }

int GetInverseCardRank(int code) { return 12 - code % 13; }

bool isSuit(int a, int b) { return a / 13 == b / 13; }

bool comparefun(int a, int b) {
  const int ra = a % 13, rb = b % 13;
  if (ra != rb) return ra > rb;
  return a > b;
}

bool isExist(int card, const int* cards, int count) {
  for (int i = 0; i < count; ++i)
    if (cards[i] == card) return true;
  return false;
}

void charTOwchar(const char* source, wchar_t*& destination) {
  const size_t length = std::mbstowcs(nullptr, source, 0);
  if (length == static_cast<size_t>(-1)) {
    destination = new wchar_t[1]{L'\0'};
    return;
  }
  destination = new wchar_t[length + 1];
  std::mbstowcs(destination, source, length + 1);
}

// Cards and card sets: card codes, names, encodings, 64-bit masks, decks, random deals and the two
// combination enumerators.
//
// A card code is an int 0..51 = 13 * suit + rank index; rank index 0..12 = 2..A, suit 0..3 =
// clubs, diamonds, hearts, spades; -1 means "no card". A card mask has bit `code` set per card.
#pragma once

#include <array>
#include <cstdint>
#include <random>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "pokermath/support.h"

class PokerLogic;

// ---- names and letters -------------------------------------------------------------------------

// Two-letter card names by card code: "2c" .. "Ac", "2d" .. "As".
inline constexpr const wchar_t* kCardNames[52] = {
    L"2c", L"3c", L"4c", L"5c", L"6c", L"7c", L"8c", L"9c", L"Tc", L"Jc", L"Qc", L"Kc", L"Ac",
    L"2d", L"3d", L"4d", L"5d", L"6d", L"7d", L"8d", L"9d", L"Td", L"Jd", L"Qd", L"Kd", L"Ad",
    L"2h", L"3h", L"4h", L"5h", L"6h", L"7h", L"8h", L"9h", L"Th", L"Jh", L"Qh", L"Kh", L"Ah",
    L"2s", L"3s", L"4s", L"5s", L"6s", L"7s", L"8s", L"9s", L"Ts", L"Js", L"Qs", L"Ks", L"As"};

// Wildcards of the Omaha range strings: 0..3 any rank of a suit, 4..16 a rank (4 + rank index) in
// any suit, 17 any card.
inline constexpr const wchar_t* kWildcardNames[18] = {L"Xc", L"Xd", L"Xh", L"Xs", L"2x", L"3x", L"4x", L"5x", L"6x",
                                                      L"7x", L"8x", L"9x", L"Tx", L"Jx", L"Qx", L"Kx", L"Ax", L"Xx"};

// Long rank names by CCard rank - 1 (the ace first), and suit names by suit.
inline constexpr const wchar_t* kRankNames[13] = {L"Ace", L"2", L"3",  L"4",    L"5",     L"6",   L"7",
                                                  L"8",   L"9", L"10", L"Jack", L"Queen", L"King"};
inline constexpr const wchar_t* kSuitNames[4] = {L"clubs", L"diamonds", L"hearts", L"spades"};

// Rank letters by rank index, rank letters by CCard rank - 1, suit letters by suit.
inline constexpr std::wstring_view kRankLetters = L"23456789TJQKA";
inline constexpr std::wstring_view kCCardRankLetters = L"A23456789TJQK";
inline constexpr std::wstring_view kSuitLetters = L"cdhs";

// ---- CCard -------------------------------------------------------------------------------------

// Fixed to int so that any stored value (a code constructor given 60, say) is well defined.
enum Suit : int { Clubs = 0, Diamonds = 1, Hearts = 2, Spades = 3 };

// One card as a face value with the ACE LOW (1 = ace, 2..10, 11 = jack, 12 = queen, 13 = king;
// 0 = no card) and a suit. Comparisons look at ranks only, the ace counting 14.
class CCard {
 public:
  int m_rank = 0;
  Suit m_suit = Hearts;

  CCard() = default;                                // rank 0, suit Hearts: the empty card
  CCard(int code);                                  // from a card code, no range check (implicit, as callers expect)
  CCard(Suit suit, int rank);                       // stores the CCard rank (ace = 1) and the suit
  CCard(int rank, Suit suit);                       // the same, other argument order
  CCard(wchar_t rank, wchar_t suit);                // exact letters from "A23456789TJQK" and "cdhs"
  CCard(const CString& rank, const CString& suit);  // first letters, any case

  int GetRank() const { return m_rank; }
  Suit GetSuit() const { return m_suit; }
  int GetSuitAsInt() const;  // 0..3; any other stored value gives 0
  int GetInt() const;        // the card code

  bool operator<(const CCard& other) const;
  bool operator>(const CCard& other) const;
  bool operator==(const CCard& other) const;  // same rank, whatever the suits
  bool operator!=(const CCard& other) const;

  CString GetCardName() const;  // "Ace of spades", "10 of hearts"; rank must be 1..13
  CString GetName2() const;     // "As", "Th"; rank must be 1..13
};

// ---- free functions on card codes ---------------------------------------------------------------

int GetCardByName(CString name);        // exact two-letter name -> code, else -1
int GetCardRankByName(wchar_t letter);  // "23456789TJQKA" -> 0..12, else -1 (case-sensitive)
int GetCardSuitByName(wchar_t letter);  // "cdhs" -> 0..3, else -1 (case-sensitive)
int GetCardRank(int code);              // rank index, ace = 12
int GetInverseCardRank(int code);       // 12 - rank index, ace = 0
bool isSuit(int a, int b);              // same suit
bool comparefun(int a, int b);          // sort predicate: higher rank first, then higher code
bool isExist(int card, const int* cards, int count);
// Converts a narrow string in the current C locale to a new[]-allocated wide string; the caller
// frees it with delete[]. A string that cannot be converted gives an empty string.
void charTOwchar(const char* source, wchar_t*& destination);

// ---- masks ---------------------------------------------------------------------------------------

int Int64ToArray(uint64_t mask, int& count, int* cards);  // codes in increasing order; returns count
uint64_t ArrayToInt64(int count, const int* cards);       // bit (card AND 63) per card; count < 1 gives 0
int Int64ToVec(uint64_t mask, std::vector<int>& cards);
int Int64ToVec(uint64_t mask, std::vector<uint32_t>& cards);
uint64_t VecToInt64(const std::vector<int>& cards);
uint64_t MakeOmahaHand(int c1, int c2, int c3, int c4);
uint64_t MakeOmahaHand(int c1, int c2, int c3, int c4, int c5);
uint64_t MakeOmahaHand(int c1, int c2, int c3, int c4, int c5, int c6);
uint64_t MakeOmahaHand(int c1, int c2, int c3, int c4, int c5, int c6, int c7);

// ---- other encodings of one card -----------------------------------------------------------------
namespace pokermath {

inline constexpr std::array<int, 13> kRankPrimes = {2, 3, 5, 7, 11, 13, 17, 19, 23, 29, 31, 37, 41};

// Rank-major code 4 * rank + suit (0 = 2c, 1 = 2d, ..., 51 = As).
constexpr int rank_major_code(int card) { return 4 * (card % 13) + card / 13; }
// One-based rank-major code (1 = 2c .. 52 = As; 0 = no card).
constexpr int one_based_code(int card) { return rank_major_code(card) + 1; }
// Short-deck code 0..35 (0 = 6c .. 35 = As), -1 for deuces to fives.
constexpr int short_deck_code(int card) { return card % 13 >= 4 ? 4 * (card % 13 - 4) + card / 13 : -1; }
// Card code of a short-deck code 0..35.
constexpr int card_from_short_deck(int k) { return 13 * (k % 4) + 4 + k / 4; }
// Prime-product card word of the five-card evaluator.
constexpr uint32_t prime_word(int card) {
  const int r = card % 13, s = card / 13;
  return static_cast<uint32_t>(kRankPrimes[r] | (r << 8) | (0x8000 >> s) | (1 << (16 + r)));
}

template <int (*F)(int)>
constexpr std::array<int, 52> make_code_table() {
  std::array<int, 52> table{};
  for (int c = 0; c < 52; ++c) table[c] = F(c);
  return table;
}
inline constexpr std::array<int, 52> kRankMajorCodes = make_code_table<rank_major_code>();
inline constexpr std::array<int, 52> kOneBasedCodes = make_code_table<one_based_code>();
inline constexpr std::array<int, 52> kShortDeckCodes = make_code_table<short_deck_code>();

}  // namespace pokermath

// ---- decks -----------------------------------------------------------------------------------------

// A hand of cards with its combination value m_value (six ints compared lexicographically, larger
// wins, category 1..10 first; filled by SetValueCombination) and its Omaha low value.
class CDeck {
 public:
  std::vector<CCard> m_cards;
  int m_value[6] = {0, 0, 0, 0, 0, 0};
  int m_lowValue = 0;  // Omaha low: smaller is better, 0 = no low

  CDeck() = default;
  void AddCard(CCard card) { m_cards.push_back(card); }
  void DeleteCards() { m_cards.clear(); }  // keeps m_value
  int GetTotalCards() const { return static_cast<int>(m_cards.size()); }

  // Fills m_value from the five to seven cards (the hand comparison evaluator).
  void SetValueCombination(PokerLogic& logic);
  // 1 if this m_value is larger, -1 if smaller, 0 if equal.
  int compareTo(CDeck other) const;
  // Writes the first flush suit's five highest ranks into m_value[1..5]; returns m_value[1], or -1.
  int isFlush(const std::vector<int>& ranks, const std::vector<int>& suits, int suitCount[4]);
  // The description of m_value, preceded by 16 blanks ("                flush Ace high").
  CString display() const;
  // Omaha: cards 0..3 are the hole cards, 4.. the board. m_value becomes the best 2+3 value (all
  // zeros with fewer than 7 cards); the low value is cleared.
  void SetValueCombinationOmaha(PokerLogic& logic);
  // Omaha: stores the best low of cards 0..3 with 4.. in m_lowValue (0 = none).
  void SetLowValueCombinationOmaha(PokerLogic& logic);
};

// The 52 prime-product card words of the five-card evaluator, indexed by card code.
class CPokerDeck {
 public:
  uint32_t m_words[52];
  CPokerDeck();
  uint32_t operator[](int card) const { return m_words[card]; }
};

// ---- random numbers and hands ----------------------------------------------------------------------

// Uniform-ish integers low..high drawn from the C runtime's rand(), shared by every instance.
class EasyRandom {
 public:
  int m_low = 0;
  int m_high = 1;
  int m_width = 2;

  EasyRandom(int low, int high) { SetInterval(low, high); }
  void SetInterval(int low, int high);  // low > high silently means 0..1
  void SetTimerSeed();                  // reseeds the process-wide rand() from the clock
  int DrawRandomNumber() const;         // rand() % width + low
};

// `count` distinct cards as a mask; draws repeat until a new card comes. The caller sets the
// interval to 0..51. Never returns if count exceeds the cards the interval can produce.
uint64_t GetRandomHand(int count, EasyRandom& random);
// The same with an MT19937 engine: card = next output mod 52.
uint64_t GetRandomHand(int count, std::mt19937& engine);
// The same over the 36-card short deck; the caller sets the interval to 0..35.
uint64_t GetRandomHand36(int count, EasyRandom& random);

// ---- enumerators --------------------------------------------------------------------------------

// A mixed-radix odometer over several dimensions; position 0 turns fastest.
class CRoundEnumerate {
 public:
  std::vector<int> m_dims;
  std::vector<int> m_pos;
  uint64_t m_index = 0;  // number of the current tuple, from 1
  uint64_t m_total = 0;  // number of tuples

  void AddDim(int size) { m_dims.push_back(size); }
  int GetSize() const { return static_cast<int>(m_dims.size()); }
  std::vector<int> first();
  std::vector<int> next();
};

// The k-subsets of 0..n-1 in lexicographic order. Loop while m_index <= m_total.
class CRoundBoardEnumerate {
 public:
  std::vector<int> m_pos;
  std::vector<int> m_limit;  // position i may not reach n - k + i + 1
  std::vector<int> m_start;  // 0..k-1 appended on every first(); never read
  int m_k = 0;
  int m_n = 0;
  int m_index = 0;
  int m_total = 0;  // C(n, k)

  CRoundBoardEnumerate(int k, int n);
  std::vector<int> first();
  std::vector<int> next();
};

// ---- the pokermath:: card API ---------------------------------------------------------------------
namespace pokermath {

// Parses one card: a rank (2-9, T, J, Q, K, A, or "10") and a suit (c, d, h, s). Letters are
// accepted in either case ("As", "as", "AS", "td", "10h"). Throws Error naming the text otherwise.
int parse_card(std::string_view text);

// Parses a list of cards written together or separated by blanks or commas ("AsKs", "As Ks",
// "As,Ks"). Throws Error naming the bad token and its 1-based position, or a repeated card.
std::vector<int> parse_cards(std::string_view text);

// Parses several texts as one list (e.g. command-line arguments); positions count across them.
std::vector<int> parse_cards(std::span<const std::string> texts);

// The two-letter name of a card code ("As"); throws Error for codes outside 0..51.
std::string card_to_string(int card);

// Card names joined by single blanks ("As Ks Qs").
std::string cards_to_string(std::span<const int> cards);

// The mask of the cards; throws Error for a code outside 0..51 or a repeated card.
uint64_t cards_to_mask(std::span<const int> cards);

}  // namespace pokermath

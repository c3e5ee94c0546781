// Hold'em ranges: the Spec range over the 169 starting-hand classes, its tokens, range files and
// printed range strings; the built-in tables of ranges by percentage and the Sklansky groups; and
// the pokermath:: range API (range expressions as players type them, validated tables and files).
//
// The 169-class matrix is 13 x 13, row-major, rows and columns from the ace (0) down to the two
// (12): pairs on the diagonal, suited classes above it (row = high card), offsuit classes below it
// (column = high card). "AA" = 0, "AKs" = 1, "AKo" = 13, "22" = 168.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "pokermath/cards.h"
#include "pokermath/support.h"

// ---- Spec: a Hold'em range ----------------------------------------------------------------------

// A set of two-card combinations, plus the percentage order of the 169 classes read from a range
// file. An element (first, second) keeps the card order its adding operation chose, so the same two
// cards added in both orders are two elements (AddPair stores the lower suit first, AddCard the
// higher-ranked card first and, on equal ranks, its second argument first). No adding operation
// checks its arguments; the matrix, suit-matrix and strength operations skip elements whose codes
// lie outside 0..51 (they have no cell).
class Spec {
 public:
  std::set<std::pair<int, int>> m_hands;      // the combinations, ordered lexicographically
  int m_totalStrategies = 0;                  // classes a complete range file lists (169)
  int m_totalHands = 0;                       // their combinations (1326); 0 until set
  CString m_fileName;                         // the range file (SetFile)
  std::map<double, CString> m_percentToHand;  // cumulative per cent -> class token of the file
  std::map<CString, double> m_handToPercent;  // class token -> cumulative per cent

  // An empty range with no file; copies and moves take every member.
  Spec() = default;
  Spec(const Spec&) = default;
  Spec(Spec&&) = default;
  Spec& operator=(const Spec&) = default;
  Spec& operator=(Spec&&) = default;
  virtual ~Spec() = default;

  // Store a member: a percentage source is set up with these before ReadSpectrFromFile.
  void SetTotalStrategies(int count) { m_totalStrategies = count; }
  void SetTotalHands(int count) { m_totalHands = count; }
  void SetFile(CString fileName) { m_fileName = std::move(fileName); }

  // Empties the set of combinations (the percentage maps stay).
  void Clear() { m_hands.clear(); }
  // The number of elements in the set (both card orders of one pair of cards count twice).
  int GetSize() const { return static_cast<int>(m_hands.size()); }

  // Adds the 6 combinations of the pair of rank index 0..12 (2..A), lower suit first.
  void AddPair(int rank);
  // Adds the 4 suited combinations of two rank indices, higher-ranked card first.
  void AddSuit(int rank1, int rank2);
  // Adds the 12 offsuit combinations of two rank indices, higher-ranked card first.
  void AddNonSuit(int rank1, int rank2);
  // Adds one combination of two card codes, higher rank first, on equal ranks card2 first;
  // nothing when card1 == card2.
  void AddCard(int card1, int card2);
  // The same for two CCard values (converted with CCard::GetInt).
  void AddCard(const CCard& card1, const CCard& card2);
  // Replaces the set with all 1326 combinations (AddCard of every c1 < c2).
  void MakeRandom();
  // Adds to `out` every combination of this range that uses none of the dead card codes.
  void Exclude(const std::vector<int>& dead, Spec& out) const;

  // Fills the 169-class matrix: 1 for every class holding at least one combination, else 0.
  void MakeMatrix(int matrix[169]) const;
  // The same for the short deck: combinations with a card below "6" are skipped.
  void MakeMatrix6Plus(int matrix[169]) const;
  // The compact range string of MakeMatrix: pairs, then suited ("AJs"), then offsuit classes
  // written WITHOUT a suffix ("AJ" is the 12 offsuit combinations): "QQ+,AQs+,AK".
  CString MakeString() const;
  // The same over MakeMatrix6Plus.
  CString MakeString6Plus() const;

  // The combinations of this range in the class of two rank indices whose first card has the
  // higher rank: kind 0 offsuit, 1 suited, any other value a pair (ranks must be equal). Fills
  // the 16-cell suit matrix (4 * suit of first card + suit of second) and returns them as a Spec.
  Spec MakeSuitMatrix(int rank1, int rank2, int kind, int matrix[16]) const;
  // Counts elements: pairs; non-pairs whose first card is an ace (aceHands) or a king
  // (kingHands); and, independently, suited elements.
  void CalcStat(int& pairs, int& aceHands, int& suited, int& kingHands) const;
  // Counts suited elements; with a suit 0..3 only those whose first card has that suit.
  void CalcSuits(int& count, int suit) const;
  // The same with a suit name: its first letter, any case, picks clubs, diamonds, hearts or
  // spades; an empty or unmatched name counts every suit.
  void CalcSuits(int& count, const CString& suitName) const;

  // Adds one class token of a range file to `out` and returns its combinations: "(XY)" suited
  // (4), "XX" a pair (6), anything else offsuit (12) - "AKs" reads as AK offsuit. Only the first
  // characters are read; unknown letters are not detected (their rank index is -1).
  int AddStringToSpectr(const CString& token, Spec& out) const;
  // Reads the range file m_fileName into the percentage maps. Returns 0 without a message when the
  // name does not end in "txt"; shows "You need to download file %s" and returns 0 when it is
  // missing; with mode != 0 shows "File %s is corrupted (it has bad lines %d)!" (the combination
  // total) and returns 0 when the total is not m_totalHands; mode > 1 also writes a ".res" report.
  // Returns 1 on success.
  int ReadSpectrFromFile(int mode);
  // Makes `out` the strongest classes of the file whose cumulative per cent lies below
  // percent + 3.5 / m_totalStrategies (clears out's set first).
  void GetSpecByPercent(double percent, Spec& out) const;

  // The whole class of the strongest class this range touches (fixed strength order); empty
  // when the range is empty.
  Spec MakeBestHand() const;
  // The same, skipping combinations with a card below "6".
  Spec MakeBestHand6Plus() const;
  // The whole class of the strongest class this range does not touch; empty when it touches all.
  Spec MakeNextForceHand() const;
  // The same over the 81 short-deck classes, ranked in the short-deck equity table's order
  // (InitEquil6Plus); classes with a card below "6" are never chosen.
  Spec MakeNextForceHand6Plus() const;
};

// Appends one run of matrix cells to a range string: "," when `out` is not empty; then, for a run
// that does not start at the top of its line, firstName and "-lastName" unless it is one cell
// ("QQ-88", "A5s"); for a run from the top, lastName and "+" unless it is only the top ("TT+").
void MakeStr(int first, int last, int top, const CString& firstName, const CString& lastName, CString& out);

// The Spec of a suit matrix (16 cells, 4 * suit1 + suit2) of two rank indices: one element
// (larger code, smaller code) per non-zero cell.
Spec SpecBySuitMatrix(int rank1, int rank2, const int matrix[16]);

// ---- ranges by percentage ------------------------------------------------------------------------

// Built-in tables from a share of all combinations (per cent) to a cumulative range: the Spec
// under a key holds every class of the smaller keys too.
class CStatSpectr {
 public:
  std::map<double, Spec> m_groupTable;       // Init: the Sklansky groups, 15 steps, no texts
  std::map<double, Spec> m_equityTable;      // InitEquil (169 classes) or InitEquil6Plus (81)
  std::map<double, CString> m_equityText;    // their range strings, offsuit classes with "o"
  std::map<double, Spec> m_brenmarkTable;    // InitBrenmark, 16 steps
  std::map<double, CString> m_brenmarkText;  // its stored texts ("AK" there means AKs and AKo)

  // Fills m_groupTable (assigns its 15 keys, clears nothing).
  void Init();
  // Fills the equity table with the 169 Hold'em classes, one per key (key = share rounded to one
  // decimal, the first 0.45). Clears m_equityTable, overwrites texts key by key.
  void InitEquil();
  // The same for the 81 short-deck classes (keys are shares of 630, as stored); replaces the
  // Hold'em table.
  void InitEquil6Plus();
  // Fills the brenmark table and texts (16 steps from 0.3 to 40.0).
  void InitBrenmark();
  // Copies the largest entry at or below `percent` (the first entry when percent is below it) to
  // `out` and its text to `text`: table 1 the brenmark table, any other the equity table. An empty
  // table gives an empty Spec and text.
  void GetSpecByPercent(double percent, Spec& out, CString& text, int table) const;
  // 1 when the hand lies in the range of `percent` by Sklansky groups (below 1.0 only AA, below 3.1
  // only AA and KK, then group limits at 4.71, 7.11, 8.41, 12.21, 20.11, 23.41, 30.1, 40.1), else 0.
  int numSklanskyGroup(CCard card1, CCard card2, double percent) const;
};

// A user's own table of ranges by percentage, built from the percentage order of a range file:
// one cumulative range per class of the file, keyed by the file's cumulative per cent (no
// interpolation between classes), with texts in the equity table's form.
class CUserFolder {
 public:
  Spec m_source;                         // the range file: SetFile, totals, ReadSpectrFromFile
  std::map<double, Spec> m_userTable;    // cumulative ranges by cumulative per cent
  std::map<double, CString> m_userText;  // their range strings, offsuit classes with "o"

  // Rebuilds the user table from m_source's percentage order: one entry per class of the file,
  // keyed by the file's cumulative per cent.
  void MakeInterpolation();
  // The same with short-deck texts (MakeString6Plus form).
  void MakeInterpolation6Plus();
  // As CStatSpectr::GetSpecByPercent over the user table.
  void GetSpecByPercent(double percent, Spec& out, CString& text) const;
};

// Standard first-in (open-raise) ranges of a six-handed game, by seat, in the players' notation:
//   UTG  66+,A9s+,KTs+,QTs+,JTs,T9s,AJo+,KQo
//   HJ   55+,A7s+,A5s,K9s+,Q9s+,J9s+,T9s,98s,ATo+,KJo+
//   CO   33+,A2s+,K8s+,Q9s+,J9s+,T8s+,97s+,87s,76s,65s,A9o+,KTo+,QTo+,JTo
//   BTN  22+,A2s+,K4s+,Q6s+,J7s+,T7s+,96s+,85s+,75s+,64s+,54s,A4o+,K9o+,Q9o+,J9o+,T9o
//   SB   22+,A2s+,K6s+,Q8s+,J8s+,T8s+,97s+,86s+,75s+,65s,54s,A7o+,A5o,KTo+,QTo+,JTo
// Each seat opens everything the seat before it opens; the small blind, with the big blind still
// to act, opens a subset of the button's range.
class StrategyRanges {
 public:
  std::vector<std::pair<CString, Spec>> m_ranges;  // "UTG", "HJ", "CO", "BTN", "SB", in seat order

  // Rebuilds m_ranges with AddPair, AddSuit and AddNonSuit (whole classes only).
  void MakeSrategyRanges();
  // The range of a seat name, or nullptr.
  const Spec* GetRange(const CString& seat) const;
};

// The Sklansky group 1..8 of a hand (1 strongest), 0 when it is in none.
int SklanskyGroup(CCard card1, CCard card2);

// ---- the pokermath:: range API ------------------------------------------------------------------
namespace pokermath {

// How a range expression reads a class written without a suffix.
enum class RangeNotation {
  Players,  // "KQ" is KQs and KQo; "KQo" offsuit; single combinations and "random"/"any" allowed
  Printed,  // as Spec::MakeString prints: "KQ" is offsuit only; "o", combos and "any" are refused
};

// Parses a range expression: items separated by commas or blanks - "AA", "TT+", "99-66", "AKs",
// "A2s+", "A9s-A6s", "KQo", "K9o+", "KQ", "K9+", single combinations "AsKs", "random" or "any".
// Suffix case and blanks are free. Throws Error naming the bad item and its 1-based position.
Spec parse_range(std::string_view text, RangeNotation notation = RangeNotation::Players);

// The canonical string of a Spec in the players' notation: whole classes in runs, offsuit ones
// with "o" ("QQ+,AKs,AKo"), a class held in part as its combinations ("7h7d"). parse_range reads
// it back to the same combinations. `short_deck` drops classes with a card below "6".
std::string range_to_string(const Spec& range, bool short_deck = false);

// Distinct two-card combinations held (both card orders count once; invalid codes are ignored).
int range_combos(const Spec& range);

// Distinct combinations held per class cell 0..168 (0 .. 6, 4 or 12).
std::array<int, 169> range_class_counts(const Spec& range);

// The name of class cell 0..168 ("AA", "AKs", "AKo"); throws Error outside 0..168.
std::string hand_class_name(int cell);

// The class cell 0..168 of two different card codes 0..51, in either order; throws Error otherwise.
int hand_class_of(int card1, int card2);

// The number of combinations of class cell 0..168: 6 for a pair, 4 suited, 12 offsuit; throws
// Error outside 0..168.
int hand_class_combos(int cell);

// The built-in tables of ranges by percentage.
enum class RangeTable {
  Equity,           // the 169 classes one by one, in order of equity
  Groups,           // the Sklansky groups, 15 steps
  Brenmark,         // 16 steps from AA to 40 per cent
  ShortDeckEquity,  // the 81 short-deck classes one by one (per cent of 630 combinations)
};

// One entry of a built-in table.
struct TableRange {
  double key = 0;    // the entry's share of all combinations in per cent, as the table stores it
  std::string text;  // the table's text (the groups table has none: its range string instead)
  Spec range;        // the cumulative range
};

// The largest entry of a table at or below `percent` (the first entry below it). Throws Error
// unless 0 <= percent <= 100.
TableRange table_range(RangeTable table, double percent);

// The game a range file ranks: 169 Hold'em classes of 1326 combinations, or 81 short-deck classes
// of 630.
enum class RangeGame { Holdem, ShortDeck };

// Reads a range file into a Spec's percentage maps (see Spec::ReadSpectrFromFile). Throws
// FileError (a kind of Error) when the file is missing, not a regular file or unreadable; Error,
// naming the file and line, for a name not ending in ".txt", no line starting with "AA", a bad or
// repeated class token, a class the game does not have, or a combination total other than the game's.
// A hand line may give its class a weight after the token and a blank: "AK @50" (0 < N <= 100; a
// bad number is an Error). Weights are read by the second form, which fills `weights` per class cell
// (100 for a line without one); the classic reader reads the token and ignores the rest.
Spec read_range_file(const std::string& path, RangeGame game = RangeGame::Holdem);
Spec read_range_file(const std::string& path, RangeGame game, std::array<double, 169>& weights);

// The strongest classes of a range file that cover `percent` (Spec::GetSpecByPercent). Throws
// Error unless 0 <= percent <= 100 and `source` holds a percentage order.
Spec range_by_percent(const Spec& source, double percent);

// ---- weighted Hold'em ranges ----------------------------------------------------------------------

// One combination of a weighted range: two card codes (the higher code first) and its weight, a
// percentage 0 < weight <= 100 (100: always held, 50: held half as often).
struct WeightedCombo {
  int card1 = 0, card2 = 0;
  double weight = 100;
  friend bool operator==(const WeightedCombo&, const WeightedCombo&) = default;
};

// A Hold'em range whose combinations carry weights. Every pokermath:: equity engine takes one (as
// the text of a player); a deal then counts in proportion to the product of the players' weights.
class WeightedRange {
 public:
  WeightedRange() = default;
  // Every combination of a Spec at one weight (100 by default). Throws Error for a weight outside
  // 0 < weight <= 100.
  explicit WeightedRange(const Spec& range, double weight = 100);

  // The weight of the combination of two card codes in either order, 0 when it is not held. Throws
  // Error for codes outside 0..51 or equal codes.
  double weight(int card1, int card2) const;
  // Sets a combination's weight; 0 removes it. Throws Error for bad codes or a weight outside 0..100.
  void set_weight(int card1, int card2, double weight);

  // The combinations held, ascending by (higher code, lower code).
  std::vector<WeightedCombo> combos() const;
  size_t size() const { return m_count; }
  bool empty() const { return m_count == 0; }
  // The sum of the weights / 100: how many combinations the range stands for.
  double total_weight() const;
  // The same per class cell 0..168 (0 .. 6, 4 or 12).
  std::array<double, 169> class_weights() const;
  // The share of each class held (its weight / its combinations, 0..1), NaN for a class not held:
  // what a range grid shows.
  std::array<double, 169> class_shares() const;
  // True when some combination has a weight below 100.
  bool weighted() const;
  // The combinations without their weights.
  Spec to_spec() const;
  // The canonical text: the combinations of each weight as range_to_string prints them, every item
  // of a weight below 100 followed by "@N" ("QQ+,AKs,JJ@50,AQs@50"). parse_weighted_range reads it
  // back to the same weights.
  std::string text() const;

  friend bool operator==(const WeightedRange&, const WeightedRange&) = default;

 private:
  std::array<double, 1326> m_weights{};  // by combination number (see combo_index)
  size_t m_count = 0;
};

// The number 0..1325 of the combination of two different card codes 0..51, either order: pairs of
// codes (a < b) in lexicographic order.
int combo_index(int card1, int card2);

// Parses a range expression in which any item may carry a weight "@N", 0 < N <= 100 ("AA, KK@50,
// AKs@25, A5s-A2s@75"; a weight after a run applies to every class of it; items without one weigh
// 100). A combination named by several items keeps its largest weight. Otherwise as parse_range
// (players' notation); throws Error naming the bad item and its position.
WeightedRange parse_weighted_range(std::string_view text);

// range_by_percent with the weights of a range file's lines (read_range_file's second form).
WeightedRange range_by_percent(const Spec& source, double percent, const std::array<double, 169>& weights);

}  // namespace pokermath

// ---- Omaha ranges ---------------------------------------------------------------------------------
// Omaha holdings of 4, 5 or 6 cards are 64-bit card masks (bit `code` per card). A range of them is
// written in the Omaha range language of docs/omaha-ranges.md ("AA**:ds, KQJT, 15%@50"); the
// pokermath:: type is OmahaRange, and the classic classes below convert to and from it.

namespace pokermath {

// One holding of an Omaha range and its weight, a percentage 0 < weight <= 100 (100: always held).
struct OmahaHolding {
  uint64_t cards = 0;
  double weight = 100;
  friend bool operator==(const OmahaHolding&, const OmahaHolding&) = default;
};

// A weighted set of Omaha holdings of one size. Holdings are distinct and kept in ascending order of
// their masks. `text` is the range in the Omaha range language: the expression it was parsed from,
// printed in canonical form (parse_omaha_range(text) gives the same holdings and weights back).
class OmahaRange {
 public:
  OmahaRange() = default;
  // Holdings of `hole_cards` (4, 5 or 6) cards: sorted, a holding given twice keeps its largest
  // weight. `text` empty prints the holdings themselves ("AsKsQhJh,AcKcQdJd@50"). Throws Error for
  // a hole-card count outside 4..6, a mask without exactly that many cards among codes 0..51, or a
  // weight outside 0 < weight <= 100.
  OmahaRange(int hole_cards, std::vector<OmahaHolding> holdings, std::string text = {});

  int hole_cards() const { return m_holeCards; }
  const std::vector<OmahaHolding>& holdings() const { return m_holdings; }
  size_t size() const { return m_holdings.size(); }
  bool empty() const { return m_holdings.empty(); }
  // The sum of the weights / 100: the number of holdings a weighted range stands for.
  double total_weight() const;
  // The weight of a holding, 0 when the range does not hold it.
  double weight(uint64_t cards) const;
  bool contains(uint64_t cards) const { return weight(cards) > 0; }
  // The range in the language (see above).
  const std::string& text() const { return m_text; }
  // The holdings that share no card with `cards` (dead cards, a board), same weights; the text
  // becomes the holdings' list.
  OmahaRange without(uint64_t cards) const;

  // Union (a holding in both keeps the larger weight), intersection (the smaller weight) and
  // difference (the left weight); the text joins the two texts with ",", ":" or "!". Throws Error
  // when the hole-card counts differ.
  friend OmahaRange operator|(const OmahaRange& a, const OmahaRange& b);
  friend OmahaRange operator&(const OmahaRange& a, const OmahaRange& b);
  friend OmahaRange operator-(const OmahaRange& a, const OmahaRange& b);

 private:
  int m_holeCards = 4;
  std::vector<OmahaHolding> m_holdings;
  std::string m_text;
};

// A holding as text: its cards from the highest rank down, equal ranks clubs first ("AsAhKsKh").
// Throws Error for a mask with a bit above code 51.
std::string omaha_holding_to_string(uint64_t holding);

// The number of holdings of `hole_cards` (4, 5 or 6) cards: 270,725, 2,598,960 or 20,358,520.
uint64_t omaha_holdings_count(int hole_cards);

// The class of a holding up to a permutation of suits: the smallest mask among the 24 holdings made
// by permuting its suits. Holdings of one class have the same equity against random holdings.
uint64_t omaha_suit_class(uint64_t holding);

// Every holding of the class of `holding` (1 to 24 of them), ascending.
std::vector<uint64_t> omaha_suit_class_members(uint64_t holding);

// The pre-flop ranking the language's shares ("15%") read: every suit class of holdings of one size
// with its equity against one random holding, strongest first (ties: smaller class mask first).
// Made by pokermath::omaha_ranking (equity.h); ranges/ only reads it.
struct OmahaRanking {
  int hole_cards = 4;
  bool hi_lo = false;              // equities of the Hi/Lo game
  double std_error = 0;            // the standard error each class's equity was sampled to
  std::vector<uint64_t> classes;  // omaha_suit_class of each class, strongest first
  std::vector<float> equity;      // the equity of each class, 0..1, same order
};

// Parses a range in the Omaha range language for holdings of `hole_cards` (4, 5 or 6) cards; shares
// ("15%", "10%-20%") read `ranking`, which must be for the same hole-card count. Throws Error
// naming the 1-based position of the fault and what was expected there; a share without a ranking
// is an error too.
OmahaRange parse_omaha_range(std::string_view text, int hole_cards = 4, const OmahaRanking* ranking = nullptr);

// What players call an Omaha starting hand, from its cards alone.
//   suits: DoubleSuited (two or more suits hold two or more of its cards), SingleSuited (exactly
//          one suit does), Rainbow (none: every card of its own suit, four cards only);
//   pairs: the most cards of one rank and how many ranks are paired (NoPair, OnePair, TwoPair,
//          Trips for three of a rank, Quads for four or more);
//   rundown: every rank different and the ranks consecutive (the ace high or low: "A234", "AKQJ");
//   broadway: every card ten or higher; suited_ace: an ace with another card of its suit.
enum class OmahaSuits { DoubleSuited, SingleSuited, Rainbow };
enum class OmahaPairs { NoPair, OnePair, TwoPair, Trips, Quads };
struct OmahaHandType {
  OmahaSuits suits = OmahaSuits::Rainbow;
  OmahaPairs pairs = OmahaPairs::NoPair;
  bool rundown = false;
  bool broadway = false;
  bool suited_ace = false;
};
// Throws Error unless the mask holds 4, 5 or 6 cards among codes 0..51.
OmahaHandType omaha_hand_type(uint64_t holding);

// A hand type's share of a range: the number of holdings and their weight (sum / 100).
struct OmahaTypeCount {
  std::string name;  // "double-suited", "single-suited", "rainbow", "no pair", "one pair", "two pair",
                     // "trips", "quads", "rundown", "broadway", "suited ace", in that order
  uint64_t holdings = 0;
  double weight = 0;
};
// The breakdown of a range by the hand types above, every type listed (zero counts included).
std::vector<OmahaTypeCount> omaha_hand_types(const OmahaRange& range);

}  // namespace pokermath

// The classic engines' Omaha range: holdings of four card codes each, in ascending order (the same
// alias as in eval.h).
using OmahaRange = std::set<std::set<int>>;

// CRange64: an ordered set of Omaha holdings (card masks) with the range string it was read from.
// Value semantics. The masks are what getProbabilityOfWinOmaha64* and CountOfRanges64 take (see
// GetHands).
class CRange64 {
 public:
  std::set<uint64_t> m_hands;  // the holdings, ascending
  int m_holeCards = 4;         // cards per holding, 4..6
  std::string m_text;          // the range string ("" when the holdings were added one by one)

  CRange64() = default;
  explicit CRange64(int holeCards) : m_holeCards(holeCards) {}

  // Reads a range string of the Omaha range language (shares like "15%" need a ranking and are
  // refused here). Returns true on success; on failure returns false and leaves the object as it was.
  bool SetRange(const std::string& text);
  // The range string: m_text, or the holdings themselves ("AsKsQhJh,AcKcQdJd") when it is empty.
  std::string GetRange() const;
  // Adds one holding; returns false (adding nothing) unless it holds m_holeCards cards. Clears m_text.
  bool AddHand(uint64_t hand);
  bool Contains(uint64_t hand) const { return m_hands.count(hand) != 0; }
  int Count() const { return static_cast<int>(m_hands.size()); }
  std::vector<uint64_t> GetHands() const { return {m_hands.begin(), m_hands.end()}; }

  pokermath::OmahaRange ToRange() const;  // every holding at weight 100
  static CRange64 FromRange(const pokermath::OmahaRange& range);  // weights dropped
};

// CSpec64: a weighted Omaha range, each holding with a weight 1..100 (per cent of the time held).
// Value semantics.
class CSpec64 {
 public:
  std::map<uint64_t, double> m_weights;  // holding -> weight, 0 < weight <= 100
  int m_holeCards = 4;
  std::string m_text;

  CSpec64() = default;
  explicit CSpec64(int holeCards) : m_holeCards(holeCards) {}

  // As CRange64::SetRange, weights ("@50") kept.
  bool SetRange(const std::string& text);
  std::string GetRange() const;
  // Sets one holding's weight; 0 removes it. Returns false (changing nothing) for a holding without
  // m_holeCards cards or a weight outside 0..100. Clears m_text.
  bool SetWeight(uint64_t hand, double weight);
  double GetWeight(uint64_t hand) const;  // 0 when not held
  int Count() const { return static_cast<int>(m_weights.size()); }
  CRange64 GetRange64() const;  // the holdings without their weights

  pokermath::OmahaRange ToRange() const;
  static CSpec64 FromRange(const pokermath::OmahaRange& range);
};

// CSpecOmaha: a weighted range of four-card holdings, as the four-card Omaha engines take it.
class CSpecOmaha : public CSpec64 {
 public:
  CSpecOmaha() : CSpec64(4) {}
  CSpecOmaha(const CSpecOmaha&) = default;
  CSpecOmaha& operator=(const CSpecOmaha&) = default;
  CSpecOmaha(CSpecOmaha&&) = default;
  CSpecOmaha& operator=(CSpecOmaha&&) = default;
  virtual ~CSpecOmaha() = default;
  // Holdings as the classic Omaha range functions take them (weights dropped).
  OmahaRange GetOmahaRange() const;
};

// CSpecOmahaFiveCards: a weighted range of five-card holdings.
class CSpecOmahaFiveCards : public CSpec64 {
 public:
  CSpecOmahaFiveCards() : CSpec64(5) {}
};

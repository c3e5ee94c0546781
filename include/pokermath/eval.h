// Hand evaluation: the prime-product five-card evaluator with its six- and seven-card forms,
// PokerLogic (the central object of the engines), and the readable hand comparison that values
// CDeck hands and describes them in words.
//
// Scales, never to be mixed:
//   - five-card class 1..7462, SMALLER is stronger (1 = royal flush, 7462 = 7-5-4-3-2 offsuit);
//   - CDeck::m_value, six ints compared lexicographically, LARGER is stronger.
#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "pokermath/cards.h"

// ---- five-card evaluator (classes 1..7462, smaller is stronger) ------------------------------------

// Class of five distinct cards given as prime-product card words; the paired-hand lookup is a
// binary search. A hand that is not five distinct cards prints "ERROR:  no match found; key = %d"
// to stderr and gives an invalid class.
int eval_5cards(int c1, int c2, int c3, int c4, int c5);
// The same class through the perfect hash (the fast path). Undefined for invalid hands.
int eval_5hand_fast(int c1, int c2, int c3, int c4, int c5);
// eval_5cards of five consecutive card words.
int eval_5hand(const int* hand);
// Smallest class over the 6 five-card subsets of six card words (9999 if every subset fails).
int eval_6hand(const int* hand);
// Smallest class over the 21 five-card subsets of seven card words (9999 if every subset fails).
int eval_7hand(const int* hand);
// Index of `key` in the ascending array[low..high] (inclusive bounds), or -1.
int bsearch(const int* array, int low, int high, int key);

// ---- PokerLogic ----------------------------------------------------------------------------------

class CHandOmahaType;
class Spec;

// An Omaha range: holdings of four card codes each, in ascending order.
using OmahaRange = std::set<std::set<int>>;

// The seven-card lookup table's file name, and that of the pre-flop table.
inline constexpr const wchar_t* kSevenCardTableFile = L"OrvalisHR.dat";
inline constexpr const wchar_t* kPreFlopTableFile = L"OrvalisPC.dat";

// The central object of the classic engines: the prime-product card words, the seven-card lookup
// table and its generator, and the helpers of the hand comparison. Create one and keep it; it is
// cheap to construct (the 130 MB table is allocated by generate_table).
class PokerLogic {
 public:
  static constexpr int kMaxIDs = 612978;          // identifiers the generator can hold
  static constexpr int kTableEntries = 32487834;  // entries of the seven-card table (OrvalisHR.dat)

  CPokerDeck m_deck;            // prime-product card words by card code
  std::vector<uint64_t> m_IDs;  // sorted hand identifiers of the generator (612,978 zeros at first)
  std::vector<uint32_t, pokermath::TableAllocator<uint32_t>> m_HR;  // the seven-card table; zeros until
                                                                    // generate_table fills it
  int m_numIDs = 1;                                                 // identifiers in use
  int m_numcards = 0;                                               // cards in the identifier the last MakeID built
  int m_currentSlot = 0;                                            // the last table index the generator wrote
  uint64_t m_maxID = 0;                                             // the largest identifier stored so far

  PokerLogic();

  // Loads the seven-card table from the file at path when it exists with exactly 129,951,336
  // bytes; otherwise generates it and writes the file. 0 = success, 1 = the file could not be
  // written (the table is still generated in memory).
  int generate_table(CString path);
  // The identifier of ID plus card (one-based rank-major code 1..52); 0 for a card already in it or
  // a fifth card of a rank. Sets m_numcards.
  uint64_t MakeID(uint64_t ID, int card);
  // The index of ID in m_IDs, inserting it in order when new; 0 for ID 0.
  int SaveID(uint64_t ID);
  // The category-scale value (larger is stronger) of the identifier's best five cards; 0 for ID 0.
  int DoEval(uint64_t ID);
  // Category-scale value of seven one-based rank-major codes (1..52), in ascending order.
  int LookupHand(const int* cards) const;
  // Category-scale value of seven card codes in any order.
  int LookupSingleHands(const int* cards) const;

  // ---- Omaha best hand (omaha.h explains the scales and out[] contents) ----
  // Best prime-product class (smaller is stronger; 100000 when no 2+3 combination exists) of four
  // hole cards with a river, turn or flop; out[] receives the five chosen card codes.
  int getCombinationOmaha(const int* hole, const int* board, int* out) const;
  int getCombinationOmahaTurn(const int* hole, const int* board, int* out) const;
  int getCombinationOmahaFlop(const int* hole, const int* board, int* out) const;
  // The same for nHole hole cards and nBoard board cards; out[] receives positions i, j, k, l, m.
  int getCombinationOmahaCommon(const int* hole, int nHole, const int* board, int nBoard, int* out) const;
  // Smallest rank over the 60 combinations from the five-card combination map (999999 if none).
  int eval_7handOmaha(const int* hole, const int* board) const;
  // The best Omaha hand of cards[0..3] with cards[4..] (5, 4 or 3 board cards), category scale.
  int LookupHandsOmaha(const int* cards) const;
  int LookupHandsOmahaTurn(const int* cards) const;
  int LookupHandsOmahaFlop(const int* cards) const;

  // ---- Omaha low hands ----
  // Best low of 4 hole cards with 5 board cards, with the kept in-place sort of the level slots.
  int SetLowValueCombinationOmaha(const int* hole, const int* board) const;
  // Number of two-card holdings with a strictly better low; 0 = nut low, 1 when I have no low; -5
  // for a board size outside 3..5.
  int IsMyHandNutsOmahaLow(const int* hole, int nHole, const int* board, int nBoard) const;
  // Cards that make a low I do not have (outs) and cards that give the nut low (nutOuts); 1, or -5
  // for a board size other than 3 or 4.
  int getOutsOmahaLow(const int* hole, int nHole, const int* board, int nBoard, int& outs, int& nutOuts) const;
  // Classifies a holding's low prospects: 0 board cannot make a low, 1 hand cannot, 2 low made
  // (its value in lowOrOuts), 3 drawing (outs, nut outs and the one-card probability), 100 counterfeited.
  int CountLowCards(const int* hole, int nHole, const int* board, int nBoard, int& lowOrOuts, int& nutOuts,
                    double& probability) const;

  // ---- Omaha outs, draws and nuts ----
  // Hold'em: the highest hole rank of a suit holding four or more of the cards; -1 without one; 0
  // for fewer than three board cards.
  int isFlushDraw(const int* hole, const int* board, int nBoard) const;
  int GetFlushDrawOutsOmaha(CHandOmahaType& hand, int& flushOuts, int& straightFlushOuts) const;
  int GetStraightDrawOutsOmaha(const int* hole, const int* board, int nBoard, int& outs) const;
  int GetFullHouseOutsOmaha(const int* hole, const int* board, int nBoard, int& fullHouseOuts, int& quadsOuts) const;
  // Number of four-card holdings of unseen cards that beat four hole cards; 0 = nuts; -5 bad board.
  int IsMyHandNutsOmaha(const int* hole, const int* board, int nBoard) const;
  // Outs by table category (10 entries) that lift the category, and those that give the nuts.
  int getOutsOmahaCommon(const int* hole, int nHole, const int* board, int nBoard, int* outs, int* nutOuts) const;

  // ---- Omaha equity (omaha.h explains units; percentages unless noted) ----
  // Monte Carlo pot share (0..1) of four hole cards against nPlayers - 1 random hands; 0.0 for a
  // board of 6+ cards or nPlayers outside 2..10.
  double getProbabilityOfWinOmaha(const int* hole, const int* board, int nBoard, int nPlayers);
  // Every opponent holding with every river card (135,751 x 40 comparisons on a turn).
  double RiverEquityHandVsRandomOnTurn(const int* hole, const int* turn, int& count) const;
  // Every opponent holding on a complete board.
  double RiverEquityHandVsRandomOnRiver(const int* hole, const int* board, int& count) const;
  // Monte Carlo with a time limit: trials and timeMs are in-out (limit in, done and elapsed out).
  double RiverEquityHandVsRandomOnFlopLight(const int* hole, const int* flop, int& trials, int& timeMs);
  // Every live holding of the range on the flop, no future cards.
  double FlopEquityHandVsRangeOnFlop(const int* hole, const int* flop, const OmahaRange& range, int& count) const;
  // The flop form averaged over every flop, in percent x 100 (0..10000); count is set to 0.
  double FlopEquityHandVsRangeOnPreFlop(const int* hole, const OmahaRange& range, int& count) const;
  double RiverEquityHandVsRangeOnFlopLight(const int* hole, const int* flop, const OmahaRange& range, int& trials,
                                           int& timeMs);
  // ---- Omaha Hi/Lo equity ----
  double getProbabilityOfWinOmahaHL(const int* hole, const int* board, int nBoard, int nPlayers);
  double EquityHandVsRandomHL(const int* hole, int nHole, const int* board, int nBoard, int nBoardTarget, int& trials,
                              int& timeMs);
  double RiverEquityHandVsRandomOnRiverHL(const int* hole, const int* board, int& count) const;
  double RiverEquityHandsOnPreFlopCommonHL(const int* hands, int nHole, int nPlayers, int nDead, int& count,
                                           int& timeMs) const;
  double RiverEquityHandsOnFlopCommonHL(const int* hands, int nHole, int nPlayers, int nDead, const int* flop,
                                        int& count, int& timeMs) const;
  double RiverEquityHandsOnTurnCommonHL(const int* hands, int nHole, int nPlayers, int nDead, const int* turn,
                                        int& count, int& timeMs) const;

  // ---- Hold'em equity (equity.h explains units and scoring) ----
  // Monte Carlo share of the pot (0..1) for two hole cards against players - 1 random hands, with
  // boardCount known board cards; 0.0 for boardCount >= 6 or players outside 2..10.
  double getProbabilityOfWin(const int* hole, const int* board, int boardCount, int players);
  // All 1,712,304 five-card boards: the hero's wins (ties as halves) and the boards.
  void getProbabilityOfWinWithNoBoard(const int* hero, const int* villain, double& wins, double& boards) const;
  // All 194,580 four-card boards (flop and turn), six-card hands.
  void getProbabilityOfWinWithNoBoardToTurn(const int* hero, const int* villain, double& wins, double& boards) const;
  // From the pre-flop equity table when it holds the pair, else the symmetric shortcuts, else the
  // enumeration above. Always returns 1.
  int GetWinHandVsHand(const int* hero, const int* villain, double& wins, double& boards) const;
  // The same to the turn, with the turn equity table.
  int GetWinHandVsHandToTurn(const int* hero, const int* villain, double& wins, double& boards) const;

  // ---- the "Common" engines: any hole-card count h, exactly two hole and three board cards ----
  // Percentages 0..100; boards and ms (elapsed milliseconds) are written on return.
  double RiverEquityHandVsHandOnPreFlopCommon(const int* hero, int h, const int* villain, int& boards, int& ms) const;
  double RiverEquityHandsOnPreFlopCommon(const int* hands, int h, int players, int dead, int& boards, int& ms) const;
  // 0.0 (boards and ms untouched) unless boardCount is 3.
  double RiverEquityHandVsHandOnFlopCommon(const int* hero, int h, const int* villain, const int* board, int boardCount,
                                           int& boards, int& ms) const;
  double RiverEquityHandsOnFlopCommon(const int* hands, int h, int players, int dead, const int* flop, int& boards,
                                      int& ms) const;
  // 0.0 (boards and ms untouched) unless boardCount is 4.
  double RiverEquityHandVsHandOnTurnCommon(const int* hero, int h, const int* villain, const int* board, int boardCount,
                                           int& boards, int& ms) const;
  double RiverEquityHandsOnTurnCommon(const int* hands, int h, int players, int dead, const int* board, int& boards,
                                      int& ms) const;

  // ---- equity against a range (fractions 0..1; 0/0 when no combination is left) ----
  double getProbabilityOfWinBySpectr(const int* hole, const int* board, int boardCount, const Spec& range);
  double getProbabilityOfWinBySpectrWithNoBoard(const int* hole, const Spec& range) const;
  double getProbabilityOfWinBySpectrWithFlop(const int* hole, const int* flop, const Spec& range) const;
  double getProbabilityOfWinBySpectrWithFlopAndTurn(const int* hole, const int* board, const Spec& range) const;
  double getProbOfWinBySpectrToFlopOrTurn(const int* hole, const int* board, int boardCount, const Spec& range,
                                          int target);
  double getProbabilityOfWinBySpectrWithNoBoardToFlop(const int* hole, const Spec& range) const;
  double getProbabilityOfWinBySpectrWithNoBoardToTurn(const int* hole, const Spec& range) const;
  double getProbabilityOfWinBySpectrWithFlopToTurn(const int* hole, const int* flop, const Spec& range) const;

  // ---- pre-flop, turn and five-card combination tables and their files ----
  // Equity files are 12-byte records (hero key, villain key, value), combination files 8-byte
  // records (key, class), little-endian int32, in key order (docs/equity.md). A file that cannot be
  // opened or written is reported with "Error: Can not open file %s"; results stay as listed.

  // Writes every pre-flop entry with a positive value; others are skipped silently. Returns 1.
  int save_equity_table(CString path) const;
  // Adds the file's records to the pre-flop table (a key pair already there keeps its value; a
  // record whose value is not positive shows "load_equity_table %d %d %d" and is skipped). Returns
  // 0, showing "You need to download file %s", when the file is missing; else 1.
  int load_equity_table(CString path);
  // Writes every turn entry with a positive value; each other one shows "save_equity_table %d %d
  // %d" (the pre-flop words, kept on purpose) and is left out. Returns 1.
  int save_equity_turn_table(CString path) const;
  // load_equity_table for the turn table, read one record at a time, with the same messages.
  int load_equity_turn_table(CString path);
  // Writes the text report, one line per matchup whose key pair has no positive value in the
  // pre-flop table ("%10d %2d %2d %s %s VS " "%2d %2d %s %s " "%.1lf %.1lf %.3lf%%\n": number from
  // 1, hero codes and names, villain codes and names, wins, boards, percent from GetWinHandVsHand),
  // flushed every 100 lines; the table is not changed. An existing file is left untouched and
  // nothing is computed ("Error: Can not open file %s"). Returns 0.
  int generate_equity_table(CString path) const;
  // Imports a report into the turn table: value = integer part of (boards - wins) x 2 + 0.01, the
  // complement of the hero's wins (kept on purpose), stored when positive and new; stops after line
  // 1,624,350. Returns 1 when a report was read; 0 when there was none (an empty file is created).
  int generate_equity_turn_table(CString path);
  // Writes every combination entry with a positive class. Returns 1.
  int save_PokerCombinations_table(CString path) const;
  // Loads a complete file of 20,791,680 bytes (a class below 1 shows "load_PokerCombinations_table
  // %d %d" and is skipped) and returns 1; otherwise computes eval_5hand_fast of all 2,598,960 hands,
  // saves them to path and returns 0. The table is cleared first either way.
  int generate_PokerCombinations_table(CString path);

  // ---- tables of the equity engines ----
  std::map<std::pair<int, int>, int> m_equityTable;      // pre-flop: (hero key, villain key) -> 2 x wins
  std::map<std::pair<int, int>, int> m_equityTurnTable;  // turn equity, same keys
  std::map<int, int> m_combinations;                     // five-card combination key -> class
  EasyRandom m_random{0, 1};                             // the Monte Carlo engines' random source
  int m_trials = 50000;                                  // Monte Carlo trial count

  // Class (1..7462, smaller is stronger) of five card codes, through the perfect hash.
  int eval_5handHoldem(const int* cards) const;
  // Smallest class over the six five-card subsets of six card codes.
  int eval_6handHoldem(const int* cards) const;

  // Sorts the card codes strongest first (comparefun) and fills the parallel rank (code % 13) and
  // suit (code / 13) lists and the count of cards per suit (zeroed first).
  void sortHand(std::vector<int>& cards, std::vector<int>& ranks, std::vector<int>& suits, int suitCount[4]) const;
  // Top rank index of the highest straight in a rank list sorted high to low (3 = the wheel), or -1.
  int isStraight(const std::vector<int>& ranks) const;
  // Highest rank of the first suit holding five or more cards, or -1.
  int isFlush(const std::vector<int>& ranks, const std::vector<int>& suits, int suitCount[4]) const;
  // Top rank of a straight inside the flush suit, or -1.
  int isStraightFlush(const std::vector<int>& ranks, const std::vector<int>& suits, int suitCount[4]) const;
  // 12 for a royal flush, else -1. Only the first five matching cards of the suit are walked, so
  // A-K-Q-J-T-9 of one suit is deliberately not reported here (it is valued as a straight flush).
  int isRoyalFlush(const std::vector<int>& ranks, const std::vector<int>& suits, int suitCount[4]) const;
};

// ---- state-machine evaluators (values 1..7462 or 1..1404, LARGER is stronger) ---------------------

// Process-wide short-deck tables: five and seven cards of the 36-card deck.
class fsm5 {
 public:
  virtual ~fsm5() = default;
  static int* six_plus_fsm5;  // "six-plus-5.bin" once loaded
  static int* six_plus_fsm7;  // "six-plus-7.bin" once loaded
  // Load the table from the current directory unless it is in memory: 1 = in memory, 0 = failed
  // (a missing file is reported with ShowMessage; the next call tries again).
  static int load_fsm5();
  static int load_fsm7();

  // The short-deck equity tables (docs/tables.md): heads-up equity of every ordered matchup of two
  // short-deck hands with no card in common, to the flop, the turn and the river, in the standard
  // and the China order, and of every hand against a random hand to the river.
  static uint32_t* et2_index;  // "ET2I_6.bin": the 353,430 matchup keys in order, then a sentinel
  static uint32_t* et2[3][2];  // [0 flop, 1 turn, 2 river][0 standard, 1 China]: "ET2F_6.bin" .. "ET2R_6C.bin"
  static uint64_t* ft2[2];     // [0 standard, 1 China]: "FT2R_6.bin", "FT2R_6C.bin"
  // Load from the current directory unless in memory: 1 = in memory, 0 = failed; a missing file is
  // reported with ShowMessage("Error: Can not open file NAME"), a damaged one (wrong header or
  // size, an index out of order, an entry too large) with "Error: File NAME is damaged", and the
  // next call tries again. load_2 takes the board size of its street (3, 4 or 5) and china 0 or 1
  // (0 for other values); load_ET2 loads the index and the six matchup tables, load_ET all nine.
  static int load_2_index();
  static int load_2(int street, int china);
  static int load_ET2();
  static int load_ET();
  // The hero's equity in percent (a tie counts half) against the villain, two card codes each,
  // over every board of `street` cards (3, 4 or 5) dealt from the 32 others, in the standard
  // (china 0) or China (1) order: a bsearch of the index, one read. -1.0 when the tables are not
  // loaded, an argument is out of range, a card is below six or the hands share a card.
  static double get2(const int* hero, const int* villain, int street, int china);
  // The hero's equity in percent against a random hand to the river; -1.0 as get2.
  static double get1(const int* hero, int china);

  // Releases every short-deck table: both state machines and the equity tables.
  static void Free();
};

// The process-wide Hold'em seven-card table ("texas-7.bin").
class texasfsm7 {
 public:
  virtual ~texasfsm7() = default;
  static int* table;
};

// The process-wide Omaha table ("omaha-7.bin"): five board cards, then two hole cards.
class ofsm_omaha7 {
 public:
  virtual ~ofsm_omaha7() = default;
  static int* table;
};

// Load "texas-7.bin" / "omaha-7.bin" from the current directory unless in memory: 1 or 0.
int load_texasfsm7();
int load_ofsm_omaha7();

// Value (1..7462) of five card codes on the built-in five-card machine.
int LookupFsm5(const int* cards);
// Best value over the 60 choices of two of four hole cards and three of five board cards.
int get_rank7(const int* hole, const int* board);
// Sets name to the category of a 52-card value ("Royal Flush", "straight flush", ..., "Error");
// returns 1.
int verify_rankFsm5(int value, CString& name);
// Category number of a 52-card value: 10 royal flush .. 1 high card, 0 below 1.
int Get_rankFsm5(int value);
// Value of seven card codes from "texas-7.bin"; 0 when a code is outside 0..51. Load it first.
int eval_rank7_texas(const int* cards);
// Best value over every pair of `count` (2 to 6) hole cards with the five board cards: the value
// the walk over "omaha-7.bin" gives, read from rank-pair tables built in memory on first use (about
// 25 ms), so no table need be loaded. 0 for another count, a code outside 0..51 or a board card held
// twice; a hole pair holding a card twice or a board card counts 0.
int eval_rank7_via_ofsm7(const int* hole, int count, const int* board);
// Short-deck values (1..1404) from "six-plus-5.bin"/"six-plus-7.bin"; 0 when a card is a 2 to 5.
int eval_rank5_via_fsm5(const int* cards);
int eval_rank6_via_fsm5(const int* cards);  // the largest over the six five-card subsets
int eval_rank7_via_fsm7(const int* cards);

// ---- short deck, China and 2-7 lowball -----------------------------------------------------------------

// Category number of a short-deck value: 10 royal flush, 9 straight flush, 8 quads, 7 flush, 6 full
// house, 5 three of a kind, 4 straight, 3 two pair, 2 one pair, 1 high card, 0 invalid.
int Get_rank36(int value);
// The same for China values, where a straight (5) beats three of a kind (4).
int Get_rank36China(int value);
// Short-deck value of five card codes on the 52-card scale (1..7462, larger is stronger), in the
// short-deck order; -1 when a card is a 2 to 5.
int LookupHoldem6PlusFsm5(const int* cards);
// The largest LookupHoldem6PlusFsm5 over the 21 five-card subsets of seven cards (0 if none is valid).
int eval_7hand6PlusFsm5(const int* cards);
// Category number of a short-deck value on the 52-card scale (numbers as Get_rank36).
int Get_rankHoldem6PlusFsm5(int value);
// China value (1..1404, larger is stronger) of two hole cards followed by 3, 4 or 5 board cards;
// 0 for another board count. Needs the short-deck tables loaded.
int eval_rank_6China(const int* cards, int boardCount);
// eval_rank_6China of the two hole cards and the board.
int getCombination6PlusChinaCommon(const int* hole, const int* board, int boardCount);
// Deuce-to-seven value of five card codes: SMALLER is the better low (1 = 7-5-4-3-2 offsuit); the
// ace is high only, so A-5-4-3-2 is no straight.
int Lookup27Lowball(const int* cards);

// ---- showdown comparisons (CDeck values, larger is stronger) ------------------------------------------

// 1 when the hero's two cards make the better hand with the board, -1 when the villain's do, 0 split.
int FindMaxCombination(const int hero[2], const int villain[2], const int* board, int boardCount, PokerLogic& logic);
// FindMaxCombination, or without a board (boardCount 0) the pre-flop comparison WhatHandIsBetter.
int WhoIsWinner(const int hero[2], const int villain[2], const int* board, int boardCount, PokerLogic& logic);
// Pre-flop comparison by ranks only: a pair beats a non-pair, else the first cards, then the second
// cards decide, in the order given (the cards are deliberately not sorted). 1, -1 or 0.
int WhatHandIsBetter(const int hand1[2], const int hand2[2]);

// ---- the pokermath:: evaluation API ---------------------------------------------------------------
namespace pokermath {

// Hand categories, weakest to strongest.
enum class Category {
  HighCard = 1,
  OnePair,
  TwoPair,
  ThreeOfAKind,
  Straight,
  Flush,
  FullHouse,
  FourOfAKind,
  StraightFlush
};

// The category-scale value of a five-card class: 4096 * category + position within the category,
// LARGER is stronger (4097 = 7-5-4-3-2 offsuit .. 36874 = royal flush). No range check.
int category_scale_value(int hand_class);

// The category of a five-card class (1..7462, smaller is stronger); throws Error outside 1..7462.
Category category_of_class(int hand_class);

// "high card", "one pair", ..., "straight flush".
std::string_view category_name(Category category);

// ---- table files -------------------------------------------------------------------------------

// The table files the library generates: four state machines and the seven-card lookup table.
enum class TableFile { Texas7, Omaha7, SixPlus5, SixPlus7, SevenCardLookup };

// Every table file, in the order `pokermath tables` writes them.
std::vector<TableFile> all_table_files();
// "texas-7.bin", "omaha-7.bin", "six-plus-5.bin", "six-plus-7.bin", "OrvalisHR.dat".
std::string_view table_file_name(TableFile file);
// The table file with that name; throws Error naming the known files otherwise.
TableFile table_file_from_name(std::string_view name);

// The data directory: $POKERMATH_DATA_DIR, else $XDG_CACHE_HOME/pokermath, else ~/.cache/pokermath.
std::filesystem::path default_data_directory();

// The data directory keeps "manifest.txt" beside the tables: each file's size and content checksum,
// written when the library writes the file. A table that is missing, not listed, or whose size or
// checksum differs from its entry is not trusted: the calls below generate it again.

// True when `dir` holds the file with the right header and size, matching its manifest entry.
bool table_file_valid(const std::filesystem::path& dir, TableFile file);

// Progress of a long table job: the file, a stage and a fraction 0..1. A call with the fraction
// kNoticeFraction is a notice for the user instead, a line of its own in `stage` (a damaged table
// found and generated again).
using TableProgress = std::function<void(std::string_view file, std::string_view stage, double fraction)>;
inline constexpr double kNoticeFraction = -1.0;

// Writes the file into `dir` (created if needed) unless it is already valid there and `force` is
// false. Returns true when it was written. A damaged file is reported through `progress` (or on
// standard error without one) before it is written again. The file is written under a temporary
// name of this writer and renamed into place, so concurrent writers and readers never see half a
// table; partial files of writers that died are removed. Throws FileError (a kind of Error) naming
// the path and the reason when the file cannot be written (no permission, no space left on the
// device, a file where the directory should be, ...).
bool generate_table_file(const std::filesystem::path& dir, TableFile file, bool force = false,
                         const TableProgress& progress = {});

// Makes a state-machine table available to the classic evaluators (texasfsm7::table, ...): loads it
// from `dir`, generating it there first when missing or damaged (checked against the manifest). Does
// nothing when it is already in memory. Throws Error for SevenCardLookup (PokerLogic::generate_table
// loads that one) or a file that cannot be used; FileError (a kind of Error) when the file cannot be
// written or read.
void load_table(TableFile file, const std::filesystem::path& dir, const TableProgress& progress = {});

// Short-deck rule sets: the standard order, and the China order where a straight beats three of
// a kind.
enum class ShortDeckRules { Standard, China };

// ---- hand values: the fast evaluator ---------------------------------------------------------------
// Values come from tables of about 260 KB that stay in the caches (no data file, nothing to load):
// a seven-card hand is a sum of card keys and two table reads.

// The value of 5, 6 or 7 distinct card codes: 1 (7-5-4-3-2 offsuit) .. 7462 (royal flush), LARGER is
// stronger; the value of the best five of the cards. Throws Error for another count, a code outside
// 0..51 or a repeated card.
int hand_value(std::span<const int> cards);

// The short-deck value (1..1404, LARGER is stronger, in the order of `rules`) of 5, 6 or 7 distinct
// cards from six to ace. Throws Error as hand_value does, and for a card below six.
int hand_value(std::span<const int> cards, ShortDeckRules rules);

// Batch evaluation: values[i] = hand_value of hand i, over all hands of an array. Hands are rows of
// `cards_per_hand` (5, 6 or 7) card codes, codes.size() / cards_per_hand of them, or 64-bit card masks
// of 5 to 7 cards each. `values` must hold one int per hand. Throws Error naming the first bad hand
// (0-based) when any is bad, or for mismatched sizes; `values` is then unspecified.
void hand_values(std::span<const int> codes, int cards_per_hand, std::span<int> values);
void hand_values(std::span<const uint8_t> codes, int cards_per_hand, std::span<int> values);
void hand_values(std::span<const uint64_t> masks, std::span<int> values);
// The same in the short deck.
void hand_values(std::span<const int> codes, int cards_per_hand, std::span<int> values, ShortDeckRules rules);
void hand_values(std::span<const uint8_t> codes, int cards_per_hand, std::span<int> values, ShortDeckRules rules);
void hand_values(std::span<const uint64_t> masks, std::span<int> values, ShortDeckRules rules);

// A hand of five to seven cards, evaluated.
struct HandEvaluation {
  int hand_class = 0;  // five-card class 1..7462, SMALLER is stronger
  Category category = Category::HighCard;
  std::array<int, 5> best_five{};  // the five cards that make the class, strongest rank first
  std::string description;         // words of CDeck::display for the best five, without its blanks
};

// Evaluates 5, 6 or 7 distinct card codes. Throws Error for another count, a code outside 0..51
// or a repeated card.
HandEvaluation evaluate_hand(std::span<const int> cards);

// A short-deck hand of five to seven cards, evaluated.
struct ShortDeckEvaluation {
  int value = 0;            // short-deck scale 1..1404, LARGER is stronger (in the rules' order)
  int category_number = 0;  // Get_rank36 / Get_rank36China: 10 royal flush .. 1 high card
  std::string category;     // "royal flush", "straight flush", ..., "high card"
  int value52 = 0;          // Standard only: the value on the 52-card scale (1..7462, larger is stronger)
};

// Evaluates 5, 6 or 7 distinct short-deck cards (6 to A): hand_value in the rules' order, its
// category, and in the standard order the value on the 52-card scale. Throws Error for a card below
// six, another count or a repeated card.
ShortDeckEvaluation evaluate_short_deck(std::span<const int> cards, ShortDeckRules rules);

// Deuce-to-seven value of exactly five distinct cards: 1 (7-5-4-3-2) .. 7462, SMALLER is the better
// low. Throws Error for another count or a repeated card.
int evaluate_deuce_to_seven(std::span<const int> cards);

}  // namespace pokermath

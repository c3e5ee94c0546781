// Omaha analysis: the best hand under the two-plus-three rule on every value scale, low hands,
// outs, draws and nuts, and Hutchison points. Omaha hands hold 4, 5 or 6 hole cards; a hand is made
// of exactly two hole cards and exactly three board cards.
//
// Scales, never to be mixed:
//   - prime-product class 1..7462, SMALLER is stronger (the PokerLogic searches);
//   - state-machine value 1..7462 = 7463 - class, LARGER is stronger (the Fsm5 searches);
//   - Omaha low value d5*10000 + ... + d1 with the ace as 1, SMALLER is the better low, 0 = no low.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "pokermath/eval.h"
#include "pokermath/ranges.h"

// ---- best hand -----------------------------------------------------------------------------------

// Best state-machine value (larger is stronger; -1 when no 2+3 combination exists) of four hole
// cards with a river, turn or flop; out[] receives positions i, j into hole and k, l, m into board
// (the flop form always reports 0, 1, 2 for the board).
int getCombinationOmahaFsm5(const int* hole, const int* board, int* out);
int getCombinationOmahaTurnFsm5(const int* hole, const int* board, int* out);
int getCombinationOmahaFlopFsm5(const int* hole, const int* board, int* out);
// The same for nHole (2..6) hole cards and 3..5 board cards: the workhorse of the Omaha engines.
int getCombinationOmahaFsm5Common(const int* hole, int nHole, const int* board, int nBoard, int* out);
// The same function under its second exported name.
int getCombinationOmahaFsm7Common(const int* hole, int nHole, const int* board, int nBoard, int* out);

// A four-card Omaha holding classified for flushes without evaluating.
class CHandOmahaType {
 public:
  int hole[4] = {};   // hole cards, sorted by code descending
  int board[5] = {};  // board cards, the first boardCount used, sorted descending
  int boardCount = 0;
  int holeRank[4] = {};
  int boardRank[5] = {};
  int holeSuitCount[4] = {};
  int boardSuitCount[4] = {};
  int holeSuit[4] = {};
  int boardSuit[5] = {};
  int flushHoleRank[4] = {};   // ranks of the hole cards of the flush suit, highest first
  int flushBoardRank[5] = {};  // ranks of the board cards of the flush suit, highest first
  int flushHoleCount = 0;
  int flushBoardCount = 0;
  int flushSuit = -1;  // first suit with 3+ board and 2+ hole cards, or -1

  CHandOmahaType() = default;
  CHandOmahaType(const int* hole, const int* board, int nBoard);
  // 117 royal flush, 65 flush, -1 otherwise (104, a straight flush, is never returned).
  int getOmahaHand() const;
  // 1 when exactly two hole cards and three board cards of the flush suit make A-K-Q-J-T, else -1.
  int isRoyalFlushOmaha() const;
  // Always -1: straight flushes are found by the evaluators.
  int isStraightFlush() const;
  // The flush suit, or -1.
  int isFlushOmaha() const;
  // Writes the suits with two or more hole and two or more board cards into suits; returns the count.
  int isFlushDrawOmaha(int* suits, int& count) const;
};

// ---- low hands -----------------------------------------------------------------------------------

// Best eight-or-better low of nHole (2+) hole cards with 3..5 board cards; 0 = no low.
int SetLowValueCombinationOmahaCommon(const int* hole, int nHole, const int* board, int nBoard);
// Shares a low half among the tied best lows (0 = no low). Returns 1 if anybody has a low, else 0
// (and leaves the shares untouched).
int WinLowSummary(int heroLow, const int* otherLows, int nOthers, double& heroShare, double* otherShares);

// ---- outs, draws and nuts ------------------------------------------------------------------------

// Number of two-card holdings of unseen cards that beat the hand (0 = nuts); -5 for a board size
// outside 3..5.
int IsMyHandNutsOmahaFsm5Common(const int* hole, int nHole, const int* board, int nBoard);
// Outs by state-machine category (11 entries) and nut outs; 1, or -5 for a board of neither 3 nor 4.
int getOutsOmahaFsm5Common(const int* hole, int nHole, const int* board, int nBoard, int* outs, int* nutOuts);
// Cards giving a new two pair that pairs both hole cards used; 0 on a paired board; -5 bad board.
int getOutsOmahaFsm5CommonTwoPairs(const int* hole, int nHole, const int* board, int nBoard, int& outs);
// The nut two-card holdings on a flop or turn, into nutHands; outs[0] = cards that keep my hand at
// least at the current nut value, outs[1] = cards that make me the nuts. Returns the number of nut
// holdings, or 0 for another board size.
int FindAllNuts(const int* hole, int nHole, const int* board, int nBoard, Spec& nutHands, int* outs);

// ---- Omaha equity -----------------------------------------------------------------------------------
// Percent results are (wins + ties / 2) / count x 100, each comparison heads-up; count is returned.

// Every four-card holding of the unseen cards, on the flop or turn as it stands (no future cards).
double FlopEquityHandVsRandomOnFlopFsm5(const int* hole, const int* flop, int& count);
double TurnEquityHandVsRandomOnTurnFsm5(const int* hole, const int* turn, int& count);
// Every opponent holding with every river card, the river cards shared out among threads.
double RiverEquityHandVsRandomOnTurnFsm5(const int* hole, const int* turn, int& count);
// Every opponent holding on a complete board, ranked by eval_rank7_via_ofsm7.
double RiverEquityHandVsRandomOnRiver_ofsm7(const int* hole, const int* board, int& count);
// Monte Carlo against a random live holding of the range and a random board, with a time limit.
double RiverEquityHandVsRangeOnPreflopLight(const int* hole, const OmahaRange& range, int& trials, int& timeMs);

// Hi/Lo pot shares (0..1) of the hero: high values larger is stronger, lows smaller is better with 0
// for no low. Heads-up: 1, 0.75, 0.5, 0.25 or 0.
double HiLoShareHeadsUp(int heroHigh, int heroLow, int oppHigh, int oppLow);
double HiLoShareMultiway(int heroHigh, int heroLow, const int* oppHigh, const int* oppLow, int n);

// Multiway equity of players given as ranges of Omaha holdings (64-bit card masks of nHole cards).
// The hero's range is `hero`, the opponents' ranges are opponents[0..nOpponents-1]. Every
// combination of one holding per player that shares no card (with the others, the board or the dead
// cards) is equally likely, and so is every completion of the board to boardTarget cards (5, or 3
// or 4 for equity on the flop or turn as it stands). Each deal's pot is split: the high half (the
// whole pot when nobody has an eight-or-better low, or when hiLo is 0) evenly among the best high
// hands, the low half among the best lows (WinLowSummary). shares[0] receives the hero's expected
// share of the pot (0..1), shares[1..nOpponents] the opponents'; count the deals counted; ms the
// elapsed milliseconds. Returns the hero's share, or 0.0 when no combination exists.
//
// By Monte Carlo: `trials` random deals (a combination drawn whole and drawn again when two
// holdings collide, then the missing board cards), on the C runtime's rand. ms is in-out here: a
// time limit in milliseconds on entry (0 or less: none; checked every 10,000 trials), the elapsed
// time on return.
double getProbabilityOfWinOmaha64Common(int trials, std::vector<uint64_t>& hero, uint64_t board, int nHole,
                                        std::vector<uint64_t>* opponents, int nOpponents, uint64_t dead, double* shares,
                                        int& count, int& ms, int hiLo, int boardTarget);
// Exactly: every combination of holdings (walked with CRoundEnumerate) with every board completion;
// practical for small ranges (the work is combinations x boards).
double getProbabilityOfWinOmaha64Enumerate(std::vector<uint64_t>& hero, uint64_t board, int nHole,
                                           std::vector<uint64_t>* opponents, int nOpponents, uint64_t dead,
                                           double* shares, int& count, int& ms, int hiLo, int boardTarget);
// The number of combinations of one holding per range that share no card with each other or with
// `dead`.
uint64_t CountOfRanges64(const std::vector<uint64_t>* ranges, int nPlayers, uint64_t dead);

// ---- Hutchison points ----------------------------------------------------------------------------

// Hutchison points of four hole cards (never negative).
int HutchisonPointsOmaha(const int* hand);
// The Hi/Lo count (half points), or 1000.0 for four high cards worth playing for the high alone.
double HutchisonPointsOmahaHL(const int* hand);

// ---- the pokermath:: Omaha API ---------------------------------------------------------------------
namespace pokermath {

// The best Omaha high hand of 4 to 6 hole cards on a board of 3 to 5 cards.
struct OmahaHand {
  int value = 0;       // state-machine scale 1..7462, LARGER is stronger
  int hand_class = 0;  // five-card class 7463 - value, SMALLER is stronger
  Category category = Category::HighCard;
  std::array<int, 2> hole_used{};   // the two hole cards played
  std::array<int, 3> board_used{};  // the three board cards played
  std::string description;          // the five played cards in words
};

// Throws Error unless there are 4 to 6 hole cards, 3 to 5 board cards, and no card twice.
OmahaHand omaha_best(std::span<const int> hole, std::span<const int> board);

// One unseen card that improves the hand.
struct OmahaOut {
  int card = -1;
  int value = 0;  // the hand's state-machine value with the card
  Category category = Category::HighCard;
  bool nut = false;  // the hand is then the nuts (no two-card holding beats it)
};

// The cards that improve an Omaha hand on a flop or turn, by the rule of getOutsOmahaFsm5Common:
// a higher category, a better straight made with higher hole cards, or a better full house.
struct OmahaOuts {
  OmahaHand current;
  int unseen = 0;              // the cards tried (neither hole nor board cards)
  std::vector<OmahaOut> outs;  // ascending card order
  int nut_outs = 0;
};

// Throws Error for a board of other than 3 or 4 cards (there is no next card after the river), or
// for bad cards as omaha_best.
OmahaOuts omaha_outs(std::span<const int> hole, std::span<const int> board);

// The nut hand on a board: its value and every two-card holding that makes it. `dead` cards (a
// player's own hole cards, say) cannot be in a holding.
struct OmahaNuts {
  int value = 0;  // state-machine scale, LARGER is stronger
  Category category = Category::HighCard;
  std::vector<std::array<int, 2>> holdings;
  std::string description;  // the first nut holding's five cards in words
};

// Throws Error unless the board has 3 to 5 distinct cards and shares none with `dead`, and at least
// two cards are left to hold.
OmahaNuts omaha_nuts(std::span<const int> board, std::span<const int> dead = {});

// ---- low hands and Hutchison points ----

// The best eight-or-better low of 4 to 6 hole cards with 3 to 5 board cards, made of exactly two
// hole and three board cards: d5*10000 + d4*1000 + d3*100 + d2*10 + d1 for its ranks d1 < ... < d5
// with the ace as 1; SMALLER is the better low (54321 = 5-4-3-2-A), 0 = no low. Throws Error for
// another count, a code outside 0..51 or a repeated card.
int omaha_low(std::span<const int> hole, std::span<const int> board);

// A low value as players write it, highest card first: 54321 -> "5-4-3-2-A", 0 -> "no low". Throws
// Error for a number that is not five distinct ranks 1..8 in that layout.
std::string omaha_low_to_string(int low);

// One step of a Hutchison count: what it saw and the points it gave (negative for a suit of three or
// more; zero where a rule looked and found nothing worth points).
struct HutchisonItem {
  std::string reason;  // e.g. "two spades, ace high", "pair of kings", "K A: span 1, ace on top: 8 - 4"
  double points = 0;
};

// One stage of a Hutchison count; points is the sum of its items.
struct HutchisonStage {
  std::string name;  // "suits", "pairs", "straight potential", "ace with low cards"; Hi/Lo: "low
                     // cards", "further cards", "pairs and trips", "suits", or "four high cards"
  double points = 0;
  std::vector<HutchisonItem> items;
};

// A Hutchison count of a four-card starting hand, stage by stage, in the order they are counted.
struct HutchisonCount {
  double total = 0;        // the sum of the stages: HutchisonPointsOmaha or HutchisonPointsOmahaHL
  bool high_only = false;  // Hi/Lo only: four cards ten or higher; total is 1000.0 (play for the
                           // high alone) or 0.0, and the one stage says why
  std::vector<HutchisonStage> stages;
};

// Hutchison points (a whole number, never negative) of exactly four distinct cards: suits, pairs,
// straight potential and an ace with low cards. Throws Error for another count, a code outside
// 0..51 or a repeated card.
HutchisonCount hutchison_points(std::span<const int> hand);

// The Hi/Lo count (half points) of exactly four distinct cards: low cards, further cards, pairs and
// trips, suits; or for four high cards the marker 1000.0 or 0.0. Throws Error like hutchison_points.
HutchisonCount hutchison_points_hilo(std::span<const int> hand);

}  // namespace pokermath

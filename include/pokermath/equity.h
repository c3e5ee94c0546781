// Equity: how often a hand wins against another hand, random hands or a range, by exhaustive
// enumeration or Monte Carlo. The classic engines are PokerLogic members (eval.h) and the free
// functions below; the pokermath:: API adds validated requests with exact or sampled results.
//
// Units, fixed per operation: a fraction 0..1 (getProbabilityOfWin*, the range engines), raw counts
// through double references (wins with ties as halves, and boards), or a percentage 0..100 (the
// "Common" engines). Two-player engines count a tie as half a win; the multiway Common engines score
// a board tied by k opponents as 1/k (one tie is a whole win), unlike getProbabilityOfWin's even
// split 1/(1 + k).
#pragma once

#include <cstdint>

#include "pokermath/eval.h"
#include "pokermath/omaha.h"
#include "pokermath/ranges.h"

// All 5-card boards for two h-card hands, each ranked by "omaha-7.bin" (load it first); percent.
double RiverEquityHandVsHandOnPreFlopCommonFsm7(const int* hero, int h, const int* villain, int& boards, int& ms);
// Monte Carlo against one random h-card hand, completing the board to boardSize cards. trials and
// ms are in-out: the trial limit and the time limit in milliseconds on entry, the trials done and
// the elapsed milliseconds on return. Reseeds the C runtime's generator from the clock. Percent.
double EquityHandVsRandomCommon(const int* hero, int h, const int* board, int boardCount, int boardSize, int& trials,
                                int& ms);
// Monte Carlo pre-flop against one random hand of as many cards as the hero mask holds, ranked by
// "omaha-7.bin"; hiLo != 0 splits the pot with the eight-or-better low. Percent.
double RiverEquityHandVsRandomOnPreFlopCommon(uint64_t hero, int trials, int& ms, int hiLo);

// ---- the pokermath:: pre-flop table file ----------------------------------------------------------
namespace pokermath {

// Writes logic.m_equityTable to `path` as a pre-flop table file (records of hero key, villain key
// and twice the hero's wins, in key order), under a temporary name that is then renamed. Throws
// Error, writing nothing, when an entry could not be loaded back (a key that is not a hand key, two
// hands sharing a card, a value outside 1..3,424,608) or when the file cannot be written.
void save_preflop_table(const PokerLogic& logic, const std::filesystem::path& path);

// Replaces logic.m_equityTable with the pre-flop table file at `path` and returns its entry count.
// Throws Error naming the file, and the record when one is at fault, when the file is missing or
// unreadable, its length is not a multiple of 12, or a record has a key that is not a hand key
// (lower card x 64 + higher card, codes 0..51), hands sharing a card, a value outside
// 1..3,424,608 or a key pair seen before; the table is then left as it was. Shows no messages.
size_t load_preflop_table(PokerLogic& logic, const std::filesystem::path& path);

}  // namespace pokermath

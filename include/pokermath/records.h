// Game records: the game type of a hand-history header, showdown payouts with side pots, and
// hand-history files followed line by line from a stored position while a poker client writes them.
#pragma once

#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <vector>

#include "pokermath/support.h"

// ---- game types -----------------------------------------------------------------------------------

// The game-type code of a hand-history game text (exact, case-sensitive): 2 "Hold'em No Limit",
// 7 text starting "Omaha Pot Limit", 10 starting "Omaha Hi/Lo Pot Limit", 13 "5 Card Omaha Pot
// Limit" or "PLO-5", 14 "5 Card Omaha Hi/Lo Pot Limit", 16 "Courchevel Pot Limit", 17 "Courchevel
// Hi/Lo Pot Limit", 36 any text starting "6 Card Omaha" (this test wins over all others), else -1.
int GetTypeGameHH(const CString& game);

// ---- showdown payouts (ranks: larger is stronger) --------------------------------------------------

// The smallest non-zero bet among the n players whose rank equals `rank`, capped at 1000: the
// result never exceeds 1000 (also when no player matches).
int GetMinVinnerBet(const int bets[], const int ranks[], int n, int rank);

// Pays the pot out by hand strength, side pots included, adding each player's winnings to wins[]
// (the caller zeroes it). bets[] are the chips each player has in the pot (0 = nothing or folded),
// ranks[] the hand strengths, larger stronger. Works in passes: a sole best hand takes up to its
// own bet from every other player; tied best hands share a layer of at most 1000 chips per player
// per pass, the first of them taking the odd chips. Afterwards bets[] are 0 and paid players'
// ranks 0. Kept quirk: every player whose rank equals the best rank of a split is paid a share,
// even with a zero bet. So give rank 0 to players with nothing in the pot; and note that a player
// who lost all his chips to a stronger hand keeps his rank and is paid by a later split at that
// rank, over the pot (pokermath::pay_showdown never is).
void GameResult(int bets[], int ranks[], int wins[], int n);

// ---- hand-history files ---------------------------------------------------------------------------
// Each reader empties `lines`, then reads from the byte offset `position` to the end of the file,
// skips empty lines, trims blanks at both ends of the others (a line of blanks becomes "") and
// appends them, and stores the byte offset to continue from in `position`. A last line without a
// line end is returned like the others, so a complete file loses no line; while a writer is in the
// middle of that line, the rest it writes comes back as a line of its own on the next call (follow
// such a file with pokermath::read_history, which holds an unfinished line back). In a UTF-16 file
// a lone last byte, half a code unit, is left for the next call.
// Results: 0 success, -1 no such file, -2 the file cannot be opened or `position` is negative;
// `position` changes only on success. Offsets past the end read nothing and are kept.

// Reads UTF-8 text (or UTF-16 when the file starts with its byte-order mark). Paths starting with
// "888poker" (that room's files, given relative to the working directory) are read through the
// narrow code page instead.
int ReadHistoryFile(const CString& path, int64_t& position, CStringArray& lines);
// Reads through pokermath::TextFile, which detects the encoding: UTF-8 with or without byte-order
// mark, UTF-16 LE or BE with byte-order mark, else the narrow code page line by line.
int ReadHistoryFileEx(const CString& path, int64_t& position, CStringArray& lines);
// Reads UTF-8 text like ReadHistoryFile, whatever the path; a file that exists but cannot be
// opened is also reported with ShowMessage("File <path> could not be opened!").
int ReadHistoryFileUTF8(const CString& path, int64_t& position, CStringArray& lines);

namespace pokermath {

// ---- showdown payouts -----------------------------------------------------------------------------

// The largest number of players pay_showdown accepts.
inline constexpr int kMaxShowdownPlayers = 100;

// One pot of a showdown: the main pot, then one side pot per higher bet level.
struct SidePot {
  int amount = 0;            // chips in this pot
  std::vector<int> players;  // 0-based indices of the players whose bets reach into it
  std::vector<int> winners;  // those of them with the best rank, who share it
};

// The result of a showdown.
struct ShowdownPayout {
  std::vector<int> wins;      // chips paid to each player; they add up to the sum of the bets
  std::vector<SidePot> pots;  // the main pot first, then the side pots by rising bet level
};

// Pays out a showdown with the passes of GameResult (same odd-chip rule: per pass, to the first of
// the tied players), keeping between passes the condition it needs: a player with nothing left in
// the pot has no rank, so every chip is paid exactly once. bets[i] >= 0 are the chips player i has
// in the pot, ranks[i] any hand strengths, larger stronger (the rank of a zero bet is ignored).
// Throws Error for lists of different lengths, no players, more than kMaxShowdownPlayers, a
// negative bet, or bets adding up to more than 2147483647.
ShowdownPayout pay_showdown(std::span<const int> bets, std::span<const int> ranks);

// ---- hand-history files ---------------------------------------------------------------------------

// New lines of a hand-history file.
struct HistoryLines {
  std::vector<std::string> lines;                      // UTF-8, trimmed; blank lines are left out
  int64_t position = 0;                                // byte offset to read from next time
  int64_t held_bytes = 0;                              // bytes left for the next read: an unfinished last
                                                       // line, or with Include half a UTF-16 code unit
  TextEncoding encoding = TextEncoding::Utf8OrNarrow;  // as TextFile detected it
};

// Reads the lines of a hand-history file from byte offset `from` (0 = the start), decoded as
// ReadHistoryFileEx does. An unfinished last line (no line end yet) is held back unless
// `partial` is PartialLine::Include (for a file known to be complete); either way `position` is one
// that a later call accepts as `from`. Throws FileError (a kind of Error) when the file does not
// exist, is not a regular file or cannot be opened; Error when `from` is negative or past the end of
// the file (it was truncated or replaced: read it again from 0), or odd in a UTF-16 file.
HistoryLines read_history(const std::filesystem::path& path, int64_t from = 0, PartialLine partial = PartialLine::Hold);

}  // namespace pokermath

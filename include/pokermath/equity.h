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
#include <functional>
#include <memory>
#include <stop_token>

#include "pokermath/eval.h"
#include "pokermath/omaha.h"
#include "pokermath/ranges.h"

// All 5-card boards for two h-card hands, each ranked by eval_rank7_via_ofsm7 (walked through
// "omaha-7.bin" when it is loaded); percent.
double RiverEquityHandVsHandOnPreFlopCommonFsm7(const int* hero, int h, const int* villain, int& boards, int& ms);
// Monte Carlo against one random h-card hand, completing the board to boardSize cards. trials and
// ms are in-out: the trial limit and the time limit in milliseconds on entry, the trials done and
// the elapsed milliseconds on return. Reseeds the C runtime's generator from the clock. Percent.
double EquityHandVsRandomCommon(const int* hero, int h, const int* board, int boardCount, int boardSize, int& trials,
                                int& ms);
// Monte Carlo pre-flop against one random hand of as many cards as the hero mask holds, ranked by
// eval_rank7_via_ofsm7; hiLo != 0 splits the pot with the eight-or-better low. Percent.
double RiverEquityHandVsRandomOnPreFlopCommon(uint64_t hero, int trials, int& ms, int hiLo);

// ---- short-deck equity over ranges: the "6Plus" engines and their "China" forms ----------------------
// Short-deck Hold'em (the 36 cards six to ace) among `players` (2..10) players, player i holding any
// combination of ranges[i] that has no card below six and none of the board or dead cards: boardCount
// (0, 3, 4 or 5) board cards, deadCount cards out of play (either array may be null when its count
// is 0). The plain forms rank in the standard short-deck order (three of a kind beats a straight, a
// flush beats a full house), the China forms in the China order (a straight beats three of a kind).
//
// Refused input gives 0 (and zero counts): a player count outside 2..10, a board of 1, 2 or more than
// 5 cards, a board or dead card that is not a short-deck card or is given twice, more cards than the
// deck holds, a range with no combination left, players who can never be dealt together; for the
// Enumerate forms also more than 10 million tuples of hands.
//
// The ProbabilityOfWin forms return player 0's share in percent under the multiway Common tie rule:
// a deal won alone scores 1, a deal shared with k opponents 1/k (one tie is a whole win).
// Common forms sample: trials and ms are in-out, the trial limit and the time limit in milliseconds
// on entry (the clock is read after the first trial and after every 10,000th), the trials done and
// the elapsed milliseconds on return; the generator is seeded from the clock.
// Enumerate forms count every deal once (tuples of hands times completions of the board): `deals`
// receives their number (capped at 2,147,483,647 in the int form) and ms the elapsed milliseconds.
double getProbabilityOfWinHoldem6PlusCommon(const Spec* ranges, int players, const int* board, int boardCount,
                                            const int* dead, int deadCount, int& trials, int& ms);
double getProbabilityOfWinHoldem6PlusChinaCommon(const Spec* ranges, int players, const int* board, int boardCount,
                                                 const int* dead, int deadCount, int& trials, int& ms);
double getProbabilityOfWinHoldem6PlusEnumerate(const Spec* ranges, int players, const int* board, int boardCount,
                                               const int* dead, int deadCount, int& deals, int& ms);
double getProbabilityOfWinHoldem6PlusChinaEnumerate(const Spec* ranges, int players, const int* board, int boardCount,
                                                    const int* dead, int deadCount, int& deals, int& ms);
// The counts behind them: `wins` the deals player 0 wins alone, `ties` the deals it shares (sampled
// counts scaled to the trials done). Return 1, or 0 for refused input.
int getWinHoldem6PlusCommon(const Spec* ranges, int players, const int* board, int boardCount, const int* dead,
                            int deadCount, double& wins, double& ties, int& trials, int& ms);
int getWinHoldem6PlusChinaCommon(const Spec* ranges, int players, const int* board, int boardCount, const int* dead,
                                 int deadCount, double& wins, double& ties, int& trials, int& ms);
int getWinHoldem6PlusEnumerate(const Spec* ranges, int players, const int* board, int boardCount, const int* dead,
                               int deadCount, double& wins, double& ties, double& deals, int& ms);
int getWinHoldem6PlusChinaEnumerate(const Spec* ranges, int players, const int* board, int boardCount, const int* dead,
                                    int deadCount, double& wins, double& ties, double& deals, int& ms);

// ---- the pokermath:: pre-flop table file ----------------------------------------------------------
namespace pokermath {

// Writes logic.m_equityTable to `path` as a pre-flop table file (records of hero key, villain key
// and twice the hero's wins, in key order), under a temporary name that is then renamed. Throws
// Error, writing nothing, when an entry could not be loaded back (a key that is not a hand key, two
// hands sharing a card, a value outside 1..3,424,608); FileError (a kind of Error) when the file
// cannot be written (no such directory, no permission, no space, ...).
void save_preflop_table(const PokerLogic& logic, const std::filesystem::path& path);

// Replaces logic.m_equityTable with the pre-flop table file at `path` and returns its entry count.
// Throws FileError (a kind of Error) when the file is missing, not a regular file or unreadable;
// Error naming the file, and the record when one is at fault, when its length is not a multiple of
// 12, it differs from the manifest of its directory, or a record has a key that is not a hand key
// (lower card x 64 + higher card, codes 0..51), hands sharing a card, a value outside
// 1..3,424,608 or a key pair seen before. The table is then left as it was. Shows no messages.
size_t load_preflop_table(PokerLogic& logic, const std::filesystem::path& path);

// ---- the pokermath:: equity API ---------------------------------------------------------------

// How an equity is computed: exactly (every deal counted once), by Monte Carlo, or Auto (exact when
// the work is small enough to take about a second, otherwise Monte Carlo).
enum class EquityMethod { Auto, Exact, MonteCarlo };

// The game of an equity question. Omaha hands hold 4, 5 or 6 cards and play exactly two of them with
// three board cards; in Hi/Lo half the pot goes to the best eight-or-better low. The short deck is
// Hold'em with the 36 cards from six to ace, ranked in the standard short-deck order (three of a
// kind beats a straight, a flush beats a full house) or in the China order (a straight beats three
// of a kind).
enum class EquityGame {
  Holdem,
  Omaha,
  Omaha5,
  Omaha6,
  OmahaHiLo,
  Omaha5HiLo,
  ShortDeck,
  ShortDeckChina,
  Omaha6HiLo
};

// "holdem", "omaha", "omaha5", "omaha6", "omaha-hilo", "omaha5-hilo", "omaha6-hilo", "shortdeck",
// "china"; throws Error for another name.
EquityGame equity_game_from_name(std::string_view name);

// Reports a long computation: the fraction done, 0..1, rising. Called on the thread that called
// compute_equity, between pieces of work (each time about 1% more is done, and 1 at the end).
using WorkProgress = std::function<void(double fraction)>;

// The most Monte Carlo trials one request may ask for (days of work on one core).
inline constexpr int64_t kMaxTrials = 1'000'000'000'000;

// One equity question. Each player is a text: a hand ("AsKs"), a range ("QQ+,AKs,A5s-A2s"; see
// parse_range) or "random". In Omaha games a player is a holding ("AsKsQhJh"), a range in the Omaha
// range language ("AA**:ds,15%"; see parse_omaha_range; holdings weighted by "@N") or "random". In the
// short deck every card is six or higher: a hand, range item, board or dead card below six is an
// error ("random" is any short-deck hand). Cards on the board and dead cards belong to nobody.
//
// Exact answers count every deal, grouping deals that are equal up to a permutation of suits;
// Monte Carlo answers sample deals in fixed chunks of trials, each chunk with its own random
// stream derived from the seed, summed in chunk order. Both use `threads` threads, and both give
// the same numbers for the same request on any number of threads (a time limit aside: where it
// stops depends on the machine).
struct EquityRequest {
  EquityGame game = EquityGame::Holdem;
  std::vector<std::string> players;  // two or more (at most 10)
  std::vector<int> board;            // 0, 3, 4 or 5 card codes
  std::vector<int> dead;             // cards out of play
  EquityMethod method = EquityMethod::Auto;
  int64_t trials = 1000000;        // Monte Carlo: the most trials, 1..kMaxTrials
  uint64_t seed = 1;               // Monte Carlo: the same seed gives the same result
  int time_ms = 0;                 // Monte Carlo: stop after this many milliseconds (0: no limit)
  double target_std_error = 0;     // Monte Carlo: stop once every player's standard error of equity is
                                   // at most this (0: no target); checked after 4,096 trials, then at
                                   // doubling counts
  int threads = 0;                 // threads to use (0: every core)
  std::filesystem::path data_dir;  // where the tables live (empty: default_data_directory())
  TableProgress progress;          // reports table generation on first use
  WorkProgress on_progress;        // reports the computation
  std::stop_token stop;            // a stop request ends the computation: compute_equity throws Cancelled
};

// A player's result. Win: the share of deals the player wins alone; tie: the share the player
// splits; equity: the share of the pot, a split pot divided evenly. All 0..1.
struct PlayerEquity {
  std::string hand;  // the player's text as given
  double win = 0;    // NaN when only the equity is known (answered from the pre-flop table)
  double tie = 0;    // NaN likewise
  double equity = 0;
  double std_error = 0;  // Monte Carlo: the standard error of equity; 0 when exact
  // Hi/Lo games: equity = high + low, the pot shares won with the high hand and with the low hand;
  // scoop = the share of deals in which the player takes the whole pot alone. NaN in other games.
  double high = 0, low = 0, scoop = 0;
};

struct EquityResult {
  std::vector<PlayerEquity> players;
  bool exact = false;       // every deal counted (or answered from an exact table)
  bool from_table = false;  // answered from the pre-flop equity table
  double deals = 0;         // deals counted: boards x hand combinations (exact) or trials (Monte Carlo)
  double seconds = 0;
};

// Computes the equity of every player. Throws Error for a bad hand or range (naming it), a card
// used twice among hands, board and dead cards, a range left empty by the known cards, players whose
// ranges can never be dealt together, fewer than two or more than ten players, more players than the
// deck allows, a board of 1, 2 or 6+ cards, a bad number (trials outside 1..kMaxTrials, a negative time limit,
// standard error or thread count), or an exact request too large to count. Throws Cancelled when
// `stop` is requested.
EquityResult compute_equity(const EquityRequest& request);

// The pre-flop equity table of all 1,624,350 ordered two-card matchups, computed exactly (each of
// the 93,769 classes equal up to suits once, in parallel) and saved as "OrvalisPC.dat" in `dir`.
// Returns true when it was written (false when a valid file is already there and !force). Throws
// FileError (a kind of Error), before the work starts where it can tell, when the file cannot be
// written (a directory that cannot be created or written, no space, ...).
bool generate_preflop_table(const std::filesystem::path& dir, bool force = false, const TableProgress& progress = {});

// The short-deck equity tables of fsm5 (docs/tables.md): "ET2I_6.bin", the matchup tables
// "ET2F_6.bin", "ET2T_6.bin", "ET2R_6.bin" and their China forms "ET2F_6C.bin", "ET2T_6C.bin",
// "ET2R_6C.bin", and "FT2R_6.bin", "FT2R_6C.bin" (a hand against a random hand), in that order.
std::vector<std::string> short_deck_table_names();

// Computes the short-deck equity tables exactly (every board of every matchup, each class of
// matchups equal up to suits once, in parallel) and writes them into `dir` under the data-directory
// rules. Returns true when they were written (false when all nine are valid there and !force); a
// damaged file is reported through `progress` first. Throws FileError when `dir` cannot be written.
bool generate_short_deck_tables(const std::filesystem::path& dir, bool force = false,
                                const TableProgress& progress = {});

// Makes the short-deck equity tables available to fsm5::get2 and fsm5::get1: loads them from `dir`,
// generating them there first when missing or damaged. Tables already in memory stay. Throws Error
// (FileError for a file the system will not open) when a file cannot be loaded.
void load_short_deck_tables(const std::filesystem::path& dir, const TableProgress& progress = {});

// ---- the Omaha pre-flop rankings ----------------------------------------------------------------
// The ranking a share of holdings ("15%") reads: every class of holdings equal up to suits with its
// equity against one random holding, by Monte Carlo to a standard error of at most 0.001 (4 cards)
// or 0.003 (5 cards) per class, deterministic. Files "omaha4-ranking.bin", "omaha4-hilo-ranking.bin",
// "omaha5-ranking.bin", "omaha5-hilo-ranking.bin" in the data directory. The 6-card games have none
// yet: asking for one throws Error.

// The file name of a game's ranking; throws Error for a game that is not Omaha.
std::string omaha_ranking_name(EquityGame game);

// Computes a game's ranking and writes it into `dir` (empty: default_data_directory()) under the
// data-directory rules. Returns true when it was written (false when a valid one is there and
// !force). `std_error` (0: the game's target above) samples each class to another standard error,
// which the file records (a coarse ranking is quick to make for tests). Throws Error for a game
// without a ranking, FileError when `dir` cannot be written.
bool generate_omaha_ranking(EquityGame game, const std::filesystem::path& dir = {}, bool force = false,
                            const TableProgress& progress = {}, double std_error = 0);

// A game's ranking, loaded from `dir` (generated there first when missing or damaged) and kept in
// memory for later calls.
std::shared_ptr<const OmahaRanking> omaha_ranking(EquityGame game, const std::filesystem::path& dir = {},
                                                  const TableProgress& progress = {});

// ---- exact Omaha pre-flop equities ---------------------------------------------------------------

// A class of Omaha holdings equal up to a permutation of suits and its exact pre-flop equity against
// one random holding.
struct OmahaPreflopEquity {
  uint64_t holding_class = 0;  // omaha_suit_class of its holdings
  uint32_t holdings = 0;       // how many holdings the class has (1 to 24)
  double equity = 0;           // the pot share over every board and opponent holding, 0..1
};

// Computes the exact pre-flop equity of every class of holdings of an Omaha game against one random
// holding, every five-card board and opponent holding counted once, on `threads` threads (0: every
// core); the classes in ascending order of holding_class. `deck` (card mask) plays the game with
// fewer cards (a deck of a few ranks answers in milliseconds; the full 4-card game takes minutes).
// The numbers do not depend on the threads. Throws Error for a game that is not Omaha, a negative
// thread count or a deck with too few cards for two holdings and a board; Cancelled when `stop` is
// requested.
std::vector<OmahaPreflopEquity> compute_omaha_preflop(EquityGame game, uint64_t deck = (uint64_t{1} << 52) - 1,
                                                      int threads = 0, const WorkProgress& progress = {},
                                                      std::stop_token stop = {});

// The deck of the cards of the ranks named ("TJQKA": 20 cards), all 52 when `ranks` is empty; throws
// Error for a letter that is not a rank.
uint64_t deck_of_ranks(std::string_view ranks);

// ---- the exact Omaha pre-flop tables ---------------------------------------------------------------
// compute_omaha_preflop's answers kept in a table file of the data directory, made once by a long
// run that may be spread over many processes and machines (pokermath tables --omaha-preflop, also
// under mpirun): the boards are split into units, each finished unit is written to a checkpoint
// directory, and a run that is stopped or killed resumes where it was. Files "omaha4-preflop.bin",
// "omaha4-hilo-preflop.bin", ..., "omaha6-hilo-preflop.bin"; a deck of fewer ranks names its ranks
// ("omaha4-preflop-A2345K.bin").

struct OmahaTableOptions {
  std::filesystem::path dir;                // the data directory (empty: default_data_directory())
  std::filesystem::path checkpoint;         // the unit files (empty: DIR/NAME.units, NAME the table's file name)
  uint64_t deck = (uint64_t{1} << 52) - 1;  // whole ranks only
  int threads = 0;                          // per process; 0: every core
  int unit_boards = 0;                      // board classes per unit (0: 256); the table does not depend on it
  bool force = false;                       // make the table again even when a valid one is there
};

// The file name of a game's exact table on `deck`; throws Error for a game that is not Omaha or a
// deck that is not made of whole ranks.
std::string omaha_preflop_table_name(EquityGame game, uint64_t deck = (uint64_t{1} << 52) - 1);

// Makes a game's exact table in this process (every unit not yet in the checkpoint directory, then
// the merged table under the data-directory rules). Returns true when the table was written (false
// when a valid one is there and !options.force). Units that other processes are computing at the
// same time are waited for, not computed twice. Throws Error for bad options, FileError when a
// directory cannot be written, Cancelled when `stop` is requested (finished units stay).
bool generate_omaha_preflop_table(EquityGame game, const OmahaTableOptions& options = {},
                                  const TableProgress& progress = {}, std::stop_token stop = {});

namespace detail {
class PreflopTableRun;
}

// One table's run in units, for drivers of their own (the CLI's MPI ranks, a batch scheduler's
// array jobs): any process may compute any unit, at any time, in any order; merge() then writes the
// table. The checkpoint directory holds "checkpoint.txt" (what the units are of: a run of another
// table pointed there is refused), "unit-NNNNNN.bin" (a finished unit: its header, the pot of every
// class over its boards and a checksum; renamed into place, so whole or absent) and
// "unit-NNNNNN.lock" (flock'ed by the process computing the unit; the system drops the lock when
// that process dies). A unit file of the wrong size, header or checksum counts as not done.
class OmahaTableRun {
 public:
  // Checks the options, creates the checkpoint directory and records (or checks) what its units are
  // of. Throws Error for bad options or another run's checkpoint directory, FileError when the
  // directory cannot be written.
  OmahaTableRun(EquityGame game, const OmahaTableOptions& options);
  ~OmahaTableRun();
  OmahaTableRun(const OmahaTableRun&) = delete;
  OmahaTableRun& operator=(const OmahaTableRun&) = delete;

  int units() const;
  const std::string& table_name() const;
  const std::filesystem::path& table_dir() const;
  const std::filesystem::path& checkpoint() const;
  // Whether the table is in the data directory and matches its manifest.
  bool table_present() const;
  // Whether unit `unit`'s file is there and whole; unit_damaged: there but not whole.
  bool unit_done(int unit) const;
  bool unit_damaged(int unit) const;

  enum class UnitResult { Computed, AlreadyDone, Busy };
  // Computes unit `unit` on `threads` threads (0: every core) and writes its file, unless it is done
  // already, or another process holds it (Busy; with `wait`, waits for that process and computes the
  // unit only if it left no file). Throws Cancelled when `stop` is requested (nothing written),
  // FileError when the unit cannot be written.
  UnitResult compute_unit(int unit, int threads, bool wait, std::stop_token stop = {});
  // Sums every unit into the table and writes it under the data-directory rules; a unit found
  // missing or damaged now is reported through `progress` and computed first. Returns how many were.
  int merge(int threads, const TableProgress& progress = {});

 private:
  std::unique_ptr<detail::PreflopTableRun> m_run;
};

// An exact table in memory: every class of holdings with its equity, strongest first.
class OmahaPreflopTable {
 public:
  struct Entry {
    uint64_t holding_class = 0;  // omaha_suit_class of its holdings
    uint32_t holdings = 0;       // holdings in the class
    double equity = 0;           // exact pot share against one random holding, 0..1
    uint32_t rank = 0;           // 1 for the strongest class; classes of equal equity share a rank
    double percentile = 0;       // percent of all holdings with a smaller equity, 0..100
  };

  EquityGame game() const { return m_game; }
  uint64_t deck() const { return m_deck; }
  uint64_t checksum() const { return m_checksum; }  // the checksum recorded in the file
  const std::vector<Entry>& entries() const { return m_entries; }
  // The entry of a holding's class; throws Error for a mask that is not a holding of the table's
  // size from its deck.
  const Entry& lookup(uint64_t holding) const;

  OmahaPreflopTable(EquityGame game, uint64_t deck, uint64_t checksum, std::vector<Entry> entries);

 private:
  EquityGame m_game;
  uint64_t m_deck;
  uint64_t m_checksum;
  std::vector<Entry> m_entries;                        // strongest first
  std::vector<std::pair<uint64_t, uint32_t>> m_index;  // class mask -> entry, ascending
};

// A game's exact table, loaded from `dir` (empty: default_data_directory()) and kept in memory for
// later calls. Throws Error when the table is not there ("make it with pokermath tables
// --omaha-preflop ...") or is damaged.
std::shared_ptr<const OmahaPreflopTable> omaha_preflop_table(EquityGame game, const std::filesystem::path& dir = {},
                                                             uint64_t deck = (uint64_t{1} << 52) - 1);

// parse_omaha_range for an Omaha game: its hole-card count, and its ranking (loaded as above) when
// the text holds a share.
OmahaRange parse_omaha_range(std::string_view text, EquityGame game, const std::filesystem::path& data_dir = {},
                             const TableProgress& progress = {});

}  // namespace pokermath

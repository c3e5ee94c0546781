// The pokermath:: equity API: validated requests, exact enumeration or Monte Carlo, the pre-flop
// table when it is there, and the generator of that table.
#include <omp.h>

#include <algorithm>
#include <atomic>
#include <bit>
#include <chrono>
#include <cmath>
#include <limits>
#include <map>
#include <memory>
#include <mutex>
#include <random>
#include <set>
#include <unordered_map>

#include "equity/board_walk.h"
#include "equity/holdem_exact.h"
#include "equity/matchups.h"
#include "equity/omaha_boards.h"
#include "pokermath/equity.h"

namespace pokermath {

namespace {

using Combo = std::array<int, 2>;
constexpr int kMaxPlayers = 10;
constexpr double kExactBudget = 1.5e9;  // player-boards an exact request may walk (about a second)
constexpr int64_t kRiverBoards = 1712304;

// ---- the shared tables ----------------------------------------------------------------------------

// One PokerLogic per data directory, with the seven-card table loaded (generated there first when
// missing) and the pre-flop table loaded when its file is present.
struct Tables {
  std::unique_ptr<PokerLogic> logic = std::make_unique<PokerLogic>();
  bool preflop = false;
};

const Tables& tables_for(const std::filesystem::path& dir, const TableProgress& progress) {
  static std::mutex mutex;
  static std::map<std::filesystem::path, std::unique_ptr<Tables>> loaded;
  std::lock_guard lock(mutex);
  auto& slot = loaded[dir];
  if (slot) return *slot;
  auto tables = std::make_unique<Tables>();
  generate_table_file(dir, TableFile::SevenCardLookup, false, progress);
  if (tables->logic->generate_table(widen((dir / "OrvalisHR.dat").string())) != 0)
    throw Error("cannot load the seven-card table from '" + dir.string() + "'");
  const std::filesystem::path preflop = dir / "OrvalisPC.dat";
  if (std::filesystem::exists(preflop)) {
    load_preflop_table(*tables->logic, preflop);
    tables->preflop = !tables->logic->m_equityTable.empty();
  }
  slot = std::move(tables);
  return *slot;
}

// ---- the players ----------------------------------------------------------------------------------

struct Player {
  std::string text;
  std::vector<Combo> combos;  // the hands the player may hold, none touching a known card
  bool fixed = false;         // one given hand
};

std::string ordinal(size_t i) { return "player " + std::to_string(i + 1); }

// "random" or "any", in any case: a player holding any hand.
bool is_random(std::string_view text) {
  std::string lower(text);
  for (char& ch : lower) ch = static_cast<char>(std::tolower(static_cast<unsigned char>(ch)));
  return lower == "random" || lower == "any";
}

std::vector<Player> read_players(const EquityRequest& request, uint64_t& known) {
  const size_t n = request.players.size();
  if (n < 2 || n > kMaxPlayers)
    throw Error("expected 2 to " + std::to_string(kMaxPlayers) + " players, got " + std::to_string(n));
  std::vector<Player> players(n);
  // Given hands first: their cards are known to everybody else.
  for (size_t i = 0; i < n; ++i) {
    Player& p = players[i];
    p.text = request.players[i];
    std::vector<int> cards;
    try {
      cards = parse_cards(p.text);
    } catch (const Error&) {
      continue;  // not a hand: a range or "random"
    }
    if (cards.size() != 2) throw Error(ordinal(i) + ": a Hold'em hand is two cards, got '" + p.text + "'");
    for (int c : cards) {
      if (known >> c & 1) throw Error(ordinal(i) + ": card '" + card_to_string(c) + "' is already in play");
      known |= uint64_t{1} << c;
    }
    p.combos = {Combo{cards[0], cards[1]}};
    p.fixed = true;
  }
  for (size_t i = 0; i < n; ++i) {
    Player& p = players[i];
    if (p.fixed) continue;
    Spec range;
    if (is_random(p.text)) {
      range.MakeRandom();
    } else {
      try {
        range = parse_range(p.text);
      } catch (const Error& e) {
        throw Error(ordinal(i) + ": " + e.what());
      }
    }
    std::set<std::pair<int, int>> seen;
    for (const auto& [a, b] : range.m_hands) {
      if (known >> a & 1 || known >> b & 1) continue;
      if (seen.insert({std::min(a, b), std::max(a, b)}).second) p.combos.push_back({a, b});
    }
    if (p.combos.empty())
      throw Error(ordinal(i) + ": the range '" + p.text + "' has no hand left once the known cards are removed");
  }
  return players;
}

// ---- exact ------------------------------------------------------------------------------------

struct Accumulator {
  std::vector<double> wins, ties, shares;  // shares: the equity numerators
  double deals = 0;
  explicit Accumulator(size_t n) : wins(n), ties(n), shares(n) {}
};

// Visits every tuple of one combination per player that shares no card, with its weight 1.
template <typename Visit>
void for_each_tuple(const std::vector<Player>& players, Visit visit) {
  std::array<Combo, kMaxPlayers> hands{};
  const size_t n = std::min<size_t>(players.size(), kMaxPlayers);
  auto level = [&](auto& self, size_t i, uint64_t used) -> void {
    if (i == n) {
      visit(static_cast<const Combo*>(hands.data()));
      return;
    }
    for (const Combo& c : players[i].combos) {
      const uint64_t bits = uint64_t{1} << c[0] | uint64_t{1} << c[1];
      if (used & bits) continue;
      hands[i] = c;
      self(self, i + 1, used | bits);
    }
  };
  level(level, 0, 0);
}

// True when some tuple of one combination per player shares no card (a depth-first search that
// stops at the first one).
bool any_tuple(const std::vector<Player>& players) {
  auto level = [&](auto& self, size_t i, uint64_t used) -> bool {
    if (i == players.size()) return true;
    for (const Combo& c : players[i].combos) {
      const uint64_t bits = uint64_t{1} << c[0] | uint64_t{1} << c[1];
      if (!(used & bits) && self(self, i + 1, used | bits)) return true;
    }
    return false;
  };
  return level(level, 0, 0);
}

// At least the number of tuples: the product of the range sizes.
double tuples_bound(const std::vector<Player>& players) {
  double bound = 1;
  for (const Player& p : players) bound *= static_cast<double>(p.combos.size());
  return bound;
}

int64_t boards_to_come(int known_cards, int board_cards) {
  const int left = 52 - known_cards, missing = 5 - board_cards;
  int64_t n = 1;
  for (int i = 0; i < missing; ++i) n = n * (left - i) / (i + 1);
  return n;
}

// Two players, no board and no dead cards: each class of matchups equal up to suits once, in parallel.
void exact_preflop_heads_up(const PokerLogic& logic, const std::vector<Player>& players, Accumulator& acc) {
  struct Job {
    Combo hero, villain;
    detail::HeadsUpCounts counts;
  };
  std::vector<Job> jobs;
  std::unordered_map<uint32_t, size_t> job_of;
  std::vector<size_t> tuple_jobs;
  for_each_tuple(players, [&](const Combo* hands) {
    const auto [it, added] = job_of.emplace(detail::matchup_class(hands[0].data(), hands[1].data()), jobs.size());
    if (added) jobs.push_back({{hands[0][0], hands[0][1]}, {hands[1][0], hands[1][1]}, {}});
    tuple_jobs.push_back(it->second);
  });
  const int n = static_cast<int>(jobs.size());
#pragma omp parallel for schedule(dynamic, 1)
  for (int j = 0; j < n; ++j)
    jobs[j].counts =
        detail::heads_up_counts(logic.m_HR.data(), jobs[j].hero.data(), jobs[j].villain.data(), nullptr, 0, 0);
  for (size_t j : tuple_jobs) {
    const detail::HeadsUpCounts& c = jobs[j].counts;
    const double losses = static_cast<double>(c.boards - c.wins - c.ties);
    acc.wins[0] += static_cast<double>(c.wins);
    acc.ties[0] += static_cast<double>(c.ties);
    acc.shares[0] += static_cast<double>(c.wins) + 0.5 * static_cast<double>(c.ties);
    acc.wins[1] += losses;
    acc.ties[1] += static_cast<double>(c.ties);
    acc.shares[1] += losses + 0.5 * static_cast<double>(c.ties);
    acc.deals += static_cast<double>(c.boards);
  }
}

void exact_general(const PokerLogic& logic, const std::vector<Player>& players, const std::vector<int>& board,
                   uint64_t dead, Accumulator& acc) {
  detail::MultiwayCounts counts;
  for_each_tuple(players, [&](const Combo* hands) {
    detail::add_multiway_counts(logic.m_HR.data(), hands, static_cast<int>(players.size()), board.data(),
                                static_cast<int>(board.size()), dead, counts);
  });
  for (size_t p = 0; p < players.size(); ++p) {
    acc.wins[p] = static_cast<double>(counts.wins[p]);
    acc.ties[p] = static_cast<double>(counts.ties[p]);
    acc.shares[p] = static_cast<double>(counts.share_units[p]) / detail::kShareUnit;
  }
  acc.deals = static_cast<double>(counts.boards);
}

// ---- the pre-flop table -------------------------------------------------------------------------

int hand_key(const int* hand) { return std::min(hand[0], hand[1]) * 64 + std::max(hand[0], hand[1]); }

// Equity numerators from the table, or false when it lacks a matchup.
bool from_table(const PokerLogic& logic, const std::vector<Player>& players, Accumulator& acc) {
  bool complete = true;
  for_each_tuple(players, [&](const Combo* hands) {
    const auto it = logic.m_equityTable.find({hand_key(hands[0].data()), hand_key(hands[1].data())});
    if (it == logic.m_equityTable.end()) {
      complete = false;
      return;
    }
    const double hero = it->second * 0.5;
    acc.shares[0] += hero;
    acc.shares[1] += static_cast<double>(kRiverBoards) - hero;
    acc.deals += static_cast<double>(kRiverBoards);
  });
  return complete;
}

// ---- Monte Carlo --------------------------------------------------------------------------------

// `board_and_dead`: the cards no player can hold; the players' own cards are drawn with their hands.
void monte_carlo(const PokerLogic& logic, const std::vector<Player>& players, const std::vector<int>& board,
                 uint64_t board_and_dead, const EquityRequest& request, Accumulator& acc,
                 std::vector<double>& squares) {
  std::mt19937_64 engine(request.seed);
  const uint32_t* HR = logic.m_HR.data();
  const size_t n = players.size();
  const auto start = std::chrono::steady_clock::now();
  int full[5];
  std::copy(board.begin(), board.end(), full);
  const int given = static_cast<int>(board.size());
  std::array<const int*, kMaxPlayers> hands{};  // the sampled players' combinations
  uint32_t values[kMaxPlayers];
  int64_t trials = 0;
  while (trials < request.trials) {
    if (request.time_ms > 0 && (trials & 1023) == 0 &&
        std::chrono::steady_clock::now() - start > std::chrono::milliseconds(request.time_ms))
      break;
    // A tuple drawn whole and rejected when two players share a card is uniform over valid tuples.
    uint64_t used = board_and_dead;
    bool clash = false;
    for (size_t p = 0; p < n && !clash; ++p) {
      const Combo& c = players[p].combos[engine() % players[p].combos.size()];
      const uint64_t bits = uint64_t{1} << c[0] | uint64_t{1} << c[1];
      clash = (used & bits) != 0;
      used |= bits;
      hands[p] = c.data();
    }
    if (clash) continue;
    for (int i = given; i < 5; ++i) {
      int card;
      do {
        card = static_cast<int>(engine() % 52);
      } while (used >> card & 1);
      used |= uint64_t{1} << card;
      full[i] = card;
    }
    const uint32_t board_state = detail::table_state(HR, full, 5);
    uint32_t best = 0;
    for (size_t p = 0; p < n; ++p) {
      values[p] = HR[HR[board_state + pokermath::one_based_code(hands[p][0])] + pokermath::one_based_code(hands[p][1])];
      best = std::max(best, values[p]);
    }
    int k = 0;
    for (size_t p = 0; p < n; ++p) k += values[p] == best;
    for (size_t p = 0; p < n; ++p) {
      if (values[p] != best) continue;
      (k == 1 ? acc.wins : acc.ties)[p] += 1;
      acc.shares[p] += 1.0 / k;
      squares[p] += 1.0 / (static_cast<double>(k) * k);
    }
    ++trials;
  }
  acc.deals = static_cast<double>(trials);
}

}  // namespace

EquityResult compute_omaha_equity(const EquityRequest& request);

EquityResult compute_equity(const EquityRequest& request) {
  if (request.game != EquityGame::Holdem) return compute_omaha_equity(request);
  const auto start = std::chrono::steady_clock::now();
  const size_t board_size = request.board.size();
  if (board_size == 1 || board_size == 2 || board_size > 5)
    throw Error("a board has 0, 3, 4 or 5 cards, got " + std::to_string(board_size));
  std::vector<int> known_cards = request.board;
  known_cards.insert(known_cards.end(), request.dead.begin(), request.dead.end());
  const uint64_t board_and_dead = cards_to_mask(known_cards);  // throws for a card given twice
  const uint64_t dead_mask = cards_to_mask(request.dead);
  uint64_t known = board_and_dead;  // read_players adds the given hands' cards
  const std::vector<Player> players = read_players(request, known);
  if (static_cast<int>(2 * players.size() + known_cards.size() + (5 - board_size)) > 52)
    throw Error(std::to_string(players.size()) + " players need more cards than the deck holds");

  const std::filesystem::path dir = request.data_dir.empty() ? default_data_directory() : request.data_dir;
  const Tables& tables = tables_for(dir, request.progress);
  const PokerLogic& logic = *tables.logic;

  EquityResult result;
  Accumulator acc(players.size());
  std::vector<double> squares(players.size());
  const bool heads_up_preflop = players.size() == 2 && board_size == 0 && request.dead.empty();
  bool answered = false;
  if (heads_up_preflop && tables.preflop && request.method != EquityMethod::MonteCarlo)
    answered = result.from_table = result.exact = from_table(logic, players, acc);
  if (!answered) {
    acc = Accumulator(players.size());
    if (!any_tuple(players)) throw Error("no deal is possible: the players' hands always share a card");
    const double tuples = tuples_bound(players);
    // The work of an exact answer, in player-boards; pre-flop heads-up counts each class of suits once.
    double work = tuples *
                  static_cast<double>(boards_to_come(static_cast<int>(2 * players.size() + known_cards.size()),
                                                     static_cast<int>(board_size))) *
                  static_cast<double>(players.size());
    if (heads_up_preflop) work = std::min(work, 93769.0 * kRiverBoards * 2 / omp_get_max_threads());
    const bool exact =
        request.method == EquityMethod::Exact || (request.method == EquityMethod::Auto && work <= kExactBudget);
    if (exact && heads_up_preflop)
      exact_preflop_heads_up(logic, players, acc);
    else if (exact)
      exact_general(logic, players, request.board, dead_mask, acc);
    else
      monte_carlo(logic, players, request.board, board_and_dead, request, acc, squares);
    result.exact = exact;
  }

  const double nan = std::numeric_limits<double>::quiet_NaN();
  for (size_t p = 0; p < players.size(); ++p) {
    PlayerEquity e;
    e.hand = players[p].text;
    e.equity = acc.shares[p] / acc.deals;
    e.win = result.from_table ? nan : acc.wins[p] / acc.deals;
    e.tie = result.from_table ? nan : acc.ties[p] / acc.deals;
    e.high = e.low = e.scoop = nan;
    if (!result.exact && acc.deals > 1) {
      const double variance = squares[p] / acc.deals - e.equity * e.equity;
      e.std_error = std::sqrt(std::max(0.0, variance) / (acc.deals - 1));
    }
    result.players.push_back(e);
  }
  result.deals = acc.deals;
  result.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  return result;
}

bool generate_preflop_table(const std::filesystem::path& dir, bool force, const TableProgress& progress) {
  const std::filesystem::path path = dir / "OrvalisPC.dat";
  if (!force && std::filesystem::exists(path)) {
    PokerLogic probe;
    try {
      load_preflop_table(probe, path);
      if (probe.m_equityTable.size() == 1624350) return false;
    } catch (const Error&) {
      // damaged: generate it again
    }
  }
  auto report = [&](std::string_view stage, double fraction) {
    if (progress) progress("OrvalisPC.dat", stage, fraction);
  };
  const Tables& tables = tables_for(dir, progress);
  const uint32_t* HR = tables.logic->m_HR.data();

  // Every ordered matchup, its class, and one representative per class. A class and its mirror
  // (villain and hero exchanged) need one enumeration: the mirror's wins are the boards the first
  // hand did not win, ties counted half on both sides.
  struct Matchup {
    int hero[2], villain[2];
    uint32_t cls;
  };
  std::vector<Matchup> matchups;
  matchups.reserve(1624350);
  for (int a = 0; a < 52; ++a)
    for (int b = a + 1; b < 52; ++b)
      for (int c = 0; c < 52; ++c)
        for (int d = c + 1; d < 52; ++d) {
          if (c == a || c == b || d == a || d == b) continue;
          Matchup m{{a, b}, {c, d}, 0};
          m.cls = detail::matchup_class(m.hero, m.villain);
          matchups.push_back(m);
        }
  std::unordered_map<uint32_t, int64_t> twice_wins;  // class -> 2 x wins + ties (the table value)
  std::vector<const Matchup*> jobs;
  for (const Matchup& m : matchups) {
    if (twice_wins.count(m.cls)) continue;
    twice_wins[m.cls] = -1;
    if (detail::matchup_class(m.villain, m.hero) >= m.cls) jobs.push_back(&m);
  }
  const int n = static_cast<int>(jobs.size());
  std::vector<detail::HeadsUpCounts> counts(n);
  std::atomic<int> done{0};
  report("matchups", 0.0);
#pragma omp parallel for schedule(dynamic, 16)
  for (int j = 0; j < n; ++j) {
    counts[j] = detail::heads_up_counts(HR, jobs[j]->hero, jobs[j]->villain, nullptr, 0, 0);
    const int finished = ++done;
    if (omp_get_thread_num() == 0 && finished % 256 == 0) report("matchups", static_cast<double>(finished) / n);
  }
  for (int j = 0; j < n; ++j) {
    const int64_t value = 2 * counts[j].wins + counts[j].ties;
    twice_wins[jobs[j]->cls] = value;
    twice_wins[detail::matchup_class(jobs[j]->villain, jobs[j]->hero)] = 2 * counts[j].boards - value;
  }
  PokerLogic table;
  for (const Matchup& m : matchups)
    table.m_equityTable.emplace(std::make_pair(hand_key(m.hero), hand_key(m.villain)),
                                static_cast<int>(twice_wins.at(m.cls)));
  report("writing", 1.0);
  std::error_code ec;
  std::filesystem::create_directories(dir, ec);
  save_preflop_table(table, path);
  report("done", 1.0);
  return true;
}

}  // namespace pokermath

// ---- Omaha games ----------------------------------------------------------------------------------
namespace pokermath {

namespace {

struct OmahaGame {
  int hole = 4;
  bool hi_lo = false;
};

OmahaGame omaha_game(EquityGame game) {
  switch (game) {
    case EquityGame::Omaha5: return {5, false};
    case EquityGame::Omaha6: return {6, false};
    case EquityGame::OmahaHiLo: return {4, true};
    case EquityGame::Omaha5HiLo: return {5, true};
    default: return {4, false};
  }
}

// One Omaha player: a fixed holding, or random (no holding).
struct OmahaPlayer {
  std::string text;
  std::vector<int> cards;  // empty for a random hand
};

// Per-player sums over the deals counted.
struct OmahaTotals {
  std::vector<double> wins, ties, high, low, scoops, squares;
  double deals = 0;
  explicit OmahaTotals(size_t n) : wins(n), ties(n), high(n), low(n), scoops(n), squares(n) {}
};

// Scores one deal from each player's high value (larger is stronger) and low (0: none).
void score_deal(const OmahaGame& game, int players, const int* highs, const int* lows, OmahaTotals& t) {
  const int best_high = *std::max_element(highs, highs + players);
  int best_low = 0;
  if (game.hi_lo)
    for (int p = 0; p < players; ++p)
      if (lows[p] && (!best_low || lows[p] < best_low)) best_low = lows[p];
  int high_winners = 0, low_winners = 0;
  for (int p = 0; p < players; ++p) {
    high_winners += highs[p] == best_high;
    low_winners += best_low && lows[p] == best_low;
  }
  const double high_pot = best_low ? 0.5 : 1.0;
  for (int p = 0; p < players; ++p) {
    double share = 0;
    if (highs[p] == best_high) {
      share += high_pot / high_winners;
      t.high[p] += high_pot / high_winners;
      (high_winners == 1 ? t.wins : t.ties)[p] += 1;
    }
    if (best_low && lows[p] == best_low) {
      share += 0.5 / low_winners;
      t.low[p] += 0.5 / low_winners;
    }
    if (share == 1.0) t.scoops[p] += 1;
    t.squares[p] += share * share;
  }
  t.deals += 1;
}

std::vector<OmahaPlayer> read_omaha_players(const EquityRequest& request, const OmahaGame& game, uint64_t& known) {
  const size_t n = request.players.size();
  if (n < 2 || n > kMaxPlayers)
    throw Error("expected 2 to " + std::to_string(kMaxPlayers) + " players, got " + std::to_string(n));
  std::vector<OmahaPlayer> players(n);
  for (size_t i = 0; i < n; ++i) {
    OmahaPlayer& p = players[i];
    p.text = request.players[i];
    if (is_random(p.text)) continue;
    try {
      p.cards = parse_cards(p.text);
    } catch (const Error& e) {
      throw Error(ordinal(i) + ": " + e.what());
    }
    if (static_cast<int>(p.cards.size()) != game.hole)
      throw Error(ordinal(i) + ": this game's hands hold " + std::to_string(game.hole) + " cards, got '" + p.text +
                  "'");
    for (int c : p.cards) {
      if (known >> c & 1) throw Error(ordinal(i) + ": card '" + card_to_string(c) + "' is already in play");
      known |= uint64_t{1} << c;
    }
  }
  return players;
}

// Exact: every board completion for fixed holdings (random players make an exact answer too
// large and go to Monte Carlo).
void omaha_exact(const OmahaGame& game, const std::vector<OmahaPlayer>& players, const std::vector<int>& board,
                 uint64_t known, OmahaTotals& totals) {
  int cards[kMaxPlayers * 6];
  const int n = static_cast<int>(players.size());
  for (int p = 0; p < n; ++p) std::copy(players[p].cards.begin(), players[p].cards.end(), cards + p * game.hole);
  const detail::Hands hands{cards, game.hole, n};
  int lows[kMaxPlayers] = {};
  detail::for_each_board(hands, board.data(), static_cast<int>(board.size()), known,
                         [&](const int* highs, const int* full) {
                           if (game.hi_lo)
                             for (int p = 0; p < n; ++p)
                               lows[p] = SetLowValueCombinationOmahaCommon(cards + p * game.hole, game.hole, full, 5);
                           score_deal(game, n, highs, lows, totals);
                         });
}

void omaha_monte_carlo(const OmahaGame& game, const std::vector<OmahaPlayer>& players, const std::vector<int>& board,
                       uint64_t known, const EquityRequest& request, OmahaTotals& totals) {
  std::mt19937_64 engine(request.seed);
  const auto start = std::chrono::steady_clock::now();
  const int n = static_cast<int>(players.size());
  int cards[kMaxPlayers][6], full[5], highs[kMaxPlayers], lows[kMaxPlayers] = {};
  std::copy(board.begin(), board.end(), full);
  for (int64_t trial = 0; trial < request.trials; ++trial) {
    if (request.time_ms > 0 && (trial & 1023) == 0 &&
        std::chrono::steady_clock::now() - start > std::chrono::milliseconds(request.time_ms))
      break;
    uint64_t used = known;
    auto deal = [&] {
      int card;
      do {
        card = static_cast<int>(engine() % 52);
      } while (used >> card & 1);
      used |= uint64_t{1} << card;
      return card;
    };
    for (int p = 0; p < n; ++p) {
      if (players[p].cards.empty())
        for (int i = 0; i < game.hole; ++i) cards[p][i] = deal();
      else
        std::copy(players[p].cards.begin(), players[p].cards.end(), cards[p]);
    }
    for (size_t i = board.size(); i < 5; ++i) full[i] = deal();
    for (int p = 0; p < n; ++p) {
      highs[p] = eval_rank7_via_ofsm7(cards[p], game.hole, full);
      if (game.hi_lo) lows[p] = SetLowValueCombinationOmahaCommon(cards[p], game.hole, full, 5);
    }
    score_deal(game, n, highs, lows, totals);
  }
}

}  // namespace

EquityGame equity_game_from_name(std::string_view name) {
  static constexpr std::pair<std::string_view, EquityGame> kGames[] = {
      {"holdem", EquityGame::Holdem}, {"omaha", EquityGame::Omaha},          {"omaha5", EquityGame::Omaha5},
      {"omaha6", EquityGame::Omaha6}, {"omaha-hilo", EquityGame::OmahaHiLo}, {"omaha5-hilo", EquityGame::Omaha5HiLo}};
  for (const auto& [game_name, game] : kGames)
    if (game_name == name) return game;
  throw Error("unknown game '" + std::string(name) + "': holdem, omaha, omaha5, omaha6, omaha-hilo or omaha5-hilo");
}

EquityResult compute_omaha_equity(const EquityRequest& request) {
  const auto start = std::chrono::steady_clock::now();
  const OmahaGame game = omaha_game(request.game);
  const size_t board_size = request.board.size();
  if (board_size == 1 || board_size == 2 || board_size > 5)
    throw Error("a board has 0, 3, 4 or 5 cards, got " + std::to_string(board_size));
  std::vector<int> known_cards = request.board;
  known_cards.insert(known_cards.end(), request.dead.begin(), request.dead.end());
  uint64_t known = cards_to_mask(known_cards);
  const std::vector<OmahaPlayer> players = read_omaha_players(request, game, known);
  if (static_cast<int>(game.hole * players.size() + known_cards.size() + (5 - board_size)) > 52)
    throw Error(std::to_string(players.size()) + " players need more cards than the deck holds");

  // No table to load: the Omaha evaluation reads rank-pair tables built in memory on first use. When
  // "omaha-7.bin" is in memory anyway, the exact walk reads it instead (the same values).
  const bool all_fixed =
      std::all_of(players.begin(), players.end(), [](const OmahaPlayer& p) { return !p.cards.empty(); });
  // The work of an exact answer in player-boards; about 30 million take a second.
  const double work = static_cast<double>(boards_to_come(std::popcount(known), static_cast<int>(board_size))) *
                      static_cast<double>(players.size());
  const bool exact =
      all_fixed && (request.method == EquityMethod::Exact || (request.method == EquityMethod::Auto && work <= 3e7));
  if (request.method == EquityMethod::Exact && !all_fixed)
    throw Error("an exact Omaha answer needs every player's holding; random hands take --monte-carlo");
  OmahaTotals totals(players.size());
  if (exact)
    omaha_exact(game, players, request.board, known, totals);
  else
    omaha_monte_carlo(game, players, request.board, known, request, totals);

  EquityResult result;
  result.exact = exact;
  result.deals = totals.deals;
  const double nan = std::numeric_limits<double>::quiet_NaN();
  for (size_t p = 0; p < players.size(); ++p) {
    PlayerEquity e;
    e.hand = players[p].text;
    e.equity = (totals.high[p] + totals.low[p]) / totals.deals;
    e.win = game.hi_lo ? nan : totals.wins[p] / totals.deals;
    e.tie = game.hi_lo ? nan : totals.ties[p] / totals.deals;
    e.high = game.hi_lo ? totals.high[p] / totals.deals : nan;
    e.low = game.hi_lo ? totals.low[p] / totals.deals : nan;
    e.scoop = game.hi_lo ? totals.scoops[p] / totals.deals : nan;
    if (!exact && totals.deals > 1) {
      const double variance = totals.squares[p] / totals.deals - e.equity * e.equity;
      e.std_error = std::sqrt(std::max(0.0, variance) / (totals.deals - 1));
    }
    result.players.push_back(e);
  }
  result.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  return result;
}

}  // namespace pokermath

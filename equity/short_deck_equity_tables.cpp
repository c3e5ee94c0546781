// Generating the short-deck equity tables (eval/short_deck_equity_files.h) and loading them for the
// classic look-ups. Every matchup is counted exactly: the river by the rank-pattern count of the
// equity engine, the flop and the turn board by board. Matchups equal up to a permutation of suits
// have equal counts, so each class is counted once, on every core.
#include <omp.h>

#include <atomic>
#include <unordered_map>

#include "equity/board_patterns.h"
#include "equity/holdem_equity.h"
#include "equity/matchups.h"
#include "eval/short_deck_equity_files.h"
#include "eval/state_machine_files.h"
#include "pokermath/equity.h"
#include "support/data_dir.h"
#include "support/files.h"

namespace pokermath {

namespace {

using namespace detail;

// Twice the hero's wins plus the ties, per street and order.
struct MatchupCounts {
  uint32_t twice[3][2] = {};
};

// Flop and turn: every board of 3 or 4 of the 32 other short-deck cards, both orders at once.
template <int BoardCards>
void count_small_boards(const std::array<int, 2>& hero, const std::array<int, 2>& villain, const std::vector<int>& rest,
                        MatchupCounts& out) {
  constexpr int street = BoardCards == 3 ? kFlopStreet : kTurnStreet;
  std::array<int, 2 + BoardCards> h{}, v{};
  h[0] = hero[0], h[1] = hero[1], v[0] = villain[0], v[1] = villain[1];
  const int n = static_cast<int>(rest.size());
  int idx[BoardCards];
  for (int i = 0; i < BoardCards; ++i) idx[i] = i;
  for (;;) {
    for (int i = 0; i < BoardCards; ++i) h[2 + i] = v[2 + i] = rest[idx[i]];
    for (int china = 0; china < 2; ++china) {
      const ShortDeckRules rules = china ? ShortDeckRules::China : ShortDeckRules::Standard;
      const int a = hand_value(h, rules), b = hand_value(v, rules);
      out.twice[street][china] += a > b ? 2 : a == b ? 1 : 0;
    }
    int i = BoardCards - 1;  // the next subset in lexicographic order
    while (i >= 0 && idx[i] == n - BoardCards + i) --i;
    if (i < 0) break;
    ++idx[i];
    for (int j = i + 1; j < BoardCards; ++j) idx[j] = idx[j - 1] + 1;
  }
}

MatchupCounts count_matchup(const std::array<int, 2>& hero, const std::array<int, 2>& villain) {
  MatchupCounts out;
  const uint64_t low = ((uint64_t{1} << 52) - 1) & ~holdem_game(EquityGame::ShortDeck).deck;  // no board card
  HoldemDeal deal;
  deal.players = 2;
  deal.holes[0] = hero;
  deal.holes[1] = villain;
  deal.dead = low;
  for (int china = 0; china < 2; ++china) {
    OutcomeCounts counts(2);
    if (china)
      count_boards<Ranking::China>(deal, counts, 1);
    else
      count_boards<Ranking::ShortDeck>(deal, counts, 1);
    out.twice[kRiverStreet][china] = static_cast<uint32_t>(2 * counts.deals[1] + counts.deals[3]);
  }
  std::vector<int> rest;
  const uint64_t used =
      low | uint64_t{1} << hero[0] | uint64_t{1} << hero[1] | uint64_t{1} << villain[0] | uint64_t{1} << villain[1];
  for (int card = 0; card < 52; ++card)
    if (!(used >> card & 1)) rest.push_back(card);
  count_small_boards<3>(hero, villain, rest, out);
  count_small_boards<4>(hero, villain, rest, out);
  return out;
}

}  // namespace

std::vector<std::string> short_deck_table_names() {
  std::vector<std::string> names;
  for (const ShortDeckEquityFile* file : short_deck_equity_files()) names.emplace_back(file->name);
  return names;
}

bool generate_short_deck_tables(const std::filesystem::path& dir, bool force, const TableProgress& progress) {
  const auto files = short_deck_equity_files();
  if (!force) {
    bool valid = true;
    for (const ShortDeckEquityFile* file : files) {
      const std::string problem = table_problem(dir, file->name);
      if (problem.empty()) continue;
      valid = false;
      if (problem != "missing") report_damaged(progress, dir, file->name, problem, "generating it again");
    }
    if (valid) return false;
  }
  uint64_t bytes = 0;
  for (const ShortDeckEquityFile* file : files) bytes += short_deck_file_bytes(*file);
  check_writable(dir, files[0]->name, bytes);
  const std::string label = "short-deck equity tables";
  auto report = [&](std::string_view stage, double fraction) {
    if (progress) progress(label, stage, fraction);
  };

  // The matchups in key order, and one job per class of matchups equal up to suits.
  std::vector<uint32_t> keys;
  std::vector<int> job_of;
  std::vector<std::pair<int, int>> jobs;
  std::unordered_map<uint32_t, int> class_job;
  keys.reserve(kShortDeckMatchups + 1);
  for (int hero = 0; hero < kShortDeckHands; ++hero)
    for (int villain = 0; villain < kShortDeckHands; ++villain) {
      if (short_deck_hands_meet(hero, villain)) continue;
      keys.push_back(static_cast<uint32_t>(1024 * hero + villain));
      const auto h = short_deck_hand_cards(hero), v = short_deck_hand_cards(villain);
      const auto [it, added] = class_job.emplace(matchup_class(h.data(), v.data()), static_cast<int>(jobs.size()));
      if (added) jobs.emplace_back(hero, villain);
      job_of.push_back(it->second);
    }
  keys.push_back(kShortDeckKeySentinel);

  const int n = static_cast<int>(jobs.size());
  std::vector<MatchupCounts> counts(static_cast<size_t>(n));
  std::atomic<int> done{0};
  report("matchups", 0.0);
#pragma omp parallel for schedule(dynamic, 16)
  for (int j = 0; j < n; ++j) {
    counts[j] = count_matchup(short_deck_hand_cards(jobs[j].first), short_deck_hand_cards(jobs[j].second));
    const int finished = ++done;
    if (omp_get_thread_num() == 0 && finished % 256 == 0) report("matchups", static_cast<double>(finished) / n);
  }

  std::vector<uint32_t> tables[3][2];
  std::vector<uint64_t> random[2];
  for (auto& street : tables)
    for (auto& table : street) table.reserve(kShortDeckMatchups);
  for (auto& r : random) r.assign(kShortDeckHands, 0);
  for (size_t m = 0; m < job_of.size(); ++m) {
    const MatchupCounts& c = counts[static_cast<size_t>(job_of[m])];
    for (int street = 0; street < 3; ++street)
      for (int china = 0; china < 2; ++china) tables[street][china].push_back(c.twice[street][china]);
    for (int china = 0; china < 2; ++china) random[china][keys[m] / 1024] += c.twice[kRiverStreet][china];
  }

  report("writing", 1.0);
  auto write = [&](const ShortDeckEquityFile& file, const void* entries) {
    write_table(dir, file.name, short_deck_file_bytes(file),
                [&](const std::filesystem::path& temporary) { return save_short_deck_file(temporary, file, entries); });
  };
  write(kShortDeckIndexFile, keys.data());
  for (int street = 0; street < 3; ++street)
    for (int china = 0; china < 2; ++china) write(kShortDeckMatchupFiles[street][china], tables[street][china].data());
  for (int china = 0; china < 2; ++china) write(kShortDeckRandomFiles[china], random[china].data());
  report("done", 1.0);
  return true;
}

void load_short_deck_tables(const std::filesystem::path& dir, const TableProgress& progress) {
  generate_short_deck_tables(dir, false, progress);
  for (const ShortDeckEquityFile* file : short_deck_equity_files()) {
    const std::filesystem::path path = dir / file->name;
    if (load_short_deck_slot(path, *file, false)) continue;
    const std::string message = "cannot load the table file '" + path.string() + "'";
    if (const int error = open_error(path)) throw FileError(message, path, error);
    throw Error(message);
  }
}

}  // namespace pokermath

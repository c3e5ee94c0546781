// The pokermath:: pre-flop table: its generator, and the answers it gives heads-up pre-flop
// questions too large to count on the spot.
#include <atomic>
#include <map>
#include <memory>
#include <mutex>
#include <unordered_map>

#include "equity/board_patterns.h"
#include "equity/holdem_players.h"
#include "equity/matchups.h"
#include "equity/preflop_table.h"
#include "equity/table_files.h"
#include "support/data_dir.h"

namespace pokermath {

namespace {

constexpr int64_t kRiverBoards = 1712304;
constexpr size_t kMatchups = 1624350;
constexpr const char* kFileName = "OrvalisPC.dat";

int hand_key(const std::array<int, 2>& hand) {
  return std::min(hand[0], hand[1]) * 64 + std::max(hand[0], hand[1]);
}

// Boards won and tied by the first of two hands, counted by rank patterns.
std::pair<int64_t, int64_t> wins_and_ties(const std::array<int, 2>& hero, const std::array<int, 2>& villain) {
  detail::HoldemDeal deal;
  deal.players = 2;
  deal.holes[0] = hero;
  deal.holes[1] = villain;
  detail::OutcomeCounts counts(2);
  detail::count_boards<detail::Ranking::Holdem>(deal, counts, 1);
  return {counts.deals[1], counts.deals[3]};
}

// The position of a hand (two distinct card codes) among the 1,326: hands ordered by their higher
// card, then their lower one.
int hand_index(int low, int high) { return high * (high - 1) / 2 + low; }
int hand_index(const std::array<int, 2>& hand) {
  return hand_index(std::min(hand[0], hand[1]), std::max(hand[0], hand[1]));
}

constexpr int kHands = 1326;

// A loaded pre-flop table: twice the hero's wins by hero hand x 1,326 + villain hand, 0 where the
// file has no record. One read a matchup, 7 MB.
struct PreflopIndex {
  std::vector<uint32_t> values = std::vector<uint32_t>(size_t{kHands} * kHands, 0);
};

// The pre-flop table of `dir`, read on first use; nullptr when it cannot be used (told once).
std::shared_ptr<const PreflopIndex> preflop_index(const std::filesystem::path& dir, const TableProgress& progress) {
  static std::mutex mutex;
  static std::map<std::filesystem::path, std::shared_ptr<const PreflopIndex>> loaded;  // nullptr: damaged
  std::lock_guard lock(mutex);
  if (const auto it = loaded.find(dir); it != loaded.end()) return it->second;
  const std::filesystem::path path = dir / kFileName;
  std::error_code ec;
  if (!std::filesystem::is_regular_file(path, ec)) return nullptr;  // looked for again next time

  std::vector<char> bytes;
  std::string problem;
  auto index = std::make_shared<PreflopIndex>();
  if (!read_file(widen(path.string()), bytes)) {
    problem = "it cannot be read";
  } else if (!detail::manifest_entry(dir, kFileName)) {
    problem = "not listed in the manifest";
  } else {
    problem = detail::preflop_file_problem(bytes, path, [&](int hero, int villain, int value) {
      uint32_t& slot = index->values[static_cast<size_t>(hand_index(hero / 64, hero % 64)) * kHands +
                                     static_cast<size_t>(hand_index(villain / 64, villain % 64))];
      if (slot) return std::string("the key pair repeats an earlier record");
      slot = static_cast<uint32_t>(value);
      return std::string();
    });
  }
  if (!problem.empty()) {
    detail::report_damaged(progress, dir, kFileName, problem,
                           "answering without it; 'pokermath tables --preflop --force' writes it again");
    index = nullptr;
  }
  return loaded[dir] = index;
}

}  // namespace

bool generate_preflop_table(const std::filesystem::path& dir, bool force, const TableProgress& progress) {
  const std::filesystem::path path = dir / kFileName;
  if (!force) {
    const std::string problem = detail::table_problem(dir, kFileName);
    std::error_code ec;
    if (problem.empty() && std::filesystem::file_size(path, ec) == kMatchups * detail::kEquityRecordBytes)
      return false;
    if (problem != "missing")
      detail::report_damaged(progress, dir, kFileName, problem.empty() ? "it lacks matchups" : problem,
                             "generating it again");
  }
  detail::check_writable(dir, kFileName, kMatchups * detail::kEquityRecordBytes);
  auto report = [&](std::string_view stage, double fraction) {
    if (progress) progress(kFileName, stage, fraction);
  };

  // Every ordered matchup, its class, and one representative per class. A class and its mirror
  // (villain and hero exchanged) need one count: the mirror's wins are the boards the first hand
  // did not win, ties counted half on both sides.
  struct Matchup {
    std::array<int, 2> hero, villain;
    uint32_t cls;
  };
  std::vector<Matchup> matchups;
  matchups.reserve(kMatchups);
  for (int a = 0; a < 52; ++a)
    for (int b = a + 1; b < 52; ++b)
      for (int c = 0; c < 52; ++c)
        for (int d = c + 1; d < 52; ++d) {
          if (c == a || c == b || d == a || d == b) continue;
          Matchup m{{a, b}, {c, d}, 0};
          m.cls = detail::matchup_class(m.hero.data(), m.villain.data());
          matchups.push_back(m);
        }
  std::unordered_map<uint32_t, int64_t> twice_wins;  // class -> 2 x wins + ties (the table value)
  std::vector<const Matchup*> jobs;
  for (const Matchup& m : matchups) {
    if (twice_wins.count(m.cls)) continue;
    twice_wins[m.cls] = -1;
    if (detail::matchup_class(m.villain.data(), m.hero.data()) >= m.cls) jobs.push_back(&m);
  }
  const int n = static_cast<int>(jobs.size());
  std::vector<int64_t> values(static_cast<size_t>(n));
  std::atomic<int> done{0};
  report("matchups", 0.0);
#pragma omp parallel for schedule(dynamic, 16)
  for (int j = 0; j < n; ++j) {
    const auto [wins, ties] = wins_and_ties(jobs[j]->hero, jobs[j]->villain);
    values[j] = 2 * wins + ties;
    const int finished = ++done;
    if (omp_get_thread_num() == 0 && finished % 256 == 0) report("matchups", static_cast<double>(finished) / n);
  }
  for (int j = 0; j < n; ++j) {
    twice_wins[jobs[j]->cls] = values[j];
    twice_wins[detail::matchup_class(jobs[j]->villain.data(), jobs[j]->hero.data())] = 2 * kRiverBoards - values[j];
  }
  PokerLogic table;
  for (const Matchup& m : matchups)
    table.m_equityTable.emplace(std::make_pair(hand_key(m.hero), hand_key(m.villain)),
                                static_cast<int>(twice_wins.at(m.cls)));
  report("writing", 1.0);
  save_preflop_table(table, path);
  report("done", 1.0);
  return true;
}

namespace detail {

bool preflop_table_shares(const std::filesystem::path& dir, const std::vector<HoldemPlayer>& players,
                          const TableProgress& notice, std::vector<PlayerShares>& shares, double& deals) {
  const std::shared_ptr<const PreflopIndex> index = preflop_index(dir, notice);
  if (!index) return false;
  double hero = 0, weights = 0;  // each matchup weighs the product of its hands' weights
  deals = 0;
  for (const Combo& h : players[0].combos) {
    const uint32_t* row = index->values.data() + static_cast<size_t>(hand_index(h.cards)) * kHands;
    for (const Combo& v : players[1].combos) {
      if (h.mask & v.mask) continue;
      const uint32_t value = row[hand_index(v.cards)];
      if (value == 0) return false;
      const double weight = h.weight * v.weight;
      hero += value * 0.5 * weight;
      weights += static_cast<double>(kRiverBoards) * weight;
      deals += static_cast<double>(kRiverBoards);
    }
  }
  const double nan = std::numeric_limits<double>::quiet_NaN();
  shares.assign(2, PlayerShares{nan, nan, 0, 0});
  shares[0].equity = hero / weights;
  shares[1].equity = 1 - shares[0].equity;
  return true;
}

}  // namespace detail

}  // namespace pokermath

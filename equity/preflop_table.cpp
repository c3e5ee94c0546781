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

}  // namespace

bool generate_preflop_table(const std::filesystem::path& dir, bool force, const TableProgress& progress) {
  const std::filesystem::path path = dir / kFileName;
  if (!force && std::filesystem::exists(path)) {
    PokerLogic probe;
    try {
      load_preflop_table(probe, path);
      if (probe.m_equityTable.size() == kMatchups) return false;
    } catch (const Error&) {
      // damaged: generate it again
    }
  }
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
  std::error_code ec;
  std::filesystem::create_directories(dir, ec);
  save_preflop_table(table, path);
  report("done", 1.0);
  return true;
}

namespace detail {

bool preflop_table_shares(const std::filesystem::path& dir, const std::vector<HoldemPlayer>& players,
                          std::vector<PlayerShares>& shares, double& deals) {
  // One table per directory, loaded on first use and kept.
  static std::mutex mutex;
  static std::map<std::filesystem::path, std::unique_ptr<PokerLogic>> loaded;
  const PokerLogic* logic;
  {
    std::lock_guard lock(mutex);
    auto& slot = loaded[dir];
    if (!slot) {
      const std::filesystem::path path = dir / kFileName;
      if (!std::filesystem::exists(path)) return false;
      auto table = std::make_unique<PokerLogic>();
      load_preflop_table(*table, path);
      slot = std::move(table);
    }
    logic = slot.get();
  }
  double hero = 0;
  deals = 0;
  for (const Combo& h : players[0].combos)
    for (const Combo& v : players[1].combos) {
      if (h.mask & v.mask) continue;
      const auto it = logic->m_equityTable.find({hand_key(h.cards), hand_key(v.cards)});
      if (it == logic->m_equityTable.end()) return false;
      hero += it->second * 0.5;
      deals += static_cast<double>(kRiverBoards);
    }
  const double nan = std::numeric_limits<double>::quiet_NaN();
  shares.assign(2, PlayerShares{nan, nan, 0, 0});
  shares[0].equity = hero / deals;
  shares[1].equity = 1 - shares[0].equity;
  return true;
}

}  // namespace detail

}  // namespace pokermath

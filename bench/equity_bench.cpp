// Equity engines: exact hand against hand and against ranges, Monte Carlo, and the Common engine
// with four hole cards. Tables come from the data directory (generated there on first use).
#include <benchmark/benchmark.h>

#include <memory>

#include "bench_tables.h"
#include "pokermath/pokermath.h"

namespace {

PokerLogic& logic() { return bench_tables::logic(); }

// A second object with the pre-flop table loaded (built by `pokermath tables --preflop`).
PokerLogic* logic_with_preflop_table() {
  static PokerLogic* with_table = [] {
    const auto path = pokermath::default_data_directory() / "OrvalisPC.dat";
    if (!std::filesystem::exists(path)) return static_cast<PokerLogic*>(nullptr);
    auto* l = new PokerLogic(logic());
    pokermath::load_preflop_table(*l, path);
    return l;
  }();
  return with_table;
}

const std::vector<int> kHero = pokermath::parse_cards("As Ks");

void BM_preflop_hand_vs_hand_exact(benchmark::State& state) {
  const std::vector<int> villain = pokermath::parse_cards("Qh Qd");
  double wins = 0, boards = 0;
  for (auto _ : state) {
    logic().getProbabilityOfWinWithNoBoard(kHero.data(), villain.data(), wins, boards);
    benchmark::DoNotOptimize(wins);
  }
  state.counters["equity"] = wins / boards;
}
BENCHMARK(BM_preflop_hand_vs_hand_exact)->Unit(benchmark::kMillisecond);

void BM_preflop_hand_vs_random_exact(benchmark::State& state) {
  Spec all;
  all.MakeRandom();
  double equity = 0;
  for (auto _ : state)
    benchmark::DoNotOptimize(equity = logic().getProbabilityOfWinBySpectrWithNoBoard(kHero.data(), all));
  state.counters["equity"] = equity;
}
BENCHMARK(BM_preflop_hand_vs_random_exact)->Unit(benchmark::kMillisecond)->UseRealTime();

void BM_preflop_hand_vs_random_with_table(benchmark::State& state) {
  PokerLogic* l = logic_with_preflop_table();
  if (!l) {
    state.SkipWithError("no OrvalisPC.dat in the data directory: run pokermath tables --preflop");
    return;
  }
  Spec all;
  all.MakeRandom();
  double equity = 0;
  for (auto _ : state) benchmark::DoNotOptimize(equity = l->getProbabilityOfWinBySpectrWithNoBoard(kHero.data(), all));
  state.counters["equity"] = equity;
}
BENCHMARK(BM_preflop_hand_vs_random_with_table)->Unit(benchmark::kMillisecond)->UseRealTime();

void BM_preflop_hand_vs_range_exact(benchmark::State& state) {
  const Spec range = pokermath::parse_range("QQ+,AK");
  double equity = 0;
  for (auto _ : state)
    benchmark::DoNotOptimize(equity = logic().getProbabilityOfWinBySpectrWithNoBoard(kHero.data(), range));
  state.counters["equity"] = equity;
}
BENCHMARK(BM_preflop_hand_vs_range_exact)->Unit(benchmark::kMillisecond)->UseRealTime();

void BM_flop_hand_vs_range_exact(benchmark::State& state) {
  const Spec range = pokermath::parse_range("QQ+,AK");
  const std::vector<int> flop = pokermath::parse_cards("Qh 7h 2c");
  double equity = 0;
  for (auto _ : state)
    benchmark::DoNotOptimize(equity = logic().getProbabilityOfWinBySpectrWithFlop(kHero.data(), flop.data(), range));
  state.counters["equity"] = equity;
}
BENCHMARK(BM_flop_hand_vs_range_exact)->Unit(benchmark::kMicrosecond);

void BM_three_way_monte_carlo_50000(benchmark::State& state) {
  double share = 0;
  for (auto _ : state) benchmark::DoNotOptimize(share = logic().getProbabilityOfWin(kHero.data(), nullptr, 0, 3));
  state.counters["share"] = share;
}
BENCHMARK(BM_three_way_monte_carlo_50000)->Unit(benchmark::kMillisecond);

void BM_common_omaha4_hand_vs_hand_preflop(benchmark::State& state) {
  const bool machine = state.range(0) != 0;
  if (machine) pokermath::load_table(pokermath::TableFile::Omaha7, pokermath::default_data_directory());
  int* saved = ofsm_omaha7::table;
  if (!machine) ofsm_omaha7::table = nullptr;
  const std::vector<int> hero = pokermath::parse_cards("As Ks Qd Jd"), villain = pokermath::parse_cards("Ah Kh 7c 7s");
  int boards = 0, ms = 0;
  double equity = 0;
  for (auto _ : state)
    benchmark::DoNotOptimize(
        equity = logic().RiverEquityHandVsHandOnPreFlopCommon(hero.data(), 4, villain.data(), boards, ms));
  ofsm_omaha7::table = saved;
  state.counters["equity"] = equity;
  state.counters["boards"] = boards;
}
BENCHMARK(BM_common_omaha4_hand_vs_hand_preflop)->Arg(1)->Arg(0)->Unit(benchmark::kMillisecond);

}  // namespace

// Range analysis: equity by hand class and how a range hits a board.
#include <benchmark/benchmark.h>

#include "pokermath/analysis.h"

namespace {

// How a 30% range (about 400 combinations) hits a two-tone, connected flop; items are the
// combinations of the range.
void BM_board_hits_30pct_flop(benchmark::State& state) {
  const pokermath::WeightedRange range =
      pokermath::parse_weighted_range("22+,A2s+,K5s+,Q8s+,J8s+,T8s+,97s+,87s,76s,A7o+,K9o+,QTo+,JTo");
  const std::vector<int> board = pokermath::parse_cards("Jh9s4h");
  for (auto _ : state) benchmark::DoNotOptimize(pokermath::board_hits(range, board));
  state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(range.size()));
}
BENCHMARK(BM_board_hits_30pct_flop);

// Equity by class of a 190-combination range against a 34-combination one, pre-flop, exact: every
// board of every matchup, on every core. Items are the matchups.
void BM_equity_by_class_preflop(benchmark::State& state) {
  pokermath::EquityRequest request;
  request.players = {"22+,A2s+,K9s+,ATo+", "QQ+,AK"};
  request.method = pokermath::EquityMethod::Exact;
  request.threads = static_cast<int>(state.range(0));
  int64_t combos = 0;
  for (auto _ : state) {
    const pokermath::RangeBreakdown breakdown = pokermath::equity_by_class(request);
    combos = static_cast<int64_t>(breakdown.combos.size());
    benchmark::DoNotOptimize(breakdown.equity);
  }
  state.SetItemsProcessed(state.iterations() * combos);
}
BENCHMARK(BM_equity_by_class_preflop)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace

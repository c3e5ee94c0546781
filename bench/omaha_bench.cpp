// Omaha best-hand searches on random deals (4, 5 and 6 hole cards, five-card boards), the nut
// and outs questions on a flop, and Omaha ranges: parsing, range against range, a holding against
// a range on the flop. Deals are generated before timing.
#include <benchmark/benchmark.h>

#include <unistd.h>

#include <filesystem>
#include <random>
#include <string>
#include <vector>

#include "pokermath/pokermath.h"

namespace {

constexpr int kDeals = 1 << 16;

// kDeals deals of `holes` hole cards followed by five board cards.
const std::vector<int>& deals(int holes) {
  static std::vector<int> cache[7];
  std::vector<int>& d = cache[holes];
  if (d.empty()) {
    std::mt19937 engine(11);
    for (int i = 0; i < kDeals; ++i) {
      std::vector<int> cards;
      Int64ToVec(GetRandomHand(holes + 5, engine), cards);
      std::shuffle(cards.begin(), cards.end(), engine);
      d.insert(d.end(), cards.begin(), cards.end());
    }
  }
  return d;
}

template <typename Evaluate>
void run_deals(benchmark::State& state, Evaluate evaluate) {
  const int holes = static_cast<int>(state.range(0));
  const std::vector<int>& d = deals(holes);
  const int stride = holes + 5;
  for (auto _ : state) {
    int64_t sum = 0;
    for (size_t i = 0; i < d.size(); i += stride) sum += evaluate(&d[i], holes, &d[i + holes]);
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(state.iterations() * kDeals);
}

void BM_getCombinationOmahaCommon(benchmark::State& state) {
  static const PokerLogic logic;
  int out[5];
  run_deals(state, [&](const int* hole, int n, const int* board) {
    return logic.getCombinationOmahaCommon(hole, n, board, 5, out);
  });
}
BENCHMARK(BM_getCombinationOmahaCommon)->DenseRange(4, 6);

void BM_getCombinationOmahaFsm5Common(benchmark::State& state) {
  int out[5];
  run_deals(state, [&](const int* hole, int n, const int* board) {
    return getCombinationOmahaFsm5Common(hole, n, board, 5, out);
  });
}
BENCHMARK(BM_getCombinationOmahaFsm5Common)->DenseRange(4, 6);

void BM_get_rank7(benchmark::State& state) {
  run_deals(state, [](const int* hole, int, const int* board) { return get_rank7(hole, board); });
}
BENCHMARK(BM_get_rank7)->Arg(4);

// Reads its rank-pair tables (built by the first call, before timing starts), not "omaha-7.bin".
void BM_eval_rank7_via_ofsm7(benchmark::State& state) {
  const int warm[6] = {0, 1, 2, 3, 4, 5}, board[5] = {10, 11, 12, 13, 14};
  benchmark::DoNotOptimize(eval_rank7_via_ofsm7(warm, 4, board));
  run_deals(state, [](const int* hole, int n, const int* board) { return eval_rank7_via_ofsm7(hole, n, board); });
}
BENCHMARK(BM_eval_rank7_via_ofsm7)->DenseRange(4, 6);

void BM_IsMyHandNutsOmaha_flop(benchmark::State& state) {
  static const PokerLogic logic;
  const std::vector<int> hole = pokermath::parse_cards("Ah Kh 9c 8c"), flop = pokermath::parse_cards("Qh 7h 2d");
  for (auto _ : state) benchmark::DoNotOptimize(logic.IsMyHandNutsOmaha(hole.data(), flop.data(), 3));
}
BENCHMARK(BM_IsMyHandNutsOmaha_flop)->Unit(benchmark::kMillisecond);

void BM_getOutsOmahaFsm5Common_flop(benchmark::State& state) {
  const std::vector<int> hole = pokermath::parse_cards("Ah Kh 9c 8c"), flop = pokermath::parse_cards("Qh 7h 2d");
  int outs[11], nut_outs[11];
  for (auto _ : state) benchmark::DoNotOptimize(getOutsOmahaFsm5Common(hole.data(), 4, flop.data(), 3, outs, nut_outs));
}
BENCHMARK(BM_getOutsOmahaFsm5Common_flop)->Unit(benchmark::kMillisecond);

const std::vector<int> kHole = pokermath::parse_cards("Ah Kh 9c 8c");

void BM_RiverEquityHandVsRandomOnTurnFsm5(benchmark::State& state) {
  const std::vector<int> turn = pokermath::parse_cards("Qh 7h 2d 5s");
  int count = 0;
  for (auto _ : state) benchmark::DoNotOptimize(RiverEquityHandVsRandomOnTurnFsm5(kHole.data(), turn.data(), count));
  state.counters["comparisons"] = count;
}
BENCHMARK(BM_RiverEquityHandVsRandomOnTurnFsm5)->Unit(benchmark::kMillisecond)->UseRealTime();

void BM_RiverEquityHandVsRandomOnRiver(benchmark::State& state) {
  static const PokerLogic logic;
  const std::vector<int> river = pokermath::parse_cards("Qh 7h 2d 5s 3c");
  int count = 0;
  for (auto _ : state)
    benchmark::DoNotOptimize(logic.RiverEquityHandVsRandomOnRiver(kHole.data(), river.data(), count));
  state.counters["comparisons"] = count;
}
BENCHMARK(BM_RiverEquityHandVsRandomOnRiver)->Unit(benchmark::kMillisecond);

void BM_RiverEquityHandsOnPreFlopCommonHL_heads_up(benchmark::State& state) {
  static const PokerLogic logic;
  pokermath::load_table(pokermath::TableFile::Omaha7, pokermath::default_data_directory());
  const std::vector<int> hands = pokermath::parse_cards("As 2s 3h Kd Ac 2c 8d 9h");
  int count = 0, ms = 0;
  for (auto _ : state)
    benchmark::DoNotOptimize(logic.RiverEquityHandsOnPreFlopCommonHL(hands.data(), 4, 2, 0, count, ms));
  state.counters["boards"] = count;
}
BENCHMARK(BM_RiverEquityHandsOnPreFlopCommonHL_heads_up)->Unit(benchmark::kMillisecond);

// ---- Omaha ranges (the 4-card ranking is read from the data directory, computed there on first use)

// Parsing a range with patterns, hand types and a share of the ranking into its holdings.
void BM_parse_omaha_range(benchmark::State& state) {
  const auto ranking = pokermath::omaha_ranking(pokermath::EquityGame::Omaha);
  for (auto _ : state)
    benchmark::DoNotOptimize(pokermath::parse_omaha_range("AA**:ds,KK**:ds,15%", 4, ranking.get()).size());
}
BENCHMARK(BM_parse_omaha_range)->Unit(benchmark::kMillisecond);

// Range against range pre-flop to a standard error of 0.001, on Arg threads.
void BM_omaha_range_vs_range_preflop(benchmark::State& state) {
  pokermath::EquityRequest r;
  r.game = pokermath::EquityGame::Omaha;
  r.players = {"AA**", "15%"};
  r.target_std_error = 0.001;
  r.threads = static_cast<int>(state.range(0));
  pokermath::compute_equity(r);  // the ranking and the evaluator's tables, before timing
  for (auto _ : state) benchmark::DoNotOptimize(pokermath::compute_equity(r).players[0].equity);
}
BENCHMARK(BM_omaha_range_vs_range_preflop)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond)->UseRealTime();

// A holding against a 30% range on the flop, every turn and river counted, on Arg threads.
void BM_omaha_holding_vs_range_flop_exact(benchmark::State& state) {
  pokermath::EquityRequest r;
  r.game = pokermath::EquityGame::Omaha;
  r.players = {"AsKsQhJh", "30%"};
  r.board = pokermath::parse_cards("Ts6h2c");
  r.method = pokermath::EquityMethod::Exact;
  r.threads = static_cast<int>(state.range(0));
  pokermath::compute_equity(r);
  for (auto _ : state) benchmark::DoNotOptimize(pokermath::compute_equity(r).players[0].equity);
}
BENCHMARK(BM_omaha_holding_vs_range_flop_exact)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace

// The exact pre-flop tables' throughput on one thread: an iteration computes 32 units of 4 board
// classes of the full deck, spread evenly over the table (a board costs several times more with a
// flush suit, and such boards crowd together in the table's order, so a few units in a row would
// not tell the mean). One over boards_per_s times 134,459 classes is a table's core time
// (docs/scale-out.md). Arguments: hole cards, Hi/Lo.
void BM_omaha_preflop_board(benchmark::State& state) {
  const int hole = static_cast<int>(state.range(0));
  const bool hi_lo = state.range(1) != 0;
  const std::string name = std::string("omaha") + (hole == 4 ? "" : std::to_string(hole)) + (hi_lo ? "-hilo" : "");
  const std::filesystem::path dir =
      std::filesystem::temp_directory_path() / ("pokermath_bench_units_" + std::to_string(::getpid()));
  constexpr int kBoards = 4, kUnits = 32;
  pokermath::OmahaTableOptions options;
  options.dir = dir;
  options.unit_boards = kBoards;
  pokermath::OmahaTableRun run(pokermath::equity_game_from_name(name), options);
  const int stride = (run.units() - 1) / kUnits;  // the last unit holds fewer boards
  int offset = 0;
  for (auto _ : state) {
    for (int k = 0; k < kUnits; ++k) run.compute_unit(k * stride + offset, 1, false);
    offset = (offset + 1) % stride;  // other units next time: a finished one is not computed again
  }
  state.counters["boards_per_s"] =
      benchmark::Counter(static_cast<double>(state.iterations() * kBoards * kUnits), benchmark::Counter::kIsRate);
  std::filesystem::remove_all(dir);
}
BENCHMARK(BM_omaha_preflop_board)
    ->Args({4, 0})
    ->Args({4, 1})
    ->Args({5, 0})
    ->Args({5, 1})
    ->Args({6, 0})
    ->Args({6, 1})
    ->Unit(benchmark::kMillisecond)
    ->Iterations(1);

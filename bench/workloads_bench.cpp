// The workloads we compare with other evaluators and equity calculators, through the pokermath::
// API: evaluation of 10 million random hands one at a time and in batches, and exact and Monte Carlo
// equities on one thread and on two. No pre-flop table is read (the data directory is empty).
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <random>
#include <vector>

#include "eval/hand_key.h"
#include "pokermath/pokermath.h"

namespace {

constexpr int kHands = 10'000'000;

// Card codes of kHands random hands of n cards, generated before timing.
const std::vector<int>& random_hands(int n) {
  static std::vector<int> hands[8];
  if (hands[n].empty()) {
    std::mt19937 engine(2026);
    std::vector<int> hand;
    for (int h = 0; h < kHands; ++h) {
      Int64ToVec(GetRandomHand(n, engine), hand);
      hands[n].insert(hands[n].end(), hand.begin(), hand.end());
    }
  }
  return hands[n];
}

void BM_hand_value(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  const std::vector<int>& codes = random_hands(n);
  for (auto _ : state) {
    int64_t sum = 0;
    for (size_t i = 0; i < codes.size(); i += n) sum += pokermath::hand_value(std::span(&codes[i], n));
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(state.iterations() * kHands);
}
BENCHMARK(BM_hand_value)->Arg(5)->Arg(7)->Unit(benchmark::kMillisecond);

// Not an API: the table work of a seven-card hand_value call without any of its checks (count, range,
// repeated cards), out of line as a library call is and with the same prefetch. The gap to
// BM_hand_value/7 is what validation costs; this figure is the least any call a hand can take here.
[[gnu::noinline]] int unchecked_value(const int* cards) {
  __builtin_prefetch(reinterpret_cast<const void*>(reinterpret_cast<uintptr_t>(cards) + 2048));
  pokermath::detail::HandState hand;
  for (int i = 0; i < 7; ++i) hand.add(cards[i]);
  return pokermath::detail::hand_value_of<pokermath::detail::Ranking::Holdem, 7>(hand.key, hand.mask);
}

void BM_hand_value_unchecked(benchmark::State& state) {
  const std::vector<int>& codes = random_hands(7);
  for (auto _ : state) {
    int64_t sum = 0;
    for (size_t i = 0; i < codes.size(); i += 7) sum += unchecked_value(&codes[i]);
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(state.iterations() * kHands);
}
BENCHMARK(BM_hand_value_unchecked)->Unit(benchmark::kMillisecond);

// One hand given as text, parsed and fully evaluated (class, category, best five, words): the C++
// side of the Python package's evaluate() call.
void BM_evaluate_text(benchmark::State& state) {
  for (auto _ : state) {
    const pokermath::HandEvaluation hand = pokermath::evaluate_hand(pokermath::parse_cards("AhAd7c7s2hKd7h"));
    benchmark::DoNotOptimize(hand.hand_class);
  }
}
BENCHMARK(BM_evaluate_text);

void BM_hand_values_codes(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  const std::vector<int>& codes = random_hands(n);
  std::vector<int> values(kHands);
  for (auto _ : state) {
    pokermath::hand_values(codes, n, values);
    benchmark::DoNotOptimize(values.data());
  }
  state.SetItemsProcessed(state.iterations() * kHands);
}
BENCHMARK(BM_hand_values_codes)->Arg(5)->Arg(7)->Unit(benchmark::kMillisecond);

void BM_hand_values_bytes(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  const std::vector<uint8_t> codes(random_hands(n).begin(), random_hands(n).end());
  std::vector<int> values(kHands);
  for (auto _ : state) {
    pokermath::hand_values(codes, n, values);
    benchmark::DoNotOptimize(values.data());
  }
  state.SetItemsProcessed(state.iterations() * kHands);
}
BENCHMARK(BM_hand_values_bytes)->Arg(5)->Arg(7)->Unit(benchmark::kMillisecond);

void BM_hand_values_masks(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  const std::vector<int>& codes = random_hands(n);
  std::vector<uint64_t> masks(kHands);
  for (size_t h = 0; h < masks.size(); ++h)
    for (int i = 0; i < n; ++i) masks[h] |= uint64_t{1} << codes[h * n + i];
  std::vector<int> values(kHands);
  for (auto _ : state) {
    pokermath::hand_values(masks, values);
    benchmark::DoNotOptimize(values.data());
  }
  state.SetItemsProcessed(state.iterations() * kHands);
}
BENCHMARK(BM_hand_values_masks)->Arg(5)->Arg(7)->Unit(benchmark::kMillisecond);

// ---- equity ---------------------------------------------------------------------------------------

pokermath::EquityRequest request(std::vector<std::string> players, const char* board, int threads) {
  static const std::filesystem::path empty = [] {
    const auto dir = std::filesystem::temp_directory_path() / "pokermath_bench_no_tables";
    std::filesystem::create_directories(dir);
    return dir;
  }();
  pokermath::EquityRequest r;
  r.players = std::move(players);
  r.board = pokermath::parse_cards(board);
  r.method = pokermath::EquityMethod::Exact;
  r.threads = threads;
  r.data_dir = empty;
  return r;
}

// Exact equity; the benchmark's argument is the thread count (0: every core).
void exact(benchmark::State& state, std::vector<std::string> players, const char* board,
           pokermath::EquityGame game = pokermath::EquityGame::Holdem) {
  pokermath::EquityRequest r = request(std::move(players), board, static_cast<int>(state.range(0)));
  r.game = game;
  double equity = 0;
  for (auto _ : state) {
    equity = pokermath::compute_equity(r).players[0].equity;
    benchmark::DoNotOptimize(equity);
  }
  state.counters["equity"] = equity;
}
BENCHMARK_CAPTURE(exact, AsKs_QhQd, std::vector<std::string>{"AsKs", "QhQd"}, "")
    ->Arg(1)
    ->Arg(0)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();
BENCHMARK_CAPTURE(exact, AsKs_random, std::vector<std::string>{"AsKs", "random"}, "")
    ->Arg(1)
    ->Arg(2)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();
BENCHMARK_CAPTURE(exact, AsKs_range, std::vector<std::string>{"AsKs", "QQ+,AKs,AKo"}, "")
    ->Arg(1)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();
BENCHMARK_CAPTURE(exact, AA_KK_range, std::vector<std::string>{"AA,KK", "QQ+,AK"}, "")
    ->Arg(1)
    ->Arg(2)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();
BENCHMARK_CAPTURE(exact, three_way, std::vector<std::string>{"AsKs", "QhQd", "JcTc"}, "")
    ->Arg(1)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();
BENCHMARK_CAPTURE(exact, flop, std::vector<std::string>{"AhKh", "QsQd"}, "Qh7h2c")
    ->Arg(1)
    ->Unit(benchmark::kMicrosecond)
    ->UseRealTime();

// The short deck in the standard order (China costs the same).
BENCHMARK_CAPTURE(exact, short_deck_AsKs_QhQd, std::vector<std::string>{"AsKs", "QhQd"}, "",
                  pokermath::EquityGame::ShortDeck)
    ->Arg(1)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();
BENCHMARK_CAPTURE(exact, short_deck_AsKs_random, std::vector<std::string>{"AsKs", "random"}, "",
                  pokermath::EquityGame::ShortDeck)
    ->Arg(1)
    ->Arg(2)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();
BENCHMARK_CAPTURE(exact, short_deck_three_way, std::vector<std::string>{"AsKs", "QhQd", "9c8c"}, "",
                  pokermath::EquityGame::ShortDeck)
    ->Arg(1)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();

// The flop question with Auto, in a data directory without the pre-flop table (argument 0) and in
// one that holds it (argument 1: $POKERMATH_DATA_DIR when it has "OrvalisPC.dat", else the table is
// generated into a scratch directory first, about 5 s). Only large pre-flop questions read the
// table, so the two take the same time.
void BM_flop_preflop_table(benchmark::State& state) {
  pokermath::EquityRequest r = request({"AhKh", "QsQd"}, "Qh7h2c", 1);
  r.method = pokermath::EquityMethod::Auto;
  if (state.range(0) == 1) {
    static const std::filesystem::path with_table = [] {
      const char* env = std::getenv("POKERMATH_DATA_DIR");
      if (env && std::filesystem::exists(std::filesystem::path(env) / "OrvalisPC.dat"))
        return std::filesystem::path(env);
      const auto dir = std::filesystem::temp_directory_path() / "pokermath_bench_preflop_table";
      pokermath::generate_preflop_table(dir);
      return dir;
    }();
    r.data_dir = with_table;
  }
  double equity = 0;
  for (auto _ : state) {
    equity = pokermath::compute_equity(r).players[0].equity;
    benchmark::DoNotOptimize(equity);
  }
  state.counters["equity"] = equity;
}
BENCHMARK(BM_flop_preflop_table)->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond)->UseRealTime();

// Monte Carlo, four players, one million trials; items are trials.
void BM_monte_carlo_4way(benchmark::State& state) {
  pokermath::EquityRequest r = request({"AsKs", "QhQd", "JcTc", "9s9h"}, "", static_cast<int>(state.range(0)));
  r.method = pokermath::EquityMethod::MonteCarlo;
  r.trials = 1'000'000;
  double equity = 0;
  for (auto _ : state) {
    equity = pokermath::compute_equity(r).players[0].equity;
    benchmark::DoNotOptimize(equity);
  }
  state.SetItemsProcessed(state.iterations() * r.trials);
  state.counters["equity"] = equity;
}
BENCHMARK(BM_monte_carlo_4way)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace

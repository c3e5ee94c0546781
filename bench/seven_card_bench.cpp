// Seven-card evaluators: random order through each, and the full nested enumeration of all
// 133,784,560 hands through the Texas state machine, carrying the partial state from loop to loop.
// The tables come from the data directory (generated there on first use).
#include <benchmark/benchmark.h>

#include <iostream>
#include <memory>
#include <random>
#include <vector>

#include "bench_tables.h"
#include "pokermath/pokermath.h"

namespace {

constexpr int kHands = 1 << 20;  // random hands, generated before timing

const std::vector<int>& random_hands() {
  static const std::vector<int> hands = [] {
    std::vector<int> out;
    std::mt19937 engine(7);
    for (int h = 0; h < kHands; ++h) {
      std::vector<int> codes;
      Int64ToVec(GetRandomHand(7, engine), codes);
      std::shuffle(codes.begin(), codes.end(), engine);
      out.insert(out.end(), codes.begin(), codes.end());
    }
    return out;
  }();
  return hands;
}

const PokerLogic& logic() { return bench_tables::logic(); }

void load_texas() { pokermath::load_table(pokermath::TableFile::Texas7, pokermath::default_data_directory()); }

void BM_LookupSingleHands_random(benchmark::State& state) {
  const PokerLogic& l = logic();
  const std::vector<int>& hands = random_hands();
  for (auto _ : state) {
    int64_t sum = 0;
    for (size_t i = 0; i < hands.size(); i += 7) sum += l.LookupSingleHands(&hands[i]);
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(state.iterations() * kHands);
}
BENCHMARK(BM_LookupSingleHands_random)->Unit(benchmark::kMillisecond);

void BM_LookupHand_random(benchmark::State& state) {
  const PokerLogic& l = logic();
  // LookupHand takes one-based codes in ascending order: converted and sorted before timing.
  std::vector<int> hands = random_hands();
  for (size_t i = 0; i < hands.size(); i += 7) {
    for (size_t k = i; k < i + 7; ++k) hands[k] = pokermath::one_based_code(hands[k]);
    std::sort(hands.begin() + static_cast<ptrdiff_t>(i), hands.begin() + static_cast<ptrdiff_t>(i) + 7);
  }
  for (auto _ : state) {
    int64_t sum = 0;
    for (size_t i = 0; i < hands.size(); i += 7) sum += l.LookupHand(&hands[i]);
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(state.iterations() * kHands);
}
BENCHMARK(BM_LookupHand_random)->Unit(benchmark::kMillisecond);

void BM_eval_rank7_texas_random(benchmark::State& state) {
  load_texas();
  const std::vector<int>& hands = random_hands();
  for (auto _ : state) {
    int64_t sum = 0;
    for (size_t i = 0; i < hands.size(); i += 7) sum += eval_rank7_texas(&hands[i]);
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(state.iterations() * kHands);
}
BENCHMARK(BM_eval_rank7_texas_random)->Unit(benchmark::kMillisecond);

// All seven-card hands in rank-major code order; each loop reads one entry from the state its
// enclosing loop reached, and the innermost loop reads one block of values in sequence.
void BM_texas7_enumerate_all_hands(benchmark::State& state) {
  load_texas();
  const int* T = texasfsm7::table;
  for (auto _ : state) {
    int64_t sum = 0;
    for (int a = 0; a < 46; ++a) {
      const int s1 = T[52 + a];
      for (int b = a + 1; b < 47; ++b) {
        const int s2 = T[s1 + b];
        for (int c = b + 1; c < 48; ++c) {
          const int s3 = T[s2 + c];
          for (int d = c + 1; d < 49; ++d) {
            const int s4 = T[s3 + d];
            for (int e = d + 1; e < 50; ++e) {
              const int s5 = T[s4 + e];
              for (int f = e + 1; f < 51; ++f) {
                const int* values = T + T[s5 + f];
                int block_sum = 0;
                for (int g = f + 1; g < 52; ++g) block_sum += values[g];
                sum += block_sum;
              }
            }
          }
        }
      }
    }
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(state.iterations() * 133784560);
}
BENCHMARK(BM_texas7_enumerate_all_hands)->Unit(benchmark::kMillisecond);

}  // namespace

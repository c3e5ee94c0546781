// Five-card evaluator throughput: random pre-generated hands, and every hand in sequence.
#include <benchmark/benchmark.h>

#include <random>
#include <vector>

#include "pokermath/pokermath.h"

namespace {

constexpr int kHands = 1 << 16;  // 64K hands of 7 words = 1.8 MB: larger than L2 on most machines

// Card words of random hands with `cards` distinct cards each, generated before timing.
const std::vector<int>& random_words(int cards) {
  static std::vector<int> words[8];
  std::vector<int>& w = words[cards];
  if (w.empty()) {
    std::mt19937 engine(2026);
    for (int h = 0; h < kHands; ++h) {
      const uint64_t mask = GetRandomHand(cards, engine);
      std::vector<int> codes;
      Int64ToVec(mask, codes);
      std::shuffle(codes.begin(), codes.end(), engine);
      for (int c : codes) w.push_back(static_cast<int>(pokermath::prime_word(c)));
    }
  }
  return w;
}

void BM_eval_5hand_fast_random(benchmark::State& state) {
  const std::vector<int>& w = random_words(5);
  for (auto _ : state) {
    int sum = 0;
    for (size_t i = 0; i < w.size(); i += 5) sum += eval_5hand_fast(w[i], w[i + 1], w[i + 2], w[i + 3], w[i + 4]);
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(state.iterations() * kHands);
}
BENCHMARK(BM_eval_5hand_fast_random);

void BM_eval_5cards_random(benchmark::State& state) {
  const std::vector<int>& w = random_words(5);
  for (auto _ : state) {
    int sum = 0;
    for (size_t i = 0; i < w.size(); i += 5) sum += eval_5cards(w[i], w[i + 1], w[i + 2], w[i + 3], w[i + 4]);
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(state.iterations() * kHands);
}
BENCHMARK(BM_eval_5cards_random);

void BM_eval_7hand_random(benchmark::State& state) {
  const std::vector<int>& w = random_words(7);
  for (auto _ : state) {
    int sum = 0;
    for (size_t i = 0; i < w.size(); i += 7) sum += eval_7hand(&w[i]);
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(state.iterations() * kHands);
}
BENCHMARK(BM_eval_7hand_random);

// All 2,598,960 hands in the order of five nested loops.
void BM_eval_5hand_fast_all_hands_sequential(benchmark::State& state) {
  int w[52];
  for (int c = 0; c < 52; ++c) w[c] = static_cast<int>(pokermath::prime_word(c));
  for (auto _ : state) {
    int64_t sum = 0;
    for (int a = 0; a < 48; ++a)
      for (int b = a + 1; b < 49; ++b)
        for (int c = b + 1; c < 50; ++c)
          for (int d = c + 1; d < 51; ++d)
            for (int e = d + 1; e < 52; ++e) sum += eval_5hand_fast(w[a], w[b], w[c], w[d], w[e]);
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(state.iterations() * 2598960);
}
BENCHMARK(BM_eval_5hand_fast_all_hands_sequential)->Unit(benchmark::kMillisecond);

}  // namespace

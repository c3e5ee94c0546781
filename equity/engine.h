// The engine framework shared by every pokermath:: equity engine: deals counted by who wins them,
// exact work split into units run on threads, Monte Carlo trials in chunks with their own random
// streams, and the progress, cancellation and stopping rules around both.
//
// Results never depend on the number of threads. Exact counts are integers, so their sum does not
// depend on the order in which units finish. Monte Carlo chunks draw from streams derived from the
// seed and the chunk's number, and are summed in chunk order; the stopping rules are checked only
// after fixed numbers of chunks.
#pragma once

#include <omp.h>

#include <algorithm>
#include <atomic>
#include <bit>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <functional>
#include <numeric>
#include <vector>

#include "pokermath/equity.h"

namespace pokermath::detail {

inline constexpr int kMaxPlayers = 10;
inline constexpr double kReportStep = 0.01;  // progress is reported each time 1% more work is done

// Bit p set for each player whose value is the largest.
[[gnu::always_inline]] inline uint32_t winners(const int* values, int players) {
  int best = values[0];
  for (int p = 1; p < players; ++p) best = std::max(best, values[p]);
  uint32_t mask = 0;
  for (int p = 0; p < players; ++p) mask |= static_cast<uint32_t>(values[p] == best) << p;
  return mask;
}

// How a run is carried out: threads, progress and cancellation.
struct RunControl {
  int threads = 1;
  const WorkProgress* progress = nullptr;  // may be null
  std::stop_token stop;

  bool stopped() const { return stop.stop_requested(); }
  bool reports() const { return progress && *progress; }
  void report(double fraction) const {
    if (reports()) (*progress)(fraction);
  }
};

// The threads a request asks for: 0 means every core.
int threads_for(int requested);

// ---- exact counts -------------------------------------------------------------------------------

// Deals counted by their winners: deals[mask] is the (weighted) number of deals won by exactly the
// players in mask, a split pot counted under the mask of every player who shares it.
struct OutcomeCounts {
  std::vector<int64_t> deals;
  explicit OutcomeCounts(int players = 0) : deals(size_t{1} << players, 0) {}
  void add(const OutcomeCounts& other, int64_t times = 1) {
    for (size_t m = 0; m < deals.size(); ++m) deals[m] += times * other.deals[m];
  }
};

// Deals counted by their winners with weights: each deal weighs the product of its hands' weights
// (fractions 0..1). The weights are held in fixed point, 2^52 to the unit (a double's precision), so
// that sums are exact integers and do not depend on the order in which units finish; 128 bits hold
// any count an exact request may make (weights below 2^24 tuples, 2^21 boards a class, 2^24 classes).
struct WeightedOutcomeCounts {
  static constexpr double kUnit = 0x1.0p52;
  std::vector<__int128> deals;
  explicit WeightedOutcomeCounts(int players = 0) : deals(size_t{1} << players, 0) {}
  // Adds counts made with weight 1 per deal, times `weight` (a sum of weight products).
  void add(const OutcomeCounts& counts, double weight) {
    const auto fixed = static_cast<__int128>(std::nearbyint(weight * kUnit));
    for (size_t m = 0; m < deals.size(); ++m) deals[m] += fixed * counts.deals[m];
  }
  void add(const WeightedOutcomeCounts& other) {
    for (size_t m = 0; m < deals.size(); ++m) deals[m] += other.deals[m];
  }
  // The weighted deals by winners, in units of one full-weight deal.
  std::vector<double> by_winners() const {
    std::vector<double> out(deals.size());
    for (size_t m = 0; m < deals.size(); ++m) out[m] = static_cast<double>(deals[m]) / kUnit;
    return out;
  }
};

// Runs work(unit, counts) for every unit 0..units-1 (units of about equal work) and returns the sum
// of the counts, starting from `empty`. Units go to `control.threads` threads as they free up; each
// thread adds into counts of its own, and Counts sum exactly (integers), so the order does not
// matter. Throws Cancelled when the run is stopped.
template <typename Counts, typename Work>
Counts run_exact_units(int units, const Counts& empty, const RunControl& control, Work work) {
  const int threads = std::max(1, std::min(control.threads, units));
  std::vector<Counts> per_thread(static_cast<size_t>(threads), empty);
  std::atomic<int> next{0}, finished{0};
  std::atomic<bool> stopped{false};
  auto loop = [&](int thread) {
    double reported = 0;
    for (int u; (u = next.fetch_add(1)) < units;) {
      if (control.stopped()) {
        stopped = true;
        break;
      }
      work(u, per_thread[thread]);
      const double done = static_cast<double>(finished.fetch_add(1) + 1) / units;
      if (thread == 0 && control.reports() && done >= reported + kReportStep) control.report(reported = done);
    }
  };
  if (threads == 1) {
    loop(0);
  } else {
#pragma omp parallel num_threads(threads)
    loop(omp_get_thread_num());
  }
  if (stopped || control.stopped()) throw Cancelled();
  Counts sum = empty;
  for (const Counts& c : per_thread) sum.add(c);
  control.report(1.0);
  return sum;
}

// ---- Monte Carlo ----------------------------------------------------------------------------------

// A fast generator for sampling (wyrand: a 64-bit counter stepped by an odd constant and mixed by a
// 64 x 64 -> 128-bit multiply; each output depends on the state through one addition, so draws
// overlap in the processor). Seeded through splitmix64.
class Rng {
 public:
  explicit Rng(uint64_t seed) : m_state(splitmix(seed)) {}
  uint64_t next() {
    m_state += 0xA0761D6478BD642Full;
    const unsigned __int128 t = static_cast<unsigned __int128>(m_state ^ 0xE7037ED1A0B428DBull) * m_state;
    return static_cast<uint64_t>(t >> 64) ^ static_cast<uint64_t>(t);
  }
  // Uniform in 0..n-1 (n >= 1): the high half of a 32 x 32-bit product, redrawn in the rare case
  // that would favour some values (Lemire's method).
  uint32_t below(uint32_t n) {
    uint64_t product = (next() >> 32) * n;
    if (static_cast<uint32_t>(product) < n) {
      const uint32_t threshold = -n % n;
      while (static_cast<uint32_t>(product) < threshold) product = (next() >> 32) * n;
    }
    return static_cast<uint32_t>(product >> 32);
  }
  static uint64_t splitmix(uint64_t& x) {
    uint64_t z = (x += 0x9E3779B97F4A7C15ull);
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ull;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBull;
    return z ^ (z >> 31);
  }

 private:
  uint64_t m_state;
};

// Draws an index 0..n-1 with probability proportional to its weight in constant time (Walker's alias
// method, built by Vose's algorithm): a uniform index i is kept with probability keep[i], else
// replaced by alias[i]. Equal weights skip the second draw.
class WeightedIndex {
 public:
  WeightedIndex() = default;
  explicit WeightedIndex(const std::vector<double>& weights) : m_n(static_cast<uint32_t>(weights.size())) {
    m_equal = std::adjacent_find(weights.begin(), weights.end(), std::not_equal_to<>()) == weights.end();
    if (m_equal || m_n == 0) return;
    const double total = std::accumulate(weights.begin(), weights.end(), 0.0);
    std::vector<double> scaled(weights.size());
    std::vector<uint32_t> small, large;
    for (uint32_t i = 0; i < m_n; ++i) {
      scaled[i] = weights[i] * m_n / total;
      (scaled[i] < 1 ? small : large).push_back(i);
    }
    m_keep.assign(m_n, 1.0);
    m_alias.resize(m_n);
    for (uint32_t i = 0; i < m_n; ++i) m_alias[i] = i;
    while (!small.empty() && !large.empty()) {
      const uint32_t s = small.back(), l = large.back();
      small.pop_back();
      m_keep[s] = scaled[s];
      m_alias[s] = l;
      scaled[l] -= 1 - scaled[s];
      if (scaled[l] < 1) {
        large.pop_back();
        small.push_back(l);
      }
    }
  }
  uint32_t draw(Rng& rng) const {
    const uint32_t i = rng.below(m_n);
    if (m_equal) return i;
    const double u = static_cast<double>(rng.next() >> 11) * 0x1.0p-53;
    return u < m_keep[i] ? i : m_alias[i];
  }

 private:
  uint32_t m_n = 0;
  bool m_equal = true;
  std::vector<double> m_keep;
  std::vector<uint32_t> m_alias;
};

inline constexpr int64_t kChunkTrials = 4096;
inline constexpr int64_t kMaxChunksPerRound = 64;

// The stream of chunk `chunk` of a request with `seed`.
inline Rng chunk_rng(uint64_t seed, int64_t chunk) {
  uint64_t x = seed;
  const uint64_t a = Rng::splitmix(x);
  return Rng(a ^ (static_cast<uint64_t>(chunk) * 0xD1B54A32D192ED03ull));
}

// When sampling stops.
struct SampleLimits {
  int64_t trials = 0;            // the most trials
  int time_ms = 0;               // 0: none
  double target_std_error = 0;   // 0: none
  uint64_t seed = 1;
};

// Runs chunks of trials until a limit is reached: run_chunk(chunk, trials, rng, tally) adds `trials`
// trials to an empty tally. Rounds of chunks (1, 1, 2, 4, ... up to 64 chunks) run on the threads;
// after each round the round's tallies are added in chunk order and the limits are checked, so the
// trials counted depend only on the request (a time limit aside). Tally needs add(const Tally&),
// trials(), and max_std_error(). Throws Cancelled when the run is stopped.
template <typename Tally, typename RunChunk>
Tally run_sample_chunks(const SampleLimits& limits, const RunControl& control, const Tally& empty, RunChunk run_chunk) {
  const auto start = std::chrono::steady_clock::now();
  auto out_of_time = [&] {
    return limits.time_ms > 0 &&
           std::chrono::steady_clock::now() - start >= std::chrono::milliseconds(limits.time_ms);
  };
  Tally total = empty;
  int64_t chunks_done = 0, round = 1;
  const int64_t all_chunks = (limits.trials + kChunkTrials - 1) / kChunkTrials;
  while (chunks_done < all_chunks) {
    const int64_t count = std::min(round, all_chunks - chunks_done);
    std::vector<Tally> tallies(static_cast<size_t>(count), empty);
    std::atomic<bool> stopped{false};
    auto one = [&](int64_t i) {
      if (stopped) return;
      if (control.stopped() || out_of_time()) {
        stopped = true;
        return;
      }
      const int64_t chunk = chunks_done + i;
      const int64_t trials = std::min(kChunkTrials, limits.trials - chunk * kChunkTrials);
      Rng rng = chunk_rng(limits.seed, chunk);
      run_chunk(chunk, trials, rng, tallies[static_cast<size_t>(i)]);
    };
    const int threads = static_cast<int>(std::min<int64_t>(control.threads, count));
    if (threads <= 1) {
      for (int64_t i = 0; i < count; ++i) one(i);
    } else {
#pragma omp parallel for num_threads(threads) schedule(dynamic, 1)
      for (int64_t i = 0; i < count; ++i) one(i);
    }
    if (control.stopped()) throw Cancelled();
    if (stopped) {
      // Out of time: keep the chunks that finished, in order, up to the first that did not.
      for (const Tally& t : tallies) {
        if (t.trials() == 0) break;
        total.add(t);
      }
      break;
    }
    for (const Tally& t : tallies) total.add(t);
    chunks_done += count;
    if (limits.target_std_error > 0 && total.max_std_error() <= limits.target_std_error) break;
    if (out_of_time()) break;
    round = std::min(kMaxChunksPerRound, chunks_done);
    control.report(static_cast<double>(chunks_done) / static_cast<double>(all_chunks));
  }
  control.report(1.0);
  return total;
}

// Monte Carlo trials counted by their winners, each trial with a weight (1 unless the sampler
// draws some players' hands with unequal probabilities, which the weights undo): w1[mask] sums the
// weights of the trials won by exactly the players in mask, w2[mask] their squares.
struct SampledOutcomes {
  std::vector<double> w1, w2;
  int64_t trial_count = 0;

  explicit SampledOutcomes(int players = 0) : w1(size_t{1} << players, 0), w2(size_t{1} << players, 0) {}
  void add(const SampledOutcomes& other) {
    for (size_t m = 0; m < w1.size(); ++m) w1[m] += other.w1[m], w2[m] += other.w2[m];
    trial_count += other.trial_count;
  }
  int64_t trials() const { return trial_count; }
  double max_std_error() const;
};

// The per-player results of counted or sampled outcomes.
struct PlayerShares {
  double win = 0, tie = 0, equity = 0, std_error = 0;
};
std::vector<PlayerShares> shares_of(const OutcomeCounts& counts, int players);
std::vector<PlayerShares> shares_of(const WeightedOutcomeCounts& counts, int players);
std::vector<PlayerShares> shares_of(const SampledOutcomes& outcomes, int players);

}  // namespace pokermath::detail

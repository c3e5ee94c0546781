#include "equity/engine.h"

namespace pokermath::detail {

int threads_for(int requested) {
  if (requested > 0) return requested;
  return std::max(1, omp_get_num_procs());
}

namespace {

// The share of the pot of player p in a deal won by the players of mask.
double share(uint32_t mask, int p) { return (mask >> p & 1) ? 1.0 / std::popcount(mask) : 0.0; }

// Win, tie and equity from the deals (or weights) by winners.
template <typename Number>
std::vector<PlayerShares> shares_from(const std::vector<Number>& by_winners, int players) {
  std::vector<PlayerShares> out(static_cast<size_t>(players));
  double total = 0;
  for (Number d : by_winners) total += static_cast<double>(d);
  if (total <= 0) return out;
  for (uint32_t mask = 1; mask < by_winners.size(); ++mask) {
    const double d = static_cast<double>(by_winners[mask]);
    if (d == 0) continue;
    for (int p = 0; p < players; ++p) {
      if (!(mask >> p & 1)) continue;
      (std::popcount(mask) == 1 ? out[p].win : out[p].tie) += d;
      out[p].equity += d * share(mask, p);
    }
  }
  for (PlayerShares& s : out) s.win /= total, s.tie /= total, s.equity /= total;
  return out;
}

}  // namespace

std::vector<PlayerShares> shares_of(const OutcomeCounts& counts, int players) {
  return shares_from(counts.deals, players);
}

std::vector<PlayerShares> shares_of(const WeightedOutcomeCounts& counts, int players) {
  return shares_from(counts.by_winners(), players);
}

std::vector<PlayerShares> shares_of(const SampledOutcomes& outcomes, int players) {
  std::vector<PlayerShares> out = shares_from(outcomes.w1, players);
  double total = 0;
  for (double w : outcomes.w1) total += w;
  if (total <= 0) return out;
  // The standard error of a ratio of weighted sums: sqrt(sum of w^2 (x - mean)^2) / sum of w, which
  // for equal weights is the familiar sqrt(variance / trials).
  for (int p = 0; p < players; ++p) {
    double squares = 0;
    for (uint32_t mask = 0; mask < outcomes.w2.size(); ++mask) {
      const double deviation = share(mask, p) - out[p].equity;
      squares += outcomes.w2[mask] * deviation * deviation;
    }
    out[p].std_error = std::sqrt(squares) / total;
  }
  return out;
}

double SampledOutcomes::max_std_error() const {
  const int players = std::countr_zero(w1.size());
  double worst = 0;
  for (const PlayerShares& s : shares_of(*this, players)) worst = std::max(worst, s.std_error);
  return worst;
}

}  // namespace pokermath::detail

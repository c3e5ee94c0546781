// Equity by hand class and the equity distribution of a range: the exact per-combination counts of
// the Hold'em engine, gathered into the 13 x 13 classes and into a sorted curve.
#include <algorithm>
#include <chrono>
#include <cmath>
#include <limits>
#include <numeric>

#include "equity/holdem_equity.h"
#include "pokermath/analysis.h"
#include "ranges/hand_classes.h"

namespace pokermath {

RangeBreakdown equity_by_class(const EquityRequest& request, int player) {
  if (request.game != EquityGame::Holdem && request.game != EquityGame::ShortDeck &&
      request.game != EquityGame::ShortDeckChina)
    throw Error("equity by hand class is for Hold'em and the short deck (the 13 x 13 classes)");
  const auto start = std::chrono::steady_clock::now();
  RangeBreakdown out = detail::holdem_breakdown(request, player);
  std::array<double, 169> weighted_equity{};
  for (int cell = 0; cell < 169; ++cell) out.classes[static_cast<size_t>(cell)].cell = cell;
  for (size_t k = 0; k < out.combos.size(); ++k) {
    const ComboEquity& c = out.combos[k];
    const int cell = detail::combo_cell(c.card1, c.card2);
    ClassEquity& e = out.classes[static_cast<size_t>(cell)];
    ++e.combos;
    e.weight += out.deal_weight[k];
    weighted_equity[static_cast<size_t>(cell)] += out.deal_weight[k] * c.equity;
  }
  for (ClassEquity& e : out.classes)
    e.equity = e.weight > 0 ? weighted_equity[static_cast<size_t>(e.cell)] / e.weight
                            : std::numeric_limits<double>::quiet_NaN();
  out.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  return out;
}

std::array<double, 169> RangeBreakdown::class_equities() const {
  std::array<double, 169> grid{};
  for (const ClassEquity& c : classes) grid[static_cast<size_t>(c.cell)] = c.equity;
  return grid;
}

double EquityDistribution::share_at_least(double threshold) const {
  double share = 0;
  for (const DistributionStep& s : steps)
    if (s.equity >= threshold) share = s.to;  // steps run from the strongest down
  return share;
}

EquityDistribution equity_distribution(const RangeBreakdown& breakdown) {
  EquityDistribution out;
  out.equity = breakdown.equity;
  std::vector<size_t> order(breakdown.combos.size());
  std::iota(order.begin(), order.end(), size_t{0});
  // Strongest first; equal equities in combination order, so the curve is the same every time.
  std::stable_sort(order.begin(), order.end(),
                   [&](size_t a, size_t b) { return breakdown.combos[a].equity > breakdown.combos[b].equity; });
  const double total = std::accumulate(breakdown.deal_weight.begin(), breakdown.deal_weight.end(), 0.0);
  if (total <= 0) return out;
  double at = 0;
  for (size_t k : order) {
    const ComboEquity& c = breakdown.combos[k];
    const double to = std::min(1.0, at + breakdown.deal_weight[k] / total);
    out.steps.push_back({at, to, c.equity, card_to_string(c.card1) + card_to_string(c.card2)});
    at = to;
  }
  if (!out.steps.empty()) out.steps.back().to = 1;
  return out;
}

}  // namespace pokermath

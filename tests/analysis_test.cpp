// Weighted Hold'em ranges in the equity engines, equity by hand class and the equity distribution,
// against a brute force over tuples of hands and boards written here with the reference evaluator.
#include <gtest/gtest.h>

#include <cmath>
#include <numeric>

#include "pokermath/analysis.h"
#include "reference_eval.h"
#include "test_util.h"

namespace pokermath {
namespace {

using test_util::error_of;
using test_util::for_each_set;

// Every player's equity by the definition: over every tuple of compatible combinations and every
// completion of the board, (product of the weights) x (pot share), over the sum of the weights.
std::vector<double> brute_force_equity(const std::vector<std::string>& players, const std::vector<int>& board) {
  const size_t n = players.size();
  std::vector<std::vector<WeightedCombo>> ranges;
  for (const std::string& text : players) ranges.push_back(parse_weighted_range(text).combos());
  const uint64_t board_mask = cards_to_mask(board);
  std::vector<double> shares(n, 0);
  double weights = 0;
  std::vector<WeightedCombo> tuple(n);
  auto deal = [&](auto& self, size_t i, uint64_t used, double weight) -> void {
    if (i == n) {
      const int missing = static_cast<int>(5 - board.size());  // 1 or 2 here
      for_each_set(missing, used, [&](const int* extra) {
        std::vector<int64_t> keys(n);
        for (size_t p = 0; p < n; ++p) {
          std::vector<int> cards = board;
          cards.insert(cards.end(), extra, extra + missing);
          cards.push_back(tuple[p].card1);
          cards.push_back(tuple[p].card2);
          keys[p] = reference::best_key(cards);
        }
        const int64_t best = *std::max_element(keys.begin(), keys.end());
        const auto winners = static_cast<double>(std::count(keys.begin(), keys.end(), best));
        for (size_t p = 0; p < n; ++p)
          if (keys[p] == best) shares[p] += weight / winners;
        weights += weight;
      });
      return;
    }
    for (const WeightedCombo& c : ranges[i]) {
      const uint64_t mask = uint64_t{1} << c.card1 | uint64_t{1} << c.card2;
      if (used & mask) continue;
      tuple[i] = c;
      self(self, i + 1, used | mask, weight * c.weight / 100);
    }
  };
  deal(deal, 0, board_mask, 1.0);
  for (double& s : shares) s /= weights;
  return shares;
}

EquityRequest request_of(std::vector<std::string> players, const std::string& board,
                         EquityMethod method = EquityMethod::Exact) {
  EquityRequest r;
  r.players = std::move(players);
  r.board = board.empty() ? std::vector<int>{} : parse_cards(board);
  r.method = method;
  r.threads = 2;
  return r;
}

TEST(WeightedRange, ParsesWeightsKeepsTheLargestAndPrintsTextThatReadsBack) {
  const WeightedRange r = parse_weighted_range("AA, KK@50, AKs@25, A5s-A2s@75, KhKd@80 QQ@12.5");
  EXPECT_EQ(r.size(), 6u + 6 + 4 + 16 + 6);
  EXPECT_EQ(r.weight(parse_card("As"), parse_card("Ah")), 100);
  EXPECT_EQ(r.weight(parse_card("Kh"), parse_card("Kd")), 80);  // the larger of 50 and 80
  EXPECT_EQ(r.weight(parse_card("Ks"), parse_card("Kc")), 50);
  EXPECT_EQ(r.weight(parse_card("3d"), parse_card("Ad")), 75);
  EXPECT_EQ(r.weight(parse_card("Ad"), parse_card("Kh")), 0);
  EXPECT_DOUBLE_EQ(r.total_weight(), 6 + 5 * 0.5 + 0.8 + 1 + 16 * 0.75 + 6 * 0.125);
  EXPECT_TRUE(r.weighted());
  EXPECT_EQ(parse_weighted_range(r.text()), r);
  EXPECT_EQ(r.text(), "AA,KhKd@80,A5s-A2s@75,KdKc@50,KhKc@50,KsKc@50,KsKd@50,KsKh@50,AKs@25,QQ@12.5");
  EXPECT_EQ(r.to_spec().m_hands, parse_range("AA,KK,QQ,AKs,A5s-A2s").m_hands);
  EXPECT_FALSE(WeightedRange(parse_range("22+")).weighted());

  for (const auto& [bad, message] : std::vector<std::pair<std::string, std::string>>{
           {"KK@0", "0 < N <= 100, got '0'"},
           {"KK@101", "got '101'"},
           {"KK@", "got ''"},
           {"KK@1e2", "got '1e2'"},
           {"@50", "needs a class"},
           {"AA,KX@50", "bad range item 'KX' at position 2"}})
    EXPECT_NE(error_of([text = bad] { parse_weighted_range(text); }).find(message), std::string::npos) << bad;
  EXPECT_NE(error_of([] { parse_range("KK@50"); }).find("takes no weights"), std::string::npos);
}

TEST(WeightedEquity, ExactAndMonteCarloEqualTheDefinitionOnOverlappingRanges) {
  struct Case {
    std::vector<std::string> players;
    std::string board;
  };
  const std::vector<Case> cases = {
      {{"AhKh@30,QQ@70,AK@50", "KK@20,AQs,QhJh@90", "JJ@60,T9s,QsJs"}, "Qs7h2c9d"},
      {{"AsKs", "AA@10,KK,Ah5h@60,T9s@35"}, "Kh8s3s"},
      {{"JJ+@40,AKs", "JJ-99@75,KQ@25", "AQ@60,22"}, "Js9c4h2d"},
      {{"KsKh,KdKc@40", "KK@90,Kc2c@10,AA@5"}, "Qs7h3d9d"},  // little of the second range is left
  };
  for (const Case& c : cases) {
    const std::vector<double> truth = brute_force_equity(c.players, parse_cards(c.board));
    const EquityResult exact = compute_equity(request_of(c.players, c.board));
    EquityRequest sampled = request_of(c.players, c.board, EquityMethod::MonteCarlo);
    sampled.trials = 200000;
    const EquityResult mc = compute_equity(sampled);
    for (size_t p = 0; p < truth.size(); ++p) {
      EXPECT_NEAR(exact.players[p].equity, truth[p], 1e-9) << c.players[p] << " on " << c.board;
      EXPECT_NEAR(mc.players[p].equity, truth[p], 4 * mc.players[p].std_error) << c.players[p] << " on " << c.board;
    }
  }
}

TEST(WeightedEquity, EqualWeightsChangeNothingAndAWeightedMixIsTheWeightedAverage) {
  // All weights equal: the unweighted result, exactly (pre-flop, so the weighted count path runs
  // over suit classes too).
  const EquityResult plain = compute_equity(request_of({"AKs", "QQ+,AJs"}, ""));
  const EquityResult halves = compute_equity(request_of({"AKs@50", "QQ+@30,AJs@30"}, ""));
  EXPECT_NEAR(halves.players[0].equity, plain.players[0].equity, 1e-12);

  // A hand against "QQ@50,AKs" is the average of the hand against each part, weighted by the
  // combinations left and the weight.
  const std::string hero = "JhTh", board = "Qc8h2h";
  const double vs_qq = compute_equity(request_of({hero, "QQ"}, board)).players[0].equity;
  const double vs_aks = compute_equity(request_of({hero, "AKs"}, board)).players[0].equity;
  const double mixed = compute_equity(request_of({hero, "QQ@50,AKs"}, board)).players[0].equity;
  const double qq_weight = 3 * 0.5, aks_weight = 4 * 1.0;  // QQ loses Qc
  EXPECT_NEAR(mixed, (qq_weight * vs_qq + aks_weight * vs_aks) / (qq_weight + aks_weight), 1e-12);
}

TEST(EquityByClass, EachClassIsItsOwnRequestAndTheClassesAverageToTheRange) {
  const std::string hero = "TT+@60,AQs+,KQs,AJo+@40", villain = "99+,AK@70,KhQh";
  const std::string board = "Kd9s4c";
  EquityRequest request = request_of({hero, villain}, board);
  const RangeBreakdown b = equity_by_class(request);
  EXPECT_NEAR(b.equity, compute_equity(request).players[0].equity, 1e-12);

  const WeightedRange range = parse_weighted_range(hero);
  double weight = 0, weighted = 0;
  int combos = 0;
  for (const ClassEquity& c : b.classes) {
    if (c.combos == 0) {
      EXPECT_TRUE(std::isnan(c.equity));
      continue;
    }
    // The class alone: the range's combinations of that class, with their weights.
    WeightedRange part;
    for (const WeightedCombo& w : range.combos())
      if (hand_class_of(w.card1, w.card2) == c.cell)
        part.set_weight(w.card1, w.card2, w.weight);
    const double alone = compute_equity(request_of({part.text(), villain}, board)).players[0].equity;
    EXPECT_NEAR(c.equity, alone, 1e-12) << hand_class_name(c.cell);
    weight += c.weight;
    weighted += c.weight * c.equity;
    combos += c.combos;
  }
  EXPECT_EQ(static_cast<size_t>(combos), b.combos.size());
  EXPECT_NEAR(weighted / weight, b.equity, 1e-12);

  // The distribution: strongest first, covering the range once, and its shares at thresholds.
  const EquityDistribution d = equity_distribution(b);
  ASSERT_EQ(d.steps.size(), b.combos.size());
  EXPECT_EQ(d.steps.front().from, 0);
  EXPECT_EQ(d.steps.back().to, 1);
  for (size_t i = 1; i < d.steps.size(); ++i) {
    EXPECT_GE(d.steps[i - 1].equity, d.steps[i].equity);
    EXPECT_EQ(d.steps[i].from, d.steps[i - 1].to);
  }
  EXPECT_EQ(d.share_at_least(0), 1);
  EXPECT_EQ(d.share_at_least(1.01), 0);

  // The same on one thread; bad requests.
  request.threads = 1;
  EXPECT_EQ(equity_by_class(request).combos, b.combos);
  EXPECT_NE(error_of([&] { equity_by_class(request, 2); }).find("player 3 is not in the request"), std::string::npos);
  request.method = EquityMethod::MonteCarlo;
  EXPECT_NE(error_of([&] { equity_by_class(request); }).find("counted exactly"), std::string::npos);
  request.method = EquityMethod::Exact;
  request.game = EquityGame::Omaha;
  EXPECT_NE(error_of([&] { equity_by_class(request); }).find("Hold'em"), std::string::npos);
}

}  // namespace
}  // namespace pokermath

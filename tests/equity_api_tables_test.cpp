// The pokermath:: equity API: exact answers against the classic engines and a brute force, Monte
// Carlo within a few standard errors, the pre-flop table, and the errors.
#include <cmath>

#include "tables_fixture.h"
#include "test_util.h"

namespace {

using pokermath::EquityMethod;
using pokermath::EquityRequest;
using pokermath::EquityResult;

EquityRequest request(std::vector<std::string> players, const std::string& board = "",
                      EquityMethod method = EquityMethod::Auto) {
  EquityRequest r;
  r.players = std::move(players);
  r.board = pokermath::parse_cards(board);
  r.method = method;
  r.data_dir = tables_fixture::data_dir();
  return r;
}

TEST(EquityApi, HeadsUpExactMatchesTheClassicEngine) {
  // Small enough to count on the spot: the pre-flop table in the data directory is not read.
  const EquityResult result = pokermath::compute_equity(request({"AsKs", "QhQd"}));
  ASSERT_TRUE(result.exact);
  EXPECT_FALSE(result.from_table);
  EXPECT_EQ(result.deals, 1712304);
  double wins = 0, boards = 0;
  tables_fixture::logic_with_table().getProbabilityOfWinWithNoBoard(test_util::cards("AsKs").data(),
                                                                    test_util::cards("QhQd").data(), wins, boards);
  EXPECT_DOUBLE_EQ(result.players[0].equity, wins / boards);
  EXPECT_DOUBLE_EQ(result.players[0].equity + result.players[1].equity, 1.0);
  EXPECT_DOUBLE_EQ(result.players[0].tie, result.players[1].tie);
  EXPECT_DOUBLE_EQ(result.players[0].win + result.players[0].tie + result.players[1].win, 1.0);

  // Too large to count on the spot: answered from the pre-flop table, win and tie unknown.
  const EquityResult table = pokermath::compute_equity(request({"random", "random"}));
  ASSERT_TRUE(table.from_table);
  EXPECT_NEAR(table.players[0].equity, 0.5, 1e-12);
  EXPECT_TRUE(std::isnan(table.players[0].win));
}

TEST(EquityApi, HandAgainstARangeGroupsMatchupsBySuits) {
  const EquityResult result = pokermath::compute_equity(request({"AsKs", "QQ+,AK"}));
  ASSERT_TRUE(result.exact);
  const double classic = tables_fixture::logic_with_table().getProbabilityOfWinBySpectrWithNoBoard(
      test_util::cards("AsKs").data(), pokermath::parse_range("QQ+,AK"));
  EXPECT_NEAR(result.players[0].equity, classic, 1e-12);
}

TEST(EquityApi, MultiwayExactOnAFlopAgainstABruteForce) {
  const EquityResult result = pokermath::compute_equity(request({"AhKh", "QcQd", "7s6s"}, "Qh 7h 2c"));
  ASSERT_TRUE(result.exact);
  const std::vector<int> hands = test_util::cards("AhKh QcQd 7s6s"), flop = test_util::cards("Qh 7h 2c");
  double share[3] = {}, count = 0;
  test_util::for_each_set(2, pokermath::cards_to_mask(hands) | pokermath::cards_to_mask(flop), [&](const int* tr) {
    int value[3];
    for (int p = 0; p < 3; ++p)
      value[p] = tables_fixture::best_class_of_seven(
          test_util::words({hands[2 * p], hands[2 * p + 1], flop[0], flop[1], flop[2], tr[0], tr[1]}).data());
    const int best = *std::min_element(value, value + 3);
    const int k = (value[0] == best) + (value[1] == best) + (value[2] == best);
    for (int p = 0; p < 3; ++p) share[p] += value[p] == best ? 1.0 / k : 0.0;
    count += 1;
  });
  EXPECT_EQ(result.deals, count);
  for (int p = 0; p < 3; ++p) EXPECT_NEAR(result.players[p].equity, share[p] / count, 1e-12) << p;
}

TEST(EquityApi, MonteCarloLandsWithinFourStandardErrors) {
  const EquityResult exact =
      pokermath::compute_equity(request({"AhKh", "random", "random"}, "Qh 7h 2c 9d", EquityMethod::Exact));
  EquityRequest r = request({"AhKh", "random", "random"}, "Qh 7h 2c 9d", EquityMethod::MonteCarlo);
  r.trials = test_util::sweep_size(200000, 20000);
  r.seed = 42;
  const EquityResult sampled = pokermath::compute_equity(r);
  EXPECT_FALSE(sampled.exact);
  EXPECT_EQ(sampled.deals, static_cast<double>(r.trials));
  for (int p = 0; p < 3; ++p) {
    EXPECT_GT(sampled.players[p].std_error, 0);
    EXPECT_NEAR(sampled.players[p].equity, exact.players[p].equity, 4 * sampled.players[p].std_error) << p;
  }
  // The same seed gives the same numbers.
  const EquityResult again = pokermath::compute_equity(r);
  EXPECT_EQ(again.players[0].equity, sampled.players[0].equity);
  // A time limit stops early.
  r.trials = 1000000000;
  r.time_ms = 50;
  EXPECT_LT(pokermath::compute_equity(r).deals, 1000000000.0);
}

TEST(EquityApi, AutoChoosesMonteCarloForLargeQuestions) {
  EquityRequest r = request({"AsAd", "random", "random", "random"});
  r.trials = 20000;
  const EquityResult result = pokermath::compute_equity(r);
  EXPECT_FALSE(result.exact);
  EXPECT_NEAR(result.players[0].equity, 0.64, 0.02);
}

TEST(EquityApi, BadRequestsNameTheProblem) {
  auto message = [](EquityRequest r) { return test_util::error_of([&] { pokermath::compute_equity(r); }); };
  EXPECT_EQ(message(request({"AsKs"})), "expected 2 to 10 players, got 1");
  EXPECT_EQ(message(request({"AsKs", "AsQd"})), "player 2: card 'As' is already in play");
  EXPECT_EQ(message(request({"AsKs", "QhQd"}, "Ah Kh")), "a board has 0, 3, 4 or 5 cards, got 2");
  EXPECT_EQ(message(request({"AsKs", "KK"}, "Kh Kd Kc")),
            "player 2: the range 'KK' has no hand left once the known cards are removed");
  EXPECT_EQ(message(request({"AA", "AA", "AA"})), "no deal is possible: the players' hands always share a card");
  EXPECT_EQ(message(request({"AsKs", "AsKsQs"})), "player 2: a Hold'em hand is two cards, got 'AsKsQs'");
  EXPECT_NE(message(request({"AsKs", "QQ+,XY"})).find("player 2:"), std::string::npos);
  EquityRequest dead = request({"AsKs", "QhQd"});
  dead.dead = test_util::cards("Qh");
  EXPECT_EQ(message(dead), "player 2: card 'Qh' is already in play");
}

}  // namespace

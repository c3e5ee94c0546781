// The pokermath:: equity API against the classic engines, the pre-flop table, Auto's choice and the
// errors (equity_engine_test checks the engines against a brute force and Monte Carlo's promises).
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

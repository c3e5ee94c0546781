// pokermath equity and pokermath omaha as a user runs them (the equity command reads the tables
// the fixture generated).
#include <gtest/gtest.h>

#include "cli_run.h"

namespace {

using cli_run::CliRun;
using cli_run::expect_bad_input;
using cli_run::lines;
using cli_run::run;

std::string data_dir() {
  const char* dir = std::getenv("POKERMATH_DATA_DIR");
  return dir ? std::string(" --data-dir ") + dir : "";
}

TEST(CliEquity, HandAgainstHandIsExact) {
  const CliRun r = run("equity AsKs QhQd" + data_dir());
  EXPECT_EQ(r.exit_code, 0) << r.err;
  EXPECT_NE(r.out.find("method:  exact"), std::string::npos) << r.out;
  EXPECT_NE(r.out.find("46.21%"), std::string::npos) << r.out;  // AsKs's equity
  EXPECT_NE(r.out.find("53.79%"), std::string::npos) << r.out;
  const CliRun json = run("equity AsKs QhQd --exact --json" + data_dir());
  EXPECT_NE(json.out.find("\"method\": \"exact\""), std::string::npos) << json.out;
  EXPECT_NE(json.out.find("\"hand\": \"QhQd\""), std::string::npos) << json.out;
}

TEST(CliEquity, RangesRandomHandsAndBoards) {
  const CliRun range = run("equity AsKs \"QQ+,AKs,A5s-A2s\"" + data_dir());
  EXPECT_EQ(range.exit_code, 0) << range.err;
  EXPECT_NE(range.out.find("QQ+,AKs,A5s-A2s"), std::string::npos) << range.out;
  const CliRun flop = run("equity AhKh random --board Qh7h2c" + data_dir());
  EXPECT_EQ(flop.exit_code, 0) << flop.err;
  EXPECT_NE(flop.out.find("board:   Qh 7h 2c"), std::string::npos) << flop.out;
  const CliRun mc = run("equity AsAd --players 4 --monte-carlo --trials 20000 --seed 9" + data_dir());
  EXPECT_EQ(mc.exit_code, 0) << mc.err;
  EXPECT_NE(mc.out.find("Monte Carlo, 20,000 trials, seed 9"), std::string::npos) << mc.out;
  EXPECT_NE(mc.out.find("std error"), std::string::npos) << mc.out;
  EXPECT_EQ(run("equity AsAd --players 4 --monte-carlo --trials 20000 --seed 9" + data_dir()).out.substr(0, 200),
            mc.out.substr(0, 200));  // the same seed, the same numbers
}

TEST(CliEquity, BadInputIsOneLineAndExitCodeTwo) {
  const std::pair<std::string, const char*> cases[] = {
      {"equity AsKs AsQd", "already in play"},
      {"equity AsKs QhQd --board Ah7h", "a board has 0, 3, 4 or 5 cards, got 2"},
      {"equity AsKs QhQd --board As7h2c", "in play"},
      {"equity AsKs", "expected 2 to 10 players, got 1"},
      {"equity AsKs KK --board KhKdKc", "player 2: the range 'KK' has no hand left"},
      {"equity AsKs QhQd --board Kh Kd Kc", "a board has 0, 3, 4 or 5 cards, got 1"},  // one --board card
      {"equity AsKs QQ+ --players 1", "fewer than the 2 hands"},
      {"equity AsKs ZZ9", "player 2"},
      {"equity AsKs QhQd --exact --monte-carlo", "excludes"},
  };
  for (const auto& [args, message] : cases) expect_bad_input(args + data_dir(), message);
}

TEST(CliOmaha, BestOutsAndNuts) {
  const CliRun best = run("omaha best AsKs7d2c QsJsTs3h2d");
  EXPECT_EQ(best.exit_code, 0) << best.err;
  EXPECT_NE(best.out.find("best hand:   As Ks + Qs Js Ts"), std::string::npos) << best.out;
  EXPECT_NE(best.out.find("low:         no low"), std::string::npos) << best.out;
  const CliRun outs = run("omaha outs AhKh9c8c Qh7h2d --json");
  EXPECT_EQ(outs.exit_code, 0) << outs.err;
  EXPECT_NE(outs.out.find("\"nut_outs\": 8"), std::string::npos) << outs.out;
  const CliRun nuts = run("omaha nuts Qh7h2d5s");
  EXPECT_NE(nuts.out.find("QcQd QcQs QdQs"), std::string::npos) << nuts.out;
  const std::pair<const char*, const char*> bad[] = {
      {"omaha best AsKs7d QsJsTs", "expected 4 to 6 hole cards, got 3"},
      {"omaha best AsKs7d2c QsJs", "expected 3 to 5 board cards, got 2"},
      {"omaha outs AsKs7d2c QsJsTs3h2d", "outs need a flop or a turn"},
      {"omaha best AsKs7d2c AsJsTs", "is also in the hole"},
      {"omaha nuts QsJs", "expected 3 to 5 board cards"},
  };
  for (const auto& [args, message] : bad) expect_bad_input(args, message);
}

}  // namespace

namespace {

TEST(CliEquity, OmahaGames) {
  const CliRun exact = run("equity --game omaha AsKsQhJh 9c9d8c7d --board Ts6h2c" + data_dir());
  EXPECT_EQ(exact.exit_code, 0) << exact.err;
  EXPECT_NE(exact.out.find("method:  exact, 820 deals"), std::string::npos) << exact.out;
  const CliRun hilo = run("equity --game omaha-hilo As2s3hKd Ac2c8d9h --board 4h5h7c --json" + data_dir());
  EXPECT_EQ(hilo.exit_code, 0) << hilo.err;
  EXPECT_NE(hilo.out.find("\"scoop\""), std::string::npos) << hilo.out;
  EXPECT_NE(hilo.out.find("\"game\": \"omaha-hilo\""), std::string::npos) << hilo.out;
  const CliRun random = run("equity --game omaha5 AsKsQhJhTd random --trials 5000" + data_dir());
  EXPECT_EQ(random.exit_code, 0) << random.err;
  EXPECT_NE(random.out.find("Monte Carlo, 5,000 trials"), std::string::npos) << random.out;
  const std::pair<std::string, const char*> bad[] = {
      {"equity --game omaha AsKsQh 9c9d8c7d", "player 1: this game's hands hold 4 cards, got 'AsKsQh'"},
      {"equity --game omaha AsKsQhJh random --exact", "an exact Omaha answer needs every player's holding"},
      {"equity --game omaha AsKsQhJh AsKd8c7d", "player 2: card 'As' is already in play"},
      {"equity --game razz AsKsQhJh 9c9d8c7d", "--game"},
  };
  for (const auto& [args, message] : bad) expect_bad_input(args + data_dir(), message);
}

}  // namespace

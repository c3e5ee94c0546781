// pokermath equity and pokermath omaha as a user runs them (the equity command reads the tables
// the fixture generated).
#include <gtest/gtest.h>

#include "cli_run.h"

namespace {

using cli_run::CliRun;
using cli_run::expect_bad_input;
using cli_run::expect_output;
using cli_run::run;

std::string data_dir() {
  const char* dir = std::getenv("POKERMATH_DATA_DIR");
  return dir ? std::string(" --data-dir ") + dir : "";
}

TEST(CliEquity, HandAgainstHandIsExact) {
  expect_output("equity AsKs QhQd" + data_dir(), {"method:  exact", "46.21%", "53.79%"});
  expect_output("equity AsKs QhQd --exact --json" + data_dir(), {"\"method\": \"exact\"", "\"hand\": \"QhQd\""});
}

TEST(CliEquity, RangesRandomHandsAndBoards) {
  expect_output("equity AsKs \"QQ+,AKs,A5s-A2s\"" + data_dir(), {"QQ+,AKs,A5s-A2s"});
  expect_output("equity AhKh random --board Qh7h2c" + data_dir(), {"board:   Qh 7h 2c"});
  const std::string mc = "equity AsAd --players 4 --monte-carlo --trials 20000 --seed 9" + data_dir();
  const CliRun first = expect_output(mc, {"Monte Carlo, 20,000 trials, seed 9", "std error"});
  EXPECT_EQ(run(mc).out.substr(0, 200), first.out.substr(0, 200));  // the same seed, the same numbers
  // On any number of threads, too; a target standard error implies Monte Carlo and stops early.
  EXPECT_EQ(run(mc + " --threads 1").out.substr(0, 200), first.out.substr(0, 200));
  expect_output("equity AsKs QhQd JcTc --target-stderr 0.005" + data_dir(), {"Monte Carlo, 16,384 trials", "0.3"});
}

TEST(CliEquity, BadInputIsOneLineAndExitCodeTwo) {
  const std::pair<std::string, const char*> cases[] = {
      {"equity AsKs AsQd", "already in play"},
      {"equity AsKs QhQd --board Ah7h", "a board has 0, 3, 4 or 5 cards, got 2"},
      {"equity AsKs QhQd --board As7h2c", "in play"},
      {"equity AsKs", "expected 2 to 10 players, got 1"},
      {"equity AsKs KK --board KhKdKc", "player 2: the range 'KK' has no hand left"},
      {"equity AsKs QhQd --board Kh Kd Kc", "a board has 0, 3, 4 or 5 cards, got 1"},  // one --board card
      {"equity AsKs ZZ9", "player 2"},
      {"equity AsKs QhQd --exact --monte-carlo", "excludes"},
      {"equity AsKs QhQd --exact --target-stderr 0.01", "excludes"},
      {"equity AsKs QhQd --target-stderr -1", "--target-stderr"},
      {"equity AA AA AA", "no deal is possible"},
  };
  for (const auto& [args, message] : cases) expect_bad_input(args + data_dir(), message);
}

TEST(CliOmaha, BestOutsAndNuts) {
  expect_output("omaha best AsKs7d2c QsJsTs3h2d", {"best hand:   As Ks + Qs Js Ts", "low:         no low"});
  expect_output("omaha outs AhKh9c8c Qh7h2d --json", {"\"nut_outs\": 8"});
  expect_output("omaha nuts Qh7h2d5s", {"QcQd QcQs QdQs"});
  const std::pair<const char*, const char*> bad[] = {
      {"omaha best AsKs7d QsJsTs", "expected 4 to 6 hole cards, got 3"},
      {"omaha best AsKs7d2c QsJs", "expected 3 to 5 board cards, got 2"},
      {"omaha outs AsKs7d2c QsJsTs3h2d", "outs need a flop or a turn"},
      {"omaha best AsKs7d2c AsJsTs", "is also in the hole"},
      {"omaha nuts QsJs", "expected 3 to 5 board cards"},
  };
  for (const auto& [args, message] : bad) expect_bad_input(args, message);
}

TEST(CliEquity, OmahaGames) {
  expect_output("equity --game omaha AsKsQhJh 9c9d8c7d --board Ts6h2c" + data_dir(), {"method:  exact, 820 deals"});
  expect_output("equity --game omaha-hilo As2s3hKd Ac2c8d9h --board 4h5h7c --json" + data_dir(),
                {"\"scoop\"", "\"game\": \"omaha-hilo\""});
  expect_output("equity --game omaha5 AsKsQhJhTd random --trials 5000" + data_dir(), {"Monte Carlo, 5,000 trials"});
  const std::pair<std::string, const char*> bad[] = {
      {"equity --game omaha AsKsQh 9c9d8c7d", "player 1: this game's hands hold 4 cards, got 'AsKsQh'"},
      {"equity --game omaha AsKsQhJh random --exact", "too large to count; --monte-carlo samples it"},
      {"equity --game omaha AsKsQhJh AsKd8c7d", "player 2: card 'As' is already in play"},
      {"equity --game razz AsKsQhJh 9c9d8c7d", "--game"},
  };
  for (const auto& [args, message] : bad) expect_bad_input(args + data_dir(), message);
}

}  // namespace

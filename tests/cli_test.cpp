// The pokermath program as a user runs it: output, JSON, help, version and exit codes.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "cli_run.h"
#include "range_test_util.h"
#include "temp_dir.h"

namespace {

using cli_run::CliRun;
using cli_run::expect_bad_input;
using cli_run::expect_output;
using cli_run::lines;
using cli_run::run;

TEST(Cli, EvalPrintsClassCategoryBestFiveAndWords) {
  const CliRun r = run("eval As Ks Qs Js Ts");
  EXPECT_EQ(r.exit_code, 0) << r.err;
  EXPECT_EQ(r.out,
            "cards:          As Ks Qs Js Ts\n"
            "category:       royal flush\n"
            "best five:      As Ks Qs Js Ts\n"
            "description:    RoyalFlush \n"
            "class:          1 of 7462 (five-card class, 1 is the strongest)\n"
            "value:          7462 of 7462 (state machines, larger is stronger)\n"
            "category value: 36874 (seven-card table: 4096 x category + place in category)\n");
  expect_output("eval AhAd 7c7s 2h Kd 7h", {"category:       full house\n", "best five:      7s 7h 7c Ah Ad\n",
                                            "description:    full house 7 over Ace\n"});
  const CliRun json = expect_output("eval 9c,9d,5h,5s,Kc,2d --json", {"\"category\": \"two pair\"", "\"best_five\": [",
                                                                      "\"description\": \"two pair 9 5 kicker King\""});
  EXPECT_EQ(json.out.front(), '{');
}

// Every kind of bad input, command by command: exit code 2, one line on stderr holding the message,
// nothing on stdout.
TEST(Cli, BadInputIsOneLineAndExitCodeTwo) {
  test_util::TempDir dir;
  const std::string folder = (dir / "folder.txt").string(), fifo = (dir / "fifo.txt").string();
  std::filesystem::create_directory(folder);
  ASSERT_EQ(::mkfifo(fifo.c_str(), 0600), 0);
  // Every card but the 9s off the board AsKsQsJsTs.
  const std::string all_but_one =
      "2c3c4c5c6c7c8c9cTcJcQcKcAc2d3d4d5d6d7d8d9dTdJdQdKdAd2h3h4h5h6h7h8h9hThJhQhKhAh"
      "2s3s4s5s6s7s8s";
  const std::string seed_range = "from 0 to 18446744073709551615";
  const std::pair<std::string, std::string> cases[] = {
      {"frobnicate", "unknown command 'frobnicate'"},
      // control characters and broken UTF-8 are echoed as escapes
      {"\"$(printf 'x\\033[2J')\"", "unknown command 'x\\x1b[2J'"},
      {"range \"$(printf 'A\\033[31mK')\"", "bad range item 'A\\x1b[31mK' at position 1"},
      {"range \"$(printf 'AK\\303')\"", "bad range item 'AK\\xc3' at position 1"},
      {"range \"$(printf 'A\\302\\233K')\"", "bad range item 'A\\xc2\\x9bK'"},  // a C1 control
      {"range 'A\xC3\xA9'", "bad range item 'A\xC3\xA9'"},                      // valid UTF-8 passes unchanged
      {"eval As As Kd Qc Jh", "duplicate card 'As' at position 2"},
      {"eval Ax Kd Qc Jh Th", "bad card 'Ax' at position 1: suit must be one of c d h s"},
      {"eval As Kd Qc Jh", "expected 5 to 7 cards, got 4"},
      {"eval As Kd Qc Jh Th 9h 8h 7h", "expected 5 to 7 cards, got 8"},
      {"eval", "cards is required"},
      {"eval --game shortdeck 5h 6d 7c 8s 9h", "card '5h' at position 1 is not in the short deck"},
      {"eval --game lowball27 7c 5d 4h 3s 2c 9d", "expected 5 cards, got 6"},
      {"eval --game omaha 7c 5d 4h 3s 2c", "--game"},
      {"equity --game shortdeck AsKs 5h5d", "player 2: card '5h' is not in the short deck (six to ace)"},
      {"equity --game china AsKs random --board Qh7h2c", "card '2c' is not in the short deck"},
      // numbers out of range are refused, never capped or wrapped
      {"equity AsKs QhQd --trials 99999999999999999999",
       "--trials: expected a whole number from 1 to 1000000000000, got '99999999999999999999'"},
      {"equity AsKs QhQd --trials 0", "--trials: expected a whole number from 1 to"},
      {"equity AsKs QhQd --trials 1e6", "got '1e6'"},
      {"equity AsKs QhQd --players 0", "--players: expected a whole number from 2 to 10, got '0'"},
      {"equity AsKs QhQd --players -1", "--players: expected a whole number from 2 to 10, got '-1'"},
      {"equity AsKs QhQd --players 1", "got '1'"},
      {"equity AsKs QhQd JcTc --players 2", "--players 2 is fewer than the 3 hands given"},
      {"equity AsKs QhQd --time-ms -1", "--time-ms: expected a whole number from 0 to 2147483647, got '-1'"},
      {"equity AsKs QhQd --seed -1", "--seed: expected a whole number " + seed_range + ", got '-1'"},
      {"equity AsKs QhQd --seed 18446744073709551616", "got '18446744073709551616'"},
      {"equity AsKs QhQd --threads -1", "--threads: expected a whole number from 0 to 1024, got '-1'"},
      {"equity AsKs QhQd --target-stderr nan", "--target-stderr: expected a number above 0, e.g. 0.001, got 'nan'"},
      {"equity AsKs QhQd --data-dir " + fifo, "--data-dir '" + fifo + "' is not a directory"},
      {"bench --threads 99999999999", "--threads: expected a whole number from 0 to 1024, got '99999999999'"},
      {"payout --bets 100,60,40 --ranks 3,7", "bets and ranks differ in length: 3 bets, 2 ranks"},
      {"payout --bets 100,-60 --ranks 3,7", "bet -60 of player 2 is negative"},
      {"payout --bets 100,6x --ranks 3,7", "bad bet '6x' at position 2: expected a whole number"},
      {"payout --bets 1,2 --ranks 3,99999999999",
       "bad rank '99999999999' at position 2: expected a whole number that fits"},
      {"payout --bets 100,60", "--ranks is required"},
      {"range AA,AKx", "bad range item 'AKx' at position 2: suffix must be s (suited) or o (offsuit)"},
      {"range", "give a range expression, or --top P"},
      {"range ' , '", "the range expression is empty"},
      {"range --top 101", "bad percentage 101: must be between 0 and 100"},
      {"range --top x", "--top"},
      {"range AA --top 5", "excludes --top"},
      {"range --table groups", "--table requires --top"},
      {"range --top 5 --table other", "--table"},
      {"range --top 5 --table brenmark --short-deck", "the brenmark table is Hold'em only"},
      {"range 5s4s --short-deck",
       "range item '5s4s' at position 1 names a rank below 6: the short deck has ranks 6 to A"},
      {"range 'KK, AA-55' --short-deck", "range item 'AA-55' at position 2 names a rank below 6"},
      {"range A6s+,A2s --short-deck", "range item 'A2s' at position 2"},
      {"range --file missing.txt --top 5", "range file 'missing.txt' not found"},
      {"range --file ranking.dat --top 5", "range file 'ranking.dat': the name must end in .txt"},
      {"range --file " + folder + " --top 5", "range file '" + folder + "' is not a regular file"},
      {"range --file " + fifo + " --top 5", "range file '" + fifo + "' is not a regular file"},
      {"omaha nuts AsKsQsJsTs --dead " + all_but_one,
       "no two-card holding can be made: the board and the dead cards leave 1 card of 52"},
      {"omaha nuts AsKsQsJsTs --dead " + all_but_one + "Ts", "duplicate card 'Ts'"},
      {"omaha hutchison As Ah Ks", "expected 4 cards in an Omaha starting hand, got 3"},
      {"omaha hutchison AsAhKsKhQd --hilo", "expected 4 cards in an Omaha starting hand, got 5"},
      {"omaha hutchison As As Ks Kh", "duplicate card 'As' at position 2"},
      {"omaha hutchison Ax Ah Ks Kh", "bad card 'Ax' at position 1"},
      {"omaha hutchison", "hand is required"},
      {"range --game omaha 'AA**:dz'", "position 6: "},
      {"range --game omaha --top 5", "--top, --table, --file and --short-deck are Hold'em options"},
      {"range --game omaha6 10%", "exact 6-card table"},
      {"range --game stud AA", "--game"},
      {"equity --game omaha AsKs** AsQs**", "the players' ranges can never be dealt together"},
      {"equity --game omaha6-hilo AsKsQhJhTc9c 'AA**(' --monte-carlo", "player 2: position 5: "},
  };
  for (const auto& [args, message] : cases) expect_bad_input(args, message);
}

TEST(Cli, EvalOtherGames) {
  expect_output("eval --game shortdeck Ah 6d 7c 8s 9h --json", {"\"category\": \"straight\"", "\"value_52\": 4996"});
  expect_output("eval --game china Ah 6d 7c 8s 9h 9d 9c --json", {"\"value\": 1129"});
  expect_output("eval --game lowball27 Ac 5d 4h 3s 2c --json", {"\"value\": 785"});
}

// deals is a count: a JSON integer. Work that ends within a second shows no progress.
TEST(CliEquity, JsonCountsDealsAsAWholeNumber) {
  const CliRun r = expect_output("equity AsKs QhQd --json", {"\"method\": \"exact\"", "\"deals\": 1712304,"});
  EXPECT_TRUE(r.err.empty()) << r.err;
  expect_output("equity AsKs QhQd --monte-carlo --trials 010 --json", {"\"deals\": 10,"});  // decimal, not octal
  expect_output("equity --game shortdeck AsKs QhQd --json", {"\"game\": \"shortdeck\"", "\"deals\": 201376,"});
}

TEST(Cli, TablesWritesOnlyWhatIsMissing) {
  test_util::TempDir dir;
  const std::string args = "tables --dir " + dir.path().string() + " --only ";
  const CliRun first = expect_output(args + "six-plus-5.bin", {"six-plus-5.bin: 248720 bytes, generated"});
  EXPECT_NE(first.err.find("pokermath: six-plus-5.bin:"), std::string::npos) << first.err;  // progress
  expect_output(args + "six-plus-5.bin --json", {"\"generated\": false"});
  const CliRun bad = run(args + "omaha.bin");
  EXPECT_EQ(bad.exit_code, 2);
  EXPECT_NE(bad.err.find("unknown table 'omaha.bin'"), std::string::npos) << bad.err;
}

TEST(Cli, HelpAndVersion) {
  expect_output("--help", {"eval", "payout", "history", "Examples:"});
  expect_output("eval --help", {"--json"});
  expect_output("payout --help", {"--ranks"});
  expect_output("history --help", {"--include-partial"});
  expect_output("omaha outs --help", {"Examples:\n  pokermath omaha outs AhKh9c8c Qh7h2d\n"});
  EXPECT_EQ(expect_output("--version", {}).out.rfind("pokermath ", 0), 0u);
  const CliRun bare = run("");
  EXPECT_EQ(bare.exit_code, 2);
  EXPECT_NE(bare.err.find("eval"), std::string::npos);  // the usage, on stderr
}

TEST(CliPayout, PrintsEachPlayersWinningsAndTheSidePots) {
  const CliRun r = run("payout --bets 100,60,40 --ranks 3,7,7");
  EXPECT_EQ(r.exit_code, 0) << r.err;
  EXPECT_EQ(r.out,
            "player       bet      rank      wins       net\n"
            "     1       100         3        40       -60\n"
            "     2        60         7       100       +40\n"
            "     3        40         7        60       +20\n"
            "\n"
            "main pot           120  players 1 2 3   won by 2 3 (split)\n"
            "side pot 1          40  players 1 2     won by 2\n"
            "side pot 2          40  players 1       returned to 1 (nobody called it)\n");
  EXPECT_EQ(run("payout --bets 100 60 40 --ranks 3 7 7").out, r.out);
  const CliRun json = expect_output("payout --bets 10,10,10,1 --ranks 5,5,5,2 --json",
                                    {"\"wins\": 11,", "\"pot\": \"main pot\",\n      \"amount\": 4,",
                                     "\"pot\": \"side pot 1\",\n      \"amount\": 27,", "\"total\": 31"});
  EXPECT_EQ(json.out.front(), '{');
}

TEST(CliHistory, PrintsTheNewLinesAndWhereToResume) {
  test_util::TempDir dir;
  const std::string file = (dir / "hh.txt").string();
  test_util::write_bytes(file, "\xEF\xBB\xBFHand #1\r\n\r\n  Seat 1: caf\xC3\xA9  \r\nSeat 2: b");
  const CliRun first = run("history " + file);
  EXPECT_EQ(first.exit_code, 0) << first.err;
  EXPECT_EQ(first.out,
            "Hand #1\n"
            "Seat 1: caf\xC3\xA9\n"
            "-- 2 lines (UTF-8); resume with --from 33\n"
            "-- the last 9 bytes are an unfinished line, held back until its line end is written\n");
  test_util::append_bytes(file, "ob\r\n");
  expect_output("history " + file + " --from 33 --json",
                {"\"position\": 46,", "\"encoding\": \"UTF-8\",", "\"lines\": [\n    \"Seat 2: bob\"\n  ]"});
  EXPECT_EQ(run("history " + file + " --from 46").out, "-- 0 lines (UTF-8); resume with --from 46\n");

  const std::pair<std::string, std::string> cases[] = {
      {"history " + file + " --from 47", "position 47 is past the end of '" + file + "' (46 bytes)"},
      {"history " + file + " --from -1", "position -1 is negative"},
      {"history " + (dir / "none.txt").string(), "no such file: '" + (dir / "none.txt").string() + "'"},
      {"history", "file is required"},
  };
  for (const auto& [args, message] : cases) expect_bad_input(args, message);
}

TEST(Cli, RangeShowsMatrixCombinationsAndString) {
  const CliRun r = run("range QQ+,AKs,AKo");
  EXPECT_EQ(r.exit_code, 0) << r.err;
  EXPECT_EQ(r.out.rfind("range:        QQ+,AKs,AKo\n"
                        "combinations: 34 of 1326 (2.56%)\n"
                        "\n"
                        "AA   AKs  .    .    .    .    .    .    .    .    .    .    .\n"
                        "AKo  KK   .    .    .    .    .    .    .    .    .    .    .\n"
                        ".    .    QQ   .    .    .    .    .    .    .    .    .    .\n",
                        0),
            0u)
      << r.out;
  EXPECT_EQ(lines(r.out), 3 + 13 + 2);
  // KQ is both kinds; one combination of 77.
  expect_output("range 'KQ, 7h7d'", {"range:        KQs,KQo,7h7d\ncombinations: 17 of 1326 (1.28%)\n", "77*",
                                     "* marks a class held only in part"});
  expect_output("range 22+ A2s+ --json",
                {"\"range\": \"22+,A2s+\"", "\"classic\": \"22+,A2s+\"", "\"combinations\": 126", "\"A2s\": 4"});
}

TEST(Cli, OmahaRangesShowHoldingsTypesAndEquity) {
  expect_output("range --game omaha 'AA**:ds'", {"range:        AA**:ds\nholdings:     864 of 270725 (0.32%)\n",
                                                 "  double-suited        864  100.0%\n", "sample:        "});
  expect_output("range --game omaha5 'KK+@50' --json", {"\"range\": \"KK+@50\"", "\"of\": 2598960"});
  expect_output("equity --game omaha AsKsQhJh '9c9d**@50, 8h7h**' --board Ts6h2c", {"method:  exact"});
  expect_output("equity --game omaha6-hilo AsKsQhJhTc9c 'random' --monte-carlo --trials 4000 --json",
                {"\"game\": \"omaha6-hilo\"", "\"scoop\""});
  expect_output("omaha preflop --ranks TJQKA --top 3",
                {"classes:  330 (4845 holdings), exact", "   1  AcAdKhKs                6   73.20%\n"});
  expect_bad_input("omaha preflop --ranks TJQ", "a deck of 12 cards cannot deal two holdings of 4 and a board");
  expect_bad_input("omaha preflop --ranks TJX", "rank letters are");
  // The same equity from the table made in units, with its rank and percentile.
  test_util::TempDir dir;
  const std::string in_dir = " --ranks TJQKA --dir " + dir.path().string();
  expect_bad_input("omaha ranking AsAhKsKh" + in_dir, "make it with pokermath tables --omaha-preflop 4");
  expect_output("tables --omaha-preflop 4 --unit-boards 3" + in_dir,
                {"omaha4-preflop-TJQKA.bin: 6656 bytes, generated"});
  expect_output("omaha ranking AhAsKdKc" + in_dir + " --json",
                {"\"class\": \"AcAdKhKs\"", "\"equity\": 0.73198", "\"rank\": 1,", "\"classes\": 330"});
  expect_bad_input("omaha ranking AsAhKsKh9c" + in_dir, "no exact table");
  expect_bad_input("tables --omaha-preflop 4 --preflop", "makes its table alone");
}

TEST(Cli, RangeTopReadsTheBuiltInTables) {
  const CliRun equity = expect_output("range --top 4.3", {});
  EXPECT_EQ(equity.out.rfind("table:        equity\n"
                             "entry:        4.2% (the largest at or below 4.3%)\n"
                             "table text:   99+,AQs+,AKo\n"
                             "range:        99+,AQs+,AKo\n"
                             "combinations: 56 of 1326 (4.22%)\n",
                             0),
            0u)
      << equity.out;
  expect_output("range --top 0.1", {"entry:        0.45% (the first; none at or below 0.1%)\ntable text:   AA\n"});
  expect_output("range --top 15 --table groups --json", {"\"table\": \"groups\",\n  \"top\": 15.0,\n  \"key\": 14.3"});
  expect_output("range --top 40 --table brenmark", {"table text:   22+,A2s+,K2s+,Q7s+,J7s+,T7s+,97s+,86s+,75s+,64s+,"
                                                    "53s+,42s+,32s,A2o+,K8o+,Q9o+,J9o\n"});
  const CliRun short_deck = expect_output("range --top 100 --short-deck", {"combinations: 630 of 630 (100.00%)\n"});
  EXPECT_EQ(lines(short_deck.out), 6 + 9 + 2);  // a 9 x 9 matrix, A..6
}

TEST(Cli, RangeTopReadsARangeFile) {
  const range_test::ScratchDir dir("pokermath_cli_range");
  std::vector<std::string> file_lines = range_test::file_lines(range_test::all_cells());
  file_lines.insert(file_lines.begin(), "my order");
  const std::string path = dir.write("order.txt", file_lines);
  // AQs lies at 1.056 per cent, inside the margin of 3.5 / 169 points above 1.04.
  expect_output("range --file " + path + " --top 1.04", {"top:          1.04%\nrange:        AA,AQs+\n"});
  const CliRun short_deck = run("range --file " + path + " --top 1 --short-deck");
  EXPECT_EQ(short_deck.exit_code, 2);
  EXPECT_NE(short_deck.err.find("line 11: class '(A5)' is not in the short deck"), std::string::npos) << short_deck.err;
}

TEST(CliOmahaHutchison, ShowsEachStageWithItsSteps) {
  const CliRun r = run("omaha hutchison As Ah Ks Kh");
  EXPECT_EQ(r.exit_code, 0) << r.err;
  EXPECT_EQ(r.out,
            "hand:   As Ah Ks Kh\n"
            "count:  Hutchison points, high\n"
            "  suits                                 16\n"
            "    two hearts, ace high                +8\n"
            "    two spades, ace high                +8\n"
            "  pairs                                 34\n"
            "    pair of kings                      +16\n"
            "    pair of aces                       +18\n"
            "  straight potential                     4\n"
            "    A-K: span 1, ace on top: 8 - 4      +4\n"
            "  ace with low cards                     0\n"
            "    ace without a deuce to five          0\n"
            "points: 54\n");
  expect_output("omaha hutchison 3s3h3d4c --hilo",
                {"count:  Hutchison points, Hi/Lo\n", "three treys", "points: 11.5\n"});
  const CliRun high = expect_output(
      "omaha hutchison AcKcQcJc --json",
      {"\"count\": \"high\"", "\"points\": 21", "\"name\": \"suits\"", "\"reason\": \"four clubs\"", "\"points\": -2"});
  EXPECT_EQ(high.out.front(), '{');
  expect_output("omaha hutchison AcAdKhKs --hilo --json",
                {"\"count\": \"hilo\"", "\"points\": 1000.0", "\"high_only\": true", "\"name\": \"four high cards\""});
}

// The behaviour signature covers every value and exact equity the bench workloads compute: a change
// that alters one must say why and update it here.
TEST(CliBench, SignatureOfTheStandardWorkloads) {
  expect_output("bench --signature", {"signature: 3de55aebda048a0f\n"});
  expect_output("bench --signature --threads 1 --json", {"\"signature\": \"3de55aebda048a0f\""});
}

}  // namespace

TEST(CliAnalysis, WeightsByClassDistributionBoardHitsAndPictures) {
  const range_test::ScratchDir dir("pokermath_cli_analysis");
  const std::string svg = dir.file("out.svg");
  expect_output("range 'AA, KK@50, AKs@25' --svg " + svg,
                {"range:        AA,KK@50,AKs@25\ncombinations: 16 of 1326 (1.21%)\nweight:       10.00 combinations'"});
  EXPECT_NE(cli_run::slurp(svg).find("</svg>"), std::string::npos);
  // A range file's line may weigh its class.
  std::vector<std::string> file_lines = range_test::file_lines(range_test::all_cells());
  file_lines[1] += " @40";  // AKs
  expect_output("range --file " + dir.write("weighted.txt", file_lines) + " --top 1 --json",
                {"\"weighted\": \"AA,AKs@40\"", "\"AKs\": 1.6"});
  expect_output("equity 'QQ+,AKs@50' JJ --by-class --json",
                {"\"by_class\": [", "\"class\": \"AA\"", "\"combos\": [", "\"deal_weight\""});
  expect_output("equity 'QQ+,AKs' JJ --board Js7c2d --distribution",
                {"equity distribution of player 1 (QQ+,AKs) (22 combinations):\n  equity >= 80%: "});
  expect_output("board-hits 'QQ+,AK' Kh7c2d", {"combos:  27 (weight 27.00)", "  set                            3"});
  expect_output("board-hits 'QQ+,AK@50' Kh7c2d --json --svg " + svg,
                {"\"top pair, top kicker\": {\n      \"combos\": 12"});
  for (const auto& [args, message] : std::vector<std::pair<std::string, std::string>>{
           {"board-hits QQ+ Kh7c2d5s4s", "the board must have 3 or 4 cards, got 5"},
           {"range 'KK@120'", "0 < N <= 100, got '120'"},
           {"equity AsKs QQ --svg " + svg, "give one of them"},
           {"equity AsKs QQ --by-class --player 3", "--player 3: there are 2 players"},
           {"equity --game omaha AsKsQhJh random --by-class", "Hold'em"},
           {"equity AsKs QQ --by-class --svg /no/such/dir/x.svg", "cannot write the picture"}})
    expect_bad_input(args, message);
}

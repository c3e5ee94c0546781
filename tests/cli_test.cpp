// The pokermath program as a user runs it: output, JSON, help, version and exit codes.
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "cli_run.h"
#include "temp_dir.h"

namespace {

using cli_run::CliRun;
using cli_run::expect_bad_input;
using cli_run::lines;
using cli_run::run;

TEST(Cli, EvalPrintsClassCategoryBestFiveAndWords) {
  const CliRun r = run("eval As Ks Qs Js Ts");
  EXPECT_EQ(r.exit_code, 0) << r.err;
  EXPECT_EQ(r.out,
            "cards:          As Ks Qs Js Ts\n"
            "category:       straight flush\n"
            "best five:      As Ks Qs Js Ts\n"
            "description:    RoyalFlush \n"
            "class:          1 of 7462 (five-card class, 1 is the strongest)\n"
            "value:          7462 of 7462 (state machines, larger is stronger)\n"
            "category value: 36874 (seven-card table: 4096 x category + place in category)\n");
  const CliRun seven = run("eval AhAd 7c7s 2h Kd 7h");
  EXPECT_EQ(seven.exit_code, 0) << seven.err;
  EXPECT_NE(seven.out.find("category:       full house\n"), std::string::npos) << seven.out;
  EXPECT_NE(seven.out.find("best five:      7s 7h 7c Ah Ad\n"), std::string::npos) << seven.out;
  EXPECT_NE(seven.out.find("description:    full house 7 over Ace\n"), std::string::npos) << seven.out;
}

TEST(Cli, EvalJsonIsOneObject) {
  const CliRun r = run("eval 9c,9d,5h,5s,Kc,2d --json");
  EXPECT_EQ(r.exit_code, 0) << r.err;
  EXPECT_EQ(r.out.front(), '{');
  EXPECT_NE(r.out.find("\"category\": \"two pair\""), std::string::npos) << r.out;
  EXPECT_NE(r.out.find("\"description\": \"two pair 9 5 kicker King\""), std::string::npos) << r.out;
  EXPECT_NE(r.out.find("\"best_five\": ["), std::string::npos) << r.out;
}

TEST(Cli, BadInputIsOneLineAndExitCodeTwo) {
  const std::pair<const char*, const char*> cases[] = {
      {"eval As As Kd Qc Jh", "duplicate card 'As' at position 2"},
      {"eval Ax Kd Qc Jh Th", "bad card 'Ax' at position 1: suit must be one of c d h s"},
      {"eval As Kd Qc Jh", "expected 5 to 7 cards, got 4"},
      {"eval As Kd Qc Jh Th 9h 8h 7h", "expected 5 to 7 cards, got 8"},
      {"eval", "cards is required"},
      {"frobnicate", "frobnicate"},
  };
  for (const auto& [args, message] : cases) expect_bad_input(args, message);
}

TEST(Cli, EvalOtherGames) {
  const std::string dir =
      (std::filesystem::temp_directory_path() / ("pokermath_cli_tables_" + std::to_string(::getpid()))).string();
  const CliRun short_deck = run("eval --game shortdeck Ah 6d 7c 8s 9h --data-dir " + dir + " --json");
  EXPECT_EQ(short_deck.exit_code, 0) << short_deck.err;
  EXPECT_NE(short_deck.out.find("\"category\": \"straight\""), std::string::npos) << short_deck.out;
  EXPECT_NE(short_deck.out.find("\"value_52\": 4996"), std::string::npos) << short_deck.out;
  const CliRun china = run("eval --game china Ah 6d 7c 8s 9h 9d 9c --data-dir " + dir + " --json");
  EXPECT_NE(china.out.find("\"value\": 1129"), std::string::npos) << china.out;
  const CliRun lowball = run("eval --game lowball27 Ac 5d 4h 3s 2c --json");
  EXPECT_NE(lowball.out.find("\"value\": 785"), std::string::npos) << lowball.out;
  const std::pair<std::string, const char*> bad[] = {
      {"eval --game shortdeck 5h 6d 7c 8s 9h --data-dir " + dir, "card '5h' at position 1 is not in the short deck"},
      {"eval --game lowball27 7c 5d 4h 3s 2c 9d", "expected 5 cards, got 6"},
      {"eval --game omaha 7c 5d 4h 3s 2c", "--game"},
  };
  for (const auto& [args, message] : bad) expect_bad_input(args, message);
  std::filesystem::remove_all(dir);
}

TEST(Cli, TablesWritesOnlyWhatIsMissing) {
  const std::string dir =
      (std::filesystem::temp_directory_path() / ("pokermath_cli_gen_" + std::to_string(::getpid()))).string();
  const CliRun first = run("tables --dir " + dir + " --only six-plus-5.bin");
  EXPECT_EQ(first.exit_code, 0) << first.err;
  EXPECT_NE(first.out.find("six-plus-5.bin: 248720 bytes, generated"), std::string::npos) << first.out;
  EXPECT_NE(first.err.find("pokermath: six-plus-5.bin:"), std::string::npos) << first.err;  // progress
  const CliRun again = run("tables --dir " + dir + " --only six-plus-5.bin --json");
  EXPECT_NE(again.out.find("\"generated\": false"), std::string::npos) << again.out;
  const CliRun bad = run("tables --dir " + dir + " --only omaha.bin");
  EXPECT_EQ(bad.exit_code, 2);
  EXPECT_NE(bad.err.find("unknown table 'omaha.bin'"), std::string::npos) << bad.err;
  std::filesystem::remove_all(dir);
}

TEST(Cli, HelpAndVersion) {
  const CliRun help = run("--help");
  EXPECT_EQ(help.exit_code, 0);
  EXPECT_NE(help.out.find("eval"), std::string::npos);
  EXPECT_NE(help.out.find("Examples:"), std::string::npos);
  const CliRun eval_help = run("eval --help");
  EXPECT_EQ(eval_help.exit_code, 0);
  EXPECT_NE(eval_help.out.find("--json"), std::string::npos);
  const CliRun version = run("--version");
  EXPECT_EQ(version.exit_code, 0);
  EXPECT_EQ(version.out.rfind("pokermath ", 0), 0u);
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
  const CliRun spaced = run("payout --bets 100 60 40 --ranks 3 7 7");
  EXPECT_EQ(spaced.out, r.out);
}

TEST(CliPayout, JsonListsPlayersPotsAndTotal) {
  const CliRun r = run("payout --bets 10,10,10,1 --ranks 5,5,5,2 --json");
  EXPECT_EQ(r.exit_code, 0) << r.err;
  EXPECT_EQ(r.out.front(), '{');
  EXPECT_NE(r.out.find("\"wins\": 11,"), std::string::npos) << r.out;
  EXPECT_NE(r.out.find("\"pot\": \"main pot\",\n      \"amount\": 4,"), std::string::npos) << r.out;
  EXPECT_NE(r.out.find("\"pot\": \"side pot 1\",\n      \"amount\": 27,"), std::string::npos) << r.out;
  EXPECT_NE(r.out.find("\"total\": 31"), std::string::npos) << r.out;
}

TEST(CliPayout, BadInputIsOneLineAndExitCodeTwo) {
  const std::pair<const char*, const char*> cases[] = {
      {"payout --bets 100,60,40 --ranks 3,7", "bets and ranks differ in length: 3 bets, 2 ranks"},
      {"payout --bets 100,-60 --ranks 3,7", "bet -60 of player 2 is negative"},
      {"payout --bets 100,6x --ranks 3,7", "bad bet '6x' at position 2: expected a whole number"},
      {"payout --bets 1,2 --ranks 3,99999999999",
       "bad rank '99999999999' at position 2: expected a whole number that fits"},
      {"payout --bets 100,60", "--ranks is required"},
  };
  for (const auto& [args, message] : cases) expect_bad_input(args, message);
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
  const CliRun next = run("history " + file + " --from 33 --json");
  EXPECT_EQ(next.exit_code, 0) << next.err;
  EXPECT_NE(next.out.find("\"position\": 46,"), std::string::npos) << next.out;
  EXPECT_NE(next.out.find("\"encoding\": \"UTF-8\","), std::string::npos) << next.out;
  EXPECT_NE(next.out.find("\"lines\": [\n    \"Seat 2: bob\"\n  ]"), std::string::npos) << next.out;
  const CliRun nothing = run("history " + file + " --from 46");
  EXPECT_EQ(nothing.out, "-- 0 lines (UTF-8); resume with --from 46\n");

  const std::pair<std::string, std::string> cases[] = {
      {"history " + file + " --from 47", "position 47 is past the end of '" + file + "' (46 bytes)"},
      {"history " + file + " --from -1", "position -1 is negative"},
      {"history " + (dir / "none.txt").string(), "no such file: '" + (dir / "none.txt").string() + "'"},
      {"history", "file is required"},
  };
  for (const auto& [args, message] : cases) expect_bad_input(args, message);
}

TEST(CliRecords, HelpNamesTheCommandsAndTheirOptions) {
  const CliRun help = run("--help");
  EXPECT_NE(help.out.find("payout"), std::string::npos);
  EXPECT_NE(help.out.find("history"), std::string::npos);
  const CliRun payout = run("payout --help");
  EXPECT_EQ(payout.exit_code, 0);
  EXPECT_NE(payout.out.find("--ranks"), std::string::npos);
  const CliRun history = run("history --help");
  EXPECT_EQ(history.exit_code, 0);
  EXPECT_NE(history.out.find("--include-partial"), std::string::npos);
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

  const CliRun partial = run("range 'KQ, 7h7d'");  // KQ is both kinds; one combination of 77
  EXPECT_EQ(partial.exit_code, 0) << partial.err;
  EXPECT_NE(partial.out.find("range:        KQs,KQo,7h7d\ncombinations: 17 of 1326 (1.28%)\n"), std::string::npos)
      << partial.out;
  EXPECT_NE(partial.out.find("77*"), std::string::npos) << partial.out;
  EXPECT_NE(partial.out.find("* marks a class held only in part"), std::string::npos);

  const CliRun json = run("range 22+ A2s+ --json");
  EXPECT_EQ(json.exit_code, 0) << json.err;
  EXPECT_NE(json.out.find("\"range\": \"22+,A2s+\""), std::string::npos) << json.out;
  EXPECT_NE(json.out.find("\"classic\": \"22+,A2s+\""), std::string::npos) << json.out;
  EXPECT_NE(json.out.find("\"combinations\": 126"), std::string::npos) << json.out;
  EXPECT_NE(json.out.find("\"A2s\": 4"), std::string::npos) << json.out;
}

TEST(Cli, RangeTopReadsTheBuiltInTables) {
  const CliRun equity = run("range --top 4.3");
  EXPECT_EQ(equity.exit_code, 0) << equity.err;
  EXPECT_EQ(equity.out.rfind("table:        equity\n"
                             "entry:        4.2% (the largest at or below 4.3%)\n"
                             "table text:   99+,AQs+,AKo\n"
                             "range:        99+,AQs+,AKo\n"
                             "combinations: 56 of 1326 (4.22%)\n",
                             0),
            0u)
      << equity.out;

  const CliRun first = run("range --top 0.1");
  EXPECT_NE(first.out.find("entry:        0.45% (the first; none at or below 0.1%)\ntable text:   AA\n"),
            std::string::npos)
      << first.out;

  const CliRun groups = run("range --top 15 --table groups --json");
  EXPECT_EQ(groups.exit_code, 0) << groups.err;
  EXPECT_NE(groups.out.find("\"table\": \"groups\",\n  \"top\": 15.0,\n  \"key\": 14.3"), std::string::npos)
      << groups.out;

  const CliRun brenmark = run("range --top 40 --table brenmark");
  EXPECT_NE(brenmark.out.find("table text:   22+,A2s+,K2s+,Q7s+,J7s+,T7s+,97s+,86s+,75s+,64s+,53s+,42s+,32s,A2o+,"
                              "K8o+,Q9o+,J9o\n"),
            std::string::npos)
      << brenmark.out;

  const CliRun short_deck = run("range --top 100 --short-deck");
  EXPECT_EQ(short_deck.exit_code, 0) << short_deck.err;
  EXPECT_NE(short_deck.out.find("combinations: 630 of 630 (100.00%)\n"), std::string::npos) << short_deck.out;
  EXPECT_EQ(lines(short_deck.out), 6 + 9 + 2);  // a 9 x 9 matrix, A..6
}

TEST(Cli, RangeTopReadsARangeFile) {
  const auto path =
      std::filesystem::temp_directory_path() / ("pokermath_cli_range_" + std::to_string(::getpid()) + ".txt");
  {
    std::ofstream file(path);
    const std::string ranks = "AKQJT98765432";
    file << "my order\n";
    for (int row = 0; row < 13; ++row)
      for (int column = 0; column < 13; ++column)
        file << (row == column  ? std::string(2, ranks[row])
                 : column > row ? std::string{'(', ranks[row], ranks[column], ')'}
                                : std::string{ranks[column], ranks[row]})
             << "\n";
  }
  // AQs lies at 1.056 per cent, inside the margin of 3.5 / 169 points above 1.04.
  const CliRun r = run("range --file " + path.string() + " --top 1.04");
  EXPECT_EQ(r.exit_code, 0) << r.err;
  EXPECT_NE(r.out.find("top:          1.04%\nrange:        AA,AQs+\n"), std::string::npos) << r.out;
  const CliRun short_deck = run("range --file " + path.string() + " --top 1 --short-deck");
  EXPECT_EQ(short_deck.exit_code, 2);
  EXPECT_NE(short_deck.err.find("line 11: class '(A5)' is not in the short deck"), std::string::npos) << short_deck.err;
  std::filesystem::remove(path);
}

TEST(Cli, RangeBadInputIsOneLineAndExitCodeTwo) {
  const std::pair<const char*, const char*> cases[] = {
      {"range AA,AKx", "bad range item 'AKx' at position 2: suffix must be s (suited) or o (offsuit)"},
      {"range", "give a range expression, or --top P"},
      {"range ' , '", "the range expression is empty"},
      {"range --top 101", "bad percentage 101: must be between 0 and 100"},
      {"range --top x", "--top"},
      {"range AA --top 5", "excludes --top"},
      {"range --table groups", "--table requires --top"},
      {"range --top 5 --table other", "--table"},
      {"range --top 5 --table brenmark --short-deck", "the brenmark table is Hold'em only"},
      {"range --file missing.txt --top 5", "range file 'missing.txt' not found"},
      {"range --file ranking.dat --top 5", "range file 'ranking.dat': the name must end in .txt"},
  };
  for (const auto& [args, message] : cases) expect_bad_input(args, message);
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
  const CliRun hilo = run("omaha hutchison 3s3h3d4c --hilo");
  EXPECT_EQ(hilo.exit_code, 0) << hilo.err;
  EXPECT_NE(hilo.out.find("count:  Hutchison points, Hi/Lo\n"), std::string::npos) << hilo.out;
  EXPECT_NE(hilo.out.find("three treys"), std::string::npos) << hilo.out;
  EXPECT_NE(hilo.out.find("points: 11.5\n"), std::string::npos) << hilo.out;
}

TEST(CliOmahaHutchison, JsonHasTheStagesAndTheirSteps) {
  const CliRun high = run("omaha hutchison AcKcQcJc --json");
  EXPECT_EQ(high.exit_code, 0) << high.err;
  EXPECT_EQ(high.out.front(), '{');
  for (const char* field :
       {"\"count\": \"high\"", "\"points\": 21", "\"name\": \"suits\"", "\"reason\": \"four clubs\"", "\"points\": -2"})
    EXPECT_NE(high.out.find(field), std::string::npos) << field << " in " << high.out;
  const CliRun hilo = run("omaha hutchison AcAdKhKs --hilo --json");
  EXPECT_EQ(hilo.exit_code, 0) << hilo.err;
  for (const char* field :
       {"\"count\": \"hilo\"", "\"points\": 1000.0", "\"high_only\": true", "\"name\": \"four high cards\""})
    EXPECT_NE(hilo.out.find(field), std::string::npos) << field << " in " << hilo.out;
}

TEST(CliOmahaHutchison, BadInputIsOneLineAndExitCodeTwo) {
  const std::pair<const char*, const char*> cases[] = {
      {"omaha hutchison As Ah Ks", "expected 4 cards in an Omaha starting hand, got 3"},
      {"omaha hutchison AsAhKsKhQd --hilo", "expected 4 cards in an Omaha starting hand, got 5"},
      {"omaha hutchison As As Ks Kh", "duplicate card 'As' at position 2"},
      {"omaha hutchison Ax Ah Ks Kh", "bad card 'Ax' at position 1"},
      {"omaha hutchison", "hand is required"},
  };
  for (const auto& [args, message] : cases) expect_bad_input(args, message);
}

}  // namespace

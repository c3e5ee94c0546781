// The pre-flop, turn and five-card combination tables of PokerLogic: their files and messages, the
// equity report and its import, and the pokermath:: pre-flop table file. No large table is needed:
// the report lines here are answered from the table or by GetWinHandVsHand's symmetric shortcut.
#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <random>

#include "pokermath/pokermath.h"
#include "temp_dir.h"
#include "test_util.h"

namespace {

using EquityTable = std::map<std::pair<int, int>, int>;
using test_util::error_of;
using test_util::MessageCapture;
using test_util::read_bytes;
using test_util::TempDir;
using test_util::wide;

constexpr int kRiverBoards = 1712304;

// Little-endian int32 fields, written out byte by byte.
std::string record(std::initializer_list<int32_t> fields) {
  std::string bytes;
  for (const int32_t field : fields)
    for (int b = 0; b < 4; ++b) bytes += static_cast<char>(static_cast<uint32_t>(field) >> (8 * b) & 0xFF);
  return bytes;
}

int hand_key(int low, int high) { return low * 64 + high; }

// Every matchup of the report in its order: hero c1 < c2, then villain c3 < c4 sharing no card.
template <typename Visit>
void for_each_matchup(Visit visit) {
  test_util::for_each_set(2, 0, [&](const int* h) {
    test_util::for_each_set(2, 1ull << h[0] | 1ull << h[1], [&](const int* v) { visit(h[0], h[1], v[0], v[1]); });
  });
}

// The matchups GetWinHandVsHand answers with half the boards: a pair against the same pair, and
// two suited hands of the same ranks.
bool symmetric(int c1, int c2, int c3, int c4) {
  const int h1 = c1 % 13, h2 = c2 % 13, v1 = c3 % 13, v2 = c4 % 13;
  if (h1 == h2 && v1 == v2 && h1 == v1) return true;
  return c1 / 13 == c2 / 13 && c3 / 13 == c4 / 13 && h1 == v1 && h2 == v2;
}

// A report line built from the documented pieces.
std::string report_line(int number, int c1, int c2, int c3, int c4, double wins, double boards) {
  auto name = [](int card) { return pokermath::card_to_string(card); };
  char text[160];
  std::snprintf(text, sizeof text, "%10d %2d %2d %s %s VS %2d %2d %s %s %.1lf %.1lf %.3lf%%", number, c1, c2,
                name(c1).c_str(), name(c2).c_str(), c3, c4, name(c3).c_str(), name(c4).c_str(), wins, boards,
                wins / boards * 100);
  return text;
}

// ---- equity table files ------------------------------------------------------------------------

TEST(EquityTableFiles, AMissingFileIsReportedAndLoadsNothing) {
  TempDir dir;
  const CString path = wide(dir / "absent.dat");
  PokerLogic logic;
  MessageCapture messages;
  EXPECT_EQ(logic.load_equity_table(path), 0);
  EXPECT_EQ(logic.load_equity_turn_table(path), 0);
  EXPECT_EQ(messages.texts(),
            (std::vector<CString>{L"You need to download file " + path, L"You need to download file " + path}));
  EXPECT_TRUE(logic.m_equityTable.empty());
  EXPECT_TRUE(logic.m_equityTurnTable.empty());
}

TEST(EquityTableFiles, LoadingSkipsRecordsWithoutAPositiveValueAndKeepsTheFirstValue) {
  // Keys are not checked by the classic loaders; a last record cut short is ignored. The turn
  // loader reports with the same words. Loading adds to the table: what is there is kept.
  TempDir dir;
  test_util::write_bytes(dir / "t.dat", record({1, 2, 7}) + record({5, 70, 0}) + record({3, 4, -9}) +
                                            record({70, 200, 11}) + record({5, 70, 12}) + record({5, 70, 13}) +
                                            record({6, 7, 0x12345678}) + std::string(5, '\x01'));
  const std::vector<CString> warnings = {L"load_equity_table 5 70 0", L"load_equity_table 3 4 -9"};
  for (const bool turn : {false, true}) {
    PokerLogic logic;
    EquityTable& table = turn ? logic.m_equityTurnTable : logic.m_equityTable;
    auto load = [&] {
      return turn ? logic.load_equity_turn_table(wide(dir / "t.dat")) : logic.load_equity_table(wide(dir / "t.dat"));
    };
    table[{70, 200}] = 99;  // already there: kept
    table[{8, 9}] = 3;      // not in the file: kept
    MessageCapture messages;
    ASSERT_EQ(load(), 1);
    const EquityTable once = table;
    EXPECT_EQ(once, (EquityTable{{{1, 2}, 7}, {{5, 70}, 12}, {{6, 7}, 0x12345678}, {{8, 9}, 3}, {{70, 200}, 99}}))
        << "turn " << turn;
    EXPECT_EQ(messages.texts(), warnings);
    ASSERT_EQ(load(), 1);
    EXPECT_EQ(table, once) << "turn " << turn;
  }
}

TEST(EquityTableFiles, SavingWritesPositiveEntriesInKeyOrder) {
  TempDir dir;
  PokerLogic logic;
  const EquityTable table = {{{900, 5}, 1}, {{5, 900}, -4}, {{5, 70}, 3424608}, {{5, 69}, 0}, {{3, 2000}, 0x01020304}};
  logic.m_equityTable = logic.m_equityTurnTable = table;
  const std::string expected = record({3, 2000, 0x01020304}) + record({5, 70, 3424608}) + record({900, 5, 1});
  MessageCapture messages;
  EXPECT_EQ(logic.save_equity_table(wide(dir / "pre.dat")), 1);
  EXPECT_TRUE(messages.texts().empty());
  EXPECT_EQ(logic.save_equity_turn_table(wide(dir / "turn.dat")), 1);
  EXPECT_EQ(messages.texts(), (std::vector<CString>{L"save_equity_table 5 69 0", L"save_equity_table 5 900 -4"}));
  EXPECT_EQ(read_bytes(dir / "pre.dat"), expected);
  EXPECT_EQ(read_bytes(dir / "turn.dat"), expected);
}

TEST(EquityTableFiles, SaveLoadSaveIsByteIdentical) {
  TempDir dir;
  std::mt19937 engine(43);
  PokerLogic original;
  while (original.m_equityTable.size() < 20000)
    original.m_equityTable[{static_cast<int>(engine() % 3316), static_cast<int>(engine() % 3316)}] =
        1 + static_cast<int>(engine() % 0x7FFFFFFF);
  ASSERT_EQ(original.save_equity_table(wide(dir / "a.dat")), 1);
  PokerLogic copy;
  ASSERT_EQ(copy.load_equity_table(wide(dir / "a.dat")), 1);
  EXPECT_EQ(copy.m_equityTable, original.m_equityTable);
  ASSERT_EQ(copy.save_equity_table(wide(dir / "b.dat")), 1);
  EXPECT_EQ(read_bytes(dir / "a.dat").size(), 20000u * 12);
  EXPECT_EQ(read_bytes(dir / "b.dat"), read_bytes(dir / "a.dat"));
}

// ---- the equity report and its import --------------------------------------------------------------

TEST(EquityReport, WritesOnlyTheMatchupsWithoutAPositiveValueNumberedInOrder) {
  // The pre-flop table holds every matchup except the 1,014 symmetric ones (value 1), so that the
  // report needs no enumeration. The report's order is ascending key order: each entry goes at the end.
  PokerLogic logic;
  for_each_matchup([&](int c1, int c2, int c3, int c4) {
    if (!symmetric(c1, c2, c3, c4))
      logic.m_equityTable.emplace_hint(logic.m_equityTable.end(), std::pair{hand_key(c1, c2), hand_key(c3, c4)}, 1);
  });
  ASSERT_EQ(logic.m_equityTable.size(), 1624350u - 1014);
  // A value that is not positive does not count as present: the line is written, with the value.
  logic.m_equityTable[{hand_key(0, 1), hand_key(2, 3)}] = 0;
  logic.m_equityTable[{hand_key(0, 1), hand_key(2, 4)}] = -3;

  TempDir dir;
  MessageCapture messages;
  EXPECT_EQ(logic.generate_equity_table(wide(dir / "report.txt")), 0);
  EXPECT_TRUE(messages.texts().empty());
  std::ifstream in(dir / "report.txt");
  std::vector<std::string> lines;
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  ASSERT_EQ(lines.size(), 1016u);
  EXPECT_EQ(lines[0], "         1  0  1 2c 3c VS  2  3 4c 5c 0.0 1712304.0 0.000%");
  EXPECT_EQ(lines[1], "         2  0  1 2c 3c VS  2  4 4c 6c -1.5 1712304.0 -0.000%");
  EXPECT_EQ(lines[2], "         3  0  1 2c 3c VS 13 14 2d 3d 856152.0 1712304.0 50.000%");

  size_t next = 2;
  for_each_matchup([&](int c1, int c2, int c3, int c4) {
    if (!symmetric(c1, c2, c3, c4) || next >= lines.size()) return;
    EXPECT_EQ(lines[next], report_line(static_cast<int>(next + 1), c1, c2, c3, c4, kRiverBoards / 2, kRiverBoards));
    ++next;
  });
  EXPECT_EQ(next, lines.size());
  EXPECT_EQ(logic.m_equityTable.size(), 1624350u - 1014) << "the report does not fill the table";
}

TEST(EquityReport, AnExistingFileIsLeftUntouched) {
  TempDir dir;
  test_util::write_bytes(dir / "report.txt", "hours of work\n");
  PokerLogic logic;
  MessageCapture messages;
  EXPECT_EQ(logic.generate_equity_table(wide(dir / "report.txt")), 0);
  EXPECT_EQ(read_bytes(dir / "report.txt"), "hours of work\n");
  EXPECT_EQ(messages.texts(), std::vector<CString>{L"Error: Can not open file " + wide(dir / "report.txt")});
  EXPECT_EQ(logic.generate_equity_table(wide(dir / "no" / "such" / "dir.txt")), 0);
  EXPECT_EQ(messages.texts().size(), 2u);
}

TEST(EquityReport, ImportStoresTheComplementOfTheWinsUntilTheLastMatchup) {
  TempDir dir;
  PokerLogic logic;
  // No report yet: an empty one is created and nothing is imported.
  EXPECT_EQ(logic.generate_equity_turn_table(wide(dir / "report.txt")), 0);
  EXPECT_TRUE(std::filesystem::exists(dir / "report.txt"));
  EXPECT_EQ(read_bytes(dir / "report.txt"), "");
  EXPECT_EQ(logic.generate_equity_turn_table(wide(dir / "report.txt")), 1);
  EXPECT_TRUE(logic.m_equityTurnTable.empty());

  test_util::write_bytes(dir / "report.txt",
                         "         1  0  1 2c 3c VS  2  3 4c 5c 60000.5 194580.0 30.836%\n"
                         "         2  0  1 2c 3c VS  2  3 4c 5c 100.0 194580.0 0.051%\n"  // pair seen: kept first
                         "         3  0  1 2c 3c VS  2  4 4c 6c 194580.0 194580.0 100.000%\r\n"  // complement 0
                         "not a report line\n"
                         "         5  0  1 2c 3c VS  2  9 4c Jc\n"  // cut short by an interrupted run
                         "         6  0  1 2c 3c VS  2  5 4c 7c 97290.0 194580.0 50.000%\r\n"
                         "   1624350 50 51 Ks As VS 48 49 Js Qs 0.5 194580.0 0.000%\n"
                         "   1624351  0  1 2c 3c VS  2  6 4c 8c 0.0 194580.0 0.000%\n");
  MessageCapture messages;
  EXPECT_EQ(logic.generate_equity_turn_table(wide(dir / "report.txt")), 1);
  EXPECT_TRUE(messages.texts().empty());
  EXPECT_EQ(logic.m_equityTurnTable, (EquityTable{{{hand_key(0, 1), hand_key(2, 3)}, 269159},
                                                  {{hand_key(0, 1), hand_key(2, 5)}, 194580},
                                                  {{hand_key(50, 51), hand_key(48, 49)}, 389159}}));
  EXPECT_TRUE(logic.m_equityTable.empty());
}

// ---- the five-card combination table ------------------------------------------------------------------

int combination_key(const int* c) { return (((c[0] * 64 + c[1]) * 64 + c[2]) * 64 + c[3]) * 64 + c[4]; }

class CombinationTable : public ::testing::Test {
 protected:
  static constexpr int64_t kFileBytes = 20791680;

  // One computed table and its file, shared by the tests.
  static void SetUpTestSuite() {
    s_dir = new TempDir;
    s_logic = new PokerLogic;
    MessageCapture messages;
    s_computed = s_logic->generate_PokerCombinations_table(wide(path()));
    s_messages = messages.texts().size();
    s_bytes = read_bytes(path());
  }
  static void TearDownTestSuite() {
    delete s_logic;
    delete s_dir;
  }
  static std::filesystem::path path() { return *s_dir / "combinations.dat"; }

  static inline TempDir* s_dir = nullptr;
  static inline PokerLogic* s_logic = nullptr;
  static inline int s_computed = -1;
  static inline size_t s_messages = 0;
  static inline std::string s_bytes;
};

TEST_F(CombinationTable, HoldsTheClassOfEveryFiveCardHandInKeyOrder) {
  EXPECT_EQ(s_computed, 0);
  EXPECT_EQ(s_messages, 0u);
  const std::map<int, int>& table = s_logic->m_combinations;
  ASSERT_EQ(table.size(), 2598960u);
  auto it = table.begin();
  int64_t mismatches = 0;
  test_util::for_each_set(5, 0, [&](const int* c) {
    const std::vector<int> w = test_util::words({c, c + 5});
    if ((it->first != combination_key(c) || it->second != eval_5hand_fast(w[0], w[1], w[2], w[3], w[4])) &&
        ++mismatches < 5)
      ADD_FAILURE() << test_util::names({c, c + 5}) << ": entry " << it->first << " -> " << it->second;
    ++it;
  });
  EXPECT_EQ(mismatches, 0);
}

TEST_F(CombinationTable, FileHoldsEveryEntryAsAnEightByteRecord) {
  ASSERT_EQ(static_cast<int64_t>(s_bytes.size()), kFileBytes);
  // 2c3c4c5c6c (key 270,532) is the 6-high straight flush, class 9; the entries follow in key order.
  EXPECT_EQ(s_bytes.substr(0, 8), record({270532, 9}));
  std::string expected;
  expected.reserve(s_bytes.size());
  for (const auto& [key, rank] : s_logic->m_combinations) expected += record({key, rank});
  EXPECT_TRUE(expected == s_bytes);
}

TEST_F(CombinationTable, ACompleteFileIsLoaded) {
  PokerLogic logic;
  logic.m_combinations[1] = 5;  // cleared first
  MessageCapture messages;
  EXPECT_EQ(logic.generate_PokerCombinations_table(wide(path())), 1);
  EXPECT_TRUE(messages.texts().empty());
  EXPECT_TRUE(logic.m_combinations == s_logic->m_combinations);
}

TEST_F(CombinationTable, AFileOneRecordShortIsRecomputedAndRewritten) {
  TempDir dir;
  test_util::write_bytes(dir / "short.dat", s_bytes.substr(0, s_bytes.size() - 8));
  PokerLogic logic;
  EXPECT_EQ(logic.generate_PokerCombinations_table(wide(dir / "short.dat")), 0);
  EXPECT_TRUE(logic.m_combinations == s_logic->m_combinations);
  EXPECT_TRUE(read_bytes(dir / "short.dat") == s_bytes);
}

TEST_F(CombinationTable, RecordsWithoutAClassAreReportedAndSkipped) {
  TempDir dir;
  std::string bytes = s_bytes;
  bytes.replace(4, 4, record({0}));           // the class of the first record
  bytes.replace(12, 4, record({-3}));         // and of the second
  bytes.replace(16, 4, bytes.substr(24, 4));  // the third record repeats the fourth's key: the first wins
  test_util::write_bytes(dir / "bad.dat", bytes);
  PokerLogic logic;
  MessageCapture messages;
  EXPECT_EQ(logic.generate_PokerCombinations_table(wide(dir / "bad.dat")), 1);
  EXPECT_EQ(messages.texts(), (std::vector<CString>{L"load_PokerCombinations_table 270532 0",
                                                    L"load_PokerCombinations_table 270533 -3"}));
  EXPECT_EQ(logic.m_combinations.size(), 2598960u - 3);
  for (const int key : {270532, 270533, 270534}) EXPECT_FALSE(logic.m_combinations.contains(key)) << key;
  EXPECT_EQ(logic.m_combinations.at(270535), s_logic->m_combinations.at(270534));

  // Saving leaves out classes below 1.
  logic.m_combinations[270532] = 0;
  EXPECT_EQ(logic.save_PokerCombinations_table(wide(dir / "saved.dat")), 1);
  EXPECT_EQ(std::filesystem::file_size(dir / "saved.dat"), (2598960u - 3) * 8);
}

// ---- the pokermath:: pre-flop table file ---------------------------------------------------------------

TEST(PreflopTableFile, RoundTripsTheClassicFormat) {
  TempDir dir;
  PokerLogic logic;
  logic.m_equityTable = {{{hand_key(0, 1), hand_key(2, 3)}, 1},
                         {{hand_key(12, 25), hand_key(11, 24)}, 2800000},
                         {{hand_key(50, 51), hand_key(48, 49)}, 3424608}};
  MessageCapture messages;
  pokermath::save_preflop_table(logic, dir / "pre.dat");
  ASSERT_EQ(logic.save_equity_table(wide(dir / "classic.dat")), 1);
  EXPECT_EQ(read_bytes(dir / "pre.dat"), read_bytes(dir / "classic.dat"));
  EXPECT_FALSE(std::filesystem::exists(dir / "pre.dat.tmp"));

  PokerLogic loaded;
  loaded.m_equityTable[{1, 2}] = 5;  // replaced
  EXPECT_EQ(pokermath::load_preflop_table(loaded, dir / "pre.dat"), 3u);
  EXPECT_EQ(loaded.m_equityTable, logic.m_equityTable);
  EXPECT_TRUE(messages.texts().empty());
}

TEST(PreflopTableFile, RefusesMissingAndDamagedFilesNamingTheRecord) {
  TempDir dir;
  const int k05 = hand_key(0, 5), k16 = hand_key(1, 6);
  const std::string good = record({k05, k16, 1000});
  const struct {
    std::string bytes, error;
  } cases[] = {
      {good + "x", "its 13 bytes are not a whole number of 12-byte records"},
      {good + record({5, 70, 0}), "record 2 (5, 70, 0): value 0 is not in 1..3424608"},
      {record({k05, k16, 3424609}), "record 1 (5, 70, 3424609): value 3424609 is not in 1..3424608"},
      {record({64, k16, 1}), "record 1 (64, 70, 1): hero key 64 is not a hand key"},  // 1 then 0: not ordered
      {record({52, k16, 1}), "record 1 (52, 70, 1): hero key 52 is not a hand key"},  // no card 52
      {record({-1, k16, 1}), "hero key -1 is not a hand key"},
      {record({k05, 3 * 64 + 3, 1}), "record 1 (5, 195, 1): villain key 195 is not a hand key"},
      {record({k05, hand_key(5, 9), 1}), "record 1 (5, 329, 1): the hands share a card"},
      {good + good, "record 2 (5, 70, 1000): the key pair repeats an earlier record"},
  };
  MessageCapture messages;
  for (const auto& c : cases) {
    test_util::write_bytes(dir / "bad.dat", c.bytes);
    PokerLogic logic;
    logic.m_equityTable[{1, 2}] = 5;
    const std::string what = error_of([&] { pokermath::load_preflop_table(logic, dir / "bad.dat"); });
    EXPECT_NE(what.find((dir / "bad.dat").string()), std::string::npos) << what;
    EXPECT_NE(what.find(c.error), std::string::npos) << what;
    EXPECT_EQ(logic.m_equityTable, (EquityTable{{{1, 2}, 5}})) << c.error;
  }
  PokerLogic logic;
  EXPECT_EQ(error_of([&] { pokermath::load_preflop_table(logic, dir / "absent.dat"); }),
            "pre-flop table file '" + (dir / "absent.dat").string() + "' is missing");
  EXPECT_TRUE(messages.texts().empty());
}

TEST(PreflopTableFile, SavingRefusesEntriesThatCouldNotBeLoadedBackAndUnwritablePaths) {
  TempDir dir;
  PokerLogic logic;
  logic.m_equityTable = {{{hand_key(0, 1), hand_key(2, 3)}, 10}, {{hand_key(0, 5), hand_key(1, 6)}, 0}};
  EXPECT_EQ(error_of([&] { pokermath::save_preflop_table(logic, dir / "pre.dat"); }),
            "cannot save pre-flop table entry (5, 70, 0): value 0 is not in 1..3424608");
  EXPECT_FALSE(std::filesystem::exists(dir / "pre.dat"));

  logic.m_equityTable.erase({hand_key(0, 5), hand_key(1, 6)});
  const auto unwritable = dir / "no" / "such" / "pre.dat";
  EXPECT_EQ(error_of([&] { pokermath::save_preflop_table(logic, unwritable); }),
            "cannot write pre-flop table file '" + unwritable.string() + "': No such file or directory");
}

}  // namespace

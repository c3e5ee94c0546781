// Loading the state-machine table files: the checks, the one message, and the process-wide slots.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstring>
#include <filesystem>
#include <fstream>

#include "pokermath/pokermath.h"

namespace {

namespace fs = std::filesystem;

// Runs each test in its own empty directory, since the loaders open bare file names.
class StateMachineLoader : public testing::Test {
 protected:
  void SetUp() override {
    m_previous_dir = fs::current_path();
    m_dir = fs::temp_directory_path() / ("pokermath_loader_" + std::to_string(::getpid()));
    fs::create_directories(m_dir);
    fs::current_path(m_dir);
    m_previous_handler = SetMessageHandler([this](const CString& text) { m_messages.push_back(text); });
    fsm5::Free();
  }
  void TearDown() override {
    fsm5::Free();
    SetMessageHandler(m_previous_handler);
    fs::current_path(m_previous_dir);
    fs::remove_all(m_dir);
  }

  // Writes a table file: header fields as given, then `entries` 32-bit values (i / 2, states that
  // stay inside a table of two decks or more), cut to `body_bytes` when that is not negative.
  static void write_file(const char* name, const char* magic, int32_t deck, int32_t cards, uint64_t entries,
                         int64_t body_bytes = -1, int64_t header_bytes = 32) {
    char header[32] = {};
    std::memcpy(header, magic, std::strlen(magic));
    std::memcpy(header + 16, &deck, 4);
    std::memcpy(header + 20, &cards, 4);
    std::memcpy(header + 24, &entries, 8);
    std::ofstream out(name, std::ios::binary);
    out.write(header, header_bytes);
    std::vector<int32_t> body(entries);
    for (size_t i = 0; i < body.size(); ++i) body[i] = static_cast<int32_t>(i / 2);
    out.write(reinterpret_cast<const char*>(body.data()),
              body_bytes < 0 ? static_cast<std::streamsize>(body.size() * 4) : body_bytes);
  }

  std::vector<CString> m_messages;
  fs::path m_dir, m_previous_dir;
  MessageHandler m_previous_handler;
};

TEST_F(StateMachineLoader, MissingFileIsReportedAndRetried) {
  EXPECT_EQ(fsm5::load_fsm7(), 0);
  ASSERT_EQ(m_messages.size(), 1u);
  EXPECT_EQ(m_messages[0], L"Error: Can not open file six-plus-7.bin");
  EXPECT_EQ(fsm5::six_plus_fsm7, nullptr);
  write_file("six-plus-7.bin", "OFSM Six Plus 7", 36, 7, 100);
  EXPECT_EQ(fsm5::load_fsm7(), 1);  // the next call tries again
  EXPECT_EQ(fsm5::six_plus_fsm7[99], 49);
  EXPECT_EQ(m_messages.size(), 1u);
}

TEST_F(StateMachineLoader, DamagedFilesFailSilently) {
  write_file("texas-7.bin", "OFSM Texas 7", 52, 7, 10, -1, 20);  // short header
  EXPECT_EQ(load_texasfsm7(), 0);
  write_file("texas-7.bin", "OFSM Omaha 7", 52, 7, 10);  // another table's magic
  EXPECT_EQ(load_texasfsm7(), 0);
  write_file("texas-7.bin", "OFSM Texas 7", 36, 7, 10);  // the right magic, the wrong deck
  EXPECT_EQ(load_texasfsm7(), 0);
  write_file("texas-7.bin", "OFSM Texas 7", 52, 5, 10);  // the wrong number of cards
  EXPECT_EQ(load_texasfsm7(), 0);
  write_file("texas-7.bin", "OFSM Texas 7", 52, 7, 10, 39);  // a body one byte short
  EXPECT_EQ(load_texasfsm7(), 0);
  write_file("texas-7.bin", "OFSM Texas 7", 52, 7, 103);  // smaller than two decks: no walk fits
  EXPECT_EQ(load_texasfsm7(), 0);
  write_file("texas-7.bin", "OFSM Texas 7", 52, 7, 200);
  std::fstream patch("texas-7.bin", std::ios::binary | std::ios::in | std::ios::out);
  const int32_t outside = 149;  // a walk from state 149 reads entry 149 + 51, past the end
  patch.seekp(32 + 4 * 10);
  patch.write(reinterpret_cast<const char*>(&outside), 4);
  patch.close();
  EXPECT_EQ(load_texasfsm7(), 0);
  EXPECT_TRUE(m_messages.empty());
  EXPECT_EQ(texasfsm7::table, nullptr);
}

TEST_F(StateMachineLoader, ATableInMemoryIsKeptUntilFreed) {
  write_file("six-plus-5.bin", "OFSM Six Plus 5", 36, 5, 100);
  EXPECT_EQ(fsm5::load_fsm5(), 1);
  const int* first = fsm5::six_plus_fsm5;
  fs::remove("six-plus-5.bin");
  EXPECT_EQ(fsm5::load_fsm5(), 1);  // already in memory: the file is not read again
  EXPECT_EQ(fsm5::six_plus_fsm5, first);
  fsm5::Free();
  EXPECT_EQ(fsm5::six_plus_fsm5, nullptr);
  EXPECT_EQ(fsm5::load_fsm5(), 0);
  EXPECT_EQ(m_messages.size(), 1u);
}

TEST_F(StateMachineLoader, TheApiGeneratesAndValidatesFiles) {
  using pokermath::TableFile;
  EXPECT_FALSE(pokermath::table_file_valid(m_dir, TableFile::SixPlus5));
  EXPECT_TRUE(pokermath::generate_table_file(m_dir, TableFile::SixPlus5));
  EXPECT_TRUE(pokermath::table_file_valid(m_dir, TableFile::SixPlus5));
  EXPECT_FALSE(pokermath::generate_table_file(m_dir, TableFile::SixPlus5));  // already valid: kept
  const auto bytes = fs::file_size(m_dir / "six-plus-5.bin");
  fs::resize_file(m_dir / "six-plus-5.bin", bytes - 4);
  EXPECT_FALSE(pokermath::table_file_valid(m_dir, TableFile::SixPlus5));
  EXPECT_TRUE(pokermath::generate_table_file(m_dir, TableFile::SixPlus5));
  EXPECT_EQ(fs::file_size(m_dir / "six-plus-5.bin"), bytes);

  // The same bytes every run.
  std::ifstream a(m_dir / "six-plus-5.bin", std::ios::binary);
  const std::string first((std::istreambuf_iterator<char>(a)), {});
  EXPECT_TRUE(pokermath::generate_table_file(m_dir, TableFile::SixPlus5, true));
  std::ifstream b(m_dir / "six-plus-5.bin", std::ios::binary);
  EXPECT_EQ(std::string((std::istreambuf_iterator<char>(b)), {}), first);

  pokermath::load_table(TableFile::SixPlus5, m_dir);
  EXPECT_NE(fsm5::six_plus_fsm5, nullptr);
  EXPECT_THROW(pokermath::load_table(TableFile::SevenCardLookup, m_dir), pokermath::Error);
  EXPECT_EQ(pokermath::table_file_from_name("omaha-7.bin"), TableFile::Omaha7);
  try {
    pokermath::table_file_from_name("omaha.bin");
    FAIL();
  } catch (const pokermath::Error& e) {
    EXPECT_STREQ(e.what(),
                 "unknown table 'omaha.bin': the tables are texas-7.bin, omaha-7.bin, six-plus-5.bin, "
                 "six-plus-7.bin, OrvalisHR.dat");
  }
}

TEST(StateMachineData, CheckedBuildsStopOnAnUnloadedTableOrABadCode) {
#ifdef POKERMATH_ASSERT
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  fsm5::Free();
  const int cards[7] = {8, 9, 10, 11, 12, 21, 22}, bad[7] = {0, 1, 2, 3, 52, 5, 6};  // Tc Jc Qc Kc Ac ..
  EXPECT_DEATH(eval_rank5_via_fsm5(cards), "pokermath: eval_rank5_via_fsm5 expects \"six-plus-5.bin\" loaded first");
  EXPECT_DEATH(LookupFsm5(bad), "pokermath: LookupFsm5 expects five card codes 0..51");
  EXPECT_DEATH(PokerLogic().LookupSingleHands(bad), "LookupSingleHands expects seven card codes 0..51");
#else
  GTEST_SKIP() << "precondition checks are compiled only with POKERMATH_ASSERT";
#endif
}

TEST(StateMachineData, DataDirectoryFollowsTheEnvironment) {
  ::setenv("POKERMATH_DATA_DIR", "/tmp/pm-data", 1);
  EXPECT_EQ(pokermath::default_data_directory(), fs::path("/tmp/pm-data"));
  ::unsetenv("POKERMATH_DATA_DIR");
  ::setenv("XDG_CACHE_HOME", "/tmp/pm-cache", 1);
  EXPECT_EQ(pokermath::default_data_directory(), fs::path("/tmp/pm-cache/pokermath"));
  ::unsetenv("XDG_CACHE_HOME");
  ::setenv("HOME", "/tmp/pm-home", 1);
  EXPECT_EQ(pokermath::default_data_directory(), fs::path("/tmp/pm-home/.cache/pokermath"));
}

}  // namespace

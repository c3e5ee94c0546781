// Damaged, missing and half-written tables: through the pokermath:: API and the CLI a damaged table
// is found and written again, never read; through the classic loaders it never crashes a walk (the
// sanitizer build runs every walk). Concurrent writers and killed writers leave correct files.
#include <gtest/gtest.h>
#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cmath>
#include <cstring>
#include <random>
#include <thread>

#include "cli_run.h"
#include "pokermath/pokermath.h"
#include "temp_dir.h"
#include "test_util.h"

namespace {

namespace fs = std::filesystem;
using pokermath::TableFile;
using test_util::read_bytes;
using test_util::TempDir;
using test_util::write_bytes;

// The two short-deck machines, generated once: small enough to damage many times.
const fs::path& pristine_dir() {
  static TempDir dir;
  static const bool made = [] {
    for (TableFile file : {TableFile::SixPlus5, TableFile::SixPlus7}) pokermath::generate_table_file(dir.path(), file);
    return true;
  }();
  (void)made;
  return dir.path();
}

void copy_tables(const fs::path& from, const fs::path& to) {
  for (const char* name : {"six-plus-5.bin", "six-plus-7.bin", "manifest.txt"})
    fs::copy_file(from / name, to / name, fs::copy_options::overwrite_existing);
}

// Walks every short-deck five-card hand, and random seven-card ones, through whatever the classic
// loaders accepted from the current directory. Under AddressSanitizer a read outside a table stops
// the test.
void walk_classic_machines() {
  const int loaded5 = fsm5::load_fsm5(), loaded7 = fsm5::load_fsm7();
  int64_t sum = 0;
  if (loaded5) {
    int c[5];
    for (c[0] = 0; c[0] < 52; ++c[0])
      for (c[1] = c[0] + 1; c[1] < 52; ++c[1])
        for (c[2] = c[1] + 1; c[2] < 52; ++c[2])
          for (c[3] = c[2] + 1; c[3] < 52; ++c[3])
            for (c[4] = c[3] + 1; c[4] < 52; ++c[4])
              if (std::all_of(c, c + 5, [](int card) { return card % 13 >= 4; })) sum += eval_rank5_via_fsm5(c);
  }
  if (loaded7) {
    std::mt19937 engine(7);
    std::vector<int> hand;
    for (int i = 0; i < 100000; ++i) {
      Int64ToVec(GetRandomHand(7, engine), hand);
      sum += eval_rank7_via_fsm7(hand.data());
    }
  }
  fsm5::Free();
  EXPECT_GE(sum, 0);
}

struct Damage {
  const char* what;
  std::function<void(std::string& bytes)> apply;
};

uint64_t read_u64(const std::string& bytes, size_t at) {
  uint64_t v;
  std::memcpy(&v, bytes.data() + at, 8);
  return v;
}

std::vector<Damage> damages() {
  std::vector<Damage> list = {
      {"zero-filled", [](std::string& b) { std::fill(b.begin(), b.end(), '\0'); }},
      {"cut in half", [](std::string& b) { b.resize(b.size() / 2); }},
      {"one byte short", [](std::string& b) { b.pop_back(); }},
      {"a byte more", [](std::string& b) { b.push_back('\0'); }},
      {"no entries in the header", [](std::string& b) { std::memset(&b[24], 0, 8); }},
      {"entries doubled in the header",
       [](std::string& b) {
         const uint64_t twice = 2 * read_u64(b, 24);
         std::memcpy(&b[24], &twice, 8);
       }},
      {"another deck size", [](std::string& b) { b[16] = 52; }},
      {"another magic", [](std::string& b) { b[0] = 'X'; }},
      {"an entry pointing outside the table",
       [](std::string& b) {
         const uint32_t outside = static_cast<uint32_t>(read_u64(b, 24)) + 7;
         std::memcpy(&b[32 + 4 * 40], &outside, 4);
       }},
      {"a negative entry", [](std::string& b) { std::memset(&b[32 + 4 * 100], 0xFF, 4); }},
  };
  // One byte flipped at offsets spread over the header and the body.
  for (double at : {0.0, 0.2, 0.6, 0.99})
    list.push_back({"one byte flipped", [at](std::string& b) {
                      const size_t offset = at == 0 ? 20 : static_cast<size_t>(at * static_cast<double>(b.size()));
                      b[offset] = static_cast<char>(b[offset] ^ 0x5A);
                    }});
  return list;
}

TEST(TableDamage, DetectedAndWrittenAgainNeverCrashesTheClassicLoaders) {
  const fs::path& pristine = pristine_dir();
  const fs::path cwd = fs::current_path();
  int case_number = 0;
  for (const Damage& damage : damages()) {
    for (TableFile file : {TableFile::SixPlus5, TableFile::SixPlus7}) {
      // Under the sanitizers the 10 MB machine is rebuilt for every third damage only: each
      // rebuild takes seconds there, and the small machine goes through the same checks.
      if (test_util::kSanitized && file == TableFile::SixPlus7 && case_number % 3 != 0) {
        ++case_number;
        continue;
      }
      const std::string name(pokermath::table_file_name(file));
      SCOPED_TRACE(name + ", " + damage.what);
      TempDir dir;
      copy_tables(pristine, dir.path());
      std::string bytes = read_bytes(dir / name);
      damage.apply(bytes);
      write_bytes(dir / name, bytes);

      // The classic loaders read it from the working directory: refused or walked, never a crash.
      fs::current_path(dir.path());
      walk_classic_machines();
      fs::current_path(cwd);

      // The pokermath:: API finds it, says so once, and writes the table again.
      EXPECT_FALSE(pokermath::table_file_valid(dir.path(), file));
      std::vector<std::string> notices;
      const pokermath::TableProgress progress = [&](std::string_view, std::string_view stage, double fraction) {
        if (fraction == pokermath::kNoticeFraction) notices.emplace_back(stage);
      };
      if (case_number++ % 3 == 0) {  // some through the CLI
        const cli_run::CliRun r = cli_run::run("tables --dir " + dir.path().string() + " --only " + name);
        EXPECT_EQ(r.exit_code, 0) << r.err;
        EXPECT_NE(r.err.find(name + " in '" + dir.path().string() + "' is damaged ("), std::string::npos) << r.err;
      } else {
        EXPECT_TRUE(pokermath::generate_table_file(dir.path(), file, false, progress));
        ASSERT_EQ(notices.size(), 1u);
        EXPECT_NE(notices[0].find("is damaged"), std::string::npos) << notices[0];
      }
      EXPECT_EQ(read_bytes(dir / name), read_bytes(pristine / name));
      EXPECT_TRUE(pokermath::table_file_valid(dir.path(), file));
    }
  }
}

// A table with a valid header that the manifest does not list (copied from elsewhere) is not
// trusted either; a listed, untouched one is used as it is.
TEST(TableDamage, UnlistedTablesAreWrittenAgain) {
  TempDir dir;
  copy_tables(pristine_dir(), dir.path());
  EXPECT_FALSE(pokermath::generate_table_file(dir.path(), TableFile::SixPlus5));
  fs::remove(dir / "manifest.txt");
  EXPECT_FALSE(pokermath::table_file_valid(dir.path(), TableFile::SixPlus5));
  EXPECT_TRUE(pokermath::generate_table_file(dir.path(), TableFile::SixPlus5, false,
                                             [](std::string_view, std::string_view, double) {}));
  EXPECT_TRUE(pokermath::table_file_valid(dir.path(), TableFile::SixPlus5));
}

// A hand-made pre-flop table in which every matchup is worth `value`, listed in the manifest.
fs::path write_preflop_table(const fs::path& dir, int value) {
  PokerLogic logic;
  for (int a = 0; a < 52; ++a)
    for (int b = a + 1; b < 52; ++b)
      for (int c = 0; c < 52; ++c)
        for (int d = c + 1; d < 52; ++d)
          if (c != a && c != b && d != a && d != b) logic.m_equityTable[{a * 64 + b, c * 64 + d}] = value;
  const fs::path path = dir / "OrvalisPC.dat";
  pokermath::save_preflop_table(logic, path);
  return path;
}

// Random against random: too large to count on the spot, so Auto asks the table.
pokermath::EquityResult random_vs_random(const fs::path& dir, std::vector<std::string>* notices = nullptr) {
  pokermath::EquityRequest request;
  request.players = {"random", "random"};
  request.trials = 20000;
  request.data_dir = dir;
  request.progress = [notices](std::string_view, std::string_view stage, double fraction) {
    if (notices && fraction == pokermath::kNoticeFraction) notices->emplace_back(stage);
  };
  return pokermath::compute_equity(request);
}

TEST(TableDamage, PreflopTableIsUsedOnlyWhenIntactAndOnlyByAuto) {
  constexpr int kValue = 2000000;  // twice the wins of 1,712,304 boards: equity 0.584...
  TempDir dir;
  const fs::path path = write_preflop_table(dir.path(), kValue);
  const pokermath::EquityResult from_table = random_vs_random(dir.path());
  EXPECT_TRUE(from_table.from_table);
  EXPECT_NEAR(from_table.players[0].equity, kValue / 2.0 / 1712304, 1e-12);
  EXPECT_TRUE(std::isnan(from_table.players[0].win));
  // Exact counts whatever the table holds: a request stopped before it starts is cancelled, not
  // answered from the table.
  pokermath::EquityRequest exact;
  exact.players = {"random", "random"};
  exact.method = pokermath::EquityMethod::Exact;
  exact.data_dir = dir.path();
  std::stop_source stop;
  stop.request_stop();
  exact.stop = stop.get_token();
  EXPECT_THROW(pokermath::compute_equity(exact), pokermath::Cancelled);

  // One record changed within range, then the file unlisted: each is told once, and the question
  // is answered without the table (here by sampling: every matchup is even, so about 1/2).
  const std::string intact = read_bytes(path);
  for (const char* damage : {"its checksum differs from the manifest", "not listed in the manifest"}) {
    SCOPED_TRACE(damage);
    TempDir damaged;
    std::string bytes = intact;
    if (std::string(damage).find("checksum") != std::string::npos) {
      fs::copy_file(dir / "manifest.txt", damaged / "manifest.txt");
      bytes[12 * 500 + 8] = static_cast<char>(bytes[12 * 500 + 8] + 1);
    }
    write_bytes(damaged / "OrvalisPC.dat", bytes);
    std::vector<std::string> notices;
    for (int ask = 0; ask < 2; ++ask) {
      const pokermath::EquityResult result = random_vs_random(damaged.path(), &notices);
      EXPECT_FALSE(result.from_table);
      EXPECT_NEAR(result.players[0].equity, 0.5, 0.02);
    }
    ASSERT_EQ(notices.size(), 1u);
    EXPECT_NE(notices[0].find(damage), std::string::npos) << notices[0];
    EXPECT_NE(notices[0].find("pokermath tables --preflop --force"), std::string::npos) << notices[0];
  }

  // The CLI says it in one line and answers.
  std::string bytes = intact;
  bytes[40] ^= 1;
  write_bytes(path, bytes);
  const cli_run::CliRun r = cli_run::run("equity random random --trials 20000 --data-dir " + dir.path().string());
  EXPECT_EQ(r.exit_code, 0) << r.err;
  // One notice (a slow machine may add progress lines).
  const std::string notice = "OrvalisPC.dat in '" + dir.path().string() + "' is damaged (its checksum differs";
  const size_t at = r.err.find(notice);
  EXPECT_NE(at, std::string::npos) << r.err;
  EXPECT_EQ(r.err.find(notice, at + 1), std::string::npos) << r.err;
}

// The files a data directory may hold once every writer has finished.
void expect_only_tables(const fs::path& dir) {
  for (const fs::directory_entry& entry : fs::directory_iterator(dir)) {
    const std::string name = entry.path().filename().string();
    EXPECT_TRUE(name == "six-plus-5.bin" || name == "six-plus-7.bin" || name == "manifest.txt" ||
                name == "manifest.lock")
        << name;
  }
  EXPECT_TRUE(pokermath::table_file_valid(dir, TableFile::SixPlus5));
  EXPECT_TRUE(pokermath::table_file_valid(dir, TableFile::SixPlus7));
}

// `pokermath tables` writing both short-deck machines into `dir`, in a process of its own.
pid_t start_writer(const fs::path& dir) {
  const pid_t pid = ::fork();
  if (pid == 0) {
    ::dup2(::open("/dev/null", O_WRONLY), STDOUT_FILENO);
    const std::string d = dir.string();
    ::execl(POKERMATH_CLI, POKERMATH_CLI, "tables", "--dir", d.c_str(), "--only", "six-plus-7.bin", "--only",
            "six-plus-5.bin", "--json", static_cast<char*>(nullptr));
    ::_exit(127);
  }
  return pid;
}

TEST(TableDamage, ConcurrentWritersAllSucceed) {
  TempDir dir;
  std::vector<pid_t> writers;
  for (int i = 0; i < 8; ++i) writers.push_back(start_writer(dir.path()));
  for (pid_t pid : writers) {
    int status = 0;
    ::waitpid(pid, &status, 0);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
  }
  expect_only_tables(dir.path());
  EXPECT_EQ(read_bytes(dir / "six-plus-7.bin"), read_bytes(pristine_dir() / "six-plus-7.bin"));
}

TEST(TableDamage, KilledWritersLeaveNothingThatIsUsedOrKept) {
  TempDir dir;
  // Partial files of writers that are gone: one of a process that has exited, one of an old fixed name.
  const pid_t gone = ::fork();
  if (gone == 0) ::_exit(0);
  ::waitpid(gone, nullptr, 0);
  write_bytes(dir / ("six-plus-7.bin.partial-" + std::to_string(gone) + "-0"), "half a table");
  write_bytes(dir / "six-plus-5.bin.partial", "half a table");
  // Writers killed at moments spread over their work.
  std::mt19937 engine(2026);
  for (int i = 0; i < 5; ++i) {
    const pid_t pid = start_writer(dir.path());
    std::this_thread::sleep_for(std::chrono::milliseconds(std::uniform_int_distribution<int>(0, 400)(engine)));
    ::kill(pid, SIGKILL);
    ::waitpid(pid, nullptr, 0);
  }
  const pid_t last = start_writer(dir.path());
  int status = 0;
  ::waitpid(last, &status, 0);
  EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
  expect_only_tables(dir.path());
}

}  // namespace

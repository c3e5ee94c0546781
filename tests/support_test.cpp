// The platform layer: the message channel, the tick counter, text conversion, file helpers and the
// error types.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <functional>
#include <thread>

#include "pokermath/pokermath.h"
#include "temp_dir.h"

namespace {

TEST(Support, MessagesGoToTheInstalledHandler) {
  std::vector<CString> seen;
  MessageHandler previous = SetMessageHandler([&](const CString& text) { seen.push_back(text); });
  ShowMessage(L"Error: Can not open file texas-7.bin");
  ShowMessage(L"second");
  EXPECT_TRUE(static_cast<bool>(SetMessageHandler(previous)));  // the handler given back is ours
  EXPECT_EQ(seen, (std::vector<CString>{L"Error: Can not open file texas-7.bin", L"second"}));
}

TEST(Support, DefaultHandlerWritesALineToStderr) {
  SetMessageHandler(nullptr);
  testing::internal::CaptureStderr();
  ShowMessage(L"File caf\u00e9.txt is corrupted");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "File caf\xc3\xa9.txt is corrupted\n");
}

TEST(Support, TickCounterMovesForward) {
  const uint32_t start = GetTickCount();
  std::this_thread::sleep_for(std::chrono::milliseconds(30));
  const uint32_t elapsed = GetTickCount() - start;
  EXPECT_GE(elapsed, 25u);
  EXPECT_LT(elapsed, 10000u);
}

TEST(Support, TextConversionRoundTrips) {
  const std::string utf8 = "A\xe2\x99\xa0 K\xe2\x99\xa5 caf\xc3\xa9 \xf0\x9f\x82\xa1";  // A♠ K♥ café 🂡
  const std::wstring wide = pokermath::widen(utf8);
  EXPECT_EQ(wide, L"A\u2660 K\u2665 caf\u00e9 \U0001F0A1");
  EXPECT_EQ(pokermath::narrow(wide), utf8);
  EXPECT_EQ(pokermath::widen("ab\xff"), L"ab\uFFFD");        // a stray byte is replaced, not dropped silently
  EXPECT_EQ(pokermath::widen("\xe2\x99"), L"\uFFFD\uFFFD");  // a cut sequence
  // Overlong forms, surrogates and values past U+10FFFF are not characters.
  EXPECT_EQ(pokermath::widen("\xc0\xb8"), L"\uFFFD\uFFFD");
  EXPECT_EQ(pokermath::widen("\xe0\x80\xb8"), L"\uFFFD\uFFFD\uFFFD");
  EXPECT_EQ(pokermath::widen("\xed\xa0\x80"), L"\uFFFD\uFFFD\uFFFD");
  EXPECT_EQ(pokermath::widen("\xf4\x90\x80\x80"), L"\uFFFD\uFFFD\uFFFD\uFFFD");
}

TEST(Support, FileHelpers) {
  const auto dir = std::filesystem::temp_directory_path() / ("pokermath_support_" + std::to_string(::getpid()));
  std::filesystem::create_directories(dir);
  const std::wstring wide_dir = pokermath::widen(dir.string());
  const std::wstring path = wide_dir + L"/t\u00e9st.bin";
  EXPECT_FALSE(pokermath::file_exists(path));
  EXPECT_EQ(pokermath::file_size(path), -1);
  const char data[] = {1, 2, 3, 0, 5};
  ASSERT_TRUE(pokermath::write_file(path, data, sizeof data));
  EXPECT_TRUE(pokermath::file_exists(path));
  EXPECT_TRUE(std::filesystem::exists(dir / "t\xc3\xa9st.bin"));  // the name is stored as UTF-8
  EXPECT_FALSE(pokermath::file_exists(wide_dir));                 // a directory is not a file
  EXPECT_EQ(pokermath::file_size(path), 5);
  std::vector<char> back;
  ASSERT_TRUE(pokermath::read_file(path, back));
  EXPECT_EQ(back, std::vector<char>(data, data + 5));
  EXPECT_FALSE(pokermath::read_file(wide_dir + L"/missing", back));
  EXPECT_TRUE(back.empty());
  EXPECT_FALSE(pokermath::write_file(wide_dir + L"/no/such/dir", data, 1));
  std::filesystem::remove_all(dir);
}

// Whatever the API, a path the system refuses throws FileError with that path and the system's
// error; a file that is there but wrong, or a bad name, throws plain Error.
TEST(Support, FileSystemFailuresThrowFileErrorAndBadContentDoesNot) {
  namespace fs = std::filesystem;
  constexpr int kContent = -1;  // expected: Error, not FileError
  const test_util::TempDir dir;
  test_util::write_bytes(dir / "file", "");
  test_util::write_bytes(dir / "bad.txt", "KK\nQQ\n");
  test_util::write_bytes(dir / "short.dat", "1234567");  // not a whole number of 12-byte records
  fs::create_directory(dir / "dir.txt");
  PokerLogic logic;
  struct Case {
    const char* what;
    fs::path path;
    int code;
    bool names_reason;  // the message carries strerror(code)
    std::function<void(const fs::path&)> call;
  };
  const auto range_file = [](const fs::path& p) { pokermath::read_range_file(p.string()); };
  const auto history = [](const fs::path& p) { pokermath::read_history(p); };
  const auto table = [](const fs::path& p) { pokermath::generate_table_file(p, pokermath::TableFile::SixPlus5); };
  const auto load_preflop = [&](const fs::path& p) { pokermath::load_preflop_table(logic, p); };
  std::vector<Case> cases = {
      {"missing range file", dir / "missing.txt", ENOENT, false, range_file},
      {"range file that is a directory", dir / "dir.txt", 0, false, range_file},
      {"range file with bad contents", dir / "bad.txt", kContent, false, range_file},
      {"range file not named .txt", dir / "file", kContent, false, range_file},
      {"missing history file", dir / "none.txt", ENOENT, false, history},
      {"data directory below a file", dir / "file" / "tables", ENOTDIR, true, table},
      {"pre-flop data directory that is a file", dir / "file", ENOTDIR, true,
       [](const fs::path& p) { pokermath::generate_preflop_table(p); }},
      {"missing pre-flop file", dir / "none.dat", ENOENT, false, load_preflop},
      {"damaged pre-flop file", dir / "short.dat", kContent, false, load_preflop},
      {"pre-flop file saved into no directory", dir / "no" / "OrvalisPC.dat", ENOENT, true,
       [&](const fs::path& p) { pokermath::save_preflop_table(logic, p); }},
  };
  if (::geteuid() != 0) {  // root may write anywhere
    fs::create_directory(dir / "read-only");
    fs::permissions(dir / "read-only", fs::perms::owner_read | fs::perms::owner_exec);
    cases.push_back({"data directory without write permission", dir / "read-only", EACCES, true, table});
  }
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    try {
      c.call(c.path);
      ADD_FAILURE() << "no error";
    } catch (const pokermath::FileError& e) {
      const std::string message = e.what();
      EXPECT_NE(c.code, kContent) << message;
      EXPECT_EQ(e.error_code(), c.code) << message;
      EXPECT_EQ(e.path(), c.path) << message;
      EXPECT_NE(message.find(c.path.string()), std::string::npos) << message;
      if (c.names_reason) {
        EXPECT_NE(message.find(std::strerror(c.code)), std::string::npos) << message;
      }
    } catch (const pokermath::Error& e) {
      EXPECT_EQ(c.code, kContent) << e.what();
    }
  }
}

}  // namespace

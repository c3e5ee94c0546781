// The platform layer: the message channel, the tick counter, text conversion and file helpers.
#include <gtest/gtest.h>

#include <filesystem>
#include <thread>

#include "pokermath/support.h"

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

}  // namespace

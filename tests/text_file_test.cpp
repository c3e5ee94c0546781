// TextFile: encoding detection, line ends, positions, unfinished last lines and growing files.
#include <gtest/gtest.h>

#include <random>
#include <tuple>

#include "pokermath/support.h"
#include "temp_dir.h"

namespace {

using namespace std::string_literals;
using pokermath::PartialLine;
using pokermath::TextEncoding;
using pokermath::TextFile;
using test_util::TempDir;

std::vector<std::wstring> all_lines(TextFile& file, PartialLine partial = PartialLine::Include) {
  std::vector<std::wstring> lines;
  std::wstring line;
  while (file.read_line(line, partial)) lines.push_back(line);
  return lines;
}

// `lines`, each ended by CR LF, in UTF-8 or UTF-16 with the encoding's byte-order mark.
std::string encoded(const std::vector<std::wstring>& lines, TextEncoding encoding) {
  std::wstring text;
  for (const auto& line : lines) text += line + L"\r\n";
  if (encoding == TextEncoding::Utf16Le) return "\xFF\xFE" + test_util::utf16(text, false);
  if (encoding == TextEncoding::Utf16Be) return "\xFE\xFF" + test_util::utf16(text, true);
  return "\xEF\xBB\xBF" + pokermath::narrow(text);
}

// Decoding every encoding is checked through the history readers; here, what detection reports.
TEST(TextFile, AByteOrderMarkDecidesTheEncoding) {
  TempDir dir;
  const auto path = dir / "hh.txt";
  const std::tuple<std::string, TextEncoding, TextEncoding, int> cases[] = {
      {"caf\xC3\xA9\n", TextEncoding::Utf8OrNarrow, TextEncoding::Utf8OrNarrow, 0},
      {"caf\xC3\xA9\n", TextEncoding::Narrow, TextEncoding::Narrow, 0},
      {"\xEF\xBB\xBF"
       "caf\xC3\xA9\n",
       TextEncoding::Narrow, TextEncoding::Utf8, 3},  // the mark wins
      {"\xFF\xFE" + test_util::utf16(L"caf\u00e9\n", false), TextEncoding::Utf8, TextEncoding::Utf16Le, 2},
      {"\xFE\xFF" + test_util::utf16(L"caf\u00e9\n", true), TextEncoding::Utf8, TextEncoding::Utf16Be, 2},
  };
  for (const auto& [bytes, without_bom, detected, bom_size] : cases) {
    test_util::write_bytes(path, bytes);
    TextFile file;
    ASSERT_TRUE(file.open(path, without_bom));
    EXPECT_EQ(file.encoding(), detected) << pokermath::encoding_name(detected);
    EXPECT_EQ(file.byte_order_mark_size(), bom_size);
    EXPECT_EQ(file.position(), bom_size);
    EXPECT_EQ(all_lines(file),
              std::vector<std::wstring>{detected == TextEncoding::Narrow ? L"caf\u00c3\u00a9" : L"caf\u00e9"});
  }
}

TEST(TextFile, WithoutAByteOrderMarkEachLineIsUtf8WhenValidElseNarrow) {
  TempDir dir;
  // One UTF-8 line, one Latin-1 line, one with a cut UTF-8 sequence, one overlong form.
  test_util::write_bytes(dir / "mixed.txt", "caf\xC3\xA9\ncaf\xE9\nx\xE2\x99\nA\xC0\xAF\n");
  TextFile file;
  ASSERT_TRUE(file.open(dir / "mixed.txt"));
  // The default C locale rejects every byte above 0x7F, so those are read as Latin-1.
  EXPECT_EQ(all_lines(file),
            (std::vector<std::wstring>{L"caf\u00e9", L"caf\u00e9", L"x\u00e2\u0099", L"A\u00c0\u00af"}));

  // A chosen encoding ignores the content: UTF-8 marks the bad bytes.
  ASSERT_TRUE(file.open(dir / "mixed.txt", TextEncoding::Utf8));
  EXPECT_EQ(all_lines(file)[1], L"caf\uFFFD");
}

TEST(TextFile, BrokenUtf16BecomesReplacementCharacters) {
  TempDir dir;
  // An unpaired high surrogate, an unpaired low surrogate, then a good pair.
  test_util::write_bytes(dir / "u16.txt",
                         "\xFF\xFE"
                         "\x3D\xD8"
                         "A\x00"
                         "\x00\xDC"
                         "\x3C\xD8\xA1\xDC"
                         "\n\x00"s);
  TextFile file;
  ASSERT_TRUE(file.open(dir / "u16.txt"));
  EXPECT_EQ(all_lines(file), std::vector<std::wstring>{L"\uFFFDA\uFFFD\U0001F0A1"});
}

TEST(TextFile, LineEndsAreLineFeedsOnly) {
  TempDir dir;
  // A lone CR is part of the line; CR CR LF loses only the CR next to the LF; 0A inside a UTF-16
  // character (U+0A41) is not a line end.
  test_util::write_bytes(dir / "cr.txt", "a\rb\r\r\n\n");
  TextFile file;
  ASSERT_TRUE(file.open(dir / "cr.txt"));
  EXPECT_EQ(all_lines(file), (std::vector<std::wstring>{L"a\rb\r", L""}));
  test_util::write_bytes(dir / "u16.txt", "\xFF\xFE" + test_util::utf16(L"\u0A41x\n\u0D0Ay\r\n", false));
  ASSERT_TRUE(file.open(dir / "u16.txt"));
  EXPECT_EQ(all_lines(file), (std::vector<std::wstring>{L"\u0A41x", L"\u0D0Ay"}));
}

TEST(TextFile, PositionsAreByteOffsetsAndSeekSkipsTheByteOrderMark) {
  TempDir dir;
  test_util::write_bytes(dir / "p.txt",
                         "\xEF\xBB\xBF"
                         "one\r\ntwo\n");
  TextFile file;
  EXPECT_FALSE(file.seek(0));  // closed
  ASSERT_TRUE(file.open(dir / "p.txt"));
  std::wstring line;
  ASSERT_TRUE(file.read_line(line));
  EXPECT_EQ(line, L"one");
  EXPECT_EQ(file.position(), 8);
  for (int64_t inside_mark : {0, 1, 2}) {
    ASSERT_TRUE(file.seek(inside_mark));
    EXPECT_EQ(file.position(), 3);
    ASSERT_TRUE(file.read_line(line));
    EXPECT_EQ(line, L"one");
  }
  ASSERT_TRUE(file.seek(8));
  EXPECT_EQ(all_lines(file), std::vector<std::wstring>{L"two"});
  EXPECT_FALSE(file.seek(-1));
  EXPECT_EQ(file.position(), 12);
  ASSERT_TRUE(file.seek(100));  // past the end: nothing to read, the offset is kept
  EXPECT_FALSE(file.read_line(line));
  EXPECT_EQ(file.position(), 100);
}

// A line cut inside a character is held back whole by read_history (history_file_test follows
// files written in random pieces); here, the held bytes and the open file that sees the writer's
// additions.
TEST(TextFile, HalfAUtf16CodeUnitIsHeldAlsoWhenIncludedAndTheOpenFileSeesAdditions) {
  TempDir dir;
  const auto path = dir / "odd.txt";
  test_util::write_bytes(path,
                         "\xFE\xFF"
                         "\x00"
                         "A\x00\n\x00"s);
  TextFile file;
  ASSERT_TRUE(file.open(path));
  EXPECT_EQ(all_lines(file, PartialLine::Hold), std::vector<std::wstring>{L"A"});
  EXPECT_EQ(file.held_bytes(), 1);
  // The writer finishes the unit and the line; the search for the line feed stays aligned.
  test_util::append_bytes(path, "B\x00\n\x00"s);
  EXPECT_EQ(all_lines(file, PartialLine::Hold), std::vector<std::wstring>{L"B"});
  EXPECT_EQ(file.held_bytes(), 1);
  // Included, an unended last line stops at its last whole unit, so the position stays even.
  test_util::append_bytes(path, "C\x00"s);
  EXPECT_EQ(all_lines(file, PartialLine::Include), std::vector<std::wstring>{L"C"});
  EXPECT_EQ(file.held_bytes(), 1);
  EXPECT_EQ(file.position(), 12);
}

// Lines longer than the read buffer, in every encoding, cut at random places: the reader must
// stitch chunks together and keep UTF-16 code units aligned across them.
TEST(TextFile, LongLinesCrossBufferBoundaries) {
  TempDir dir;
  std::mt19937 engine(7);
  std::vector<std::wstring> lines;
  for (int k = 0; k < 6; ++k) {
    std::wstring line;
    const int length = 1 + static_cast<int>(engine() % 150000);
    for (int i = 0; i < length; ++i) {
      const wchar_t pool[] = {L'a', L'Z', L' ', L'\u00e9', L'\u2660', L'\u0A0D', L'\U0001F0A1'};
      line.push_back(pool[engine() % 7]);
    }
    lines.push_back(line);
  }
  for (TextEncoding encoding : {TextEncoding::Utf8, TextEncoding::Utf16Le, TextEncoding::Utf16Be}) {
    test_util::write_bytes(dir / "long.txt", encoded(lines, encoding));
    TextFile file;
    ASSERT_TRUE(file.open(dir / "long.txt"));
    EXPECT_TRUE(all_lines(file) == lines) << pokermath::encoding_name(encoding);
  }
}

TEST(TextFile, OnlyRegularFilesOpen) {
  TempDir dir;
  TextFile file;
  EXPECT_FALSE(file.open(dir.path()));
  EXPECT_FALSE(file.is_open());
  EXPECT_FALSE(file.open(dir / "missing.txt"));
  EXPECT_FALSE(file.open("/dev/zero"));
  std::wstring line;
  EXPECT_FALSE(file.read_line(line));
  test_util::write_bytes(dir / "empty.txt", "");
  ASSERT_TRUE(file.open(dir / "empty.txt"));
  EXPECT_EQ(file.encoding(), TextEncoding::Utf8OrNarrow);
  EXPECT_FALSE(file.read_line(line));
  EXPECT_EQ(file.position(), 0);
  file.close();
  EXPECT_FALSE(file.is_open());
}

}  // namespace

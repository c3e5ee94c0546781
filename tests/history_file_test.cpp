// Hand-history files followed from a stored position: the three classic readers and read_history,
// on every encoding, on files that grow, lose their last line's end for a while, or disappear.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <random>

#include "pokermath/records.h"
#include "temp_dir.h"
#include "test_util.h"

namespace {

using namespace std::string_literals;
using test_util::TempDir;
using test_util::wide;
using Reader = int (*)(const CString&, int64_t&, CStringArray&);

const std::pair<Reader, const char*> kReaders[] = {{ReadHistoryFile, "ReadHistoryFile"},
                                                   {ReadHistoryFileEx, "ReadHistoryFileEx"},
                                                   {ReadHistoryFileUTF8, "ReadHistoryFileUTF8"}};

const std::wstring kHand =
    L"PokerStars Hand #1: Hold'em No Limit (\u20ac0.01/\u20ac0.02)\n"
    L"\n"
    L"  Seat 1: caf\u00e9 \U0001F0A1 (\u20ac2.00)  \n"
    L"\t\n"  // blanks only: trimmed to an empty line, which is kept
    L"\uFEFF*** SUMMARY ***\n";
const CStringArray kHandLines = {L"PokerStars Hand #1: Hold'em No Limit (\u20ac0.01/\u20ac0.02)",
                                 L"Seat 1: caf\u00e9 \U0001F0A1 (\u20ac2.00)", L"", L"*** SUMMARY ***"};

std::wstring with_crlf(const std::wstring& text) {
  std::wstring out;
  for (wchar_t c : text) out += c == L'\n' ? std::wstring(L"\r\n") : std::wstring(1, c);
  return out;
}

struct Encoded {
  const char* name;
  std::string bytes;
};

std::vector<Encoded> in_every_unicode_encoding(const std::wstring& text) {
  return {{"UTF-8", pokermath::narrow(text)},
          {"UTF-8 with BOM", "\xEF\xBB\xBF" + pokermath::narrow(text)},
          {"UTF-16LE", "\xFF\xFE" + test_util::utf16(text, false)},
          {"UTF-16BE", "\xFE\xFF" + test_util::utf16(text, true)}};
}

TEST(HistoryFile, NarrowTextIsDetectedOnlyByTheDetectingReader) {
  TempDir dir;
  const auto path = dir / "hh.txt";
  test_util::write_bytes(path,
                         "Seat 1: caf\xE9 (\xA3"
                         "2)\r\n");  // Latin-1
  const std::pair<Reader, std::wstring> expected[] = {{ReadHistoryFileEx, L"Seat 1: caf\u00e9 (\u00a32)"},
                                                      {ReadHistoryFile, L"Seat 1: caf\uFFFD (\uFFFD2)"},
                                                      {ReadHistoryFileUTF8, L"Seat 1: caf\uFFFD (\uFFFD2)"}};
  for (const auto& [reader, line] : expected) {
    int64_t position = 0;
    CStringArray lines;
    ASSERT_EQ(reader(wide(path), position, lines), 0);
    EXPECT_EQ(lines, CStringArray{line});
  }
}

TEST(HistoryFile, PathsStartingWith888pokerAreReadAsNarrowText) {
  TempDir dir;
  const auto previous = std::filesystem::current_path();
  std::filesystem::current_path(dir.path());  // the prefix test looks at the path as given
  test_util::write_bytes("888poker_table.txt", "caf\xE9\n");
  test_util::write_bytes("table_888poker.txt", "caf\xE9\n");
  int64_t position = 0;
  CStringArray lines;
  EXPECT_EQ(ReadHistoryFile(L"888poker_table.txt", position, lines), 0);
  EXPECT_EQ(lines, CStringArray{L"caf\u00e9"});
  position = 0;
  EXPECT_EQ(ReadHistoryFile(L"table_888poker.txt", position, lines), 0);
  EXPECT_EQ(lines, CStringArray{L"caf\uFFFD"});
  std::filesystem::current_path(previous);
}

// A file whose last line has no line end: the classic readers return that line too and move past
// it, so what a writer adds to it later comes as a line of its own; read_history holds it back and
// returns it whole once its line end is there, never half of it, never twice.
TEST(HistoryFile, ALastLineWithoutItsLineEndIsReturnedByTheClassicReadersOnly) {
  TempDir dir;
  const auto path = dir / "hh.txt";
  for (auto [reader, name] : kReaders) {
    test_util::write_bytes(path, "Seat 1: alice\nSeat 2: b");
    int64_t position = 0;
    CStringArray lines;
    ASSERT_EQ(reader(wide(path), position, lines), 0);
    EXPECT_EQ(lines, (CStringArray{L"Seat 1: alice", L"Seat 2: b"})) << name;
    EXPECT_EQ(position, 23) << name;
    test_util::append_bytes(path, "ob (200)\r");
    ASSERT_EQ(reader(wide(path), position, lines), 0);
    EXPECT_EQ(lines, CStringArray{L"ob (200)"}) << name;  // the CR is trimmed
    test_util::append_bytes(path, "\nSeat 3: carol\n");
    ASSERT_EQ(reader(wide(path), position, lines), 0);  // the LF ends an empty line, skipped
    EXPECT_EQ(lines, CStringArray{L"Seat 3: carol"}) << name;
    EXPECT_EQ(position, 47) << name;
  }

  test_util::write_bytes(path, "Seat 1: alice\nSeat 2: b");
  pokermath::HistoryLines read = pokermath::read_history(path);
  EXPECT_EQ(read.lines, std::vector<std::string>{"Seat 1: alice"});
  EXPECT_EQ(read.position, 14);
  EXPECT_EQ(read.held_bytes, 9);
  test_util::append_bytes(path, "ob (200)\r");  // CR without LF: still unfinished
  read = pokermath::read_history(path, read.position);
  EXPECT_TRUE(read.lines.empty());
  EXPECT_EQ(read.position, 14);
  test_util::append_bytes(path, "\nSeat 3: carol\n");
  read = pokermath::read_history(path, read.position);
  EXPECT_EQ(read.lines, (std::vector<std::string>{"Seat 2: bob (200)", "Seat 3: carol"}));
  EXPECT_EQ(read.position, 47);
  EXPECT_EQ(read.held_bytes, 0);
}

// Every Unicode encoding with either line end, the last line ended or not: the classic readers
// return every line once, trimmed, empty lines skipped, and stop at the end of the file.
// read_history follows the same file written in random pieces (cut through lines, CR LF pairs,
// multi-byte characters and UTF-16 units) and loses, splits and repeats nothing.
TEST(HistoryFile, EveryEncodingReadWholeOrFollowedInRandomPiecesLosesAndSplitsNothing) {
  TempDir dir;
  const auto path = dir / "hh.txt";
  std::mt19937 engine(11);
  std::wstring text;
  CStringArray expected;
  for (int hand = 0; hand < 30; ++hand) {
    text += kHand;
    expected.insert(expected.end(), kHandLines.begin(), kHandLines.end());
  }
  const std::wstring last = L"Seat 9: dave \u20ac";
  std::vector<std::string> followed;  // read_history's lines: UTF-8, blank ones left out
  for (const CString& line : expected)
    if (!line.empty()) followed.push_back(pokermath::narrow(line));
  for (bool ended : {true, false})
    for (const std::wstring& body : {text, with_crlf(text)})
      for (const Encoded& file : in_every_unicode_encoding(ended ? body : body + last)) {
        const int64_t size = static_cast<int64_t>(file.bytes.size());
        CStringArray all = expected;
        if (!ended) all.push_back(last);
        test_util::write_bytes(path, file.bytes);
        for (auto [reader, name] : kReaders) {
          const std::string where = std::string(name) + " " + file.name + (ended ? "" : ", last line not ended");
          int64_t position = 0;
          CStringArray lines = {L"stale"};
          ASSERT_EQ(reader(wide(path), position, lines), 0) << where;
          EXPECT_EQ(lines, all) << where;
          EXPECT_EQ(position, size) << where;
          ASSERT_EQ(reader(wide(path), position, lines), 0) << where;
          EXPECT_TRUE(lines.empty()) << where;
        }
        if (!ended) continue;

        test_util::write_bytes(path, "");
        std::vector<std::string> pieces;
        int64_t position = 0;
        for (size_t written = 0; written < file.bytes.size();) {
          const size_t piece = std::min<size_t>(1 + engine() % 40, file.bytes.size() - written);
          test_util::append_bytes(path, file.bytes.substr(written, piece));
          written += piece;
          const pokermath::HistoryLines read = pokermath::read_history(path, position);
          pieces.insert(pieces.end(), read.lines.begin(), read.lines.end());
          position = read.position;
        }
        EXPECT_EQ(pieces, followed) << file.name;
        EXPECT_EQ(position, size) << file.name;
      }
}

TEST(HistoryFile, BadPositionsAndAFileThatDisappearsKeepThePosition) {
  TempDir dir;
  const auto path = dir / "hh.txt";
  for (auto [reader, name] : kReaders) {
    test_util::write_bytes(path, "Hand #1\n");
    CStringArray lines;
    int64_t position = -1;
    EXPECT_EQ(reader(wide(path), position, lines), -2) << name;  // a negative position fails
    EXPECT_EQ(position, -1) << name;
    position = 100;  // past the end (the file was truncated since): nothing to read
    EXPECT_EQ(reader(wide(path), position, lines), 0) << name;
    EXPECT_TRUE(lines.empty()) << name;
    EXPECT_EQ(position, 100) << name;
    position = 0;
    ASSERT_EQ(reader(wide(path), position, lines), 0);
    std::filesystem::remove(path);
    EXPECT_EQ(reader(wide(path), position, lines), -1) << name;
    EXPECT_TRUE(lines.empty()) << name;
    EXPECT_EQ(position, 8) << name;
  }
}

TEST(HistoryFile, AFileThatCannotBeOpenedGivesMinusTwoAndOnlyTheUtf8ReaderSaysSo) {
  TempDir dir;
  test_util::MessageCapture messages;
  std::vector<CString> unopenable = {wide(dir.path())};  // a directory exists but is no file
  if (::geteuid() != 0) {                                // root reads any file
    test_util::write_bytes(dir / "locked.txt", "Hand #1\n");
    std::filesystem::permissions(dir / "locked.txt", std::filesystem::perms::none);
    unopenable.push_back(wide(dir / "locked.txt"));
  }
  for (const CString& path : unopenable) {
    for (auto [reader, name] : kReaders) {
      messages.clear();
      int64_t position = 5;
      CStringArray lines = {L"stale"};
      EXPECT_EQ(reader(path, position, lines), -2) << name;
      EXPECT_TRUE(lines.empty()) << name;
      EXPECT_EQ(position, 5) << name;
      const bool reports = reader == ReadHistoryFileUTF8;
      EXPECT_EQ(messages.texts(),
                reports ? std::vector<CString>{L"File <" + path + L"> could not be opened!"} : std::vector<CString>{})
          << name;
    }
  }
  messages.clear();
  int64_t position = 0;
  CStringArray lines;
  EXPECT_EQ(ReadHistoryFileUTF8(wide(dir / "missing.txt"), position, lines), -1);
  EXPECT_TRUE(messages.texts().empty());  // a missing file is no message
}

// ---- read_history ------------------------------------------------------------------------------------

TEST(ReadHistory, ReturnsUtf8LinesWithoutBlanksAndThePositionToResumeFrom) {
  TempDir dir;
  const auto path = dir / "hh.txt";
  test_util::write_bytes(path, "\xFF\xFE" + test_util::utf16(with_crlf(kHand) + L"Seat 9: ev", false));
  pokermath::HistoryLines read = pokermath::read_history(path);
  EXPECT_EQ(read.lines, (std::vector<std::string>{"PokerStars Hand #1: Hold'em No Limit (\xE2\x82\xAC"
                                                  "0.01/\xE2\x82\xAC"
                                                  "0.02)",
                                                  "Seat 1: caf\xC3\xA9 \xF0\x9F\x82\xA1 (\xE2\x82\xAC"
                                                  "2.00)",
                                                  "*** SUMMARY ***"}));
  EXPECT_EQ(read.encoding, pokermath::TextEncoding::Utf16Le);
  EXPECT_EQ(read.held_bytes, 20);
  const int64_t size = static_cast<int64_t>(std::filesystem::file_size(path));
  EXPECT_EQ(read.position, size - 20);

  read = pokermath::read_history(path, read.position, pokermath::PartialLine::Include);
  EXPECT_EQ(read.lines, std::vector<std::string>{"Seat 9: ev"});
  EXPECT_EQ(read.position, size);
  EXPECT_EQ(read.held_bytes, 0);

  // The writer is in the middle of a UTF-16 unit: even an included last line stops before it, at
  // a position a later call accepts, and the unit comes whole once written.
  test_util::append_bytes(path, "e");
  const int64_t from = read.position;
  read = pokermath::read_history(path, from, pokermath::PartialLine::Include);
  EXPECT_TRUE(read.lines.empty());
  EXPECT_EQ(read.position, from);
  EXPECT_EQ(read.held_bytes, 1);
  test_util::append_bytes(path, "\0"s);
  read = pokermath::read_history(path, read.position, pokermath::PartialLine::Include);
  EXPECT_EQ(read.lines, std::vector<std::string>{"e"});
  EXPECT_EQ(read.position, from + 2);
}

TEST(ReadHistory, RejectsWhatItCannotReadNamingIt) {
  TempDir dir;
  const auto path = dir / "hh.txt";
  test_util::write_bytes(path, "\xFE\xFF" + test_util::utf16(L"Hand #1\n", true));  // 18 bytes
  const std::string name = "'" + path.string() + "'";
  auto message = [](const std::filesystem::path& file, int64_t from) {
    return test_util::error_of([&] { pokermath::read_history(file, from); });
  };
  EXPECT_EQ(message(dir / "none.txt", 0), "no such file: '" + (dir / "none.txt").string() + "'");
  EXPECT_EQ(message(dir.path(), 0), "'" + dir.path().string() + "' is a directory, not a hand-history file");
  EXPECT_EQ(message("/dev/zero", 0), "'/dev/zero' is a character device, not a hand-history file");
  ASSERT_EQ(::mkfifo((dir / "fifo").c_str(), 0600), 0);  // opening it would wait for a writer
  EXPECT_EQ(message(dir / "fifo", 0),
            "'" + (dir / "fifo").string() + "' is a FIFO (named pipe), not a hand-history file");
  EXPECT_EQ(message(path, -3), "position -3 is negative");
  EXPECT_EQ(message(path, 19), "position 19 is past the end of " + name +
                                   " (18 bytes): the file was truncated or replaced; read it again from 0");
  EXPECT_EQ(message(path, 5), "position 5 falls inside a character: " + name + " is UTF-16, 2 bytes per unit");
  EXPECT_EQ(message(path, 18), "(no error)");
  EXPECT_EQ(message(path, 1), "(no error)");  // inside the byte-order mark: the start of the text
}

}  // namespace

// PokerLogic's pre-flop, turn and five-card combination tables: their binary files, the text report
// through which equity tables are produced and imported, and the pokermath:: front for the
// pre-flop table file.
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <initializer_list>
#include <string>
#include <string_view>

#include "equity/preflop_table.h"
#include "equity/table_files.h"
#include "support/data_dir.h"
#include "support/files.h"
#include "pokermath/equity.h"

using namespace pokermath::detail;
namespace fs = std::filesystem;

namespace {

using EquityTable = std::map<std::pair<int, int>, int>;

constexpr int kRiverBoards = 1712304;               // five-card boards once four hole cards are known
constexpr int kMaxPreflopValue = 2 * kRiverBoards;  // the value is twice the hero's wins
constexpr int kCombinationCount = 2598960;          // five-card hands
constexpr int64_t kCombinationFileBytes = int64_t{kCombinationCount} * kCombinationRecordBytes;
constexpr int kReportMatchups = 1624350;  // 1,326 hero hands x 1,225 villain hands
constexpr int kReportFlushLines = 100;

// The equity report: each line is written in three pieces (hero, villain, result) and read back
// whole with kReportRead.
constexpr char kReportHero[] = "%10d %2d %2d %s %s VS ";
constexpr char kReportVillain[] = "%2d %2d %s %s ";
constexpr char kReportResult[] = "%.1lf %.1lf %.3lf%%\n";
constexpr char kReportRead[] = "%d %2d %2d %s %s VS %2d %2d %s %s %lf %lf %lf";

// "words n1 n2 ...", the form of the per-record messages.
CString numbers_message(std::wstring_view words, std::initializer_list<int> numbers) {
  CString text(words);
  for (const int n : numbers) text += L' ' + std::to_wstring(n);
  return text;
}

void show_missing(const CString& path) { ShowMessage(L"You need to download file " + path); }
void show_cannot_open(const CString& path) { ShowMessage(L"Error: Can not open file " + path); }

int hand_key(int low, int high) { return low * 64 + high; }

// Adds one record of an equity table file: a positive value is stored unless the key pair is
// already there (the first value wins); any other value is reported and skipped.
void add_equity_record(EquityTable& table, const EquityRecord& record) {
  const auto [hero, villain, value] = record;
  if (value <= 0) {
    ShowMessage(numbers_message(L"load_equity_table", {hero, villain, value}));
    return;
  }
  // Files list their keys in ascending order, so the end is the right place for each new one.
  table.try_emplace(table.end(), std::pair{hero, villain}, value);
}

// The records of the entries with a positive value, in key order; each other entry goes to
// `skipped` and is left out.
template <typename Skipped>
std::vector<char> equity_records(const EquityTable& table, Skipped skipped) {
  std::vector<char> bytes;
  bytes.reserve(table.size() * kEquityRecordBytes);
  for (const auto& [keys, value] : table) {
    if (value > 0)
      append_record<3>(bytes, {keys.first, keys.second, value});
    else
      skipped(keys, value);
  }
  return bytes;
}

void save_records(const CString& path, const std::vector<char>& bytes) {
  if (!pokermath::write_file(path, bytes.data(), bytes.size())) show_cannot_open(path);
}

// Two-letter card name of a card code, as the report writes it.
struct CardName {
  char text[3];
  explicit CardName(int card)
      : text{static_cast<char>(kRankLetters[card % 13]), static_cast<char>(kSuitLetters[card / 13]), 0} {}
};

// One report line as read back. Fields the text does not supply stay 0.
struct ReportLine {
  int number = 0, hero1 = 0, hero2 = 0, villain1 = 0, villain2 = 0;
  double wins = 0, boards = 0, percent = 0;
};

ReportLine parse_report_line(const std::string& text) {
  ReportLine line;
  // Each name field has room for the whole line, so no text can overrun it.
  const size_t room = text.size() + 1;
  std::vector<char> names(4 * room);
  char* name = names.data();
  // A line that does not parse fully is not refused: the fields it lacks keep their zeros, which
  // give no positive value unless both wins and boards were read.
  [[maybe_unused]] const int fields =
      std::sscanf(text.c_str(), kReportRead, &line.number, &line.hero1, &line.hero2, name, name + room, &line.villain1,
                  &line.villain2, name + 2 * room, name + 3 * room, &line.wins, &line.boards, &line.percent);
  return line;
}

}  // namespace

// ---- pre-flop and turn equity tables ----------------------------------------------------------------

int PokerLogic::save_equity_table(CString path) const {
  save_records(path, equity_records(m_equityTable, [](const std::pair<int, int>&, int) {}));
  return 1;
}

int PokerLogic::load_equity_table(CString path) {
  if (!pokermath::file_exists(path)) {
    show_missing(path);
    return 0;
  }
  std::vector<char> bytes;
  if (!pokermath::read_file(path, bytes)) {
    show_cannot_open(path);
    return 0;
  }
  // A last record cut short is left out.
  for (size_t at = 0; at + kEquityRecordBytes <= bytes.size(); at += kEquityRecordBytes)
    add_equity_record(m_equityTable, decode_record<3>(bytes.data() + at));
  return 1;
}

int PokerLogic::save_equity_turn_table(CString path) const {
  save_records(path, equity_records(m_equityTurnTable, [](const std::pair<int, int>& keys, int value) {
                 ShowMessage(numbers_message(L"save_equity_table", {keys.first, keys.second, value}));
               }));
  return 1;
}

int PokerLogic::load_equity_turn_table(CString path) {
  if (!pokermath::file_exists(path)) {
    show_missing(path);
    return 0;
  }
  std::ifstream in(pokermath::to_path(path), std::ios::binary);
  if (!in) {
    show_cannot_open(path);
    return 0;
  }
  // One record at a time until a read comes back short.
  char record[kEquityRecordBytes];
  while (in.read(record, sizeof record)) add_equity_record(m_equityTurnTable, decode_record<3>(record));
  return 1;
}

// ---- the equity report ------------------------------------------------------------------------------

int PokerLogic::generate_equity_table(CString path) const {
  const fs::path file = pokermath::to_path(path);
  // An existing report is never overwritten or appended to: it may hold hours of finished lines.
  std::error_code error;
  if (fs::exists(file, error) || error) {
    show_cannot_open(path);
    return 0;
  }
  std::ofstream out(file);
  if (!out) {
    show_cannot_open(path);
    return 0;
  }

  char text[128];
  int line = 1;
  for (int c1 = 0; c1 < 51; ++c1)
    for (int c2 = c1 + 1; c2 < 52; ++c2)
      for (int c3 = 0; c3 < 51; ++c3)
        for (int c4 = c3 + 1; c4 < 52; ++c4) {
          if (c3 == c1 || c3 == c2 || c4 == c1 || c4 == c2) continue;
          if (const auto it = m_equityTable.find({hand_key(c1, c2), hand_key(c3, c4)});
              it != m_equityTable.end() && it->second > 0)
            continue;
          std::snprintf(text, sizeof text, kReportHero, line, c1, c2, CardName(c1).text, CardName(c2).text);
          out << text;
          std::snprintf(text, sizeof text, kReportVillain, c3, c4, CardName(c3).text, CardName(c4).text);
          out << text;
          const int hero[2] = {c1, c2}, villain[2] = {c3, c4};
          double wins = 0, boards = 0;
          GetWinHandVsHand(hero, villain, wins, boards);
          std::snprintf(text, sizeof text, kReportResult, wins, boards, wins / boards * 100);
          out << text;
          // Flushed every 100 lines, so that an interrupted run keeps what it wrote; a write that
          // fails (a full disk) ends the run rather than computing lines that cannot be kept.
          if (line % kReportFlushLines == 0 && !out.flush()) {
            show_cannot_open(path);
            return 0;
          }
          ++line;
        }
  out.close();
  if (!out) show_cannot_open(path);
  return 0;
}

int PokerLogic::generate_equity_turn_table(CString path) {
  const fs::path file = pokermath::to_path(path);
  std::error_code error;
  if (!fs::exists(file, error)) {
    std::ofstream create(file);  // created empty; there is nothing to import
    return 0;
  }
  std::ifstream in(file);
  if (!fs::is_regular_file(file, error) || !in) {
    show_cannot_open(path);
    return 0;
  }
  std::string text;
  while (std::getline(in, text)) {
    const ReportLine line = parse_report_line(text);
    // The complement of the hero's wins, doubled; 0.01 absorbs the rounding of the printed halves.
    const double value = (line.boards - line.wins) * 2 + 0.01;
    if (value >= 1 && value < 2147483648.0)  // a positive int (also false for NaN)
      m_equityTurnTable.try_emplace({hand_key(line.hero1, line.hero2), hand_key(line.villain1, line.villain2)},
                                    static_cast<int>(value));
    if (line.number == kReportMatchups) break;
  }
  return 1;
}

// ---- the five-card combination table ------------------------------------------------------------------

int PokerLogic::save_PokerCombinations_table(CString path) const {
  std::vector<char> bytes;
  bytes.reserve(m_combinations.size() * kCombinationRecordBytes);
  for (const auto& [key, rank] : m_combinations)
    if (rank > 0) append_record<2>(bytes, {key, rank});
  save_records(path, bytes);
  return 1;
}

int PokerLogic::generate_PokerCombinations_table(CString path) {
  m_combinations.clear();
  std::vector<char> bytes;
  if (pokermath::file_size(path) == kCombinationFileBytes && pokermath::read_file(path, bytes)) {
    for (size_t at = 0; at + kCombinationRecordBytes <= bytes.size(); at += kCombinationRecordBytes) {
      const auto [key, rank] = decode_record<2>(bytes.data() + at);
      if (rank < 1)
        ShowMessage(numbers_message(L"load_PokerCombinations_table", {key, rank}));
      else
        m_combinations.try_emplace(m_combinations.end(), key, rank);
    }
    return 1;
  }

  // Six bits per card with the lowest card in the highest bits: hands visited in increasing card
  // order have increasing keys, so every entry goes at the end of the map.
  const uint32_t* w = m_deck.m_words;
  auto word = [w](int card) { return static_cast<int>(w[card]); };
  for (int c1 = 0; c1 < 48; ++c1)
    for (int c2 = c1 + 1; c2 < 49; ++c2)
      for (int c3 = c2 + 1; c3 < 50; ++c3)
        for (int c4 = c3 + 1; c4 < 51; ++c4)
          for (int c5 = c4 + 1; c5 < 52; ++c5) {
            const int key = (((c1 * 64 + c2) * 64 + c3) * 64 + c4) * 64 + c5;
            m_combinations.emplace_hint(m_combinations.end(), key,
                                        eval_5hand_fast(word(c1), word(c2), word(c3), word(c4), word(c5)));
          }
  save_PokerCombinations_table(path);
  return 0;
}

// ---- the pokermath:: pre-flop table file ----------------------------------------------------------------

namespace pokermath {

namespace {

std::string quoted(const fs::path& path) {
  std::string text = path.string();
  text.insert(text.begin(), '\'');
  text += '\'';
  return text;
}

// Why an entry cannot be part of a pre-flop table, or "" when it can.
std::string preflop_entry_problem(int hero_key, int villain_key, int value) {
  auto is_hand_key = [](int key) { return key >= 0 && key / 64 < key % 64 && key % 64 < 52; };
  if (!is_hand_key(hero_key)) return "hero key " + std::to_string(hero_key) + " is not a hand key";
  if (!is_hand_key(villain_key)) return "villain key " + std::to_string(villain_key) + " is not a hand key";
  const int hero1 = hero_key / 64, hero2 = hero_key % 64, villain1 = villain_key / 64, villain2 = villain_key % 64;
  if (hero1 == villain1 || hero1 == villain2 || hero2 == villain1 || hero2 == villain2) return "the hands share a card";
  if (value < 1 || value > kMaxPreflopValue)
    return "value " + std::to_string(value) + " is not in 1.." + std::to_string(kMaxPreflopValue);
  return {};
}

std::string entry_text(int hero_key, int villain_key, int value) {
  std::string text(1, '(');
  for (const int n : {hero_key, villain_key, value}) text += std::to_string(n) + ", ";
  text.resize(text.size() - 2);
  return text + ')';
}

std::vector<char> read_bytes(const fs::path& path) {
  std::error_code error;
  if (!fs::exists(path, error))  // an error here is why the path cannot be looked at (EACCES, ...)
    throw FileError("pre-flop table file " + quoted(path) + " is missing", path, error ? error.value() : ENOENT);
  if (!fs::is_regular_file(path, error))
    throw FileError("pre-flop table file " + quoted(path) + " is not a regular file", path, error.value());
  std::ifstream in(path, std::ios::binary);
  const auto size = fs::file_size(path, error);
  std::vector<char> bytes(error ? 0 : size);
  if (error || !in || !in.read(bytes.data(), static_cast<std::streamsize>(bytes.size())))
    throw FileError("cannot read pre-flop table file " + quoted(path), path, error ? error.value() : open_error(path));
  return bytes;
}

fs::path directory_of(const fs::path& path) { return path.has_parent_path() ? path.parent_path() : fs::path("."); }

}  // namespace

namespace detail {

std::string preflop_file_problem(const std::vector<char>& bytes, const fs::path& path,
                                 const std::function<std::string(int hero_key, int villain_key, int value)>& record) {
  if (bytes.size() % kEquityRecordBytes != 0)
    return "its " + std::to_string(bytes.size()) + " bytes are not a whole number of " +
           std::to_string(kEquityRecordBytes) + "-byte records";
  Checksum checksum;
  checksum.update(bytes.data(), bytes.size());
  const ManifestEntry content{bytes.size(), checksum.digest()};
  // A directory that lists the file vouches for its bytes; one that does not (a table saved by hand
  // elsewhere) leaves the records' own checks.
  if (manifest_entry(directory_of(path), path.filename().string()))
    if (std::string problem = table_problem(directory_of(path), path.filename().string(), content); !problem.empty())
      return problem;
  for (size_t at = 0; at < bytes.size(); at += kEquityRecordBytes) {
    const auto [hero, villain, value] = decode_record<3>(bytes.data() + at);
    std::string problem = preflop_entry_problem(hero, villain, value);
    if (problem.empty()) problem = record(hero, villain, value);
    if (!problem.empty())
      return "record " + std::to_string(at / kEquityRecordBytes + 1) + " " + entry_text(hero, villain, value) + ": " +
             problem;
  }
  return "";
}

}  // namespace detail

void save_preflop_table(const PokerLogic& logic, const fs::path& path) {
  for (const auto& [keys, value] : logic.m_equityTable)
    if (const std::string problem = preflop_entry_problem(keys.first, keys.second, value); !problem.empty())
      throw Error("cannot save pre-flop table entry " + entry_text(keys.first, keys.second, value) + ": " + problem);
  const std::vector<char> bytes = equity_records(logic.m_equityTable, [](const std::pair<int, int>&, int) {});
  std::error_code error;
  if (!fs::is_directory(directory_of(path), error))
    throw FileError("cannot write pre-flop table file " + quoted(path) + ": " + std::strerror(ENOENT), path, ENOENT);
  // Written under a temporary name, renamed into place and listed in the directory's manifest.
  detail::write_table(directory_of(path), path.filename().string(), bytes.size(), [&](const fs::path& temporary) {
    return pokermath::write_file(widen(temporary.string()), bytes.data(), bytes.size());
  });
}

size_t load_preflop_table(PokerLogic& logic, const fs::path& path) {
  const std::vector<char> bytes = read_bytes(path);
  EquityTable table;
  const std::string problem = detail::preflop_file_problem(bytes, path, [&](int hero, int villain, int value) {
    const size_t before = table.size();
    table.try_emplace(table.end(), std::pair{hero, villain}, value);
    return table.size() > before ? std::string() : std::string("the key pair repeats an earlier record");
  });
  if (!problem.empty())
    throw Error("pre-flop table file " + quoted(path) + " is damaged: " + problem +
                " (pokermath tables --preflop --force writes it again)");
  logic.m_equityTable = std::move(table);
  return logic.m_equityTable.size();
}

}  // namespace pokermath

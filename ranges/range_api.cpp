// The pokermath:: range API: printing and counting ranges, the built-in tables and range files.
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cwctype>
#include <filesystem>
#include <set>

#include "ranges/hand_classes.h"
#include "ranges/range_file.h"
#include "ranges/tables.h"
#include "support/files.h"

namespace pokermath {

namespace {

using detail::kClasses;

constexpr int kHoldemClasses = 169, kHoldemCombos = 1326;
constexpr int kShortDeckClasses = 81, kShortDeckCombos = 630;

std::string in_quotes(std::string_view text) {
  std::string out(1, '\'');
  out.append(text).push_back('\'');
  return out;
}

void check_percent(double percent) {
  if (!(percent >= 0 && percent <= 100)) {
    char text[64];
    std::snprintf(text, sizeof text, "%g", percent);
    throw Error("bad percentage " + std::string(text) + ": must be between 0 and 100");
  }
}

void check_cell(int cell) {
  if (cell < 0 || cell >= kClasses) throw Error("bad class cell " + std::to_string(cell) + ": must be 0..168");
}

// Calls visit(cell, first, second) once per distinct combination of valid, different cards, the
// pair written higher code first.
template <typename Visit>
void for_each_combination(const Spec& range, Visit visit) {
  std::array<uint64_t, 52> seen{};  // seen[high] has bit `low`
  for (const auto& [a, b] : range.m_hands) {
    const int cell = detail::combo_cell(a, b);
    if (cell < 0 || a == b) continue;
    const int high = std::max(a, b), low = std::min(a, b);
    if (seen[high] >> low & 1) continue;
    seen[high] |= uint64_t{1} << low;
    visit(cell, high, low);
  }
}

// The built-in tables, built once on first use and only read afterwards.
const CStatSpectr& holdem_tables() {
  static const CStatSpectr tables = [] {
    CStatSpectr t;
    t.Init();
    t.InitEquil();
    t.InitBrenmark();
    return t;
  }();
  return tables;
}

const CStatSpectr& short_deck_tables() {
  static const CStatSpectr tables = [] {
    CStatSpectr t;
    t.InitEquil6Plus();
    return t;
  }();
  return tables;
}

// The cell of a class token of a range file as Spec::AddStringToSpectr reads it, checked: "XX" a
// pair, "XY" offsuit, "(XY)" suited, upper-case rank letters, then nothing or a blank and a
// comment. Throws Error starting with `where` otherwise.
int file_token_cell(const CString& line, const std::string& where) {
  const auto fail = [&](const std::string& why) -> int {
    throw Error(where + "bad class " + in_quotes(narrow(line)) + ": " + why);
  };
  const bool suited = line.size() >= 4 && line[0] == L'(' && line[3] == L')';
  const size_t length = suited ? 4 : 2, first = suited ? 1 : 0;
  if (line.size() < length) return fail("a class is 'QQ' (pair), 'AK' (offsuit) or '(AK)' (suited)");
  const int r1 = GetCardRankByName(line[first]), r2 = GetCardRankByName(line[first + 1]);
  if (r1 < 0 || r2 < 0) return fail("rank letters are 2 3 4 5 6 7 8 9 T J Q K A (upper case)");
  if (line.size() > length && !std::iswspace(static_cast<wint_t>(line[length])))
    return fail(
        "write a pair as 'QQ', an offsuit class as 'AK' and a suited class as '(AK)'; a comment must follow a blank");
  if (suited && r1 == r2) return fail("a pair cannot be suited");
  const detail::ClassKind kind = r1 == r2 ? detail::ClassKind::Pair
                                 : suited ? detail::ClassKind::Suited
                                          : detail::ClassKind::Offsuit;
  return detail::class_cell(std::max(r1, r2), std::min(r1, r2), kind);
}

// The weight of a hand line: "@N" (0 < N <= 100) as the first word after the class token, else 100
// (the rest of a line is a comment). Throws Error starting with `where` for a bad number.
double line_weight(const CString& line, size_t token_length, const std::string& where) {
  size_t i = token_length;
  while (i < line.size() && std::iswspace(static_cast<wint_t>(line[i]))) ++i;
  if (i == line.size() || line[i] != L'@') return 100;
  size_t end = i + 1;
  while (end < line.size() && !std::iswspace(static_cast<wint_t>(line[end]))) ++end;
  const std::string number = narrow(line.substr(i + 1, end - i - 1));
  const bool plain = !number.empty() && number.find_first_not_of("0123456789.") == std::string::npos &&
                     std::count(number.begin(), number.end(), '.') <= 1 && number != ".";
  const double weight = plain ? std::strtod(number.c_str(), nullptr) : 0;
  if (!(weight > 0 && weight <= 100))
    throw Error(where + "the weight after '@' must be a number with 0 < N <= 100, got '" + number + "'");
  return weight;
}

// Checks every hand line of a range file: valid tokens, each class once, classes of the game, the
// right combination total, weights. Throws Error naming the file and the line. Fills `weights`
// (per class cell, 100 unless the line gives one) when it is not null.
void check_range_file(const std::string& path, const std::vector<CString>& lines, RangeGame game,
                      std::array<double, kClasses>* weights = nullptr) {
  if (weights) weights->fill(100);
  const bool short_deck = game == RangeGame::ShortDeck;
  const int classes = short_deck ? kShortDeckClasses : kHoldemClasses;
  const int combos = short_deck ? kShortDeckCombos : kHoldemCombos;
  std::array<int, kClasses> line_of_cell{};
  bool in_hands = false;
  int listed = 0, total = 0;
  for (size_t i = 0; i < lines.size(); ++i) {
    const CString& line = lines[i];
    if (line.empty()) continue;
    in_hands = in_hands || detail::starts_hand_lines(line);
    if (!in_hands) continue;
    const std::string where = "range file " + in_quotes(path) + " line " + std::to_string(i + 1) + ": ";
    const int cell = file_token_cell(line, where);
    if (short_deck && !detail::short_deck_class(cell))
      throw Error(where + "class " + in_quotes(narrow(line)) + " is not in the short deck (ranks 6 to A)");
    if (line_of_cell[cell] != 0)
      throw Error(where + "class " + in_quotes(narrow(line)) + " is listed twice (first on line " +
                  std::to_string(line_of_cell[cell]) + ")");
    line_of_cell[cell] = static_cast<int>(i) + 1;
    const double weight = line_weight(line, line.size() >= 4 && line[0] == L'(' ? 4 : 2, where);
    if (weights) (*weights)[static_cast<size_t>(cell)] = weight;
    ++listed;
    total += detail::class_combos(cell);
  }
  if (!in_hands)
    throw Error("range file " + in_quotes(path) + ": no line starts with 'AA' (the strongest class first)");
  if (total != combos)
    throw Error("range file " + in_quotes(path) + " lists " + std::to_string(listed) + " of the " +
                std::to_string(classes) + " classes (" + std::to_string(total) + " of " + std::to_string(combos) +
                " combinations)");
}

}  // namespace

std::string range_to_string(const Spec& range, bool short_deck) {
  // Whole classes print as runs; a class held only in part prints as its combinations.
  const std::array<int, kClasses> counts = range_class_counts(range);
  std::array<int, kClasses> whole{};
  for (int cell = 0; cell < kClasses; ++cell)
    whole[cell] = counts[cell] == detail::class_combos(cell) && (!short_deck || detail::short_deck_class(cell));
  std::string text = narrow(detail::matrix_to_string(whole.data(), L"o"));

  std::set<std::pair<int, std::pair<int, int>>> parts;  // by cell, then the cards
  for_each_combination(range, [&](int cell, int high, int low) {
    if (!whole[cell] && (!short_deck || detail::short_deck_class(cell))) parts.insert({cell, {high, low}});
  });
  for (const auto& [cell, cards] : parts) {
    // The higher rank first; on equal ranks the higher suit.
    auto [a, b] = cards;
    if (a % 13 < b % 13) std::swap(a, b);
    if (!text.empty()) text += ',';
    text += card_to_string(a) + card_to_string(b);
  }
  return text;
}

int range_combos(const Spec& range) {
  int count = 0;
  for_each_combination(range, [&count](int, int, int) { ++count; });
  return count;
}

std::array<int, 169> range_class_counts(const Spec& range) {
  std::array<int, kClasses> counts{};
  for_each_combination(range, [&counts](int cell, int, int) { ++counts[cell]; });
  return counts;
}

std::string hand_class_name(int cell) {
  check_cell(cell);
  return narrow(detail::class_name(cell, L"o"));
}

int hand_class_combos(int cell) {
  check_cell(cell);
  return detail::class_combos(cell);
}

TableRange table_range(RangeTable table, double percent) {
  check_percent(percent);
  TableRange result;
  CString text;
  const CStatSpectr& tables = table == RangeTable::ShortDeckEquity ? short_deck_tables() : holdem_tables();
  switch (table) {
    case RangeTable::Equity:
    case RangeTable::ShortDeckEquity:
      result.key = detail::select_entry(tables.m_equityTable, tables.m_equityText, percent, result.range, text);
      break;
    case RangeTable::Brenmark:
      result.key = detail::select_entry(tables.m_brenmarkTable, tables.m_brenmarkText, percent, result.range, text);
      break;
    case RangeTable::Groups:
      result.key = detail::select_entry(tables.m_groupTable, {}, percent, result.range, text);
      text = detail::table_text(result.range, false);
      break;
  }
  result.text = narrow(text);
  return result;
}

Spec read_range_file(const std::string& path, RangeGame game) {
  std::array<double, 169> weights{};
  return read_range_file(path, game, weights);
}

Spec read_range_file(const std::string& path, RangeGame game, std::array<double, 169>& weights) {
  const CString wide = widen(path);
  if (wide.size() < 4 || wide.substr(wide.size() - 4) != L".txt")
    throw Error("range file " + in_quotes(path) + ": the name must end in .txt");
  // A directory or a FIFO is no range file; reading a FIFO would wait for a writer.
  std::error_code ec;
  const std::filesystem::path file = to_path(wide);
  const std::filesystem::file_status status = std::filesystem::status(file, ec);
  if (std::filesystem::exists(status) && !std::filesystem::is_regular_file(status))
    throw FileError("range file " + in_quotes(path) + " is not a regular file", path, 0);
  // The status call's error says why nothing was found: ENOENT, or EACCES on a directory above.
  if (!file_exists(wide))
    throw FileError("range file " + in_quotes(path) + " not found", path, ec ? ec.value() : ENOENT);
  const auto cannot_read = [&] {
    return FileError("range file " + in_quotes(path) + " cannot be read", path, detail::open_error(file));
  };
  std::vector<CString> lines;
  if (!detail::read_lines(wide, lines)) throw cannot_read();
  check_range_file(path, lines, game, &weights);

  // The lines were checked above, so the classic reader fails here only when the file has gone or
  // become unreadable since.
  Spec source;
  source.SetFile(wide);
  source.SetTotalStrategies(game == RangeGame::ShortDeck ? kShortDeckClasses : kHoldemClasses);
  source.SetTotalHands(game == RangeGame::ShortDeck ? kShortDeckCombos : kHoldemCombos);
  if (source.ReadSpectrFromFile(0) != 1) throw cannot_read();
  return source;
}

WeightedRange range_by_percent(const Spec& source, double percent, const std::array<double, 169>& weights) {
  WeightedRange range;
  for (const auto& [a, b] : range_by_percent(source, percent).m_hands)
    if (a != b) range.set_weight(a, b, weights[static_cast<size_t>(hand_class_of(a, b))]);
  return range;
}

Spec range_by_percent(const Spec& source, double percent) {
  check_percent(percent);
  if (source.m_percentToHand.empty())
    throw Error("the range source holds no percentage order (read a range file first)");
  Spec range;
  source.GetSpecByPercent(percent, range);
  return range;
}

}  // namespace pokermath

// pokermath::parse_range: range expressions as players type them, and the printed form of
// Spec::MakeString read back exactly.
#include <algorithm>
#include <cctype>
#include <cstdlib>

#include "ranges/hand_classes.h"

namespace pokermath {

namespace {

using detail::ClassKind;

constexpr std::string_view kRankChars = "23456789TJQKA";
constexpr std::string_view kSuitChars = "cdhs";

// A class as written: two rank indices (high >= low) and which kinds it stands for.
struct WrittenClass {
  int high = 0;
  int low = 0;
  bool pair = false;
  bool suited = false;   // stands for the suited class
  bool offsuit = false;  // stands for the offsuit class
};

int index_in(std::string_view alphabet, char c, bool upper) {
  const auto u = static_cast<unsigned char>(c);
  const char folded = static_cast<char>(upper ? std::toupper(u) : std::tolower(u));
  const size_t pos = alphabet.find(folded);
  return pos == std::string_view::npos ? -1 : static_cast<int>(pos);
}

int rank_of(char c) { return index_in(kRankChars, c, true); }
int suit_of(char c) { return index_in(kSuitChars, c, false); }

// Reads one item of a range expression into a selection of whole classes and single combinations.
class ItemReader {
 public:
  ItemReader(std::string_view item, int position, RangeNotation notation)
      : m_item(item), m_position(position), m_notation(notation) {}

  void read(std::array<bool, detail::kClasses>& cells, std::vector<std::pair<int, int>>& combos) const {
    std::string lower(m_item);
    std::transform(lower.begin(), lower.end(), lower.begin(), [](unsigned char c) { return std::tolower(c); });
    if (lower == "random" || lower == "any") {
      if (printed()) fail("'random' and 'any' are not part of the printed form");
      cells.fill(true);
    } else if (looks_like_combination()) {
      combos.push_back(read_combination());
    } else if (m_item.back() == '+') {
      select_from(read_class(m_item.substr(0, m_item.size() - 1)), cells);
    } else if (const size_t dash = m_item.find('-'); dash != std::string_view::npos) {
      select_between(read_class(m_item.substr(0, dash)), read_class(m_item.substr(dash + 1)), cells);
    } else {
      const WrittenClass c = read_class(m_item);
      select(c, c.low, c.low, cells);
    }
  }

 private:
  std::string_view m_item;
  int m_position;
  RangeNotation m_notation;

  bool printed() const { return m_notation == RangeNotation::Printed; }

  [[noreturn]] void fail(const std::string& why) const {
    throw Error("bad range item '" + std::string(m_item) + "' at position " + std::to_string(m_position) + ": " + why);
  }

  [[noreturn]] void fail_form() const {
    if (printed())
      fail(
          "expected a class ('AA', 'AKs', 'AK') or a run ('TT+', 'A2s+', '99-66', 'A9s-A6s') as Spec::MakeString "
          "prints them");
    fail(
        "expected a class ('AA', 'AKs', 'AKo', 'AK'), a run ('TT+', 'A2s+', '99-66', 'A9s-A6s'), a combination "
        "('AsKs') or 'any'");
  }

  // Four characters with suit letters second and fourth: "AsKs", "7h7d".
  bool looks_like_combination() const {
    return m_item.size() == 4 && suit_of(m_item[1]) >= 0 && suit_of(m_item[3]) >= 0;
  }

  std::pair<int, int> read_combination() const {
    if (printed()) fail("single combinations are not part of the printed form");
    const int r1 = rank_of(m_item[0]), r2 = rank_of(m_item[2]);
    if (r1 < 0 || r2 < 0) fail("rank must be one of 2 3 4 5 6 7 8 9 T J Q K A");
    const int a = 13 * suit_of(m_item[1]) + r1, b = 13 * suit_of(m_item[3]) + r2;
    if (a == b) fail("the two cards are the same");
    // The order the class additions use, so that a combination and its whole class never make two
    // elements: higher rank first, and a pair's lower suit first.
    if (r1 != r2) return r1 > r2 ? std::pair{a, b} : std::pair{b, a};
    return {std::min(a, b), std::max(a, b)};
  }

  WrittenClass read_class(std::string_view text) const {
    if (text.size() < 2 || text.size() > 3) fail_form();
    const int r1 = rank_of(text[0]), r2 = rank_of(text[1]);
    if (r1 < 0 || r2 < 0) fail("rank must be one of 2 3 4 5 6 7 8 9 T J Q K A");
    WrittenClass c{std::max(r1, r2), std::min(r1, r2), r1 == r2};
    const char suffix = text.size() == 3 ? static_cast<char>(std::tolower(static_cast<unsigned char>(text[2]))) : 0;
    if (suffix != 0 && !std::isalpha(static_cast<unsigned char>(suffix))) fail_form();
    if (suffix != 0 && suffix != 's' && suffix != 'o') fail("suffix must be s (suited) or o (offsuit)");
    if (c.pair) {
      if (suffix != 0) fail("a pair takes no suffix");
      return c;
    }
    if (suffix == 'o' && printed()) fail("the printed form writes offsuit classes without 'o'");
    c.suited = suffix == 's' || (suffix == 0 && !printed());
    c.offsuit = suffix == 'o' || suffix == 0;
    return c;
  }

  // The classes of one high card with kickers from..to; for a pair, the pairs from..to.
  static void select(const WrittenClass& c, int from, int to, std::array<bool, detail::kClasses>& cells) {
    for (int r = from; r <= to; ++r) {
      if (c.pair) cells[detail::class_cell(r, r, ClassKind::Pair)] = true;
      if (c.suited) cells[detail::class_cell(c.high, r, ClassKind::Suited)] = true;
      if (c.offsuit) cells[detail::class_cell(c.high, r, ClassKind::Offsuit)] = true;
    }
  }

  // "TT+": the pair up to aces; "K9s+": the kicker up to one below the high card.
  static void select_from(const WrittenClass& c, std::array<bool, detail::kClasses>& cells) {
    select(c, c.low, c.pair ? 12 : c.high - 1, cells);
  }

  // "99-66" or "A9s-A6s", either end first.
  void select_between(const WrittenClass& a, const WrittenClass& b, std::array<bool, detail::kClasses>& cells) const {
    const bool same_line =
        a.pair == b.pair && (a.pair || (a.high == b.high && a.suited == b.suited && a.offsuit == b.offsuit));
    if (!same_line)
      fail("both ends of a run must be pairs, or have the same high card and suffix ('99-66', 'A9s-A6s')");
    select(a, std::min(a.low, b.low), std::max(a.low, b.low), cells);
  }
};

bool is_separator(char c) { return c == ',' || std::isspace(static_cast<unsigned char>(c)); }

// Calls item(text, position) for each item of a range expression: runs of characters between
// commas and blanks, numbered from 1.
template <typename Item>
void for_each_item(std::string_view text, Item item) {
  int position = 0;
  size_t i = 0;
  while (i < text.size()) {
    if (is_separator(text[i])) {
      ++i;
      continue;
    }
    size_t end = i;
    while (end < text.size() && !is_separator(text[end])) ++end;
    item(text.substr(i, end - i), ++position);
    i = end;
  }
}

[[noreturn]] void bad_item(std::string_view item, int position, const std::string& why) {
  throw Error("bad range item '" + std::string(item) + "' at position " + std::to_string(position) + ": " + why);
}

// The weight of "@N" at the end of an item: a plain decimal number, 0 < N <= 100.
double read_weight(std::string_view item, std::string_view number, int position) {
  const std::string digits(number);
  const bool plain = !digits.empty() && digits.find_first_not_of("0123456789.") == std::string::npos &&
                     std::count(digits.begin(), digits.end(), '.') <= 1 && digits != ".";
  const double weight = plain ? std::strtod(digits.c_str(), nullptr) : 0;
  if (!plain || !(weight > 0 && weight <= 100))
    bad_item(item, position, "the weight after '@' must be a number with 0 < N <= 100, got '" + digits + "'");
  return weight;
}

}  // namespace

Spec parse_range(std::string_view text, RangeNotation notation) {
  std::array<bool, detail::kClasses> cells{};
  std::vector<std::pair<int, int>> combos;
  for_each_item(text, [&](std::string_view item, int position) {
    if (item.find('@') != std::string_view::npos)
      bad_item(item, position, "this range takes no weights (\"@N\" is read by weighted ranges)");
    ItemReader(item, position, notation).read(cells, combos);
  });

  Spec range;
  for (int cell = 0; cell < detail::kClasses; ++cell)
    if (cells[cell]) detail::add_class(range, cell);
  range.m_hands.insert(combos.begin(), combos.end());
  return range;
}

WeightedRange parse_weighted_range(std::string_view text) {
  WeightedRange range;
  for_each_item(text, [&](std::string_view item, int position) {
    const size_t at = item.rfind('@');
    const double weight = at == std::string_view::npos ? 100 : read_weight(item, item.substr(at + 1), position);
    const std::string_view body = item.substr(0, std::min(at, item.size()));
    if (body.empty()) bad_item(item, position, "a weight needs a class or a combination before '@'");
    std::array<bool, detail::kClasses> cells{};
    std::vector<std::pair<int, int>> combos;
    ItemReader(body, position, RangeNotation::Players).read(cells, combos);
    Spec selected;
    for (int cell = 0; cell < detail::kClasses; ++cell)
      if (cells[cell]) detail::add_class(selected, cell);
    selected.m_hands.insert(combos.begin(), combos.end());
    for (const auto& [a, b] : selected.m_hands)
      if (a != b) range.set_weight(a, b, std::max(weight, range.weight(a, b)));
  });
  return range;
}

}  // namespace pokermath

// The 169 starting-hand classes: names, additions to a Spec and the printed range string.
#include "ranges/hand_classes.h"

#include <algorithm>
#include <cstdlib>

namespace pokermath::detail {

void add_class(Spec& spec, int cell) {
  const HandClass c = class_of_cell(cell);
  switch (c.kind) {
    case ClassKind::Pair: spec.AddPair(c.high); break;
    case ClassKind::Suited: spec.AddSuit(c.high, c.low); break;
    case ClassKind::Offsuit: spec.AddNonSuit(c.high, c.low); break;
  }
}

CString class_name(int cell, std::wstring_view offsuit_suffix) {
  const HandClass c = class_of_cell(cell);
  CString name{kRankLetters[c.high], kRankLetters[c.low]};
  if (c.kind == ClassKind::Suited) name += L's';
  if (c.kind == ClassKind::Offsuit) name += offsuit_suffix;
  return name;
}

int cell_of_class_name(std::wstring_view name) {
  if (name.size() < 2 || name.size() > 3) return -1;
  const int high = GetCardRankByName(name[0]), low = GetCardRankByName(name[1]);
  if (high < 0 || low < 0 || low > high) return -1;
  if (name.size() == 2) return high == low ? class_cell(high, low, ClassKind::Pair) : -1;
  if (high == low || (name[2] != L's' && name[2] != L'o')) return -1;
  return class_cell(high, low, name[2] == L's' ? ClassKind::Suited : ClassKind::Offsuit);
}

std::vector<int> cells_of_class_list(std::wstring_view names) {
  std::vector<int> cells;
  size_t i = 0;
  while (i < names.size()) {
    if (names[i] == L' ') {
      ++i;
      continue;
    }
    const size_t end = std::min(names.find(L' ', i), names.size());
    const int cell = cell_of_class_name(names.substr(i, end - i));
    if (cell < 0) std::abort();  // built-in data only: a typo here must not pass silently
    cells.push_back(cell);
    i = end;
  }
  return cells;
}

namespace {

// Appends the runs of set cells along one line of the matrix: positions top..12, where
// cell_at(position) gives the cell. A gap closes a run; the line's end closes the last one.
template <typename CellAt>
void append_line_runs(const int matrix[kClasses], int top, CellAt cell_at, std::wstring_view offsuit_suffix,
                      CString& out) {
  int first = -1, last = -1;
  CString first_name, last_name;
  for (int position = top; position <= 12; ++position) {
    const int cell = cell_at(position);
    if (matrix[cell] != 0) {
      if (first < 0) {
        first = position;
        first_name = class_name(cell, offsuit_suffix);
      }
      last = position;
      last_name = class_name(cell, offsuit_suffix);
    } else if (first >= 0) {
      MakeStr(first, last, top, first_name, last_name, out);
      first = -1;
    }
  }
  if (first >= 0) MakeStr(first, last, top, first_name, last_name, out);
}

}  // namespace

CString matrix_to_string(const int matrix[kClasses], std::wstring_view offsuit_suffix) {
  CString pairs, suited, offsuit;
  append_line_runs(
      matrix, 0, [](int k) { return 13 * k + k; }, offsuit_suffix, pairs);
  for (int row = 0; row < 13; ++row)
    append_line_runs(
        matrix, row + 1, [row](int column) { return 13 * row + column; }, offsuit_suffix, suited);
  for (int column = 0; column < 13; ++column)
    append_line_runs(
        matrix, column + 1, [column](int row) { return 13 * row + column; }, offsuit_suffix, offsuit);

  CString out;
  for (const CString* piece : {&pairs, &suited, &offsuit}) {
    if (piece->empty()) continue;
    if (!out.empty()) out += L',';
    out += *piece;
  }
  return out;
}

std::array<int, kClasses> matrix_of(const Spec& spec, bool short_deck) {
  std::array<int, kClasses> matrix{};
  if (short_deck)
    spec.MakeMatrix6Plus(matrix.data());
  else
    spec.MakeMatrix(matrix.data());
  return matrix;
}

std::vector<Spec> cumulative_ranges(const std::vector<int>& order) {
  std::vector<Spec> ranges;
  ranges.reserve(order.size());
  Spec cumulative;
  for (int cell : order) {
    add_class(cumulative, cell);
    ranges.push_back(cumulative);
  }
  return ranges;
}

CString table_text(const Spec& spec, bool short_deck) {
  return matrix_to_string(matrix_of(spec, short_deck).data(), L"o");
}

}  // namespace pokermath::detail

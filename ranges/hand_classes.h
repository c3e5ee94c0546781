// The 169 starting-hand classes: matrix cells, names, combination counts and the printed range
// string of a class matrix. Shared by Spec, the percentage tables and the range parser.
#pragma once

#include <array>
#include <string_view>
#include <vector>

#include "pokermath/ranges.h"

namespace pokermath::detail {

inline constexpr int kClasses = 169;
inline constexpr int kShortDeckLowestRank = 4;  // rank index of "6"

enum class ClassKind { Pair, Suited, Offsuit };

// A class by its two rank indices (high >= low) and kind.
struct HandClass {
  int high = 0;
  int low = 0;
  ClassKind kind = ClassKind::Pair;
};

// The matrix cell of a class: pairs on the diagonal, suited above it, offsuit below it.
constexpr int class_cell(int high, int low, ClassKind kind) {
  const int upper = 12 - high, lower = 12 - low;  // rows and columns run from the ace down
  return kind == ClassKind::Offsuit ? 13 * lower + upper : 13 * upper + lower;
}

// The class of a matrix cell 0..168.
constexpr HandClass class_of_cell(int cell) {
  const int row = cell / 13, column = cell % 13;
  if (row == column) return {12 - row, 12 - row, ClassKind::Pair};
  if (column > row) return {12 - row, 12 - column, ClassKind::Suited};
  return {12 - column, 12 - row, ClassKind::Offsuit};
}

// True for a card code 0..51.
constexpr bool valid_card(int card) { return card >= 0 && card <= 51; }

// The class cell of a combination, or -1 when a code lies outside 0..51.
constexpr int combo_cell(int a, int b) {
  if (!valid_card(a) || !valid_card(b)) return -1;
  const int ra = a % 13, rb = b % 13;
  const int high = ra > rb ? ra : rb, low = ra > rb ? rb : ra;
  const ClassKind kind = ra == rb ? ClassKind::Pair : a / 13 == b / 13 ? ClassKind::Suited : ClassKind::Offsuit;
  return class_cell(high, low, kind);
}

// Combinations of a class: 6 for a pair, 4 suited, 12 offsuit.
constexpr int class_combos(int cell) {
  const ClassKind kind = class_of_cell(cell).kind;
  return kind == ClassKind::Pair ? 6 : kind == ClassKind::Suited ? 4 : 12;
}

// True when both ranks of the class exist in the 36-card short deck.
constexpr bool short_deck_class(int cell) { return class_of_cell(cell).low >= kShortDeckLowestRank; }

// Adds every combination of a class with AddPair, AddSuit or AddNonSuit.
void add_class(Spec& spec, int cell);

// "AA", "AKs", and the offsuit class as "AK" + offsuit_suffix.
CString class_name(int cell, std::wstring_view offsuit_suffix);

// The cell of a class written "AA", "AKs" or "AKo" (the built-in tables' notation), or -1.
int cell_of_class_name(std::wstring_view name);

// The cells of a list of such names separated by blanks; the tables' data are checked by tests,
// so a bad name is a programming error and aborts.
std::vector<int> cells_of_class_list(std::wstring_view names);

// The range string of a class matrix: pair runs, suited runs, offsuit runs, joined by ",";
// offsuit names carry `offsuit_suffix` ("" as Spec::MakeString prints, "o" in the tables).
CString matrix_to_string(const int matrix[kClasses], std::wstring_view offsuit_suffix);

// The 169-cell class matrix of a Spec as a std::array (MakeMatrix or MakeMatrix6Plus).
std::array<int, kClasses> matrix_of(const Spec& spec, bool short_deck);

// The cumulative ranges of a class order: entry i holds the classes order[0..i].
std::vector<Spec> cumulative_ranges(const std::vector<int>& order);

// The text of a table entry: the range string with "o" offsuit names.
CString table_text(const Spec& spec, bool short_deck);

}  // namespace pokermath::detail

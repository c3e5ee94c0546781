// Helpers shared by the range tests: class tokens in range-file form, scratch files, messages.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "pokermath/pokermath.h"
#include "test_util.h"

namespace range_test {

// The token of class cell 0..168 as a range file writes it: "AA", "(AK)" suited, "AK" offsuit.
inline std::string file_token(int cell) {
  const std::string name = pokermath::hand_class_name(cell);
  if (name.size() == 2 || name[2] == 'o') return name.substr(0, 2);
  return std::string{'(', name[0], name[1], ')'};
}

// Class cells from the ace down, as a complete Hold'em range file lists them (AA first).
inline std::vector<int> all_cells(bool short_deck = false) {
  std::vector<int> cells;
  for (int cell = 0; cell < 169; ++cell) {
    const int row = cell / 13, column = cell % 13;
    if (!short_deck || (row <= 8 && column <= 8)) cells.push_back(cell);
  }
  return cells;
}

// A directory of its own under the system temporary directory, removed with its files.
class ScratchDir {
 public:
  explicit ScratchDir(const std::string& name)
      : m_path(std::filesystem::temp_directory_path() / (name + "_" + std::to_string(::getpid()))) {
    std::filesystem::create_directories(m_path);
  }
  ~ScratchDir() { std::filesystem::remove_all(m_path); }
  ScratchDir(const ScratchDir&) = delete;
  ScratchDir& operator=(const ScratchDir&) = delete;

  // The path of a file in the directory, and the same as a wide string for the classic API.
  std::string file(const std::string& name) const { return (m_path / name).string(); }
  CString wide(const std::string& name) const { return pokermath::widen(file(name)); }

  // Writes lines, each ended by `eol`, and returns the path.
  std::string write(const std::string& name, const std::vector<std::string>& lines, const char* eol = "\n") const {
    std::ofstream out(file(name), std::ios::binary);
    for (const std::string& line : lines) out << line << eol;
    return file(name);
  }

 private:
  std::filesystem::path m_path;
};

// The range-file lines of a list of class cells.
inline std::vector<std::string> file_lines(const std::vector<int>& cells) {
  std::vector<std::string> lines;
  for (int cell : cells) lines.push_back(file_token(cell));
  return lines;
}

// The 169-cell class matrix of a Spec (MakeMatrix, or MakeMatrix6Plus for the short deck).
inline std::vector<int> matrix(const Spec& spec, bool short_deck = false) {
  std::vector<int> cells(169);
  if (short_deck)
    spec.MakeMatrix6Plus(cells.data());
  else
    spec.MakeMatrix(cells.data());
  return cells;
}

// A Spec holding whole classes, given by their cells.
inline Spec spec_of_cells(const std::vector<int>& cells) {
  Spec spec;
  for (int cell : cells) {
    const std::string name = pokermath::hand_class_name(cell);
    const int high = GetCardRankByName(name[0]), low = GetCardRankByName(name[1]);
    if (name.size() == 2)
      spec.AddPair(high);
    else if (name[2] == 's')
      spec.AddSuit(high, low);
    else
      spec.AddNonSuit(high, low);
  }
  return spec;
}

}  // namespace range_test

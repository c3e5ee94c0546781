// Range files: class tokens one per line, strongest first, read into a Spec's percentage maps.
#include "ranges/range_file.h"

#include <cstdio>
#include <fstream>
#include <string>

#include "pokermath/ranges.h"

namespace pokermath::detail {

bool read_lines(const CString& path, std::vector<CString>& lines) {
  lines.clear();
  std::vector<char> bytes;
  if (!read_file(path, bytes)) return false;
  std::string_view text(bytes.data(), bytes.size());
  if (text.substr(0, 3) == "\xEF\xBB\xBF") text.remove_prefix(3);
  while (!text.empty()) {
    const size_t end = std::min(text.find('\n'), text.size());
    std::string_view line = text.substr(0, end);
    if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
    lines.push_back(widen(line));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return true;
}

bool starts_hand_lines(const CString& line) { return line.compare(0, 2, L"AA") == 0; }

}  // namespace pokermath::detail

namespace {

// The last `count` characters of a text (all of it when shorter).
CString last_chars(const CString& text, size_t count) {
  return text.size() > count ? text.substr(text.size() - count) : text;
}

// One line of the ".res" report: line number, token, its combinations and the cumulative per cent.
std::string report_line(int number, const CString& token, int combos, double percent) {
  const std::string name = pokermath::narrow(token);
  const char* format = " %6d \t %10s  \t %2d \t %.2f%% \n";
  const int length = std::snprintf(nullptr, 0, format, number, name.c_str(), combos, percent);
  std::string line(static_cast<size_t>(length) + 1, '\0');
  std::snprintf(line.data(), line.size(), format, number, name.c_str(), combos, percent);
  line.pop_back();
  return line;
}

}  // namespace

int Spec::AddStringToSpectr(const CString& token, Spec& out) const {
  // Characters past the end read as NUL, which is no rank letter (index -1), as with a short buffer.
  const auto at = [&token](size_t i) { return i < token.size() ? token[i] : L'\0'; };
  if (at(0) == L'(' && at(3) == L')') {
    out.AddSuit(GetCardRankByName(at(1)), GetCardRankByName(at(2)));
    return 4;
  }
  if (at(0) == at(1)) {
    out.AddPair(GetCardRankByName(at(0)));
    return 6;
  }
  out.AddNonSuit(GetCardRankByName(at(0)), GetCardRankByName(at(1)));
  return 12;
}

int Spec::ReadSpectrFromFile(int mode) {
  m_percentToHand.clear();
  m_handToPercent.clear();
  // The report is created before the name is checked, as callers of this reader have always seen.
  std::ofstream report;
  if (mode > 1) {
    const CString report_name = m_fileName.substr(0, m_fileName.size() - last_chars(m_fileName, 3).size()) + L"res";
    report.open(pokermath::to_path(report_name), std::ios::trunc);
  }
  if (last_chars(m_fileName, 3) != L"txt") return 0;
  if (!pokermath::file_exists(m_fileName)) {
    ShowMessage(L"You need to download file " + m_fileName);
    return 0;
  }
  std::vector<CString> lines;
  if (!pokermath::detail::read_lines(m_fileName, lines)) {
    ShowMessage(L"Error: Can not open file " + m_fileName);
    return 0;
  }

  Spec scratch;
  int count = 0, total = 0;
  bool in_hands = false;
  for (const CString& line : lines) {
    if (line.empty()) continue;
    in_hands = in_hands || pokermath::detail::starts_hand_lines(line);
    if (!in_hands || ++count > m_totalStrategies) continue;
    const int combos = AddStringToSpectr(line, scratch);
    total += combos;
    const double percent = static_cast<double>(total * 100) / m_totalHands;
    m_handToPercent[line] = percent;
    m_percentToHand[percent] = line;
    if (report.is_open()) report << report_line(count, line, combos, percent);
  }
  report.close();

  if (mode != 0 && total != m_totalHands) {
    ShowMessage(L"File " + m_fileName + L" is corrupted (it has bad lines " + std::to_wstring(total) + L")!");
    return 0;
  }
  return 1;
}

void Spec::GetSpecByPercent(double percent, Spec& out) const {
  out.m_hands.clear();
  // The margin takes a class whose cumulative share lies just above the asked one.
  const double threshold = percent + 3.5 / m_totalStrategies;
  for (const auto& [key, token] : m_percentToHand)
    if (key < threshold) AddStringToSpectr(token, out);
}

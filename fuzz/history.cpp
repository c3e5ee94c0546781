// Hand-history files in any encoding. The first input byte picks where a writer is caught in the
// middle of the file (as a share of it, 0..255 of 255), the rest is the file. The classic readers
// and read_history read it; they must agree with each other, and reading the part written so far and
// then the rest must give the lines of one read of the whole file. The first lines also go through
// the game-type recogniser.
#include "fuzz_input.h"
#include "pokermath/pokermath.h"

using namespace pokermath;
using pokermath::fuzz::expect;

namespace {

// The classic readers keep a line of blanks as ""; read_history leaves it out.
std::vector<std::string> non_empty(const CStringArray& lines) {
  std::vector<std::string> out;
  for (const std::wstring& line : lines)
    if (!line.empty()) out.push_back(narrow(line));
  return out;
}

// Paths starting with "888poker" read through the narrow code page; that test looks at the path as
// given, so the file is read by a relative name from the scratch directory.
void read_as_888poker(std::string_view bytes) {
  fuzz::write_scratch("888poker.txt", bytes);
  const std::filesystem::path back = std::filesystem::current_path();
  std::filesystem::current_path(fuzz::scratch_directory());
  int64_t position = 0;
  CStringArray lines;
  expect(ReadHistoryFile(L"888poker.txt", position, lines) == 0, "ReadHistoryFile cannot read a 888poker file");
  std::filesystem::current_path(back);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  fuzz::Input input(data, size);
  const uint8_t cut = input.byte();
  const std::string_view bytes = input.rest();
  const std::filesystem::path path = fuzz::write_scratch("history.txt", bytes);
  const CString wide_path = path.wstring();

  // The classic readers return an unfinished last line too, as read_history does with Include.
  const HistoryLines whole = read_history(path);
  const HistoryLines complete = read_history(path, 0, PartialLine::Include);
  expect(read_history(path, complete.position, PartialLine::Include).lines.empty(), "a complete read left lines");
  int64_t position = 0;
  CStringArray lines;
  expect(ReadHistoryFileEx(wide_path, position, lines) == 0, "ReadHistoryFileEx cannot read the file");
  expect(non_empty(lines) == complete.lines, "ReadHistoryFileEx and read_history read different lines");
  expect(position == complete.position, "ReadHistoryFileEx and read_history stop at different positions");
  for (auto reader : {ReadHistoryFile, ReadHistoryFileUTF8}) {
    position = 0;
    expect(reader(wide_path, position, lines) == 0, "a classic reader cannot read the file");
  }
  read_as_888poker(bytes);
  for (size_t i = 0; i < std::min<size_t>(whole.lines.size(), 8); ++i) (void)GetTypeGameHH(widen(whole.lines[i]));

  // A writer caught part way: the lines read then, and the lines read on from the position returned
  // once the file is complete, are the lines of the whole file.
  const size_t written = bytes.size() * cut / 255;
  fuzz::write_scratch("history.txt", bytes.substr(0, written));
  HistoryLines first = read_history(path);
  fuzz::write_scratch("history.txt", bytes);
  const HistoryLines rest = read_history(path, first.position);
  first.lines.insert(first.lines.end(), rest.lines.begin(), rest.lines.end());
  expect(first.lines == whole.lines, "reading a growing file gives other lines than reading it whole");
  expect(rest.position == whole.position, "reading a growing file stops at another position");
  return 0;
}

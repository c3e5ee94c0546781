// Pre-flop table files: the input is the file. The classic loaders take any bytes; the checked
// loader either refuses the file or loads the same entries, which then answer GetWinHandVsHand and
// survive a save and a load unchanged.
#include "fuzz_input.h"
#include "pokermath/pokermath.h"

using namespace pokermath;
using pokermath::fuzz::expect;

namespace {

constexpr size_t kRecordBytes = 12;
constexpr int kRiverBoards = 1712304;

// Engines built once: the constructor allocates the generator's identifier list.
PokerLogic& classic_logic() {
  static PokerLogic logic;
  return logic;
}
PokerLogic& checked_logic() {
  static PokerLogic logic;
  return logic;
}

// A table entry looked up as the engines do: either card order of either hand finds it.
void look_up(const PokerLogic& logic, int hero_key, int villain_key, int value) {
  const int hero[2] = {hero_key % 64, hero_key / 64}, villain[2] = {villain_key / 64, villain_key % 64};
  double wins = -1, boards = -1;
  logic.GetWinHandVsHand(hero, villain, wins, boards);
  expect(wins == value * 0.5 && boards == kRiverBoards, "GetWinHandVsHand does not answer from the table");
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  fuzz::silence_messages();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  const std::filesystem::path path = fuzz::write_scratch("preflop.dat", bytes);

  PokerLogic& classic = classic_logic();
  classic.m_equityTable.clear();
  classic.m_equityTurnTable.clear();
  expect(classic.load_equity_table(path.wstring()) == 1, "load_equity_table refuses an existing file");
  expect(classic.load_equity_turn_table(path.wstring()) == 1, "load_equity_turn_table refuses an existing file");
  expect(classic.m_equityTable.size() <= size / kRecordBytes, "more entries than records");
  for (const auto& [keys, value] : classic.m_equityTable) expect(value > 0, "load_equity_table kept a value below 1");

  PokerLogic& checked = checked_logic();
  size_t entries = 0;
  try {
    entries = load_preflop_table(checked, path);
  } catch (const Error&) {
    return 0;
  }
  expect(entries == size / kRecordBytes, "load_preflop_table left out records");
  expect(checked.m_equityTable == classic.m_equityTable, "the classic and checked loaders read different tables");
  int looked_up = 0;
  for (const auto& [keys, value] : checked.m_equityTable) {
    if (++looked_up > 16) break;
    look_up(checked, keys.first, keys.second, value);
  }

  const std::filesystem::path saved = fuzz::scratch_directory() / "saved.dat";
  save_preflop_table(checked, saved);
  const auto table = checked.m_equityTable;
  expect(load_preflop_table(checked, saved) == entries && checked.m_equityTable == table, "save and load differ");
  return 0;
}

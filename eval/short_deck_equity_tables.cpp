// The short-deck equity tables of fsm5: reading and writing their files, the classic loaders and the
// look-ups. The file layout is in eval/short_deck_equity_files.h.
#include <algorithm>
#include <cstring>
#include <fstream>
#include <mutex>
#include <type_traits>

#include "eval/short_deck_equity_files.h"
#include "eval/state_machine_files.h"
#include "pokermath/eval.h"

uint32_t* fsm5::et2_index = nullptr;
uint32_t* fsm5::et2[3][2] = {};
uint64_t* fsm5::ft2[2] = {};

namespace pokermath::detail {

namespace {

struct Header {
  char magic[16];
  uint64_t entries;
  uint32_t entry_bytes;
  uint32_t zero;
};
static_assert(sizeof(Header) == 32);

Header header_of(const ShortDeckEquityFile& file) {
  Header header{};
  std::memcpy(header.magic, file.magic, std::min(sizeof header.magic, std::strlen(file.magic)));
  header.entries = file.entries;
  header.entry_bytes = file.entry_bytes;
  return header;
}

// The largest entry a file may hold: twice the deals of its street.
uint64_t largest_entry(const ShortDeckEquityFile& file) {
  if (&file == &kShortDeckRandomFiles[0] || &file == &kShortDeckRandomFiles[1]) return 2 * kShortDeckRandomDeals;
  for (int street = 0; street < 3; ++street)
    for (int china = 0; china < 2; ++china)
      if (&file == &kShortDeckMatchupFiles[street][china]) return 2 * kShortDeckBoards[street];
  return 0;
}

// The index holds exactly the keys of the matchups, ascending, then the sentinel.
bool index_is_whole(const uint32_t* keys) {
  uint64_t count = 0;
  for (int hero = 0; hero < kShortDeckHands; ++hero)
    for (int villain = 0; villain < kShortDeckHands; ++villain) {
      if (short_deck_hands_meet(hero, villain)) continue;
      if (keys[count++] != static_cast<uint32_t>(1024 * hero + villain)) return false;
    }
  return count == kShortDeckMatchups && keys[count] == kShortDeckKeySentinel;
}

}  // namespace

std::array<const ShortDeckEquityFile*, 9> short_deck_equity_files() {
  return {&kShortDeckIndexFile,          &kShortDeckMatchupFiles[0][0], &kShortDeckMatchupFiles[1][0],
          &kShortDeckMatchupFiles[2][0], &kShortDeckMatchupFiles[0][1], &kShortDeckMatchupFiles[1][1],
          &kShortDeckMatchupFiles[2][1], &kShortDeckRandomFiles[0],     &kShortDeckRandomFiles[1]};
}

int short_deck_hand_index(int card1, int card2) {
  if (card1 < 0 || card1 > 51 || card2 < 0 || card2 > 51 || card1 == card2) return -1;
  int a = short_deck_code(card1), b = short_deck_code(card2);
  if (a < 0 || b < 0) return -1;
  if (a > b) std::swap(a, b);
  // Hands of first code a start after the 35 + 34 + ... hands of the smaller first codes.
  return a * 35 - a * (a - 1) / 2 + (b - a - 1);
}

std::array<int, 2> short_deck_hand_cards(int index) {
  int a = 0;
  while (index >= 35 - a) index -= 35 - a++;
  return {card_from_short_deck(a), card_from_short_deck(a + 1 + index)};
}

bool short_deck_hands_meet(int hero, int villain) {
  const auto h = short_deck_hand_cards(hero), v = short_deck_hand_cards(villain);
  return h[0] == v[0] || h[0] == v[1] || h[1] == v[0] || h[1] == v[1];
}

bool save_short_deck_file(const std::filesystem::path& path, const ShortDeckEquityFile& file, const void* entries) {
  const Header header = header_of(file);
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  out.write(reinterpret_cast<const char*>(&header), sizeof header);
  out.write(static_cast<const char*>(entries), static_cast<std::streamsize>(file.entries * file.entry_bytes));
  out.flush();
  return static_cast<bool>(out);
}

void* load_short_deck_file(const std::filesystem::path& path, const ShortDeckEquityFile& file, bool& missing) {
  std::error_code ec;
  missing = !std::filesystem::is_regular_file(path, ec);
  std::ifstream in(path, std::ios::binary);
  if (missing || !in) {
    missing = true;
    return nullptr;
  }
  const Header expected = header_of(file);
  Header header{};
  if (!in.read(reinterpret_cast<char*>(&header), sizeof header) ||
      std::memcmp(&header, &expected, sizeof header) != 0 ||
      std::filesystem::file_size(path, ec) != short_deck_file_bytes(file))
    return nullptr;
  const size_t bytes = file.entries * file.entry_bytes;
  void* table = allocate_table_memory(bytes);
  bool valid = static_cast<bool>(in.read(static_cast<char*>(table), static_cast<std::streamsize>(bytes)));
  if (valid && &file == &kShortDeckIndexFile) {
    valid = index_is_whole(static_cast<const uint32_t*>(table));
  } else if (valid && file.entry_bytes == 4) {
    const auto* entries = static_cast<const uint32_t*>(table);
    valid = *std::max_element(entries, entries + file.entries) <= largest_entry(file);
  } else if (valid) {
    const auto* entries = static_cast<const uint64_t*>(table);
    valid = *std::max_element(entries, entries + file.entries) <= largest_entry(file);
  }
  if (!valid) {
    free_table_memory(table);
    return nullptr;
  }
  return table;
}

// The slot of a file among fsm5's members: read with slot_of, filled (or emptied) with set_slot.
template <typename Visit>
void visit_slot(const ShortDeckEquityFile& file, Visit visit) {
  if (&file == &kShortDeckIndexFile) return visit(fsm5::et2_index);
  for (int china = 0; china < 2; ++china) {
    if (&file == &kShortDeckRandomFiles[china]) return visit(fsm5::ft2[china]);
    for (int street = 0; street < 3; ++street)
      if (&file == &kShortDeckMatchupFiles[street][china]) return visit(fsm5::et2[street][china]);
  }
}

const void* slot_of(const ShortDeckEquityFile& file) {
  const void* value = nullptr;
  visit_slot(file, [&](auto* slot) { value = slot; });
  return value;
}

void set_slot(const ShortDeckEquityFile& file, void* table) {
  visit_slot(file, [&](auto*& slot) { slot = static_cast<std::remove_reference_t<decltype(slot)>>(table); });
}

int load_short_deck_slot(const std::filesystem::path& path, const ShortDeckEquityFile& file, bool messages) {
  std::lock_guard lock(state_machine_mutex());
  if (slot_of(file)) return 1;
  bool missing = false;
  void* table = load_short_deck_file(path, file, missing);
  if (!table && messages)
    ShowMessage(missing ? L"Error: Can not open file " + widen(file.name)
                        : L"Error: File " + widen(file.name) + L" is damaged");
  set_slot(file, table);
  return table ? 1 : 0;
}

void free_short_deck_equity_tables() {
  for (const ShortDeckEquityFile* file : short_deck_equity_files()) {
    free_table_memory(const_cast<void*>(slot_of(*file)));
    set_slot(*file, nullptr);
  }
}

}  // namespace pokermath::detail

using namespace pokermath::detail;

int fsm5::load_2_index() { return load_short_deck_slot(kShortDeckIndexFile.name, kShortDeckIndexFile, true); }

int fsm5::load_2(int street, int china) {
  if (street < 3 || street > 5 || (china != 0 && china != 1)) return 0;
  const ShortDeckEquityFile& file = kShortDeckMatchupFiles[street - 3][china];
  return load_short_deck_slot(file.name, file, true);
}

int fsm5::load_ET2() {
  int loaded = load_2_index();
  for (int street = 3; street <= 5; ++street)
    for (int china = 0; china < 2; ++china) loaded &= load_2(street, china);
  return loaded;
}

int fsm5::load_ET() {
  int loaded = load_ET2();
  for (const ShortDeckEquityFile& file : kShortDeckRandomFiles) loaded &= load_short_deck_slot(file.name, file, true);
  return loaded;
}

double fsm5::get2(const int* hero, const int* villain, int street, int china) {
  if (!hero || !villain || street < 3 || street > 5 || (china != 0 && china != 1)) return -1.0;
  const uint32_t* table = et2[street - 3][china];
  if (!et2_index || !table) return -1.0;
  const int h = short_deck_hand_index(hero[0], hero[1]), v = short_deck_hand_index(villain[0], villain[1]);
  if (h < 0 || v < 0) return -1.0;
  const int place = bsearch(reinterpret_cast<const int*>(et2_index), 0, kShortDeckMatchups - 1, 1024 * h + v);
  if (place < 0) return -1.0;  // the hands share a card
  return table[place] / 2.0 / static_cast<double>(kShortDeckBoards[street - 3]) * 100;
}

double fsm5::get1(const int* hero, int china) {
  if (!hero || (china != 0 && china != 1) || !ft2[china]) return -1.0;
  const int h = short_deck_hand_index(hero[0], hero[1]);
  if (h < 0) return -1.0;
  return static_cast<double>(ft2[china][h]) / 2.0 / static_cast<double>(kShortDeckRandomDeals) * 100;
}

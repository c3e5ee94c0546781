// The state-machine evaluators: the table files, their process-wide slots and the classic entry
// points. A walk is one dependent read per card: state = T[state + code], starting at the deck size.
#include <algorithm>
#include <array>
#include <cstring>
#include <fstream>
#include <mutex>

#include "eval/short_deck_equity_files.h"
#include "eval/state_machine_files.h"
#include "fsm5_table.h"
#include "pokermath/eval.h"
#include "support/check.h"

int* fsm5::six_plus_fsm5 = nullptr;
int* fsm5::six_plus_fsm7 = nullptr;
int* texasfsm7::table = nullptr;
int* ofsm_omaha7::table = nullptr;

namespace pokermath::detail {

namespace {

constexpr int kHeaderBytes = 32;

struct Header {
  char magic[16];
  int32_t deck_size;
  int32_t cards;
  uint64_t entries;
};
static_assert(sizeof(Header) == kHeaderBytes);

bool magic_matches(const char* stored, const char* expected) {
  // Compared over the expected text's length (at most 16 characters), as the files are written.
  return std::strncmp(stored, expected, std::min<size_t>(16, std::strlen(expected))) == 0;
}

// True when every entry, read as a state, keeps a walk inside the table: state + code < entries
// for every code below the deck size. Values (the last card's entries) are small and pass too. One
// pass at load, vectorised: about 20 ms for the largest table.
bool entries_stay_inside(const int* table, uint64_t entries, uint64_t deck) {
  uint32_t highest = 0;  // a negative entry reads as a huge one
  for (uint64_t i = 0; i < entries; ++i) highest = std::max(highest, static_cast<uint32_t>(table[i]));
  return highest <= entries - deck;
}

}  // namespace

int* load_state_machine(const std::wstring& path, const StateMachineFile& file) {
  std::ifstream in(to_path(path), std::ios::binary);
  if (!in) {
    ShowMessage(L"Error: Can not open file " + std::wstring(file.name));
    return nullptr;
  }
  Header header{};
  if (!in.read(reinterpret_cast<char*>(&header), kHeaderBytes)) return nullptr;  // short header: silent
  if (!magic_matches(header.magic, file.magic)) return nullptr;
  if (header.deck_size != file.deck_size || header.cards != file.cards) return nullptr;
  // A walk starts at state deck_size and reads T[state + code]: a table smaller than two decks, or
  // a body shorter than the header announces, cannot be walked (and is not allocated).
  const uint64_t entries = header.entries;
  const uint64_t deck = static_cast<uint64_t>(file.deck_size);
  if (entries > (uint64_t{1} << 31) || entries < 2 * deck ||
      file_size(path) < static_cast<int64_t>(kHeaderBytes + entries * 4))
    return nullptr;
  int* table = static_cast<int*>(allocate_table_memory(entries * 4));
  if (!in.read(reinterpret_cast<char*>(table), static_cast<std::streamsize>(entries * 4)) ||
      !entries_stay_inside(table, entries, deck)) {
    free_table_memory(table);
    return nullptr;
  }
  return table;
}

bool save_state_machine(const std::wstring& path, const StateMachineFile& file, const StateMachine& machine) {
  Header header{};
  std::memcpy(header.magic, file.magic, std::min(sizeof header.magic, std::strlen(file.magic)));
  header.deck_size = file.deck_size;
  header.cards = file.cards;
  header.entries = machine.entries.size();
  std::ofstream out(to_path(path), std::ios::binary | std::ios::trunc);
  out.write(reinterpret_cast<const char*>(&header), kHeaderBytes);
  out.write(reinterpret_cast<const char*>(machine.entries.data()),
            static_cast<std::streamsize>(machine.entries.size() * sizeof(int32_t)));
  out.flush();
  return static_cast<bool>(out);
}

bool state_machine_file_valid(const std::wstring& path, const StateMachineFile& file) {
  std::ifstream in(to_path(path), std::ios::binary);
  Header header{};
  if (!in || !in.read(reinterpret_cast<char*>(&header), kHeaderBytes)) return false;
  return magic_matches(header.magic, file.magic) && header.deck_size == file.deck_size && header.cards == file.cards &&
         file_size(path) == static_cast<int64_t>(kHeaderBytes + header.entries * 4);
}

int*& state_machine_slot(const StateMachineFile& file) {
  if (&file == &kTexas7File) return texasfsm7::table;
  if (&file == &kOmaha7File) return ofsm_omaha7::table;
  if (&file == &kSixPlus5File) return fsm5::six_plus_fsm5;
  return fsm5::six_plus_fsm7;
}

std::mutex& state_machine_mutex() {
  static std::mutex mutex;
  return mutex;
}

int load_state_machine_slot(const std::wstring& path, const StateMachineFile& file) {
  // Two first loads at once read the file once; the classic walkers read the slot without the lock,
  // which is safe once loading has finished, as their contract asks.
  std::lock_guard lock(state_machine_mutex());
  int*& slot = state_machine_slot(file);
  if (!slot) slot = load_state_machine(path, file);
  return slot ? 1 : 0;
}

}  // namespace pokermath::detail

using namespace pokermath::detail;

int fsm5::load_fsm5() { return load_state_machine_slot(kSixPlus5File.name, kSixPlus5File); }
int fsm5::load_fsm7() { return load_state_machine_slot(kSixPlus7File.name, kSixPlus7File); }

void fsm5::Free() {
  std::lock_guard lock(state_machine_mutex());
  pokermath::free_table_memory(six_plus_fsm5);
  pokermath::free_table_memory(six_plus_fsm7);
  six_plus_fsm5 = nullptr;
  six_plus_fsm7 = nullptr;
  pokermath::detail::free_short_deck_equity_tables();
}

int load_texasfsm7() { return load_state_machine_slot(kTexas7File.name, kTexas7File); }
int load_ofsm_omaha7() { return load_state_machine_slot(kOmaha7File.name, kOmaha7File); }

namespace {

using pokermath::kRankMajorCodes;
using pokermath::kShortDeckCodes;

constexpr int kDeck = 52;
constexpr int kShortDeck = 36;

// Walks n rank-major (or short-deck) codes through table T from its start state.
inline int walk(const int32_t* T, int start, const int* codes, int n) {
  int state = start;
  for (int i = 0; i < n; ++i) state = T[state + codes[i]];
  return state;
}

// Short-deck codes of n card codes; false when a card is a deuce to five.
bool to_short_deck(const int* cards, int n, int* codes) {
  for (int i = 0; i < n; ++i) {
    codes[i] = kShortDeckCodes[cards[i]];
    if (codes[i] < 0) return false;
  }
  return true;
}

}  // namespace

int LookupFsm5(const int* cards) {
  POKERMATH_EXPECTS(card_codes(cards, 5), "five card codes 0..51");
  int codes[5];
  for (int i = 0; i < 5; ++i) codes[i] = kRankMajorCodes[cards[i]];
  return walk(kFsm5, kDeck, codes, 5);
}

int get_rank7(const int* hole, const int* board) {
  POKERMATH_EXPECTS(card_codes(hole, 4) && card_codes(board, 5), "four hole and five board card codes 0..51");
  int h[4], b[5];
  for (int i = 0; i < 4; ++i) h[i] = kRankMajorCodes[hole[i]];
  for (int i = 0; i < 5; ++i) b[i] = kRankMajorCodes[board[i]];
  int best = 0;
  for (int i = 0; i < 4; ++i) {
    const int si = kFsm5[kDeck + h[i]];
    for (int j = i + 1; j < 4; ++j) {
      const int sij = kFsm5[si + h[j]];
      for (int k = 0; k < 5; ++k) {
        const int sk = kFsm5[sij + b[k]];
        for (int l = k + 1; l < 5; ++l) {
          const int sl = kFsm5[sk + b[l]];
          for (int m = l + 1; m < 5; ++m) best = std::max(best, static_cast<int>(kFsm5[sl + b[m]]));
        }
      }
    }
  }
  return best;
}

int Get_rankFsm5(int value) {
  if (value >= 7462) return 10;
  if (value >= 7453) return 9;
  if (value >= 7297) return 8;
  if (value >= 7141) return 7;
  if (value >= 5864) return 6;
  if (value >= 5854) return 5;
  if (value >= 4996) return 4;
  if (value >= 4138) return 3;
  if (value >= 1278) return 2;
  if (value >= 1) return 1;
  return 0;
}

int verify_rankFsm5(int value, CString& name) {
  static constexpr const wchar_t* kNames[] = {L"Error",         L"high card",      L"one pair",   L"two pairs",
                                              L"three of kind", L"straight",       L"flush",      L"full house",
                                              L"four of kind",  L"straight flush", L"Royal Flush"};
  name = kNames[Get_rankFsm5(value)];
  return 1;
}

int eval_rank7_texas(const int* cards) {
  int codes[7];
  for (int i = 0; i < 7; ++i) {
    if (cards[i] < 0 || cards[i] > 51) return 0;
    codes[i] = kRankMajorCodes[cards[i]];
  }
  POKERMATH_EXPECTS(texasfsm7::table, "\"texas-7.bin\" loaded first (load_texasfsm7)");
  return walk(texasfsm7::table, kDeck, codes, 7);
}

int eval_rank5_via_fsm5(const int* cards) {
  POKERMATH_EXPECTS(card_codes(cards, 5), "five card codes 0..51");
  int codes[5];
  if (!to_short_deck(cards, 5, codes)) return 0;
  POKERMATH_EXPECTS(fsm5::six_plus_fsm5, "\"six-plus-5.bin\" loaded first (fsm5::load_fsm5)");
  return walk(fsm5::six_plus_fsm5, kShortDeck, codes, 5);
}

int eval_rank6_via_fsm5(const int* cards) {
  static constexpr int kSubsets[6][5] = {{0, 1, 2, 3, 4}, {0, 1, 2, 3, 5}, {0, 1, 2, 4, 5},
                                         {0, 1, 3, 4, 5}, {0, 2, 3, 4, 5}, {1, 2, 3, 4, 5}};
  int best = 0;
  for (const auto& subset : kSubsets) {
    const int five[5] = {cards[subset[0]], cards[subset[1]], cards[subset[2]], cards[subset[3]], cards[subset[4]]};
    best = std::max(best, eval_rank5_via_fsm5(five));
  }
  return best;
}

int eval_rank7_via_fsm7(const int* cards) {
  POKERMATH_EXPECTS(card_codes(cards, 7), "seven card codes 0..51");
  int codes[7];
  if (!to_short_deck(cards, 7, codes)) return 0;
  POKERMATH_EXPECTS(fsm5::six_plus_fsm7, "\"six-plus-7.bin\" loaded first (fsm5::load_fsm7)");
  return walk(fsm5::six_plus_fsm7, kShortDeck, codes, 7);
}

// State-machine table files. The first input byte picks the file kind (bits 0-1: texas-7, omaha-7,
// six-plus-5, six-plus-7) and the form of the rest (bit 2): a whole file, header included, or patches
// (4-byte index, 4-byte value, at most 16) to a real six-plus-5 machine built at start-up. Whatever
// the loader accepts is walked: every state a walk reaches before its last card is visited, and
// walks ending in each are evaluated by the library. A loaded table must keep every walk inside it.
#include <vector>

#include "eval/state_machine_builder.h"
#include "eval/state_machine_files.h"
#include "fuzz_input.h"
#include "pokermath/pokermath.h"

using namespace pokermath;
using namespace pokermath::detail;
using pokermath::fuzz::expect;

namespace {

constexpr const StateMachineFile* kFiles[4] = {&kTexas7File, &kOmaha7File, &kSixPlus5File, &kSixPlus7File};

// The library's walk over a loaded table, with the table put in the slot its evaluator reads.
int library_value(const StateMachineFile& file, int* table, const std::vector<int>& codes) {
  std::vector<int> cards;
  for (int code : codes)
    cards.push_back(file.deck_size == 36 ? card_from_short_deck(code) : 13 * (code % 4) + code / 4);
  int*& slot = state_machine_slot(file);
  int* const before = slot;
  slot = table;
  const int value = &file == &kTexas7File     ? eval_rank7_texas(cards.data())
                    : &file == &kSixPlus5File ? eval_rank5_via_fsm5(cards.data())
                    : &file == &kSixPlus7File ? eval_rank7_via_fsm7(cards.data())
                                              : -1;  // no evaluator walks the Omaha table
  slot = before;
  return value;
}

// Depth-first over the table: the states reached after each number of cards, each visited once. A
// step that would read outside the table is handed to the library's own walk, so that an unchecked
// loader shows as an overflow there, and fails the run if the walk survives it.
struct Walker {
  const StateMachineFile& file;
  int* table;
  uint64_t entries;
  std::vector<uint8_t> seen;  // per state, a bit per depth
  std::vector<int> codes;
  int evaluated = 0;

  void visit(uint64_t state, int depth) {
    if (depth == file.cards) {
      if (evaluated++ < 64)
        expect(library_value(file, table, codes) == static_cast<int>(state) || &file == &kOmaha7File,
               "the library's walk ends elsewhere");
      return;
    }
    if (state + file.deck_size > entries) {
      codes.push_back(file.deck_size - 1);  // the card whose entry lies furthest out
      codes.resize(file.cards, 0);
      library_value(file, table, codes);
      fuzz::fail("the loader accepted a table whose walks leave it");
    }
    if (seen[state] & (1u << depth)) return;
    seen[state] |= 1u << depth;
    for (int code = 0; code < file.deck_size; ++code) {
      codes.push_back(code);
      visit(static_cast<uint32_t>(table[state + code]), depth + 1);
      codes.pop_back();
    }
  }
};

const StateMachine& six_plus_5() {
  static const StateMachine machine = build_holdem_machine(36, 5);
  return machine;
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  fuzz::silence_messages();
  (void)six_plus_5();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  fuzz::Input input(data, size);
  const uint8_t form = input.byte();
  const StateMachineFile& file = *kFiles[form & 3];
  const std::wstring path = (fuzz::scratch_directory() / "machine.bin").wstring();
  uint64_t entries = 0;  // as the header announces them
  if (form & 4) {
    StateMachine machine = six_plus_5();
    for (int patch = 0; patch < 16 && input.left() >= 8; ++patch) {
      const uint32_t index = input.integer<uint32_t>();
      machine.entries[index % machine.entries.size()] = input.integer<int32_t>();
    }
    save_state_machine(path, kSixPlus5File, machine);
    entries = machine.entries.size();
  } else {
    const std::string_view bytes = input.rest();
    fuzz::write_scratch("machine.bin", bytes);
    if (bytes.size() >= 32) std::memcpy(&entries, bytes.data() + 24, sizeof entries);
  }
  const StateMachineFile& loaded = form & 4 ? kSixPlus5File : file;
  int* table = load_state_machine(path, loaded);
  if (!table) return 0;

  Walker walker{loaded, table, entries, std::vector<uint8_t>(entries, 0), {}};
  walker.visit(static_cast<uint64_t>(loaded.deck_size), 0);
  free_table_memory(table);
  return 0;
}

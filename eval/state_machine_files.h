// The table files of the state-machine evaluators: their names, headers, reading and writing.
#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <string>

#include "eval/state_machine_builder.h"
#include "pokermath/support.h"

namespace pokermath::detail {

// One of the four table files and the header it must carry.
struct StateMachineFile {
  const wchar_t* name;  // bare file name, e.g. "texas-7.bin"
  const char* magic;    // at most 16 characters, zero-padded in the file
  int deck_size;
  int cards;
};

inline constexpr StateMachineFile kTexas7File{L"texas-7.bin", "OFSM Texas 7", 52, 7};
inline constexpr StateMachineFile kOmaha7File{L"omaha-7.bin", "OFSM Omaha 7", 52, 7};
inline constexpr StateMachineFile kSixPlus5File{L"six-plus-5.bin", "OFSM Six Plus 5", 36, 5};
inline constexpr StateMachineFile kSixPlus7File{L"six-plus-7.bin", "OFSM Six Plus 7", 36, 7};

// Reads a table file at `path`, checking it against `file`. A file that cannot be opened is reported
// with ShowMessage("Error: Can not open file <name>"); a short header, another magic, other
// dimensions, a short body or an entry that would lead a walk outside the table fail silently.
// Returns memory from allocate_table_memory, or nullptr.
int* load_state_machine(const std::wstring& path, const StateMachineFile& file);

// Writes a table in the file format: 16-byte magic, deck size, cards per hand, entry count (u64),
// then the entries, little-endian. Returns false when the file cannot be written completely.
bool save_state_machine(const std::wstring& path, const StateMachineFile& file, const StateMachine& machine);

// True when the file at `path` has the header of `file` and exactly as many bytes as it announces.
bool state_machine_file_valid(const std::wstring& path, const StateMachineFile& file);

// The process-wide slot of each file's table (the pointers behind the classic load functions).
int*& state_machine_slot(const StateMachineFile& file);

// The lock of the process-wide slots: loading and freeing take it.
std::mutex& state_machine_mutex();

// Loads `file` from `path` into its process-wide slot unless a table is already there: 1 or 0.
int load_state_machine_slot(const std::wstring& path, const StateMachineFile& file);

}  // namespace pokermath::detail

// The short-deck equity table files: what each holds, their header, and reading and writing them.
// Shared by the classic loaders (fsm5) and the generator of the pokermath:: API.
//
// A short-deck hand is numbered 0..629: its two short-deck codes a < b (0..35) in lexicographic
// order. An ordered matchup (hero, villain: two hands with no card in common) has the key
// 1024 x hero + villain; "ET2I_6.bin" lists the 353,430 keys in ascending order, then the sentinel
// 0xFFFFFFFF, and a matchup's place in that list is its entry in every "ET2*" table. Each entry
// there is twice the hero's wins plus the ties (a tie counts half) over every board of its street:
// the 4,960 flops (five-card hands), the 35,960 turns (six cards) or the 201,376 rivers (seven),
// in the standard order ("_6") or the China order ("_6C"). "FT2R_6.bin" / "FT2R_6C.bin" hold, per
// hand, the same sum against every other hand to the river (561 villains x 201,376 boards).
//
// Every file starts with a 32-byte header: a 16-byte magic text, the number of entries (uint64),
// the bytes of an entry (uint32, 4 or 8) and zero (uint32); then the entries, little-endian.
#pragma once

#include <array>
#include <cstdint>
#include <filesystem>

namespace pokermath::detail {

inline constexpr int kShortDeckHands = 630;
inline constexpr int kShortDeckMatchups = 353430;
inline constexpr uint32_t kShortDeckKeySentinel = 0xFFFFFFFF;

// The streets of the matchup tables: boards of 3, 4 and 5 cards.
enum ShortDeckStreet { kFlopStreet = 0, kTurnStreet = 1, kRiverStreet = 2 };
inline constexpr int64_t kShortDeckBoards[3] = {4960, 35960, 201376};
inline constexpr int64_t kShortDeckRandomDeals = 561LL * 201376;

struct ShortDeckEquityFile {
  const char* name;
  const char* magic;
  uint64_t entries;
  uint32_t entry_bytes;
};

inline constexpr ShortDeckEquityFile kShortDeckIndexFile{"ET2I_6.bin", "pokermath-ET2I", kShortDeckMatchups + 1, 4};
// [street][china]
inline constexpr ShortDeckEquityFile kShortDeckMatchupFiles[3][2] = {
    {{"ET2F_6.bin", "pokermath-ET2F", kShortDeckMatchups, 4},
     {"ET2F_6C.bin", "pokermath-ET2FC", kShortDeckMatchups, 4}},
    {{"ET2T_6.bin", "pokermath-ET2T", kShortDeckMatchups, 4},
     {"ET2T_6C.bin", "pokermath-ET2TC", kShortDeckMatchups, 4}},
    {{"ET2R_6.bin", "pokermath-ET2R", kShortDeckMatchups, 4},
     {"ET2R_6C.bin", "pokermath-ET2RC", kShortDeckMatchups, 4}}};
inline constexpr ShortDeckEquityFile kShortDeckRandomFiles[2] = {
    {"FT2R_6.bin", "pokermath-FT2R", kShortDeckHands, 8}, {"FT2R_6C.bin", "pokermath-FT2RC", kShortDeckHands, 8}};

// Every file, in the order they are written.
std::array<const ShortDeckEquityFile*, 9> short_deck_equity_files();

// The size of a file in bytes.
inline uint64_t short_deck_file_bytes(const ShortDeckEquityFile& file) { return 32 + file.entries * file.entry_bytes; }

// The number 0..629 of the short-deck hand of two card codes, -1 when either is no short-deck card
// or they are the same card.
int short_deck_hand_index(int card1, int card2);

// The two card codes of hand number 0..629.
std::array<int, 2> short_deck_hand_cards(int index);

// True when hands number `hero` and `villain` share a card (no matchup).
bool short_deck_hands_meet(int hero, int villain);

// Writes the entries (file.entries of file.entry_bytes) after the header; false when it fails.
bool save_short_deck_file(const std::filesystem::path& path, const ShortDeckEquityFile& file, const void* entries);

// Reads a file into new table memory (free with free_table_memory), or nullptr when it is missing,
// unreadable or damaged: a wrong header or size, an index that is not the ascending keys with its
// sentinel, or an entry larger than twice its boards. `missing` tells which.
void* load_short_deck_file(const std::filesystem::path& path, const ShortDeckEquityFile& file, bool& missing);

// Loads a file into its fsm5 slot unless the slot is filled: 1 = in memory, 0 = failed (told with
// ShowMessage when `messages`). Guarded by the state machines' mutex.
int load_short_deck_slot(const std::filesystem::path& path, const ShortDeckEquityFile& file, bool messages);

// Releases the tables the classic loaders hold (fsm5::Free).
void free_short_deck_equity_tables();

}  // namespace pokermath::detail

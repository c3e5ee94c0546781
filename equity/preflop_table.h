// Answers from the pre-flop table file.
#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "equity/engine.h"
#include "equity/holdem_players.h"

namespace pokermath::detail {

// The equities of two players before the flop from the pre-flop table in `dir` (loaded on first use
// into a flat index and kept), with win and tie unknown (NaN); `deals` the boards they stand for.
// False when the file is missing, damaged (told once through `notice`, with the command that
// repairs it) or lacks a matchup: the caller then computes the answer.
bool preflop_table_shares(const std::filesystem::path& dir, const std::vector<HoldemPlayer>& players,
                          const TableProgress& notice, std::vector<PlayerShares>& shares, double& deals);

// Why the bytes of the pre-flop table file at `path` are not a table ("" when they are): a size that
// is not whole records, a difference from the directory's manifest (when it lists the file), or a
// bad record. `record` sees each record in turn and may refuse it with a reason.
std::string preflop_file_problem(const std::vector<char>& bytes, const std::filesystem::path& path,
                                 const std::function<std::string(int hero_key, int villain_key, int value)>& record);

}  // namespace pokermath::detail

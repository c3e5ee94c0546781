// Answers from the pre-flop table file.
#pragma once

#include <filesystem>
#include <vector>

#include "equity/engine.h"
#include "equity/holdem_players.h"

namespace pokermath::detail {

// The equities of two players before the flop from the pre-flop table in `dir` (loaded on first use
// and kept), with win and tie unknown (NaN); `deals` the boards they stand for. False when the file
// is missing or lacks a matchup.
bool preflop_table_shares(const std::filesystem::path& dir, const std::vector<HoldemPlayer>& players,
                          std::vector<PlayerShares>& shares, double& deals);

}  // namespace pokermath::detail

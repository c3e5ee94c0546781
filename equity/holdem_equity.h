// The Hold'em and short-deck engines' entry points below compute_equity, for the classic engines
// that bring their own players: the deck and ranking of a game, and the outcomes of players counted
// exactly or sampled.
#pragma once

#include <cstdint>
#include <vector>

#include "equity/engine.h"
#include "equity/holdem_players.h"
#include "eval/hand_key.h"
#include "pokermath/analysis.h"

namespace pokermath::detail {

// The cards in play and the ranking of a Hold'em game (Holdem, ShortDeck or ShortDeckChina).
struct HoldemGame {
  uint64_t deck;
  Ranking ranking;
  int cards() const;
};
HoldemGame holdem_game(EquityGame game);

// Every deal of the players (each holding one of its combos; tuples that share a card are left out)
// with every completion of `board`, no board card among `dead`, counted by winners.
OutcomeCounts count_holdem_outcomes(const HoldemGame& game, const std::vector<HoldemPlayer>& players,
                                    const std::vector<int>& board, const std::vector<int>& dead,
                                    const RunControl& control);

// The breakdown of player `focus`'s equity by the hands it holds, counted exactly (the classes of
// the result are left for the caller to fill).
RangeBreakdown holdem_breakdown(const EquityRequest& request, int focus);

}  // namespace pokermath::detail

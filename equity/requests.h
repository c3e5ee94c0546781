// What the pokermath:: equity requests of every game share: the checks of a request, the players'
// texts, and the result built from counted or sampled outcomes.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "equity/engine.h"
#include "pokermath/equity.h"

namespace pokermath::detail {

// "player 3" for index 2.
std::string ordinal(size_t i);

// "random" or "any", in any case: a player holding any hand.
bool is_random(std::string_view text);

// Checks what every request shares: 2..10 players, a board of 0, 3, 4 or 5 cards, the numbers
// (trials, time limit, standard error, threads), and that board and dead cards are distinct.
// Returns the mask of the board and dead cards.
uint64_t check_request(const EquityRequest& request);

// The number of ways to deal `cards` cards from `from`: C(from, cards).
double ways_to_deal(int from, int cards);

// The run control of a request.
RunControl run_control(const EquityRequest& request);

// The limits of a Monte Carlo request.
SampleLimits sample_limits(const EquityRequest& request);

// The result of a request from per-player shares: `texts` the players' texts, `deals` the deals
// counted (exact) or trials (Monte Carlo).
EquityResult equity_result(const std::vector<std::string>& texts, const std::vector<PlayerShares>& shares, bool exact,
                           double deals);

// An Omaha game: hole cards per player (4, 5 or 6) and whether the pot is split with the
// eight-or-better low.
struct OmahaGame {
  int hole = 4;
  bool hi_lo = false;
};

// The Omaha game of an EquityGame; throws Error for a game that is not Omaha.
OmahaGame omaha_game(EquityGame game);

// The games' engines.
EquityResult compute_holdem_equity(const EquityRequest& request);
EquityResult compute_omaha_equity(const EquityRequest& request);

}  // namespace pokermath::detail

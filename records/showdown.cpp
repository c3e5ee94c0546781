#include <algorithm>
#include <climits>

#include "pokermath/records.h"

namespace {

// Chip sums that wrap around at 32 bits, as the classic arithmetic does, instead of overflowing
// (undefined behaviour) when a caller passes extreme or negative bets.
int wrap_add(int a, int b) { return static_cast<int>(static_cast<unsigned>(a) + static_cast<unsigned>(b)); }
int wrap_sub(int a, int b) { return static_cast<int>(static_cast<unsigned>(a) - static_cast<unsigned>(b)); }

// The chips a player keeps in the pot after `taken` have gone: 0 when he had less.
int bet_left(int bet, int taken) { return bet < taken ? 0 : wrap_sub(bet, taken); }

// One pass of GameResult; returns false, changing nothing, when no player has chips in the pot.
bool showdown_pass(int bets[], int ranks[], int wins[], int n) {
  int best = 0;
  bool any = false;
  for (int i = 0; i < n; ++i) {
    if (bets[i] != 0 && (!any || ranks[i] > best)) {
      best = ranks[i];
      any = true;
    }
  }
  int count = 0, first = -1;
  for (int i = 0; i < n; ++i) {
    if (bets[i] == 0 || ranks[i] != best) continue;
    if (count == 0) first = i;
    ++count;
  }
  if (count == 0) return false;

  if (count == 1) {  // a sole best hand takes up to its own bet from every other player
    const int w = first;
    wins[w] = wrap_add(wins[w], bets[w]);
    for (int j = 0; j < n; ++j) {
      if (j == w || bets[j] == 0 || ranks[j] == best) continue;
      wins[w] = wrap_add(wins[w], std::min(bets[j], bets[w]));
      bets[j] = bet_left(bets[j], bets[w]);
    }
    bets[w] = 0;
    ranks[w] = 0;
    return true;
  }

  // A split: everyone pays a layer of the smallest tied bet (at most 1000) into one pot, which
  // every player holding the best rank shares; the first of them takes the odd chips.
  const int layer = GetMinVinnerBet(bets, ranks, n, best);
  int pot = 0;
  for (int i = 0; i < n; ++i) {
    if (bets[i] == 0) continue;
    pot = wrap_add(pot, std::min(bets[i], layer));
    bets[i] = bet_left(bets[i], layer);
  }
  bool odd_chips_paid = false;
  for (int i = 0; i < n; ++i) {
    if (ranks[i] != best) continue;
    wins[i] = wrap_add(wins[i], pot / count);
    if (!odd_chips_paid) wins[i] = wrap_add(wins[i], pot % count);
    odd_chips_paid = true;
    if (bets[i] == 0) ranks[i] = 0;
  }
  return true;
}

}  // namespace

int GetMinVinnerBet(const int bets[], const int ranks[], int n, int rank) {
  int smallest = 1000;  // the cap: a split never moves more than 1000 chips per player in one pass
  for (int i = 0; i < n; ++i) {
    if (bets[i] != 0 && ranks[i] == rank && bets[i] <= smallest) smallest = bets[i];
  }
  return smallest;
}

void GameResult(int bets[], int ranks[], int wins[], int n) {
  // Each pass removes a player from the pot or 1000 chips from every tied player, so this ends;
  // a loop rather than a call per pass keeps deep stacks of passes off the call stack.
  while (showdown_pass(bets, ranks, wins, n)) {
  }
}

namespace pokermath {

namespace {

void check_showdown(std::span<const int> bets, std::span<const int> ranks) {
  if (bets.size() != ranks.size()) {
    throw Error("bets and ranks differ in length: " + std::to_string(bets.size()) + " bets, " +
                std::to_string(ranks.size()) + " ranks");
  }
  if (bets.empty()) throw Error("no players: give one bet and one rank per player");
  if (bets.size() > static_cast<size_t>(kMaxShowdownPlayers)) {
    throw Error(std::to_string(bets.size()) + " players: at most " + std::to_string(kMaxShowdownPlayers) +
                " can share a showdown");
  }
  int64_t total = 0;
  for (size_t i = 0; i < bets.size(); ++i) {
    if (bets[i] < 0) {
      throw Error("bet " + std::to_string(bets[i]) + " of player " + std::to_string(i + 1) + " is negative");
    }
    total += bets[i];
  }
  if (total > INT_MAX) {
    throw Error("the bets add up to " + std::to_string(total) + ", more than " + std::to_string(INT_MAX));
  }
}

// Ranks renumbered 1, 2, ... in the order of strength among the players with chips in the pot,
// and 0 for the others, so that "no rank" can never tie with a live hand.
std::vector<int> live_ranks(std::span<const int> bets, std::span<const int> ranks) {
  std::vector<int> levels;
  for (size_t i = 0; i < bets.size(); ++i) {
    if (bets[i] > 0) levels.push_back(ranks[i]);
  }
  std::sort(levels.begin(), levels.end());
  levels.erase(std::unique(levels.begin(), levels.end()), levels.end());
  std::vector<int> out(bets.size(), 0);
  for (size_t i = 0; i < bets.size(); ++i) {
    if (bets[i] > 0)
      out[i] = 1 + static_cast<int>(std::lower_bound(levels.begin(), levels.end(), ranks[i]) - levels.begin());
  }
  return out;
}

// The pots by bet level: each distinct bet closes a pot that every player betting at least that
// much paid into, and the best ranks among them win it.
std::vector<SidePot> side_pots(std::span<const int> bets, std::span<const int> ranks) {
  std::vector<int> levels;
  for (int bet : bets) {
    if (bet > 0) levels.push_back(bet);
  }
  std::sort(levels.begin(), levels.end());
  levels.erase(std::unique(levels.begin(), levels.end()), levels.end());
  std::vector<SidePot> pots;
  int below = 0;
  for (int level : levels) {
    SidePot pot;
    for (size_t i = 0; i < bets.size(); ++i) {
      if (bets[i] >= level) pot.players.push_back(static_cast<int>(i));
    }
    pot.amount = (level - below) * static_cast<int>(pot.players.size());
    int best = INT_MIN;
    for (int i : pot.players) best = std::max(best, ranks[i]);
    for (int i : pot.players) {
      if (ranks[i] == best) pot.winners.push_back(i);
    }
    pots.push_back(std::move(pot));
    below = level;
  }
  return pots;
}

}  // namespace

ShowdownPayout pay_showdown(std::span<const int> bets, std::span<const int> ranks) {
  check_showdown(bets, ranks);
  const int n = static_cast<int>(bets.size());
  std::vector<int> left(bets.begin(), bets.end());
  std::vector<int> rank = live_ranks(bets, ranks);
  ShowdownPayout payout;
  payout.wins.assign(bets.size(), 0);
  while (showdown_pass(left.data(), rank.data(), payout.wins.data(), n)) {
    // A player who has just lost his last chip to a stronger hand must not share a later split.
    for (int i = 0; i < n; ++i) {
      if (left[i] == 0) rank[i] = 0;
    }
  }
  payout.pots = side_pots(bets, ranks);
  return payout;
}

}  // namespace pokermath

// Showdown payouts. The input is a player count and, per player, a bet and a rank. Bets are mostly
// below 192, often below 65536 and rarely any 32-bit value (a split moves at most 1000 chips a pass,
// so huge bets are slow); a rank is one signed byte, so that ties are common. pay_showdown must pay
// every chip exactly once, to the winners of the pots; the classic GameResult must survive anything
// and, where no two ranks tie (so none of its kept quirks applies), pay the same.
#include <numeric>
#include <set>

#include "fuzz_input.h"
#include "pokermath/pokermath.h"

using namespace pokermath;
using pokermath::fuzz::expect;

namespace {

int read_bet(fuzz::Input& input) {
  const uint8_t kind = input.byte();
  if (kind < 192) return kind;
  if (kind < 255) return input.integer<uint16_t>();
  return input.integer<int32_t>();
}

void check_payout(const std::vector<int>& bets, const ShowdownPayout& payout) {
  const int64_t total = std::accumulate(bets.begin(), bets.end(), int64_t{0});
  expect(std::accumulate(payout.wins.begin(), payout.wins.end(), int64_t{0}) == total, "wins do not add up to the pot");
  int64_t in_pots = 0;
  std::vector<int> pots_won(bets.size(), 0), sole_pots(bets.size(), 0), pots_in(bets.size(), 0);
  std::vector<int64_t> sole_amount(bets.size(), 0);
  for (const SidePot& pot : payout.pots) {
    in_pots += pot.amount;
    expect(!pot.winners.empty(), "a pot without winners");
    for (int i : pot.players) ++pots_in[i];
    for (int i : pot.winners) {
      expect(std::find(pot.players.begin(), pot.players.end(), i) != pot.players.end(), "a winner outside his pot");
      ++pots_won[i];
      if (pot.winners.size() == 1) ++sole_pots[i], sole_amount[i] += pot.amount;
    }
  }
  expect(in_pots == total, "the pots do not add up to the bets");
  for (size_t i = 0; i < bets.size(); ++i) {
    expect(payout.wins[i] >= 0, "a negative win");
    if (pots_won[i] == 0) expect(payout.wins[i] == 0, "a player who wins no pot is paid");
    if (pots_in[i] > 0 && sole_pots[i] == pots_in[i])
      expect(payout.wins[i] == sole_amount[i], "the sole winner of his pots is not paid them");
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  fuzz::Input input(data, size);
  const int n = input.byte() % 128;
  std::vector<int> bets(n), ranks(n);
  for (int i = 0; i < n; ++i) {
    bets[i] = read_bet(input);
    ranks[i] = static_cast<int8_t>(input.byte());
  }

  // The classic passes take any numbers: wrapped sums, never undefined behaviour.
  if (n <= 16) {
    std::vector<int> classic_bets = bets, classic_ranks = ranks, classic_wins(n, 0);
    (void)GetMinVinnerBet(bets.data(), ranks.data(), n, ranks.empty() ? 0 : ranks[0]);
    GameResult(classic_bets.data(), classic_ranks.data(), classic_wins.data(), n);
  }

  ShowdownPayout payout;
  try {
    payout = pay_showdown(bets, ranks);
  } catch (const Error&) {
    return 0;
  }
  check_payout(bets, payout);

  if (std::set<int>(ranks.begin(), ranks.end()).size() == ranks.size() && n <= 16) {
    std::vector<int> classic_bets = bets, classic_ranks = ranks, classic_wins(n, 0);
    GameResult(classic_bets.data(), classic_ranks.data(), classic_wins.data(), n);
    expect(classic_wins == payout.wins, "GameResult and pay_showdown pay differently without ties");
  }
  return 0;
}

// The classic short-deck engines ("6Plus" and "China"): player 0's equity or win and tie counts
// among several players holding Spec ranges, by enumeration or Monte Carlo, on the Hold'em engine
// with the short deck and its rankings. They never throw: refused input gives 0.
#include <bit>
#include <chrono>
#include <climits>
#include <set>

#include "equity/holdem_equity.h"
#include "equity/holdem_sampler.h"
#include "pokermath/equity.h"

using namespace pokermath;
using namespace pokermath::detail;

namespace {

constexpr double kMaxTuples = 1e7;  // tuples of hands Enumerate counts at most
constexpr int64_t kClockTrials = 10000;

// A request read from the classic arguments: the players' combinations within the short deck that
// avoid the board and dead cards. `ok` is false for refused input.
struct ShortDeckDeal {
  bool ok = false;
  HoldemGame game{};
  std::vector<HoldemPlayer> players;
  std::vector<int> board, dead;
  uint64_t known = 0;
};

ShortDeckDeal read_deal(bool china, const Spec* ranges, int players, const int* board, int boardCount, const int* dead,
                        int deadCount) {
  ShortDeckDeal deal;
  deal.game = holdem_game(china ? EquityGame::ShortDeckChina : EquityGame::ShortDeck);
  if (ranges == nullptr || players < 2 || players > kMaxPlayers) return deal;
  if (boardCount < 0 || boardCount == 1 || boardCount == 2 || boardCount > 5 || deadCount < 0 || deadCount > 36)
    return deal;
  if ((boardCount > 0 && board == nullptr) || (deadCount > 0 && dead == nullptr)) return deal;
  deal.board.assign(board, board + boardCount);
  deal.dead.assign(dead, dead + deadCount);
  for (const std::vector<int>* cards : {&deal.board, &deal.dead})
    for (int c : *cards) {
      const uint64_t bit = c >= 0 && c < 52 ? uint64_t{1} << c : 0;
      if (!(deal.game.deck & bit) || (deal.known & bit)) return deal;  // outside the deck, or twice
      deal.known |= bit;
    }
  if (2 * players + std::popcount(deal.known) + 5 - boardCount > deal.game.cards()) return deal;
  for (int p = 0; p < players; ++p) {
    HoldemPlayer player;
    std::set<uint64_t> seen;
    for (const auto& [a, b] : ranges[p].m_hands) {
      if (a < 0 || a > 51 || b < 0 || b > 51 || a == b) continue;
      const uint64_t mask = uint64_t{1} << a | uint64_t{1} << b;
      if ((mask & deal.game.deck) != mask || (mask & deal.known) || !seen.insert(mask).second) continue;
      player.combos.push_back({{a, b}, mask});
    }
    if (player.combos.empty()) return deal;
    deal.players.push_back(std::move(player));
  }
  deal.ok = dealable(deal.players);
  return deal;
}

// Player 0's score under the multiway Common tie rule from weights by winners: alone 1, shared with
// k opponents 1/k.
template <typename Weights>
void player_zero(const Weights& by_winners, double& wins, double& ties, double& score, double& total) {
  wins = ties = score = total = 0;
  for (size_t mask = 1; mask < by_winners.size(); ++mask) {
    const double w = static_cast<double>(by_winners[mask]);
    total += w;
    if (!(mask & 1)) continue;
    const int opponents = std::popcount(mask) - 1;
    (opponents == 0 ? wins : ties) += w;
    score += opponents == 0 ? w : w / opponents;
  }
}

int elapsed_ms(std::chrono::steady_clock::time_point start) {
  return static_cast<int>(
      std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - start).count());
}

// Every deal counted: player 0's wins and ties and the deals. False for refused input.
bool enumerate(bool china, const Spec* ranges, int players, const int* board, int boardCount, const int* dead,
               int deadCount, double& wins, double& ties, double& score, double& deals, int& ms) {
  const auto start = std::chrono::steady_clock::now();
  wins = ties = score = deals = 0;
  const ShortDeckDeal deal = read_deal(china, ranges, players, board, boardCount, dead, deadCount);
  if (!deal.ok || tuple_bound(deal.players) > kMaxTuples) {
    ms = elapsed_ms(start);
    return false;
  }
  const OutcomeCounts counts = count_holdem_outcomes(deal.game, deal.players, deal.board, deal.dead, RunControl{});
  player_zero(counts.deals, wins, ties, score, deals);
  ms = elapsed_ms(start);
  return deals > 0;
}

// Monte Carlo until `trials` trials or, read after the first trial and every 10,000th, `ms`
// milliseconds: player 0's wins, ties and score scaled to the trials done. False for refused input.
bool sample(bool china, const Spec* ranges, int players, const int* board, int boardCount, const int* dead,
            int deadCount, double& wins, double& ties, double& score, int& trials, int& ms) {
  const auto start = std::chrono::steady_clock::now();
  wins = ties = score = 0;
  const ShortDeckDeal deal = read_deal(china, ranges, players, board, boardCount, dead, deadCount);
  if (!deal.ok || trials < 1) {
    trials = 0;
    ms = elapsed_ms(start);
    return false;
  }
  const HoldemSampler sampler(deal.players, deal.board, deal.known, deal.game.deck);
  Rng rng(static_cast<uint64_t>(std::chrono::system_clock::now().time_since_epoch().count()));
  SampledOutcomes outcomes(players);
  const int limit_ms = ms;
  for (int64_t done = 0; done < trials;) {
    const int64_t batch = std::min<int64_t>(done == 0 ? 1 : kClockTrials, trials - done);
    sampler.run(deal.game.ranking, batch, rng, outcomes);
    done += batch;
    if (elapsed_ms(start) > limit_ms) break;
  }
  double total = 0;
  player_zero(outcomes.w1, wins, ties, score, total);
  trials = static_cast<int>(outcomes.trials());
  const double scale = total > 0 ? trials / total : 0;  // weights to trials
  wins *= scale, ties *= scale, score *= scale;
  ms = elapsed_ms(start);
  return true;
}

double percent(double score, double total) { return total > 0 ? score / total * 100 : 0.0; }

}  // namespace

double getProbabilityOfWinHoldem6PlusCommon(const Spec* ranges, int players, const int* board, int boardCount,
                                            const int* dead, int deadCount, int& trials, int& ms) {
  double wins, ties, score;
  sample(false, ranges, players, board, boardCount, dead, deadCount, wins, ties, score, trials, ms);
  return percent(score, trials);
}

double getProbabilityOfWinHoldem6PlusChinaCommon(const Spec* ranges, int players, const int* board, int boardCount,
                                                 const int* dead, int deadCount, int& trials, int& ms) {
  double wins, ties, score;
  sample(true, ranges, players, board, boardCount, dead, deadCount, wins, ties, score, trials, ms);
  return percent(score, trials);
}

double getProbabilityOfWinHoldem6PlusEnumerate(const Spec* ranges, int players, const int* board, int boardCount,
                                               const int* dead, int deadCount, int& deals, int& ms) {
  double wins, ties, score, total;
  enumerate(false, ranges, players, board, boardCount, dead, deadCount, wins, ties, score, total, ms);
  deals = static_cast<int>(std::min<double>(total, INT_MAX));
  return percent(score, total);
}

double getProbabilityOfWinHoldem6PlusChinaEnumerate(const Spec* ranges, int players, const int* board, int boardCount,
                                                    const int* dead, int deadCount, int& deals, int& ms) {
  double wins, ties, score, total;
  enumerate(true, ranges, players, board, boardCount, dead, deadCount, wins, ties, score, total, ms);
  deals = static_cast<int>(std::min<double>(total, INT_MAX));
  return percent(score, total);
}

int getWinHoldem6PlusCommon(const Spec* ranges, int players, const int* board, int boardCount, const int* dead,
                            int deadCount, double& wins, double& ties, int& trials, int& ms) {
  double score;
  return sample(false, ranges, players, board, boardCount, dead, deadCount, wins, ties, score, trials, ms);
}

int getWinHoldem6PlusChinaCommon(const Spec* ranges, int players, const int* board, int boardCount, const int* dead,
                                 int deadCount, double& wins, double& ties, int& trials, int& ms) {
  double score;
  return sample(true, ranges, players, board, boardCount, dead, deadCount, wins, ties, score, trials, ms);
}

int getWinHoldem6PlusEnumerate(const Spec* ranges, int players, const int* board, int boardCount, const int* dead,
                               int deadCount, double& wins, double& ties, double& deals, int& ms) {
  double score;
  return enumerate(false, ranges, players, board, boardCount, dead, deadCount, wins, ties, score, deals, ms);
}

int getWinHoldem6PlusChinaEnumerate(const Spec* ranges, int players, const int* board, int boardCount, const int* dead,
                                    int deadCount, double& wins, double& ties, double& deals, int& ms) {
  double score;
  return enumerate(true, ranges, players, board, boardCount, dead, deadCount, wins, ties, score, deals, ms);
}

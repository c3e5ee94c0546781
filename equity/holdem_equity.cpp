// The Hold'em and short-deck equity request: exact counts by rank patterns over the tuples of hands
// equal up to suits, or Monte Carlo, on the engine framework. The short deck is the same game with
// 36 cards and its own ranking. No table file is read, except the pre-flop table for Hold'em
// heads-up pre-flop questions too large to count on the spot, when it has been built.
#include <algorithm>
#include <bit>

#include "equity/holdem_equity.h"

#include "equity/board_patterns.h"
#include "equity/holdem_players.h"
#include "equity/holdem_sampler.h"
#include "equity/matchups.h"
#include "equity/preflop_table.h"
#include "equity/requests.h"

namespace pokermath::detail {

namespace {

constexpr uint64_t kFullDeck = (uint64_t{1} << 52) - 1;
// Counts the boards of one deal in the game's ranking.
void count_deal_boards(Ranking ranking, const HoldemDeal& deal, OutcomeCounts& out, int64_t times) {
  switch (ranking) {
    case Ranking::ShortDeck: return count_boards<Ranking::ShortDeck>(deal, out, times);
    case Ranking::China: return count_boards<Ranking::China>(deal, out, times);
    default: return count_boards<Ranking::Holdem>(deal, out, times);
  }
}
// The cost of an exact count on one core, in seconds: grouping the tuples by suits, setting up each
// class, and one player's value on one board pattern.
constexpr double kSecondsPerTuple = 2e-7;
constexpr double kSecondsPerClass = 1e-6;
constexpr double kSecondsPerLookup = 3e-9;
// Auto counts exactly what takes about this long on one core (the choice must not depend on the
// threads, so that a request gives the same numbers on any machine).
constexpr double kAutoExactSeconds = 1.5;
constexpr double kMaxExactTuples = 1e7;  // tuples of hands an exact count may group (32 bytes each)

OutcomeCounts count_classes(const HoldemGame& game, const std::vector<HoldemPlayer>& players,
                            const std::vector<int>& board, uint64_t dead_mask,
                            const std::vector<SuitPermutation>& symmetries, const RunControl& control) {
  const std::vector<TupleClass> classes = tuple_classes(players, symmetries);
  const int n = static_cast<int>(players.size());
  HoldemDeal deal;
  deal.players = n;
  deal.board_size = static_cast<int>(board.size());
  std::copy(board.begin(), board.end(), deal.board.begin());
  deal.dead = dead_mask | (kFullDeck & ~game.deck);  // no board card comes from outside the deck
  return run_exact_units(static_cast<int>(classes.size()), OutcomeCounts(n), control, [&](int u, OutcomeCounts& out) {
    const TupleClass& c = classes[static_cast<size_t>(u)];
    HoldemDeal d = deal;
    for (int p = 0; p < n; ++p) d.holes[p] = c.hole(p);
    count_deal_boards(game.ranking, d, out, c.tuples);
  });
}

EquityResult exact(const HoldemGame& game, const std::vector<HoldemPlayer>& players, const EquityRequest& request,
                   const std::vector<SuitPermutation>& symmetries, uint64_t dead_mask, const RunControl& control) {
  const int n = static_cast<int>(players.size());
  const OutcomeCounts counts = count_classes(game, players, request.board, dead_mask, symmetries, control);
  double deals = 0;
  for (int64_t d : counts.deals) deals += static_cast<double>(d);
  std::vector<std::string> texts;
  for (const HoldemPlayer& p : players) texts.push_back(p.text);
  return equity_result(texts, shares_of(counts, n), true, deals);
}

EquityResult monte_carlo(const HoldemGame& game, const std::vector<HoldemPlayer>& players, const EquityRequest& request,
                         uint64_t known, const RunControl& control) {
  const int n = static_cast<int>(players.size());
  const HoldemSampler sampler(players, request.board, known, game.deck);
  const SampledOutcomes outcomes = run_sample_chunks(
      sample_limits(request), control, SampledOutcomes(n),
      [&](int64_t, int64_t trials, Rng& rng, SampledOutcomes& out) { sampler.run(game.ranking, trials, rng, out); });
  std::vector<std::string> texts;
  for (const HoldemPlayer& p : players) texts.push_back(p.text);
  return equity_result(texts, shares_of(outcomes, n), false, static_cast<double>(outcomes.trials()));
}

}  // namespace

int HoldemGame::cards() const { return std::popcount(deck); }

HoldemGame holdem_game(EquityGame game) {
  // The short deck: ranks six (index 4) to ace in each of the four suits.
  constexpr uint64_t kShortDeck = [] {
    uint64_t deck = 0;
    for (int card = 0; card < 52; ++card)
      if (card % 13 >= 4) deck |= uint64_t{1} << card;
    return deck;
  }();
  switch (game) {
    case EquityGame::ShortDeck: return {kShortDeck, Ranking::ShortDeck};
    case EquityGame::ShortDeckChina: return {kShortDeck, Ranking::China};
    default: return {kFullDeck, Ranking::Holdem};
  }
}

OutcomeCounts count_holdem_outcomes(const HoldemGame& game, const std::vector<HoldemPlayer>& players,
                                    const std::vector<int>& board, const std::vector<int>& dead,
                                    const RunControl& control) {
  const uint64_t board_mask = cards_to_mask(board), dead_mask = cards_to_mask(dead);
  return count_classes(game, players, board, dead_mask, suit_permutations_fixing({board_mask, dead_mask}), control);
}

EquityResult compute_holdem_equity(const EquityRequest& request) {
  const HoldemGame game = holdem_game(request.game);
  const uint64_t board_and_dead = check_request(request);
  if (const uint64_t outside = board_and_dead & ~game.deck)
    throw Error("card '" + card_to_string(std::countr_zero(outside)) + "' is not in the short deck (six to ace)");
  const uint64_t board_mask = cards_to_mask(request.board), dead_mask = cards_to_mask(request.dead);
  uint64_t known = board_and_dead;  // read_holdem_players adds the given hands' cards
  const std::vector<HoldemPlayer> players = read_holdem_players(request, known, game.deck);
  const int n = static_cast<int>(players.size());
  const int missing = 5 - static_cast<int>(request.board.size());
  if (2 * n + std::popcount(board_and_dead) + missing > game.cards())
    throw Error(std::to_string(n) + " players need more cards than the deck holds");
  if (!dealable(players)) throw Error("no deal is possible: the players' hands always share a card");

  const RunControl control = run_control(request);
  // The work of an exact count: the tuples, their classes (about the tuples over the symmetries) and
  // the board patterns of each.
  const double tuples = tuple_bound(players);
  const std::vector<SuitPermutation> symmetries = suit_permutations_fixing({board_mask, dead_mask});
  const double classes = std::max(1.0, tuples / static_cast<double>(symmetries.size()));
  const double seconds =
      tuples * kSecondsPerTuple + classes * (kSecondsPerClass + board_pattern_work(missing, n) * kSecondsPerLookup);
  const bool large = seconds > kAutoExactSeconds;

  // The pre-flop table answers only Auto requests (it holds equities, not wins and ties), and only
  // the heads-up pre-flop ones too large to count on the spot: nothing else reads it.
  if (request.game == EquityGame::Holdem && request.method == EquityMethod::Auto && large && n == 2 &&
      request.board.empty() && request.dead.empty()) {
    const std::filesystem::path dir = request.data_dir.empty() ? default_data_directory() : request.data_dir;
    std::vector<PlayerShares> shares;
    double deals = 0;
    if (preflop_table_shares(dir, players, request.progress, shares, deals)) {
      EquityResult result = equity_result({players[0].text, players[1].text}, shares, true, deals);
      result.from_table = true;
      return result;
    }
  }
  if (request.method == EquityMethod::Exact && tuples > kMaxExactTuples)
    throw Error("too many hand combinations to count exactly (" + std::to_string(static_cast<int64_t>(tuples)) +
                "); sample them with Monte Carlo");
  const bool count = request.method == EquityMethod::Exact || (request.method == EquityMethod::Auto && !large);
  return count ? exact(game, players, request, symmetries, dead_mask, control)
               : monte_carlo(game, players, request, known, control);
}

}  // namespace pokermath::detail

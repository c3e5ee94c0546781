// The Hold'em equity request: exact counts by rank patterns over the tuples of hands equal up to
// suits, or Monte Carlo, on the engine framework. No table file is read, except the pre-flop table
// for heads-up pre-flop questions too large to count on the spot, when it has been built.
#include <algorithm>

#include "equity/board_patterns.h"
#include "equity/holdem_players.h"
#include "equity/holdem_sampler.h"
#include "equity/matchups.h"
#include "equity/preflop_table.h"
#include "equity/requests.h"

namespace pokermath::detail {

namespace {

constexpr uint64_t kFullDeck = (uint64_t{1} << 52) - 1;
// The cost of an exact count on one core, in seconds: grouping the tuples by suits, setting up each
// class, and one player's value on one board pattern.
constexpr double kSecondsPerTuple = 2e-7;
constexpr double kSecondsPerClass = 1e-6;
constexpr double kSecondsPerLookup = 3e-9;
// Auto counts exactly what takes about this long on one core (the choice must not depend on the
// threads, so that a request gives the same numbers on any machine).
constexpr double kAutoExactSeconds = 1.5;
constexpr double kMaxExactTuples = 1e7;  // tuples of hands an exact count may group (32 bytes each)

EquityResult exact(const std::vector<HoldemPlayer>& players, const EquityRequest& request,
                   const std::vector<SuitPermutation>& symmetries, uint64_t dead_mask, const RunControl& control) {
  const std::vector<TupleClass> classes = tuple_classes(players, symmetries);
  const int n = static_cast<int>(players.size());
  HoldemDeal deal;
  deal.players = n;
  deal.board_size = static_cast<int>(request.board.size());
  std::copy(request.board.begin(), request.board.end(), deal.board.begin());
  deal.dead = dead_mask;
  const OutcomeCounts counts =
      run_exact_units(static_cast<int>(classes.size()), OutcomeCounts(n), control, [&](int u, OutcomeCounts& out) {
        const TupleClass& c = classes[static_cast<size_t>(u)];
        HoldemDeal d = deal;
        for (int p = 0; p < n; ++p) d.holes[p] = c.hole(p);
        count_boards<Ranking::Holdem>(d, out, c.tuples);
      });
  double deals = 0;
  for (int64_t d : counts.deals) deals += static_cast<double>(d);
  std::vector<std::string> texts;
  for (const HoldemPlayer& p : players) texts.push_back(p.text);
  return equity_result(texts, shares_of(counts, n), true, deals);
}

EquityResult monte_carlo(const std::vector<HoldemPlayer>& players, const EquityRequest& request, uint64_t known,
                         const RunControl& control) {
  const int n = static_cast<int>(players.size());
  const HoldemSampler sampler(players, request.board, known, kFullDeck);
  const SampledOutcomes outcomes = run_sample_chunks(
      sample_limits(request), control, SampledOutcomes(n),
      [&](int64_t, int64_t trials, Rng& rng, SampledOutcomes& out) { sampler.run(Ranking::Holdem, trials, rng, out); });
  std::vector<std::string> texts;
  for (const HoldemPlayer& p : players) texts.push_back(p.text);
  return equity_result(texts, shares_of(outcomes, n), false, static_cast<double>(outcomes.trials()));
}

}  // namespace

EquityResult compute_holdem_equity(const EquityRequest& request) {
  const uint64_t board_and_dead = check_request(request);
  const uint64_t board_mask = cards_to_mask(request.board), dead_mask = cards_to_mask(request.dead);
  uint64_t known = board_and_dead;  // read_holdem_players adds the given hands' cards
  const std::vector<HoldemPlayer> players = read_holdem_players(request, known, kFullDeck);
  const int n = static_cast<int>(players.size());
  const int missing = 5 - static_cast<int>(request.board.size());
  if (2 * n + std::popcount(board_and_dead) + missing > 52)
    throw Error(std::to_string(n) + " players need more cards than the deck holds");
  if (!dealable(players)) throw Error("no deal is possible: the players' hands always share a card");

  const RunControl control = run_control(request);
  // The work of an exact count: the tuples, their classes (about the tuples over the symmetries) and
  // the board patterns of each.
  const double tuples = tuple_bound(players);
  const std::vector<SuitPermutation> symmetries = suit_permutations_fixing({board_mask, dead_mask});
  const double classes = std::max(1.0, tuples / static_cast<double>(symmetries.size()));
  const double seconds = tuples * kSecondsPerTuple +
                         classes * (kSecondsPerClass + board_pattern_work(missing, n) * kSecondsPerLookup);
  const bool large = seconds > kAutoExactSeconds;

  // The pre-flop table answers only Auto requests (it holds equities, not wins and ties), and only
  // the heads-up pre-flop ones too large to count on the spot: nothing else reads it.
  if (request.method == EquityMethod::Auto && large && n == 2 && request.board.empty() && request.dead.empty()) {
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
  return count ? exact(players, request, symmetries, dead_mask, control)
               : monte_carlo(players, request, known, control);
}

}  // namespace pokermath::detail

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

// The deals of a weighted request: counted (each tuple of hands once) and weighed.
struct BothCounts {
  OutcomeCounts counted;
  WeightedOutcomeCounts weighed;
  explicit BothCounts(int players) : counted(players), weighed(players) {}
  void add(const BothCounts& other) {
    counted.add(other.counted);
    weighed.add(other.weighed);
  }
};

HoldemDeal deal_of(const HoldemGame& game, const std::vector<int>& board, uint64_t dead_mask, int players) {
  HoldemDeal deal;
  deal.players = players;
  deal.board_size = static_cast<int>(board.size());
  std::copy(board.begin(), board.end(), deal.board.begin());
  deal.dead = dead_mask | (kFullDeck & ~game.deck);  // no board card comes from outside the deck
  return deal;
}

// Counts the boards of each class of hand tuples once, on control.threads threads; add(class, its
// counts for one tuple, out) adds them in (times the class's tuple count, or its weight).
template <typename Counts, typename Add>
Counts count_tuple_classes(const HoldemGame& game, const std::vector<HoldemPlayer>& players,
                           const std::vector<int>& board, uint64_t dead_mask,
                           const std::vector<SuitPermutation>& symmetries, const RunControl& control, Add add) {
  const std::vector<TupleClass> classes = tuple_classes(players, symmetries);
  const int n = static_cast<int>(players.size());
  const HoldemDeal deal = deal_of(game, board, dead_mask, n);
  return run_exact_units(static_cast<int>(classes.size()), Counts(n), control, [&](int u, Counts& out) {
    const TupleClass& c = classes[static_cast<size_t>(u)];
    HoldemDeal d = deal;
    for (int p = 0; p < n; ++p) d.holes[p] = c.hole(p);
    OutcomeCounts one(n);
    count_deal_boards(game.ranking, d, one, 1);
    add(c, one, out);
  });
}

OutcomeCounts count_classes(const HoldemGame& game, const std::vector<HoldemPlayer>& players,
                            const std::vector<int>& board, uint64_t dead_mask,
                            const std::vector<SuitPermutation>& symmetries, const RunControl& control) {
  return count_tuple_classes<OutcomeCounts>(
      game, players, board, dead_mask, symmetries, control,
      [](const TupleClass& c, const OutcomeCounts& one, OutcomeCounts& out) { out.add(one, c.tuples); });
}

// The same for weighted players: counted (each tuple once) and weighed.
BothCounts count_weighted_classes(const HoldemGame& game, const std::vector<HoldemPlayer>& players,
                                  const std::vector<int>& board, uint64_t dead_mask,
                                  const std::vector<SuitPermutation>& symmetries, const RunControl& control) {
  return count_tuple_classes<BothCounts>(game, players, board, dead_mask, symmetries, control,
                                         [](const TupleClass& c, const OutcomeCounts& one, BothCounts& out) {
                                           out.counted.add(one, c.tuples);
                                           out.weighed.add(one, c.weight);
                                         });
}

double deals_in(const OutcomeCounts& counts) {
  double deals = 0;
  for (int64_t d : counts.deals) deals += static_cast<double>(d);
  return deals;
}

EquityResult exact(const HoldemGame& game, const std::vector<HoldemPlayer>& players, const EquityRequest& request,
                   const std::vector<SuitPermutation>& symmetries, uint64_t dead_mask, const RunControl& control) {
  const int n = static_cast<int>(players.size());
  std::vector<std::string> texts;
  for (const HoldemPlayer& p : players) texts.push_back(p.text);
  if (any_weighted(players)) {
    const BothCounts counts = count_weighted_classes(game, players, request.board, dead_mask, symmetries, control);
    return equity_result(texts, shares_of(counts.weighed, n), true, deals_in(counts.counted));
  }
  const OutcomeCounts counts = count_classes(game, players, request.board, dead_mask, symmetries, control);
  return equity_result(texts, shares_of(counts, n), true, deals_in(counts));
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

namespace {

// A checked Hold'em request: its game, players and the suit permutations that keep its board and
// dead cards in place.
struct Prepared {
  HoldemGame game;
  std::vector<HoldemPlayer> players;
  uint64_t known = 0;  // board, dead cards and given hands
  uint64_t dead_mask = 0;
  std::vector<SuitPermutation> symmetries;
  double tuples = 0;  // at least the tuples of hands (tuple_bound)
};

Prepared prepare(const EquityRequest& request) {
  Prepared r;
  r.game = holdem_game(request.game);
  const uint64_t board_and_dead = check_request(request);
  if (const uint64_t outside = board_and_dead & ~r.game.deck)
    throw Error("card '" + card_to_string(std::countr_zero(outside)) + "' is not in the short deck (six to ace)");
  const uint64_t board_mask = cards_to_mask(request.board);
  r.dead_mask = cards_to_mask(request.dead);
  r.known = board_and_dead;  // read_holdem_players adds the given hands' cards
  r.players = read_holdem_players(request, r.known, r.game.deck);
  const int n = static_cast<int>(r.players.size());
  const int missing = 5 - static_cast<int>(request.board.size());
  if (2 * n + std::popcount(board_and_dead) + missing > r.game.cards())
    throw Error(std::to_string(n) + " players need more cards than the deck holds");
  if (!dealable(r.players)) throw Error("no deal is possible: the players' hands always share a card");
  r.tuples = tuple_bound(r.players);
  r.symmetries = suit_permutations_fixing({board_mask, r.dead_mask});
  return r;
}

}  // namespace

EquityResult compute_holdem_equity(const EquityRequest& request) {
  const Prepared r = prepare(request);
  const std::vector<HoldemPlayer>& players = r.players;
  const int n = static_cast<int>(players.size());
  const int missing = 5 - static_cast<int>(request.board.size());
  const RunControl control = run_control(request);
  // The work of an exact count: the tuples, their classes (about the tuples over the symmetries) and
  // the board patterns of each.
  const double classes = std::max(1.0, r.tuples / static_cast<double>(r.symmetries.size()));
  const double seconds =
      r.tuples * kSecondsPerTuple + classes * (kSecondsPerClass + board_pattern_work(missing, n) * kSecondsPerLookup);
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
  if (request.method == EquityMethod::Exact && r.tuples > kMaxExactTuples)
    throw Error("too many hand combinations to count exactly (" + std::to_string(static_cast<int64_t>(r.tuples)) +
                "); sample them with Monte Carlo");
  const bool count = request.method == EquityMethod::Exact || (request.method == EquityMethod::Auto && !large);
  return count ? exact(r.game, players, request, r.symmetries, r.dead_mask, control)
               : monte_carlo(r.game, players, request, r.known, control);
}

RangeBreakdown holdem_breakdown(const EquityRequest& request, int focus) {
  if (request.method == EquityMethod::MonteCarlo)
    throw Error("equity by hand class is counted exactly: the method must be auto or exact");
  const Prepared r = prepare(request);
  const int n = static_cast<int>(r.players.size());
  if (focus < 0 || focus >= n)
    throw Error("player " + std::to_string(focus + 1) + " is not in the request (" + std::to_string(n) + " players)");
  if (r.tuples > kMaxExactTuples)
    throw Error("too many hand combinations to break down exactly (" + std::to_string(static_cast<int64_t>(r.tuples)) +
                ")");
  std::vector<TupleMember> members;
  const std::vector<TupleClass> classes = tuple_classes(r.players, r.symmetries, &members, focus);

  // Each class's deals from the focus player's side: won alone, split, the pot share times 2520 (a
  // multiple of every split 1..10, so the share is an integer) and all deals. Units write their own
  // entries.
  struct Focus {
    int64_t win = 0, tie = 0, share = 0, deals = 0;
  };
  struct NoCounts {
    void add(const NoCounts&) {}
  };
  std::vector<Focus> focus_counts(classes.size());
  const HoldemDeal deal = deal_of(r.game, request.board, r.dead_mask, n);
  run_exact_units(static_cast<int>(classes.size()), NoCounts{}, run_control(request), [&](int u, NoCounts&) {
    const TupleClass& c = classes[static_cast<size_t>(u)];
    HoldemDeal d = deal;
    for (int p = 0; p < n; ++p) d.holes[p] = c.hole(p);
    OutcomeCounts one(n);
    count_deal_boards(r.game.ranking, d, one, 1);
    Focus& f = focus_counts[static_cast<size_t>(u)];
    for (uint32_t mask = 0; mask < one.deals.size(); ++mask) {
      f.deals += one.deals[mask];
      if (!(mask >> focus & 1)) continue;
      (std::popcount(mask) == 1 ? f.win : f.tie) += one.deals[mask];
      f.share += one.deals[mask] * (2520 / std::popcount(mask));
    }
  });

  // Every tuple adds its class's deals to the combination the focus player holds in it, with its
  // weight; in tuple order, so the sums do not depend on the threads.
  const std::vector<Combo>& combos = r.players[static_cast<size_t>(focus)].combos;
  struct Sums {
    double weight = 0, win = 0, tie = 0, share = 0, deals = 0;
  };
  std::vector<Sums> sums(combos.size());
  for (const TupleMember& m : members) {
    const Focus& f = focus_counts[m.tuple_class];
    Sums& s = sums[m.combo];
    s.weight += m.weight;
    s.win += m.weight * static_cast<double>(f.win);
    s.tie += m.weight * static_cast<double>(f.tie);
    s.share += m.weight * static_cast<double>(f.share) / 2520;
    s.deals += m.weight * static_cast<double>(f.deals);
  }
  RangeBreakdown out;
  out.player = focus;
  double share = 0, deals = 0;
  for (size_t k = 0; k < combos.size(); ++k) {
    const Sums& s = sums[k];
    if (s.deals == 0) continue;  // never dealt with the others' hands
    auto [a, b] = combos[k].cards;
    if (a < b) std::swap(a, b);
    out.combos.push_back({a, b, combos[k].weight * 100, s.share / s.deals, s.win / s.deals, s.tie / s.deals});
    out.deal_weight.push_back(s.weight);
    share += s.share;
    deals += s.deals;
  }
  out.equity = deals > 0 ? share / deals : 0;
  return out;
}

}  // namespace pokermath::detail

// The Omaha and Omaha Hi/Lo equity requests on the engine framework: every board counted (the
// first missing card splits the work among the threads) or sampled in chunks. Each player's best
// hand comes from the rank-pair tables (eval_rank7_via_ofsm7), built in memory on first use.
#include <algorithm>

#include "equity/board_walk.h"
#include "equity/omaha_boards.h"
#include "equity/requests.h"

namespace pokermath::detail {

namespace {

struct OmahaGame {
  int hole = 4;
  bool hi_lo = false;
};

OmahaGame omaha_game(EquityGame game) {
  switch (game) {
    case EquityGame::Omaha5: return {5, false};
    case EquityGame::Omaha6: return {6, false};
    case EquityGame::OmahaHiLo: return {4, true};
    case EquityGame::Omaha5HiLo: return {5, true};
    default: return {4, false};
  }
}

// One Omaha player: a fixed holding, or random (no holding).
struct OmahaPlayer {
  std::string text;
  std::vector<int> cards;  // empty for a random hand
};

std::vector<OmahaPlayer> read_omaha_players(const EquityRequest& request, const OmahaGame& game, uint64_t& known) {
  std::vector<OmahaPlayer> players(request.players.size());
  for (size_t i = 0; i < players.size(); ++i) {
    OmahaPlayer& p = players[i];
    p.text = request.players[i];
    if (is_random(p.text)) continue;
    try {
      p.cards = parse_cards(p.text);
    } catch (const Error& e) {
      throw Error(ordinal(i) + ": " + e.what());
    }
    if (static_cast<int>(p.cards.size()) != game.hole)
      throw Error(ordinal(i) + ": this game's hands hold " + std::to_string(game.hole) + " cards, got '" + p.text +
                  "'");
    for (int c : p.cards) {
      if (known >> c & 1) throw Error(ordinal(i) + ": card '" + card_to_string(c) + "' is already in play");
      known |= uint64_t{1} << c;
    }
  }
  return players;
}

// A pot is 5,040 units (2 x 2520, 2520 = lcm(1..10)), so every share of a high or a low half split
// among up to ten players is a whole number of units: the sums of exact counts are exact in a
// double and do not depend on the order of the additions.
constexpr double kPotUnits = 5040;

// Per-player sums over the deals: wins and ties of the high hand, the units won with the high and
// with the low hand, scoops, and the squares of each deal's share (for standard errors).
struct OmahaTally {
  std::vector<double> wins, ties, high, low, scoops, squares;
  double deals = 0;

  explicit OmahaTally(int players = 0)
      : wins(players), ties(players), high(players), low(players), scoops(players), squares(players) {}

  // One deal from each player's high value (larger is stronger) and low (0: none).
  void add_deal(int players, const int* highs, const int* lows) {
    const int best_high = *std::max_element(highs, highs + players);
    int best_low = 0;
    for (int p = 0; p < players; ++p)
      if (lows[p] && (!best_low || lows[p] < best_low)) best_low = lows[p];
    int high_winners = 0, low_winners = 0;
    for (int p = 0; p < players; ++p) {
      high_winners += highs[p] == best_high;
      low_winners += best_low && lows[p] == best_low;
    }
    const double high_pot = best_low ? kPotUnits / 2 : kPotUnits;
    for (int p = 0; p < players; ++p) {
      double units = 0;
      if (highs[p] == best_high) {
        units += high_pot / high_winners;
        high[p] += high_pot / high_winners;
        (high_winners == 1 ? wins : ties)[p] += 1;
      }
      if (best_low && lows[p] == best_low) {
        units += kPotUnits / 2 / low_winners;
        low[p] += kPotUnits / 2 / low_winners;
      }
      if (units == kPotUnits) scoops[p] += 1;
      squares[p] += (units / kPotUnits) * (units / kPotUnits);
    }
    deals += 1;
  }
  void add(const OmahaTally& o) {
    for (size_t p = 0; p < wins.size(); ++p) {
      wins[p] += o.wins[p], ties[p] += o.ties[p], high[p] += o.high[p], low[p] += o.low[p];
      scoops[p] += o.scoops[p], squares[p] += o.squares[p];
    }
    deals += o.deals;
  }
  int64_t trials() const { return static_cast<int64_t>(deals); }
  double equity(size_t p) const { return (high[p] + low[p]) / kPotUnits / deals; }
  double std_error(size_t p) const {
    if (deals < 2) return 0;
    const double e = equity(p);
    return std::sqrt(std::max(0.0, squares[p] / deals - e * e) / (deals - 1));
  }
  double max_std_error() const {
    double worst = 0;
    for (size_t p = 0; p < wins.size(); ++p) worst = std::max(worst, std_error(p));
    return worst;
  }
};

struct OmahaQuestion {
  OmahaGame game;
  int players;
  std::array<int, kMaxPlayers * kMaxHole> cards;  // each player's hole cards, one after another
  std::vector<int> board;
  uint64_t known;  // board, dead and fixed holdings
};

void score(const OmahaQuestion& q, const int* cards, const int* board, OmahaTally& tally) {
  int highs[kMaxPlayers] = {}, lows[kMaxPlayers] = {};
  for (int p = 0; p < q.players; ++p) {
    highs[p] = eval_rank7_via_ofsm7(cards + p * q.game.hole, q.game.hole, board);
    if (q.game.hi_lo) lows[p] = SetLowValueCombinationOmahaCommon(cards + p * q.game.hole, q.game.hole, board, 5);
  }
  tally.add_deal(q.players, highs, lows);
}

// Exact: every completion of the board, split by its first missing card.
OmahaTally exact(const OmahaQuestion& q, const RunControl& control) {
  const int given = static_cast<int>(q.board.size()), missing = 5 - given;
  std::vector<int> firsts;  // the first missing card of each unit
  for (int c = 0; c < 52; ++c)
    if (!(q.known >> c & 1)) firsts.push_back(c);
  if (missing == 0) firsts = {-1};
  return run_exact_units(static_cast<int>(firsts.size()), OmahaTally(q.players), control,
                         [&](int u, OmahaTally& tally) {
                           int full[5];
                           std::copy(q.board.begin(), q.board.end(), full);
                           if (missing == 0) return score(q, q.cards.data(), full, tally);
                           full[given] = firsts[static_cast<size_t>(u)];
                           const uint64_t seen = q.known | ((uint64_t{2} << full[given]) - 1);  // later cards only
                           for_each_completion(seen, missing - 1, [&](const int* rest) {
                             std::copy(rest, rest + missing - 1, full + given + 1);
                             score(q, q.cards.data(), full, tally);
                           });
                         });
}

OmahaTally monte_carlo(const OmahaQuestion& q, const std::vector<OmahaPlayer>& players, const EquityRequest& request,
                       const RunControl& control) {
  std::vector<int> unseen;
  for (int c = 0; c < 52; ++c)
    if (!(q.known >> c & 1)) unseen.push_back(c);
  return run_sample_chunks(sample_limits(request), control, OmahaTally(q.players),
                           [&](int64_t, int64_t trials, Rng& rng, OmahaTally& tally) {
                             std::vector<int> deck = unseen;
                             std::array<int, kMaxPlayers * kMaxHole> cards = q.cards;
                             int full[5];
                             std::copy(q.board.begin(), q.board.end(), full);
                             for (int64_t t = 0; t < trials; ++t) {
                               uint32_t top = static_cast<uint32_t>(deck.size());
                               auto draw = [&] {  // a partial shuffle of the unseen cards
                                 const uint32_t j = rng.below(top--);
                                 std::swap(deck[j], deck[top]);
                                 return deck[top];
                               };
                               for (int p = 0; p < q.players; ++p)
                                 if (players[static_cast<size_t>(p)].cards.empty())
                                   for (int i = 0; i < q.game.hole; ++i) cards[p * q.game.hole + i] = draw();
                               for (size_t i = q.board.size(); i < 5; ++i) full[i] = draw();
                               score(q, cards.data(), full, tally);
                             }
                           });
}

}  // namespace

EquityResult compute_omaha_equity(const EquityRequest& request) {
  const OmahaGame game = omaha_game(request.game);
  uint64_t known = check_request(request);
  const std::vector<OmahaPlayer> players = read_omaha_players(request, game, known);
  const int n = static_cast<int>(players.size());
  const int missing = 5 - static_cast<int>(request.board.size());
  const int random = static_cast<int>(std::count_if(players.begin(), players.end(), [](const OmahaPlayer& p) {
    return p.cards.empty();
  }));
  if (game.hole * n + static_cast<int>(request.board.size() + request.dead.size()) + missing > 52)
    throw Error(std::to_string(n) + " players need more cards than the deck holds");
  if (request.method == EquityMethod::Exact && random > 0)
    throw Error("an exact Omaha answer needs every player's holding; random hands take --monte-carlo");

  OmahaQuestion q{game, n, {}, request.board, known};
  for (int p = 0; p < n; ++p) std::copy(players[p].cards.begin(), players[p].cards.end(), q.cards.begin() + p * game.hole);
  const RunControl control = run_control(request);
  // The work of an exact answer in player-boards; about 30 million take a second on one core (the
  // choice does not depend on the threads, so that a request gives the same numbers anywhere).
  const double work = ways_to_deal(52 - std::popcount(known), missing) * n;
  const bool count =
      random == 0 && (request.method == EquityMethod::Exact || (request.method == EquityMethod::Auto && work <= 3e7));
  const OmahaTally tally = count ? exact(q, control) : monte_carlo(q, players, request, control);

  EquityResult result;
  result.exact = count;
  result.deals = tally.deals;
  const double nan = std::numeric_limits<double>::quiet_NaN();
  for (size_t p = 0; p < players.size(); ++p) {
    PlayerEquity e;
    e.hand = players[p].text;
    e.equity = tally.equity(p);
    e.win = game.hi_lo ? nan : tally.wins[p] / tally.deals;
    e.tie = game.hi_lo ? nan : tally.ties[p] / tally.deals;
    e.high = game.hi_lo ? tally.high[p] / kPotUnits / tally.deals : nan;
    e.low = game.hi_lo ? tally.low[p] / kPotUnits / tally.deals : nan;
    e.scoop = game.hi_lo ? tally.scoops[p] / tally.deals : nan;
    e.std_error = count ? 0 : tally.std_error(p);
    result.players.push_back(e);
  }
  return result;
}

}  // namespace pokermath::detail

// The Omaha and Omaha Hi/Lo equity requests on the engine framework. Each player is a fixed holding,
// a weighted range (the Omaha range language) or random. Exact answers count every board (the
// first missing card splits the work among the threads) and on it every combination of holdings
// that share no card, weighted by the product of their weights; Monte Carlo draws the holdings with
// those joint probabilities, in chunks. High hands come from the rank-pair tables
// (eval_rank7_via_ofsm7, built in memory on first use), lows from the low-rank-set table.
#include <algorithm>
#include <array>
#include <atomic>
#include <bit>
#include <cmath>
#include <functional>
#include <limits>
#include <numeric>

#include "equity/board_walk.h"
#include "equity/omaha_boards.h"
#include "equity/requests.h"
#include "omaha/low_sets.h"

namespace pokermath::detail {

namespace {

// A holding of a player's range: its cards as a mask and as codes, and its weight as a fraction.
struct Holding {
  uint64_t mask = 0;
  double weight = 1;
  std::array<int, kMaxHole> cards{};
  uint32_t low_ranks = 0;  // its low-rank set (low_sets.h)
};

// One Omaha player: random (every holding of the cards left, equally likely), or the live holdings
// of a fixed holding or a range, with the weighted draw the sampler uses.
struct OmahaPlayer {
  std::string text;
  bool random = false;
  bool fixed = false;  // written as cards: one holding
  std::vector<Holding> holdings;
  WeightedIndex sampler;
};

// Calls visit(mask) for every set of k cards of `cards`, in increasing order.
template <typename Visit>
void for_each_holding(uint64_t cards, int k, Visit visit) {
  auto level = [&](auto& self, uint64_t rest, int left, uint64_t mask) -> void {
    if (left == 0) return visit(mask);
    for (uint64_t r = rest; std::popcount(r) >= left; r &= r - 1) self(self, r & (r - 1), left - 1, mask | (r & -r));
  };
  level(level, cards, k, 0);
}

Holding make_holding(uint64_t mask, double weight) {
  Holding h;
  h.mask = mask;
  h.weight = weight;
  int n = 0;
  Int64ToArray(mask, n, h.cards.data());
  h.low_ranks = low_rank_set(h.cards.data(), n);
  return h;
}

// Reads the players: fixed holdings first (their cards are known to every other player), then the
// ranges, each kept to the holdings that meet no known card. `known` gains the fixed holdings.
std::vector<OmahaPlayer> read_omaha_players(const EquityRequest& request, const OmahaGame& game, uint64_t& known) {
  std::vector<OmahaPlayer> players(request.players.size());
  std::vector<size_t> ranges;
  for (size_t i = 0; i < players.size(); ++i) {
    OmahaPlayer& p = players[i];
    p.text = request.players[i];
    if (is_random(p.text)) {
      p.random = true;
      continue;
    }
    std::vector<int> cards;
    try {
      cards = parse_cards(p.text);
    } catch (const Error&) {
      ranges.push_back(i);  // not a list of cards: a range
      continue;
    }
    if (static_cast<int>(cards.size()) != game.hole)
      throw Error(ordinal(i) + ": this game's hands hold " + std::to_string(game.hole) + " cards, got '" + p.text +
                  "'");
    for (int c : cards) {
      if (known >> c & 1) throw Error(ordinal(i) + ": card '" + card_to_string(c) + "' is already in play");
      known |= uint64_t{1} << c;
    }
    p.fixed = true;
    p.holdings.push_back(make_holding(cards_to_mask(cards), 1));
  }
  for (size_t i : ranges) {
    OmahaPlayer& p = players[i];
    OmahaRange range;
    try {
      range = parse_omaha_range(p.text, request.game, request.data_dir, request.progress);
    } catch (const FileError&) {
      throw;
    } catch (const Error& e) {
      throw Error(ordinal(i) + ": " + e.what());
    }
    for (const OmahaHolding& h : range.holdings())
      if (!(h.cards & known)) p.holdings.push_back(make_holding(h.cards, h.weight / 100));
    if (p.holdings.empty())
      throw Error(ordinal(i) + ": no holding of '" + p.text + "' is left" +
                  (range.empty() ? "" : " once the board, the dead cards and the other players' holdings are out"));
  }
  for (OmahaPlayer& p : players) {
    std::vector<double> weights;
    for (const Holding& h : p.holdings) weights.push_back(h.weight);
    p.sampler = WeightedIndex(weights);
  }
  return players;
}

// Whether the players other than the random ones can be dealt together: a search for one holding
// each that share no card. Gives up (answering yes) after 30 million steps (a tenth of a second);
// the sampler then finds out.
bool can_be_dealt(const std::vector<OmahaPlayer>& players) {
  std::vector<const OmahaPlayer*> held;
  for (const OmahaPlayer& p : players)
    if (!p.random) held.push_back(&p);
  std::sort(held.begin(), held.end(), [](auto* a, auto* b) { return a->holdings.size() < b->holdings.size(); });
  int64_t steps = 0;
  auto search = [&](auto& self, size_t k, uint64_t used) -> bool {
    if (k == held.size()) return true;
    for (const Holding& h : held[k]->holdings) {
      if (++steps > 30000000) return true;
      if (!(h.mask & used) && self(self, k + 1, used | h.mask)) return true;
    }
    return false;
  };
  return search(search, 0, 0);
}

// A pot is 5,040 units (2 x 2520, 2520 = lcm(1..10)), so every share of a high or a low half split
// among up to ten players is a whole number of units: the sums of exact counts are exact in a
// double and do not depend on the order of the additions.
constexpr double kPotUnits = 5040;

// Per-player sums over the deals, each deal counted with its weight (the product of the players'
// holding weights; 1 when sampled, since the sampler draws holdings by weight): wins and ties of
// the high hand, the units won with the high and with the low hand, scoops, and the squares of each
// deal's share (for standard errors).
struct OmahaTally {
  std::vector<double> wins, ties, high, low, scoops, squares;
  double weight = 0;  // the sum of the deals' weights
  double deals = 0;   // the deals counted

  explicit OmahaTally(int players = 0)
      : wins(players), ties(players), high(players), low(players), scoops(players), squares(players) {}

  // One deal from each player's high value (larger is stronger) and low (0: none).
  void add_deal(int players, const int* highs, const int* lows, double w = 1) {
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
        high[p] += w * (high_pot / high_winners);
        (high_winners == 1 ? wins : ties)[p] += w;
      }
      if (best_low && lows[p] == best_low) {
        units += kPotUnits / 2 / low_winners;
        low[p] += w * (kPotUnits / 2 / low_winners);
      }
      if (units == kPotUnits) scoops[p] += w;
      squares[p] += w * (units / kPotUnits) * (units / kPotUnits);
    }
    weight += w;
    deals += 1;
  }
  void add(const OmahaTally& o) {
    for (size_t p = 0; p < wins.size(); ++p) {
      wins[p] += o.wins[p], ties[p] += o.ties[p], high[p] += o.high[p], low[p] += o.low[p];
      scoops[p] += o.scoops[p], squares[p] += o.squares[p];
    }
    weight += o.weight;
    deals += o.deals;
  }
  int64_t trials() const { return static_cast<int64_t>(deals); }
  double equity(size_t p) const { return (high[p] + low[p]) / kPotUnits / weight; }
  double std_error(size_t p) const {
    if (deals < 2) return 0;
    const double e = equity(p);
    return std::sqrt(std::max(0.0, squares[p] / weight - e * e) / (deals - 1));
  }
  double max_std_error() const {
    double worst = 0;
    for (size_t p = 0; p < wins.size(); ++p) worst = std::max(worst, std_error(p));
    return worst;
  }
};

// The tallies of exact units kept apart, one per unit, and added in unit order at the end: weighted
// sums are not whole numbers, so their total must not depend on which thread counted which unit.
struct UnitTallies {
  std::vector<OmahaTally> units;
  void add(const UnitTallies& o) {
    for (size_t u = 0; u < units.size(); ++u) units[u].add(o.units[u]);
  }
};

struct OmahaQuestion {
  OmahaGame game;
  std::vector<OmahaPlayer> players;
  std::vector<int> board;
  uint64_t known;  // board, dead and fixed holdings
  int n() const { return static_cast<int>(players.size()); }
};

// Each live holding's value on one complete board. With many holdings, each pair of cards off the
// board is valued once (its best with three board cards) and a holding takes the best of its pairs:
// an Omaha hand is exactly two hole cards and three board cards.
class BoardValues {
 public:
  BoardValues(const OmahaQuestion& q, bool by_pairs) : m_q(q), m_byPairs(by_pairs) {
    for (const OmahaPlayer& p : q.players) {
      m_high.emplace_back(p.holdings.size());
      m_low.emplace_back(p.holdings.size());
    }
    if (by_pairs) m_pairHigh.assign(52 * 52, 0);
    m_holdable = ~q.known & ((uint64_t{1} << 52) - 1);  // the cards a range or random holding may use
    for (const OmahaPlayer& p : q.players)
      if (p.fixed) m_holdable |= p.holdings[0].mask;
  }

  // Values every holding that meets no board card; a holding that does gets -1.
  void set_board(const int* board) {
    uint64_t on_board = 0;
    for (int i = 0; i < 5; ++i) on_board |= uint64_t{1} << board[i];
    const uint32_t board_low = low_rank_set(board, 5);
    if (m_byPairs) value_pairs(board, on_board);
    for (size_t p = 0; p < m_q.players.size(); ++p) {
      const std::vector<Holding>& holdings = m_q.players[p].holdings;
      for (size_t i = 0; i < holdings.size(); ++i) {
        const Holding& h = holdings[i];
        if (h.mask & on_board) {
          m_high[p][i] = -1;
          continue;
        }
        if (m_byPairs) {
          int best = 0;
          const int k = m_q.game.hole;
          for (int a = 0; a < k; ++a)
            for (int b = a + 1; b < k; ++b) best = std::max(best, m_pairHigh[h.cards[a] * 52 + h.cards[b]]);
          m_high[p][i] = best;
        } else {
          m_high[p][i] = eval_rank7_via_ofsm7(h.cards.data(), m_q.game.hole, board);
        }
        m_low[p][i] = m_q.game.hi_lo ? best_low_set(h.low_ranks, board_low) : 0;
      }
    }
  }
  int high(size_t p, size_t i) const { return m_high[p][i]; }
  int low(size_t p, size_t i) const { return m_low[p][i]; }

 private:
  void value_pairs(const int* board, uint64_t on_board) {
    int off[52], n = 0;
    for (int c = 0; c < 52; ++c)
      if (!(on_board >> c & 1) && m_holdable >> c & 1) off[n++] = c;
    for (int i = 0; i < n; ++i)
      for (int j = i + 1; j < n; ++j) {
        const int pair[2] = {off[i], off[j]};
        m_pairHigh[off[i] * 52 + off[j]] = m_pairHigh[off[j] * 52 + off[i]] = eval_rank7_via_ofsm7(pair, 2, board);
      }
  }
  const OmahaQuestion& m_q;
  bool m_byPairs;
  uint64_t m_holdable = 0;
  std::vector<std::vector<int>> m_high, m_low;
  std::vector<int> m_pairHigh;
};

// Exact: every completion of the board (split into units by its first missing card), and on each
// board every combination of one live holding per player that share no card, weighted by the
// product of the holdings' weights.
OmahaTally exact(const OmahaQuestion& q, bool by_pairs, const RunControl& control) {
  const int given = static_cast<int>(q.board.size()), missing = 5 - given, n = q.n();
  std::vector<int> firsts;  // the first missing card of each unit
  for (int c = 0; c < 52; ++c)
    if (!(q.known >> c & 1)) firsts.push_back(c);
  if (missing == 0) firsts = {-1};
  const int units = static_cast<int>(firsts.size());
  UnitTallies empty{std::vector<OmahaTally>(static_cast<size_t>(units), OmahaTally(n))};
  const UnitTallies all = run_exact_units(units, empty, control, [&](int u, UnitTallies& tallies) {
    OmahaTally& tally = tallies.units[static_cast<size_t>(u)];
    BoardValues values(q, by_pairs);
    int highs[kMaxPlayers] = {}, lows[kMaxPlayers] = {};
    auto deal = [&](auto& self, int p, uint64_t used, double weight) -> void {
      if (p == n) return tally.add_deal(n, highs, lows, weight);
      const std::vector<Holding>& holdings = q.players[static_cast<size_t>(p)].holdings;
      for (size_t i = 0; i < holdings.size(); ++i) {
        if (holdings[i].mask & used || values.high(p, i) < 0) continue;
        highs[p] = values.high(p, i);
        lows[p] = values.low(p, i);
        self(self, p + 1, used | holdings[i].mask, weight * holdings[i].weight);
      }
    };
    int full[5];
    std::copy(q.board.begin(), q.board.end(), full);
    auto on_board = [&] {
      values.set_board(full);
      deal(deal, 0, 0, 1.0);
    };
    if (missing == 0) return on_board();
    full[given] = firsts[static_cast<size_t>(u)];
    const uint64_t seen = q.known | ((uint64_t{2} << full[given]) - 1);  // later cards only
    for_each_completion(seen, missing - 1, [&](const int* rest) {
      std::copy(rest, rest + missing - 1, full + given + 1);
      on_board();
    });
  });
  OmahaTally sum(n);
  for (const OmahaTally& t : all.units) sum.add(t);
  return sum;
}

// Monte Carlo: each trial draws a holding for every player with a range (by weight, all again when
// two share a card, so that combinations come with the product of their weights), then the random
// players' holdings and the rest of the board from the cards left.
OmahaTally monte_carlo(const OmahaQuestion& q, const EquityRequest& request, const RunControl& control,
                       bool& starved) {
  std::vector<int> unseen;
  for (int c = 0; c < 52; ++c)
    if (!(q.known >> c & 1)) unseen.push_back(c);
  const int n = q.n(), hole = q.game.hole;
  std::atomic<bool> gave_up{false};
  OmahaTally tally = run_sample_chunks(
      sample_limits(request), control, OmahaTally(n), [&](int64_t, int64_t trials, Rng& rng, OmahaTally& tally) {
        std::vector<int> deck = unseen;
        const Holding* chosen[kMaxPlayers] = {};
        int highs[kMaxPlayers] = {}, lows[kMaxPlayers] = {};
        int random_cards[kMaxPlayers][kMaxHole];
        int full[5];
        std::copy(q.board.begin(), q.board.end(), full);
        for (int64_t t = 0; t < trials; ++t) {
          uint64_t used = 0;
          for (int attempts = 0;; ++attempts) {
            if (attempts == 1000000) {
              gave_up = true;
              return;
            }
            used = 0;
            bool clash = false;
            for (int p = 0; p < n && !clash; ++p) {
              const OmahaPlayer& player = q.players[static_cast<size_t>(p)];
              if (player.random) continue;
              chosen[p] = &player.holdings[player.holdings.size() > 1 ? player.sampler.draw(rng) : 0];
              clash = (chosen[p]->mask & used) != 0;
              used |= chosen[p]->mask;
            }
            if (!clash) break;
          }
          uint32_t top = static_cast<uint32_t>(deck.size());
          auto draw = [&] {  // a partial shuffle of the unseen cards, passing over those held
            for (;;) {
              const uint32_t j = rng.below(top--);
              std::swap(deck[j], deck[top]);
              if (!(used >> deck[top] & 1)) return deck[top];
            }
          };
          for (int p = 0; p < n; ++p)
            if (q.players[static_cast<size_t>(p)].random)
              for (int i = 0; i < hole; ++i) random_cards[p][i] = draw();
          for (size_t i = q.board.size(); i < 5; ++i) full[i] = draw();
          for (int p = 0; p < n; ++p) {
            const int* cards = q.players[static_cast<size_t>(p)].random ? random_cards[p] : chosen[p]->cards.data();
            highs[p] = eval_rank7_via_ofsm7(cards, hole, full);
            lows[p] = q.game.hi_lo ? best_low_set(low_rank_set(cards, hole), low_rank_set(full, 5)) : 0;
          }
          tally.add_deal(n, highs, lows);
        }
      });
  starved = gave_up;
  return tally;
}

}  // namespace

EquityResult compute_omaha_equity(const EquityRequest& request) {
  const OmahaGame game = omaha_game(request.game);
  uint64_t known = check_request(request);
  OmahaQuestion q{game, read_omaha_players(request, game, known), request.board, known};
  const int n = q.n();
  const int missing = 5 - static_cast<int>(request.board.size());
  const int live = 52 - std::popcount(known);
  int random = 0, dealt = 0;  // random players, and cards the fixed holdings do not account for
  for (const OmahaPlayer& p : q.players) {
    random += p.random;
    dealt += p.fixed ? 0 : game.hole;
  }
  if (dealt + missing > live) throw Error(std::to_string(n) + " players need more cards than the deck holds");
  if (!can_be_dealt(q.players)) throw Error("the players' ranges can never be dealt together: every combination shares a card");

  // The work of an exact answer: boards x (valuing the holdings + combinations x players), where a
  // random player holds every holding of the live cards. About 3 x 10^8 take a second on one core
  // (the choice does not depend on the threads, so that a request gives the same numbers anywhere).
  const double boards = ways_to_deal(live, missing);
  double combinations = 1, holdings = 0;
  for (const OmahaPlayer& p : q.players) {
    const double size = p.random ? ways_to_deal(live, game.hole) : static_cast<double>(p.holdings.size());
    combinations *= size;
    holdings += size;
  }
  const double pair_cost = ways_to_deal(live, 2) * 2;
  const bool by_pairs = holdings * 5 > pair_cost;
  const double work = boards * ((by_pairs ? pair_cost + holdings : holdings * 5) + combinations * n);
  // Random players are counted as every holding they may hold, which must fit in memory.
  const bool too_many = random > 0 && ways_to_deal(live, game.hole) > 3e6;
  if (request.method == EquityMethod::Exact && (work > 1e11 || too_many))
    throw Error("an exact answer to this Omaha question is too large to count; --monte-carlo samples it");
  const bool count =
      request.method == EquityMethod::Exact || (request.method == EquityMethod::Auto && work <= 5e8 && !too_many);
  if (count && random > 0) {
    std::vector<Holding> every;  // every holding of the live cards, for the random players
    for_each_holding(~known & ((uint64_t{1} << 52) - 1), game.hole,
                     [&](uint64_t mask) { every.push_back(make_holding(mask, 1)); });
    for (OmahaPlayer& p : q.players)
      if (p.random) p.holdings = every;
  }
  const RunControl control = run_control(request);
  bool starved = false;
  const OmahaTally tally = count ? exact(q, by_pairs, control) : monte_carlo(q, request, control, starved);
  if (starved) throw Error("the players' ranges share cards so often that they can hardly be dealt together");

  EquityResult result;
  result.exact = count;
  result.deals = tally.deals;
  const double nan = std::numeric_limits<double>::quiet_NaN();
  for (size_t p = 0; p < q.players.size(); ++p) {
    PlayerEquity e;
    e.hand = q.players[p].text;
    e.equity = tally.equity(p);
    e.win = game.hi_lo ? nan : tally.wins[p] / tally.weight;
    e.tie = game.hi_lo ? nan : tally.ties[p] / tally.weight;
    e.high = game.hi_lo ? tally.high[p] / kPotUnits / tally.weight : nan;
    e.low = game.hi_lo ? tally.low[p] / kPotUnits / tally.weight : nan;
    e.scoop = game.hi_lo ? tally.scoops[p] / tally.weight : nan;
    e.std_error = count ? 0 : tally.std_error(p);
    result.players.push_back(e);
  }
  return result;
}

}  // namespace pokermath::detail

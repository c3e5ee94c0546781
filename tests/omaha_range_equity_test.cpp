// Omaha equity of ranges: exact answers against a brute force written here (every board, every
// combination of holdings, weighted), Monte Carlo within four standard errors of them, and the
// requests that must be refused.
#include <gtest/gtest.h>

#include <cmath>

#include "pokermath/pokermath.h"
#include "test_util.h"

using namespace pokermath;

namespace {

struct Game {
  EquityGame game;
  int hole;
  bool hi_lo;
};

// Per player: pot share, high and low shares, scoops, wins and ties, all weighted, and the weight.
struct Brute {
  std::vector<double> equity, high, low, scoop, win, tie;
  double weight = 0;
};

// Every completion of the board, and on it every combination of one holding per player that share
// no card, weighted by the product of the weights: high by best_two_plus_three, low by the classic
// SetLowValueCombinationOmahaCommon.
Brute brute_force(const Game& g, const std::vector<pokermath::OmahaRange>& ranges, const std::vector<int>& board,
                  uint64_t dead) {
  const size_t n = ranges.size();
  Brute out{std::vector<double>(n), std::vector<double>(n), std::vector<double>(n),
            std::vector<double>(n), std::vector<double>(n), std::vector<double>(n)};
  const uint64_t known = cards_to_mask(board) | dead;
  const int missing = 5 - static_cast<int>(board.size());
  auto on_board = [&](const int* full) {
    const uint64_t board_mask = cards_to_mask(std::span<const int>(full, 5));
    std::vector<size_t> pick(n);
    auto deal = [&](auto& self, size_t p, uint64_t used, double w) -> void {
      if (p == n) {
        int highs[10], lows[10];
        for (size_t i = 0; i < n; ++i) {
          int cards[6], k = 0;
          Int64ToArray(ranges[i].holdings()[pick[i]].cards, k, cards);
          highs[i] = test_util::best_two_plus_three(cards, k, full);
          lows[i] = g.hi_lo ? SetLowValueCombinationOmahaCommon(cards, k, full, 5) : 0;
        }
        const int best = *std::max_element(highs, highs + n);
        int best_low = 0, high_winners = 0, low_winners = 0;
        for (size_t i = 0; i < n; ++i)
          if (lows[i] && (!best_low || lows[i] < best_low)) best_low = lows[i];
        for (size_t i = 0; i < n; ++i) {
          high_winners += highs[i] == best;
          low_winners += best_low && lows[i] == best_low;
        }
        const double high_pot = best_low ? 0.5 : 1.0;
        for (size_t i = 0; i < n; ++i) {
          const double h = highs[i] == best ? high_pot / high_winners : 0;
          const double l = best_low && lows[i] == best_low ? 0.5 / low_winners : 0;
          out.equity[i] += w * (h + l), out.high[i] += w * h, out.low[i] += w * l;
          out.scoop[i] += w * (h + l == 1.0);
          out.win[i] += w * (highs[i] == best && high_winners == 1);
          out.tie[i] += w * (highs[i] == best && high_winners > 1);
        }
        out.weight += w;
        return;
      }
      const auto& holdings = ranges[p].holdings();
      for (size_t i = 0; i < holdings.size(); ++i) {
        if (holdings[i].cards & (used | board_mask | known)) continue;
        pick[p] = i;
        self(self, p + 1, used | holdings[i].cards, w * holdings[i].weight / 100);
      }
    };
    deal(deal, 0, 0, 1.0);
  };
  int full[5];
  std::copy(board.begin(), board.end(), full);
  if (missing == 0) {
    on_board(full);
  } else {
    test_util::for_each_set(missing, known, [&](const int* rest) {
      std::copy(rest, rest + missing, full + board.size());
      on_board(full);
    });
  }
  return out;
}

EquityRequest request_for(const Game& g, const std::vector<std::string>& players, const std::string& board,
                          const std::string& dead = "") {
  EquityRequest r;
  r.game = g.game;
  r.players = players;
  r.board = parse_cards(board);
  r.dead = dead.empty() ? std::vector<int>{} : parse_cards(dead);
  return r;
}

const Game kOmaha{EquityGame::Omaha, 4, false}, kOmahaHiLo{EquityGame::OmahaHiLo, 4, true},
    kOmaha5{EquityGame::Omaha5, 5, false}, kOmaha5HiLo{EquityGame::Omaha5HiLo, 5, true},
    kOmaha6{EquityGame::Omaha6, 6, false}, kOmaha6HiLo{EquityGame::Omaha6HiLo, 6, true};

struct Case {
  Game game;
  std::vector<std::string> players;
  std::string board, dead;
};

// Small questions on the river and the turn: ranges that share cards, weights, three players,
// fixed holdings among ranges, and every game.
const std::vector<Case> kCases = {
    {kOmaha, {"AsKsQhJh, AsKdQdJc@50, 9c9d8c7d@25", "9c9d8h7h, QsQcJdTd@75, AhAd3c2c, KcKh**@40"}, "Ts6h2c5d", ""},
    {kOmaha, {"KcKd9*@60, AhAd8*", "QQ**:ds"}, "Ts6h2c5d4s", ""},
    {kOmaha, {"AsKsQhJh", "9c9d8h*@30,8c8d7d*", "JcTc9h*"}, "Ts6h2c5d", "2s"},
    {kOmahaHiLo, {"As2s4h*@50, Ac3c5d*", "2h3h4c*, Ad2d6d*@20"}, "Kh7h6c5d", ""},
    {kOmahaHiLo, {"As2s3hKd", "Ah2h**:ds", "4s5s6*@70"}, "Kh7h6c8d9s", ""},
    {kOmaha5, {"AsKsQhJhTc, AsAdKh*9c@50", "9c9d8h7h6h, QsQcJd**@30"}, "Ts6d2c5d4s", ""},
    {kOmaha5HiLo, {"As2s3hKdQd, Ac2c4cKh*@40", "2h3d4c5c*"}, "Kh7h6c8d", ""},
    {kOmaha6, {"AsKsQhJhTc9c, AhAdKcKd9s*@25", "9d9h8h7h**@50"}, "Ts6d2c5d4s", ""},
    {kOmaha6HiLo, {"As2s3hKdQdJd, Ac2c3c4c5c*@10", "2h3d4c5c**@50"}, "Kh7h6c8d9s", ""},
};

void expect_equal(const EquityResult& got, const Brute& want, bool hi_lo, const std::string& what) {
  for (size_t p = 0; p < got.players.size(); ++p) {
    const PlayerEquity& e = got.players[p];
    EXPECT_NEAR(e.equity, want.equity[p] / want.weight, 1e-9) << what << " player " << p;
    if (hi_lo) {
      EXPECT_NEAR(e.high, want.high[p] / want.weight, 1e-9) << what << " player " << p;
      EXPECT_NEAR(e.low, want.low[p] / want.weight, 1e-9) << what << " player " << p;
      EXPECT_NEAR(e.scoop, want.scoop[p] / want.weight, 1e-9) << what << " player " << p;
    } else {
      EXPECT_NEAR(e.win, want.win[p] / want.weight, 1e-9) << what << " player " << p;
      EXPECT_NEAR(e.tie, want.tie[p] / want.weight, 1e-9) << what << " player " << p;
    }
  }
}

}  // namespace

TEST(OmahaRangeEquity, ExactEqualsABruteForceAndMonteCarloLandsNearIt) {
  for (const Case& c : kCases) {
    const std::string what = c.players[0] + " vs " + c.players[1] + " on " + c.board;
    std::vector<pokermath::OmahaRange> ranges;
    for (const std::string& text : c.players) ranges.push_back(parse_omaha_range(text, c.game.hole));
    const uint64_t dead = c.dead.empty() ? 0 : cards_to_mask(parse_cards(c.dead));
    const Brute want = brute_force(c.game, ranges, parse_cards(c.board), dead);

    EquityRequest r = request_for(c.game, c.players, c.board, c.dead);
    r.method = EquityMethod::Exact;
    r.threads = 2;
    const EquityResult exact = compute_equity(r);
    ASSERT_TRUE(exact.exact) << what;
    expect_equal(exact, want, c.game.hi_lo, what);
    r.threads = 1;  // the same bits on one thread: weighted sums are added in a fixed order
    const EquityResult one = compute_equity(r);
    for (size_t p = 0; p < one.players.size(); ++p) EXPECT_EQ(one.players[p].equity, exact.players[p].equity) << what;

    r.method = EquityMethod::MonteCarlo;
    r.trials = test_util::kSanitized ? 20000 : 100000;
    r.threads = 2;
    const EquityResult mc = compute_equity(r);
    for (size_t p = 0; p < mc.players.size(); ++p)  // some deals end the same way every time: no error at all
      EXPECT_NEAR(mc.players[p].equity, exact.players[p].equity, 4 * mc.players[p].std_error + 1e-9) << what << " " << p;
  }
}

// All weights equal give the unweighted answer, and a range against "A@50, B" is the average of the
// answers against A and against B weighted by combinations and weights.
TEST(OmahaRangeEquity, WeightsAverageTheParts) {
  auto equity = [](const std::string& villain) {
    EquityRequest r = request_for(kOmaha, {"AsKsQhJh", villain}, "Ts6h2c");
    r.method = EquityMethod::Exact;
    const EquityResult e = compute_equity(r);
    return std::make_pair(e.players[0].equity, e.deals);
  };
  EXPECT_NEAR(equity("QQ**@40, 99**@40").first, equity("QQ**, 99**").first, 1e-12);
  const auto [a, deals_a] = equity("9c9d**");
  const auto [b, deals_b] = equity("8h7h**!9c9d**");
  const auto [mixed, deals_mixed] = equity("9c9d**@50, (8h7h**!9c9d**)");
  EXPECT_EQ(deals_mixed, deals_a + deals_b);  // the two parts share no holding
  EXPECT_NEAR(mixed, (0.5 * a * deals_a + b * deals_b) / (0.5 * deals_a + deals_b), 1e-12);
}

TEST(OmahaRangeEquity, RefusedRequests) {
  const struct {
    Game game;
    std::vector<std::string> players;
    std::string board, dead, error;
  } cases[] = {
      {kOmaha, {"AsKsQhJh", "AA**"}, "", "AhAdAc", "player 2: no holding of 'AA**' is left"},
      {kOmaha, {"AsKsQhJh", "AA*?"}, "", "", "player 2: position 4: "},
      {kOmaha, {"AsKs**", "AsQs**"}, "", "", "can never be dealt together"},
      {kOmaha, {"AsKsQhJh", "KK**!KK**"}, "", "", "player 2: no holding of 'KK**!KK**' is left"},
      {kOmaha6, {"AsKsQhJhTc9c", "10%"}, "", "", "exact 6-card table"},
      {kOmaha, {"AsKsQhJh", "random"}, "", "", "too large to count"},
  };
  for (const auto& c : cases) {
    EquityRequest r = request_for(c.game, c.players, c.board, c.dead);
    if (c.players[1] == "random") r.method = EquityMethod::Exact;
    try {
      compute_equity(r);
      ADD_FAILURE() << c.players[1] << ": no error";
    } catch (const Error& e) {
      EXPECT_NE(std::string(e.what()).find(c.error), std::string::npos) << e.what();
    }
  }
}

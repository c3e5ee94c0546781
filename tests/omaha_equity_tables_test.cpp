// Omaha and Omaha Hi/Lo equity against brute forces written here: every opponent holding, every
// board, Monte Carlo within four standard errors, the Hi/Lo share rules and the kept quirks.
#include <cmath>

#include "reference_low.h"
#include "tables_fixture.h"
#include "test_util.h"

namespace {

using test_util::best_two_plus_three;
using test_util::cards;
using test_util::for_each_set;

PokerLogic& logic() { return const_cast<PokerLogic&>(tables_fixture::logic_with_table()); }

// The best eight-or-better low of a holding on a complete board (0: none).
int best_low(const int* hole, int n_hole, const int* board) {
  return reference::omaha_low({hole, static_cast<size_t>(n_hole)}, {board, 5});
}

double score(int mine, int theirs) { return mine > theirs ? 1.0 : mine == theirs ? 0.5 : 0.0; }

class OmahaEquity : public testing::Test {
 protected:
  static void SetUpTestSuite() { tables_fixture::load_state_machines(); }
};

TEST_F(OmahaEquity, BadPlayerCountsAndBoardSizesGiveZero) {
  const std::vector<int> hole = cards("As Ks Qd Jd"), board = cards("2c 3c 4c 5c 6c 7c");
  EXPECT_EQ(logic().getProbabilityOfWinOmaha(hole.data(), board.data(), 3, 11), 0.0);
  EXPECT_EQ(logic().getProbabilityOfWinOmaha(hole.data(), board.data(), 6, 2), 0.0);
  EXPECT_EQ(logic().getProbabilityOfWinOmaha(hole.data(), board.data(), 3, 1), 0.0);
  EXPECT_EQ(logic().getProbabilityOfWinOmahaHL(hole.data(), board.data(), 6, 2), 0.0);
  EXPECT_EQ(logic().getProbabilityOfWinOmahaHL(hole.data(), board.data(), 0, 11), 0.0);
}

TEST_F(OmahaEquity, EveryHoldingOnTheFlopTurnAndRiver) {
  std::mt19937 engine(81);
  for (int board_cards = 3; board_cards <= 5; ++board_cards) {
    const std::vector<int> deal = test_util::random_cards(engine, 4 + board_cards);
    const int *hole = deal.data(), *board = deal.data() + 4;
    // Brute force: every holding of the unseen cards, valued on this board as it stands (the flop
    // and turn forms deal no future cards, so any three of the board cards may be used).
    const int mine = best_two_plus_three(hole, 4, board, board_cards);
    double sum = 0;
    int count = 0;
    for_each_set(4, pokermath::cards_to_mask(deal), [&](const int* holding) {
      sum += score(mine, best_two_plus_three(holding, 4, board, board_cards));
      ++count;
    });
    int n = 0;
    const double percent = board_cards == 3   ? FlopEquityHandVsRandomOnFlopFsm5(hole, board, n)
                           : board_cards == 4 ? TurnEquityHandVsRandomOnTurnFsm5(hole, board, n)
                                              : logic().RiverEquityHandVsRandomOnRiver(hole, board, n);
    EXPECT_EQ(n, count) << test_util::names(deal);
    EXPECT_DOUBLE_EQ(percent, sum / count * 100) << test_util::names(deal);
    if (board_cards == 5) {
      EXPECT_DOUBLE_EQ(RiverEquityHandVsRandomOnRiver_ofsm7(hole, board, n), percent);
      EXPECT_EQ(n, 123410);
    }
  }
}

TEST_F(OmahaEquity, TheParallelTurnFormMatchesTheSequentialOne) {
  const std::vector<int> hole = cards("Ah Kh 9c 8c"), turn = cards("Qh 7h 2d 5s");
  int sequential = 0, parallel = 0;
  const double a = logic().RiverEquityHandVsRandomOnTurn(hole.data(), turn.data(), sequential);
  const double b = RiverEquityHandVsRandomOnTurnFsm5(hole.data(), turn.data(), parallel);
  EXPECT_EQ(sequential, 135751 * 40);
  EXPECT_EQ(parallel, sequential);
  EXPECT_EQ(a, b);
}

TEST_F(OmahaEquity, CommonEnginesWithFourFiveAndSixHoleCardsAgainstABruteForce) {
  std::mt19937 engine(82);
  for (int h = 4; h <= 6; ++h)
    for (int board_cards = 3; board_cards <= 4; ++board_cards) {
      const std::vector<int> deal = test_util::random_cards(engine, 2 * h + board_cards);
      const int *hero = deal.data(), *villain = deal.data() + h, *board = deal.data() + 2 * h;
      double high = 0, hilo = 0;
      int count = 0;
      for_each_set(5 - board_cards, pokermath::cards_to_mask(deal), [&](const int* rest) {
        int full[5];
        std::copy(board, board + board_cards, full);
        std::copy(rest, rest + 5 - board_cards, full + board_cards);
        const int mh = best_two_plus_three(hero, h, full), vh = best_two_plus_three(villain, h, full);
        high += score(mh, vh);
        hilo += HiLoShareHeadsUp(mh, best_low(hero, h, full), vh, best_low(villain, h, full));
        ++count;
      });
      int boards = 0, ms = 0;
      const double percent = board_cards == 3
                                 ? logic().RiverEquityHandVsHandOnFlopCommon(hero, h, villain, board, 3, boards, ms)
                                 : logic().RiverEquityHandVsHandOnTurnCommon(hero, h, villain, board, 4, boards, ms);
      EXPECT_EQ(boards, count) << h << " hole cards";
      EXPECT_DOUBLE_EQ(percent, high / count * 100) << test_util::names(deal);
      const double hilo_percent = board_cards == 3
                                      ? logic().RiverEquityHandsOnFlopCommonHL(deal.data(), h, 2, 0, board, boards, ms)
                                      : logic().RiverEquityHandsOnTurnCommonHL(deal.data(), h, 2, 0, board, boards, ms);
      EXPECT_NEAR(hilo_percent, hilo / count * 100, 1e-9) << test_util::names(deal);
    }
}

TEST_F(OmahaEquity, PreFlopHandVsHandOverEveryBoard) {
  // Every one of the 1,086,008 boards, by the Common engine against a brute force of the 2+3 rule.
  const char* matchups[][2] = {{"As Ks Qd Jd", "Ah Kh 7c 7s"}, {"2c 3d 4h 5s", "Tc Td 9h 9s"}};
  for (int m = 0; m < static_cast<int>(test_util::sweep_size(2, 0)); ++m) {
    const std::vector<int> hero = cards(matchups[m][0]), villain = cards(matchups[m][1]);
    double sum = 0;
    int boards = 0;
    for_each_set(5, pokermath::cards_to_mask(hero) | pokermath::cards_to_mask(villain), [&](const int* b) {
      sum += score(get_rank7(hero.data(), b), get_rank7(villain.data(), b));
      ++boards;
    });
    int engine_boards = 0, ms = 0;
    const double percent =
        logic().RiverEquityHandVsHandOnPreFlopCommon(hero.data(), 4, villain.data(), engine_boards, ms);
    EXPECT_EQ(engine_boards, 1086008);
    EXPECT_EQ(boards, 1086008);
    EXPECT_DOUBLE_EQ(percent, sum / boards * 100) << matchups[m][0] << " vs " << matchups[m][1];
  }
}

TEST_F(OmahaEquity, HiLoShares) {
  // Heads-up: hero high, hero low, opponent high, opponent low, share.
  const std::tuple<int, int, int, int, double> heads_up[] = {
      {7000, 54321, 6000, 65432, 1.0},   // scoop
      {7000, 54321, 6000, 54321, 0.75},  // the high with tied lows
      {7000, 54321, 7000, 65432, 0.75},  // tied highs with a better low
      {6000, 54321, 7000, 54321, 0.25},  // quartered
      {7000, 0, 6000, 0, 1.0},           // nobody has a low: the high takes it all
      {7000, 0, 7000, 0, 0.5},          {6000, 54321, 7000, 0, 0.5},
      {7000, 0, 6000, 54321, 0.5},      {7000, 0, 7000, 54321, 0.25},
  };
  for (const auto& [hh, hl, oh, ol, share] : heads_up) EXPECT_EQ(HiLoShareHeadsUp(hh, hl, oh, ol), share) << hh << hl;
  // Multiway: the hero alone has a low and ties the high with two opponents.
  const int highs[2] = {7000, 7000}, no_lows[2] = {0, 0};
  EXPECT_DOUBLE_EQ(HiLoShareMultiway(7000, 54321, highs, no_lows, 2), 0.5 + 0.5 / 3);
  const int lows[2] = {54321, 0};
  EXPECT_DOUBLE_EQ(HiLoShareMultiway(7000, 54321, highs, lows, 2), 0.5 / 3 + 0.5 / 2);
  const int lower_highs[2] = {6000, 5000};
  EXPECT_DOUBLE_EQ(HiLoShareMultiway(7000, 0, lower_highs, no_lows, 2), 1.0);
  EXPECT_DOUBLE_EQ(HiLoShareMultiway(4000, 0, lower_highs, lows, 2), 0.0);
}

TEST_F(OmahaEquity, RangesOfHoldings) {
  const std::vector<int> hole = cards("As Ks Qd Jd"), flop = cards("Ts 9s 2c");
  // 2c..5c holds the flop's 2c, Tc Jc Jd Qd the hero's Jd and Qd: both are dead on this flop. The two
  // live holdings pair their deuce and beat the hero's ace high.
  OmahaRange range = {{0, 1, 2, 3}, {13, 14, 15, 16}, {26, 27, 28, 29}, {8, 9, 22, 23}};
  int count = -1;
  EXPECT_EQ(logic().FlopEquityHandVsRangeOnFlop(hole.data(), flop.data(), range, count), 0.0);
  EXPECT_EQ(count, 2);
  OmahaRange dead_only = {{51, 50, 49, 48}};
  EXPECT_TRUE(std::isnan(logic().FlopEquityHandVsRangeOnFlop(hole.data(), flop.data(), dead_only, count)));
  // Four disjoint holdings: a flop kills three at most, so every flop has a live one.
  OmahaRange survives = {{0, 1, 2, 3}, {13, 14, 15, 16}, {26, 27, 28, 29}, {39, 40, 41, 42}};
  count = -1;
  const double preflop = logic().FlopEquityHandVsRangeOnPreFlop(hole.data(), survives, count);
  EXPECT_EQ(count, 0);
  EXPECT_GT(preflop, 100);  // percent x 100
  EXPECT_LE(preflop, 10000);
}

TEST_F(OmahaEquity, LightCallsStopAtTheFirstCheckThatSeesTimePass) {
  const std::vector<int> hole = cards("As Ks Qd Jd"), flop = cards("Ts 9s 2c");
  int trials = 1000000, ms = -1;
  logic().RiverEquityHandVsRandomOnFlopLight(hole.data(), flop.data(), trials, ms);
  EXPECT_EQ(trials, 1);
  trials = 1000000;
  ms = 0;  // stops after trial 0 if a millisecond has passed, else after trial 10000, ...
  logic().RiverEquityHandVsRandomOnFlopLight(hole.data(), flop.data(), trials, ms);
  EXPECT_EQ(trials % 10000, 1);
  OmahaRange range = {{0, 1, 2, 3}, {13, 14, 15, 16}};
  trials = 1000;
  ms = 100000;
  logic().RiverEquityHandVsRangeOnFlopLight(hole.data(), flop.data(), range, trials, ms);
  EXPECT_EQ(trials, 1000);
  trials = 500;
  ms = 100000;
  RiverEquityHandVsRangeOnPreflopLight(hole.data(), range, trials, ms);
  EXPECT_EQ(trials, 500);
}

TEST_F(OmahaEquity, MonteCarloWithinFourStandardErrors) {
  const std::vector<int> hole = cards("Ah Kh 9c 8c"), turn = cards("Qh 7h 2d 5s");
  int count = 0;
  const double exact = logic().RiverEquityHandVsRandomOnTurn(hole.data(), turn.data(), count) / 100;
  std::srand(5);
  const double sampled = logic().getProbabilityOfWinOmaha(hole.data(), turn.data(), 4, 2);
  EXPECT_NEAR(sampled, exact, 4 * std::sqrt(exact * (1 - exact) / logic().m_trials));
  // Hi/Lo: against one random holding on a complete board, exact by every holding. Enumerated, the
  // river form counts C(44, 4) holdings: it keeps the river card among the unseen ones.
  const std::vector<int> lowish = cards("As 2s 3h Kd"), river = cards("4h 5h 8c Qd 9s");
  logic().RiverEquityHandVsRandomOnRiverHL(lowish.data(), river.data(), count);
  EXPECT_EQ(count, 135751);
  double exact_hilo = 0;
  int holdings = 0;
  const int my_high = best_two_plus_three(lowish.data(), 4, river.data()),
            my_low = best_low(lowish.data(), 4, river.data());
  for_each_set(4, pokermath::cards_to_mask(lowish) | pokermath::cards_to_mask(river), [&](const int* h) {
    exact_hilo +=
        HiLoShareHeadsUp(my_high, my_low, best_two_plus_three(h, 4, river.data()), best_low(h, 4, river.data()));
    ++holdings;
  });
  exact_hilo /= holdings;
  int trials = static_cast<int>(test_util::sweep_size(60000, 6000)), ms = 600000;
  const double hilo = logic().EquityHandVsRandomHL(lowish.data(), 4, river.data(), 5, 5, trials, ms) / 100;
  EXPECT_NEAR(hilo, exact_hilo, 4 * 0.5 / std::sqrt(trials));  // shares lie in 0..1: sd at most 1/2
}

TEST_F(OmahaEquity, MultiwayRangesOfMasks) {
  std::vector<uint64_t> hero = {MakeOmahaHand(51, 50, 36, 35)};  // As Ks Qh Jh
  std::vector<uint64_t> opponents[2] = {{MakeOmahaHand(7, 20, 6, 19), MakeOmahaHand(0, 13, 1, 14)},
                                        {MakeOmahaHand(12, 25, 11, 24), MakeOmahaHand(7, 20, 33, 46)}};
  EXPECT_EQ(CountOfRanges64(opponents, 2, 0), 3u);  // the two holdings with 9c/9d collide once
  std::vector<std::vector<uint64_t>> all = {hero, opponents[0], opponents[1]};
  EXPECT_EQ(CountOfRanges64(all.data(), 3, 0), 3u);
  const uint64_t board = ArrayToInt64(3, cards("Th 9h 2s").data());
  double shares[3] = {}, sampled[3] = {};
  int count = 0, ms = 0;
  const double mine = getProbabilityOfWinOmaha64Enumerate(hero, board, 4, opponents, 2, 0, shares, count, ms, 0, 5);
  EXPECT_EQ(mine, shares[0]);
  EXPECT_NEAR(shares[0] + shares[1] + shares[2], 1.0, 1e-12);
  // Brute force: the three valid combinations, every turn and river.
  double expected = 0;
  int deals = 0;
  for (const uint64_t a : opponents[0])
    for (const uint64_t b : opponents[1]) {
      if ((a & b) || ((a | b) & (hero[0] | board))) continue;
      for_each_set(2, hero[0] | a | b | board, [&](const int* turn_river) {
        int f[5], n = 0, h[3][4];
        Int64ToArray(board | uint64_t{1} << turn_river[0] | uint64_t{1} << turn_river[1], n, f);
        Int64ToArray(hero[0], n, h[0]);
        Int64ToArray(a, n, h[1]);
        Int64ToArray(b, n, h[2]);
        int v[3], best = 0;
        for (int p = 0; p < 3; ++p) best = std::max(best, v[p] = best_two_plus_three(h[p], 4, f));
        expected += v[0] == best ? 1.0 / ((v[0] == best) + (v[1] == best) + (v[2] == best)) : 0.0;
        ++deals;
      });
    }
  EXPECT_EQ(count, deals);
  EXPECT_NEAR(shares[0], expected / deals, 1e-12);
  std::srand(3);
  int trials_done = 0;
  ms = 0;
  getProbabilityOfWinOmaha64Common(20000, hero, board, 4, opponents, 2, 0, sampled, trials_done, ms, 1, 5);
  EXPECT_EQ(trials_done, 20000);
  double hilo_exact[3] = {};
  getProbabilityOfWinOmaha64Enumerate(hero, board, 4, opponents, 2, 0, hilo_exact, count, ms, 1, 5);
  EXPECT_NEAR(sampled[0], hilo_exact[0], 4 * 0.5 / std::sqrt(20000.0));
}

}  // namespace

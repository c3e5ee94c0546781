// Every Omaha best-hand search against a brute force over the two-plus-three combinations, on
// random deals with 4, 5 and 6 hole cards and boards of 3, 4 and 5 cards.
#include <gtest/gtest.h>

#include "test_util.h"

namespace {

// Smallest class (binary-search path) over exactly two hole cards and three board cards, and the
// first combination reaching it in the order hole pair i < j outside, board triple k < l < m inside.
struct Brute {
  int best = 100000;
  int used[5] = {};
};

Brute brute_force(const int* hole, int nHole, const int* board, int nBoard) {
  Brute result;
  for (int i = 0; i < nHole; ++i)
    for (int j = i + 1; j < nHole; ++j)
      for (int k = 0; k < nBoard; ++k)
        for (int l = k + 1; l < nBoard; ++l)
          for (int m = l + 1; m < nBoard; ++m) {
            auto w = [](int c) { return static_cast<int>(pokermath::prime_word(c)); };
            const int cls = eval_5cards(w(hole[i]), w(hole[j]), w(board[k]), w(board[l]), w(board[m]));
            if (cls < result.best) result = {cls, {i, j, k, l, m}};
          }
  return result;
}

TEST(OmahaSearchExhaustive, EverySearchFindsTheBruteForceBestAndItsFirstCombination) {
  PokerLogic logic;
  std::mt19937 engine(3);
  const int deals = static_cast<int>(test_util::sweep_size(250000, 10000));
  int checked = 0;
  for (int holes = 4; holes <= 6; ++holes)
    for (int boards = 3; boards <= 5; ++boards)
      for (int d = 0; d < deals; ++d) {
        int cards[11];
        test_util::random_cards(engine, holes + boards, cards);
        const int* hole = cards;
        const int* board = cards + holes;
        const Brute expected = brute_force(hole, holes, board, boards);
        const auto deal = [&] { return test_util::names(std::vector<int>(cards, cards + holes + boards)); };
        int out[5];

        ASSERT_EQ(logic.getCombinationOmahaCommon(hole, holes, board, boards, out), expected.best) << deal();
        ASSERT_TRUE(std::equal(out, out + 5, expected.used)) << deal();  // positions
        ASSERT_EQ(getCombinationOmahaFsm5Common(hole, holes, board, boards, out), 7463 - expected.best) << deal();
        ASSERT_TRUE(std::equal(out, out + 5, expected.used)) << deal();
        ASSERT_EQ(getCombinationOmahaFsm7Common(hole, holes, board, boards, out), 7463 - expected.best) << deal();
        if (boards == 5) {
          // Needs no loaded table: the rank-pair tables are built on first use.
          ASSERT_EQ(eval_rank7_via_ofsm7(hole, holes, board), 7463 - expected.best) << deal();
        }

        if (holes != 4) continue;
        // The four-card searches: prime-product ones report card codes, state-machine ones positions.
        const int codes[5] = {hole[expected.used[0]], hole[expected.used[1]], board[expected.used[2]],
                              board[expected.used[3]], board[expected.used[4]]};
        const int prime = boards == 5   ? logic.getCombinationOmaha(hole, board, out)
                          : boards == 4 ? logic.getCombinationOmahaTurn(hole, board, out)
                                        : logic.getCombinationOmahaFlop(hole, board, out);
        ASSERT_EQ(prime, expected.best) << deal();
        ASSERT_TRUE(std::equal(out, out + 5, codes)) << deal();
        const int fsm = boards == 5   ? getCombinationOmahaFsm5(hole, board, out)
                        : boards == 4 ? getCombinationOmahaTurnFsm5(hole, board, out)
                                      : getCombinationOmahaFlopFsm5(hole, board, out);
        ASSERT_EQ(fsm, 7463 - expected.best) << deal();
        ASSERT_TRUE(std::equal(out, out + 5, expected.used)) << deal();
        std::vector<int> nine(hole, hole + 4 + boards);
        const int table = boards == 5   ? logic.LookupHandsOmaha(nine.data())
                          : boards == 4 ? logic.LookupHandsOmahaTurn(nine.data())
                                        : logic.LookupHandsOmahaFlop(nine.data());
        ASSERT_EQ(table, pokermath::category_scale_value(expected.best)) << deal();
        if (boards == 5) {
          ASSERT_EQ(get_rank7(hole, board), 7463 - expected.best) << deal();
        }
        ++checked;
      }
  EXPECT_EQ(checked, 3 * deals);
}

TEST(OmahaSearchExhaustive, DeckValueAgreesWithTheClassesOnTheOrderOfHands) {
  // CDeck::SetValueCombinationOmaha takes the best m_value of the 2+3 combinations; hands the
  // classes call equal or ordered must compare the same way by m_value.
  PokerLogic logic;
  std::mt19937 engine(4);
  const int deals = static_cast<int>(test_util::sweep_size(40000, 2000));
  for (int d = 0; d < deals; ++d) {
    int a[9], b[9];
    test_util::random_cards(engine, 9, a);
    test_util::random_cards(engine, 9, b);
    CDeck da, db;
    for (int i = 0; i < 9; ++i) {
      da.AddCard(CCard(a[i]));
      db.AddCard(CCard(b[i]));
    }
    da.m_lowValue = db.m_lowValue = 777;
    da.SetValueCombinationOmaha(logic);
    db.SetValueCombinationOmaha(logic);
    EXPECT_EQ(da.m_lowValue, 0);
    const int ca = brute_force(a, 4, a + 4, 5).best, cb = brute_force(b, 4, b + 4, 5).best;
    // Five cards never meet the flush-and-straight fallback, so m_value orders exactly as classes do.
    ASSERT_EQ(da.compareTo(db), (cb > ca) - (cb < ca))
        << test_util::names(std::vector<int>(a, a + 9)) << " against " << test_util::names(std::vector<int>(b, b + 9));
  }
}

}  // namespace

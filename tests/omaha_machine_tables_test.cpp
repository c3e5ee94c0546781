// The Omaha state machine and the evaluations that give its values: the walk over "omaha-7.bin"
// against a brute force over the two-plus-three combinations, and eval_rank7_via_ofsm7 (read from
// rank-pair tables) against the walk.
#include <omp.h>

#include <atomic>

#include "tables_fixture.h"
#include "test_util.h"

namespace {

// Best value of exactly two of the hole cards with exactly three of the five board cards.
int brute_force(const int* hole, int holes, const int* board) {
  return test_util::best_two_plus_three(hole, holes, board);
}

// The walk over the loaded Omaha machine: the five board cards to state S, then T[T[S + i] + j] for
// every hole pair, the largest kept.
int walk(const int* hole, int holes, const int* board) {
  const int* T = ofsm_omaha7::table;
  int state = 52;
  for (int k = 0; k < 5; ++k) state = T[state + pokermath::rank_major_code(board[k])];
  int best = 0;
  for (int i = 0; i < holes; ++i)
    for (int j = i + 1; j < holes; ++j)
      best = std::max(best, T[T[state + pokermath::rank_major_code(hole[i])] + pokermath::rank_major_code(hole[j])]);
  return best;
}

class OmahaMachine : public testing::Test {
 protected:
  static void SetUpTestSuite() { tables_fixture::load_state_machines(); }
};

TEST_F(OmahaMachine, EveryBoardForASampleOfHolePairs) {
  // Pairs chosen to cover suited, offsuit, paired and connected holdings. Every board includes the
  // royal ones, which play only with two hole cards and three of their own.
  const char* pairs[] = {"AsKs", "7h7d", "5c4c", "Qd2h"};
  for (const char* text : pairs) {
    if (test_util::kSanitized && text != pairs[0]) break;
    const std::vector<int> hole = test_util::cards(text);
    std::vector<int> rest;
    for (int c = 0; c < 52; ++c)
      if (c != hole[0] && c != hole[1]) rest.push_back(c);
    std::atomic<int64_t> boards{0}, mismatches{0};
#pragma omp parallel for schedule(dynamic, 1)
    for (int a = 0; a < 46; ++a) {
      int board[5];
      board[0] = rest[a];
      for (int b = a + 1; b < 47; ++b)
        for (int c = b + 1; c < 48; ++c)
          for (int d = c + 1; d < 49; ++d)
            for (int e = d + 1; e < 50; ++e) {
              board[1] = rest[b], board[2] = rest[c], board[3] = rest[d], board[4] = rest[e];
              ++boards;
              const int expected = brute_force(hole.data(), 2, board);
              if (walk(hole.data(), 2, board) != expected || eval_rank7_via_ofsm7(hole.data(), 2, board) != expected)
                ++mismatches;
            }
    }
    EXPECT_EQ(boards.load(), 2118760) << text;
    EXPECT_EQ(mismatches.load(), 0) << text;
  }
}

TEST_F(OmahaMachine, TwentyMillionRandomBoardsAndPairs) {
  std::atomic<int64_t> mismatches{0};
  std::string first;
#pragma omp parallel
  {
    std::mt19937 engine(1234 + 17 * omp_get_thread_num());
    const int draws = static_cast<int>(test_util::sweep_size(20000000, 500000));
    int cards[7];
#pragma omp for
    for (int i = 0; i < draws; ++i) {
      test_util::random_cards(engine, 7, cards);
      if (walk(cards, 2, cards + 2) != brute_force(cards, 2, cards + 2) && mismatches++ == 0) {
#pragma omp critical
        first = test_util::names(std::vector<int>(cards, cards + 7));
      }
    }
  }
  EXPECT_EQ(mismatches.load(), 0) << first;
}

TEST_F(OmahaMachine, TheRankPairTablesGiveTheWalksValues) {
  std::mt19937 engine(99);
  for (int holes = 2; holes <= 6; ++holes)
    for (int i = 0; i < test_util::sweep_size(1000000, 20000); ++i) {
      int cards[11];
      test_util::random_cards(engine, holes + 5, cards);
      ASSERT_EQ(eval_rank7_via_ofsm7(cards, holes, cards + holes), walk(cards, holes, cards + holes))
          << test_util::names(std::vector<int>(cards, cards + holes + 5));
    }
}

TEST_F(OmahaMachine, OrderOfBoardAndHoleCardsDoesNotMatter) {
  std::mt19937 engine(5);
  for (int i = 0; i < 20000; ++i) {
    std::vector<int> cards = test_util::random_cards(engine, 9);
    const int value = walk(cards.data(), 4, cards.data() + 4);
    std::shuffle(cards.begin(), cards.begin() + 4, engine);
    std::shuffle(cards.begin() + 4, cards.end(), engine);
    ASSERT_EQ(walk(cards.data(), 4, cards.data() + 4), value) << test_util::names(cards);
  }
}

}  // namespace

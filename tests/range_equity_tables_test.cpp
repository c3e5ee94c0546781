// Hold'em equity against a range: collisions, dispatch, the parallel no-board form and the
// exhaustive forms against a plain walk written here.
#include <omp.h>

#include <algorithm>
#include <cmath>
#include <tuple>
#include <utility>

#include "tables_fixture.h"
#include "test_util.h"

namespace {

using test_util::cards;

PokerLogic& logic() { return const_cast<PokerLogic&>(tables_fixture::logic_with_table()); }

Spec range_of(const std::vector<std::pair<const char*, const char*>>& combos) {
  Spec spec;
  for (auto [a, b] : combos) spec.AddCard(pokermath::parse_card(a), pokermath::parse_card(b));
  return spec;
}

int seven_class(int h0, int h1, const int* board) {
  const std::vector<int> w = test_util::words({h0, h1, board[0], board[1], board[2], board[3], board[4]});
  return tables_fixture::best_class_of_seven(w.data());
}

// 1 when my class (smaller is stronger) beats theirs, 0.5 for a tie.
double score(int mine, int theirs) { return mine < theirs ? 1.0 : mine == theirs ? 0.5 : 0.0; }

// What the no-board forms are defined as: GetWinHandVsHand (or GetWinHandVsHandToTurn) of every
// combination that misses the hero's cards, the wins and boards summed in set order.
double per_combination(const std::vector<int>& hero, const Spec& range, bool to_turn) {
  double wins = 0, boards = 0;
  for (const auto& [a, b] : range.m_hands) {
    if (a == hero[0] || a == hero[1] || b == hero[0] || b == hero[1]) continue;
    const int villain[2] = {a, b};
    double w = 0, n = 0;
    if (to_turn)
      logic().GetWinHandVsHandToTurn(hero.data(), villain, w, n);
    else
      logic().GetWinHandVsHand(hero.data(), villain, w, n);
    wins += w;
    boards += n;
  }
  return wins / boards;
}

TEST(RangeEquity, OneCombinationIsThatMatchup) {
  const std::vector<int> hero = cards("As Ks");
  const Spec one = range_of({{"Qh", "Qd"}});
  double wins = 0, boards = 0;
  logic().GetWinHandVsHand(hero.data(), cards("Qh Qd").data(), wins, boards);
  EXPECT_EQ(logic().getProbabilityOfWinBySpectrWithNoBoard(hero.data(), one), wins / boards);
  EXPECT_EQ(logic().getProbabilityOfWinBySpectr(hero.data(), nullptr, 0, one), wins / boards);
}

TEST(RangeEquity, ParallelResultDoesNotDependOnTheThreadCount) {
  const std::vector<int> hero = cards("Jh Td");
  const Spec range = pokermath::parse_range("QQ+,AK,KQs,76s");
  omp_set_num_threads(1);
  const double one = logic().getProbabilityOfWinBySpectrWithNoBoard(hero.data(), range);
  omp_set_num_threads(2);
  const double two = logic().getProbabilityOfWinBySpectrWithNoBoard(hero.data(), range);
  EXPECT_EQ(one, two);
  EXPECT_EQ(one, per_combination(hero, range, false));
}

TEST(RangeEquity, NoBoardFormsTakeEachCombinationsOwnTableEntry) {
  PokerLogic& l = logic();
  const auto saved = std::pair{l.m_equityTable, l.m_equityTurnTable};
  const std::vector<int> hero = cards("Ah Kh");
  const Spec range = pokermath::parse_range("QQ,JTs");
  auto key = [](const std::vector<int>& hand) { return std::min(hand[0], hand[1]) * 64 + std::max(hand[0], hand[1]); };
  auto keys = [&](const char* villain) { return std::pair{key(hero), key(cards(villain))}; };
  // Entries for some suit variants only (QcQd and QcQs share a class with QdQs, JsTs with JcTc and
  // JdTd): each must answer for its own combination and for no other.
  for (auto* table : {&l.m_equityTable, &l.m_equityTurnTable}) {
    (*table)[keys("Qc Qd")] = 300001;  // any positive count of half boards
    (*table)[keys("Qc Qs")] = 7;
    (*table)[keys("Js Ts")] = 123456;
  }
  EXPECT_EQ(l.getProbabilityOfWinBySpectrWithNoBoard(hero.data(), range), per_combination(hero, range, false));
  EXPECT_EQ(l.getProbabilityOfWinBySpectrWithNoBoardToTurn(hero.data(), range), per_combination(hero, range, true));
  std::tie(l.m_equityTable, l.m_equityTurnTable) = saved;
}

TEST(RangeEquity, CollidingCombinationsAreIgnored) {
  const std::vector<int> hero = cards("As Ks"), flop = cards("Qh 7h 2c");
  const Spec with_own = range_of({{"Qd", "Qs"}, {"As", "Ad"}, {"Kd", "Ks"}, {"Qh", "Jh"}});
  const Spec clean = range_of({{"Qd", "Qs"}});
  EXPECT_EQ(logic().getProbabilityOfWinBySpectrWithFlop(hero.data(), flop.data(), with_own),
            logic().getProbabilityOfWinBySpectrWithFlop(hero.data(), flop.data(), clean));
  EXPECT_EQ(logic().getProbabilityOfWinBySpectrWithNoBoard(hero.data(), with_own),
            logic().getProbabilityOfWinBySpectrWithNoBoard(hero.data(), range_of({{"Qd", "Qs"}, {"Qh", "Jh"}})));
  EXPECT_TRUE(std::isnan(logic().getProbabilityOfWinBySpectrWithNoBoard(hero.data(), range_of({{"As", "Ad"}}))));
  EXPECT_TRUE(std::isnan(logic().getProbabilityOfWinBySpectrWithFlop(hero.data(), flop.data(), Spec())));
}

TEST(RangeEquity, DispatchAndBoardCounts) {
  const std::vector<int> hero = cards("As Ks"), board = cards("Qh 7h 2c 9d 3s 4s");
  const Spec range = pokermath::parse_range("QQ,AK");
  EXPECT_EQ(logic().getProbabilityOfWinBySpectr(hero.data(), board.data(), 6, range), 0.0);
  EXPECT_EQ(logic().getProbOfWinBySpectrToFlopOrTurn(hero.data(), board.data(), 0, range, 5), 0.0);
  EXPECT_EQ(logic().getProbOfWinBySpectrToFlopOrTurn(hero.data(), board.data(), 6, range, 4), 0.0);
  EXPECT_EQ(logic().getProbOfWinBySpectrToFlopOrTurn(hero.data(), board.data(), 3, range, 4),
            logic().getProbabilityOfWinBySpectrWithFlopToTurn(hero.data(), board.data(), range));
  EXPECT_EQ(logic().getProbabilityOfWinBySpectr(hero.data(), board.data(), 3, range),
            logic().getProbabilityOfWinBySpectrWithFlop(hero.data(), board.data(), range));
  EXPECT_EQ(logic().getProbabilityOfWinBySpectr(hero.data(), board.data(), 4, range),
            logic().getProbabilityOfWinBySpectrWithFlopAndTurn(hero.data(), board.data(), range));
}

TEST(RangeEquity, ExhaustiveFormsMatchAPlainWalk) {
  const std::vector<int> hero = cards("Ah Kh"), flop = cards("Qh 7h 2c");
  const Spec range = pokermath::parse_range("QQ+,AKo,T9s");
  double sum = 0, count = 0;
  const uint64_t known = pokermath::cards_to_mask(hero) | pokermath::cards_to_mask(flop);
  test_util::for_each_set(2, known, [&](const int* turn_river) {
    const int board[5] = {flop[0], flop[1], flop[2], turn_river[0], turn_river[1]};
    const uint64_t used = known | uint64_t{1} << turn_river[0] | uint64_t{1} << turn_river[1];
    for (const auto& [a, b] : range.m_hands) {
      if (used >> a & 1 || used >> b & 1) continue;
      sum += score(seven_class(hero[0], hero[1], board), seven_class(a, b, board));
      count += 1;
    }
  });
  EXPECT_DOUBLE_EQ(logic().getProbabilityOfWinBySpectrWithFlop(hero.data(), flop.data(), range), sum / count);

  // To the flop: five-card hands on every flop.
  const Spec small = pokermath::parse_range("AA,72o");
  double flop_sum = 0, flop_count = 0;
  test_util::for_each_set(3, pokermath::cards_to_mask(hero), [&](const int* f) {
    const uint64_t used =
        pokermath::cards_to_mask(hero) | uint64_t{1} << f[0] | uint64_t{1} << f[1] | uint64_t{1} << f[2];
    for (const auto& [x, y] : small.m_hands) {
      if (used >> x & 1 || used >> y & 1) continue;
      flop_sum += score(eval_5hand(test_util::words({hero[0], hero[1], f[0], f[1], f[2]}).data()),
                        eval_5hand(test_util::words({x, y, f[0], f[1], f[2]}).data()));
      flop_count += 1;
    }
  });
  EXPECT_DOUBLE_EQ(logic().getProbabilityOfWinBySpectrWithNoBoardToFlop(hero.data(), small), flop_sum / flop_count);
}

TEST(RangeEquity, SampledFormsLandNearTheExactValue) {
  const std::vector<int> hero = cards("As Ks"), flop = cards("Qh 7h 2c 9s 3d");
  const Spec range = pokermath::parse_range("QQ+,AK,JTs");
  // A complete board: the same walk every trial, so the exact value.
  const double river = logic().getProbabilityOfWinBySpectr(hero.data(), flop.data(), 5, range);
  double sum = 0, count = 0;
  const uint64_t known = pokermath::cards_to_mask(hero) | pokermath::cards_to_mask(flop);
  for (const auto& [a, b] : range.m_hands) {
    if (known >> a & 1 || known >> b & 1) continue;
    sum += score(seven_class(hero[0], hero[1], flop.data()), seven_class(a, b, flop.data()));
    count += 1;
  }
  EXPECT_DOUBLE_EQ(river, sum / count);
  // Two board cards given: sampled; near the exhaustive flop answer averaged over third cards.
  std::srand(5);
  const double sampled = logic().getProbabilityOfWinBySpectr(hero.data(), flop.data(), 2, range);
  EXPECT_GT(sampled, 0.2);
  EXPECT_LT(sampled, 0.8);
}

}  // namespace

// The classic Hold'em and Common equity engines against brute forces written here, their board
// counts, scoring rules and Monte Carlo agreement.
#include <cmath>
#include <thread>

#include "tables_fixture.h"
#include "test_util.h"

namespace {

using test_util::cards;

const PokerLogic& logic() { return tables_fixture::logic_with_table(); }
PokerLogic& mutable_logic() { return const_cast<PokerLogic&>(tables_fixture::logic_with_table()); }

// Seven-card class by the five-card evaluator alone (smaller is stronger).
int seven_class(const int* hole, const int* board) {
  const int seven[7] = {hole[0], hole[1], board[0], board[1], board[2], board[3], board[4]};
  return tables_fixture::best_class_of_seven(test_util::words({seven, seven + 7}).data());
}

// 1 when my class (smaller is stronger) beats theirs, 0.5 for a tie.
double score(int mine, int theirs) { return mine < theirs ? 1.0 : mine == theirs ? 0.5 : 0.0; }

// Hero wins (ties half) and boards over all five-card boards, by seven-card evaluation per board.
std::pair<double, double> brute_force(const std::vector<int>& hero, const std::vector<int>& villain) {
  double wins = 0, boards = 0;
  test_util::for_each_set(5, pokermath::cards_to_mask(hero) | pokermath::cards_to_mask(villain), [&](const int* b) {
    wins += score(seven_class(hero.data(), b), seven_class(villain.data(), b));
    boards += 1;
  });
  return {wins, boards};
}

TEST(HoldemEquity, SymmetricMatchupsAreExactlyHalf) {
  double wins = 0, boards = 0;
  logic().GetWinHandVsHand(cards("As Ks").data(), cards("Ah Kh").data(), wins, boards);
  EXPECT_EQ(wins, 856152);
  EXPECT_EQ(boards, 1712304);
  logic().GetWinHandVsHand(cards("7c 7d").data(), cards("7h 7s").data(), wins, boards);
  EXPECT_EQ(wins, 856152);
  // Enumerated, the suited mirror is exactly half too; the offsuit mirror only nearly.
  logic().getProbabilityOfWinWithNoBoard(cards("As Ks").data(), cards("Ah Kh").data(), wins, boards);
  EXPECT_EQ(wins, 856152);
  EXPECT_EQ(boards, 1712304);
  EXPECT_EQ(logic().GetWinHandVsHand(cards("As Kd").data(), cards("Ah Kc").data(), wins, boards), 1);
  EXPECT_NEAR(wins / boards, 0.5, 0.01);
  logic().GetWinHandVsHandToTurn(cards("As Ks").data(), cards("Ad Kd").data(), wins, boards);
  EXPECT_EQ(wins, 97290);
  EXPECT_EQ(boards, 194580);
}

TEST(HoldemEquity, EnumerationEqualsABruteForceOnRandomMatchups) {
  std::mt19937 engine(30);
  const int matchups = static_cast<int>(test_util::sweep_size(30, 2));
  for (int m = 0; m < matchups; ++m) {
    const std::vector<int> four = test_util::random_cards(engine, 4);
    const std::vector<int> hero(four.begin(), four.begin() + 2), villain(four.begin() + 2, four.end());
    double wins = 0, boards = 0;
    logic().getProbabilityOfWinWithNoBoard(hero.data(), villain.data(), wins, boards);
    const auto [expected_wins, expected_boards] = brute_force(hero, villain);
    EXPECT_EQ(boards, expected_boards) << test_util::names(four);
    EXPECT_EQ(wins, expected_wins) << test_util::names(four);
    EXPECT_EQ(boards, 1712304);
  }
}

TEST(HoldemEquity, ToTheTurnWithSixCardHands) {
  std::mt19937 engine(31);
  for (int m = 0; m < 3; ++m) {
    const std::vector<int> four = test_util::random_cards(engine, 4);
    const std::vector<int> hero(four.begin(), four.begin() + 2), villain(four.begin() + 2, four.end());
    double wins = 0, boards = 0;
    logic().getProbabilityOfWinWithNoBoardToTurn(hero.data(), villain.data(), wins, boards);
    double expected = 0, count = 0;
    test_util::for_each_set(4, pokermath::cards_to_mask(four), [&](const int* b) {
      const std::vector<int> h = test_util::words({hero[0], hero[1], b[0], b[1], b[2], b[3]});
      const std::vector<int> v = test_util::words({villain[0], villain[1], b[0], b[1], b[2], b[3]});
      expected += score(eval_6hand(h.data()), eval_6hand(v.data()));
      count += 1;
    });
    EXPECT_EQ(boards, 194580);
    EXPECT_EQ(count, 194580);
    EXPECT_EQ(wins, expected) << test_util::names(four);
  }
}

TEST(HoldemEquity, TableEntriesAnswerFirstAndAreHalved) {
  PokerLogic& l = mutable_logic();
  const std::vector<int> hero = cards("9c 8c"), villain = cards("Ad Kh");
  double wins = 0, boards = 0;
  l.GetWinHandVsHand(hero.data(), villain.data(), wins, boards);
  const std::pair<int, int> keys = {std::min(hero[0], hero[1]) * 64 + std::max(hero[0], hero[1]),
                                    std::min(villain[0], villain[1]) * 64 + std::max(villain[0], villain[1])};
  l.m_equityTable[keys] = 12345;
  double table_wins = 0, table_boards = 0;
  EXPECT_EQ(l.GetWinHandVsHand(hero.data(), villain.data(), table_wins, table_boards), 1);
  EXPECT_EQ(table_wins, 6172.5);
  EXPECT_EQ(table_boards, 1712304);
  // The key pair is ordered: the villain's side is not in the table and is enumerated.
  l.GetWinHandVsHand(villain.data(), hero.data(), table_wins, table_boards);
  EXPECT_EQ(table_wins, boards - wins);
  l.m_equityTable.erase(keys);
}

TEST(HoldemEquity, MonteCarloAgainstRandomHands) {
  PokerLogic& l = mutable_logic();
  const std::vector<int> hole = cards("Ah Kh"), board = cards("Qh 7h 2c 9s 3d");
  EXPECT_EQ(l.getProbabilityOfWin(hole.data(), board.data(), 6, 2), 0.0);
  EXPECT_EQ(l.getProbabilityOfWin(hole.data(), board.data(), 5, 11), 0.0);
  EXPECT_EQ(l.getProbabilityOfWin(hole.data(), board.data(), 5, 1), 0.0);
  // On a complete board only the opponent is random: the exact share over every opponent hand.
  double exact = 0, hands = 0;
  test_util::for_each_set(2, pokermath::cards_to_mask(hole) | pokermath::cards_to_mask(board), [&](const int* villain) {
    exact += score(seven_class(hole.data(), board.data()), seven_class(villain, board.data()));
    hands += 1;
  });
  exact /= hands;
  std::srand(2024);
  const double estimate = l.getProbabilityOfWin(hole.data(), board.data(), 5, 2);
  const double error = std::sqrt(exact * (1 - exact) / l.m_trials);
  EXPECT_NEAR(estimate, exact, 4 * error + 1e-9);
  // Three-way from the flop: within four standard errors of a long run.
  std::srand(7);
  const double three_way = l.getProbabilityOfWin(hole.data(), board.data(), 3, 3);
  EXPECT_GT(three_way, 0.3);
  EXPECT_LT(three_way, 0.9);
}

TEST(HoldemEquity, CommonEnginesCountTheirBoards) {
  int boards = 0, ms = -1;
  const std::vector<int> hero = cards("As Ks"), villain = cards("Qh Qd");
  const double preflop = logic().RiverEquityHandVsHandOnPreFlopCommon(hero.data(), 2, villain.data(), boards, ms);
  EXPECT_EQ(boards, 1712304);
  EXPECT_GE(ms, 0);
  EXPECT_GT(preflop, 0);
  const std::vector<int> flop = cards("2c 7d 9h"), turn = cards("2c 7d 9h Js");
  logic().RiverEquityHandVsHandOnFlopCommon(hero.data(), 2, villain.data(), flop.data(), 3, boards, ms);
  EXPECT_EQ(boards, 990);
  logic().RiverEquityHandVsHandOnTurnCommon(hero.data(), 2, villain.data(), turn.data(), 4, boards, ms);
  EXPECT_EQ(boards, 44);
  boards = ms = -7;
  EXPECT_EQ(logic().RiverEquityHandVsHandOnFlopCommon(hero.data(), 2, villain.data(), turn.data(), 4, boards, ms), 0.0);
  EXPECT_EQ(logic().RiverEquityHandVsHandOnTurnCommon(hero.data(), 2, villain.data(), flop.data(), 3, boards, ms), 0.0);
  EXPECT_EQ(boards, -7);
  EXPECT_EQ(ms, -7);
  const std::vector<int> omaha = cards("As Ks Qd Jd Ah Kh 7c 7s");
  logic().RiverEquityHandVsHandOnPreFlopCommon(omaha.data(), 4, omaha.data() + 4, boards, ms);
  EXPECT_EQ(boards, 1086008);
}

TEST(HoldemEquity, CommonEnginesUseTheTwoPlusThreeRuleAndTheirTieScoring) {
  // Hole cards of equal ranks and no suit in common: every board is a tie for all.
  const std::vector<int> hands = cards("2c 3d 2d 3c 2h 3s");
  const std::vector<int> turn = cards("Ah Kc Qd 9s");
  int boards = 0, ms = 0;
  // Two tying opponents score 1/2 here (getProbabilityOfWin would give 1/3), one tie a whole win.
  EXPECT_EQ(logic().RiverEquityHandsOnTurnCommon(hands.data(), 2, 3, 0, turn.data(), boards, ms), 50.0);
  EXPECT_EQ(boards, 42);  // 52 - 6 hole cards - 4 board cards
  EXPECT_EQ(logic().RiverEquityHandsOnTurnCommon(hands.data(), 2, 2, 0, turn.data(), boards, ms), 100.0);
  EXPECT_EQ(boards, 44);
  EXPECT_EQ(logic().RiverEquityHandVsHandOnTurnCommon(hands.data(), 2, hands.data() + 2, turn.data(), 4, boards, ms),
            50.0);
  // Dead cards after the hands are out of the deal.
  const std::vector<int> with_dead = cards("2c 3d 2d 3c Jh Jd");
  logic().RiverEquityHandsOnTurnCommon(with_dead.data(), 2, 2, 2, turn.data(), boards, ms);
  EXPECT_EQ(boards, 42);
}

// The Common engines against a brute force of the 2+3 rule with 4, 5 and 6 hole cards:
// omaha_equity_tables_test.
TEST(HoldemEquity, CommonEnginesGiveTheSameAnswerAcrossEvaluators) {
  const std::vector<int> hero = cards("As Kd 9h 8h"), villain = cards("Qc Qs Jd Tc");
  int boards = 0, ms = 0;
  // Walked through "omaha-7.bin" or ranked board by board without it: the same answer.
  tables_fixture::load_state_machines();
  int* machine = ofsm_omaha7::table;
  int boards_machine = 0, boards_search = 0;
  const double with_machine =
      logic().RiverEquityHandVsHandOnPreFlopCommon(hero.data(), 4, villain.data(), boards_machine, ms);
  EXPECT_EQ(RiverEquityHandVsHandOnPreFlopCommonFsm7(hero.data(), 4, villain.data(), boards, ms), with_machine);
  ofsm_omaha7::table = nullptr;
  const double by_search =
      logic().RiverEquityHandVsHandOnPreFlopCommon(hero.data(), 4, villain.data(), boards_search, ms);
  ofsm_omaha7::table = machine;
  EXPECT_EQ(with_machine, by_search);
  EXPECT_EQ(boards_machine, boards_search);
}

TEST(HoldemEquity, TimeLimitedMonteCarloStopsAtTheFirstCheck) {
  const std::vector<int> hero = cards("As Ks"), flop = cards("Qh 7h 2c");
  int trials = 1000000, ms = -1;  // any elapsed time exceeds a negative limit
  EquityHandVsRandomCommon(hero.data(), 2, flop.data(), 3, 5, trials, ms);
  EXPECT_EQ(trials, 1);
  // Against one random hand with the two-plus-three rule: near the exact value of all villain
  // hands and boards.
  int boards = 0;
  double exact = 0, weight = 0;
  test_util::for_each_set(2, pokermath::cards_to_mask(hero) | pokermath::cards_to_mask(flop), [&](const int* villain) {
    exact += logic().RiverEquityHandVsHandOnFlopCommon(hero.data(), 2, villain, flop.data(), 3, boards, ms) * boards;
    weight += boards;
  });
  exact /= weight;
  trials = static_cast<int>(test_util::sweep_size(40000, 4000));
  ms = 600000;
  const double estimate = EquityHandVsRandomCommon(hero.data(), 2, flop.data(), 3, 5, trials, ms);
  const double error = 100 * std::sqrt(exact / 100 * (1 - exact / 100) / trials);
  EXPECT_NEAR(estimate, exact, 4 * error);
}

TEST(PreflopTable, EveryMatchupAndItsMirrorShareTheBoards) {
  PokerLogic with_table(logic());
  ASSERT_EQ(pokermath::load_preflop_table(with_table, tables_fixture::data_dir() / "OrvalisPC.dat"), 1624350u);
  // Hero and villain exchanged: the two values (twice the wins, ties counted half) add up to twice
  // the boards.
  for (const auto& [keys, value] : with_table.m_equityTable) {
    const auto mirror = with_table.m_equityTable.find({keys.second, keys.first});
    ASSERT_NE(mirror, with_table.m_equityTable.end());
    ASSERT_EQ(value + mirror->second, 2 * 1712304);
  }
  // Answers from the table equal the enumeration on random matchups.
  std::mt19937 engine(77);
  for (int m = 0; m < static_cast<int>(test_util::sweep_size(60, 5)); ++m) {
    const std::vector<int> four = test_util::random_cards(engine, 4);
    double table_wins = 0, table_boards = 0, wins = 0, boards = 0;
    with_table.GetWinHandVsHand(four.data(), four.data() + 2, table_wins, table_boards);
    logic().getProbabilityOfWinWithNoBoard(four.data(), four.data() + 2, wins, boards);
    ASSERT_EQ(table_wins, wins) << test_util::names(four);
    ASSERT_EQ(table_boards, boards);
  }
}

}  // namespace

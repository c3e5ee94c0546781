// Hutchison points of four-card Omaha starting hands: the high count and the Hi/Lo count, each hand
// worked out by hand in the comments, the stage breakdown of the pokermath:: API, and every starting
// hand through both.
#include <gtest/gtest.h>

#include <cmath>

#include "test_util.h"

namespace {

using test_util::cards;

int high(const std::string& hand) { return HutchisonPointsOmaha(cards(hand).data()); }
double hilo(const std::string& hand) { return HutchisonPointsOmahaHL(cards(hand).data()); }

// Ranks in the comments run 2 = 0 .. A = 12; S4, S3, S2 are the four-, three- and two-card
// straight rules, each scored by the span of its ranks.
TEST(Hutchison, HighCountOfWorkedHands) {
  const std::pair<const char*, int> cases[] = {
      // suits: spades A high 8, hearts A high 8; pairs: aces 18, kings 16; K-A span 1: 8 - 4 for the
      // ace on top; no low card with the ace.
      {"AsAhKsKh", 54},
      // four clubs: -2, clamped to 0; J-Q-K-A span 3: 25 - 4; the ace has no low card.
      {"AcKcQcJc", 21},
      // S4 on 8-9-T-J, span 3: 25.
      {"JcTd9h8s", 25},
      // S4 span 12: no; bottom three 2-3-4 (gaps 0): S3 span 2 = 18, and S2 4-A span 10 = 0; the ace
      // with three low cards adds nothing.
      {"Ac2d3h4s", 18},
      // suits: hearts K high 6, spades J high 4; S4 T-J-Q-K span 3: 25.
      {"KhQhJsTs", 35},
      // suits 8 + 8; aces 18; u = 3 (2, 3, A): S3 span 12 = 0, so S2 2-3 = 8 plus S2 3-A = 0; ace
      // with deuce and trey: 12.
      {"AhAs2h3s", 54},
      // u = 4 (2, 7, K, A), S4 no; gaps 4, 5, 0: neither three connects: S2 2-7 span 5 = 0, 7-K
      // span 6 = 0, K-A span 1 = 8 - 4; ace with a deuce: 6.
      {"AsKh7d2c", 10},
      // suits: spades Q high 5, hearts Q high 5; pairs: queens 14, jacks 13; S2 J-Q span 1: 8.
      {"QsQhJsJh", 45},
      // four of a kind: no suits, no pair points, one rank: nothing.
      {"8s8h8d8c", 0},
      // three kings earn no pair points; S2 2-K span 11: 0.
      {"KsKhKd2c", 0},
      // suits: spades T high 3, hearts 8 high 2; S4 7-8-9-T span 3: 25.
      {"Ts9s8h7h", 30},
      // S4 7-9-J-K span 6: 19.
      {"KsJh9d7c", 19},
      // u = 4 (3, 8, 9, Q), S4 span 9: no; gaps 4, 0, 2: only the top three 8-9-Q connect, S3 span 4
      // = 14, plus S2 3-8 span 5 = 0.
      {"Qs9h8d3c", 14},
      // suits: hearts K high 6, spades 3 high 1; u = 4 (2, 3, 4, K), gaps 0, 0, 8: only the bottom
      // three connect, S3 2-3-4 = 18, plus S2 4-K span 9 = 0.
      {"Kh4h3s2s", 25},
      // u = 4 (2, 5, 6, 9), S4 span 7: no; gaps 2, 0, 2: both threes connect: S3 5-6-9 span 4 = 14
      // and S3 2-5-6 span 4 = 14; more than a perfect rundown.
      {"2c5d6h9s", 28},
      // u = 4 (2, 3, 6, 9), gaps 0, 2, 2: only the bottom three: S3 2-3-6 span 4 = 14, plus S2 6-9
      // span 3 = 4.
      {"2c3d6h9s", 18},
      // u = 4 (2, 6, T, A), gaps 3, 3, 3: neither three: S2 2-6 = 2, 6-T = 2, T-A = 2 - 4 raised to
      // 0; ace with a deuce: 6.
      {"2c6dTsAh", 10},
      // three hearts: -2, clamped to 0; u = 4 (2, Q, K, A), gaps 9, 0, 0: only the top three, S3
      // Q-K-A span 2 = 18 - 4, plus S2 2-Q = 0; ace with a deuce: 6.
      {"AhKhQh2c", 20},
      // suits 8 + 8; aces 18, tens 12; S2 T-A span 4: 2 - 4 raised to 0.
      {"AsAhTsTh", 46},
      // one card per suit; nines 10; u = 3 (7, 8, 9): S3 span 2 = 18.
      {"9s9h8d7c", 28},
  };
  for (const auto& [hand, points] : cases) EXPECT_EQ(high(hand), points) << hand;
}

TEST(Hutchison, HiLoCountOfWorkedHands) {
  const std::pair<const char*, double> cases[] = {
      // Four cards ten or higher: 1000.0 unless three of a rank, one pair without a two-card suit, or
      // no pair and fewer than two two-card suits.
      {"AcAdKhKs", 1000.0},  // two pairs need no suit
      {"AcKdQhJs", 0.0},     // no pair, no two-card suit
      {"AsKsQhJh", 1000.0},  // no pair, two suits of two
      {"KcKdKhQs", 0.0},     // three kings
      {"AsAhKdQc", 0.0},     // one pair, no two-card suit
      {"AsAhKsQc", 1000.0},  // one pair, spades of two
      {"AsKsQsJh", 0.0},     // no pair; three spades are not a suit of two
      // ace with deuce lowest 20; distinct 2, 3, 9, A: the second and third lowest, trey 9 and nine 0;
      // spades of two, ace high 4.
      {"As2s3h9d", 33.0},
      // ace with deuce lowest 20; distinct 2, 3, A: the second lowest, trey 9; aces 8; spades and
      // hearts of two, ace high, 4 + 4.
      {"AsAh2s3h", 45.0},
      // no ace, deuce and trey lowest 15; third and fourth lowest: four 6, five 4.
      {"2c3d4h5s", 25.0},
      // ace with five lowest: nothing (the gap at five and six); second and third lowest: six 1,
      // seven 0.
      {"Ah5s6d7c", 1.0},
      // ace with seven lowest 10; eight and nine 0.
      {"Ah7s8d9c", 10.0},
      // ace with four lowest 13; six 1 and eight 0.
      {"Ad4c6h8s", 14.0},
      // no ace, deuce then queen: nothing; two ranks only; deuces 3, queens 5; spades and hearts of
      // two, queen high, 2 + 2.
      {"QsQh2s2h", 12.0},
      // no ace, trey and four lowest 11; two ranks only; three treys 0.5.
      {"3s3h3d4c", 11.5},
      // ace with deuce lowest 20; queen 2 and king 2; three hearts, ace high 2.0.
      {"AhKhQh2c", 26.0},
      // no ace, deuce and four lowest 12; distinct 2, 4, 5: the third lowest, five 4; fours 1; spades
      // of two, five high 0.
      {"5s4s4h2d", 17.0},
      // a nine keeps it out of the high-card rule; tens 1, nines 0.
      {"TcTd9h9s", 1.0},
      // ace with deuce lowest 20; trey 9, four 6; four spades add nothing.
      {"As2s3s4s", 35.0},
      // no ace, deuce then nine: nothing; third and fourth lowest: ten 1, jack 2; three hearts, jack
      // high 1.0.
      {"JhTh9h2c", 4.0},
  };
  for (const auto& [hand, points] : cases) EXPECT_EQ(hilo(hand), points) << hand;
}

// ---- the pokermath:: API ---------------------------------------------------------------------------

std::vector<std::pair<std::string, double>> stage_points(const pokermath::HutchisonCount& count) {
  std::vector<std::pair<std::string, double>> stages;
  for (const auto& stage : count.stages) stages.emplace_back(stage.name, stage.points);
  return stages;
}

// The stages of A-A-K-K and of the Hi/Lo high-card marker are shown in full by the CLI tests.
TEST(HutchisonApi, StagesExplainTheCount) {
  using Stages = std::vector<std::pair<std::string, double>>;
  // The clamp shows as its own step.
  const pokermath::HutchisonCount clamped = pokermath::hutchison_points(cards("AcKcQcJc"));
  EXPECT_FALSE(clamped.high_only);
  ASSERT_EQ(clamped.stages[0].items.size(), 2u);
  EXPECT_EQ(clamped.stages[0].items[0].reason, "four clubs");
  EXPECT_EQ(clamped.stages[0].items[0].points, -2);
  EXPECT_EQ(clamped.stages[0].items[1].points, 2);
  EXPECT_EQ(clamped.stages[0].points, 0);
  EXPECT_EQ(clamped.stages[2].items[0].reason, "A-K-Q-J: span 3, ace on top: 25 - 4");

  const pokermath::HutchisonCount wheel = pokermath::hutchison_points(cards("Ac2d3h4s"));
  EXPECT_EQ(wheel.stages[2].items.size(), 3u);  // S4 refused, the bottom three, the leftover pair
  EXPECT_EQ(wheel.stages[3].items[0].reason, "ace with deuce, trey and four: three low cards earn nothing");

  const pokermath::HutchisonCount hilo = pokermath::hutchison_points_hilo(cards("As2s3h9d"));
  EXPECT_EQ(hilo.total, 33.0);
  EXPECT_FALSE(hilo.high_only);
  EXPECT_EQ(stage_points(hilo),
            (Stages{{"low cards", 20}, {"further cards", 9}, {"pairs and trips", 0}, {"suits", 4}}));
  EXPECT_EQ(hilo.stages[0].items[0].reason, "ace, lowest rank deuce");
  EXPECT_EQ(hilo.stages[1].items[0].reason, "trey, the second lowest rank");
  EXPECT_EQ(pokermath::hutchison_points_hilo(cards("AcAdKhKs")).stages[0].items[0].reason,
            "two pairs: play for the high alone");
  const pokermath::HutchisonCount not_played = pokermath::hutchison_points_hilo(cards("KcKdKhQs"));
  EXPECT_TRUE(not_played.high_only);
  EXPECT_EQ(not_played.total, 0.0);
}

TEST(HutchisonApi, RefusesAnythingButFourDistinctCards) {
  const auto message = [](const std::vector<int>& hand) {
    return test_util::error_of([&] { pokermath::hutchison_points(hand); });
  };
  EXPECT_EQ(message(cards("AsAhKs")), "expected 4 cards in an Omaha starting hand, got 3");
  EXPECT_EQ(message(cards("AsAhKsKhQs")), "expected 4 cards in an Omaha starting hand, got 5");
  EXPECT_EQ(message({51, 38, 51, 37}), "duplicate card 'As' at hand position 3");
  EXPECT_EQ(message({51, 38, 52, 37}), "bad card code 52 at hand position 3: must be 0..51");
  EXPECT_THROW(pokermath::hutchison_points_hilo(std::vector<int>{1, 2, 3}), pokermath::Error);
}

// Every starting hand: the API's total is the classic count, the stages add up to it, the high count
// is a whole number from 0 to the most any hand scores, and the Hi/Lo count is in half points, or
// the high-card marker exactly for four cards ten or higher.
TEST(HutchisonApi, EveryStartingHandAddsUp) {
  int64_t hands = 0, problems = 0;
  int most = 0;
  std::string first;
  const auto problem = [&](const std::vector<int>& hand, const std::string& what) {
    if (problems++ == 0) first = test_util::names(hand) + ": " + what;
  };
  const auto adds_up = [](const pokermath::HutchisonCount& count) {
    double total = 0;
    for (const auto& stage : count.stages) {
      double items = 0;
      for (const auto& item : stage.items) items += item.points;
      if (items != stage.points || stage.name.empty()) return false;
      total += stage.points;
    }
    return total == count.total;
  };
  const int step = test_util::kSanitized ? 7 : 1;
  for (int a = 0; a < 52; a += step)
    for (int b = a + 1; b < 52; ++b)
      for (int c = b + 1; c < 52; ++c)
        for (int d = c + 1; d < 52; ++d) {
          const std::vector<int> hand = {a, b, c, d};
          ++hands;
          const int points = HutchisonPointsOmaha(hand.data());
          const pokermath::HutchisonCount count = pokermath::hutchison_points(hand);
          if (count.total != points || points < 0 || !adds_up(count)) problem(hand, "high count");
          most = std::max(most, points);

          const double hl = HutchisonPointsOmahaHL(hand.data());
          const pokermath::HutchisonCount hl_count = pokermath::hutchison_points_hilo(hand);
          const bool four_high = a % 13 >= 8 && b % 13 >= 8 && c % 13 >= 8 && d % 13 >= 8;
          if (hl_count.total != hl || !adds_up(hl_count) || hl_count.high_only != four_high) problem(hand, "Hi/Lo");
          if (four_high ? hl != 0.0 && hl != 1000.0 : hl < 0 || hl >= 1000 || std::floor(hl * 2) != hl * 2)
            problem(hand, "Hi/Lo value " + std::to_string(hl));
        }
  EXPECT_EQ(problems, 0) << first;
  if (!test_util::kSanitized) {
    EXPECT_EQ(hands, 270725);
  }
  EXPECT_LT(most, 100);
}

}  // namespace

// classify_on_board and board_hits against a brute-force reading of their definitions: five-card
// categories come from the reference evaluator over every five-card subset, and straight draws from
// adding real deck cards (pairs of them for the backdoor draw) and evaluating again.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <numeric>
#include <random>
#include <string>
#include <vector>

#include "pokermath/pokermath.h"
#include "reference_eval.h"
#include "test_util.h"

namespace {

using pokermath::Draw;
using pokermath::HandOnBoard;
using pokermath::MadeHand;

std::vector<int> with(std::vector<int> cards, std::initializer_list<int> more) {
  cards.insert(cards.end(), more);
  return cards;
}

// The largest value(key) over the five-card subsets of `cards`, -1 when there are none.
template <typename Value>
int best_over_fives(const std::vector<int>& cards, Value value) {
  const int n = static_cast<int>(cards.size());
  int best = -1;
  for (int a = 0; a < n; ++a)
    for (int b = a + 1; b < n; ++b)
      for (int c = b + 1; c < n; ++c)
        for (int d = c + 1; d < n; ++d)
          for (int e = d + 1; e < n; ++e)
            best = std::max(best, value(reference::five_card_key({cards[a], cards[b], cards[c], cards[d], cards[e]})));
  return best;
}

// The top rank of the best straight (flush or not) among the cards, -1 for none.
int straight_top(const std::vector<int>& cards) {
  return best_over_fives(cards, [](int64_t key) {
    const int category = reference::category_of(key);
    return category == reference::kStraight || category == reference::kStraightFlush ? static_cast<int>(key >> 16 & 15)
                                                                                     : -1;
  });
}

bool has_flush(const std::vector<int>& cards) {
  return best_over_fives(cards, [](int64_t key) {
           const int category = reference::category_of(key);
           return category == reference::kFlush || category == reference::kStraightFlush ? 1 : -1;
         }) > 0;
}

MadeHand reference_made(int c1, int c2, const std::vector<int>& board) {
  const int category = reference::category_of(reference::best_key(with(board, {c1, c2})));
  int count[13] = {};
  for (int c : board) ++count[c % 13];
  const int most = *std::max_element(count, count + 13);
  const auto pairs = std::count_if(count, count + 13, [](int n) { return n >= 2; });
  const int board_category = most == 4   ? reference::kQuads
                             : most == 3 ? reference::kTrips
                             : pairs     ? reference::kPair
                                         : reference::kHighCard;
  if (category >= reference::kStraight && category > board_category) {
    switch (category) {
      case reference::kStraightFlush: return MadeHand::StraightFlush;
      case reference::kQuads: return MadeHand::Quads;
      case reference::kFullHouse: return MadeHand::FullHouse;
      case reference::kFlush: return MadeHand::Flush;
      default: return MadeHand::Straight;
    }
  }
  std::vector<int> ranks, off;  // distinct ranks on the board and ranks off it, the ace first
  for (int r = 12; r >= 0; --r) (count[r] ? ranks : off).push_back(r);
  const int a = c1 % 13, b = c2 % 13;
  if (a == b) {
    if (count[a] == 1) return MadeHand::Set;
    if (count[a] == 0) {
      if (a > ranks[0]) return MadeHand::Overpair;
      return ranks.size() > 1 && a > ranks[1] ? MadeHand::SecondPair : MadeHand::WeakPair;
    }
  } else if (count[a] == 2 || count[b] == 2) {
    return MadeHand::Trips;
  } else if (count[a] && count[b]) {
    return MadeHand::TwoPair;
  } else if (count[a] || count[b]) {
    const int paired = count[a] ? a : b, kicker = count[a] ? b : a;
    if (paired != ranks[0]) return paired == ranks[1] ? MadeHand::SecondPair : MadeHand::WeakPair;
    const auto place = std::find(off.begin(), off.end(), kicker) - off.begin();
    return place == 0   ? MadeHand::TopPairTopKicker
           : place <= 2 ? MadeHand::TopPairGoodKicker
                        : MadeHand::TopPairWeakKicker;
  }
  return pairs ? MadeHand::BoardPairOnly : MadeHand::NoMadeHand;
}

uint32_t reference_flush_draws(int c1, int c2, const std::vector<int>& board) {
  const std::vector<int> all = with(board, {c1, c2});
  if (has_flush(all)) return 0;
  for (int s = 0; s < 4; ++s) {
    const auto in_suit = std::count_if(all.begin(), all.end(), [&](int c) { return c / 13 == s; });
    if (c1 / 13 != s && c2 / 13 != s) continue;
    if (in_suit == 4) {
      int nut = 12;
      while (std::count(board.begin(), board.end(), 13 * s + nut)) --nut;
      const bool nut_held = c1 == 13 * s + nut || c2 == 13 * s + nut;
      return pokermath::kFlushDraw | (nut_held ? uint32_t{pokermath::kNutFlushDraw} : 0);
    }
    if (in_suit == 3 && board.size() == 3) return pokermath::kBackdoorFlushDraw;
  }
  return 0;
}

// Straight draws by dealing each rank (each pair of ranks for the backdoor draw) as a real card
// that is still in the deck.
uint32_t reference_straight_draws(int c1, int c2, const std::vector<int>& board) {
  const std::vector<int> all = with(board, {c1, c2});
  if (straight_top(all) >= 0) return 0;
  auto deck_card = [&](int rank, int taken) {
    for (int s = 0; s < 4; ++s) {
      const int c = 13 * s + rank;
      if (c != taken && std::find(all.begin(), all.end(), c) == all.end()) return c;
    }
    return -1;
  };
  int completing = 0;
  for (int r = 0; r < 13; ++r) {
    const int x = deck_card(r, -1);
    if (x >= 0 && straight_top(with(all, {x})) > straight_top(with(board, {x}))) ++completing;
  }
  if (completing) return completing >= 2 ? pokermath::kOpenEndedDraw : pokermath::kGutshot;
  if (board.size() == 3)
    for (int r1 = 0; r1 < 13; ++r1)
      for (int r2 = r1; r2 < 13; ++r2) {
        const int x = deck_card(r1, -1), y = deck_card(r2, x);
        if (x >= 0 && y >= 0 && straight_top(with(all, {x, y})) > straight_top(with(board, {x, y})))
          return pokermath::kBackdoorStraightDraw;
      }
  return 0;
}

std::string draw_names(uint32_t draws) {
  std::string names;
  for (int bit = 0; bit < pokermath::kDraws; ++bit)
    if (draws >> bit & 1) {
      if (!names.empty()) names += '+';
      names += pokermath::draw_name(static_cast<Draw>(1u << bit));
    }
  return names;
}

// Every combination off a few chosen boards, 200 random flops and 200 random turns, one at a time
// and tallied over a random weighted range.
TEST(BoardHits, MatchesBruteForceOnRandomBoards) {
  std::mt19937 engine(20250611);
  pokermath::WeightedRange range;
  for (int c1 = 0; c1 < 52; ++c1)
    for (int c2 = c1 + 1; c2 < 52; ++c2)
      if (engine() % 3) range.set_weight(c1, c2, engine() % 4 ? (1 + engine() % 200) / 2.0 : 100);

  // Shapes random boards seldom bring (four of a kind, trips, two pair, a four-flush, four to the
  // wheel), then the random flops and turns.
  std::vector<std::vector<int>> boards;
  for (const char* text : {"KsKhKdKc", "7h7c7d", "8h8c3d3s", "AhKhQhJh", "5h4c3d2s"})
    boards.push_back(test_util::cards(text));
  const int random_boards = static_cast<int>(test_util::sweep_size(200, 20));
  for (int size : {3, 4})
    for (int n = 0; n < random_boards; ++n) boards.push_back(test_util::random_cards(engine, size));

  for (const std::vector<int>& board : boards) {
    // Straights depend on ranks alone: the straight draws are worked out once per pair of hole ranks.
    std::array<std::array<int64_t, 13>, 13> straight_draws;
    for (auto& row : straight_draws) row.fill(-1);
    pokermath::BoardHits want;
    for (int c1 = 0; c1 < 52; ++c1)
      for (int c2 = c1 + 1; c2 < 52; ++c2) {
        if (std::count(board.begin(), board.end(), c1) || std::count(board.begin(), board.end(), c2)) continue;
        int64_t& straights = straight_draws[c1 % 13][c2 % 13];
        if (straights < 0) straights = reference_straight_draws(c1, c2, board);
        const MadeHand made = reference_made(c1, c2, board);
        uint32_t draws = reference_flush_draws(c1, c2, board) | static_cast<uint32_t>(straights);
        if ((draws & pokermath::kFlushDraw) && (draws & (pokermath::kOpenEndedDraw | pokermath::kGutshot)))
          draws |= pokermath::kComboDraw;

        const HandOnBoard got = pokermath::classify_on_board(c2, c1, board);
        ASSERT_EQ(made_hand_name(got.made), made_hand_name(made))
            << test_util::names({c1, c2}) << " on " << test_util::names(board);
        ASSERT_EQ(draw_names(got.draws), draw_names(draws))
            << test_util::names({c1, c2}) << " on " << test_util::names(board);

        const double weight = range.weight(c1, c2) / 100;
        if (weight == 0) continue;
        ++want.combos;
        want.weight += weight;
        ++want.made_combos[static_cast<int>(made)];
        want.made_weight[static_cast<int>(made)] += weight;
        for (int bit = 0; bit < pokermath::kDraws; ++bit)
          if (draws >> bit & 1) ++want.draw_combos[bit], want.draw_weight[bit] += weight;
      }

    const pokermath::BoardHits hits = pokermath::board_hits(range, board);
    ASSERT_EQ(hits.board, board);
    ASSERT_EQ(hits.combos, want.combos) << test_util::names(board);
    ASSERT_NEAR(hits.weight, want.weight, 1e-9);
    ASSERT_EQ(hits.made_combos, want.made_combos) << test_util::names(board);
    ASSERT_EQ(hits.draw_combos, want.draw_combos) << test_util::names(board);
    for (int i = 0; i < pokermath::kMadeHands; ++i) ASSERT_NEAR(hits.made_weight[i], want.made_weight[i], 1e-9);
    for (int i = 0; i < pokermath::kDraws; ++i) ASSERT_NEAR(hits.draw_weight[i], want.draw_weight[i], 1e-9);
    ASSERT_EQ(std::accumulate(hits.made_combos.begin(), hits.made_combos.end(), 0), hits.combos);
    ASSERT_NEAR(std::accumulate(hits.made_weight.begin(), hits.made_weight.end(), 0.0), hits.weight, 1e-9);
  }
}

TEST(BoardHits, HandPickedHands) {
  struct Case {
    const char *hole, *board, *made, *draws;
  };
  const Case cases[] = {
      {"AdKd", "Kh7c2d", "top pair, top kicker", "backdoor flush draw"},
      {"KsQd", "Kh7c2d", "top pair, good kicker", ""},
      {"Ks9d", "Kh7c2d", "top pair, weak kicker", ""},
      {"9s9d", "Kh7c2d", "second pair", ""},
      {"5s5d", "Kh7c2d", "underpair or weak pair", ""},
      {"Kd7s", "Kh7c2d", "two pair", ""},
      {"QcQd", "Jh7s2c", "overpair", ""},
      {"7c7d", "Kh7s2c", "set", ""},
      {"Ks2d", "KhKc7d", "trips", ""},
      {"7d2s", "7h7c2d", "full house", ""},
      {"AsQd", "KsKhKd", "board pair only", "backdoor straight draw"},
      {"Kc2d", "KsKhKd7c", "quads", ""},
      {"AsAd", "KsKhKdKc", "overpair", ""},  // four kings on the board are nobody's quads
      {"AhKh", "Qh7h2h", "flush", "backdoor straight draw"},
      {"9h8h", "ThJh7hQc", "straight flush", ""},
      {"9h8h", "Tc7d2s", "no made hand", "open-ended straight draw"},
      {"9c7d", "Jh8s5c", "no made hand", "open-ended straight draw"},  // two gutshots
      {"Ac2d", "3h4s9c", "no made hand", "gutshot"},                   // the wheel
      {"Ac2d", "9hThJsQc", "no made hand", "gutshot"},                 // a king makes the ace-high straight
      {"2c3d", "9hThJsQc", "no made hand", ""},                        // the board's own draw is no draw of the hand
      {"Kc2d", "9hThJsQc", "straight", ""},
      {"AhKh", "Qh7h2c", "no made hand", "flush draw+nut flush draw+backdoor straight draw"},
      {"9h8h", "Th7h2c", "no made hand", "flush draw+open-ended straight draw+combo draw"},
  };
  for (const Case& c : cases) {
    const std::vector<int> hole = test_util::cards(c.hole);
    const HandOnBoard hand = pokermath::classify_on_board(hole[0], hole[1], test_util::cards(c.board));
    EXPECT_EQ(made_hand_name(hand.made), c.made) << c.hole << " on " << c.board;
    EXPECT_EQ(draw_names(hand.draws), c.draws) << c.hole << " on " << c.board;
  }
}

TEST(BoardHits, RejectsBadBoardsAndHoleCards) {
  const std::vector<int> flop = test_util::cards("Kh7c2d");
  struct Case {
    std::vector<int> board;
    int card1, card2;
    const char* message;
  };
  const Case cases[] = {
      {test_util::cards("Kh7c2d3s4s"), 0, 1, "the board must have 3 or 4 cards, got 5"},
      {test_util::cards("Kh7c"), 0, 1, "the board must have 3 or 4 cards, got 2"},
      {{50, 7, 50}, 0, 1, "card 'Ks' is on the board twice"},
      {{50, 7, 52}, 0, 1, "bad board card code 52: must be 0..51"},
      {flop, 0, -1, "bad hole card code -1: must be 0..51"},
      {flop, 5, 5, "the two hole cards are the same card '7c'"},
      {flop, 0, 37, "hole card 'Kh' is also on the board"},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(test_util::error_of([&] { pokermath::classify_on_board(c.card1, c.card2, c.board); }), c.message);
    if (c.card1 == 0 && c.card2 == 1) {  // a bad board: board_hits rejects it too
      EXPECT_EQ(test_util::error_of([&] { pokermath::board_hits(pokermath::WeightedRange{}, c.board); }), c.message);
    }
  }
  EXPECT_NE(test_util::error_of([] { pokermath::made_hand_name(static_cast<MadeHand>(pokermath::kMadeHands)); }),
            "(no error)");
  EXPECT_NE(test_util::error_of([] { pokermath::draw_name(static_cast<Draw>(3)); }), "(no error)");
}

}  // namespace

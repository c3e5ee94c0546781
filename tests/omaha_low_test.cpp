// Omaha lows: the searches, the kept in-place slot sort of the four-card river search, the nut
// low, low outs, the display classification, the sharing of a low half and the pokermath:: API.
#include <gtest/gtest.h>

#include "reference_low.h"
#include "test_util.h"

namespace {

using test_util::cards;
using test_util::names;

struct Deal {
  std::vector<int> hole, board;
  Deal(const std::string& h, const std::string& b) : hole(cards(h)), board(cards(b)) {}
  int n_hole() const { return static_cast<int>(hole.size()); }
  int n_board() const { return static_cast<int>(board.size()); }
  std::string text() const { return names(hole) + " on " + names(board); }
};

int general_low(const Deal& d) {
  return SetLowValueCombinationOmahaCommon(d.hole.data(), d.n_hole(), d.board.data(), d.n_board());
}

int deck_low(const Deal& d) {
  static PokerLogic logic;
  CDeck deck;
  for (int c : d.hole) deck.AddCard(CCard(c));
  for (int c : d.board) deck.AddCard(CCard(c));
  deck.m_lowValue = -7;  // cleared first
  deck.SetLowValueCombinationOmaha(logic);
  return deck.m_lowValue;
}

const PokerLogic& logic() {
  static const PokerLogic instance;
  return instance;
}

// ---- the searches --------------------------------------------------------------------------------

TEST(OmahaLow, ValuesOfKnownDeals) {
  const std::tuple<const char*, const char*, int> cases[] = {
      {"Ah 2c Kd Ks", "3h 4d 5c Kh Qs", 54321},  // A-2 with 3-4-5: the best low there is
      {"Ah Ac 2c 2d", "3h 4d 9c Th Js", 0},      // two low board cards make no low
      {"Ah 2c 3d 4s", "Ad 2h 8c 9s Kd", 84321},  // only 3-4 with A-2-8: the hole's A-2 are paired
      {"8c 7d Kd Ks", "6h 5d 4c Kh Qs", 87654},  // the worst qualifying low
      {"Ac 2d 3h 4s", "5c 6d 7d", 76521},        // a flop: the best two of four low hole cards
      {"Ac 2d Ks Qs Jh Th", "3c 4d 5h", 54321},  // six hole cards
  };
  // Every other holding and board is compared with a brute force in omaha_low_exhaustive_test.
  for (const auto& [hole, board, expected] : cases) {
    const Deal d(hole, board);
    EXPECT_EQ(general_low(d), expected) << d.text();
    EXPECT_EQ(pokermath::omaha_low(d.hole, d.board), expected) << d.text();
    if (d.n_hole() == 4 && d.n_board() == 5) {
      EXPECT_EQ(logic().SetLowValueCombinationOmaha(d.hole.data(), d.board.data()), expected) << d.text();
      EXPECT_EQ(deck_low(d), expected) << d.text();
    }
  }
}

TEST(OmahaLow, GeneralSearchNeedsTwoHoleAndThreeToFiveBoardCards) {
  const Deal d("Ac 2d 3h 4s 5c 6d", "7c 8d 6s Ks Qs Jh");  // lows everywhere
  EXPECT_EQ(SetLowValueCombinationOmahaCommon(d.hole.data(), 1, d.board.data(), 5), 0);
  EXPECT_EQ(SetLowValueCombinationOmahaCommon(d.hole.data(), 2, d.board.data(), 2), 0);
  EXPECT_EQ(SetLowValueCombinationOmahaCommon(d.hole.data(), 2, d.board.data(), 6), 0);
  EXPECT_EQ(SetLowValueCombinationOmahaCommon(d.hole.data(), 2, d.board.data(), 3), 87621);
  EXPECT_EQ(SetLowValueCombinationOmahaCommon(d.hole.data(), 6, d.board.data(), 3), 87621);  // 8-7-6 on board
}

TEST(OmahaLow, DeckSearchNeedsSevenCardsAndReadsTheBoardFromCardFour) {
  EXPECT_EQ(deck_low(Deal("Ac 2d Ks Qs", "3c 4d")), 0);         // six cards: cleared, nothing searched
  EXPECT_EQ(deck_low(Deal("Ac 2d Ks Qs", "3c 4d 5h")), 54321);  // a flop
  EXPECT_EQ(deck_low(Deal("Ac 2d Ks Qs", "9c 3c 4d 5h")), 54321);
  EXPECT_EQ(deck_low(Deal("Ks Qs Ac 2d", "3c 4d 5h")), 54321);  // any two of the first four
  EXPECT_EQ(deck_low(Deal("Ks Qs Jc 2d", "3c 4d 5h Ac")), 0);   // never card four as a hole card
}

// ---- the kept in-place slot sort ------------------------------------------------------------------

// The four-card river search sorts its five level slots in place when a low is complete and leaves
// them sorted; the next cards of the inner levels then meet the sorted contents.
//
// Jd As Kc 8d on 9h 3h 2s 5c 4c. The only low hole cards are A and 8, so every legal low is A-8 with
// three of 3 2 5 4: the best is 8-4-3-2-A. The slot search: slots (A, 8) for the hole pair; 3, 2, 5
// from the board complete A 8 3 2 5, sorted in place to 1 2 3 5 8 (8-5-3-2-A). The fifth level moves
// on to the 4c and overwrites the last slot, which now holds the 8: 1 2 3 5 4 is a low, 5-4-3-2-A,
// made of one hole card and four board cards.
//
// 4c 6h 2d Ks on Ac Js 3d 8c Ts. The best legal low is 4-2 with A-3-8, 8-4-3-2-A. The slot search
// first completes 4 6 A 3 8 and sorts it to 1 3 4 6 8 (8-6-4-3-A). Within hole card 4, the next pair
// 4-2 writes only the second slot (2 joins 1, the slot that held the 4), and the board's ace is then
// refused as a repeat of slot 1. 4-2 never meets A-3-8; the best found is 6-2 with A-3-8, 8-6-3-2-A.
TEST(OmahaLowSlotSort, DocumentedDealsKeepTheSortedSlotAnswers) {
  const std::tuple<const char*, const char*, int, int> cases[] = {
      // hole, board, general search, slot sort
      {"Jd As Kc 8d", "9h 3h 2s 5c 4c", 84321, 54321},  // better than any legal low
      {"4c 6h 2d Ks", "Ac Js 3d 8c Ts", 84321, 86321},  // misses the best legal low
  };
  for (const auto& [hole, board, general, sorted] : cases) {
    const Deal d(hole, board);
    EXPECT_EQ(general_low(d), general) << d.text();
    EXPECT_EQ(reference::omaha_low(d.hole, d.board), general) << d.text();
    EXPECT_EQ(logic().SetLowValueCombinationOmaha(d.hole.data(), d.board.data()), sorted) << d.text();
    EXPECT_EQ(deck_low(d), sorted) << d.text();
  }
}

// That the two searches differ on random deals, that they find a low on the same deals, and that
// CDeck's search gives PokerLogic's answer: omaha_low_exhaustive_test, on every holding of its
// river boards.

// ---- nut low and outs ------------------------------------------------------------------------------

// Two-card holdings of unseen cards whose low beats mine, counted from the reference.
int better_two_card_lows(const Deal& d) {
  const int mine = reference::omaha_low(d.hole, d.board);
  int better = 0;
  test_util::for_each_set(2, ArrayToInt64(d.n_hole(), d.hole.data()) | ArrayToInt64(d.n_board(), d.board.data()),
                          [&](const int* two) {
                            const int low = reference::omaha_low({two, 2}, d.board);
                            better += low != 0 && low < mine;
                          });
  return better;
}

TEST(OmahaLowNuts, CountsTheTwoCardHoldingsWithABetterLow) {
  const auto nuts = [](const Deal& d) {
    return logic().IsMyHandNutsOmahaLow(d.hole.data(), d.n_hole(), d.board.data(), d.n_board());
  };
  EXPECT_EQ(nuts(Deal("Ah 2c Kd Ks", "3h 4d 5c Kh Qs")), 0);  // the wheel
  // 6-5-4-3-2: beaten by A-2 (6-5-4-2-A) and A-6 (6-5-4-3-A), four aces with three deuces and three
  // sixes: 24 holdings. Another 2-6 ties and is not counted.
  EXPECT_EQ(nuts(Deal("2c 6c Kd Ks", "3h 4h 5h Kh Qh")), 24);
  EXPECT_EQ(nuts(Deal("Ac Ad Kd Ks", "3h 4h 5h Kh Qh")), 1);  // no low is never the nut low
  EXPECT_EQ(nuts(Deal("Ac 2d Kd Ks", "3h 4h")), -5);
  EXPECT_EQ(logic().IsMyHandNutsOmahaLow(cards("Ac2dKdKs").data(), 4, cards("3h4h5h6h7h8h").data(), 6), -5);

  std::mt19937 engine(5);
  for (int i = 0; i < test_util::sweep_size(300, 20); ++i) {
    const std::vector<int> c = test_util::random_cards(engine, 4 + 3 + i % 3);
    const Deal d(names({c.begin(), c.begin() + 4}), names({c.begin() + 4, c.end()}));
    const int expected = reference::omaha_low(d.hole, d.board) == 0 ? 1 : better_two_card_lows(d);
    EXPECT_EQ(nuts(d), expected) << d.text();
  }
}

TEST(OmahaLowOuts, CountsCardsThatMakeALowAndCardsThatMakeTheNutLow) {
  const auto outs = [](const Deal& d, int& outs, int& nut_outs) {
    return logic().getOutsOmahaLow(d.hole.data(), d.n_hole(), d.board.data(), d.n_board(), outs, nut_outs);
  };
  // 2-3 on a 4-5 flop: any ace, six, seven or eight makes a low (16 cards); only the aces make the
  // nut low (5-4-3-2-A); 6-5-4-3-2 loses to, and so on. A made low counts no outs, but
  // every river that keeps it the nuts is a nut out: all 44. 3-3 cannot make a low, whatever comes.
  // A river has no outs, and neither has a board of two: -5, the counts untouched.
  const std::tuple<const char*, const char*, int, int, int> cases[] = {
      {"2c 3d Kd Ks", "4h 5h Kh", 1, 16, 4}, {"Ac 2d Kd Ks", "3h 4h 5h Kh", 1, 0, 44},
      {"3c 3d Kd Ks", "4h 5h 6h", 1, 0, 0},  {"2c 3d Kd Ks", "4h 5h Kh Qh Jh", -5, -1, -1},
      {"2c 3d Kd Ks", "4h 5h", -5, -1, -1},
  };
  for (const auto& [hole, board, result, expected_outs, expected_nuts] : cases) {
    int o = -1, n = -1;
    EXPECT_EQ(outs(Deal(hole, board), o, n), result) << hole << " on " << board;
    EXPECT_EQ(o, expected_outs) << hole << " on " << board;
    EXPECT_EQ(n, expected_nuts) << hole << " on " << board;
  }
}

TEST(OmahaLowOuts, CountLowCardsClassifiesTheHolding) {
  // hole, board, code, then the three outputs (-1: untouched, -2: not checked).
  const std::tuple<const char*, const char*, int, int, int, double> cases[] = {
      {"Ac 2d 3s 4s", "Kh Qh Jh", 0, -1, -1, -1},  // the board cannot make a low
      {"Ac 2d 3s 4s", "Ah Ad Kh Qh", 0, -1, -1, -1},     {"Ac 2d 3s 4s", "3h 4h 4d Kh Qh", 0, -1, -1, -1},
      {"Ac 2d 3s 4s", "3h 9h Td", 3, -2, -2, -2},         // one low rank on a flop may still grow
      {"Ac Ad Ks Qs", "3h 4h 5h", 1, -1, -1, -1},         // fewer than two distinct low ranks in the hole
      {"Ac 2d Ks Qs", "3h 4h 7h", 2, 74321, -1, -2},      // a made low
      {"2c 3d Kd Ks", "4h 5h Kh", 3, 16, 4, 16.0 / 45},   // drawing: 16 outs of 45 unseen cards, 4 to the nuts
      {"3c 4d Ks Qs", "3h 4h 8h Kh Qh", 100, 0, -1, -2},  // counterfeited: the hole's 3-4 pair the board
  };
  for (const auto& [hole, board, code, low_or_outs, nut_outs, probability] : cases) {
    const Deal d(hole, board);
    int a = -1, b = -1;
    double p = -1;
    EXPECT_EQ(logic().CountLowCards(d.hole.data(), d.n_hole(), d.board.data(), d.n_board(), a, b, p), code) << d.text();
    if (low_or_outs != -2) {
      EXPECT_EQ(a, low_or_outs) << d.text();
    }
    if (nut_outs != -2) {
      EXPECT_EQ(b, nut_outs) << d.text();
    }
    if (probability != -2) {
      EXPECT_DOUBLE_EQ(p, probability) << d.text();
    }
  }
}

// ---- sharing the low half -----------------------------------------------------------------------------

// WinLowSummary's return value, then the hero's share and the others' (-1: not written).
std::vector<double> low_shares(int hero_low, std::vector<int> others) {
  std::vector<double> shares(others.size() + 1, -1);
  const int result =
      WinLowSummary(hero_low, others.data(), static_cast<int>(others.size()), shares[0], shares.data() + 1);
  shares.insert(shares.begin(), result);
  return shares;
}

TEST(OmahaLowShares, TiedBestLowsShareAndZeroIsNoLow) {
  using Shares = std::vector<double>;
  EXPECT_EQ(low_shares(54321, {54321, 0, 65432}), (Shares{1, 0.5, 0.5, 0, 0}));
  EXPECT_EQ(low_shares(0, {87654, 76543, 76543, 0}), (Shares{1, 0, 0, 0.5, 0.5, 0}));  // two others split it
  EXPECT_EQ(low_shares(86432, {87654}), (Shares{1, 1, 0}));                            // 0 is never the best
  EXPECT_EQ(low_shares(54321, {}), (Shares{1, 1}));                                    // alone
  Shares ten(11, 0.1);                                                                 // ten tied players: a tenth each
  ten[0] = 1;
  EXPECT_EQ(low_shares(65432, std::vector<int>(9, 65432)), ten);
  // Nobody with a low: 0, and nothing written.
  EXPECT_EQ(low_shares(0, {0, 0, 0}), (Shares{0, -1, -1, -1, -1}));
}

// ---- the pokermath:: API ---------------------------------------------------------------------------

TEST(OmahaLowApi, RefusesBadInputNamingIt) {
  const auto message = [](const std::vector<int>& hole, const std::vector<int>& board) {
    return test_util::error_of([&] { pokermath::omaha_low(hole, board); });
  };
  EXPECT_EQ(message(cards("Ac2d3h"), cards("4c5d6h")), "expected 4 to 6 hole cards, got 3");
  EXPECT_EQ(message(cards("Ac2d3h4s5c6d7h"), cards("8c9dTh")), "expected 4 to 6 hole cards, got 7");
  EXPECT_EQ(message(cards("Ac2d3h4s"), cards("4c5d")), "expected 3 to 5 board cards, got 2");
  EXPECT_EQ(message(cards("Ac2d3h4s"), cards("4c5d6h7h8h9h")), "expected 3 to 5 board cards, got 6");
  EXPECT_EQ(message({12, 13, 52, 1}, cards("4c5d6h")), "bad card code 52 at hole position 3: must be 0..51");
  EXPECT_EQ(message(cards("Ac2d3h4s"), {2, -1, 5}), "bad card code -1 at board position 2: must be 0..51");
  EXPECT_EQ(message({12, 13, 12, 1}, cards("4c5d6h")), "duplicate card 'Ac' at hole position 3");
  EXPECT_EQ(message(cards("Ac2d3h4s"), {3, 4, 3}), "duplicate card '5c' at board position 3");
  EXPECT_EQ(message(cards("Ac2d3h4s"), cards("5c6c3h")), "card '3h' at board position 3 is also in the hole");
}

TEST(OmahaLowApi, LowValuesReadHighestCardFirst) {
  EXPECT_EQ(pokermath::omaha_low_to_string(54321), "5-4-3-2-A");
  EXPECT_EQ(pokermath::omaha_low_to_string(87654), "8-7-6-5-4");
  EXPECT_EQ(pokermath::omaha_low_to_string(86432), "8-6-4-3-2");
  EXPECT_EQ(pokermath::omaha_low_to_string(0), "no low");
  for (int bad : {12345, 54320, 94321, 55321, 654321, 4321, -54321, 1})
    EXPECT_THROW(pokermath::omaha_low_to_string(bad), pokermath::Error) << bad;
  // Every value the search can produce reads back.
  int shown = 0;
  for (unsigned bits = 0; bits < 512; bits += 2)  // bit 0 is no rank
    if (const int low = reference::low_of_rank_bits(bits)) {
      EXPECT_EQ(pokermath::omaha_low_to_string(low).size(), 9u) << low;
      ++shown;
    }
  EXPECT_EQ(shown, 56);  // C(8, 5) lows
}

}  // namespace

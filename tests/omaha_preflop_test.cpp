// Exact Omaha pre-flop equities against a plain brute force over boards and opponent holdings, on
// decks of a few ranks where every deal of a holding can be played out.
#include <gtest/gtest.h>

#include <bit>
#include <random>

#include "pokermath/equity.h"
#include "reference_low.h"
#include "test_util.h"

namespace pokermath {
namespace {

// The cards of the given ranks (rank index 0 = deuce .. 12 = ace) in every suit.
uint64_t deck_of(std::initializer_list<int> ranks) {
  uint64_t deck = 0;
  for (int rank : ranks)
    for (int suit = 0; suit < 4; ++suit) deck |= uint64_t{1} << (13 * suit + rank);
  return deck;
}

std::vector<int> cards_of(uint64_t mask) {
  std::vector<int> out;
  for (; mask; mask &= mask - 1) out.push_back(std::countr_zero(mask));
  return out;
}

// Calls visit(mask) for every set of k cards of `from`.
template <typename Visit>
void for_each_subset(const std::vector<int>& from, int k, Visit visit, size_t first = 0, uint64_t mask = 0) {
  if (k == 0) return visit(mask);
  for (size_t i = first; i + k <= from.size(); ++i) for_each_subset(from, k - 1, visit, i + 1, mask | uint64_t{1} << from[i]);
}

// The hero's pot share in quarters summed over every board and opponent holding of the deck.
double brute_force_equity(uint64_t hero, uint64_t deck, int hole, bool hi_lo) {
  const std::vector<int> hero_cards = cards_of(hero);
  int64_t quarters = 0, deals = 0;
  for_each_subset(cards_of(deck & ~hero), 5, [&](uint64_t board) {
    const std::vector<int> board_cards = cards_of(board);
    const int hero_high = test_util::best_two_plus_three(hero_cards.data(), hole, board_cards.data());
    const int hero_low = hi_lo ? reference::omaha_low(hero_cards, board_cards) : 0;
    for_each_subset(cards_of(deck & ~hero & ~board), hole, [&](uint64_t villain) {
      const std::vector<int> villain_cards = cards_of(villain);
      const int villain_high = test_util::best_two_plus_three(villain_cards.data(), hole, board_cards.data());
      const int high = hero_high > villain_high ? 2 : hero_high == villain_high ? 1 : 0;  // halves of the high pot
      ++deals;
      const int villain_low = hi_lo ? reference::omaha_low(villain_cards, board_cards) : 0;
      if (hero_low == 0 && villain_low == 0) {
        quarters += 2 * high;
        return;
      }
      const int low = villain_low == 0 || (hero_low != 0 && hero_low < villain_low) ? 2
                      : hero_low == villain_low                                       ? 1
                                                                                      : 0;
      quarters += high + low;
    });
  });
  return static_cast<double>(quarters) / (4.0 * static_cast<double>(deals));
}

TEST(OmahaPreflop, EveryClassEqualsABruteForceOnSmallDecks) {
  struct Case {
    EquityGame game;
    uint64_t deck;
    int heroes;  // classes checked against the brute force
  };
  const Case cases[] = {
      {EquityGame::Omaha, deck_of({8, 9, 10, 11, 12}), 1},     // T..A: straights and flushes
      {EquityGame::OmahaHiLo, deck_of({12, 0, 1, 2, 3}), 2},   // A..5: a low on most boards
      {EquityGame::Omaha5HiLo, deck_of({12, 0, 1, 11}), 4},    // a low needs five ranks: none here
      {EquityGame::Omaha5, deck_of({8, 9, 10, 11}), 4},
  };
  std::mt19937 rng(17);
  for (const Case& c : cases) {
    const int hole = c.game == EquityGame::Omaha5 || c.game == EquityGame::Omaha5HiLo ? 5 : 4;
    const bool hi_lo = c.game == EquityGame::OmahaHiLo || c.game == EquityGame::Omaha5HiLo;
    const std::vector<OmahaPreflopEquity> table = compute_omaha_preflop(c.game, c.deck, 2);
    // The classes hold every holding once, and the equities of all holdings average to one half.
    double holdings = 0, sum = 0;
    for (const OmahaPreflopEquity& e : table) holdings += e.holdings, sum += e.holdings * e.equity;
    uint64_t all = 1;
    for (int i = 0; i < hole; ++i) all = all * (std::popcount(c.deck) - i) / (i + 1);
    EXPECT_EQ(holdings, static_cast<double>(all));
    EXPECT_NEAR(sum / holdings, 0.5, 1e-12);
    for (int64_t k = 0; k < test_util::sweep_size(c.heroes, 1); ++k) {
      const OmahaPreflopEquity& e = table[rng() % table.size()];
      EXPECT_NEAR(e.equity, brute_force_equity(e.holding_class, c.deck, hole, hi_lo), 1e-12)
          << omaha_holding_to_string(e.holding_class);
    }
  }
  // One thread or two, the same numbers; bad input.
  const std::vector<OmahaPreflopEquity> one = compute_omaha_preflop(EquityGame::OmahaHiLo, deck_of({12, 0, 1, 2, 3}), 1);
  const std::vector<OmahaPreflopEquity> two = compute_omaha_preflop(EquityGame::OmahaHiLo, deck_of({12, 0, 1, 2, 3}), 2);
  for (size_t i = 0; i < one.size(); ++i) EXPECT_EQ(one[i].equity, two[i].equity);
  EXPECT_NE(test_util::error_of([] { compute_omaha_preflop(EquityGame::Holdem); }).find("Omaha"), std::string::npos);
  EXPECT_NE(test_util::error_of([] { compute_omaha_preflop(EquityGame::Omaha, deck_of({12, 0, 1})); })
                .find("a deck of 12 cards cannot deal"),
            std::string::npos);
}

}  // namespace
}  // namespace pokermath

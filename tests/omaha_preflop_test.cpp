// Exact Omaha pre-flop equities against a plain brute force over boards and opponent holdings, on
// decks of a few ranks where every deal of a holding can be played out.
#include <gtest/gtest.h>

#include <bit>
#include <fstream>
#include <map>
#include <random>

#include "pokermath/equity.h"
#include "reference_low.h"
#include "support/data_dir.h"
#include "temp_dir.h"
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
  for (size_t i = first; i + k <= from.size(); ++i)
    for_each_subset(from, k - 1, visit, i + 1, mask | uint64_t{1} << from[i]);
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
                      : hero_low == villain_low                                     ? 1
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
      {EquityGame::Omaha, deck_of({8, 9, 10, 11, 12}), 1},    // T..A: straights and flushes
      {EquityGame::OmahaHiLo, deck_of({12, 0, 1, 2, 3}), 2},  // A..5: a low on most boards
      {EquityGame::Omaha5HiLo, deck_of({12, 0, 1, 11}), 4},   // a low needs five ranks: none here
      {EquityGame::Omaha5, deck_of({8, 9, 10, 11}), 4},
      {EquityGame::Omaha6, deck_of({8, 9, 10, 11, 12}), 2},
      {EquityGame::Omaha6HiLo, deck_of({12, 0, 1, 2, 3}), 2},
  };
  std::mt19937 rng(17);
  for (const Case& c : cases) {
    const int hole = c.game == EquityGame::Omaha5 || c.game == EquityGame::Omaha5HiLo   ? 5
                     : c.game == EquityGame::Omaha6 || c.game == EquityGame::Omaha6HiLo ? 6
                                                                                          : 4;
    const bool hi_lo =
        c.game == EquityGame::OmahaHiLo || c.game == EquityGame::Omaha5HiLo || c.game == EquityGame::Omaha6HiLo;
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
  const std::vector<OmahaPreflopEquity> one =
      compute_omaha_preflop(EquityGame::OmahaHiLo, deck_of({12, 0, 1, 2, 3}), 1);
  const std::vector<OmahaPreflopEquity> two =
      compute_omaha_preflop(EquityGame::OmahaHiLo, deck_of({12, 0, 1, 2, 3}), 2);
  for (size_t i = 0; i < one.size(); ++i) EXPECT_EQ(one[i].equity, two[i].equity);
  EXPECT_NE(test_util::error_of([] { compute_omaha_preflop(EquityGame::Holdem); }).find("Omaha"), std::string::npos);
  EXPECT_NE(test_util::error_of([] {
              compute_omaha_preflop(EquityGame::Omaha, deck_of({12, 0, 1}));
            }).find("a deck of 12 cards cannot deal"),
            std::string::npos);
}

// The table made in checkpointed units equals the in-memory computation; its ranks and percentiles
// follow the equities; a stopped run resumes; damage is found.
TEST(OmahaPreflop, TableInUnitsAnswersLikeTheComputation) {
  const test_util::TempDir dir;
  const uint64_t deck = deck_of_ranks("A2345");
  OmahaTableOptions options;
  options.dir = dir.path();
  options.deck = deck;
  options.unit_boards = 5;
  options.threads = 2;
  std::stop_source stop;
  int units_seen = 0;
  const TableProgress stop_early = [&](std::string_view, std::string_view stage, double) {
    if (stage == "units" && ++units_seen == 3) stop.request_stop();
  };
  EXPECT_THROW(generate_omaha_preflop_table(EquityGame::OmahaHiLo, options, stop_early, stop.get_token()), Cancelled);
  std::vector<std::string> notices;
  const TableProgress notice = [&](std::string_view, std::string_view stage, double fraction) {
    if (fraction == kNoticeFraction) notices.emplace_back(stage);
  };
  EXPECT_TRUE(generate_omaha_preflop_table(EquityGame::OmahaHiLo, options, notice));
  ASSERT_EQ(notices.size(), 1u);
  EXPECT_NE(notices[0].find("3 of "), std::string::npos) << notices[0];        // the finished units were kept
  EXPECT_FALSE(generate_omaha_preflop_table(EquityGame::OmahaHiLo, options));  // valid: kept

  const auto table = omaha_preflop_table(EquityGame::OmahaHiLo, dir.path(), deck);
  const std::vector<OmahaPreflopEquity> computed = compute_omaha_preflop(EquityGame::OmahaHiLo, deck, 1);
  ASSERT_EQ(table->entries().size(), computed.size());
  uint64_t holdings = 0;
  for (const OmahaPreflopEquity& e : computed) {
    const OmahaPreflopTable::Entry& entry = table->lookup(omaha_suit_class_members(e.holding_class).back());
    EXPECT_EQ(entry.holding_class, e.holding_class);
    EXPECT_EQ(entry.equity, e.equity);
    holdings += e.holdings;
  }
  // Strongest first; equal equities share a rank; the percentile counts the holdings of weaker classes.
  const auto& entries = table->entries();
  EXPECT_EQ(entries.front().rank, 1u);
  EXPECT_EQ(entries.back().percentile, 0.0);
  uint64_t weaker = holdings;
  for (size_t i = 0; i < entries.size(); ++i) {
    if (i > 0) {
      EXPECT_LE(entries[i].equity, entries[i - 1].equity);
      EXPECT_EQ(entries[i].rank == entries[i - 1].rank, entries[i].equity == entries[i - 1].equity);
    }
    if (i == 0 || entries[i].rank != entries[i - 1].rank)
      for (size_t j = i; j < entries.size() && entries[j].rank == entries[i].rank; ++j) weaker -= entries[j].holdings;
    EXPECT_NEAR(entries[i].percentile, 100.0 * static_cast<double>(weaker) / static_cast<double>(holdings), 1e-9);
  }
  EXPECT_THROW(table->lookup(cards_to_mask(parse_cards("KcAc2c3c"))), Error);  // not of the deck

  // A flipped byte in the table, a missing table.
  const std::filesystem::path path = dir.path() / omaha_preflop_table_name(EquityGame::OmahaHiLo, deck);
  std::fstream(path, std::ios::in | std::ios::out | std::ios::binary).seekp(60).put('\x55');
  const test_util::TempDir other;
  std::filesystem::copy(dir.path(), other.path(), std::filesystem::copy_options::recursive);
  EXPECT_NE(
      test_util::error_of([&] { omaha_preflop_table(EquityGame::OmahaHiLo, other.path(), deck); }).find("damaged"),
      std::string::npos);
  EXPECT_NE(test_util::error_of([&] {
              omaha_preflop_table(EquityGame::Omaha, other.path(), deck);
            }).find("pokermath tables --omaha-preflop 4"),
            std::string::npos);
  EXPECT_THROW(omaha_preflop_table_name(EquityGame::Omaha, deck | uint64_t{1} << 8), Error);  // not whole ranks
}

// With an exact table in the data directory, shares ("2%") read it instead of the sampled ranking.
// The table here is made up (every class at one half but the class of 2c2d2h3c, on top), so the
// share shows which ranking it read.
TEST(OmahaPreflop, SharesReadTheExactTable) {
  const test_util::TempDir dir;
  std::map<uint64_t, uint32_t> classes;
  const std::vector<int> all = cards_of((uint64_t{1} << 52) - 1);
  for_each_subset(all, 4, [&](uint64_t holding) { ++classes[omaha_suit_class(holding)]; });
  const uint64_t deals = uint64_t{1712304} * 123410;  // C(48,5) boards x C(43,4) opponents
  std::vector<char> bytes;
  auto put = [&](uint64_t v, int n) {
    for (int b = 0; b < n; ++b) bytes.push_back(static_cast<char>(v >> (8 * b)));
  };
  bytes.insert(bytes.end(), {'P', 'M', 'O', 'E', 'X', 'C', 'T', '1'});
  put(4, 4), put(0, 4), put((uint64_t{1} << 52) - 1, 8), put(classes.size(), 4), put(0, 4), put(deals, 8),
      put(270725, 8);
  const uint64_t top = omaha_suit_class(cards_to_mask(parse_cards("2c2d2h3c")));
  for (const auto& [mask, size] : classes)
    put(mask, 8), put(size, 4), put(uint64_t{size} * deals * (mask == top ? 4 : 2), 8);
  detail::Checksum sum;
  sum.update(bytes.data(), bytes.size());
  put(sum.digest(), 8);
  const std::filesystem::path path = dir.path() / omaha_preflop_table_name(EquityGame::Omaha);
  std::ofstream(path, std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  detail::record_table(path);

  const auto ranking = omaha_ranking(EquityGame::Omaha, dir.path());
  EXPECT_EQ(ranking->std_error, 0.0);
  EXPECT_EQ(ranking->classes.front(), top);
  EXPECT_EQ(omaha_preflop_table(EquityGame::Omaha, dir.path())->lookup(cards_to_mask(parse_cards("2s2h2d3s"))).rank,
            1u);
  // Without an exact 6-card table, a 6-card share says how to make one.
  EXPECT_NE(test_util::error_of([&] {
              parse_omaha_range("5%", EquityGame::Omaha6, dir.path());
            }).find("pokermath tables --omaha-preflop 6"),
            std::string::npos);
}

}  // namespace
}  // namespace pokermath

// Every four-card holding on a few hundred random boards of 3, 4 and 5 cards: the general low search
// agrees with a brute force over all 2+3 combinations. On the river boards the four-card search with
// its in-place slot sort finds a low exactly when the general search does, and CDeck's search gives
// PokerLogic's answer. Two-card holdings (the nut check's) and random five- and six-card holdings too.
#include <gtest/gtest.h>

#include <array>

#include "reference_low.h"
#include "test_util.h"

namespace {

using test_util::names;

// The value of every set of low-rank bits, from the reference (bit r = rank r, ace = 1).
const std::array<int, 512>& low_by_bits() {
  static const std::array<int, 512> table = [] {
    std::array<int, 512> t{};
    for (unsigned bits = 0; bits < 512; ++bits) t[bits] = reference::low_of_rank_bits(bits);
    return t;
  }();
  return table;
}

// The rank bits of each board triple that can be part of a low; triples that cannot are left out,
// since no holding makes a low with them.
std::vector<unsigned> low_triples(const std::vector<int>& board) {
  std::vector<unsigned> triples;
  const int n = static_cast<int>(board.size());
  for (int k = 0; k < n; ++k)
    for (int l = k + 1; l < n; ++l)
      for (int m = l + 1; m < n; ++m) {
        const int three[3] = {board[k], board[l], board[m]};
        if (const unsigned bits = reference::low_rank_bits(three)) triples.push_back(bits);
      }
  return triples;
}

// Brute force over every hole pair and every low board triple.
int brute_low(const int* hole, int n_hole, const std::vector<unsigned>& triples) {
  int best = 0;
  for (int i = 0; i < n_hole; ++i)
    for (int j = i + 1; j < n_hole; ++j) {
      const int two[2] = {hole[i], hole[j]};
      const unsigned pair = reference::low_rank_bits(two);
      if (pair == 0) continue;
      for (unsigned triple : triples) {
        if (pair & triple) continue;
        const int low = low_by_bits()[pair | triple];
        if (best == 0 || low < best) best = low;
      }
    }
  return best;
}

struct Problems {
  int64_t count = 0;
  std::string first;
  void add(const std::string& what) {
    if (count++ == 0) first = what;
  }
};

std::string deal(const int* hole, int n_hole, const std::vector<int>& board) {
  return names(std::vector<int>(hole, hole + n_hole)) + " on " + names(board);
}

// Random boards: a third each of flops, turns and rivers.
std::vector<std::vector<int>> random_boards(int count) {
  std::mt19937 engine(20240611);
  std::vector<std::vector<int>> boards;
  for (int i = 0; i < count; ++i) boards.push_back(test_util::random_cards(engine, 3 + i % 3));
  return boards;
}

TEST(OmahaLowExhaustive, GeneralSearchMatchesBruteForceForEveryFourCardHolding) {
  PokerLogic logic;
  CDeck deck;
  Problems general, slots_found, deck_vs_logic;
  int64_t holdings = 0, lows = 0, slot_differences = 0;
  for (const std::vector<int>& board : random_boards(static_cast<int>(test_util::sweep_size(300, 3)))) {
    const int nb = static_cast<int>(board.size());
    const std::vector<unsigned> triples = low_triples(board);
    test_util::for_each_set(4, ArrayToInt64(nb, board.data()), [&](const int* hole) {
      ++holdings;
      const int low = SetLowValueCombinationOmahaCommon(hole, 4, board.data(), nb);
      const int expected = brute_low(hole, 4, triples);
      lows += low != 0;
      if (low != expected)
        general.add(deal(hole, 4, board) + ": " + std::to_string(low) + ", brute force " + std::to_string(expected));
      if (nb != 5) return;
      const int sorted = logic.SetLowValueCombinationOmaha(hole, board.data());
      slot_differences += sorted != low;
      if ((sorted == 0) != (low == 0))
        slots_found.add(deal(hole, 4, board) + ": slot sort " + std::to_string(sorted) + ", general " +
                        std::to_string(low));
      deck.m_cards.clear();
      for (int card : {hole[0], hole[1], hole[2], hole[3]}) deck.AddCard(CCard(card));
      for (int card : board) deck.AddCard(CCard(card));
      deck.SetLowValueCombinationOmaha(logic);
      if (deck.m_lowValue != sorted)
        deck_vs_logic.add(deal(hole, 4, board) + ": CDeck " + std::to_string(deck.m_lowValue) + ", PokerLogic " +
                          std::to_string(sorted));
    });
  }
  EXPECT_EQ(general.count, 0) << general.first;
  EXPECT_EQ(slots_found.count, 0) << slots_found.first;
  EXPECT_EQ(deck_vs_logic.count, 0) << deck_vs_logic.first;
  EXPECT_GT(lows, holdings / 20);  // the boards hold plenty of lows, so the agreement means something
  if (!test_util::kSanitized) {
    EXPECT_GT(slot_differences, 0);  // the sweep does meet the slot sort's different answers
  }
}

TEST(OmahaLowExhaustive, TwoCardHoldingsMatchBruteForce) {
  Problems problems;
  for (const std::vector<int>& board : random_boards(static_cast<int>(test_util::sweep_size(300, 3)))) {
    const int nb = static_cast<int>(board.size());
    const std::vector<unsigned> triples = low_triples(board);
    test_util::for_each_set(2, ArrayToInt64(nb, board.data()), [&](const int* hole) {
      const int low = SetLowValueCombinationOmahaCommon(hole, 2, board.data(), nb);
      const int expected = brute_low(hole, 2, triples);
      if (low != expected)
        problems.add(deal(hole, 2, board) + ": " + std::to_string(low) + ", brute force " + std::to_string(expected));
    });
  }
  EXPECT_EQ(problems.count, 0) << problems.first;
}

TEST(OmahaLowExhaustive, FiveAndSixCardHoldingsMatchBruteForce) {
  std::mt19937 engine(77);
  Problems problems;
  const int64_t deals = test_util::sweep_size(2000000, 20000);
  for (int64_t i = 0; i < deals; ++i) {
    const int n_hole = 5 + static_cast<int>(i % 2), n_board = 3 + static_cast<int>(i / 2 % 3);
    int cards[11];
    test_util::random_cards(engine, n_hole + n_board, cards);
    const std::vector<int> board(cards + n_hole, cards + n_hole + n_board);
    const int low = SetLowValueCombinationOmahaCommon(cards, n_hole, board.data(), n_board);
    const int expected = reference::omaha_low(std::span<const int>(cards, n_hole), board);
    if (low != expected)
      problems.add(deal(cards, n_hole, board) + ": " + std::to_string(low) + ", brute force " +
                   std::to_string(expected));
  }
  EXPECT_EQ(problems.count, 0) << problems.first;
}

}  // namespace

// The two Omaha nut checks agree on whether a hand is the nuts, on thousands of random flops and
// turns; half the hands are built from a nut holding so that both answers occur often.
#include <gtest/gtest.h>

#include "test_util.h"

namespace {

TEST(OmahaNutsExhaustive, FourCardAndTwoCardNutChecksAgree) {
  PokerLogic logic;
  std::mt19937 engine(21);
  const int deals = static_cast<int>(test_util::sweep_size(3000, 150));
  int nuts = 0, not_nuts = 0;
  for (int d = 0; d < deals; ++d) {
    const int n_board = 3 + d % 2;
    int cards[8];
    test_util::random_cards(engine, n_board, cards);
    const std::vector<int> board(cards, cards + n_board);
    std::vector<int> hole;
    if (d % 4 < 2) {
      // A nut holding plus two random cards.
      const pokermath::OmahaNuts best = pokermath::omaha_nuts(board);
      const auto& pair = best.holdings[engine() % best.holdings.size()];
      hole = {pair[0], pair[1]};
      uint64_t dead = pokermath::cards_to_mask(board) | (1ull << pair[0]) | (1ull << pair[1]);
      const std::vector<int> rest = test_util::random_cards(engine, 2, dead);
      hole.insert(hole.end(), rest.begin(), rest.end());
    } else {
      hole = test_util::random_cards(engine, 4, pokermath::cards_to_mask(board));
    }
    const int four = logic.IsMyHandNutsOmaha(hole.data(), board.data(), n_board);
    const int two = IsMyHandNutsOmahaFsm5Common(hole.data(), 4, board.data(), n_board);
    ASSERT_EQ(four == 0, two == 0) << test_util::names(hole) << " on " << test_util::names(board) << ": " << four
                                   << " four-card holdings, " << two << " pairs beat it";
    ASSERT_EQ(four > 0, two > 0);
    (four == 0 ? nuts : not_nuts) += 1;
  }
  EXPECT_GT(nuts, deals / 3);
  EXPECT_GT(not_nuts, deals / 3);
}

}  // namespace

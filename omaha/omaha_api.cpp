// The pokermath:: Omaha API: validated best hands, outs and nuts.
#include <bit>

#include "omaha/input_checks.h"
#include "omaha/omaha_internal.h"
#include "pokermath/omaha.h"

namespace pokermath {

namespace {

// The board of a nut question (3 to 5 cards) and the dead cards: codes 0..51, none twice.
void check_board_and_dead(std::span<const int> board, std::span<const int> dead) {
  if (board.size() < 3 || board.size() > 5)
    throw Error("expected 3 to 5 board cards, got " + std::to_string(board.size()));
  std::vector<int> all(board.begin(), board.end());
  all.insert(all.end(), dead.begin(), dead.end());
  cards_to_mask(all);
}

OmahaHand describe(int value, const int* hole, const int* board, const int* used) {
  OmahaHand hand;
  hand.value = value;
  hand.hand_class = 7463 - value;
  hand.category = category_of_class(hand.hand_class);
  hand.hole_used = {hole[used[0]], hole[used[1]]};
  hand.board_used = {board[used[2]], board[used[3]], board[used[4]]};
  const int five[5] = {hand.hole_used[0], hand.hole_used[1], hand.board_used[0], hand.board_used[1],
                       hand.board_used[2]};
  hand.description = evaluate_hand(five).description;
  return hand;
}

OmahaHand best_unchecked(std::span<const int> hole, std::span<const int> board) {
  int used[5];
  const int value = getCombinationOmahaFsm5Common(hole.data(), static_cast<int>(hole.size()), board.data(),
                                                  static_cast<int>(board.size()), used);
  return describe(value, hole.data(), board.data(), used);
}

}  // namespace

OmahaHand omaha_best(std::span<const int> hole, std::span<const int> board) {
  detail::check_hole_and_board(hole, board, 3, 5);
  return best_unchecked(hole, board);
}

OmahaOuts omaha_outs(std::span<const int> hole, std::span<const int> board) {
  if (board.size() == 5) throw Error("outs need a flop or a turn: a board of 3 or 4 cards, got 5");
  detail::check_hole_and_board(hole, board, 3, 4);
  OmahaOuts result;
  result.current = best_unchecked(hole, board);
  const int n_hole = static_cast<int>(hole.size()), n_board = static_cast<int>(board.size());
  result.unseen = 52 - n_hole - n_board;
  int extended[5];
  std::copy(board.begin(), board.end(), extended);
  detail::for_each_state_machine_out(hole.data(), n_hole, board.data(), n_board, [&](int card, int value, int) {
    extended[n_board] = card;
    OmahaOut out;
    out.card = card;
    out.value = value;
    out.category = category_of_class(7463 - value);
    out.nut = IsMyHandNutsOmahaFsm5Common(hole.data(), n_hole, extended, n_board + 1) == 0;
    result.nut_outs += out.nut;
    result.outs.push_back(out);
  });
  return result;
}

OmahaNuts omaha_nuts(std::span<const int> board, std::span<const int> dead) {
  check_board_and_dead(board, dead);
  const uint64_t seen =
      detail::seen_cards(dead.data(), static_cast<int>(dead.size()), board.data(), static_cast<int>(board.size()));
  if (const int left = 52 - std::popcount(seen); left < 2)
    throw Error("no two-card holding can be made: the board and the dead cards leave " + std::to_string(left) +
                (left == 1 ? " card" : " cards") + " of 52");
  const detail::NutHoldings nuts = detail::nut_holdings(seen, board.data(), static_cast<int>(board.size()));
  OmahaNuts result;
  result.value = nuts.value;
  result.category = category_of_class(7463 - nuts.value);
  result.holdings = nuts.holdings;
  result.description = best_unchecked(nuts.holdings.front(), board).description;
  return result;
}

}  // namespace pokermath

// Omaha outs, draws and nuts. Every function follows one pattern: evaluate the current best hand,
// then try each unseen card (neither a hole card nor on the board, in ascending code order) as the
// next board card and evaluate again.
#include <algorithm>

#include "omaha/holdings.h"
#include "omaha/omaha_internal.h"
#include "pokermath/omaha.h"

namespace pokermath::detail {

uint64_t seen_cards(const int* hole, int nHole, const int* board, int nBoard) {
  return ArrayToInt64(nHole, hole) | ArrayToInt64(nBoard, board);
}

int best_pair_value(const int* pair, const int* board, int nBoard) {
  int out[5];
  return getCombinationOmahaFsm5Common(pair, 2, board, nBoard, out);
}

NutHoldings nut_holdings(uint64_t seen, const int* board, int nBoard) {
  NutHoldings nuts;
  for_each_unseen_pair(seen, [&](int a, int b) {
    const int pair[2] = {a, b};
    const int value = best_pair_value(pair, board, nBoard);
    if (value > nuts.value) {
      nuts.value = value;
      nuts.holdings.clear();
    }
    if (value == nuts.value) nuts.holdings.push_back({a, b});
  });
  return nuts;
}

}  // namespace pokermath::detail

using namespace pokermath::detail;

namespace {

constexpr int kBadBoard = -5;

bool draw_board(int nBoard) { return nBoard == 3 || nBoard == 4; }

// Prime-product class of four hole cards with a flop, turn or river.
int prime_class(const PokerLogic& logic, const int* hole, const int* board, int nBoard) {
  int out[5];
  if (nBoard == 3) return logic.getCombinationOmahaFlop(hole, board, out);
  if (nBoard == 4) return logic.getCombinationOmahaTurn(hole, board, out);
  return logic.getCombinationOmaha(hole, board, out);
}

// The seven-card table's category (1 high card .. 9 straight flush) of a prime-product class.
int table_category(int hand_class) { return pokermath::category_scale_value(hand_class) >> 12; }

// The board extended by one card.
struct Extended {
  int cards[6];
  Extended(const int* board, int nBoard, int card) {
    std::copy(board, board + nBoard, cards);
    cards[nBoard] = card;
  }
};

}  // namespace

int PokerLogic::isFlushDraw(const int* hole, const int* board, int nBoard) const {
  if (nBoard < 3) return 0;
  int suit_count[4] = {};
  for (int i = 0; i < 2; ++i) ++suit_count[hole[i] / 13];
  for (int i = 0; i < nBoard; ++i) ++suit_count[board[i] / 13];
  for (int s = 0; s < 4; ++s) {
    if (suit_count[s] < 4) continue;
    int highest = 0;
    for (int i = 0; i < 2; ++i)
      if (hole[i] / 13 == s) highest = std::max(highest, hole[i] % 13);
    return highest;
  }
  return -1;
}

int PokerLogic::IsMyHandNutsOmaha(const int* hole, const int* board, int nBoard) const {
  if (nBoard < 3 || nBoard > 5) return kBadBoard;
  const int mine = 7463 - prime_class(*this, hole, board, nBoard);
  int better = 0;
  HoldingValues(seen_cards(hole, 4, board, nBoard), board, nBoard).for_each([&](int, int, int, int, int value) {
    better += value > mine;
  });
  return better;
}

int IsMyHandNutsOmahaFsm5Common(const int* hole, int nHole, const int* board, int nBoard) {
  if (nBoard < 3 || nBoard > 5) return kBadBoard;
  int out[5];
  const int mine = getCombinationOmahaFsm5Common(hole, nHole, board, nBoard, out);
  int better = 0;
  for_each_unseen_pair(seen_cards(hole, nHole, board, nBoard), [&](int a, int b) {
    const int pair[2] = {a, b};
    better += best_pair_value(pair, board, nBoard) > mine;
  });
  return better;
}

int PokerLogic::GetFlushDrawOutsOmaha(CHandOmahaType& hand, int& flushOuts, int& straightFlushOuts) const {
  flushOuts = straightFlushOuts = 0;
  const int n = hand.boardCount;
  if (!draw_board(n)) return kBadBoard;
  int suits[4], count = 0;
  const int draws = hand.isFlushDrawOmaha(suits, count);
  if (draws <= 0) return draws;
  for_each_unseen(seen_cards(hand.hole, 4, hand.board, n), [&](int card) {
    const Extended board(hand.board, n, card);
    const int category = table_category(prime_class(*this, hand.hole, board.cards, n + 1));
    // Any card that leaves the hand a flush counts, also when the flush was made already.
    int* counter = category == 6 ? &flushOuts : category == 9 ? &straightFlushOuts : nullptr;
    if (!counter) return;
    *counter += 1;
    if (IsMyHandNutsOmaha(hand.hole, board.cards, n + 1) == 0) *counter += 100;
  });
  return draws;
}

int PokerLogic::GetStraightDrawOutsOmaha(const int* hole, const int* board, int nBoard, int& outs) const {
  outs = 0;
  if (!draw_board(nBoard)) return kBadBoard;
  if (table_category(prime_class(*this, hole, board, nBoard)) == 5) return 5;
  for_each_unseen(seen_cards(hole, 4, board, nBoard), [&](int card) {
    const Extended extended(board, nBoard, card);
    if (table_category(prime_class(*this, hole, extended.cards, nBoard + 1)) != 5) return;
    outs += 1;
    if (IsMyHandNutsOmaha(hole, extended.cards, nBoard + 1) == 0) outs += 100;
  });
  return 1;
}

int PokerLogic::GetFullHouseOutsOmaha(const int* hole, const int* board, int nBoard, int& fullHouseOuts,
                                      int& quadsOuts) const {
  fullHouseOuts = quadsOuts = 0;
  if (!draw_board(nBoard)) return kBadBoard;
  const int current = table_category(prime_class(*this, hole, board, nBoard));
  if (current < 3 || current > 6) return 7;
  for_each_unseen(seen_cards(hole, 4, board, nBoard), [&](int card) {
    const Extended extended(board, nBoard, card);
    const int category = table_category(prime_class(*this, hole, extended.cards, nBoard + 1));
    int* counter = category == 7 ? &fullHouseOuts : category == 8 ? &quadsOuts : nullptr;
    if (!counter) return;
    *counter += 1;
    if (IsMyHandNutsOmaha(hole, extended.cards, nBoard + 1) == 0) *counter += 100;
  });
  return 1;
}

int PokerLogic::getOutsOmahaCommon(const int* hole, int nHole, const int* board, int nBoard, int* outs,
                                   int* nutOuts) const {
  if (!draw_board(nBoard)) return kBadBoard;
  std::fill(outs, outs + 10, 0);
  std::fill(nutOuts, nutOuts + 10, 0);
  int out[5];
  const int current = table_category(getCombinationOmahaCommon(hole, nHole, board, nBoard, out));
  for_each_unseen(seen_cards(hole, nHole, board, nBoard), [&](int card) {
    const Extended extended(board, nBoard, card);
    const int category = table_category(getCombinationOmahaCommon(hole, nHole, extended.cards, nBoard + 1, out));
    if (category <= current) return;  // improvements within a category are not outs here
    outs[category] += 1;
    if (IsMyHandNutsOmahaFsm5Common(hole, nHole, extended.cards, nBoard + 1) == 0) nutOuts[category] += 1;
  });
  return 1;
}

int getOutsOmahaFsm5Common(const int* hole, int nHole, const int* board, int nBoard, int* outs, int* nutOuts) {
  if (!draw_board(nBoard)) return kBadBoard;
  std::fill(outs, outs + 11, 0);
  std::fill(nutOuts, nutOuts + 11, 0);
  for_each_state_machine_out(hole, nHole, board, nBoard, [&](int card, int, int category) {
    const Extended extended(board, nBoard, card);
    outs[category] += 1;
    if (IsMyHandNutsOmahaFsm5Common(hole, nHole, extended.cards, nBoard + 1) == 0) nutOuts[category] += 1;
  });
  return 1;
}

int getOutsOmahaFsm5CommonTwoPairs(const int* hole, int nHole, const int* board, int nBoard, int& outs) {
  outs = 0;
  if (!draw_board(nBoard)) return kBadBoard;
  unsigned board_ranks = 0;
  for (int i = 0; i < nBoard; ++i) {
    if (board_ranks >> (board[i] % 13) & 1) return 0;  // a paired board is not handled
    board_ranks |= 1u << (board[i] % 13);
  }
  int used[5];
  const int current = Get_rankFsm5(getCombinationOmahaFsm5Common(hole, nHole, board, nBoard, used));
  if (current > 3) return 0;
  const int cur_high = std::max(hole[used[0]] % 13, hole[used[1]] % 13);
  const int cur_low = std::min(hole[used[0]] % 13, hole[used[1]] % 13);
  for_each_unseen(seen_cards(hole, nHole, board, nBoard), [&](int card) {
    if (board_ranks >> (card % 13) & 1) return;
    const Extended extended(board, nBoard, card);
    if (Get_rankFsm5(getCombinationOmahaFsm5Common(hole, nHole, extended.cards, nBoard + 1, used)) != 3) return;
    const int a = hole[used[0]] % 13, b = hole[used[1]] % 13;
    const int r2 = extended.cards[used[2]] % 13, r3 = extended.cards[used[3]] % 13, r4 = extended.cards[used[4]] % 13;
    if (a == b || r2 == r3 || r2 == r4 || r3 == r4) return;
    // With two pair already, the same two hole ranks again are no new two pair.
    if (current == 3 && std::max(a, b) == cur_high && std::min(a, b) == cur_low) return;
    outs += 1;
  });
  return outs;
}

int FindAllNuts(const int* hole, int nHole, const int* board, int nBoard, Spec& nutHands, int* outs) {
  if (!draw_board(nBoard)) return 0;
  nutHands.Clear();
  const uint64_t seen = seen_cards(hole, nHole, board, nBoard);
  const NutHoldings nuts = nut_holdings(seen, board, nBoard);
  for (const auto& [a, b] : nuts.holdings) nutHands.AddCard(a, b);
  outs[0] = outs[1] = 0;
  for_each_unseen(seen, [&](int card) {
    const Extended extended(board, nBoard, card);
    int used[5];
    // Measured against the current nut value, not the nut value of the new board.
    if (getCombinationOmahaFsm5Common(hole, nHole, extended.cards, nBoard + 1, used) >= nuts.value) outs[0] += 1;
    if (IsMyHandNutsOmahaFsm5Common(hole, nHole, extended.cards, nBoard + 1) == 0) outs[1] += 1;
  });
  return nutHands.GetSize();
}

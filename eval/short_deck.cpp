// Short-deck ranking in the standard and China orders, and deuce-to-seven lowball, by remapping the
// values of the state-machine evaluators.
#include <algorithm>

#include "eval/short_deck_order.h"
#include "eval/straight.h"
#include "pokermath/eval.h"

namespace {

// Category numbers of a value by the lowest value of each category, from 10 down to 1.
int category_by_floor(int value, const int (&floors)[10]) {
  for (int i = 0; i < 10; ++i)
    if (value >= floors[i]) return 10 - i;
  return 0;
}

}  // namespace

int Get_rank36(int value) {
  static constexpr int kFloors[10] = {1404, 1399, 1327, 1207, 1135, 883, 877, 625, 121, 1};
  return category_by_floor(value, kFloors);
}

int Get_rank36China(int value) {
  static constexpr int kFloors[10] = {1404, 1399, 1327, 1207, 1135, 1129, 877, 625, 121, 1};
  return category_by_floor(value, kFloors);
}

int Get_rankHoldem6PlusFsm5(int value) {
  static constexpr int kFloors[10] = {7462, 7453, 7297, 6020, 5864, 5006, 4996, 4138, 1278, 1};
  return category_by_floor(value, kFloors);
}

int LookupHoldem6PlusFsm5(const int* cards) {
  for (int i = 0; i < 5; ++i)
    if (cards[i] % 13 < 4) return -1;
  int v = LookupFsm5(cards);
  // A-9-8-7-6 is the lowest straight here (the ace plays below the six), suited the lowest straight flush.
  if (v == 853) v = 5854;
  if (v == 6716) v = 7453;
  if (v >= 5854 && v <= 5863) return v - 858;   // straights drop below three of a kind
  if (v >= 4996 && v <= 5853) return v + 10;    // three of a kind rises above them
  if (v >= 7141 && v <= 7296) return v - 1277;  // full houses drop below flushes
  if (v >= 5864 && v <= 7140) return v + 156;   // flushes rise above them
  return v;
}

int eval_7hand6PlusFsm5(const int* cards) {
  int best = 0;
  int five[5];
  for (int a = 0; a < 7; ++a)
    for (int b = a + 1; b < 7; ++b)
      for (int c = b + 1; c < 7; ++c)
        for (int d = c + 1; d < 7; ++d)
          for (int e = d + 1; e < 7; ++e) {
            five[0] = cards[a], five[1] = cards[b], five[2] = cards[c], five[3] = cards[d], five[4] = cards[e];
            best = std::max(best, LookupHoldem6PlusFsm5(five));
          }
  return best;
}

int eval_rank_6China(const int* cards, int boardCount) {
  int v;
  switch (boardCount) {
    case 3: v = eval_rank5_via_fsm5(cards); break;
    case 4: v = eval_rank6_via_fsm5(cards); break;
    case 5: v = eval_rank7_via_fsm7(cards); break;
    default: return 0;
  }
  if (Get_rank36(v) == 5) {
    // Three of a kind in the standard order: a straight among the cards outranks it here.
    const int n = 2 + boardCount;
    int ranks[7];
    for (int i = 0; i < n; ++i) ranks[i] = cards[i] % 13;
    for (int i = 1; i < n; ++i)  // insertion sort, high to low: at most seven ranks
      for (int j = i; j > 0 && ranks[j - 1] < ranks[j]; --j) std::swap(ranks[j - 1], ranks[j]);
    const int top = pokermath::detail::straight_top(ranks, n, 7, 4);
    if (top >= 7) return top + 1122;
  }
  return pokermath::detail::china_value_of_five(v);
}

int getCombination6PlusChinaCommon(const int* hole, const int* board, int boardCount) {
  if (boardCount < 3 || boardCount > 5) return 0;
  int cards[7] = {hole[0], hole[1]};
  std::copy(board, board + boardCount, cards + 2);
  return eval_rank_6China(cards, boardCount);
}

int Lookup27Lowball(const int* cards) {
  const int v = LookupFsm5(cards);
  // The ace is high only: A-5-4-3-2 is no straight but the weakest ace-high hand, offsuit or suited.
  if (v < 785) return v;
  if (v <= 5853) return v + 1;
  if (v == 5854) return 785;
  if (v <= 6647) return v;
  if (v <= 7452) return v + 1;
  if (v == 7453) return 6648;
  return v;
}

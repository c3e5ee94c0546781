// Omaha eight-or-better lows: the best low under the two-plus-three rule, the nut low, low outs,
// the display classification of a holding's low prospects and the sharing of a low half.
//
// Low ranks count the ace as 1 (ace 1, deuce 2 .. king 13); only ranks 1..8 play. A low value is
// d5*10000 + d4*1000 + d3*100 + d2*10 + d1 for five distinct low ranks d1 < ... < d5, so SMALLER
// is the better low and 0 means none.
#include <bit>
#include <cstdint>
#include <string>
#include <utility>

#include "omaha/input_checks.h"
#include "pokermath/omaha.h"

namespace {

constexpr int kNoLow = 0;
constexpr int kFirstHighRank = 9;  // nines and above never play in an eight-or-better low

// Low rank of a card code; the same number as CCard::GetRank.
constexpr int low_rank(int card) {
  const int r = card % 13;
  return r == 12 ? 1 : r + 2;
}

// The value of five low ranks sorted ascending: the highest in the ten-thousands place, so that
// decimal order compares the highest card first, as low poker ranks them.
int low_value(const int sorted[5]) {
  return sorted[4] * 10000 + sorted[3] * 1000 + sorted[2] * 100 + sorted[1] * 10 + sorted[0];
}

void sort_five(int ranks[5]) {
  for (int i = 1; i < 5; ++i)
    for (int j = i; j > 0 && ranks[j - 1] > ranks[j]; --j) std::swap(ranks[j - 1], ranks[j]);
}

// Whether the rank just written into slots[level] can join the low: below nine, and not held by
// the slot of any outer level.
bool joins(const int* slots, int level) {
  const int rank = slots[level];
  if (rank >= kFirstHighRank) return false;
  for (int i = 0; i < level; ++i)
    if (slots[i] == rank) return false;
  return true;
}

// What happens to the five level slots when a low is complete.
enum class Slots {
  Copied,         // a copy is sorted and valued; the slots keep the chosen cards' ranks
  SortedInPlace,  // the slots themselves are sorted and stay so (the four-card river search)
};

// The best low over the 2+3 combinations: hole pairs i < j outer, board triples k < l < m inner,
// the order of the best-hand searches. Each level writes its slot when its loop moves to a card and
// prunes the card, with everything under it, when the rank cannot join. hole_rank(i) and
// board_rank(k) give the low ranks.
//
// Slots::SortedInPlace keeps a deliberate behaviour of the classic four-card search: the sorted
// slots are not restored, so until an outer level moves on, the inner levels' next cards are
// checked against, and combined with, the sorted contents rather than the ranks of the cards that
// the loops stand on. The result can then be a low that no 2+3 combination makes, or miss the best
// one. The first low found is the same either way (nothing has been sorted before it).
template <Slots kSlots, typename HoleRank, typename BoardRank>
int best_low(HoleRank hole_rank, int n_hole, BoardRank board_rank, int n_board) {
  int slots[5];
  int best = kNoLow;
  for (int i = 0; i < n_hole - 1; ++i) {
    slots[0] = hole_rank(i);
    if (!joins(slots, 0)) continue;
    for (int j = i + 1; j < n_hole; ++j) {
      slots[1] = hole_rank(j);
      if (!joins(slots, 1)) continue;
      for (int k = 0; k < n_board - 2; ++k) {
        slots[2] = board_rank(k);
        if (!joins(slots, 2)) continue;
        for (int l = k + 1; l < n_board - 1; ++l) {
          slots[3] = board_rank(l);
          if (!joins(slots, 3)) continue;
          for (int m = l + 1; m < n_board; ++m) {
            slots[4] = board_rank(m);
            if (!joins(slots, 4)) continue;
            int value;
            if constexpr (kSlots == Slots::SortedInPlace) {
              sort_five(slots);
              value = low_value(slots);
            } else {
              int copy[5] = {slots[0], slots[1], slots[2], slots[3], slots[4]};
              sort_five(copy);
              value = low_value(copy);
            }
            if (best == kNoLow || value < best) best = value;
          }
        }
      }
    }
  }
  return best;
}

// Low ranks of card codes, for best_low.
auto low_ranks_of(const int* cards) {
  return [cards](int i) { return low_rank(cards[i]); };
}

// Number of distinct low ranks below nine among the cards.
int distinct_low_ranks(const int* cards, int count) {
  unsigned ranks = 0;
  for (int i = 0; i < count; ++i)
    if (const int r = low_rank(cards[i]); r < kFirstHighRank) ranks |= 1u << r;
  return std::popcount(ranks);
}

// The mask of the hole and board cards: the cards no opponent holds and no deal brings.
uint64_t seen_cards(const int* hole, int n_hole, const int* board, int n_board) {
  return ArrayToInt64(n_hole, hole) | ArrayToInt64(n_board, board);
}

}  // namespace

// ---- the classic API ---------------------------------------------------------------------------

int SetLowValueCombinationOmahaCommon(const int* hole, int nHole, const int* board, int nBoard) {
  if (nHole < 2 || nBoard < 3 || nBoard > 5) return kNoLow;
  return best_low<Slots::Copied>(low_ranks_of(hole), nHole, low_ranks_of(board), nBoard);
}

int PokerLogic::SetLowValueCombinationOmaha(const int* hole, const int* board) const {
  return best_low<Slots::SortedInPlace>(low_ranks_of(hole), 4, low_ranks_of(board), 5);
}

void CDeck::SetLowValueCombinationOmaha(PokerLogic& /*logic*/) {
  m_lowValue = kNoLow;
  const int count = GetTotalCards();
  if (count < 7) return;
  // Cards 0..3 are the hole, the rest the board; CCard ranks are already low ranks.
  const auto hole = [this](int i) { return m_cards[i].GetRank(); };
  const auto board = [this](int k) { return m_cards[4 + k].GetRank(); };
  m_lowValue = best_low<Slots::SortedInPlace>(hole, 4, board, count - 4);
}

int PokerLogic::IsMyHandNutsOmahaLow(const int* hole, int nHole, const int* board, int nBoard) const {
  if (nBoard < 3 || nBoard > 5) return -5;
  const int mine = SetLowValueCombinationOmahaCommon(hole, nHole, board, nBoard);
  if (mine == kNoLow) return 1;  // no low is never the nut low
  const uint64_t seen = seen_cards(hole, nHole, board, nBoard);
  int better = 0;
  for (int a = 0; a < 51; ++a) {
    if (seen & (uint64_t{1} << a)) continue;
    for (int b = a + 1; b < 52; ++b) {
      if (seen & (uint64_t{1} << b)) continue;
      const int holding[2] = {a, b};
      const int low = SetLowValueCombinationOmahaCommon(holding, 2, board, nBoard);
      if (low != kNoLow && low < mine) ++better;  // ties with my low are not counted
    }
  }
  return better;
}

int PokerLogic::getOutsOmahaLow(const int* hole, int nHole, const int* board, int nBoard, int& outs,
                                int& nutOuts) const {
  if (nBoard != 3 && nBoard != 4) return -5;
  outs = 0;
  nutOuts = 0;
  const int current = SetLowValueCombinationOmahaCommon(hole, nHole, board, nBoard);
  const uint64_t seen = seen_cards(hole, nHole, board, nBoard);
  int extended[5];
  for (int i = 0; i < nBoard; ++i) extended[i] = board[i];
  for (int c = 0; c < 52; ++c) {
    if (seen & (uint64_t{1} << c)) continue;
    extended[nBoard] = c;
    if (SetLowValueCombinationOmahaCommon(hole, nHole, extended, nBoard + 1) == kNoLow) continue;
    if (current == kNoLow) ++outs;  // a card that makes a low I did not have
    if (IsMyHandNutsOmahaLow(hole, nHole, extended, nBoard + 1) == 0) ++nutOuts;
  }
  return 1;
}

int PokerLogic::CountLowCards(const int* hole, int nHole, const int* board, int nBoard, int& lowOrOuts, int& nutOuts,
                              double& probability) const {
  const int b = distinct_low_ranks(board, nBoard);
  // Three distinct low ranks must be able to come on the board.
  if ((b == 0 && nBoard >= 3) || (b < 2 && nBoard >= 4) || (b <= 2 && nBoard == 5)) return 0;
  if (distinct_low_ranks(hole, nHole) < 2) return 1;  // the hand cannot make a low
  lowOrOuts = SetLowValueCombinationOmahaCommon(hole, nHole, board, nBoard);
  if (lowOrOuts != kNoLow) return 2;
  if (b < 3) {
    getOutsOmahaLow(hole, nHole, board, nBoard, lowOrOuts, nutOuts);
    probability = static_cast<double>(lowOrOuts) / (52 - nHole - nBoard);  // one card to come
    return 3;
  }
  return 100;  // three low ranks on board, but my low cards are counterfeited or paired with it
}

int WinLowSummary(int heroLow, const int* otherLows, int nOthers, double& heroShare, double* otherShares) {
  bool anybody = heroLow != kNoLow;
  int best = heroLow != kNoLow ? heroLow : 1000000;
  for (int i = 0; i < nOthers; ++i) {
    if (otherLows[i] == kNoLow) continue;
    anybody = true;
    if (otherLows[i] < best) best = otherLows[i];
  }
  if (!anybody) return 0;  // no low half: the whole pot goes to the high

  int tied = heroLow == best ? 1 : 0;
  for (int i = 0; i < nOthers; ++i)
    if (otherLows[i] == best) ++tied;
  const double share = 1.0 / tied;
  heroShare = heroLow == best ? share : 0.0;
  for (int i = 0; i < nOthers; ++i) otherShares[i] = otherLows[i] == best ? share : 0.0;
  return 1;
}

// ---- the pokermath:: API -----------------------------------------------------------------------

namespace pokermath {

int omaha_low(std::span<const int> hole, std::span<const int> board) {
  detail::check_hole_and_board(hole, board, 3, 5);
  return SetLowValueCombinationOmahaCommon(hole.data(), static_cast<int>(hole.size()), board.data(),
                                           static_cast<int>(board.size()));
}

std::string omaha_low_to_string(int low) {
  if (low == kNoLow) return "no low";
  const auto fail = [low]() -> std::string {
    throw Error("bad low value " + std::to_string(low) +
                ": expected five distinct ranks 1..8, highest first, as in 87654 or 54321 (0 = no low)");
  };
  // Read from the units place (the lowest card) up: the ranks must rise and stay below nine.
  std::string text;
  int rest = low, lower = 0;
  for (int place = 0; place < 5; ++place, rest /= 10) {
    const int rank = rest % 10;
    if (rank <= lower || rank >= kFirstHighRank) return fail();
    lower = rank;
    text.insert(0, std::string(1, rank == 1 ? 'A' : static_cast<char>('0' + rank)) + (place ? "-" : ""));
  }
  if (rest != 0) return fail();
  return text;
}

}  // namespace pokermath

// The Omaha best-hand searches: exactly two hole cards and exactly three board cards, every
// combination in one fixed order (hole pair i < j outside, board triple k < l < m inside), the first
// of equal values kept.
#include <algorithm>
#include <functional>

#include "eval/five_card_internal.h"
#include "fsm5_table.h"
#include "pokermath/omaha.h"

namespace {

using pokermath::detail::five_card_class;
using pokermath::detail::kFsm5;

constexpr int kNoPrimeHand = 100000;  // the prime-product searches' value when nothing was evaluated
constexpr int kNoFsmHand = -1;        // the state-machine searches' value when nothing was evaluated
constexpr int kDeck = 52;

// The prime-product search over nHole x nBoard cards, smallest class first found. The pair's OR, AND
// and prime product are formed once per pair. `report` writes out[] for a new best.
template <typename Report>
int prime_product_search(const CPokerDeck& deck, const int* hole, int nHole, const int* board, int nBoard,
                         Report report) {
  uint32_t h[6], b[5];
  for (int i = 0; i < nHole; ++i) h[i] = deck[hole[i]];
  for (int i = 0; i < nBoard; ++i) b[i] = deck[board[i]];
  int best = kNoPrimeHand;
  for (int i = 0; i + 1 < nHole; ++i)
    for (int j = i + 1; j < nHole; ++j) {
      const uint32_t pair_or = h[i] | h[j], pair_and = h[i] & h[j];
      const uint32_t pair_product = (h[i] & 0xFF) * (h[j] & 0xFF);
      for (int k = 0; k + 2 < nBoard; ++k)
        for (int l = k + 1; l + 1 < nBoard; ++l)
          for (int m = l + 1; m < nBoard; ++m) {
            const int cls = five_card_class(pair_or | b[k] | b[l] | b[m], pair_and & b[k] & b[l] & b[m],
                                            pair_product * (b[k] & 0xFF) * (b[l] & 0xFF) * (b[m] & 0xFF));
            if (cls < best) {
              best = cls;
              report(i, j, k, l, m);
            }
          }
    }
  return best;
}

}  // namespace

int PokerLogic::getCombinationOmahaCommon(const int* hole, int nHole, const int* board, int nBoard, int* out) const {
  if (nHole > 6 || nBoard > 5) return kNoPrimeHand;
  return prime_product_search(m_deck, hole, nHole, board, nBoard, [&](int i, int j, int k, int l, int m) {
    out[0] = i, out[1] = j, out[2] = k, out[3] = l, out[4] = m;
  });
}

namespace {

// The searches with a fixed number of cards report card codes.
int prime_search_codes(const CPokerDeck& deck, const int* hole, const int* board, int nBoard, int* out) {
  return prime_product_search(deck, hole, 4, board, nBoard, [&](int i, int j, int k, int l, int m) {
    out[0] = hole[i], out[1] = hole[j], out[2] = board[k], out[3] = board[l], out[4] = board[m];
  });
}

}  // namespace

int PokerLogic::getCombinationOmaha(const int* hole, const int* board, int* out) const {
  return prime_search_codes(m_deck, hole, board, 5, out);
}

int PokerLogic::getCombinationOmahaTurn(const int* hole, const int* board, int* out) const {
  return prime_search_codes(m_deck, hole, board, 4, out);
}

int PokerLogic::getCombinationOmahaFlop(const int* hole, const int* board, int* out) const {
  return prime_search_codes(m_deck, hole, board, 3, out);
}

int PokerLogic::eval_7handOmaha(const int* hole, const int* board) const {
  int best = 999999;
  for (int i = 0; i < 3; ++i)
    for (int j = i + 1; j < 4; ++j)
      for (int k = 0; k < 3; ++k)
        for (int l = k + 1; l < 4; ++l)
          for (int m = l + 1; m < 5; ++m) {
            int five[5] = {hole[i], hole[j], board[k], board[l], board[m]};
            std::sort(five, five + 5);
            int key = 0;
            for (int c : five) key = key << 6 | c;
            // A key missing from the map takes part as itself: with a complete map it never happens.
            const auto it = m_combinations.find(key);
            best = std::min(best, it != m_combinations.end() ? it->second : key);
          }
  return best;
}

int PokerLogic::LookupHandsOmaha(const int* cards) const {
  int out[5];
  return pokermath::category_scale_value(getCombinationOmaha(cards, cards + 4, out));
}

int PokerLogic::LookupHandsOmahaTurn(const int* cards) const {
  int out[5];
  return pokermath::category_scale_value(getCombinationOmahaTurn(cards, cards + 4, out));
}

int PokerLogic::LookupHandsOmahaFlop(const int* cards) const {
  int out[5];
  return pokermath::category_scale_value(getCombinationOmahaFlop(cards, cards + 4, out));
}

int getCombinationOmahaFsm5Common(const int* hole, int nHole, const int* board, int nBoard, int* out) {
  if (nHole > 6 || nBoard > 5) return kNoFsmHand;
  int h[6], b[5];
  for (int i = 0; i < nHole; ++i) h[i] = pokermath::kRankMajorCodes[hole[i]];
  for (int i = 0; i < nBoard; ++i) b[i] = pokermath::kRankMajorCodes[board[i]];
  // The built-in five-card machine takes the cards in any order, so each hole pair's state and each
  // (pair, k, l) prefix state is read once and shared by the combinations below it.
  int best = kNoFsmHand;
  for (int i = 0; i + 1 < nHole; ++i) {
    const int si = kFsm5[kDeck + h[i]];
    for (int j = i + 1; j < nHole; ++j) {
      const int sij = kFsm5[si + h[j]];
      for (int k = 0; k + 2 < nBoard; ++k) {
        const int sk = kFsm5[sij + b[k]];
        for (int l = k + 1; l + 1 < nBoard; ++l) {
          const int sl = kFsm5[sk + b[l]];
          for (int m = l + 1; m < nBoard; ++m) {
            const int value = kFsm5[sl + b[m]];
            if (value > best) {
              best = value;
              out[0] = i, out[1] = j, out[2] = k, out[3] = l, out[4] = m;
            }
          }
        }
      }
    }
  }
  return best;
}

int getCombinationOmahaFsm7Common(const int* hole, int nHole, const int* board, int nBoard, int* out) {
  return getCombinationOmahaFsm5Common(hole, nHole, board, nBoard, out);
}

int getCombinationOmahaFsm5(const int* hole, const int* board, int* out) {
  return getCombinationOmahaFsm5Common(hole, 4, board, 5, out);
}

int getCombinationOmahaTurnFsm5(const int* hole, const int* board, int* out) {
  return getCombinationOmahaFsm5Common(hole, 4, board, 4, out);
}

int getCombinationOmahaFlopFsm5(const int* hole, const int* board, int* out) {
  // One triple: the board positions are always 0, 1, 2.
  return getCombinationOmahaFsm5Common(hole, 4, board, 3, out);
}

void CDeck::SetValueCombinationOmaha(PokerLogic& logic) {
  m_lowValue = 0;
  std::fill(m_value, m_value + 6, 0);
  const int count = GetTotalCards();
  if (count < 7) return;
  CDeck five;
  for (int i = 0; i < 3; ++i)
    for (int j = i + 1; j < 4; ++j)
      for (int k = 4; k + 2 < count; ++k)
        for (int l = k + 1; l + 1 < count; ++l)
          for (int m = l + 1; m < count; ++m) {
            for (int c : {i, j, k, l, m}) five.AddCard(m_cards[c]);
            five.SetValueCombination(logic);
            if (std::lexicographical_compare(m_value, m_value + 6, five.m_value, five.m_value + 6))
              std::copy(five.m_value, five.m_value + 6, m_value);
            five.DeleteCards();
          }
}

// ---- CHandOmahaType ----------------------------------------------------------------------------------

CHandOmahaType::CHandOmahaType(const int* holeCards, const int* boardCards, int nBoard) : boardCount(nBoard) {
  std::copy(holeCards, holeCards + 4, hole);
  std::copy(boardCards, boardCards + nBoard, board);
  std::sort(hole, hole + 4, std::greater<int>());
  std::sort(board, board + nBoard, std::greater<int>());
  for (int i = 0; i < 4; ++i) {
    holeRank[i] = hole[i] % 13;
    holeSuit[i] = hole[i] / 13;
    ++holeSuitCount[holeSuit[i]];
  }
  for (int i = 0; i < nBoard; ++i) {
    boardRank[i] = board[i] % 13;
    boardSuit[i] = board[i] / 13;
    ++boardSuitCount[boardSuit[i]];
  }
  for (int s = 0; s < 4 && flushSuit < 0; ++s)
    if (boardSuitCount[s] >= 3 && holeSuitCount[s] >= 2) flushSuit = s;
  if (flushSuit < 0) return;
  for (int i = 0; i < 4; ++i)
    if (holeSuit[i] == flushSuit) flushHoleRank[flushHoleCount++] = holeRank[i];
  for (int i = 0; i < nBoard; ++i)
    if (boardSuit[i] == flushSuit) flushBoardRank[flushBoardCount++] = boardRank[i];
}

int CHandOmahaType::isRoyalFlushOmaha() const {
  if (boardCount < 3 || flushSuit == -1) return -1;
  // Walking down from the ace, each rank must come from the hole or the board; the walk ends when a
  // third hole card or a fourth board card would be needed, so a royal flush counts only when it is
  // made of exactly two hole cards and three board cards.
  int a = 0, b = 0;
  for (int r = 12; a < 3 && b < 4; --r) {
    if (r < 8) return 1;
    if (flushHoleRank[a] == r)
      ++a;
    else if (flushBoardRank[b] == r)
      ++b;
    else
      break;
  }
  return -1;
}

int CHandOmahaType::isStraightFlush() const { return -1; }

int CHandOmahaType::isFlushOmaha() const { return flushSuit; }

int CHandOmahaType::getOmahaHand() const {
  if (isRoyalFlushOmaha() == 1) return 117;
  if (isStraightFlush() != -1) return 104;
  if (isFlushOmaha() != -1) return 65;
  return -1;
}

int CHandOmahaType::isFlushDrawOmaha(int* suits, int& count) const {
  count = 0;
  for (int s = 0; s < 4; ++s)
    if (boardSuitCount[s] >= 2 && holeSuitCount[s] >= 2) suits[count++] = s;
  return count;
}

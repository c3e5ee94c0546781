// The prime-product five-card evaluator. A card word carries its rank prime (bits 0..7), rank index
// (8..11), a suit flag (12..15) and a rank bit (16..28):
//   - all five words share a suit flag   -> flush table at the OR of the rank bits;
//   - otherwise five distinct rank bits  -> unique-ranks table at the same pattern;
//   - otherwise a rank repeats           -> the product of the primes names the hand; it is found
//                                           by binary search or by the perfect hash.
#include <cstdio>

#include "eval/five_card_internal.h"
#include "pokermath/eval.h"

using namespace pokermath::detail;

namespace {

// Position of a prime product in kProducts, or -1 after printing the error line.
int find_product(int key) {
  int low = 0, high = kProductTableSize - 1;
  while (low <= high) {
    const int mid = (low + high) >> 1;
    if (key == kProducts[mid]) return mid;
    if (key > kProducts[mid])
      low = mid + 1;
    else
      high = mid - 1;
  }
  std::fprintf(stderr, "ERROR:  no match found; key = %d\n", key);
  return -1;
}

// The 21 five-card subsets of seven cards and the 6 of six cards, in lexicographic order.
constexpr int kSubsets7[21][5] = {{0, 1, 2, 3, 4}, {0, 1, 2, 3, 5}, {0, 1, 2, 3, 6}, {0, 1, 2, 4, 5}, {0, 1, 2, 4, 6},
                                  {0, 1, 2, 5, 6}, {0, 1, 3, 4, 5}, {0, 1, 3, 4, 6}, {0, 1, 3, 5, 6}, {0, 1, 4, 5, 6},
                                  {0, 2, 3, 4, 5}, {0, 2, 3, 4, 6}, {0, 2, 3, 5, 6}, {0, 2, 4, 5, 6}, {0, 3, 4, 5, 6},
                                  {1, 2, 3, 4, 5}, {1, 2, 3, 4, 6}, {1, 2, 3, 5, 6}, {1, 2, 4, 5, 6}, {1, 3, 4, 5, 6},
                                  {2, 3, 4, 5, 6}};
constexpr int kSubsets6[6][5] = {{0, 1, 2, 3, 4}, {0, 1, 2, 3, 5}, {0, 1, 2, 4, 5},
                                 {0, 1, 3, 4, 5}, {0, 2, 3, 4, 5}, {1, 2, 3, 4, 5}};

template <size_t N>
int smallest_over(const int* hand, const int (&subsets)[N][5]) {
  int best = 9999;
  for (const auto& s : subsets) {
    const int cls = eval_5hand_fast(hand[s[0]], hand[s[1]], hand[s[2]], hand[s[3]], hand[s[4]]);
    if (cls < best) best = cls;
  }
  return best;
}

template <size_t N>
int smallest_over_binary(const int* hand, const int (&subsets)[N][5]) {
  int best = 9999;
  for (const auto& s : subsets) {
    const int cls = eval_5cards(hand[s[0]], hand[s[1]], hand[s[2]], hand[s[3]], hand[s[4]]);
    if (cls < best) best = cls;
  }
  return best;
}

}  // namespace

int eval_5cards(int c1, int c2, int c3, int c4, int c5) {
  const int q = (c1 | c2 | c3 | c4 | c5) >> 16;
  if (c1 & c2 & c3 & c4 & c5 & 0xF000) return kFlushes[q];
  if (const int s = kUnique5[q]) return s;
  const int key = (c1 & 0xFF) * (c2 & 0xFF) * (c3 & 0xFF) * (c4 & 0xFF) * (c5 & 0xFF);
  const int pos = find_product(key);
  return pos < 0 ? -1 : kProductValues[pos];
}

int eval_5hand_fast(int c1, int c2, int c3, int c4, int c5) {
  const auto w = [](int c) { return static_cast<uint32_t>(c); };
  return five_card_class(w(c1 | c2 | c3 | c4 | c5), w(c1 & c2 & c3 & c4 & c5),
                         w(c1 & 0xFF) * w(c2 & 0xFF) * w(c3 & 0xFF) * w(c4 & 0xFF) * w(c5 & 0xFF));
}

int eval_5hand(const int* hand) { return eval_5cards(hand[0], hand[1], hand[2], hand[3], hand[4]); }

int eval_6hand(const int* hand) { return smallest_over_binary(hand, kSubsets6); }

int eval_7hand(const int* hand) { return smallest_over_binary(hand, kSubsets7); }

int bsearch(const int* array, int low, int high, int key) {
  while (low <= high) {
    const int mid = low + (high - low) / 2;
    if (array[mid] == key) return mid;
    if (key > array[mid])
      low = mid + 1;
    else
      high = mid - 1;
  }
  return -1;
}

int PokerLogic::eval_5handHoldem(const int* cards) const {
  return eval_5hand_fast(static_cast<int>(m_deck[cards[0]]), static_cast<int>(m_deck[cards[1]]),
                         static_cast<int>(m_deck[cards[2]]), static_cast<int>(m_deck[cards[3]]),
                         static_cast<int>(m_deck[cards[4]]));
}

int PokerLogic::eval_6handHoldem(const int* cards) const {
  int words[6];
  for (int i = 0; i < 6; ++i) words[i] = static_cast<int>(m_deck[cards[i]]);
  return smallest_over(words, kSubsets6);
}

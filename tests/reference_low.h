// A plain reference for eight-or-better Omaha lows, written from the rules of the game and sharing
// no code with the library: every two hole cards with every three board cards, each five valued on
// its own, the smallest non-zero value kept.
#pragma once

#include <span>

namespace reference {

// Low rank of a card code: ace 1, deuce 2 .. king 13.
inline int low_rank(int card) { return card % 13 == 12 ? 1 : card % 13 + 2; }

// The value of a set of distinct low ranks 1..8 given as bits (bit r for rank r), written highest
// rank first as decimal digits: {5, 4, 3, 2, A} -> 54321. 0 unless exactly five ranks.
inline int low_of_rank_bits(unsigned bits) {
  int value = 0, count = 0;
  for (int r = 8; r >= 1; --r)
    if (bits & (1u << r)) {
      value = value * 10 + r;
      ++count;
    }
  return count == 5 ? value : 0;
}

// The rank bits of the cards when they are all distinct low ranks 1..8; 0 otherwise.
inline unsigned low_rank_bits(std::span<const int> cards) {
  unsigned bits = 0;
  for (int c : cards) {
    const int r = low_rank(c);
    if (r > 8 || (bits & (1u << r))) return 0;
    bits |= 1u << r;
  }
  return bits;
}

// The best low (smallest non-zero value) over every 2 hole + 3 board cards; 0 = none.
inline int omaha_low(std::span<const int> hole, std::span<const int> board) {
  int best = 0;
  const int nh = static_cast<int>(hole.size()), nb = static_cast<int>(board.size());
  for (int i = 0; i < nh; ++i)
    for (int j = i + 1; j < nh; ++j)
      for (int k = 0; k < nb; ++k)
        for (int l = k + 1; l < nb; ++l)
          for (int m = l + 1; m < nb; ++m) {
            const int five[5] = {hole[i], hole[j], board[k], board[l], board[m]};
            const int low = low_of_rank_bits(low_rank_bits(five));
            if (low != 0 && (best == 0 || low < best)) best = low;
          }
  return best;
}

}  // namespace reference

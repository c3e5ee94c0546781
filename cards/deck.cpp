// CPokerDeck; CDeck's evaluation members live with the hand comparison in eval/.
#include "pokermath/cards.h"

CPokerDeck::CPokerDeck() {
  int n = 0;
  uint32_t suit_flag = 0x8000;
  for (int s = 0; s < 4; ++s, suit_flag >>= 1)
    for (int r = 0; r < 13; ++r)
      m_words[n++] = static_cast<uint32_t>(pokermath::kRankPrimes[r]) | (static_cast<uint32_t>(r) << 8) | suit_flag |
                     (uint32_t{1} << (16 + r));
}

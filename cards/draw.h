// Dealing one card in the classic Monte Carlo engines.
#pragma once

#include "pokermath/cards.h"

namespace pokermath::detail {

// Draws from `random` until the card is not among the first `count` known cards, then appends it
// to the known list: each later draw of the same deal avoids it.
inline int draw_unknown_card(EasyRandom& random, int* known, int& count) {
  int card;
  do {
    card = random.DrawRandomNumber();
  } while (isExist(card, known, count));
  known[count++] = card;
  return card;
}

}  // namespace pokermath::detail

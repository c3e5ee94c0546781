// A program built against the installed library.
#include <pokermath/pokermath.h>

#include <iostream>

int main() {
  const auto hand = pokermath::evaluate_hand(pokermath::parse_cards("AsKsQsJsTs"));
  std::cout << hand.hand_class << " " << hand.description << "\n";
  return hand.hand_class == 1 ? 0 : 1;
}

// The strongest class a range holds, and the strongest one it does not, by a fixed strength order.
#include <algorithm>

#include "ranges/hand_classes.h"
#include "ranges/tables.h"

using namespace pokermath::detail;

namespace {

using Strengths = std::array<int, kClasses>;  // per cell: 1 = strongest, 0 = not ranked

Strengths strengths_of(const std::vector<int>& order) {
  Strengths strengths{};
  for (size_t i = 0; i < order.size(); ++i) strengths[order[i]] = static_cast<int>(i) + 1;
  return strengths;
}

const Strengths& holdem_strengths() {
  static const Strengths strengths = strengths_of(cells_of_class_list(kStrengthOrder));
  return strengths;
}

// The short deck ranks its 81 classes in the order of its equity table.
const Strengths& short_deck_strengths() {
  static const Strengths strengths = strengths_of(short_deck_equity_order());
  return strengths;
}

// True when a combination has a card below "6".
bool has_short_deck_blank(int a, int b) { return std::min(a % 13, b % 13) < kShortDeckLowestRank; }

// The whole class of the non-zero cell of least strength, or an empty Spec when every cell is 0.
Spec strongest_class(const Strengths& cells) {
  int best = 200, best_cell = -1;
  for (int cell = 0; cell < kClasses; ++cell)
    if (cells[cell] != 0 && cells[cell] <= best) {
      best = cells[cell];
      best_cell = cell;
    }
  Spec result;
  if (best_cell >= 0) add_class(result, best_cell);
  return result;
}

// MakeBestHand: the strengths of the classes the range touches.
Spec best_held_class(const Spec& range, bool short_deck) {
  Strengths touched{};
  for (const auto& [a, b] : range.m_hands) {
    const int cell = combo_cell(a, b);
    if (cell < 0 || (short_deck && has_short_deck_blank(a, b))) continue;
    touched[cell] = holdem_strengths()[cell];
  }
  return strongest_class(touched);
}

// MakeNextForceHand: the strengths of the classes the range leaves untouched.
Spec best_missing_class(const Spec& range, const Strengths& strengths) {
  Strengths untouched = strengths;
  for (const auto& [a, b] : range.m_hands)
    if (const int cell = combo_cell(a, b); cell >= 0) untouched[cell] = 0;
  return strongest_class(untouched);
}

}  // namespace

Spec Spec::MakeBestHand() const { return best_held_class(*this, false); }

Spec Spec::MakeBestHand6Plus() const { return best_held_class(*this, true); }

Spec Spec::MakeNextForceHand() const { return best_missing_class(*this, holdem_strengths()); }

Spec Spec::MakeNextForceHand6Plus() const { return best_missing_class(*this, short_deck_strengths()); }

// The straight scan shared by the hand comparison and the China ranking.
#pragma once

namespace pokermath::detail {

// Top rank of the highest straight in `n` rank indices sorted high to low, or -1. Equal neighbours
// are skipped without breaking a run; the first run of four steps wins. The lowest straight, whose
// ace plays low, is a run of three steps topped by `wheel_top` at the end of a list that starts with
// an ace and ends with `wheel_low` (5-4-3-2-A: 3 and 0; short deck 9-8-7-6-A: 7 and 4).
inline int straight_top(const int* ranks, int n, int wheel_top, int wheel_low) {
  int run = 0, top = -1;
  for (int i = 0; i + 1 < n; ++i) {
    if (run == 4) return top;
    const int step = ranks[i] - ranks[i + 1];
    if (step == 0) continue;
    if (step == 1) {
      if (run == 0) top = ranks[i];
      ++run;
    } else {
      run = 0;
      top = -1;
    }
  }
  if (run == 3 && top == wheel_top && n > 0 && ranks[n - 1] == wheel_low && ranks[0] == 12) run = 4;
  return run == 4 ? top : -1;
}

}  // namespace pokermath::detail

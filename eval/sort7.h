// Sorting seven card codes ascending without branches: a 16-comparator sorting network, for the
// seven-card table whose look-up needs its codes in ascending order. (The state machines take any
// order; sorting there costs more than the locality it buys, since it delays every walk.)
#pragma once

#include <algorithm>

namespace pokermath::detail {

inline void compare_swap(int* v, int i, int j) {
  const int a = v[i], b = v[j];
  v[i] = std::min(a, b);
  v[j] = std::max(a, b);
}

inline void sort7(int* v) {
  static constexpr int kNetwork[16][2] = {{0, 6}, {2, 3}, {4, 5}, {0, 2}, {1, 4}, {3, 6}, {0, 1}, {2, 5},
                                          {3, 4}, {1, 2}, {4, 6}, {2, 3}, {4, 5}, {1, 2}, {3, 4}, {5, 6}};
  for (const auto& c : kNetwork) compare_swap(v, c[0], c[1]);
}

}  // namespace pokermath::detail

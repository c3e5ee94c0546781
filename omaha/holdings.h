// Every four-card holding of the unseen cards, valued on one board.
//
// An Omaha hand plays exactly two hole cards, so a holding's best hand is the best of its six
// two-card pairs. Each unseen pair is valued once (on the state-machine scale, larger is stronger)
// and each holding takes the largest of its six pair values: on a flop that is 1,081 pair
// evaluations instead of 148,995 four-card searches.
#pragma once

#include <algorithm>
#include <cstdint>
#include <vector>

#include "pokermath/omaha.h"

namespace pokermath::detail {

class HoldingValues {
 public:
  // The unseen cards (not in `seen`) and the value of every pair of them on the board.
  HoldingValues(uint64_t seen, const int* board, int nBoard) {
    for (int c = 0; c < 52; ++c)
      if (!(seen >> c & 1)) m_cards[m_n++] = c;
    m_pair.assign(static_cast<size_t>(m_n) * m_n, 0);
    int out[5];
    for (int a = 0; a < m_n; ++a)
      for (int b = a + 1; b < m_n; ++b) {
        const int pair[2] = {m_cards[a], m_cards[b]};
        m_pair[a * m_n + b] = getCombinationOmahaFsm5Common(pair, 2, board, nBoard, out);
      }
  }

  // Calls visit(a, b, c, d, value) with card codes a < b < c < d for every holding.
  template <typename Visit>
  void for_each(Visit visit) const {
    for (int a = 0; a < m_n; ++a)
      for (int b = a + 1; b < m_n; ++b)
        for (int c = b + 1; c < m_n; ++c) {
          const int abc = std::max({pair(a, b), pair(a, c), pair(b, c)});
          for (int d = c + 1; d < m_n; ++d)
            visit(m_cards[a], m_cards[b], m_cards[c], m_cards[d], std::max({abc, pair(a, d), pair(b, d), pair(c, d)}));
        }
  }

 private:
  int pair(int i, int j) const { return m_pair[i * m_n + j]; }

  int m_cards[52] = {};
  int m_n = 0;
  std::vector<int> m_pair;
};

}  // namespace pokermath::detail

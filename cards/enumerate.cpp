// The odometer over several dimensions and the k-subset enumerator.
#include "pokermath/cards.h"

std::vector<int> CRoundEnumerate::first() {
  m_pos.clear();
  m_total = 1;
  for (int size : m_dims) {
    m_pos.push_back(0);
    m_total *= static_cast<uint64_t>(size);
  }
  m_index = 1;
  return m_pos;
}

std::vector<int> CRoundEnumerate::next() {
  // Position 0 turns fastest; when every position overflows the odometer wraps to all zeros.
  for (size_t i = 0; i < m_pos.size(); ++i) {
    if (++m_pos[i] < m_dims[i]) break;
    m_pos[i] = 0;
  }
  ++m_index;
  return m_pos;
}

CRoundBoardEnumerate::CRoundBoardEnumerate(int k, int n) : m_k(k), m_n(n) {
  for (int i = 0; i < k; ++i) m_limit.push_back(n - k + i + 1);
}

std::vector<int> CRoundBoardEnumerate::first() {
  m_pos.clear();
  m_index = 0;
  if (m_k > 0) {
    for (int i = 0; i < m_k; ++i) {
      m_pos.push_back(i);
      m_start.push_back(i);
    }
    // C(n, k) = (n-k+1)(n-k+2)...n / k!, in 64 bits, kept as 32.
    uint64_t product = 1, factorial = 1;
    for (int i = 0; i < m_k; ++i) {
      product *= static_cast<uint64_t>(m_limit[i]);
      factorial *= static_cast<uint64_t>(i + 1);
    }
    m_total = static_cast<int>(static_cast<uint32_t>(product / factorial));
    m_index = 1;
  }
  return m_pos;
}

std::vector<int> CRoundBoardEnumerate::next() {
  // Lexicographic successor: bump the rightmost position that can still grow and lay the later
  // positions out right after it. An overflowed position keeps its value until a lower one grows.
  for (int j = m_k - 1; j >= 0; --j) {
    if (++m_pos[j] < m_limit[j]) {
      for (int i = j + 1; i < m_k; ++i) m_pos[i] = m_pos[i - 1] + 1;
      break;
    }
  }
  ++m_index;
  return m_pos;
}

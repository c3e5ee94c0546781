// Small helpers shared by the test programs.
#pragma once

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <random>
#include <string>
#include <vector>

#include "pokermath/pokermath.h"

namespace test_util {

// `count` distinct random card codes.
inline std::vector<int> random_cards(std::mt19937& engine, int count, uint64_t dead = 0) {
  std::vector<int> cards;
  while (static_cast<int>(cards.size()) < count) {
    const int c = static_cast<int>(engine() % 52);
    if (dead & (uint64_t{1} << c)) continue;
    dead |= uint64_t{1} << c;
    cards.push_back(c);
  }
  return cards;
}

// `count` distinct random card codes into `out`, without allocating (for the long sweeps).
inline void random_cards(std::mt19937& engine, int count, int* out, uint64_t dead = 0) {
  for (int n = 0; n < count;) {
    const int c = static_cast<int>(engine() % 52);
    if (dead & (uint64_t{1} << c)) continue;
    dead |= uint64_t{1} << c;
    out[n++] = c;
  }
}

// Calls visit(const int* cards) for every set of `k` (1..8) distinct card codes outside `dead`: codes
// ascending within a set, sets in lexicographic order, as nested loops a < b < c ... visit them.
template <typename Visit>
void for_each_set(int k, uint64_t dead, Visit&& visit) {
  int c[8] = {-1};
  for (int depth = 0; depth >= 0;) {
    int x = c[depth] + 1;
    while (x < 52 && (dead >> x & 1)) ++x;
    if (x == 52) {
      --depth;
      continue;
    }
    c[depth] = x;
    if (depth + 1 < k)
      c[++depth] = x;
    else
      visit(static_cast<const int*>(c));
  }
}

// The best value (7463 - class, larger is stronger) of exactly two of the hole cards with exactly
// three of the board cards, by trying every such five on the hash path (both five-card paths agree on
// every hand: five_card_exhaustive_test).
inline int best_two_plus_three(const int* hole, int n_hole, const int* board, int n_board = 5) {
  auto w = [](int c) { return static_cast<int>(pokermath::prime_word(c)); };
  int best = 0;
  for (int i = 0; i < n_hole; ++i)
    for (int j = i + 1; j < n_hole; ++j)
      for (int k = 0; k < n_board; ++k)
        for (int l = k + 1; l < n_board; ++l)
          for (int m = l + 1; m < n_board; ++m)
            best =
                std::max(best, 7463 - eval_5hand_fast(w(hole[i]), w(hole[j]), w(board[k]), w(board[l]), w(board[m])));
  return best;
}

// Sanitizer builds check memory and undefined behaviour, not every hand again: the long sweeps run
// on a sample there (the Release run covers them in full).
#ifdef POKERMATH_TEST_SANITIZED
inline constexpr bool kSanitized = true;
#else
inline constexpr bool kSanitized = false;
#endif

// `full` normally, `sample` in sanitizer builds.
inline int64_t sweep_size(int64_t full, int64_t sample) { return kSanitized ? sample : full; }

// The message of the pokermath::Error that `call` throws, or "(no error)".
template <typename Call>
std::string error_of(Call&& call) {
  try {
    call();
  } catch (const pokermath::Error& e) {
    return e.what();
  }
  return "(no error)";
}

// Collects every ShowMessage text while alive.
class MessageCapture {
 public:
  MessageCapture() : m_previous(SetMessageHandler([this](const CString& text) { m_texts.push_back(text); })) {}
  ~MessageCapture() { SetMessageHandler(m_previous); }
  MessageCapture(const MessageCapture&) = delete;
  MessageCapture& operator=(const MessageCapture&) = delete;

  const std::vector<CString>& texts() const { return m_texts; }
  void clear() { m_texts.clear(); }

 private:
  std::vector<CString> m_texts;
  MessageHandler m_previous;
};

// A path as the wide string the classic API takes.
inline CString wide(const std::filesystem::path& path) { return pokermath::widen(path.string()); }

// Card codes from a text such as "AsKsQs"; for test inputs only.
inline std::vector<int> cards(const std::string& text) { return pokermath::parse_cards(text); }

inline std::string names(const std::vector<int>& cards) { return pokermath::cards_to_string(cards); }

// Prime-product words of card codes.
inline std::vector<int> words(const std::vector<int>& cards) {
  std::vector<int> out;
  for (int c : cards) out.push_back(static_cast<int>(pokermath::prime_word(c)));
  return out;
}

}  // namespace test_util

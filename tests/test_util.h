// Small helpers shared by the test programs.
#pragma once

#include <cstdint>
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

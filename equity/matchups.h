// Hold'em matchups up to a permutation of suits: the equity of hero against villain does not change
// when the same permutation of suits is applied to all four cards, so each class is computed once.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>

namespace pokermath::detail {

// The 24 permutations of the four suits.
inline constexpr std::array<std::array<int, 4>, 24> kSuitPermutations = [] {
  std::array<std::array<int, 4>, 24> out{};
  std::array<int, 4> p = {0, 1, 2, 3};
  for (auto& slot : out) {
    slot = p;
    std::next_permutation(p.begin(), p.end());
  }
  return out;
}();

// A key naming the class of the ordered matchup: the smallest, over every suit permutation, of the
// two hands (each sorted) packed six bits per card, hero first.
inline uint32_t matchup_class(const int* hero, const int* villain) {
  uint32_t best = UINT32_MAX;
  for (const auto& perm : kSuitPermutations) {
    auto map = [&](int c) { return static_cast<uint32_t>(13 * perm[c / 13] + c % 13); };
    const uint32_t h0 = map(hero[0]), h1 = map(hero[1]), v0 = map(villain[0]), v1 = map(villain[1]);
    const uint32_t key =
        (std::min(h0, h1) << 18) | (std::max(h0, h1) << 12) | (std::min(v0, v1) << 6) | std::max(v0, v1);
    best = std::min(best, key);
  }
  return best;
}

}  // namespace pokermath::detail

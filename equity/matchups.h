// Hold'em matchups up to a permutation of suits: the equity of hero against villain does not change
// when the same permutation of suits is applied to all four cards, so each class is computed once.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <initializer_list>
#include <vector>

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

using SuitPermutation = std::array<int, 4>;

// The card a suit permutation maps `card` to.
inline int permute_card(int card, const SuitPermutation& perm) { return 13 * perm[card / 13] + card % 13; }

// The image of a set of cards under a suit permutation: each suit's 13 bits move to their new suit.
inline uint64_t permute_mask(uint64_t mask, const SuitPermutation& perm) {
  uint64_t image = 0;
  for (int s = 0; s < 4; ++s) image |= (mask >> (13 * s) & 0x1FFF) << (13 * perm[s]);
  return image;
}

// The permutations of suits that map each of the sets of cards in `masks` onto itself (the identity
// first).
inline std::vector<SuitPermutation> suit_permutations_fixing(std::initializer_list<uint64_t> masks) {
  std::vector<SuitPermutation> out;
  for (const SuitPermutation& perm : kSuitPermutations)
    if (std::all_of(masks.begin(), masks.end(), [&](uint64_t m) { return permute_mask(m, perm) == m; }))
      out.push_back(perm);
  return out;
}

}  // namespace pokermath::detail

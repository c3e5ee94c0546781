// The five-card evaluator's core, for the searches that form the OR, AND and prime product of five
// card words themselves (the Omaha searches build them once per hole pair).
#pragma once

#include <cstdint>

#include "five_card_tables.h"

namespace pokermath::detail {

// The perfect hash of a prime product; the mixing steps are those the generator searched with.
inline int hash_product(uint32_t u) {
  u += 0xE91AAA35u;
  u ^= u >> 16;
  u += u << 8;
  u ^= u >> 4;
  const uint32_t b = (u >> 8) & 0x1FF;
  const uint32_t a = (u + (u << 2)) >> 19;
  return kHashValues[a ^ kHashAdjust[b]];
}

// Class (1..7462, smaller is stronger) of five cards from the OR and AND of their words and the
// product of their primes. All three paths are computed and the answer selected without branches:
// on random hands the distinct-ranks test goes either way about half the time, and a mispredicted
// branch costs more than the few integer operations of the hash.
inline int five_card_class(uint32_t or_words, uint32_t and_words, uint32_t product) {
  const int q = static_cast<int>(or_words >> 16);
  const int flush = kFlushes[q];
  const int unique = kUnique5[q];
  const int paired = hash_product(product);
  const int unique_mask = -static_cast<int>(unique != 0);               // all ones when ranks are distinct
  const int flush_mask = -static_cast<int>((and_words & 0xF000) != 0);  // all ones for a flush
  const int not_flush = (unique & unique_mask) | (paired & ~unique_mask);
  return (flush & flush_mask) | (not_flush & ~flush_mask);
}

}  // namespace pokermath::detail

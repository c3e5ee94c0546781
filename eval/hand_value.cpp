// hand_value and hand_values: the fast evaluator behind validated calls, one hand or arrays of them.
//
// The checks cost little: the codes are compared with the deck in two overlapping 4-lane compares
// before they index a table, and repeated cards are found by counting the bits of the card mask the
// value needs anyway. A bad hand gives a flag; the error is built afterwards by the plain checks,
// which name the fault. The hot functions are compiled twice on x86-64, for x86-64-v3 (one popcnt
// instruction) and for the baseline, and the loader picks one by the CPU. Batches of card codes run
// sixteen hands at a time and batches of masks eight where the CPU has AVX-512 (eval/hand_batch.cpp),
// else hand by hand here.
#include <emmintrin.h>

#include <algorithm>
#include <bit>
#include <string>
#include <type_traits>

#include "eval/hand_batch.h"
#include "eval/hand_input.h"
#include "eval/hand_key.h"
#include "pokermath/eval.h"
#include "support/target.h"

namespace pokermath {

namespace {

using detail::Ranking;

// The card keys and bits, this file's own copies: the hot code reads them at a fixed address rather
// than through the library's symbol table.
constexpr std::array<uint64_t, 52> kCardKeys = detail::kCardKeys;
constexpr std::array<uint64_t, 52> kCardBits = [] {
  std::array<uint64_t, 52> bits{};
  for (int c = 0; c < 52; ++c) bits[c] = uint64_t{1} << c;
  return bits;
}();

// True when all N (4..8) codes are card codes 0..51.
template <int N, typename Code>
[[gnu::always_inline]] inline bool codes_in_deck(const Code* cards) {
  static_assert(N >= 4 && N <= 8);
  if constexpr (std::is_same_v<Code, int>) {
    // Codes 0..3 and N-4..N-1 in two vectors: any lane above 51 or below 0 is out.
    const __m128i a = _mm_loadu_si128(reinterpret_cast<const __m128i*>(cards));
    const __m128i b = _mm_loadu_si128(reinterpret_cast<const __m128i*>(cards + N - 4));
    const __m128i high = _mm_set1_epi32(51), zero = _mm_setzero_si128();
    const __m128i out = _mm_or_si128(_mm_or_si128(_mm_cmpgt_epi32(a, high), _mm_cmpgt_epi32(zero, a)),
                                     _mm_or_si128(_mm_cmpgt_epi32(b, high), _mm_cmpgt_epi32(zero, b)));
    return _mm_movemask_epi8(out) == 0;
  } else {
    bool out = false;
    for (int i = 0; i < N; ++i) out |= cards[i] >= 52;
    return !out;
  }
}

// The value of N card codes; `bad` is set (never cleared) when they are not a valid hand.
template <Ranking R, int N, typename Code>
[[gnu::always_inline]] inline int checked_value(const Code* cards, bool& bad) {
  if (!codes_in_deck<N>(cards)) [[unlikely]] {
    bad = true;
    return 0;
  }
  uint64_t key = detail::kKeyStart, mask = 0;
  for (int i = 0; i < N; ++i) {
    key += kCardKeys[cards[i]];
    mask |= kCardBits[cards[i]];
  }
  // A repeated card sets one bit for two cards. A bad hand is not looked up: its ranks may not be a
  // hand's (five aces), whose key sum the perfect hash does not cover.
  const bool ok = std::popcount(mask) == N && (R == Ranking::Holdem || (mask & detail::kBelowSix) == 0);
  if (!ok) [[unlikely]] {
    bad = true;
    return 0;
  }
  return detail::hand_value_of<R, N>(key, mask);
}

// Throws the plain checks' error for a bad hand.
[[gnu::noinline]] void check_cards(std::span<const int> cards, Ranking ranking) {
  if (ranking == Ranking::Holdem)
    detail::check_hand(cards, 5, 7);
  else
    detail::check_short_deck_hand(cards, 5, 7);
}

// Callers that value many hands one call at a time mostly walk an array of them: asking for the
// memory 2 KB past this hand keeps the next pages coming (the hardware's prefetcher stops at each
// page end), which took a sixth off a call on hands streamed from memory. A prefetch never faults;
// the address is formed as an integer, as it may lie past the caller's array.
[[gnu::always_inline]] inline void prefetch_past(const int* cards) {
  __builtin_prefetch(reinterpret_cast<const void*>(reinterpret_cast<uintptr_t>(cards) + 2048));
}

template <Ranking R>
[[gnu::always_inline]] inline int one_hand(std::span<const int> cards) {
  prefetch_past(cards.data());
  bool bad = false;
  int value = 0;
  if (cards.size() == 7)  // the common size first
    value = checked_value<R, 7>(cards.data(), bad);
  else if (cards.size() == 6)
    value = checked_value<R, 6>(cards.data(), bad);
  else if (cards.size() == 5)
    value = checked_value<R, 5>(cards.data(), bad);
  else
    bad = true;
  if (bad) [[unlikely]]
    check_cards(cards, R);
  return value;
}

// Throws the error of the first bad hand of a batch, named by its index.
template <typename Code>
[[noreturn, gnu::noinline]] void bad_batch(std::span<const Code> codes, size_t n, Ranking ranking) {
  for (size_t h = 0; h * n < codes.size(); ++h) {
    const std::vector<int> cards(codes.begin() + static_cast<ptrdiff_t>(h * n),
                                 codes.begin() + static_cast<ptrdiff_t>((h + 1) * n));
    try {
      check_cards(cards, ranking);
    } catch (const Error& e) {
      throw Error("hand " + std::to_string(h) + ": " + e.what());
    }
  }
  throw Error("bad hand");  // not reached: the fast pass and the checks agree
}

[[noreturn, gnu::noinline]] void bad_mask_batch(std::span<const uint64_t> masks, Ranking ranking) {
  for (size_t h = 0; h < masks.size(); ++h) {
    const uint64_t mask = masks[h];
    std::string fault;
    if (mask >> 52) {
      fault = "the mask has bits above card 51";
    } else {
      std::vector<int> cards;
      Int64ToVec(mask, cards);
      try {
        check_cards(cards, ranking);
      } catch (const Error& e) {
        fault = e.what();
      }
    }
    if (!fault.empty()) throw Error("hand " + std::to_string(h) + ": " + fault);
  }
  throw Error("bad hand");  // not reached
}

[[gnu::noinline]] void check_sizes(size_t codes, int cards_per_hand, size_t values) {
  if (cards_per_hand < 5 || cards_per_hand > 7)
    throw Error("cards per hand must be 5, 6 or 7, got " + std::to_string(cards_per_hand));
  const size_t n = static_cast<size_t>(cards_per_hand);
  if (codes % n != 0) throw Error(std::to_string(codes) + " card codes are not whole hands of " + std::to_string(n));
  if (values != codes / n)
    throw Error("room for " + std::to_string(values) + " values, but " + std::to_string(codes / n) + " hands");
}

// The batch loop: hands are independent, so the processor overlaps the table reads of several.
template <Ranking R, int N, typename Code>
[[gnu::always_inline]] inline bool batch(const Code* codes, size_t hands, int* values) {
  bool bad = false;
  for (size_t h = 0; h < hands; ++h) values[h] = checked_value<R, N>(codes + h * N, bad);
  return !bad;
}

template <Ranking R, typename Code>
[[gnu::always_inline]] inline void code_batch(std::span<const Code> codes, int n, std::span<int> values) {
  check_sizes(codes.size(), n, values.size());
  const size_t hands = values.size();
  bool ok;
  if (detail::wide_batch_available())
    ok = n == 5   ? detail::wide_batch<R, 5>(codes.data(), hands, values.data())
         : n == 6 ? detail::wide_batch<R, 6>(codes.data(), hands, values.data())
                  : detail::wide_batch<R, 7>(codes.data(), hands, values.data());
  else
    ok = n == 5   ? batch<R, 5>(codes.data(), hands, values.data())
         : n == 6 ? batch<R, 6>(codes.data(), hands, values.data())
                  : batch<R, 7>(codes.data(), hands, values.data());
  if (!ok) bad_batch(codes, static_cast<size_t>(n), R);
}

template <typename Code>
[[gnu::always_inline]] inline void code_batch(std::span<const Code> codes, int n, std::span<int> values,
                                              ShortDeckRules rules) {
  if (rules == ShortDeckRules::China)
    code_batch<Ranking::China>(codes, n, values);
  else
    code_batch<Ranking::ShortDeck>(codes, n, values);
}

template <Ranking R>
[[gnu::always_inline]] inline void mask_batch(std::span<const uint64_t> masks, std::span<int> values) {
  if (values.size() != masks.size())
    throw Error("room for " + std::to_string(values.size()) + " values, but " + std::to_string(masks.size()) +
                " hands");
  bool ok;
  if (detail::wide_mask_batch_available()) {
    ok = detail::wide_mask_batch<R>(masks.data(), masks.size(), values.data());
  } else {
    bool bad = false;
    for (size_t h = 0; h < masks.size(); ++h) values[h] = detail::mask_value<R>(masks[h], bad);
    ok = !bad;
  }
  if (!ok) bad_mask_batch(masks, R);
}

}  // namespace

POKERMATH_CLONES
int hand_value(std::span<const int> cards) { return one_hand<Ranking::Holdem>(cards); }

POKERMATH_CLONES
int hand_value(std::span<const int> cards, ShortDeckRules rules) {
  return rules == ShortDeckRules::China ? one_hand<Ranking::China>(cards) : one_hand<Ranking::ShortDeck>(cards);
}

POKERMATH_CLONES
void hand_values(std::span<const int> codes, int cards_per_hand, std::span<int> values) {
  code_batch<Ranking::Holdem>(codes, cards_per_hand, values);
}
POKERMATH_CLONES
void hand_values(std::span<const uint8_t> codes, int cards_per_hand, std::span<int> values) {
  code_batch<Ranking::Holdem>(codes, cards_per_hand, values);
}
POKERMATH_CLONES
void hand_values(std::span<const uint64_t> masks, std::span<int> values) {
  mask_batch<Ranking::Holdem>(masks, values);
}
POKERMATH_CLONES
void hand_values(std::span<const int> codes, int cards_per_hand, std::span<int> values, ShortDeckRules rules) {
  code_batch(codes, cards_per_hand, values, rules);
}
POKERMATH_CLONES
void hand_values(std::span<const uint8_t> codes, int cards_per_hand, std::span<int> values, ShortDeckRules rules) {
  code_batch(codes, cards_per_hand, values, rules);
}
POKERMATH_CLONES
void hand_values(std::span<const uint64_t> masks, std::span<int> values, ShortDeckRules rules) {
  if (rules == ShortDeckRules::China)
    mask_batch<Ranking::China>(masks, values);
  else
    mask_batch<Ranking::ShortDeck>(masks, values);
}

}  // namespace pokermath

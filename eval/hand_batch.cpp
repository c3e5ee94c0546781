// The 16-lane batch: sixteen hands of N one-byte codes are 16N bytes (int codes are narrowed to
// bytes as they are loaded, with saturation, so a code outside 0..255 becomes 255 and fails the
// checks). Two byte permutes turn them into slot-major order (16 first cards, 16 second cards, ...),
// so every later step treats sixteen hands with one instruction:
//   - the checks: a code of 52 or more, and a card twice in a hand, found by comparing the slots
//     with rotated copies of themselves (8 compares of 64 bytes cover every pair of slots);
//   - the rank part of the key: each code's rank by a 64-byte table permute, then its rank key by a
//     16-entry permute of dwords, summed over the slots;
//   - the flush test: each card's suit as a one in a nibble (suits 0-1 in one byte, 2-3 in another),
//     summed over the slots; a nibble of five or more is a flush.
// The sums then go through the perfect hash one hand at a time (two reads each; the hardware's
// gathers are slower than plain loads here), a group behind, so the loads never wait on the store
// of the sums. Flushes (3% of random seven-card hands) are valued one by one from their cards.
//
// The codes are read once, front to back, and the loop asks for them 4 KB ahead, past the page the
// hardware's prefetcher follows: 5% less time on arrays streamed from memory. Narrowing int codes
// in the same pass, rather than a block at a time into a buffer, lets their reading overlap the
// work on earlier groups.
#include "eval/hand_batch.h"

#include <immintrin.h>

#include <algorithm>
#include <array>
#include <bit>

namespace pokermath::detail {

// Every ranking and hand size, instantiated where the batch is defined.
#define POKERMATH_WIDE_BATCH(R, N)                                \
  template bool wide_batch<R, N>(const uint8_t*, size_t, int*); \
  template bool wide_batch<R, N>(const int*, size_t, int*);
#define POKERMATH_ALL_WIDE_BATCHES                                                                       \
  POKERMATH_WIDE_BATCH(Ranking::Holdem, 5)                                                               \
  POKERMATH_WIDE_BATCH(Ranking::Holdem, 6)                                                               \
  POKERMATH_WIDE_BATCH(Ranking::Holdem, 7)                                                               \
  POKERMATH_WIDE_BATCH(Ranking::ShortDeck, 5)                                                            \
  POKERMATH_WIDE_BATCH(Ranking::ShortDeck, 6)                                                            \
  POKERMATH_WIDE_BATCH(Ranking::ShortDeck, 7)                                                            \
  POKERMATH_WIDE_BATCH(Ranking::China, 5)                                                                \
  POKERMATH_WIDE_BATCH(Ranking::China, 6)                                                                \
  POKERMATH_WIDE_BATCH(Ranking::China, 7)
#define POKERMATH_ALL_MASK_BATCHES                                          \
  template bool wide_mask_batch<Ranking::Holdem>(const uint64_t*, size_t, int*);    \
  template bool wide_mask_batch<Ranking::ShortDeck>(const uint64_t*, size_t, int*); \
  template bool wide_mask_batch<Ranking::China>(const uint64_t*, size_t, int*);

#if defined(__x86_64__) && defined(__GNUC__)
// AVX-512 F, BW and VL, which both batches use, and the named extension (a literal, as the builtin
// wants one).
#define POKERMATH_AVX512_WITH(extension)                                                                \
  (__builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512bw") && __builtin_cpu_supports("avx512vl") && \
   __builtin_cpu_supports(extension))
#else
#define POKERMATH_AVX512_WITH(extension) false
#endif

bool wide_batch_available() {
  static const bool available = POKERMATH_AVX512_WITH("avx512vbmi");
  return available;
}

bool wide_mask_batch_available() {
  static const bool available = POKERMATH_AVX512_WITH("avx512vpopcntdq");
  return available;
}

#if defined(__x86_64__) && defined(__GNUC__)

// Everything from here to the end of the x86-64 part is compiled for AVX-512 (and runs only where
// wide_batch_available() says so), lambdas included.
#if defined(__clang__)
#pragma clang attribute push(__attribute__((target("avx512f,avx512bw,avx512vl,avx512vbmi,popcnt"))), \
                             apply_to = function)
#else
#pragma GCC push_options
#pragma GCC target("avx512f,avx512bw,avx512vl,avx512vbmi,popcnt")
// GCC 12's headers build some AVX-512 intrinsics on a deliberately undefined vector, and warn.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"
#endif

namespace {

constexpr uint8_t kNoCard = 0xFF;  // the slots past a hand's last card: equal to no code of a card

struct Tables {
  alignas(64) std::array<uint8_t, 64> rank{};    // code -> rank (13 for codes 52..63: key 0)
  alignas(64) std::array<uint8_t, 64> suits01{};  // code -> a one in the nibble of suit 0 or 1
  alignas(64) std::array<uint8_t, 64> suits23{};  // code -> a one in the nibble of suit 2 or 3
  alignas(64) std::array<uint32_t, 16> keys{};    // rank -> rank key (0 for 13..15)

  constexpr Tables() {
    for (int c = 0; c < 64; ++c) {
      const int s = c / 13;
      rank[c] = static_cast<uint8_t>(c < 52 ? c % 13 : 13);
      suits01[c] = static_cast<uint8_t>(c < 52 && s < 2 ? 1 << (4 * s) : 0);
      suits23[c] = static_cast<uint8_t>(c < 52 && s >= 2 ? 1 << (4 * (s - 2)) : 0);
    }
    for (int r = 0; r < 13; ++r) keys[r] = kRankKeys[r];
  }
};
constexpr Tables kTables;

// The byte indexes that gather slots 0..3 (first) and 4.. (second) of 16 hands of N codes.
template <int N>
alignas(64) constexpr std::array<std::array<uint8_t, 64>, 2> kSlotIndexes = [] {
  std::array<std::array<uint8_t, 64>, 2> index{};
  for (int j = 0; j < 64; ++j) {
    const int slot = j / 16, hand = j % 16;
    index[0][j] = static_cast<uint8_t>(N * hand + slot);
    index[1][j] = static_cast<uint8_t>(4 + slot < N ? N * hand + 4 + slot : 0);
  }
  return index;
}();

// The vector rotated by K 16-byte lanes: lane i takes lane i + K (mod 4).
template <int K>
inline __m512i rotate_lanes(__m512i v) {
  return _mm512_alignr_epi64(v, v, 2 * K);
}

// The value of one hand from its codes (valid ones), for flushes and the last few hands.
template <Ranking R, int N, typename Code>
inline int one_hand(const Code* codes) {
  uint64_t key = kKeyStart, mask = 0;
  for (int i = 0; i < N; ++i) {
    key += kCardKeys[codes[i]];
    mask |= uint64_t{1} << codes[i];
  }
  return hand_value_of<R, N>(key, mask);
}

// Checks and values the hands the vector loop leaves: fewer than sixteen.
template <Ranking R, int N, typename Code>
bool tail(const Code* codes, size_t hands, int* values) {
  bool all_ok = true;
  for (size_t h = 0; h < hands; ++h) {
    const Code* c = codes + h * N;
    uint64_t mask = 0;
    bool ok = true;
    for (int i = 0; i < N; ++i) {
      const auto code = static_cast<std::make_unsigned_t<Code>>(c[i]);  // a negative int is large
      ok &= code < 52 && (R == Ranking::Holdem || code % 13 >= 4);
      mask |= uint64_t{1} << (code & 63);
    }
    ok &= std::popcount(mask) == N;
    values[h] = ok ? one_hand<R, N>(c) : 0;
    all_ok &= ok;
  }
  return all_ok;
}

// Asks for the cards of the group `kAhead` bytes past this one. The address is formed as an
// integer: it may lie past the end of the array, which a prefetch may name but a pointer may not.
constexpr uintptr_t kAhead = 4096;
template <int N, typename Code>
inline void prefetch_ahead(const Code* group) {
  const uintptr_t at = reinterpret_cast<uintptr_t>(group) + kAhead;
  for (uintptr_t line = 0; line < 16 * N * sizeof(Code); line += 64)
    _mm_prefetch(reinterpret_cast<const char*>(at + line), _MM_HINT_T0);
}

// Four 16-byte vectors as one, q0 lowest.
inline __m512i join(__m128i q0, __m128i q1, __m128i q2, __m128i q3) {
  const __m256i low = _mm256_inserti128_si256(_mm256_castsi128_si256(q0), q1, 1);
  const __m256i high = _mm256_inserti128_si256(_mm256_castsi128_si256(q2), q3, 1);
  return _mm512_inserti64x4(_mm512_castsi256_si512(low), high, 1);
}

// The 16N codes of sixteen hands as bytes: the first 64 in `a`, the rest in `b` (zero past them).
template <int N>
inline void load_group(const uint8_t* p, __m512i& a, __m512i& b) {
  constexpr __mmask64 kRest = (__mmask64{1} << (16 * N - 64)) - 1;
  a = _mm512_loadu_si512(p);
  b = _mm512_maskz_loadu_epi8(kRest, p + 64);
}
template <int N>
inline void load_group(const int* p, __m512i& a, __m512i& b) {
  __m128i x[8];
  for (int i = 0; i < N; ++i) x[i] = _mm512_cvtusepi32_epi8(_mm512_loadu_si512(p + 16 * i));
  for (int i = N; i < 8; ++i) x[i] = _mm_setzero_si128();
  a = join(x[0], x[1], x[2], x[3]);
  b = join(x[4], x[5], x[6], x[7]);
}

}  // namespace

template <Ranking R, int N, typename Code>
bool wide_batch(const Code* codes, size_t hands, int* values) {
  constexpr bool kShortDeck = R != Ranking::Holdem;
  constexpr __mmask64 kReal = (__mmask64{1} << (16 * (N - 4))) - 1;  // lanes of the second vector that hold cards
  const __m512i index0 = _mm512_load_si512(kSlotIndexes<N>[0].data());
  const __m512i index1 = _mm512_load_si512(kSlotIndexes<N>[1].data());
  const __m512i rank_of = _mm512_load_si512(kTables.rank.data());
  const __m512i suits01 = _mm512_load_si512(kTables.suits01.data());
  const __m512i suits23 = _mm512_load_si512(kTables.suits23.data());
  const __m512i keys = _mm512_load_si512(kTables.keys.data());
  const __m512i no_card = _mm512_set1_epi8(static_cast<char>(kNoCard));
  const __m512i deck = _mm512_set1_epi8(52), six = _mm512_set1_epi8(4);
  const __m512i three = _mm512_set1_epi8(0x33), eight = _mm512_set1_epi8(static_cast<char>(0x88));

  bool all_ok = true;
  alignas(64) uint32_t sums[2][16];
  alignas(64) uint8_t ranks[2][64];
  // The group whose sums wait to be looked up.
  int* waiting_values = nullptr;
  const Code* waiting_codes = nullptr;
  uint32_t waiting_flushes = 0;
  bool waiting_ok = true;
  auto finish = [&](const uint32_t* group_sums) {
    // A bad group is not looked up: its sums may come from impossible rank counts, outside the hash.
    if (!waiting_ok) return;
    for (int i = 0; i < 16; ++i) waiting_values[i] = rank_value<R, N>(group_sums[i]);
    for (uint32_t f = waiting_flushes; f; f &= f - 1) {
      const int i = std::countr_zero(f);
      waiting_values[i] = one_hand<R, N>(waiting_codes + N * i);
    }
  };

  size_t h = 0;
  for (unsigned group = 0; h + 16 <= hands; h += 16, ++group) {
    const Code* p = codes + h * N;
    prefetch_ahead<N>(p);
    __m512i a, b;
    load_group<N>(p, a, b);
    const __m512i s03 = _mm512_permutex2var_epi8(a, index0, b);
    const __m512i s4x = _mm512_mask_mov_epi8(no_card, kReal, _mm512_permutex2var_epi8(a, index1, b));

    // The checks.
    __mmask64 bad = _mm512_cmpge_epu8_mask(s03, deck) | _mm512_mask_cmpge_epu8_mask(kReal, s4x, deck);
    const __m512i s03_1 = rotate_lanes<1>(s03);
    const __m512i s03_2 = rotate_lanes<2>(s03);
    const __m512i s4x_1 = rotate_lanes<1>(s4x);
    const __m512i s4x_2 = rotate_lanes<2>(s4x);
    const __m512i s4x_3 = rotate_lanes<3>(s4x);
    bad |= _mm512_cmpeq_epi8_mask(s03, s03_1) | _mm512_cmpeq_epi8_mask(s03, s03_2) |
           _mm512_cmpeq_epi8_mask(s03, s4x) | _mm512_cmpeq_epi8_mask(s03, s4x_1) |
           _mm512_cmpeq_epi8_mask(s03, s4x_2) | _mm512_cmpeq_epi8_mask(s03, s4x_3) |
           _mm512_mask_cmpeq_epi8_mask(kReal, s4x, s4x_1) | _mm512_mask_cmpeq_epi8_mask(kReal, s4x, s4x_2);

    // The rank keys, summed over the slots.
    const __m512i r03 = _mm512_permutexvar_epi8(s03, rank_of), r4x = _mm512_permutexvar_epi8(s4x, rank_of);
    if constexpr (kShortDeck) bad |= _mm512_cmplt_epu8_mask(r03, six) | _mm512_mask_cmplt_epu8_mask(kReal, r4x, six);
    _mm512_store_si512(ranks[0], r03);
    _mm512_store_si512(ranks[1], r4x);
    __m512i sum = _mm512_setzero_si512();
    for (int slot = 0; slot < N; ++slot) {
      const __m128i r = _mm_load_si128(reinterpret_cast<const __m128i*>(&ranks[slot / 4][16 * (slot % 4)]));
      sum = _mm512_add_epi32(sum, _mm512_permutexvar_epi32(_mm512_cvtepu8_epi32(r), keys));
    }

    // The suits, counted in nibbles and summed over the four 16-byte lanes.
    __m512i n01 = _mm512_add_epi8(_mm512_permutexvar_epi8(s03, suits01), _mm512_permutexvar_epi8(s4x, suits01));
    __m512i n23 = _mm512_add_epi8(_mm512_permutexvar_epi8(s03, suits23), _mm512_permutexvar_epi8(s4x, suits23));
    n01 = _mm512_add_epi8(n01, rotate_lanes<2>(n01));
    n01 = _mm512_add_epi8(n01, rotate_lanes<1>(n01));
    n23 = _mm512_add_epi8(n23, rotate_lanes<2>(n23));
    n23 = _mm512_add_epi8(n23, rotate_lanes<1>(n23));
    const uint32_t flushes = static_cast<uint32_t>(_mm512_test_epi8_mask(_mm512_add_epi8(n01, three), eight) |
                                                   _mm512_test_epi8_mask(_mm512_add_epi8(n23, three), eight)) &
                             0xFFFF;

    _mm512_store_si512(sums[group & 1], sum);
    if (waiting_values) finish(sums[(group & 1) ^ 1]);
    waiting_values = values + h;
    waiting_codes = p;
    waiting_flushes = flushes;
    waiting_ok = bad == 0;
    all_ok &= waiting_ok;
  }
  if (waiting_values) finish(sums[((h / 16) & 1) ^ 1]);
  return tail<R, N>(codes + h * N, hands - h, values + h) && all_ok;
}

POKERMATH_ALL_WIDE_BATCHES

#if defined(__clang__)
#pragma clang attribute pop
#else
#pragma GCC diagnostic pop
#pragma GCC pop_options
#endif

// ---- masks, eight hands at a time -------------------------------------------------------------------
// One vector holds eight masks. The checks (the card counts) and the flush test (each suit's count)
// take a few instructions for all eight. The rank part of each key comes from small tables held in
// registers: each suit's 13 ranks are fields of 5, 5 and 3 bits, and a permute gives each field's sum
// of rank keys, twelve permutes for the eight hands. Each sum then goes through the hash as in the
// one-hand code; a group whose hands all have the same number of cards (the usual case) runs one
// loop for that size. Flushes are valued one by one from their masks. Against four reads of the
// 32 KB table of rank-set sums per hand, this took 7-card masks from 2.8 to 1.9 ns a hand.

#if defined(__clang__)
#pragma clang attribute push(__attribute__((target("avx512f,avx512vl,avx512bw,avx512vpopcntdq,popcnt"))), \
                             apply_to = function)
#else
#pragma GCC push_options
#pragma GCC target("avx512f,avx512vl,avx512bw,avx512vpopcntdq,popcnt")
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"  // as above
#endif

namespace {

// The sums of the rank keys of every subset of ranks 0..4 and 5..9 (32 each), and of ranks 10..12
// (8, repeated to fill 16 lanes).
struct FieldSums {
  alignas(64) std::array<uint32_t, 32> low{}, middle{};
  alignas(64) std::array<uint32_t, 16> high{};

  constexpr FieldSums() {
    for (int set = 0; set < 32; ++set)
      for (int b = 0; b < 5; ++b)
        if (set >> b & 1) {
          low[set] += kRankKeys[b];
          middle[set] += kRankKeys[5 + b];
          if (b < 3 && set < 8) high[set] = high[set + 8] += kRankKeys[10 + b];
        }
  }
};
constexpr FieldSums kFieldSums;

// The values of eight hands of N cards from the rank parts of their keys.
template <Ranking R, int N>
inline void rank_values(const uint32_t* sums, int* values) {
  for (int i = 0; i < 8; ++i) values[i] = rank_value<R, N>(sums[i]);
}

}  // namespace

template <Ranking R>
bool wide_mask_batch(const uint64_t* masks, size_t hands, int* values) {
  const __m512i slice = _mm512_set1_epi64(0x1FFF);
  const __m512i off_deck = _mm512_set1_epi64(static_cast<int64_t>(~uint64_t{0} << 52));
  const __m512i below_six = _mm512_set1_epi64(static_cast<int64_t>(kBelowSix));
  const __m512i five = _mm512_set1_epi64(5), seven = _mm512_set1_epi64(7);
  const __m512i low0 = _mm512_load_si512(kFieldSums.low.data()), low1 = _mm512_load_si512(kFieldSums.low.data() + 16);
  const __m512i mid0 = _mm512_load_si512(kFieldSums.middle.data());
  const __m512i mid1 = _mm512_load_si512(kFieldSums.middle.data() + 16);
  const __m512i high = _mm512_load_si512(kFieldSums.high.data());
  alignas(32) uint32_t sums[8];
  bool all_ok = true;
  size_t h = 0;
  for (; h + 8 <= hands; h += 8) {
    // Eight masks are one cache line: ask for the line kAhead bytes on, as the code batch does.
    _mm_prefetch(reinterpret_cast<const char*>(reinterpret_cast<uintptr_t>(masks + h) + kAhead), _MM_HINT_T0);
    const __m512i m = _mm512_loadu_si512(masks + h);
    const __m512i n = _mm512_popcnt_epi64(m);
    __mmask8 bad = _mm512_test_epi64_mask(m, off_deck) | _mm512_cmplt_epu64_mask(n, five) |
                   _mm512_cmpgt_epu64_mask(n, seven);
    if constexpr (R != Ranking::Holdem) bad |= _mm512_test_epi64_mask(m, below_six);
    if (bad) {
      all_ok = false;
      continue;
    }
    // The rank part of each key: each suit's ranks in fields of 5, 5 and 3 bits, each field's sum
    // of rank keys by a permute (which reads only the low bits of each index, so the bits above a
    // field need no masking), added in the low dword of each lane.
    __mmask8 flushes = 0;
    __m512i sum = _mm512_setzero_si512();
    for (int k = 0; k < 4; ++k) {
      const __m512i at = _mm512_srli_epi64(m, 13 * k);
      flushes |= _mm512_cmpge_epu64_mask(_mm512_popcnt_epi64(_mm512_and_si512(at, slice)), five);
      sum = _mm512_add_epi32(sum, _mm512_permutex2var_epi32(low0, at, low1));
      sum = _mm512_add_epi32(sum, _mm512_permutex2var_epi32(mid0, _mm512_srli_epi64(at, 5), mid1));
      sum = _mm512_add_epi32(sum, _mm512_permutexvar_epi32(_mm512_srli_epi64(at, 10), high));
    }
    _mm256_store_si256(reinterpret_cast<__m256i*>(sums), _mm512_cvtepi64_epi32(sum));
    const int n0 = _mm_cvtsi128_si32(_mm512_castsi512_si128(n));
    int* v = values + h;
    if (_mm512_cmpeq_epi64_mask(n, _mm512_set1_epi64(n0)) == 0xFF) {
      if (n0 == 7)
        rank_values<R, 7>(sums, v);
      else if (n0 == 6)
        rank_values<R, 6>(sums, v);
      else
        rank_values<R, 5>(sums, v);
    } else {
      bool unused = false;
      for (int i = 0; i < 8; ++i) v[i] = mask_value<R>(masks[h + i], unused);
    }
    for (unsigned f = flushes; f; f &= f - 1) {
      bool unused = false;
      const int i = std::countr_zero(f);
      v[i] = mask_value<R>(masks[h + i], unused);
    }
  }
  bool bad = false;
  for (; h < hands; ++h) values[h] = mask_value<R>(masks[h], bad);
  return all_ok && !bad;
}

POKERMATH_ALL_MASK_BATCHES

#if defined(__clang__)
#pragma clang attribute pop
#else
#pragma GCC diagnostic pop
#pragma GCC pop_options
#endif

#else

template <Ranking R, int N, typename Code>
bool wide_batch(const Code*, size_t, int*) {
  return false;
}

POKERMATH_ALL_WIDE_BATCHES

template <Ranking R>
bool wide_mask_batch(const uint64_t*, size_t, int*) {
  return false;
}

POKERMATH_ALL_MASK_BATCHES

#endif

}  // namespace pokermath::detail

// Batch evaluation with AVX-512, for the CPUs that have it: card codes sixteen hands at a time, masks
// eight.
#pragma once

#include <cstddef>
#include <cstdint>

#include "eval/hand_key.h"

namespace pokermath::detail {

// True when the CPU runs the 16-lane batch (AVX-512 F, BW, VL and VBMI).
bool wide_batch_available();

// values[h] = the value of hand h, `hands` hands of N card codes each (Code: uint8_t or int). Returns
// false when some hand is not valid (a code outside 0..51, a card twice, and for the short deck a
// card below six); the values are then unspecified. Call only when wide_batch_available().
template <Ranking R, int N, typename Code>
bool wide_batch(const Code* codes, size_t hands, int* values);

// True when the CPU runs the 8-lane mask batch (AVX-512 F, BW, VL and VPOPCNTDQ).
bool wide_mask_batch_available();

// values[h] = the value of masks[h], as mask_value gives it. Returns false when some mask is not a
// hand; the values are then unspecified. Call only when wide_mask_batch_available().
template <Ranking R>
bool wide_mask_batch(const uint64_t* masks, size_t hands, int* values);

}  // namespace pokermath::detail

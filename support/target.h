// Functions compiled for two targets and chosen by the CPU when the program loads.
#pragma once

// On x86-64 with GCC or Clang a hot function marked POKERMATH_CLONES is compiled for x86-64-v3
// (AVX2, BMI2, POPCNT: Haswell and Zen onwards) and for the baseline that a portable build targets;
// the loader picks the copy the CPU can run. A build that already targets AVX2 needs no copies.
#if defined(__x86_64__) && defined(__GNUC__) && !defined(__AVX2__)
#define POKERMATH_CLONES [[gnu::target_clones("arch=x86-64-v3", "default")]]
#else
#define POKERMATH_CLONES
#endif

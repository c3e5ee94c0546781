// Functions compiled for two targets and chosen by the CPU when the program loads.
#pragma once

// On x86-64 with GCC or Clang a hot function marked POKERMATH_CLONES is compiled for x86-64-v3
// (AVX2, BMI2, POPCNT: Haswell and Zen onwards) and for the baseline that a portable build targets;
// the loader picks the copy the CPU can run. A build that already targets AVX2 needs no copies.
//
// ThreadSanitizer builds get one copy: the loader runs the chooser (an ifunc resolver) before the
// sanitizer's runtime is set up, and Clang 14 instruments the chooser, which then crashes.
#if defined(__SANITIZE_THREAD__)
#define POKERMATH_THREAD_SANITIZER 1
#elif defined(__has_feature)
#if __has_feature(thread_sanitizer)
#define POKERMATH_THREAD_SANITIZER 1
#endif
#endif

#if defined(__x86_64__) && defined(__GNUC__) && !defined(__AVX2__) && !defined(POKERMATH_THREAD_SANITIZER)
#define POKERMATH_CLONES [[gnu::target_clones("arch=x86-64-v3", "default")]]
#else
#define POKERMATH_CLONES
#endif

#!/usr/bin/env bash
# Installs what the build needs, builds the library, CLI, tests and benchmarks, and runs every test
# with CTest: first the Release build (GCC 12) with every label, then the unit tests under
# AddressSanitizer and UndefinedBehaviorSanitizer, then the threaded unit tests built with Clang 14
# (warnings as errors) under ThreadSanitizer, then a short run of each fuzz target. The long sweeps (labels
# exhaustive and tables) run once, in the Release build. Safe to run again; an up-to-date tree
# rebuilds nothing.
#   scripts/test.sh               everything
#   scripts/test.sh --quick       Release build only, unit tests only
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/setup.sh

quick=0
[ "${1:-}" = "--quick" ] && quick=1
jobs=$(nproc)

ensure_packages "${POKERMATH_TEST_PACKAGES[@]}"

# Both GCC builds share one directory of generated tables: the sanitizer run finds them ready.
tables_dir="$PWD/build/tables"

# Each stage is a function; run_stage prints its title and how long it took. A new stage is one
# more function and one more run_stage line.
run_stage() {
  local title=$1
  shift
  echo "== $title" >&2
  local start=$SECONDS
  "$@"
  echo "== $title: $((SECONDS - start)) s" >&2
}

release_stage() {
  configure_preset release -DPOKERMATH_BUILD_BENCH=ON -DPOKERMATH_TEST_TABLES_DIR="$tables_dir"
  cmake --build build/release -j "$jobs"
  if [ $quick -eq 1 ]; then
    ctest --test-dir build/release -L unit -j "$jobs" --output-on-failure
  else
    ctest --test-dir build/release -j "$jobs" --output-on-failure
  fi
}

asan_ubsan_stage() {
  configure_preset asan-ubsan -DPOKERMATH_TEST_LABELS=unit
  cmake --build build/asan-ubsan -j "$jobs"
  ASAN_OPTIONS=detect_leaks=1 UBSAN_OPTIONS=print_stacktrace=1 \
    ctest --test-dir build/asan-ubsan -L unit -j "$jobs" --output-on-failure
}

# The library and the unit tests that run work on threads (label "threads": the engines, table
# loading, concurrent writers, the concurrency test) under ThreadSanitizer; the preset leaves out the
# command-line program and the single-threaded tests, which the two GCC stages cover. The
# tsan preset builds with Clang and libomp, whose Archer tool tells ThreadSanitizer about OpenMP's
# synchronisation; the test preset's TSAN_OPTIONS add ignore_noninstrumented_modules=1, which Archer
# asks for: accesses made inside the uninstrumented OpenMP runtime itself are not reported. Our code
# is instrumented, so its races still are.
tsan_stage() {
  configure_preset tsan -DCMAKE_CXX_FLAGS=-Werror
  cmake --build build/tsan -j "$jobs"
  ctest --preset tsan -j "$jobs"
}

# The libFuzzer targets (fuzz/, Clang 14 with AddressSanitizer and UndefinedBehaviorSanitizer), each
# run for ten seconds from its seeds: every CI run fuzzes a little. docs/fuzzing.md: long runs.
fuzz_stage() {
  scripts/fuzz.sh 10
}

run_stage "Release build" release_stage
[ $quick -eq 1 ] && exit 0
run_stage "AddressSanitizer + UndefinedBehaviorSanitizer build" asan_ubsan_stage
run_stage "ThreadSanitizer build (Clang 14)" tsan_stage
run_stage "Fuzzing smoke runs (Clang 14)" fuzz_stage

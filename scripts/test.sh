#!/usr/bin/env bash
# Installs what the build needs, builds the library, CLI, tests and benchmarks, and runs every test
# with CTest: first the Release build, then the same suite under AddressSanitizer and
# UndefinedBehaviorSanitizer. Safe to run again; an up-to-date tree rebuilds nothing.
#   scripts/test.sh               everything
#   scripts/test.sh --quick       Release build only, unit tests only
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/setup.sh

quick=0
[ "${1:-}" = "--quick" ] && quick=1
jobs=$(nproc)

ensure_packages

# Both builds share one directory of generated tables: the sanitizer run finds them ready.
tables_dir="$PWD/build/tables"

echo "== Release build" >&2
configure_preset release -DPOKERMATH_BUILD_BENCH=ON -DPOKERMATH_TEST_TABLES_DIR="$tables_dir"
cmake --build build/release -j "$jobs"
if [ $quick -eq 1 ]; then
  ctest --test-dir build/release -L unit -j "$jobs" --output-on-failure
  exit 0
fi
ctest --test-dir build/release -j "$jobs" --output-on-failure

echo "== AddressSanitizer + UndefinedBehaviorSanitizer build" >&2
configure_preset asan-ubsan -DPOKERMATH_TEST_TABLES_DIR="$tables_dir"
cmake --build build/asan-ubsan -j "$jobs"
ASAN_OPTIONS=detect_leaks=1 UBSAN_OPTIONS=print_stacktrace=1 \
  ctest --test-dir build/asan-ubsan -j "$jobs" --output-on-failure

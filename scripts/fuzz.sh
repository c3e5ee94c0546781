#!/usr/bin/env bash
# Builds the libFuzzer targets of fuzz/ (clang 14, AddressSanitizer and UndefinedBehaviorSanitizer,
# coverage through the library) in build/fuzz, then runs each from its seeds in fuzz/corpus for a
# while. Inputs that find new coverage collect in build/fuzz/corpus, so later runs start from them.
# Exits non-zero when a target crashes; the input that did it is kept in build/fuzz/artifacts.
#   scripts/fuzz.sh                   every target for 10 seconds
#   scripts/fuzz.sh 600               every target for 10 minutes
#   scripts/fuzz.sh 3600 machines     the named targets only, here one for an hour
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/setup.sh

seconds=${1:-10}
[ $# -gt 0 ] && shift
targets=("$@")
[ ${#targets[@]} -eq 0 ] && targets=(cards ranges history payouts preflop machines)

POKERMATH_PACKAGES+=(clang-14 libclang-rt-14-dev libomp-14-dev)
ensure_packages

build=build/fuzz
if [ ! -f $build/CMakeCache.txt ]; then
  # Only the library and the fuzz targets: no tests, benchmarks or CLI in this build. -O1 with line
  # tables, as the sanitizer builds: quicker to compile, and stack traces still name the lines.
  CC=clang-14 CXX=clang++-14 cmake -S . -B $build -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DPOKERMATH_FUZZ=ON \
    -DCMAKE_CXX_FLAGS_RELWITHDEBINFO="-O1 -g1 -DNDEBUG" \
    -DPOKERMATH_BUILD_TESTS=OFF -DPOKERMATH_BUILD_BENCH=OFF -DPOKERMATH_BUILD_CLI=OFF >/dev/null
fi
echo "== building the fuzz targets" >&2
cmake --build $build --target fuzz -j "$(nproc)"

mkdir -p $build/artifacts $build/logs
status=0
for target in "${targets[@]}"; do
  program=$build/fuzz/fuzz_$target
  [ -x "$program" ] || { echo "no fuzz target '$target'" >&2; exit 2; }
  mkdir -p $build/corpus/$target
  options=(-max_total_time="$seconds" -timeout=30 -print_final_stats=1 -artifact_prefix=$build/artifacts/$target-)
  [ -f fuzz/$target.dict ] && options+=(-dict=fuzz/$target.dict)
  log=$build/logs/$target.log
  # The grown corpus comes first: libFuzzer writes new inputs into the first directory, never the seeds.
  if UBSAN_OPTIONS=print_stacktrace=1 nice -n 10 "$program" "${options[@]}" $build/corpus/$target fuzz/corpus/$target \
    >"$log" 2>&1; then
    result=ok
  else
    result="CRASH (exit $?)"
    status=1
  fi
  runs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log")
  printf '%-9s %6s s %12s runs   %s\n' "$target" "$seconds" "${runs:-?}" "$result"
  if [ "$result" != ok ]; then
    grep -E 'ERROR|SUMMARY|property failed|Test unit written' "$log" | head -8 | sed 's/^/    /'
    echo "    full log: $log" >&2
  fi
done
exit $status

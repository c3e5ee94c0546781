#!/usr/bin/env bash
# Installs what the build needs, builds the Release library and the pokermath program, and runs it
# on examples. Safe to run again; an up-to-date tree rebuilds nothing.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/setup.sh

ensure_packages
configure_preset release
cmake --build build/release -j "$(nproc)" --target pokermath_cli >&2

pokermath=build/release/cli/pokermath
run() {
  echo "\$ pokermath $*"
  "$pokermath" "$@"
  echo
}
run eval As Ks Qs Js Ts
run eval Ah Ad 7c 7s 2h Kd 7h
run eval 9c9d5h5sKc2d --json
run range QQ+,AKs,AKo
run range --top 10 --table groups

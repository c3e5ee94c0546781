#!/usr/bin/env bash
# Installs what the build needs, builds the Release library, the pokermath program and the Python
# package, installs the package for python3, and runs the program on examples: equities (exact and
# sampled), the best Omaha hand, a hand's value, a range, the standard workloads with their timings,
# and the same equity from Python. Safe to run again; an up-to-date tree rebuilds nothing.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/setup.sh

ensure_packages
configure_preset release
cmake --build build/release -j "$(nproc)" --target pokermath_cli pokermath_python >&2
install_python_package build/release

pokermath=build/release/cli/pokermath
run() {
  echo "\$ pokermath $*"
  "$pokermath" "$@"
  echo
}
run equity AsKs QhQd
run equity AsKs "QQ+,AKs,A5s-A2s"
run equity AhKh random --board Qh7h2c
run equity AsKs QhQd JcTc 9s9h 8d7d 6c5c --target-stderr 0.0005
run omaha best AsKs7d2c QsJsTs3h2d
run eval Ah Ad 7c 7s 2h Kd 7h
run range QQ+,AKs,AKo
run bench

echo "\$ python3 -c \"import pokermath; print(pokermath.equity(['AsKs', 'QhQd']))\""
(cd / && python3 -c "import pokermath; print(pokermath.equity(['AsKs', 'QhQd']))")

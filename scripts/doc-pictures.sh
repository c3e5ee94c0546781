#!/usr/bin/env bash
# Draws the pictures of docs/analysis.md with the pokermath program of a build (default
# build/release): the same commands the page shows. Run it after changing the pictures' code.
#   scripts/doc-pictures.sh [BUILD_DIR]
set -euo pipefail
cd "$(dirname "$0")/.."
pokermath="${1:-build/release}/cli/pokermath"
out=docs/images
mkdir -p "$out"
"$pokermath" range "22+,A2s+,K9s+,Q9s+,J9s+,T9s,98s,87s@50,76s@50,ATo+,KJo+@75" --svg "$out/range.svg" >/dev/null
"$pokermath" equity "22+,A2s+,K9s+,ATo+" "QQ+,AK" --by-class --svg "$out/equity-by-class.svg" >/dev/null
"$pokermath" equity "22+,A2s+,K9s+,ATo+" "QQ+,AK" --distribution --svg "$out/distribution.svg" >/dev/null
"$pokermath" board-hits "22+,A2s+,K9s+,Q9s+,J9s+,T9s,98s,ATo+,KJo+" Ts9s3c --svg "$out/board-hits.svg" >/dev/null
echo "wrote $out/range.svg, equity-by-class.svg, distribution.svg, board-hits.svg"

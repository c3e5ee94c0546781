#!/usr/bin/env bash
# Runs of the exact Omaha table on a small deck (4-card Hi/Lo, ranks A2345K, 149 units): one
# process and mpirun -np 2 write the same bytes; a job with one rank killed mid-run resumes to the
# same bytes without redoing its finished units; cut, damaged, missing and stray unit files are found
# and redone; two runs sharing one checkpoint directory both finish with the same bytes; a run of
# another table pointed at that directory is refused.
# Usage: omaha_table_runs.sh POKERMATH WORK_DIR
set -euo pipefail
pm=$1
work=$2
rm -rf "$work"
mkdir -p "$work"
# CI and the set-up run as root, which OpenMPI refuses unless told.
export OMPI_ALLOW_RUN_AS_ROOT=1 OMPI_ALLOW_RUN_AS_ROOT_CONFIRM=1
args=(tables --omaha-preflop 4 --hilo --ranks A2345K --unit-boards 16 --threads 1)
table=omaha4-hilo-preflop-2345KA.bin
fail() {
  echo "FAIL: $*" >&2
  exit 1
}
unit_files() { find "$1" -name 'unit-*.bin' 2>/dev/null | wc -l; }

"$pm" "${args[@]}" --dir "$work/one" 2>"$work/one.log"
reference="$work/one/$table"
[ "$(unit_files "$work/one/$table.units")" -eq 149 ] || fail "expected 149 unit files"

# A run of another table's units in that checkpoint directory.
if "$pm" "${args[@]/16/32}" --dir "$work/other" --checkpoint "$work/one/$table.units" 2>"$work/other.log"; then
  fail "a run with other units was let into the checkpoint directory"
fi
grep -q "holds the units of another run" "$work/other.log" || fail "no reason given: $(cat "$work/other.log")"

# Damage: a cut unit, a flipped byte, a missing unit and a writer's leftover temporary file.
units="$work/one/$table.units"
rm "$reference"
truncate -s 100 "$units/unit-000003.bin"
printf '\x7f' | dd of="$units/unit-000005.bin" bs=1 seek=60 conv=notrunc status=none
rm "$units/unit-000009.bin"
touch "$units/unit-000007.bin.partial-999999-0"
cp "$work/one.log" "$work/first.log"
"$pm" "${args[@]}" --dir "$work/one" 2>"$work/damaged.log"
grep -q "unit 3 .* is damaged" "$work/damaged.log" || fail "cut unit not reported: $(cat "$work/damaged.log")"
grep -q "unit 5 .* is damaged" "$work/damaged.log" || fail "damaged unit not reported"
grep -q "146 of 149 units are done" "$work/damaged.log" || fail "finished units were not kept"
[ ! -e "$units/unit-000007.bin.partial-999999-0" ] || fail "a dead writer's temporary file was left"
"$pm" "${args[@]}" --dir "$work/first" 2>/dev/null
cmp "$reference" "$work/first/$table" || fail "the repaired run wrote other bytes"

# Two runs at once in one checkpoint directory.
"$pm" "${args[@]}" --dir "$work/two" 2>"$work/two-a.log" &
a=$!
"$pm" "${args[@]}" --dir "$work/two" 2>"$work/two-b.log" &
b=$!
wait $a || fail "the first of two runs failed: $(cat "$work/two-a.log")"
wait $b || fail "the second of two runs failed: $(cat "$work/two-b.log")"
cmp "$reference" "$work/two/$table" || fail "two runs sharing a directory wrote other bytes"

if ! command -v mpirun >/dev/null; then
  echo "mpirun not found: the MPI runs are skipped" >&2
  exit 0
fi
mpirun --oversubscribe -np 2 "$pm" "${args[@]}" --dir "$work/mpi" 2>"$work/mpi.log" ||
  fail "mpirun -np 2 failed: $(cat "$work/mpi.log")"
cmp "$reference" "$work/mpi/$table" || fail "mpirun -np 2 wrote other bytes"

# Kill rank 1 once a few units are done; the job ends, and a new one finishes the rest.
mpirun --oversubscribe -np 2 "$pm" "${args[@]}" --dir "$work/kill" >/dev/null 2>"$work/kill.log" &
launcher=$!
for _ in $(seq 3000); do
  [ "$(unit_files "$work/kill/$table.units")" -ge 5 ] && break
  kill -0 $launcher 2>/dev/null || break
  sleep 0.02
done
for pid in $(pgrep -f -- "--dir $work/kill"); do
  if tr '\0' '\n' <"/proc/$pid/environ" 2>/dev/null | grep -qx OMPI_COMM_WORLD_RANK=1; then kill -9 "$pid"; fi
done
if wait $launcher; then fail "the job finished although a rank was killed: $(cat "$work/kill.log")"; fi
done_before=$(unit_files "$work/kill/$table.units")
[ "$done_before" -lt 149 ] || fail "the job finished before the kill"
mpirun --oversubscribe -np 2 "$pm" "${args[@]}" --dir "$work/kill" 2>"$work/resume.log"
grep -q "computing $((149 - done_before)) of 149 units" "$work/resume.log" ||
  fail "the resumed job did not keep the $done_before finished units: $(head -3 "$work/resume.log")"
cmp "$reference" "$work/kill/$table" || fail "the resumed job wrote other bytes"
echo "omaha table runs: all checks passed"

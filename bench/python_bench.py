"""Timings of the Python package: what a call from Python costs next to the C++ it runs.

    PYTHONPATH=build/release/python /usr/bin/python3 bench/python_bench.py [--repeat N] [--cpp build/release/bench]

Measures, each the median of N repeats (default 7) unless said otherwise:
  - hand_values over 10 million random seven-card hands from a numpy uint8 array and from int32,
    into a preallocated int32 array (ns per hand, millions of hands per second);
  - one evaluate() call with a seven-card string and one hand_value() call with a list of seven
    card codes (ns per call);
  - equity(["AsKs", "QhQd"]), exact, on every core and on one thread (ms per call, the median of
    200 calls timed one by one).
With --cpp DIR it also runs the matching Google Benchmark cases of DIR/workloads_bench and prints
the C++ figure beside each Python one, with the ratio Python / C++.
"""

from __future__ import annotations

import argparse
import json
import os
import statistics
import subprocess
import sys
import time
import timeit

import numpy

import pokermath

SEVEN = "AhAd7c7s2hKd7h"
SEVEN_CODES = pokermath.parse_cards(SEVEN)
EQUITY_PLAYERS = ["AsKs", "QhQd"]

# The C++ cases of workloads_bench that do the same work: batches of 10 million seven-card hands
# (bytes, ints), a hand parsed from text and evaluated in full, the one-hand value call in a loop
# (its C++ figure has no call overhead to compare), and exact AsKs against QhQd on every core and
# on one thread.
CPP_CASES = {
    "batch_uint8": "BM_hand_values_bytes/7",
    "batch_int32": "BM_hand_values_codes/7",
    "evaluate": "BM_evaluate_text",
    "hand_value": "BM_hand_value/7",
    "equity_all": "exact/AsKs_QhQd/0/real_time",
    "equity_1": "exact/AsKs_QhQd/1/real_time",
}


def random_hands(count: int, seed: int) -> numpy.ndarray:
    """`count` random seven-card hands with distinct cards, as uint8 codes: per row, the seven
    columns with the smallest of 52 random keys. Built in blocks to keep the keys small."""
    rng = numpy.random.default_rng(seed)
    hands = numpy.empty((count, 7), dtype=numpy.uint8)
    block = 1 << 18
    for first in range(0, count, block):
        rows = min(block, count - first)
        keys = rng.random((rows, 52), dtype=numpy.float32)
        hands[first : first + rows] = numpy.argpartition(keys, 7, axis=1)[:, :7]
    return hands


def median_seconds(run, repeat: int) -> float:
    """The median wall time of `repeat` runs of run(), after one untimed run (page faults, caches)."""
    run()
    times = []
    for _ in range(repeat):
        start = time.perf_counter()
        run()
        times.append(time.perf_counter() - start)
    return statistics.median(times)


def per_call_ns(statement, repeat: int, loops: int) -> float:
    """The median over `repeat` rounds of the time of one call, timed over `loops` calls, after one
    untimed call (the first evaluate() sets up what later calls share)."""
    statement()
    rounds = timeit.repeat(statement, repeat=repeat, number=loops)
    return statistics.median(rounds) / loops * 1e9


def python_figures(args: argparse.Namespace) -> dict[str, float]:
    """Every Python figure in ns (per hand or per call)."""
    print(f"generating {args.hands:,} random seven-card hands ...", file=sys.stderr)
    bytes_hands = random_hands(args.hands, seed=2026)
    int_hands = bytes_hands.astype(numpy.int32)
    out = numpy.empty(args.hands, dtype=numpy.int32)
    # The two layouts must agree before either is timed.
    expected = pokermath.hand_values(bytes_hands[:1000])
    if not numpy.array_equal(expected, pokermath.hand_values(int_hands[:1000])):
        raise SystemExit("uint8 and int32 hands give different values")
    if pokermath.hand_value(bytes_hands[0].tolist()) != expected[0]:
        raise SystemExit("hand_value and hand_values disagree")

    figures = {}
    print("timing the batches ...", file=sys.stderr)
    figures["batch_uint8"] = median_seconds(lambda: pokermath.hand_values(bytes_hands, out=out), args.repeat)
    figures["batch_uint8"] *= 1e9 / args.hands
    figures["batch_int32"] = median_seconds(lambda: pokermath.hand_values(int_hands, out=out), args.repeat)
    figures["batch_int32"] *= 1e9 / args.hands

    print("timing single calls ...", file=sys.stderr)
    figures["evaluate"] = per_call_ns(lambda: pokermath.evaluate(SEVEN), args.repeat, args.loops)
    figures["hand_value"] = per_call_ns(lambda: pokermath.hand_value(SEVEN_CODES), args.repeat, args.loops)

    print("timing equity ...", file=sys.stderr)
    if pokermath.equity(EQUITY_PLAYERS).method != "exact":
        raise SystemExit("equity(['AsKs', 'QhQd']) was not counted exactly")
    for key, threads in (("equity_all", 0), ("equity_1", 1)):
        pokermath.equity(EQUITY_PLAYERS, threads=threads)
        times = []
        for _ in range(args.equity_calls):
            start = time.perf_counter()
            pokermath.equity(EQUITY_PLAYERS, threads=threads)
            times.append(time.perf_counter() - start)
        figures[key] = statistics.median(times) * 1e9
    return figures


def cpp_binary(bench_dir: str) -> str:
    """The workloads_bench program in `bench_dir`, checked before any timing starts."""
    binary = os.path.join(bench_dir, "workloads_bench")
    if not os.access(binary, os.X_OK):
        raise SystemExit(f"{binary} not found: build the benchmarks with -DPOKERMATH_BUILD_BENCH=ON")
    return binary


def cpp_figures(binary: str) -> dict[str, float]:
    """The C++ figures in ns (per hand or per call): medians of five repetitions of each case."""
    names = "|".join(CPP_CASES.values())
    command = [binary, f"--benchmark_filter=^({names})$", "--benchmark_repetitions=5",
               "--benchmark_report_aggregates_only=true", "--benchmark_format=json"]
    print("running", " ".join(command), "...", file=sys.stderr)
    report = json.loads(subprocess.run(command, check=True, capture_output=True, text=True).stdout)
    unit_ns = {"ns": 1.0, "us": 1e3, "ms": 1e6, "s": 1e9}
    medians = {}
    for run in report["benchmarks"]:
        if run.get("aggregate_name") != "median":
            continue
        if "items_per_second" in run:  # the batches and the loop count hands: the time of one hand
            medians[run["run_name"]] = 1e9 / run["items_per_second"]
        else:
            medians[run["run_name"]] = run["real_time"] * unit_ns[run["time_unit"]]
    missing = [name for name in CPP_CASES.values() if name not in medians]
    if missing:
        raise SystemExit(f"{binary} has no benchmark {', '.join(missing)}")
    return {key: medians[name] for key, name in CPP_CASES.items()}


def print_table(python: dict[str, float], cpp: dict[str, float] | None) -> None:
    rows = [
        ("batch_uint8", "hand_values, uint8 (n, 7)", "ns/hand", 1.0),
        ("batch_int32", "hand_values, int32 (n, 7)", "ns/hand", 1.0),
        ("evaluate", f'evaluate("{SEVEN}")', "ns/call", 1.0),
        ("hand_value", "hand_value([7 codes])", "ns/call", 1.0),
        ("equity_all", "equity(AsKs, QhQd), every core", "ms/call", 1e-6),
        ("equity_1", "equity(AsKs, QhQd), threads=1", "ms/call", 1e-6),
    ]
    header = f"{'workload':<36}{'unit':>9}{'Python':>10}"
    if cpp is not None:
        header += f"{'C++':>10}{'ratio':>8}"
    print(header)
    print("-" * len(header))
    for key, label, unit, scale in rows:
        line = f"{label:<36}{unit:>9}{python[key] * scale:>10.3f}"
        if cpp is not None:
            if key in cpp:
                line += f"{cpp[key] * scale:>10.3f}{python[key] / cpp[key]:>7.2f}x"
            else:
                line += f"{'-':>10}{'-':>8}"
        print(line)
    for key in ("batch_uint8", "batch_int32"):
        print(f"{key}: {1e3 / python[key]:.0f} million hands per second")


def main() -> None:
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--repeat", type=int, default=7, help="repeats of each timing; the median is shown")
    parser.add_argument("--hands", type=int, default=10_000_000, help="hands in each batch")
    parser.add_argument("--loops", type=int, default=200_000, help="calls in each single-call timing")
    parser.add_argument("--equity-calls", type=int, default=200, help="equity calls timed one by one")
    parser.add_argument("--cpp", metavar="BENCH_BINARY_DIR", help="also run the C++ cases of workloads_bench there")
    args = parser.parse_args()
    if min(args.repeat, args.hands, args.loops, args.equity_calls) < 1:
        parser.error("--repeat, --hands, --loops and --equity-calls must be at least 1")

    binary = cpp_binary(args.cpp) if args.cpp else None
    print(f"pokermath {pokermath.__version__}, Python {sys.version.split()[0]}, numpy {numpy.__version__}, "
          f"{os.cpu_count()} cores")
    python = python_figures(args)
    cpp = cpp_figures(binary) if binary else None
    print_table(python, cpp)


if __name__ == "__main__":
    main()

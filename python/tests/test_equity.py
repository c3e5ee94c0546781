import json
import math
import os
import signal
import subprocess
import sys
import threading
import time

import pytest

import pokermath as pm

# Each question is asked of the library here on one thread and of the command-line program on
# every core: exact answers and seeded Monte Carlo runs must agree to the last bits.
QUESTIONS = [
    (["AsKs", "QhQd"], {}),
    (["AsKs", "QQ+,AKs,A5s-A2s"], {}),
    (["AhKh", "random"], {"board": "Qh7h2c"}),
    (["AsKs", "QhQd", "JcTc"], {}),
    (["AsKs", "8c8d"], {"board": "Kd7c2h9s", "dead": "Qh"}),
    (["AsKsQhJh", "9c9d8c7d"], {"game": "omaha", "board": "Ts6h2c"}),
    (["As2s3hKd", "9c9d8c7d"], {"game": "omaha-hilo", "board": "Ts6h2c"}),
    (["AsAd", "random", "random"], {"method": "monte-carlo", "trials": 200_000, "seed": 7}),
    (["As2s3hKdQc", "random"], {"game": "omaha5-hilo", "method": "monte-carlo", "trials": 100_000, "seed": 11}),
    (["AsKs", "99+,ATs+", "random"], {"game": "shortdeck", "board": "Kd9c6h"}),
    (["JhTh", "7s7d"], {"game": "china", "board": "Qs9h8d"}),
]


def cli_equity(cli, players, options):
    args = [cli, "equity", *players, "--json"]
    for name in ("game", "board", "dead", "trials", "seed"):
        if name in options:
            args += [f"--{name}", str(options[name])]
    if options.get("method") == "monte-carlo":
        args.append("--monte-carlo")
    return json.loads(subprocess.run(args, check=True, capture_output=True, text=True).stdout)


def same(python_value, json_value):
    if json_value is None:
        return math.isnan(python_value)
    return python_value == pytest.approx(json_value, abs=1e-12, rel=0)


@pytest.mark.parametrize("players, options", QUESTIONS)
def test_equity_equals_the_command_line(cli, players, options):
    result = pm.equity(players, threads=1, **options)
    expected = cli_equity(cli, players, options)
    assert (result.method, result.deals, result.from_table) == (expected["method"], expected["deals"], False)
    assert result.exact == (expected["method"] == "exact")
    assert len(result) == len(expected["players"])
    for player, want in zip(result, expected["players"]):
        assert player.hand == want["hand"]
        for field in ("win", "tie", "equity", "std_error", "high", "low", "scoop"):
            assert same(getattr(player, field), want.get(field)), (player, field)


def test_result_object():
    r = pm.equity(["AsKs", "QhQd"])
    assert (r.method, r.exact, r.deals, len(r)) == ("exact", True, 1712304, 2)
    assert [p.hand for p in r] == ["AsKs", "QhQd"] and r[-1].hand == "QhQd"
    assert r.equities == [p.equity for p in r.players] and sum(r.equities) == pytest.approx(1)
    assert r[0].equity == pytest.approx(0.4621, abs=1e-4) and r[0].std_error == 0
    with pytest.raises(IndexError):
        r[2]
    assert repr(r).startswith("EquityResult(method='exact', deals=1712304, players=[PlayerEquity(hand='AsKs', win=0.4602")
    assert str(r).splitlines()[0] == "method: exact, 1712304 deals"
    assert "AsKs     46.02%    0.39%   46.21%" in str(r)

    hilo = pm.equity(["As2s3hKd", "random"], game="omaha-hilo", method="monte-carlo", trials=10_000)
    assert (hilo.method, hilo.exact, hilo.deals) == ("monte-carlo", False, 10_000)
    assert math.isnan(hilo[0].win) and hilo[0].equity == pytest.approx(hilo[0].high + hilo[0].low)
    assert hilo[0].std_error > 0 and "+/-" in str(hilo) and "scoop=" in repr(hilo)
    # Codes and card lists are players too.
    assert pm.equity([[51, 50], "QhQd"]).equities == r.equities


MONTE_CARLO = {"method": "monte-carlo", "trials": 2_000_000, "seed": 5, "threads": 1}


def test_threads_compute_at_once():
    questions = [["AsKs", "QhQd"], ["AhAd", "random", "random"]]
    alone = [pm.equity(q, **MONTE_CARLO).equities for q in questions]
    together = [None, None]

    def run(i):
        together[i] = pm.equity(questions[i], **MONTE_CARLO).equities

    threads = [threading.Thread(target=run, args=(i,)) for i in range(2)]
    for t in threads:
        t.start()
    for t in threads:
        t.join()
    assert together == alone


def test_equity_lets_other_threads_run():
    # A pure-Python thread counts while the main thread sleeps, then while it computes equity: with
    # the interpreter lock held through the computation the count would stand still.
    count, stop = 0, False

    def counter():
        nonlocal count
        while not stop:
            count += 1

    thread = threading.Thread(target=counter)
    thread.start()
    try:
        def counted(work):
            start, began = count, time.perf_counter()
            work()
            return (count - start) / (time.perf_counter() - began)

        sleeping = counted(lambda: time.sleep(0.3))
        computing = counted(lambda: pm.equity(["AsKs", "random"], method="monte-carlo", trials=10**11,
                                              time_limit=0.5, threads=1))
    finally:
        stop = True
        thread.join()
    assert computing > 0.25 * sleeping  # a held lock lets through well under a tenth


def test_ctrl_c_stops_a_long_computation():
    script = ("import pokermath\nprint('started', flush=True)\n"
              "pokermath.equity(['AsKs', 'QhQd'], method='monte-carlo', trials=10**11, threads=1)\n"
              "print('finished')\n")
    env = dict(os.environ, PYTHONPATH=os.pathsep.join(
        [os.path.dirname(os.path.dirname(pm.__file__)), os.environ.get("PYTHONPATH", "")]))
    proc = subprocess.Popen([sys.executable, "-c", script], stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                            text=True, env=env)
    try:
        assert proc.stdout.readline() == "started\n"
        time.sleep(1)
        sent = time.monotonic()
        proc.send_signal(signal.SIGINT)
        out, err = proc.communicate(timeout=10)
        stopped_after = time.monotonic() - sent
    finally:
        if proc.poll() is None:
            proc.kill()
            proc.communicate()
    assert proc.returncode != 0 and "KeyboardInterrupt" in err and "finished" not in out
    assert stopped_after < 5


def test_progress():
    seen = []
    pm.equity(["AsKs", "QhQd"], progress=seen.append, **MONTE_CARLO)
    assert seen and seen == sorted(seen) and 0 <= seen[0] and seen[-1] == 1.0

    class Stop(Exception):
        pass

    def stop(fraction):
        seen.append(fraction)
        raise Stop("enough")

    seen.clear()
    began = time.perf_counter()
    with pytest.raises(Stop, match="enough"):
        pm.equity(["AsKs", "QhQd"], method="monte-carlo", trials=10**11, threads=1, progress=stop)
    assert len(seen) == 1 and time.perf_counter() - began < 5

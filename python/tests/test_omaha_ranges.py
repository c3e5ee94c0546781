"""Omaha ranges from Python: the language, hand types, set operations and range equity."""

import json
import math
import subprocess

import pytest

import pokermath as pm


def test_language_counts_and_round_trip():
    aces = pm.OmahaRange("AA**")
    assert len(aces) == 6961  # at least two aces: C(4,2)C(48,2) + C(4,3)48 + 1
    assert len(pm.OmahaRange("AA**!AAA*")) == 6 * 1128
    assert len(pm.OmahaRange("****")) == 270725 and pm.OmahaRange("****").share == 1.0
    ds = pm.OmahaRange("AxKxAyKy")
    assert len(ds) == 6 and "AsKsAhKh" in ds and "AsKsAhKd" not in ds
    weighted = pm.OmahaRange("KK**@50, AA**")
    assert weighted.weight("AsAhKsKh") == 100 and weighted.weight("KsKh2c3d") == 50
    assert weighted.total_weight == pytest.approx(len(aces) + 0.5 * (len(pm.OmahaRange("KK**")) - 36))
    for text in ("AA**:ds", "KK+:ss, T987-7654@25", "!(np,rundown)", "AsKs**:ds!AAA*"):
        r = pm.OmahaRange(text)
        assert pm.OmahaRange(r.text) == r
    five = pm.OmahaRange("AA***", "omaha5")
    assert five.hole_cards == 5 and "AsAh2c3d4h" in five


def test_hand_types_and_set_operations():
    types = pm.OmahaRange("****").hand_types()
    assert types["double-suited"][0] + types["single-suited"][0] + types["rainbow"][0] == 270725
    assert types["quads"][0] == 13
    assert pm.omaha_hand_type("AsKsAhKh") == {
        "suits": "double-suited", "pairs": "two pair", "rundown": False, "broadway": True, "suited_ace": True}
    a, b = pm.OmahaRange("AA**"), pm.OmahaRange("KK**")
    assert len(a | b) == len(a) + len(b) - len(a & b) and len(a - b) == len(a) - len(a & b)
    assert len(a.without("AsAh")) == len(pm.OmahaRange("AA**").without(["As", "Ah"]))


def test_range_equity_exact_and_sampled():
    exact = pm.equity(["AsKsQhJh", "9c9d**@50, 8h7h**!9c9d**"], board="Ts6h2c", game="omaha", method="exact")
    assert exact.method == "exact"
    sampled = pm.equity(["AsKsQhJh", "9c9d**@50, 8h7h**!9c9d**"], board="Ts6h2c", game="omaha",
                        method="monte-carlo", trials=200_000, seed=3)
    assert abs(sampled[0].equity - exact[0].equity) <= 4 * sampled[0].std_error
    hilo = pm.equity(["As2s**:ds", "random"], game="omaha6-hilo", board="Kh7h6c", trials=20_000)
    assert not math.isnan(hilo[0].scoop) and hilo[0].equity == pytest.approx(hilo[0].high + hilo[0].low)


@pytest.mark.parametrize("call, message", [
    (lambda: pm.OmahaRange("AA*?"), "position 4: "),
    (lambda: pm.OmahaRange("AA**", "holdem"), "only the Omaha games"),
    (lambda: pm.OmahaRange("10%", "omaha6"), "exact 6-card table"),
    (lambda: pm.equity(["AsKs**", "AsQs**"], game="omaha"), "can never be dealt together"),
    (lambda: pm.equity(["AsKsQhJh", "AA**"], dead="AhAdAc", game="omaha"), "player 2: no holding of 'AA\\*\\*' is left"),
])
def test_errors(call, message):
    with pytest.raises(ValueError, match=message):
        call()


def test_exact_preflop_equities_match_the_command_line(cli):
    deck = [r + s for r in "A2345" for s in "cdhs"]
    table = pm.omaha_preflop("omaha-hilo", deck=deck)
    assert sum(e[1] for e in table) == 4845
    assert sum(e[1] * e[2] for e in table) / 4845 == pytest.approx(0.5, abs=1e-12)
    out = json.loads(subprocess.run([cli, "omaha", "preflop", "--game", "omaha-hilo", "--ranks", "A2345", "--json"],
                                    check=True, capture_output=True, text=True).stdout)
    assert {c["class"]: c["equity"] for c in out["classes"]} == pytest.approx({e[0]: e[2] for e in table}, abs=1e-15)


def test_exact_table_answers_a_holding(tmp_path):
    assert pm.generate_omaha_preflop_table("omaha-hilo", data_dir=tmp_path, ranks="A2345", unit_boards=7)
    assert not pm.generate_omaha_preflop_table("omaha-hilo", data_dir=tmp_path, ranks="A2345")  # kept
    deck = [r + s for r in "A2345" for s in "cdhs"]
    best = max(pm.omaha_preflop("omaha-hilo", deck=deck), key=lambda e: e[2])
    answer = pm.omaha_holding_ranking(best[0], hilo=True, ranks="A2345", data_dir=tmp_path)
    assert (answer["class"], answer["rank"], answer["equity"]) == (best[0], 1, best[2])
    assert 99 < answer["percentile"] < 100
    with pytest.raises(ValueError, match="make it with pokermath tables --omaha-preflop 4 "):
        pm.omaha_holding_ranking("AsKsQhJh", data_dir=tmp_path)

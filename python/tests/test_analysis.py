"""Range analysis from Python: weighted ranges, equity by class, the distribution, board hits and
pictures, against the equity engine and the command line."""

import json
import math
import subprocess
import xml.etree.ElementTree as ElementTree

import pytest

import pokermath as pm


def test_weighted_ranges_read_back_and_weigh_equity():
    r = pm.WeightedRange("AA, KK@50, AKs@25, A5s-A2s@75")
    assert len(r) == 32 and r.total_weight == pytest.approx(6 + 3 + 1 + 12)
    assert r.weight("KsKh") == 50 and r.weight("QsQh") == 0 and pm.WeightedRange(str(r)) == r
    # Equal weights leave the equity as it is.
    plain = pm.equity(["AsKs", "QQ+,AJs"])[0].equity
    assert pm.equity(["AsKs", "QQ+@40,AJs@40"])[0].equity == pytest.approx(plain, abs=1e-12)
    with pytest.raises(ValueError, match="0 < N <= 100"):
        pm.WeightedRange("KK@0")


def test_equity_by_class_matches_the_engine_and_the_command_line(cli):
    players, board = ["QQ+,AKs@50,JTs", "TT+,AQ@60"], "Js9c4h"
    b = pm.equity_by_class(players, board=board)
    assert b.equity == pytest.approx(pm.equity(players, board=board)[0].equity, abs=1e-12)
    assert b.classes["JTs"][2] == pytest.approx(pm.equity(["JTs", players[1]], board=board)[0].equity, abs=1e-12)
    assert sum(1 for v in b.grid if not math.isnan(v)) == len(b.classes)
    out = json.loads(subprocess.run([cli, "equity", *players, "--board", board, "--by-class", "--json"],
                                    check=True, capture_output=True, text=True).stdout)
    assert {c["class"]: c["equity"] for c in out["by_class"]} == pytest.approx(
        {name: v[2] for name, v in b.classes.items()}, abs=1e-12)
    d = b.distribution()
    assert d.steps[0][3] >= d.steps[-1][3] and d.share_at_least(0) == 1


def test_board_hits_match_the_command_line(cli):
    hits = pm.board_hits("22+,A2s+,KTs+,QJs@50", "Ts9s3c")
    out = json.loads(subprocess.run([cli, "board-hits", "22+,A2s+,KTs+,QJs@50", "Ts9s3c", "--json"],
                                    check=True, capture_output=True, text=True).stdout)
    assert {k: tuple(v.values()) for k, v in out["made"].items()} == pytest.approx(hits.made)
    assert sum(v[0] for v in hits.made.values()) == hits.combos
    assert pm.classify_on_board("AsKd", "Kh7c2d") == ("top pair, top kicker", [])
    with pytest.raises(ValueError, match="3 or 4 cards"):
        pm.board_hits("QQ+", "Kh7c")


def test_pictures_are_well_formed_svg():
    b = pm.equity_by_class(["QQ+,AKs", "JJ"])
    pictures = [pm.WeightedRange("QQ+,AKs@50").svg(), b.svg(), b.distribution().svg(),
                pm.board_hits("QQ+,AK", "Kh7c2d").svg("QQ+,AK"),
                pm.range_grid_svg([0.5] * 169, scale="equity", title="<&>"),
                pm.bar_chart_svg([("one", 0.25, 3)], title="bars")]
    for svg in pictures:
        root = ElementTree.fromstring(svg)
        assert root.tag.endswith("svg") and int(root.get("width")) > 0
    assert "AKs" in pictures[0] and "<&>" not in pictures[4]
    with pytest.raises(ValueError, match="169 values"):
        pm.range_grid_svg([0.5])

import errno
import os

import numpy as np
import pytest

import pokermath as pm

HISTORY = os.path.join(os.path.dirname(__file__), "..", "..", "docs", "examples", "HH20240101.txt")


def test_cards():
    assert [pm.parse_card(c) for c in ("2c", "Ac", "td", "10h", "AS")] == [0, 12, 21, 34, 51]
    assert pm.parse_cards("As Ks,Qs") == pm.parse_cards(["As", "Ks", "Qs"]) == [51, 50, 49]
    assert pm.cards_to_string([51, 0]) == "As 2c"
    assert pm.cards_to_mask("2c4c") == 0b101 and pm.mask_to_cards(0b101) == [0, 2]
    assert pm.parse_cards(np.array([51, 50])) == [51, 50]  # numpy integers are card codes too


@pytest.mark.parametrize("call, message", [
    (lambda: pm.equity(["Ax", "QhQd"]), "player 1: bad range item 'Ax'"),
    (lambda: pm.equity(["AsKs", "AsQd"]), "player 2: card 'As' is already in play"),
    (lambda: pm.equity(["AsKs", "QhQd"], dead="Qh"), "player 2: card 'Qh' is already in play"),
    (lambda: pm.equity(["AsKs"]), "expected 2 to 10 players, got 1"),
    (lambda: pm.equity("AsKs QhQd"), "players must be a list"),
    (lambda: pm.equity(["AsKs", "QQ+,AKz"]), "player 2: bad range item 'AKz' at position 2"),
    (lambda: pm.equity(["AsKs", "QhQd"], board="Qh7h"), "a board has 0, 3, 4 or 5 cards, got 2"),
    (lambda: pm.equity(["AsKs", "QhQd"], game="stud"), "unknown game 'stud'"),
    (lambda: pm.equity(["AsKs", "QhQd"], method="guess"), "unknown method 'guess'"),
    (lambda: pm.equity(["AsKs", "QhQd"], method="monte-carlo", trials=-5), "trials must be 1 to .*got -5"),
    (lambda: pm.equity(["AsKs", "QhQd"], threads=-1), "threads cannot be negative"),
    (lambda: pm.equity(["AsKs", "QhQd"], time_limit=-1), "time_limit"),
    (lambda: pm.equity(["random"] * 4, method="exact"), "too many hand combinations to count exactly"),
    (lambda: pm.equity(["AsKs", "QhQd"], game="omaha"), "player 1: this game's hands hold 4 cards"),
    (lambda: pm.equity([[51, 52], "QhQd"]), "player 1: .*card code 52"),
    (lambda: pm.parse_card("Ax"), "bad card 'Ax'"),
    (lambda: pm.parse_cards("AsAs"), "duplicate card 'As'"),
    (lambda: pm.parse_cards([1, "As"]), "mix of card codes and card names"),
    (lambda: pm.card_to_string(52), "bad card code 52"),
    (lambda: pm.mask_to_cards(1 << 52), "bits above card 51"),
    (lambda: pm.evaluate("AsKsQs"), "expected 5 to 7 cards, got 3"),
    (lambda: pm.evaluate("AsKsQsJs2s", game="shortdeck"), "card '2s' .* not in the short deck"),
    (lambda: pm.evaluate("AsKsQsJs9s8s", game="lowball27"), "expected 5 cards, got 6"),
    (lambda: pm.Range("QQ+,AKz"), "bad range item 'AKz' at position 2"),
    (lambda: pm.Range("QQ+", notation="x"), "unknown notation 'x'"),
    (lambda: pm.Range.top(101), "bad percentage 101"),
    (lambda: "As" in pm.Range("AA"), "a Hold'em hand has two cards, got 1"),
    (lambda: pm.RangeFile("ranking.dat"), "must end in .txt"),
    (lambda: pm.omaha_best("AsKs", "QsJsTs"), "expected 4 to 6 hole cards, got 2"),
    (lambda: pm.hutchison_points("AsKsQs"), "expected 4 cards"),
    (lambda: pm.pay_showdown([100, 60], [1]), "bets and ranks differ in length"),
    (lambda: pm.pay_showdown([-1, 60], [1, 2]), "bet -1 of player 1 is negative"),
    (lambda: pm.read_history(HISTORY, start=-1), "position -1 is negative"),
    (lambda: pm.generate_tables(files=["x.bin"]), "unknown table 'x.bin'"),
])
def test_bad_input_raises_value_error(call, message):
    with pytest.raises(ValueError, match=message):
        call()


def test_files_that_cannot_be_used_raise_os_error(tmp_path):
    (tmp_path / "file").write_text("")
    cases = [
        (lambda: pm.RangeFile(str(tmp_path / "missing" / "r.txt")), errno.ENOENT, "not found"),
        (lambda: pm.read_history(tmp_path / "missing.txt"), errno.ENOENT, "missing.txt"),
        (lambda: pm.read_history(tmp_path), None, "is a directory"),
        (lambda: pm.generate_tables(data_dir=tmp_path / "file" / "sub", files=["six-plus-5.bin"]), errno.ENOTDIR,
         "cannot create the data directory"),
    ]
    for call, number, message in cases:
        with pytest.raises(OSError, match=message) as caught:
            call()
        assert caught.value.errno == number
        assert isinstance(caught.value, FileNotFoundError) == (number == errno.ENOENT)


def test_generate_tables(tmp_path):
    assert "six-plus-5.bin" in pm.table_files()
    seen = []
    progress = lambda *report: seen.append(report)  # noqa: E731
    assert pm.generate_tables(data_dir=tmp_path, files=["six-plus-5.bin"], progress=progress) == ["six-plus-5.bin"]
    assert seen[0] == ("six-plus-5.bin", "partial hands", 0.0) and (tmp_path / "six-plus-5.bin").is_file()
    assert pm.generate_tables(data_dir=tmp_path, files=["six-plus-5.bin"]) == []  # present and valid
    assert pm.generate_tables(data_dir=str(tmp_path), files=["six-plus-5.bin"], force=True) == ["six-plus-5.bin"]


@pytest.mark.parametrize("text, size, canonical", [
    ("QQ+, AKs, A5s-A2s, KQ", 54, "QQ+,AKs,A5s-A2s,KQs,KQo"),
    ("AsKs 22-55 T9s+ KJo", 41, "55-22,T9s,KJo,AsKs"),
    ("AA", 6, "AA"),
    ("random", 1326, None),
    ("", 0, ""),
])
def test_range_strings(text, size, canonical):
    r = pm.Range(text)
    assert len(r) == r.size == len(r.combos) == sum(r.class_counts) == size
    assert r.share == size / 1326 and bool(r) == (size > 0)
    if canonical is not None:
        assert str(r) == canonical and repr(r) == f"Range('{canonical}')"
    assert pm.Range(str(r)) == r
    assert len({frozenset(c) for c in r.combos}) == size


def test_range_matrix_and_sets():
    r = pm.Range("QQ+, AKs, A5s-A2s, KQ")
    m = r.matrix
    assert len(m) == 13 and all(len(row) == 13 for row in m)
    assert [m[0][0], m[0][1], m[1][0], m[1][2], m[2][1], m[0][9], m[3][3]] == [6, 4, 0, 4, 12, 4, 0]
    assert [cell for row in m for cell in row] == r.class_counts
    assert [pm.hand_class_name(c) for c in (0, 1, 13, 168)] == ["AA", "AKs", "AKo", "22"]
    assert [pm.hand_class_combos(c) for c in (0, 1, 13)] == [6, 4, 12]
    assert "AsKs" in r and "KdQs" in r and [51, 50] in r and "AsKd" not in r
    html = r._repr_html_()
    assert html.count("<td") == 169 and "54 combinations" in html

    a, b = pm.Range("QQ+"), pm.Range("KK+,AKs")
    assert (a | b, a & b, a - b, b - a) == (pm.Range("QQ+,AKs"), pm.Range("KK+"), pm.Range("QQ"), pm.Range("AKs"))
    part = pm.Range("AA") - pm.Range("AsAh")
    assert len(part) == 5 and pm.Range(str(part)) == part and "AsAh" not in part

    top = pm.Range.top(10)
    assert (str(top), len(top)) == ("88+,A9s+,KTs+,QTs+,AJo+,KQo", 130)
    assert str(pm.Range.top(10, table="groups")) == "77+,A9s+,KTs+,QJs,AJo+,KQo"


def test_range_file(tmp_path):
    # Pairs are written "QQ", suited classes "(AK)", offsuit ones "AK"; lines before "AA" are a header.
    names = [pm.hand_class_name(c) for c in range(169)]
    tokens = [n if len(n) == 2 else f"({n[:2]})" if n[2] == "s" else n[:2] for n in names]
    path = tmp_path / "ranking.txt"
    path.write_text("my ranking\n\n" + "\n".join(tokens) + "\n")
    ranking = pm.RangeFile(str(path))
    assert ranking.path == str(path)
    assert [len(ranking.top(p)) for p in (0, 0.5, 10, 100)] == [0, 6, 128, 1326]
    assert str(ranking.top(10)) == "KK+,A2s+,K2s+,AQo+"

    path.write_text("\n".join(tokens[:-1]) + "\n")
    with pytest.raises(ValueError, match="lists 168 of the 169 classes"):
        pm.RangeFile(str(path))


@pytest.mark.parametrize("hole, board, category, value, hole_used, board_used, low", [
    ("AsKs7d2c", "QsJsTs3h2d", "royal flush", 7462, "As Ks", "Qs Js Ts", None),
    ("As2s3hKd", "Ts6h2c4d5c", "straight", 5855, "2s 3h", "6h 4d 5c", "5-4-3-2-A"),
    ("9c9d8c7d", "Ts6h2c4d5c", "straight", 5857, "8c 7d", "6h 4d 5c", "8-7-5-4-2"),
])
def test_omaha_best(hole, board, category, value, hole_used, board_used, low):
    best = pm.omaha_best(hole, board)
    assert (best.category, best.value, best.hand_class) == (category, value, 7463 - value)
    assert (pm.cards_to_string(best.hole_used), pm.cards_to_string(best.board_used)) == (hole_used, board_used)
    assert pm.omaha_low(hole, board) == low
    assert pm.omaha_low_value(hole, board) == (int(low.replace("-", "").replace("A", "1")) if low else 0)


def test_omaha_outs_and_nuts():
    outs = pm.omaha_outs("AhKh9c8c", "Qh7h2d")
    assert (len(outs), outs.unseen, outs.nut_outs, outs.current.category) == (27, 45, 8, "high card")
    flush = [o for o in outs.outs if o.category == "flush"]
    assert pm.cards_to_string([o.card for o in flush]) == "2h 3h 4h 5h 6h 8h 9h Th Jh"
    assert [o.card for o in outs.outs if o.nut] == pm.parse_cards("3h4h5h6h8h9hThJh")

    nuts = pm.omaha_nuts("Qh7h2d5s")
    assert (nuts.category, nuts.value) == ("three of a kind", 5669)
    assert [pm.cards_to_string(h) for h in nuts.holdings] == ["Qc Qd", "Qc Qs", "Qd Qs"]
    assert [pm.cards_to_string(h) for h in pm.omaha_nuts("Qh7h2d5s", dead="Qc").holdings] == ["Qd Qs"]


@pytest.mark.parametrize("hand, hilo, total, high_only, stages", [
    ("AsAhKsKh", False, 54, False, [16, 34, 4, 0]),
    ("AsKsQhJh", False, 34, False, [13, 0, 21, 0]),
    ("AsAhKsKh", True, 1000, True, None),
])
def test_hutchison(hand, hilo, total, high_only, stages):
    count = pm.hutchison_points(hand, hilo=hilo)
    assert (count.total, count.high_only) == (total, high_only)
    if stages is not None:
        assert [s.name for s in count.stages] == ["suits", "pairs", "straight potential", "ace with low cards"]
        assert [s.points for s in count.stages] == stages
        assert all(s.points == sum(i.points for i in s.items) for s in count.stages)


@pytest.mark.parametrize("bets, ranks, wins, pots", [
    ([100, 60, 40], [3, 7, 7], [40, 100, 60], [(120, [0, 1, 2], [1, 2]), (40, [0, 1], [1]), (40, [0], [0])]),
    ([25, 25, 25, 10], [5, 5, 1, 5], [37, 35, 0, 13], [(40, [0, 1, 2, 3], [0, 1, 3]), (45, [0, 1, 2], [0, 1])]),
    ([0, 50, 50], [9, 1, 2], [0, 0, 100], [(100, [1, 2], [2])]),
])
def test_pay_showdown(bets, ranks, wins, pots):
    payout = pm.pay_showdown(bets, ranks)
    assert payout.wins == wins and sum(wins) == sum(bets)
    assert [(p.amount, p.players, p.winners) for p in payout.pots] == pots


def test_read_history(tmp_path):
    h = pm.read_history(HISTORY)
    assert (len(h.lines), h.position, h.held_bytes, h.encoding) == (56, 1621, 0, "UTF-8 or narrow")
    assert h.lines[0] == "PokerStars Hand #1001: Hold'em No Limit (€0.01/€0.02) - 2024/01/01 20:15:04 CET"
    assert h.lines[-1] == "Board [9s Jh 4d 2s Ah]"
    assert pm.read_history(HISTORY, start=h.position).lines == []

    path = tmp_path / "growing.txt"
    path.write_bytes(b"one\r\n\n  two  \nthr")
    held = pm.read_history(path)
    assert (held.lines, held.position, held.held_bytes) == (["one", "two"], 14, 3)
    assert pm.read_history(path, start=held.position, partial=True).lines == ["thr"]
    path.write_bytes("\ufeffone €\ntwo\n".encode("utf-16-le"))
    assert (pm.read_history(str(path)).lines, pm.read_history(path).encoding) == (["one €", "two"], "UTF-16LE")

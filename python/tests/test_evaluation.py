import itertools

import numpy as np
import pytest

import pokermath as pm

# The lowest hand of each Hold'em category, weakest category first, with the number of five-card
# hands and of distinct values in the category.
CATEGORIES = [
    ("high card", "7c5d4h3s2c", 1302540, 1277),
    ("one pair", "2c2d3h4s5c", 1098240, 2860),
    ("two pair", "3c3d2h2s4c", 123552, 858),
    ("three of a kind", "2c2d2h3s4c", 54912, 858),
    ("straight", "5cAd4h3s2c", 10200, 10),
    ("flush", "7c5c4c3c2c", 5108, 1277),
    ("full house", "2c2d2h3s3c", 3744, 156),
    ("four of a kind", "2c2d2h2s3c", 624, 156),
    ("straight flush", "5cAc4c3c2c", 40, 10),
]

SHORT_DECK = np.array([c for c in range(52) if c % 13 >= 4], dtype=np.uint8)  # ranks 6 to A


def single_values(hands, game="holdem"):
    """The values of hand_value called once per hand."""
    out = np.empty(len(hands), np.int32)
    for start in range(0, len(hands), 100_000):
        rows = hands[start : start + 100_000].tolist()
        out[start : start + len(rows)] = [pm.hand_value(row, game=game) for row in rows]
    return out


def random_hands(rng, deck, n, k):
    return rng.permuted(np.tile(deck, (n, 1)), axis=1)[:, :k]


def masks_of(hands):
    return np.bitwise_or.reduce(np.uint64(1) << hands.astype(np.uint64), axis=1)


@pytest.fixture(scope="module")
def all_fives():
    """Every five-card hand as card codes, one row per hand (2,598,960 x 5, uint8)."""
    flat = itertools.chain.from_iterable(itertools.combinations(range(52), 5))
    return np.fromiter(flat, dtype=np.uint8).reshape(-1, 5)


@pytest.fixture(scope="module")
def five_values(all_fives):
    return pm.hand_values(all_fives)


def test_every_five_card_hand(all_fives, five_values):
    assert five_values.dtype == np.int32
    assert np.array_equal(five_values, single_values(all_fives))
    assert len(np.unique(five_values)) == 7462
    lows = [pm.evaluate(cards).value for _, cards, _, _ in CATEGORIES]
    category = np.searchsorted(lows, five_values, side="right") - 1
    assert np.bincount(category).tolist() == [hands for _, _, hands, _ in CATEGORIES]
    for index, (name, cards, _, distinct) in enumerate(CATEGORIES):
        assert pm.evaluate(cards).category == name
        assert len(np.unique(five_values[category == index])) == distinct
    assert np.count_nonzero(five_values == 7462) == 4  # the royal flushes


LAYOUTS = {
    "int32": lambda h: h.astype(np.int32),
    "int64": lambda h: h.astype(np.int64),
    "uint16": lambda h: h.astype(np.uint16),
    "int8": lambda h: h.astype(np.int8),
    "strided": lambda h: np.pad(h, ((0, 0), (1, 1)))[:, 1:6],
    "reversed": lambda h: h[:, ::-1],
    "fortran": np.asfortranarray,
    "masks": masks_of,
    "int64-masks": lambda h: masks_of(h).astype(np.int64),
    "strided-masks": lambda h: np.repeat(masks_of(h), 2)[::2],
}


@pytest.mark.parametrize("layout", LAYOUTS.values(), ids=LAYOUTS.keys())
def test_layouts_give_the_same_values(all_fives, five_values, layout):
    assert np.array_equal(pm.hand_values(layout(all_fives)), five_values)


@pytest.mark.parametrize("game, deck, k, n", [
    ("holdem", np.arange(52, dtype=np.uint8), 6, 200_000),
    ("holdem", np.arange(52, dtype=np.uint8), 7, 200_000),
    ("shortdeck", SHORT_DECK, 6, 50_000),
    ("shortdeck", SHORT_DECK, 7, 50_000),
    ("china", SHORT_DECK, 7, 50_000),
])
def test_random_hands_batch_equals_single(game, deck, k, n):
    hands = random_hands(np.random.default_rng(k), deck, n, k)
    values = pm.hand_values(hands, game=game)
    assert np.array_equal(values, single_values(hands, game))
    assert np.array_equal(pm.hand_values(masks_of(hands), game=game), values)
    assert np.array_equal(pm.hand_values(hands.astype(np.int64), game=game), values)


@pytest.mark.parametrize("game", ["shortdeck", "china"])
def test_every_short_deck_five_card_hand(game):
    flat = itertools.chain.from_iterable(itertools.combinations(SHORT_DECK.tolist(), 5))
    hands = np.fromiter(flat, dtype=np.uint8).reshape(-1, 5)
    values = pm.hand_values(hands, game=game)
    assert np.array_equal(values, single_values(hands, game))
    assert len(np.unique(values)) == 1404


def test_out_argument_and_lists():
    hands = np.array([[51, 50, 49, 48, 47], [0, 1, 2, 3, 4]], dtype=np.uint8)  # royal, 6-high straight flush
    out = np.full(2, -1, np.int32)
    assert pm.hand_values(hands, out=out) is out
    assert out.tolist() == [7462, 7454]
    assert pm.hand_values(["AsKsQsJsTs", [0, 1, 2, 3, 4], 0b11111]).tolist() == [7462, 7454, 7454]
    assert len(pm.hand_values(np.zeros((0, 5), np.uint8))) == 0


TWO_HANDS = np.tile(np.arange(5, dtype=np.uint8), (2, 1))  # 2c 3c 4c 5c 6c twice


def _with(dtype, n, index, card):
    hands = np.tile(np.arange(5), (n, 1)).astype(dtype)
    hands[index, 2] = card
    return hands


@pytest.mark.parametrize("hands, kwargs, message", [
    (np.zeros((3, 4), np.uint8), {}, r"shape \(n, 5\).*got shape \(3, 4\)"),
    (np.zeros((3, 8), np.uint8), {}, r"got shape \(3, 8\)"),
    (np.zeros((3, 5, 1), np.uint8), {}, r"got shape \(3, 5, 1\)"),
    (np.zeros((3, 5)), {}, "got an array of format 'd'"),
    (np.zeros(3, np.int32), {}, r"got shape \(3,\) of 32-bit integers"),
    (np.zeros((3, 5), ">i4"), {}, "big-endian arrays are not read"),
    (b"\x00" * 16, {}, "sequence of hands"),
    (_with(np.uint8, 3, 1, 52), {}, "hand 1: .*52"),
    (_with(np.int32, 3, 2, -1), {}, "hand 2: .*-1"),
    (_with(np.int64, 20_000, 19_000, 52), {}, "hand 19000: bad card code 52: must be 0..51"),
    (_with(np.int16, 20_000, 19_000, -1), {}, "hand 19000: bad card code -1: must be 0..51"),
    (_with(np.int64, 20_000, 19_000, 1), {}, "hand 19000: duplicate card '3c'"),
    (_with(np.uint8, 20_000, 19_000, 1), {}, "hand 19000: duplicate card '3c'"),
    (np.array([31, 31 | 1 << 52], np.uint64), {}, "hand 1: the mask has bits above card 51"),
    (np.array([15], np.uint64), {}, "hand 0: expected 5 to 7 cards, got 4"),
    (["AsKsQsJsTs", "AsAs2c3c4c"], {}, "hand 1: duplicate card 'As'"),
    ("AsKsQsJsTs", {}, "sequence of hands"),
    (np.zeros((2, 5), np.uint8), {"game": "lowball27"}, "not 'lowball27'"),
    (TWO_HANDS, {"game": "shortdeck"}, "hand 0: .*not in the short deck"),
    (TWO_HANDS, {"out": np.zeros(2, np.int64)}, "32-bit integers"),
    (TWO_HANDS, {"out": np.zeros(3, np.int32)}, "out holds 3 values, but there are 2 hands"),
    (TWO_HANDS, {"out": np.zeros((2, 1), np.int32)}, "one-dimensional"),
    (TWO_HANDS, {"out": np.zeros(4, np.int32)[::2]}, "contiguous"),
    (TWO_HANDS, {"out": [0, 0]}, "writable array"),
    (TWO_HANDS, {"out": np.broadcast_to(np.int32(0), 2)}, "writable array"),  # read-only
])
def test_bad_batches(hands, kwargs, message):
    with pytest.raises(ValueError, match=message):
        pm.hand_values(hands, **kwargs)


# Values: Hold'em counts classes down from the royal flush (7462). The short deck (1404 classes)
# runs high card 1-120, pair -624, two pair -876, then straight 877-882 and three of a kind
# 883-1134 (china: three of a kind 877-1128, straight 1129-1134), full house, flush and four of a
# kind below the straight flushes 1399-1404. Deuce-to-seven counts up from 7-5-4-3-2 = 1: 1278 no-pair
# hands (A-5-4-3-2 included), pairs, two pair, three of a kind, straights from 5855, flushes from 5864.
EVALUATIONS = [
    ("holdem", "Ah Ad 7c 7s 2h Kd 7h", "full house", 7212, "7s 7h 7c Ah Ad", "full house 7 over Ace"),
    ("holdem", "5s4s3s2sAs", "straight flush", 7453, "5s 4s 3s 2s As", "straight flush 5 high"),
    ("holdem", "2c3d4h5s7c", "high card", 1, "7c 5s 4h 3d 2c", "high card 7 high"),
    ("holdem", "9c8d7h6s5c2d", "straight", 5858, "9c 8d 7h 6s 5c", "9 high straight"),
    ("holdem", [51, 50, 49, 48, 47, 0, 13], "royal flush", 7462, "As Ks Qs Js Ts", None),
    ("shortdeck", "Ah6d7c8s9h", "straight", 877, "Ah 9h 8s 7c 6d", "9 high straight"),
    ("shortdeck", "AhAdAc7h6d", "three of a kind", 1107, "Ah Ad Ac 7h 6d", "three of a kind Ace kicker 7 kicker 6"),
    ("shortdeck", "AhKhQh9h7h", "flush", 1317, "Ah Kh Qh 9h 7h", "flush Ace high"),
    ("shortdeck", "AhAdAcKhKd", "full house", 1206, "Ah Ad Ac Kh Kd", "full house Ace over King"),
    ("shortdeck", "6h7h8h9hAh", "straight flush", 1399, "Ah 9h 8h 7h 6h", "straight flush 9 high"),
    ("shortdeck", "AsKsQsJsTs9s8s", "royal flush", 1404, "As Ks Qs Js Ts", None),
    ("china", "Ah6d7c8s9h", "straight", 1129, "Ah 9h 8s 7c 6d", "9 high straight"),
    ("china", "6h7d8c9sThAs", "straight", 1130, "Th 9s 8c 7d 6h", "10 high straight"),
    ("china", "AhAdAc7h6d", "three of a kind", 1101, "Ah Ad Ac 7h 6d", "three of a kind Ace kicker 7 kicker 6"),
    ("lowball27", "7h5d4c3s2h", "high card", 1, "7h 5d 4c 3s 2h", "7-5-4-3-2"),
    ("lowball27", "2h3s4cAh5d", "high card", 785, "Ah 5d 4c 3s 2h", "A-5-4-3-2"),
    ("lowball27", "6h5d4c3s2h", "straight", 5855, "6h 5d 4c 3s 2h", "6 high straight"),
    ("lowball27", "7h5h4h3h2h", "flush", 5864, "7h 5h 4h 3h 2h", "flush 7 high"),
    ("lowball27", "As5s4s3s2s", "flush", 6648, "As 5s 4s 3s 2s", "flush Ace high"),
]


@pytest.mark.parametrize("game, cards, category, value, best_five, description", EVALUATIONS)
def test_evaluate(game, cards, category, value, best_five, description):
    e = pm.evaluate(cards, game=game)
    assert (e.game, e.category, e.value) == (game, category, value)
    assert e.cards == pm.parse_cards(cards)
    assert pm.cards_to_string(e.best_five) == best_five
    if description is not None:
        assert e.description == description
    assert pm.hand_value(cards, game=game) == value
    assert e.hand_class == (7463 - value if game == "holdem" else None)
    assert repr(e).startswith(f"Evaluation(game='{game}', cards='")


@pytest.mark.parametrize("game, stronger, weaker", [
    ("holdem", "2c2d2h3s3c", "AsKsQsJs9s"),
    ("holdem", "5cAd4h3s2c", "AsAdAhKsQs"),
    ("shortdeck", "AhKhQh9h7h", "AhAdAcKhKd"),  # a flush beats a full house
    ("shortdeck", "6c6d6h7s8c", "Ah6d7c8s9h"),  # three of a kind beats a straight
    ("china", "Ah6d7c8s9h", "AhAdAc7h6d"),  # a straight beats three of a kind
    ("china", "6h7d8c9sTh", "Ah6d7c8s9h"),  # A-6-7-8-9 is the lowest straight
    ("lowball27", "7h5d4c3s2h", "8h6d4c3s2h"),
    ("lowball27", "Ah5d4c3s2h", "2c2d3h4s5c"),  # no straight: ace high beats a pair
    ("lowball27", "7h5d4c3s2h", "6h5d4c3s2h"),
])
def test_comparisons(game, stronger, weaker):
    a, b = pm.evaluate(stronger, game=game), pm.evaluate(weaker, game=game)
    assert a > b and b < a and a >= b and not a <= b and a != b
    assert a == pm.evaluate(stronger, game=game)


def test_games_do_not_compare():
    holdem, lowball = pm.evaluate("7h5d4c3s2h"), pm.evaluate("7h5d4c3s2h", game="lowball27")
    with pytest.raises(TypeError):
        holdem < lowball
    assert holdem != lowball and len({holdem, pm.evaluate("7c5d4c3s2h")}) == 1
    assert holdem != "7h5d4c3s2h" and pm.Range("AA") != "AA"  # other types are simply unequal

# Type stubs of the pokermath package: every function of the extension module with its
# keyword-only arguments and defaults, and every class with its read-only attributes.
from __future__ import annotations

import array
import os
import pathlib
from collections.abc import Callable, Iterator, Sequence
from typing import Any, ClassVar, Literal, TypeVar, overload

import numpy
import numpy.typing
from _typeshed import ReadableBuffer, WriteableBuffer
from typing_extensions import TypeAlias

__version__: str
__all__ = [
    "__version__", "EquityResult", "Evaluation", "HistoryLines", "HutchisonCount", "HutchisonItem",
    "HutchisonStage", "OmahaHand", "OmahaNuts", "OmahaOut", "OmahaOuts", "PlayerEquity", "Range", "RangeFile",
    "ShowdownPayout", "SidePot", "card_to_string", "cards_to_mask", "cards_to_string", "default_data_directory",
    "equity", "evaluate", "generate_tables", "hand_class_combos", "hand_class_name", "hand_value", "hand_values",
    "hutchison_points", "mask_to_cards", "omaha_best", "omaha_low", "omaha_low_value", "omaha_nuts", "omaha_outs",
    "parse_card", "parse_cards", "pay_showdown", "read_history", "table_files",
]

# Cards: a string of names ("AsKs", "As Ks", "As,Ks") or a sequence of card codes 0..51 or names.
_Cards: TypeAlias = str | Sequence[int] | Sequence[str]
_Path: TypeAlias = str | os.PathLike[str]
# An integer array of card codes, shape (n, 5..7), or of 64-bit card masks, shape (n,).
_HandArray: TypeAlias = numpy.ndarray[Any, Any] | ReadableBuffer
_Hands: TypeAlias = _HandArray | Sequence[_Cards | int]
_Values: TypeAlias = numpy.typing.NDArray[numpy.int32] | array.array[int]
_Out = TypeVar("_Out", bound=numpy.ndarray[Any, Any] | array.array[int] | WriteableBuffer)

_Game: TypeAlias = Literal["holdem", "shortdeck", "china", "lowball27"]
_BatchGame: TypeAlias = Literal["holdem", "shortdeck", "china"]
_EquityGame: TypeAlias = Literal["holdem", "shortdeck", "china", "omaha", "omaha5", "omaha6", "omaha-hilo", "omaha5-hilo",
                                "omaha6-hilo"]
_OmahaGame: TypeAlias = Literal["omaha", "omaha5", "omaha6", "omaha-hilo", "omaha5-hilo", "omaha6-hilo"]
_Method: TypeAlias = Literal["auto", "exact", "monte-carlo"]
_TableFileName: TypeAlias = Literal["texas-7.bin", "omaha-7.bin", "six-plus-5.bin", "six-plus-7.bin", "OrvalisHR.dat"]
_WorkProgress: TypeAlias = Callable[[float], object]
_TableProgress: TypeAlias = Callable[[str, str, float], object]

# ---- cards ------------------------------------------------------------------------------------------

def parse_card(text: str) -> int:
    """The card code 0..51 (13 x suit + rank) of a card name such as "As", "td" or "10h"."""

def parse_cards(cards: _Cards) -> list[int]:
    """Card codes of cards written together or apart ("AsKs", "As Ks"), or of a sequence of names or codes."""

def card_to_string(card: int) -> str:
    """The two-letter name of a card code ("As")."""

def cards_to_string(cards: _Cards) -> str:
    """Card names joined by single blanks ("As Ks Qs")."""

def cards_to_mask(cards: _Cards) -> int:
    """The 64-bit card mask (bit `code` set per card) of the cards."""

def mask_to_cards(mask: int) -> list[int]:
    """The card codes of a 64-bit card mask, in increasing order."""

# ---- evaluation -------------------------------------------------------------------------------------

class Evaluation:
    """One evaluated hand; comparisons between hands of one game say which wins."""

    @property
    def game(self) -> _Game: ...
    @property
    def cards(self) -> list[int]: ...
    @property
    def category(self) -> str: ...
    @property
    def value(self) -> int: ...
    @property
    def hand_class(self) -> int | None: ...
    @property
    def best_five(self) -> list[int]: ...
    @property
    def description(self) -> str: ...
    def __lt__(self, other: Evaluation) -> bool: ...
    def __gt__(self, other: Evaluation) -> bool: ...
    def __le__(self, other: Evaluation) -> bool: ...
    def __ge__(self, other: Evaluation) -> bool: ...
    def __eq__(self, other: object) -> bool: ...
    def __hash__(self) -> int: ...

def evaluate(cards: _Cards, *, game: _Game = "holdem") -> Evaluation:
    """Evaluates a hand of 5 to 7 cards (lowball27: 5): category, value, best five cards, description."""

def hand_value(cards: _Cards, *, game: _Game = "holdem") -> int:
    """The value of a hand on its game's scale (lowball27: smaller is better; else larger is stronger)."""

@overload
def hand_values(hands: _Hands, *, game: _BatchGame = "holdem", out: None = None) -> _Values:
    """Values of many hands at once, without holding the interpreter lock."""

@overload
def hand_values(hands: _Hands, *, game: _BatchGame = "holdem", out: _Out) -> _Out:
    """Values of many hands at once, written into `out` (a writable int32 array of n values)."""

# ---- equity -----------------------------------------------------------------------------------------

class PlayerEquity:
    """One player's share of the pot; every share is a fraction 0..1."""

    @property
    def hand(self) -> str: ...
    @property
    def win(self) -> float: ...
    @property
    def tie(self) -> float: ...
    @property
    def equity(self) -> float: ...
    @property
    def std_error(self) -> float: ...
    @property
    def high(self) -> float: ...
    @property
    def low(self) -> float: ...
    @property
    def scoop(self) -> float: ...

class EquityResult:
    """The result of equity(): one PlayerEquity per player, in order; str() is a table."""

    @property
    def players(self) -> list[PlayerEquity]: ...
    @property
    def exact(self) -> bool: ...
    @property
    def from_table(self) -> bool: ...
    @property
    def method(self) -> Literal["exact", "monte-carlo", "table"]: ...
    @property
    def deals(self) -> int: ...
    @property
    def seconds(self) -> float: ...
    @property
    def equities(self) -> list[float]: ...
    def __len__(self) -> int: ...
    def __getitem__(self, index: int) -> PlayerEquity: ...
    def __iter__(self) -> Iterator[PlayerEquity]: ...

def equity(
    players: Sequence[_Cards],
    *,
    board: _Cards | None = None,
    dead: _Cards | None = None,
    game: _EquityGame = "holdem",
    method: _Method = "auto",
    trials: int = 1000000,
    seed: int = 1,
    time_limit: float | None = None,
    target_std_error: float = 0.0,
    threads: int = 0,
    data_dir: _Path | None = None,
    progress: _WorkProgress | None = None,
    table_progress: _TableProgress | None = None,
) -> EquityResult:
    """The equity of every player (hands, ranges or "random"): wins, ties and share of the pot."""

# ---- tables -----------------------------------------------------------------------------------------

def table_files() -> list[str]:
    """The names of the table files generate_tables() writes by default."""

def default_data_directory() -> pathlib.Path:
    """The data directory: $POKERMATH_DATA_DIR, else $XDG_CACHE_HOME/pokermath, else ~/.cache/pokermath."""

def generate_tables(
    *,
    data_dir: _Path | None = None,
    files: Sequence[_TableFileName] | None = None,
    preflop: bool = False,
    short_deck: bool = False,
    omaha_rankings: Sequence[_OmahaGame] | None = None,
    force: bool = False,
    progress: _TableProgress | None = None,
) -> list[str]:
    """Generates the table files into the data directory and returns the names of those written."""

# ---- ranges -----------------------------------------------------------------------------------------

class Range:
    """A Hold'em range: a set of two-card combinations; len() counts them, | & - combine ranges."""

    __hash__: ClassVar[None]  # type: ignore[assignment]
    def __init__(self, text: str = "", *, notation: Literal["players", "printed"] = "players") -> None: ...
    @staticmethod
    def top(
        percent: float, *, table: Literal["equity", "groups", "brenmark", "shortdeck-equity"] = "equity"
    ) -> Range:
        """The strongest `percent` per cent of all hands from a built-in table."""
    @property
    def size(self) -> int: ...
    @property
    def share(self) -> float: ...
    @property
    def combos(self) -> list[tuple[int, int]]: ...
    @property
    def matrix(self) -> list[list[int]]: ...
    @property
    def class_counts(self) -> list[int]: ...
    def to_string(self, *, short_deck: bool = False) -> str:
        """The canonical range string ("QQ+,AKs,AKo"); short_deck drops classes with a card below six."""
    def _repr_html_(self) -> str: ...
    def __len__(self) -> int: ...
    def __bool__(self) -> bool: ...
    def __contains__(self, hand: _Cards) -> bool: ...
    def __eq__(self, other: object) -> bool: ...
    def __or__(self, other: Range) -> Range: ...
    def __and__(self, other: Range) -> Range: ...
    def __sub__(self, other: Range) -> Range: ...

class RangeFile:
    """A range file, one class per line, strongest first, from which top() takes the strongest."""

    def __init__(self, path: str | os.PathLike[str], *, game: Literal["holdem", "shortdeck"] = "holdem") -> None: ...
    @property
    def path(self) -> str: ...
    def top(self, percent: float) -> Range:
        """The strongest classes of the file that cover `percent` per cent."""
    def top_weighted(self, percent: float) -> WeightedRange:
        """The same with each class at the weight its line gives ("AK @50"; 100 without one)."""

def hand_class_name(cell: int) -> str:
    """The name of class cell 0..168 ("AA", "AKs", "AKo")."""

def hand_class_combos(cell: int) -> int:
    """The combinations of class cell 0..168: 6 for a pair, 4 suited, 12 offsuit."""

# ---- Omaha ------------------------------------------------------------------------------------------

class OmahaHand:
    """The best Omaha high hand: two hole cards and three board cards."""

    @property
    def value(self) -> int: ...
    @property
    def hand_class(self) -> int: ...
    @property
    def category(self) -> str: ...
    @property
    def hole_used(self) -> list[int]: ...
    @property
    def board_used(self) -> list[int]: ...
    @property
    def description(self) -> str: ...

class OmahaOut:
    """One unseen card that improves the hand."""

    @property
    def card(self) -> int: ...
    @property
    def value(self) -> int: ...
    @property
    def category(self) -> str: ...
    @property
    def nut(self) -> bool: ...

class OmahaOuts:
    """The cards that improve an Omaha hand on a flop or turn; len() counts them."""

    @property
    def current(self) -> OmahaHand: ...
    @property
    def unseen(self) -> int: ...
    @property
    def outs(self) -> list[OmahaOut]: ...
    @property
    def nut_outs(self) -> int: ...
    def __len__(self) -> int: ...

class OmahaNuts:
    """The nut hand on a board and every two-card holding that makes it."""

    @property
    def value(self) -> int: ...
    @property
    def category(self) -> str: ...
    @property
    def holdings(self) -> list[list[int]]: ...
    @property
    def description(self) -> str: ...

class HutchisonItem:
    """One step of a Hutchison count: what it saw and its points."""

    @property
    def reason(self) -> str: ...
    @property
    def points(self) -> float: ...

class HutchisonStage:
    """One stage of a Hutchison count; points is the sum of its items."""

    @property
    def name(self) -> str: ...
    @property
    def points(self) -> float: ...
    @property
    def items(self) -> list[HutchisonItem]: ...

class HutchisonCount:
    """A Hutchison count of a four-card Omaha starting hand."""

    @property
    def total(self) -> float: ...
    @property
    def high_only(self) -> bool: ...
    @property
    def stages(self) -> list[HutchisonStage]: ...

def omaha_best(hole: _Cards, board: _Cards) -> OmahaHand:
    """The best Omaha high hand of 4 to 6 hole cards on 3 to 5 board cards (two hole, three board)."""

def omaha_low(hole: _Cards, board: _Cards) -> str | None:
    """The best eight-or-better low as players write it ("5-4-3-2-A"), or None."""

def omaha_low_value(hole: _Cards, board: _Cards) -> int:
    """The best eight-or-better low as a number, smaller is better (54321 = 5-4-3-2-A); 0 = none."""

def omaha_outs(hole: _Cards, board: _Cards) -> OmahaOuts:
    """The unseen cards that improve an Omaha hand on a flop or turn, with those that make the nuts."""

def omaha_nuts(board: _Cards, *, dead: _Cards | None = None) -> OmahaNuts:
    """The nut hand on a board of 3 to 5 cards and every two-card holding (without `dead`) that makes it."""

def hutchison_points(hand: _Cards, *, hilo: bool = False) -> HutchisonCount:
    """The Hutchison count of four Omaha hole cards, stage by stage; hilo=True counts for Hi/Lo."""

# ---- records ----------------------------------------------------------------------------------------

class SidePot:
    """One pot of a showdown: the main pot, then a side pot per higher bet level."""

    @property
    def amount(self) -> int: ...
    @property
    def players(self) -> list[int]: ...
    @property
    def winners(self) -> list[int]: ...

class ShowdownPayout:
    """Chips paid to each player and the pots they came from."""

    @property
    def wins(self) -> list[int]: ...
    @property
    def pots(self) -> list[SidePot]: ...

class HistoryLines:
    """New lines of a hand-history file, and where to read on."""

    @property
    def lines(self) -> list[str]: ...
    @property
    def position(self) -> int: ...
    @property
    def held_bytes(self) -> int: ...
    @property
    def encoding(self) -> Literal["UTF-8 or narrow", "UTF-8", "UTF-16LE", "UTF-16BE", "narrow"]: ...

def pay_showdown(bets: Sequence[int], ranks: Sequence[int]) -> ShowdownPayout:
    """Pays out a showdown with side pots; ranks are hand strengths, larger stronger, ties share."""

def read_history(path: _Path, *, start: int = 0, partial: bool = False) -> HistoryLines:
    """Reads the lines of a hand-history file from byte offset `start` (UTF-8, UTF-16 or narrow)."""

# ---- Omaha ranges -------------------------------------------------------------------------------------

class OmahaRange:
    """A weighted set of Omaha holdings parsed from the Omaha range language ("AA**:ds,15%@50")."""

    __hash__: ClassVar[None]  # type: ignore[assignment]
    def __init__(
        self,
        text: str,
        game: _OmahaGame = "omaha",
        *,
        data_dir: _Path | None = None,
        progress: _TableProgress | None = None,
    ) -> None: ...
    @property
    def hole_cards(self) -> int: ...
    @property
    def text(self) -> str: ...
    @property
    def total_weight(self) -> float: ...
    @property
    def share(self) -> float: ...
    def __len__(self) -> int: ...
    def __contains__(self, holding: _Cards) -> bool: ...
    def weight(self, holding: _Cards) -> float: ...
    def holdings(self) -> list[tuple[str, float]]: ...
    def masks(self) -> list[int]: ...
    def without(self, cards: _Cards) -> OmahaRange: ...
    def hand_types(self) -> dict[str, tuple[int, float]]: ...
    def __or__(self, other: OmahaRange) -> OmahaRange: ...
    def __and__(self, other: OmahaRange) -> OmahaRange: ...
    def __sub__(self, other: OmahaRange) -> OmahaRange: ...
    def __eq__(self, other: object) -> bool: ...

def omaha_hand_type(holding: _Cards) -> dict[str, str | bool]: ...
def omaha_preflop(
    game: _OmahaGame = "omaha",
    *,
    deck: _Cards | None = None,
    threads: int = 0,
    progress: _WorkProgress | None = None,
) -> list[tuple[str, int, float]]:
    """The exact pre-flop equity of every class of holdings against one random holding."""
def omaha_ranking(
    game: _OmahaGame = "omaha", *, data_dir: _Path | None = None, progress: _TableProgress | None = None
) -> list[tuple[str, float]]: ...
def generate_omaha_preflop_table(
    game: _OmahaGame = "omaha",
    *,
    data_dir: _Path | None = None,
    checkpoint: _Path | None = None,
    ranks: str | None = None,
    threads: int = 0,
    unit_boards: int = 0,
    force: bool = False,
    progress: _TableProgress | None = None,
) -> bool:
    """Makes the exact pre-flop table of an Omaha game, checkpointed in units."""
def omaha_holding_ranking(
    holding: _Cards, *, hilo: bool = False, ranks: str | None = None, data_dir: _Path | None = None
) -> dict[str, Any]:
    """A holding's exact pre-flop equity, rank and percentile from its game's exact table."""

# ---- range analysis ---------------------------------------------------------------------------------

class WeightedRange:
    """A Hold'em range whose combinations carry weights: "AA, KK@50, AKs@25"."""

    __hash__: ClassVar[None]  # type: ignore[assignment]
    def __init__(self, text: str = "") -> None: ...
    @property
    def combos(self) -> list[tuple[str, float]]: ...
    @property
    def total_weight(self) -> float: ...
    @property
    def class_weights(self) -> list[float]: ...
    def weight(self, hand: _Cards) -> float: ...
    def svg(self, title: str = "") -> str: ...
    def grid(self, *, color: bool = False) -> str: ...
    def __len__(self) -> int: ...
    def __eq__(self, other: object) -> bool: ...

class EquityDistribution:
    """A range's combinations sorted by equity: (combo, from, to, equity) steps."""

    @property
    def steps(self) -> list[tuple[str, float, float, float]]: ...
    @property
    def equity(self) -> float: ...
    def share_at_least(self, equity: float) -> float: ...
    def svg(self, title: str = "Equity distribution") -> str: ...

class RangeBreakdown:
    """A player's equity broken down exactly by combination and class."""

    @property
    def player(self) -> int: ...
    @property
    def equity(self) -> float: ...
    @property
    def seconds(self) -> float: ...
    @property
    def combos(self) -> list[tuple[str, float, float, float]]: ...
    @property
    def classes(self) -> dict[str, tuple[int, float, float]]: ...
    @property
    def grid(self) -> list[float]: ...
    def distribution(self) -> EquityDistribution: ...
    def svg(self, title: str = "Equity by class") -> str: ...

def equity_by_class(
    players: Sequence[_Cards],
    *,
    board: _Cards | None = None,
    dead: _Cards | None = None,
    game: _EquityGame = "holdem",
    player: int = 0,
    threads: int = 0,
    progress: _WorkProgress | None = None,
) -> RangeBreakdown:
    """The exact equity of each combination and class of one player's range against the others."""

class BoardHits:
    """How a range hits a flop or a turn: combinations by made hand and by draw."""

    @property
    def board(self) -> str: ...
    @property
    def combos(self) -> int: ...
    @property
    def weight(self) -> float: ...
    @property
    def made(self) -> dict[str, tuple[int, float, float]]: ...
    @property
    def draws(self) -> dict[str, tuple[int, float, float]]: ...
    def svg(self, title: str = "") -> str: ...

def board_hits(range: str, board: _Cards) -> BoardHits: ...
def classify_on_board(hand: _Cards, board: _Cards) -> tuple[str, list[str]]: ...
def range_grid_svg(values: Sequence[float], *, scale: Literal["weight", "equity"] = "weight", title: str = "") -> str: ...
def bar_chart_svg(bars: Sequence[tuple[str, float, float]], *, title: str = "") -> str: ...

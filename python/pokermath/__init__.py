"""pokermath: poker hand evaluation, equities, ranges, Omaha and hand records.

    >>> import pokermath
    >>> pokermath.evaluate("Ah Ad 7c 7s 2h Kd 7h").description
    'full house 7 over Ace'
    >>> round(pokermath.equity(["AsKs", "QhQd"])[0].equity, 4)   # exact: every board counted
    0.4621
    >>> r = pokermath.equity(["AsKs", "QQ+,AKs"], board="Qh7h2c")  # against a range on a flop
    >>> pokermath.Range("QQ+,AKs").size
    22
    >>> len(pokermath.OmahaRange("AA**:ds"))                       # an Omaha range
    1296

pokermath.hand_values() values whole numpy arrays of hands at the speed of the C++ batch call.
Cards are written "As", "Td", "10h" (any case), several together ("AsKs") or apart
("As Ks"), or given as card codes 0..51 (13 x suit + rank: 2c = 0, Ac = 12, 2d = 13, ...,
As = 51). Bad input raises ValueError with a message that names it; a file or directory that
cannot be read or written raises OSError; Ctrl-C stops a long computation with
KeyboardInterrupt. help(pokermath.equity) and the other functions' help explain each call.
"""

from ._pokermath import (
    __version__,
    BoardHits,
    EquityDistribution,
    RangeBreakdown,
    WeightedRange,
    bar_chart_svg,
    board_hits,
    classify_on_board,
    equity_by_class,
    range_grid_svg,
    EquityResult,
    Evaluation,
    HistoryLines,
    HutchisonCount,
    HutchisonItem,
    HutchisonStage,
    OmahaHand,
    OmahaNuts,
    OmahaOut,
    OmahaOuts,
    OmahaRange,
    PlayerEquity,
    Range,
    RangeFile,
    ShowdownPayout,
    SidePot,
    card_to_string,
    cards_to_mask,
    cards_to_string,
    default_data_directory,
    equity,
    evaluate,
    generate_omaha_preflop_table,
    generate_tables,
    hand_class_combos,
    hand_class_name,
    hand_value,
    hand_values,
    hutchison_points,
    mask_to_cards,
    omaha_best,
    omaha_hand_type,
    omaha_holding_ranking,
    omaha_low,
    omaha_low_value,
    omaha_nuts,
    omaha_preflop,
    omaha_outs,
    omaha_ranking,
    parse_card,
    parse_cards,
    pay_showdown,
    read_history,
    table_files,
)

__all__ = [name for name in dir() if not name.startswith("_")] + ["__version__"]

// Omaha ranges for Python: OmahaRange (the Omaha range language, holdings with weights, hand
// types, set operations), the hand type of one holding and the pre-flop rankings.
#include <bit>
#include <cstdio>

#include "convert.h"

namespace pokermath::python {

namespace {

// A holding from text ("AsKsQhJh") or a sequence of cards.
uint64_t holding_of(py::handle holding) { return cards_to_mask(to_cards(holding, "holding")); }

OmahaRange parse(const std::string& text, const std::string& game, std::optional<std::filesystem::path> data_dir,
                 py::object progress) {
  const EquityGame g = equity_game_from_name(game);
  const TableProgress report = table_progress(std::move(progress));
  py::gil_scoped_release unlocked;  // a share may compute the ranking first (minutes)
  return parse_omaha_range(text, g, data_dir ? *data_dir : std::filesystem::path{}, report);
}

std::string range_repr(const OmahaRange& r) {
  return "OmahaRange('" + r.text() + "', hole_cards=" + std::to_string(r.hole_cards()) +
         ", holdings=" + std::to_string(r.size()) + ")";
}

const char* suits_name(OmahaSuits s) {
  switch (s) {
    case OmahaSuits::DoubleSuited: return "double-suited";
    case OmahaSuits::SingleSuited: return "single-suited";
    default: return "rainbow";
  }
}

const char* pairs_name(OmahaPairs p) {
  switch (p) {
    case OmahaPairs::NoPair: return "no pair";
    case OmahaPairs::OnePair: return "one pair";
    case OmahaPairs::TwoPair: return "two pair";
    case OmahaPairs::Trips: return "trips";
    default: return "quads";
  }
}

}  // namespace

void bind_omaha_ranges(py::module_& m) {
  py::class_<OmahaRange>(m, "OmahaRange",
                         "A weighted set of Omaha holdings, parsed from the Omaha range language.\n\n"
                         ">>> r = pokermath.OmahaRange(\"AA**:ds\")\n"
                         ">>> len(r), r.text\n"
                         "(1296, 'AA**:ds')\n\n"
                         "See docs/omaha-ranges.md for the language: exact cards, ranks with * for any card,\n"
                         "suit variables w x y z, runs (KK+, QQ-99), hand types (ds, ss, rainbow, np, ...),\n"
                         "shares of the pre-flop ranking (\"15%\"), ',' ':' '!' and weights '@N'.")
      .def(py::init(&parse), py::arg("text"), py::arg("game") = "omaha", py::kw_only(),
           py::arg("data_dir") = py::none(), py::arg("progress") = py::none(),
           "Parses text for the game's holdings (\"omaha\": 4 cards, \"omaha5\", \"omaha6\" and the -hilo\n"
           "games). A share (\"15%\") reads the game's pre-flop ranking, computed into data_dir on first use\n"
           "(progress(file, stage, fraction) reports it). Raises ValueError naming the position of a fault.")
      .def_property_readonly("hole_cards", &OmahaRange::hole_cards)
      .def_property_readonly("text", &OmahaRange::text, "the range in the language, canonical form")
      .def_property_readonly("total_weight", &OmahaRange::total_weight,
                             "the sum of the weights / 100: the holdings a weighted range stands for")
      .def_property_readonly(
          "share",
          [](const OmahaRange& r) { return static_cast<double>(r.size()) / omaha_holdings_count(r.hole_cards()); },
          "the range's share of all holdings of its size, 0..1")
      .def("__len__", &OmahaRange::size)
      .def("__contains__", [](const OmahaRange& r, py::handle h) { return r.contains(holding_of(h)); })
      .def(
          "weight", [](const OmahaRange& r, py::handle h) { return r.weight(holding_of(h)); }, py::arg("holding"),
          "the weight of a holding (0..100; 0 when the range does not hold it)")
      .def(
          "holdings",
          [](const OmahaRange& r) {
            py::list out;
            for (const OmahaHolding& h : r.holdings())
              out.append(py::make_tuple(omaha_holding_to_string(h.cards), h.weight));
            return out;
          },
          "[(holding, weight)] in mask order, each holding as its cards highest rank first")
      .def(
          "masks",
          [](const OmahaRange& r) {
            std::vector<uint64_t> masks;
            for (const OmahaHolding& h : r.holdings()) masks.push_back(h.cards);
            return masks;
          },
          "the holdings as 64-bit card masks (bit = card code), ascending")
      .def(
          "without",
          [](const OmahaRange& r, py::handle cards) { return r.without(cards_to_mask(to_cards(cards, "cards"))); },
          py::arg("cards"), "the holdings that share no card with the given cards (a board, dead cards)")
      .def(
          "hand_types",
          [](const OmahaRange& r) {
            py::dict out;
            for (const OmahaTypeCount& t : omaha_hand_types(r))
              out[py::str(t.name)] = py::make_tuple(t.holdings, t.weight);
            return out;
          },
          "{type: (holdings, weight)} for double-suited, single-suited, rainbow, no pair, one pair, two pair,\n"
          "trips, quads, rundown, broadway and suited ace")
      .def("__or__", [](const OmahaRange& a, const OmahaRange& b) { return a | b; })
      .def("__and__", [](const OmahaRange& a, const OmahaRange& b) { return a & b; })
      .def("__sub__", [](const OmahaRange& a, const OmahaRange& b) { return a - b; })
      .def("__eq__",
           [](const OmahaRange& a, const OmahaRange& b) {
             return a.hole_cards() == b.hole_cards() && a.holdings() == b.holdings();
           })
      .def("__str__", &OmahaRange::text)
      .def("__repr__", &range_repr);

  m.def(
      "omaha_hand_type",
      [](py::handle holding) {
        const OmahaHandType t = omaha_hand_type(holding_of(holding));
        py::dict out;
        out["suits"] = suits_name(t.suits);
        out["pairs"] = pairs_name(t.pairs);
        out["rundown"] = t.rundown;
        out["broadway"] = t.broadway;
        out["suited_ace"] = t.suited_ace;
        return out;
      },
      py::arg("holding"),
      "What players call an Omaha starting hand of 4, 5 or 6 cards: {'suits': 'double-suited' |\n"
      "'single-suited' | 'rainbow', 'pairs': 'no pair' | 'one pair' | 'two pair' | 'trips' | 'quads',\n"
      "'rundown': bool, 'broadway': bool, 'suited_ace': bool}.");

  m.def(
      "omaha_ranking",
      [](const std::string& game, std::optional<std::filesystem::path> data_dir, py::object progress) {
        const EquityGame g = equity_game_from_name(game);
        const TableProgress report = table_progress(std::move(progress));
        std::shared_ptr<const OmahaRanking> ranking;
        {
          py::gil_scoped_release unlocked;
          ranking = omaha_ranking(g, data_dir ? *data_dir : std::filesystem::path{}, report);
        }
        py::list out;
        for (size_t i = 0; i < ranking->classes.size(); ++i)
          out.append(
              py::make_tuple(omaha_holding_to_string(ranking->classes[i]), static_cast<double>(ranking->equity[i])));
        return out;
      },
      py::arg("game") = "omaha", py::kw_only(), py::arg("data_dir") = py::none(), py::arg("progress") = py::none(),
      "The pre-flop ranking of an Omaha game that shares (\"15%\") read: [(holding, equity against one\n"
      "random holding)] for one holding of every class equal up to suits, strongest first. Computed into\n"
      "data_dir on first use (a few minutes on two cores). The game's exact table ranks them instead when\n"
      "it is in data_dir (generate_omaha_preflop_table); the 6-card games need it (ValueError without).");

  m.def(
      "omaha_preflop",
      [](const std::string& game, py::handle cards, int threads, py::object progress) {
        const EquityGame g = equity_game_from_name(game);
        const uint64_t deck = cards.is_none() ? (uint64_t{1} << 52) - 1 : cards_to_mask(to_cards(cards, "deck"));
        Interruption interruption(std::move(progress));
        const std::vector<OmahaPreflopEquity> table = run_unlocked(interruption, [&] {
          return compute_omaha_preflop(g, deck, threads, interruption.work_progress(), interruption.stop_token());
        });
        py::list out;
        for (const OmahaPreflopEquity& e : table)
          out.append(py::make_tuple(omaha_holding_to_string(e.holding_class), e.holdings, e.equity));
        return out;
      },
      py::arg("game") = "omaha", py::kw_only(), py::arg("deck") = py::none(), py::arg("threads") = 0,
      py::arg("progress") = py::none(),
      "The exact pre-flop equity of every class of holdings (equal up to suits) of an Omaha game against\n"
      "one random holding, every board and opponent counted: [(holding, holdings in the class, equity)]\n"
      "in ascending order of the class's card mask. deck: the cards to play with (default all 52; a\n"
      "few ranks answer in moments, the full 4-card game takes minutes). Ctrl-C stops it.\n\n"
      ">>> t = pokermath.omaha_preflop(deck=[r + s for r in \"TJQKA\" for s in \"cdhs\"])\n"
      ">>> max(t, key=lambda e: e[2])[0]\n"
      "'AcAdKhKs'");

  m.def(
      "generate_omaha_preflop_table",
      [](const std::string& game, std::optional<std::filesystem::path> data_dir,
         std::optional<std::filesystem::path> checkpoint, std::optional<std::string> ranks, int threads,
         int unit_boards, bool force, py::object progress) {
        OmahaTableOptions options;
        options.dir = data_dir.value_or(std::filesystem::path{});
        options.checkpoint = checkpoint.value_or(std::filesystem::path{});
        options.deck = deck_of_ranks(ranks.value_or(""));
        options.threads = threads;
        options.unit_boards = unit_boards;
        options.force = force;
        const TableProgress report = table_progress(std::move(progress));
        py::gil_scoped_release unlocked;
        return generate_omaha_preflop_table(equity_game_from_name(game), options, report);
      },
      py::arg("game") = "omaha", py::kw_only(), py::arg("data_dir") = py::none(), py::arg("checkpoint") = py::none(),
      py::arg("ranks") = py::none(), py::arg("threads") = 0, py::arg("unit_boards") = 0, py::arg("force") = false,
      py::arg("progress") = py::none(),
      "Makes the exact pre-flop table of an Omaha game in data_dir, as pokermath tables --omaha-preflop\n"
      "does: in units of boards written to checkpoint (default: data_dir/TABLE.units) as they finish, so\n"
      "a run that is stopped resumes. ranks: a deck of these ranks only (\"A2345K\"). True when written,\n"
      "False when a valid table was there.");

  m.def(
      "omaha_holding_ranking",
      [](py::handle holding, bool hilo, std::optional<std::string> ranks,
         std::optional<std::filesystem::path> data_dir) {
        const uint64_t mask = holding_of(holding);
        const int hole = std::popcount(mask);
        if (hole < 4 || hole > 6) throw Error("an Omaha holding has 4, 5 or 6 cards");
        const std::string name = "omaha" + (hole == 4 ? std::string() : std::to_string(hole)) + (hilo ? "-hilo" : "");
        std::shared_ptr<const OmahaPreflopTable> table;
        {
          py::gil_scoped_release unlocked;
          table = omaha_preflop_table(equity_game_from_name(name), data_dir.value_or(std::filesystem::path{}),
                                      deck_of_ranks(ranks.value_or("")));
        }
        const OmahaPreflopTable::Entry& e = table->lookup(mask);
        py::dict out;
        out["class"] = omaha_holding_to_string(e.holding_class);
        out["game"] = name;
        out["equity"] = e.equity;
        out["rank"] = e.rank;
        out["classes"] = table->entries().size();
        out["percentile"] = e.percentile;
        return out;
      },
      py::arg("holding"), py::kw_only(), py::arg("hilo") = false, py::arg("ranks") = py::none(),
      py::arg("data_dir") = py::none(),
      "A holding's exact pre-flop equity against one random holding from its game's exact table (4, 5 or\n"
      "6 cards; hilo for Hi/Lo): {'class', 'game', 'equity', 'rank' (1: strongest), 'classes',\n"
      "'percentile' (the share of holdings with a smaller equity, 0..100)}. ValueError when the table is\n"
      "not in data_dir: make it with generate_omaha_preflop_table or pokermath tables --omaha-preflop.");
}

}  // namespace pokermath::python

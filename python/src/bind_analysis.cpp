// Range analysis for Python: weighted ranges, equity by hand class and its distribution, board hits,
// and their pictures (SVG documents and the terminal grid).
#include <cmath>
#include <limits>

#include "convert.h"

namespace pokermath::python {

namespace {

GridScale scale_from_name(const std::string& name) {
  if (name == "weight") return GridScale::Weight;
  if (name == "equity") return GridScale::Equity;
  throw Error("unknown scale '" + name + "': use weight or equity");
}

std::array<double, 169> grid_values(const std::vector<double>& values) {
  if (values.size() != 169) throw Error("a grid has 169 values (class cells 0..168), got " + std::to_string(values.size()));
  std::array<double, 169> out{};
  std::copy(values.begin(), values.end(), out.begin());
  return out;
}

// The share of each class's combinations a weighted range holds (NaN where it holds none).
std::string combo_text(int card1, int card2) { return card_to_string(card1) + card_to_string(card2); }

RangeBreakdown by_class(py::handle players, py::handle board, py::handle dead, const std::string& game, int player,
                        py::handle threads, py::object progress) {
  EquityRequest request = equity_request(players, board, dead, game, threads);
  request.method = EquityMethod::Exact;
  Interruption interruption(std::move(progress));
  request.on_progress = interruption.work_progress();
  request.stop = interruption.stop_token();
  return run_unlocked(interruption, [&] { return equity_by_class(request, player); });
}

py::dict hits_dict(const BoardHits& h, bool made) {
  py::dict out;
  const int count = made ? kMadeHands : kDraws;
  for (int i = 0; i < count; ++i) {
    const std::string name = made ? made_hand_name(static_cast<MadeHand>(i)) : draw_name(static_cast<Draw>(1u << i));
    const int combos = made ? h.made_combos[i] : h.draw_combos[i];
    const double weight = made ? h.made_weight[i] : h.draw_weight[i];
    out[py::str(name)] = py::make_tuple(combos, weight, h.weight > 0 ? weight / h.weight : 0.0);
  }
  return out;
}

}  // namespace

void bind_analysis(py::module_& m) {
  py::class_<WeightedRange>(m, "WeightedRange",
                            "A Hold'em range whose combinations carry weights, per cent of the time held.\n\n"
                            ">>> r = pokermath.WeightedRange(\"AA, KK@50, AKs@25\")\n"
                            ">>> len(r), r.total_weight\n"
                            "(16, 10.0)\n\n"
                            "Any item may end in @N (0 < N <= 100); a combination named twice keeps its largest\n"
                            "weight. equity() takes the same text for a player.")
      .def(py::init([](const std::string& text) { return parse_weighted_range(text); }), py::arg("text") = "",
           "Parses a range with weights (\"AA, KK@50, AKs@25, A5s-A2s@75\"). Raises ValueError naming the bad item.")
      .def_property_readonly(
          "combos",
          [](const WeightedRange& r) {
            py::list out;
            for (const WeightedCombo& c : r.combos()) out.append(py::make_tuple(combo_text(c.card1, c.card2), c.weight));
            return out;
          },
          "the combinations as (\"AsKs\", weight) pairs")
      .def_property_readonly("total_weight", &WeightedRange::total_weight,
                             "the sum of the weights / 100: how many combinations the range stands for")
      .def_property_readonly(
          "class_weights",
          [](const WeightedRange& r) {
            const std::array<double, 169> w = r.class_weights();
            return std::vector<double>(w.begin(), w.end());
          },
          "the weight held per class cell 0..168 (sum / 100)")
      .def(
          "weight", [](const WeightedRange& r, py::handle hand) {
            const std::vector<int> cards = to_cards(hand, "hand");
            if (cards.size() != 2) throw Error("a hand is two cards");
            return r.weight(cards[0], cards[1]);
          },
          py::arg("hand"), "The weight of a hand (\"AsKs\"), 0 when the range does not hold it.")
      .def(
          "svg", [](const WeightedRange& r, const std::string& title) {
            return range_grid_svg(r.class_shares(), GridScale::Weight, title.empty() ? r.text() : title);
          },
          py::arg("title") = "", "The 13 x 13 heat map of the share of each class held, as an SVG document.")
      .def(
          "grid", [](const WeightedRange& r, bool color) { return range_grid_terminal(r.class_shares(), GridScale::Weight, color); },
          py::kw_only(), py::arg("color") = false, "The 13 x 13 grid as text for a terminal (ANSI colors with color=True).")
      .def("__str__", &WeightedRange::text)
      .def("__repr__", [](const WeightedRange& r) { return "WeightedRange('" + r.text() + "')"; })
      .def("__len__", &WeightedRange::size)
      .def("__eq__", [](const WeightedRange& a, const WeightedRange& b) { return a == b; }, py::is_operator());

  py::class_<EquityDistribution>(m, "EquityDistribution",
                                 "A range's combinations sorted by equity, strongest first: steps (combo, from, to,\n"
                                 "equity), each covering the share of the range from `from` to `to`.")
      .def_property_readonly(
          "steps",
          [](const EquityDistribution& d) {
            py::list out;
            for (const DistributionStep& s : d.steps) out.append(py::make_tuple(s.combo, s.from, s.to, s.equity));
            return out;
          },
          "the steps as (combo, from, to, equity) tuples")
      .def_readonly("equity", &EquityDistribution::equity, "the range's equity")
      .def("share_at_least", &EquityDistribution::share_at_least, py::arg("equity"),
           "The share of the range (0..1) whose equity is at least `equity`.")
      .def("svg", [](const EquityDistribution& d, const std::string& title) { return distribution_svg(d, title); },
           py::arg("title") = "Equity distribution", "The distribution curve as an SVG document.");

  py::class_<RangeBreakdown>(m, "RangeBreakdown",
                             "A player's equity broken down exactly by the combinations and classes of its range.")
      .def_readonly("player", &RangeBreakdown::player, "the player broken down (0-based)")
      .def_readonly("equity", &RangeBreakdown::equity, "the player's equity in the whole request")
      .def_readonly("seconds", &RangeBreakdown::seconds)
      .def_property_readonly(
          "combos",
          [](const RangeBreakdown& b) {
            py::list out;
            for (size_t k = 0; k < b.combos.size(); ++k) {
              const ComboEquity& c = b.combos[k];
              out.append(py::make_tuple(combo_text(c.card1, c.card2), c.weight, b.deal_weight[k], c.equity));
            }
            return out;
          },
          "(combo, weight, deal weight, equity) per combination; the range's equity is the deal-weighted\n"
          "mean of the combinations' equities")
      .def_property_readonly(
          "classes",
          [](const RangeBreakdown& b) {
            py::dict out;
            for (const ClassEquity& c : b.classes)
              if (c.combos > 0) out[py::str(hand_class_name(c.cell))] = py::make_tuple(c.combos, c.weight, c.equity);
            return out;
          },
          "class name -> (combinations, deal weight, equity) for the classes the range holds")
      .def_property_readonly(
          "grid",
          [](const RangeBreakdown& b) {
            const std::array<double, 169> g = b.class_equities();
            return std::vector<double>(g.begin(), g.end());
          },
          "the equity of each class cell 0..168, NaN where the range holds none")
      .def("distribution", &equity_distribution, "The equity distribution of the range.")
      .def(
          "svg", [](const RangeBreakdown& b, const std::string& title) {
            return range_grid_svg(b.class_equities(), GridScale::Equity, title);
          },
          py::arg("title") = "Equity by class", "The 13 x 13 heat map of equities as an SVG document.");

  m.def("equity_by_class", &by_class, py::arg("players"), py::kw_only(), py::arg("board") = py::none(),
        py::arg("dead") = py::none(), py::arg("game") = "holdem", py::arg("player") = 0, py::arg("threads") = 0,
        py::arg("progress") = py::none(),
        "The exact equity of each combination and class of one player's range (player, 0-based) against\n"
        "the others, in Hold'em or the short deck; players, board, dead, game, threads and progress as in\n"
        "equity(). Raises ValueError for a bad request or one too large to count exactly.\n\n"
        ">>> b = pokermath.equity_by_class([\"QQ+,AKs\", \"JJ\"])\n"
        ">>> round(b.classes[\"AA\"][2], 3)\n"
        "0.811");

  py::class_<BoardHits>(m, "BoardHits", "How a range hits a flop or a turn: combinations by made hand and by draw.")
      .def_property_readonly("board", [](const BoardHits& h) { return cards_to_string(h.board); })
      .def_readonly("combos", &BoardHits::combos, "combinations left once the board cards are removed")
      .def_readonly("weight", &BoardHits::weight, "their weight / 100")
      .def_property_readonly(
          "made", [](const BoardHits& h) { return hits_dict(h, true); },
          "made hand -> (combinations, weight, share of the weight), strongest first")
      .def_property_readonly(
          "draws", [](const BoardHits& h) { return hits_dict(h, false); },
          "draw -> (combinations, weight, share of the weight)")
      .def("svg", [](const BoardHits& h, const std::string& title) { return board_hits_svg(h, title); },
           py::arg("title") = "", "Bar charts of the made hands and the draws as an SVG document.");

  m.def(
      "board_hits",
      [](const std::string& range, py::handle board) {
        return pokermath::board_hits(parse_weighted_range(range), to_cards(board, "board"));
      },
      py::arg("range"), py::arg("board"),
      "How a Hold'em range (weights allowed) hits a board of 3 or 4 cards.\n\n"
      ">>> h = pokermath.board_hits(\"QQ+,AK\", \"Kh7c2d\")\n"
      ">>> h.made[\"set\"][0], h.made[\"top pair, top kicker\"][0]\n"
      "(3, 12)");
  m.def(
      "classify_on_board",
      [](py::handle hand, py::handle board) {
        const std::vector<int> cards = to_cards(hand, "hand");
        if (cards.size() != 2) throw Error("a hand is two cards");
        const HandOnBoard h = classify_on_board(cards[0], cards[1], to_cards(board, "board"));
        py::list draws;
        for (int d = 0; d < kDraws; ++d)
          if (h.draws >> d & 1) draws.append(draw_name(static_cast<Draw>(1u << d)));
        return py::make_tuple(made_hand_name(h.made), draws);
      },
      py::arg("hand"), py::arg("board"),
      "The made hand and the draws of a hand on a board of 3 or 4 cards: (\"top pair, top kicker\", [...]).");

  m.def(
      "range_grid_svg",
      [](const std::vector<double>& values, const std::string& scale, const std::string& title) {
        return range_grid_svg(grid_values(values), scale_from_name(scale), title);
      },
      py::arg("values"), py::kw_only(), py::arg("scale") = "weight", py::arg("title") = "",
      "A 13 x 13 heat map of 169 values 0..1 (class cells 0..168; NaN for an empty cell), scale \"weight\"\n"
      "or \"equity\", as an SVG document.");
  m.def(
      "bar_chart_svg",
      [](const std::vector<std::tuple<std::string, double, double>>& bars, const std::string& title) {
        std::vector<ChartBar> out;
        for (const auto& [label, share, count] : bars) out.push_back({label, share, count});
        return bar_chart_svg(out, title);
      },
      py::arg("bars"), py::kw_only(), py::arg("title") = "",
      "Horizontal bars from (label, share 0..1, count) tuples, as an SVG document.");
}

}  // namespace pokermath::python

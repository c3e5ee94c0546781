// Hold'em ranges for Python: Range (parse, combinations, size, the 13 x 13 matrix, strings, set
// operations, a matrix picture in notebooks), the built-in top-x% tables and range files.
#include <algorithm>
#include <bit>
#include <cstdio>
#include <set>

#include "convert.h"

namespace pokermath::python {

namespace {

constexpr int kAllCombos = 1326;

// A range as the set of its distinct combinations: each a two-card mask, so that both card orders
// of a Spec element are one combination.
struct Range {
  Spec spec;

  std::set<uint64_t> masks() const {
    std::set<uint64_t> out;
    for (const auto& [a, b] : spec.m_hands)
      if (a >= 0 && a < 52 && b >= 0 && b < 52 && a != b) out.insert((uint64_t{1} << a) | (uint64_t{1} << b));
    return out;
  }
  static Range from_masks(const std::set<uint64_t>& masks) {
    Range out;
    for (uint64_t mask : masks) {
      const int low = std::countr_zero(mask), high = 63 - std::countl_zero(mask);
      out.spec.AddCard(high, low);
    }
    return out;
  }
};

RangeNotation notation_from_name(const std::string& name) {
  if (name == "players") return RangeNotation::Players;
  if (name == "printed") return RangeNotation::Printed;
  throw Error("unknown notation '" + name + "': use players or printed");
}

RangeTable table_from_name(const std::string& name) {
  if (name == "equity") return RangeTable::Equity;
  if (name == "groups") return RangeTable::Groups;
  if (name == "brenmark") return RangeTable::Brenmark;
  if (name == "shortdeck-equity") return RangeTable::ShortDeckEquity;
  throw Error("unknown range table '" + name + "': use equity, groups, brenmark or shortdeck-equity");
}

// The combination of a hand given as text or cards: exactly two cards.
uint64_t combination_of(py::handle hand) {
  const std::vector<int> cards = to_cards(hand, "hand");
  if (cards.size() != 2) throw Error("a Hold'em hand has two cards, got " + std::to_string(cards.size()));
  return cards_to_mask(cards);
}

std::vector<std::pair<int, int>> combinations(const Range& r) {
  std::vector<std::pair<int, int>> out;
  for (uint64_t mask : r.masks()) {
    const int low = std::countr_zero(mask), high = 63 - std::countl_zero(mask);
    out.emplace_back(comparefun(high, low) ? high : low, comparefun(high, low) ? low : high);
  }
  return out;
}

std::vector<std::vector<int>> matrix(const Range& r) {
  const std::array<int, 169> counts = range_class_counts(r.spec);
  std::vector<std::vector<int>> rows(13, std::vector<int>(13));
  for (int cell = 0; cell < 169; ++cell) rows[cell / 13][cell % 13] = counts[cell];
  return rows;
}

// The 13 x 13 matrix as an HTML table: each class shaded by the share of its combinations held.
std::string matrix_html(const Range& r) {
  const std::array<int, 169> counts = range_class_counts(r.spec);
  std::string html =
      "<table style=\"border-collapse:collapse;font:11px monospace;text-align:center\">"
      "<caption style=\"caption-side:bottom\">" +
      std::to_string(range_combos(r.spec)) + " combinations, " +
      std::to_string(range_combos(r.spec) * 100.0 / kAllCombos).substr(0, 4) + "%</caption>";
  for (int row = 0; row < 13; ++row) {
    html += "<tr>";
    for (int column = 0; column < 13; ++column) {
      const int cell = row * 13 + column;
      const double held = static_cast<double>(counts[cell]) / hand_class_combos(cell);
      char style[160];
      std::snprintf(style, sizeof style,
                    "border:1px solid #bbb;padding:2px 4px;background:rgba(214,39,40,%.2f);color:%s", held,
                    held > 0.5 ? "#fff" : "#000");
      html += "<td style=\"" + std::string(style) + "\" title=\"" + std::to_string(counts[cell]) + " of " +
              std::to_string(hand_class_combos(cell)) + "\">" + hand_class_name(cell) + "</td>";
    }
    html += "</tr>";
  }
  return html + "</table>";
}

// A range file's percentage order, from which top() takes the strongest classes.
struct RangeFile {
  std::string path;
  Spec source;
  std::array<double, 169> weights{};  // the lines' weights per class ("AK @50"), 100 by default
};

}  // namespace

void bind_ranges(py::module_& m) {
  py::class_<Range>(m, "Range",
                    "A Hold'em range: a set of two-card combinations.\n\n"
                    ">>> r = pokermath.Range(\"QQ+, AKs, A5s-A2s, KQ\")\n"
                    ">>> len(r), str(r)\n"
                    "(54, 'QQ+,AKs,A5s-A2s,KQs,KQo')\n\n"
                    "len() is the number of combinations; `in` takes a hand (\"AsKs\"); | & - combine ranges.")
      .def(py::init([](const std::string& text, const std::string& notation) {
             return Range{parse_range(text, notation_from_name(notation))};
           }),
           py::arg("text") = "", py::kw_only(), py::arg("notation") = "players",
           "Parses a range: items separated by commas or blanks - \"AA\", \"TT+\", \"99-66\", \"AKs\", \"A2s+\",\n"
           "\"A9s-A6s\", \"KQo\", \"K9o+\", \"KQ\" (suited and offsuit), single combinations \"AsKs\", \"random\".\n"
           "notation=\"printed\" reads the classic printed form, where \"KQ\" is offsuit only. Raises\n"
           "ValueError naming the bad item.")
      .def_static(
          "top",
          [](double percent, const std::string& table) {
            return Range{table_range(table_from_name(table), percent).range};
          },
          py::arg("percent"), py::kw_only(), py::arg("table") = "equity",
          "The strongest `percent` per cent of all hands from a built-in table: \"equity\" (169 classes\n"
          "by equity), \"groups\" (Sklansky groups), \"brenmark\" or \"shortdeck-equity\".")
      .def_property_readonly(
          "size", [](const Range& r) { return range_combos(r.spec); }, "the number of distinct combinations")
      .def_property_readonly(
          "share", [](const Range& r) { return range_combos(r.spec) / static_cast<double>(kAllCombos); },
          "the share of all 1,326 combinations, 0..1")
      .def_property_readonly("combos", &combinations, "the combinations as (card, card) code pairs, higher rank first")
      .def_property_readonly("matrix", &matrix,
                             "13 x 13 combinations held per class: rows and columns from the ace down, pairs\n"
                             "on the diagonal, suited above it, offsuit below it")
      .def_property_readonly(
          "class_counts",
          [](const Range& r) {
            const std::array<int, 169> counts = range_class_counts(r.spec);
            return std::vector<int>(counts.begin(), counts.end());
          },
          "combinations held per class cell 0..168 (\"AA\" = 0, \"AKs\" = 1, \"AKo\" = 13, \"22\" = 168)")
      .def(
          "to_string", [](const Range& r, bool short_deck) { return range_to_string(r.spec, short_deck); },
          py::kw_only(), py::arg("short_deck") = false,
          "The canonical range string (\"QQ+,AKs,AKo\"); Range() reads it back to the same combinations.\n"
          "short_deck drops classes with a card below six.")
      .def("__str__", [](const Range& r) { return range_to_string(r.spec); })
      .def("__repr__", [](const Range& r) { return "Range('" + range_to_string(r.spec) + "')"; })
      .def("_repr_html_", &matrix_html)
      .def("__len__", [](const Range& r) { return range_combos(r.spec); })
      .def("__bool__", [](const Range& r) { return range_combos(r.spec) > 0; })
      .def("__contains__",
           [](const Range& r, py::handle hand) {
             const uint64_t mask = combination_of(hand);  // a Spec holds a combination in either card order
             const int low = std::countr_zero(mask), high = 63 - std::countl_zero(mask);
             return r.spec.m_hands.count({low, high}) + r.spec.m_hands.count({high, low}) > 0;
           })
      .def(
          "__eq__", [](const Range& a, const Range& b) { return a.masks() == b.masks(); }, py::is_operator())
      .def(
          "__or__",
          [](const Range& a, const Range& b) {
            std::set<uint64_t> out = a.masks();
            out.merge(b.masks());
            return Range::from_masks(out);
          },
          py::is_operator())
      .def(
          "__and__",
          [](const Range& a, const Range& b) {
            const std::set<uint64_t> other = b.masks();
            std::set<uint64_t> out;
            for (uint64_t mask : a.masks())
              if (other.count(mask)) out.insert(mask);
            return Range::from_masks(out);
          },
          py::is_operator())
      .def(
          "__sub__",
          [](const Range& a, const Range& b) {
            std::set<uint64_t> out = a.masks();
            for (uint64_t mask : b.masks()) out.erase(mask);
            return Range::from_masks(out);
          },
          py::is_operator());

  py::class_<RangeFile>(m, "RangeFile",
                        "A range file: one class per line, strongest first (\"AA\", \"KK\", \"AKs\", ...), from which\n"
                        "top() takes the strongest classes.")
      .def(py::init([](const std::filesystem::path& path, const std::string& game) {
             if (game != "holdem" && game != "shortdeck")
               throw Error("unknown game '" + game + "': use holdem or shortdeck");
             const RangeGame range_game = game == "holdem" ? RangeGame::Holdem : RangeGame::ShortDeck;
             RangeFile file{path.string(), {}, {}};
             file.source = read_range_file(path.string(), range_game, file.weights);
             return file;
           }),
           py::arg("path"), py::kw_only(), py::arg("game") = "holdem",
           "Reads a range file (its name ends in .txt). Raises OSError when it cannot be read and\n"
           "ValueError for a bad line or a combination total other than the game's.")
      .def_readonly("path", &RangeFile::path)
      .def(
          "top", [](const RangeFile& f, double percent) { return Range{range_by_percent(f.source, percent)}; },
          py::arg("percent"), "The strongest classes of the file that cover `percent` per cent.")
      .def(
          "top_weighted",
          [](const RangeFile& f, double percent) { return range_by_percent(f.source, percent, f.weights); },
          py::arg("percent"),
          "The same as a WeightedRange, each class at the weight its line gives (\"AK @50\"; 100 without one).")
      .def("__repr__", [](const RangeFile& f) { return "RangeFile('" + f.path + "')"; });

  m.def("hand_class_name", &hand_class_name, py::arg("cell"),
        "The name of class cell 0..168 (\"AA\", \"AKs\", \"AKo\").");
  m.def("hand_class_combos", &hand_class_combos, py::arg("cell"),
        "The combinations of class cell 0..168: 6 for a pair, 4 suited, 12 offsuit.");
}

}  // namespace pokermath::python

// Game records for Python: showdown payouts with side pots, and hand-history files read line by line.
#include "convert.h"

namespace pokermath::python {

namespace {

std::string int_list(const std::vector<int>& values) {
  std::string out = "[";
  for (size_t i = 0; i < values.size(); ++i) out += (i ? ", " : "") + std::to_string(values[i]);
  return out + "]";
}

}  // namespace

void bind_records(py::module_& m) {
  py::class_<SidePot>(m, "SidePot", "One pot of a showdown: the main pot, then a side pot per higher bet level.")
      .def_readonly("amount", &SidePot::amount, "chips in this pot")
      .def_readonly("players", &SidePot::players, "0-based indices of the players whose bets reach into it")
      .def_readonly("winners", &SidePot::winners, "those of them with the best rank, who share it")
      .def("__repr__", [](const SidePot& p) {
        return "SidePot(amount=" + std::to_string(p.amount) + ", players=" + int_list(p.players) +
               ", winners=" + int_list(p.winners) + ")";
      });
  py::class_<ShowdownPayout>(m, "ShowdownPayout", "Chips paid to each player and the pots they came from.")
      .def_readonly("wins", &ShowdownPayout::wins, "chips paid to each player; they add up to the bets")
      .def_readonly("pots", &ShowdownPayout::pots, "the main pot first, then the side pots")
      .def("__repr__", [](const ShowdownPayout& p) {
        return "ShowdownPayout(wins=" + int_list(p.wins) + ", pots=" + std::to_string(p.pots.size()) + ")";
      });
  m.def(
      "pay_showdown",
      [](const std::vector<int>& bets, const std::vector<int>& ranks) { return pay_showdown(bets, ranks); },
      py::arg("bets"), py::arg("ranks"),
      "Pays out a showdown with side pots. bets[i] >= 0 are the chips player i has in the pot, ranks[i]\n"
      "the hand strengths, larger stronger; tied players share a pot, the first of them taking odd\n"
      "chips.\n\n"
      ">>> pokermath.pay_showdown([100, 60, 40], [3, 7, 7]).wins\n"
      "[40, 100, 60]");

  py::class_<HistoryLines>(m, "HistoryLines", "New lines of a hand-history file, and where to read on.")
      .def_readonly("lines", &HistoryLines::lines, "UTF-8 text, trimmed; blank lines are left out")
      .def_readonly("position", &HistoryLines::position, "the byte offset to pass as `start` next time")
      .def_readonly("held_bytes", &HistoryLines::held_bytes, "bytes of an unfinished last line left for later")
      .def_property_readonly(
          "encoding", [](const HistoryLines& h) { return std::string(encoding_name(h.encoding)); },
          "\"UTF-8 or narrow\", \"UTF-8\", \"UTF-16LE\", \"UTF-16BE\" or \"narrow\"")
      .def("__repr__", [](const HistoryLines& h) {
        return "HistoryLines(lines=" + std::to_string(h.lines.size()) + ", position=" + std::to_string(h.position) +
               ", held_bytes=" + std::to_string(h.held_bytes) + ")";
      });
  m.def(
      "read_history",
      [](const std::filesystem::path& path, int64_t start, bool partial) {
        py::gil_scoped_release unlocked;
        return read_history(path, start, partial ? PartialLine::Include : PartialLine::Hold);
      },
      py::arg("path"), py::kw_only(), py::arg("start") = 0, py::arg("partial") = false,
      "Reads the lines of a hand-history file from byte offset `start`, in UTF-8, UTF-16 or the narrow\n"
      "code page. A last line without a line end (a poker client still writing it) is held back unless\n"
      "partial=True. Pass the result's position as `start` to read only what was written since.\n\n"
      "Raises OSError when the file cannot be read, ValueError when `start` is negative or past the end\n"
      "of the file (it was truncated or replaced: read it again from 0).");
}

}  // namespace pokermath::python

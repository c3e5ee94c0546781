// Equity for Python: equity() over hands, ranges and random hands in every game, computed without
// the interpreter lock and stopped by Ctrl-C; and generation of the table files.
#include <climits>
#include <cmath>
#include <cstdint>
#include <cstdio>

#include "convert.h"

namespace pokermath::python {

namespace {

EquityMethod method_from_name(const std::string& name) {
  if (name == "auto") return EquityMethod::Auto;
  if (name == "exact") return EquityMethod::Exact;
  if (name == "monte-carlo") return EquityMethod::MonteCarlo;
  throw Error("unknown method '" + name + "': use auto, exact or monte-carlo");
}

std::string player_text(py::handle player, size_t index) {
  if (py::isinstance<py::str>(player)) return player.cast<std::string>();
  return cards_to_string(to_cards(player, "player " + std::to_string(index + 1)));
}

// An integer argument as a Python int or numpy integer within [low, high], else ValueError.
template <typename T>
T integer_argument(py::handle value, const char* name, T low, T high) {
  if (!PyIndex_Check(value.ptr()) || py::isinstance<py::bool_>(value))
    throw Error(std::string(name) + " must be an integer");
  const auto number = py::reinterpret_steal<py::int_>(PyNumber_Index(value.ptr()));
  if (!number) throw py::error_already_set();
  const auto in_range = [&](auto bound, bool lower) {
    return PyObject_RichCompareBool(number.ptr(), py::int_(bound).ptr(), lower ? Py_GE : Py_LE) == 1;
  };
  if (!in_range(low, true) || !in_range(high, false))
    throw Error(std::string(name) + " must be " + std::to_string(low) + ".." + std::to_string(high) + ", got " +
                py::str(py::handle(number)).cast<std::string>());
  return number.cast<T>();
}

}  // namespace

EquityRequest equity_request(py::handle players, py::handle board, py::handle dead, const std::string& game,
                             py::handle threads) {
  EquityRequest request;
  request.game = equity_game_from_name(game);
  if (!py::isinstance<py::sequence>(players) || py::isinstance<py::str>(players))
    throw Error("players must be a list of hands, ranges or \"random\", such as [\"AsKs\", \"QQ+,AKs\"]");
  size_t index = 0;
  for (py::handle player : players) request.players.push_back(player_text(player, index++));
  request.board = to_optional_cards(board, "board");
  request.dead = to_optional_cards(dead, "dead");
  request.threads = integer_argument<int>(threads, "threads", INT_MIN, INT_MAX);
  return request;
}

namespace {

EquityResult equity(py::handle players, py::handle board, py::handle dead, const std::string& game,
                    const std::string& method, py::handle trials, py::handle seed, std::optional<double> time_limit,
                    double target_std_error, py::handle threads, std::optional<std::filesystem::path> data_dir,
                    py::object progress, py::object table_progress_callback) {
  EquityRequest request = equity_request(players, board, dead, game, threads);
  request.method = method_from_name(method);
  // A target standard error asks for sampling, as on the command line.
  if (request.method == EquityMethod::Auto && target_std_error > 0) request.method = EquityMethod::MonteCarlo;
  request.trials = integer_argument<int64_t>(trials, "trials", INT64_MIN, INT64_MAX);
  request.seed = integer_argument<uint64_t>(seed, "seed", 0, UINT64_MAX);
  if (time_limit) {
    if (!(*time_limit >= 0) || *time_limit > 1e9) throw Error("time_limit must be a number of seconds >= 0");
    request.time_ms = static_cast<int>(std::ceil(*time_limit * 1000));
  }
  request.target_std_error = target_std_error;
  if (data_dir) request.data_dir = *data_dir;
  request.progress = table_progress(std::move(table_progress_callback));

  Interruption interruption(std::move(progress));
  request.on_progress = interruption.work_progress();
  request.stop = interruption.stop_token();
  return run_unlocked(interruption, [&] { return compute_equity(request); });
}

std::string percent(double share) {
  char text[32];
  std::snprintf(text, sizeof text, "%.2f%%", share * 100);
  return text;
}

std::string method_name(const EquityResult& r) { return r.from_table ? "table" : r.exact ? "exact" : "monte-carlo"; }

std::string player_repr(const PlayerEquity& p) {
  char text[160];
  std::snprintf(text, sizeof text, "win=%.4f, tie=%.4f, equity=%.4f", p.win, p.tie, p.equity);
  std::string out = "PlayerEquity(hand='" + p.hand + "', " + text;
  if (p.std_error > 0) {
    std::snprintf(text, sizeof text, ", std_error=%.4f", p.std_error);
    out += text;
  }
  if (!std::isnan(p.high)) {
    std::snprintf(text, sizeof text, ", high=%.4f, low=%.4f, scoop=%.4f", p.high, p.low, p.scoop);
    out += text;
  }
  return out + ")";
}

std::string result_repr(const EquityResult& r) {
  std::string out =
      "EquityResult(method='" + method_name(r) + "', deals=" + std::to_string(std::llround(r.deals)) + ", players=[";
  for (size_t i = 0; i < r.players.size(); ++i) out += (i ? ", " : "") + player_repr(r.players[i]);
  return out + "])";
}

// The table of the command line: a line per player.
std::string result_table(const EquityResult& r) {
  const bool hilo = !r.players.empty() && !std::isnan(r.players[0].high);
  const bool sampled = !r.exact;
  size_t width = 6;
  for (const PlayerEquity& p : r.players) width = std::max(width, p.hand.size());
  auto column = [](std::string text) { return std::string(text.size() < 9 ? 9 - text.size() : 1, ' ') + text; };
  std::string out = "method: " + method_name(r) + ", " + std::to_string(std::llround(r.deals)) +
                    (r.exact ? " deals" : " trials") + "\n\n";
  out += "player" + std::string(width - 6, ' ') + column("win") + column("tie") + column("equity");
  if (sampled) out += column("+/-");
  if (hilo) out += column("high") + column("low") + column("scoop");
  for (const PlayerEquity& p : r.players) {
    out += "\n" + p.hand + std::string(width - p.hand.size(), ' ');
    out += column(std::isnan(p.win) ? "-" : percent(p.win)) + column(std::isnan(p.tie) ? "-" : percent(p.tie)) +
           column(percent(p.equity));
    if (sampled) out += column(percent(p.std_error));
    if (hilo) out += column(percent(p.high)) + column(percent(p.low)) + column(percent(p.scoop));
  }
  return out;
}

py::list generate_tables(std::optional<std::filesystem::path> data_dir, std::optional<std::vector<std::string>> files,
                         bool preflop, bool short_deck, std::optional<std::vector<std::string>> omaha_rankings,
                         bool force, py::object progress) {
  const std::filesystem::path dir = data_directory(data_dir);
  std::vector<TableFile> chosen;
  if (files)
    for (const std::string& name : *files) chosen.push_back(table_file_from_name(name));
  else
    chosen = all_table_files();
  const TableProgress report = table_progress(std::move(progress));
  py::list written;
  // A file is written whole or not at all; Ctrl-C takes effect between files.
  auto check_signals = [] {
    if (PyErr_CheckSignals() != 0) throw py::error_already_set();
  };
  for (TableFile file : chosen) {
    bool wrote;
    {
      py::gil_scoped_release unlocked;
      wrote = generate_table_file(dir, file, force, report);
    }
    if (wrote) written.append(std::string(table_file_name(file)));
    check_signals();
  }
  if (preflop) {
    bool wrote;
    {
      py::gil_scoped_release unlocked;
      wrote = generate_preflop_table(dir, force, report);
    }
    if (wrote) written.append("OrvalisPC.dat");
    check_signals();
  }
  if (short_deck) {
    bool wrote;
    {
      py::gil_scoped_release unlocked;
      wrote = generate_short_deck_tables(dir, force, report);
    }
    if (wrote)
      for (const std::string& name : short_deck_table_names()) written.append(name);
    check_signals();
  }
  for (const std::string& name : omaha_rankings.value_or(std::vector<std::string>{})) {
    const EquityGame game = equity_game_from_name(name);
    bool wrote;
    {
      py::gil_scoped_release unlocked;
      wrote = generate_omaha_ranking(game, dir, force, report);
    }
    if (wrote) written.append(omaha_ranking_name(game));
    check_signals();
  }
  return written;
}

}  // namespace

void bind_equity(py::module_& m) {
  py::class_<PlayerEquity>(m, "PlayerEquity", "One player's share of the pot. Every share is a fraction 0..1.")
      .def_readonly("hand", &PlayerEquity::hand, "the player's hand, range or \"random\" as given")
      .def_readonly("win", &PlayerEquity::win, "the share of deals the player wins alone (NaN from the pre-flop table)")
      .def_readonly("tie", &PlayerEquity::tie, "the share of deals the player splits (NaN from the pre-flop table)")
      .def_readonly("equity", &PlayerEquity::equity, "the share of the pot, a split pot divided evenly")
      .def_readonly("std_error", &PlayerEquity::std_error, "Monte Carlo: the standard error of equity; 0 when exact")
      .def_readonly("high", &PlayerEquity::high, "Hi/Lo: the pot share won with the high hand; NaN in other games")
      .def_readonly("low", &PlayerEquity::low, "Hi/Lo: the pot share won with the low hand; NaN in other games")
      .def_readonly("scoop", &PlayerEquity::scoop, "Hi/Lo: the share of deals won whole and alone; NaN in other games")
      .def("__repr__", &player_repr);

  py::class_<EquityResult>(m, "EquityResult",
                           "The result of equity(): one PlayerEquity per player, in the order given. Indexing\n"
                           "and iteration go over the players; str() is a table.")
      .def_readonly("players", &EquityResult::players)
      .def_readonly("exact", &EquityResult::exact, "every deal counted (or answered from an exact table)")
      .def_readonly("from_table", &EquityResult::from_table, "answered from the pre-flop equity table")
      .def_property_readonly("method", &method_name, "\"exact\", \"monte-carlo\" or \"table\"")
      .def_property_readonly(
          "deals", [](const EquityResult& r) { return std::llround(r.deals); },
          "deals counted (boards x hand combinations) when exact, trials when sampled")
      .def_readonly("seconds", &EquityResult::seconds, "the time the computation took")
      .def_property_readonly(
          "equities",
          [](const EquityResult& r) {
            std::vector<double> out;
            for (const PlayerEquity& p : r.players) out.push_back(p.equity);
            return out;
          },
          "every player's equity, in order")
      .def("__len__", [](const EquityResult& r) { return r.players.size(); })
      .def("__getitem__",
           [](const EquityResult& r, ssize_t i) {
             const auto n = static_cast<ssize_t>(r.players.size());
             if (i < 0) i += n;
             if (i < 0 || i >= n) throw py::index_error("player index out of range");
             return r.players[static_cast<size_t>(i)];
           })
      .def(
          "__iter__", [](const EquityResult& r) { return py::make_iterator(r.players.begin(), r.players.end()); },
          py::keep_alive<0, 1>())
      .def("__repr__", &result_repr)
      .def("__str__", &result_table);

  m.def("equity", &equity, py::arg("players"), py::kw_only(), py::arg("board") = py::none(),
        py::arg("dead") = py::none(), py::arg("game") = "holdem", py::arg("method") = "auto",
        py::arg("trials") = 1000000, py::arg("seed") = 1, py::arg("time_limit") = py::none(),
        py::arg("target_std_error") = 0.0, py::arg("threads") = 0, py::arg("data_dir") = py::none(),
        py::arg("progress") = py::none(), py::arg("table_progress") = py::none(),
        "The equity of every player: how often each wins, ties, and its share of the pot.\n\n"
        "players:  two to ten players, each a hand (\"AsKs\" or a list of cards), a range\n"
        "          (\"QQ+,AKs,A5s-A2s\") or \"random\"; in Omaha games a holding (\"AsKsQhJh\") or \"random\".\n"
        "board:    0, 3, 4 or 5 board cards (\"Qh7h2c\"); dead: cards out of play.\n"
        "game:     \"holdem\", \"shortdeck\" (36 cards, six to ace), \"china\" (short deck where a straight\n"
        "          beats three of a kind), \"omaha\", \"omaha5\", \"omaha6\", \"omaha-hilo\",\n"
        "          \"omaha5-hilo\" or \"omaha6-hilo\".\n"
        "method:   \"auto\" (exact when that takes about a second or less, else Monte Carlo; Monte Carlo\n"
        "          whenever target_std_error is given), \"exact\"\n"
        "          or \"monte-carlo\".\n"
        "trials, seed, time_limit (seconds), target_std_error: Monte Carlo limits; it stops at the first\n"
        "          reached. The same seed gives the same numbers on any number of threads.\n"
        "threads:  threads to use (0: every core).\n"
        "data_dir: where the table files live (default: $POKERMATH_DATA_DIR, else $XDG_CACHE_HOME/pokermath,\n"
        "          else ~/.cache/pokermath).\n"
        "progress: called with the fraction done (0..1) as the work goes; an exception raised there\n"
        "          stops the computation and propagates. table_progress(file, stage, fraction) reports\n"
        "          a table generated on first use.\n\n"
        "The computation runs without the interpreter lock, so other threads go on, and Ctrl-C stops it\n"
        "with KeyboardInterrupt.\n\n"
        ">>> r = pokermath.equity([\"AsKs\", \"QhQd\"])\n"
        ">>> round(r[0].equity, 4), r.method\n"
        "(0.4621, 'exact')\n\n"
        "Raises ValueError for a bad hand or range, a card used twice, too few or too many players, a\n"
        "bad number, or an exact request too large to count.");

  m.def(
      "table_files",
      [] {
        std::vector<std::string> names;
        for (TableFile file : all_table_files()) names.emplace_back(table_file_name(file));
        return names;
      },
      "The names of the table files generate_tables() writes by default.");
  m.def("default_data_directory", &default_data_directory,
        "The data directory: $POKERMATH_DATA_DIR, else $XDG_CACHE_HOME/pokermath, else ~/.cache/pokermath.");
  m.def("generate_tables", &generate_tables, py::kw_only(), py::arg("data_dir") = py::none(),
        py::arg("files") = py::none(), py::arg("preflop") = false, py::arg("short_deck") = false,
        py::arg("omaha_rankings") = py::none(), py::arg("force") = false, py::arg("progress") = py::none(),
        "Generates the table files into the data directory and returns the names of those written.\n\n"
        "files:    names from table_files() (default: all of them).\n"
        "preflop:  also the exact pre-flop equity table OrvalisPC.dat (about 5 s on two cores).\n"
        "short_deck: also the nine short-deck equity tables (ET2I_6.bin, ..., FT2R_6C.bin; about 9 s).\n"
        "omaha_rankings: games whose pre-flop ranking to compute (\"omaha\", \"omaha5\", \"omaha-hilo\",\n"
        "          \"omaha5-hilo\"; a few minutes each on two cores), the ranking Omaha range shares read.\n"
        "force:    write files again that are already present and valid.\n"
        "Each file is written whole or not at all; Ctrl-C takes effect once the file being written is done.\n"
        "progress: called as progress(file, stage, fraction); a fraction of -1 is a notice (a damaged\n"
        "          table found and generated again), which without a callback becomes a RuntimeWarning.\n\n"
        "Raises ValueError for an unknown file name and OSError when the directory cannot be written.");
}

}  // namespace pokermath::python

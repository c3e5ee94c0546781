// What every part of the Python module shares: reading cards from Python objects, calling back into
// Python from a computation that runs without the global interpreter lock, and the registration
// functions of the module's parts.
#pragma once

#include <pybind11/functional.h>
#include <pybind11/pybind11.h>
#include <pybind11/stl.h>
#include <pybind11/stl/filesystem.h>

#include <chrono>
#include <optional>
#include <stop_token>
#include <string>
#include <vector>

#include "pokermath/pokermath.h"

namespace pokermath::python {

namespace py = pybind11;

// Cards from a Python object: a string of card names ("AsKs", "As Ks", "As,Ks"), or a sequence whose
// items are card codes 0..51 (Python or numpy integers) or card names. `what` names the argument in messages ("board").
// Throws Error for anything else; codes are not range-checked here (the library checks them).
std::vector<int> to_cards(py::handle cards, const std::string& what);

// The same, None giving no cards.
std::vector<int> to_optional_cards(py::handle cards, const std::string& what);

// The data directory: `dir` when given, else the library's default.
std::filesystem::path data_directory(const std::optional<std::filesystem::path>& dir);

// A table-progress callback for the library that calls `callback(file, stage, fraction)` with the
// interpreter lock held. Without a callback, notices (a damaged table found and generated again) go
// to warnings.warn and progress is silent.
TableProgress table_progress(py::object callback);

// Watches a computation that runs without the interpreter lock: between pieces of work it calls the
// user's progress callback, and checks for signals (Ctrl-C) at most every 50 ms. When either raises,
// the exception is kept and the computation is asked to stop through stop_token(); rethrow() then
// raises it in Python.
class Interruption {
 public:
  explicit Interruption(py::object progress) : m_progress(std::move(progress)) {}

  std::stop_token stop_token() const { return m_stop.get_token(); }
  // The library's WorkProgress: called on the thread that released the lock.
  WorkProgress work_progress();
  // Raises the exception that stopped the computation; a Cancelled that came from elsewhere is
  // reported as KeyboardInterrupt.
  [[noreturn]] void rethrow();

 private:
  void step(double fraction);

  py::object m_progress;
  std::stop_source m_stop;
  std::optional<py::error_already_set> m_error;
  std::chrono::steady_clock::time_point m_last_check = std::chrono::steady_clock::now();
};

// Runs work() without the interpreter lock under `interruption`: a Cancelled from the work (Ctrl-C,
// an exception in the progress callback) is raised in Python as the interruption says.
template <typename Work>
auto run_unlocked(Interruption& interruption, Work work) -> decltype(work()) {
  decltype(work()) result;
  bool cancelled = false;
  {
    py::gil_scoped_release unlocked;
    try {
      result = work();
    } catch (const Cancelled&) {
      cancelled = true;
    }
  }
  if (cancelled) interruption.rethrow();
  return result;
}

// An equity request from equity()'s arguments: the players (texts or card lists), board and dead
// cards, the game's name and the threads. Throws Error for bad ones.
EquityRequest equity_request(py::handle players, py::handle board, py::handle dead, const std::string& game,
                             py::handle threads);

// Shared parsing of game and rule names.
ShortDeckRules short_deck_rules(const std::string& game);

// The module's parts, each in its own file.
void bind_cards(py::module_& m);
void bind_evaluation(py::module_& m);
void bind_equity(py::module_& m);
void bind_ranges(py::module_& m);
void bind_omaha(py::module_& m);
void bind_omaha_ranges(py::module_& m);
void bind_records(py::module_& m);
void bind_analysis(py::module_& m);

}  // namespace pokermath::python

// The Python module pokermath._pokermath: errors, cards, and the shared conversions; the other
// bind_*.cpp files add evaluation, equity, ranges, Omaha and records.
#include <cerrno>

#include "convert.h"

namespace pokermath::python {

std::vector<int> to_cards(py::handle cards, const std::string& what) {
  if (py::isinstance<py::str>(cards)) return parse_cards(cards.cast<std::string>());
  if (!py::isinstance<py::sequence>(cards) || py::isinstance<py::bytes>(cards))
    throw Error(what + " must be a string of cards such as \"AsKs\" or a sequence of card codes, not " +
                std::string(py::str(py::type::handle_of(cards).attr("__name__"))));
  std::vector<int> codes;
  std::vector<std::string> names;
  for (py::handle item : cards) {
    if (py::isinstance<py::str>(item)) {
      names.push_back(item.cast<std::string>());
    } else if (PyIndex_Check(item.ptr()) && !py::isinstance<py::bool_>(item)) {  // int, numpy integers
      const auto number = py::reinterpret_steal<py::object>(PyNumber_Index(item.ptr()));
      if (!number) throw py::error_already_set();
      int overflow = 0;
      const long long code = PyLong_AsLongLongAndOverflow(number.ptr(), &overflow);
      if (overflow != 0 || code < 0 || code > 51)
        throw Error(what + ": bad card code " + std::string(py::str(number)) + ": must be 0..51");
      codes.push_back(static_cast<int>(code));
    } else {
      throw Error(what + ": a card is a code 0..51 or a name such as \"As\", not " +
                  std::string(py::str(py::type::handle_of(item).attr("__name__"))));
    }
  }
  if (!names.empty() && !codes.empty()) throw Error(what + ": mix of card codes and card names");
  if (!names.empty()) return parse_cards(std::span<const std::string>(names));
  cards_to_mask(codes);  // throws for a repeated card
  return codes;
}

std::vector<int> to_optional_cards(py::handle cards, const std::string& what) {
  return cards.is_none() ? std::vector<int>{} : to_cards(cards, what);
}

std::filesystem::path data_directory(const std::optional<std::filesystem::path>& dir) {
  return dir ? *dir : default_data_directory();
}

TableProgress table_progress(py::object callback) {
  // The callback may be called from a thread without the interpreter lock; it takes the lock and
  // keeps its reference to the Python callable alive by sharing it.
  auto held = std::make_shared<py::object>(std::move(callback));
  return [held](std::string_view file, std::string_view stage, double fraction) {
    py::gil_scoped_acquire lock;
    // An exception cannot cross the table writer (it may be inside a parallel loop): it is reported
    // as unraisable, as Python does for exceptions in callbacks it cannot propagate.
    try {
      if (!held->is_none()) {
        (*held)(std::string(file), std::string(stage), fraction);
      } else if (fraction == kNoticeFraction) {
        PyErr_WarnEx(PyExc_RuntimeWarning, std::string(stage).c_str(), 1);
        if (PyErr_Occurred()) throw py::error_already_set();
      }
    } catch (py::error_already_set& e) {
      e.discard_as_unraisable("pokermath table progress");
    }
  };
}

WorkProgress Interruption::work_progress() {
  return [this](double fraction) { step(fraction); };
}

void Interruption::step(double fraction) {
  if (m_error) return;
  const auto now = std::chrono::steady_clock::now();
  const bool check_signals = now - m_last_check >= std::chrono::milliseconds(50);
  if (m_progress.is_none() && !check_signals) return;  // nothing to do: keep the lock untouched
  py::gil_scoped_acquire lock;
  try {
    if (check_signals) {
      m_last_check = now;
      if (PyErr_CheckSignals() != 0) throw py::error_already_set();
    }
    if (!m_progress.is_none()) m_progress(fraction);
  } catch (py::error_already_set& e) {
    m_error = std::move(e);
    m_stop.request_stop();
  }
}

void Interruption::rethrow() {
  if (m_error) throw *m_error;
  PyErr_SetNone(PyExc_KeyboardInterrupt);
  throw py::error_already_set();
}

ShortDeckRules short_deck_rules(const std::string& game) {
  if (game == "shortdeck") return ShortDeckRules::Standard;
  if (game == "china") return ShortDeckRules::China;
  throw Error("unknown short-deck game '" + game + "': use shortdeck or china");
}

namespace {

// An OSError with the library's message. With the system's error number Python picks the subclass
// (FileNotFoundError for ENOENT, PermissionError for EACCES, ...) and sets errno, and str() reads
// "[Errno 2] <message>"; the message names the path already.
void raise_os_error(const FileError& e) {
  PyObject* error = e.error_code() != 0 ? PyObject_CallFunction(PyExc_OSError, "is", e.error_code(), e.what())
                                        : PyObject_CallFunction(PyExc_OSError, "s", e.what());
  if (error == nullptr) return;  // the failed call has set its own exception
  PyErr_SetObject(reinterpret_cast<PyObject*>(Py_TYPE(error)), error);
  Py_DECREF(error);
}

void bind_card_functions(py::module_& m) {
  m.def(
      "parse_card", [](const std::string& text) { return parse_card(text); }, py::arg("text"),
      "The card code 0..51 (13 x suit + rank, 2 = 0 .. A = 12; clubs, diamonds, hearts, spades) of a\n"
      "card name such as \"As\", \"td\" or \"10h\". Raises ValueError for anything else.");
  m.def(
      "parse_cards", [](py::handle cards) { return to_cards(cards, "cards"); }, py::arg("cards"),
      "Card codes of cards written together or apart (\"AsKs\", \"As Ks\", \"As,Ks\"), or of a\n"
      "sequence of names or codes. Raises ValueError for a bad or repeated card.");
  m.def(
      "card_to_string", [](int card) { return card_to_string(card); }, py::arg("card"),
      "The two-letter name of a card code (\"As\"). Raises ValueError outside 0..51.");
  m.def(
      "cards_to_string", [](py::handle cards) { return cards_to_string(to_cards(cards, "cards")); }, py::arg("cards"),
      "Card names joined by single blanks (\"As Ks Qs\").");
  m.def(
      "cards_to_mask", [](py::handle cards) { return cards_to_mask(to_cards(cards, "cards")); }, py::arg("cards"),
      "The 64-bit card mask (bit `code` set per card) of the cards.");
  m.def(
      "mask_to_cards",
      [](uint64_t mask) {
        if (mask >> 52) throw Error("the mask has bits above card 51");
        std::vector<int> cards;
        Int64ToVec(mask, cards);
        return cards;
      },
      py::arg("mask"), "The card codes of a 64-bit card mask, in increasing order.");
}

}  // namespace

void bind_cards(py::module_& m) { bind_card_functions(m); }

}  // namespace pokermath::python

PYBIND11_MODULE(_pokermath, m) {
  namespace py = pybind11;
  using namespace pokermath::python;
  m.doc() = "pokermath: poker hand evaluation, equities, ranges, Omaha and hand records";
  m.attr("__version__") = std::string(pokermath::version());

  // Bad input is a ValueError with the library's message; a file or directory that cannot be found,
  // read or written is an OSError; a computation stopped by Ctrl-C raises KeyboardInterrupt.
  py::register_exception_translator([](std::exception_ptr p) {
    try {
      if (p) std::rethrow_exception(p);
    } catch (const pokermath::FileError& e) {
      raise_os_error(e);
    } catch (const pokermath::Error& e) {
      PyErr_SetString(PyExc_ValueError, e.what());
    } catch (const pokermath::Cancelled&) {
      PyErr_SetNone(PyExc_KeyboardInterrupt);
    }
  });

  bind_cards(m);
  bind_evaluation(m);
  bind_equity(m);
  bind_ranges(m);
  bind_omaha(m);
  bind_omaha_ranges(m);
  bind_records(m);
  bind_analysis(m);
}

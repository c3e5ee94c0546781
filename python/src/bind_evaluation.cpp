// Hand evaluation for Python: evaluate() with the category, value, best five and words of one hand,
// hand_value() for the value alone, and hand_values() over whole arrays without the interpreter lock.
#include <pybind11/numpy.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <type_traits>

#include "convert.h"

namespace pokermath::python {

namespace {

// One evaluated hand. `value` is the game's own scale: larger is stronger in holdem, shortdeck and
// china; in lowball27 smaller is the better low. Comparisons say which hand wins.
struct Evaluation {
  std::string game;
  std::vector<int> cards;
  std::string category;
  int value = 0;
  std::optional<int> hand_class;  // holdem: the five-card class 1..7462, smaller is stronger
  std::vector<int> best_five;
  std::string description;

  int strength() const { return game == "lowball27" ? -value : value; }
};

std::string category_words(const HandEvaluation& hand) {
  return hand.hand_class == 1 ? "royal flush" : std::string(category_name(hand.category));
}

Evaluation evaluate_holdem(const std::vector<int>& cards) {
  const HandEvaluation hand = evaluate_hand(cards);
  return {"holdem",
          cards,
          category_words(hand),
          7463 - hand.hand_class,
          hand.hand_class,
          std::vector<int>(hand.best_five.begin(), hand.best_five.end()),
          hand.description};
}

// The five of the cards with the best short-deck value.
std::vector<int> best_short_deck_five(const std::vector<int>& cards, ShortDeckRules rules) {
  const int n = static_cast<int>(cards.size());
  std::vector<int> best, five(5);
  int best_value = -1;
  std::vector<bool> pick(n, false);
  std::fill(pick.begin(), pick.begin() + 5, true);
  do {
    for (int i = 0, j = 0; i < n; ++i)
      if (pick[i]) five[j++] = cards[i];
    const int value = hand_value(five, rules);
    if (value > best_value) best_value = value, best = five;
  } while (std::prev_permutation(pick.begin(), pick.end()));
  std::sort(best.begin(), best.end(), [](int a, int b) { return comparefun(a, b); });
  return best;
}

Evaluation evaluate_short(const std::vector<int>& cards, const std::string& game) {
  const ShortDeckRules rules = short_deck_rules(game);
  const ShortDeckEvaluation hand = evaluate_short_deck(cards, rules);
  Evaluation out{game, cards, hand.category, hand.value, std::nullopt, best_short_deck_five(cards, rules), ""};
  // The words of the 52-card evaluator fit every short-deck hand but the straight A-6-7-8-9, which
  // that evaluator sees as ace high.
  const HandEvaluation five = evaluate_hand(out.best_five);
  const bool low_straight = (hand.category == "straight" || hand.category == "straight flush") &&
                            five.category != Category::Straight && five.category != Category::StraightFlush;
  if (!low_straight)
    out.description = five.description;
  else
    out.description = hand.category == "straight" ? "9 high straight" : "straight flush 9 high";
  return out;
}

Evaluation evaluate_lowball(const std::vector<int>& cards) {
  const int value = evaluate_deuce_to_seven(cards);
  std::vector<int> sorted = cards;
  std::sort(sorted.begin(), sorted.end(), [](int a, int b) { return comparefun(a, b); });
  const HandEvaluation high = evaluate_hand(sorted);
  // Deuce-to-seven counts the ace high only: A-5-4-3-2 is no straight.
  uint16_t ranks = 0;
  for (int c : sorted) ranks |= static_cast<uint16_t>(1 << (c % 13));
  const bool wheel = ranks == 0x100F;
  Category category = high.category;
  if (wheel) category = category == Category::StraightFlush ? Category::Flush : Category::HighCard;
  std::string description;
  if (category == Category::HighCard) {
    for (int c : sorted) {
      if (!description.empty()) description += '-';
      description += "23456789TJQKA"[c % 13];
    }
  } else {
    description = wheel ? "flush Ace high" : high.description;
  }
  return {"lowball27", cards, std::string(category_name(category)), value, std::nullopt, sorted, description};
}

Evaluation evaluate(py::handle cards_object, const std::string& game) {
  const std::vector<int> cards = to_cards(cards_object, "cards");
  if (game == "holdem") return evaluate_holdem(cards);
  if (game == "shortdeck" || game == "china") return evaluate_short(cards, game);
  if (game == "lowball27") return evaluate_lowball(cards);
  throw Error("unknown game '" + game + "': use holdem, shortdeck, china or lowball27");
}

int value_of(py::handle cards_object, const std::string& game) {
  const std::vector<int> cards = to_cards(cards_object, "cards");
  if (game == "holdem") return hand_value(cards);
  if (game == "shortdeck" || game == "china") return hand_value(cards, short_deck_rules(game));
  if (game == "lowball27") return evaluate_deuce_to_seven(cards);
  throw Error("unknown game '" + game + "': use holdem, shortdeck, china or lowball27");
}

// ---- batches ---------------------------------------------------------------------------------------

// The batch evaluator of a game: std::nullopt for Hold'em, else the short-deck rules.
std::optional<ShortDeckRules> batch_rules(const std::string& game) {
  if (game == "holdem") return std::nullopt;
  if (game == "shortdeck" || game == "china") return short_deck_rules(game);
  throw Error("hand_values evaluates holdem, shortdeck and china hands, not '" + game + "'");
}

void values_of_codes(std::span<const uint8_t> codes, int n, std::span<int> values, std::optional<ShortDeckRules> r) {
  r ? hand_values(codes, n, values, *r) : hand_values(codes, n, values);
}
void values_of_codes(std::span<const int> codes, int n, std::span<int> values, std::optional<ShortDeckRules> r) {
  r ? hand_values(codes, n, values, *r) : hand_values(codes, n, values);
}
void values_of_masks(std::span<const uint64_t> masks, std::span<int> values, std::optional<ShortDeckRules> r) {
  r ? hand_values(masks, values, *r) : hand_values(masks, values);
}

// Whether a buffer holds unsigned ('u') or signed ('s') integers, from its struct format ("B", "i",
// "<q", ...); 0 for anything else. This machine's byte order is little-endian: big-endian data is refused.
char integer_kind(const py::buffer_info& info) {
  std::string format = info.format;
  if (!format.empty() && (format[0] == '>' || format[0] == '!'))
    throw Error("hands: big-endian arrays are not read; convert with hands.astype(hands.dtype.newbyteorder('='))");
  while (!format.empty() && std::strchr("@=<", format[0]) != nullptr) format.erase(0, 1);
  if (format.size() != 1 || std::strchr("bBhHiIlLqQ", format[0]) == nullptr) return 0;
  return std::islower(static_cast<unsigned char>(format[0])) ? 's' : 'u';
}

std::string shape_text(const py::buffer_info& info) {
  std::string text = "(";
  for (size_t i = 0; i < info.shape.size(); ++i) text += (i ? ", " : "") + std::to_string(info.shape[i]);
  return text + (info.shape.size() == 1 ? ",)" : ")");
}

// Adds `offset` to the hand number of a batch error ("hand 3: ...") raised for a chunk of a batch.
[[noreturn]] void rethrow_with_offset(const Error& e, size_t offset) {
  const std::string message = e.what();
  size_t digits = 5;
  if (message.rfind("hand ", 0) == 0) {
    while (digits < message.size() && std::isdigit(static_cast<unsigned char>(message[digits]))) ++digits;
    if (digits > 5)
      throw Error("hand " + std::to_string(std::stoull(message.substr(5, digits - 5)) + offset) +
                  message.substr(digits));
  }
  throw e;
}

// Card codes of any integer type and layout, copied a chunk at a time into bytes (range-checked on
// the way) and evaluated there: a chunk of 8,192 hands stays in the first-level cache.
template <typename T>
void strided_batch(const py::buffer_info& info, std::span<int> values, std::optional<ShortDeckRules> rules) {
  constexpr size_t kChunk = 8192;
  const size_t hands = static_cast<size_t>(info.shape[0]), n = static_cast<size_t>(info.shape[1]);
  const auto* base = static_cast<const char*>(info.ptr);
  const bool contiguous = info.strides[1] == static_cast<ssize_t>(sizeof(T)) &&
                          info.strides[0] == static_cast<ssize_t>(n * sizeof(T)) &&
                          reinterpret_cast<uintptr_t>(base) % alignof(T) == 0;
  std::vector<uint8_t> bytes(kChunk * n);
  auto evaluate_chunk = [&](size_t first, size_t count) {
    try {
      values_of_codes(std::span<const uint8_t>(bytes.data(), count * n), static_cast<int>(n),
                      values.subspan(first, count), rules);
    } catch (const Error& e) {
      rethrow_with_offset(e, first);
    }
  };
  for (size_t first = 0; first < hands; first += kChunk) {
    const size_t count = std::min(kChunk, hands - first);
    if (contiguous) {
      // Rows follow each other: one vectorisable pass checks and narrows the whole chunk.
      const T* codes = reinterpret_cast<const T*>(base) + first * n;
      bool bad = false;
      for (size_t i = 0; i < count * n; ++i) {
        bad |= static_cast<std::make_unsigned_t<T>>(codes[i]) > 51u;
        bytes[i] = static_cast<uint8_t>(codes[i]);
      }
      if (!bad) {
        evaluate_chunk(first, count);
        continue;
      }
    }
    for (size_t h = 0; h < count; ++h) {
      const char* row = base + static_cast<ptrdiff_t>(first + h) * info.strides[0];
      for (size_t c = 0; c < n; ++c) {
        T code;
        std::memcpy(&code, row + static_cast<ptrdiff_t>(c) * info.strides[1], sizeof(T));
        bool bad = code > T(51);
        if constexpr (std::is_signed_v<T>) bad = bad || code < T(0);
        if (bad)
          throw Error("hand " + std::to_string(first + h) + ": bad card code " + std::to_string(code) +
                      ": must be 0..51");
        bytes[h * n + c] = static_cast<uint8_t>(code);
      }
    }
    evaluate_chunk(first, count);
  }
}

void code_batch(const py::buffer_info& info, std::span<int> values, std::optional<ShortDeckRules> rules) {
  const char kind = integer_kind(info);
  const ssize_t n = info.shape[1];
  const bool contiguous = info.strides[1] == info.itemsize && info.strides[0] == n * info.itemsize;
  const size_t count = static_cast<size_t>(info.shape[0] * n);
  if (contiguous && kind == 'u' && info.itemsize == 1)
    return values_of_codes(std::span(static_cast<const uint8_t*>(info.ptr), count), static_cast<int>(n), values, rules);
  if (contiguous && kind == 's' && info.itemsize == 4)
    return values_of_codes(std::span(static_cast<const int*>(info.ptr), count), static_cast<int>(n), values, rules);
  switch (info.itemsize * (kind == 's' ? -1 : 1)) {
    case 1: return strided_batch<uint8_t>(info, values, rules);
    case -1: return strided_batch<int8_t>(info, values, rules);
    case 2: return strided_batch<uint16_t>(info, values, rules);
    case -2: return strided_batch<int16_t>(info, values, rules);
    case 4: return strided_batch<uint32_t>(info, values, rules);
    case -4: return strided_batch<int32_t>(info, values, rules);
    case 8: return strided_batch<uint64_t>(info, values, rules);
    default: return strided_batch<int64_t>(info, values, rules);
  }
}

void mask_batch(const py::buffer_info& info, std::span<int> values, std::optional<ShortDeckRules> rules) {
  const size_t hands = static_cast<size_t>(info.shape[0]);
  if (info.strides[0] == 8)
    return values_of_masks(std::span(static_cast<const uint64_t*>(info.ptr), hands), values, rules);
  std::vector<uint64_t> masks(hands);
  for (size_t h = 0; h < hands; ++h)
    std::memcpy(&masks[h], static_cast<const char*>(info.ptr) + static_cast<ptrdiff_t>(h) * info.strides[0], 8);
  values_of_masks(masks, values, rules);
}

bool numpy_available() {
  static const bool available = [] {
    try {
      py::module_::import("numpy");
      return true;
    } catch (const py::error_already_set&) {
      return false;
    }
  }();
  return available;
}

// The array the values go into: `out` when given (a writable buffer of n 32-bit ints), else a new
// numpy array, or an array.array('i') where numpy is not installed.
py::object output_array(py::object out, size_t hands, std::span<int>& values) {
  if (out.is_none()) {
    if (numpy_available()) {
      out = py::array_t<int32_t>(static_cast<ssize_t>(hands));
    } else {
      out = py::module_::import("array").attr("array")("i", py::bytes(std::string(hands * 4, '\0')));
    }
  }
  if (!PyObject_CheckBuffer(out.ptr())) throw Error("out must be a writable array of 32-bit integers");
  py::buffer_info info;
  try {
    info = py::reinterpret_borrow<py::buffer>(out).request(true);
  } catch (const py::error_already_set&) {
    throw Error("out must be a writable array of 32-bit integers");
  }
  if (integer_kind(info) != 's' || info.itemsize != 4 || info.ndim != 1 || info.strides[0] != 4)
    throw Error("out must be a writable contiguous one-dimensional array of 32-bit integers (int32)");
  if (static_cast<size_t>(info.shape[0]) != hands)
    throw Error("out holds " + std::to_string(info.shape[0]) + " values, but there are " + std::to_string(hands) +
                " hands");
  values = std::span(static_cast<int*>(info.ptr), hands);
  return out;
}

py::object evaluate_buffer(py::object hands, const std::optional<ShortDeckRules>& rules, py::object out) {
  py::buffer_info info;
  try {
    info = py::reinterpret_borrow<py::buffer>(hands).request();
  } catch (const py::error_already_set&) {
    throw Error("hands: the array's memory cannot be read");
  }
  const char kind = integer_kind(info);
  const bool codes = info.ndim == 2 && info.shape[1] >= 5 && info.shape[1] <= 7;
  const bool masks = info.ndim == 1 && info.itemsize == 8;
  if (kind == 0 || !(codes || masks))
    throw Error(
        "hands must be an integer array of shape (n, 5), (n, 6) or (n, 7) holding card codes, or of "
        "shape (n,) holding 64-bit card masks; got " +
        (kind == 0 ? "an array of format '" + info.format + "'"
                   : "shape " + shape_text(info) +
                         (info.ndim == 1 ? " of " + std::to_string(info.itemsize * 8) + "-bit integers" : "")));
  std::span<int> values;
  out = output_array(std::move(out), static_cast<size_t>(info.shape[0]), values);
  {
    py::gil_scoped_release unlocked;
    if (codes)
      code_batch(info, values, rules);
    else
      mask_batch(info, values, rules);
  }
  return out;
}

// A Python sequence of hands: each a string of cards or a sequence of codes, or every item an int
// mask.
py::object evaluate_sequence(py::object hands, const std::optional<ShortDeckRules>& rules, py::object out) {
  if (!py::isinstance<py::sequence>(hands) || py::isinstance<py::str>(hands) || py::isinstance<py::bytes>(hands))
    throw Error("hands must be an array of card codes or masks, or a sequence of hands");
  std::vector<int> list_values;
  size_t h = 0;
  for (py::handle hand : hands) {
    try {
      if (py::isinstance<py::int_>(hand)) {
        const uint64_t mask = hand.cast<uint64_t>();
        int value = 0;
        values_of_masks(std::span(&mask, 1), std::span(&value, 1), rules);
        list_values.push_back(value);
      } else {
        const std::vector<int> cards = to_cards(hand, "cards");
        list_values.push_back(rules ? hand_value(cards, *rules) : hand_value(cards));
      }
    } catch (const Error& e) {
      std::string message = e.what();
      if (message.rfind("hand 0: ", 0) == 0) message.erase(0, 8);
      throw Error("hand " + std::to_string(h) + ": " + message);
    } catch (const py::cast_error&) {
      throw Error("hand " + std::to_string(h) + ": a mask must be an integer 0..2^52-1");
    }
    ++h;
  }
  std::span<int> values;
  out = output_array(std::move(out), list_values.size(), values);
  std::copy(list_values.begin(), list_values.end(), values.begin());
  return out;
}

py::object hand_values_of(py::object hands, const std::string& game, py::object out) {
  const std::optional<ShortDeckRules> rules = batch_rules(game);
  if (PyObject_CheckBuffer(hands.ptr()) && !py::isinstance<py::bytes>(hands))
    return evaluate_buffer(std::move(hands), rules, std::move(out));
  return evaluate_sequence(std::move(hands), rules, std::move(out));
}

std::string evaluation_repr(const Evaluation& e) {
  return "Evaluation(game='" + e.game + "', cards='" + cards_to_string(e.cards) + "', category='" + e.category +
         "', value=" + std::to_string(e.value) + ", best_five='" + cards_to_string(e.best_five) + "', description='" +
         e.description + "')";
}

// Orders hands of one game by strength; hands of different games do not compare.
template <typename Order>
py::object compare(const Evaluation& a, const Evaluation& b, Order order) {
  if (a.game != b.game) return py::reinterpret_borrow<py::object>(Py_NotImplemented);
  return py::bool_(order(a.strength(), b.strength()));
}

}  // namespace

void bind_evaluation(py::module_& m) {
  py::class_<Evaluation>(m, "Evaluation",
                         "One evaluated hand. Comparisons say which hand wins (a > b: a is stronger) between\n"
                         "hands of the same game.")
      .def_readonly("game", &Evaluation::game, "holdem, shortdeck, china or lowball27")
      .def_readonly("cards", &Evaluation::cards, "the card codes evaluated")
      .def_readonly("category", &Evaluation::category, "\"high card\" .. \"straight flush\", \"royal flush\"")
      .def_readonly("value", &Evaluation::value,
                    "holdem 1..7462 and shortdeck/china 1..1404, larger is stronger; lowball27 1..7462, smaller\n"
                    "is the better low (1 = 7-5-4-3-2)")
      .def_readonly("hand_class", &Evaluation::hand_class,
                    "holdem: the five-card class 1..7462, smaller is stronger (1 = royal flush); else None")
      .def_readonly("best_five", &Evaluation::best_five, "the five cards that make the hand, strongest rank first")
      .def_readonly("description", &Evaluation::description, "the hand in words")
      .def("__repr__", &evaluation_repr)
      .def(
          "__lt__", [](const Evaluation& a, const Evaluation& b) { return compare(a, b, std::less<>()); },
          py::is_operator())
      .def(
          "__gt__", [](const Evaluation& a, const Evaluation& b) { return compare(a, b, std::greater<>()); },
          py::is_operator())
      .def(
          "__le__", [](const Evaluation& a, const Evaluation& b) { return compare(a, b, std::less_equal<>()); },
          py::is_operator())
      .def(
          "__ge__", [](const Evaluation& a, const Evaluation& b) { return compare(a, b, std::greater_equal<>()); },
          py::is_operator())
      .def(
          "__eq__", [](const Evaluation& a, const Evaluation& b) { return a.game == b.game && a.value == b.value; },
          py::is_operator())
      .def("__hash__", [](const Evaluation& e) { return py::hash(py::make_tuple(e.game, e.value)); });

  m.def("evaluate", &evaluate, py::arg("cards"), py::kw_only(), py::arg("game") = "holdem",
        "Evaluates a hand of 5 to 7 cards (lowball27: exactly 5): its category, value, best five cards and\n"
        "description.\n\n"
        "cards: a string (\"AsKsQsJsTs\", \"As Ks Qs Js Ts\") or a sequence of card codes or names.\n"
        "game:  \"holdem\" (default), \"shortdeck\" (36 cards: three of a kind beats a straight, a flush\n"
        "       beats a full house), \"china\" (short deck where a straight beats three of a kind) or\n"
        "       \"lowball27\" (deuce-to-seven).\n\n"
        ">>> pokermath.evaluate(\"Ah Ad 7c 7s 2h Kd 7h\").description\n"
        "'full house 7 over Ace'\n\n"
        "Raises ValueError for a bad or repeated card, a card count the game does not take, or a\n"
        "card below six in the short deck.");
  m.def("hand_value", &value_of, py::arg("cards"), py::kw_only(), py::arg("game") = "holdem",
        "The value of a hand on its game's scale, without the rest of evaluate(): holdem 1..7462 and\n"
        "shortdeck/china 1..1404, larger is stronger; lowball27 1..7462, smaller is the better low.");
  m.def("hand_values", &hand_values_of, py::arg("hands"), py::kw_only(), py::arg("game") = "holdem",
        py::arg("out") = py::none(),
        "Values of many hands at once, as evaluated by hand_value, without holding the interpreter lock.\n\n"
        "hands: an integer array (numpy or any object with the buffer protocol) of shape (n, 5), (n, 6)\n"
        "       or (n, 7) holding card codes 0..51 (uint8 is the fastest, then int32), or of shape (n,)\n"
        "       holding 64-bit card masks (uint64); or a list of hands (strings, code lists or masks).\n"
        "game:  \"holdem\" (default), \"shortdeck\" or \"china\".\n"
        "out:   a writable int32 array of n values to fill instead of a new one.\n\n"
        "Returns a numpy int32 array (array.array('i') where numpy is not installed), or `out`.\n\n"
        ">>> hands = numpy.array([[12, 25, 5, 44, 26, 24, 31]], dtype=numpy.uint8)  # Ac Ad 7c 7s 2h Kd 7h\n"
        ">>> pokermath.hand_values(hands)\n"
        "array([7212], dtype=int32)\n\n"
        "Raises ValueError for an array of another shape or type, or naming the first bad hand.");
}

}  // namespace pokermath::python

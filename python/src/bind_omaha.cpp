// Omaha for Python: the best hand, the eight-or-better low, outs, nuts and Hutchison points.
#include <cstdio>

#include "convert.h"

namespace pokermath::python {

namespace {

// The category in words, as evaluate() gives it: the straight flush to the ace is the royal flush.
std::string category_words(Category category, int value) {
  return value == 7462 ? "royal flush" : std::string(category_name(category));
}

std::string omaha_hand_repr(const OmahaHand& h) {
  return "OmahaHand(category='" + category_words(h.category, h.value) + "', value=" + std::to_string(h.value) +
         ", hole_used='" + cards_to_string(h.hole_used) + "', board_used='" + cards_to_string(h.board_used) +
         "', description='" + h.description + "')";
}

std::string points_text(double points) {
  char text[32];
  std::snprintf(text, sizeof text, "%g", points);
  return text;
}

}  // namespace

void bind_omaha(py::module_& m) {
  py::class_<OmahaHand>(m, "OmahaHand", "The best Omaha high hand: two hole cards and three board cards.")
      .def_readonly("value", &OmahaHand::value, "1..7462, larger is stronger")
      .def_readonly("hand_class", &OmahaHand::hand_class, "five-card class 1..7462, smaller is stronger")
      .def_property_readonly("category", [](const OmahaHand& h) { return category_words(h.category, h.value); })
      .def_readonly("hole_used", &OmahaHand::hole_used, "the two hole cards played")
      .def_readonly("board_used", &OmahaHand::board_used, "the three board cards played")
      .def_readonly("description", &OmahaHand::description, "the five played cards in words")
      .def("__repr__", &omaha_hand_repr);

  py::class_<OmahaOut>(m, "OmahaOut", "One unseen card that improves the hand.")
      .def_readonly("card", &OmahaOut::card)
      .def_readonly("value", &OmahaOut::value, "the hand's value with the card, larger is stronger")
      .def_property_readonly("category", [](const OmahaOut& o) { return category_words(o.category, o.value); })
      .def_readonly("nut", &OmahaOut::nut, "the hand is then the nuts")
      .def("__repr__", [](const OmahaOut& o) {
        return "OmahaOut(card='" + card_to_string(o.card) + "', category='" + category_words(o.category, o.value) +
               "', nut=" + (o.nut ? "True" : "False") + ")";
      });

  py::class_<OmahaOuts>(m, "OmahaOuts", "The cards that improve an Omaha hand on a flop or turn.")
      .def_readonly("current", &OmahaOuts::current, "the hand now")
      .def_readonly("unseen", &OmahaOuts::unseen, "the cards tried (neither hole nor board cards)")
      .def_readonly("outs", &OmahaOuts::outs, "the improving cards, in card order")
      .def_readonly("nut_outs", &OmahaOuts::nut_outs, "the outs that make the nuts")
      .def("__len__", [](const OmahaOuts& o) { return o.outs.size(); })
      .def("__repr__", [](const OmahaOuts& o) {
        std::vector<int> cards;
        for (const OmahaOut& out : o.outs) cards.push_back(out.card);
        return "OmahaOuts(outs='" + cards_to_string(cards) + "', nut_outs=" + std::to_string(o.nut_outs) +
               ", unseen=" + std::to_string(o.unseen) + ")";
      });

  py::class_<OmahaNuts>(m, "OmahaNuts", "The nut hand on a board and every two-card holding that makes it.")
      .def_readonly("value", &OmahaNuts::value, "1..7462, larger is stronger")
      .def_property_readonly("category", [](const OmahaNuts& n) { return category_words(n.category, n.value); })
      .def_readonly("holdings", &OmahaNuts::holdings, "the two-card holdings that make the nuts")
      .def_readonly("description", &OmahaNuts::description, "the first nut holding's five cards in words")
      .def("__repr__", [](const OmahaNuts& n) {
        return "OmahaNuts(category='" + category_words(n.category, n.value) +
               "', holdings=" + std::to_string(n.holdings.size()) + ", description='" + n.description + "')";
      });

  py::class_<HutchisonItem>(m, "HutchisonItem", "One step of a Hutchison count: what it saw and its points.")
      .def_readonly("reason", &HutchisonItem::reason)
      .def_readonly("points", &HutchisonItem::points)
      .def("__repr__", [](const HutchisonItem& i) { return "(" + points_text(i.points) + ", '" + i.reason + "')"; });
  py::class_<HutchisonStage>(m, "HutchisonStage", "One stage of a Hutchison count; points is the sum of its items.")
      .def_readonly("name", &HutchisonStage::name)
      .def_readonly("points", &HutchisonStage::points)
      .def_readonly("items", &HutchisonStage::items)
      .def("__repr__", [](const HutchisonStage& s) {
        return "HutchisonStage(name='" + s.name + "', points=" + points_text(s.points) + ")";
      });
  py::class_<HutchisonCount>(m, "HutchisonCount", "A Hutchison count of a four-card Omaha starting hand.")
      .def_readonly("total", &HutchisonCount::total)
      .def_readonly("high_only", &HutchisonCount::high_only,
                    "Hi/Lo only: four cards ten or higher; total is then 1000.0 (play for the high) or 0.0")
      .def_readonly("stages", &HutchisonCount::stages)
      .def("__repr__", [](const HutchisonCount& c) {
        return "HutchisonCount(total=" + points_text(c.total) + ", stages=" + std::to_string(c.stages.size()) + ")";
      });

  m.def(
      "omaha_best",
      [](py::handle hole, py::handle board) { return omaha_best(to_cards(hole, "hole"), to_cards(board, "board")); },
      py::arg("hole"), py::arg("board"),
      "The best Omaha high hand of 4 to 6 hole cards on 3 to 5 board cards, made of exactly two hole\n"
      "and three board cards.\n\n"
      ">>> pokermath.omaha_best(\"AsKs7d2c\", \"QsJsTs3h2d\").category\n"
      "'royal flush'");
  m.def(
      "omaha_low",
      [](py::handle hole, py::handle board) -> std::optional<std::string> {
        const int low = omaha_low(to_cards(hole, "hole"), to_cards(board, "board"));
        if (low == 0) return std::nullopt;
        return omaha_low_to_string(low);
      },
      py::arg("hole"), py::arg("board"),
      "The best eight-or-better low of two hole and three board cards as players write it, highest\n"
      "card first (\"5-4-3-2-A\"), or None when there is none. omaha_low_value() gives the number.");
  m.def(
      "omaha_low_value",
      [](py::handle hole, py::handle board) { return omaha_low(to_cards(hole, "hole"), to_cards(board, "board")); },
      py::arg("hole"), py::arg("board"),
      "The best eight-or-better low as a number, SMALLER is the better low: 54321 = 5-4-3-2-A; 0 = none.");
  m.def(
      "omaha_outs",
      [](py::handle hole, py::handle board) { return omaha_outs(to_cards(hole, "hole"), to_cards(board, "board")); },
      py::arg("hole"), py::arg("board"),
      "The unseen cards that improve an Omaha hand on a flop or turn (a higher category, a better\n"
      "straight made with higher hole cards, or a better full house), with those that make the nuts.");
  m.def(
      "omaha_nuts",
      [](py::handle board, py::handle dead) {
        return omaha_nuts(to_cards(board, "board"), to_optional_cards(dead, "dead"));
      },
      py::arg("board"), py::kw_only(), py::arg("dead") = py::none(),
      "The nut hand on a board of 3 to 5 cards and every two-card holding that makes it; `dead` cards\n"
      "(your own hole cards, say) are in no holding.");
  m.def(
      "hutchison_points",
      [](py::handle hand, bool hilo) {
        const std::vector<int> cards = to_cards(hand, "hand");
        return hilo ? hutchison_points_hilo(cards) : hutchison_points(cards);
      },
      py::arg("hand"), py::kw_only(), py::arg("hilo") = false,
      "The Hutchison count of four Omaha hole cards, stage by stage; hilo=True counts for Omaha Hi/Lo.");
}

}  // namespace pokermath::python

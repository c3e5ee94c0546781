// pokermath omaha hutchison HAND [--hilo] [--json]: the Hutchison points of a four-card Omaha
// starting hand, stage by stage, with the reason for every point.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <iostream>
#include <nlohmann/json.hpp>

#include "commands.h"
#include "pokermath/pokermath.h"

namespace pokermath::cli {

namespace {

struct HutchisonOptions {
  std::vector<std::string> hand;
  bool hilo = false;
  bool json = false;
};

using Json = nlohmann::ordered_json;

// Points as text: whole numbers without decimals, half points with one ("11.5"); signed for steps.
std::string points_text(double points, bool signed_step) {
  char text[32];
  std::snprintf(text, sizeof text, signed_step && points > 0 ? "%+g" : "%g", points);
  return text;
}

// The high count is in whole points (JSON integers), the Hi/Lo count in half points (doubles).
Json points_json(double points, bool whole) {
  return whole ? Json(static_cast<int>(std::lround(points))) : Json(points);
}

Json to_json(const std::vector<int>& hand, const HutchisonCount& count, bool hilo) {
  Json stages = Json::array();
  for (const HutchisonStage& stage : count.stages) {
    Json items = Json::array();
    for (const HutchisonItem& item : stage.items)
      items.push_back({{"reason", item.reason}, {"points", points_json(item.points, !hilo)}});
    stages.push_back({{"name", stage.name}, {"points", points_json(stage.points, !hilo)}, {"items", items}});
  }
  Json hand_names = Json::array();
  for (int card : hand) hand_names.push_back(card_to_string(card));
  Json out = {{"hand", hand_names}, {"count", hilo ? "hilo" : "high"}, {"points", points_json(count.total, !hilo)}};
  if (hilo) out["high_only"] = count.high_only;
  out["stages"] = stages;
  return out;
}

// The stages with their totals, each step indented beneath with its signed points; the point
// columns line up.
void print_text(const std::vector<int>& hand, const HutchisonCount& count, bool hilo) {
  size_t width = 0;
  for (const HutchisonStage& stage : count.stages) {
    width = std::max(width, stage.name.size() + 2);
    for (const HutchisonItem& item : stage.items) width = std::max(width, item.reason.size() + 4);
  }
  const auto line = [width](const std::string& label, const std::string& points) {
    std::cout << label << std::string(width + 2 - label.size(), ' ')
              << std::string(6 - std::min<size_t>(6, points.size()), ' ') << points << "\n";
  };
  std::cout << "hand:   " << cards_to_string(hand) << "\n";
  std::cout << "count:  Hutchison points, " << (hilo ? "Hi/Lo" : "high") << "\n";
  for (const HutchisonStage& stage : count.stages) {
    line("  " + stage.name, points_text(stage.points, false));
    for (const HutchisonItem& item : stage.items) line("    " + item.reason, points_text(item.points, true));
  }
  std::cout << "points: " << points_text(count.total, false) << "\n";
}

void run_hutchison(const HutchisonOptions& options) {
  const std::vector<int> hand = parse_cards(options.hand);
  const HutchisonCount count = options.hilo ? hutchison_points_hilo(hand) : hutchison_points(hand);
  if (options.json)
    std::cout << to_json(hand, count, options.hilo).dump(2) << "\n";
  else
    print_text(hand, count, options.hilo);
}

}  // namespace

void add_omaha_hutchison_command(CLI::App& omaha) {
  auto options = std::make_shared<HutchisonOptions>();
  CLI::App* command = omaha.add_subcommand("hutchison", "Hutchison points of a four-card starting hand");
  command->footer(
      "The high count adds points for two cards of a suit (by the higher one; three or four of a\n"
      "suit cost 2), pairs, straight potential (how closely the ranks connect) and an ace with one\n"
      "or two of the deuce to five. --hilo counts for Omaha Hi/Lo instead: low cards with or without\n"
      "an ace, the further low ranks, pairs and trips, and suits; four cards ten or higher score\n"
      "1000 when worth playing for the high alone, else 0. Each stage is shown with its steps.\n\n"
      "Examples:\n"
      "  pokermath omaha hutchison As Ah Ks Kh\n"
      "  pokermath omaha hutchison Jc Td 9h 8s --json\n"
      "  pokermath omaha hutchison As2s3h9d --hilo");
  command->add_option("hand", options->hand, "four cards, e.g. As Ah Ks Kh or AsAhKsKh")->required();
  command->add_flag("--hilo", options->hilo, "Count for Omaha Hi/Lo (eight or better)");
  command->add_flag("--json", options->json, "Print one JSON object");
  command->callback([options] { run_hutchison(*options); });
}

}  // namespace pokermath::cli

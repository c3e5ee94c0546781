// pokermath board-hits RANGE BOARD: how a Hold'em range hits a flop or a turn, by made hand and draw.
#include <cmath>
#include <cstdio>
#include <iostream>
#include <nlohmann/json.hpp>

#include "commands.h"
#include "pictures.h"
#include "pokermath/pokermath.h"

namespace pokermath::cli {

namespace {

struct BoardHitsOptions {
  std::string range, board, svg;
  bool json = false;
};

std::string fixed(const char* pattern, double value) {
  char text[32];
  std::snprintf(text, sizeof text, pattern, value);
  return text;
}

void run_board_hits(const BoardHitsOptions& o) {
  const WeightedRange range = parse_weighted_range(o.range);
  if (range.empty()) throw Error("the range expression is empty");
  const BoardHits hits = board_hits(range, parse_cards(o.board));
  auto share = [&](double weight) { return hits.weight > 0 ? weight / hits.weight : 0.0; };
  if (!o.svg.empty())
    write_picture(o.svg, board_hits_svg(hits, range.text()));
  if (o.json) {
    using Json = nlohmann::ordered_json;
    Json made = Json::object(), draws = Json::object();
    for (int m = 0; m < kMadeHands; ++m)
      made[made_hand_name(static_cast<MadeHand>(m))] = {
          {"combos", hits.made_combos[m]}, {"weight", hits.made_weight[m]}, {"share", share(hits.made_weight[m])}};
    for (int d = 0; d < kDraws; ++d)
      draws[draw_name(static_cast<Draw>(1u << d))] = {
          {"combos", hits.draw_combos[d]}, {"weight", hits.draw_weight[d]}, {"share", share(hits.draw_weight[d])}};
    std::cout << Json{{"range", range.text()}, {"board", cards_to_string(hits.board)}, {"combos", hits.combos},
                      {"weight", hits.weight}, {"made", made}, {"draws", draws}}
                     .dump(2)
              << "\n";
    return;
  }
  std::cout << "range:   " << range.text() << "\nboard:   " << cards_to_string(hits.board) << "\ncombos:  "
            << hits.combos << " (weight " << fixed("%.2f", hits.weight) << ")\n\n";
  auto row = [&](const std::string& name, double combos, double weight) {
    std::cout << "  " << name << std::string(name.size() < 26 ? 26 - name.size() : 1, ' ') << fixed("%6.0f", combos)
              << fixed("%10.2f", weight) << fixed("%9.2f%%", share(weight) * 100) << "\n";
  };
  std::cout << "made hand                   combos    weight    share\n";
  for (int m = 0; m < kMadeHands; ++m)
    row(made_hand_name(static_cast<MadeHand>(m)), hits.made_combos[m], hits.made_weight[m]);
  std::cout << "\ndraw                        combos    weight    share\n";
  for (int d = 0; d < kDraws; ++d)
    row(draw_name(static_cast<Draw>(1u << d)), hits.draw_combos[d], hits.draw_weight[d]);
}

}  // namespace

void add_board_hits_command(CLI::App& app) {
  auto o = std::make_shared<BoardHitsOptions>();
  CLI::App* cmd = app.add_subcommand("board-hits", "How a Hold'em range hits a flop or a turn: made hands and draws");
  cmd->footer(
      "Every combination of RANGE that shares no card with BOARD (3 or 4 cards) falls in exactly one\n"
      "made-hand class, strongest first: straight flush, quads, full house, flush, straight, set, trips,\n"
      "two pair, overpair, top pair (top, good or weak kicker), second pair, underpair or weak pair,\n"
      "board pair only, no made hand. Draws are counted on their own: flush draw, nut flush draw,\n"
      "open-ended straight draw (two or more ranks complete a straight), gutshot, combo draw (a flush\n"
      "draw with a straight draw) and, on the flop, backdoor flush and straight draws. The range may\n"
      "carry weights (KK@50): counts are combinations, weights and shares are weighted.\n"
      "docs/analysis.md defines each class.\n\n"
      "Examples:\n"
      "  pokermath board-hits \"22+,A2s+,KTs+,QTs+,JTs,ATo+,KJo+\" Kh7c2d\n"
      "  pokermath board-hits \"QQ+,AK,JJ@50\" Qs9s4h8d --json\n"
      "  pokermath board-hits \"22+,A2s+,K9s+\" Ts9s3c --svg hits.svg");
  cmd->add_option("range", o->range, "A Hold'em range, weights allowed: \"QQ+,AKs,JJ@50\"")->required();
  cmd->add_option("board", o->board, "The flop or the turn, e.g. Kh7c2d")->required();
  cmd->add_option("--svg", o->svg, "Also write the bar charts of made hands and draws to this SVG file");
  cmd->add_flag("--json", o->json, "Print one JSON object");
  cmd->callback([o] { run_board_hits(*o); });
}

}  // namespace pokermath::cli

// pokermath omaha best|outs|nuts: what Omaha players ask at the table, for 4, 5 and 6 hole cards.
#include <bit>
#include <iostream>
#include <map>
#include <nlohmann/json.hpp>

#include "commands.h"
#include "pokermath/pokermath.h"

namespace pokermath::cli {

namespace {

using Json = nlohmann::ordered_json;

struct OmahaOptions {
  std::string hole, board, dead;
  bool json = false;
};

std::vector<std::string> names(std::span<const int> cards) {
  std::vector<std::string> out;
  for (int c : cards) out.push_back(card_to_string(c));
  return out;
}

Json hand_json(const OmahaHand& hand) {
  return {{"value", hand.value},
          {"class", hand.hand_class},
          {"category", std::string(category_name(hand.category))},
          {"hole_used", names(hand.hole_used)},
          {"board_used", names(hand.board_used)},
          {"description", hand.description}};
}

void print_hand(const OmahaHand& hand) {
  std::cout << "best hand:   " << cards_to_string(hand.hole_used) << " + " << cards_to_string(hand.board_used)
            << " (two hole cards and three from the board)\n"
            << "category:    " << category_name(hand.category) << "\n"
            << "description: " << hand.description << "\n"
            << "value:       " << hand.value << " of 7462 (larger is stronger)\n";
}

void run_best(const OmahaOptions& o) {
  const std::vector<int> hole = parse_cards(o.hole), board = parse_cards(o.board);
  const OmahaHand hand = omaha_best(hole, board);
  const int low = omaha_low(hole, board);
  if (o.json) {
    Json out = {{"hole", names(hole)}, {"board", names(board)}};
    out.update(hand_json(hand));
    out["low"] = low;
    out["low_text"] = omaha_low_to_string(low);
    std::cout << out.dump(2) << "\n";
    return;
  }
  std::cout << "hole:        " << cards_to_string(hole) << "\n"
            << "board:       " << cards_to_string(board) << "\n";
  print_hand(hand);
  std::cout << "low:         " << omaha_low_to_string(low) << (low ? " (eight or better)" : "") << "\n";
}

void run_outs(const OmahaOptions& o) {
  const std::vector<int> hole = parse_cards(o.hole), board = parse_cards(o.board);
  const OmahaOuts result = omaha_outs(hole, board);
  // Outs grouped by the category they lead to, strongest first.
  std::map<Category, std::vector<OmahaOut>, std::greater<>> by_category;
  for (const OmahaOut& out : result.outs) by_category[out.category].push_back(out);
  if (o.json) {
    Json groups = Json::array();
    for (const auto& [category, outs] : by_category) {
      std::vector<std::string> cards, nuts;
      for (const OmahaOut& out : outs) {
        cards.push_back(card_to_string(out.card));
        if (out.nut) nuts.push_back(card_to_string(out.card));
      }
      groups.push_back({{"category", std::string(category_name(category))}, {"cards", cards}, {"nut_cards", nuts}});
    }
    std::cout << Json{{"hole", names(hole)},     {"board", names(board)},      {"current", hand_json(result.current)},
                      {"unseen", result.unseen}, {"outs", result.outs.size()}, {"nut_outs", result.nut_outs},
                      {"by_category", groups}}
                     .dump(2)
              << "\n";
    return;
  }
  std::cout << "hole:        " << cards_to_string(hole) << "\n"
            << "board:       " << cards_to_string(board) << "\n"
            << "now:         " << category_name(result.current.category) << ", " << result.current.description << "\n"
            << "outs:        " << result.outs.size() << " of " << result.unseen << " unseen cards, " << result.nut_outs
            << " making the nuts (marked *)\n";
  for (const auto& [category, outs] : by_category) {
    std::string cards;
    for (const OmahaOut& out : outs) cards += " " + card_to_string(out.card) + (out.nut ? "*" : "");
    std::string label(category_name(category));
    std::cout << "  " << label << std::string(label.size() < 16 ? 16 - label.size() : 1, ' ') << outs.size() << ":"
              << cards << "\n";
  }
}

// A nut question needs two cards left for a holding. With fewer there is no hand to name: say so,
// once the board and dead cards are otherwise sound (the checks omaha_nuts makes come first).
void check_cards_left(const std::vector<int>& board, const std::vector<int>& dead) {
  if (board.size() < 3 || board.size() > 5) return;
  std::vector<int> known = board;
  known.insert(known.end(), dead.begin(), dead.end());
  const int left = 52 - std::popcount(cards_to_mask(known));
  if (left < 2)
    throw Error("no two-card holding can be made: the board and the dead cards leave " + std::to_string(left) +
                (left == 1 ? " card" : " cards") + " of 52");
}

void run_nuts(const OmahaOptions& o) {
  const std::vector<int> board = parse_cards(o.board), dead = parse_cards(o.dead);
  check_cards_left(board, dead);
  const OmahaNuts nuts = omaha_nuts(board, dead);
  std::vector<std::string> holdings;
  for (const auto& pair : nuts.holdings) holdings.push_back(card_to_string(pair[0]) + card_to_string(pair[1]));
  if (o.json) {
    std::cout << Json{{"board", names(board)},
                      {"value", nuts.value},
                      {"category", std::string(category_name(nuts.category))},
                      {"description", nuts.description},
                      {"holdings", holdings}}
                     .dump(2)
              << "\n";
    return;
  }
  std::cout << "board:       " << cards_to_string(board) << "\n"
            << "nuts:        " << category_name(nuts.category) << ", " << nuts.description << "\n"
            << "value:       " << nuts.value << " of 7462 (larger is stronger)\n"
            << "holdings:    " << holdings.size() << " two-card holdings make it:";
  for (size_t i = 0; i < holdings.size(); ++i) std::cout << (i % 12 == 0 ? "\n  " : " ") << holdings[i];
  std::cout << "\n";
}

}  // namespace

void add_omaha_command(CLI::App& app) {
  CLI::App* omaha = app.add_subcommand("omaha", "Omaha hands: best hand, outs, nuts, Hutchison points, exact pre-flop equities");
  omaha->require_subcommand(1);
  omaha->footer(
      "An Omaha hand plays exactly two hole cards and exactly three board cards; 4, 5 and 6 hole cards\n"
      "are accepted.\n\n"
      "Examples:\n"
      "  pokermath omaha best AsKs7d2c QsJsTs3h2d\n"
      "  pokermath omaha outs AhKh9c8c Qh7h2d\n"
      "  pokermath omaha nuts Qh7h2d5s\n"
      "  pokermath omaha hutchison AsAhKsKh --hilo\n"
      "  pokermath omaha preflop --ranks TJQKA");

  auto best = std::make_shared<OmahaOptions>();
  CLI::App* best_cmd = omaha->add_subcommand("best", "The best high hand: the two hole and three board cards used");
  best_cmd->footer(
      "Examples:\n"
      "  pokermath omaha best AsKs7d2c QsJsTs3h2d\n"
      "  pokermath omaha best As2s7d3c 4h5h8d9cKs --json");
  best_cmd->add_option("hole", best->hole, "4 to 6 hole cards, e.g. AsKs7d2c")->required();
  best_cmd->add_option("board", best->board, "3 to 5 board cards, e.g. QsJsTs")->required();
  best_cmd->add_flag("--json", best->json, "Print one JSON object");
  best_cmd->callback([best] { run_best(*best); });

  auto outs = std::make_shared<OmahaOptions>();
  CLI::App* outs_cmd = omaha->add_subcommand("outs", "Cards that improve the hand on a flop or turn, by category");
  outs_cmd->footer(
      "An out lifts the hand to a higher category, or makes a better straight with higher hole cards, or a\n"
      "better full house. Outs that make the nuts (no two-card holding beats the hand) are marked *.\n\n"
      "Examples:\n"
      "  pokermath omaha outs AhKh9c8c Qh7h2d\n"
      "  pokermath omaha outs AsKsQd2c JsTs3h4d --json");
  outs_cmd->add_option("hole", outs->hole, "4 to 6 hole cards")->required();
  outs_cmd->add_option("board", outs->board, "a flop or a turn: 3 or 4 board cards")->required();
  outs_cmd->add_flag("--json", outs->json, "Print one JSON object");
  outs_cmd->callback([outs] { run_outs(*outs); });

  auto nuts = std::make_shared<OmahaOptions>();
  CLI::App* nuts_cmd = omaha->add_subcommand("nuts", "The nut hand on a board and every two-card holding making it");
  nuts_cmd->footer(
      "Examples:\n"
      "  pokermath omaha nuts Qh7h2d5s\n"
      "  pokermath omaha nuts Qh7h2d --dead AhKh9c8c --json");
  nuts_cmd->add_option("board", nuts->board, "3 to 5 board cards")->required();
  nuts_cmd->add_option("--dead", nuts->dead, "Cards no holding can use (your own hole cards, say)");
  nuts_cmd->add_flag("--json", nuts->json, "Print one JSON object");
  nuts_cmd->callback([nuts] { run_nuts(*nuts); });

  add_omaha_hutchison_command(*omaha);
  add_omaha_preflop_command(*omaha);
}

}  // namespace pokermath::cli

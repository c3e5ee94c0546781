// pokermath eval CARDS...: the class, category, best five cards and words of a 5- to 7-card hand.
#include <iostream>
#include <nlohmann/json.hpp>

#include "commands.h"
#include "pokermath/pokermath.h"

namespace pokermath::cli {

namespace {

struct EvalOptions {
  std::vector<std::string> cards;
  bool json = false;
};

std::vector<std::string> card_names(std::span<const int> cards) {
  std::vector<std::string> names;
  for (int c : cards) names.push_back(card_to_string(c));
  return names;
}

void run_eval(const EvalOptions& options) {
  const std::vector<int> cards = parse_cards(options.cards);
  const HandEvaluation hand = evaluate_hand(cards);
  if (options.json) {
    const nlohmann::ordered_json out = {{"cards", card_names(cards)},
                                        {"class", hand.hand_class},
                                        {"category", std::string(category_name(hand.category))},
                                        {"best_five", card_names(hand.best_five)},
                                        {"description", hand.description}};
    std::cout << out.dump(2) << "\n";
    return;
  }
  std::cout << "cards:       " << cards_to_string(cards) << "\n"
            << "class:       " << hand.hand_class << " of 7462 (1 is the strongest)\n"
            << "category:    " << category_name(hand.category) << "\n"
            << "best five:   " << cards_to_string(hand.best_five) << "\n"
            << "description: " << hand.description << "\n";
}

}  // namespace

void add_eval_command(CLI::App& app) {
  auto options = std::make_shared<EvalOptions>();
  CLI::App* eval = app.add_subcommand("eval", "Evaluate a Hold'em hand of 5 to 7 cards");
  eval->footer(
      "Prints the five-card class (1 = royal flush .. 7462 = 7-5-4-3-2 offsuit), the category,\n"
      "the best five cards and the hand in words.\n\n"
      "Examples:\n"
      "  pokermath eval As Ks Qs Js Ts\n"
      "  pokermath eval AhKh QhJh9c 2d 3s --json");
  eval->add_option("cards", options->cards, "5 to 7 cards, e.g. As Ks Qs Js Ts or AsKsQsJsTs")->required();
  eval->add_flag("--json", options->json, "Print one JSON object");
  eval->callback([options] { run_eval(*options); });
}

}  // namespace pokermath::cli

// pokermath eval CARDS... [--game G]: a hand of 5 to 7 cards on every scale its game uses.
#include <algorithm>
#include <iostream>
#include <nlohmann/json.hpp>

#include "commands.h"
#include "pokermath/pokermath.h"

namespace pokermath::cli {

namespace {

struct EvalOptions {
  std::vector<std::string> cards;
  std::string game = "holdem";
  bool json = false;
};

using Json = nlohmann::ordered_json;

std::vector<std::string> card_names(std::span<const int> cards) {
  std::vector<std::string> names;
  for (int c : cards) names.push_back(card_to_string(c));
  return names;
}

// Prints "name: value" lines with the values aligned, or the same pairs as one JSON object whose
// keys are the names in snake_case ("best five" -> "best_five").
void print(const Json& fields, bool json) {
  if (json) {
    Json out;
    for (const auto& [name, value] : fields.items()) {
      std::string key = name;
      std::replace(key.begin(), key.end(), ' ', '_');
      out[key] = value;
    }
    std::cout << out.dump(2) << "\n";
    return;
  }
  for (const auto& [name, value] : fields.items()) {
    std::string text = value.is_string() ? value.get<std::string>() : value.dump();
    if (value.is_array()) {
      text.clear();
      for (const auto& item : value) text += (text.empty() ? "" : " ") + item.get<std::string>();
    }
    std::cout << name << ":" << std::string(name.size() < 15 ? 15 - name.size() : 1, ' ') << text << "\n";
  }
}

// The category in words; the straight flush to the ace (class 1) is the royal flush.
std::string category_words(const HandEvaluation& hand) {
  return hand.hand_class == 1 ? "royal flush" : std::string(category_name(hand.category));
}

Json holdem(const std::vector<int>& cards, bool json) {
  const HandEvaluation hand = evaluate_hand(cards);
  Json out = {{"cards", card_names(cards)},
              {"category", category_words(hand)},
              {"best five", card_names(hand.best_five)},
              {"description", hand.description}};
  if (json) {
    out["class"] = hand.hand_class;
    out["value"] = 7463 - hand.hand_class;
    out["category value"] = category_scale_value(hand.hand_class);
  } else {
    out["class"] = std::to_string(hand.hand_class) + " of 7462 (five-card class, 1 is the strongest)";
    out["value"] = std::to_string(7463 - hand.hand_class) + " of 7462 (state machines, larger is stronger)";
    out["category value"] = std::to_string(category_scale_value(hand.hand_class)) +
                            " (seven-card table: 4096 x category + place in category)";
  }
  return out;
}

Json short_deck(const std::vector<int>& cards, ShortDeckRules rules, const EvalOptions& options) {
  const ShortDeckEvaluation hand = evaluate_short_deck(cards, rules);
  Json out = {{"cards", card_names(cards)}, {"category", hand.category}};
  const bool china = rules == ShortDeckRules::China;
  if (options.json) {
    out["value"] = hand.value;
    if (!china) out["value 52"] = hand.value52;
  } else {
    out["value"] =
        std::to_string(hand.value) + " of 1404 (" + (china ? "China" : "short-deck") + " order, larger is stronger)";
    if (!china) out["value 52"] = std::to_string(hand.value52) + " of 7462 (short deck on the 52-card scale)";
  }
  return out;
}

Json deuce_to_seven(const std::vector<int>& cards, bool json) {
  const int value = evaluate_deuce_to_seven(cards);
  Json out = {{"cards", card_names(cards)}};
  if (json)
    out["value"] = value;
  else
    out["value"] = std::to_string(value) + " of 7462 (deuce-to-seven, smaller is the better low; 1 = 7-5-4-3-2)";
  return out;
}

void run_eval(const EvalOptions& options) {
  const std::vector<int> cards = parse_cards(options.cards);
  Json out;
  if (options.game == "holdem")
    out = holdem(cards, options.json);
  else if (options.game == "shortdeck")
    out = short_deck(cards, ShortDeckRules::Standard, options);
  else if (options.game == "china")
    out = short_deck(cards, ShortDeckRules::China, options);
  else
    out = deuce_to_seven(cards, options.json);
  if (options.json) {
    Json with_game = {{"game", options.game}};
    with_game.update(out);
    out = with_game;
  }
  print(out, options.json);
}

}  // namespace

void add_eval_command(CLI::App& app) {
  auto options = std::make_shared<EvalOptions>();
  CLI::App* eval = app.add_subcommand("eval", "Evaluate a hand of 5 to 7 cards");
  eval->footer(
      "Games:\n"
      "  holdem     the five-card class (1 = royal flush .. 7462 = 7-5-4-3-2 offsuit), the category,\n"
      "             the best five cards, the hand in words, and its values on the state-machine and\n"
      "             seven-card-table scales\n"
      "  shortdeck  36 cards (6 to A): A-6-7-8-9 is the lowest straight, three of a kind beats a\n"
      "             straight and a flush beats a full house; value 1..1404\n"
      "  china      short deck where a straight beats three of a kind\n"
      "  lowball27  deuce-to-seven: exactly five cards, the ace high only, smaller is better\n"
      "Every game is valued from tables compiled into the program: no file is read.\n\n"
      "Examples:\n"
      "  pokermath eval As Ks Qs Js Ts\n"
      "  pokermath eval AhKh QhJh9c 2d 3s --json\n"
      "  pokermath eval --game shortdeck Ah 6d 7c 8s 9h\n"
      "  pokermath eval --game lowball27 7c 5d 4h 3s 2c");
  eval->add_option("cards", options->cards, "5 to 7 cards, e.g. As Ks Qs Js Ts or AsKsQsJsTs")->required();
  eval->add_option("--game", options->game, "holdem (default), shortdeck, china or lowball27")
      ->check(CLI::IsMember({"holdem", "shortdeck", "china", "lowball27"}));
  eval->add_flag("--json", options->json, "Print one JSON object");
  eval->callback([options] { run_eval(*options); });
}

}  // namespace pokermath::cli

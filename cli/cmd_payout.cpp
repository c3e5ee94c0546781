// pokermath payout --bets B,... --ranks R,...: each player's winnings at a showdown, with side pots.
#include <charconv>
#include <iomanip>
#include <iostream>
#include <nlohmann/json.hpp>

#include "commands.h"
#include "pokermath/pokermath.h"

namespace pokermath::cli {

namespace {

struct PayoutOptions {
  std::vector<std::string> bets, ranks;
  bool json = false;
};

// Whole numbers from the option's values ("100,60,40" or "100 60 40"); `what` names them in errors.
std::vector<int> parse_numbers(const std::vector<std::string>& texts, const std::string& what) {
  std::vector<int> numbers;
  for (const std::string& text : texts) {
    int value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (text.empty() || error != std::errc() || end != text.data() + text.size()) {
      throw Error("bad " + what + " '" + text + "' at position " + std::to_string(numbers.size() + 1) +
                  ": expected a whole number" +
                  (error == std::errc::result_out_of_range ? " that fits in 32 bits" : ""));
    }
    numbers.push_back(value);
  }
  return numbers;
}

std::string pot_name(size_t index) { return index == 0 ? "main pot" : "side pot " + std::to_string(index); }

// 1-based player numbers, as the user counts them.
std::vector<int> numbered(const std::vector<int>& players) {
  std::vector<int> out;
  for (int i : players) out.push_back(i + 1);
  return out;
}

std::string joined(const std::vector<int>& numbers) {
  std::string out;
  for (int v : numbers) out += (out.empty() ? "" : " ") + std::to_string(v);
  return out;
}

void print_text(const std::vector<int>& bets, const std::vector<int>& ranks, const ShowdownPayout& payout) {
  std::cout << "player       bet      rank      wins       net\n";
  for (size_t i = 0; i < bets.size(); ++i) {
    const int64_t net = static_cast<int64_t>(payout.wins[i]) - bets[i];
    std::cout << std::setw(6) << i + 1 << std::setw(10) << bets[i] << std::setw(10) << ranks[i] << std::setw(10)
              << payout.wins[i] << std::setw(10) << (net > 0 ? "+" : "") + std::to_string(net) << "\n";
  }
  std::cout << "\n";
  for (size_t k = 0; k < payout.pots.size(); ++k) {
    const SidePot& pot = payout.pots[k];
    const std::string players = joined(numbered(pot.players)), winners = joined(numbered(pot.winners));
    std::cout << std::left << std::setw(12) << pot_name(k) << std::right << std::setw(10) << pot.amount << "  players "
              << std::left << std::setw(2 * static_cast<int>(bets.size())) << players << std::right;
    if (pot.players.size() == 1) {
      std::cout << "  returned to " << winners << " (nobody called it)\n";
    } else {
      std::cout << "  won by " << winners << (pot.winners.size() > 1 ? " (split)" : "") << "\n";
    }
  }
}

void print_json(const std::vector<int>& bets, const std::vector<int>& ranks, const ShowdownPayout& payout) {
  nlohmann::ordered_json players = nlohmann::ordered_json::array(), pots = nlohmann::ordered_json::array();
  int64_t total = 0;
  for (size_t i = 0; i < bets.size(); ++i) {
    players.push_back({{"player", i + 1},
                       {"bet", bets[i]},
                       {"rank", ranks[i]},
                       {"wins", payout.wins[i]},
                       {"net", static_cast<int64_t>(payout.wins[i]) - bets[i]}});
    total += bets[i];
  }
  for (size_t k = 0; k < payout.pots.size(); ++k) {
    const SidePot& pot = payout.pots[k];
    pots.push_back({{"pot", pot_name(k)},
                    {"amount", pot.amount},
                    {"players", numbered(pot.players)},
                    {"winners", numbered(pot.winners)}});
  }
  const nlohmann::ordered_json out = {{"players", players}, {"pots", pots}, {"total", total}};
  std::cout << out.dump(2) << "\n";
}

void run_payout(const PayoutOptions& options) {
  const std::vector<int> bets = parse_numbers(options.bets, "bet");
  const std::vector<int> ranks = parse_numbers(options.ranks, "rank");
  const ShowdownPayout payout = pay_showdown(bets, ranks);
  if (options.json) {
    print_json(bets, ranks, payout);
  } else {
    print_text(bets, ranks, payout);
  }
}

}  // namespace

void add_payout_command(CLI::App& app) {
  auto options = std::make_shared<PayoutOptions>();
  CLI::App* payout = app.add_subcommand("payout", "Pay out a showdown by hand strength, with side pots");
  payout->footer(
      "Each player has a bet (the chips he has in the pot, 0 = none) and a rank (his hand's\n"
      "strength, larger is stronger, on any one scale). Every pot goes to the best rank among the\n"
      "players whose bets reach into it; tied ranks share it, the first of them taking the odd chips.\n"
      "Players are numbered from 1 in the order given.\n\n"
      "Examples:\n"
      "  pokermath payout --bets 100,60,40 --ranks 3,7,7\n"
      "  pokermath payout --bets 500,500,200 --ranks 12,12,30 --json");
  payout->add_option("--bets", options->bets, "Chips each player has in the pot, e.g. 100,60,40")
      ->required()
      ->delimiter(',');
  payout->add_option("--ranks", options->ranks, "Each player's hand strength, larger is stronger, e.g. 3,7,7")
      ->required()
      ->delimiter(',');
  payout->add_flag("--json", options->json, "Print one JSON object");
  payout->callback([options] { run_payout(*options); });
}

}  // namespace pokermath::cli

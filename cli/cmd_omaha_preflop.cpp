// pokermath omaha preflop: the exact pre-flop equity of every class of Omaha holdings against one
// random holding, in memory (a deck of fewer ranks answers in moments, the full 4-card game in
// minutes).
#include <algorithm>
#include <cstdio>
#include <iostream>
#include <nlohmann/json.hpp>

#include "commands.h"
#include "number_options.h"
#include "pictures.h"
#include "pokermath/pokermath.h"
#include "progress.h"

namespace pokermath::cli {

namespace {

struct PreflopOptions {
  std::string game = "omaha";
  std::string ranks;
  int top = 20;
  int threads = 0;
  bool json = false;
};

// The deck of the rank letters given ("TJQKA"), every suit of each; all 52 cards when empty.
uint64_t deck_of_ranks(const std::string& ranks) {
  if (ranks.empty()) return (uint64_t{1} << 52) - 1;
  uint64_t deck = 0;
  for (char letter : ranks) {
    const std::string_view kRanks = "23456789TJQKA";
    const size_t rank = kRanks.find(static_cast<char>(std::toupper(static_cast<unsigned char>(letter))));
    if (rank == std::string_view::npos)
      throw Error("--ranks '" + ranks + "': rank letters are 2 3 4 5 6 7 8 9 T J Q K A");
    for (int suit = 0; suit < 4; ++suit) deck |= uint64_t{1} << (13 * suit + static_cast<int>(rank));
  }
  return deck;
}

void run_preflop(const PreflopOptions& o) {
  const EquityGame game = equity_game_from_name(o.game);
  std::vector<OmahaPreflopEquity> table =
      compute_omaha_preflop(game, deck_of_ranks(o.ranks), o.threads, stderr_work_progress("omaha preflop"));
  std::stable_sort(table.begin(), table.end(),
                   [](const OmahaPreflopEquity& a, const OmahaPreflopEquity& b) { return a.equity > b.equity; });
  uint64_t holdings = 0;
  for (const OmahaPreflopEquity& e : table) holdings += e.holdings;
  if (o.json) {
    nlohmann::ordered_json classes = nlohmann::ordered_json::array();
    for (const OmahaPreflopEquity& e : table)
      classes.push_back({{"class", omaha_holding_to_string(e.holding_class)}, {"holdings", e.holdings}, {"equity", e.equity}});
    std::cout << nlohmann::ordered_json{{"game", o.game}, {"ranks", o.ranks.empty() ? "23456789TJQKA" : o.ranks},
                                        {"holdings", holdings}, {"classes", classes}}
                     .dump(2)
              << "\n";
    return;
  }
  std::cout << "game:     " << o.game << (o.ranks.empty() ? "" : ", ranks " + o.ranks) << "\nclasses:  " << table.size()
            << " (" << holdings << " holdings), exact against one random holding\n\nrank  class" << std::string(12, ' ')
            << "holdings   equity\n";
  const size_t shown = std::min(table.size(), static_cast<size_t>(o.top));
  for (size_t i = 0; i < shown; ++i) {
    const std::string name = omaha_holding_to_string(table[i].holding_class);
    char line[96];
    std::snprintf(line, sizeof line, "%4zu  %-16s %8u  %7s\n", i + 1, name.c_str(), table[i].holdings,
                  percent_of(table[i].equity).c_str());
    std::cout << line;
  }
}

}  // namespace

void add_omaha_preflop_command(CLI::App& omaha) {
  auto o = std::make_shared<PreflopOptions>();
  CLI::App* cmd = omaha.add_subcommand(
      "preflop", "The exact pre-flop equity of every class of holdings against one random holding");
  cmd->footer(
      "Every five-card board and every opponent holding is counted once (boards equal up to suits\n"
      "once, every holding answered together on each board), so the equities are exact. Holdings\n"
      "equal up to a permutation of suits form one class. --ranks plays with the cards of some ranks\n"
      "only, a quick study (\"TJQKA\": 20 cards); the full 4-card high game takes about 18 minutes on\n"
      "two cores, Hi/Lo between two and three times that.\n\n"
      "Examples:\n"
      "  pokermath omaha preflop --ranks TJQKA\n"
      "  pokermath omaha preflop --game omaha-hilo --ranks A2345K --top 10\n"
      "  pokermath omaha preflop --game omaha --top 50 --json > omaha4.json");
  cmd->add_option("--game", o->game, "omaha (default), omaha5, omaha6, omaha-hilo, omaha5-hilo or omaha6-hilo")
      ->check(CLI::IsMember({"omaha", "omaha5", "omaha6", "omaha-hilo", "omaha5-hilo", "omaha6-hilo"}));
  cmd->add_option("--ranks", o->ranks, "Play with the cards of these ranks only, e.g. TJQKA (default: all)");
  cmd->add_option("--top", o->top, "Classes to print, strongest first (default 20)")->transform(whole_number(0, INT32_MAX));
  cmd->add_option("--threads", o->threads, "Threads to use (default: every core); the result does not change")
      ->transform(whole_number(0, kMaxThreads));
  cmd->add_flag("--json", o->json, "Print every class as JSON");
  cmd->callback([o] { run_preflop(*o); });
}

}  // namespace pokermath::cli

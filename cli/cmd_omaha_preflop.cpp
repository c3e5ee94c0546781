// pokermath omaha preflop: the exact pre-flop equity of every class of Omaha holdings against one
// random holding, in memory (a deck of fewer ranks answers in moments, the full 4-card game in
// minutes).
#include <algorithm>
#include <bit>
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

struct RankingOptions {
  std::string holding;
  bool hilo = false;
  std::string ranks;
  std::string dir;
  bool json = false;
};

void run_ranking(const RankingOptions& o) {
  const std::vector<int> cards = parse_cards(o.holding);
  const uint64_t holding = cards_to_mask(cards);
  if (cards.size() < 4 || cards.size() > 6 || std::popcount(holding) != static_cast<int>(cards.size()))
    throw Error("'" + o.holding + "' is not an Omaha holding: 4, 5 or 6 different cards");
  const std::string game_name =
      "omaha" + (cards.size() == 4 ? std::string() : std::to_string(cards.size())) + (o.hilo ? "-hilo" : "");
  const EquityGame game = equity_game_from_name(game_name);
  const std::filesystem::path dir = o.dir.empty() ? default_data_directory() : std::filesystem::path(o.dir);
  const auto table = omaha_preflop_table(game, dir, deck_of_ranks(o.ranks));
  const OmahaPreflopTable::Entry& e = table->lookup(holding);
  const std::string klass = omaha_holding_to_string(e.holding_class);
  if (o.json) {
    std::cout
        << nlohmann::ordered_json{{"holding", o.holding},      {"class", klass}, {"game", game_name},
                                  {"equity", e.equity},        {"rank", e.rank}, {"classes", table->entries().size()},
                                  {"percentile", e.percentile}}
               .dump(2)
        << "\n";
    return;
  }
  char percentile[32];
  std::snprintf(percentile, sizeof percentile, "%.2f", e.percentile);
  std::cout << "holding:     " << o.holding << " (" << game_name << "; its class up to suits: " << klass << ", "
            << e.holdings << " holdings)\n"
            << "equity:      " << percent_of(e.equity) << " against one random holding, exact\n"
            << "rank:        " << e.rank << " of " << table->entries().size() << " classes\n"
            << "percentile:  " << percentile << " (the share of holdings with a smaller equity)\n";
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
      classes.push_back(
          {{"class", omaha_holding_to_string(e.holding_class)}, {"holdings", e.holdings}, {"equity", e.equity}});
    std::cout << nlohmann::ordered_json{{"game", o.game},
                                        {"ranks", o.ranks.empty() ? "23456789TJQKA" : o.ranks},
                                        {"holdings", holdings},
                                        {"classes", classes}}
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
  cmd->add_option("--top", o->top, "Classes to print, strongest first (default 20)")
      ->transform(whole_number(0, INT32_MAX));
  cmd->add_option("--threads", o->threads, "Threads to use (default: every core); the result does not change")
      ->transform(whole_number(0, kMaxThreads));
  cmd->add_flag("--json", o->json, "Print every class as JSON");
  cmd->callback([o] { run_preflop(*o); });

  auto r = std::make_shared<RankingOptions>();
  CLI::App* ranking = omaha.add_subcommand(
      "ranking", "A holding's exact pre-flop equity against one random holding, its rank and percentile");
  ranking->footer(
      "Reads the exact table of the game (4, 5 or 6 cards from the holding; --hilo for Hi/Lo) from the\n"
      "data directory; make it first with pokermath tables --omaha-preflop N [--hilo] (18 minutes on\n"
      "two cores for 4 cards; docs/scale-out.md for the larger ones). The percentile is the share of\n"
      "all holdings with a smaller equity.\n\n"
      "Examples:\n"
      "  pokermath omaha ranking AsAhKsKh\n"
      "  pokermath omaha ranking As2s3d4d --hilo --json");
  ranking->add_option("holding", r->holding, "4 to 6 hole cards, e.g. AsAhKsKh")->required();
  ranking->add_flag("--hilo", r->hilo, "The Hi/Lo (eight or better) game");
  ranking->add_option("--ranks", r->ranks, "The table of a deck of these ranks only (tables --omaha-preflop --ranks)");
  ranking->add_option("--dir", r->dir, "The data directory (default: $POKERMATH_DATA_DIR, else ~/.cache/pokermath)");
  ranking->add_flag("--json", r->json, "Print one JSON object");
  ranking->callback([r] { run_ranking(*r); });
}

}  // namespace pokermath::cli

// pokermath equity PLAYER PLAYER...: win, tie and equity of hands, ranges and random hands.
#include <cmath>
#include <cstdio>
#include <iostream>
#include <nlohmann/json.hpp>

#include "commands.h"
#include "number_options.h"
#include "pokermath/pokermath.h"
#include "pictures.h"
#include "progress.h"

namespace pokermath::cli {

namespace {

struct EquityOptions {
  std::string game = "holdem";
  std::vector<std::string> players;
  std::string board, dead, data_dir;
  int table_size = 0;
  bool exact = false, monte_carlo = false, json = false;
  int64_t trials = 1000000;
  uint64_t seed = 1;
  int time_ms = 0;
  double target_std_error = 0;
  int threads = 0;
  bool by_class = false, distribution = false;
  int player = 1;  // whose range --by-class and --distribution break down (1-based)
  std::string svg;
};

std::string percent(double fraction) {
  if (std::isnan(fraction)) return "-";
  char text[32];
  std::snprintf(text, sizeof text, "%.2f%%", fraction * 100);
  return text;
}

// 1712304 -> "1,712,304".
std::string with_commas(double count) {
  const std::string digits = std::to_string(static_cast<int64_t>(count));
  std::string out;
  for (size_t i = 0; i < digits.size(); ++i) {
    if (i > 0 && (digits.size() - i) % 3 == 0) out.push_back(',');
    out.push_back(digits[i]);
  }
  return out;
}

nlohmann::ordered_json json_of(const EquityOptions& o, const EquityRequest& request, const EquityResult& result) {
  using Json = nlohmann::ordered_json;
  auto number = [](double x) { return std::isnan(x) ? Json(nullptr) : Json(x); };
  Json players = Json::array();
  for (const PlayerEquity& p : result.players) {
    Json player = {{"hand", p.hand}, {"win", number(p.win)}, {"tie", number(p.tie)}, {"equity", p.equity}};
    if (!std::isnan(p.scoop)) {
      player["high"] = p.high;
      player["low"] = p.low;
      player["scoop"] = p.scoop;
    }
    player["std_error"] = p.std_error;
    players.push_back(player);
  }
  return Json{{"game", o.game},
              {"method", result.exact ? "exact" : "monte-carlo"},
              {"from_table", result.from_table},
              {"deals", static_cast<int64_t>(std::llround(result.deals))},
              {"seed", result.exact ? Json(nullptr) : Json(o.seed)},
              {"seconds", result.seconds},
              {"board", request.board.empty() ? Json("") : Json(cards_to_string(request.board))},
              {"players", players}};
}

void print_text(const EquityOptions& o, const EquityRequest& request, const EquityResult& result) {
  const std::string method =
      result.from_table ? "exact, from the pre-flop table"
      : result.exact    ? "exact, " + with_commas(result.deals) + " deals"
                        : "Monte Carlo, " + with_commas(result.deals) + " trials, seed " + std::to_string(o.seed);
  std::cout << "method:  " << method << "\n";
  if (!request.board.empty()) std::cout << "board:   " << cards_to_string(request.board) << "\n";
  if (!request.dead.empty()) std::cout << "dead:    " << cards_to_string(request.dead) << "\n";
  // The players' texts as given, escaped: a range may hold tabs or line ends as separators.
  std::vector<std::string> names;
  for (const PlayerEquity& p : result.players) names.push_back(escape_unprintable(p.hand));
  size_t width = 6;
  for (const std::string& name : names) width = std::max(width, name.size());
  const bool hi_lo = !std::isnan(result.players.front().scoop);
  std::cout << "\nplayer" << std::string(width - 6 + 2, ' ')
            << (hi_lo ? "  equity     high      low    scoop" : "     win      tie   equity")
            << (result.exact ? "" : "   std error") << "\n";
  for (size_t i = 0; i < names.size(); ++i) {
    const PlayerEquity& p = result.players[i];
    // The name padded by hand: a long range must not be cut off by a fixed line buffer.
    std::cout << names[i] << std::string(width + 1 - names[i].size(), ' ');
    char line[80];
    if (hi_lo)
      std::snprintf(line, sizeof line, " %8s %8s %8s %8s", percent(p.equity).c_str(), percent(p.high).c_str(),
                    percent(p.low).c_str(), percent(p.scoop).c_str());
    else
      std::snprintf(line, sizeof line, " %8s %8s %8s", percent(p.win).c_str(), percent(p.tie).c_str(),
                    percent(p.equity).c_str());
    std::cout << line;
    if (!result.exact) {
      std::snprintf(line, sizeof line, "   %9s", percent(p.std_error).c_str());
      std::cout << line;
    }
    std::cout << "\n";
  }
  char time[64];
  std::snprintf(time, sizeof time, "\ntime:    %.3f s\n", result.seconds);
  std::cout << time;
}

// The distribution's shares at these equities are printed.
constexpr double kDistributionMarks[] = {0.8, 0.66, 0.5, 0.33, 0.2};

// --by-class and --distribution: one player's range broken down exactly, with the whole result.
void run_breakdown(const EquityOptions& o, EquityRequest& request) {
  if (o.monte_carlo || o.target_std_error > 0)
    throw Error("--by-class and --distribution count exactly: leave out --monte-carlo and --target-stderr");
  if (o.player > static_cast<int>(request.players.size()))
    throw Error("--player " + std::to_string(o.player) + ": there are " + std::to_string(request.players.size()) +
                " players");
  if (!o.svg.empty() && o.by_class && o.distribution)
    throw Error("--svg draws one picture: give it with --by-class or with --distribution, not both");
  request.method = EquityMethod::Exact;
  const RangeBreakdown breakdown = equity_by_class(request, o.player - 1);
  const EquityResult result = compute_equity(request);
  const EquityDistribution distribution = equity_distribution(breakdown);
  const std::array<double, 169> grid = breakdown.class_equities();
  const std::string who = "player " + std::to_string(o.player) + " (" + request.players[o.player - 1] + ")";
  if (!o.svg.empty())
    write_picture(o.svg, o.by_class ? range_grid_svg(grid, GridScale::Equity, "Equity by class of " + who)
                                    : distribution_svg(distribution, "Equity distribution of " + who));
  if (o.json) {
    using Json = nlohmann::ordered_json;
    Json out = json_of(o, request, result);
    out["player"] = o.player;
    if (o.by_class) {
      Json classes = Json::array(), combos = Json::array();
      for (const ClassEquity& c : breakdown.classes)
        if (c.combos > 0)
          classes.push_back({{"class", hand_class_name(c.cell)}, {"combos", c.combos}, {"weight", c.weight},
                             {"equity", c.equity}});
      for (size_t k = 0; k < breakdown.combos.size(); ++k) {
        const ComboEquity& c = breakdown.combos[k];
        combos.push_back({{"combo", card_to_string(c.card1) + card_to_string(c.card2)}, {"weight", c.weight},
                          {"deal_weight", breakdown.deal_weight[k]}, {"equity", c.equity}});
      }
      out["by_class"] = classes;
      out["combos"] = combos;
    }
    if (o.distribution) {
      Json steps = Json::array(), marks = Json::object();
      for (const DistributionStep& s : distribution.steps)
        steps.push_back({{"combo", s.combo}, {"from", s.from}, {"to", s.to}, {"equity", s.equity}});
      for (double mark : kDistributionMarks) marks[std::to_string(mark).substr(0, 4)] = distribution.share_at_least(mark);
      out["distribution"] = {{"share_at_least", marks}, {"steps", steps}};
    }
    std::cout << out.dump(2) << "\n";
    return;
  }
  print_text(o, request, result);
  if (o.by_class) {
    std::cout << "\nequity by class of " << escape_unprintable(who) << ":\n"
              << range_grid_terminal(grid, GridScale::Equity, stdout_is_terminal());
  }
  if (o.distribution) {
    std::cout << "\nequity distribution of " << escape_unprintable(who) << " (" << breakdown.combos.size()
              << " combinations):\n";
    for (double mark : kDistributionMarks)
      std::cout << "  equity >= " << std::to_string(static_cast<int>(std::lround(mark * 100))) << "%: "
                << percent_of(distribution.share_at_least(mark)) << " of the range\n";
    if (!distribution.steps.empty())
      std::cout << "  strongest " << distribution.steps.front().combo << " " << percent_of(distribution.steps.front().equity)
                << ", weakest " << distribution.steps.back().combo << " " << percent_of(distribution.steps.back().equity)
                << "\n";
  }
}

void run_equity(const EquityOptions& o) {
  EquityRequest request;
  request.game = equity_game_from_name(o.game);
  request.players = o.players;
  if (o.table_size > 0) {
    if (o.table_size < static_cast<int>(o.players.size()))
      throw Error("--players " + std::to_string(o.table_size) + " is fewer than the " +
                  std::to_string(o.players.size()) + " hands given");
    request.players.resize(static_cast<size_t>(o.table_size), "random");
  }
  request.board = parse_cards(o.board);
  request.dead = parse_cards(o.dead);
  const bool sample = o.monte_carlo || o.target_std_error > 0;
  request.method = o.exact ? EquityMethod::Exact : sample ? EquityMethod::MonteCarlo : EquityMethod::Auto;
  request.trials = o.trials;
  request.seed = o.seed;
  request.time_ms = o.time_ms;
  request.target_std_error = o.target_std_error;
  request.threads = o.threads;
  if (!o.data_dir.empty()) {
    std::error_code ec;
    if (std::filesystem::exists(o.data_dir, ec) && !std::filesystem::is_directory(o.data_dir, ec))
      throw Error("--data-dir '" + o.data_dir + "' is not a directory");
    request.data_dir = o.data_dir;
  }
  // Progress goes to stderr, so it shows with --json too; work done within a second shows none.
  request.progress = stderr_progress();
  request.on_progress = stderr_work_progress("equity");
  if (o.by_class || o.distribution) return run_breakdown(o, request);
  const EquityResult result = compute_equity(request);
  if (o.json)
    std::cout << json_of(o, request, result).dump(2) << "\n";
  else
    print_text(o, request, result);
}

}  // namespace

void add_equity_command(CLI::App& app) {
  auto o = std::make_shared<EquityOptions>();
  CLI::App* equity = app.add_subcommand("equity", "Win, tie and equity of hands, ranges and random hands");
  equity->footer(
      "Each PLAYER is a hand (AsKs), a range (\"QQ+,AKs,A5s-A2s\", \"KQ\" meaning suited and offsuit) or\n"
      "random; in Omaha games a holding (AsKsQhJh), an Omaha range (\"AA**:ds,KK**:ds\", \"15%\"; see\n"
      "docs/omaha-ranges.md or 'pokermath range --game omaha --help') or random. The short deck (--game shortdeck, or china\n"
      "where a straight beats three of a kind) deals the 36 cards from six to ace: no card below six.\n"
      "Equity is the share of the pot, a split pot\n"
      "divided evenly; win and tie are the shares of deals won alone and split. In Hi/Lo games, high and\n"
      "low are the shares of the pot won with the high and with the low hand (equity = high + low), and\n"
      "scoop the share of deals in which the player takes the whole pot.\n\n"
      "By default the answer is exact when that takes about a second at most, otherwise Monte Carlo;\n"
      "the output says which. Exact answers count every deal; Monte Carlo samples deals with a seed and\n"
      "reports standard errors, stopping at --trials, --time-ms or --target-stderr, whichever comes\n"
      "first. Both give the same numbers on any number of threads. Heads-up Hold'em pre-flop questions\n"
      "too large to count on the spot are answered from the pre-flop table when 'pokermath tables\n"
      "--preflop' has built it.\n\n"
      "Examples:\n"
      "  pokermath equity AsKs QhQd\n"
      "  pokermath equity AsKs \"QQ+,AKs,A5s-A2s\"\n"
      "  pokermath equity AhKh random --board Qh7h2c\n"
      "  pokermath equity AsAd --players 4 --monte-carlo --trials 200000 --seed 7\n"
      "  pokermath equity AsKs QhQd JcTc 9s9h 8d7d 6c5c --target-stderr 0.0005\n"
      "  pokermath equity --game shortdeck AhKh QsQd          # also --game china\n"
      "  pokermath equity --game shortdeck AsKs \"99+,ATs+\" --board Kd9c6h\n"
      "  pokermath equity --game omaha AsKsQhJh 9c9d8c7d --board Ts6h2c\n"
      "  pokermath equity --game omaha \"AA**:ds\" \"15%\" --target-stderr 0.001\n"
      "  pokermath equity --game omaha AsKsQhJh \"30%\" --board Ts6h2c --exact\n"
      "  pokermath equity --game omaha-hilo As2s3hKd random");
  equity->add_option("players", o->players, "Two or more hands, ranges or 'random'")->required();
  equity
      ->add_option("--game", o->game,
                   "holdem (default), shortdeck, china, omaha, omaha5, omaha6, omaha-hilo, omaha5-hilo or omaha6-hilo")
      ->check(CLI::IsMember({"holdem", "shortdeck", "china", "omaha", "omaha5", "omaha6", "omaha-hilo", "omaha5-hilo",
                             "omaha6-hilo"}));
  equity->add_option("--board", o->board, "0, 3, 4 or 5 board cards, e.g. Qh7h2c");
  equity->add_option("--dead", o->dead, "Cards out of play");
  equity->add_option("--players", o->table_size, "Players at the table: the missing ones hold random hands")
      ->transform(whole_number(2, 10));
  auto* exact = equity->add_flag("--exact", o->exact, "Count every deal, however long it takes");
  auto* mc = equity->add_flag("--monte-carlo", o->monte_carlo, "Sample random deals");
  exact->excludes(mc);
  equity->add_option("--trials", o->trials, "Monte Carlo: the most trials (default 1000000)")
      ->transform(whole_number(1, kMaxTrials));
  auto* target = equity
                     ->add_option("--target-stderr", o->target_std_error,
                                  "Monte Carlo (implied): stop once every standard error is at most this, e.g. "
                                  "0.001 for 0.1 %")
                     ->check(number_above_zero());
  target->excludes(exact);
  equity->add_option("--seed", o->seed, "Monte Carlo: the random seed; the same seed, the same result (default 1)")
      ->transform(whole_number(0, UINT64_MAX));
  equity->add_option("--time-ms", o->time_ms, "Monte Carlo: stop after this many milliseconds (0: no limit)")
      ->transform(whole_number(0, INT32_MAX));
  equity->add_option("--threads", o->threads, "Threads to use (default: every core); the result does not change")
      ->transform(whole_number(0, kMaxThreads));
  equity->add_option("--data-dir", o->data_dir, "Where the tables are kept (default: the data directory)");
  equity->add_flag("--json", o->json, "Print one JSON object");
  auto* by_class = equity->add_flag("--by-class", o->by_class,
                                    "Also break the player's range down exactly: the 13 x 13 grid of equities by class "
                                    "(JSON: every class and combination)");
  auto* distribution = equity->add_flag("--distribution", o->distribution,
                                        "Also give the equity distribution of the player's range: the share of it at "
                                        "or above 80, 66, 50, 33 and 20 % equity (JSON: the sorted curve)");
  equity->add_option("--player", o->player, "Whose range --by-class and --distribution break down (default 1)")
      ->transform(whole_number(1, 10));
  auto* svg = equity->add_option("--svg", o->svg,
                                 "With --by-class, write the heat map of equities to this SVG file; with "
                                 "--distribution, the distribution curve");
  by_class->excludes(mc);
  distribution->excludes(mc);
  (void)svg;
  equity->callback([o] {
    if (!o->svg.empty() && !o->by_class && !o->distribution)
      throw Error("--svg draws the picture of --by-class or --distribution: give one of them");
    run_equity(*o);
  });
}

}  // namespace pokermath::cli

// pokermath: poker mathematics on the command line.
#include <cstdio>
#include <iostream>

#include "commands.h"
#include "pokermath/pokermath.h"

namespace {

constexpr int kExitBadInput = 2;

// Writes one error line on stderr. Messages quote user input (cards, ranges, file names, option
// values), so control characters and broken UTF-8 in them are escaped before they reach a terminal.
void print_error(const std::string& message) {
  std::cerr << "pokermath: " << pokermath::escape_unprintable(message) << "\n";
}

const char* const kFooter = R"(Cards are a rank (2-9, T or 10, J, Q, K, A) and a suit (c, d, h, s), in either
case: "As", "td", "10h". Several cards may be written together or apart:
"AsKs", "As Ks", "As,Ks".

Ranges are classes and runs such as "QQ+,AKs,A2s+,KQo" (pokermath range --help).

Examples:
  pokermath equity AsKs QhQd
  pokermath equity AsKs "QQ+,AKs,A5s-A2s"
  pokermath equity AhKh random --board Qh7h2c
  pokermath eval As Ks Qs Js Ts
  pokermath eval AhAd 7c7s 2h Kd --json
  pokermath eval --game shortdeck Ah 6d 7c 8s 9h
  pokermath tables
  pokermath payout --bets 100,60,40 --ranks 3,7,7
  pokermath history HH20240101.txt --from 18230
  pokermath range QQ+,AKs,AKo
  pokermath range --top 10
  pokermath omaha best AsKs7d2c QsJsTs3h2d
  pokermath bench

Bad input prints one line on stderr and exits with code 2.)";

}  // namespace

int main(int argc, char** argv) {
  CLI::App app{"pokermath: rank poker hands, find the best hand, count outs and compute equities."};
  app.name("pokermath");
  app.footer(kFooter);
  app.set_version_flag("--version", "pokermath " + std::string(pokermath::version()), "Print the version and exit");
  app.require_subcommand(1);
  pokermath::cli::add_equity_command(app);
  pokermath::cli::add_eval_command(app);
  pokermath::cli::add_tables_command(app);
  pokermath::cli::add_payout_command(app);
  pokermath::cli::add_history_command(app);
  pokermath::cli::add_range_command(app);
  pokermath::cli::add_board_hits_command(app);
  pokermath::cli::add_omaha_command(app);
  pokermath::cli::add_bench_command(app);

  if (argc == 1) {
    std::cerr << app.help();
    return kExitBadInput;
  }
  if (argv[1][0] != '-') {
    bool found = false;
    std::string known;
    for (const CLI::App* command : app.get_subcommands({})) {
      found = found || command->get_name() == argv[1];
      known += (known.empty() ? "" : ", ") + command->get_name();
    }
    if (!found) {
      print_error("unknown command '" + std::string(argv[1]) + "' (commands: " + known + "; see pokermath --help)");
      return kExitBadInput;
    }
  }
  try {
    app.parse(argc, argv);
  } catch (const CLI::CallForHelp& e) {
    return app.exit(e);
  } catch (const CLI::CallForAllHelp& e) {
    return app.exit(e);
  } catch (const CLI::CallForVersion&) {
    std::cout << "pokermath " << pokermath::version() << "\n";
    return 0;
  } catch (const CLI::ParseError& e) {
    print_error(std::string(e.what()) + " (see pokermath --help)");
    return kExitBadInput;
  } catch (const pokermath::Error& e) {
    print_error(e.what());
    return kExitBadInput;
  } catch (const std::exception& e) {
    print_error(std::string("internal error: ") + e.what());
    return 1;
  }
  return 0;
}

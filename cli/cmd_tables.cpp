// pokermath tables: generates the table files into the data directory.
#include <chrono>
#include <functional>
#include <iostream>
#include <nlohmann/json.hpp>

#include "commands.h"
#include "pokermath/pokermath.h"
#include "progress.h"

namespace pokermath::cli {

namespace {

struct TablesOptions {
  std::string dir;
  std::vector<std::string> only;
  bool force = false;
  bool preflop = false;
  bool short_deck = false;
  std::vector<std::string> omaha_rankings;
  bool json = false;
};

void run_tables(const TablesOptions& options) {
  const std::filesystem::path dir = options.dir.empty() ? default_data_directory() : std::filesystem::path(options.dir);
  std::vector<TableFile> files;
  for (const std::string& name : options.only) files.push_back(table_file_from_name(name));
  const bool extras = options.preflop || options.short_deck || !options.omaha_rankings.empty();
  if (files.empty() && !(extras && !options.only.empty())) files = all_table_files();

  nlohmann::ordered_json report = nlohmann::ordered_json::array();
  const TableProgress progress = options.json ? TableProgress{} : stderr_progress();
  // Runs one generation and reports the files it makes: their size, and whether they were written
  // (`note` follows the time of a job that writes several files).
  auto generate = [&](const std::function<bool()>& make, const std::vector<std::string>& names,
                      const std::string& note = "") {
    const auto start = std::chrono::steady_clock::now();
    const bool written = make();
    const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    for (const std::string& name : names) {
      const std::filesystem::path path = dir / name;
      const auto bytes = std::filesystem::file_size(path);
      if (options.json) {
        report.push_back({{"file", path.string()}, {"bytes", bytes}, {"generated", written}, {"seconds", seconds}});
        continue;
      }
      std::cout << path.string() << ": " << bytes << " bytes, "
                << (written ? "generated in " + std::to_string(seconds).substr(0, 5) + " s" + note : "already present")
                << "\n";
    }
  };
  for (TableFile file : files)
    generate([&] { return generate_table_file(dir, file, options.force, progress); },
             {std::string(table_file_name(file))});
  if (options.preflop)
    generate([&] { return generate_preflop_table(dir, options.force, progress); }, {"OrvalisPC.dat"});
  if (options.short_deck)
    generate([&] { return generate_short_deck_tables(dir, options.force, progress); }, short_deck_table_names(),
             " (all nine)");
  for (const std::string& game_name : options.omaha_rankings) {
    const EquityGame game = equity_game_from_name(game_name);
    generate([&] { return generate_omaha_ranking(game, dir, options.force, progress); }, {omaha_ranking_name(game)});
  }
  if (options.json) std::cout << report.dump(2) << "\n";
}

}  // namespace

void add_tables_command(CLI::App& app) {
  auto options = std::make_shared<TablesOptions>();
  CLI::App* tables = app.add_subcommand("tables", "Generate the lookup tables into the data directory");
  tables->footer(
      "Writes the state-machine tables texas-7.bin, omaha-7.bin, six-plus-5.bin and six-plus-7.bin\n"
      "and the seven-card lookup table OrvalisHR.dat; with --preflop also the pre-flop equity table\n"
      "OrvalisPC.dat, which answers heads-up pre-flop equity instantly; with --short-deck the nine\n"
      "short-deck equity tables ET2I_6.bin, ET2{F,T,R}_6.bin, ET2{F,T,R}_6C.bin, FT2R_6.bin and\n"
      "FT2R_6C.bin (about 9 s on two cores); with --omaha-ranking GAME the pre-flop ranking of an\n"
      "Omaha game that Omaha range shares (\"15%\") read (omaha4-ranking.bin, ...; a few minutes on two\n"
      "cores, computed on first use otherwise). Files already present and valid are kept\n"
      "unless --force. The data directory is --dir, else $POKERMATH_DATA_DIR, else\n"
      "$XDG_CACHE_HOME/pokermath, else ~/.cache/pokermath.\n\n"
      "Examples:\n"
      "  pokermath tables\n"
      "  pokermath tables --preflop\n"
      "  pokermath tables --short-deck --only six-plus-7.bin\n"
      "  pokermath tables --omaha-ranking omaha --omaha-ranking omaha-hilo --only omaha-7.bin\n"
      "  pokermath tables --dir ./data --only texas-7.bin --only omaha-7.bin");
  tables->add_option("--dir", options->dir, "Directory to write the tables into");
  tables->add_option("--only", options->only, "Only this table (repeatable): texas-7.bin, omaha-7.bin, ...");
  tables->add_flag("--force", options->force, "Regenerate files that are already present");
  tables->add_flag(
      "--preflop", options->preflop,
      "Also compute the exact pre-flop equity of all 1,624,350 matchups (OrvalisPC.dat, about 40 s on two cores)");
  tables->add_flag("--short-deck", options->short_deck,
                   "Also compute the short-deck equity tables of every matchup, both orders (nine files)");
  tables
      ->add_option("--omaha-ranking", options->omaha_rankings,
                   "Also compute the pre-flop ranking of this Omaha game (repeatable): omaha, omaha5, omaha-hilo, "
                   "omaha5-hilo")
      ->check(CLI::IsMember({"omaha", "omaha5", "omaha-hilo", "omaha5-hilo"}));
  tables->add_flag("--json", options->json, "Print the files written as JSON");
  tables->callback([options] { run_tables(*options); });
}

}  // namespace pokermath::cli

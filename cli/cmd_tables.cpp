// pokermath tables: generates the table files into the data directory.
#include <chrono>
#include <functional>
#include <iostream>
#include <nlohmann/json.hpp>

#include "commands.h"
#include "number_options.h"
#include "omaha_table_run.h"
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
  int omaha_preflop = 0;  // hole cards of the exact table to make; 0: none
  bool hilo = false;
  std::string checkpoint;
  std::string ranks;
  int threads = 0;
  int unit_boards = 0;
  bool json = false;
};

EquityGame exact_table_game(int hole, bool hilo) {
  const std::string name = std::string("omaha") + (hole == 4 ? "" : std::to_string(hole)) + (hilo ? "-hilo" : "");
  return equity_game_from_name(name);
}

void run_tables(const TablesOptions& options) {
  const std::filesystem::path dir = options.dir.empty() ? default_data_directory() : std::filesystem::path(options.dir);
  std::vector<TableFile> files;
  for (const std::string& name : options.only) files.push_back(table_file_from_name(name));
  const bool extras = options.preflop || options.short_deck || !options.omaha_rankings.empty();
  // The exact Omaha tables need no other table, and under mpirun every rank runs this command:
  // they are made alone.
  if (files.empty() && !(extras && !options.only.empty()) && options.omaha_preflop == 0) files = all_table_files();
  if (options.omaha_preflop != 0 && (extras || !files.empty()))
    throw Error("--omaha-preflop makes its table alone: run the other tables in a command of their own");
  if (options.omaha_preflop == 0 &&
      (options.hilo || !options.checkpoint.empty() || !options.ranks.empty() || options.unit_boards))
    throw Error("--hilo, --checkpoint, --ranks and --unit-boards go with --omaha-preflop N");

  nlohmann::ordered_json report = nlohmann::ordered_json::array();
  const TableProgress progress = options.json ? TableProgress{} : stderr_progress();
  bool quiet = false;  // an MPI rank other than 0, which leaves the report to rank 0
  // Runs one generation and reports the files it makes: their size, and whether they were written
  // (`note` follows the time of a job that writes several files).
  auto generate = [&](const std::function<bool()>& make, const std::vector<std::string>& names,
                      const std::string& note = "") {
    const auto start = std::chrono::steady_clock::now();
    const bool written = make();
    if (quiet) return;
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
  if (options.omaha_preflop != 0) {
    const EquityGame game = exact_table_game(options.omaha_preflop, options.hilo);
    OmahaTableOptions table;
    table.dir = dir;
    table.checkpoint = options.checkpoint;
    table.deck = deck_of_ranks(options.ranks);
    table.threads = options.threads;
    table.unit_boards = options.unit_boards;
    table.force = options.force;
    generate(
        [&] {
          const cli::TableRunOutcome outcome = make_omaha_preflop_table(game, table, progress);
          quiet = !outcome.report;
          return outcome.written;
        },
        {omaha_preflop_table_name(game, table.deck)});
    if (quiet) return;
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
      "  pokermath tables --dir ./data --only texas-7.bin --only omaha-7.bin\n\n"
      "Exact Omaha pre-flop tables (--omaha-preflop 4|5|6 [--hilo]): the exact equity of every holding\n"
      "against a random holding, which pokermath omaha ranking and Omaha range shares (\"15%\") then\n"
      "read. The work is cut into units of boards, each written to --checkpoint (default: the table's\n"
      "name with .units, in the data directory) as it finishes; run the same command again after a\n"
      "crash or a kill and it resumes. Under mpirun, rank 0 hands out the units and the other ranks\n"
      "compute them, each on --threads threads. About 18 min on two cores for 4 cards, 50 min for\n"
      "4-card Hi/Lo; docs/scale-out.md gives the larger tables' core-hours.\n"
      "  pokermath tables --omaha-preflop 4\n"
      "  pokermath tables --omaha-preflop 4 --hilo --checkpoint /scratch/o4hl\n"
      "  mpirun -np 9 --hostfile hosts pokermath tables --omaha-preflop 5 --threads 32 --dir /shared/pm\n"
      "  pokermath tables --omaha-preflop 4 --hilo --ranks A2345K   (a small deck: moments)");
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
  tables
      ->add_option("--omaha-preflop", options->omaha_preflop,
                   "Make the exact pre-flop table of the Omaha game with this many hole cards (4, 5 or 6)")
      ->check(CLI::IsMember({4, 5, 6}));
  tables->add_flag("--hilo", options->hilo, "With --omaha-preflop: the Hi/Lo (eight or better) game");
  tables->add_option("--checkpoint", options->checkpoint,
                     "With --omaha-preflop: the directory of finished units (default: DIR/TABLE.units)");
  tables->add_option("--ranks", options->ranks, "With --omaha-preflop: a deck of these ranks only, e.g. A2345K");
  tables->add_option("--threads", options->threads, "With --omaha-preflop: threads per process (default: every core)")
      ->transform(whole_number(0, kMaxThreads));
  tables
      ->add_option("--unit-boards", options->unit_boards,
                   "With --omaha-preflop: board classes per unit (default 256; the table does not change)")
      ->transform(whole_number(1, 1 << 20));
  tables->add_flag("--json", options->json, "Print the files written as JSON");
  tables->callback([options] { run_tables(*options); });
}

}  // namespace pokermath::cli

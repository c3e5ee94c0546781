// The pokermath subcommands. Each add_*_command registers one subcommand and its callback on the
// application; callbacks write to stdout and throw pokermath::Error for bad input (main turns it
// into one line on stderr and exit code 2).
#pragma once

#include <CLI/CLI.hpp>

namespace pokermath::cli {

void add_equity_command(CLI::App& app);
void add_eval_command(CLI::App& app);
void add_tables_command(CLI::App& app);
void add_payout_command(CLI::App& app);
void add_history_command(CLI::App& app);
void add_range_command(CLI::App& app);
void add_omaha_command(CLI::App& app);
void add_bench_command(CLI::App& app);
void add_board_hits_command(CLI::App& app);
// Adds `hutchison HAND [--hilo] [--json]` to the `omaha` command.
void add_omaha_hutchison_command(CLI::App& omaha);
// Adds `preflop [--game G] [--ranks R] [--top N] [--json]` to the `omaha` command.
void add_omaha_preflop_command(CLI::App& omaha);

}  // namespace pokermath::cli

// Checks for the numeric options of the subcommands, as CLI11 validators. A bad value gives one line
// naming the option, the values allowed and the value given (main adds "pokermath: ").
#pragma once

#include <CLI/CLI.hpp>
#include <cstdint>

namespace pokermath::cli {

// A whole number in decimal from `min` to `max`: an optional sign and digits, nothing else. The
// value is rewritten in plain decimal, so that CLI11's own conversion (which reads "010" as octal
// and caps a number that overflows) sees exactly the number checked.
CLI::Validator whole_number(int64_t min, uint64_t max);

// A finite number above 0 ("nan" and "inf" are refused).
CLI::Validator number_above_zero();

// The thread counts every command accepts: 0 (every core) up to this.
inline constexpr int kMaxThreads = 1024;

}  // namespace pokermath::cli

// What the analysis commands share: writing an SVG picture and telling whether stdout is a terminal.
#pragma once

#include <string>

namespace pokermath::cli {

// Writes an SVG document to `path`. Throws Error naming the file when it cannot be written.
void write_picture(const std::string& path, const std::string& svg);

// True when standard output is a terminal (colored grids are printed only there).
bool stdout_is_terminal();

// "12.34%" for a fraction 0..1.
std::string percent_of(double fraction);

}  // namespace pokermath::cli

// Reading range files: text lines and the line that starts the hand lines.
#pragma once

#include <vector>

#include "pokermath/support.h"

namespace pokermath::detail {

// Reads a text file as UTF-8 lines with their "\n" or "\r\n" ends removed (a byte-order mark at
// the start is skipped). Returns false when the file cannot be read.
bool read_lines(const CString& path, std::vector<CString>& lines);

// True for the first hand line of a range file: its first two characters are "AA". Lines before
// it are a header.
bool starts_hand_lines(const CString& line);

}  // namespace pokermath::detail

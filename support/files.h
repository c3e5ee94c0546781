// File helpers the library's own sources share, beyond the public ones in pokermath/support.h.
#pragma once

#include <filesystem>
#include <vector>

namespace pokermath::detail {

// The system's error for opening `path` to read (ENOENT, EACCES, ...), or 0 when it opens. Asked
// after a read has failed, it tells a file the system refuses from one refused for its content. It
// does not wait: a FIFO opens at once, with or without a writer.
int open_error(const std::filesystem::path& path);

// The whole of a regular file into `out`; false when it is not a regular file (a FIFO or a
// directory is refused without waiting) or cannot be read.
bool read_regular_file(const std::filesystem::path& path, std::vector<char>& out);

}  // namespace pokermath::detail

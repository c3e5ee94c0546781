// File helpers the library's own sources share, beyond the public ones in pokermath/support.h.
#pragma once

#include <filesystem>

namespace pokermath::detail {

// The system's error for opening `path` to read (ENOENT, EACCES, ...), or 0 when it opens. Asked
// after a read has failed, it tells a file the system refuses from one refused for its content. It
// does not wait: a FIFO opens at once, with or without a writer.
int open_error(const std::filesystem::path& path);

}  // namespace pokermath::detail

// File helpers the library's own sources share, beyond the public ones in pokermath/support.h.
#pragma once

#include <cstdint>
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

// Fields of the library's binary files are little-endian whatever the machine: `bytes` (1..8) low
// bytes of `value` appended to `out`, and such a field read back from `p`.
inline void put_le(std::vector<char>& out, uint64_t value, int bytes) {
  for (int b = 0; b < bytes; ++b) out.push_back(static_cast<char>(value >> (8 * b) & 0xFF));
}
inline uint64_t get_le(const char* p, int bytes) {
  uint64_t value = 0;
  for (int b = bytes - 1; b >= 0; --b) value = value << 8 | static_cast<unsigned char>(p[b]);
  return value;
}

}  // namespace pokermath::detail

// What every fuzz target shares: reading typed values off the fuzz input, a scratch file for the
// readers that only take paths, and a failed property reported as a crash that libFuzzer keeps.
#pragma once

#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

#include "pokermath/support.h"

namespace pokermath::fuzz {

// The fuzz input read front to back. Reads past the end give zeros, so every input is usable.
class Input {
 public:
  Input(const uint8_t* data, size_t size) : m_data(data), m_size(size) {}

  size_t left() const { return m_size - m_at; }
  uint8_t byte() { return m_at < m_size ? m_data[m_at++] : 0; }
  // A little-endian integer of sizeof(T) bytes.
  template <typename T>
  T integer() {
    uint64_t value = 0;
    for (size_t i = 0; i < sizeof(T); ++i) value |= uint64_t{byte()} << (8 * i);
    return static_cast<T>(value);
  }
  // The next `count` bytes (fewer at the end) as text.
  std::string_view text(size_t count) {
    count = std::min(count, left());
    const std::string_view out(reinterpret_cast<const char*>(m_data + m_at), count);
    m_at += count;
    return out;
  }
  std::string_view rest() { return text(left()); }

 private:
  const uint8_t* m_data;
  size_t m_size;
  size_t m_at = 0;
};

// Stops the run with a message; libFuzzer saves the input as a crash.
[[noreturn]] inline void fail(const std::string& what) {
  std::fprintf(stderr, "fuzz property failed: %s\n", what.c_str());
  std::abort();
}

inline void expect(bool ok, const std::string& what) {
  if (!ok) fail(what);
}

// A directory of this process under the temporary directory (TMPDIR), removed at exit. Readers that
// take a path get the fuzz input through files in it.
inline const std::filesystem::path& scratch_directory() {
  struct Directory {
    std::filesystem::path path;
    Directory() {
      path = std::filesystem::temp_directory_path() / ("pokermath-fuzz-" + std::to_string(::getpid()));
      std::filesystem::create_directories(path);
    }
    ~Directory() {
      std::error_code ignored;
      std::filesystem::remove_all(path, ignored);
    }
  };
  static const Directory directory;
  return directory.path;
}

// Replaces the file `name` of the scratch directory with the bytes and returns its path.
inline std::filesystem::path write_scratch(const std::string& name, std::string_view bytes) {
  std::filesystem::path path = scratch_directory() / name;
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  if (!out.flush()) fail("cannot write the scratch file " + path.string());
  return path;
}

// Drops ShowMessage texts: the classic API reports bad files there, and a run's log should hold
// libFuzzer's lines only.
inline void silence_messages() {
  SetMessageHandler([](const CString&) {});
}

}  // namespace pokermath::fuzz

// A scratch directory for tests that write files, removed with everything in it at the end of the
// test, and helpers that write text in the encodings hand-history files come in.
#pragma once

#include <unistd.h>

#include <atomic>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace test_util {

class TempDir {
 public:
  TempDir() {
    static std::atomic<int> counter{0};
    m_path = std::filesystem::temp_directory_path() /
             ("pokermath_test_" + std::to_string(::getpid()) + "_" + std::to_string(counter++));
    std::filesystem::create_directories(m_path);
  }
  ~TempDir() {
    std::error_code ec;
    std::filesystem::remove_all(m_path, ec);
  }
  TempDir(const TempDir&) = delete;
  TempDir& operator=(const TempDir&) = delete;

  const std::filesystem::path& path() const { return m_path; }
  std::filesystem::path operator/(const std::string& name) const { return m_path / name; }

 private:
  std::filesystem::path m_path;
};

inline std::string read_bytes(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), {});
}

inline void write_bytes(const std::filesystem::path& path, const std::string& bytes) {
  std::ofstream(path, std::ios::binary | std::ios::trunc) << bytes;
}

inline void append_bytes(const std::filesystem::path& path, const std::string& bytes) {
  std::ofstream(path, std::ios::binary | std::ios::app) << bytes;
}

// UTF-16 bytes of a text (characters above U+FFFF become surrogate pairs), without a byte-order mark.
inline std::string utf16(const std::wstring& text, bool big_endian) {
  std::string out;
  auto unit = [&](char32_t u) {
    const char high = static_cast<char>(u >> 8), low = static_cast<char>(u & 0xFF);
    out += big_endian ? std::string{high, low} : std::string{low, high};
  };
  for (wchar_t wc : text) {
    const auto c = static_cast<char32_t>(wc);
    if (c < 0x10000) {
      unit(c);
    } else {
      unit(0xD800 + ((c - 0x10000) >> 10));
      unit(0xDC00 + ((c - 0x10000) & 0x3FF));
    }
  }
  return out;
}

}  // namespace test_util

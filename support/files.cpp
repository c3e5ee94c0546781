#include "support/files.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "pokermath/support.h"

namespace pokermath {

namespace fs = std::filesystem;

fs::path to_path(const std::wstring& path) { return fs::path(narrow(path)); }

bool file_exists(const std::wstring& path) {
  std::error_code ec;
  return fs::is_regular_file(to_path(path), ec);
}

int64_t file_size(const std::wstring& path) {
  std::error_code ec;
  const auto size = fs::file_size(to_path(path), ec);
  return ec ? -1 : static_cast<int64_t>(size);
}

bool read_file(const std::wstring& path, std::vector<char>& bytes) {
  bytes.clear();
  std::ifstream in(to_path(path), std::ios::binary);
  if (!in) return false;
  in.seekg(0, std::ios::end);
  const std::streamoff size = in.tellg();
  if (size < 0) return false;
  in.seekg(0, std::ios::beg);
  bytes.resize(static_cast<size_t>(size));
  if (!in.read(bytes.data(), size)) {
    bytes.clear();
    return false;
  }
  return true;
}

bool write_file(const std::wstring& path, const void* data, size_t size) {
  std::ofstream out(to_path(path), std::ios::binary | std::ios::trunc);
  if (!out) return false;
  out.write(static_cast<const char*>(data), static_cast<std::streamsize>(size));
  out.flush();
  return static_cast<bool>(out);
}

namespace detail {

bool read_regular_file(const fs::path& path, std::vector<char>& out) {
  std::error_code error;
  if (!fs::is_regular_file(path, error)) return false;
  std::ifstream in(path, std::ios::binary);
  if (!in) return false;
  out.assign(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
  return !in.bad();
}

int open_error(const fs::path& path) {
  const int fd = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
  if (fd < 0) return errno;
  ::close(fd);
  return 0;
}

}  // namespace detail

}  // namespace pokermath

#include "support/data_dir.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/file.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <fstream>
#include <iomanip>
#include <iostream>
#include <map>
#include <sstream>
#include <vector>

#include "pokermath/support.h"
#include "support/files.h"

namespace pokermath::detail {

namespace fs = std::filesystem;

namespace {

constexpr uint64_t kPrime1 = 0x9E3779B185EBCA87u, kPrime2 = 0xC2B2AE3D27D4EB4Fu, kPrime3 = 0x165667B19E3779F9u,
                   kPrime4 = 0x85EBCA77C2B2AE63u, kPrime5 = 0x27D4EB2F165667C5u;

uint64_t rotl(uint64_t x, int r) { return (x << r) | (x >> (64 - r)); }

uint64_t mix(uint64_t lane, uint64_t input) { return rotl(lane + input * kPrime2, 31) * kPrime1; }

uint64_t load64(const unsigned char* p) {
  uint64_t v;
  std::memcpy(&v, p, 8);
  return v;
}

std::string quoted_path(const fs::path& path) {
  std::string text(1, '\'');
  text += path.string();
  text += '\'';
  return text;
}

std::string system_reason(int error) { return error ? std::strerror(error) : "the write failed"; }

// Holds an exclusive lock on the directory's lock file while it lives, so that writers of one
// directory update the manifest one at a time.
class DirectoryLock {
 public:
  explicit DirectoryLock(const fs::path& dir) {
    const fs::path path = dir / "manifest.lock";
    m_fd = ::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0644);
    if (m_fd < 0) {
      const int error = errno;
      throw FileError("cannot lock the data directory: " + quoted_path(path) + ": " + std::strerror(error), path,
                      error);
    }
    while (::flock(m_fd, LOCK_EX) != 0) {
      const int error = errno;
      if (error != EINTR)
        throw FileError("cannot lock " + quoted_path(path) + ": " + std::strerror(error), path, error);
    }
  }
  ~DirectoryLock() { ::close(m_fd); }  // closing releases the lock
  DirectoryLock(const DirectoryLock&) = delete;
  DirectoryLock& operator=(const DirectoryLock&) = delete;

 private:
  int m_fd = -1;
};

std::map<std::string, ManifestEntry> read_manifest(const fs::path& dir) {
  std::map<std::string, ManifestEntry> entries;
  std::ifstream in(dir / kManifestName);
  std::string line;
  while (std::getline(in, line)) {
    if (line.empty() || line[0] == '#') continue;
    std::istringstream fields(line);
    std::string name;
    ManifestEntry entry;
    if (fields >> name >> entry.size >> std::hex >> entry.checksum) entries[name] = entry;
  }
  return entries;
}

// Rewrites the manifest with `name` set to `entry`. The caller holds the directory lock.
void update_manifest(const fs::path& dir, const std::string& name, const ManifestEntry& entry) {
  std::map<std::string, ManifestEntry> entries = read_manifest(dir);
  entries[name] = entry;
  std::ostringstream text;
  text << "# pokermath table files: name, size in bytes, content checksum. Written by the library.\n";
  for (const auto& [file, e] : entries)
    text << file << ' ' << e.size << ' ' << std::hex << std::setw(16) << std::setfill('0') << e.checksum << std::dec
         << std::setfill(' ') << '\n';
  const fs::path temporary = dir / (std::string(kManifestName) + ".partial-" + std::to_string(::getpid()));
  const std::string bytes = text.str();
  errno = 0;
  std::error_code ec;
  if (!write_file(widen(temporary.string()), bytes.data(), bytes.size())) {
    const int error = errno;
    fs::remove(temporary, ec);
    throw FileError("cannot write the manifest in " + quoted_path(dir) + ": " + system_reason(error),
                    dir / kManifestName, error);
  }
  fs::rename(temporary, dir / kManifestName, ec);
  if (ec)
    throw FileError("cannot write the manifest in " + quoted_path(dir) + ": " + ec.message(), dir / kManifestName,
                    ec.value());
}

// Removes the partial files of `name` left by writers that no longer run: "NAME.partial-PID-N"
// whose process is gone, and any partial file over a day old (a reused process id).
void remove_stale_partials(const fs::path& dir, std::string_view name) {
  const std::string prefix = std::string(name) + ".partial";
  std::error_code ec;
  for (const fs::directory_entry& entry : fs::directory_iterator(dir, ec)) {
    const std::string file = entry.path().filename().string();
    if (file.compare(0, prefix.size(), prefix) != 0) continue;
    bool stale = true;
    if (file.size() > prefix.size() + 1 && file[prefix.size()] == '-') {
      const long pid = std::strtol(file.c_str() + prefix.size() + 1, nullptr, 10);
      stale = pid <= 0 || (::kill(static_cast<pid_t>(pid), 0) != 0 && errno == ESRCH);
    }
    const auto age = fs::file_time_type::clock::now() - fs::last_write_time(entry.path(), ec);
    if (stale || (!ec && age > std::chrono::hours(24))) fs::remove(entry.path(), ec);
  }
}

}  // namespace

void Checksum::update(const void* data, size_t size) {
  if (size == 0) return;  // an empty piece, perhaps from an empty vector's null data()
  const auto* p = static_cast<const unsigned char*>(data);
  m_total += size;
  if (m_pendingSize > 0) {
    const size_t take = std::min(size, 32 - m_pendingSize);
    std::memcpy(m_pending + m_pendingSize, p, take);
    m_pendingSize += take;
    p += take;
    size -= take;
    if (m_pendingSize < 32) return;
    for (int j = 0; j < 4; ++j) m_lanes[j] = mix(m_lanes[j], load64(m_pending + 8 * j));
    m_pendingSize = 0;
  }
  // The lanes are independent, so the processor runs the four multiplies of a block side by side.
  uint64_t l0 = m_lanes[0], l1 = m_lanes[1], l2 = m_lanes[2], l3 = m_lanes[3];
  for (; size >= 32; p += 32, size -= 32) {
    l0 = mix(l0, load64(p));
    l1 = mix(l1, load64(p + 8));
    l2 = mix(l2, load64(p + 16));
    l3 = mix(l3, load64(p + 24));
  }
  m_lanes[0] = l0, m_lanes[1] = l1, m_lanes[2] = l2, m_lanes[3] = l3;
  if (size > 0) std::memcpy(m_pending, p, size);
  m_pendingSize = size;
}

uint64_t Checksum::digest() const {
  uint64_t h = rotl(m_lanes[0], 1) + rotl(m_lanes[1], 7) + rotl(m_lanes[2], 12) + rotl(m_lanes[3], 18);
  for (uint64_t lane : m_lanes) h = (h ^ mix(0, lane)) * kPrime1 + kPrime4;
  h += m_total;
  size_t at = 0;
  for (; at + 8 <= m_pendingSize; at += 8) h = rotl(h ^ mix(0, load64(m_pending + at)), 27) * kPrime1 + kPrime4;
  for (; at < m_pendingSize; ++at) h = rotl(h ^ (m_pending[at] * kPrime5), 11) * kPrime1;
  h ^= h >> 33;
  h *= kPrime2;
  h ^= h >> 29;
  h *= kPrime3;
  h ^= h >> 32;
  return h;
}

std::optional<ManifestEntry> manifest_entry(const fs::path& dir, std::string_view name) {
  const auto entries = read_manifest(dir);
  const auto it = entries.find(std::string(name));
  if (it == entries.end()) return std::nullopt;
  return it->second;
}

std::optional<ManifestEntry> file_entry(const fs::path& path) {
  std::ifstream in(path, std::ios::binary);
  if (!in) return std::nullopt;
  Checksum checksum;
  std::vector<char> buffer(1 << 20);
  ManifestEntry entry;
  while (in) {
    in.read(buffer.data(), static_cast<std::streamsize>(buffer.size()));
    const auto got = static_cast<size_t>(in.gcount());
    checksum.update(buffer.data(), got);
    entry.size += got;
  }
  if (in.bad()) return std::nullopt;
  entry.checksum = checksum.digest();
  return entry;
}

namespace {

std::string difference(const std::optional<ManifestEntry>& listed, const ManifestEntry& content) {
  if (!listed) return "not listed in the manifest";
  if (listed->size != content.size) return "its size differs from the manifest";
  if (listed->checksum != content.checksum) return "its checksum differs from the manifest";
  return "";
}

}  // namespace

std::string table_problem(const fs::path& dir, std::string_view name, const ManifestEntry& content) {
  return difference(manifest_entry(dir, name), content);
}

std::string table_problem(const fs::path& dir, std::string_view name) {
  std::error_code ec;
  const fs::path path = dir / std::string(name);
  if (!fs::is_regular_file(path, ec)) return "missing";
  const std::optional<ManifestEntry> listed = manifest_entry(dir, name);
  if (!listed) return "not listed in the manifest";
  // The size first: a file cut short or grown is found without reading it.
  if (fs::file_size(path, ec) != listed->size) return "its size differs from the manifest";
  const std::optional<ManifestEntry> content = file_entry(path);
  if (!content) return "missing";
  return difference(listed, *content);
}

void check_writable(const fs::path& dir, std::string_view name, uint64_t bytes) {
  std::error_code ec;
  fs::create_directories(dir, ec);
  if (ec)
    throw FileError("cannot create the data directory " + quoted_path(dir) + ": " + ec.message(), dir, ec.value());
  if (::access(dir.c_str(), W_OK) != 0) {
    const int error = errno;
    throw FileError("cannot write to the data directory " + quoted_path(dir) + ": " + std::strerror(error), dir, error);
  }
  remove_stale_partials(dir, name);
  if (struct statvfs fs_info; ::statvfs(dir.c_str(), &fs_info) == 0) {
    const uint64_t free_bytes = static_cast<uint64_t>(fs_info.f_bavail) * fs_info.f_frsize;
    if (free_bytes < bytes)
      throw FileError("cannot write " + std::string(name) + " into " + quoted_path(dir) + ": " + std::strerror(ENOSPC) +
                          " (it needs " + std::to_string(bytes >> 20) + " MB, " + std::to_string(free_bytes >> 20) +
                          " MB are free)",
                      dir / std::string(name), ENOSPC);
  }
}

void write_table(const fs::path& dir, std::string_view name, uint64_t bytes,
                 const std::function<bool(const fs::path& temporary)>& write) {
  check_writable(dir, name, bytes);
  std::error_code ec;
  static std::atomic<int> counter{0};
  const fs::path final_path = dir / std::string(name);
  const fs::path temporary =
      dir / (std::string(name) + ".partial-" + std::to_string(::getpid()) + "-" + std::to_string(counter++));
  errno = 0;
  const bool written = write(temporary);
  const int error = errno;
  const std::optional<ManifestEntry> entry = written ? file_entry(temporary) : std::nullopt;
  if (!entry) {
    fs::remove(temporary, ec);
    throw FileError("cannot write the table file " + quoted_path(final_path) + ": " + system_reason(error), final_path,
                    error);
  }
  DirectoryLock lock(dir);
  fs::rename(temporary, final_path, ec);
  if (ec) {
    const std::error_code renamed = ec;
    fs::remove(temporary, ec);
    throw FileError("cannot write the table file " + quoted_path(final_path) + ": " + renamed.message(), final_path,
                    renamed.value());
  }
  update_manifest(dir, std::string(name), *entry);
}

void record_table(const fs::path& path) {
  const std::optional<ManifestEntry> entry = file_entry(path);
  if (!entry) throw FileError("cannot read " + quoted_path(path), path, open_error(path));
  const fs::path dir = path.has_parent_path() ? path.parent_path() : fs::path(".");
  DirectoryLock lock(dir);
  update_manifest(dir, path.filename().string(), *entry);
}

void report_damaged(const TableProgress& progress, const fs::path& dir, std::string_view name,
                    const std::string& problem, std::string_view consequence) {
  const std::string text = std::string(name) + " in " + quoted_path(dir) + " is damaged (" + problem +
                           "): " + std::string(consequence);
  if (progress)
    progress(name, text, kNoticeFraction);
  else
    std::clog << "pokermath: " << text << std::endl;
}

}  // namespace pokermath::detail

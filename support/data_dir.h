// The data directory's rules, followed by every table file the library writes:
//   - a manifest ("manifest.txt") lists each table with its size and content checksum, so that a
//     damaged table (zero-filled, cut short, a flipped byte) is found when it is loaded;
//   - a table is written under a name of its own writer ("NAME.partial-PID-N") and renamed into
//     place, so that readers and other writers never see half a table; partial files of writers that
//     have died are removed by the next writer;
//   - free space and write permission are checked before a long generation, and every failure names
//     the reason the system gave.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "pokermath/eval.h"

namespace pokermath::detail {

// A fast 64-bit checksum of a byte stream (four independent multiply-rotate lanes over 32-byte
// blocks, the structure of xxHash64): it finds accidental damage, not deliberate forgery. Bytes may
// come in pieces of any size; the digest depends only on the whole stream.
class Checksum {
 public:
  void update(const void* data, size_t size);
  uint64_t digest() const;

 private:
  uint64_t m_lanes[4] = {0x60EA27EEADC0B5D6u, 0xC2B2AE3D27D4EB4Fu, 0, 0x61C8864E7A143579u};
  unsigned char m_pending[32] = {};
  size_t m_pendingSize = 0;
  uint64_t m_total = 0;
};

// A table as the manifest lists it.
struct ManifestEntry {
  uint64_t size = 0;
  uint64_t checksum = 0;
};

inline constexpr const char* kManifestName = "manifest.txt";

// The manifest's entry for `name` in `dir`, if it lists one.
std::optional<ManifestEntry> manifest_entry(const std::filesystem::path& dir, std::string_view name);

// The size and checksum of the file at `path`, read in pieces; nullopt when it cannot be read.
std::optional<ManifestEntry> file_entry(const std::filesystem::path& path);

// Why the table `name` in `dir` cannot be trusted: "" when it is there and matches its manifest
// entry, else "missing", "not listed in the manifest", "its size differs from the manifest" or "its
// checksum differs from the manifest".
std::string table_problem(const std::filesystem::path& dir, std::string_view name);

// As table_problem, for a table already read into memory (size and checksum of its bytes).
std::string table_problem(const std::filesystem::path& dir, std::string_view name, const ManifestEntry& content);

// Makes sure a table `name` of `bytes` bytes can be written into `dir` before the work of making it:
// the directory exists (created if needed), this process may write there, and the device has the
// room; removes partial files of `name` that dead writers left. Throws FileError naming the reason.
void check_writable(const std::filesystem::path& dir, std::string_view name, uint64_t bytes);

// Writes the table `name` into `dir` safely: `write` fills the temporary path it is given and
// returns false on failure; the file is then checksummed, renamed into place and listed in the
// manifest. `bytes` is the size expected, checked against the free space first. Throws FileError
// naming the reason (the directory cannot be created or written, no space, the write failed).
void write_table(const std::filesystem::path& dir, std::string_view name, uint64_t bytes,
                 const std::function<bool(const std::filesystem::path& temporary)>& write);

// Lists a file already in place (written by a caller's own path) in its directory's manifest.
// Throws FileError when the file cannot be read or the manifest written.
void record_table(const std::filesystem::path& path);

// Tells the user that the table `name` in `dir` cannot be trusted, a line "NAME in 'DIR' is damaged
// (PROBLEM): CONSEQUENCE": through `progress` as a call with kNoticeFraction when there is one, else
// on standard error.
void report_damaged(const TableProgress& progress, const std::filesystem::path& dir, std::string_view name,
                    const std::string& problem, std::string_view consequence);

}  // namespace pokermath::detail

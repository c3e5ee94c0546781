// Portable platform layer: the string aliases the classic API is written in, the message channel
// that stands in for message boxes, a millisecond tick counter, file helpers, the library's error
// type and the text-file reader (text_file.h).
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "pokermath/text_file.h"

// Wide strings in the classic signatures, under the names those signatures use.
using CString = std::wstring;
using CStringArray = std::vector<std::wstring>;

// Shows a message to the user. The classic API reports missing or damaged data files this way.
// The text goes to the handler installed with SetMessageHandler; by default it is written to
// stderr followed by a newline.
void ShowMessage(const CString& text);

// Installs the handler that receives every ShowMessage text and returns the previous one.
// An empty handler restores the default (stderr). Not synchronised: install it before starting
// threads that may report.
using MessageHandler = std::function<void(const CString&)>;
MessageHandler SetMessageHandler(MessageHandler handler);

// Milliseconds from a monotonic clock, wrapping at 2^32 like the tick counter it replaces.
// Only differences between two readings are meaningful.
uint32_t GetTickCount();

namespace pokermath {

// The error thrown by the pokermath:: API for bad input; the message names the bad input.
class Error : public std::invalid_argument {
 public:
  using std::invalid_argument::invalid_argument;
};

// Thrown by the pokermath:: API when a file or directory cannot be found, read or written: a
// missing or unreadable input file, a data directory that cannot be created or written, a disk
// that is full. The message names the path and the system's reason; path() is the path, and
// error_code() the system's error (ENOENT, EACCES, ENOSPC, ...; 0 when there is none, such as a
// file that is not a regular file). A file that is there but holds bad content throws plain Error.
class FileError : public Error {
 public:
  FileError(const std::string& message, std::filesystem::path path, int error_code)
      : Error(message), m_path(std::move(path)), m_error_code(error_code) {}
  const std::filesystem::path& path() const { return m_path; }
  int error_code() const { return m_error_code; }

 private:
  std::filesystem::path m_path;
  int m_error_code;
};

// Thrown by a long computation that was asked to stop (a stop_token of its request).
class Cancelled : public std::runtime_error {
 public:
  Cancelled() : std::runtime_error("cancelled") {}
};

// The library version, "major.minor.patch".
std::string_view version();

// Memory for large look-up tables: 2 MB aligned and advised to use huge pages, so that random
// look-ups into tables of hundreds of megabytes do not miss the TLB on every read.
void* allocate_table_memory(size_t bytes);
void free_table_memory(void* memory);

// An allocator for std::vector over allocate_table_memory.
template <typename T>
struct TableAllocator {
  using value_type = T;
  TableAllocator() = default;
  template <typename U>
  TableAllocator(const TableAllocator<U>&) {}
  T* allocate(size_t n) { return static_cast<T*>(allocate_table_memory(n * sizeof(T))); }
  void deallocate(T* p, size_t) { free_table_memory(p); }
  template <typename U>
  bool operator==(const TableAllocator<U>&) const {
    return true;
  }
};

// UTF-8 <-> wide conversions used at the edges (paths, messages, CLI output). Invalid UTF-8
// bytes become U+FFFD; they never throw.
std::wstring widen(std::string_view utf8);
std::string narrow(std::wstring_view wide);

// The text as it may be echoed to a terminal: control characters (C0, DEL and C1) and bytes that
// are not part of valid UTF-8 are written as "\xNN" escapes, one per byte; everything else passes
// unchanged. Messages that quote user input go through it, so that input cannot move the cursor,
// change colours or leave half a character behind.
std::string escape_unprintable(std::string_view text);

// A filesystem path from a wide path, through UTF-8 whatever the C locale is.
std::filesystem::path to_path(const std::wstring& path);

// True when a file (not a directory) exists at the wide path.
bool file_exists(const std::wstring& path);

// The size of the file in bytes, or -1 when it cannot be read.
int64_t file_size(const std::wstring& path);

// Reads a whole file into bytes; returns false (and leaves `bytes` empty) when it cannot.
bool read_file(const std::wstring& path, std::vector<char>& bytes);

// Writes bytes to a file, replacing it; returns false when the file cannot be written completely.
bool write_file(const std::wstring& path, const void* data, size_t size);

}  // namespace pokermath

#include <cerrno>
#include <string>
#include <system_error>

#include "pokermath/records.h"
#include "support/files.h"

namespace {

namespace fs = std::filesystem;

// Blanks trimmed from the ends of a line: ASCII white space, plus a byte-order mark that
// concatenated files leave at the start of a hand.
bool is_blank(wchar_t c) { return c == L' ' || (c >= L'\t' && c <= L'\r') || c == L'\xFEFF'; }

std::wstring trimmed(std::wstring_view line) {
  size_t begin = 0, end = line.size();
  while (begin < end && is_blank(line[begin])) ++begin;
  while (end > begin && is_blank(line[end - 1])) --end;
  return std::wstring(line.substr(begin, end - begin));
}

// Whether anything (file or directory) is at the path, as a file-attribute query tells.
bool anything_at(const fs::path& path) {
  std::error_code ec;
  return fs::exists(path, ec);
}

// Why a path that exists is no hand-history file, for the message that names it.
std::string not_a_file(const std::string& name, fs::file_type type) {
  const char* kind = type == fs::file_type::directory   ? "a directory"
                     : type == fs::file_type::fifo      ? "a FIFO (named pipe)"
                     : type == fs::file_type::character ? "a character device"
                     : type == fs::file_type::block     ? "a block device"
                     : type == fs::file_type::socket    ? "a socket"
                                                        : nullptr;
  return kind ? name + " is " + kind + ", not a hand-history file" : name + " is not a regular file";
}

// The classic readers differ only in the encoding of files without a byte-order mark and in
// whether a file that cannot be opened is reported to the user.
int read_history_file(const CString& path, int64_t& position, CStringArray& lines, pokermath::TextEncoding without_bom,
                      bool report_open_failure) {
  lines.clear();
  const fs::path file = pokermath::to_path(path);
  if (!anything_at(file)) return -1;
  pokermath::TextFile text;
  if (!text.open(file, without_bom)) {
    if (report_open_failure) ShowMessage(L"File <" + path + L"> could not be opened!");
    return -2;
  }
  if (!text.seek(position)) return -2;
  std::wstring line;
  // These readers take the file as it is: a last line without a line end is returned too, and the
  // position moves past it (what a writer appends to it later comes back as a line of its own).
  while (text.read_line(line, pokermath::PartialLine::Include)) {
    if (!line.empty()) lines.push_back(trimmed(line));
  }
  position = text.position();
  return 0;
}

}  // namespace

int ReadHistoryFile(const CString& path, int64_t& position, CStringArray& lines) {
  const bool narrow = path.starts_with(L"888poker");
  return read_history_file(path, position, lines,
                           narrow ? pokermath::TextEncoding::Narrow : pokermath::TextEncoding::Utf8, false);
}

int ReadHistoryFileEx(const CString& path, int64_t& position, CStringArray& lines) {
  return read_history_file(path, position, lines, pokermath::TextEncoding::Utf8OrNarrow, false);
}

int ReadHistoryFileUTF8(const CString& path, int64_t& position, CStringArray& lines) {
  return read_history_file(path, position, lines, pokermath::TextEncoding::Utf8, true);
}

namespace pokermath {

HistoryLines read_history(const fs::path& path, int64_t from, PartialLine partial) {
  std::string name = "'";  // (built by appending: GCC 12 misreports "'" + string as overlapping copies)
  name.append(path.string()).append("'");
  std::error_code ec;
  // An error from exists() says why the path could not be looked at (EACCES on a directory above).
  if (!fs::exists(path, ec)) throw FileError("no such file: " + name, path, ec ? ec.value() : ENOENT);
  if (const fs::file_type type = fs::status(path, ec).type(); type != fs::file_type::regular)
    throw FileError(not_a_file(name, type), path, ec.value());
  if (from < 0) throw Error("position " + std::to_string(from) + " is negative");
  TextFile text;
  if (!text.open(path)) throw FileError("cannot open " + name + " for reading", path, detail::open_error(path));
  const auto size = static_cast<int64_t>(fs::file_size(path, ec));
  if (!ec && from > size) {
    throw Error("position " + std::to_string(from) + " is past the end of " + name + " (" + std::to_string(size) +
                " bytes): the file was truncated or replaced; read it again from 0");
  }
  const bool utf16 = text.encoding() == TextEncoding::Utf16Le || text.encoding() == TextEncoding::Utf16Be;
  if (utf16 && from > text.byte_order_mark_size() && from % 2 != 0) {
    throw Error("position " + std::to_string(from) + " falls inside a character: " + name +
                " is UTF-16, 2 bytes per unit");
  }
  text.seek(from);

  HistoryLines out;
  out.encoding = text.encoding();
  std::wstring line;
  while (text.read_line(line, partial)) {
    const std::wstring kept = trimmed(line);
    if (!kept.empty()) out.lines.push_back(narrow(kept));
  }
  out.position = text.position();
  out.held_bytes = text.held_bytes();
  return out;
}

}  // namespace pokermath

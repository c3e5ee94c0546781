// A text file read line by line as wide strings, whatever its encoding: UTF-8 with or without a
// byte-order mark, UTF-16 little- or big-endian with a byte-order mark, or the narrow (multibyte)
// code page of the C locale. Positions are byte offsets, so a reader can stop, remember where it
// was and come back to a file that has grown in the meantime.
#pragma once

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <vector>

namespace pokermath {

// How the bytes of a text file become characters.
enum class TextEncoding {
  Utf8OrNarrow,  // no byte-order mark: a line that is valid UTF-8 is read as UTF-8, any other line
                 // through the narrow code page (ASCII text reads the same either way)
  Utf8,          // UTF-8; bytes that are not valid UTF-8 become U+FFFD
  Utf16Le,       // UTF-16 little-endian; an unpaired surrogate becomes U+FFFD
  Utf16Be,       // UTF-16 big-endian; likewise
  Narrow,        // the C locale's multibyte code page; a byte it cannot convert is taken as Latin-1
};

// "UTF-8 or narrow", "UTF-8", "UTF-16LE", "UTF-16BE" or "narrow".
std::string_view encoding_name(TextEncoding encoding);

// What read_line does with a last line that has no line end yet (a writer may be in the middle of it).
enum class PartialLine {
  Include,  // return it like any other line (in UTF-16 up to its last whole code unit: a lone last
            // byte stays unread, so positions stay even)
  Hold,     // leave it unread: position() stays at its first byte until its line end is written
};

// A text file opened for reading. Other processes may keep writing to it; bytes appended after
// open() are seen by later reads. Not copyable; movable.
class TextFile {
 public:
  TextFile() = default;

  // Opens the file and settles its encoding: a byte-order mark at its start decides (EF BB BF
  // UTF-8, FF FE UTF-16LE, FE FF UTF-16BE); without one, `without_bom` applies. Returns false
  // (and stays closed) when the path is no regular file (a directory, a device, a pipe) or cannot
  // be opened for reading.
  bool open(const std::filesystem::path& path, TextEncoding without_bom = TextEncoding::Utf8OrNarrow);
  // Closes the file; a closed TextFile reads nothing.
  void close();
  bool is_open() const { return m_in.is_open(); }

  // The encoding lines are decoded with.
  TextEncoding encoding() const { return m_encoding; }
  // Size of the byte-order mark at the start of the file: 0, 2 or 3 bytes.
  int byte_order_mark_size() const { return m_bom_size; }

  // Byte offset of the first byte not yet read.
  int64_t position() const { return m_buffer_offset + static_cast<int64_t>(m_next); }
  // Moves to a byte offset. Offsets inside the byte-order mark mean its end, so 0 is the start of
  // the text; offsets past the end of the file are kept and read nothing until the file reaches
  // them. Returns false (and does not move) for a negative offset or a closed file.
  bool seek(int64_t offset);

  // Reads the next line without its line end (LF or CR LF) into `line`. Returns false, with `line`
  // empty, at the end of the file and, under PartialLine::Hold, before a last line that has no
  // line end yet (under Include, before a lone last byte of UTF-16).
  bool read_line(std::wstring& line, PartialLine partial = PartialLine::Include);
  // Bytes that the latest read_line left unread at the end of the file (0 if none): under Hold the
  // whole unterminated last line, under Include a lone byte of an unfinished UTF-16 code unit.
  int64_t held_bytes() const { return m_held_bytes; }

 private:
  // Index in m_buffer of the line feed that ends the line starting at m_next, searching from `from`;
  // npos when the buffer holds no line feed yet.
  size_t find_line_feed(size_t from) const;
  // Appends the next chunk of the file to the buffer; false at the end of the file.
  bool fill();
  // Characters of the bytes m_buffer[begin, end).
  std::wstring decode(size_t begin, size_t end) const;

  std::ifstream m_in;
  TextEncoding m_encoding = TextEncoding::Utf8OrNarrow;
  int m_bom_size = 0;
  std::vector<char> m_buffer;   // bytes read from the file and not yet returned, from m_next on
  int64_t m_buffer_offset = 0;  // file offset of m_buffer[0]
  size_t m_next = 0;            // index in m_buffer of the first unread byte
  int64_t m_held_bytes = 0;
};

}  // namespace pokermath

#include "pokermath/text_file.h"

#include <algorithm>
#include <cstring>
#include <cwchar>

#include "pokermath/support.h"

namespace pokermath {

namespace {

constexpr size_t kChunk = 64 * 1024;
constexpr size_t kNotFound = static_cast<size_t>(-1);

bool is_utf16(TextEncoding encoding) { return encoding == TextEncoding::Utf16Le || encoding == TextEncoding::Utf16Be; }

// True when the bytes are well-formed UTF-8: no stray continuation bytes, no cut sequences, no
// overlong forms, no surrogates, nothing above U+10FFFF.
bool is_valid_utf8(std::string_view bytes) {
  size_t i = 0;
  while (i < bytes.size()) {
    const auto lead = static_cast<unsigned char>(bytes[i]);
    if (lead < 0x80) {
      ++i;
      continue;
    }
    const int length = lead >= 0xC2 && lead <= 0xDF   ? 2
                       : lead >= 0xE0 && lead <= 0xEF ? 3
                       : lead >= 0xF0 && lead <= 0xF4 ? 4
                                                      : 0;
    if (length == 0 || i + length > bytes.size()) return false;
    // The second byte's range rules out overlong forms, surrogates and code points past U+10FFFF.
    const auto second = static_cast<unsigned char>(bytes[i + 1]);
    const unsigned char low = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
    const unsigned char high = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
    if (second < low || second > high) return false;
    for (int k = 2; k < length; ++k) {
      if ((static_cast<unsigned char>(bytes[i + k]) & 0xC0) != 0x80) return false;
    }
    i += length;
  }
  return true;
}

// Bytes through the C locale's multibyte conversion; a byte it rejects is taken as Latin-1, so no
// byte is lost and a default "C" locale still reads Western European text.
std::wstring decode_narrow(std::string_view bytes) {
  std::wstring out;
  out.reserve(bytes.size());
  std::mbstate_t state{};
  size_t i = 0;
  while (i < bytes.size()) {
    wchar_t wc = 0;
    const size_t used = std::mbrtowc(&wc, bytes.data() + i, bytes.size() - i, &state);
    if (used == static_cast<size_t>(-1) || used == static_cast<size_t>(-2)) {
      out.push_back(static_cast<wchar_t>(static_cast<unsigned char>(bytes[i])));
      state = std::mbstate_t{};
      ++i;
    } else {
      out.push_back(wc);
      i += std::max<size_t>(used, 1);  // 0 means a NUL byte was read
    }
  }
  return out;
}

std::wstring decode_utf16(std::string_view bytes, bool big_endian) {
  auto unit_at = [&](size_t i) -> char32_t {
    const auto a = static_cast<unsigned char>(bytes[i]), b = static_cast<unsigned char>(bytes[i + 1]);
    return big_endian ? (a << 8) | b : (b << 8) | a;
  };
  std::wstring out;
  out.reserve(bytes.size() / 2 + 1);
  size_t i = 0;
  while (i + 1 < bytes.size()) {
    const char32_t unit = unit_at(i);
    i += 2;
    if (unit >= 0xD800 && unit <= 0xDBFF && i + 1 < bytes.size()) {
      const char32_t next = unit_at(i);
      if (next >= 0xDC00 && next <= 0xDFFF) {
        out.push_back(static_cast<wchar_t>(0x10000 + ((unit - 0xD800) << 10) + (next - 0xDC00)));
        i += 2;
        continue;
      }
    }
    out.push_back(unit >= 0xD800 && unit <= 0xDFFF ? L'\xFFFD' : static_cast<wchar_t>(unit));
  }
  if (i < bytes.size()) out.push_back(L'\xFFFD');  // half a code unit (read_line passes whole units only)
  return out;
}

// True when the code unit that starts at bytes[i] is the ASCII character `c`.
bool unit_is(const std::vector<char>& bytes, size_t i, TextEncoding encoding, char c) {
  switch (encoding) {
    case TextEncoding::Utf16Le: return bytes[i] == c && bytes[i + 1] == 0;
    case TextEncoding::Utf16Be: return bytes[i] == 0 && bytes[i + 1] == c;
    default: return bytes[i] == c;
  }
}

}  // namespace

std::string_view encoding_name(TextEncoding encoding) {
  switch (encoding) {
    case TextEncoding::Utf8OrNarrow: return "UTF-8 or narrow";
    case TextEncoding::Utf8: return "UTF-8";
    case TextEncoding::Utf16Le: return "UTF-16LE";
    case TextEncoding::Utf16Be: return "UTF-16BE";
    case TextEncoding::Narrow: return "narrow";
  }
  return "unknown";
}

bool TextFile::open(const std::filesystem::path& path, TextEncoding without_bom) {
  close();
  // Byte offsets only mean something in a regular file; a device or pipe could also block or never end.
  std::error_code ec;
  if (!std::filesystem::is_regular_file(path, ec)) return false;
  m_in.open(path, std::ios::binary);
  if (!m_in.is_open()) return false;

  unsigned char head[3] = {0, 0, 0};
  m_in.read(reinterpret_cast<char*>(head), sizeof head);
  const auto got = m_in.gcount();
  if (got >= 3 && head[0] == 0xEF && head[1] == 0xBB && head[2] == 0xBF) {
    m_encoding = TextEncoding::Utf8;
    m_bom_size = 3;
  } else if (got >= 2 && head[0] == 0xFF && head[1] == 0xFE) {
    m_encoding = TextEncoding::Utf16Le;
    m_bom_size = 2;
  } else if (got >= 2 && head[0] == 0xFE && head[1] == 0xFF) {
    m_encoding = TextEncoding::Utf16Be;
    m_bom_size = 2;
  } else {
    m_encoding = without_bom;
    m_bom_size = 0;
  }
  seek(0);
  return true;
}

void TextFile::close() {
  if (m_in.is_open()) m_in.close();
  m_in.clear();
  m_buffer.clear();
  m_buffer_offset = 0;
  m_next = 0;
  m_held_bytes = 0;
  m_bom_size = 0;
  m_encoding = TextEncoding::Utf8OrNarrow;
}

bool TextFile::seek(int64_t offset) {
  if (!is_open() || offset < 0) return false;
  offset = std::max<int64_t>(offset, m_bom_size);
  m_in.clear();
  m_in.seekg(offset);
  if (!m_in) return false;
  m_buffer.clear();
  m_buffer_offset = offset;
  m_next = 0;
  m_held_bytes = 0;
  return true;
}

size_t TextFile::find_line_feed(size_t from) const {
  if (!is_utf16(m_encoding)) {
    const void* hit =
        from < m_buffer.size() ? std::memchr(m_buffer.data() + from, '\n', m_buffer.size() - from) : nullptr;
    return hit ? static_cast<size_t>(static_cast<const char*>(hit) - m_buffer.data()) : kNotFound;
  }
  // A UTF-16 line feed is the code unit 000A, aligned with the line's first byte.
  for (size_t i = from; i + 1 < m_buffer.size(); i += 2) {
    if (unit_is(m_buffer, i, m_encoding, '\n')) return i;
  }
  return kNotFound;
}

bool TextFile::fill() {
  if (!is_open()) return false;
  if (m_next > 0) {  // drop the bytes already returned so the buffer holds one line at most
    m_buffer.erase(m_buffer.begin(), m_buffer.begin() + static_cast<std::ptrdiff_t>(m_next));
    m_buffer_offset += static_cast<int64_t>(m_next);
    m_next = 0;
  }
  const size_t old_size = m_buffer.size();
  m_buffer.resize(old_size + kChunk);
  m_in.clear();  // a writer may have appended since the last read hit the end
  m_in.read(m_buffer.data() + old_size, static_cast<std::streamsize>(kChunk));
  m_buffer.resize(old_size + static_cast<size_t>(m_in.gcount()));
  return m_buffer.size() > old_size;
}

std::wstring TextFile::decode(size_t begin, size_t end) const {
  const std::string_view bytes(m_buffer.data() + begin, end - begin);
  switch (m_encoding) {
    case TextEncoding::Utf8OrNarrow: return is_valid_utf8(bytes) ? widen(bytes) : decode_narrow(bytes);
    case TextEncoding::Utf8: return widen(bytes);
    case TextEncoding::Utf16Le: return decode_utf16(bytes, false);
    case TextEncoding::Utf16Be: return decode_utf16(bytes, true);
    case TextEncoding::Narrow: return decode_narrow(bytes);
  }
  return {};
}

bool TextFile::read_line(std::wstring& line, PartialLine partial) {
  line.clear();
  m_held_bytes = 0;
  if (!is_open()) return false;
  const size_t unit = is_utf16(m_encoding) ? 2 : 1;

  size_t scanned = 0;  // bytes after m_next known to hold no line feed
  size_t feed = find_line_feed(m_next);
  while (feed == kNotFound) {
    const size_t available = m_buffer.size() - m_next;
    scanned = available - available % unit;
    if (!fill()) break;
    feed = find_line_feed(m_next + scanned);
  }

  if (feed != kNotFound) {
    size_t end = feed;
    if (end - m_next >= unit && unit_is(m_buffer, end - unit, m_encoding, '\r')) end -= unit;  // CR LF
    line = decode(m_next, end);
    m_next = feed + unit;
    return true;
  }

  // The last line has no line end. Included, it still stops at the last whole code unit: a lone
  // byte of UTF-16 is half a character the writer has not finished, and the position after it
  // would be odd, inside that character.
  const size_t rest = m_buffer.size() - m_next;
  const size_t whole = partial == PartialLine::Include ? rest - rest % unit : 0;
  m_held_bytes = static_cast<int64_t>(rest - whole);
  if (whole == 0) return false;
  line = decode(m_next, m_next + whole);
  m_next += whole;
  return true;
}

}  // namespace pokermath

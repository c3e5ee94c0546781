#include "pokermath/support.h"

namespace pokermath {

namespace {

// The length of the valid UTF-8 sequence that starts `text` (1 to 4 bytes), or 0 when none does:
// a stray continuation byte, a cut-off sequence, an overlong form, a surrogate or a code point
// above U+10FFFF. The second byte's allowed range is what excludes the last three.
size_t utf8_sequence_length(std::string_view text) {
  const auto byte = [text](size_t i) { return static_cast<unsigned char>(text[i]); };
  const unsigned char lead = byte(0);
  if (lead < 0x80) return 1;
  size_t length = 0;
  unsigned char low = 0x80, high = 0xBF;
  if (lead >= 0xC2 && lead <= 0xDF) {
    length = 2;
  } else if (lead >= 0xE0 && lead <= 0xEF) {
    length = 3;
    if (lead == 0xE0) low = 0xA0;   // below: overlong
    if (lead == 0xED) high = 0x9F;  // above: surrogates
  } else if (lead >= 0xF0 && lead <= 0xF4) {
    length = 4;
    if (lead == 0xF0) low = 0x90;   // below: overlong
    if (lead == 0xF4) high = 0x8F;  // above: past U+10FFFF
  } else {
    return 0;
  }
  if (text.size() < length || byte(1) < low || byte(1) > high) return 0;
  for (size_t i = 2; i < length; ++i)
    if ((byte(i) & 0xC0) != 0x80) return 0;
  return length;
}

}  // namespace

std::string escape_unprintable(std::string_view text) {
  static constexpr char kHex[] = "0123456789abcdef";
  std::string out;
  out.reserve(text.size());
  const auto escape = [&out](char c) {
    const auto b = static_cast<unsigned char>(c);
    out += "\\x";
    out += kHex[b >> 4];
    out += kHex[b & 0xF];
  };
  size_t i = 0;
  while (i < text.size()) {
    const size_t length = utf8_sequence_length(text.substr(i));
    if (length == 0) {  // one bad byte; the next may start a valid character
      escape(text[i++]);
      continue;
    }
    const auto lead = static_cast<unsigned char>(text[i]);
    // C0 controls and DEL are single bytes; the C1 controls U+0080..U+009F are C2 80..C2 9F.
    const bool control =
        length == 1 ? lead < 0x20 || lead == 0x7F : lead == 0xC2 && static_cast<unsigned char>(text[i + 1]) < 0xA0;
    for (size_t k = 0; k < length; ++k) {
      if (control)
        escape(text[i + k]);
      else
        out.push_back(text[i + k]);
    }
    i += length;
  }
  return out;
}

std::wstring widen(std::string_view utf8) {
  std::wstring out;
  out.reserve(utf8.size());
  size_t i = 0;
  while (i < utf8.size()) {
    const auto lead = static_cast<unsigned char>(utf8[i]);
    int length = lead < 0x80 ? 1 : (lead >> 5) == 0x6 ? 2 : (lead >> 4) == 0xE ? 3 : (lead >> 3) == 0x1E ? 4 : 0;
    char32_t code = length == 1 ? lead : length == 2 ? lead & 0x1F : length == 3 ? lead & 0x0F : lead & 0x07;
    bool valid = length > 0 && i + length <= utf8.size();
    for (int k = 1; valid && k < length; ++k) {
      const auto next = static_cast<unsigned char>(utf8[i + k]);
      valid = (next & 0xC0) == 0x80;
      code = (code << 6) | (next & 0x3F);
    }
    // The shortest form only, and scalar values only: an overlong form (C0 B8 for '8') would let
    // text spell a character in bytes that byte-level checks never see.
    static constexpr char32_t kLeast[5] = {0, 0, 0x80, 0x800, 0x10000};
    if (valid && length > 1) valid = code >= kLeast[length] && code <= 0x10FFFF && (code < 0xD800 || code > 0xDFFF);
    if (!valid) {
      out.push_back(L'\xFFFD');
      ++i;
      continue;
    }
    out.push_back(static_cast<wchar_t>(code));
    i += length;
  }
  return out;
}

std::string narrow(std::wstring_view wide) {
  std::string out;
  out.reserve(wide.size());
  for (wchar_t wc : wide) {
    auto code = static_cast<uint32_t>(wc);
    if (code > 0x10FFFF || (code >= 0xD800 && code <= 0xDFFF)) code = 0xFFFD;
    if (code < 0x80) {
      out.push_back(static_cast<char>(code));
    } else if (code < 0x800) {
      out.push_back(static_cast<char>(0xC0 | (code >> 6)));
      out.push_back(static_cast<char>(0x80 | (code & 0x3F)));
    } else if (code < 0x10000) {
      out.push_back(static_cast<char>(0xE0 | (code >> 12)));
      out.push_back(static_cast<char>(0x80 | ((code >> 6) & 0x3F)));
      out.push_back(static_cast<char>(0x80 | (code & 0x3F)));
    } else {
      out.push_back(static_cast<char>(0xF0 | (code >> 18)));
      out.push_back(static_cast<char>(0x80 | ((code >> 12) & 0x3F)));
      out.push_back(static_cast<char>(0x80 | ((code >> 6) & 0x3F)));
      out.push_back(static_cast<char>(0x80 | (code & 0x3F)));
    }
  }
  return out;
}

}  // namespace pokermath

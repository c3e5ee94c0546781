#include "analysis/svg_writer.h"

#include <charconv>
#include <cmath>

#include "pokermath/support.h"

namespace pokermath::detail {

std::string fixed_number(double value, int decimals) {
  if (!std::isfinite(value)) value = 0;
  char text[400];  // room for the largest double written out in full
  const auto end = std::to_chars(text, text + sizeof text, value, std::chars_format::fixed, decimals).ptr;
  std::string out(text, end);
  if (out.find_first_not_of("-0.") == std::string::npos && out[0] == '-') out.erase(0, 1);  // no "-0"
  return out;
}

std::string svg_number(double value) {
  std::string out = fixed_number(value, 2);
  while (out.back() == '0') out.pop_back();
  if (out.back() == '.') out.pop_back();
  return out;
}

std::string xml_escape(std::string_view text) {
  // Through wide characters: widen turns bytes that are not UTF-8 into U+FFFD on the way.
  std::wstring out;
  for (wchar_t c : widen(text)) {
    switch (c) {
      case L'&': out += L"&amp;"; break;
      case L'<': out += L"&lt;"; break;
      case L'>': out += L"&gt;"; break;
      case L'"': out += L"&quot;"; break;
      default:
        // XML 1.0 has no place for the other C0 controls nor for U+FFFE and U+FFFF.
        if ((c < 0x20 && c != L'\t' && c != L'\n' && c != L'\r') || c == 0xFFFE || c == 0xFFFF) break;
        out += c;
    }
  }
  return narrow(out);
}

namespace {

std::string stroke_attributes(const Stroke& stroke) {
  std::string out = " stroke=\"" + xml_escape(stroke.color) + "\" stroke-width=\"" + svg_number(stroke.width) + '"';
  if (!stroke.dash.empty()) out += " stroke-dasharray=\"" + xml_escape(stroke.dash) + '"';
  return out;
}

}  // namespace

SvgWriter::SvgWriter(int width, int height) {
  const std::string w = std::to_string(width), h = std::to_string(height);
  m_body = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" + w +
           "\" height=\"" + h + "\" viewBox=\"0 0 " + w + ' ' + h + "\" font-family=\"sans-serif\">\n";
  rect(0, 0, width, height, "#fff");
}

void SvgWriter::gradient(std::string_view id, const std::vector<std::string>& colors) {
  m_body += "<defs><linearGradient id=\"" + xml_escape(id) + "\">";
  for (size_t i = 0; i < colors.size(); ++i) {
    const double offset =
        colors.size() > 1 ? 100.0 * static_cast<double>(i) / static_cast<double>(colors.size() - 1) : 0;
    m_body += "<stop offset=\"" + svg_number(offset) + "%\" stop-color=\"" + xml_escape(colors[i]) + "\"/>";
  }
  m_body += "</linearGradient></defs>\n";
}

void SvgWriter::rect(double x, double y, double width, double height, std::string_view fill, const Stroke* outline) {
  m_body += "<rect x=\"" + svg_number(x) + "\" y=\"" + svg_number(y) + "\" width=\"" + svg_number(width) +
            "\" height=\"" + svg_number(height) + "\" fill=\"" + xml_escape(fill) + '"';
  if (outline) m_body += stroke_attributes(*outline);
  m_body += "/>\n";
}

void SvgWriter::line(double x1, double y1, double x2, double y2, const Stroke& stroke) {
  m_body += "<line x1=\"" + svg_number(x1) + "\" y1=\"" + svg_number(y1) + "\" x2=\"" + svg_number(x2) + "\" y2=\"" +
            svg_number(y2) + '"' + stroke_attributes(stroke) + "/>\n";
}

void SvgWriter::polyline(const std::vector<std::pair<double, double>>& points, const Stroke& stroke) {
  std::string list, last;
  for (const auto& [x, y] : points) {
    std::string point = svg_number(x) + ',' + svg_number(y);
    if (point == last) continue;
    if (!list.empty()) list += ' ';
    list += point;
    last = std::move(point);
  }
  m_body += "<polyline points=\"" + list + "\" fill=\"none\"" + stroke_attributes(stroke) + "/>\n";
}

void SvgWriter::circle(double x, double y, double radius, std::string_view fill) {
  m_body += "<circle cx=\"" + svg_number(x) + "\" cy=\"" + svg_number(y) + "\" r=\"" + svg_number(radius) +
            "\" fill=\"" + xml_escape(fill) + "\"/>\n";
}

void SvgWriter::text(double x, double y, std::string_view text, const TextStyle& style) {
  m_body += "<text x=\"" + svg_number(x) + "\" y=\"" + svg_number(y) + "\" font-size=\"" + svg_number(style.size) + '"';
  if (style.anchor != Anchor::Start) {
    m_body += style.anchor == Anchor::Middle ? " text-anchor=\"middle\"" : " text-anchor=\"end\"";
  }
  if (style.fill != "#000") m_body += " fill=\"" + xml_escape(style.fill) + '"';
  if (style.bold) m_body += " font-weight=\"bold\"";
  if (style.rotate != 0) {
    m_body += " transform=\"rotate(" + svg_number(style.rotate) + ' ' + svg_number(x) + ' ' + svg_number(y) + ")\"";
  }
  m_body += '>' + xml_escape(text) + "</text>\n";
}

std::string SvgWriter::finish() const { return m_body + "</svg>\n"; }

}  // namespace pokermath::detail

// A small SVG writer for the analysis pictures: shapes and text appended to one document, numbers
// printed with a fixed precision and no locale so that the same picture always gives the same bytes.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace pokermath::detail {

// A number with exactly `decimals` decimals, whatever the locale; non-finite values print as 0.
std::string fixed_number(double value, int decimals);
// A number as an SVG attribute: two decimals at most, trailing zeros dropped ("12.5", "3", "-0.25").
std::string svg_number(double value);

// Text made safe for XML content and double-quoted attributes: & < > " escaped, control characters
// dropped and bytes that are not UTF-8 replaced by U+FFFD, so any title gives a well-formed file.
std::string xml_escape(std::string_view text);

enum class Anchor { Start, Middle, End };

// How a text is drawn: size in pixels, alignment on x, color, weight and a rotation about (x, y).
struct TextStyle {
  double size = 12;
  Anchor anchor = Anchor::Start;
  std::string_view fill = "#000";
  bool bold = false;
  double rotate = 0;  // degrees, clockwise
};

// How a line is stroked: color, width and an optional dash pattern ("6 4").
struct Stroke {
  std::string_view color = "#000";
  double width = 1;
  std::string_view dash = {};
};

class SvgWriter {
 public:
  // Starts a document of this size in pixels (width, height and viewBox) on a white background.
  SvgWriter(int width, int height);

  // A left-to-right gradient usable as fill "url(#id)": colors spread evenly from 0% to 100%.
  void gradient(std::string_view id, const std::vector<std::string>& colors);
  // A rectangle filled with `fill`, optionally outlined.
  void rect(double x, double y, double width, double height, std::string_view fill, const Stroke* outline = nullptr);
  void line(double x1, double y1, double x2, double y2, const Stroke& stroke);
  // An open polyline through the points (no fill); points equal to the previous one are skipped.
  void polyline(const std::vector<std::pair<double, double>>& points, const Stroke& stroke);
  void circle(double x, double y, double radius, std::string_view fill);
  // Text with its baseline at y; the text is escaped.
  void text(double x, double y, std::string_view text, const TextStyle& style = {});

  // The complete document.
  std::string finish() const;

 private:
  std::string m_body;
};

}  // namespace pokermath::detail

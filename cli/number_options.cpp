#include "number_options.h"

#include <charconv>
#include <cmath>
#include <string>

namespace pokermath::cli {

CLI::Validator whole_number(int64_t min, uint64_t max) {
  const std::string range = "from " + std::to_string(min) + " to " + std::to_string(max);
  return CLI::Validator(
      [min, max, range](std::string& text) -> std::string {
        const std::string bad = "expected a whole number " + range + ", got '" + text + "'";
        const bool minus = !text.empty() && text[0] == '-';
        const char* begin = text.data() + (minus || (!text.empty() && text[0] == '+') ? 1 : 0);
        const char* end = text.data() + text.size();
        uint64_t magnitude = 0;
        const auto [stop, error] = std::from_chars(begin, end, magnitude);
        if (begin == end || error != std::errc() || stop != end) return bad;  // not a number, or past 64 bits
        const bool negative = minus && magnitude != 0;                        // "-0" is 0
        // -min, computed without overflowing at the smallest int64_t
        const uint64_t below_zero = min < 0 ? static_cast<uint64_t>(-(min + 1)) + 1 : 0;
        const bool in_range = negative ? magnitude <= below_zero
                                       : magnitude <= max && (min <= 0 || magnitude >= static_cast<uint64_t>(min));
        if (!in_range) return bad;
        text = (negative ? "-" : "") + std::to_string(magnitude);
        return {};
      },
      std::to_string(min) + " to " + std::to_string(max));
}

CLI::Validator number_above_zero() {
  return CLI::Validator(
      [](std::string& text) -> std::string {
        double value = 0;
        const char* end = text.data() + text.size();
        const auto [stop, error] = std::from_chars(text.data(), end, value);
        if (error != std::errc() || stop != end || !std::isfinite(value) || value <= 0)
          return "expected a number above 0, e.g. 0.001, got '" + text + "'";
        return {};
      },
      "above 0");
}

}  // namespace pokermath::cli

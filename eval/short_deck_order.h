// The China order of short-deck values: the standard order with a straight above three of a kind.
#pragma once

namespace pokermath::detail {

// The China value (1..1404, larger is stronger) of a five-card hand whose standard short-deck value
// is `standard`: three of a kind (883..1134) drops below the six straights (877..882), which rise
// above it; every other value stays.
constexpr int china_value_of_five(int standard) {
  if (standard >= 883 && standard <= 1134) return standard - 6;
  if (standard >= 877 && standard <= 882) return standard + 252;
  return standard;
}

}  // namespace pokermath::detail

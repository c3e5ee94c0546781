#include <chrono>

#include "pokermath/support.h"

uint32_t GetTickCount() {
  const auto since_start = std::chrono::steady_clock::now().time_since_epoch();
  const auto ms = std::chrono::duration_cast<std::chrono::milliseconds>(since_start).count();
  return static_cast<uint32_t>(ms);
}

namespace pokermath {

std::string_view version() { return POKERMATH_VERSION; }

}  // namespace pokermath

#include "support/check.h"

#include <cstdio>
#include <cstdlib>

namespace pokermath::detail {

void precondition_failed(const char* function, const char* expected) {
  std::fprintf(stderr, "pokermath: %s expects %s\n", function, expected);
  std::abort();
}

}  // namespace pokermath::detail

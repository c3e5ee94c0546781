// Preconditions of the unchecked hot paths.
//
// The classic evaluators read their tables without checking their input: callers rely on the speed,
// and the checks would cost more than the evaluation. Builds that define POKERMATH_ASSERT (Debug and
// the sanitizer build) check what each evaluator requires and stop with a message that names the
// function and the requirement, instead of reading outside a table.
#pragma once

namespace pokermath::detail {

// Prints "pokermath: <function> expects <expected>" on stderr and aborts.
[[noreturn]] void precondition_failed(const char* function, const char* expected);

// True when the n card codes are all in 0..51.
inline bool card_codes(const int* cards, int n) {
  for (int i = 0; i < n; ++i)
    if (static_cast<unsigned>(cards[i]) > 51) return false;
  return true;
}

}  // namespace pokermath::detail

#ifdef POKERMATH_ASSERT
#define POKERMATH_EXPECTS(condition, expected) \
  ((condition) ? void(0) : ::pokermath::detail::precondition_failed(__func__, expected))
#else
#define POKERMATH_EXPECTS(condition, expected) void(0)
#endif

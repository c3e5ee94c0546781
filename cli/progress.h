// Progress of long jobs on stderr: one line rewritten in place on a terminal, one line per stage
// otherwise (logs stay readable).
#pragma once

#include "pokermath/eval.h"

namespace pokermath::cli {

// A progress callback for the table jobs that writes to stderr.
TableProgress stderr_progress();

}  // namespace pokermath::cli

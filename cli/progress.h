// Progress of long jobs on stderr: one line rewritten in place on a terminal, one line per stage
// otherwise (logs stay readable).
#pragma once

#include <string>

#include "pokermath/equity.h"

namespace pokermath::cli {

// A progress callback for the table jobs that writes to stderr.
TableProgress stderr_progress();

// A progress callback for a long computation that writes "pokermath: LABEL NN%" to stderr, only
// once it has run for a second (short work prints nothing).
WorkProgress stderr_work_progress(std::string label);

}  // namespace pokermath::cli

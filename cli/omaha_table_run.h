// Making an exact Omaha pre-flop table from the command line: in this process, or as one rank of an
// MPI job when mpirun started it (rank 0 hands out the units and merges them; the other ranks
// compute them, each on all of its threads).
#pragma once

#include "pokermath/equity.h"

namespace pokermath::cli {

struct TableRunOutcome {
  bool written = false;  // the table was written (false: a valid one was there)
  bool report = true;    // this process reports the run (MPI rank 0, or the only process)
};

TableRunOutcome make_omaha_preflop_table(EquityGame game, const OmahaTableOptions& options,
                                         const TableProgress& progress);

}  // namespace pokermath::cli

#include "omaha_table_run.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <deque>
#include <exception>
#include <string>
#include <thread>

#if POKERMATH_WITH_MPI
#include <mpi.h>
#endif

namespace pokermath::cli {

namespace {

// Whether an MPI launcher (mpirun, srun) started this process as one of several ranks.
bool launched_by_mpi() {
  for (const char* name : {"OMPI_COMM_WORLD_SIZE", "PMI_SIZE", "PMIX_RANK"})
    if (std::getenv(name)) return true;
  return false;
}

#if POKERMATH_WITH_MPI

constexpr int kAskTag = 1;   // worker -> rank 0: {unit finished or -1, its result}
constexpr int kGiveTag = 2;  // rank 0 -> worker: {unit to compute or -1 to stop, wait for its lock}

// MPI_Init for the length of the run, MPI_Finalize after it.
class MpiSession {
 public:
  MpiSession() { MPI_Init(nullptr, nullptr); }
  ~MpiSession() { MPI_Finalize(); }
  MpiSession(const MpiSession&) = delete;
  MpiSession& operator=(const MpiSession&) = delete;
};

using Result = OmahaTableRun::UnitResult;

// Rank 0: hands the units that are not done to the workers as they ask, one at a time, so that fast
// and slow ranks finish together; units another job holds go last, with the order to wait for them.
// Polls with a short sleep instead of a blocking receive, which in OpenMPI spins a core.
void coordinate(OmahaTableRun& run, int workers, const TableProgress& progress) {
  std::deque<int> queue, held;
  for (int unit = 0; unit < run.units(); ++unit)
    if (!run.unit_done(unit)) queue.push_back(unit);
  const int total = run.units();
  int done = total - static_cast<int>(queue.size());
  if (progress)
    progress(run.table_name(),
             "computing " + std::to_string(queue.size()) + " of " + std::to_string(total) + " units on " +
                 std::to_string(workers) + " worker rank" + (workers == 1 ? "" : "s") + " into '" +
                 run.checkpoint().string() + "'",
             kNoticeFraction);
  int shown = done * 20 / total;
  for (int active = workers; active > 0;) {
    int message[2];
    MPI_Request request;
    MPI_Irecv(message, 2, MPI_INT, MPI_ANY_SOURCE, kAskTag, MPI_COMM_WORLD, &request);
    MPI_Status status;
    for (int flag = 0;;) {
      MPI_Test(&request, &flag, &status);
      if (flag) break;
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    if (message[0] >= 0) {
      if (message[1] == static_cast<int>(Result::Busy)) {
        held.push_back(message[0]);
      } else if (++done * 20 / total > shown && progress) {
        shown = done * 20 / total;
        progress(run.table_name(), std::to_string(done) + " of " + std::to_string(total) + " units done",
                 kNoticeFraction);
      }
    }
    int reply[2] = {-1, 0};
    if (!queue.empty()) {
      reply[0] = queue.front();
      queue.pop_front();
    } else if (!held.empty()) {
      reply[0] = held.front();
      reply[1] = 1;
      held.pop_front();
    } else {
      --active;
    }
    MPI_Send(reply, 2, MPI_INT, status.MPI_SOURCE, kGiveTag, MPI_COMM_WORLD);
  }
}

void work(OmahaTableRun& run, int threads) {
  int message[2] = {-1, 0};
  for (;;) {
    MPI_Send(message, 2, MPI_INT, 0, kAskTag, MPI_COMM_WORLD);
    int reply[2];
    MPI_Recv(reply, 2, MPI_INT, 0, kGiveTag, MPI_COMM_WORLD, MPI_STATUS_IGNORE);
    if (reply[0] < 0) return;
    message[0] = reply[0];
    message[1] = static_cast<int>(run.compute_unit(reply[0], threads, reply[1] != 0));
  }
}

TableRunOutcome run_ranks(EquityGame game, const OmahaTableOptions& options, const TableProgress& progress) {
  MpiSession session;
  int rank = 0, size = 1;
  MPI_Comm_rank(MPI_COMM_WORLD, &rank);
  MPI_Comm_size(MPI_COMM_WORLD, &size);
  if (size == 1) return {generate_omaha_preflop_table(game, options, progress), true};
  TableRunOutcome outcome;
  outcome.report = rank == 0;
  try {
    OmahaTableRun run(game, options);
    // Rank 0 decides whether there is work and tells the others.
    int go = 1;
    if (rank == 0) go = options.force || !run.table_present();
    MPI_Bcast(&go, 1, MPI_INT, 0, MPI_COMM_WORLD);
    if (!go) return outcome;
    if (rank != 0) {
      work(run, options.threads);
      return outcome;
    }
    coordinate(run, size - 1, progress);
    if (progress) progress(run.table_name(), "merging", 1.0);
    run.merge(options.threads, progress);
    if (progress) progress(run.table_name(), "done", 1.0);
    outcome.written = true;
    return outcome;
  } catch (const std::exception& e) {
    // One rank's failure ends the job; the finished units stay for the next run.
    std::fprintf(stderr, "pokermath (rank %d of %d): error: %s\n", rank, size, e.what());
    MPI_Abort(MPI_COMM_WORLD, 1);
    throw;
  }
}

#endif

}  // namespace

TableRunOutcome make_omaha_preflop_table(EquityGame game, const OmahaTableOptions& options,
                                         const TableProgress& progress) {
  if (launched_by_mpi()) {
#if POKERMATH_WITH_MPI
    return run_ranks(game, options, progress);
#else
    if (progress)
      progress(omaha_preflop_table_name(game, options.deck),
               "this pokermath was built without MPI: each process launched by mpirun works on its own, "
               "sharing the units through the checkpoint directory",
               kNoticeFraction);
#endif
  }
  return {generate_omaha_preflop_table(game, options, progress), true};
}

}  // namespace pokermath::cli

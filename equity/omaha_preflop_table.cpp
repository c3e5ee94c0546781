// The exact Omaha pre-flop tables: runs in checkpointed units, so that the work survives a crash and
// can be shared by processes (threads of one process, ranks of an MPI job, separate runs pointed at
// one checkpoint directory), the merged table file and its loader.
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <bit>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <iterator>
#include <map>
#include <mutex>
#include <sstream>

#include "equity/omaha_preflop.h"
#include "equity/requests.h"
#include "support/data_dir.h"
#include "support/files.h"

namespace fs = std::filesystem;

namespace pokermath::detail {

namespace {

constexpr int kDefaultUnitBoards = 256;
constexpr char kUnitMagic[8] = {'P', 'M', 'O', 'U', 'N', 'I', 'T', '1'};
constexpr char kTableMagic[8] = {'P', 'M', 'O', 'E', 'X', 'C', 'T', '1'};
constexpr size_t kUnitHeaderBytes = 8 + 4 + 4 + 8 + 4 + 4 + 4 + 4;
// magic; hole cards, Hi/Lo, deck, classes, reserved, deals per holding, holdings
constexpr size_t kTableHeaderBytes = 8 + 4 + 4 + 8 + 4 + 4 + 8 + 8;
constexpr size_t kTableRecordBytes = 8 + 4 + 8;  // class mask, holdings, pot in quarters
constexpr uint64_t kFullDeck = (uint64_t{1} << 52) - 1;

uint64_t checksum_of(const char* data, size_t size) {
  Checksum sum;
  sum.update(data, size);
  return sum.digest();
}

// The rank letters of a deck of whole ranks, lowest first ("" for the full deck); throws Error when
// a rank has some of its suits only.
std::string ranks_of(uint64_t deck) {
  if (deck == kFullDeck) return "";
  std::string ranks;
  for (int rank = 0; rank < 13; ++rank) {
    int suits = 0;
    for (int suit = 0; suit < 4; ++suit) suits += static_cast<int>(deck >> (13 * suit + rank) & 1);
    if (suits == 4) ranks += "23456789TJQKA"[rank];
    if (suits != 0 && suits != 4) throw Error("an exact table's deck must hold every suit of each of its ranks");
  }
  return ranks;
}

[[noreturn]] void throw_file_error(const std::string& what, const fs::path& path, int error) {
  throw FileError(what + " '" + path.string() + "': " + std::strerror(error), path, error);
}

// Writes `bytes` to `path` durably (synced to the device), false on any failure.
bool write_synced(const fs::path& path, const std::vector<char>& bytes, int& error) {
  const int fd = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
  if (fd < 0) return error = errno, false;
  size_t written = 0;
  while (written < bytes.size()) {
    const ssize_t n = ::write(fd, bytes.data() + written, bytes.size() - written);
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) {
      error = n < 0 ? errno : ENOSPC;
      ::close(fd);
      return false;
    }
    written += static_cast<size_t>(n);
  }
  if (::fsync(fd) != 0 || ::close(fd) != 0) return error = errno, false;
  return true;
}

// A name for a temporary file no other writer uses: PID, a per-process counter.
std::string temporary_suffix() {
  static std::atomic<uint64_t> counter{0};
  return ".partial-" + std::to_string(::getpid()) + "-" + std::to_string(counter.fetch_add(1));
}

// An exclusive lock on a unit's lock file, released when this object goes away or the process dies.
class UnitLock {
 public:
  UnitLock(const fs::path& path, bool wait) {
    m_fd = ::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0644);
    if (m_fd < 0) throw_file_error("cannot open the unit lock", path, errno);
    int result;
    while ((result = ::flock(m_fd, LOCK_EX | (wait ? 0 : LOCK_NB))) != 0 && errno == EINTR) {
    }
    if (result != 0) {
      const int error = errno;
      ::close(m_fd);
      m_fd = -1;
      if (error != EWOULDBLOCK) throw_file_error("cannot lock", path, error);
    }
  }
  ~UnitLock() {
    if (m_fd >= 0) ::close(m_fd);
  }
  UnitLock(const UnitLock&) = delete;
  UnitLock& operator=(const UnitLock&) = delete;
  bool held() const { return m_fd >= 0; }

 private:
  int m_fd = -1;
};

}  // namespace

// The run behind OmahaTableRun (equity.h describes the checkpoint directory).
class PreflopTableRun {
 public:
  PreflopTableRun(EquityGame game, const OmahaTableOptions& options);

  int units() const { return m_units; }
  const std::string& table_name() const { return m_name; }
  const std::filesystem::path& table_dir() const { return m_dir; }
  const std::filesystem::path& checkpoint() const { return m_checkpoint; }

  bool table_present() const;
  bool unit_done(int unit) const;

  bool unit_damaged(int unit) const;

  using UnitResult = OmahaTableRun::UnitResult;
  UnitResult compute_unit(int unit, int threads, bool wait, std::stop_token stop);
  int merge(int threads, const TableProgress& progress);

 private:
  std::filesystem::path unit_path(int unit) const;
  std::vector<char> unit_header(int unit) const;
  // The unit's pots read back from its file, or empty when the file is missing or damaged.
  std::vector<int64_t> read_unit(int unit) const;
  void open_checkpoint() const;

  mutable std::once_flag m_opened;
  PreflopProblem m_problem;
  HoldingClasses m_holdings;
  std::vector<BoardClass> m_boards;
  int m_unit_boards;
  int m_units;
  std::string m_name;
  std::filesystem::path m_dir, m_checkpoint;
};

PreflopTableRun::PreflopTableRun(EquityGame game, const OmahaTableOptions& options)
    : m_problem(preflop_problem(game, options.deck)),
      m_holdings(m_problem),
      m_boards(preflop_board_classes(m_problem)),
      m_unit_boards(options.unit_boards == 0 ? kDefaultUnitBoards : options.unit_boards),
      m_units(0),
      m_name(omaha_preflop_table_name(game, options.deck)),
      m_dir(options.dir.empty() ? default_data_directory() : options.dir),
      m_checkpoint(options.checkpoint.empty() ? m_dir / (m_name + ".units") : options.checkpoint) {
  if (options.unit_boards < 0) throw Error("a unit must hold at least one board class");
  if (options.threads < 0)
    throw Error("threads must be 0 (every core) or more, got " + std::to_string(options.threads));
  m_units =
      static_cast<int>((m_boards.size() + static_cast<size_t>(m_unit_boards) - 1) / static_cast<size_t>(m_unit_boards));
}

// Creates the checkpoint directory and records what its units are of, or checks the record there,
// on the first look at a unit: a run that finds its table made never touches the directory.
void PreflopTableRun::open_checkpoint() const {
  std::call_once(m_opened, [this] {
    std::error_code ec;
    fs::create_directories(m_checkpoint, ec);
    if (ec) throw_file_error("cannot create the checkpoint directory", m_checkpoint, ec.value());
    char deck[32];
    std::snprintf(deck, sizeof deck, "0x%013llx", static_cast<unsigned long long>(m_problem.deck));
    std::ostringstream description;
    description << "pokermath exact Omaha pre-flop units\ntable " << m_name << "\ndeck " << deck << "\nunit-boards "
                << m_unit_boards << "\nunits " << m_units << "\n";
    const std::string text = description.str();
    const fs::path path = m_checkpoint / "checkpoint.txt";
    // Written under a name of its own and linked into place: link() never replaces a description
    // another run wrote first.
    const fs::path temporary = path.string() + temporary_suffix();
    int error = 0;
    if (!write_synced(temporary, std::vector<char>(text.begin(), text.end()), error))
      throw_file_error("cannot write into the checkpoint directory", m_checkpoint, error);
    const int linked = ::link(temporary.c_str(), path.c_str());
    error = errno;
    fs::remove(temporary, ec);
    if (linked != 0 && error != EEXIST) throw_file_error("cannot write", path, error);
    std::vector<char> present;
    if (!read_regular_file(path, present)) throw_file_error("cannot read", path, open_error(path));
    if (std::string(present.begin(), present.end()) != text)
      throw Error("the checkpoint directory '" + m_checkpoint.string() +
                  "' holds the units of another run (its checkpoint.txt differs: another game, deck or "
                  "--unit-boards); point --checkpoint elsewhere or empty it");
  });
}

bool PreflopTableRun::table_present() const { return table_problem(m_dir, m_name).empty(); }

fs::path PreflopTableRun::unit_path(int unit) const {
  char name[32];
  std::snprintf(name, sizeof name, "unit-%06d.bin", unit);
  return m_checkpoint / name;
}

std::vector<char> PreflopTableRun::unit_header(int unit) const {
  std::vector<char> out(kUnitMagic, kUnitMagic + 8);
  put_le(out, static_cast<uint64_t>(m_problem.hole), 4);
  put_le(out, m_problem.hi_lo ? 1 : 0, 4);
  put_le(out, m_problem.deck, 8);
  put_le(out, static_cast<uint64_t>(m_unit_boards), 4);
  put_le(out, static_cast<uint64_t>(unit), 4);
  put_le(out, m_holdings.classes().size(), 4);
  put_le(out, static_cast<uint64_t>(m_units), 4);
  return out;
}

std::vector<int64_t> PreflopTableRun::read_unit(int unit) const {
  open_checkpoint();
  std::vector<char> bytes;
  const size_t classes = m_holdings.classes().size();
  if (!read_regular_file(unit_path(unit), bytes) || bytes.size() != kUnitHeaderBytes + 8 * classes + 8) return {};
  const std::vector<char> header = unit_header(unit);
  if (!std::equal(header.begin(), header.end(), bytes.begin())) return {};
  if (checksum_of(bytes.data(), bytes.size() - 8) != get_le(&bytes[bytes.size() - 8], 8)) return {};
  std::vector<int64_t> pot(classes);
  for (size_t i = 0; i < classes; ++i) pot[i] = static_cast<int64_t>(get_le(&bytes[kUnitHeaderBytes + 8 * i], 8));
  return pot;
}

bool PreflopTableRun::unit_done(int unit) const { return !read_unit(unit).empty(); }

bool PreflopTableRun::unit_damaged(int unit) const {
  std::error_code ec;
  return fs::exists(unit_path(unit), ec) && !unit_done(unit);
}

PreflopTableRun::UnitResult PreflopTableRun::compute_unit(int unit, int threads, bool wait, std::stop_token stop) {
  if (unit < 0 || unit >= m_units) throw Error("no unit " + std::to_string(unit));
  if (unit_done(unit)) return UnitResult::AlreadyDone;
  const fs::path path = unit_path(unit);
  const UnitLock lock(path.string() + ".lock", wait);
  if (!lock.held()) return UnitResult::Busy;
  if (unit_done(unit)) return UnitResult::AlreadyDone;  // finished while this process waited
  // Temporary files of this unit belong to writers that died holding its lock: nobody writes them now.
  std::error_code ec;
  const std::string stem = path.filename().string() + ".partial-";
  for (const fs::directory_entry& entry : fs::directory_iterator(m_checkpoint, ec))
    if (entry.path().filename().string().starts_with(stem)) fs::remove(entry.path(), ec);

  RunControl control;
  control.threads = threads_for(threads);
  control.stop = std::move(stop);
  const size_t first = static_cast<size_t>(unit) * static_cast<size_t>(m_unit_boards);
  const size_t last = std::min(m_boards.size(), first + static_cast<size_t>(m_unit_boards));
  const std::vector<int64_t> pot = count_preflop_range(m_problem, m_holdings, m_boards, first, last, control);

  std::vector<char> bytes = unit_header(unit);
  for (int64_t p : pot) put_le(bytes, static_cast<uint64_t>(p), 8);
  put_le(bytes, checksum_of(bytes.data(), bytes.size()), 8);
  const fs::path temporary = path.string() + temporary_suffix();
  int error = 0;
  if (!write_synced(temporary, bytes, error)) {
    fs::remove(temporary, ec);
    throw_file_error("cannot write the unit", temporary, error);
  }
  fs::rename(temporary, path, ec);
  if (ec) {
    fs::remove(temporary, ec);
    throw_file_error("cannot write the unit", path, ec.value());
  }
  return UnitResult::Computed;
}

int PreflopTableRun::merge(int threads, const TableProgress& progress) {
  const size_t classes = m_holdings.classes().size();
  std::vector<int64_t> total(classes, 0);
  int redone = 0;
  open_checkpoint();
  // Temporary unit files whose unit nobody holds were left by writers that died.
  std::error_code ec;
  for (const fs::directory_entry& entry : fs::directory_iterator(m_checkpoint, ec)) {
    const std::string name = entry.path().filename().string();
    const size_t partial = name.find(".bin.partial-");
    if (!name.starts_with("unit-") || partial == std::string::npos) continue;
    const UnitLock lock(m_checkpoint / (name.substr(0, partial) + ".bin.lock"), false);
    if (lock.held()) fs::remove(entry.path(), ec);
  }
  for (int unit = 0; unit < m_units; ++unit) {
    std::vector<int64_t> pot = read_unit(unit);
    if (pot.empty()) {
      if (progress)
        progress(m_name,
                 "unit " + std::to_string(unit) + " of the checkpoint is missing or damaged: computing it again",
                 kNoticeFraction);
      compute_unit(unit, threads, true, {});
      pot = read_unit(unit);
      if (pot.empty())
        throw Error("unit " + std::to_string(unit) + " cannot be read back from '" + m_checkpoint.string() + "'");
      ++redone;
    }
    for (size_t i = 0; i < classes; ++i) total[i] += pot[i];
  }

  std::vector<char> bytes(kTableMagic, kTableMagic + 8);
  put_le(bytes, static_cast<uint64_t>(m_problem.hole), 4);
  put_le(bytes, m_problem.hi_lo ? 1 : 0, 4);
  put_le(bytes, m_problem.deck, 8);
  put_le(bytes, classes, 4);
  put_le(bytes, 0, 4);
  put_le(bytes, static_cast<uint64_t>(m_problem.deals_per_holding()), 8);
  uint64_t holdings = 0;
  for (uint32_t size : m_holdings.sizes()) holdings += size;
  put_le(bytes, holdings, 8);
  for (size_t i = 0; i < classes; ++i) {
    put_le(bytes, m_holdings.classes()[i], 8);
    put_le(bytes, m_holdings.sizes()[i], 4);
    put_le(bytes, static_cast<uint64_t>(total[i]), 8);
  }
  put_le(bytes, checksum_of(bytes.data(), bytes.size()), 8);
  write_table(m_dir, m_name, bytes.size(), [&](const fs::path& temporary) {
    int error = 0;
    return write_synced(temporary, bytes, error);
  });
  return redone;
}

namespace {

// The table in `bytes`, or why it cannot be used.
std::string decode_table(const std::vector<char>& bytes, EquityGame game, const PreflopProblem& problem,
                         std::shared_ptr<const OmahaPreflopTable>& out) {
  if (bytes.size() < kTableHeaderBytes + 8) return "it is too short";
  const uint64_t classes = get_le(&bytes[24], 4);
  if (bytes.size() != kTableHeaderBytes + classes * kTableRecordBytes + 8) return "its size does not match its header";
  if (!std::equal(kTableMagic, kTableMagic + 8, bytes.data()) ||
      get_le(&bytes[8], 4) != static_cast<uint64_t>(problem.hole) ||
      get_le(&bytes[12], 4) != (problem.hi_lo ? 1u : 0u) || get_le(&bytes[16], 8) != problem.deck)
    return "its header is not that of this table";
  const uint64_t checksum = get_le(&bytes[bytes.size() - 8], 8);
  if (checksum_of(bytes.data(), bytes.size() - 8) != checksum) return "its checksum does not match its content";
  const uint64_t deals = get_le(&bytes[32], 8);
  const uint64_t all_holdings = get_le(&bytes[40], 8);
  if (deals != static_cast<uint64_t>(problem.deals_per_holding())) return "its header is not that of this table";

  struct Record {
    uint64_t mask;
    uint32_t holdings;
    int64_t quarters;
  };
  std::vector<Record> records(classes);
  uint64_t counted = 0;
  for (uint64_t i = 0; i < classes; ++i) {
    const char* p = &bytes[kTableHeaderBytes + i * kTableRecordBytes];
    Record& r = records[i];
    r = {get_le(p, 8), static_cast<uint32_t>(get_le(p + 8, 4)), static_cast<int64_t>(get_le(p + 12, 8))};
    if (std::popcount(r.mask) != problem.hole || (r.mask & ~problem.deck) || omaha_suit_class(r.mask) != r.mask ||
        (i > 0 && r.mask <= records[i - 1].mask) || r.holdings == 0 || r.holdings > 24 || r.quarters < 0 ||
        static_cast<unsigned __int128>(r.quarters) > static_cast<unsigned __int128>(4) * r.holdings * deals)
      return "record " + std::to_string(i + 1) + " is not a class of holdings with its pot";
    counted += r.holdings;
  }
  if (counted != all_holdings) return "its classes do not add up to every holding";

  // Strongest first, comparing the exact ratios quarters / holdings.
  std::vector<uint32_t> order(classes);
  for (uint32_t i = 0; i < classes; ++i) order[i] = i;
  const auto stronger = [&](uint32_t a, uint32_t b) {
    const __int128 left = static_cast<__int128>(records[a].quarters) * records[b].holdings;
    const __int128 right = static_cast<__int128>(records[b].quarters) * records[a].holdings;
    return left != right ? left > right : records[a].mask < records[b].mask;
  };
  const auto same = [&](uint32_t a, uint32_t b) {
    return static_cast<__int128>(records[a].quarters) * records[b].holdings ==
           static_cast<__int128>(records[b].quarters) * records[a].holdings;
  };
  std::sort(order.begin(), order.end(), stronger);
  std::vector<OmahaPreflopTable::Entry> entries(classes);
  // Ranks go down the order; the percentile counts the holdings of weaker classes, so walk it back.
  for (size_t i = 0; i < classes; ++i) {
    const Record& r = records[order[i]];
    OmahaPreflopTable::Entry& e = entries[i];
    e.holding_class = r.mask;
    e.holdings = r.holdings;
    e.equity = static_cast<double>(r.quarters) / (4.0 * r.holdings * static_cast<double>(deals));
    e.rank = i > 0 && same(order[i], order[i - 1]) ? entries[i - 1].rank : static_cast<uint32_t>(i + 1);
  }
  uint64_t weaker = 0;
  for (size_t end = classes; end > 0;) {
    size_t begin = end - 1;
    while (begin > 0 && same(order[begin - 1], order[end - 1])) --begin;
    uint64_t tied = 0;
    for (size_t i = begin; i < end; ++i) {
      entries[i].percentile = 100.0 * static_cast<double>(weaker) / static_cast<double>(all_holdings);
      tied += entries[i].holdings;
    }
    weaker += tied;
    end = begin;
  }
  out = std::make_shared<OmahaPreflopTable>(game, problem.deck, checksum, std::move(entries));
  return {};
}

}  // namespace

}  // namespace pokermath::detail

namespace pokermath {

using namespace detail;

std::string omaha_preflop_table_name(EquityGame game, uint64_t deck) {
  const OmahaGame g = omaha_game(game);
  const std::string ranks = ranks_of(deck & kFullDeck);
  return "omaha" + std::to_string(g.hole) + (g.hi_lo ? "-hilo" : "") + "-preflop" + (ranks.empty() ? "" : "-" + ranks) +
         ".bin";
}

OmahaTableRun::OmahaTableRun(EquityGame game, const OmahaTableOptions& options)
    : m_run(std::make_unique<PreflopTableRun>(game, options)) {}
OmahaTableRun::~OmahaTableRun() = default;
int OmahaTableRun::units() const { return m_run->units(); }
const std::string& OmahaTableRun::table_name() const { return m_run->table_name(); }
const fs::path& OmahaTableRun::table_dir() const { return m_run->table_dir(); }
const fs::path& OmahaTableRun::checkpoint() const { return m_run->checkpoint(); }
bool OmahaTableRun::table_present() const { return m_run->table_present(); }
bool OmahaTableRun::unit_done(int unit) const { return m_run->unit_done(unit); }
bool OmahaTableRun::unit_damaged(int unit) const { return m_run->unit_damaged(unit); }
OmahaTableRun::UnitResult OmahaTableRun::compute_unit(int unit, int threads, bool wait, std::stop_token stop) {
  return m_run->compute_unit(unit, threads, wait, std::move(stop));
}
int OmahaTableRun::merge(int threads, const TableProgress& progress) { return m_run->merge(threads, progress); }

bool generate_omaha_preflop_table(EquityGame game, const OmahaTableOptions& options, const TableProgress& progress,
                                  std::stop_token stop) {
  OmahaTableRun run(game, options);
  const std::string& name = run.table_name();
  if (!options.force) {
    const std::string problem = table_problem(run.table_dir(), name);
    if (problem.empty()) return false;
    if (problem != "missing") report_damaged(progress, run.table_dir(), name, problem, "making it again");
  }
  check_writable(run.table_dir(), name, 0);
  auto report = [&](std::string_view stage, double fraction) {
    if (progress) progress(name, stage, fraction);
  };
  int done = 0;
  for (int unit = 0; unit < run.units(); ++unit) {
    if (run.unit_done(unit))
      ++done;
    else if (run.unit_damaged(unit) && progress)
      progress(
          name,
          "unit " + std::to_string(unit) + " in '" + run.checkpoint().string() + "' is damaged: computing it again",
          kNoticeFraction);
  }
  if (done > 0 && progress)
    progress(name,
             "resuming from '" + run.checkpoint().string() + "': " + std::to_string(done) + " of " +
                 std::to_string(run.units()) + " units are done",
             kNoticeFraction);
  // Units other processes hold are left for last and then waited for, so that runs sharing the
  // checkpoint directory each take the units nobody has.
  std::vector<int> busy;
  for (int unit = 0; unit < run.units(); ++unit) {
    if (stop.stop_requested()) throw Cancelled();
    const auto result = run.compute_unit(unit, options.threads, false, stop);
    if (result == OmahaTableRun::UnitResult::Busy) busy.push_back(unit);
    if (result == OmahaTableRun::UnitResult::Computed) report("units", static_cast<double>(++done) / run.units());
  }
  for (int unit : busy) {
    if (stop.stop_requested()) throw Cancelled();
    run.compute_unit(unit, options.threads, true, stop);
    report("units", static_cast<double>(++done) / run.units());
  }
  report("merging", 1.0);
  run.merge(options.threads, progress);
  report("done", 1.0);
  return true;
}

OmahaPreflopTable::OmahaPreflopTable(EquityGame game, uint64_t deck, uint64_t checksum, std::vector<Entry> entries)
    : m_game(game), m_deck(deck), m_checksum(checksum), m_entries(std::move(entries)) {
  m_index.reserve(m_entries.size());
  for (uint32_t i = 0; i < m_entries.size(); ++i) m_index.emplace_back(m_entries[i].holding_class, i);
  std::sort(m_index.begin(), m_index.end());
}

const OmahaPreflopTable::Entry& OmahaPreflopTable::lookup(uint64_t holding) const {
  const int hole = omaha_game(m_game).hole;
  if (std::popcount(holding) != hole || (holding & ~m_deck))
    throw Error("the table answers holdings of " + std::to_string(hole) + " cards" +
                (m_deck == kFullDeck ? "" : " of the ranks " + ranks_of(m_deck)));
  const uint64_t klass = omaha_suit_class(holding);
  const auto it = std::lower_bound(m_index.begin(), m_index.end(), std::pair<uint64_t, uint32_t>{klass, 0});
  if (it == m_index.end() || it->first != klass) throw Error("the table has no class for this holding");
  return m_entries[it->second];
}

std::shared_ptr<const OmahaPreflopTable> omaha_preflop_table(EquityGame game, const fs::path& dir_in, uint64_t deck) {
  const PreflopProblem problem = preflop_problem(game, deck);
  const std::string name = omaha_preflop_table_name(game, deck);
  const fs::path dir = dir_in.empty() ? default_data_directory() : dir_in;
  static std::mutex mutex;
  static std::map<std::pair<std::string, std::string>, std::shared_ptr<const OmahaPreflopTable>> cache;
  const std::lock_guard lock(mutex);
  const auto key = std::make_pair(dir.string(), name);
  if (const auto it = cache.find(key); it != cache.end()) return it->second;

  const fs::path path = dir / name;
  const OmahaGame g = omaha_game(game);
  const std::string make = "pokermath tables --omaha-preflop " + std::to_string(g.hole) + (g.hi_lo ? " --hilo" : "");
  std::vector<char> bytes;
  if (!read_regular_file(path, bytes)) {
    if (const int error = open_error(path); error != ENOENT && error != 0)
      throw FileError("cannot read the exact table '" + path.string() + "': " + std::strerror(error), path, error);
    throw Error("no exact table '" + path.string() + "': make it with " + make + " (see docs/scale-out.md)");
  }
  std::string problem_text =
      table_problem(dir, name, ManifestEntry{bytes.size(), checksum_of(bytes.data(), bytes.size())});
  std::shared_ptr<const OmahaPreflopTable> table;
  if (problem_text.empty()) problem_text = decode_table(bytes, game, problem, table);
  if (!problem_text.empty())
    throw Error("the exact table '" + path.string() + "' is damaged (" + problem_text + "): make it again with " +
                make + " --force");
  return cache[key] = table;
}

}  // namespace pokermath

// The pokermath:: side of the table files: where they live, whether they are valid, generating
// them with progress, and loading them for the classic evaluators.
#include <cstdlib>
#include <memory>

#include "eval/state_machine_files.h"
#include "support/data_dir.h"
#include "support/files.h"
#include "pokermath/eval.h"

namespace pokermath {

namespace {

using detail::StateMachineFile;

constexpr TableFile kAll[] = {TableFile::Texas7, TableFile::Omaha7, TableFile::SixPlus5, TableFile::SixPlus7,
                              TableFile::SevenCardLookup};

const StateMachineFile* machine_file(TableFile file) {
  switch (file) {
    case TableFile::Texas7: return &detail::kTexas7File;
    case TableFile::Omaha7: return &detail::kOmaha7File;
    case TableFile::SixPlus5: return &detail::kSixPlus5File;
    case TableFile::SixPlus7: return &detail::kSixPlus7File;
    case TableFile::SevenCardLookup: return nullptr;
  }
  return nullptr;
}

std::wstring wide_path(const std::filesystem::path& dir, TableFile file) {
  return widen((dir / std::string(table_file_name(file))).string());
}

// The size of each file, for the free-space check before it is generated.
uint64_t expected_bytes(TableFile file) {
  switch (file) {
    case TableFile::Texas7: return 113585296;
    case TableFile::Omaha7: return 311201104;
    case TableFile::SixPlus5: return 248720;
    case TableFile::SixPlus7: return 10538096;
    case TableFile::SevenCardLookup: return uint64_t{PokerLogic::kTableEntries} * 4;
  }
  return 0;
}

detail::StateMachine build_machine(TableFile file, const detail::BuildProgress& progress) {
  switch (file) {
    case TableFile::Texas7: return detail::build_holdem_machine(52, 7, progress);
    case TableFile::Omaha7: return detail::build_omaha_machine(progress);
    case TableFile::SixPlus5: return detail::build_holdem_machine(36, 5, progress);
    default: return detail::build_holdem_machine(36, 7, progress);
  }
}

}  // namespace

std::vector<TableFile> all_table_files() { return {std::begin(kAll), std::end(kAll)}; }

std::string_view table_file_name(TableFile file) {
  switch (file) {
    case TableFile::Texas7: return "texas-7.bin";
    case TableFile::Omaha7: return "omaha-7.bin";
    case TableFile::SixPlus5: return "six-plus-5.bin";
    case TableFile::SixPlus7: return "six-plus-7.bin";
    case TableFile::SevenCardLookup: return "OrvalisHR.dat";
  }
  return "";
}

TableFile table_file_from_name(std::string_view name) {
  std::string known;
  for (TableFile file : kAll) {
    if (table_file_name(file) == name) return file;
    known += (known.empty() ? "" : ", ") + std::string(table_file_name(file));
  }
  throw Error("unknown table '" + std::string(name) + "': the tables are " + known);
}

std::filesystem::path default_data_directory() {
  if (const char* dir = std::getenv("POKERMATH_DATA_DIR"); dir && *dir) return dir;
  if (const char* cache = std::getenv("XDG_CACHE_HOME"); cache && *cache)
    return std::filesystem::path(cache) / "pokermath";
  if (const char* home = std::getenv("HOME"); home && *home)
    return std::filesystem::path(home) / ".cache" / "pokermath";
  return std::filesystem::current_path() / "pokermath-data";
}

bool table_file_valid(const std::filesystem::path& dir, TableFile file) {
  if (!detail::table_problem(dir, table_file_name(file)).empty()) return false;
  const StateMachineFile* machine = machine_file(file);
  return !machine || detail::state_machine_file_valid(wide_path(dir, file), *machine);
}

bool generate_table_file(const std::filesystem::path& dir, TableFile file, bool force, const TableProgress& progress) {
  const std::string name(table_file_name(file));
  if (!force) {
    const std::string problem = detail::table_problem(dir, name);
    if (problem.empty()) return false;
    if (problem != "missing") detail::report_damaged(progress, dir, name, problem, "generating it again");
  }
  auto report = [&](const std::string& stage, double fraction) {
    if (progress) progress(name, stage, fraction);
  };
  detail::write_table(dir, name, expected_bytes(file), [&](const std::filesystem::path& temporary) {
    if (const StateMachineFile* machine = machine_file(file)) {
      const detail::StateMachine table = build_machine(file, report);
      report("writing", 1.0);
      return detail::save_state_machine(widen(temporary.string()), *machine, table);
    }
    report("generating", 0.0);
    auto logic = std::make_unique<PokerLogic>();
    return logic->generate_table(widen(temporary.string())) == 0;
  });
  report("done", 1.0);
  return true;
}

void load_table(TableFile file, const std::filesystem::path& dir, const TableProgress& progress) {
  const StateMachineFile* machine = machine_file(file);
  if (!machine) throw Error("OrvalisHR.dat is loaded by PokerLogic::generate_table, not load_table");
  {
    std::lock_guard lock(detail::state_machine_mutex());
    if (detail::state_machine_slot(*machine)) return;
  }
  // Two threads may both find the file missing and write it: each writes a whole file and renames
  // it into place, and the slot is filled once.
  generate_table_file(dir, file, false, progress);
  if (!detail::load_state_machine_slot(wide_path(dir, file), *machine)) {
    const std::filesystem::path path = dir / std::string(table_file_name(file));
    const std::string message = "cannot load the table file '" + path.string() + "'";
    // The file matched its manifest a moment ago: one the system will not open (permissions, or
    // removed since) is a file-system failure; one that opens was refused for what it holds.
    if (const int error = detail::open_error(path)) throw FileError(message, path, error);
    throw Error(message);
  }
}

}  // namespace pokermath

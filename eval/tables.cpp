// The pokermath:: side of the table files: where they live, whether they are valid, generating
// them with progress, and loading them for the classic evaluators.
#include <cstdlib>
#include <memory>

#include "eval/state_machine_files.h"
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
  const std::wstring path = wide_path(dir, file);
  if (const StateMachineFile* machine = machine_file(file)) return detail::state_machine_file_valid(path, *machine);
  return file_size(path) == int64_t{PokerLogic::kTableEntries} * 4;
}

bool generate_table_file(const std::filesystem::path& dir, TableFile file, bool force, const TableProgress& progress) {
  if (!force && table_file_valid(dir, file)) return false;
  std::error_code ec;
  std::filesystem::create_directories(dir, ec);
  if (ec) throw Error("cannot create the data directory '" + dir.string() + "': " + ec.message());
  const std::string name(table_file_name(file));
  auto report = [&](const std::string& stage, double fraction) {
    if (progress) progress(name, stage, fraction);
  };
  // Written under a temporary name and renamed, so that a reader never sees a half-written table.
  const std::filesystem::path final_path = dir / name, temp_path = dir / (name + ".partial");
  bool written;
  if (const StateMachineFile* machine = machine_file(file)) {
    const detail::StateMachine table = build_machine(file, report);
    report("writing", 1.0);
    written = detail::save_state_machine(widen(temp_path.string()), *machine, table);
  } else {
    report("generating", 0.0);
    auto logic = std::make_unique<PokerLogic>();
    written = logic->generate_table(widen(temp_path.string())) == 0;
  }
  if (written) std::filesystem::rename(temp_path, final_path, ec);
  if (!written || ec) {
    std::filesystem::remove(temp_path, ec);
    throw Error("cannot write the table file '" + final_path.string() + "'");
  }
  report("done", 1.0);
  return true;
}

void load_table(TableFile file, const std::filesystem::path& dir, const TableProgress& progress) {
  const StateMachineFile* machine = machine_file(file);
  if (!machine) throw Error("OrvalisHR.dat is loaded by PokerLogic::generate_table, not load_table");
  if (detail::state_machine_slot(*machine)) return;
  generate_table_file(dir, file, false, progress);
  if (!detail::load_state_machine_slot(wide_path(dir, file), *machine))
    throw Error("cannot load the table file '" + (dir / std::string(table_file_name(file))).string() + "'");
}

}  // namespace pokermath

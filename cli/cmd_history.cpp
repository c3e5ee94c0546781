// pokermath history FILE [--from POS]: the new lines of a hand-history file and where to resume.
#include <iostream>
#include <nlohmann/json.hpp>

#include "commands.h"
#include "pokermath/pokermath.h"

namespace pokermath::cli {

namespace {

struct HistoryOptions {
  std::string file;
  int64_t from = 0;
  bool include_partial = false;
  bool json = false;
};

void run_history(const HistoryOptions& options) {
  const HistoryLines read =
      read_history(options.file, options.from, options.include_partial ? PartialLine::Include : PartialLine::Hold);
  if (options.json) {
    const nlohmann::ordered_json out = {
        {"file", options.file},          {"from", options.from},
        {"position", read.position},     {"encoding", std::string(encoding_name(read.encoding))},
        {"held_bytes", read.held_bytes}, {"lines", read.lines}};
    std::cout << out.dump(2) << "\n";
    return;
  }
  for (const std::string& line : read.lines) std::cout << line << "\n";
  std::cout << "-- " << read.lines.size() << (read.lines.size() == 1 ? " line" : " lines") << " ("
            << encoding_name(read.encoding) << "); resume with --from " << read.position << "\n";
  // The resume offset never points inside a character: with --include-partial only half a UTF-16
  // code unit can be left over, and the next run reads it once its other byte is written.
  if (read.held_bytes > 0 && options.include_partial) {
    std::cout << "-- the last byte is half a UTF-16 character, held back until the rest is written\n";
  } else if (read.held_bytes > 0) {
    std::cout << "-- the last " << read.held_bytes << (read.held_bytes == 1 ? " byte is" : " bytes are")
              << " an unfinished line, held back until its line end is written\n";
  }
}

}  // namespace

void add_history_command(CLI::App& app) {
  auto options = std::make_shared<HistoryOptions>();
  CLI::App* history = app.add_subcommand("history", "Print the new lines of a hand-history file");
  history->footer(
      "Prints the non-blank lines (trimmed) from byte offset POS to the end of the file, then the\n"
      "offset to pass as --from next time, so a file that a poker client is still writing can be\n"
      "followed. The encoding is detected: UTF-8 with or without byte-order mark, UTF-16 LE or BE\n"
      "with byte-order mark, else the narrow code page. A last line without its line end is held\n"
      "back for the next call unless --include-partial is given (the offset printed is then the end\n"
      "of the file, or before half a UTF-16 character the writer has not finished).\n\n"
      "Examples:\n"
      "  pokermath history HH20240101.txt\n"
      "  pokermath history HH20240101.txt --from 18230 --json");
  history->add_option("file", options->file, "The hand-history file")->required();
  history->add_option("--from", options->from, "Byte offset to start from (default 0, the start)");
  history->add_flag("--include-partial", options->include_partial,
                    "Also print a last line that has no line end yet (the file is complete)");
  history->add_flag("--json", options->json, "Print one JSON object");
  history->callback([options] { run_history(*options); });
}

}  // namespace pokermath::cli

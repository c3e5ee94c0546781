// pokermath range: a range expression, a built-in table entry or a range file's top classes,
// shown as the class matrix, the number of combinations and the canonical range string.
#include <algorithm>
#include <cctype>
#include <cstdio>
#include <iostream>
#include <limits>
#include <nlohmann/json.hpp>

#include "commands.h"
#include "pokermath/pokermath.h"
#include "pictures.h"
#include "progress.h"

namespace pokermath::cli {

namespace {

struct RangeOptions {
  std::vector<std::string> expression;
  double top = 0;
  bool has_top = false;
  std::string table;
  std::string file;
  bool short_deck = false;
  bool json = false;
  std::string game = "holdem";
  std::string data_dir;
  std::string svg;
};

// What is shown: the range and where it came from.
struct Shown {
  Spec range;
  WeightedRange weighted;  // the range with its weights (100 where none was given)
  bool short_deck = false;
  nlohmann::ordered_json source = nlohmann::ordered_json::object();  // JSON fields of the source
  std::vector<std::pair<std::string, std::string>> lines;            // text lines of the source
};

std::string format(const char* pattern, double value) {
  char text[64];
  std::snprintf(text, sizeof text, pattern, value);
  return text;
}

// The short deck has ranks 6 to A. An expression item that names a lower rank ("AA-55", "A2s+",
// "5s4s") is refused rather than cut down to what is left of it; "random" and "any" stand for every
// short-deck combination. Items are split as parse_range splits them, so positions agree.
void check_short_deck_items(std::string_view text) {
  constexpr int kRankSix = 4;  // rank index of the 6 (2 is 0)
  const auto separator = [](char c) { return c == ',' || std::isspace(static_cast<unsigned char>(c)) != 0; };
  int position = 0;
  for (size_t i = 0, end = 0; i < text.size(); i = end) {
    if (separator(text[i])) {
      end = i + 1;
      continue;
    }
    for (end = i; end < text.size() && !separator(text[end]);) ++end;
    const std::string_view item = text.substr(i, end - i);
    ++position;
    std::string lower(item);
    for (char& c : lower) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    if (lower == "random" || lower == "any") continue;
    for (const auto& [a, b] : parse_range(item.substr(0, item.find('@'))).m_hands) {
      if (a % 13 >= kRankSix && b % 13 >= kRankSix) continue;
      throw Error("range item '" + std::string(item) + "' at position " + std::to_string(position) +
                  " names a rank below 6: the short deck has ranks 6 to A");
    }
  }
}

RangeTable table_of(const RangeOptions& options) {
  if (options.table == "groups" || options.table == "brenmark") {
    if (options.short_deck)
      throw Error("the " + options.table + " table is Hold'em only; --short-deck goes with the equity table or --file");
    return options.table == "groups" ? RangeTable::Groups : RangeTable::Brenmark;
  }
  return options.short_deck ? RangeTable::ShortDeckEquity : RangeTable::Equity;
}

Shown from_options(const RangeOptions& options) {
  Shown shown;
  shown.short_deck = options.short_deck;
  if (!options.expression.empty()) {
    std::string text;
    for (const std::string& part : options.expression) text.append(text.empty() ? "" : " ").append(part);
    if (text.find_first_not_of(", \t\n") == std::string::npos) throw Error("the range expression is empty");
    shown.weighted = parse_weighted_range(text);
    shown.range = shown.weighted.to_spec();
    if (options.short_deck) check_short_deck_items(text);
    shown.source["expression"] = text;
    return shown;
  }
  if (!options.has_top) throw Error("give a range expression, or --top P (see pokermath range --help)");
  if (!options.file.empty()) {
    std::array<double, 169> weights{};
    const Spec source =
        read_range_file(options.file, options.short_deck ? RangeGame::ShortDeck : RangeGame::Holdem, weights);
    shown.weighted = range_by_percent(source, options.top, weights);
    shown.range = shown.weighted.to_spec();
    shown.source = {{"file", options.file}, {"top", options.top}};
    shown.lines = {{"file", escape_unprintable(options.file)}, {"top", format("%g%%", options.top)}};
    return shown;
  }
  const RangeTable table = table_of(options);
  const std::string name = options.table.empty() ? "equity" : options.table;
  TableRange entry = table_range(table, options.top);
  shown.range = std::move(entry.range);
  shown.weighted = WeightedRange(shown.range);
  shown.source = {{"table", name}, {"top", options.top}, {"key", entry.key}, {"text", entry.text}};
  shown.lines = {
      {"table", name + (options.short_deck ? " (short deck)" : "")},
      {"entry", format("%g%%", entry.key) +
                    (entry.key <= options.top ? " (the largest at or below " : " (the first; none at or below ") +
                    format("%g%%", options.top) + ")"},
      {"table text", entry.text}};
  return shown;
}

// The classes of the matrix that are shown: A..2, or A..6 for the short deck.
int matrix_size(bool short_deck) { return short_deck ? 9 : 13; }

// The share of each class's combinations the range holds, weighted (NaN for a class it lacks): the
// values of the weight grid.
void print_text(const Shown& shown, const std::array<int, 169>& counts, int combos, int total) {
  std::vector<std::pair<std::string, std::string>> lines = shown.lines;
  const bool weighted = shown.weighted.weighted();
  lines.emplace_back("range", weighted ? shown.weighted.text() : range_to_string(shown.range, shown.short_deck));
  lines.emplace_back("combinations", std::to_string(combos) + " of " + std::to_string(total) + " (" +
                                         format("%.2f%%", combos * 100.0 / total) + ")");
  if (weighted)
    lines.emplace_back("weight", format("%.2f", shown.weighted.total_weight()) + " combinations' worth (" +
                                     format("%.2f%%", shown.weighted.total_weight() * 100.0 / total) + ")");
  for (const auto& [label, value] : lines)
    std::cout << label << ":" << std::string(14 - label.size() - 1, ' ') << value << "\n";
  std::cout << "\n";
  // On a terminal the Hold'em grid is drawn in color, each class by the share of it held.
  if (!shown.short_deck && stdout_is_terminal()) {
    std::cout << range_grid_terminal(shown.weighted.class_shares(), GridScale::Weight, true);
    return;
  }

  bool partial = false;
  const int size = matrix_size(shown.short_deck);
  for (int row = 0; row < size; ++row) {
    std::string line;
    for (int column = 0; column < size; ++column) {
      const int cell = 13 * row + column;
      std::string mark = counts[cell] == 0 ? "." : hand_class_name(cell);
      if (counts[cell] != 0 && counts[cell] < hand_class_combos(cell)) {
        mark += '*';
        partial = true;
      }
      line += mark + (column + 1 < size ? std::string(5 - mark.size(), ' ') : "");
    }
    std::cout << line << "\n";
  }
  std::cout << "\nsuited above the diagonal, offsuit below";
  if (partial) std::cout << "; * marks a class held only in part";
  std::cout << "\n";
}

// An Omaha range: its holdings, their share of all holdings, the hand types and a sample.
void run_omaha_range(const RangeOptions& options) {
  if (options.has_top || !options.table.empty() || !options.file.empty() || options.short_deck)
    throw Error("--top, --table, --file and --short-deck are Hold'em options; an Omaha range is an expression such "
                "as \"AA**:ds\" or \"15%\"");
  std::string text;
  for (const std::string& part : options.expression) text.append(text.empty() ? "" : " ").append(part);
  if (text.find_first_not_of(" \t\n") == std::string::npos) throw Error("the range expression is empty");
  const EquityGame game = equity_game_from_name(options.game);
  const OmahaRange range =
      parse_omaha_range(text, game, options.data_dir, options.json ? TableProgress{} : stderr_progress());
  const uint64_t all = omaha_holdings_count(range.hole_cards());
  const bool weighted = range.total_weight() != static_cast<double>(range.size());
  std::vector<std::string> sample;  // up to ten holdings spread over the range
  const size_t step = std::max<size_t>(1, range.size() / 10);
  for (size_t i = 0; i < range.size() && sample.size() < 10; i += step)
    sample.push_back(omaha_holding_to_string(range.holdings()[i].cards) +
                     (range.holdings()[i].weight < 100 ? "@" + format("%g", range.holdings()[i].weight) : ""));
  const std::vector<OmahaTypeCount> types = omaha_hand_types(range);
  if (options.json) {
    nlohmann::ordered_json out = {{"game", options.game},          {"expression", text},
                                  {"range", range.text()},          {"holdings", range.size()},
                                  {"of", all},                      {"percent", range.size() * 100.0 / all},
                                  {"weight", range.total_weight()}, {"types", nlohmann::ordered_json::object()},
                                  {"sample", sample}};
    for (const OmahaTypeCount& t : types) out["types"][t.name] = {{"holdings", t.holdings}, {"weight", t.weight}};
    std::cout << out.dump(2) << "\n";
    return;
  }
  auto line = [](const std::string& label, const std::string& value) {
    std::cout << label << ":" << std::string(14 - label.size() - 1, ' ') << value << "\n";
  };
  line("game", options.game);
  line("range", range.text());
  line("holdings", std::to_string(range.size()) + " of " + std::to_string(all) + " (" +
                       format("%.2f%%", range.size() * 100.0 / all) + ")");
  if (weighted) line("weight", format("%.2f", range.total_weight()) + " holdings' worth (weights below 100)");
  std::cout << "\nhand types       holdings   share\n";
  for (const OmahaTypeCount& t : types)
    std::cout << "  " << t.name << std::string(15 - t.name.size(), ' ') << format("%9.0f", static_cast<double>(t.holdings))
              << "  " << format("%5.1f%%", range.empty() ? 0.0 : t.holdings * 100.0 / range.size()) << "\n";
  std::cout << "\nsample:        ";
  for (size_t i = 0; i < sample.size(); ++i) std::cout << (i ? ", " : "") << sample[i];
  std::cout << (sample.empty() ? "(none)" : "") << "\n";
}

void run_range(const RangeOptions& options) {
  if (options.game != "holdem") return run_omaha_range(options);
  const Shown shown = from_options(options);
  std::array<int, 169> counts = range_class_counts(shown.range);
  const int size = matrix_size(shown.short_deck);
  int combos = 0;
  for (int cell = 0; cell < 169; ++cell) {
    if (cell / 13 >= size || cell % 13 >= size) counts[cell] = 0;  // no such class in the short deck
    combos += counts[cell];
  }
  const int total = shown.short_deck ? 630 : 1326;
  if (!options.svg.empty()) {
    if (shown.short_deck) throw Error("--svg draws the 13 x 13 Hold'em grid; leave out --short-deck");
    const std::string title = shown.weighted.weighted() ? shown.weighted.text() : range_to_string(shown.range);
    write_picture(options.svg, range_grid_svg(shown.weighted.class_shares(), GridScale::Weight, title));
  }
  if (!options.json) {
    print_text(shown, counts, combos, total);
    return;
  }
  nlohmann::ordered_json out = shown.source;
  out["range"] = range_to_string(shown.range, shown.short_deck);
  out["classic"] = narrow(shown.short_deck ? shown.range.MakeString6Plus() : shown.range.MakeString());
  if (shown.weighted.weighted()) {
    out["weighted"] = shown.weighted.text();
    out["weight"] = shown.weighted.total_weight();
  }
  out["combinations"] = combos;
  out["of"] = total;
  out["percent"] = combos * 100.0 / total;
  nlohmann::ordered_json classes = nlohmann::ordered_json::object();  // held classes, matrix order
  for (int cell = 0; cell < 169; ++cell)
    if (counts[cell] != 0) classes[hand_class_name(cell)] = counts[cell];
  out["classes"] = classes;
  if (shown.weighted.weighted()) {
    nlohmann::ordered_json weights = nlohmann::ordered_json::object();  // held classes' weights / 100
    const std::array<double, 169> class_weights = shown.weighted.class_weights();
    for (int cell = 0; cell < 169; ++cell)
      if (counts[cell] != 0) weights[hand_class_name(cell)] = class_weights[cell];
    out["class_weights"] = weights;
  }
  std::cout << out.dump(2) << "\n";
}

}  // namespace

void add_range_command(CLI::App& app) {
  auto options = std::make_shared<RangeOptions>();
  CLI::App* range =
      app.add_subcommand("range", "Show a Hold'em range (class matrix, combinations) or an Omaha range (holdings, types)");
  range->footer(
      "A range expression lists classes and runs separated by commas or blanks: AA, TT+, 99-66,\n"
      "AKs, A2s+, A9s-A6s, KQo, K9o+, KQ (suited and offsuit), K9+, single combinations such as\n"
      "AsKs, and random or any for all 1326 combinations. Any item may carry a weight @N, the per cent\n"
      "of the time it is held (0 < N <= 100): \"AA, KK@50, AKs@25, A5s-A2s@75\"; a combination named\n"
      "twice keeps its largest weight. A range file's line may give its class a weight too: \"AK @50\".\n\n"
      "The matrix has rows A..2, suited classes above the diagonal and offsuit ones below it. With\n"
      "--short-deck it has rows A..6, and an expression naming a lower rank (\"A2s+\", \"AA-55\") is refused.\n"
      "On a terminal the Hold'em grid is drawn in color by the share of each class held; --svg FILE\n"
      "writes the same heat map as an SVG picture.\n\n"
      "Examples:\n"
      "  pokermath range QQ+,AKs,AKo\n"
      "  pokermath range \"AA, KK@50, AKs@25, A5s-A2s@75\" --svg range.svg\n"
      "  pokermath range \"22+ A2s+ KTs+ AJo+\" --json\n"
      "  pokermath range --top 10\n"
      "  pokermath range --top 15 --table groups\n"
      "  pokermath range --top 20 --short-deck\n"
      "  pokermath range --file ranking.txt --top 12.5\n\n"
      "Omaha ranges (--game omaha, omaha5, omaha6, omaha-hilo, omaha5-hilo, omaha6-hilo) use the Omaha\n"
      "range language: exact cards (AsKsQhJh), ranks with * for any card (AA** = at least two aces),\n"
      "suit letters c d h s, suit variables w x y z (equal letters equal suits: AxKxAyKy), runs\n"
      "(KK+, QQ-99, T987+), the hand types ds ss rainbow np onepair twopair trips quads rundown\n"
      "broadway suitedace, shares of the pre-flop ranking (15%, 10%-20%; computed into the data\n"
      "directory on first use, a few minutes), \",\" union, \":\" intersection, \"!\" exclusion,\n"
      "parentheses, and a weight @N (per cent) after any part. It prints the number of holdings, their\n"
      "share of all holdings, the hand types and a sample (docs/omaha-ranges.md).\n\n"
      "  pokermath range --game omaha \"AA**:ds\"\n"
      "  pokermath range --game omaha \"KK+:ds, T987+@50\"\n"
      "  pokermath range --game omaha-hilo \"10%\" --json");
  CLI::Option* expression =
      range->add_option("expression", options->expression, "A range expression, e.g. QQ+,AKs or \"22+ A2s+\"");
  CLI::Option* top = range->add_option("--top", options->top, "The strongest P per cent of all combinations");
  CLI::Option* table =
      range->add_option("--table", options->table, "Built-in table for --top: equity (the default), groups or brenmark")
          ->check(CLI::IsMember({"equity", "groups", "brenmark"}));
  CLI::Option* file =
      range->add_option("--file", options->file, "A range file (.txt, one class per line, strongest first) for --top");
  range->add_flag("--short-deck", options->short_deck, "The 36-card deck: ranks 6 to A (630 combinations)");
  range->add_flag("--json", options->json, "Print one JSON object");
  range->add_option("--svg", options->svg,
                    "Also write the 13 x 13 heat map of the range (the share of each class held, weighted) to this SVG "
                    "file");
  range
      ->add_option("--game", options->game,
                   "holdem (default), or an Omaha game for an Omaha range: omaha, omaha5, omaha6, omaha-hilo, "
                   "omaha5-hilo, omaha6-hilo")
      ->check(CLI::IsMember({"holdem", "omaha", "omaha5", "omaha6", "omaha-hilo", "omaha5-hilo", "omaha6-hilo"}));
  range->add_option("--data-dir", options->data_dir, "Where the Omaha rankings are kept (default: the data directory)");
  expression->excludes(top);
  table->needs(top);
  file->needs(top);
  table->excludes(file);
  range->callback([options, top] {
    options->has_top = top->count() > 0;
    run_range(*options);
  });
}

}  // namespace pokermath::cli

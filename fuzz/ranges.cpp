// Range text in both notations, range files and Omaha ranges. The input is read as a range
// expression in the players' notation (with and without weights) and in the printed notation, as a
// Hold'em and a short-deck range file, and as a four-card Omaha range; whatever is accepted must
// print and read back to the same combinations (holdings and weights), and the classic file reader
// must agree with the checked one.
#include <bitset>

#include "fuzz_input.h"
#include "pokermath/pokermath.h"

using namespace pokermath;
using pokermath::fuzz::expect;

namespace {

// The distinct two-card combinations of a range, whatever the card order of its elements.
std::bitset<52 * 52> combos(const Spec& range) {
  std::bitset<52 * 52> out;
  for (const auto& [a, b] : range.m_hands)
    if (a >= 0 && a < 52 && b >= 0 && b < 52) out.set(52 * std::min(a, b) + std::max(a, b));
  return out;
}

// The matrix of the classic printer read back in the printed notation is the matrix it printed.
void check_printed_string(const Spec& range) {
  int matrix[169], again[169];
  range.MakeMatrix(matrix);
  parse_range(narrow(range.MakeString()), RangeNotation::Printed).MakeMatrix(again);
  expect(std::equal(matrix, matrix + 169, again), "Spec::MakeString does not read back");
  (void)range.MakeString6Plus();
}

void players_notation(std::string_view text) {
  Spec range;
  try {
    range = parse_range(text, RangeNotation::Players);
  } catch (const Error&) {
    return;
  }
  const std::string printed = range_to_string(range);
  expect(combos(parse_range(printed)) == combos(range), "range_to_string does not read back: " + printed);
  expect(static_cast<size_t>(range_combos(range)) == combos(range).count(), "range_combos");
  check_printed_string(range);
  (void)range_to_string(range, true);
}

// A weighted range prints to text that reads back to the same weights.
void weighted_notation(std::string_view text) {
  WeightedRange range;
  try {
    range = parse_weighted_range(text);
  } catch (const Error&) {
    return;
  }
  expect(parse_weighted_range(range.text()) == range, "WeightedRange::text does not read back: " + range.text());
}

void printed_notation(std::string_view text) {
  Spec range;
  try {
    range = parse_range(text, RangeNotation::Printed);
  } catch (const Error&) {
    return;
  }
  const std::array<int, 169> counts = range_class_counts(range);
  for (int cell = 0; cell < 169; ++cell)
    expect(counts[cell] == 0 || counts[cell] == hand_class_combos(cell), "a part of a class in printed notation");
  expect(combos(parse_range(range_to_string(range))) == combos(range), "printed range does not read back");
  check_printed_string(range);
}

// The checked reader either refuses the file or reads what the classic reader reads; percentages
// then cover the game's combinations up to all of them at 100.
void range_file(const std::string& path, RangeGame game) {
  const bool short_deck = game == RangeGame::ShortDeck;
  Spec classic;
  classic.SetFile(widen(path));
  classic.SetTotalStrategies(short_deck ? 81 : 169);
  classic.SetTotalHands(short_deck ? 630 : 1326);
  const int classic_result = classic.ReadSpectrFromFile(1);

  Spec source;
  try {
    source = read_range_file(path, game);
  } catch (const Error&) {
    return;
  }
  expect(classic_result == 1, "the classic reader refuses a file read_range_file accepts");
  expect(classic.m_percentToHand == source.m_percentToHand, "the two readers read different orders");
  for (double percent : {0.0, 12.5, 50.0}) (void)range_by_percent(source, percent);
  expect(range_combos(range_by_percent(source, 100)) == (short_deck ? 630 : 1326), "100 % is not every hand");

  CUserFolder folder;
  folder.m_source = source;
  short_deck ? folder.MakeInterpolation6Plus() : folder.MakeInterpolation();
}

// An Omaha range, with a two-class ranking for its shares, prints in a form that reads back.
void omaha_range(std::string_view text) {
  static const pokermath::OmahaRanking ranking = [] {
    pokermath::OmahaRanking r;
    r.classes = {omaha_suit_class(cards_to_mask(parse_cards("AsAhKsKh"))),
                 omaha_suit_class(cards_to_mask(parse_cards("2c2d2h2s")))};
    r.equity = {0.7f, 0.1f};
    return r;
  }();
  pokermath::OmahaRange range;
  try {
    range = parse_omaha_range(text, 4, &ranking);
  } catch (const Error&) {
    return;
  }
  const pokermath::OmahaRange again = parse_omaha_range(range.text(), 4, &ranking);
  expect(again.holdings() == range.holdings(), "an Omaha range does not read back: " + range.text());
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  fuzz::silence_messages();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  players_notation(text);
  weighted_notation(text);
  printed_notation(text);
  omaha_range(text);
  const std::string path = fuzz::write_scratch("range.txt", text).string();
  range_file(path, RangeGame::Holdem);
  range_file(path, RangeGame::ShortDeck);
  return 0;
}

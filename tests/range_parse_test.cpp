// The pokermath:: range API: range expressions in both notations, the printed form read back,
// counting and naming, the built-in tables and range files.
#include <gtest/gtest.h>

#include <cmath>
#include <numeric>
#include <random>

#include "range_test_util.h"
#include "test_util.h"

namespace {

using pokermath::Error;
using pokermath::parse_range;
using pokermath::RangeNotation;
using range_test::matrix;
using range_test::spec_of_cells;

using test_util::error_of;

// The cells of a list of class names in the tables' notation ("AA", "AKs", "AKo").
std::vector<int> cells_of(std::initializer_list<const char*> names) {
  std::vector<int> cells;
  for (const char* name : names)
    for (int cell = 0; cell < 169; ++cell)
      if (pokermath::hand_class_name(cell) == name) cells.push_back(cell);
  return cells;
}

TEST(RangeParse, PlayersNotation) {
  struct Case {
    const char* text;
    std::initializer_list<const char*> classes;
  };
  const Case cases[] = {
      {"AA", {"AA"}},
      {"TT+", {"AA", "KK", "QQ", "JJ", "TT"}},
      {"99-66", {"99", "88", "77", "66"}},
      {"66-99", {"99", "88", "77", "66"}},
      {"AKs", {"AKs"}},
      {"A9s-A6s", {"A9s", "A8s", "A7s", "A6s"}},
      {"A6s-A9s", {"A9s", "A8s", "A7s", "A6s"}},
      {"KTs+", {"KQs", "KJs", "KTs"}},
      {"KQo", {"KQo"}},
      {"K9o+", {"KQo", "KJo", "KTo", "K9o"}},
      {"KQ", {"KQs", "KQo"}},
      {"K9+", {"KQs", "KJs", "KTs", "K9s", "KQo", "KJo", "KTo", "K9o"}},
      {"AT-AJ", {"AJs", "ATs", "AJo", "ATo"}},
      {"QQ+,AKs", {"AA", "KK", "QQ", "AKs"}},
      {"  qq+  aKS\t,,", {"AA", "KK", "QQ", "AKs"}},
      {"KAs, 9tO", {"AKs", "T9o"}},
      {"AKs+", {"AKs"}},
      {"22+", {"AA", "KK", "QQ", "JJ", "TT", "99", "88", "77", "66", "55", "44", "33", "22"}},
      {"", {}},
  };
  for (const Case& c : cases) {
    const Spec range = parse_range(c.text);
    EXPECT_EQ(range.m_hands, spec_of_cells(cells_of(c.classes)).m_hands) << c.text;
  }
  EXPECT_EQ(parse_range("A2s+").GetSize(), 48);
  EXPECT_EQ(parse_range("random").GetSize(), 1326);
  EXPECT_EQ(parse_range("ANY").GetSize(), 1326);
  EXPECT_EQ(parse_range("any, AA, AsKs").GetSize(), 1326);  // combinations stored as the classes store them
}

TEST(RangeParse, SingleCombinations) {
  const Spec range = parse_range("AsKs, 7h7d, 2c3d, kdkh");
  EXPECT_EQ(pokermath::range_combos(range), 4);
  EXPECT_EQ(range.GetSize(), 4);
  EXPECT_EQ(pokermath::range_to_string(range), "AsKs,KhKd,7h7d,3d2c");
  // Inside a whole class a combination adds nothing.
  EXPECT_EQ(parse_range("AKs AsKs").m_hands, parse_range("AKs").m_hands);
  EXPECT_EQ(parse_range("AA AcAd").GetSize(), 6);
}

TEST(RangeParse, BadItemsNameTheItemAndItsPosition) {
  const std::pair<const char*, const char*> cases[] = {
      {"AA, AKx", "bad range item 'AKx' at position 2: suffix must be s (suited) or o (offsuit)"},
      {"AAs", "bad range item 'AAs' at position 1: a pair takes no suffix"},
      {"AA KK 1A", "bad range item '1A' at position 3: rank must be one of 2 3 4 5 6 7 8 9 T J Q K A"},
      {"A9s-K6s",
       "bad range item 'A9s-K6s' at position 1: both ends of a run must be pairs, or have the same high "
       "card and suffix ('99-66', 'A9s-A6s')"},
      {"A9s-A6o", "bad range item 'A9s-A6o' at position 1: both ends of a run must be pairs"},
      {"99-A6s", "bad range item '99-A6s' at position 1: both ends of a run must be pairs"},
      {"AsAs", "bad range item 'AsAs' at position 1: the two cards are the same"},
      {"AKQJ", "bad range item 'AKQJ' at position 1: expected a class"},
      {"A", "bad range item 'A' at position 1: expected a class"},
      {"+", "bad range item '+' at position 1: expected a class"},
      {"TT+-88", "bad range item 'TT+-88' at position 1: expected a class"},
      {"AK,,QQ,KK-", "bad range item 'KK-' at position 3: expected a class"},
      {"Xs9s", "bad range item 'Xs9s' at position 1: rank must be one of"},
  };
  for (const auto& [text, message] : cases) {
    const std::string error = error_of([text = text] { parse_range(text); });
    EXPECT_EQ(error.rfind(message, 0), 0u) << text << ": " << error;
  }
}

TEST(RangeParse, PrintedNotationIsTheFormMakeStringWrites) {
  EXPECT_EQ(parse_range("AK", RangeNotation::Printed).m_hands, spec_of_cells(cells_of({"AKo"})).m_hands);
  EXPECT_EQ(parse_range("QQ+,AQs+,AK", RangeNotation::Printed).GetSize(), 18 + 8 + 12);
  EXPECT_EQ(parse_range("A2+", RangeNotation::Printed).GetSize(), 12 * 12);
  const std::pair<const char*, const char*> rejected[] = {
      {"AKo", "the printed form writes offsuit classes without 'o'"},
      {"AsKs", "single combinations are not part of the printed form"},
      {"any", "'random' and 'any' are not part of the printed form"},
  };
  for (const auto& [text, why] : rejected)
    EXPECT_EQ(error_of([text = text] { parse_range(text, RangeNotation::Printed); }),
              "bad range item '" + std::string(text) + "' at position 1: " + why);
}

// Random sets of whole classes, each class in with probability `density`.
std::vector<int> random_cells(std::mt19937& engine, double density) {
  std::bernoulli_distribution in(density);
  std::vector<int> cells;
  for (int cell = 0; cell < 169; ++cell)
    if (in(engine)) cells.push_back(cell);
  return cells;
}

TEST(RangeParse, PrintedStringsReadBackToTheSameMatrix) {
  std::mt19937 engine(20240611);
  for (int trial = 0; trial < 4000; ++trial) {
    const double density = (trial % 9 + 1) / 10.0;
    const Spec range = spec_of_cells(random_cells(engine, density));
    const CString text = range.MakeString();
    const Spec back = parse_range(pokermath::narrow(text), RangeNotation::Printed);
    ASSERT_EQ(matrix(back), matrix(range)) << pokermath::narrow(text);

    const CString short_text = range.MakeString6Plus();
    const Spec short_back = parse_range(pokermath::narrow(short_text), RangeNotation::Printed);
    ASSERT_EQ(matrix(short_back, true), matrix(range, true)) << pokermath::narrow(short_text);
    ASSERT_EQ(matrix(short_back), matrix(short_back, true)) << pokermath::narrow(short_text);
  }
}

TEST(RangeParse, RangeStringsReadBackToTheSameCombinations) {
  std::mt19937 engine(7);
  for (int trial = 0; trial < 2000; ++trial) {
    Spec range = spec_of_cells(random_cells(engine, (trial % 5 + 1) / 10.0));
    for (const std::vector<int>& cards : {test_util::random_cards(engine, 2), test_util::random_cards(engine, 2)})
      range.AddCard(cards[0], cards[1]);
    const std::string text = pokermath::range_to_string(range);
    const Spec back = parse_range(text);
    ASSERT_EQ(pokermath::range_class_counts(back), pokermath::range_class_counts(range)) << text;
    ASSERT_EQ(pokermath::range_combos(back), back.GetSize()) << text;  // never two orders of one pair of cards
    ASSERT_EQ(pokermath::range_to_string(back), text);
  }
}

TEST(RangeCounts, CombinationsClassesAndNames) {
  Spec aces;
  aces.AddPair(12);
  aces.AddCard(12, 25);  // a second element for Ac Ad: 7 elements, 6 combinations
  EXPECT_EQ(pokermath::range_combos(aces), 6);
  const std::array<int, 169> counts = pokermath::range_class_counts(parse_range("AKs, AhKd, QQ"));
  EXPECT_EQ(counts[1], 4);
  EXPECT_EQ(counts[13], 1);
  EXPECT_EQ(counts[28], 6);
  EXPECT_EQ(std::accumulate(counts.begin(), counts.end(), 0), 11);

  // Class names and counts are read back by every test that builds cells from names or totals a file.
  EXPECT_EQ(error_of([] { pokermath::hand_class_name(169); }), "bad class cell 169: must be 0..168");
  EXPECT_EQ(error_of([] { pokermath::hand_class_combos(-1); }), "bad class cell -1: must be 0..168");

  EXPECT_EQ(pokermath::range_to_string(parse_range("any"), true),
            "66+,A6s+,K6s+,Q6s+,J6s+,T6s+,96s+,86s+,76s,A6o+,"
            "K6o+,Q6o+,J6o+,T6o+,96o+,86o+,76o");
  EXPECT_EQ(pokermath::range_to_string(parse_range("AA,A5s,5h4h")), "AA,A5s,5h4h");
  EXPECT_EQ(pokermath::range_to_string(parse_range("AA,A5s,5h4h"), true), "AA");
}

TEST(RangeTables, EntriesByPercentage) {
  // The equity table at 4.3 per cent is shown in full by the range CLI test.
  using pokermath::RangeTable;
  const auto groups = pokermath::table_range(RangeTable::Groups, 5);
  EXPECT_EQ(groups.key, 4.7);
  EXPECT_EQ(groups.text, "TT+,AQs+,AQo+");

  const auto brenmark = pokermath::table_range(RangeTable::Brenmark, 0);
  EXPECT_EQ(brenmark.key, 0.3);
  EXPECT_EQ(brenmark.text, "AA");

  const auto short_deck = pokermath::table_range(RangeTable::ShortDeckEquity, 50);
  EXPECT_EQ(short_deck.key, 48.58);
  EXPECT_EQ(pokermath::range_combos(short_deck.range), 306);

  for (const double bad : {-0.5, 100.5, std::nan("")})
    EXPECT_NE(error_of([&] { pokermath::table_range(RangeTable::Equity, bad); }).find("must be between 0 and 100"),
              std::string::npos)
        << bad;
  EXPECT_EQ(error_of([] { pokermath::table_range(RangeTable::Equity, -1); }),
            "bad percentage -1: must be between 0 and 100");
}

class RangeFile : public testing::Test {
 protected:
  range_test::ScratchDir m_dir{"pokermath_range_file"};
  test_util::MessageCapture m_messages;  // the pokermath:: loader reports by exceptions only

  std::string write(const std::vector<std::string>& lines) const { return m_dir.write("ranking.txt", lines); }

  std::string error_of_file(const std::vector<std::string>& lines,
                            pokermath::RangeGame game = pokermath::RangeGame::Holdem) const {
    const std::string path = write(lines);
    return error_of([&] { pokermath::read_range_file(path, game); });
  }
};

TEST_F(RangeFile, ReadsTheOrderAndServesPercentages) {
  std::vector<std::string> lines = {"# my order", "by me"};
  for (const std::string& line : range_test::file_lines(range_test::all_cells())) lines.push_back(line + "  note");
  const Spec source = pokermath::read_range_file(write(lines));
  EXPECT_EQ(source.m_percentToHand.size(), 169u);
  EXPECT_EQ(pokermath::range_by_percent(source, 0.5).MakeString(), L"AA");
  EXPECT_EQ(pokermath::range_combos(pokermath::range_by_percent(source, 100)), 1326);

  const std::vector<std::string> short_lines = range_test::file_lines(range_test::all_cells(true));
  const Spec short_source = pokermath::read_range_file(write(short_lines), pokermath::RangeGame::ShortDeck);
  EXPECT_EQ(short_source.m_percentToHand.rbegin()->first, 100.0);
  EXPECT_EQ(pokermath::range_combos(pokermath::range_by_percent(short_source, 100)), 630);
  EXPECT_TRUE(m_messages.texts().empty());
}

TEST_F(RangeFile, BadFilesNameTheFileAndTheLine) {
  const std::string path = m_dir.file("ranking.txt");
  std::vector<std::string> lines = range_test::file_lines(range_test::all_cells());

  std::vector<std::string> suffixed = lines;
  suffixed[1] = "AKs";  // the file grammar reads this as AK offsuit: refused
  EXPECT_EQ(error_of_file(suffixed), "range file '" + path +
                                         "' line 2: bad class 'AKs': write a pair as 'QQ', an offsuit class as 'AK' "
                                         "and a suited class as '(AK)'; a comment must follow a blank");
  std::vector<std::string> twice = lines;
  twice[5] = "AA";
  EXPECT_EQ(error_of_file(twice), "range file '" + path + "' line 6: class 'AA' is listed twice (first on line 1)");
  std::vector<std::string> lower = lines;
  lower[3] = "(ak)";
  EXPECT_EQ(error_of_file(lower).find("line 4: bad class '(ak)': rank letters"), path.size() + 14)
      << error_of_file(lower);
  std::vector<std::string> short_one = lines;
  short_one.pop_back();
  EXPECT_EQ(error_of_file(short_one),
            "range file '" + path + "' lists 168 of the 169 classes (1320 of 1326 combinations)");
  EXPECT_EQ(error_of_file({"KK", "QQ"}),
            "range file '" + path + "': no line starts with 'AA' (the strongest class first)");
  EXPECT_EQ(error_of_file(lines, pokermath::RangeGame::ShortDeck),
            "range file '" + path + "' line 10: class '(A5)' is not in the short deck (ranks 6 to A)");
  EXPECT_EQ(error_of([&] { pokermath::read_range_file(m_dir.file("ranking.dat")); }),
            "range file '" + m_dir.file("ranking.dat") + "': the name must end in .txt");
  EXPECT_EQ(error_of([&] { pokermath::read_range_file(m_dir.file("missing.txt")); }),
            "range file '" + m_dir.file("missing.txt") + "' not found");
  EXPECT_EQ(error_of([] { pokermath::range_by_percent(Spec(), 10); }),
            "the range source holds no percentage order (read a range file first)");
  EXPECT_TRUE(m_messages.texts().empty());
}

}  // namespace

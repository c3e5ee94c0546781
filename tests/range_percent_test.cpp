// Ranges by percentage: the built-in equity, short-deck, group and brenmark tables, entry
// selection, the Sklansky groups, the user table and the standard opening ranges.
#include <gtest/gtest.h>

#include <cmath>
#include <sstream>

#include "range_test_util.h"

namespace {

using pokermath::narrow;
using pokermath::parse_range;
using range_test::matrix;

// ---- the tables as published, kept here independently of the library's copy --------------------

// The Hold'em equity order, strongest first.
const char* const kEquityOrder =
    "AA KK QQ JJ TT AKs 99 AQs AKo AJs KQs 88 ATs AQo KJs KTs QJs AJo KQo QTs A9s 77 ATo JTs KJo A8s K9s QJo "
    "A7s KTo Q9s A5s 66 A6s QTo J9s A9o T9s A4s K8s JTo K7s A8o A3s Q8s K9o A2s K6s J8s T8s A7o 55 Q9o 98s "
    "K5s Q7s J9o A5o T9o A6o K4s K8o Q6s J7s T7s A4o 97s K3s 87s Q5s K7o 44 Q8o A3o K2s J8o Q4s T8o J6s K6o "
    "A2o T6s 98o 76s 86s 96s Q3s J5s K5o Q7o Q2s J4s 33 65s J7o T7o K4o 75s T5s Q6o J3s 95s 87o 85s 97o T4s "
    "K3o J2s 54s Q5o 64s T3s 22 K2o 74s 76o T2s Q4o J6o 84s 94s 86o T6o 96o 53s 93s Q3o J5o 63s 43s 92s 73s "
    "65o Q2o J4o 83s 75o 52s 85o 82s T5o 95o J3o 62s 54o 42s T4o J2o 72s 64o T3o 32s 74o 84o T2o 94o 53o 93o "
    "63o 43o 92o 73o 83o 52o 82o 42o 62o 72o 32o";

// The short-deck equity order with its stored keys: class, key, class, key, ...
const char* const kShortDeckOrder =
    "AA 0.95 KK 1.91 QQ 2.86 JJ 3.81 TT 4.77 AKs 5.4 99 6.35 AQs 6.99 AKo 8.89 AJs 9.53 KQs 10.16 88 11.12 ATs 11.75 "
    "AQo 13.66 KJs 14.29 KTs 14.93 QJs 15.56 AJo 17.47 KQo 19.37 QTs 20.0 A9s 20.64 77 21.59 ATo 23.5 JTs 24.13 "
    "KJo 26.04 A8s 26.67 K9s 27.31 QJo 29.21 A7s 29.85 KTo 31.75 Q9s 32.39 66 33.34 A6s 33.97 QTo 35.88 J9s 36.51 "
    "A9o 38.42 T9s 39.05 K8s 39.69 JTo 41.59 K7s 42.23 A8o 44.13 Q8s 44.77 K9o 46.67 K6s 47.31 J8s 47.94 T8s 48.58 "
    "A7o 50.48 Q9o 52.39 98s 53.02 Q7s 53.66 J9o 55.56 T9o 57.47 A6o 59.37 K8o 61.27 Q6s 61.91 J7s 62.54 T7s 63.18 "
    "97s 63.81 87s 64.45 K7o 66.35 Q8o 68.26 J8o 70.16 T8o 72.07 J6s 72.7 K6o 74.61 T6s 75.24 98o 77.15 76s 77.78 "
    "86s 78.42 96s 79.05 Q7o 80.96 J7o 82.86 T7o 84.77 Q6o 86.67 87o 88.58 97o 90.48 76o 92.39 J6o 94.29 86o 96.2 "
    "T6o 98.1 96o 100.0";

// The group steps: key and classes added.
const std::pair<double, const char*> kGroupSteps[15] = {
    {0.9, "AA KK"},
    {3.0, "QQ JJ AKs AKo"},
    {3.8, "TT AQs"},
    {4.7, "AQo"},
    {5.9, "99 88 AJs"},
    {7.1, "AJo KQs"},
    {8.4, "77 ATs KJs QJs"},
    {10.0, "A9s KTs KQo"},
    {12.2, "66 A8s QTs JTs ATo"},
    {14.3, "A7s A6s A5s K9s KJo"},
    {16.0, "A9o QJo"},
    {20.1, "A4s Q9s J9s T9s KTo QTo JTo"},
    {23.4, "55 44 33 22 A3s A2s T8s 98s 87s 76s 65s 54s A8o"},
    {30.0, "K8s Q8s J8s 97s 86s 75s 64s 53s 43s 32s A7o A6o"},
    {40.0, "Q7s J7s T7s A5o A4o A3o A2o K9o K8o Q9o J9o"},
};

// The brenmark keys and texts.
const std::pair<double, const char*> kBrenmark[16] = {
    {0.3, "AA"},
    {0.9, "KK+"},
    {3.0, "JJ+,AK"},
    {3.8, "TT+,AK,AQs"},
    {4.7, "TT+,AQ+"},
    {5.9, "88+,AJs,AQ+"},
    {7.1, "88+,AJ+,KQs"},
    {8.4, "77+,AJ+,ATs,KJs+,QJs"},
    {10.0, "77+,A9s+,KTs+,QJs,AJo+,KQo"},
    {12.2, "66+,A8s+,KTs+,QTs+,JTs,ATo+,KQo"},
    {14.3, "66+,A5s+,K9s+,QTs+,JTs,ATo+,KJo+"},
    {16.0, "66+,A5s+,K9s+,QTs+,JTs,A9o+,KJo+,QJo"},
    {20.1, "66+,A4s+,K9s+,Q9s+,J9s+,T9s,A9o+,KTo+,QTo+,JTo"},
    {23.4, "22+,A2s+,K9s+,Q9s+,J9s+,T8s+,98s,87s,76s,65s,54s,A8o+,KTo+,QTo+,JTo"},
    {30.0, "22+,A2s+,K8s+,Q8s+,J8s+,T8s+,97s+,86s+,75s+,64s+,53s+,43s,32s,A6o+,KTo+,QTo+,JTo"},
    {40.0, "22+,A2s+,K2s+,Q7s+,J7s+,T7s+,97s+,86s+,75s+,64s+,53s+,42s+,32s,A2o+,K8o+,Q9o+,J9o"},
};

// Sklansky groups 1..8.
const char* const kSklansky[8] = {
    "AA KK QQ JJ AKs",
    "TT AQs AJs KQs AKo",
    "99 ATs KJs QJs JTs AQo",
    "88 KTs QTs J9s T9s 98s AJo KQo",
    "77 A9s A8s A7s A6s A5s A4s A3s A2s Q9s T8s 97s 87s 76s 65s KJo QJo JTo",
    "66 55 K9s J8s 86s 75s 54s ATo KTo QTo",
    "44 33 22 K8s K7s K6s K5s K4s K3s K2s Q8s T7s 64s 53s 43s J9o T9o 98o",
    "J7s 96s 85s 74s 42s 32s A9o K9o Q9o J8o T8o 87o 76o 65o 54o",
};

// The names of a blank-separated list joined by commas: a range expression.
std::string joined(const std::string& names) {
  std::istringstream in(names);
  std::string name, out;
  while (in >> name) out.append(out.empty() ? "" : ",").append(name);
  return out;
}

std::vector<std::string> split(const std::string& names) {
  std::istringstream in(names);
  std::vector<std::string> out;
  for (std::string name; in >> name;) out.push_back(name);
  return out;
}

// Classes as a comparable matrix: whole classes held, by cell.
std::vector<int> classes_of(const Spec& spec) { return matrix(spec); }

// Expects that a table's text reads, in the players' notation, as exactly the stored Spec.
void expect_text_reads_as(const CString& text, const Spec& stored, double key) {
  EXPECT_EQ(parse_range(narrow(text)).m_hands, stored.m_hands) << "key " << key << ": " << narrow(text);
}

TEST(EquityTable, PublishedExamples) {
  CStatSpectr tables;
  tables.InitEquil();
  Spec out;
  CString text;
  tables.GetSpecByPercent(0.1, out, text, 0);  // below the first key: the first entry
  EXPECT_EQ(text, L"AA");
  EXPECT_EQ(out.MakeString(), L"AA");
  for (const double percent : {4.2, 4.3}) {
    tables.GetSpecByPercent(percent, out, text, 0);
    EXPECT_EQ(text, L"99+,AQs+,AKo") << percent;
    EXPECT_EQ(classes_of(out), classes_of(parse_range("99+,AQs+,AKo")));
  }
  for (const double percent : {100.0, 150.0}) {
    tables.GetSpecByPercent(percent, out, text, 0);
    EXPECT_EQ(pokermath::range_combos(out), 1326);
    EXPECT_EQ(text,
              L"22+,A2s+,K2s+,Q2s+,J2s+,T2s+,92s+,82s+,72s+,62s+,52s+,42s+,32s,A2o+,K2o+,Q2o+,J2o+,T2o+,92o+,82o+,"
              L"72o+,62o+,52o+,42o+,32o");
  }
  const std::pair<double, const wchar_t*> texts[] = {
      {0.9, L"KK+"}, {1.4, L"QQ+"}, {2.6, L"TT+,AKs"}, {4.8, L"99+,AJs+,KQs,AKo"}, {6.5, L"88+,ATs+,KQs,AQo+"}};
  for (const auto& [key, expected] : texts) {
    ASSERT_EQ(tables.m_equityText.count(key), 1u) << key;
    EXPECT_EQ(tables.m_equityText.at(key), expected) << key;
  }
}

TEST(EquityTable, EveryEntryAddsTheNextClassAndItsTextReadsBack) {
  CStatSpectr tables;
  tables.InitEquil();
  const std::vector<std::string> order = split(kEquityOrder);
  ASSERT_EQ(order.size(), 169u);
  ASSERT_EQ(tables.m_equityTable.size(), 169u);
  ASSERT_EQ(tables.m_equityText.size(), 169u);
  std::string cumulative;
  int combos = 0;
  size_t i = 0;
  for (const auto& [key, stored] : tables.m_equityTable) {
    if (!cumulative.empty()) cumulative += ',';
    cumulative += order[i];
    const Spec expected = parse_range(cumulative);
    EXPECT_EQ(classes_of(stored), classes_of(expected)) << "entry " << i + 1 << " " << order[i];
    EXPECT_EQ(pokermath::range_combos(stored), stored.GetSize());
    combos = pokermath::range_combos(stored);
    // One decimal of the share of 1326, except the first key.
    const double share = combos * 100.0 / 1326;
    if (i == 0) {
      EXPECT_EQ(key, 0.45);
    } else {
      EXPECT_NEAR(key, share, 0.05 + 1e-9) << order[i];
      EXPECT_EQ(key, std::round(key * 10) / 10) << order[i];
    }
    expect_text_reads_as(tables.m_equityText.at(key), stored, key);
    ++i;
  }
  EXPECT_EQ(combos, 1326);
  EXPECT_EQ(tables.m_equityTable.rbegin()->first, 100.0);
}

TEST(EquityTable, ShortDeckKeysAndStoredTexts) {
  CStatSpectr tables;
  tables.InitEquil();
  tables.InitEquil6Plus();
  ASSERT_EQ(tables.m_equityTable.size(), 81u);
  // The texts are overwritten key by key, never cleared: Hold'em keys the short deck lacks remain.
  EXPECT_EQ(tables.m_equityText.at(0.45), L"AA");
  EXPECT_GT(tables.m_equityText.size(), 81u);

  const std::vector<std::string> order = split(kShortDeckOrder);
  ASSERT_EQ(order.size(), 2 * 81u);
  std::string cumulative;
  for (int entry = 1; entry <= 81; ++entry) {
    const std::string& name = order[2 * entry - 2];
    const double key = std::stod(order[2 * entry - 1]);
    if (!cumulative.empty()) cumulative += ',';
    cumulative += name;
    ASSERT_EQ(tables.m_equityTable.count(key), 1u) << name;
    const Spec& stored = tables.m_equityTable.at(key);
    EXPECT_EQ(classes_of(stored), classes_of(parse_range(cumulative))) << "entry " << entry << " " << name;
    EXPECT_NEAR(key, pokermath::range_combos(stored) * 100.0 / 630, 0.02) << name;
    CString text = tables.m_equityText.at(key);
    if (entry == 45) {
      EXPECT_EQ(text, L"66+,A2s+,K6s+,Q8s+,J8s+,T9s,A8o+,K9o+,QTo+,JTo");
      continue;
    }
    if (entry >= 77) {  // stored with "87s+" where the rule gives "86s+"
      const size_t at = text.find(L",87s+,");
      ASSERT_NE(at, CString::npos) << narrow(text);
      text.replace(at, 6, L",86s+,");
    }
    expect_text_reads_as(text, stored, key);
  }
  EXPECT_EQ(tables.m_equityText.at(100.0),
            L"66+,A6s+,K6s+,Q6s+,J6s+,T6s+,96s+,87s+,76s,A6o+,K6o+,Q6o+,J6o+,T6o+,96o+,86o+,76o");
}

TEST(GroupTables, GroupStepsAndTheBrenmarkTexts) {
  CStatSpectr tables;
  tables.m_groupTable[99.0] = Spec();  // Init assigns its keys over what is there
  tables.Init();
  tables.InitBrenmark();
  EXPECT_EQ(tables.m_groupTable.size(), 16u);
  EXPECT_EQ(tables.m_groupTable.count(99.0), 1u);

  std::string cumulative = "AA";
  ASSERT_EQ(tables.m_brenmarkTable.size(), 16u);
  EXPECT_EQ(tables.m_brenmarkTable.at(0.3).MakeString(), L"AA");
  for (const auto& [key, classes] : kGroupSteps) {
    const std::string before = cumulative;
    cumulative.append(",").append(joined(classes));
    EXPECT_EQ(classes_of(tables.m_groupTable.at(key)), classes_of(parse_range(cumulative))) << key;
    const std::string brenmark = key == 40.0 ? before + ",K7s,K6s,K5s,K4s,K3s,K2s,Q7s,J7s" : cumulative;
    EXPECT_EQ(classes_of(tables.m_brenmarkTable.at(key)), classes_of(parse_range(brenmark))) << key;
  }
  for (const auto& [key, text] : kBrenmark) {
    ASSERT_EQ(tables.m_brenmarkText.count(key), 1u) << key;
    EXPECT_EQ(narrow(tables.m_brenmarkText.at(key)), text);
    // In the players' notation "AK" is AKs and AKo, as these texts mean it; the 40.0 text names
    // more classes than its range holds.
    if (key != 40.0) expect_text_reads_as(tables.m_brenmarkText.at(key), tables.m_brenmarkTable.at(key), key);
  }
}

TEST(TableSelection, LargestKeyAtOrBelowThePercentage) {
  CStatSpectr tables;
  Spec out;
  CString text = L"old";
  out.AddPair(3);
  tables.GetSpecByPercent(10, out, text, 0);  // an empty table gives an empty range
  EXPECT_EQ(out.GetSize(), 0);
  EXPECT_EQ(text, L"");

  tables.InitBrenmark();
  const std::pair<double, double> picks[] = {{0.0, 0.3},    {0.3, 0.3},   {0.89, 0.3}, {0.9, 0.9},
                                             {29.99, 23.4}, {30.0, 30.0}, {45.0, 40.0}};
  for (const auto& [percent, key] : picks) {
    tables.GetSpecByPercent(percent, out, text, 1);
    EXPECT_EQ(text, tables.m_brenmarkText.at(key)) << percent;
    EXPECT_EQ(out.m_hands, tables.m_brenmarkTable.at(key).m_hands) << percent;
  }
}

// The group of every class, from the published lists.
std::vector<int> published_groups() {
  std::vector<int> groups(169, 0);
  for (int g = 0; g < 8; ++g) {
    const std::vector<int> cells = matrix(parse_range(joined(kSklansky[g])));
    for (int cell = 0; cell < 169; ++cell)
      if (cells[cell] != 0) groups[cell] = g + 1;
  }
  return groups;
}

TEST(Sklansky, EveryCombinationIsInItsPublishedGroup) {
  const std::vector<int> groups = published_groups();
  for (int a = 0; a < 52; ++a)
    for (int b = 0; b < 52; ++b) {
      if (a == b) continue;
      Spec one;
      one.AddCard(a, b);
      const std::vector<int> cells = matrix(one);
      const int cell = static_cast<int>(std::find(cells.begin(), cells.end(), 1) - cells.begin());
      ASSERT_EQ(SklanskyGroup(CCard(a), CCard(b)), groups[cell])
          << pokermath::card_to_string(a) << pokermath::card_to_string(b);
    }
  EXPECT_EQ(SklanskyGroup(CCard(), CCard(51)), 0);  // the empty card has no rank
}

TEST(Sklansky, RangesByGroupsFollowTheLimits) {
  const CStatSpectr tables;
  const auto in = [&](const char* hand, double percent) {
    const std::vector<int> cards = pokermath::parse_cards(hand);
    return tables.numSklanskyGroup(CCard(cards[0]), CCard(cards[1]), percent);
  };
  // Hand, percentage, in the range. The limit is strict; AKs is group 1, but below 3.1 only AA and KK.
  const std::tuple<const char*, double, int> cases[] = {
      {"Kh Kd", 2.0, 1},  {"Qh Qd", 2.0, 0},  {"Qh Qd", 3.1, 1},  {"7h 2d", 50, 0},  {"8h 7d", 50, 1},
      {"8h 7d", 30.2, 1}, {"8h 7d", 30.1, 0}, {"8h 7d", 23.5, 0}, {"Ah Ad", 0.0, 1}, {"Kh Kd", 0.99, 0},
      {"Ah Kh", 3.0, 0},  {"Ah Kh", 3.1, 1},  {"9h 9d", 7.11, 0}, {"9h 9d", 7.12, 1}};
  for (const auto& [hand, percent, expected] : cases) EXPECT_EQ(in(hand, percent), expected) << hand << " " << percent;
  // Each group enters just above its limit: group g + 1 needs more than the g-th limit.
  const std::pair<const char*, double> entries[] = {{"Th Td", 4.71},  {"Ts 9s", 8.41},  {"7s 6s", 12.21},
                                                    {"6h 6d", 20.11}, {"Ks 2s", 23.41}, {"Jh 8d", 30.1}};
  for (const auto& [hand, limit] : entries) {
    EXPECT_EQ(in(hand, limit), 0) << hand;
    EXPECT_EQ(in(hand, limit + 0.001), 1) << hand;
  }
}

class UserFolder : public testing::Test {
 protected:
  range_test::ScratchDir m_dir{"pokermath_user_folder"};

  CUserFolder folder(const std::vector<int>& cells, int classes, int combos) const {
    CUserFolder user;
    user.m_source.SetFile(pokermath::widen(m_dir.write("user.txt", range_test::file_lines(cells))));
    user.m_source.SetTotalStrategies(classes);
    user.m_source.SetTotalHands(combos);
    EXPECT_EQ(user.m_source.ReadSpectrFromFile(1), 1);
    return user;
  }
};

TEST_F(UserFolder, CumulativeRangesKeyedByTheFilesPercentages) {
  CUserFolder user = folder(range_test::all_cells(), 169, 1326);
  Spec out;
  CString text;
  user.GetSpecByPercent(10, out, text);  // before MakeInterpolation: empty
  EXPECT_EQ(out.GetSize(), 0);

  user.MakeInterpolation();
  ASSERT_EQ(user.m_userTable.size(), 169u);
  auto key = user.m_source.m_percentToHand.begin();
  for (const auto& [percent, stored] : user.m_userTable) {
    EXPECT_EQ(percent, key->first);
    expect_text_reads_as(user.m_userText.at(percent), stored, percent);
    ++key;
  }
  user.GetSpecByPercent(0.5, out, text);
  EXPECT_EQ(text, L"AA");
  user.GetSpecByPercent(1.1, out, text);
  EXPECT_EQ(text, L"AA,AQs+");
  EXPECT_EQ(pokermath::range_combos(user.m_userTable.rbegin()->second), 1326);
}

TEST_F(UserFolder, ShortDeckTable) {
  CUserFolder user = folder(range_test::all_cells(true), 81, 630);
  user.MakeInterpolation6Plus();
  ASSERT_EQ(user.m_userTable.size(), 81u);
  EXPECT_EQ(user.m_userTable.rbegin()->first, 100.0);
  EXPECT_EQ(user.m_userText.rbegin()->second,
            L"66+,A6s+,K6s+,Q6s+,J6s+,T6s+,96s+,86s+,76s,A6o+,K6o+,Q6o+,J6o+,T6o+,96o+,86o+,76o");
}

TEST(StrategyRanges, OpeningRangesWidenTowardsTheButton) {
  StrategyRanges ranges;
  ranges.MakeSrategyRanges();
  ranges.MakeSrategyRanges();  // rebuilt, not appended
  ASSERT_EQ(ranges.m_ranges.size(), 5u);
  const std::vector<CString> seats = {L"UTG", L"HJ", L"CO", L"BTN", L"SB"};
  int previous = 0;
  for (size_t i = 0; i < seats.size(); ++i) {
    EXPECT_EQ(ranges.m_ranges[i].first, seats[i]);
    const Spec* range = ranges.GetRange(seats[i]);
    ASSERT_NE(range, nullptr);
    const int combos = pokermath::range_combos(*range);
    EXPECT_EQ(combos, range->GetSize());
    if (seats[i] != L"SB") {
      EXPECT_GT(combos, previous) << narrow(seats[i]);
      for (const auto& hand : ranges.m_ranges[i > 0 ? i - 1 : 0].second.m_hands)
        EXPECT_EQ(range->m_hands.count(hand), 1u) << narrow(seats[i]);  // each seat opens what the seat before it opens
      previous = combos;
    }
  }
  for (const auto& hand : ranges.GetRange(L"SB")->m_hands) EXPECT_EQ(ranges.GetRange(L"BTN")->m_hands.count(hand), 1u);
  EXPECT_EQ(ranges.GetRange(L"BB"), nullptr);
}

}  // namespace

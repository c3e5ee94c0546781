// Spec, the classic Hold'em range: insertion orders, the class matrix and its printed string, suit
// matrices, counts, class tokens, range files and the strength order.
#include <gtest/gtest.h>

#include <set>

#include "range_test_util.h"

namespace {

using range_test::matrix;
using Hands = std::set<std::pair<int, int>>;

const int kAs = 51, kKs = 50, kAc = 12, kAd = 25, kKd = 24;

// The one cell a Spec's matrix sets, or -1 when it sets none or several.
int only_cell(const Spec& spec) {
  const std::vector<int> cells = matrix(spec);
  int found = -1;
  for (int i = 0; i < 169; ++i)
    if (cells[i] != 0) {
      if (found >= 0) return -1;
      found = i;
    }
  return found;
}

Spec of_tokens(const std::vector<const wchar_t*>& tokens) {
  Spec spec;
  for (const wchar_t* token : tokens) spec.AddStringToSpectr(token, spec);
  return spec;
}

TEST(SpecAdding, EachOperationFixesTheCardOrder) {
  Spec pair;
  pair.AddPair(12);
  EXPECT_EQ(pair.m_hands, (Hands{{12, 25}, {12, 38}, {12, 51}, {25, 38}, {25, 51}, {38, 51}}));  // lower suit first

  Spec suited;
  suited.AddSuit(0, 12);  // 2 and A: the ace goes first whatever the argument order
  EXPECT_EQ(suited.m_hands, (Hands{{12, 0}, {25, 13}, {38, 26}, {51, 39}}));

  Spec offsuit;
  offsuit.AddNonSuit(11, 12);
  EXPECT_EQ(offsuit.GetSize(), 12);
  for (const auto& [a, b] : offsuit.m_hands) EXPECT_TRUE(a % 13 == 12 && b % 13 == 11 && a / 13 != b / 13) << a << b;

  // AddCard puts the second card first on equal ranks, so it stores (25, 12) next to AddPair's (12, 25).
  pair.AddCard(12, 25);
  EXPECT_EQ(pair.GetSize(), 7);
  pair.AddCard(CCard(kAd), CCard(kAc));
  EXPECT_EQ(pair.GetSize(), 7);  // (12, 25) again
  pair.AddCard(5, 5);            // the same card twice adds nothing
  EXPECT_EQ(pair.GetSize(), 7);

  Spec one;
  one.AddCard(kKs, kAs);
  EXPECT_EQ(one.m_hands, (Hands{{kAs, kKs}}));
}

TEST(SpecAdding, MakeRandomReplacesTheSetAndExcludeAddsTheLiveCombinations) {
  Spec full;
  full.AddPair(12);
  full.MakeRandom();
  EXPECT_EQ(full.GetSize(), 1326);  // cleared first
  full.AddPair(12);
  EXPECT_EQ(full.GetSize(), 1326 + 6);  // MakeRandom stores (25, 12) where AddPair stores (12, 25)

  Spec random;
  random.MakeRandom();
  Spec live;
  live.AddCard(kAs, kKd);  // Exclude adds to what is there
  random.Exclude({kAs, kKd}, live);
  EXPECT_EQ(live.GetSize(), 1 + 1326 - 51 - 51 + 1);
  int with_dead = 0;
  for (const auto& [a, b] : live.m_hands) with_dead += a == kAs || b == kAs || a == kKd || b == kKd;
  EXPECT_EQ(with_dead, 1);
}

TEST(SpecMatrix, ClassesLieInTheirCells) {
  struct Case {
    const wchar_t* token;
    int cell;
  };
  // Tokens in the range-file grammar: "(XY)" suited, "XY" offsuit.
  const Case cases[] = {{L"AA", 0},     {L"(AK)", 1}, {L"(A2)", 12}, {L"AK", 13},  {L"KK", 14},
                        {L"(32)", 155}, {L"A2", 156}, {L"32", 167},  {L"22", 168}, {L"(2A)", 12}};
  for (const Case& c : cases) EXPECT_EQ(only_cell(of_tokens({c.token})), c.cell) << pokermath::narrow(c.token);

  // Each of the 1326 combinations falls in the cell its ranks and suits say.
  for (int a = 0; a < 52; ++a)
    for (int b = 0; b < 52; ++b) {
      if (a == b) continue;
      Spec one;
      one.AddCard(a, b);
      const int high = std::max(a % 13, b % 13), low = std::min(a % 13, b % 13);
      const int expected = a / 13 == b / 13 ? 13 * (12 - high) + (12 - low) : 13 * (12 - low) + (12 - high);
      ASSERT_EQ(only_cell(one), expected) << pokermath::card_to_string(a) << pokermath::card_to_string(b);
    }
}

TEST(SpecMatrix, ShortDeckMatrixKeepsOnlySixAndUp) {
  Spec full;
  full.MakeRandom();
  const std::vector<int> cells = matrix(full, true);
  for (int cell = 0; cell < 169; ++cell)  // the 81 cells of rows and columns A..6
    EXPECT_EQ(cells[cell], cell / 13 <= 8 && cell % 13 <= 8 ? 1 : 0) << cell;
}

TEST(SpecMatrix, CodesOutsideTheDeckAreKeptButHaveNoCell) {
  Spec spec;
  spec.AddCard(60, 70);
  spec.AddCard(-5, 3);
  spec.m_hands.emplace(-1, 52);
  EXPECT_EQ(spec.GetSize(), 3);
  EXPECT_EQ(only_cell(spec), -1);
  EXPECT_EQ(spec.MakeString(), L"");
  EXPECT_EQ(spec.MakeBestHand().GetSize(), 0);
  EXPECT_EQ(spec.MakeNextForceHand().MakeString(), L"AA");
  int suits[16];
  EXPECT_EQ(spec.MakeSuitMatrix(-1, -1, 2, suits).GetSize(), 0);
  EXPECT_EQ(pokermath::range_combos(spec), 0);
}

TEST(SpecString, RunsPrintAsThePrintedFormSays) {
  Spec full;
  full.MakeRandom();
  EXPECT_EQ(full.MakeString(),
            L"22+,A2s+,K2s+,Q2s+,J2s+,T2s+,92s+,82s+,72s+,62s+,52s+,42s+,32s,A2+,K2+,Q2+,J2+,T2+,92+,82+,72+,62+,"
            L"52+,42+,32");
  EXPECT_EQ(full.MakeString6Plus(), L"66+,A6s+,K6s+,Q6s+,J6s+,T6s+,96s+,86s+,76s,A6+,K6+,Q6+,J6+,T6+,96+,86+,76");
  EXPECT_EQ(Spec().MakeString(), L"");

  const std::pair<std::vector<const wchar_t*>, const wchar_t*> cases[] = {
      {{L"AA"}, L"AA"},
      {{L"(AK)"}, L"AKs"},
      {{L"(AK)", L"(AQ)"}, L"AQs+"},
      {{L"(AQ)", L"(AJ)"}, L"AQs-AJs"},
      {{L"KK", L"QQ"}, L"KK-QQ"},
      {{L"AA", L"KK", L"TT"}, L"KK+,TT"},
      {{L"AA", L"KK", L"QQ", L"(AK)", L"(AQ)", L"AK"}, L"QQ+,AQs+,AK"},
      {{L"(A9)", L"(A8)", L"(A7)", L"(A6)", L"(KQ)", L"(KJ)", L"(KT)"}, L"A9s-A6s,KTs+"},
      {{L"AK", L"AQ", L"AJ", L"AT", L"KQ", L"QJ", L"QT", L"Q9"}, L"AT+,KQ,Q9+"},
      {{L"QT", L"Q9", L"Q8"}, L"QT-Q8"},
      {{L"99", L"88", L"77", L"66", L"55", L"(32)", L"32"}, L"99-55,32s,32"},
      {{L"(AK)", L"(AJ)", L"(A9)", L"22", L"44"}, L"44,22,AKs,AJs,A9s"},
  };
  for (const auto& [tokens, expected] : cases)
    EXPECT_EQ(of_tokens(tokens).MakeString(), expected) << pokermath::narrow(expected);
}

TEST(SpecSuits, SuitMatrixOfAClassAndBack) {
  Spec full;
  full.MakeRandom();
  int cells[16];
  const Spec suited = full.MakeSuitMatrix(11, 12, 1, cells);  // AK suited, ranks in either order
  EXPECT_EQ(suited.m_hands, (Hands{{12, 11}, {25, 24}, {38, 37}, {51, 50}}));
  EXPECT_EQ(std::vector<int>(cells, cells + 16), (std::vector<int>{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1}));

  EXPECT_EQ(full.MakeSuitMatrix(12, 11, 0, cells).GetSize(), 12);
  EXPECT_EQ(std::count(cells, cells + 16, 1), 12);

  // MakeRandom stores a pair's higher code first, so only cells below the diagonal are set.
  EXPECT_EQ(full.MakeSuitMatrix(12, 12, 2, cells).GetSize(), 6);
  for (int i = 0; i < 16; ++i) EXPECT_EQ(cells[i], i / 4 > i % 4 ? 1 : 0) << i;
  EXPECT_EQ(full.MakeSuitMatrix(12, 11, 2, cells).GetSize(), 0);  // "pair" kind with two ranks: nothing

  // Back from a suit matrix: (larger code, smaller code), by code rather than by rank.
  const int back[16] = {0, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1};
  EXPECT_EQ(SpecBySuitMatrix(11, 12, back).m_hands, (Hands{{24, 12}, {51, 50}}));  // Kd first, then As Ks
}

TEST(SpecStats, CountsOfTheFullRange) {
  Spec full;
  full.MakeRandom();
  int pairs = -1, aces = -1, suited = -1, kings = -1;
  full.CalcStat(pairs, aces, suited, kings);
  EXPECT_EQ(pairs, 78);
  EXPECT_EQ(aces, 12 * 16);   // every ace-x non-pair stores the ace first
  EXPECT_EQ(kings, 11 * 16);  // king with a lower card
  EXPECT_EQ(suited, 78 * 4);

  int count = -1;
  const std::pair<const wchar_t*, int> names[] = {{L"Hx", 78}, {L"x", 312}, {L"", 312}, {L"Spades", 78},
                                                  {L"sp", 78}, {L"d", 78},  {L"C", 78}};
  for (const auto& [name, expected] : names) {
    full.CalcSuits(count, CString(name));
    EXPECT_EQ(count, expected) << pokermath::narrow(name);
  }
  full.CalcSuits(count, 2);
  EXPECT_EQ(count, 78);
  full.CalcSuits(count, 7);
  EXPECT_EQ(count, 312);

  Spec heart;
  heart.AddCard(CCard(L'K', L'h'), CCard(L'A', L'h'));
  heart.CalcSuits(count, L"hearts");
  EXPECT_EQ(count, 1);
  heart.CalcSuits(count, L"spades");
  EXPECT_EQ(count, 0);
}

TEST(SpecTokens, TokenGrammarAndReturnValues) {
  Spec out;
  EXPECT_EQ(out.AddStringToSpectr(L"(T9)", out), 4);
  EXPECT_EQ(only_cell(out), 13 * 4 + 5);  // T9s
  const std::pair<const wchar_t*, int> cases[] = {{L"99", 6}, {L"T9", 12}, {L"T9s", 12}, {L"T9 comment", 12}};
  for (const auto& [token, combos] : cases) {
    Spec one;
    EXPECT_EQ(one.AddStringToSpectr(token, one), combos) << pokermath::narrow(token);
    EXPECT_EQ(one.GetSize(), combos);
  }
  Spec unknown;  // lower-case letters are no ranks: index -1, inserted as it is, never reported
  EXPECT_EQ(unknown.AddStringToSpectr(L"ak", unknown), 12);
  Spec t9s;
  t9s.AddStringToSpectr(L"T9s", t9s);
  EXPECT_EQ(only_cell(t9s), 13 * 5 + 4);  // the "s" is ignored: offsuit
}

class SpecFile : public testing::Test {
 protected:
  range_test::ScratchDir m_dir{"pokermath_spec_file"};
  test_util::MessageCapture m_messages;

  // A Spec set up as a Hold'em percentage source for a file in the scratch directory.
  Spec source(const std::string& name) const {
    Spec spec;
    spec.SetFile(m_dir.wide(name));
    spec.SetTotalStrategies(169);
    spec.SetTotalHands(1326);
    return spec;
  }
};

TEST_F(SpecFile, CompleteFileGivesCumulativePercentages) {
  std::vector<std::string> lines = {"My ranking", "", "A header line"};
  for (const std::string& line : range_test::file_lines(range_test::all_cells())) {
    lines.push_back(line);
    if (line == "KK") lines.push_back("");  // empty lines between hand lines are skipped too
  }
  lines.push_back("AK");  // beyond the 169 classes: ignored
  m_dir.write("ranking.txt", lines, "\r\n");

  Spec spec = source("ranking.txt");
  ASSERT_EQ(spec.ReadSpectrFromFile(1), 1);
  EXPECT_TRUE(m_messages.texts().empty());
  ASSERT_EQ(spec.m_percentToHand.size(), 169u);
  EXPECT_EQ(spec.m_handToPercent.size(), 169u);
  EXPECT_EQ(spec.m_percentToHand.rbegin()->first, 100.0);
  int total = 0;
  for (int cell : range_test::all_cells()) {
    total += pokermath::hand_class_combos(cell);
    const CString token = pokermath::widen(range_test::file_token(cell));
    ASSERT_EQ(spec.m_handToPercent.count(token), 1u) << pokermath::narrow(token);
    EXPECT_DOUBLE_EQ(spec.m_handToPercent[token], total * 100.0 / 1326) << pokermath::narrow(token);
    EXPECT_EQ(spec.m_percentToHand[spec.m_handToPercent[token]], token);
  }
}

TEST_F(SpecFile, PercentagesChooseTheStrongestClassesWithAMargin) {
  m_dir.write("ranking.txt", range_test::file_lines(range_test::all_cells()));
  Spec spec = source("ranking.txt");
  ASSERT_EQ(spec.ReadSpectrFromFile(1), 1);
  Spec out;
  out.AddPair(0);  // cleared first
  spec.GetSpecByPercent(0, out);
  EXPECT_EQ(out.GetSize(), 0);  // AA lies at 0.45, above the margin of 3.5 / 169
  spec.GetSpecByPercent(0.44, out);
  EXPECT_EQ(out.MakeString(), L"AA");  // 0.44 + 0.0207 reaches AA's 0.4525
  spec.GetSpecByPercent(0.43, out);
  EXPECT_EQ(out.GetSize(), 0);
  spec.GetSpecByPercent(1000.0 / 1326, out);
  EXPECT_EQ(out.MakeString(), L"AA,AKs");
  spec.GetSpecByPercent(100, out);
  EXPECT_EQ(pokermath::range_combos(out), 1326);
  EXPECT_EQ(out.GetSize(), 1326);
}

TEST_F(SpecFile, ReportLinesFollowTheFixedFormat) {
  m_dir.write("ranking.txt", range_test::file_lines(range_test::all_cells()));
  Spec spec = source("ranking.txt");
  ASSERT_EQ(spec.ReadSpectrFromFile(2), 1);
  std::ifstream report(m_dir.file("ranking.res"));
  std::string first, second;
  std::getline(report, first);
  std::getline(report, second);
  EXPECT_EQ(first, "      1 \t         AA  \t  6 \t 0.45% ");
  EXPECT_EQ(second, "      2 \t       (AK)  \t  4 \t 0.75% ");
}

TEST_F(SpecFile, OneClassShortIsCorruptedWithTheCombinationTotal) {
  std::vector<int> cells = range_test::all_cells();
  cells.erase(std::find(cells.begin(), cells.end(), 1));  // drop AKs: 1322 combinations
  m_dir.write("short.txt", range_test::file_lines(cells));
  Spec spec = source("short.txt");
  EXPECT_EQ(spec.ReadSpectrFromFile(1), 0);
  ASSERT_EQ(m_messages.texts().size(), 1u);
  EXPECT_EQ(m_messages.texts()[0], L"File " + m_dir.wide("short.txt") + L" is corrupted (it has bad lines 1322)!");
  EXPECT_EQ(spec.m_percentToHand.size(), 168u);  // what was read stays

  EXPECT_EQ(spec.ReadSpectrFromFile(0), 1);  // mode 0 makes no check
  EXPECT_EQ(m_messages.texts().size(), 1u);
}

TEST_F(SpecFile, NamesAndMissingFiles) {
  m_dir.write("ranking.dat", range_test::file_lines(range_test::all_cells()));
  Spec dat = source("ranking.dat");
  EXPECT_EQ(dat.ReadSpectrFromFile(1), 0);
  EXPECT_TRUE(m_messages.texts().empty());  // silently
  EXPECT_TRUE(dat.m_percentToHand.empty());
  EXPECT_EQ(dat.ReadSpectrFromFile(2), 0);
  EXPECT_TRUE(std::filesystem::exists(m_dir.file("ranking.res")));  // the report is opened before the check

  Spec missing = source("missing.txt");
  EXPECT_EQ(missing.ReadSpectrFromFile(1), 0);
  ASSERT_EQ(m_messages.texts().size(), 1u);
  EXPECT_EQ(m_messages.texts()[0], L"You need to download file " + m_dir.wide("missing.txt"));
}

TEST(SpecStrength, BestHeldAndStrongestMissingClass) {
  Spec empty;
  EXPECT_EQ(empty.MakeBestHand().GetSize(), 0);
  EXPECT_EQ(empty.MakeNextForceHand().MakeString(), L"AA");
  EXPECT_EQ(empty.MakeNextForceHand6Plus().MakeString(), L"AA");

  Spec range;
  range.AddCard(pokermath::parse_card("As"), pokermath::parse_card("Ks"));  // one combination of AKs
  range.AddNonSuit(5, 0);                                                   // 72o
  const Spec best = range.MakeBestHand();
  EXPECT_EQ(best.MakeString(), L"AKs");
  EXPECT_EQ(best.GetSize(), 4);  // the whole class

  Spec low;
  low.AddSuit(12, 3);  // A5s, strength 30
  low.AddSuit(5, 4);   // 76s, strength 55
  EXPECT_EQ(low.MakeBestHand().MakeString(), L"A5s");
  EXPECT_EQ(low.MakeBestHand6Plus().MakeString(), L"76s");  // A5s has no place in the short deck

  Spec top;
  for (int rank : {12, 11, 10}) top.AddPair(rank);
  EXPECT_EQ(top.MakeNextForceHand().MakeString(), L"AKs");  // the order runs AA KK QQ AKs JJ
  EXPECT_EQ(top.MakeNextForceHand6Plus().MakeString(), L"JJ");

  Spec full;
  full.MakeRandom();
  EXPECT_EQ(full.MakeNextForceHand().GetSize(), 0);
  EXPECT_EQ(full.MakeNextForceHand6Plus().GetSize(), 0);
}

TEST(SpecStrength, NextForceHandWalksEveryClassOnce) {
  for (const bool short_deck : {false, true}) {
    Spec range;
    std::set<std::vector<int>> seen;
    for (int step = 0;; ++step) {
      const Spec next = short_deck ? range.MakeNextForceHand6Plus() : range.MakeNextForceHand();
      if (next.GetSize() == 0) {
        EXPECT_EQ(step, short_deck ? 81 : 169);
        break;
      }
      ASSERT_LT(step, 169);
      EXPECT_TRUE(seen.insert(matrix(next)).second) << pokermath::narrow(next.MakeString());
      const Spec best_before = range.MakeBestHand();
      range.m_hands.insert(next.m_hands.begin(), next.m_hands.end());
      EXPECT_EQ(range.MakeBestHand().m_hands, step == 0 ? next.m_hands : best_before.m_hands);
    }
  }
}

}  // namespace

// The Omaha range language and OmahaRange: every expression is checked against plain predicates over
// all four-card holdings (five- and six-card ones by enumeration or sample), printing round trips,
// shares of a hand-made ranking, hand types, error positions and the classic range classes.
#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <functional>
#include <map>
#include <random>
#include <set>

#include "test_util.h"

namespace {

using pokermath::OmahaHolding;
using pokermath::parse_omaha_range;
using Range = pokermath::OmahaRange;

// A holding's cards counted the plain way.
struct Hand {
  uint64_t mask = 0;
  int n = 0;
  int rank[13] = {};
  int suit[4] = {};
  int at(int r) const { return rank[r]; }
  bool has(const char* card) const { return (mask >> pokermath::parse_card(card)) & 1; }
};

Hand hand_of(uint64_t mask) {
  Hand h;
  h.mask = mask;
  for (uint64_t left = mask; left; left &= left - 1) {
    const int c = std::countr_zero(left);
    ++h.n;
    ++h.rank[c % 13];
    ++h.suit[c / 13];
  }
  return h;
}

std::string text_of(uint64_t mask) {
  std::vector<int> cards;
  Int64ToVec(mask, cards);
  return pokermath::cards_to_string(cards);
}

constexpr int A = 12, K = 11, Q = 10, J = 9, T = 8;

int pairs_of(const Hand& h) { return static_cast<int>(std::count_if(h.rank, h.rank + 13, [](int c) { return c >= 2; })); }
int max_rank_count(const Hand& h) { return *std::max_element(h.rank, h.rank + 13); }
int suited_suits(const Hand& h) { return static_cast<int>(std::count_if(h.suit, h.suit + 4, [](int c) { return c >= 2; })); }
bool rundown(const Hand& h) {
  if (max_rank_count(h) > 1) return false;
  for (int low = -1; low + h.n - 1 <= 12; ++low) {  // low = -1: the ace below the deuce
    bool all = true;
    for (int r = low; r < low + h.n; ++r) all = all && h.rank[r < 0 ? A : r] == 1;
    if (all) return true;
  }
  return false;
}
bool broadway(const Hand& h) { return std::all_of(h.rank, h.rank + T, [](int c) { return c == 0; }); }
bool suited_ace(const Hand& h) {
  for (int s = 0; s < 4; ++s)
    if (((h.mask >> (13 * s + A)) & 1) && h.suit[s] >= 2) return true;
  return false;
}
bool double_suited(const Hand& h) { return suited_suits(h) >= 2; }

std::vector<uint64_t> all_holdings(int n) {
  std::vector<uint64_t> out;
  test_util::for_each_set(n, 0, [&](const int* c) {
    uint64_t m = 0;
    for (int i = 0; i < n; ++i) m |= uint64_t{1} << c[i];
    out.push_back(m);
  });
  std::sort(out.begin(), out.end());
  return out;
}

const std::vector<uint64_t>& four_card_holdings() {
  static const std::vector<uint64_t> all = all_holdings(4);
  return all;
}

// The expected weight of a holding (0: not held).
using Expect = std::function<double(const Hand&)>;
double held(bool b) { return b ? 100 : 0; }

struct Case {
  const char* text;
  Expect weight;
};

// Expressions for four-card holdings with the plain predicate each must equal.
const std::vector<Case>& four_card_cases() {
  static const std::vector<Case> cases = {
      {"AA**", [](const Hand& h) { return held(h.at(A) >= 2); }},
      {"aa", [](const Hand& h) { return held(h.at(A) >= 2); }},
      {"AA**!AAA*", [](const Hand& h) { return held(h.at(A) == 2); }},
      {"AxAy**:ds", [](const Hand& h) { return held(h.at(A) >= 2 && double_suited(h)); }},
      {"AxKxAyKy", [](const Hand& h) {
         return held(h.at(A) == 2 && h.at(K) == 2 &&
                     ((h.mask >> A) & 0x0000008004002001ull) == ((h.mask >> K) & 0x0000008004002001ull));
       }},
      {"****", [](const Hand&) { return 100.0; }},
      {"random", [](const Hand&) { return 100.0; }},
      {"*x*x*y*y", [](const Hand& h) { return held(double_suited(h)); }},
      {"rundown", [](const Hand& h) { return held(rundown(h)); }},
      {"KK+", [](const Hand& h) { return held(h.at(K) >= 2 || h.at(A) >= 2); }},
      {"T987-7654", [](const Hand& h) {
         for (int lo = 5; lo <= 8; ++lo)
           if (h.at(lo) && h.at(lo - 1) && h.at(lo - 2) && h.at(lo - 3)) return 100.0;
         return 0.0;
       }},
      {"AsKs", [](const Hand& h) { return held(h.has("As") && h.has("Ks")); }},
      {"AsXs**", [](const Hand& h) { return held(h.has("As") && h.suit[3] >= 2); }},
      {"AKQJ:rainbow", [](const Hand& h) { return held(h.at(A) && h.at(K) && h.at(Q) && h.at(J) && suited_suits(h) == 0); }},
      {"!AA", [](const Hand& h) { return held(h.at(A) < 2); }},
      {"!ds:np", [](const Hand& h) { return held(!double_suited(h) && pairs_of(h) == 0); }},
      {"AA,KK:ds", [](const Hand& h) { return held(h.at(A) >= 2 || (h.at(K) >= 2 && double_suited(h))); }},
      {"(AA,KK):ds", [](const Hand& h) { return held((h.at(A) >= 2 || h.at(K) >= 2) && double_suited(h)); }},
      {"(AA,KK)!(ss,AAA)", [](const Hand& h) {
         return held((h.at(A) >= 2 || h.at(K) >= 2) && suited_suits(h) != 1 && h.at(A) < 3);
       }},
      {"broadway!onepair!twopair:suitedace",
       [](const Hand& h) { return held(broadway(h) && max_rank_count(h) != 2 && suited_ace(h)); }},
      {"trips,quads", [](const Hand& h) { return held(max_rank_count(h) >= 3); }},
      {"AA@50,AAK", [](const Hand& h) { return h.at(A) >= 2 ? (h.at(K) ? 100 : 50) : 0; }},
      {"(AA@50,KK@80):(ds@30,AK)", [](const Hand& h) {
         const double left = std::max(h.at(A) >= 2 ? 50 : 0, h.at(K) >= 2 ? 80 : 0);
         const double right = std::max(double_suited(h) ? 30 : 0, h.at(A) && h.at(K) ? 100 : 0);
         return std::min(left, right);
       }},
      {"(QQ,AA@40)@50!QQQ", [](const Hand& h) {
         return h.at(Q) == 2 ? 50 : h.at(A) >= 2 && h.at(Q) < 3 ? 20 : 0;
       }},
      {"!(AA@10)", [](const Hand& h) { return held(h.at(A) < 2); }},
  };
  return cases;
}

void expect_same(const Range& a, const Range& b, const std::string& what) {
  ASSERT_EQ(a.size(), b.size()) << what;
  for (size_t i = 0; i < a.size(); ++i)
    ASSERT_EQ(a.holdings()[i], b.holdings()[i]) << what << ": " << text_of(a.holdings()[i].cards);
}

TEST(OmahaRangeParse, FourCardExpressionsHoldExactlyWhatTheirPredicatesSayAndPrintBack) {
  const auto& all = four_card_holdings();
  ASSERT_EQ(all.size(), 270725u);
  for (const Case& c : four_card_cases()) {
    const Range range = parse_omaha_range(c.text);
    std::vector<OmahaHolding> expected;
    double total = 0;
    for (const uint64_t m : all)
      if (const double w = c.weight(hand_of(m)); w > 0) {
        expected.push_back({m, w});
        total += w / 100;
      }
    ASSERT_EQ(range.size(), expected.size()) << c.text;
    for (size_t i = 0; i < expected.size(); ++i)
      ASSERT_EQ(range.holdings()[i], expected[i]) << c.text << ": " << text_of(expected[i].cards);
    EXPECT_NEAR(range.total_weight(), total, 1e-6) << c.text;

    // The canonical text reads back to the same holdings and prints itself again.
    const Range again = parse_omaha_range(range.text());
    expect_same(range, again, std::string(c.text) + " -> " + range.text());
    EXPECT_EQ(again.text(), range.text()) << c.text;
  }
}

TEST(OmahaRangeParse, FiveAndSixCardExpressionsMatchTheirPredicates) {
  const std::vector<Case> cases = {
      {"AA", [](const Hand& h) { return held(h.at(A) >= 2); }},
      {"AA!AAA", [](const Hand& h) { return held(h.at(A) == 2); }},
      {"KK+:ds", [](const Hand& h) { return held((h.at(K) >= 2 || h.at(A) >= 2) && double_suited(h)); }},
      {"*x*x*x", [](const Hand& h) { return held(*std::max_element(h.suit, h.suit + 4) >= 3); }},
      {"A*x*y*z*w", [](const Hand& h) {  // an ace and, besides it, a card of every suit
         for (int s = 0; s < 4; ++s) {
           if (!((h.mask >> (13 * s + A)) & 1)) continue;
           Hand rest = h;
           --rest.suit[s];
           if (std::all_of(rest.suit, rest.suit + 4, [](int c) { return c >= 1; })) return 100.0;
         }
         return 0.0;
       }},
      {"T987+", [](const Hand& h) {
         for (int lo = T; lo <= A; ++lo)
           if (h.at(lo) && h.at(lo - 1) && h.at(lo - 2) && h.at(lo - 3)) return 100.0;
         return 0.0;
       }},
      {"rundown,!(broadway,np)", [](const Hand& h) { return held(rundown(h) || !(broadway(h) || pairs_of(h) == 0)); }},
      {"AsKs", [](const Hand& h) { return held(h.has("As") && h.has("Ks")); }},
  };
  // Six-card holdings: the cases that build their holdings instead of filtering all 20 million.
  const std::set<std::string> six_card = {"AA", "AA!AAA", "KK+:ds", "T987+", "AsKs"};
  std::mt19937 engine(7);
  for (const int n : {5, 6}) {
    const std::vector<uint64_t> all = n == 5 && !test_util::kSanitized ? all_holdings(5) : std::vector<uint64_t>{};
    for (const Case& c : cases) {
      if (n == 6 && !six_card.count(c.text)) continue;
      const Range range = parse_omaha_range(c.text, n);
      if (!all.empty()) {
        const auto count = std::count_if(all.begin(), all.end(), [&](uint64_t m) { return c.weight(hand_of(m)) > 0; });
        EXPECT_EQ(range.size(), static_cast<size_t>(count)) << c.text;
      }
      for (int i = 0; i < 20000; ++i) {
        uint64_t m = 0;
        for (const int card : test_util::random_cards(engine, n)) m |= uint64_t{1} << card;
        ASSERT_EQ(range.contains(m), c.weight(hand_of(m)) > 0) << c.text << " " << n << " cards: " << text_of(m);
      }
      for (size_t i = 0; i < range.size(); i += 1 + range.size() / 2000)
        ASSERT_GT(c.weight(hand_of(range.holdings()[i].cards)), 0) << c.text << ": " << text_of(range.holdings()[i].cards);
    }
  }
  if (!test_util::kSanitized) {
    EXPECT_EQ(parse_omaha_range("****", 6).size(), 20358520u);
  }
}

TEST(OmahaRangeParse, CanonicalText) {
  const std::pair<const char*, const char*> cases[] = {
      {" aa** , kk** : DS ", "AA**,KK**:ds"},
      {"XxXy", "*x*y"},
      {"QQ - 99", "QQ-99"},
      {"((AA))", "AA"},
      {"(AA,KK)@50.0", "(AA,KK)@50"},
      {"(AA@50)@50", "(AA@50)@50"},
      {"!(AA,KK)@25", "!(AA,KK)@25"},
      {"(!AA)@25", "(!AA)@25"},
      {"AA!(KK!QQ)", "AA!(KK!QQ)"},
      {"(AA!KK)!QQ", "AA!KK!QQ"},
      {"(AA,KK):(QQ,JJ)", "(AA,KK):(QQ,JJ)"},
      {"AA,(KK,QQ)", "AA,KK,QQ"},
      {"NoPair:Any@2.50", "nopair:any@2.5"},
  };
  for (const auto& [text, canonical] : cases) EXPECT_EQ(parse_omaha_range(text).text(), canonical) << text;
}

pokermath::OmahaRanking empty_ranking(int hole_cards) {
  pokermath::OmahaRanking r;
  r.hole_cards = hole_cards;
  return r;
}

TEST(OmahaRangeParse, MalformedTextNamesThePosition) {
  static const pokermath::OmahaRanking five = empty_ranking(5), four = empty_ranking(4);
  struct Bad {
    const char* text;
    int position;
    const pokermath::OmahaRanking* ranking = &four;
  };
  const Bad cases[] = {
      {"", 1},         {"   ", 4},     {"AA?", 3},     {"AA,,KK", 4},   {"AAAAA", 5},  {"AsAs", 3},
      {"AxAx", 3},     {"**+", 1},     {"AA-KQ", 4},   {"AKs-QJ", 5},   {"AA@0", 4},   {"AA@101", 4},
      {"AA@", 4},      {"(AA", 4},     {"AA)", 3},     {"0%", 1},       {"101%", 1},   {"20%-10%", 5},
      {"x", 1},        {"ds ss", 4},   {"AA:", 4},     {"!", 2},        {"AA@1.2.3", 4}, {"KK,15%", 4, nullptr},
      {"15%", 1, &five}, {"A A", 3},   {"AA-", 4},
  };
  for (const Bad& c : cases) {
    const std::string message = test_util::error_of([&] { parse_omaha_range(c.text, 4, c.ranking); });
    EXPECT_EQ(message.rfind("position " + std::to_string(c.position) + ": ", 0), 0u) << c.text << " -> " << message;
  }
  EXPECT_NE(test_util::error_of([] { parse_omaha_range("AA", 7); }), "(no error)");
  EXPECT_NE(test_util::error_of([] { parse_omaha_range("AAAAAAA", 6); }), "(no error)");
  EXPECT_TRUE(parse_omaha_range("AAAA!AAAA").empty());  // empty is a result, not an error
  // Nesting is limited (a message, never a stack overflow); a long list of holdings is not.
  const std::string deep = std::string(5000, '(') + "AA" + std::string(5000, ')');
  EXPECT_EQ(test_util::error_of([&] { parse_omaha_range(deep); }).rfind("position 201: ", 0), 0u);
  EXPECT_EQ(test_util::error_of([&] { parse_omaha_range(std::string(5000, '!') + "AA"); }).rfind("position 201: ", 0), 0u);
  std::string list;
  for (int i = 0; i < 50000; ++i) list += "AsKsQhJh,";
  EXPECT_EQ(parse_omaha_range(list + "AcKcQdJd").size(), 2u);
}

// A ranking of all 4-card classes in an arbitrary but fixed order (by a scramble of the class mask).
pokermath::OmahaRanking fake_ranking() {
  std::vector<uint64_t> classes;
  for (const uint64_t m : four_card_holdings()) classes.push_back(pokermath::omaha_suit_class(m));
  std::sort(classes.begin(), classes.end());
  classes.erase(std::unique(classes.begin(), classes.end()), classes.end());
  const auto scramble = [](uint64_t x) { return (x * 0x9E3779B97F4A7C15ull) ^ (x >> 17); };
  std::sort(classes.begin(), classes.end(), [&](uint64_t a, uint64_t b) { return scramble(a) < scramble(b); });
  pokermath::OmahaRanking r;
  r.classes = classes;
  for (size_t i = 0; i < classes.size(); ++i)  // falling, each value held by two classes
    r.equity.push_back(1.0f - static_cast<float>(i / 2) / 16432);
  return r;
}

TEST(OmahaRangeShares, ShareHoldsTheHoldingsAtOrAboveTheEquityOfItsLastHolding) {
  const pokermath::OmahaRanking ranking = fake_ranking();
  EXPECT_EQ(ranking.classes.size(), 16432u);
  std::map<uint64_t, size_t> place;
  for (size_t i = 0; i < ranking.classes.size(); ++i) place[ranking.classes[i]] = i;

  // Every holding in ranking order; the share holds those whose equity is at or above the k-th one's.
  std::vector<std::pair<size_t, uint64_t>> ordered;
  for (const uint64_t m : four_card_holdings()) ordered.push_back({place.at(pokermath::omaha_suit_class(m)), m});
  std::sort(ordered.begin(), ordered.end());
  const auto top = [&](double p) {
    std::vector<uint64_t> out;
    const auto k = static_cast<size_t>(std::ceil(p / 100 * 270725));
    for (const auto& [c, m] : ordered)
      if (k > 0 && ranking.equity[c] >= ranking.equity[ordered[k - 1].first]) out.push_back(m);
    std::sort(out.begin(), out.end());
    return out;
  };
  const auto cards_of = [](const Range& r) {
    std::vector<uint64_t> out;
    for (const OmahaHolding& h : r.holdings()) out.push_back(h.cards);
    return out;
  };
  EXPECT_EQ(cards_of(parse_omaha_range("10%", 4, &ranking)), top(10));
  EXPECT_EQ(cards_of(parse_omaha_range("2.5%", 4, &ranking)), top(2.5));
  EXPECT_EQ(parse_omaha_range("100%", 4, &ranking).size(), 270725u);
  std::vector<uint64_t> band;
  const auto t10 = top(10), t20 = top(20);
  std::set_difference(t20.begin(), t20.end(), t10.begin(), t10.end(), std::back_inserter(band));
  const Range middle = parse_omaha_range("10%-20%@50", 4, &ranking);
  EXPECT_EQ(cards_of(middle), band);
  EXPECT_DOUBLE_EQ(middle.total_weight(), static_cast<double>(band.size()) / 2);
  EXPECT_EQ(middle.text(), "10%-20%@50");
  EXPECT_EQ(cards_of(parse_omaha_range("0%-10%", 4, &ranking)), t10);
}

TEST(OmahaRangeHands, SuitClassesAndHandTypesAgreeWithPlainCounts) {
  // The class is the smallest mask over the 24 suit permutations; its members share it.
  std::mt19937 engine(3);
  std::vector<int> perm = {0, 1, 2, 3};
  for (int i = 0; i < 2000; ++i) {
    uint64_t m = 0;
    for (const int c : test_util::random_cards(engine, 4 + i % 3)) m |= uint64_t{1} << c;
    uint64_t smallest = ~uint64_t{0};
    std::sort(perm.begin(), perm.end());
    do {
      uint64_t p = 0;
      for (int c = 0; c < 52; ++c)
        if ((m >> c) & 1) p |= uint64_t{1} << (13 * perm[static_cast<size_t>(c / 13)] + c % 13);
      smallest = std::min(smallest, p);
    } while (std::next_permutation(perm.begin(), perm.end()));
    ASSERT_EQ(pokermath::omaha_suit_class(m), smallest) << text_of(m);
    const auto members = pokermath::omaha_suit_class_members(m);
    ASSERT_TRUE(std::is_sorted(members.begin(), members.end()));
    ASSERT_TRUE(std::binary_search(members.begin(), members.end(), m)) << text_of(m);
    for (const uint64_t x : members) ASSERT_EQ(pokermath::omaha_suit_class(x), smallest) << text_of(m);
  }

  const Range all = parse_omaha_range("****@50");
  std::vector<uint64_t> expected(11, 0);
  for (const uint64_t m : four_card_holdings()) {
    const Hand h = hand_of(m);
    const int s = suited_suits(h), p = pairs_of(h), most = max_rank_count(h);
    ++expected[s >= 2 ? 0 : s == 1 ? 1 : 2];
    ++expected[most == 4 ? 7 : most == 3 ? 6 : p == 2 ? 5 : p == 1 ? 4 : 3];
    expected[8] += rundown(h);
    expected[9] += broadway(h);
    expected[10] += suited_ace(h);
  }
  const auto types = pokermath::omaha_hand_types(all);
  ASSERT_EQ(types.size(), 11u);
  for (size_t i = 0; i < types.size(); ++i) {
    EXPECT_EQ(types[i].holdings, expected[i]) << types[i].name;
    EXPECT_DOUBLE_EQ(types[i].weight, static_cast<double>(expected[i]) / 2) << types[i].name;
  }
  EXPECT_EQ(types[0].name, "double-suited");
  EXPECT_EQ(types[10].name, "suited ace");

  for (int i = 0; i < 2000; ++i) {
    uint64_t m = 0;
    for (const int c : test_util::random_cards(engine, 5)) m |= uint64_t{1} << c;
    ASSERT_NE(pokermath::omaha_hand_type(m).suits, pokermath::OmahaSuits::Rainbow) << text_of(m);
  }
  EXPECT_NE(test_util::error_of([] { pokermath::omaha_hand_type(0x7); }), "(no error)");
  EXPECT_NE(test_util::error_of([] { pokermath::omaha_hand_type(uint64_t{0xF} << 50); }), "(no error)");
}

TEST(OmahaRangeValue, ConstructionOperatorsAndDeadCards) {
  const uint64_t aakk = MakeOmahaHand(12, 25, 11, 24), qqjj = MakeOmahaHand(10, 23, 9, 22);
  const Range r(4, {{qqjj, 30}, {aakk, 40}, {qqjj, 60}});
  ASSERT_EQ(r.size(), 2u);
  EXPECT_EQ(r.holdings()[0].cards, std::min(aakk, qqjj));
  EXPECT_EQ(r.weight(qqjj), 60);
  EXPECT_EQ(r.weight(MakeOmahaHand(0, 1, 2, 3)), 0);
  EXPECT_DOUBLE_EQ(r.total_weight(), 1.0);
  expect_same(parse_omaha_range(r.text()), r, r.text());
  EXPECT_EQ(r.without(uint64_t{1} << 12).size(), 1u);

  const std::vector<OmahaHolding> bads[] = {{{0x7, 100}}, {{uint64_t{0xF} << 49, 100}}, {{aakk, 0}}, {{aakk, 100.5}}};
  for (const auto& bad : bads)
    EXPECT_NE(test_util::error_of([&] { Range(4, bad); }), "(no error)");
  EXPECT_NE(test_util::error_of([] { Range(3, {}); }), "(no error)");
  EXPECT_NE(test_util::error_of([] { (void)(Range(4, {}) | Range(5, {})); }), "(no error)");

  // The operators give what the language's operators give, and their texts read back to it.
  const Range a = parse_omaha_range("AA@50,KK"), b = parse_omaha_range("ds@30,AK");
  const std::tuple<Range, const char*, const char*> ops[] = {{a | b, "AA@50,KK,ds@30,AK", "AA@50,KK,ds@30,AK"},
                                                             {a & b, "(AA@50,KK):(ds@30,AK)", "(AA@50,KK):(ds@30,AK)"},
                                                             {a - b, "(AA@50,KK)!(ds@30,AK)", "(AA@50,KK)!(ds@30,AK)"}};
  for (const auto& [got, expression, text] : ops) {
    expect_same(got, parse_omaha_range(expression), expression);
    EXPECT_EQ(got.text(), text);
  }
}

TEST(OmahaRangeClassic, ClassesConvertToAndFromOmahaRange) {
  CRange64 range;
  ASSERT_TRUE(range.SetRange("AA**:ds"));
  EXPECT_EQ(range.Count(), static_cast<int>(parse_omaha_range("AA:ds").size()));
  EXPECT_EQ(range.GetRange(), "AA**:ds");
  const CRange64 before = range;
  for (const char* bad : {"AA?", "15%", ""}) {
    EXPECT_FALSE(range.SetRange(bad)) << bad;
    EXPECT_EQ(range.m_hands, before.m_hands);
    EXPECT_EQ(range.m_text, before.m_text);
  }
  const CRange64 back = CRange64::FromRange(range.ToRange());
  EXPECT_EQ(back.m_hands, range.m_hands);
  EXPECT_EQ(back.GetRange(), "AA**:ds");
  EXPECT_FALSE(range.AddHand(0x7));
  EXPECT_TRUE(range.AddHand(MakeOmahaHand(0, 1, 2, 3)));
  EXPECT_EQ(parse_omaha_range(range.GetRange()).size(), back.m_hands.size() + 1);

  CSpecOmaha weighted;
  ASSERT_TRUE(weighted.SetRange("AA@50,KKQQ"));
  EXPECT_EQ(weighted.GetWeight(MakeOmahaHand(12, 25, 38, 51)), 50);
  EXPECT_EQ(weighted.GetWeight(MakeOmahaHand(11, 24, 10, 23)), 100);
  const CSpec64 copy = CSpec64::FromRange(weighted.ToRange());
  EXPECT_EQ(copy.m_weights, weighted.m_weights);
  EXPECT_EQ(copy.GetRange(), "AA@50,KKQQ");
  EXPECT_TRUE(weighted.GetRange64().m_text.empty());  // the weights are gone, so is the text that had them
  EXPECT_EQ(weighted.GetRange64().Count(), weighted.Count());
  EXPECT_FALSE(weighted.SetWeight(MakeOmahaHand(0, 1, 2, 3), 101));
  EXPECT_FALSE(weighted.SetWeight(0x7, 50));
  EXPECT_TRUE(weighted.SetWeight(MakeOmahaHand(12, 25, 38, 51), 0));
  EXPECT_EQ(weighted.GetWeight(MakeOmahaHand(12, 25, 38, 51)), 0);
  EXPECT_TRUE(weighted.GetRange().find("@50") != std::string::npos);  // printed from the holdings now

  const auto sets = weighted.GetOmahaRange();
  EXPECT_EQ(sets.size(), static_cast<size_t>(weighted.Count()));
  for (const auto& s : sets) {
    ASSERT_EQ(s.size(), 4u);
    EXPECT_TRUE(weighted.GetWeight(VecToInt64({s.begin(), s.end()})) > 0);
  }
  EXPECT_EQ(sets.count({10, 11, 23, 24}), 1u);
}

}  // namespace

// The Omaha pre-flop ranking that range shares read: made coarse here (each class sampled to a
// standard error of 0.01, a few seconds) and checked against an independent run of the equity
// engine, the holdings players know at its top, and the share rule.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <fstream>
#include <map>

#include "pokermath/pokermath.h"
#include "temp_dir.h"

using namespace pokermath;

namespace {

std::string holding_text(uint64_t mask) {
  std::vector<int> cards;
  for (int c = 0; c < 52; ++c)
    if (mask >> c & 1) cards.push_back(c);
  return cards_to_string(cards);
}

class OmahaRankingTest : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    dir = new test_util::TempDir();
    ASSERT_TRUE(generate_omaha_ranking(EquityGame::Omaha, dir->path(), false, {}, 0.01));
    ranking = omaha_ranking(EquityGame::Omaha, dir->path());
  }
  static void TearDownTestSuite() {
    ranking.reset();
    delete dir;
  }
  static test_util::TempDir* dir;
  static std::shared_ptr<const OmahaRanking> ranking;
};

test_util::TempDir* OmahaRankingTest::dir = nullptr;
std::shared_ptr<const OmahaRanking> OmahaRankingTest::ranking;

}  // namespace

TEST_F(OmahaRankingTest, EveryClassOnceStrongestFirstWithAcesDoubleSuitedOnTop) {
  ASSERT_EQ(ranking->classes.size(), 16432u);
  EXPECT_EQ(ranking->std_error, 0.01f);
  uint64_t holdings = 0;
  for (size_t i = 0; i < ranking->classes.size(); ++i) {
    holdings += omaha_suit_class_members(ranking->classes[i]).size();
    if (i) {
      EXPECT_LE(ranking->equity[i], ranking->equity[i - 1]);
    }
  }
  EXPECT_EQ(holdings, 270725u);
  // The strongest classes are pairs of aces with two more cards, double-suited; the weakest is
  // four of a kind of deuces.
  for (size_t i = 0; i < 10; ++i) {
    const OmahaHandType type = omaha_hand_type(ranking->classes[i]);
    int aces = 0;
    for (int suit = 0; suit < 4; ++suit) aces += ranking->classes[i] >> (13 * suit + 12) & 1;
    EXPECT_TRUE(aces == 2 && type.suits == OmahaSuits::DoubleSuited) << holding_text(ranking->classes[i]);
  }
  EXPECT_EQ(omaha_hand_type(ranking->classes.back()).pairs, OmahaPairs::Quads);
  // Aces and kings double-suited sit near the top.
  const uint64_t aakk = omaha_suit_class(cards_to_mask(parse_cards("AsAhKsKh")));
  const auto at = std::find(ranking->classes.begin(), ranking->classes.end(), aakk) - ranking->classes.begin();
  EXPECT_LT(at, 30);
}

// 20 classes spread over the ranking, each against a random holding through the Monte Carlo equity
// engine on another seed: within four standard errors of both estimates.
TEST_F(OmahaRankingTest, ClassesAgreeWithTheEquityEngine) {
  for (size_t i = 0; i < 20; ++i) {
    const size_t at = i * (ranking->classes.size() - 1) / 19;
    EquityRequest r;
    r.game = EquityGame::Omaha;
    r.players = {holding_text(ranking->classes[at]), "random"};
    r.method = EquityMethod::MonteCarlo;
    r.target_std_error = 0.01;
    r.seed = 77 + i;
    const EquityResult e = compute_equity(r);
    const double error = std::hypot(e.players[0].std_error, ranking->std_error);
    EXPECT_NEAR(ranking->equity[at], e.players[0].equity, 4 * error) << r.players[0];
  }
}

// "10%" holds exactly the holdings whose ranked equity is at or above that of the 27,073rd strongest
// holding (10% of 270,725, rounded up), counted by holdings, not classes.
TEST_F(OmahaRankingTest, ATopShareIsCountedInHoldings) {
  std::vector<std::pair<float, uint64_t>> all;  // every holding with its class's equity
  for (size_t i = 0; i < ranking->classes.size(); ++i)
    for (uint64_t m : omaha_suit_class_members(ranking->classes[i])) all.emplace_back(ranking->equity[i], m);
  std::sort(all.begin(), all.end(), [](auto& a, auto& b) { return a.first > b.first; });
  for (double p : {10.0, 0.5, 33.3}) {
    const auto k = static_cast<size_t>(std::ceil(p / 100 * 270725));
    std::vector<uint64_t> want;
    for (const auto& [equity, m] : all)
      if (equity >= all[k - 1].first) want.push_back(m);
    std::sort(want.begin(), want.end());
    const pokermath::OmahaRange got = parse_omaha_range(std::to_string(p) + "%", 4, ranking.get());
    std::vector<uint64_t> masks;
    for (const OmahaHolding& h : got.holdings()) masks.push_back(h.cards);
    EXPECT_EQ(masks, want) << p;
    EXPECT_GE(masks.size(), k);
  }
  // The game's call finds the file in the data directory.
  EXPECT_EQ(parse_omaha_range("AA**:ds,5%", EquityGame::Omaha, dir->path()).size(),
            (parse_omaha_range("AA**:ds", 4) | parse_omaha_range("5%", 4, ranking.get())).size());
}

TEST_F(OmahaRankingTest, ADamagedFileIsComputedAgainAndSixCardsHaveNone) {
  EXPECT_FALSE(generate_omaha_ranking(EquityGame::Omaha, dir->path()));  // valid: kept
  const std::filesystem::path path = dir->path() / omaha_ranking_name(EquityGame::Omaha);
  EXPECT_EQ(path.filename(), "omaha4-ranking.bin");
  {
    std::fstream f(path, std::ios::in | std::ios::out | std::ios::binary);
    f.seekp(100);
    f.put('\x7f');
  }
  std::vector<std::string> notices;
  const TableProgress progress = [&](std::string_view, std::string_view stage, double fraction) {
    if (fraction == kNoticeFraction) notices.emplace_back(stage);
  };
  // A damaged file is found by its checksum and made again (at the game's own precision, so only
  // the check is made here: generate with a coarse target instead).
  EXPECT_TRUE(generate_omaha_ranking(EquityGame::Omaha, dir->path(), false, progress, 0.01));
  ASSERT_EQ(notices.size(), 1u);
  EXPECT_NE(notices[0].find("checksum"), std::string::npos) << notices[0];
  EXPECT_THROW(omaha_ranking(EquityGame::Omaha6, dir->path()), Error);
  EXPECT_THROW(omaha_ranking(EquityGame::Holdem, dir->path()), Error);
}

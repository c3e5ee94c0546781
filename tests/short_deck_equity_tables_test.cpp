// The short-deck equity tables: every entry against its mirror and its images under the suit
// permutations, every class of matchups at the river against the equity engine, a sample of 2,000
// matchups at every street against a brute force written here, hands against a random hand, and
// the classic loaders on missing and damaged files.
#include <gtest/gtest.h>

#include <fstream>
#include <random>
#include <set>

#include "tables_fixture.h"
#include "temp_dir.h"
#include "test_util.h"

namespace {

using pokermath::EquityGame;
using pokermath::ShortDeckRules;

constexpr int64_t kBoards[3] = {4960, 35960, 201376};

// The 36 short-deck card codes.
std::vector<int> short_deck() {
  std::vector<int> cards;
  for (int c = 0; c < 52; ++c)
    if (c % 13 >= 4) cards.push_back(c);
  return cards;
}

// Loads the nine files from the fixture's directory into fsm5 once.
void load() {
  static const bool loaded = [] {
    pokermath::load_short_deck_tables(tables_fixture::data_dir());
    return true;
  }();
  ASSERT_TRUE(loaded);
}

// Twice the hero's wins plus ties over every board of `cards` cards from the other short-deck cards.
int64_t brute_force(std::array<int, 2> hero, std::array<int, 2> villain, int cards, bool china) {
  const ShortDeckRules rules = china ? ShortDeckRules::China : ShortDeckRules::Standard;
  uint64_t dead = 0;
  for (int c = 0; c < 52; ++c)
    if (c % 13 < 4) dead |= uint64_t{1} << c;
  for (int c : {hero[0], hero[1], villain[0], villain[1]}) dead |= uint64_t{1} << c;
  int64_t twice = 0;
  std::vector<int> h(2 + cards), v(2 + cards);
  h[0] = hero[0], h[1] = hero[1], v[0] = villain[0], v[1] = villain[1];
  test_util::for_each_set(cards, dead, [&](const int* board) {
    std::copy(board, board + cards, h.begin() + 2);
    std::copy(board, board + cards, v.begin() + 2);
    const int a = pokermath::hand_value(h, rules), b = pokermath::hand_value(v, rules);
    twice += a > b ? 2 : a == b ? 1 : 0;
  });
  return twice;
}

double equity(std::array<int, 2> hero, std::array<int, 2> villain, int street, bool china) {
  return fsm5::get2(hero.data(), villain.data(), street, china ? 1 : 0);
}

TEST(ShortDeckEquityTables, EveryEntryAgreesWithItsMirrorAndItsSuitImages) {
  load();
  const std::vector<int> deck = short_deck();
  for (int a = 0; a < 36; ++a)
    for (int b = a + 1; b < 36; ++b)
      for (int c = 0; c < 36; ++c)
        for (int d = c + 1; d < 36; ++d) {
          const std::array<int, 2> hero = {deck[a], deck[b]}, villain = {deck[c], deck[d]};
          if (a == c || a == d || b == c || b == d) {
            EXPECT_EQ(equity(hero, villain, 5, false), -1.0);  // the hands share a card
            continue;
          }
          for (int street = 3; street <= 5; ++street)
            for (bool china : {false, true}) {
              const double e = equity(hero, villain, street, china);
              ASSERT_NEAR(e + equity(villain, hero, street, china), 100.0, 1e-9)
                  << test_util::names({hero[0], hero[1], villain[0], villain[1]}) << " street " << street;
              // The hearts and spades exchanged: the same matchup up to suits.
              auto swap = [](int card) { return card / 13 >= 2 ? 13 * (5 - card / 13) + card % 13 : card; };
              ASSERT_EQ(e, equity({swap(hero[0]), swap(hero[1])}, {swap(villain[0]), swap(villain[1])}, street, china));
            }
        }
}

TEST(ShortDeckEquityTables, EveryClassAtTheRiverEqualsTheEngine) {
  load();
  const std::vector<int> deck = short_deck();
  std::set<uint32_t> classes;
  int checked = 0;
  for (int a = 0; a < 36; ++a)
    for (int b = a + 1; b < 36; ++b)
      for (int c = 0; c < 36; ++c)
        for (int d = c + 1; d < 36; ++d) {
          const std::array<int, 2> hero = {deck[a], deck[b]}, villain = {deck[c], deck[d]};
          if (a == c || a == d || b == c || b == d) continue;
          // One matchup per class of suit permutations (the check above covers the others).
          uint32_t key = UINT32_MAX;
          for (std::array<int, 4> perm = {0, 1, 2, 3};;) {
            auto map = [&](int card) { return static_cast<uint32_t>(13 * perm[card / 13] + card % 13); };
            const uint32_t h0 = map(hero[0]), h1 = map(hero[1]), v0 = map(villain[0]), v1 = map(villain[1]);
            key = std::min(key,
                           std::min(h0, h1) << 18 | std::max(h0, h1) << 12 | std::min(v0, v1) << 6 | std::max(v0, v1));
            if (!std::next_permutation(perm.begin(), perm.end())) break;
          }
          if (!classes.insert(key).second) continue;
          for (bool china : {false, true}) {
            pokermath::EquityRequest r;
            r.game = china ? EquityGame::ShortDeckChina : EquityGame::ShortDeck;
            r.players = {test_util::names({hero[0], hero[1]}), test_util::names({villain[0], villain[1]})};
            r.method = pokermath::EquityMethod::Exact;
            r.threads = 1;
            ASSERT_NEAR(equity(hero, villain, 5, china), 100 * pokermath::compute_equity(r).players[0].equity, 1e-9)
                << r.players[0] << " " << r.players[1] << (china ? " china" : "");
          }
          ++checked;
        }
  EXPECT_GT(checked, 14000);
}

TEST(ShortDeckEquityTables, SampledMatchupsEqualABruteForceAtEveryStreet) {
  load();
  std::mt19937 rng(630);
  uint64_t low = 0;
  for (int c = 0; c < 52; ++c)
    if (c % 13 < 4) low |= uint64_t{1} << c;
  for (int i = 0; i < 2000; ++i) {
    const std::vector<int> cards = test_util::random_cards(rng, 4, low);
    const std::array<int, 2> hero = {cards[0], cards[1]}, villain = {cards[2], cards[3]};
    SCOPED_TRACE(test_util::names(cards));
    for (bool china : {false, true})
      for (int street = 3; street <= (i < 100 ? 5 : 4); ++street) {
        const double want = brute_force(hero, villain, street, china) / 2.0 / kBoards[street - 3] * 100;
        EXPECT_NEAR(equity(hero, villain, street, china), want, 1e-9) << street << (china ? " china" : "");
      }
  }
}

TEST(ShortDeckEquityTables, HandsAgainstARandomHandEqualTheEngine) {
  load();
  for (const char* text : {"AsKs", "6c7d", "QhQd", "Ah6h"})
    for (bool china : {false, true}) {
      const std::vector<int> hero = test_util::cards(text);
      pokermath::EquityRequest r;
      r.game = china ? EquityGame::ShortDeckChina : EquityGame::ShortDeck;
      r.players = {text, "random"};
      r.method = pokermath::EquityMethod::Exact;
      EXPECT_NEAR(fsm5::get1(hero.data(), china), 100 * pokermath::compute_equity(r).players[0].equity, 1e-9)
          << text << (china ? " china" : "");
    }
  const int low[2] = {3, 51};
  EXPECT_EQ(fsm5::get1(low, 0), -1.0);
}

// The classic loaders read the current directory: a missing file and a damaged one are told and
// leave their slot empty; the good files load.
TEST(ShortDeckEquityTables, ClassicLoadersTellMissingAndDamagedFiles) {
  test_util::TempDir dir;
  for (const std::string& name : pokermath::short_deck_table_names())
    std::filesystem::copy_file(tables_fixture::data_dir() / name, dir.path() / name);
  std::filesystem::remove(dir.path() / "ET2I_6.bin");
  std::filesystem::resize_file(dir.path() / "ET2T_6.bin", 1000);
  {
    std::fstream out(dir.path() / "ET2R_6C.bin", std::ios::in | std::ios::out | std::ios::binary);
    out.seekp(100);
    out.write("\xff\xff\xff\x7f", 4);  // an entry above twice the boards
  }
  std::vector<CString> messages;
  const MessageHandler previous = SetMessageHandler([&](const CString& text) { messages.push_back(text); });
  const std::filesystem::path cwd = std::filesystem::current_path();
  std::filesystem::current_path(dir.path());
  fsm5::Free();
  EXPECT_EQ(fsm5::load_ET(), 0);
  EXPECT_EQ(fsm5::load_2(3, 0), 1);
  EXPECT_EQ(fsm5::load_2(6, 0), 0);
  std::filesystem::current_path(cwd);
  SetMessageHandler(previous);
  EXPECT_EQ(messages,
            (std::vector<CString>{L"Error: Can not open file ET2I_6.bin", L"Error: File ET2T_6.bin is damaged",
                                  L"Error: File ET2R_6C.bin is damaged"}));
  const int hero[2] = {51, 50}, villain[2] = {36, 23};
  EXPECT_EQ(fsm5::get2(hero, villain, 3, 0), -1.0);  // no index
  EXPECT_EQ(fsm5::et2[0][0] != nullptr, true);
  EXPECT_EQ(fsm5::et2[1][0], nullptr);
  fsm5::Free();
  EXPECT_EQ(fsm5::et2[0][0], nullptr);
}

}  // namespace

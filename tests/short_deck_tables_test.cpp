// The short-deck machines and the China ranking against plain short-deck rankings written here.
#include <atomic>
#include <map>
#include <mutex>

#include "reference_eval.h"
#include "tables_fixture.h"
#include "test_util.h"

namespace {

using reference::Rules;

class ShortDeck : public testing::Test {
 protected:
  static void SetUpTestSuite() { tables_fixture::load_state_machines(); }
};

// The cards two to five, which the short deck lacks.
constexpr uint64_t kLowCards = 0xFull | 0xFull << 13 | 0xFull << 26 | 0xFull << 39;

std::vector<int> short_deck_cards() {
  std::vector<int> cards;
  for (int k = 0; k < 36; ++k) cards.push_back(pokermath::card_from_short_deck(k));
  return cards;
}

// Checks that `values` orders the hands exactly as their reference keys: equal keys share a value
// and a larger key has a larger value. Returns a description of the first problem.
std::string order_problem(const std::map<int64_t, std::pair<int, int>>& value_range_of_key) {
  int previous_high = 0;
  for (const auto& [key, range] : value_range_of_key) {
    if (range.first != range.second) return "key " + std::to_string(key) + " has several values";
    if (range.first <= previous_high) return "key " + std::to_string(key) + " is out of order";
    previous_high = range.first;
  }
  return "";
}

void record(std::map<int64_t, std::pair<int, int>>& ranges, int64_t key, int value) {
  auto [it, inserted] = ranges.emplace(key, std::make_pair(value, value));
  it->second.first = std::min(it->second.first, value);
  it->second.second = std::max(it->second.second, value);
}

TEST_F(ShortDeck, EveryFiveCardHandInTheStandardOrder) {
  std::map<int64_t, std::pair<int, int>> ranges;
  int hands = 0;
  test_util::for_each_set(5, kLowCards, [&](const int* c) {
    ++hands;
    record(ranges, reference::five_card_key({c[0], c[1], c[2], c[3], c[4]}, Rules::kShortDeck), eval_rank5_via_fsm5(c));
  });
  EXPECT_EQ(hands, 376992);
  EXPECT_EQ(ranges.size(), 1404u);
  EXPECT_EQ(order_problem(ranges), "");
  EXPECT_EQ(ranges.begin()->second.first, 1);
  EXPECT_EQ(ranges.rbegin()->second.first, 1404);
}

TEST_F(ShortDeck, EverySevenCardHandInTheStandardOrder) {
  // Each value (1..1404) must belong to one reference key, and keys must grow with the values.
  const std::vector<int> deck = short_deck_cards();
  std::vector<int64_t> key_of_value(1405, -1);
  std::mutex mutex;
  std::atomic<int64_t> hands{0}, conflicts{0}, bad_six{0};
  const int step = static_cast<int>(test_util::sweep_size(1, 7));
#pragma omp parallel for schedule(dynamic, 1)
  for (int a = 0; a < 30; a += step) {
    std::vector<int64_t> local(1405, -1);
    int64_t local_conflicts = 0, local_hands = 0;
    int c[7];
    c[0] = deck[a];
    for (int b = a + 1; b < 31; ++b)
      for (int d = b + 1; d < 32; ++d)
        for (int e = d + 1; e < 33; ++e)
          for (int f = e + 1; f < 34; ++f)
            for (int g = f + 1; g < 35; ++g)
              for (int h = g + 1; h < 36; ++h) {
                c[1] = deck[b], c[2] = deck[d], c[3] = deck[e], c[4] = deck[f], c[5] = deck[g], c[6] = deck[h];
                ++local_hands;
                const int64_t key = reference::best_key(c, 7, Rules::kShortDeck);
                const int v = eval_rank7_via_fsm7(c);
                if (v < 1 || v > 1404 || (local[v] != -1 && local[v] != key)) {
                  ++local_conflicts;
                  continue;
                }
                local[v] = key;
                // The six-card form is the best of its five-card subsets.
                if ((h & 7) == 0) {
                  int best = 0;
                  for (int skip = 0; skip < 6; ++skip) {
                    int five[5];
                    for (int i = 0, n = 0; i < 6; ++i)
                      if (i != skip) five[n++] = c[i];
                    best = std::max(best, eval_rank5_via_fsm5(five));
                  }
                  if (eval_rank6_via_fsm5(c) != best) ++bad_six;
                }
              }
    std::lock_guard lock(mutex);
    hands += local_hands;
    conflicts += local_conflicts;
    for (int v = 1; v <= 1404; ++v) {
      if (local[v] == -1) continue;
      if (key_of_value[v] != -1 && key_of_value[v] != local[v]) ++conflicts;
      key_of_value[v] = local[v];
    }
  }
  if (step == 1) {
    EXPECT_EQ(hands.load(), 8347680);
  }
  EXPECT_EQ(conflicts.load(), 0);
  EXPECT_EQ(bad_six.load(), 0);
  int64_t previous = -1;
  for (int v = 1; v <= 1404; ++v) {
    if (key_of_value[v] == -1) continue;
    EXPECT_GT(key_of_value[v], previous) << "value " << v << " is out of order";
    previous = key_of_value[v];
  }
}

TEST_F(ShortDeck, ChinaOrderOnRandomHands) {
  // eval_rank_6China must order hands as the China rules do, for boards of three, four and five.
  std::mt19937 engine(36);
  for (int board = 3; board <= 5; ++board) {
    std::map<int64_t, std::pair<int, int>> ranges;
    for (int i = 0; i < test_util::sweep_size(300000, 30000); ++i) {
      const std::vector<int> cards = test_util::random_cards(engine, 2 + board, kLowCards);
      const int v = eval_rank_6China(cards.data(), board);
      ASSERT_GE(v, 1);
      record(ranges, reference::best_key(cards, Rules::kChina), v);
      ASSERT_EQ(getCombination6PlusChinaCommon(cards.data(), cards.data() + 2, board), v);
    }
    EXPECT_EQ(order_problem(ranges), "") << "board of " << board;
  }
  const std::vector<int> cards = test_util::cards("Ah Kd 6c 7c 8d 9s 9h");
  EXPECT_EQ(eval_rank_6China(cards.data(), 6), 0);
  EXPECT_EQ(eval_rank_6China(cards.data(), 2), 0);
}

TEST_F(ShortDeck, KnownHandsInBothOrders) {
  const std::vector<int> trips = test_util::cards("6c 6d 6h Kd Qc"), broadway = test_util::cards("Ac Kd Qh Js Tc");
  // Standard: three of a kind beats a straight; China: the straight wins.
  EXPECT_GT(eval_rank5_via_fsm5(trips.data()), eval_rank5_via_fsm5(broadway.data()));
  EXPECT_LT(eval_rank_6China(trips.data(), 3), eval_rank_6China(broadway.data(), 3));
  // A flush beats a full house in both.
  const std::vector<int> flush = test_util::cards("6h 8h Th Qh Ah"), boat = test_util::cards("Ac Ad Ah Kd Kc");
  EXPECT_GT(eval_rank5_via_fsm5(flush.data()), eval_rank5_via_fsm5(boat.data()));
  EXPECT_GT(eval_rank_6China(flush.data(), 3), eval_rank_6China(boat.data(), 3));
  EXPECT_EQ(Get_rank36(eval_rank5_via_fsm5(flush.data())), 7);
  // Three of a kind and a nine-high straight among two hole cards and five board cards: 1129.
  const std::vector<int> both = test_util::cards("Ah 6c 6d 6s 7c 8d 9h");
  EXPECT_EQ(eval_rank_6China(both.data(), 5), 1129);
  // A card below six has no short-deck code.
  const std::vector<int> five_of_hearts = test_util::cards("5h Ah Kd Qc Js");
  EXPECT_EQ(eval_rank5_via_fsm5(five_of_hearts.data()), 0);
  const std::vector<int> seven = test_util::cards("5h Ah Kd Qc Js 9c 8c");
  EXPECT_EQ(eval_rank7_via_fsm7(seven.data()), 0);
  EXPECT_EQ(eval_7hand6PlusFsm5(seven.data()), LookupHoldem6PlusFsm5(test_util::cards("Ah Kd Qc Js 9c").data()));
  EXPECT_EQ(eval_rank5_via_fsm5(test_util::cards("As Ks Qs Js Ts").data()), 1404);
}

TEST_F(ShortDeck, SevenCardsOnTheFiftyTwoCardScaleTakeTheBestSubset) {
  std::mt19937 engine(6);
  for (int i = 0; i < 100000; ++i) {
    const std::vector<int> cards = test_util::random_cards(engine, 7, kLowCards);
    // Same order as the short-deck machine: compare rank by rank through the category numbers and values.
    const int v52 = eval_7hand6PlusFsm5(cards.data()), v36 = eval_rank7_via_fsm7(cards.data());
    ASSERT_EQ(Get_rankHoldem6PlusFsm5(v52), Get_rank36(v36)) << test_util::names(cards);
  }
}

}  // namespace

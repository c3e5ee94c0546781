// Every five-card hand: the three lookup paths agree, the classes fill the documented ranges with the
// textbook number of hands, and the class order is the order of an independent reference evaluator.
#include <gtest/gtest.h>

#include <map>

#include "reference_eval.h"
#include "test_util.h"

namespace {

struct Sweep {
  std::vector<int64_t> class_key = std::vector<int64_t>(7463, -1);  // reference key of each class
  std::vector<int> hands_per_class = std::vector<int>(7463, 0);
  int64_t hands = 0;
  int64_t disagreements = 0;
  int64_t inconsistent_keys = 0;
  std::string first_problem;
};

const Sweep& sweep() {
  static const Sweep result = [] {
    Sweep s;
    test_util::for_each_set(5, 0, [&](const int* c) {
      ++s.hands;
      const std::vector<int> w = test_util::words({c, c + 5});
      const int slow = eval_5cards(w[0], w[1], w[2], w[3], w[4]);
      const int fast = eval_5hand_fast(w[0], w[1], w[2], w[3], w[4]);
      if (slow != fast || slow != eval_5hand(w.data()) || slow < 1 || slow > 7462) {
        if (s.disagreements++ == 0)
          s.first_problem = test_util::names({c, c + 5}) + ": eval_5cards " + std::to_string(slow) +
                            ", eval_5hand_fast " + std::to_string(fast) + ", eval_5hand " +
                            std::to_string(eval_5hand(w.data()));
        return;
      }
      ++s.hands_per_class[slow];
      const int64_t key = reference::five_card_key({c[0], c[1], c[2], c[3], c[4]});
      if (s.class_key[slow] == -1) {
        s.class_key[slow] = key;
      } else if (s.class_key[slow] != key && s.inconsistent_keys++ == 0 && s.first_problem.empty()) {
        s.first_problem =
            test_util::names({c, c + 5}) + " shares class " + std::to_string(slow) + " with a hand of another strength";
      }
    });
    return s;
  }();
  return result;
}

TEST(FiveCardExhaustive, AllPathsAgreeOnEveryHand) {
  const Sweep& s = sweep();
  EXPECT_EQ(s.hands, 2598960);
  EXPECT_EQ(s.disagreements, 0) << s.first_problem;
}

TEST(FiveCardExhaustive, CategoriesHaveTheTextbookCountsAndRanges) {
  const Sweep& s = sweep();
  struct Range {
    const char* name;
    int first, last;
    int64_t hands;
  };
  const Range ranges[] = {
      {"straight flush", 1, 10, 40},    {"four of a kind", 11, 166, 624},  {"full house", 167, 322, 3744},
      {"flush", 323, 1599, 5108},       {"straight", 1600, 1609, 10200},   {"three of a kind", 1610, 2467, 54912},
      {"two pair", 2468, 3325, 123552}, {"one pair", 3326, 6185, 1098240}, {"high card", 6186, 7462, 1302540}};
  for (const Range& r : ranges) {
    int64_t hands = 0;
    for (int cls = r.first; cls <= r.last; ++cls) {
      EXPECT_GT(s.hands_per_class[cls], 0) << "class " << cls << " (" << r.name << ") never occurs";
      hands += s.hands_per_class[cls];
      EXPECT_EQ(reference::category_of(s.class_key[cls]), 9 - (&r - ranges)) << "class " << cls;
      EXPECT_EQ(static_cast<int>(pokermath::category_of_class(cls)), 9 - (&r - ranges)) << "class " << cls;
    }
    EXPECT_EQ(hands, r.hands) << r.name;
  }
}

TEST(FiveCardExhaustive, ClassOrderIsTheReferenceOrder) {
  const Sweep& s = sweep();
  EXPECT_EQ(s.inconsistent_keys, 0) << s.first_problem;
  // A smaller class must be a strictly stronger hand.
  for (int cls = 2; cls <= 7462; ++cls)
    EXPECT_GT(s.class_key[cls - 1], s.class_key[cls]) << "classes " << cls - 1 << " and " << cls;
}

}  // namespace

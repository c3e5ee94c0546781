// The identifier functions behind the seven-card lookup table, on small cases.
#include <gtest/gtest.h>

#include "test_util.h"

namespace {

// One-based rank-major code of a card name.
int one_based(const char* name) { return pokermath::one_based_code(pokermath::parse_card(name)); }

TEST(SevenCardGenerator, MakeIdSortsCardsAndDropsSuitsThatCannotFlush) {
  PokerLogic logic;
  uint64_t id = logic.MakeID(0, one_based("2c"));
  EXPECT_EQ(id, 0x11u);  // rank 0 + 1 = 1 in the high nibble, clubs = suit nibble 1
  EXPECT_EQ(logic.m_numcards, 1);
  id = logic.MakeID(id, one_based("As"));
  EXPECT_EQ(id, 0x11D4u);                            // the higher byte first: A of spades (0xD4), then 2c
  EXPECT_EQ(logic.MakeID(id, one_based("As")), 0u);  // the same card again
  EXPECT_EQ(logic.m_numcards, 3);

  // Four cards: every suit held fewer than twice loses its nibble; the bytes are sorted descending.
  uint64_t four = 0;
  for (const char* c : {"2c", "7d", "9h", "Ks"}) four = logic.MakeID(four, one_based(c));
  EXPECT_EQ(four, 0x106080C0u);

  // Four sevens lose their suits, so a fifth seven is no duplicate byte; the rank count refuses it.
  uint64_t quads = 0;
  for (const char* c : {"7c", "7d", "7h", "7s"}) quads = logic.MakeID(quads, one_based(c));
  EXPECT_EQ(quads, 0x60606060u);
  EXPECT_EQ(logic.MakeID(quads, one_based("7c")), 0u);
  EXPECT_EQ(logic.m_numcards, 5);
}

TEST(SevenCardGenerator, SaveIdKeepsTheListSorted) {
  PokerLogic logic;
  EXPECT_EQ(logic.SaveID(0), 0);
  EXPECT_EQ(logic.SaveID(500), 1);  // above the maximum: appended
  EXPECT_EQ(logic.SaveID(500), 1);  // the maximum again
  EXPECT_EQ(logic.SaveID(900), 2);
  EXPECT_EQ(logic.SaveID(700), 2);  // inserted in order
  EXPECT_EQ(logic.SaveID(900), 3);
  EXPECT_EQ(logic.SaveID(100), 1);
  EXPECT_EQ(logic.m_numIDs, 5);
  EXPECT_EQ(logic.m_maxID, 900u);
  const std::vector<uint64_t> expected = {0, 100, 500, 700, 900};
  EXPECT_EQ(std::vector<uint64_t>(logic.m_IDs.begin(), logic.m_IDs.begin() + 5), expected);
}

TEST(SevenCardGenerator, OneByOneInsertionGivesTheLevelOrderedList) {
  // The first pass of the definition, run literally with SaveID for hands of up to four cards,
  // builds the same sorted list as generating each card count's identifiers at once.
  PokerLogic literal;
  for (int i = 0; i == 0 || literal.m_IDs[i] != 0; ++i)
    for (int card = 1; card <= 52; ++card) {
      const uint64_t id = literal.MakeID(literal.m_IDs[i], card);
      if (literal.m_numcards < 5) literal.SaveID(id);
    }
  std::vector<uint64_t> levels = {0}, level = {0};
  for (int cards = 1; cards <= 4; ++cards) {
    std::vector<uint64_t> next;
    PokerLogic scratch;
    for (uint64_t id : level)
      for (int card = 1; card <= 52; ++card)
        if (const uint64_t made = scratch.MakeID(id, card)) next.push_back(made);
    std::sort(next.begin(), next.end());
    next.erase(std::unique(next.begin(), next.end()), next.end());
    levels.insert(levels.end(), next.begin(), next.end());
    level = next;
  }
  ASSERT_EQ(literal.m_numIDs, static_cast<int>(levels.size()));
  EXPECT_TRUE(std::equal(levels.begin(), levels.end(), literal.m_IDs.begin()));
}

TEST(SevenCardGenerator, DoEvalValuesAndTheCountProblem) {
  PokerLogic logic;
  testing::internal::CaptureStdout();
  EXPECT_EQ(logic.DoEval(0), 0);
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
  uint64_t royal = 0, four = 0;
  for (const char* c : {"As", "Ks", "Qs", "Js", "Ts", "2d", "3c"}) royal = logic.MakeID(royal, one_based(c));
  EXPECT_EQ(logic.DoEval(royal), 36874);
  for (const char* c : {"As", "Ks", "Qs", "Js"}) four = logic.MakeID(four, one_based(c));
  testing::internal::CaptureStdout();
  logic.DoEval(four);
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "    Problem with numcards = 4!!\n");
  // Five suitless cards get suits that make no flush: A-K-Q-J-9 is a high card.
  uint64_t high = 0;
  for (const char* c : {"As", "Kd", "Qh", "Jc", "9s"}) high = logic.MakeID(high, one_based(c));
  EXPECT_EQ(logic.DoEval(high), pokermath::category_scale_value(6186));
}

TEST(SevenCardGenerator, CategoryScaleConversion) {
  // The table is generated through this conversion, so the sweeps cannot see a fault in it: the
  // first and last class of each category, by hand. Royal flush, five-high straight flush, four aces
  // and a king, ..., 7-5-4-3-2.
  const std::pair<int, int> cases[] = {{1, 36874},    {10, 36865},   {11, 32924},   {166, 32769},
                                       {167, 28828},  {1599, 24577}, {1600, 20490}, {1610, 17242},
                                       {2468, 13146}, {3326, 11052}, {6185, 8193},  {7462, 4097}};
  for (const auto& [hand_class, value] : cases) EXPECT_EQ(pokermath::category_scale_value(hand_class), value);
}

TEST(SevenCardGenerator, LookupsBeforeGenerationGiveZero) {
  PokerLogic logic;
  EXPECT_EQ(logic.LookupSingleHands(test_util::cards("As Ks Qs Js Ts 2d 3c").data()), 0);
}

}  // namespace

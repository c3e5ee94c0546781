// Every seven-card hand through the seven-card lookup table and the Texas state machine, against
// the five-card evaluator; plus the table file's load and regeneration rules.
#include <atomic>
#include <fstream>
#include <mutex>

#include "tables_fixture.h"
#include "test_util.h"

namespace {

struct SweepResult {
  int64_t hands = 0, lookup_mismatches = 0, texas_mismatches = 0;
  std::string first_problem;
};

TEST(SevenCardTables, EveryHandAgreesWithTheFiveCardEvaluator) {
  const PokerLogic& logic = tables_fixture::logic_with_table();
  tables_fixture::load_state_machines();
  int w[52];
  for (int c = 0; c < 52; ++c) w[c] = static_cast<int>(pokermath::prime_word(c));

  SweepResult total;
  std::mutex mutex;
  const int step = static_cast<int>(test_util::sweep_size(1, 9));  // every first card, or a sample
#pragma omp parallel for schedule(dynamic, 1)
  for (int a = 0; a < 46; a += step) {
    SweepResult local;
    int cards[7], words[7];
    cards[0] = a;
    words[0] = w[a];
    for (cards[1] = a + 1; cards[1] < 47; ++cards[1])
      for (cards[2] = cards[1] + 1; cards[2] < 48; ++cards[2])
        for (cards[3] = cards[2] + 1; cards[3] < 49; ++cards[3])
          for (cards[4] = cards[3] + 1; cards[4] < 50; ++cards[4])
            for (cards[5] = cards[4] + 1; cards[5] < 51; ++cards[5])
              for (cards[6] = cards[5] + 1; cards[6] < 52; ++cards[6]) {
                for (int i = 1; i < 7; ++i) words[i] = w[cards[i]];
                ++local.hands;
                const int cls = tables_fixture::best_class_of_seven(words);
                const bool lookup_ok = logic.LookupSingleHands(cards) == pokermath::category_scale_value(cls);
                const bool texas_ok = eval_rank7_texas(cards) == 7463 - cls;
                if (lookup_ok && texas_ok) continue;
                local.lookup_mismatches += !lookup_ok;
                local.texas_mismatches += !texas_ok;
                if (local.first_problem.empty())
                  local.first_problem = test_util::names(std::vector<int>(cards, cards + 7)) + ": class " +
                                        std::to_string(cls) + ", LookupSingleHands " +
                                        std::to_string(logic.LookupSingleHands(cards)) + ", eval_rank7_texas " +
                                        std::to_string(eval_rank7_texas(cards));
              }
    std::lock_guard lock(mutex);
    total.hands += local.hands;
    total.lookup_mismatches += local.lookup_mismatches;
    total.texas_mismatches += local.texas_mismatches;
    if (total.first_problem.empty()) total.first_problem = local.first_problem;
  }
  if (step == 1) {
    EXPECT_EQ(total.hands, 133784560);
  }
  EXPECT_EQ(total.lookup_mismatches, 0) << total.first_problem;
  EXPECT_EQ(total.texas_mismatches, 0) << total.first_problem;
}

TEST(SevenCardTables, EvalSevenHandIsTheSmallestClassOfItsSubsets) {
  // The sweep above uses the hash path for speed; eval_7hand (binary search) gives the same classes.
  std::mt19937 engine(7);
  for (int i = 0; i < test_util::sweep_size(200000, 20000); ++i) {
    const std::vector<int> words = test_util::words(test_util::random_cards(engine, 7));
    ASSERT_EQ(eval_7hand(words.data()), tables_fixture::best_class_of_seven(words.data()));
  }
}

TEST(SevenCardTables, ValuesDoNotDependOnTheOrderOfTheCards) {
  const PokerLogic& logic = tables_fixture::logic_with_table();
  tables_fixture::load_state_machines();
  std::mt19937 engine(11);
  for (int i = 0; i < 20000; ++i) {
    std::vector<int> hand = test_util::random_cards(engine, 7);
    const int lookup = logic.LookupSingleHands(hand.data()), texas = eval_rank7_texas(hand.data());
    for (int k = 0; k < 5; ++k) {
      std::shuffle(hand.begin(), hand.end(), engine);
      ASSERT_EQ(logic.LookupSingleHands(hand.data()), lookup) << test_util::names(hand);
      ASSERT_EQ(eval_rank7_texas(hand.data()), texas) << test_util::names(hand);
    }
  }
}

TEST(SevenCardTables, InvalidCodesGiveZero) {
  // Every valid hand (royal flushes 36874, high cards 4097..5373) is compared above.
  std::vector<int> bad = test_util::cards("As Ks Qs Js Ts 2d 3c");
  bad[6] = 52;
  EXPECT_EQ(eval_rank7_texas(bad.data()), 0);
  bad[6] = -1;
  EXPECT_EQ(eval_rank7_texas(bad.data()), 0);
}

TEST(SevenCardTables, AGoodFileIsOnlyLoadedAndABadOneIsRegenerated) {
  const std::filesystem::path dir =
      std::filesystem::temp_directory_path() / ("pokermath_hr_" + std::to_string(::getpid()));
  std::filesystem::create_directories(dir);
  const std::filesystem::path good = tables_fixture::data_dir() / "OrvalisHR.dat";
  const std::filesystem::path copy = dir / "OrvalisHR.dat";

  // A file one byte short is not accepted: the table is generated and the file rewritten.
  std::filesystem::copy_file(good, copy);
  std::filesystem::resize_file(copy, 129951335);
  auto logic = std::make_unique<PokerLogic>();
  EXPECT_EQ(logic->generate_table(pokermath::widen(copy.string())), 0);
  EXPECT_EQ(logic->m_numIDs, 612977);  // it generated
  EXPECT_EQ(std::filesystem::file_size(copy), 129951336u);
  EXPECT_EQ(logic->m_HR, tables_fixture::logic_with_table().m_HR);  // the same bytes every run
  EXPECT_LT(logic->m_currentSlot, PokerLogic::kTableEntries);

  // A second object on the good file only loads it.
  auto loader = std::make_unique<PokerLogic>();
  EXPECT_EQ(loader->generate_table(pokermath::widen(copy.string())), 0);
  EXPECT_EQ(loader->m_numIDs, 1);
  EXPECT_EQ(loader->m_HR, logic->m_HR);

  // A file of the right size with an entry that would lead a look-up outside the table is damaged
  // too: generated again and written over, never walked.
  {
    std::fstream patch(copy, std::ios::binary | std::ios::in | std::ios::out);
    const uint32_t outside = PokerLogic::kTableEntries;
    patch.seekp(4 * (53 + 17));
    patch.write(reinterpret_cast<const char*>(&outside), 4);
  }
  auto patched = std::make_unique<PokerLogic>();
  EXPECT_EQ(patched->generate_table(pokermath::widen(copy.string())), 0);
  EXPECT_EQ(patched->m_numIDs, 612977);  // it generated
  EXPECT_EQ(patched->m_HR, logic->m_HR);

  // Through the pokermath:: API the same file is found damaged against the manifest and rewritten.
  {
    std::fstream patch(copy, std::ios::binary | std::ios::in | std::ios::out);
    patch.seekp(4 * 1000);
    patch.put('\x7f');
  }
  EXPECT_FALSE(pokermath::table_file_valid(dir, pokermath::TableFile::SevenCardLookup));
  EXPECT_TRUE(pokermath::generate_table_file(dir, pokermath::TableFile::SevenCardLookup, false,
                                             [](std::string_view, std::string_view, double) {}));
  EXPECT_TRUE(pokermath::table_file_valid(dir, pokermath::TableFile::SevenCardLookup));
  auto reloaded = std::make_unique<PokerLogic>();
  EXPECT_EQ(reloaded->generate_table(pokermath::widen(copy.string())), 0);
  EXPECT_EQ(reloaded->m_HR, logic->m_HR);

  // An unwritable path still leaves the generated table in memory and returns 1.
  auto unwritable = std::make_unique<PokerLogic>();
  EXPECT_EQ(unwritable->generate_table(pokermath::widen((dir / "no" / "such" / "OrvalisHR.dat").string())), 1);
  EXPECT_EQ(unwritable->m_HR, logic->m_HR);
  std::filesystem::remove_all(dir);
}

}  // namespace

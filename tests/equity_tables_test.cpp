// The equity report with the seven-card table loaded: the lines a report starts with hold the exact
// counts of every board, and importing them gives their complements.
#include <array>
#include <cstdio>
#include <fstream>

#include "tables_fixture.h"
#include "temp_dir.h"
#include "test_util.h"

namespace {

int hand_key(int low, int high) { return low * 64 + high; }

// Twice the hero's wins (ties count one) over every five-card board, one seven-card look-up per
// player and board.
int64_t brute_force_twice_wins(const PokerLogic& logic, int h1, int h2, int v1, int v2) {
  int64_t twice = 0;
  int hero[7] = {h1, h2}, villain[7] = {v1, v2};
  test_util::for_each_set(5, 1ull << h1 | 1ull << h2 | 1ull << v1 | 1ull << v2, [&](const int* b) {
    std::copy(b, b + 5, hero + 2);
    std::copy(b, b + 5, villain + 2);
    const int h = logic.LookupSingleHands(hero), v = logic.LookupSingleHands(villain);
    twice += (h > v) * 2 + (h == v);
  });
  return twice;
}

TEST(EquityTablesReport, FirstLinesOfAnEmptyTableHoldTheExactCounts) {
  // The table holds every matchup but the report's first three (2c3c against 4c5c, 4c6c, 4c7c) and
  // its last (KsAs against JsQs), so that only those four are enumerated.
  PokerLogic logic = tables_fixture::logic_with_table();
  const std::vector<std::array<int, 4>> missing = {{0, 1, 2, 3}, {0, 1, 2, 4}, {0, 1, 2, 5}, {50, 51, 48, 49}};
  auto& table = logic.m_equityTable;
  test_util::for_each_set(2, 0, [&](const int* h) {
    test_util::for_each_set(2, 1ull << h[0] | 1ull << h[1], [&](const int* v) {
      table.emplace_hint(table.end(), std::pair{hand_key(h[0], h[1]), hand_key(v[0], v[1])}, 1);
    });
  });
  for (const auto& m : missing) table.erase({hand_key(m[0], m[1]), hand_key(m[2], m[3])});

  test_util::TempDir dir;
  const CString path = pokermath::widen((dir / "report.txt").string());
  ASSERT_EQ(logic.generate_equity_table(path), 0);
  std::ifstream in(dir / "report.txt");
  std::vector<std::string> lines;
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  ASSERT_EQ(lines.size(), 4u);
  EXPECT_EQ(lines[0].substr(0, 38), "         1  0  1 2c 3c VS  2  3 4c 5c ");
  EXPECT_EQ(lines[1].substr(0, 38), "         2  0  1 2c 3c VS  2  4 4c 6c ");
  EXPECT_EQ(lines[2].substr(0, 38), "         3  0  1 2c 3c VS  2  5 4c 7c ");
  EXPECT_EQ(lines[3].substr(0, 38), "         4 50 51 Ks As VS 48 49 Js Qs ");

  std::vector<int64_t> twice_wins;
  for (size_t i = 0; i < missing.size(); ++i) {
    const auto& m = missing[i];
    twice_wins.push_back(brute_force_twice_wins(logic, m[0], m[1], m[2], m[3]));
    const double wins = twice_wins[i] / 2.0;
    char numbers[64];
    std::snprintf(numbers, sizeof numbers, "%.1lf 1712304.0 %.3lf%%", wins, wins / 1712304 * 100);
    EXPECT_EQ(lines[i].substr(38), numbers) << lines[i];
  }

  // Imported, each line gives twice the boards the hero does not win.
  ASSERT_EQ(logic.generate_equity_turn_table(path), 1);
  ASSERT_EQ(logic.m_equityTurnTable.size(), 4u);
  for (size_t i = 0; i < missing.size(); ++i) {
    const auto& m = missing[i];
    EXPECT_EQ(logic.m_equityTurnTable.at({hand_key(m[0], m[1]), hand_key(m[2], m[3])}), 2 * 1712304 - twice_wins[i]);
  }
}

}  // namespace

// Hold'em equity against a range: every combination of the range that collides with no known card
// is one equally likely opponent hand; the result is score / count over all (board, combination)
// pairs, a win scoring 1 and a tie 1/2.
//
// The evaluators named for these operations (LookupSingleHands, eval_5hand, eval_6hand) order
// hands exactly as the seven-card table's values do, so every form reads that table: the board's
// state is carried from loop to loop and each combination costs two or three reads.
#include <algorithm>
#include <map>
#include <unordered_map>
#include <vector>

#include "cards/draw.h"
#include "equity/board_walk.h"
#include "equity/matchups.h"
#include "pokermath/equity.h"

using namespace pokermath::detail;

namespace {

using Combination = std::pair<int, int>;
using EquityTable = std::map<std::pair<int, int>, int>;

// The table value of a hand whose state after all its cards is `state`: seven cards reach a value
// directly, five or six keep theirs in entry 0 of the block.
inline uint32_t value_of(const uint32_t* HR, uint32_t state, int cards) { return cards == 7 ? state : HR[state]; }

inline uint32_t advance(const uint32_t* HR, uint32_t state, int card) {
  return HR[state + static_cast<uint32_t>(pokermath::one_based_code(card))];
}

// Walks the range on one complete board (board_state: the table state after its `board_cards`).
// A combination collides when its first card is the hero's or on the board, or its second card is
// also the first.
void walk_range(const uint32_t* HR, const int* hero, uint64_t known, uint32_t board_state, int board_cards,
                const std::vector<Combination>& range, double& score, double& count) {
  const int cards = board_cards + 2;
  const uint32_t mine = value_of(HR, advance(HR, advance(HR, board_state, hero[0]), hero[1]), cards);
  for (const auto& [first, second] : range) {
    if (known >> first & 1 || (known | uint64_t{1} << first) >> second & 1) continue;
    const uint32_t theirs = value_of(HR, advance(HR, advance(HR, board_state, first), second), cards);
    score += mine > theirs ? 1.0 : mine == theirs ? 0.5 : 0.0;
    count += 1;
  }
}

std::vector<Combination> combinations(const Spec& range) { return {range.m_hands.begin(), range.m_hands.end()}; }

// Every completion of `board` to `target` cards by the cards not yet known, each walked.
double exhaustive(const uint32_t* HR, const int* hole, const int* board, int boardCount, int target, const Spec& spec) {
  const std::vector<Combination> range = combinations(spec);
  uint64_t known = ArrayToInt64(2, hole) | ArrayToInt64(boardCount, board);
  double score = 0, count = 0;
  const uint32_t given = table_state(HR, board, boardCount);
  for_each_completion(known, target - boardCount, [&](const int* added) {
    uint32_t state = given;
    uint64_t all = known;
    for (int i = 0; i < target - boardCount; ++i) {
      state = advance(HR, state, added[i]);
      all |= uint64_t{1} << added[i];
    }
    walk_range(HR, hole, all, state, target, range, score, count);
  });
  return score / count;
}

// The key pair GetWinHandVsHand (and its turn form) looks up: each hand as lower card x 64 + higher.
std::pair<int, int> table_keys(const int* hero, const int* villain) {
  auto key = [](const int* hand) { return std::min(hand[0], hand[1]) * 64 + std::max(hand[0], hand[1]); };
  return {key(hero), key(villain)};
}

// Every kept combination's matchup through `win` (GetWinHandVsHand or its turn form, which answer
// from `table` first). A combination the table holds is asked on its own, so its entry applies to
// it alone. The others are grouped by class of matchups equal up to suits and each class asked
// once: their answers (the symmetric shortcut or the enumeration) do not change under a permutation
// of suits, and no member of a class is in the table. The sums are taken in index order, so the
// result does not depend on the thread count.
template <typename Win>
double per_matchup(const int* hole, const Spec& spec, const EquityTable& table, bool parallel, Win win) {
  std::vector<Combination> kept;
  for (const auto& c : spec.m_hands)
    if (c.first != hole[0] && c.first != hole[1] && c.second != hole[0] && c.second != hole[1]) kept.push_back(c);
  const int m = static_cast<int>(kept.size());
  std::vector<int> class_of(m);
  std::vector<int> representative;  // the first combination of each class; a held one is its own class
  std::unordered_map<uint32_t, int> index;
  for (int i = 0; i < m; ++i) {
    const int villain[2] = {kept[i].first, kept[i].second};
    if (!table.empty() && table.contains(table_keys(hole, villain))) {
      class_of[i] = static_cast<int>(representative.size());
      representative.push_back(i);
      continue;
    }
    const auto [it, added] = index.emplace(matchup_class(hole, villain), static_cast<int>(representative.size()));
    if (added) representative.push_back(i);
    class_of[i] = it->second;
  }
  const int classes = static_cast<int>(representative.size());
  std::vector<double> class_wins(classes), class_boards(classes);
  // A static partition of the classes and a join before the sums, on every available core (dynamic
  // adjustment would drop to one thread whenever the load average counts this very process).
#pragma omp parallel for schedule(static) if (parallel)
  for (int k = 0; k < classes; ++k) {
    const int villain[2] = {kept[representative[k]].first, kept[representative[k]].second};
    win(villain, class_wins[k], class_boards[k]);
  }
  double wins = 0, boards = 0;
  for (int i = 0; i < m; ++i) {
    wins += class_wins[class_of[i]];
    boards += class_boards[class_of[i]];
  }
  return wins / boards;
}

// The sampled forms: `trials` random completions of the board to `target` cards on the shared
// random source, the range walked on each.
double sampled(PokerLogic& logic, const int* hole, const int* board, int boardCount, int target, const Spec& spec) {
  const std::vector<Combination> range = combinations(spec);
  const uint32_t* HR = logic.m_HR.data();
  logic.m_random.SetInterval(0, 51);
  int known[25];
  std::fill(known, known + 25, -1);
  known[0] = hole[0], known[1] = hole[1];
  std::copy(board, board + boardCount, known + 2);
  const int given = 2 + boardCount;
  double score = 0, count = 0;
  if (boardCount == target) {
    // Nothing is random: every trial walks the same board, and score / count is that one walk's.
    walk_range(HR, hole, ArrayToInt64(given, known), table_state(HR, board, boardCount), target, range, score, count);
    return score / count;
  }
  for (int trial = 0; trial < logic.m_trials; ++trial) {
    std::fill(known + given, known + 25, -1);
    int n = given;
    for (int i = boardCount; i < target; ++i) draw_unknown_card(logic.m_random, known, n);
    walk_range(HR, hole, ArrayToInt64(n, known), table_state(HR, known + 2, target), target, range, score, count);
  }
  return score / count;
}

}  // namespace

double PokerLogic::getProbabilityOfWinBySpectr(const int* hole, const int* board, int boardCount, const Spec& range) {
  if (boardCount > 5) return 0.0;
  switch (boardCount) {
    case 0: return getProbabilityOfWinBySpectrWithNoBoard(hole, range);
    case 3: return getProbabilityOfWinBySpectrWithFlop(hole, board, range);
    case 4: return getProbabilityOfWinBySpectrWithFlopAndTurn(hole, board, range);
    default: return sampled(*this, hole, board, boardCount, 5, range);
  }
}

double PokerLogic::getProbabilityOfWinBySpectrWithNoBoard(const int* hole, const Spec& range) const {
  return per_matchup(hole, range, m_equityTable, true, [&](const int* villain, double& wins, double& boards) {
    GetWinHandVsHand(hole, villain, wins, boards);
  });
}

double PokerLogic::getProbabilityOfWinBySpectrWithFlop(const int* hole, const int* flop, const Spec& range) const {
  return exhaustive(m_HR.data(), hole, flop, 3, 5, range);
}

double PokerLogic::getProbabilityOfWinBySpectrWithFlopAndTurn(const int* hole, const int* board,
                                                              const Spec& range) const {
  return exhaustive(m_HR.data(), hole, board, 4, 5, range);
}

double PokerLogic::getProbOfWinBySpectrToFlopOrTurn(const int* hole, const int* board, int boardCount,
                                                    const Spec& range, int target) {
  if (boardCount == 0 && target == 3) return getProbabilityOfWinBySpectrWithNoBoardToFlop(hole, range);
  if (boardCount == 0 && target == 4) return getProbabilityOfWinBySpectrWithNoBoardToTurn(hole, range);
  if (boardCount == 3 && target == 4) return getProbabilityOfWinBySpectrWithFlopToTurn(hole, board, range);
  if (boardCount >= 6 || (target != 3 && target != 4)) return 0.0;
  return sampled(*this, hole, board, boardCount, target, range);
}

double PokerLogic::getProbabilityOfWinBySpectrWithNoBoardToFlop(const int* hole, const Spec& range) const {
  return exhaustive(m_HR.data(), hole, nullptr, 0, 3, range);
}

double PokerLogic::getProbabilityOfWinBySpectrWithNoBoardToTurn(const int* hole, const Spec& range) const {
  return per_matchup(hole, range, m_equityTurnTable, false, [&](const int* villain, double& wins, double& boards) {
    GetWinHandVsHandToTurn(hole, villain, wins, boards);
  });
}

double PokerLogic::getProbabilityOfWinBySpectrWithFlopToTurn(const int* hole, const int* flop,
                                                             const Spec& range) const {
  return exhaustive(m_HR.data(), hole, flop, 3, 4, range);
}

// Hold'em hand-against-hand and hand-against-random equity, the PokerLogic members.
#include <algorithm>

#include "cards/draw.h"
#include "equity/holdem_exact.h"
#include "pokermath/equity.h"

using namespace pokermath::detail;

namespace {

constexpr int kRiverBoards = 1712304;  // five-card boards once four hole cards are known
constexpr int kTurnBoards = 194580;    // four-card boards

int hand_key(const int* hand) { return std::min(hand[0], hand[1]) * 64 + std::max(hand[0], hand[1]); }

// The symmetric matchups answered by half the boards: a pair against a pair of the same rank, and
// two suited hands of the same ranks. (Two offsuit hands of the same ranks are enumerated.)
bool symmetric(const int* hero, const int* villain) {
  const int h1 = GetCardRank(hero[0]), h2 = GetCardRank(hero[1]);
  const int v1 = GetCardRank(villain[0]), v2 = GetCardRank(villain[1]);
  if (h1 == h2 && v1 == v2 && h1 == v1) return true;
  return isSuit(hero[0], hero[1]) && isSuit(villain[0], villain[1]) && std::max(h1, h2) == std::max(v1, v2) &&
         std::min(h1, h2) == std::min(v1, v2);
}

// The table answer, the shortcut or the enumeration, for the pre-flop or the turn form.
int table_or_enumerate(const std::map<std::pair<int, int>, int>& table, const int* hero, const int* villain,
                       int all_boards, const std::function<void()>& enumerate, double& wins, double& boards) {
  boards = all_boards;
  wins = 0;
  if (const auto it = table.find({hand_key(hero), hand_key(villain)}); it != table.end()) {
    wins = it->second * 0.5;
    return 1;
  }
  if (symmetric(hero, villain)) {
    wins = all_boards / 2;
    return 1;
  }
  enumerate();
  return 1;
}

}  // namespace

double PokerLogic::getProbabilityOfWin(const int* hole, const int* board, int boardCount, int players) {
  if (boardCount >= 6 || players < 2 || players > 10) return 0.0;
  int known[25];
  const int given = 2 + boardCount;
  known[0] = hole[0];
  known[1] = hole[1];
  std::copy(board, board + boardCount, known + 2);
  std::fill(known + given, known + 25, -1);
  m_random.SetInterval(0, 51);
  auto draw = [&](int& count) { return draw_unknown_card(m_random, known, count); };

  double score = 0;
  for (int trial = 0; trial < m_trials; ++trial) {
    if (boardCount > 0) std::fill(known + given, known + 25, -1);
    int count = given;
    int seven[7] = {hole[0], hole[1]};
    std::copy(board, board + boardCount, seven + 2);
    for (int i = 2 + boardCount; i < 7; ++i) seven[i] = draw(count);
    const int hero_value = LookupSingleHands(seven);
    int ties = 0;
    bool lost = false;
    for (int opponent = 1; opponent < players && !lost; ++opponent) {
      // The opponent's two cards replace the hero's beside the same board.
      seven[0] = draw(count);
      seven[1] = draw(count);
      const int value = LookupSingleHands(seven);
      lost = value > hero_value;
      ties += value == hero_value;
    }
    if (!lost) score += 1.0 / (1 + ties);
  }
  return score / m_trials;
}

void PokerLogic::getProbabilityOfWinWithNoBoard(const int* hero, const int* villain, double& wins,
                                                double& boards) const {
  const HeadsUpCounts counts = heads_up_counts(m_HR.data(), hero, villain, nullptr, 0, 0);
  wins = static_cast<double>(counts.wins) + 0.5 * static_cast<double>(counts.ties);
  boards = static_cast<double>(counts.boards);
}

void PokerLogic::getProbabilityOfWinWithNoBoardToTurn(const int* hero, const int* villain, double& wins,
                                                      double& boards) const {
  const HeadsUpCounts counts = heads_up_counts(m_HR.data(), hero, villain, nullptr, 0, 0, true);
  wins = static_cast<double>(counts.wins) + 0.5 * static_cast<double>(counts.ties);
  boards = static_cast<double>(counts.boards);
}

int PokerLogic::GetWinHandVsHand(const int* hero, const int* villain, double& wins, double& boards) const {
  return table_or_enumerate(
      m_equityTable, hero, villain, kRiverBoards, [&] { getProbabilityOfWinWithNoBoard(hero, villain, wins, boards); },
      wins, boards);
}

int PokerLogic::GetWinHandVsHandToTurn(const int* hero, const int* villain, double& wins, double& boards) const {
  return table_or_enumerate(
      m_equityTurnTable, hero, villain, kTurnBoards,
      [&] { getProbabilityOfWinWithNoBoardToTurn(hero, villain, wins, boards); }, wins, boards);
}

// Omaha Hi/Lo equity: half the pot to the best high hand, half to the best eight-or-better low
// (the whole pot to the high when nobody has a low); ties split each half, so heads-up shares are
// 0, 1/4, 1/2, 3/4 or 1.
#include <algorithm>

#include "cards/draw.h"
#include "omaha/holdings.h"
#include "omaha/omaha_internal.h"
#include "pokermath/omaha.h"

double HiLoShareHeadsUp(int heroHigh, int heroLow, int oppHigh, int oppLow) {
  const int high = heroHigh > oppHigh ? 2 : heroHigh == oppHigh ? 1 : 0;      // win, tie, loss
  if (heroLow == 0 && oppLow == 0) return high * 0.5;                         // 1.0, 0.5, 0.0
  if (oppLow != 0 && heroLow == oppLow) return 0.25 + high * 0.25;            // 0.75, 0.5, 0.25
  if (oppLow != 0 && (heroLow == 0 || heroLow > oppLow)) return high * 0.25;  // 0.5, 0.25, 0.0
  return 0.5 + high * 0.25;                                                   // 1.0, 0.75, 0.5
}

double HiLoShareMultiway(int heroHigh, int heroLow, const int* oppHigh, const int* oppLow, int n) {
  int bestLow = 100000, lowTies = 0, bestHigh = 0, highTies = 0;
  bool anyOppLow = false;
  for (int i = 0; i < n; ++i) {
    if (oppLow[i] != 0 && oppLow[i] < bestLow) bestLow = oppLow[i];
    anyOppLow = anyOppLow || oppLow[i] != 0;
    bestHigh = std::max(bestHigh, oppHigh[i]);
  }
  for (int i = 0; i < n; ++i) {
    lowTies += anyOppLow && oppLow[i] == bestLow;
    highTies += oppHigh[i] == bestHigh;
  }
  const int highWays = heroHigh < bestHigh ? 0 : heroHigh == bestHigh ? highTies + 1 : 1;
  const double high_half = highWays ? 0.5 / highWays : 0.0;
  if (anyOppLow) {
    if (heroLow == 0) return high_half;
    const int lowWays = heroLow < bestLow ? 1 : heroLow > bestLow ? 0 : lowTies + 1;
    return high_half + (lowWays ? 0.5 / lowWays : 0.0);
  }
  if (heroLow == 0) return highWays ? 1.0 / highWays : 0.0;
  // The hero alone has a low: the low half is his, the high half as the high falls.
  if (highWays == 1) return 1.0;
  return highWays > 1 ? 0.5 + 0.5 / highWays : 0.5;
}

using pokermath::detail::draw_unknown_card;

double PokerLogic::getProbabilityOfWinOmahaHL(const int* hole, const int* board, int nBoard, int nPlayers) {
  if (nBoard >= 6 || nPlayers < 2 || nPlayers > 10) return 0.0;
  pokermath::detail::OmahaDeals deals(hole, board, nBoard);
  double sum = 0;
  int out[5];
  for (int t = 0; t < m_trials; ++t) {
    const int* full = deals.next_board();
    const int heroLow = SetLowValueCombinationOmahaCommon(hole, 4, full, 5);
    const int heroHigh = getCombinationOmahaFsm5Common(hole, 4, full, 5, out);
    int highTies = 1, lowTies = heroLow ? 1 : 0;
    bool anyLow = heroLow != 0, heroLowAlive = heroLow != 0, heroHighAlive = true;
    for (int p = 1; p < nPlayers && (heroHighAlive || heroLowAlive); ++p) {
      int opponent[4];
      deals.next_opponent(opponent);
      const int low = SetLowValueCombinationOmahaCommon(opponent, 4, full, 5);
      const int high = getCombinationOmahaFsm5Common(opponent, 4, full, 5, out);
      anyLow = anyLow || low != 0;
      if (heroLowAlive && low != 0) {
        if (low < heroLow)
          heroLowAlive = false;
        else if (low == heroLow)
          ++lowTies;
      }
      if (heroHighAlive) {
        if (high > heroHigh)
          heroHighAlive = false;
        else if (high == heroHigh)
          ++highTies;
      }
    }
    if (heroHighAlive) sum += (anyLow ? 0.5 : 1.0) / highTies;
    if (anyLow && heroLowAlive) sum += 0.5 / lowTies;
  }
  return sum / m_trials;
}

double PokerLogic::EquityHandVsRandomHL(const int* hole, int nHole, const int* board, int nBoard, int nBoardTarget,
                                        int& trials, int& timeMs) {
  const uint32_t start = GetTickCount();
  m_random.SetInterval(0, 51);
  m_random.SetTimerSeed();
  int known[64];
  std::copy(hole, hole + nHole, known);
  std::copy(board, board + nBoard, known + nHole);
  double sum = 0;
  int done = 0, out[5];
  for (int t = 0; t < trials; ++t) {
    int n = nHole + nBoard;
    int full[5];
    std::copy(board, board + nBoard, full);
    for (int i = nBoard; i < nBoardTarget; ++i) full[i] = draw_unknown_card(m_random, known, n);
    int opponent[6];
    for (int i = 0; i < nHole; ++i) opponent[i] = draw_unknown_card(m_random, known, n);
    sum += HiLoShareHeadsUp(getCombinationOmahaFsm5Common(hole, nHole, full, nBoardTarget, out),
                            SetLowValueCombinationOmahaCommon(hole, nHole, full, nBoardTarget),
                            getCombinationOmahaFsm5Common(opponent, nHole, full, nBoardTarget, out),
                            SetLowValueCombinationOmahaCommon(opponent, nHole, full, nBoardTarget));
    ++done;
    if (t % 10000 == 0 && static_cast<int>(GetTickCount() - start) > timeMs) break;
  }
  trials = done;
  timeMs = static_cast<int>(GetTickCount() - start);
  return sum / done * 100;
}

double PokerLogic::RiverEquityHandVsRandomOnRiverHL(const int* hole, const int* board, int& count) const {
  const int heroHigh = get_rank7(hole, board);
  const int heroLow = SetLowValueCombinationOmaha(hole, board);
  // Only the hero's four cards and the first four board cards are excluded from the holdings, so a
  // holding may hold the river card; kept as it is.
  double sum = 0;
  count = 0;
  pokermath::detail::HoldingValues(pokermath::detail::seen_cards(hole, 4, board, 4), board, 5)
      .for_each([&](int a, int b, int c, int d, int high) {
        const int holding[4] = {a, b, c, d};
        sum += HiLoShareHeadsUp(heroHigh, heroLow, high, SetLowValueCombinationOmaha(holding, board));
        ++count;
      });
  return sum / count * 100;
}

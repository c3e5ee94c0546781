// Omaha equity of four hole cards: against random hands by Monte Carlo, against every opponent
// holding exactly, against ranges of holdings, and within a time budget ("Light").
//
// The exhaustive forms compare the hero with every four-card holding of the unseen cards on each
// board. A holding's value is the best of its six pairs (HoldingValues), which equals the named
// evaluators' values (getCombination*Fsm5, get_rank7, eval_rank7_via_ofsm7 all give the best
// two-plus-three hand on the same scale), so every form walks the holdings that way.
#include <algorithm>
#include <vector>

#include "cards/draw.h"
#include "omaha/holdings.h"
#include "omaha/omaha_internal.h"
#include "pokermath/omaha.h"

using pokermath::detail::draw_unknown_card;
using pokermath::detail::HoldingValues;
using pokermath::detail::seen_cards;

namespace {

// Heads-up score: wins count 1, ties 1/2.
struct Score {
  double sum = 0;
  int count = 0;
  void add(int mine, int theirs) {
    sum += mine > theirs ? 1.0 : mine == theirs ? 0.5 : 0.0;
    ++count;
  }
  double percent() const { return sum / count * 100; }
};

// The hero against every holding of the unseen cards on one board.
void against_every_holding(const int* hole, const int* board, int nBoard, Score& score) {
  int out[5];
  const int mine = getCombinationOmahaFsm5Common(hole, 4, board, nBoard, out);
  HoldingValues(seen_cards(hole, 4, board, nBoard), board, nBoard).for_each([&](int, int, int, int, int value) {
    score.add(mine, value);
  });
}

// The river worker: the hero against every holding on the turn plus `river` (the counts of one
// river card, written by one thread).
struct RiverCounts {
  int comparisons = 0, wins = 0, ties = 0, losses = 0;
};

RiverCounts river_worker(const int* hole, const int* turn, int river) {
  const int board[5] = {turn[0], turn[1], turn[2], turn[3], river};
  RiverCounts counts;
  const int mine = get_rank7(hole, board);
  HoldingValues(seen_cards(hole, 4, board, 5), board, 5).for_each([&](int, int, int, int, int value) {
    ++counts.comparisons;
    counts.wins += mine > value;
    counts.ties += mine == value;
    counts.losses += mine < value;
  });
  return counts;
}

double sum_rivers(const RiverCounts* per_river, int& count) {
  double sum = 0;
  count = 0;
  for (int r = 0; r < 52; ++r) {
    count += per_river[r].comparisons;
    sum += per_river[r].wins + 0.5 * per_river[r].ties;
  }
  return sum / count * 100;
}

// Time checks of the Light forms: after every 10,000th trial (the first included).
bool out_of_time(int trial, uint32_t start, int limit_ms) {
  return trial % 10000 == 0 && static_cast<int>(GetTickCount() - start) > limit_ms;
}

// The live holdings of a range: no card among the `n` known ones; the first four cards of each.
std::vector<std::array<int, 4>> live_holdings(const OmahaRange& range, const int* known, int n) {
  std::vector<std::array<int, 4>> live;
  for (const std::set<int>& holding : range) {
    if (holding.size() < 4) continue;
    std::array<int, 4> cards;
    std::copy_n(holding.begin(), 4, cards.begin());
    if (std::none_of(cards.begin(), cards.end(), [&](int c) { return isExist(c, known, n); })) live.push_back(cards);
  }
  return live;
}

// The Light loop shared by the range forms: per trial a random live holding, then the board
// completed from `given` to five cards; get_rank7 at showdown.
double light_against_range(const int* hole, const int* given_board, int given, const OmahaRange& range,
                           EasyRandom& cards, int& trials, int& timeMs) {
  const uint32_t start = GetTickCount();
  int known[16];
  std::copy(hole, hole + 4, known);
  std::copy(given_board, given_board + given, known + 4);
  const std::vector<std::array<int, 4>> live = live_holdings(range, known, 4 + given);
  EasyRandom pick(0, std::max(0, static_cast<int>(live.size()) - 1));
  pick.SetTimerSeed();
  Score score;
  int done = 0;
  for (int t = 0; t < trials && !live.empty(); ++t) {
    const std::array<int, 4>& holding = live[pick.DrawRandomNumber()];
    int n = 4 + given;
    std::copy(holding.begin(), holding.end(), known + n);
    n += 4;
    int board[5];
    std::copy(given_board, given_board + given, board);
    for (int i = given; i < 5; ++i) board[i] = draw_unknown_card(cards, known, n);
    score.add(get_rank7(hole, board), get_rank7(holding.data(), board));
    ++done;
    if (out_of_time(t, start, timeMs)) break;
  }
  trials = done;
  timeMs = static_cast<int>(GetTickCount() - start);
  return score.percent();
}

}  // namespace

double PokerLogic::getProbabilityOfWinOmaha(const int* hole, const int* board, int nBoard, int nPlayers) {
  if (nBoard >= 6 || nPlayers < 2 || nPlayers >= 11) return 0.0;
  pokermath::detail::OmahaDeals deals(hole, board, nBoard);
  double sum = 0;
  int out[5];
  for (int t = 0; t < m_trials; ++t) {
    const int* full = deals.next_board();
    const int mine = getCombinationOmahaFsm5Common(hole, 4, full, 5, out);
    double share = 1.0;
    for (int p = 1; p < nPlayers; ++p) {
      int opponent[4];
      deals.next_opponent(opponent);
      const int theirs = getCombinationOmahaFsm5Common(opponent, 4, full, 5, out);
      if (theirs > mine) {
        share = -1.0;  // lost: no further opponent is dealt
        break;
      }
      if (theirs == mine) share += 1.0;
    }
    if (share > 0) sum += 1.0 / share;
  }
  return sum / m_trials;
}

double FlopEquityHandVsRandomOnFlopFsm5(const int* hole, const int* flop, int& count) {
  Score score;
  against_every_holding(hole, flop, 3, score);
  count = score.count;
  return score.percent();
}

double TurnEquityHandVsRandomOnTurnFsm5(const int* hole, const int* turn, int& count) {
  Score score;
  against_every_holding(hole, turn, 4, score);
  count = score.count;
  return score.percent();
}

double PokerLogic::RiverEquityHandVsRandomOnTurn(const int* hole, const int* turn, int& count) const {
  RiverCounts per_river[52];
  const uint64_t known = seen_cards(hole, 4, turn, 4);
  for (int r = 0; r < 52; ++r)
    if (!(known >> r & 1)) per_river[r] = river_worker(hole, turn, r);
  return sum_rivers(per_river, count);
}

double RiverEquityHandVsRandomOnTurnFsm5(const int* hole, const int* turn, int& count) {
  RiverCounts per_river[52];
  const uint64_t known = seen_cards(hole, 4, turn, 4);
  // Each river card's counts are written by one thread and summed in card order after the join.
#pragma omp parallel for schedule(static)
  for (int r = 0; r < 52; ++r)
    if (!(known >> r & 1)) per_river[r] = river_worker(hole, turn, r);
  return sum_rivers(per_river, count);
}

double PokerLogic::RiverEquityHandVsRandomOnRiver(const int* hole, const int* board, int& count) const {
  Score score;
  const int mine = get_rank7(hole, board);
  HoldingValues(seen_cards(hole, 4, board, 5), board, 5).for_each([&](int, int, int, int, int value) {
    score.add(mine, value);
  });
  count = score.count;
  return score.percent();
}

double RiverEquityHandVsRandomOnRiver_ofsm7(const int* hole, const int* board, int& count) {
  Score score;
  // The same values as the search of each pair (HoldingValues) on every hand.
  const int mine = eval_rank7_via_ofsm7(hole, 4, board);
  HoldingValues(seen_cards(hole, 4, board, 5), board, 5).for_each([&](int, int, int, int, int value) {
    score.add(mine, value);
  });
  count = score.count;
  return score.percent();
}

double PokerLogic::RiverEquityHandVsRandomOnFlopLight(const int* hole, const int* flop, int& trials, int& timeMs) {
  const uint32_t start = GetTickCount();
  m_random.SetInterval(0, 51);
  m_random.SetTimerSeed();
  int known[13];
  std::copy(hole, hole + 4, known);
  std::copy(flop, flop + 3, known + 4);
  Score score;
  int done = 0;
  for (int t = 0; t < trials; ++t) {
    int n = 7;
    int opponent[4], board[5] = {flop[0], flop[1], flop[2]};
    for (int& c : opponent) c = draw_unknown_card(m_random, known, n);
    board[3] = draw_unknown_card(m_random, known, n);
    board[4] = draw_unknown_card(m_random, known, n);
    score.add(get_rank7(hole, board), get_rank7(opponent, board));
    ++done;
    if (out_of_time(t, start, timeMs)) break;
  }
  trials = done;
  timeMs = static_cast<int>(GetTickCount() - start);
  return score.percent();
}

double PokerLogic::FlopEquityHandVsRangeOnFlop(const int* hole, const int* flop, const OmahaRange& range,
                                               int& count) const {
  int known[7];
  std::copy(hole, hole + 4, known);
  std::copy(flop, flop + 3, known + 4);
  int out[5];
  const int mine = getCombinationOmahaFlopFsm5(hole, flop, out);
  Score score;
  for (const auto& holding : live_holdings(range, known, 7))
    score.add(mine, getCombinationOmahaFlopFsm5(holding.data(), flop, out));
  count = score.count;
  return score.percent();
}

double PokerLogic::FlopEquityHandVsRangeOnPreFlop(const int* hole, const OmahaRange& range, int& count) const {
  count = 0;  // left at 0 on purpose
  double sum = 0;
  int flops = 0;
  const uint64_t mine = ArrayToInt64(4, hole);
  for (int a = 0; a < 52; ++a)
    for (int b = a + 1; b < 52; ++b)
      for (int c = b + 1; c < 52; ++c) {
        if ((mine >> a | mine >> b | mine >> c) & 1) continue;
        const int flop[3] = {a, b, c};
        int flop_count = 0;
        sum += FlopEquityHandVsRangeOnFlop(hole, flop, range, flop_count);
        ++flops;
      }
  return sum / flops * 100;  // percent x 100: a 0..10000 scale, kept as it is
}

double PokerLogic::RiverEquityHandVsRangeOnFlopLight(const int* hole, const int* flop, const OmahaRange& range,
                                                     int& trials, int& timeMs) {
  m_random.SetInterval(0, 51);
  return light_against_range(hole, flop, 3, range, m_random, trials, timeMs);
}

double RiverEquityHandVsRangeOnPreflopLight(const int* hole, const OmahaRange& range, int& trials, int& timeMs) {
  EasyRandom cards(0, 51);
  return light_against_range(hole, nullptr, 0, range, cards, trials, timeMs);
}

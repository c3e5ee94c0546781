// The "Common" engines: any number of hole cards, each hand made of exactly two hole cards and
// exactly three board cards (the Omaha rule, applied whatever the hole-card count).
//
// Each board is ranked by eval_rank7_via_ofsm7 (the named evaluator getCombinationOmahaFsm5Common
// gives the same value for every hand: the best two-plus-three hand on the same scale). When
// "omaha-7.bin" is loaded the boards are walked through it instead, the board's state carried from
// loop to loop, so a board costs two reads per hole pair and no board lookup.
#include <algorithm>

#include "cards/draw.h"
#include "equity/omaha_boards.h"
#include "pokermath/equity.h"

using namespace pokermath::detail;

namespace {

uint64_t mask_of(const int* cards, int n) { return ArrayToInt64(n, cards); }

// Two hands over every completion: hero higher 1, equal 1/2. Percent.
double hand_vs_hand(const int* hero, int h, const int* villain, const int* board, int boardCount, int& boards,
                    int& ms) {
  const uint32_t start = GetTickCount();
  int cards[2 * kMaxHole];
  std::copy(hero, hero + h, cards);
  std::copy(villain, villain + h, cards + h);
  const Hands hands{cards, h, 2};
  const uint64_t dead = mask_of(cards, 2 * h) | mask_of(board, boardCount);
  int64_t twice_score = 0, count = 0;
  for_each_board(hands, board, boardCount, dead, [&](const int* v, const int*) {
    twice_score += (v[0] > v[1]) * 2 + (v[0] == v[1]);
    ++count;
  });
  boards = static_cast<int>(count);
  ms = static_cast<int>(GetTickCount() - start);
  return static_cast<double>(twice_score) / 2 / static_cast<double>(count) * 100;
}

// Several hands: a board is lost to any higher opponent; k tying opponents score 1/k (one tie is a
// whole win). Percent.
double hands_multiway(const int* hands_cards, int h, int players, int dead_count, const int* board, int boardCount,
                      int& boards, int& ms) {
  const uint32_t start = GetTickCount();
  const Hands hands{hands_cards, h, players};
  const uint64_t dead = mask_of(hands_cards, players * h + dead_count) | mask_of(board, boardCount);
  double score = 0;
  int64_t count = 0;
  for_each_board(hands, board, boardCount, dead, [&](const int* v, const int*) {
    int ties = 0;
    bool lost = false;
    for (int p = 1; p < players && !lost; ++p) {
      lost = v[p] > v[0];
      ties += v[p] == v[0];
    }
    ++count;
    if (!lost) score += ties == 0 ? 1.0 : 1.0 / ties;
  });
  boards = static_cast<int>(count);
  ms = static_cast<int>(GetTickCount() - start);
  return score / static_cast<double>(count) * 100;
}

}  // namespace

double PokerLogic::RiverEquityHandVsHandOnPreFlopCommon(const int* hero, int h, const int* villain, int& boards,
                                                        int& ms) const {
  return hand_vs_hand(hero, h, villain, nullptr, 0, boards, ms);
}

// Walked through "omaha-7.bin" when it is loaded; else each board ranked by eval_rank7_via_ofsm7.
double RiverEquityHandVsHandOnPreFlopCommonFsm7(const int* hero, int h, const int* villain, int& boards, int& ms) {
  return hand_vs_hand(hero, h, villain, nullptr, 0, boards, ms);
}

double PokerLogic::RiverEquityHandVsHandOnFlopCommon(const int* hero, int h, const int* villain, const int* board,
                                                     int boardCount, int& boards, int& ms) const {
  if (boardCount != 3) return 0.0;
  return hand_vs_hand(hero, h, villain, board, 3, boards, ms);
}

double PokerLogic::RiverEquityHandVsHandOnTurnCommon(const int* hero, int h, const int* villain, const int* board,
                                                     int boardCount, int& boards, int& ms) const {
  if (boardCount != 4) return 0.0;
  return hand_vs_hand(hero, h, villain, board, 4, boards, ms);
}

double PokerLogic::RiverEquityHandsOnPreFlopCommon(const int* hands, int h, int players, int dead, int& boards,
                                                   int& ms) const {
  return hands_multiway(hands, h, players, dead, nullptr, 0, boards, ms);
}

double PokerLogic::RiverEquityHandsOnFlopCommon(const int* hands, int h, int players, int dead, const int* flop,
                                                int& boards, int& ms) const {
  return hands_multiway(hands, h, players, dead, flop, 3, boards, ms);
}

double PokerLogic::RiverEquityHandsOnTurnCommon(const int* hands, int h, int players, int dead, const int* board,
                                                int& boards, int& ms) const {
  return hands_multiway(hands, h, players, dead, board, 4, boards, ms);
}

double EquityHandVsRandomCommon(const int* hero, int h, const int* board, int boardCount, int boardSize, int& trials,
                                int& ms) {
  const uint32_t start = GetTickCount();
  int known[64];
  int given = 0;
  for (int i = 0; i < h; ++i) known[given++] = hero[i];
  int full[5];
  for (int i = 0; i < boardCount; ++i) known[given++] = full[i] = board[i];
  EasyRandom random(0, 1);
  random.SetInterval(0, 51);
  random.SetTimerSeed();
  double score = 0;
  int done = 0;
  for (int t = 0; t < trials; ++t) {
    int count = given;
    auto draw = [&] { return draw_unknown_card(random, known, count); };
    for (int i = boardCount; i < boardSize; ++i) full[i] = draw();
    int villain[kMaxHole];
    for (int i = 0; i < h; ++i) villain[i] = draw();
    int out[5];
    const int mine = getCombinationOmahaFsm5Common(hero, h, full, boardSize, out);
    const int theirs = getCombinationOmahaFsm5Common(villain, h, full, boardSize, out);
    score += mine > theirs ? 1.0 : mine == theirs ? 0.5 : 0.0;
    ++done;
    // The clock is read after every 10,000th trial, the first included.
    if (t % 10000 == 0 && static_cast<int>(GetTickCount() - start) > ms) break;
  }
  trials = done;
  ms = static_cast<int>(GetTickCount() - start);
  return score / done * 100;
}

namespace {

// Hi/Lo among known hands over every completion: the hero's pot share (HiLoShareMultiway). Percent.
double hilo_multiway(const int* hands_cards, int h, int players, int dead_count, const int* board, int boardCount,
                     int& count, int& ms) {
  const uint32_t start = GetTickCount();
  const Hands hands{hands_cards, h, players};
  const uint64_t dead = mask_of(hands_cards, players * h + dead_count) | mask_of(board, boardCount);
  double sum = 0;
  int64_t boards = 0;
  int lows[kMaxPlayers];
  for_each_board(hands, board, boardCount, dead, [&](const int* highs, const int* full) {
    for (int p = 0; p < players; ++p) lows[p] = SetLowValueCombinationOmahaCommon(hands_cards + p * h, h, full, 5);
    sum += HiLoShareMultiway(highs[0], lows[0], highs + 1, lows + 1, players - 1);
    ++boards;
  });
  count = static_cast<int>(boards);
  ms = static_cast<int>(GetTickCount() - start);
  return sum / static_cast<double>(boards) * 100;
}

}  // namespace

double PokerLogic::RiverEquityHandsOnPreFlopCommonHL(const int* hands, int nHole, int nPlayers, int nDead, int& count,
                                                     int& timeMs) const {
  return hilo_multiway(hands, nHole, nPlayers, nDead, nullptr, 0, count, timeMs);
}

double PokerLogic::RiverEquityHandsOnFlopCommonHL(const int* hands, int nHole, int nPlayers, int nDead, const int* flop,
                                                  int& count, int& timeMs) const {
  return hilo_multiway(hands, nHole, nPlayers, nDead, flop, 3, count, timeMs);
}

double PokerLogic::RiverEquityHandsOnTurnCommonHL(const int* hands, int nHole, int nPlayers, int nDead, const int* turn,
                                                  int& count, int& timeMs) const {
  return hilo_multiway(hands, nHole, nPlayers, nDead, turn, 4, count, timeMs);
}

double RiverEquityHandVsRandomOnPreFlopCommon(uint64_t hero, int trials, int& ms, int hiLo) {
  const uint32_t start = GetTickCount();
  int hero_cards[kMaxHole];
  int h = 0;
  Int64ToArray(hero, h, hero_cards);
  EasyRandom random(0, 1);
  random.SetInterval(0, 51);  // not reseeded: the sequence continues from whatever seeded rand()
  double score = 0;
  for (int t = 0; t < trials; ++t) {
    uint64_t villain, board;
    do {
      villain = GetRandomHand(h, random);
    } while (villain & hero);
    do {
      board = GetRandomHand(5, random);
    } while (board & (hero | villain));
    int villain_cards[kMaxHole], board_cards[5], n = 0;
    Int64ToArray(villain, n, villain_cards);
    Int64ToArray(board, n, board_cards);
    const int mine = eval_rank7_via_ofsm7(hero_cards, h, board_cards);
    const int theirs = eval_rank7_via_ofsm7(villain_cards, h, board_cards);
    const double high = mine > theirs ? 1.0 : mine == theirs ? 0.5 : 0.0;
    if (hiLo == 0) {
      score += high;
      continue;
    }
    const int my_low = SetLowValueCombinationOmahaCommon(hero_cards, h, board_cards, 5);
    const int their_low = SetLowValueCombinationOmahaCommon(villain_cards, h, board_cards, 5);
    double my_share = 0, their_share = 0;
    score += WinLowSummary(my_low, &their_low, 1, my_share, &their_share) ? (high + my_share) / 2 : high;
  }
  ms = static_cast<int>(GetTickCount() - start);
  return score / trials * 100;
}

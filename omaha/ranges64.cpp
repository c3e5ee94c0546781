// Multiway Omaha equity of players given as ranges of holdings (64-bit card masks): every
// combination of one holding per player that shares no card is equally likely, and so is every
// completion of the board; each deal's pot is split between the best high hands and, in Hi/Lo,
// the best eight-or-better lows.
#include <bit>
#include <cstdlib>
#include <vector>

#include "pokermath/omaha.h"

namespace {

constexpr int kMaxPlayers = 10;

struct Table {
  std::vector<const std::vector<uint64_t>*> ranges;  // the hero's first
  int players = 0;
  int nHole = 0;
  uint64_t board = 0;
  uint64_t dead = 0;
  int hiLo = 0;
  int boardTarget = 5;
};

Table make_table(std::vector<uint64_t>& hero, uint64_t board, int nHole, std::vector<uint64_t>* opponents,
                 int nOpponents, uint64_t dead, int hiLo, int boardTarget) {
  Table t;
  t.ranges.push_back(&hero);
  for (int i = 0; i < nOpponents; ++i) t.ranges.push_back(&opponents[i]);
  t.players = 1 + nOpponents;
  t.nHole = nHole;
  t.board = board;
  t.dead = dead;
  t.hiLo = hiLo;
  t.boardTarget = boardTarget;
  return t;
}

bool valid(const Table& t) {
  const int given = std::popcount(t.board);
  return t.players >= 2 && t.players <= kMaxPlayers && t.nHole >= 2 && t.nHole <= 6 && t.boardTarget >= 3 &&
         t.boardTarget <= 5 && given <= t.boardTarget;
}

// Adds each player's share of one deal (holdings as masks, a complete board of boardTarget cards).
void split_pot(const Table& t, const uint64_t* holdings, uint64_t full_board, double* shares) {
  int board[5], n = 0;
  Int64ToArray(full_board, n, board);
  int highs[kMaxPlayers], lows[kMaxPlayers];
  int best = -1;
  for (int p = 0; p < t.players; ++p) {
    int hole[6], k = 0, out[5];
    Int64ToArray(holdings[p], k, hole);
    highs[p] = getCombinationOmahaFsm5Common(hole, t.nHole, board, n, out);
    lows[p] = t.hiLo ? SetLowValueCombinationOmahaCommon(hole, t.nHole, board, n) : 0;
    best = std::max(best, highs[p]);
  }
  double low_shares[kMaxPlayers] = {};
  const bool low_half = t.hiLo && WinLowSummary(lows[0], lows + 1, t.players - 1, low_shares[0], low_shares + 1) == 1;
  int winners = 0;
  for (int p = 0; p < t.players; ++p) winners += highs[p] == best;
  const double high_pot = low_half ? 0.5 : 1.0;
  for (int p = 0; p < t.players; ++p) {
    if (highs[p] == best) shares[p] += high_pot / winners;
    if (low_half) shares[p] += 0.5 * low_shares[p];
  }
}

// Every completion of `used_board` to boardTarget cards from the cards not in `used`.
template <typename Visit>
void for_each_completion(uint64_t used, uint64_t board, int missing, int first, Visit& visit) {
  if (missing == 0) {
    visit(board);
    return;
  }
  for (int c = first; c < 52; ++c) {
    const uint64_t bit = uint64_t{1} << c;
    if (used & bit) continue;
    for_each_completion(used | bit, board | bit, missing - 1, c + 1, visit);
  }
}

double finish(const Table& t, double* totals, double deals, double* shares, int& count, int& ms, uint32_t start) {
  count = static_cast<int>(deals);
  ms = static_cast<int>(GetTickCount() - start);
  if (deals == 0) {
    for (int p = 0; p < t.players; ++p) shares[p] = 0.0;
    return 0.0;
  }
  for (int p = 0; p < t.players; ++p) shares[p] = totals[p] / deals;
  return shares[0];
}

}  // namespace

uint64_t CountOfRanges64(const std::vector<uint64_t>* ranges, int nPlayers, uint64_t dead) {
  auto count = [&](auto& self, int p, uint64_t used) -> uint64_t {
    if (p == nPlayers) return 1;
    uint64_t n = 0;
    for (uint64_t holding : ranges[p])
      if (!(holding & used)) n += self(self, p + 1, used | holding);
    return n;
  };
  return nPlayers > 0 ? count(count, 0, dead) : 0;
}

double getProbabilityOfWinOmaha64Enumerate(std::vector<uint64_t>& hero, uint64_t board, int nHole,
                                           std::vector<uint64_t>* opponents, int nOpponents, uint64_t dead,
                                           double* shares, int& count, int& ms, int hiLo, int boardTarget) {
  const uint32_t start = GetTickCount();
  const Table t = make_table(hero, board, nHole, opponents, nOpponents, dead, hiLo, boardTarget);
  double totals[kMaxPlayers] = {}, deals = 0;
  if (!valid(t)) return finish(t, totals, 0, shares, count, ms, start);
  // Every tuple of holdings through the odometer; colliding tuples are skipped.
  CRoundEnumerate tuples;
  for (const auto* range : t.ranges) tuples.AddDim(static_cast<int>(range->size()));
  std::vector<int> pos = tuples.first();
  const uint64_t total = tuples.m_total;
  for (uint64_t i = 0; i < total; ++i, pos = i < total ? tuples.next() : pos) {
    uint64_t holdings[kMaxPlayers], used = board | dead;
    bool clash = false;
    for (int p = 0; p < t.players && !clash; ++p) {
      holdings[p] = (*t.ranges[p])[pos[p]];
      clash = (holdings[p] & used) != 0;
      used |= holdings[p];
    }
    if (clash) continue;
    auto visit = [&](uint64_t full) {
      split_pot(t, holdings, full, totals);
      deals += 1;
    };
    for_each_completion(used, board, boardTarget - std::popcount(board), 0, visit);
  }
  return finish(t, totals, deals, shares, count, ms, start);
}

double getProbabilityOfWinOmaha64Common(int trials, std::vector<uint64_t>& hero, uint64_t board, int nHole,
                                        std::vector<uint64_t>* opponents, int nOpponents, uint64_t dead, double* shares,
                                        int& count, int& ms, int hiLo, int boardTarget) {
  const uint32_t start = GetTickCount();
  const int limit_ms = ms;
  const Table t = make_table(hero, board, nHole, opponents, nOpponents, dead, hiLo, boardTarget);
  double totals[kMaxPlayers] = {}, deals = 0;
  if (!valid(t)) return finish(t, totals, 0, shares, count, ms, start);
  std::vector<std::vector<uint64_t>> all;
  for (const auto* range : t.ranges) all.push_back(*range);
  if (CountOfRanges64(all.data(), t.players, board | dead) == 0) return finish(t, totals, 0, shares, count, ms, start);
  for (int trial = 0; trial < trials; ++trial) {
    // A combination drawn whole, and drawn again when two holdings collide: each valid combination
    // is equally likely.
    uint64_t holdings[kMaxPlayers], used;
    bool clash;
    do {
      used = board | dead;
      clash = false;
      for (int p = 0; p < t.players && !clash; ++p) {
        const auto& range = *t.ranges[p];
        holdings[p] = range[static_cast<size_t>(std::rand()) % range.size()];
        clash = (holdings[p] & used) != 0;
        used |= holdings[p];
      }
    } while (clash);
    uint64_t full = board;
    for (int missing = boardTarget - std::popcount(board); missing > 0; --missing) {
      uint64_t bit;
      do {
        bit = uint64_t{1} << (std::rand() % 52);
      } while (used & bit);
      used |= bit;
      full |= bit;
    }
    split_pot(t, holdings, full, totals);
    deals += 1;
    if (limit_ms > 0 && trial % 10000 == 0 && static_cast<int>(GetTickCount() - start) > limit_ms) break;
  }
  return finish(t, totals, deals, shares, count, ms, start);
}

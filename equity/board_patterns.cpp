#include "equity/board_patterns.h"

#include <algorithm>
#include <bit>

namespace pokermath::detail {

namespace {

// C(a, k) for a, k in 0..4.
constexpr int64_t kChoose[5][5] = {{1, 0, 0, 0, 0}, {1, 1, 0, 0, 0}, {1, 2, 1, 0, 0}, {1, 3, 3, 1, 0}, {1, 4, 6, 4, 1}};

// A multiset of ranks of some missing board cards: the sum of its rank keys and the number of ways
// the unseen cards deal it.
struct RankPattern {
  uint32_t sum;
  int64_t ways;
};

// Every multiset of `cards` ranks with at most live[r] cards of rank r. One and two cards (most
// requests after the flop) in plain loops; more by choosing the ranks in increasing order, each with
// its count.
void rank_patterns(const int* live, int cards, std::vector<RankPattern>& out) {
  out.clear();
  if (cards == 0) {
    out.push_back({0, 1});
  } else if (cards == 1) {
    for (int r = 0; r < 13; ++r)
      if (live[r]) out.push_back({kRankKeys[r], live[r]});
  } else if (cards == 2) {
    for (int r = 0; r < 13; ++r) {
      if (!live[r]) continue;
      if (live[r] >= 2) out.push_back({2 * kRankKeys[r], kChoose[live[r]][2]});
      for (int q = r + 1; q < 13; ++q)
        if (live[q]) out.push_back({kRankKeys[r] + kRankKeys[q], int64_t{live[r]} * live[q]});
    }
  } else {
    auto level = [&](auto& self, int first, int left, uint32_t sum, int64_t ways) -> void {
      if (left == 0) {
        out.push_back({sum, ways});
        return;
      }
      for (int rank = first; rank < 13; ++rank)
        for (int k = 1; k <= std::min(left, live[rank]); ++k)
          self(self, rank + 1, left - k, sum + static_cast<uint32_t>(k) * kRankKeys[rank],
               ways * kChoose[live[rank]][k]);
    };
    level(level, 0, cards, 0, 1);
  }
}

// Calls visit(subset) for every subset of `set` with exactly k members.
template <typename Visit>
void for_each_subset(uint32_t set, int k, Visit&& visit) {
  auto level = [&](auto& self, uint32_t rest, int rest_count, int left, uint32_t chosen) -> void {
    if (left == 0) return visit(chosen);
    while (rest_count >= left) {
      const uint32_t lowest = rest & (0u - rest);
      rest ^= lowest;
      --rest_count;
      self(self, rest, rest_count, left - 1, chosen | lowest);
    }
  };
  level(level, set, std::popcount(set), k, 0u);
}

// What count_boards knows of the deal's cards.
struct Cards {
  uint32_t board_sum = 0;           // rank keys of the board so far
  uint32_t board_suit[4] = {};      // the board's ranks in each suit
  int board_count[4] = {};          // the board's cards in each suit
  uint32_t hole_sum[kMaxPlayers];   // rank keys of each player's hole cards
  uint32_t hole_suit[kMaxPlayers][4];
  int hole_count[kMaxPlayers][4];
  int live[13] = {};                // unseen cards of each rank
  uint32_t live_suit[4] = {};       // unseen ranks of each suit

  explicit Cards(const HoldemDeal& deal) {
    uint64_t seen = deal.dead;
    for (int i = 0; i < deal.board_size; ++i) {
      const int c = deal.board[i];
      seen |= uint64_t{1} << c;
      board_sum += kRankKeys[c % 13];
      board_suit[c / 13] |= 1u << (c % 13);
      ++board_count[c / 13];
    }
    for (int p = 0; p < deal.players; ++p) {
      hole_sum[p] = 0;
      std::fill(hole_suit[p], hole_suit[p] + 4, 0u);
      std::fill(hole_count[p], hole_count[p] + 4, 0);
      for (int c : deal.holes[p]) {
        seen |= uint64_t{1} << c;
        hole_sum[p] += kRankKeys[c % 13];
        hole_suit[p][c / 13] |= 1u << (c % 13);
        ++hole_count[p][c / 13];
      }
    }
    for (int c = 0; c < 52; ++c)
      if (!(seen >> c & 1)) ++live[c % 13], live_suit[c / 13] |= 1u << (c % 13);
  }
};

// count_boards for N players: the loops over players unroll.
template <Ranking R, int N>
void count_boards_of(const HoldemDeal& deal, OutcomeCounts& counts, int64_t times) {
  const int missing = 5 - deal.board_size;
  const Cards k(deal);
  // This deal's counts by winners, in four banks taken in turn: consecutive patterns mostly have the
  // same winners, and one counter would make each addition wait for the one before.
  int64_t local[4][1 << N] = {};
  unsigned bank = 0;
  uint16_t pass1[five_rank_slots<R>()];       // pass 1's winners by the board's rank multiset
  thread_local std::vector<RankPattern> pattern_lists[7];  // pass 1's, then the other suits' of 0..5 cards
  std::vector<RankPattern>& patterns = pattern_lists[6];
  int values[N], flush[N];

  // Pass 1: ranks only.
  rank_patterns(k.live, missing, patterns);
  for (const RankPattern& pattern : patterns) {
    const uint32_t sum = k.board_sum + pattern.sum;
    for (int p = 0; p < N; ++p) values[p] = rank_value<R, 7>(sum + k.hole_sum[p]);
    const uint32_t w = winners(values, N);
    local[bank++ & 3][w] += pattern.ways;
    pass1[five_rank_slot<R>(sum)] = static_cast<uint16_t>(w);
  }

  // Pass 2: the boards on which somebody makes a flush, suit by suit.
  for (int s = 0; s < 4; ++s) {
    int most = 0;
    for (int p = 0; p < N; ++p) most = std::max(most, k.hole_count[p][s]);
    const int first = std::max(0, 5 - k.board_count[s] - most);  // missing cards of suit s a flush needs
    if (first > missing) continue;
    int other_live[13];
    for (int r = 0; r < 13; ++r) other_live[r] = k.live[r] - static_cast<int>(k.live_suit[s] >> r & 1);
    for (int j = 0; j <= missing - first; ++j) rank_patterns(other_live, j, pattern_lists[j]);
    // Every set f of the suit's unseen ranks that the missing cards can take, as many as a flush needs
    // or more.
    for (int x = first; x <= missing; ++x) {
      const std::vector<RankPattern>& rest = pattern_lists[missing - x];
      for_each_subset(k.live_suit[s], x, [&](uint32_t f) {
        const uint32_t suited = k.board_suit[s] | f;
        const uint32_t f_sum = k.board_sum + kRankSetSums[f];
        for (int p = 0; p < N; ++p)
          flush[p] = k.board_count[s] + x + k.hole_count[p][s] >= 5 ? flush_value<R>(suited | k.hole_suit[p][s]) : 0;
        for (const RankPattern& pattern : rest) {
          const uint32_t sum = f_sum + pattern.sum;
          for (int p = 0; p < N; ++p) values[p] = flush[p] ? flush[p] : rank_value<R, 7>(sum + k.hole_sum[p]);
          const uint32_t w = winners(values, N);
          const uint32_t before = pass1[five_rank_slot<R>(sum)];
          if (w != before) {
            int64_t* counts_in_bank = local[bank++ & 3];
            counts_in_bank[w] += pattern.ways;
            counts_in_bank[before] -= pattern.ways;
          }
        }
      });
    }
  }
  for (size_t m = 0; m < size_t{1} << N; ++m)
    counts.deals[m] += times * (local[0][m] + local[1][m] + local[2][m] + local[3][m]);
}

}  // namespace

template <Ranking R>
void count_boards(const HoldemDeal& deal, OutcomeCounts& counts, int64_t times) {
  using Count = void (*)(const HoldemDeal&, OutcomeCounts&, int64_t);
  static constexpr Count kByPlayers[kMaxPlayers + 1] = {
      nullptr,
      nullptr,
      count_boards_of<R, 2>,
      count_boards_of<R, 3>,
      count_boards_of<R, 4>,
      count_boards_of<R, 5>,
      count_boards_of<R, 6>,
      count_boards_of<R, 7>,
      count_boards_of<R, 8>,
      count_boards_of<R, 9>,
      count_boards_of<R, 10>};
  kByPlayers[deal.players](deal, counts, times);
}

double board_pattern_work(int missing, int players) {
  // Rank patterns of 0..5 missing cards, times about four for the flush patterns.
  static constexpr double kPatterns[6] = {1, 13, 91, 455, 1820, 6175};
  return 4.0 * kPatterns[std::clamp(missing, 0, 5)] * players;
}

template void count_boards<Ranking::Holdem>(const HoldemDeal&, OutcomeCounts&, int64_t);
template void count_boards<Ranking::ShortDeck>(const HoldemDeal&, OutcomeCounts&, int64_t);
template void count_boards<Ranking::China>(const HoldemDeal&, OutcomeCounts&, int64_t);

}  // namespace pokermath::detail

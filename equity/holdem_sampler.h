// Monte Carlo deals of a Hold'em request: each trial deals every player's hand and the rest of the
// board and counts who wins.
//
// A deal must come with probability proportional to the product of its hands' weights over the
// tuples of hands that share no card (uniform when no range is weighted). Given hands are fixed;
// the first player with a range draws from it in proportion to the weights; a later player with a
// range draws from the hands of its range that the earlier ones left, in proportion to their
// weights, and the trial is weighted by the total weight there was (the trial weights undo the
// unequal chances, so heavily overlapping ranges cost no rejections; with one range, or ranges that
// never collide, every trial weight is equal). Random hands and the board come from the unseen
// cards.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "equity/engine.h"
#include "equity/holdem_players.h"
#include "eval/hand_key.h"

namespace pokermath::detail {

class HoldemSampler {
 public:
  // `known`: the board, dead cards and given hands; `deck`: the cards in play.
  HoldemSampler(const std::vector<HoldemPlayer>& players, const std::vector<int>& board, uint64_t known,
                uint64_t deck);

  // Adds `trials` trials to `out`.
  void run(Ranking ranking, int64_t trials, Rng& rng, SampledOutcomes& out) const;

  static constexpr int kComboWords = 21;  // 1,326 two-card hands, one bit each
  using ComboSet = std::array<uint64_t, kComboWords>;

  struct RangePlayer {
    int player;
    std::vector<Combo> hands;  // its hands
    ComboSet set;              // later ranges: their hands as bits
    bool weighted = false;     // the hands' weights differ
    WeightedIndex draw;        // weighted ranges: draws an index of `hands` by weight
    std::vector<double> weight_of;  // later weighted ranges: the weight of each combination number
    double total = 0;               // the sum of the weights
  };

  template <Ranking R>
  void run_trials(int64_t trials, Rng& rng, SampledOutcomes& out) const;

  // A later weighted range's hand, drawn in proportion to the weights of the hands the earlier
  // players left (`taken` marks the others); multiplies `weight` by their total weight. Null (and
  // weight 0) when none is left.
  static const std::array<int, 2>* draw_weighted(const RangePlayer& range, const ComboSet& taken, Rng& rng,
                                                 double& weight);

 private:
  int m_players = 0;
  std::array<uint64_t, kMaxPlayers> m_hole_keys{};   // given hands: the sum of their card keys
  std::array<uint64_t, kMaxPlayers> m_hole_masks{};
  std::vector<RangePlayer> m_ranges;                 // in the order they are dealt
  std::vector<int> m_random;                         // players with random hands
  std::vector<int> m_deck;                           // the unseen cards
  HandState m_board;                                 // the board so far
  int m_missing = 0;                                 // board cards to deal
};

}  // namespace pokermath::detail

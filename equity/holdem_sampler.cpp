#include "equity/holdem_sampler.h"

#include <bit>

#include "support/target.h"

namespace pokermath::detail {

namespace {

// Every two-card hand by number, and the number of each (lower card first).
struct ComboNumbers {
  std::array<std::array<int, 2>, 1326> cards{};
  std::array<std::array<int16_t, 52>, 52> number{};
  std::array<HoldemSampler::ComboSet, 52> containing{};  // the hands that hold each card

  ComboNumbers() {
    int i = 0;
    for (int a = 0; a < 52; ++a)
      for (int b = a + 1; b < 52; ++b, ++i) {
        cards[i] = {a, b};
        number[a][b] = number[b][a] = static_cast<int16_t>(i);
        for (int c : {a, b}) containing[c][i / 64] |= uint64_t{1} << (i % 64);
      }
  }
};

const ComboNumbers& combo_numbers() {
  static const ComboNumbers numbers;
  return numbers;
}

// The position of the k-th set bit (from 0) of a word that has more than k.
inline int nth_set_bit(uint64_t word, int k) {
  for (; k > 0; --k) word &= word - 1;
  return std::countr_zero(word);
}

}  // namespace

const std::array<int, 2>* HoldemSampler::draw_weighted(const RangePlayer& range, const ComboSet& taken, Rng& rng,
                                                       double& weight) {
  const ComboNumbers& numbers = combo_numbers();
  // The weight the earlier players' cards took away: the range's hands that hold one of them.
  double lost = 0;
  for (int w = 0; w < kComboWords; ++w)
    for (uint64_t bits = range.set[w] & taken[w]; bits; bits &= bits - 1)
      lost += range.weight_of[static_cast<size_t>(w * 64 + std::countr_zero(bits))];
  const double left = range.total - lost;
  if (!(left > range.total * 1e-12)) {
    weight = 0;
    return nullptr;
  }
  weight *= left;
  if (left >= 0.25 * range.total) {
    // Most of the weight is left: draw from the whole range until a hand is free (on average at
    // most four draws).
    for (;;) {
      const Combo& c = range.hands[range.draw.draw(rng)];
      const int i = numbers.number[c.cards[0]][c.cards[1]];
      if (!(taken[i / 64] >> (i % 64) & 1)) return &c.cards;
    }
  }
  // Little is left: walk the free hands to the drawn point of their weight.
  double point = static_cast<double>(rng.next() >> 11) * 0x1.0p-53 * left;
  const std::array<int, 2>* last = nullptr;
  for (int w = 0; w < kComboWords; ++w)
    for (uint64_t bits = range.set[w] & ~taken[w]; bits; bits &= bits - 1) {
      const size_t i = static_cast<size_t>(w * 64 + std::countr_zero(bits));
      last = &numbers.cards[i];
      point -= range.weight_of[i];
      if (point < 0) return last;
    }
  return last;  // rounding left the point at the very end
}

HoldemSampler::HoldemSampler(const std::vector<HoldemPlayer>& players, const std::vector<int>& board, uint64_t known,
                             uint64_t deck)
    : m_players(static_cast<int>(players.size())), m_missing(5 - static_cast<int>(board.size())) {
  const ComboNumbers& numbers = combo_numbers();
  for (int p = 0; p < m_players; ++p) {
    const HoldemPlayer& player = players[static_cast<size_t>(p)];
    if (player.fixed) {
      const Combo& c = player.combos.front();
      m_hole_keys[p] = kCardKeys[c.cards[0]] + kCardKeys[c.cards[1]];
      m_hole_masks[p] = c.mask;
    } else if (player.random) {
      m_random.push_back(p);
    } else {
      RangePlayer range;
      range.player = p;
      range.hands = player.combos;
      range.set = {};
      range.weighted = player.weighted;
      std::vector<double> weights;
      for (const Combo& c : player.combos) {
        weights.push_back(c.weight);
        range.total += c.weight;
      }
      if (range.weighted) range.draw = WeightedIndex(weights);
      if (!m_ranges.empty()) {
        if (range.weighted) range.weight_of.assign(1326, 0);
        for (const Combo& c : player.combos) {
          const int i = numbers.number[c.cards[0]][c.cards[1]];
          range.set[i / 64] |= uint64_t{1} << (i % 64);
          if (range.weighted) range.weight_of[static_cast<size_t>(i)] = c.weight;
        }
      }
      m_ranges.push_back(std::move(range));
    }
  }
  for (int c = 0; c < 52; ++c)
    if ((deck >> c & 1) && !(known >> c & 1)) m_deck.push_back(c);
  for (int c : board) m_board.add(c);
}

template <Ranking R>
[[gnu::always_inline]] inline void HoldemSampler::run_trials(int64_t trials, Rng& rng, SampledOutcomes& out) const {
  const ComboNumbers& numbers = combo_numbers();
  const uint32_t deck_size = static_cast<uint32_t>(m_deck.size());
  std::array<uint64_t, kMaxPlayers> keys = m_hole_keys, masks = m_hole_masks;
  int values[kMaxPlayers];
  // Sums kept here and added to `out` at the end: threads writing next to each other's tallies
  // would fight over cache lines on every trial.
  std::vector<double> w1(out.w1.size()), w2(out.w2.size());
  int64_t done = 0;
  for (int64_t t = 0; t < trials; ++t) {
    uint64_t used = 0;  // cards dealt this trial
    double weight = 1;
    ComboSet taken;  // hands that hold a card the ranges took (kept from the second range on)
    for (size_t k = 0; k < m_ranges.size(); ++k) {
      const RangePlayer& range = m_ranges[k];
      const std::array<int, 2>* cards;
      if (k == 0) {
        const uint32_t n = static_cast<uint32_t>(range.hands.size());
        cards = &range.hands[range.weighted ? range.draw.draw(rng) : rng.below(n)].cards;
        taken.fill(0);
      } else if (range.weighted) {
        cards = draw_weighted(range, taken, rng, weight);
        if (!cards) break;
      } else {
        ComboSet left;
        int count = 0;
        for (int w = 0; w < kComboWords; ++w) {
          left[w] = range.set[w] & ~taken[w];
          count += std::popcount(left[w]);
        }
        if (count == 0) {
          weight = 0;
          break;
        }
        weight *= count;
        int pick = static_cast<int>(rng.below(static_cast<uint32_t>(count))), w = 0;
        for (; pick >= std::popcount(left[w]); ++w) pick -= std::popcount(left[w]);
        cards = &numbers.cards[static_cast<size_t>(w * 64 + nth_set_bit(left[w], pick))];
      }
      const int p = range.player;
      keys[p] = kCardKeys[(*cards)[0]] + kCardKeys[(*cards)[1]];
      masks[p] = uint64_t{1} << (*cards)[0] | uint64_t{1} << (*cards)[1];
      used |= masks[p];
      if (k + 1 < m_ranges.size())
        for (int w = 0; w < kComboWords; ++w)
          taken[w] |= numbers.containing[(*cards)[0]][w] | numbers.containing[(*cards)[1]][w];
    }
    ++done;
    if (weight == 0) continue;

    // The rest from the unseen cards, drawn again when already dealt this trial: no card moves in
    // memory, and a repeat is rare (a 5-card board from 44 cards repeats one time in four).
    auto draw = [&] {
      for (;;) {
        const int card = m_deck[rng.below(deck_size)];
        const uint64_t bit = uint64_t{1} << card;
        if (!(used & bit)) {
          used |= bit;
          return card;
        }
      }
    };
    for (int p : m_random) {
      const int a = draw(), b = draw();
      keys[p] = kCardKeys[a] + kCardKeys[b];
      masks[p] = uint64_t{1} << a | uint64_t{1} << b;
    }
    HandState board = m_board;
    for (int i = 0; i < m_missing; ++i) board.add(draw());
    for (int p = 0; p < m_players; ++p) values[p] = hand_value_of<R, 7>(board.key + keys[p], board.mask | masks[p]);
    const uint32_t w = winners(values, m_players);
    w1[w] += weight;
    w2[w] += weight * weight;
  }
  for (size_t m = 0; m < w1.size(); ++m) out.w1[m] += w1[m], out.w2[m] += w2[m];
  out.trial_count += done;
}

namespace {

POKERMATH_CLONES
void run_holdem(const HoldemSampler& sampler, int64_t trials, Rng& rng, SampledOutcomes& out) {
  sampler.run_trials<Ranking::Holdem>(trials, rng, out);
}

POKERMATH_CLONES
void run_short_deck(const HoldemSampler& sampler, int64_t trials, Rng& rng, SampledOutcomes& out) {
  sampler.run_trials<Ranking::ShortDeck>(trials, rng, out);
}

POKERMATH_CLONES
void run_china(const HoldemSampler& sampler, int64_t trials, Rng& rng, SampledOutcomes& out) {
  sampler.run_trials<Ranking::China>(trials, rng, out);
}

}  // namespace

void HoldemSampler::run(Ranking ranking, int64_t trials, Rng& rng, SampledOutcomes& out) const {
  switch (ranking) {
    case Ranking::Holdem: return run_holdem(*this, trials, rng, out);
    case Ranking::ShortDeck: return run_short_deck(*this, trials, rng, out);
    case Ranking::China: return run_china(*this, trials, rng, out);
  }
}

}  // namespace pokermath::detail

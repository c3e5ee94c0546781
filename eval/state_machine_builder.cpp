// The state-machine generator.
//
// States are canonical partial hands. A key holds what can still matter for the hand's value:
//   - the number of cards of each rank;
//   - for each suit that can still make a flush, the set of ranks held in it ("live" suits); a suit
//     that can no longer reach the cards a flush needs drops out, and hands that differ only in the
//     cards of such suits share one state.
// Every transition is computed from the key alone, never from one representative hand: two hands
// with one key differ in which cards they hold, so whether a card can be added is decided from the
// key (a fifth card of a rank, a card of a live suit already in its set, or more cards of a rank in
// the dead suits than there are dead suits make the transition impossible).
//
// The machine is built level by level from the empty hand, then minimised bottom-up: states whose
// blocks are identical (the same values, or the same successor classes) become one, which shrinks
// the table several times over and makes it friendlier to the cache. Blocks are laid out level by
// level in the order they are first referenced, so a walk moves forward through memory.
#include "eval/state_machine_builder.h"

#include <algorithm>
#include <array>
#include <bit>
#include <unordered_map>

#include "pokermath/eval.h"

namespace pokermath::detail {

namespace {

// ---- keys -----------------------------------------------------------------------------------------

// a: bits 0..38 rank counts (3 bits per rank), bits 40..43 live suits, bits 44..47 the first hole
//    card's rank + 1 and bit 48 "that hole card is of the flush suit" (Omaha only).
// b: 13 bits per suit: the ranks held in that suit, for live suits.
struct Key {
  uint64_t a = 0;
  uint64_t b = 0;
  bool operator==(const Key&) const = default;
};

struct KeyHash {
  size_t operator()(const Key& k) const {
    uint64_t h = k.a * 0x9E3779B97F4A7C15ull ^ (k.b + 0x632BE59BD9B4E019ull + (k.a << 6) + (k.a >> 2));
    h ^= h >> 31;
    h *= 0xBF58476D1CE4E5B9ull;
    return static_cast<size_t>(h ^ (h >> 29));
  }
};

constexpr int kLiveShift = 40;
constexpr int kHoleRankShift = 44;
constexpr int kHoleSuitedBit = 48;

int rank_count(const Key& k, int r) { return static_cast<int>((k.a >> (3 * r)) & 7); }
unsigned live_suits(const Key& k) { return static_cast<unsigned>((k.a >> kLiveShift) & 0xF); }
unsigned suit_ranks(const Key& k, int s) { return static_cast<unsigned>((k.b >> (13 * s)) & 0x1FFF); }
bool is_live(const Key& k, int s) { return (live_suits(k) >> s) & 1; }

// The number of copies of rank r held in live suits.
int live_copies(const Key& k, int r) {
  int n = 0;
  for (int s = 0; s < 4; ++s) n += is_live(k, s) && ((suit_ranks(k, s) >> r) & 1);
  return n;
}

Key start_key() {
  Key k;
  k.a = uint64_t{0xF} << kLiveShift;
  return k;
}

// Adds the card (r, s) to the held cards, or returns false when no hand with this key can take it.
// Afterwards a live suit stays live only if its cards plus the `remaining` cards still to come can
// reach `needed`.
bool add_card(Key& k, int r, int s, int remaining, int needed) {
  const int count = rank_count(k, r);
  if (count == 4) return false;
  if (is_live(k, s)) {
    if ((suit_ranks(k, s) >> r) & 1) return false;
    k.b |= uint64_t{1} << (13 * s + r);
  } else {
    const int dead_suits = 4 - std::popcount(live_suits(k));
    if (count - live_copies(k, r) + 1 > dead_suits) return false;
  }
  k.a += uint64_t{1} << (3 * r);
  for (int t = 0; t < 4; ++t)
    if (is_live(k, t) && std::popcount(suit_ranks(k, t)) + remaining < needed) {
      k.a &= ~(uint64_t{1} << (kLiveShift + t));
      k.b &= ~(uint64_t{0x1FFF} << (13 * t));
    }
  return true;
}

// Card codes (13 * suit + rank) of one hand that has the key: live suits hold exactly their sets;
// the other copies of each rank go to the dead suits round-robin in rank order, so copies of one rank
// get distinct suits and no dead suit gets more cards than a suit that could not make a flush.
int representative(const Key& k, int rank_offset, int ranks, int* codes) {
  int n = 0;
  int dead[4], dead_count = 0;
  for (int s = 0; s < 4; ++s) {
    if (!is_live(k, s)) {
      dead[dead_count++] = s;
      continue;
    }
    for (int r = 0; r < ranks; ++r)
      if ((suit_ranks(k, s) >> r) & 1) codes[n++] = 13 * s + r + rank_offset;
  }
  int next_dead = 0;
  for (int r = 0; r < ranks; ++r)
    for (int copy = live_copies(k, r); copy < rank_count(k, r); ++copy)
      codes[n++] = 13 * dead[next_dead++ % dead_count] + r + rank_offset;
  return n;
}

// ---- the two games -----------------------------------------------------------------------------

// Hold'em: `cards` cards from a deck of `ranks` ranks starting at rank index `rank_offset`.
struct HoldemRules {
  int deck_size, cards, ranks, rank_offset;
  bool short_deck;

  bool add(Key& k, int level, int x) const { return add_card(k, x / 4, x % 4, cards - level - 1, 5); }

  int final_value(Key k, int x) const {
    if (!add(k, cards - 1, x)) return 0;
    int codes[7];
    const int n = representative(k, rank_offset, ranks, codes);
    return short_deck ? best_of_fives(codes, n, short_deck_value) : best_of_fives(codes, n, ascending_value);
  }
};

// Omaha: five board cards (a suit stays live while it can still reach three board cards), then two
// hole cards. After the board at most one suit is live, the flush suit; a hole card then matters by
// its rank and by whether it is of that suit.
struct OmahaRules {
  static constexpr int deck_size = 52, cards = 7;

  static int flush_suit(const Key& k) {
    const unsigned live = live_suits(k);
    return live ? std::countr_zero(live) : -1;
  }

  // Whether a hole card (r, s) fits the board and the first hole card (if any).
  static bool hole_fits(const Key& k, int r, int s, bool has_first) {
    const int f = flush_suit(k);
    const int first_rank = static_cast<int>((k.a >> kHoleRankShift) & 0xF) - 1;
    const bool first_suited = (k.a >> kHoleSuitedBit) & 1;
    if (s == f) return !((suit_ranks(k, f) >> r) & 1) && !(has_first && first_suited && first_rank == r);
    const int other_suits = f < 0 ? 4 : 3;
    const int board_copies = rank_count(k, r) - (f >= 0 && ((suit_ranks(k, f) >> r) & 1));
    const int hole_copies = has_first && !first_suited && first_rank == r;
    return board_copies + hole_copies + 1 <= other_suits;
  }

  bool add(Key& k, int level, int x) const {
    const int r = x / 4, s = x % 4;
    if (level < 5) return add_card(k, r, s, 5 - level - 1, 3);
    if (!hole_fits(k, r, s, false)) return false;
    k.a |= static_cast<uint64_t>(r + 1) << kHoleRankShift;
    if (s == flush_suit(k)) {
      k.a |= uint64_t{1} << kHoleSuitedBit;
    } else {
      // A flush needs both hole cards in the flush suit: with this one outside it, the suit is dead.
      k.a &= ~(uint64_t{0xF} << kLiveShift);
      k.b = 0;
    }
    return true;
  }

  int final_value(const Key& k, int x) const {
    const int r2 = x / 4, s2 = x % 4;
    if (!hole_fits(k, r2, s2, true)) return 0;
    const int f = flush_suit(k);
    const int r1 = static_cast<int>((k.a >> kHoleRankShift) & 0xF) - 1;
    const bool first_suited = (k.a >> kHoleSuitedBit) & 1;

    int board[5];
    representative(k, 0, 13, board);
    // A hole card off the flush suit takes a suit that no other card of its rank uses.
    auto free_suit = [&](int r, int taken) {
      for (int s = 0; s < 4; ++s) {
        if (s == f || s == taken) continue;
        bool used = false;
        for (int c : board) used = used || c == 13 * s + r;
        if (!used) return s;
      }
      return -1;
    };
    const int s1 = first_suited ? f : free_suit(r1, -1);
    const int s2_rep = s2 == f ? f : free_suit(r2, r1 == r2 ? s1 : -1);
    int five[5] = {13 * s1 + r1, 13 * s2_rep + r2, 0, 0, 0};
    int best = 0;
    for (int a = 0; a < 5; ++a)
      for (int b = a + 1; b < 5; ++b)
        for (int c = b + 1; c < 5; ++c) {
          five[2] = board[a], five[3] = board[b], five[4] = board[c];
          best = std::max(best, ascending_value(five));
        }
    return best;
  }
};

// ---- the generic build --------------------------------------------------------------------------

// Identical blocks of D entries, numbered in order of first appearance.
class BlockSet {
 public:
  explicit BlockSet(int width) : m_width(width) {}

  int insert(const int32_t* block) {
    uint64_t h = 1469598103934665603ull;
    for (int i = 0; i < m_width; ++i) h = (h ^ static_cast<uint32_t>(block[i])) * 1099511628211ull;
    auto [first, last] = m_index.equal_range(h);
    for (auto it = first; it != last; ++it)
      if (std::equal(block, block + m_width, m_blocks.begin() + static_cast<ptrdiff_t>(it->second) * m_width))
        return it->second;
    const int id = size();
    m_index.emplace(h, id);
    m_blocks.insert(m_blocks.end(), block, block + m_width);
    return id;
  }

  int size() const { return static_cast<int>(m_blocks.size() / m_width); }
  const int32_t* block(int id) const { return m_blocks.data() + static_cast<size_t>(id) * m_width; }

 private:
  int m_width;
  std::vector<int32_t> m_blocks;
  std::unordered_multimap<uint64_t, int> m_index;
};

template <typename Rules>
StateMachine build(const Rules& rules, const BuildProgress& progress) {
  const int D = rules.deck_size, K = rules.cards;
  auto report = [&](const std::string& stage, double fraction) {
    if (progress) progress(stage, fraction);
  };

  // Forward: the canonical keys of every level 0..K-1.
  std::vector<std::vector<Key>> keys(K);
  std::vector<std::unordered_map<Key, int, KeyHash>> index(K);
  keys[0].push_back(start_key());
  index[0].emplace(start_key(), 0);
  for (int level = 0; level + 1 < K; ++level) {
    report("partial hands", static_cast<double>(level) / K);
    for (const Key& key : keys[level])
      for (int x = 0; x < D; ++x) {
        Key next = key;
        if (!rules.add(next, level, x)) continue;
        if (index[level + 1].emplace(next, static_cast<int>(keys[level + 1].size())).second)
          keys[level + 1].push_back(next);
      }
  }

  // Backward: each state's block, by value (last level) or by successor class; identical blocks merge.
  std::vector<BlockSet> classes(K, BlockSet(D));
  std::vector<std::vector<int>> class_of(K);
  for (int level = K - 1; level >= 0; --level) {
    const auto& level_keys = keys[level];
    const int states = static_cast<int>(level_keys.size());
    class_of[level].resize(states);
    constexpr int kChunk = 1 << 14;
    std::vector<int32_t> blocks(static_cast<size_t>(kChunk) * D);
    for (int first = 0; first < states; first += kChunk) {
      report("merging states", 1.0 - (level + static_cast<double>(first) / states) / K);
      const int count = std::min(kChunk, states - first);
#pragma omp parallel for schedule(dynamic, 256)
      for (int i = 0; i < count; ++i) {
        int32_t* block = &blocks[static_cast<size_t>(i) * D];
        const Key& key = level_keys[first + i];
        for (int x = 0; x < D; ++x) {
          if (level == K - 1) {
            block[x] = rules.final_value(key, x);
            continue;
          }
          Key next = key;
          block[x] = rules.add(next, level, x) ? class_of[level + 1][index[level + 1].at(next)] : -1;
        }
      }
      for (int i = 0; i < count; ++i)
        class_of[level][first + i] = classes[level].insert(&blocks[static_cast<size_t>(i) * D]);
    }
    keys[level] = {};  // the keys of this level and the index of the next are no longer needed
    if (level + 1 < K) index[level + 1] = {};
  }

  // Layout: level by level, each class at the position of its first reference.
  std::vector<std::vector<int32_t>> offset(K);
  int32_t next_offset = D;
  offset[0].assign(1, 0);
  offset[0][0] = next_offset;
  next_offset += D;
  for (int level = 0; level + 1 < K; ++level) {
    offset[level + 1].assign(classes[level + 1].size(), -1);
    for (int id = 0; id < classes[level].size(); ++id)
      for (int x = 0; x < D; ++x) {
        const int child = classes[level].block(id)[x];
        if (child >= 0 && offset[level + 1][child] < 0) {
          offset[level + 1][child] = next_offset;
          next_offset += D;
        }
      }
  }

  StateMachine machine;
  machine.deck_size = D;
  machine.cards = K;
  machine.entries.assign(static_cast<size_t>(next_offset), 0);
  for (int level = 0; level < K; ++level)
    for (int id = 0; id < classes[level].size(); ++id) {
      const int32_t* block = classes[level].block(id);
      int32_t* out = &machine.entries[static_cast<size_t>(offset[level][id])];
      for (int x = 0; x < D; ++x)
        out[x] = level == K - 1 ? block[x] : (block[x] >= 0 ? offset[level + 1][block[x]] : 0);
    }
  return machine;
}

}  // namespace

int ascending_value(const int* codes) {
  return 7463 - eval_5hand_fast(static_cast<int>(prime_word(codes[0])), static_cast<int>(prime_word(codes[1])),
                                static_cast<int>(prime_word(codes[2])), static_cast<int>(prime_word(codes[3])),
                                static_cast<int>(prime_word(codes[4])));
}

int short_deck_value(const int* codes) {
  const int cls = eval_5hand_fast(static_cast<int>(prime_word(codes[0])), static_cast<int>(prime_word(codes[1])),
                                  static_cast<int>(prime_word(codes[2])), static_cast<int>(prime_word(codes[3])),
                                  static_cast<int>(prime_word(codes[4])));
  return short_deck_value_of_class()[cls];
}

const std::vector<int>& short_deck_value_of_class() {
  static const std::vector<int> table = [] {
    // Order every short-deck hand by its own ranking key, then number the distinct keys.
    auto key_of = [](const int* c) {
      int count[13] = {};
      bool flush = true;
      for (int i = 0; i < 5; ++i) {
        ++count[c[i] % 13];
        flush = flush && c[i] / 13 == c[0] / 13;
      }
      int order[5], n = 0;
      for (int m = 4; m >= 1; --m)
        for (int r = 12; r >= 0; --r)
          if (count[r] == m) order[n++] = r;
      int top = -1;
      if (n == 5 && order[0] - order[4] == 4) top = order[0];
      if (n == 5 && order[0] == 12 && order[1] == 7 && order[4] == 4) top = 7;  // A-6-7-8-9: the ace plays low
      // Categories, weakest first: high card, pair, two pair, straight, trips, full house, flush,
      // four of a kind, straight flush.
      int category;
      if (top >= 0)
        category = flush ? 9 : 4;
      else if (count[order[0]] == 4)
        category = 8;
      else if (flush)
        category = 7;
      else if (count[order[0]] == 3)
        category = n == 2 ? 6 : 5;
      else if (count[order[0]] == 2)
        category = n == 3 ? 3 : 2;
      else
        category = 1;
      int key = category;
      if (top >= 0) return key << 20 | top;
      for (int i = 0; i < 5; ++i) key = key << 4 | (i < n ? order[i] : 0);
      return key;
    };
    std::vector<std::pair<int, int>> key_class;  // (short-deck key, 52-card class)
    int c[5];
    for (c[0] = 0; c[0] < 36; ++c[0])
      for (c[1] = c[0] + 1; c[1] < 36; ++c[1])
        for (c[2] = c[1] + 1; c[2] < 36; ++c[2])
          for (c[3] = c[2] + 1; c[3] < 36; ++c[3])
            for (c[4] = c[3] + 1; c[4] < 36; ++c[4]) {
              int codes[5];
              for (int i = 0; i < 5; ++i) codes[i] = card_from_short_deck(c[i]);
              key_class.emplace_back(key_of(codes), 7463 - ascending_value(codes));
            }
    std::sort(key_class.begin(), key_class.end());
    std::vector<int> value(7463, 0);
    int v = 0;
    for (size_t i = 0; i < key_class.size(); ++i) {
      if (i == 0 || key_class[i].first != key_class[i - 1].first) ++v;
      value[key_class[i].second] = v;
    }
    return value;
  }();
  return table;
}

StateMachine build_holdem_machine(int deck_size, int cards, const BuildProgress& progress) {
  const bool short_deck = deck_size == 36;
  const HoldemRules rules{deck_size, cards, short_deck ? 9 : 13, short_deck ? 4 : 0, short_deck};
  return build(rules, progress);
}

StateMachine build_omaha_machine(const BuildProgress& progress) { return build(OmahaRules{}, progress); }

}  // namespace pokermath::detail

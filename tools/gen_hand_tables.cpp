// Writes the small tables of the cache-resident evaluator as C++ source.
//
// Every rank gets a key such that two different multisets of the same number of ranks (up to seven,
// at most four of a rank) have different key sums; the keys are found greedily, each the smallest
// number that keeps the sums apart. A hand's rank multiset is then one 32-bit sum, and a perfect
// hash by row displacement maps the sums of one hand size to slots: slot = sum + rows[sum >> shift]
// (mod 2^32), where the rows of 2^shift consecutive sums are laid over one another so that no two
// sums share a slot. A slot holds the best value the ranks make without a flush. Flushes are looked
// up by the suit's ranks as a 13-bit mask. Tables for Hold'em (values 1..7462) and for the short deck
// (1..1404, in the standard and the China order) of 5, 6 and 7 cards.
//
// Usage: gen_hand_tables OUTPUT_DIR   (writes hand_tables.h and hand_tables.cpp)
#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <fstream>
#include <functional>
#include <iostream>
#include <string>
#include <vector>

#include "eval/short_deck_order.h"
#include "eval/state_machine_builder.h"
#include "pokermath/cards.h"
#include "pokermath/eval.h"

namespace {

constexpr int kRanks = 13;
constexpr int kMaxCards = 7;
constexpr int kShortDeckLowest = 4;  // the short deck's ranks are 6..A: rank indexes 4..12

using Counts = std::array<int, kRanks>;
using Keys = std::array<uint32_t, kRanks>;

// ---- rank keys ------------------------------------------------------------------------------------

// The greedy keys. sums[n] holds the key sums of every multiset of n ranks of the ranks keyed so far;
// a candidate key k for the next rank is good when, for every size n, the sets sums[n - m] + m * k
// (m copies of the new rank, m = 0..4) are disjoint. Two of them meet exactly when
// (m - m2) * k = y - x for x in sums[n - m] and y in sums[n - m2], tested with a bitmap of the
// larger set: most bad candidates fail within a few probes.
Keys search_rank_keys() {
  Keys keys{};
  std::vector<std::vector<uint32_t>> sums(kMaxCards + 1);
  sums[0] = {0};
  for (int r = 0; r < kRanks; ++r) {
    std::vector<std::vector<bool>> member(kMaxCards + 1);
    for (int n = 0; n <= kMaxCards; ++n) {
      member[n].assign(sums[n].empty() ? 0 : *std::max_element(sums[n].begin(), sums[n].end()) + 1, false);
      for (uint32_t s : sums[n]) member[n][s] = true;
    }
    auto good = [&](uint32_t k) {
      for (int n = kMaxCards; n >= 1; --n)
        for (int m = 1; m <= std::min(4, n); ++m)
          for (int m2 = 0; m2 < m; ++m2)
            for (uint32_t x : sums[n - m]) {
              const uint64_t y = x + static_cast<uint64_t>(m - m2) * k;
              if (y < member[n - m2].size() && member[n - m2][y]) return false;
            }
      return true;
    };
    uint32_t k = r == 0 ? 0 : keys[r - 1] + 1;
    while (!good(k)) ++k;
    keys[r] = k;
    std::vector<std::vector<uint32_t>> next(kMaxCards + 1);
    for (int n = 0; n <= kMaxCards; ++n)
      for (int m = 0; m <= std::min(4, n); ++m)
        for (uint32_t x : sums[n - m]) next[n].push_back(x + static_cast<uint32_t>(m) * k);
    sums = std::move(next);
  }
  return keys;
}

// ---- values ---------------------------------------------------------------------------------------

// Every multiset of n ranks from `lowest`..12 with at most four of a rank.
void for_each_multiset(int n, int lowest, const std::function<void(const Counts&)>& visit) {
  Counts counts{};
  auto level = [&](auto& self, int rank, int left) -> void {
    if (rank == kRanks) {
      if (left == 0) visit(counts);
      return;
    }
    for (int m = 0; m <= std::min(4, left); ++m) {
      counts[rank] = m;
      self(self, rank + 1, left - m);
    }
    counts[rank] = 0;
  };
  level(level, lowest, n);
}

using pokermath::detail::ascending_value;
using pokermath::detail::short_deck_value;

// The largest score over the five-card subsets of `codes`.
int best_of_fives(const std::vector<int>& codes, const std::function<int(const int*)>& score) {
  return pokermath::detail::best_of_fives(codes.data(), static_cast<int>(codes.size()), score);
}

// Card codes of a rank multiset that make no flush: the i-th card (in rank order) gets suit i % 4,
// so every five of them hold at least two suits, and equal ranks get different suits.
std::vector<int> cards_without_flush(const Counts& counts) {
  std::vector<int> codes;
  for (int r = 0; r < kRanks; ++r)
    for (int m = 0; m < counts[r]; ++m) codes.push_back(13 * static_cast<int>(codes.size() % 4) + r);
  return codes;
}

// The cards of a rank mask, all of one suit.
std::vector<int> suited_cards(uint32_t ranks) {
  std::vector<int> codes;
  for (int r = 0; r < kRanks; ++r)
    if (ranks >> r & 1) codes.push_back(r);
  return codes;
}

int china_value(const int* five) { return pokermath::detail::china_value_of_five(short_deck_value(five)); }

// ---- perfect hash ---------------------------------------------------------------------------------

// The key sums are scrambled before they are hashed: every key is multiplied by one odd number M
// modulo 2^23 (a bijection on the sums, which stay below 2^23 = 8,388,608), so the sums of a hand
// size spread evenly over the range instead of crowding where the large keys meet, and the rows of
// the displacement fill evenly.
constexpr int kSumBits = 23;
constexpr uint32_t kSumMask = (1u << kSumBits) - 1;

struct RankHash {
  int shift = 0;                  // row = (sum & kSumMask) >> shift; column = sum & (2^shift - 1)
  std::vector<uint16_t> rows;     // slot = column + rows[row]
  std::vector<uint32_t> slot_of;  // the slot of each input sum, in input order
  size_t slots = 0;
};

// Row displacement: the rows are placed largest first, each at the lowest displacement where all its
// sums land on free slots. 64 displacements are tried at once with the bitmap of used slots.
RankHash displace(const std::vector<uint32_t>& sums, int shift) {
  const uint32_t width = 1u << shift;
  const size_t nrows = size_t{1} << (kSumBits - shift);
  std::vector<std::vector<uint32_t>> members(nrows);  // indexes into sums
  for (uint32_t i = 0; i < sums.size(); ++i) members[(sums[i] & kSumMask) >> shift].push_back(i);
  std::vector<uint32_t> order(nrows);
  for (uint32_t i = 0; i < nrows; ++i) order[i] = i;
  std::stable_sort(order.begin(), order.end(),
                   [&](uint32_t a, uint32_t b) { return members[a].size() > members[b].size(); });
  std::vector<uint64_t> used(2 * sums.size() / 64 + width / 64 + 4, 0);
  auto used_from = [&](size_t i) {  // the 64 bits of `used` from bit i
    const size_t q = i / 64, r = i % 64;
    return r ? used[q] >> r | used[q + 1] << (64 - r) : used[q];
  };
  RankHash hash;
  hash.shift = shift;
  hash.rows.assign(nrows, 0);
  hash.slot_of.assign(sums.size(), 0);
  for (uint32_t row : order) {
    const auto& m = members[row];
    if (m.empty()) break;
    for (size_t base = 0;; base += 64) {
      if ((base + width) / 64 + 2 >= used.size()) used.resize((base + width) / 64 + 64, 0);
      uint64_t free = ~uint64_t{0};
      for (size_t k = 0; k < m.size() && free; ++k) free &= ~used_from(base + (sums[m[k]] & (width - 1)));
      if (!free) continue;
      const size_t d = base + static_cast<size_t>(std::countr_zero(free));
      for (uint32_t i : m) {
        const size_t slot = d + (sums[i] & (width - 1));
        used[slot / 64] |= uint64_t{1} << (slot % 64);
        hash.slot_of[i] = static_cast<uint32_t>(slot);
        hash.slots = std::max(hash.slots, slot + 1);
      }
      hash.rows[row] = static_cast<uint16_t>(d);
      break;
    }
  }
  return hash;
}

// The displacement with the fewest bytes: rows of 2 bytes and slots of `slot_bytes`.
RankHash smallest_hash(const std::vector<uint32_t>& sums, int slot_bytes) {
  RankHash best;
  size_t best_bytes = SIZE_MAX;
  for (int shift = 9; shift <= 13; ++shift) {
    RankHash h = displace(sums, shift);
    if (h.slots > 65536) continue;  // the displacements are 16-bit
    const size_t bytes = h.rows.size() * 2 + h.slots * static_cast<size_t>(slot_bytes);
    if (bytes < best_bytes) best = std::move(h), best_bytes = bytes;
  }
  return best;
}

// ---- output ---------------------------------------------------------------------------------------

template <typename T>
void write_array(std::ostream& out, const std::string& type, const std::string& name, const std::vector<T>& values) {
  out << "const " << type << " " << name << "[" << values.size() << "] = {";
  for (size_t i = 0; i < values.size(); ++i) {
    if (i % 16 == 0) out << "\n    ";
    out << values[i] << ",";
  }
  out << "};\n\n";
}

struct Output {
  std::ostream& header;
  std::ostream& source;
  size_t bytes = 0;

  template <typename T>
  void array(const std::string& type, const std::string& name, const std::vector<T>& values,
             const std::string& comment) {
    header << "// " << comment << "\n[[gnu::visibility(\"hidden\")]] extern const " << type << " " << name << "["
           << values.size() << "];\n";
    write_array(source, type, name, values);
    bytes += values.size() * sizeof(T);
  }
};

// The rank multisets of one hand size of one deck, with their key sums and values in each order.
struct SizeTable {
  std::string deck;
  int cards = 0;
  std::vector<std::string> orders;
  std::vector<uint32_t> sums;
  std::vector<std::vector<int>> values;  // by order, then multiset
};

SizeTable size_table(const Keys& keys, const std::string& deck, int cards, int lowest,
                     const std::vector<std::pair<std::string, std::function<int(const int*)>>>& orders) {
  SizeTable t{deck, cards, {}, {}, std::vector<std::vector<int>>(orders.size())};
  for (const auto& order : orders) t.orders.push_back(order.first);
  for_each_multiset(cards, lowest, [&](const Counts& counts) {
    uint32_t sum = 0;
    for (int r = 0; r < kRanks; ++r) sum += static_cast<uint32_t>(counts[r]) * keys[r];
    t.sums.push_back(sum);
    const std::vector<int> codes = cards_without_flush(counts);
    for (size_t o = 0; o < orders.size(); ++o) t.values[o].push_back(best_of_fives(codes, orders[o].second));
  });
  return t;
}

std::vector<uint32_t> scrambled(const std::vector<uint32_t>& sums, uint32_t multiplier) {
  std::vector<uint32_t> out;
  for (uint32_t s : sums) out.push_back(s * multiplier & kSumMask);
  return out;
}

void write_size_table(Output& out, const SizeTable& t, const RankHash& hash) {
  const std::string n = std::to_string(t.cards), name = "k" + t.deck;
  out.header << "inline constexpr int " << name << "Shift" << n << " = " << hash.shift << ";\n";
  out.array("uint16_t", name + "Rows" + n, hash.rows,
            std::to_string(t.sums.size()) + " rank multisets of " + n + " cards in " + std::to_string(hash.slots) +
                " slots");
  for (size_t o = 0; o < t.orders.size(); ++o) {
    std::vector<uint16_t> slots(hash.slots, 0);
    for (size_t i = 0; i < t.sums.size(); ++i) slots[hash.slot_of[i]] = static_cast<uint16_t>(t.values[o][i]);
    out.array("uint16_t", "k" + t.orders[o] + "Values" + n, slots,
              "the best value without a flush, by slot (" + t.orders[o] + ", " + n + " cards)");
  }
  out.header << "\n";
}

// The best flush (or straight flush) of each set of ranks of one suit; 0 below five ranks.
std::vector<uint16_t> flush_values(int lowest, const std::function<int(const int*)>& score) {
  std::vector<uint16_t> values(1u << (kRanks - lowest), 0);
  for (uint32_t m = 0; m < values.size(); ++m)
    if (std::popcount(m) >= 5) values[m] = static_cast<uint16_t>(best_of_fives(suited_cards(m << lowest), score));
  return values;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "usage: gen_hand_tables OUTPUT_DIR\n";
    return 2;
  }
  const std::string dir = argv[1];
  const Keys keys = search_rank_keys();
  std::vector<SizeTable> tables;
  for (int cards = 5; cards <= kMaxCards; ++cards) {
    tables.push_back(size_table(keys, "Holdem", cards, 0, {{"Holdem", ascending_value}}));
    tables.push_back(size_table(keys, "ShortDeck", cards, kShortDeckLowest,
                                {{"ShortDeck", short_deck_value}, {"China", china_value}}));
  }

  // The scrambling multiplier: the best of a few odd numbers from a fixed sequence (they differ by a
  // percent or two).
  uint32_t multiplier = 0;
  std::vector<RankHash> hashes;
  size_t best_bytes = SIZE_MAX;
  uint32_t candidate = 0x9E3779B9u;
  for (int attempt = 0; attempt < 4; ++attempt, candidate = candidate * 0x2C1B3C6Du + 0x297A2D39u) {
    const uint32_t m = (candidate & kSumMask) | 1;
    std::vector<RankHash> h;
    size_t bytes = 0;
    for (const SizeTable& t : tables) {
      h.push_back(smallest_hash(scrambled(t.sums, m), 2 * static_cast<int>(t.orders.size())));
      bytes += h.back().rows.size() * 2 + h.back().slots * 2 * t.orders.size();
    }
    if (bytes < best_bytes) best_bytes = bytes, multiplier = m, hashes = std::move(h);
  }

  std::ofstream header(dir + "/hand_tables.h"), source(dir + "/hand_tables.cpp");
  header << "// Generated by tools/gen_hand_tables.cpp. Do not edit.\n#pragma once\n#include <cstdint>\n\n"
            "namespace pokermath::detail {\n\n"
            "// Rank keys, 2 to A: multisets of up to seven ranks of one size have distinct key sums modulo\n"
            "// 2^kSumBits (greedy keys times "
         << multiplier << ").\ninline constexpr int kSumBits = " << kSumBits
         << ";\ninline constexpr uint32_t kRankKeys[13] = {";
  for (int r = 0; r < kRanks; ++r) header << (r ? ", " : "") << (keys[r] * multiplier & kSumMask);
  header << "};\n\n"
            "// Each hand size: for the key sum s of its ranks, row = (s mod 2^kSumBits) >> Shift, slot =\n"
            "// (s mod 2^Shift) + Rows[row], and Values[slot] the best value the ranks make without a flush\n"
            "// (larger is stronger).\n\n";
  source << "// Generated by tools/gen_hand_tables.cpp. Do not edit.\n#include \"hand_tables.h\"\n\n"
            "namespace pokermath::detail {\n\n";
  Output out{header, source};
  for (size_t i = 0; i < tables.size(); ++i) write_size_table(out, tables[i], hashes[i]);
  out.array("uint16_t", "kHoldemFlush", flush_values(0, ascending_value),
            "the best flush of a suit's ranks (bit r = rank r), 0 below five cards");
  const std::vector<uint16_t> short_flush = flush_values(kShortDeckLowest, short_deck_value);
  if (short_flush != flush_values(kShortDeckLowest, china_value)) {
    std::cerr << "gen_hand_tables: the two short-deck orders rank flushes differently\n";
    return 1;
  }
  out.array("uint16_t", "kShortDeckFlush", short_flush,
            "the same for the short deck in both orders, by the ranks 6..A of the suit (bit r = rank r + 4)");
  header << "\n// All the tables above, in bytes.\ninline constexpr int kHandTableBytes = " << out.bytes
         << ";\n\n}  // namespace pokermath::detail\n";
  source << "}  // namespace pokermath::detail\n";
  std::cerr << "gen_hand_tables: " << out.bytes << " bytes of tables\n";
  return header && source ? 0 : 1;
}

// Generates the constant tables of the prime-product five-card evaluator.
//
// The 7462 equivalence classes of five-card hands are enumerated from the strongest (1, the royal
// flush) to the weakest (7462, 7-5-4-3-2 offsuit). Each class lands in one of three places:
//   - flushes and straight flushes: the flush table, indexed by the 13-bit rank pattern;
//   - five distinct ranks without a flush: the unique-ranks table, same index;
//   - hands with a repeated rank: a (prime product, class) pair. The pairs, sorted by product, are
//     the product and value tables of the binary-search path.
// The hash path maps each of those 4888 products to its class through a perfect hash: fixed mixing
// steps split the product into a 13-bit value a and a 9-bit bucket b, and the slot is
// a XOR adjust[b]. The adjust words are found here by a displacement search (largest buckets first,
// each takes the smallest adjust word that sends all its keys to free slots), so the hash is our own
// and every run writes the same bytes.
//
// Usage: gen_five_card_tables OUTPUT_DIR   (writes five_card_tables.h and five_card_tables.cpp)

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <iostream>
#include <numeric>
#include <string>
#include <vector>

namespace {

constexpr std::array<int, 13> kPrimes = {2, 3, 5, 7, 11, 13, 17, 19, 23, 29, 31, 37, 41};
constexpr int kPatternTableSize = 7937;  // largest five-bit pattern A-K-Q-J-T is 0x1F00 = 7936
constexpr int kHashBuckets = 512;
constexpr int kHashSlots = 8192;

struct Tables {
  std::vector<uint16_t> flush = std::vector<uint16_t>(kPatternTableSize, 0);
  std::vector<uint16_t> unique = std::vector<uint16_t>(kPatternTableSize, 0);
  std::vector<std::pair<int32_t, uint16_t>> products;  // (prime product, class)
  std::vector<uint16_t> hash_adjust = std::vector<uint16_t>(kHashBuckets, 0);
  std::vector<uint16_t> hash_values = std::vector<uint16_t>(kHashSlots, 0);
};

// The ten straights as rank patterns, strongest first (A-high .. the wheel 5-4-3-2-A).
std::vector<int> straight_patterns() {
  std::vector<int> patterns;
  for (int top = 12; top >= 4; --top) patterns.push_back(0x1F << (top - 4));
  patterns.push_back(0x100F);
  return patterns;
}

// All five-rank patterns that are not straights, strongest first. Comparing two patterns as
// integers compares their highest ranks first, which is exactly the poker order of kickers.
std::vector<int> non_straight_patterns() {
  const std::vector<int> straights = straight_patterns();
  std::vector<int> patterns;
  for (int p = 0x1F00; p > 0; --p) {
    if (std::popcount(static_cast<unsigned>(p)) != 5) continue;
    if (std::find(straights.begin(), straights.end(), p) != straights.end()) continue;
    patterns.push_back(p);
  }
  return patterns;
}

int64_t product_of(std::initializer_list<std::pair<int, int>> rank_counts) {
  int64_t product = 1;
  for (auto [rank, count] : rank_counts)
    for (int i = 0; i < count; ++i) product *= kPrimes[rank];
  return product;
}

// Enumerates the classes in order; returns the number of classes written (7462 when correct).
int enumerate_classes(Tables& t) {
  int cls = 1;
  auto add_product = [&](int64_t product) { t.products.emplace_back(static_cast<int32_t>(product), cls++); };

  for (int pattern : straight_patterns()) t.flush[pattern] = static_cast<uint16_t>(cls++);
  for (int quad = 12; quad >= 0; --quad)
    for (int kicker = 12; kicker >= 0; --kicker)
      if (kicker != quad) add_product(product_of({{quad, 4}, {kicker, 1}}));
  for (int trips = 12; trips >= 0; --trips)
    for (int pair = 12; pair >= 0; --pair)
      if (pair != trips) add_product(product_of({{trips, 3}, {pair, 2}}));
  for (int pattern : non_straight_patterns()) t.flush[pattern] = static_cast<uint16_t>(cls++);
  for (int pattern : straight_patterns()) t.unique[pattern] = static_cast<uint16_t>(cls++);
  for (int trips = 12; trips >= 0; --trips)
    for (int k1 = 12; k1 >= 0; --k1)
      for (int k2 = k1 - 1; k2 >= 0; --k2)
        if (k1 != trips && k2 != trips) add_product(product_of({{trips, 3}, {k1, 1}, {k2, 1}}));
  for (int high = 12; high >= 0; --high)
    for (int low = high - 1; low >= 0; --low)
      for (int kicker = 12; kicker >= 0; --kicker)
        if (kicker != high && kicker != low) add_product(product_of({{high, 2}, {low, 2}, {kicker, 1}}));
  for (int pair = 12; pair >= 0; --pair)
    for (int k1 = 12; k1 >= 0; --k1)
      for (int k2 = k1 - 1; k2 >= 0; --k2)
        for (int k3 = k2 - 1; k3 >= 0; --k3)
          if (k1 != pair && k2 != pair && k3 != pair) add_product(product_of({{pair, 2}, {k1, 1}, {k2, 1}, {k3, 1}}));
  for (int pattern : non_straight_patterns()) t.unique[pattern] = static_cast<uint16_t>(cls++);

  std::sort(t.products.begin(), t.products.end());
  return cls - 1;
}

// The mixing steps of the hash path; must stay identical to eval_5hand_fast.
void hash_parts(uint32_t product, uint32_t& a, uint32_t& b) {
  uint32_t u = product;
  u += 0xE91AAA35u;
  u ^= u >> 16;
  u += u << 8;
  u ^= u >> 4;
  b = (u >> 8) & 0x1FF;
  a = (u + (u << 2)) >> 19;
}

bool build_perfect_hash(Tables& t) {
  std::vector<std::vector<std::pair<uint32_t, uint16_t>>> buckets(kHashBuckets);  // (a, class)
  for (auto [product, cls] : t.products) {
    uint32_t a = 0, b = 0;
    hash_parts(static_cast<uint32_t>(product), a, b);
    buckets[b].emplace_back(a, cls);
  }
  std::vector<int> order(kHashBuckets);
  std::iota(order.begin(), order.end(), 0);
  std::stable_sort(order.begin(), order.end(), [&](int x, int y) { return buckets[x].size() > buckets[y].size(); });

  std::vector<bool> used(kHashSlots, false);
  for (int b : order) {
    const auto& keys = buckets[b];
    if (keys.empty()) break;
    bool placed = false;
    for (uint32_t adjust = 0; adjust < kHashSlots && !placed; ++adjust) {
      bool fits = true;
      std::vector<uint32_t> slots;
      for (auto [a, cls] : keys) {
        const uint32_t slot = a ^ adjust;
        if (used[slot] || std::find(slots.begin(), slots.end(), slot) != slots.end()) {
          fits = false;
          break;
        }
        slots.push_back(slot);
      }
      if (!fits) continue;
      for (size_t i = 0; i < keys.size(); ++i) {
        used[slots[i]] = true;
        t.hash_values[slots[i]] = keys[i].second;
      }
      t.hash_adjust[b] = static_cast<uint16_t>(adjust);
      placed = true;
    }
    if (!placed) {
      std::cerr << "gen_five_card_tables: no adjust word places bucket " << b << "\n";
      return false;
    }
  }
  return true;
}

template <typename T>
void write_array(std::ostream& out, const char* type, const char* name, const std::vector<T>& values) {
  out << "const " << type << " " << name << "[" << values.size() << "] = {";
  for (size_t i = 0; i < values.size(); ++i) {
    if (i % 16 == 0) out << "\n    ";
    out << values[i] << (i + 1 < values.size() ? "," : "");
  }
  out << "};\n\n";
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "usage: gen_five_card_tables OUTPUT_DIR\n";
    return 2;
  }
  const std::string dir = argv[1];
  Tables t;
  const int classes = enumerate_classes(t);
  if (classes != 7462 || t.products.size() != 4888) {
    std::cerr << "gen_five_card_tables: enumerated " << classes << " classes and " << t.products.size()
              << " products\n";
    return 1;
  }
  if (!build_perfect_hash(t)) return 1;

  std::ofstream header(dir + "/five_card_tables.h");
  header << "// Generated by tools/gen_five_card_tables.cpp. Do not edit.\n"
            "#pragma once\n#include <cstdint>\n\nnamespace pokermath::detail {\n\n"
         << "inline constexpr int kFlushTableSize = " << kPatternTableSize << ";\n"
         << "inline constexpr int kProductTableSize = " << t.products.size() << ";\n"
         << "inline constexpr int kHashAdjustSize = " << kHashBuckets << ";\n"
         << "inline constexpr int kHashValueSize = " << kHashSlots << ";\n\n"
         << "// Class of a flush with these five ranks (1..10 straight flushes, 323..1599 others), 0 elsewhere.\n"
            "// Hidden visibility keeps the tables out of the GOT, so the evaluator reads them directly.\n"
            "[[gnu::visibility(\"hidden\")]] extern const uint16_t kFlushes[kFlushTableSize];\n"
            "// Class of five distinct ranks without a flush (1600..1609, 6186..7462), 0 elsewhere.\n"
            "[[gnu::visibility(\"hidden\")]] extern const uint16_t kUnique5[kFlushTableSize];\n"
            "// Prime products of the hands with a repeated rank, ascending; kProductValues is parallel.\n"
            "[[gnu::visibility(\"hidden\")]] extern const int32_t kProducts[kProductTableSize];\n"
            "[[gnu::visibility(\"hidden\")]] extern const uint16_t kProductValues[kProductTableSize];\n"
            "// Perfect hash of those products: slot = a XOR kHashAdjust[b]; 0 in slots no product reaches.\n"
            "[[gnu::visibility(\"hidden\")]] extern const uint16_t kHashAdjust[kHashAdjustSize];\n"
            "extern const uint16_t kHashValues[kHashValueSize];\n\n"
            "}  // namespace pokermath::detail\n";

  std::vector<int32_t> products;
  std::vector<uint16_t> values;
  for (auto [product, cls] : t.products) {
    products.push_back(product);
    values.push_back(cls);
  }
  std::ofstream source(dir + "/five_card_tables.cpp");
  source << "// Generated by tools/gen_five_card_tables.cpp. Do not edit.\n"
            "#include \"five_card_tables.h\"\n\nnamespace pokermath::detail {\n\n";
  write_array(source, "uint16_t", "kFlushes", t.flush);
  write_array(source, "uint16_t", "kUnique5", t.unique);
  write_array(source, "int32_t", "kProducts", products);
  write_array(source, "uint16_t", "kProductValues", values);
  write_array(source, "uint16_t", "kHashAdjust", t.hash_adjust);
  write_array(source, "uint16_t", "kHashValues", t.hash_values);
  source << "}  // namespace pokermath::detail\n";
  return header && source ? 0 : 1;
}

// pokermath bench: the workloads of bench/workloads_bench.cpp in a few seconds, each figure, and a
// behaviour signature (a checksum of every value and exact equity the workloads computed).
#include <chrono>
#include <cinttypes>
#include <cmath>
#include <cstdio>
#include <functional>
#include <iostream>
#include <nlohmann/json.hpp>
#include <random>

#include "commands.h"
#include "number_options.h"
#include "pokermath/pokermath.h"

namespace pokermath::cli {

namespace {

struct BenchOptions {
  bool signature_only = false;
  bool json = false;
  int threads = 0;
};

// FNV-1a over 64-bit words.
struct Checksum {
  uint64_t value = 0xCBF29CE484222325ull;
  void add(uint64_t word) {
    for (int i = 0; i < 8; ++i) value = (value ^ (word >> (8 * i) & 0xFF)) * 0x100000001B3ull;
  }
};

struct Row {
  std::string name;
  double seconds = 0;
  double items = 0;  // hands or trials; 0 for one request
};

double seconds_of(const std::function<void()>& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

// Random hands of n cards as codes, from a fixed seed.
std::vector<int> random_hands(int n, int count) {
  std::mt19937 engine(2026);
  std::vector<int> codes, hand;
  for (int h = 0; h < count; ++h) {
    Int64ToVec(GetRandomHand(n, engine), hand);
    codes.insert(codes.end(), hand.begin(), hand.end());
  }
  return codes;
}

// The sum of the values of all 133,784,560 seven-card hands, in batches of card masks.
int64_t all_seven_card_sum() {
  constexpr size_t kBatch = size_t{1} << 20;
  std::vector<uint64_t> masks;
  std::vector<int> values(kBatch);
  masks.reserve(kBatch);
  int64_t sum = 0;
  auto flush = [&] {
    pokermath::hand_values(masks, std::span(values.data(), masks.size()));
    for (size_t i = 0; i < masks.size(); ++i) sum += values[i];
    masks.clear();
  };
  auto level = [&](auto& self, int depth, int first, uint64_t mask) -> void {
    if (depth == 7) {
      masks.push_back(mask);
      if (masks.size() == kBatch) flush();
      return;
    }
    for (int c = first; c <= 45 + depth; ++c) self(self, depth + 1, c + 1, mask | uint64_t{1} << c);
  };
  level(level, 0, 0, 0);
  flush();
  return sum;
}

EquityRequest request(std::vector<std::string> players, const char* board, int threads) {
  EquityRequest r;
  r.players = std::move(players);
  r.board = parse_cards(board);
  r.method = EquityMethod::Exact;
  r.threads = threads;
  r.data_dir = std::filesystem::temp_directory_path() / "pokermath_bench_no_tables";  // never holds a table
  return r;
}

// Adds what a result computed to the checksum: each player's wins, ties and pot share as whole
// numbers (counts, or units of 1/2520 of a pot).
void add_result(Checksum& sum, const EquityResult& result) {
  for (const PlayerEquity& p : result.players) {
    sum.add(static_cast<uint64_t>(std::llround(p.win * result.deals)));
    sum.add(static_cast<uint64_t>(std::llround(p.tie * result.deals)));
    sum.add(static_cast<uint64_t>(std::llround(p.equity * result.deals * 2520)));
  }
}

void run_bench(const BenchOptions& o) {
  std::vector<Row> rows;
  Checksum checksum;
  const bool timed = !o.signature_only;

  // Evaluation.
  constexpr int kHands = 2'000'000;
  const std::vector<int> sevens = random_hands(7, kHands), fives = random_hands(5, kHands);
  const std::vector<uint8_t> seven_bytes(sevens.begin(), sevens.end()), five_bytes(fives.begin(), fives.end());
  std::vector<int> values(kHands);
  int64_t one_sum = 0;
  rows.push_back({"7-card hands, one at a time", seconds_of([&] {
                    for (size_t i = 0; i < sevens.size(); i += 7) one_sum += hand_value(std::span(&sevens[i], 7));
                  }),
                  kHands});
  checksum.add(static_cast<uint64_t>(one_sum));
  rows.push_back({"7-card hands, in a batch", seconds_of([&] { hand_values(seven_bytes, 7, values); }), kHands});
  rows.push_back({"5-card hands, in a batch", seconds_of([&] { hand_values(five_bytes, 5, values); }), kHands});
  int64_t five_sum = 0;
  for (int v : values) five_sum += v;
  checksum.add(static_cast<uint64_t>(five_sum));
  int64_t all_sum = 0;
  rows.push_back({"all 133,784,560 7-card hands", seconds_of([&] { all_sum = all_seven_card_sum(); }), 133784560});
  checksum.add(static_cast<uint64_t>(all_sum));

  // Equity.
  struct Question {
    const char* name;
    std::vector<std::string> players;
    const char* board;
    int threads;
  };
  const std::vector<Question> questions = {
      {"exact AsKs vs QhQd, 1 thread", {"AsKs", "QhQd"}, "", 1},
      {"exact AsKs vs random", {"AsKs", "random"}, "", o.threads},
      {"exact AsKs vs QQ+,AKs,AKo, 1 thread", {"AsKs", "QQ+,AKs,AKo"}, "", 1},
      {"exact AA,KK vs QQ+,AK", {"AA,KK", "QQ+,AK"}, "", o.threads},
      {"exact AsKs vs QhQd vs JcTc, 1 thread", {"AsKs", "QhQd", "JcTc"}, "", 1},
      {"exact AhKh vs QsQd on Qh7h2c, 1 thread", {"AhKh", "QsQd"}, "Qh7h2c", 1},
  };
  for (const Question& q : questions) {
    const EquityRequest r = request(q.players, q.board, q.threads);
    EquityResult result;
    rows.push_back({q.name, seconds_of([&] { result = compute_equity(r); }), 0});
    add_result(checksum, result);
  }
  EquityRequest sampled = request({"AsKs", "QhQd", "JcTc", "9s9h"}, "", o.threads);
  sampled.method = EquityMethod::MonteCarlo;
  sampled.trials = 1'000'000;
  EquityResult result;
  rows.push_back({"Monte Carlo AsKs QhQd JcTc 9s9h", seconds_of([&] { result = compute_equity(sampled); }),
                  static_cast<double>(sampled.trials)});
  add_result(checksum, result);

  char signature[32];
  std::snprintf(signature, sizeof signature, "%016" PRIx64, checksum.value);
  if (o.json) {
    nlohmann::ordered_json out;
    if (timed) {
      out["workloads"] = nlohmann::ordered_json::array();
      for (const Row& row : rows) {
        nlohmann::ordered_json w = {{"name", row.name}, {"seconds", row.seconds}};
        if (row.items > 0) w["ns_per_item"] = row.seconds * 1e9 / row.items;
        out["workloads"].push_back(w);
      }
    }
    out["signature"] = signature;
    std::cout << out.dump(2) << "\n";
    return;
  }
  if (timed) {
    std::printf("%-42s %12s %14s\n", "workload", "time", "per item");
    for (const Row& row : rows) {
      char per_item[32] = "";
      if (row.items > 0) std::snprintf(per_item, sizeof per_item, "%.2f ns", row.seconds * 1e9 / row.items);
      std::printf("%-42s %9.3f ms %14s\n", row.name.c_str(), row.seconds * 1e3, per_item);
    }
    std::printf("\n");
  }
  std::printf("signature: %s\n", signature);
}

}  // namespace

void add_bench_command(CLI::App& app) {
  auto o = std::make_shared<BenchOptions>();
  CLI::App* bench = app.add_subcommand("bench", "Time the standard workloads and print a behaviour signature");
  bench->footer(
      "Evaluates 2,000,000 random hands one at a time and in batches and all 133,784,560 seven-card\n"
      "hands, then computes six exact equities and one Monte Carlo equity, and prints the time of each.\n"
      "The signature is a checksum of every value and equity computed: the same on every machine and\n"
      "thread count, it changes only when a result does.\n\n"
      "Examples:\n"
      "  pokermath bench\n"
      "  pokermath bench --signature");
  bench->add_flag("--signature", o->signature_only, "Print only the signature");
  bench->add_option("--threads", o->threads, "Threads for the multi-threaded workloads (default: every core)")
      ->transform(whole_number(0, kMaxThreads));
  bench->add_flag("--json", o->json, "Print one JSON object");
  bench->callback([o] { run_bench(*o); });
}

}  // namespace pokermath::cli

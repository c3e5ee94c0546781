// The pre-flop rankings of the Omaha games that the range language's shares ("15%") read: every
// class of holdings equal up to a permutation of suits, with its equity against one random holding,
// estimated by Monte Carlo and sorted strongest first.
//
// Each class is sampled on its own stream (seeded by the game and the class), in batches, until the
// standard error of its equity is at most the game's target, so the file does not depend on the
// number of threads. A sample is one random board shown to the class's holding and to four random
// opponents drawn independently from the cards left: the holding is valued once per board, and the
// board's mean result is one observation (the opponents share the board, so the standard error is
// taken over boards).
#include <omp.h>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstring>
#include <fstream>
#include <iterator>
#include <map>
#include <mutex>

#include "equity/engine.h"
#include "equity/requests.h"
#include "omaha/low_sets.h"
#include "pokermath/equity.h"
#include "support/data_dir.h"
#include "support/files.h"

namespace pokermath {

namespace {

using namespace detail;

using RankingGame = OmahaGame;

// The game's hole cards and high or Hi/Lo; throws Error for a game without a ranking.
RankingGame ranking_game(EquityGame game) {
  try {
    return omaha_game(game);
  } catch (const Error&) {
    throw Error("only the Omaha games have a pre-flop ranking of holdings");
  }
}

RankingGame checked_game(EquityGame game) {
  const RankingGame g = ranking_game(game);
  if (g.hole == 6)
    throw Error(
        "a share of 6-card holdings needs the exact 6-card table: make it with pokermath tables "
        "--omaha-preflop 6" +
        std::string(g.hi_lo ? " --hilo" : "") + " (see docs/scale-out.md)");
  return g;
}

// The ranking of a game's exact table when it is in `dir`, else null; a damaged table is reported
// and left aside.
std::shared_ptr<const OmahaRanking> exact_ranking(EquityGame game, const std::filesystem::path& dir,
                                                  const TableProgress& progress) {
  std::error_code error;
  if (!std::filesystem::exists(dir / omaha_preflop_table_name(game), error)) return nullptr;
  std::shared_ptr<const OmahaPreflopTable> table;
  try {
    table = omaha_preflop_table(game, dir);
  } catch (const Error& e) {
    if (progress)
      progress(omaha_preflop_table_name(game), std::string(e.what()) + "; using the sampled ranking", kNoticeFraction);
    return nullptr;
  }
  auto ranking = std::make_shared<OmahaRanking>();
  const RankingGame g = ranking_game(game);
  ranking->hole_cards = g.hole;
  ranking->hi_lo = g.hi_lo;
  ranking->std_error = 0;
  for (const OmahaPreflopTable::Entry& e : table->entries()) {
    ranking->classes.push_back(e.holding_class);
    ranking->equity.push_back(static_cast<float>(e.equity));
  }
  return ranking;
}

constexpr char kMagic[8] = {'P', 'M', 'O', 'R', 'A', 'N', 'K', '1'};
constexpr size_t kHeaderBytes = 8 + 4 * 4;  // magic; hole cards, Hi/Lo, classes, standard error
constexpr size_t kRecordBytes = 12;         // class mask (8 bytes), equity (a 4-byte float)
constexpr int kOpponentsPerBoard = 4;
constexpr int64_t kBatchBoards = 1024;
constexpr int64_t kMaxBoards = int64_t{1} << 22;

double default_std_error(const RankingGame& g) { return g.hole == 4 ? 0.001 : 0.003; }

uint64_t class_count(int hole) { return hole == 4 ? 16432 : 134459; }

// Every class of `hole`-card holdings: the holdings that are their own class, ascending.
std::vector<uint64_t> all_classes(int hole) {
  std::vector<uint64_t> classes;
  std::vector<int> idx(static_cast<size_t>(hole));
  for (int i = 0; i < hole; ++i) idx[i] = i;
  for (;;) {
    uint64_t mask = 0;
    for (int i : idx) mask |= uint64_t{1} << i;
    if (omaha_suit_class(mask) == mask) classes.push_back(mask);
    int i = hole - 1;  // the next subset in lexicographic order
    while (i >= 0 && idx[i] == 52 - hole + i) --i;
    if (i < 0) break;
    ++idx[i];
    for (int j = i + 1; j < hole; ++j) idx[j] = idx[j - 1] + 1;
  }
  std::sort(classes.begin(), classes.end());
  return classes;
}

// The holding's share of a heads-up pot against one opponent: high values (larger is stronger)
// and, in Hi/Lo, lows (smaller is better, 0 none).
double heads_up_share(int hero_high, int villain_high, int hero_low, int villain_low, bool hi_lo) {
  const double high = hero_high > villain_high ? 1.0 : hero_high == villain_high ? 0.5 : 0.0;
  if (!hi_lo || (!hero_low && !villain_low)) return high;
  const double low = !villain_low || (hero_low && hero_low < villain_low) ? 1.0 : hero_low == villain_low ? 0.5 : 0.0;
  return 0.5 * high + 0.5 * low;
}

float estimate_class(uint64_t holding, const RankingGame& g, uint64_t seed, double target) {
  int hero[6], n = 0;
  Int64ToArray(holding, n, hero);
  int deck[52], cards = 0;
  for (int c = 0; c < 52; ++c)
    if (!(holding >> c & 1)) deck[cards++] = c;
  Rng rng(seed);
  const uint32_t hero_low_ranks = low_rank_set(hero, g.hole);
  double sum = 0, squares = 0;
  int64_t boards = 0;
  while (boards < kMaxBoards) {
    for (int64_t b = 0; b < kBatchBoards; ++b) {
      int top = cards;
      int board[5];
      for (int& card : board) {  // a partial shuffle of the cards the holding leaves
        const int j = static_cast<int>(rng.below(static_cast<uint32_t>(top--)));
        std::swap(deck[j], deck[top]);
        card = deck[top];
      }
      const int hero_high = eval_rank7_via_ofsm7(hero, g.hole, board);
      const uint32_t board_low = g.hi_lo ? low_rank_set(board, 5) : 0;
      const int hero_low = g.hi_lo ? best_low_set(hero_low_ranks, board_low) : 0;
      double share = 0;
      for (int o = 0; o < kOpponentsPerBoard; ++o) {
        int villain[6], left = top;
        for (int i = 0; i < g.hole; ++i) {
          const int j = static_cast<int>(rng.below(static_cast<uint32_t>(left--)));
          std::swap(deck[j], deck[left]);
          villain[i] = deck[left];
        }
        const int villain_high = eval_rank7_via_ofsm7(villain, g.hole, board);
        const int villain_low = g.hi_lo ? best_low_set(low_rank_set(villain, g.hole), board_low) : 0;
        share += heads_up_share(hero_high, villain_high, hero_low, villain_low, g.hi_lo);
      }
      share /= kOpponentsPerBoard;
      sum += share;
      squares += share * share;
    }
    boards += kBatchBoards;
    const double mean = sum / boards;
    const double variance = std::max(0.0, squares / boards - mean * mean);
    if (std::sqrt(variance / (boards - 1)) <= target) break;
  }
  return static_cast<float>(sum / boards);
}

uint64_t class_seed(const RankingGame& g, uint64_t holding) {
  uint64_t x = holding ^ (static_cast<uint64_t>(g.hole) << 56) ^ (g.hi_lo ? 0x5A5A5A5A00000000ull : 0);
  return Rng::splitmix(x);
}

std::vector<char> encode(const OmahaRanking& r) {
  std::vector<char> out(kMagic, kMagic + 8);
  put_le(out, static_cast<uint32_t>(r.hole_cards), 4);
  put_le(out, r.hi_lo ? 1 : 0, 4);
  put_le(out, static_cast<uint32_t>(r.classes.size()), 4);
  const float std_error = static_cast<float>(r.std_error);
  uint32_t std_error_bits;
  std::memcpy(&std_error_bits, &std_error, 4);
  put_le(out, std_error_bits, 4);
  for (size_t i = 0; i < r.classes.size(); ++i) {
    put_le(out, r.classes[i], 8);
    uint32_t bits;
    std::memcpy(&bits, &r.equity[i], 4);
    put_le(out, bits, 4);
  }
  return out;
}

// The ranking in `bytes`, or why it cannot be used.
std::string decode(const std::vector<char>& bytes, const RankingGame& g, OmahaRanking& r) {
  const uint64_t count = class_count(g.hole);
  if (bytes.size() != kHeaderBytes + count * kRecordBytes) return "its size is not that of the ranking";
  if (!std::equal(kMagic, kMagic + 8, bytes.data()) || get_le(&bytes[8], 4) != static_cast<uint64_t>(g.hole) ||
      get_le(&bytes[12], 4) != (g.hi_lo ? 1u : 0u) || get_le(&bytes[16], 4) != count)
    return "its header is not that of the ranking";
  const auto std_error_bits = static_cast<uint32_t>(get_le(&bytes[20], 4));
  float std_error;
  std::memcpy(&std_error, &std_error_bits, 4);
  if (!(std_error > 0 && std_error < 1)) return "its header is not that of the ranking";
  r.std_error = std_error;
  r.hole_cards = g.hole;
  r.hi_lo = g.hi_lo;
  r.classes.resize(count);
  r.equity.resize(count);
  for (uint64_t i = 0; i < count; ++i) {
    const char* p = &bytes[kHeaderBytes + i * kRecordBytes];
    r.classes[i] = get_le(p, 8);
    const auto bits = static_cast<uint32_t>(get_le(p + 8, 4));
    std::memcpy(&r.equity[i], &bits, 4);
    if (std::popcount(r.classes[i]) != g.hole || r.classes[i] >> 52 || omaha_suit_class(r.classes[i]) != r.classes[i])
      return "record " + std::to_string(i + 1) + " is not a class of holdings";
    if (!(r.equity[i] >= 0 && r.equity[i] <= 1) || (i > 0 && r.equity[i] > r.equity[i - 1]))
      return "record " + std::to_string(i + 1) + " is out of order";
  }
  return {};
}

std::filesystem::path resolve(const std::filesystem::path& dir) { return dir.empty() ? default_data_directory() : dir; }

}  // namespace

std::string omaha_ranking_name(EquityGame game) {
  const RankingGame g = ranking_game(game);
  return "omaha" + std::to_string(g.hole) + (g.hi_lo ? "-hilo" : "") + "-ranking.bin";
}

bool generate_omaha_ranking(EquityGame game, const std::filesystem::path& dir_in, bool force,
                            const TableProgress& progress, double std_error) {
  const RankingGame g = checked_game(game);
  if (!(std_error >= 0 && std_error < 1)) throw Error("a ranking's standard error must be 0 (the default) to 1");
  const double target = std_error > 0 ? std_error : default_std_error(g);
  const std::filesystem::path dir = resolve(dir_in);
  const std::string name = omaha_ranking_name(game);
  if (!force) {
    const std::string problem = table_problem(dir, name);
    if (problem.empty()) return false;
    if (problem != "missing") report_damaged(progress, dir, name, problem, "computing it again");
  }
  const uint64_t bytes = kHeaderBytes + class_count(g.hole) * kRecordBytes;
  check_writable(dir, name, bytes);
  auto report = [&](std::string_view stage, double fraction) {
    if (progress) progress(name, stage, fraction);
  };

  report("classes", 0.0);
  const std::vector<uint64_t> classes = all_classes(g.hole);
  const int n = static_cast<int>(classes.size());
  std::vector<float> equity(classes.size());
  std::atomic<int> done{0};
  report("sampling", 0.0);
#pragma omp parallel for schedule(dynamic, 8)
  for (int i = 0; i < n; ++i) {
    equity[i] = estimate_class(classes[i], g, class_seed(g, classes[i]), target);
    const int finished = ++done;
    if (omp_get_thread_num() == 0 && finished % 64 == 0) report("sampling", static_cast<double>(finished) / n);
  }

  std::vector<int> order(classes.size());
  for (int i = 0; i < n; ++i) order[i] = i;
  std::sort(order.begin(), order.end(),
            [&](int a, int b) { return equity[a] != equity[b] ? equity[a] > equity[b] : classes[a] < classes[b]; });
  OmahaRanking ranking;
  ranking.hole_cards = g.hole;
  ranking.hi_lo = g.hi_lo;
  ranking.std_error = target;
  for (int i : order) {
    ranking.classes.push_back(classes[i]);
    ranking.equity.push_back(equity[i]);
  }
  const std::vector<char> content = encode(ranking);
  report("writing", 1.0);
  write_table(dir, name, content.size(), [&](const std::filesystem::path& temporary) {
    std::ofstream out(temporary, std::ios::binary);
    out.write(content.data(), static_cast<std::streamsize>(content.size()));
    return static_cast<bool>(out.flush());
  });
  report("done", 1.0);
  return true;
}

std::shared_ptr<const OmahaRanking> omaha_ranking(EquityGame game, const std::filesystem::path& dir_in,
                                                  const TableProgress& progress) {
  const std::filesystem::path dir = resolve(dir_in);
  const std::string name = omaha_ranking_name(game);
  static std::mutex mutex;
  static std::map<std::pair<std::string, std::string>, std::shared_ptr<const OmahaRanking>> cache;
  const std::lock_guard lock(mutex);
  const auto key = std::make_pair(dir.string(), name);
  if (const auto it = cache.find(key); it != cache.end()) return it->second;
  // The exact table, when there, ranks the holdings instead of the sample.
  if (auto exact = exact_ranking(game, dir, progress)) return cache[key] = exact;
  const RankingGame g = checked_game(game);

  for (int attempt = 0; attempt < 2; ++attempt) {
    generate_omaha_ranking(game, dir, attempt > 0, progress);
    const std::filesystem::path path = dir / name;
    std::vector<char> bytes;
    if (!read_regular_file(path, bytes)) {
      const std::string message = "cannot read the ranking '" + path.string() + "'";
      if (const int error = open_error(path)) throw FileError(message, path, error);
      throw Error(message);
    }
    auto ranking = std::make_shared<OmahaRanking>();
    std::string problem = table_problem(dir, name, ManifestEntry{bytes.size(), [&] {
                                                                   Checksum sum;
                                                                   sum.update(bytes.data(), bytes.size());
                                                                   return sum.digest();
                                                                 }()});
    if (problem.empty()) problem = decode(bytes, g, *ranking);
    if (problem.empty()) return cache[key] = ranking;
    if (attempt > 0) throw Error("the ranking '" + path.string() + "' cannot be used: " + problem);
    report_damaged(progress, dir, name, problem, "computing it again");
  }
  throw Error("unreachable");
}

OmahaRange parse_omaha_range(std::string_view text, EquityGame game, const std::filesystem::path& data_dir,
                             const TableProgress& progress) {
  const RankingGame g = ranking_game(game);
  std::shared_ptr<const OmahaRanking> ranking;
  if (text.find('%') != std::string_view::npos) ranking = omaha_ranking(game, data_dir, progress);
  return parse_omaha_range(text, g.hole, ranking.get());
}

}  // namespace pokermath

// Every engine of the pokermath:: API started from several threads at once in a fresh process, so
// that whatever is built on first use is built while other threads already want it. Each thread
// must get the answers of a single-threaded run in a fresh process (a forked child, before this one
// has touched anything); built with the tsan preset, ThreadSanitizer also fails the test on a race.
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <latch>
#include <random>
#include <span>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "gtest/gtest.h"
#include "pokermath/pokermath.h"
#include "temp_dir.h"
#include "test_util.h"

namespace {

using namespace pokermath;

struct Job {
  std::string name;
  std::function<void(std::ostream&)> run;  // writes its answers on one line
};

// A hash of the values, so that a sweep of thousands of hands is one short answer.
struct Checksum {
  uint64_t h = 1469598103934665603u;
  void add(int64_t v) { h = (h ^ static_cast<uint64_t>(v)) * 1099511628211u; }
};

// `count` distinct random cards of the short deck (six to ace).
std::vector<int> short_deck_cards(std::mt19937& engine, int count) {
  uint64_t low = 0;  // the deuces to fives: ranks 0..3 of each suit
  for (int suit = 0; suit < 4; ++suit) low |= uint64_t{0xF} << (13 * suit);
  return test_util::random_cards(engine, count, low);
}

// Every number of the result, at full precision: the engines give the same numbers on any number of
// threads, Monte Carlo included.
void print(std::ostream& out, const EquityResult& result) {
  out << result.exact << ' ' << result.deals;
  for (const PlayerEquity& p : result.players)
    out << " | " << p.hand << ' ' << p.win << ' ' << p.tie << ' ' << p.equity << ' ' << p.std_error << ' ' << p.high
        << ' ' << p.low << ' ' << p.scoop;
}

// Equity requests small enough for ThreadSanitizer, each engine once: Hold'em exact and Monte Carlo
// (two threads each, so the parallel regions of several callers overlap too), Omaha high and Hi/Lo.
std::vector<EquityRequest> equity_requests(const std::filesystem::path& empty_dir) {
  auto request = [&](EquityGame game, std::vector<std::string> players, std::string_view board, EquityMethod method) {
    EquityRequest r;
    r.game = game;
    r.players = std::move(players);
    r.board = parse_cards(board);
    r.method = method;
    r.trials = 20000;
    r.seed = 7;
    r.threads = 2;
    r.data_dir = empty_dir;  // no pre-flop table: every request is computed
    return r;
  };
  using enum EquityGame;
  using enum EquityMethod;
  return {request(Holdem, {"AsKs", "QhQd"}, "", Exact),
          request(Holdem, {"AhKh", "QQ+,AKs,A5s-A2s"}, "Qh7h2c", Exact),
          request(Holdem, {"AhKh", "random"}, "Qh7h2c9d", Exact),
          request(Holdem, {"AsKs", "QhQd", "JcTc"}, "", Exact),
          request(Holdem, {"AsAd", "KK", "random", "random"}, "", MonteCarlo),
          request(Holdem, {"AhKh@50,QQ", "JJ+@30,AK", "TT"}, "Qh7h2c9d", MonteCarlo),
          request(Omaha, {"AsKsQhJh", "9c9d8c7d"}, "Ts6h2c5d", Exact),
          request(Omaha6, {"AsKsQhJh9c8c", "random"}, "Ts6h2c5d", MonteCarlo),
          request(OmahaHiLo, {"As2s3hKd", "AdKc4c5h"}, "7h8d9c", Exact),
          request(Omaha5, {"AsKsQhJhTc", "random", "random"}, "", MonteCarlo)};
}

std::vector<Job> jobs(const std::filesystem::path& dir, PokerLogic& logic) {
  std::vector<Job> list;
  list.push_back({"hand_value", [](std::ostream& out) {
                    std::mt19937 engine(1);
                    Checksum sum;
                    for (int i = 0; i < 3000; ++i) {
                      const std::vector<int> cards = test_util::random_cards(engine, 5 + i % 3);
                      sum.add(hand_value(cards));
                      const std::vector<int> short_deck = short_deck_cards(engine, 5 + i % 3);
                      sum.add(hand_value(short_deck, ShortDeckRules::Standard));
                      sum.add(hand_value(short_deck, ShortDeckRules::China));
                    }
                    out << sum.h;
                  }});
  list.push_back({"hand_values", [](std::ostream& out) {
                    std::mt19937 engine(2);
                    constexpr int kHands = 2048;
                    for (const bool short_deck : {false, true}) {
                      std::vector<int> codes;
                      std::vector<uint8_t> bytes;
                      std::vector<uint64_t> masks;
                      for (int h = 0; h < kHands; ++h) {
                        const std::vector<int> cards =
                            short_deck ? short_deck_cards(engine, 7) : test_util::random_cards(engine, 7);
                        codes.insert(codes.end(), cards.begin(), cards.end());
                        bytes.insert(bytes.end(), cards.begin(), cards.end());
                        masks.push_back(cards_to_mask(cards));
                      }
                      std::vector<int> a(kHands), b(kHands), c(kHands), d(kHands);
                      if (short_deck) {
                        hand_values(codes, 7, a, ShortDeckRules::Standard);
                        hand_values(bytes, 7, b, ShortDeckRules::China);
                        hand_values(masks, c, ShortDeckRules::Standard);
                        hand_values(masks, d, ShortDeckRules::China);
                      } else {
                        hand_values(codes, 7, a);
                        hand_values(bytes, 7, b);
                        hand_values(masks, c);
                        d = c;
                      }
                      Checksum sum;
                      for (int h = 0; h < kHands; ++h) sum.add(a[h]), sum.add(b[h]), sum.add(c[h]), sum.add(d[h]);
                      out << sum.h << ' ';
                    }
                  }});
  list.push_back({"evaluate_hand and hand comparison", [&logic](std::ostream& out) {
                    std::mt19937 engine(3);
                    for (int i = 0; i < 20; ++i) {
                      const std::vector<int> cards = test_util::random_cards(engine, 9);
                      const HandEvaluation hand = evaluate_hand(std::span(cards).first(5 + i % 3));
                      out << hand.hand_class << ' ' << cards_to_string(hand.best_five) << ' ' << hand.description
                          << ' ';
                      const int board_count = (i % 4 == 0) ? 0 : 2 + i % 4;  // 0, 3, 4 or 5 board cards
                      out << WhoIsWinner(cards.data(), cards.data() + 2, cards.data() + 4, board_count, logic) << ' ';
                    }
                  }});
  list.push_back({"evaluate_short_deck and lowball", [](std::ostream& out) {
                    std::mt19937 engine(4);
                    for (int i = 0; i < 40; ++i) {
                      const std::vector<int> cards = short_deck_cards(engine, 5 + i % 3);
                      for (ShortDeckRules rules : {ShortDeckRules::Standard, ShortDeckRules::China}) {
                        const ShortDeckEvaluation hand = evaluate_short_deck(cards, rules);
                        out << hand.value << ' ' << hand.category << ' ' << hand.value52 << ' ';
                      }
                      out << evaluate_deuce_to_seven(test_util::random_cards(engine, 5)) << ' ';
                    }
                  }});
  list.push_back({"omaha hands", [](std::ostream& out) {
                    std::mt19937 engine(5);
                    for (int i = 0; i < 12; ++i) {
                      const int holes = 4 + i % 3, boards = 3 + i % 2;
                      const std::vector<int> cards = test_util::random_cards(engine, holes + boards);
                      const std::span hole = std::span(cards).first(holes), board = std::span(cards).last(boards);
                      const OmahaHand best = omaha_best(hole, board);
                      out << best.value << ' ' << best.description << ' ' << omaha_low(hole, board) << ' ';
                      const OmahaOuts outs = omaha_outs(hole, board);
                      out << outs.outs.size() << '/' << outs.nut_outs << ' ';
                      const OmahaNuts nuts = omaha_nuts(board, hole);
                      out << nuts.value << ' ' << nuts.holdings.size() << ' ' << nuts.description << ' ';
                      const std::span four = hole.first(4);
                      out << hutchison_points(four).total << ' ' << hutchison_points_hilo(four).total << ' ';
                    }
                  }});
  for (const EquityRequest& request : equity_requests(dir))
    list.push_back({"compute_equity " + request.players[0] + " vs " + request.players[1],
                    [request](std::ostream& out) { print(out, compute_equity(request)); }});
  list.push_back({"ranges", [dir](std::ostream& out) {
                    for (const char* text : {"QQ+,AKs,A5s-A2s,KQ", "22+,A2s+,K9o+", "AsKs,random", "T9s-54s"}) {
                      const Spec range = parse_range(text);
                      out << range_to_string(range) << ' ' << range_combos(range) << ' ';
                    }
                    for (RangeTable table :
                         {RangeTable::Equity, RangeTable::Groups, RangeTable::Brenmark, RangeTable::ShortDeckEquity})
                      for (double percent : {2.5, 15.0, 40.0}) {
                        const TableRange entry = table_range(table, percent);
                        out << entry.key << ' ' << entry.text << ' ' << range_combos(entry.range) << ' ';
                      }
                    out << range_combos(range_by_percent(parse_range("22+,A2+,K2+,Q2+"), 30)) << ' ';
                    out << range_to_string(read_range_file((dir / "range.txt").string())) << ' ';
                    for (int cell = 0; cell < 169; cell += 17) out << hand_class_name(cell) << ' ';
                  }});
  list.push_back({"range analysis", [](std::ostream& out) {
                    EquityRequest request;
                    request.players = {"QQ+,AKs@50,JTs", "TT+,AQ@60"};
                    request.board = parse_cards("Js9c4h");
                    request.threads = 2;
                    const RangeBreakdown b = equity_by_class(request);
                    out << b.equity << ' ' << equity_distribution(b).share_at_least(0.5) << ' ';
                    const BoardHits hits = board_hits(parse_weighted_range("22+,A2s+,KTs+@50"), parse_cards("Ts9s3c"));
                    for (int m = 0; m < kMadeHands; ++m) out << hits.made_combos[m] << ' ';
                  }});
  list.push_back({"records", [dir](std::ostream& out) {
                    const HistoryLines lines = read_history(dir / "history.txt");
                    for (const std::string& line : lines.lines) out << line << ' ';
                    out << lines.position << ' ';
                    const int bets[] = {100, 60, 40, 100}, ranks[] = {3, 7, 7, 1};
                    for (int win : pay_showdown(bets, ranks).wins) out << win << ' ';
                  }});
  return list;
}

// Runs a job, turning an exception into its message: a thread that throws is compared like one
// that answers.
std::string answer(const Job& job) {
  std::ostringstream out;
  out.precision(17);
  try {
    job.run(out);
  } catch (const std::exception& e) {
    out << "threw: " << e.what();
  }
  std::string text = out.str();
  for (char& c : text)
    if (c == '\n') c = ' ';
  return text;
}

// The answers of a single-threaded run in a forked child, whose tables are as cold as ours.
std::vector<std::string> answers_of_fresh_process(const std::vector<Job>& list) {
  int pipe_ends[2];
  if (pipe(pipe_ends) != 0) return {};
  const pid_t child = fork();
  if (child == 0) {
    close(pipe_ends[0]);
    std::string all;
    for (const Job& job : list) all += answer(job) + '\n';
    for (size_t done = 0; done < all.size();) {
      const ssize_t n = write(pipe_ends[1], all.data() + done, all.size() - done);
      if (n <= 0) _exit(1);
      done += static_cast<size_t>(n);
    }
    _exit(0);
  }
  close(pipe_ends[1]);
  std::string all;
  char buffer[4096];
  for (ssize_t n; (n = read(pipe_ends[0], buffer, sizeof buffer)) > 0;) all.append(buffer, static_cast<size_t>(n));
  close(pipe_ends[0]);
  int status = 0;
  waitpid(child, &status, 0);
  if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) return {};
  std::vector<std::string> answers;
  std::istringstream in(all);
  for (std::string line; std::getline(in, line);) answers.push_back(line);
  return answers;
}

TEST(Concurrency, EveryEngineStartedFromManyThreadsAnswersAsOneThreadDoes) {
  test_util::TempDir dir;
  {
    std::ofstream(dir / "range.txt") << "QQ+,AKs,AKo\n";
    std::ofstream(dir / "history.txt") << "PokerStars Hand #1: Hold'em No Limit\nSeat 1: hero (100)\n";
  }
  PokerLogic logic;  // shared, as a program keeps one
  const std::vector<Job> list = jobs(dir.path(), logic);
  const std::vector<std::string> reference = answers_of_fresh_process(list);
  ASSERT_EQ(reference.size(), list.size()) << "the single-threaded run failed (its report is above)";

  // Two threads start at each of a few points of the list, so some first uses collide head-on and
  // the others meet tables another thread is still building.
  constexpr int kThreads = 6;
  const int n = static_cast<int>(list.size());
  std::vector<std::vector<std::string>> answers(kThreads, std::vector<std::string>(list.size()));
  std::latch start(kThreads);
  std::vector<std::thread> threads;
  for (int t = 0; t < kThreads; ++t)
    threads.emplace_back([&, t] {
      start.arrive_and_wait();
      const int first = (t / 2) * n / (kThreads / 2);
      for (int k = 0; k < n; ++k) {
        const int j = (first + k) % n;
        answers[t][j] = answer(list[j]);
      }
    });
  for (std::thread& thread : threads) thread.join();

  for (int t = 0; t < kThreads; ++t)
    for (int j = 0; j < n; ++j) EXPECT_EQ(answers[t][j], reference[j]) << list[j].name << " on thread " << t;
  for (int j = 0; j < n; ++j) EXPECT_EQ(reference[j].rfind("threw", 0), std::string::npos) << reference[j];
}

}  // namespace

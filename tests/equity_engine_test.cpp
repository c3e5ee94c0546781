// The Hold'em and short-deck equity engine: exact counts against a plain brute force over hundreds of
// random requests in each ranking, the same numbers on one thread or two, Monte Carlo within a few
// standard errors and its stopping rules, refused requests, progress and cancellation.
#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <random>
#include <set>
#include <span>
#include <sstream>
#include <stop_token>

#include "temp_dir.h"
#include "test_util.h"

namespace {

using pokermath::EquityGame;
using pokermath::EquityMethod;
using pokermath::EquityRequest;
using pokermath::EquityResult;
using pokermath::ShortDeckRules;

// Cards outside the deck of a game: none in Hold'em, the deuces to fives in the short deck.
uint64_t outside_deck(EquityGame game) {
  if (game == EquityGame::Holdem) return 0;
  uint64_t low = 0;
  for (int card = 0; card < 52; ++card)
    if (card % 13 < 4) low |= uint64_t{1} << card;
  return low;
}

// The value of seven cards in the game's ranking, larger is stronger.
int value_in(EquityGame game, std::span<const int> cards) {
  if (game == EquityGame::ShortDeck) return pokermath::hand_value(cards, ShortDeckRules::Standard);
  if (game == EquityGame::ShortDeckChina) return pokermath::hand_value(cards, ShortDeckRules::China);
  return pokermath::hand_value(cards);
}

// An empty data directory: no pre-flop table is ever read.
const std::filesystem::path& data_dir() {
  static const test_util::TempDir dir;
  return dir.path();
}

EquityRequest request(std::vector<std::string> players, const std::string& board = "",
                      EquityMethod method = EquityMethod::Exact, int threads = 1) {
  EquityRequest r;
  r.players = std::move(players);
  r.board = test_util::cards(board);
  r.method = method;
  r.threads = threads;
  r.data_dir = data_dir();
  return r;
}

std::string describe(const EquityRequest& r) {
  std::ostringstream out;
  out << "players:";
  for (const std::string& p : r.players) out << " [" << p << "]";
  out << " board: [" << test_util::names(r.board) << "] dead: [" << test_util::names(r.dead) << "]";
  if (r.game != EquityGame::Holdem) out << (r.game == EquityGame::ShortDeck ? " short deck" : " china");
  return out.str();
}

// Each player's hands (a range's combinations, or every hand for "random") that avoid `known`.
std::vector<std::vector<std::array<int, 2>>> hands_of(const EquityRequest& r, uint64_t known) {
  known |= outside_deck(r.game);
  std::vector<std::vector<std::array<int, 2>>> hands;
  for (const std::string& text : r.players) {
    std::set<std::pair<int, int>> pairs;
    if (text == "random") {
      for (int a = 0; a < 52; ++a)
        for (int b = a + 1; b < 52; ++b) pairs.insert({a, b});
    } else {
      for (const auto& [a, b] : pokermath::parse_range(text).m_hands) pairs.insert({std::min(a, b), std::max(a, b)});
    }
    hands.emplace_back();
    for (const auto& [a, b] : pairs)
      if (!(known >> a & 1) && !(known >> b & 1)) hands.back().push_back({a, b});
  }
  return hands;
}

double choose(int n, int k) {
  double c = 1;
  for (int i = 0; i < k; ++i) c = c * (n - i) / (i + 1);
  return c;
}

struct Counts {
  int64_t deals = 0;
  std::vector<int64_t> wins, ties;
  std::vector<double> shares;
  double common = 0;  // player 0 under the classic multiway rule: alone 1, tied with k opponents 1/k
};

// Every tuple of hands with no card in common, times every completion of the board.
Counts brute_force(const EquityRequest& r) {
  const int n = static_cast<int>(r.players.size()), missing = 5 - static_cast<int>(r.board.size());
  const uint64_t known = pokermath::cards_to_mask(r.board) | pokermath::cards_to_mask(r.dead) | outside_deck(r.game);
  const auto hands = hands_of(r, known);
  Counts c{0, std::vector<int64_t>(n), std::vector<int64_t>(n), std::vector<double>(n)};
  std::vector<std::array<int, 7>> seven(n);
  for (auto& s : seven) std::copy(r.board.begin(), r.board.end(), s.begin() + 2);
  auto score = [&](const int* rest) {
    int value[6] = {}, best = 0;
    for (int p = 0; p < n; ++p) {
      std::copy(rest, rest + missing, seven[p].begin() + 7 - missing);
      best = std::max(best, value[p] = value_in(r.game, seven[p]));
    }
    const int k = static_cast<int>(std::count(value, value + n, best));
    for (int p = 0; p < n; ++p)
      if (value[p] == best) ++(k == 1 ? c.wins : c.ties)[p], c.shares[p] += 1.0 / k;
    if (value[0] == best) c.common += k == 1 ? 1.0 : 1.0 / (k - 1);
    ++c.deals;
  };
  auto deal = [&](auto& self, int p, uint64_t used) -> void {
    if (p == n) {
      const int river[1] = {};
      if (missing == 0)
        score(river);
      else
        test_util::for_each_set(missing, used, score);
      return;
    }
    for (const auto& h : hands[p]) {
      const uint64_t mask = uint64_t{1} << h[0] | uint64_t{1} << h[1];
      if (used & mask) continue;
      seven[p][0] = h[0], seven[p][1] = h[1];
      self(self, p + 1, used | mask);
    }
  };
  deal(deal, 0, known);
  return c;
}

// A random class cell of the game: any of the 169, or one of the 81 of ranks six to ace (rows and
// columns 0..8 of the matrix).
int random_class(std::mt19937& rng, EquityGame game) {
  if (game == EquityGame::Holdem) return static_cast<int>(rng() % 169);
  return static_cast<int>(13 * (rng() % 9) + rng() % 9);
}

// A random request of the game: 2..6 players, each a given hand, a few classes, a few exact hands or
// "random"; 0..3 dead cards. Pre-flop requests hold given hands only. At most `budget` hand values to
// brute force.
EquityRequest random_request(std::mt19937& rng, EquityGame game, bool preflop, double budget) {
  const uint64_t outside = outside_deck(game);
  for (;;) {
    const int n = rng() % 2 ? 2 : 3 + static_cast<int>(rng() % 4);
    static constexpr int kBoardSizes[] = {3, 3, 3, 4, 4, 5};
    const int board = preflop ? 0 : kBoardSizes[rng() % 6], dead = rng() % 2 ? 0 : 1 + static_cast<int>(rng() % 3);
    std::vector<int> cards = test_util::random_cards(rng, board + dead + 2 * n, outside);
    EquityRequest r = request({});
    r.game = game;
    r.board.assign(cards.begin(), cards.begin() + board);
    r.dead.assign(cards.begin() + board, cards.begin() + board + dead);
    const uint64_t known = pokermath::cards_to_mask(r.board) | pokermath::cards_to_mask(r.dead);
    for (int p = 0; p < n; ++p) {
      const int kind = preflop ? 0 : static_cast<int>(rng() % 10);
      std::string text;
      if (kind < 4) {
        text = test_util::names({cards[board + dead + 2 * p], cards[board + dead + 2 * p + 1]});
      } else if (kind < 7) {
        for (int i = 1 + static_cast<int>(rng() % 6); i > 0; --i)
          (text += text.empty() ? "" : ",") += pokermath::hand_class_name(random_class(rng, game));
      } else if (kind < 9) {
        for (int i = 1 + static_cast<int>(rng() % 4); i > 0; --i)
          (text += text.empty() ? "" : ",") += test_util::names(test_util::random_cards(rng, 2, known | outside));
      } else {
        text = "random";
      }
      text.erase(std::remove(text.begin(), text.end(), ' '), text.end());
      r.players.push_back(text);
    }
    const auto hands = hands_of(r, known);
    double work = n * choose(52 - std::popcount(known | outside) - 2 * n, 5 - board);
    for (const auto& h : hands) work *= static_cast<double>(h.size());
    if (work > 0 && work <= budget) return r;
  }
}

TEST(EquityEngine, ExactCountsMatchABruteForce) {
  std::mt19937 rng(20240611);
  // Hold'em, then the short deck in both orders.
  const struct {
    EquityGame game;
    int64_t requests;
  } games[] = {{EquityGame::Holdem, test_util::sweep_size(400, 100)},
               {EquityGame::ShortDeck, test_util::sweep_size(200, 50)},
               {EquityGame::ShortDeckChina, test_util::sweep_size(200, 50)}};
  const int preflop = static_cast<int>(test_util::sweep_size(4, 2));
  for (const auto& [game, requests] : games)
    for (int i = 0; i < preflop + requests; ++i) {
      const EquityRequest r = random_request(rng, game, i < preflop, i < preflop ? 1e7 : 2e6);
      SCOPED_TRACE(describe(r));
      const Counts want = brute_force(r);
      EquityResult got;
      const std::string error = test_util::error_of([&] { got = pokermath::compute_equity(r); });
      EXPECT_EQ(error == "(no error)", want.deals > 0) << error;  // refused exactly when no deal exists
      if (want.deals == 0 || !got.exact) continue;
      ASSERT_EQ(got.deals, static_cast<double>(want.deals));
      for (size_t p = 0; p < r.players.size(); ++p) {
        EXPECT_EQ(std::llround(got.players[p].win * got.deals), want.wins[p]) << p;
        EXPECT_EQ(std::llround(got.players[p].tie * got.deals), want.ties[p]) << p;
        EXPECT_NEAR(got.players[p].equity, want.shares[p] / got.deals, 1e-9) << p;
      }
    }
}

void expect_same(const EquityResult& a, const EquityResult& b) {
  EXPECT_EQ(a.deals, b.deals);
  for (size_t p = 0; p < a.players.size(); ++p) {
    EXPECT_EQ(a.players[p].win, b.players[p].win) << p;
    EXPECT_EQ(a.players[p].tie, b.players[p].tie) << p;
    EXPECT_EQ(a.players[p].equity, b.players[p].equity) << p;
    EXPECT_EQ(a.players[p].std_error, b.players[p].std_error) << p;
  }
}

struct Case {
  std::vector<std::string> players;
  std::string board;
  EquityGame game = EquityGame::Holdem;
};

TEST(EquityEngine, ExactIsTheSameOnOneThreadOrTwo) {
  const Case cases[] = {
      {{"AsKs", "random"}, ""}, {{"QQ+,AK", "JJ-88,AQs,KQ"}, ""}, {{"QQ+,AK", "random", "7c6c"}, "Qh 7h 2c"}};
  for (const Case& c : cases) {
    SCOPED_TRACE(describe(request(c.players, c.board)));
    expect_same(pokermath::compute_equity(request(c.players, c.board, EquityMethod::Exact, 1)),
                pokermath::compute_equity(request(c.players, c.board, EquityMethod::Exact, 2)));
  }
}

TEST(EquityEngine, MonteCarloIsReproducibleAndWithinFourStandardErrors) {
  const Case cases[] = {{{"AsKs", "QhQd"}, ""},
                        {{"AhKh", "QQ+,AK", "random"}, "Qh 7h 2c"},
                        {{"TT+,AQ+", "random", "8s7s"}, "9s 6d 2c 4h"},
                        {{"JJ", "TT", "99", "A5s"}, "Ts 9c 5s"},
                        {{"AsKs", "QhQd", "9c8c"}, "", EquityGame::ShortDeck},
                        {{"JhTh", "77,99+", "random"}, "Qs 9h 8d", EquityGame::ShortDeckChina}};
  for (const Case& c : cases) {
    SCOPED_TRACE(describe(request(c.players, c.board)));
    EquityRequest exact_request = request(c.players, c.board, EquityMethod::Exact, 2);
    exact_request.game = c.game;
    const EquityResult exact = pokermath::compute_equity(exact_request);
    EquityRequest r = request(c.players, c.board, EquityMethod::MonteCarlo, 1);
    r.game = c.game;
    r.trials = test_util::sweep_size(300000, 30000);
    r.seed = 7;
    const EquityResult one = pokermath::compute_equity(r);
    r.threads = 2;
    const EquityResult two = pokermath::compute_equity(r);
    expect_same(one, two);
    ASSERT_FALSE(one.exact);
    EXPECT_EQ(one.deals, static_cast<double>(r.trials));
    for (size_t p = 0; p < c.players.size(); ++p) {
      EXPECT_GT(one.players[p].std_error, 0) << p;
      EXPECT_NEAR(one.players[p].equity, exact.players[p].equity, 4 * one.players[p].std_error) << p;
    }
  }
}

// With a target standard error the run stops as soon as every player is within it. Six players on
// the same crowded range cannot be counted exactly, but each must hold about a sixth of the pot.
TEST(EquityEngine, MonteCarloStopsAtATargetStandardError) {
  const std::string crowded = "TT+,AQ+";
  const Case cases[] = {{{"AhKh", "random", "random"}, "Qh 7h 2c"},
                        {std::vector<std::string>(6, crowded), ""},
                        {{"AhAd", "KsKc", crowded, crowded, crowded, crowded}, ""}};
  for (const Case& c : cases) {
    SCOPED_TRACE(describe(request(c.players, c.board)));
    EquityRequest r = request(c.players, c.board, EquityMethod::MonteCarlo, 2);
    r.trials = 1000000000;
    r.target_std_error = 0.005;
    const EquityResult result = pokermath::compute_equity(r);
    EXPECT_LT(result.deals, static_cast<double>(r.trials));
    EXPECT_LT(result.seconds, 5.0);
    double sum = 0;
    for (const auto& p : result.players) {
      EXPECT_LE(p.std_error, r.target_std_error);
      if (c.players[0] == crowded) {
        EXPECT_NEAR(p.equity, 1.0 / 6, 5 * p.std_error);
      }
      sum += p.equity;
    }
    EXPECT_NEAR(sum, 1.0, 1e-9);
  }
}

TEST(EquityEngine, ImpossibleRequestsAreRefused) {
  auto message = [](EquityRequest r) { return test_util::error_of([&] { pokermath::compute_equity(r); }); };
  auto with = [](auto change) {
    EquityRequest r = request({"AsKs", "QhQd"}, "", EquityMethod::MonteCarlo);
    change(r);
    return r;
  };
  EXPECT_EQ(message(request({"AA", "AA", "AA"})), "no deal is possible: the players' hands always share a card");
  EquityRequest crowded = request(std::vector<std::string>(10, "random"), "2c 3c 4c 5c 6c");
  crowded.dead = test_util::cards("7c8c9cTcJcQcKcAc2d3d4d5d6d7d8d9dTdJdQdKdAd2h3h4h5h6h7h8h");
  EXPECT_EQ(message(crowded), "10 players need more cards than the deck holds");
  EXPECT_EQ(message(with([](EquityRequest& r) { r.trials = 0; })), "trials must be 1 to 1000000000000, got 0");
  EXPECT_EQ(message(with([](EquityRequest& r) { r.trials = INT64_MAX; })),
            "trials must be 1 to 1000000000000, got 9223372036854775807");
  EXPECT_EQ(message(with([](EquityRequest& r) { r.time_ms = -1; })), "a time limit cannot be negative, got -1");
  EXPECT_EQ(message(with([](EquityRequest& r) { r.target_std_error = -0.5; })),
            "a target standard error must be a number 0 or more, got -0.500000");
  EXPECT_EQ(message(with([](EquityRequest& r) { r.threads = -2; })), "threads cannot be negative, got -2");

  // The short deck: every card six or higher, 36 cards in all.
  const struct {
    std::vector<std::string> players;
    std::string board, dead, message;
  } short_deck[] = {
      {{"AsKs", "5h5d"}, "", "", "player 2: card '5h' is not in the short deck (six to ace)"},
      {{"AsKs", "QQ+,A5s"},
       "",
       "",
       "player 2: the range 'QQ+,A5s' holds '5c', which is not in the short deck (six to ace)"},
      {{"AsKs", "random"}, "Qh 7h 2c", "", "card '2c' is not in the short deck (six to ace)"},
      {{"AsKs", "random"}, "", "4d", "card '4d' is not in the short deck (six to ace)"},
      {{"AsKs", "random"}, "Qh 7h", "", "a board has 0, 3, 4 or 5 cards, got 2"},
      {std::vector<std::string>(10, "random"), "", "6c6d6h6s7c7d7h7s8c8d8h8s",
       "10 players need more cards than the deck holds"},
  };
  for (const auto& c : short_deck) {
    EquityRequest r = request(c.players, c.board);
    r.game = EquityGame::ShortDeck;
    r.dead = test_util::cards(c.dead);
    EXPECT_EQ(message(r), c.message);
  }
}

// Where a straight meets three of a kind the two short-deck orders part: the standard order ranks the
// three of a kind higher, the China order the straight. Both against the brute force.
TEST(EquityEngine, ShortDeckOrdersDifferWhereAStraightMeetsThreeOfAKind) {
  const struct {
    std::vector<std::string> players;
    std::string board;
  } cases[] = {{{"JhTh", "7s7d"}, "Qs 9h 8d 7c"},  // a straight against a set, one card to come
               {{"JhTh", "8s8h"}, "Qs 9h 8d"},     // a straight against a set on the flop
               {{"Ts9s", "8h8c", "AsKd"}, "Jd 8s 7c"}};
  for (const auto& c : cases) {
    double hero[2] = {};
    for (EquityGame game : {EquityGame::ShortDeck, EquityGame::ShortDeckChina}) {
      EquityRequest r = request(c.players, c.board);
      r.game = game;
      SCOPED_TRACE(describe(r));
      const Counts want = brute_force(r);
      const EquityResult got = pokermath::compute_equity(r);
      ASSERT_EQ(got.deals, static_cast<double>(want.deals));
      for (size_t p = 0; p < c.players.size(); ++p)
        EXPECT_NEAR(got.players[p].equity, want.shares[p] / got.deals, 1e-12) << p;
      hero[game == EquityGame::ShortDeckChina] = got.players[0].equity;
    }
    EXPECT_GT(hero[1], hero[0] + 0.2) << "the straight gains in the China order";
  }
}

// The classic short-deck engines over Spec ranges: Enumerate against the brute force with the
// classic tie rule, Common within four standard errors of it with its trial and time limits, and
// refused input.
TEST(EquityEngine, ClassicShortDeckEngines) {
  const struct {
    std::vector<std::string> players;
    std::string board;
  } cases[] = {{{"AsKs", "QhQd"}, ""},
               {{"JhTh", "8s8h,99", "AK"}, "Qs 9h 8d"},
               {{"T9s", "88+", "random"}, "Jd 8s 7c 6h"},
               {{"AA,KK", "AK", "QQ"}, "Ac Kd 6c 7h 9s"}};
  for (const auto& c : cases)
    for (bool china : {false, true}) {
      EquityRequest r = request(c.players, c.board);
      r.game = china ? EquityGame::ShortDeckChina : EquityGame::ShortDeck;
      SCOPED_TRACE(describe(r));
      const Counts want = brute_force(r);
      std::vector<Spec> ranges;
      for (const std::string& text : c.players) {
        ranges.emplace_back();
        text == "random" ? ranges.back().MakeRandom() : void(ranges.back() = pokermath::parse_range(text));
      }
      const int n = static_cast<int>(ranges.size()), board = static_cast<int>(r.board.size());
      const int* cards = r.board.data();
      int deals = 0, ms = 0;
      const double percent =
          china ? getProbabilityOfWinHoldem6PlusChinaEnumerate(ranges.data(), n, cards, board, nullptr, 0, deals, ms)
                : getProbabilityOfWinHoldem6PlusEnumerate(ranges.data(), n, cards, board, nullptr, 0, deals, ms);
      EXPECT_EQ(deals, want.deals);
      EXPECT_NEAR(percent, want.common / static_cast<double>(want.deals) * 100, 1e-9);
      double wins = 0, ties = 0, total = 0;
      EXPECT_EQ((china ? getWinHoldem6PlusChinaEnumerate : getWinHoldem6PlusEnumerate)(
                    ranges.data(), n, cards, board, nullptr, 0, wins, ties, total, ms),
                1);
      EXPECT_EQ(wins, want.wins[0]);
      EXPECT_EQ(ties, want.ties[0]);
      EXPECT_EQ(total, want.deals);

      int trials = 200000;
      ms = 100000;
      const double sampled = (china ? getProbabilityOfWinHoldem6PlusChinaCommon : getProbabilityOfWinHoldem6PlusCommon)(
          ranges.data(), n, cards, board, nullptr, 0, trials, ms);
      EXPECT_EQ(trials, 200000);  // no time limit reached: every trial
      const double p = percent / 100, error = 100 * std::sqrt(std::max(p * (1 - p), 1e-4) / trials);
      EXPECT_NEAR(sampled, percent, 4 * error + 0.05);
    }

  // The time limit: read after the first trial and every 10,000th.
  const Spec pair = pokermath::parse_range("AA"), any = pokermath::parse_range("random");
  const Spec ranges[] = {pair, any, any};
  int trials = 1000000000, ms = 30;
  double wins = 0, ties = 0;
  EXPECT_EQ(getWinHoldem6PlusCommon(ranges, 3, nullptr, 0, nullptr, 0, wins, ties, trials, ms), 1);
  EXPECT_LT(trials, 1000000000);
  EXPECT_EQ((trials - 1) % 10000, 0);
  EXPECT_GE(ms, 30);
  EXPECT_GT(wins, trials * 0.5);

  // Refused input gives 0.
  const int low_board[] = {3, 20, 30}, two[] = {20, 30}, twice[] = {20, 20, 30};
  auto refused = [&](const Spec* specs, int n, const int* board, int count, const int* dead = nullptr,
                     int dead_count = 0) {
    int deals = 1, ms_out = 0, sampled = 100;
    int time = 1000;
    return getProbabilityOfWinHoldem6PlusEnumerate(specs, n, board, count, dead, dead_count, deals, ms_out) == 0 &&
           deals == 0 &&
           getProbabilityOfWinHoldem6PlusCommon(specs, n, board, count, dead, dead_count, sampled, time) == 0 &&
           sampled == 0;
  };
  const Spec low = pokermath::parse_range("A5s"), three_aces[] = {pair, pair, pair};
  const Spec with_low[] = {pair, low};
  EXPECT_TRUE(refused(ranges, 1, nullptr, 0));
  EXPECT_TRUE(refused(ranges, 11, nullptr, 0));
  EXPECT_TRUE(refused(ranges, 2, two, 2));          // a board of two cards
  EXPECT_TRUE(refused(ranges, 2, low_board, 3));    // 5c is not a short-deck card
  EXPECT_TRUE(refused(ranges, 2, twice, 3));        // a card twice
  EXPECT_TRUE(refused(with_low, 2, nullptr, 0));    // A5s has no short-deck combination
  EXPECT_TRUE(refused(three_aces, 3, nullptr, 0));  // three players on AA can never be dealt
  EXPECT_TRUE(refused(ranges, 2, nullptr, 0, low_board, 3));
}

TEST(EquityEngine, ProgressRisesToOneAndAStopCancels) {
  const EquityRequest requests[] = {request({"QQ+,AK", "random"}, "", EquityMethod::Exact),
                                    request({"AhKh", "random", "random"}, "Qh 7h 2c", EquityMethod::MonteCarlo)};
  for (EquityRequest r : requests) {
    SCOPED_TRACE(describe(r));
    r.trials = 100 * 4096;
    std::vector<double> seen;
    r.on_progress = [&](double f) { seen.push_back(f); };
    pokermath::compute_equity(r);
    ASSERT_GT(seen.size(), 1u);  // a report before the end, where the stop below is requested
    EXPECT_TRUE(std::is_sorted(seen.begin(), seen.end()));
    EXPECT_EQ(seen.back(), 1.0);
    EXPECT_GE(seen.front(), 0.0);

    std::stop_source before;
    before.request_stop();
    r.stop = before.get_token();
    EXPECT_THROW(pokermath::compute_equity(r), pokermath::Cancelled);

    std::stop_source during;
    r.stop = during.get_token();
    r.on_progress = [&](double) { during.request_stop(); };
    EXPECT_THROW(pokermath::compute_equity(r), pokermath::Cancelled);
  }
}

}  // namespace

// Hutchison points of four-card Omaha starting hands: the high count and the Hi/Lo count. One scorer
// serves the classic functions, which want the total only, and the pokermath:: API, which also
// records each stage and the reason for every point.
//
// Ranks are rank indexes 0 = deuce .. 12 = ace; the ace is never low in these counts, and some
// rules are deliberately asymmetric (noted where they are counted).
#include <string>

#include "omaha/input_checks.h"
#include "pokermath/omaha.h"

namespace {

using pokermath::HutchisonCount;

enum Rank { kDeuce, kTrey, kFour, kFive, kSix, kSeven, kEight, kNine, kTen, kJack, kQueen, kKing, kAce };

constexpr const char* kRankWords[13] = {"deuce", "trey", "four", "five",  "six",  "seven", "eight",
                                        "nine",  "ten",  "jack", "queen", "king", "ace"};
constexpr const char* kRankPlurals[13] = {"deuces", "treys", "fours", "fives",  "sixes", "sevens", "eights",
                                          "nines",  "tens",  "jacks", "queens", "kings", "aces"};
constexpr const char kRankLetters[] = "23456789TJQKA";
constexpr const char* kSuitPlurals[4] = {"clubs", "diamonds", "hearts", "spades"};
constexpr const char* kCountWords[5] = {"no", "one", "two", "three", "four"};

// A starting hand counted by rank and suit.
struct Shape {
  int rank_count[13] = {};
  int suit_count[4] = {};
  int suit_top[4] = {-1, -1, -1, -1};  // the highest rank held in each suit
  int distinct[4] = {};                // the distinct ranks, ascending
  int u = 0;                           // how many distinct ranks
  bool ace = false;

  explicit Shape(const int* hand) {
    for (int i = 0; i < 4; ++i) {
      const int rank = hand[i] % 13, suit = hand[i] / 13;
      ++rank_count[rank];
      ++suit_count[suit];
      if (rank > suit_top[suit]) suit_top[suit] = rank;
    }
    for (int r = 0; r < 13; ++r)
      if (rank_count[r] > 0) distinct[u++] = r;
    ace = rank_count[kAce] > 0;
  }
};

// Adds up a count. Given a HutchisonCount it also records every stage and step; the reasons are
// built only then, so the classic functions pay nothing for them.
class Tally {
 public:
  explicit Tally(HutchisonCount* record = nullptr) : m_record(record) {}

  void stage(const char* name) {
    if (m_record) m_record->stages.push_back({name, 0, {}});
  }
  // Adds points to the current stage; reason() gives the text recorded with them.
  template <typename Reason>
  void add(double points, const Reason& reason) {
    m_total += points;
    if (!m_record) return;
    pokermath::HutchisonStage& stage = m_record->stages.back();
    stage.points += points;
    stage.items.push_back({reason(), points});
  }
  double total() const { return m_total; }

 private:
  HutchisonCount* m_record;
  double m_total = 0;
};

std::string cat(std::initializer_list<std::string_view> parts) {
  std::string text;
  for (std::string_view part : parts) text += part;
  return text;
}

// ---- the high count ----------------------------------------------------------------------------

// Two cards of a suit earn points by the higher of them; three or four cost 2. The running total
// may not fall below zero, checked after each suit (the suits come first, so it is the stage's).
void high_suits(const Shape& h, Tally& t) {
  static constexpr int kTwoSuited[13] = {1, 1, 1, 1, 1, 1, 2, 3, 3, 4, 5, 6, 8};
  t.stage("suits");
  for (int s = 0; s < 4; ++s) {
    const int top = h.suit_top[s];
    if (h.suit_count[s] == 2)
      t.add(kTwoSuited[top], [&] { return cat({"two ", kSuitPlurals[s], ", ", kRankWords[top], " high"}); });
    else if (h.suit_count[s] >= 3)
      t.add(-2, [&] { return cat({kCountWords[h.suit_count[s]], " ", kSuitPlurals[s]}); });
    if (t.total() < 0) t.add(-t.total(), [] { return std::string("points below zero set to zero"); });
  }
}

// Exactly two cards of a rank earn points; three or four of a rank earn nothing here.
void high_pairs(const Shape& h, Tally& t) {
  static constexpr int kPair[13] = {7, 7, 7, 7, 7, 7, 8, 10, 12, 13, 14, 16, 18};
  t.stage("pairs");
  for (int r = 0; r < 13; ++r) {
    if (h.rank_count[r] == 2)
      t.add(kPair[r], [&] { return cat({"pair of ", kRankPlurals[r]}); });
    else if (h.rank_count[r] > 2)
      t.add(0, [&] { return cat({kCountWords[h.rank_count[r]], " ", kRankPlurals[r], ": no pair points"}); });
  }
}

// Points of n ascending distinct ranks (n = 4, 3 or 2) by their span, highest minus lowest: four
// ranks, spans 3..6: 25 23 21 19; three, spans 2..5: 18 16 14 12; two, spans 1..4: 8 6 4 2. With the
// ace on top a scoring run loses 4 (it makes straights one way only); two cards stop at zero.
struct RunScore {
  int by_span = 0;  // the points of the span alone
  int points = 0;   // after the ace rule
};

RunScore run_score(const int* ranks, int n) {
  static constexpr int kFirstSpan[5] = {0, 0, 1, 2, 3};
  static constexpr int kPoints[5][4] = {{}, {}, {8, 6, 4, 2}, {18, 16, 14, 12}, {25, 23, 21, 19}};
  const int step = ranks[n - 1] - ranks[0] - kFirstSpan[n];
  if (step < 0 || step > 3) return {};
  RunScore score{kPoints[n][step], kPoints[n][step]};
  if (ranks[n - 1] == kAce) score.points -= 4;
  if (n == 2 && score.points < 0) score.points = 0;
  return score;
}

// Counts a run of n distinct ranks and returns its points; the reason shows the run highest
// first with its span and the ace rule ("A-K: span 1, ace on top: 8 - 4").
int add_run(Tally& t, const int* ranks, int n) {
  const RunScore score = run_score(ranks, n);
  t.add(score.points, [&] {
    std::string text;
    for (int i = n - 1; i >= 0; --i) text += cat({i < n - 1 ? "-" : "", std::string_view(&kRankLetters[ranks[i]], 1)});
    text += ": span " + std::to_string(ranks[n - 1] - ranks[0]);
    if (score.by_span == 0) return text + ", no points";
    if (score.by_span == score.points) return text;
    text += ", ace on top: " + std::to_string(score.by_span) + " - 4";
    return score.points == 0 ? text + ", raised to 0" : text;
  });
  return score.points;
}

// Straight potential of the distinct ranks d0 < d1 < ...: all four connected if they can be;
// otherwise the top three and the bottom three where their inner gaps leave room (fewer than
// four missing ranks), the leftover card paired with its neighbour, or else the three neighbouring
// pairs.
void high_straights(const Shape& h, Tally& t) {
  t.stage("straight potential");
  const int* d = h.distinct;
  if (h.u == 4) {
    if (add_run(t, d, 4) > 0) return;
    const int g1 = d[1] - d[0] - 1, g2 = d[2] - d[1] - 1, g3 = d[3] - d[2] - 1;
    const bool top = g2 + g3 < 4, bottom = g1 + g2 < 4;
    if (top) add_run(t, d + 1, 3);
    if (bottom) add_run(t, d, 3);
    if (bottom && !top) add_run(t, d + 2, 2);
    if (top && !bottom) add_run(t, d, 2);
    if (!top && !bottom)
      for (int i = 0; i < 3; ++i) add_run(t, d + i, 2);
  } else if (h.u == 3) {
    if (add_run(t, d, 3) > 0) return;
    add_run(t, d, 2);
    add_run(t, d + 1, 2);
  } else if (h.u == 2) {
    add_run(t, d, 2);
  }
}

// An ace with one or two of the deuce to five earns 6 or 12; with three (a wheel draw) nothing:
// the asymmetry is deliberate.
void high_ace_with_low_cards(const Shape& h, Tally& t) {
  static constexpr int kPoints[4] = {0, 6, 12, 0};
  t.stage("ace with low cards");
  if (!h.ace) return;
  int lows = 0, held[4];
  for (int r = kDeuce; r <= kFive; ++r)
    if (h.rank_count[r] > 0) held[lows++] = r;
  t.add(kPoints[lows], [&] {
    if (lows == 0) return std::string("ace without a deuce to five");
    std::string text = "ace with ";
    for (int i = 0; i < lows; ++i) text += cat({i == 0 ? "" : i == lows - 1 ? " and " : ", ", kRankWords[held[i]]});
    return lows == 3 ? text + ": three low cards earn nothing" : text;
  });
}

void count_high(const Shape& h, Tally& t) {
  high_suits(h, t);
  high_pairs(h, t);
  high_straights(h, t);
  high_ace_with_low_cards(h, t);
}

// ---- the Hi/Lo count ---------------------------------------------------------------------------

// Four cards ten or higher are not counted stage by stage: they score 1000.0 (play them for the
// high alone) unless they hold three of a rank, one pair without two cards of a suit, or no pair
// and fewer than two suits of two cards (0.0). Returns false when the hand has a lower card.
bool hilo_high_only(const Shape& h, Tally& t) {
  for (int r = kDeuce; r < kTen; ++r)
    if (h.rank_count[r] > 0) return false;
  int pairs = 0, trips = 0, two_card_suits = 0;
  for (int r = 0; r < 13; ++r) {
    pairs += h.rank_count[r] == 2;
    trips += h.rank_count[r] >= 3;
  }
  for (int s = 0; s < 4; ++s) two_card_suits += h.suit_count[s] == 2;

  t.stage("four high cards");
  const auto add = [&t](double points, const char* reason) { t.add(points, [reason] { return std::string(reason); }); };
  if (trips > 0)
    add(0.0, "three or four of a rank");
  else if (pairs == 1 && two_card_suits == 0)
    add(0.0, "one pair and no two cards of a suit");
  else if (pairs == 0 && two_card_suits < 2)
    add(0.0, "no pair and fewer than two suits of two cards");
  else if (pairs == 2)
    add(1000.0, "two pairs: play for the high alone");
  else if (pairs == 1)
    add(1000.0, "one pair and two cards of a suit: play for the high alone");
  else
    add(1000.0, "two suits of two cards: play for the high alone");
  return true;
}

// With an ace, points by the lowest rank: deuce 20, trey 17, four 13, seven 10, nothing else (the
// gap at five and six is deliberate). Without one, a few low two-card starts score.
void hilo_low_cards(const Shape& h, Tally& t) {
  t.stage("low cards");
  const int* d = h.distinct;
  if (h.ace) {
    static constexpr int kWithAce[13] = {20, 17, 13, 0, 0, 10, 0, 0, 0, 0, 0, 0, 0};
    t.add(kWithAce[d[0]], [&] { return cat({"ace, lowest rank ", kRankWords[d[0]]}); });
    return;
  }
  if (h.u < 2) return;
  int points = 0;
  if (d[0] == kDeuce && d[1] == kTrey) points = 15;
  if (d[0] == kDeuce && d[1] == kFour) points = 12;
  if (d[0] == kTrey && d[1] == kFour) points = 11;
  if (d[0] == kFour && d[1] == kFive) points = 8;
  if (points > 0)
    t.add(points, [&] { return cat({"lowest ranks ", kRankWords[d[0]], " and ", kRankWords[d[1]], ", no ace"}); });
}

// With three or more distinct ranks, the next one or two above the start (the second lowest with
// an ace, else the third lowest) earn points by rank.
void hilo_further_cards(const Shape& h, Tally& t) {
  static constexpr double kPoints[13] = {0, 9, 6, 4, 1, 0, 0, 0, 1, 2, 2, 2, 0};
  static constexpr const char* kOrdinals[4] = {"lowest", "second lowest", "third lowest", "fourth lowest"};
  t.stage("further cards");
  if (h.u < 3) return;
  const int start = h.ace ? 1 : 2;
  const int end = h.u == 3 ? start + 1 : start + 2;
  for (int i = start; i < end; ++i) {
    const int r = h.distinct[i];
    t.add(kPoints[r], [&] { return cat({kRankWords[r], ", the ", kOrdinals[i], " rank"}); });
  }
}

// Pairs earn points by rank, three of a kind half as much; four of a kind nothing.
void hilo_pairs_and_trips(const Shape& h, Tally& t) {
  static constexpr double kPair[13] = {3, 1, 1, 0, 0, 0, 0, 0, 1, 2, 5, 6, 8};
  static constexpr double kTrips[13] = {1.5, 0.5, 0.5, 0, 0, 0, 0, 0, 0.5, 1.0, 2.5, 3.0, 4.0};
  t.stage("pairs and trips");
  for (int r = 0; r < 13; ++r) {
    const int n = h.rank_count[r];
    if (n == 2) t.add(kPair[r], [&] { return cat({"pair of ", kRankPlurals[r]}); });
    if (n == 3) t.add(kTrips[r], [&] { return cat({"three ", kRankPlurals[r]}); });
    if (n == 4) t.add(0, [&] { return cat({"four ", kRankPlurals[r], ": nothing"}); });
  }
}

// Two cards of a suit earn points by the higher one, three cards half as much; four nothing.
void hilo_suits(const Shape& h, Tally& t) {
  static constexpr double kTwo[13] = {0, 0, 0, 0, 0, 0, 1, 1, 1, 2, 2, 3, 4};
  static constexpr double kThree[13] = {0, 0, 0, 0, 0, 0, 0.5, 0.5, 0.5, 1.0, 1.0, 1.5, 2.0};
  t.stage("suits");
  for (int s = 0; s < 4; ++s) {
    const int n = h.suit_count[s], top = h.suit_top[s];
    const auto reason = [&] { return cat({kCountWords[n], " ", kSuitPlurals[s], ", ", kRankWords[top], " high"}); };
    if (n == 2) t.add(kTwo[top], reason);
    if (n == 3) t.add(kThree[top], reason);
    if (n == 4) t.add(0, [&] { return cat({"four ", kSuitPlurals[s], ": nothing"}); });
  }
}

// Returns true for a hand of four high cards (counted by hilo_high_only alone).
bool count_hilo(const Shape& h, Tally& t) {
  if (hilo_high_only(h, t)) return true;
  hilo_low_cards(h, t);
  hilo_further_cards(h, t);
  hilo_pairs_and_trips(h, t);
  hilo_suits(h, t);
  return false;
}

}  // namespace

// ---- the classic API ---------------------------------------------------------------------------

int HutchisonPointsOmaha(const int* hand) {
  Tally t;
  count_high(Shape(hand), t);
  return static_cast<int>(t.total());
}

double HutchisonPointsOmahaHL(const int* hand) {
  Tally t;
  count_hilo(Shape(hand), t);
  return t.total();
}

// ---- the pokermath:: API -----------------------------------------------------------------------

namespace pokermath {

HutchisonCount hutchison_points(std::span<const int> hand) {
  detail::check_starting_hand(hand);
  HutchisonCount count;
  Tally t(&count);
  count_high(Shape(hand.data()), t);
  count.total = t.total();
  return count;
}

HutchisonCount hutchison_points_hilo(std::span<const int> hand) {
  detail::check_starting_hand(hand);
  HutchisonCount count;
  Tally t(&count);
  count.high_only = count_hilo(Shape(hand.data()), t);
  count.total = t.total();
  return count;
}

}  // namespace pokermath

// The fast evaluator against the classic five-card evaluator on every five- and six-card hand, in
// every form (one hand, batches of int codes, byte codes and masks), and its checks of bad input.
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <mutex>
#include <numeric>
#include <optional>
#include <random>

#include "test_util.h"

namespace {

using pokermath::hand_value;
using pokermath::hand_values;
using pokermath::ShortDeckRules;

// The cards by name; a code outside the deck as its number.
std::string names(const int* cards, int n) {
  std::string text;
  for (int i = 0; i < n; ++i) {
    if (i) text += ' ';
    text += cards[i] >= 0 && cards[i] < 52 ? pokermath::card_to_string(cards[i]) : std::to_string(cards[i]);
  }
  return text;
}

// Hands gathered for the three batch forms, each with the value it must get. Every full batch is
// run through all three forms; the first disagreement is kept. A batch holds an odd number of hands,
// so the vector path of the batches also ends in a partial group every time, and the byte codes start
// at an odd address, as a slice of a larger array may.
class Batches {
 public:
  explicit Batches(int cards_per_hand) : m_n(cards_per_hand) {}

  void add(const int* cards, int value) {
    uint64_t mask = 0;
    for (int i = 0; i < m_n; ++i) {
      m_codes.push_back(cards[i]);
      m_bytes.push_back(static_cast<uint8_t>(cards[i]));
      mask |= uint64_t{1} << cards[i];
    }
    m_masks.push_back(mask);
    m_expected.push_back(value);
    if (m_expected.size() == 32767) run();
  }

  void run() {
    std::vector<int> values(m_expected.size());
    const auto compare = [&](const char* form) {
      for (size_t h = 0; h < values.size(); ++h)
        if (values[h] != m_expected[h] && mismatches++ == 0)
          first = std::string(form) + ": " + names(&m_codes[h * m_n], m_n) + " got " + std::to_string(values[h]) +
                  ", expected " + std::to_string(m_expected[h]);
      std::fill(values.begin(), values.end(), -1);
    };
    hand_values(m_codes, m_n, values);
    compare("int codes");
    hand_values(std::span(m_bytes).subspan(1), m_n, values);
    compare("byte codes");
    hand_values(m_masks, values);
    compare("masks");
    m_codes.clear(), m_bytes.resize(1), m_masks.clear(), m_expected.clear();
  }

  int64_t mismatches = 0;
  std::string first;

 private:
  int m_n;
  std::vector<int> m_codes;
  std::vector<uint8_t> m_bytes = {0};
  std::vector<uint64_t> m_masks;
  std::vector<int> m_expected;
};

int word(int card) { return static_cast<int>(pokermath::prime_word(card)); }

TEST(HandValueExhaustive, EveryFiveCardHandInEveryForm) {
  // The classic class (1 = royal flush) turned over: 7463 - class.
  Batches batches(5);
  int64_t hands = 0, mismatches = 0;
  std::string first;
  test_util::for_each_set(5, 0, [&](const int* c) {
    ++hands;
    const int expected = 7463 - eval_5hand_fast(word(c[0]), word(c[1]), word(c[2]), word(c[3]), word(c[4]));
    const int value = hand_value(std::span<const int>(c, 5));
    if (value != expected && mismatches++ == 0)
      first = names(c, 5) + " got " + std::to_string(value) + ", expected " + std::to_string(expected);
    batches.add(c, expected);
  });
  batches.run();
  EXPECT_EQ(hands, 2598960);
  EXPECT_EQ(mismatches, 0) << first;
  EXPECT_EQ(batches.mismatches, 0) << batches.first;
}

TEST(HandValueExhaustive, EverySixCardHandIsItsBestFive) {
  // The oracle: the largest classic value of the six five-card subsets. Sanitizer builds take every
  // fifth first card.
  const int step = static_cast<int>(test_util::sweep_size(1, 5));
  int64_t hands = 0, mismatches = 0, batch_mismatches = 0;
  std::string first;
  std::mutex mutex;
#pragma omp parallel for schedule(dynamic, 1)
  for (int a = 0; a < 47; a += step) {
    Batches batches(6);
    int64_t local_hands = 0, local_mismatches = 0;
    std::string local_first;
    test_util::for_each_set(5, (uint64_t{2} << a) - 1, [&](const int* rest) {
      const int c[6] = {a, rest[0], rest[1], rest[2], rest[3], rest[4]};
      int w[6];
      for (int i = 0; i < 6; ++i) w[i] = word(c[i]);
      int best = 9999;
      for (int skip = 0; skip < 6; ++skip) {
        int five[5];
        for (int i = 0, n = 0; i < 6; ++i)
          if (i != skip) five[n++] = w[i];
        best = std::min(best, eval_5hand_fast(five[0], five[1], five[2], five[3], five[4]));
      }
      const int expected = 7463 - best, value = hand_value(c);
      ++local_hands;
      if (value != expected && local_mismatches++ == 0)
        local_first = names(c, 6) + " got " + std::to_string(value) + ", expected " + std::to_string(expected);
      batches.add(c, expected);
    });
    batches.run();
    std::lock_guard lock(mutex);
    hands += local_hands;
    mismatches += local_mismatches;
    batch_mismatches += batches.mismatches;
    if (first.empty()) first = !local_first.empty() ? local_first : batches.first;
  }
  if (step == 1) {
    EXPECT_EQ(hands, 20358520);
  }
  EXPECT_EQ(mismatches + batch_mismatches, 0) << first;
}

// A bad hand and the plain check's message for it.
struct BadHand {
  std::vector<int> cards;
  std::string message;
};

// Bad hands of 5 to 7 cards: every position holding a code outside the deck, every pair of positions
// holding the same card. The base hand's five hearts make a flush-looking key with a repeated heart;
// the code 64 above another card of the hand catches checks that look at the low six bits only.
std::vector<BadHand> bad_hands() {
  const std::vector<int> base = test_util::cards("6h 9h Jh Kh Ah Tc 7d");
  std::vector<BadHand> hands;
  for (int n = 5; n <= 7; ++n)
    for (int i = 0; i < n; ++i) {
      for (int code : {-1, 52, 55, 63, 64, 64 + base[(i + 1) % n], 255, 256, 1000, INT_MIN, INT_MAX}) {
        std::vector<int> cards(base.begin(), base.begin() + n);
        cards[i] = code;
        hands.push_back({cards, "bad card code " + std::to_string(code) + ": must be 0..51"});
      }
      for (int j = i + 1; j < n; ++j) {
        std::vector<int> cards(base.begin(), base.begin() + n);
        cards[j] = cards[i];
        hands.push_back({cards, "duplicate card '" + pokermath::card_to_string(cards[i]) + "'"});
      }
    }
  hands.push_back({{51, 51, 51, 51, 51, 51, 51}, "duplicate card 'As'"});
  return hands;
}

using Rules = std::optional<ShortDeckRules>;  // none: the 52-card deck

std::string name(Rules rules) { return !rules ? "52 cards" : *rules == ShortDeckRules::China ? "China" : "Standard"; }

// The message of each form for one bad hand. In the batches it is hand `at` of 40 (first, middle or
// last block of sixteen), the others good but for another copy of the bad hand at the end: the
// batch must name the first.
void expect_rejected(const BadHand& bad, Rules rules) {
  const std::span<const int> cards = bad.cards;
  const int n = static_cast<int>(cards.size());
  const std::string what = names(cards.data(), n) + " (" + name(rules) + ")";
  using test_util::error_of;
  EXPECT_EQ(error_of([&] { rules ? hand_value(cards, *rules) : hand_value(cards); }), bad.message) << what;
  if (n < 5 || n > 7) return;
  const std::vector<int> good = test_util::cards("Ks Kd 8c 8s 6d 7s Ac");
  for (int at : {2, 21, 35}) {
    std::vector<int> codes;
    for (int h = 0; h < 40; ++h) {
      const int* row = h == at || h == 39 ? cards.data() : good.data();
      codes.insert(codes.end(), row, row + n);
    }
    std::vector<int> values(40);
    const std::string expected = "hand " + std::to_string(at) + ": " + bad.message;
    EXPECT_EQ(error_of([&] { rules ? hand_values(codes, n, values, *rules) : hand_values(codes, n, values); }),
              expected)
        << what;
    if (std::all_of(cards.begin(), cards.end(), [](int c) { return c >= 0 && c <= 255; })) {
      const std::vector<uint8_t> bytes(codes.begin(), codes.end());
      EXPECT_EQ(error_of([&] { rules ? hand_values(bytes, n, values, *rules) : hand_values(bytes, n, values); }),
                expected)
          << what << " as bytes";
    }
  }
}

// Masks of 5, 6 and 7 cards mixed in one batch: groups whose hands differ in size take another path
// than the sweeps above, where every batch holds one size.
TEST(HandValueExhaustive, MasksOfMixedSizesInOneBatch) {
  std::mt19937 rng(7);
  std::array<int, 52> deck;
  std::iota(deck.begin(), deck.end(), 0);
  std::vector<uint64_t> masks;
  std::vector<int> expected;
  for (int h = 0; h < 20001; ++h) {
    const int n = 5 + static_cast<int>(rng() % 3);
    std::shuffle(deck.begin(), deck.end(), rng);
    uint64_t mask = 0;
    for (int i = 0; i < n; ++i) mask |= uint64_t{1} << deck[i];
    masks.push_back(mask);
    expected.push_back(hand_value(std::span<const int>(deck.data(), n)));
  }
  std::vector<int> values(masks.size());
  hand_values(masks, values);
  EXPECT_EQ(values, expected);
}

TEST(HandValueChecks, BadHandsGetThePlainChecksMessage) {
  std::vector<BadHand> hands = bad_hands();
  hands.push_back({{}, "expected 5 to 7 cards, got 0"});
  hands.push_back({test_util::cards("As Ks Qs Js"), "expected 5 to 7 cards, got 4"});
  hands.push_back({test_util::cards("As Ks Qs Js Ts 9s 8s 7s"), "expected 5 to 7 cards, got 8"});
  for (const BadHand& bad : hands)
    for (Rules rules : {Rules{}, Rules{ShortDeckRules::Standard}, Rules{ShortDeckRules::China}})
      expect_rejected(bad, rules);

  // The short deck also rejects the cards two to five, naming the first such card.
  const std::vector<int> base = test_util::cards("6h 9h Jh Kh Ah Tc 7d");
  for (int n = 5; n <= 7; ++n)
    for (int i = 0; i < n; ++i)
      for (int low : test_util::cards("2c 5c 3h 5s")) {
        std::vector<int> cards(base.begin(), base.begin() + n);
        cards[i] = low;
        if (i + 1 < n) cards[n - 1] = test_util::cards("4d")[0];
        const BadHand bad{cards, "card '" + pokermath::card_to_string(low) + "' at position " + std::to_string(i + 1) +
                                     " is not in the short deck (36 cards, 6 to A)"};
        expect_rejected(bad, ShortDeckRules::Standard);
        expect_rejected(bad, ShortDeckRules::China);
        EXPECT_GT(hand_value(cards), 0);  // the 52-card deck takes them
      }
}

TEST(HandValueChecks, BadMasksAndSizes) {
  using test_util::error_of;
  const auto mask_of = [](const std::string& text) { return VecToInt64(test_util::cards(text)); };
  const uint64_t good = mask_of("Ks Kd 8c 8s 6d 7s Ac");
  const std::pair<uint64_t, std::string> masks[] = {
      {0, "expected 5 to 7 cards, got 0"},
      {mask_of("As Ks Qs Js"), "expected 5 to 7 cards, got 4"},
      {mask_of("As Ks Qs Js Ts 9s 8s 7s"), "expected 5 to 7 cards, got 8"},
      // Rank sums that index past the end of the seven-card tables (Hold'em; short deck): rejected
      // without reading there, which the sanitizer build checks.
      {mask_of("Jc 3d 6d 6h 7h Jh 8s 9s"), "expected 5 to 7 cards, got 8"},
      {mask_of("Tc Td"), "expected 5 to 7 cards, got 2"},
      {mask_of("As Ks Qs Js") | uint64_t{1} << 52, "the mask has bits above card 51"},
      {mask_of("As Ks Qs Js Ts") | uint64_t{1} << 63, "the mask has bits above card 51"},
      {~uint64_t{0}, "the mask has bits above card 51"},
  };
  for (const auto& [mask, message] : masks) {
    const std::vector<uint64_t> batch = {good, good, mask, good, mask};
    std::vector<int> values(batch.size());
    EXPECT_EQ(error_of([&] { hand_values(batch, values); }), "hand 2: " + message) << std::hex << mask;
    for (ShortDeckRules rules : {ShortDeckRules::Standard, ShortDeckRules::China})
      EXPECT_EQ(error_of([&] { hand_values(batch, values, rules); }), "hand 2: " + message) << std::hex << mask;
  }
  // A mask's cards go in increasing code order, so the first card below six is the lowest.
  const uint64_t low = mask_of("6h 9h Jh Kh 5d Tc 2s");
  const std::vector<uint64_t> short_batch = {low};
  std::vector<int> one(1);
  for (ShortDeckRules rules : {ShortDeckRules::Standard, ShortDeckRules::China})
    EXPECT_EQ(error_of([&] { hand_values(short_batch, one, rules); }),
              "hand 0: card '5d' at position 2 is not in the short deck (36 cards, 6 to A)");

  // Sizes: hands per row, whole rows, one value per hand; the same checks in every form.
  const std::vector<int> codes14 = test_util::cards("Ks Kd 8c 8s 6d 7s Ac Qs Qd 9c 9s 6h 7h Ah");
  const std::vector<uint8_t> bytes14(codes14.begin(), codes14.end());
  struct Size {
    size_t codes;
    int per_hand;
    size_t values;
    std::string message;
  };
  const Size sizes[] = {
      {14, 8, 1, "cards per hand must be 5, 6 or 7, got 8"},
      {12, 4, 3, "cards per hand must be 5, 6 or 7, got 4"},
      {0, -1, 0, "cards per hand must be 5, 6 or 7, got -1"},
      {13, 7, 1, "13 card codes are not whole hands of 7"},
      {14, 6, 2, "14 card codes are not whole hands of 6"},
      {14, 7, 1, "room for 1 values, but 2 hands"},
      {14, 7, 3, "room for 3 values, but 2 hands"},
      {10, 5, 0, "room for 0 values, but 2 hands"},
      {0, 5, 0, "(no error)"},
  };
  for (const Size& s : sizes) {
    std::vector<int> values(s.values);
    const std::span<const int> codes(codes14.data(), s.codes);
    const std::span<const uint8_t> bytes(bytes14.data(), s.codes);
    EXPECT_EQ(error_of([&] { hand_values(codes, s.per_hand, values); }), s.message) << s.codes << "/" << s.per_hand;
    EXPECT_EQ(error_of([&] { hand_values(bytes, s.per_hand, values); }), s.message) << s.codes << "/" << s.per_hand;
    for (ShortDeckRules rules : {ShortDeckRules::Standard, ShortDeckRules::China}) {
      EXPECT_EQ(error_of([&] { hand_values(codes, s.per_hand, values, rules); }), s.message);
      EXPECT_EQ(error_of([&] { hand_values(bytes, s.per_hand, values, rules); }), s.message);
    }
  }
  const std::vector<uint64_t> two_masks = {good, good};
  std::vector<int> values(3);
  EXPECT_EQ(error_of([&] { hand_values(two_masks, std::span<int>(values).first(1)); }),
            "room for 1 values, but 2 hands");
  EXPECT_EQ(error_of([&] { hand_values(two_masks, values, ShortDeckRules::China); }), "room for 3 values, but 2 hands");
  EXPECT_EQ(error_of([&] { hand_values(std::span<const uint64_t>(), std::span<int>()); }), "(no error)");
}

}  // namespace

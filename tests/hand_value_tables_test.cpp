// The fast evaluator on every seven-card hand against the Hold'em state machine, and on every
// short-deck hand of five to seven cards against the short-deck machines in both orders.
#include <gtest/gtest.h>

#include <array>
#include <mutex>
#include <optional>

#include "tables_fixture.h"
#include "test_util.h"

namespace {

using pokermath::hand_value;
using pokermath::hand_values;
using pokermath::ShortDeckRules;
using Rules = std::optional<ShortDeckRules>;  // none: the 52-card deck

std::string name(Rules rules) { return !rules ? "52 cards" : *rules == ShortDeckRules::China ? "China" : "Standard"; }

// Hands of N cards buffered for the batch forms (int codes, byte codes and masks), each with the
// value it must get under each of the rule sets; every full buffer is checked, keeping the first
// disagreement. An odd number of hands makes the vector path of the batches end in a partial group.
template <int N, size_t R>
class Checker {
 public:
  static constexpr size_t kHands = 8191;

  explicit Checker(std::array<Rules, R> rules) : m_rules(rules) {}

  void add(const int* cards, const std::array<int, R>& values) {
    uint64_t mask = 0;
    for (int i = 0; i < N; ++i) {
      m_codes[m_count * N + i] = cards[i];
      m_bytes[m_count * N + i] = static_cast<uint8_t>(cards[i]);
      mask |= uint64_t{1} << cards[i];
    }
    m_masks[m_count] = mask;
    for (size_t r = 0; r < R; ++r) m_expected[r * kHands + m_count] = values[r];
    if (++m_count == kHands) run();
  }

  void run() {
    const std::span<const int> codes = std::span(m_codes).first(m_count * N);
    const std::span<const uint8_t> bytes = std::span(m_bytes).first(m_count * N);
    const std::span<const uint64_t> masks = std::span(m_masks).first(m_count);
    std::vector<int> values(m_count);
    for (size_t r = 0; r < R; ++r) {
      const Rules rules = m_rules[r];
      const auto compare = [&](const char* form) {
        for (size_t h = 0; h < m_count; ++h)
          if (values[h] != m_expected[r * kHands + h] && mismatches++ == 0)
            first = std::string(form) + ", " + name(rules) + ": " +
                    test_util::names({&m_codes[h * N], &m_codes[h * N] + N}) + " got " + std::to_string(values[h]) +
                    ", expected " + std::to_string(m_expected[r * kHands + h]);
        std::fill(values.begin(), values.end(), -1);
      };
      rules ? hand_values(codes, N, values, *rules) : hand_values(codes, N, values);
      compare("int codes");
      rules ? hand_values(bytes, N, values, *rules) : hand_values(bytes, N, values);
      compare("byte codes");
      rules ? hand_values(masks, values, *rules) : hand_values(masks, values);
      compare("masks");
    }
    m_count = 0;
  }

  int64_t mismatches = 0;
  std::string first;

 private:
  std::array<Rules, R> m_rules;
  std::vector<int> m_expected = std::vector<int>(R * kHands);
  std::vector<int> m_codes = std::vector<int>(kHands * N);
  std::vector<uint8_t> m_bytes = std::vector<uint8_t>(kHands * N);
  std::vector<uint64_t> m_masks = std::vector<uint64_t>(kHands);
  size_t m_count = 0;
};

TEST(HandValueTables, EverySevenCardHandMatchesTheStateMachine) {
  pokermath::load_table(pokermath::TableFile::Texas7, tables_fixture::data_dir());
  const int* T = texasfsm7::table;
  const auto& code = pokermath::kRankMajorCodes;  // the machine reads rank-major codes 0..51
  // Sanitizer builds take every seventh first and second card.
  const int step = static_cast<int>(test_util::sweep_size(1, 7));
  int64_t hands = 0, mismatches = 0;
  std::string first;
  std::mutex mutex;
#pragma omp parallel for schedule(dynamic, 1)
  for (int a = 0; a < 46; a += step) {
    Checker<7, 1> checker({Rules{}});
    std::vector<int> walked;
    int64_t local_hands = 0;
    const int s1 = T[52 + code[a]];  // the start state is the deck size
    for (int b = a + 1; b < 47; b += step) {
      const int s2 = T[s1 + code[b]];
      for (int c = b + 1; c < 48; ++c) {
        // The machine's values of every hand on a, b, c, by nested loops that carry the state card by
        // card: one read a hand, in a tight loop whose cache misses overlap.
        const int s3 = T[s2 + code[c]];
        walked.clear();
        for (int d = c + 1; d < 49; ++d) {
          const int s4 = T[s3 + code[d]];
          for (int e = d + 1; e < 50; ++e) {
            const int s5 = T[s4 + code[e]];
            for (int f = e + 1; f < 51; ++f) {
              const int s6 = T[s5 + code[f]];
              for (int g = f + 1; g < 52; ++g) walked.push_back(T[s6 + code[g]]);
            }
          }
        }
        // The same hands, in the same order, through hand_values.
        size_t k = 0;
        test_util::for_each_set(4, (uint64_t{2} << c) - 1, [&](const int* rest) {
          const int cards[7] = {a, b, c, rest[0], rest[1], rest[2], rest[3]};
          checker.add(cards, {walked[k++]});
        });
        local_hands += static_cast<int64_t>(k);
      }
    }
    checker.run();
    std::lock_guard lock(mutex);
    hands += local_hands;
    mismatches += checker.mismatches;
    if (first.empty()) first = checker.first;
  }
  if (step == 1) {
    EXPECT_EQ(hands, 133784560);
  }
  EXPECT_EQ(mismatches, 0) << first;
}

// Every short-deck hand of N cards in both orders, against the machine's value in the Standard order
// and the China evaluator (two hole cards, then a board of three to five).
template <int N>
void check_short_deck(int (*in_standard)(const int*), int64_t hands_in_deck) {
  constexpr uint64_t kBelowSix = 0xFull | 0xFull << 13 | 0xFull << 26 | 0xFull << 39;
  Checker<N, 2> checker({ShortDeckRules::Standard, ShortDeckRules::China});
  int64_t hands = 0, mismatches = 0;
  std::string first;
  test_util::for_each_set(N, kBelowSix, [&](const int* c) {
    if (hands++ % test_util::sweep_size(1, 13) != 0) return;
    const std::span<const int> cards(c, N);
    const int standard = in_standard(c), china = eval_rank_6China(c, N - 2);
    const int value = hand_value(cards, ShortDeckRules::Standard),
              china_value = hand_value(cards, ShortDeckRules::China);
    if ((value != standard || china_value != china) && mismatches++ == 0)
      first = pokermath::cards_to_string(cards) + " got " + std::to_string(value) + "/" + std::to_string(china_value) +
              ", expected " + std::to_string(standard) + "/" + std::to_string(china);
    checker.add(c, {standard, china});
  });
  checker.run();
  EXPECT_EQ(hands, hands_in_deck);
  EXPECT_EQ(mismatches, 0) << first;
  EXPECT_EQ(checker.mismatches, 0) << checker.first;
}

TEST(HandValueTables, EveryShortDeckHandInBothOrders) {
  pokermath::load_table(pokermath::TableFile::SixPlus5, tables_fixture::data_dir());
  pokermath::load_table(pokermath::TableFile::SixPlus7, tables_fixture::data_dir());
  check_short_deck<5>(eval_rank5_via_fsm5, 376992);
  check_short_deck<6>(eval_rank6_via_fsm5, 1947792);
  check_short_deck<7>(eval_rank7_via_fsm7, 8347680);
}

}  // namespace

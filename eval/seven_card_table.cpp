// The seven-card lookup table of PokerLogic (the file "OrvalisHR.dat").
//
// A hand identifier names up to seven cards up to order: one byte per card, (rank + 1) << 4 plus a
// suit nibble 1..4, or 0 where the suit can no longer make a flush; bytes sorted descending. The
// table holds, for the i-th identifier of the sorted list, a block of 53 entries at i * 53 + 53:
// entry `card` leads to the block of the identifier with that card added (or holds the value once
// seven cards are known), and entry 0 holds the value of a five- or six-card identifier.
//
// The definition builds the sorted list by inserting identifiers one by one while walking it, then
// fills the blocks in a second pass. An identifier with k cards is numerically below every one with
// k + 1 cards (its highest non-zero byte is lower), so the list is the concatenation of each card
// count's sorted identifiers: it is built that way here, level by level, and the second pass, which
// writes disjoint blocks, runs in parallel. The bytes written are those of the definition.
#include <algorithm>
#include <cstdio>
#include <fstream>

#include "eval/sort7.h"
#include "pokermath/eval.h"
#include "support/check.h"

namespace {

constexpr int kBlock = 53;
constexpr int64_t kTableBytes = int64_t{PokerLogic::kTableEntries} * 4;

// The identifier of `id` plus the one-based rank-major `card`; `count` receives the cards walked.
uint64_t make_id(uint64_t id, int card, int& count) {
  int bytes[8] = {};
  for (int i = 0; i < 6; ++i) bytes[i + 1] = static_cast<int>((id >> (8 * i)) & 0xFF);
  const int m = card - 1;
  bytes[0] = ((m / 4) + 1) * 16 + (m % 4) + 1;

  int suit_count[16] = {}, rank_count[16] = {};
  bool duplicate = false;
  for (count = 0; count < 7 && bytes[count]; ++count) {
    ++suit_count[bytes[count] & 0xF];
    ++rank_count[bytes[count] >> 4];
    if (count > 0 && bytes[count] == bytes[0]) duplicate = true;
  }
  if (duplicate) return 0;
  if (count > 4)
    for (int r = 1; r <= 13; ++r)
      if (rank_count[r] > 4) return 0;
  // A suit held fewer than count - 2 times cannot reach five with the cards still to come.
  const int needed = count - 2;
  if (needed > 1)
    for (int i = 0; i < count; ++i)
      if (suit_count[bytes[i] & 0xF] < needed) bytes[i] &= 0xF0;
  std::sort(bytes, bytes + 7, [](int a, int b) { return a > b; });
  uint64_t result = 0;
  for (int i = 0; i < 7; ++i) result |= static_cast<uint64_t>(bytes[i]) << (8 * i);
  return result;
}

int best_fast(const int* words, int n) {
  int best = 9999;
  for (int a = 0; a < n; ++a)
    for (int b = a + 1; b < n; ++b)
      for (int c = b + 1; c < n; ++c)
        for (int d = c + 1; d < n; ++d)
          for (int e = d + 1; e < n; ++e)
            best = std::min(best, eval_5hand_fast(words[a], words[b], words[c], words[d], words[e]));
  return best;
}

// The category-scale value of an identifier: suitless cards get suits from a counter that cycles
// 1..4 and skips the suit the identifier keeps, so that they make no flush.
int evaluate_id(uint64_t id) {
  if (id == 0) return 0;
  int held[7], n = 0, main_suit = 20;
  for (; n < 7; ++n) {
    held[n] = static_cast<int>((id >> (8 * n)) & 0xFF);
    if (held[n] == 0) break;
    if (held[n] & 0xF) main_suit = held[n] & 0xF;
  }
  int words[7];
  int next_suit = 1;
  auto advance = [&] {
    const int suit = next_suit;
    next_suit = next_suit == 4 ? 1 : next_suit + 1;
    return suit;
  };
  for (int i = 0; i < n; ++i) {
    const int rank = (held[i] >> 4) - 1;
    int suit = held[i] & 0xF;
    if (suit == 0) {
      suit = advance();
      if (suit == main_suit) suit = advance();
    }
    words[i] = pokermath::kRankPrimes[rank] | (rank << 8) | (1 << (suit + 11)) | (1 << (16 + rank));
  }
  if (n < 5) {
    std::printf("    Problem with numcards = %d!!\n", n);
    return 0;
  }
  // Every identifier names distinct cards, so the hash path gives the classes of the binary search.
  return pokermath::category_scale_value(best_fast(words, n));
}

// True when every entry, as a position, leaves room for a card: p + 52 inside HR. Values (the
// seventh card's entries) are small and pass too.
bool entries_stay_inside(const std::vector<uint32_t, pokermath::TableAllocator<uint32_t>>& HR) {
  uint32_t highest = 0;
  for (const uint32_t entry : HR) highest = std::max(highest, entry);
  return highest <= static_cast<uint32_t>(PokerLogic::kTableEntries - kBlock);
}

}  // namespace

namespace pokermath {

int category_scale_value(int hand_class) {
  const int a = 7463 - hand_class;
  static constexpr int kFirst[] = {1278, 4138, 4996, 5854, 5864, 7141, 7297, 7453};
  static constexpr int kOffset[] = {4096, 6915, 8151, 11389, 14627, 18713, 21532, 25472, 29412};
  int i = 0;
  while (i < 8 && a >= kFirst[i]) ++i;
  return a + kOffset[i];
}

}  // namespace pokermath

// Until generate_table runs, HR is one block of zeros: every look-up reads zeros and gives 0, as a
// zero-filled table would, without taking 130 MB from every PokerLogic that never builds it.
PokerLogic::PokerLogic() : m_IDs(kMaxIDs, 0), m_HR(2 * kBlock, 0) {}

uint64_t PokerLogic::MakeID(uint64_t ID, int card) { return make_id(ID, card, m_numcards); }

int PokerLogic::SaveID(uint64_t ID) {
  if (ID == 0) return 0;
  if (static_cast<size_t>(m_numIDs) >= m_IDs.size()) m_IDs.push_back(0);  // never for real hands
  if (ID > m_maxID) {
    m_IDs[m_numIDs] = ID;
    m_maxID = ID;
    return m_numIDs++;
  }
  if (ID == m_maxID) return m_numIDs - 1;
  int low = 0, high = m_numIDs - 1;
  while (high - low >= 2) {
    const int mid = (low + high + 1) / 2;
    if (m_IDs[mid] > ID) high = mid;
    if (m_IDs[mid] < ID) low = mid;
    if (m_IDs[mid] == ID) return mid;
  }
  std::copy_backward(m_IDs.begin() + high, m_IDs.begin() + m_numIDs, m_IDs.begin() + m_numIDs + 1);
  m_IDs[high] = ID;
  ++m_numIDs;
  return high;
}

int PokerLogic::DoEval(uint64_t ID) { return evaluate_id(ID); }

int PokerLogic::generate_table(CString path) {
  m_HR.assign(kTableEntries, 0);
  if (pokermath::file_size(path) == kTableBytes) {
    std::ifstream in(pokermath::to_path(path), std::ios::binary);
    // A file whose entries would lead a look-up outside the table is damaged: it is generated again
    // like a file of the wrong size, so that no later look-up reads past HR.
    if (in.read(reinterpret_cast<char*>(m_HR.data()), kTableBytes) && entries_stay_inside(m_HR)) return 0;
    std::fill(m_HR.begin(), m_HR.end(), 0);
  }

  // The identifiers of 0..6 cards, level by level; each level sorted, and every level above the last.
  std::vector<uint64_t> ids = {0};
  size_t level_begin = 0;
  for (int cards = 1; cards <= 6; ++cards) {
    const size_t level_end = ids.size();
    std::vector<uint64_t> next;
    int count = 0;
    for (size_t i = level_begin; i < level_end; ++i)
      for (int card = 1; card <= 52; ++card)
        if (const uint64_t id = make_id(ids[i], card, count)) next.push_back(id);
    std::sort(next.begin(), next.end());
    next.erase(std::unique(next.begin(), next.end()), next.end());
    ids.insert(ids.end(), next.begin(), next.end());
    level_begin = level_end;
  }
  m_IDs = ids;
  m_IDs.resize(std::max<size_t>(ids.size(), kMaxIDs), 0);
  m_numIDs = static_cast<int>(ids.size());
  m_maxID = ids.back();

  const int n = static_cast<int>(ids.size());
  uint32_t* HR = m_HR.data();
#pragma omp parallel for schedule(dynamic, 1024)
  for (int i = 0; i < n; ++i) {
    int count = 0;
    for (int card = 1; card <= 52; ++card) {
      const uint64_t id = make_id(ids[i], card, count);
      uint32_t entry;
      if (count < 7) {
        const auto at = std::lower_bound(ids.begin(), ids.end(), id) - ids.begin();
        entry = static_cast<uint32_t>(at * kBlock + kBlock);
      } else {
        entry = static_cast<uint32_t>(evaluate_id(id));
      }
      HR[static_cast<size_t>(i) * kBlock + kBlock + card] = entry;
    }
    if (count == 6 || count == 7)
      HR[static_cast<size_t>(i) * kBlock + kBlock] = static_cast<uint32_t>(evaluate_id(ids[i]));
  }
  m_currentSlot = (n - 1) * kBlock + kBlock + 52;
  m_numcards = 7;

  return pokermath::write_file(path, m_HR.data(), static_cast<size_t>(kTableBytes)) ? 0 : 1;
}

int PokerLogic::LookupHand(const int* cards) const {
  POKERMATH_EXPECTS(std::all_of(cards, cards + 7, [](int c) { return c >= 1 && c <= 52; }),
                    "seven one-based rank-major codes 1..52");
  const uint32_t* HR = m_HR.data();
  uint32_t p = HR[53 + cards[0]];
  for (int k = 1; k < 7; ++k) p = HR[p + cards[k]];
  return static_cast<int>(p);
}

int PokerLogic::LookupSingleHands(const int* cards) const {
  POKERMATH_EXPECTS(pokermath::detail::card_codes(cards, 7), "seven card codes 0..51");
  int codes[7];
  for (int i = 0; i < 7; ++i) codes[i] = pokermath::kOneBasedCodes[cards[i]];
  pokermath::detail::sort7(codes);
  return LookupHand(codes);
}

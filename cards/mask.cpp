// Card masks: bit `code` set for each card.
#include "pokermath/cards.h"

namespace {

// Appends the codes of the set bits in increasing order. The walk shifts the mask right one bit at
// a time, so it stops at the highest set bit.
template <typename Sink>
void for_each_bit(uint64_t mask, Sink sink) {
  for (int code = 0; mask != 0; ++code, mask >>= 1)
    if (mask & 1) sink(code);
}

}  // namespace

int Int64ToArray(uint64_t mask, int& count, int* cards) {
  count = 0;
  for_each_bit(mask, [&](int code) { cards[count++] = code; });
  return count;
}

uint64_t ArrayToInt64(int count, const int* cards) {
  uint64_t mask = 0;
  for (int i = 0; i < count; ++i) mask |= uint64_t{1} << (cards[i] & 63);
  return mask;
}

int Int64ToVec(uint64_t mask, std::vector<int>& cards) {
  cards.clear();
  for_each_bit(mask, [&](int code) { cards.push_back(code); });
  return static_cast<int>(cards.size());
}

int Int64ToVec(uint64_t mask, std::vector<uint32_t>& cards) {
  cards.clear();
  for_each_bit(mask, [&](int code) { cards.push_back(static_cast<uint32_t>(code)); });
  return static_cast<int>(cards.size());
}

uint64_t VecToInt64(const std::vector<int>& cards) {
  return ArrayToInt64(static_cast<int>(cards.size()), cards.data());
}

uint64_t MakeOmahaHand(int c1, int c2, int c3, int c4) {
  const int cards[] = {c1, c2, c3, c4};
  return ArrayToInt64(4, cards);
}

uint64_t MakeOmahaHand(int c1, int c2, int c3, int c4, int c5) {
  const int cards[] = {c1, c2, c3, c4, c5};
  return ArrayToInt64(5, cards);
}

uint64_t MakeOmahaHand(int c1, int c2, int c3, int c4, int c5, int c6) {
  const int cards[] = {c1, c2, c3, c4, c5, c6};
  return ArrayToInt64(6, cards);
}

uint64_t MakeOmahaHand(int c1, int c2, int c3, int c4, int c5, int c6, int c7) {
  const int cards[] = {c1, c2, c3, c4, c5, c6, c7};
  return ArrayToInt64(7, cards);
}

// EasyRandom on the C runtime's rand(), and random hands as masks.
#include <cstdlib>
#include <ctime>

#include "pokermath/cards.h"

void EasyRandom::SetInterval(int low, int high) {
  if (low <= high) {
    m_low = low;
    m_high = high;
  } else {
    m_low = 0;
    m_high = 1;
  }
  m_width = m_high - m_low + 1;
}

void EasyRandom::SetTimerSeed() {
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  localtime_r(&now, &local);
  // The seed adds, in this order, the time modulo 19937, the minute, the second and the day.
  const long long seed = static_cast<long long>(now % 19937) + local.tm_min + local.tm_sec + local.tm_mday;
  std::srand(static_cast<unsigned>(seed));
}

int EasyRandom::DrawRandomNumber() const { return std::rand() % m_width + m_low; }

namespace {

template <typename Draw>
uint64_t draw_distinct(int count, Draw draw) {
  uint64_t mask = 0;
  for (int i = 0; i < count; ++i) {
    uint64_t bit;
    do {
      bit = uint64_t{1} << draw();
    } while (mask & bit);
    mask |= bit;
  }
  return mask;
}

}  // namespace

uint64_t GetRandomHand(int count, EasyRandom& random) {
  return draw_distinct(count, [&] { return random.DrawRandomNumber() & 63; });
}

uint64_t GetRandomHand(int count, std::mt19937& engine) {
  return draw_distinct(count, [&] { return static_cast<int>(engine() % 52); });
}

uint64_t GetRandomHand36(int count, EasyRandom& random) {
  return draw_distinct(count, [&] { return pokermath::card_from_short_deck(random.DrawRandomNumber()); });
}

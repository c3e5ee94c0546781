// StrategyRanges: standard first-in opening ranges of a six-handed game.
#include <array>

#include "pokermath/ranges.h"

namespace {

struct SeatRange {
  const wchar_t* seat;
  const char* classes;  // players' notation, read by pokermath::parse_range
};

// Tighter in early seats, wider on the button; the small blind opens a little tighter than the
// button because the big blind still acts behind it.
constexpr std::array<SeatRange, 5> kOpeningRanges = {{
    {L"UTG", "66+,A9s+,KTs+,QTs+,JTs,T9s,AJo+,KQo"},
    {L"HJ", "55+,A7s+,A5s,K9s+,Q9s+,J9s+,T9s,98s,ATo+,KJo+"},
    {L"CO", "33+,A2s+,K8s+,Q9s+,J9s+,T8s+,97s+,87s,76s,65s,A9o+,KTo+,QTo+,JTo"},
    {L"BTN", "22+,A2s+,K4s+,Q6s+,J7s+,T7s+,96s+,85s+,75s+,64s+,54s,A4o+,K9o+,Q9o+,J9o+,T9o"},
    {L"SB", "22+,A2s+,K6s+,Q8s+,J8s+,T8s+,97s+,86s+,75s+,65s,54s,A7o+,A5o,KTo+,QTo+,JTo"},
}};

}  // namespace

void StrategyRanges::MakeSrategyRanges() {
  m_ranges.clear();
  for (const SeatRange& range : kOpeningRanges)
    m_ranges.emplace_back(range.seat, pokermath::parse_range(range.classes));
}

const Spec* StrategyRanges::GetRange(const CString& seat) const {
  for (const auto& [name, range] : m_ranges)
    if (name == seat) return &range;
  return nullptr;
}

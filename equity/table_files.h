// Records of the equity and combination table files: headerless sequences of fixed-size records,
// each a few signed 32-bit integers stored little-endian. Equity records (pre-flop and turn tables)
// are (hero key, villain key, value), 12 bytes; combination records are (combination key, class),
// 8 bytes. The bytes are assembled one by one, so the files read the same on any host.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace pokermath::detail {

template <size_t Fields>
using TableRecord = std::array<int32_t, Fields>;

using EquityRecord = TableRecord<3>;       // hero key, villain key, value
using CombinationRecord = TableRecord<2>;  // combination key, class

template <size_t Fields>
inline constexpr size_t kRecordBytes = 4 * Fields;

inline constexpr size_t kEquityRecordBytes = kRecordBytes<3>;       // 12
inline constexpr size_t kCombinationRecordBytes = kRecordBytes<2>;  // 8

// The record stored at `bytes` (kRecordBytes<Fields> of them).
template <size_t Fields>
TableRecord<Fields> decode_record(const char* bytes) {
  TableRecord<Fields> record{};
  for (size_t field = 0; field < Fields; ++field) {
    uint32_t value = 0;
    for (int b = 3; b >= 0; --b) value = value << 8 | static_cast<unsigned char>(bytes[4 * field + b]);
    record[field] = static_cast<int32_t>(value);
  }
  return record;
}

// Appends the record's bytes to `out`.
template <size_t Fields>
void append_record(std::vector<char>& out, const TableRecord<Fields>& record) {
  for (const int32_t field : record) {
    const auto value = static_cast<uint32_t>(field);
    for (int b = 0; b < 4; ++b) out.push_back(static_cast<char>(value >> (8 * b) & 0xFF));
  }
}

}  // namespace pokermath::detail

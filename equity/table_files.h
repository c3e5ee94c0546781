// Records of the equity and combination table files: headerless sequences of fixed-size records,
// each a few signed 32-bit integers stored little-endian. Equity records (pre-flop and turn tables)
// are (hero key, villain key, value), 12 bytes; combination records are (combination key, class),
// 8 bytes. The bytes are assembled one by one, so the files read the same on any host.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "support/files.h"

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
  for (size_t field = 0; field < Fields; ++field)
    record[field] = static_cast<int32_t>(static_cast<uint32_t>(get_le(bytes + 4 * field, 4)));
  return record;
}

// Appends the record's bytes to `out`.
template <size_t Fields>
void append_record(std::vector<char>& out, const TableRecord<Fields>& record) {
  for (const int32_t field : record) put_le(out, static_cast<uint32_t>(field), 4);
}

}  // namespace pokermath::detail

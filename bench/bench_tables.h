// The large tables for the benchmarks, from the data directory (generated there on first use).
#pragma once

#include <memory>

#include "pokermath/pokermath.h"

namespace bench_tables {

// A PokerLogic with the seven-card table (OrvalisHR.dat) loaded.
inline PokerLogic& logic() {
  static const std::unique_ptr<PokerLogic> logic = [] {
    const auto dir = pokermath::default_data_directory();
    pokermath::generate_table_file(dir, pokermath::TableFile::SevenCardLookup);
    auto l = std::make_unique<PokerLogic>();
    l->generate_table(pokermath::widen((dir / "OrvalisHR.dat").string()));
    return l;
  }();
  return *logic;
}

}  // namespace bench_tables

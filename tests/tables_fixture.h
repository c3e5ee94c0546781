// Access to the large tables that the CTest fixture generates once per build tree.
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <memory>

#include "pokermath/pokermath.h"

namespace tables_fixture {

inline std::filesystem::path data_dir() {
  const char* dir = std::getenv("POKERMATH_DATA_DIR");
  return dir ? std::filesystem::path(dir) : pokermath::default_data_directory();
}

// Loads the four state machines into their process-wide slots.
inline void load_state_machines() {
  for (pokermath::TableFile file : {pokermath::TableFile::Texas7, pokermath::TableFile::Omaha7,
                                    pokermath::TableFile::SixPlus5, pokermath::TableFile::SixPlus7})
    pokermath::load_table(file, data_dir());
}

// A PokerLogic with the seven-card table loaded from the fixture's OrvalisHR.dat.
inline const PokerLogic& logic_with_table() {
  static const std::unique_ptr<PokerLogic> logic = [] {
    auto l = std::make_unique<PokerLogic>();
    const std::wstring path = pokermath::widen((data_dir() / "OrvalisHR.dat").string());
    EXPECT_EQ(l->generate_table(path), 0);
    return l;
  }();
  return *logic;
}

// The smallest class over the 21 five-card subsets through the hash path: eval_7hand's value, since
// both five-card paths agree on every hand (five_card_exhaustive_test).
inline int best_class_of_seven(const int* words) {
  int best = 9999;
  for (int a = 0; a < 7; ++a)
    for (int b = a + 1; b < 7; ++b)
      for (int c = b + 1; c < 7; ++c)
        for (int d = c + 1; d < 7; ++d)
          for (int e = d + 1; e < 7; ++e)
            best = std::min(best, eval_5hand_fast(words[a], words[b], words[c], words[d], words[e]));
  return best;
}

}  // namespace tables_fixture

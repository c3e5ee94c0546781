// The constant data behind the built-in range tables (class orders, keys, stored texts, Sklansky
// groups, the strength orders) and the entry selection the tables share.
#pragma once

#include <array>
#include <map>
#include <string_view>
#include <vector>

#include "pokermath/ranges.h"

namespace pokermath::detail {

// A short-deck equity table entry: the class added and its key (per cent of 630, as stored).
struct KeyedClass {
  std::wstring_view name;
  double key;
};

// A text stored for one entry instead of the derived range string (entry numbers from 1).
struct StoredText {
  int entry;
  std::wstring_view text;
};

// One step of the group tables: the key and the classes added at it.
struct GroupStep {
  double key;
  std::wstring_view classes;
};

// A stored key and text of the brenmark table.
struct KeyedText {
  double key;
  std::wstring_view text;
};

extern const std::wstring_view kEquityOrder;                    // 169 classes, InitEquil
extern const std::array<KeyedClass, 81> kShortDeckEquityOrder;  // InitEquil6Plus
extern const std::array<StoredText, 6> kShortDeckStoredTexts;   // InitEquil6Plus exceptions
extern const std::array<GroupStep, 15> kGroupSteps;             // Init
extern const std::wstring_view kBrenmarkLastStep;               // InitBrenmark at 40.0
extern const std::array<KeyedText, 16> kBrenmarkTexts;          // InitBrenmark
extern const std::array<std::wstring_view, 8> kSklanskyGroups;  // groups 1..8
extern const std::wstring_view kStrengthOrder;                  // MakeBestHand, MakeNextForceHand

// The cells of the Hold'em equity order and of the short-deck equity order, parsed once.
const std::vector<int>& equity_order();
const std::vector<int>& short_deck_equity_order();

// Selects the largest entry with key <= percent (the first entry when percent lies below it;
// the last when above every key), copies its Spec to `out` and its text (empty when `texts` has
// none under that key) to `text`, and returns the key. An empty table gives an empty Spec and
// text and returns 0.
double select_entry(const std::map<double, Spec>& table, const std::map<double, CString>& texts, double percent,
                    Spec& out, CString& text);

}  // namespace pokermath::detail

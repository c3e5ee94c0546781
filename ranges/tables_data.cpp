// The constant data of the built-in range tables, and the entry selection they share.
#include "ranges/tables.h"

#include "ranges/hand_classes.h"

namespace pokermath::detail {

// The Hold'em classes in order of equity, strongest first: entry i of the equity table holds the
// first i + 1 of them.
const std::wstring_view kEquityOrder =
    L"AA KK QQ JJ TT AKs 99 AQs AKo AJs KQs 88 ATs AQo KJs KTs QJs AJo KQo QTs A9s 77 ATo JTs KJo A8s K9s "
    L"QJo A7s KTo Q9s A5s 66 A6s QTo J9s A9o T9s A4s K8s JTo K7s A8o A3s Q8s K9o A2s K6s J8s T8s A7o 55 "
    L"Q9o 98s K5s Q7s J9o A5o T9o A6o K4s K8o Q6s J7s T7s A4o 97s K3s 87s Q5s K7o 44 Q8o A3o K2s J8o Q4s "
    L"T8o J6s K6o A2o T6s 98o 76s 86s 96s Q3s J5s K5o Q7o Q2s J4s 33 65s J7o T7o K4o 75s T5s Q6o J3s 95s "
    L"87o 85s 97o T4s K3o J2s 54s Q5o 64s T3s 22 K2o 74s 76o T2s Q4o J6o 84s 94s 86o T6o 96o 53s 93s Q3o "
    L"J5o 63s 43s 92s 73s 65o Q2o J4o 83s 75o 52s 85o 82s T5o 95o J3o 62s 54o 42s T4o J2o 72s 64o T3o 32s "
    L"74o 84o T2o 94o 53o 93o 63o 43o 92o 73o 83o 52o 82o 42o 62o 72o 32o";

// The short-deck classes in the same sense, each with its key: per cent of 630 combinations,
// stored (not recomputed) so that the table serves exactly these keys.
const std::array<KeyedClass, 81> kShortDeckEquityOrder = {{
    {L"AA", 0.95},   {L"KK", 1.91},   {L"QQ", 2.86},   {L"JJ", 3.81},   {L"TT", 4.77},   {L"AKs", 5.4},
    {L"99", 6.35},   {L"AQs", 6.99},  {L"AKo", 8.89},  {L"AJs", 9.53},  {L"KQs", 10.16}, {L"88", 11.12},
    {L"ATs", 11.75}, {L"AQo", 13.66}, {L"KJs", 14.29}, {L"KTs", 14.93}, {L"QJs", 15.56}, {L"AJo", 17.47},
    {L"KQo", 19.37}, {L"QTs", 20.0},  {L"A9s", 20.64}, {L"77", 21.59},  {L"ATo", 23.5},  {L"JTs", 24.13},
    {L"KJo", 26.04}, {L"A8s", 26.67}, {L"K9s", 27.31}, {L"QJo", 29.21}, {L"A7s", 29.85}, {L"KTo", 31.75},
    {L"Q9s", 32.39}, {L"66", 33.34},  {L"A6s", 33.97}, {L"QTo", 35.88}, {L"J9s", 36.51}, {L"A9o", 38.42},
    {L"T9s", 39.05}, {L"K8s", 39.69}, {L"JTo", 41.59}, {L"K7s", 42.23}, {L"A8o", 44.13}, {L"Q8s", 44.77},
    {L"K9o", 46.67}, {L"K6s", 47.31}, {L"J8s", 47.94}, {L"T8s", 48.58}, {L"A7o", 50.48}, {L"Q9o", 52.39},
    {L"98s", 53.02}, {L"Q7s", 53.66}, {L"J9o", 55.56}, {L"T9o", 57.47}, {L"A6o", 59.37}, {L"K8o", 61.27},
    {L"Q6s", 61.91}, {L"J7s", 62.54}, {L"T7s", 63.18}, {L"97s", 63.81}, {L"87s", 64.45}, {L"K7o", 66.35},
    {L"Q8o", 68.26}, {L"J8o", 70.16}, {L"T8o", 72.07}, {L"J6s", 72.7},  {L"K6o", 74.61}, {L"T6s", 75.24},
    {L"98o", 77.15}, {L"76s", 77.78}, {L"86s", 78.42}, {L"96s", 79.05}, {L"Q7o", 80.96}, {L"J7o", 82.86},
    {L"T7o", 84.77}, {L"Q6o", 86.67}, {L"87o", 88.58}, {L"97o", 90.48}, {L"76o", 92.39}, {L"J6o", 94.29},
    {L"86o", 96.2},  {L"T6o", 98.1},  {L"96o", 100.0},
}};

// Texts of the short-deck table that differ from the derived range string; they are part of the
// table's data and are served as they are (entry 45 names "A2s+"; entries 77 to 81 read "87s+"
// where the rule gives "86s+").
const std::array<StoredText, 6> kShortDeckStoredTexts = {{
    {45, L"66+,A2s+,K6s+,Q8s+,J8s+,T9s,A8o+,K9o+,QTo+,JTo"},
    {77, L"66+,A6s+,K6s+,Q6s+,J6s+,T6s+,96s+,87s+,76s,A6o+,K6o+,Q6o+,J7o+,T7o+,97o+,87o,76o"},
    {78, L"66+,A6s+,K6s+,Q6s+,J6s+,T6s+,96s+,87s+,76s,A6o+,K6o+,Q6o+,J6o+,T7o+,97o+,87o,76o"},
    {79, L"66+,A6s+,K6s+,Q6s+,J6s+,T6s+,96s+,87s+,76s,A6o+,K6o+,Q6o+,J6o+,T7o+,97o+,86o+,76o"},
    {80, L"66+,A6s+,K6s+,Q6s+,J6s+,T6s+,96s+,87s+,76s,A6o+,K6o+,Q6o+,J6o+,T6o+,97o+,86o+,76o"},
    {81, L"66+,A6s+,K6s+,Q6s+,J6s+,T6s+,96s+,87s+,76s,A6o+,K6o+,Q6o+,J6o+,T6o+,96o+,86o+,76o"},
}};

// The Sklansky-group steps of the groups table: the key and the classes added at it.
const std::array<GroupStep, 15> kGroupSteps = {{
    {0.9, L"AA KK"},
    {3.0, L"QQ JJ AKs AKo"},
    {3.8, L"TT AQs"},
    {4.7, L"AQo"},
    {5.9, L"99 88 AJs"},
    {7.1, L"AJo KQs"},
    {8.4, L"77 ATs KJs QJs"},
    {10.0, L"A9s KTs KQo"},
    {12.2, L"66 A8s QTs JTs ATo"},
    {14.3, L"A7s A6s A5s K9s KJo"},
    {16.0, L"A9o QJo"},
    {20.1, L"A4s Q9s J9s T9s KTo QTo JTo"},
    {23.4, L"55 44 33 22 A3s A2s T8s 98s 87s 76s 65s 54s A8o"},
    {30.0, L"K8s Q8s J8s 97s 86s 75s 64s 53s 43s 32s A7o A6o"},
    {40.0, L"Q7s J7s T7s A5o A4o A3o A2o K9o K8o Q9o J9o"},
}};

// The brenmark table runs the group steps up to 30.0 and then adds these at 40.0.
const std::wstring_view kBrenmarkLastStep = L"K7s K6s K5s K4s K3s K2s Q7s J7s";

// The brenmark table's keys and stored texts ("AK" there means both AKs and AKo; the 40.0 text
// names more classes than its range holds).
const std::array<KeyedText, 16> kBrenmarkTexts = {{
    {0.3, L"AA"},
    {0.9, L"KK+"},
    {3.0, L"JJ+,AK"},
    {3.8, L"TT+,AK,AQs"},
    {4.7, L"TT+,AQ+"},
    {5.9, L"88+,AJs,AQ+"},
    {7.1, L"88+,AJ+,KQs"},
    {8.4, L"77+,AJ+,ATs,KJs+,QJs"},
    {10.0, L"77+,A9s+,KTs+,QJs,AJo+,KQo"},
    {12.2, L"66+,A8s+,KTs+,QTs+,JTs,ATo+,KQo"},
    {14.3, L"66+,A5s+,K9s+,QTs+,JTs,ATo+,KJo+"},
    {16.0, L"66+,A5s+,K9s+,QTs+,JTs,A9o+,KJo+,QJo"},
    {20.1, L"66+,A4s+,K9s+,Q9s+,J9s+,T9s,A9o+,KTo+,QTo+,JTo"},
    {23.4, L"22+,A2s+,K9s+,Q9s+,J9s+,T8s+,98s,87s,76s,65s,54s,A8o+,KTo+,QTo+,JTo"},
    {30.0, L"22+,A2s+,K8s+,Q8s+,J8s+,T8s+,97s+,86s+,75s+,64s+,53s+,43s,32s,A6o+,KTo+,QTo+,JTo"},
    {40.0, L"22+,A2s+,K2s+,Q7s+,J7s+,T7s+,97s+,86s+,75s+,64s+,53s+,42s+,32s,A2o+,K8o+,Q9o+,J9o"},
}};

// Sklansky's eight groups of starting hands, strongest first.
const std::array<std::wstring_view, 8> kSklanskyGroups = {
    L"AA KK QQ JJ AKs",
    L"TT AQs AJs KQs AKo",
    L"99 ATs KJs QJs JTs AQo",
    L"88 KTs QTs J9s T9s 98s AJo KQo",
    L"77 A9s A8s A7s A6s A5s A4s A3s A2s Q9s T8s 97s 87s 76s 65s KJo QJo JTo",
    L"66 55 K9s J8s 86s 75s 54s ATo KTo QTo",
    L"44 33 22 K8s K7s K6s K5s K4s K3s K2s Q8s T7s 64s 53s 43s J9o T9o 98o",
    L"J7s 96s 85s 74s 42s 32s A9o K9o Q9o J8o T8o 87o 76o 65o 54o",
};

// The strength order of MakeBestHand and MakeNextForceHand, strongest first.
const std::wstring_view kStrengthOrder =
    L"AA KK QQ AKs JJ AQs KQs AJs KJs TT AKo QJs ATs KTs QTs JTs 99 AQo KQo A9s 88 T9s K9s J9s Q9s A8s "
    L"AJo 77 A7s A5s KJo A4s 66 A6s QJo 98s T8s A3s K8s ATo J8s A2s Q8s 55 KTo K7s 44 22 33 87s JTo QTo "
    L"K6s 97s 76s T7s K5s K4s 65s 86s Q7s J7s K3s K2s 54s Q6s 75s 96s Q5s 64s A9o Q4s T6s 53s T9o Q3s Q2s "
    L"85s J6s K9o J9o 43s 74s J5s Q9o A8o J4s 95s J3s 63s J2s 52s T5s 84s 42s A7o T4s A5o T3s T2s 98o 73s "
    L"T8o 32s A4o 94s A6o 62s 93s A3o K8o 92s J8o 83s 87o Q8o A2o 82s K7o 72s 97o 76o K6o 65o T7o 86o 54o "
    L"K5o J7o K4o Q7o 75o K3o K2o 64o 96o Q6o 53o Q5o 85o T6o 43o Q4o Q3o 74o Q2o J6o 63o J5o 52o 95o J4o "
    L"42o J3o J2o 84o T5o 32o T4o 73o T3o T2o 62o 94o 93o 92o 83o 82o 72o";
const std::vector<int>& equity_order() {
  static const std::vector<int> order = cells_of_class_list(kEquityOrder);
  return order;
}

const std::vector<int>& short_deck_equity_order() {
  static const std::vector<int> order = [] {
    std::vector<int> cells;
    for (const KeyedClass& entry : kShortDeckEquityOrder) cells.push_back(cell_of_class_name(entry.name));
    return cells;
  }();
  return order;
}

double select_entry(const std::map<double, Spec>& table, const std::map<double, CString>& texts, double percent,
                    Spec& out, CString& text) {
  if (table.empty()) {
    out = Spec();
    text.clear();
    return 0;
  }
  auto entry = table.upper_bound(percent);  // the first key above percent
  if (entry != table.begin()) --entry;
  out = entry->second;
  const auto stored = texts.find(entry->first);
  text = stored != texts.end() ? stored->second : CString();
  return entry->first;
}

}  // namespace pokermath::detail

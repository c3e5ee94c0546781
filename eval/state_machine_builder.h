// Builds the state-machine evaluators: tables walked with one read per card.
//
// A table is an array of int32 entries in blocks of D (the deck size, 52 or 36). Entries 0..D-1
// are zero, the start state is D, and a state is the index of its block: adding card x (the
// deck's own code, 4 * rank + suit) to state S leads to T[S + x]; after the last card the entry is
// the hand's value (larger is stronger). A card that cannot be added (it is already held, or a
// fifth card of a rank) leads to 0, and every walk through 0 ends with the value 0.
#pragma once

#include <algorithm>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace pokermath::detail {

struct StateMachine {
  int deck_size = 0;             // D: 52 or 36
  int cards = 0;                 // cards walked per hand
  std::vector<int32_t> entries;  // the table, start state at index deck_size
};

// Reports progress of a long build: a short stage name and a fraction 0..1.
using BuildProgress = std::function<void(const std::string& stage, double fraction)>;

// Hold'em machines. deck_size 52: rank-major codes, values on the ascending five-card scale
// (7463 - class, 7462 = royal flush). deck_size 36: short-deck codes, values on the short-deck
// scale 1..1404. cards: 5 or 7; the value is that of the best five of the cards walked.
StateMachine build_holdem_machine(int deck_size, int cards, const BuildProgress& progress = {});

// The Omaha machine: five board cards, then two hole cards (rank-major codes); the value is the best
// hand of exactly those two hole cards and three of the board cards, on the ascending 52-card scale.
StateMachine build_omaha_machine(const BuildProgress& progress = {});

// The value of five card codes on the ascending 52-card scale (7463 - class, larger is stronger), and
// on the short-deck scale (1..1404; five cards six or higher).
int ascending_value(const int* five);
int short_deck_value(const int* five);

// The largest five_value(five) over the five-card subsets of n card codes.
template <typename FiveValue>
int best_of_fives(const int* codes, int n, FiveValue five_value) {
  int best = 0;
  int five[5];
  for (int a = 0; a < n; ++a)
    for (int b = a + 1; b < n; ++b)
      for (int c = b + 1; c < n; ++c)
        for (int d = c + 1; d < n; ++d)
          for (int e = d + 1; e < n; ++e) {
            five[0] = codes[a], five[1] = codes[b], five[2] = codes[c], five[3] = codes[d], five[4] = codes[e];
            best = std::max(best, five_value(five));
          }
  return best;
}

// The short-deck value (1..1404, larger is stronger; A-6-7-8-9 the lowest straight, three of a kind
// above a straight, a flush above a full house) of a five-card class of the 52-card evaluator, for
// every class a short-deck hand can have; 0 for the others. Index 0..7462.
const std::vector<int>& short_deck_value_of_class();

}  // namespace pokermath::detail

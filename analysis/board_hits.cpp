// How a two-card combination hits a flop or a turn: its made hand and its draws, for one
// combination (classify_on_board) or tallied over a weighted range (board_hits).
//
// Definitions:
// - The board has 3 (flop) or 4 (turn) cards; the hand is the two hole cards plus the board.
// - Made hand, first match wins:
//   1. Straight flush, quads, full house, flush, straight: the best five-card category of
//      hole+board is one of these AND is better than the category of the board alone (so a board
//      of four kings gives "board pair only" or better, not quads for everybody).
//   2. Set: a pocket pair whose rank is on the board once (three of a kind). Trips: one hole card
//      whose rank is on the board twice (three of a kind). (Three of a kind on the board alone,
//      with nothing better from the hand, is "board pair only".)
//   3. Two pair: each hole card pairs a different board rank (hole ranks differ, both on the board).
//   4. A pocket pair not on the board: overpair when above every board rank; second pair when
//      between the board's highest and second-highest distinct ranks; else underpair or weak pair.
//   5. One hole card pairs a board rank (the other hole card's rank is not on the board): the
//      board's highest rank -> top pair, split by the other hole card (the kicker): list the ranks
//      A down to 2 leaving out every rank on the board; the kicker is "top kicker" when it is the
//      first rank of that list, "good kicker" when it is the second or third, else "weak kicker".
//      Pairing the board's second-highest distinct rank -> second pair; a lower board rank ->
//      underpair or weak pair.
//   6. The board is paired (any rank twice or more on the board) -> board pair only.
//   7. Otherwise no made hand.
// - Draws (flags, independent of the made hand):
//   - flush draw: no flush or straight flush is made, and some suit has exactly 4 cards among
//     hole+board with at least one of them a hole card. Nut flush draw: a flush draw whose hole
//     cards include the highest rank of that suit that is not on the board.
//   - straight draws: only when no straight (or straight flush) is made. A rank r "completes" when
//     adding a card of rank r gives hole+board+r a straight higher than any straight of board+r
//     alone (so the hand's own cards must matter). Open-ended: two or more ranks complete;
//     gutshot: exactly one. (Ace plays high and low: A2345 is the lowest straight.)
//   - combo draw: flush draw together with an open-ended draw or a gutshot.
//   - backdoor flush draw (flop only): no flush draw and no flush, and some suit has exactly 3
//     cards among the 5 with at least one hole card.
//   - backdoor straight draw (flop only): no straight and no straight draw, and some two ranks
//     r1 <= r2 added together give hole+board+r1+r2 a straight higher than any of board+r1+r2.
// - board_hits: every combination of the range that shares no card with the board counts 1 and
//   weight/100 into its made class and into every draw flag it has (index = bit number of the
//   flag); `combos` and `weight` are the totals.
//
// Everything works on 13-bit rank masks (bit = rank index): one mask per suit, and the ranks held
// at least once, twice, three and four times. The facts of the board alone are computed once per
// board, so a combination costs a few dozen bit operations and table look-ups.
#include <array>
#include <bit>
#include <cstdint>
#include <string>
#include <vector>

#include "pokermath/analysis.h"
#include "pokermath/cards.h"
#include "pokermath/support.h"

namespace pokermath {

namespace {

constexpr int kRanks = 13;
constexpr uint32_t kAllRanks = (1u << kRanks) - 1;

// The best straight of a rank mask as a number that grows with its top card: 1 for 5-4-3-2-A up
// to 10 for A-K-Q-J-T, 0 when the ranks hold no straight.
constexpr int straight_rank(uint32_t ranks) {
  const uint32_t m = (ranks << 1) | (ranks >> 12 & 1);          // bit 0: the ace playing low
  const uint32_t runs = m & m >> 1 & m >> 2 & m >> 3 & m >> 4;  // bit j: five ranks from bit j up
  return std::bit_width(runs);
}

// straight_rank of every rank mask, so each test of a completing rank is one look-up.
constexpr std::array<uint8_t, 1u << kRanks> kStraightRank = [] {
  std::array<uint8_t, 1u << kRanks> table{};
  for (uint32_t m = 0; m <= kAllRanks; ++m) table[m] = static_cast<uint8_t>(straight_rank(m));
  return table;
}();

// The ten straights as rank masks, the wheel (A-2-3-4-5) first.
constexpr std::array<uint32_t, 10> kStraightMasks = [] {
  std::array<uint32_t, 10> masks{};
  masks[0] = 0x100f;
  for (int low = 0; low < 9; ++low) masks[low + 1] = 0x1fu << low;
  return masks;
}();

// The five-card categories of the first made-hand step, weakest first; kLower stands for every
// category below a straight. The board alone is kQuads (four of a rank on the turn) or kLower.
enum Category { kLower, kStraight, kFlush, kFullHouse, kQuads, kStraightFlush };

std::string quoted_card(int card) { return "'" + card_to_string(card) + "'"; }

void check_code(int card, const char* what) {
  if (card < 0 || card > 51)
    throw Error("bad " + std::string(what) + " card code " + std::to_string(card) + ": must be 0..51");
}

// What a combination's classification needs to know about the board, computed once per board.
struct BoardFacts {
  bool flop = true;
  uint64_t cards = 0;                                       // card mask of the board
  std::array<uint32_t, 4> suit_ranks{};                     // ranks of each suit on the board
  std::array<int, 4> nut_rank{};                            // the highest rank of each suit not on the board
  std::array<uint8_t, kRanks> count{};                      // cards of each rank on the board
  uint32_t ranks1 = 0, ranks2 = 0, ranks3 = 0, ranks4 = 0;  // ranks on it at least 1, 2, 3, 4 times
  int top = -1, second = -1;                                // the highest and second-highest distinct board ranks
  std::array<MadeHand, kRanks> top_pair{};                  // top pair by the rank of the kicker
  std::array<uint8_t, kRanks> board_straight{};             // straight_rank of the board plus one rank

  explicit BoardFacts(const std::vector<int>& board) {
    const int size = static_cast<int>(board.size());
    if (size != 3 && size != 4) throw Error("the board must have 3 or 4 cards, got " + std::to_string(size));
    for (int card : board) check_code(card, "board");
    for (int card : board) {
      if (cards >> card & 1) throw Error("card " + quoted_card(card) + " is on the board twice");
      cards |= uint64_t{1} << card;
      add_rank(card % kRanks, ranks1, ranks2, ranks3, ranks4);
      suit_ranks[card / kRanks] |= 1u << (card % kRanks);
      ++count[card % kRanks];
    }
    flop = size == 3;
    for (int s = 0; s < 4; ++s) nut_rank[s] = std::bit_width(~suit_ranks[s] & kAllRanks) - 1;
    top = std::bit_width(ranks1) - 1;
    second = std::bit_width(ranks1 & ~(1u << top)) - 1;
    // The kicker's place among the ranks off the board, from the ace down: first is the top
    // kicker, second or third a good one.
    for (int k = 0; k < kRanks; ++k) {
      const int above = std::popcount(~ranks1 & kAllRanks & ~((2u << k) - 1));
      top_pair[k] = above == 0   ? MadeHand::TopPairTopKicker
                    : above <= 2 ? MadeHand::TopPairGoodKicker
                                 : MadeHand::TopPairWeakKicker;
      board_straight[k] = kStraightRank[ranks1 | 1u << k];
    }
  }

  // Adds one card of rank r to the masks of ranks held at least 1..4 times.
  static void add_rank(int r, uint32_t& m1, uint32_t& m2, uint32_t& m3, uint32_t& m4) {
    const uint32_t bit = 1u << r;
    m4 |= m3 & bit;
    m3 |= m2 & bit;
    m2 |= m1 & bit;
    m1 |= bit;
  }
};

// The made hand of two valid hole cards not on the board, steps 1 to 7 of the definitions.
MadeHand made_hand(const BoardFacts& b, int r1, int r2, uint32_t m1, uint32_t m2, uint32_t m3, uint32_t m4,
                   uint32_t flush_ranks) {
  Category category = kLower;
  if (flush_ranks && kStraightRank[flush_ranks])
    category = kStraightFlush;
  else if (m4)
    category = kQuads;
  else if (m3 && std::popcount(m2) >= 2)
    category = kFullHouse;
  else if (flush_ranks)
    category = kFlush;
  else if (kStraightRank[m1])
    category = kStraight;
  const Category board_category = b.ranks4 ? kQuads : kLower;
  if (category > board_category) {
    switch (category) {
      case kStraightFlush: return MadeHand::StraightFlush;
      case kQuads: return MadeHand::Quads;
      case kFullHouse: return MadeHand::FullHouse;
      case kFlush: return MadeHand::Flush;
      default: return MadeHand::Straight;
    }
  }

  const int n1 = b.count[r1], n2 = b.count[r2];
  if (r1 == r2) {
    if (n1 == 1) return MadeHand::Set;
    if (n1 == 0) {
      if (r1 > b.top) return MadeHand::Overpair;
      if (r1 > b.second && b.second >= 0) return MadeHand::SecondPair;
      return MadeHand::WeakPair;
    }
  } else {
    if (n1 == 2 || n2 == 2) return MadeHand::Trips;
    if (n1 && n2) return MadeHand::TwoPair;
    if (n1 || n2) {
      const int paired = n1 ? r1 : r2, kicker = n1 ? r2 : r1;
      if (paired == b.top) return b.top_pair[kicker];
      return paired == b.second ? MadeHand::SecondPair : MadeHand::WeakPair;
    }
  }
  return b.ranks2 ? MadeHand::BoardPairOnly : MadeHand::NoMadeHand;
}

// Classifies two valid hole cards that share no card with the board or each other.
HandOnBoard classify(const BoardFacts& b, int card1, int card2) {
  const int r1 = card1 % kRanks, s1 = card1 / kRanks, r2 = card2 % kRanks, s2 = card2 / kRanks;
  uint32_t m1 = b.ranks1, m2 = b.ranks2, m3 = b.ranks3, m4 = b.ranks4;
  BoardFacts::add_rank(r1, m1, m2, m3, m4);
  BoardFacts::add_rank(r2, m1, m2, m3, m4);

  // The board alone holds at most four cards of a suit, so flushes and flush draws lie in the
  // suits of the hole cards.
  const uint32_t suit1 = b.suit_ranks[s1] | 1u << r1 | (s2 == s1 ? 1u << r2 : 0);
  const uint32_t suit2 = s2 == s1 ? 0 : b.suit_ranks[s2] | 1u << r2;
  const int n1 = std::popcount(suit1), n2 = std::popcount(suit2);
  const uint32_t flush_ranks = n1 >= 5 ? suit1 : n2 >= 5 ? suit2 : 0;

  HandOnBoard hand;
  hand.made = made_hand(b, r1, r2, m1, m2, m3, m4, flush_ranks);

  uint32_t draws = 0;
  if (!flush_ranks) {
    if (n1 == 4 || n2 == 4) {
      draws |= kFlushDraw;
      const int suit = n1 == 4 ? s1 : s2;
      if ((s1 == suit && r1 == b.nut_rank[suit]) || (s2 == suit && r2 == b.nut_rank[suit])) draws |= kNutFlushDraw;
    } else if (b.flop && (n1 == 3 || n2 == 3)) {
      draws |= kBackdoorFlushDraw;
    }
  }

  if (!kStraightRank[m1]) {
    int completing = 0;
    for (int r = 0; r < kRanks; ++r) completing += kStraightRank[m1 | 1u << r] > b.board_straight[r];
    if (completing >= 2)
      draws |= kOpenEndedDraw;
    else if (completing == 1)
      draws |= kGutshot;
    else if (b.flop) {
      // With no rank completing alone, a straight the two runner ranks make with the hand lacks
      // exactly those two ranks: trying each straight with two ranks missing tries every useful pair.
      for (uint32_t straight : kStraightMasks) {
        const uint32_t missing = straight & ~m1;
        if (std::popcount(missing) == 2 && kStraightRank[m1 | straight] > kStraightRank[b.ranks1 | missing]) {
          draws |= kBackdoorStraightDraw;
          break;
        }
      }
    }
  }
  if ((draws & kFlushDraw) && (draws & (kOpenEndedDraw | kGutshot))) draws |= kComboDraw;
  hand.draws = draws;
  return hand;
}

}  // namespace

std::string made_hand_name(MadeHand hand) {
  static constexpr const char* kNames[kMadeHands] = {"straight flush",
                                                     "quads",
                                                     "full house",
                                                     "flush",
                                                     "straight",
                                                     "set",
                                                     "trips",
                                                     "two pair",
                                                     "overpair",
                                                     "top pair, top kicker",
                                                     "top pair, good kicker",
                                                     "top pair, weak kicker",
                                                     "second pair",
                                                     "underpair or weak pair",
                                                     "board pair only",
                                                     "no made hand"};
  const int index = static_cast<int>(hand);
  if (index < 0 || index >= kMadeHands) throw Error("bad made hand " + std::to_string(index));
  return kNames[index];
}

std::string draw_name(Draw draw) {
  static constexpr const char* kNames[kDraws] = {
      "flush draw", "nut flush draw",      "open-ended straight draw", "gutshot",
      "combo draw", "backdoor flush draw", "backdoor straight draw"};
  const uint32_t flag = draw;
  if (!std::has_single_bit(flag) || std::countr_zero(flag) >= kDraws)
    throw Error("bad draw flag " + std::to_string(flag) + ": must be one Draw flag");
  return kNames[std::countr_zero(flag)];
}

HandOnBoard classify_on_board(int card1, int card2, const std::vector<int>& board) {
  const BoardFacts facts(board);
  check_code(card1, "hole");
  check_code(card2, "hole");
  if (card1 == card2) throw Error("the two hole cards are the same card " + quoted_card(card1));
  for (int card : {card1, card2})
    if (facts.cards >> card & 1) throw Error("hole card " + quoted_card(card) + " is also on the board");
  return classify(facts, card1, card2);
}

BoardHits board_hits(const WeightedRange& range, const std::vector<int>& board) {
  const BoardFacts facts(board);
  BoardHits hits;
  hits.board = board;
  for (const WeightedCombo& combo : range.combos()) {
    if ((facts.cards >> combo.card1 & 1) || (facts.cards >> combo.card2 & 1)) continue;
    const HandOnBoard hand = classify(facts, combo.card1, combo.card2);
    const double weight = combo.weight / 100;
    ++hits.combos;
    hits.weight += weight;
    ++hits.made_combos[static_cast<int>(hand.made)];
    hits.made_weight[static_cast<int>(hand.made)] += weight;
    for (uint32_t draws = hand.draws; draws; draws &= draws - 1) {
      const int bit = std::countr_zero(draws);
      ++hits.draw_combos[bit];
      hits.draw_weight[bit] += weight;
    }
  }
  return hits;
}

}  // namespace pokermath

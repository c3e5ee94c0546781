#include "equity/holdem_players.h"

#include <algorithm>
#include <bit>
#include <set>
#include <unordered_map>
#include <unordered_set>

#include "equity/requests.h"

namespace pokermath::detail {

std::vector<HoldemPlayer> read_holdem_players(const EquityRequest& request, uint64_t& known, uint64_t deck) {
  const size_t n = request.players.size();
  std::vector<HoldemPlayer> players(n);
  // Given hands first: their cards are known to everybody else. A text of exactly two cards is a
  // hand; other card lists ("AsKs,QhQd") are ranges of exact hands.
  for (size_t i = 0; i < n; ++i) {
    HoldemPlayer& p = players[i];
    p.text = request.players[i];
    std::vector<int> cards;
    try {
      cards = parse_cards(p.text);
    } catch (const Error&) {
      continue;  // not a list of cards: a range or "random"
    }
    if (cards.size() != 2) continue;
    for (int c : cards) {
      if (known >> c & 1) throw Error(ordinal(i) + ": card '" + card_to_string(c) + "' is already in play");
      if (!(deck >> c & 1))
        throw Error(ordinal(i) + ": card '" + card_to_string(c) + "' is not in the short deck (six to ace)");
      known |= uint64_t{1} << c;
    }
    p.combos = {Combo{{cards[0], cards[1]}, uint64_t{1} << cards[0] | uint64_t{1} << cards[1]}};
    p.fixed = true;
  }
  for (size_t i = 0; i < n; ++i) {
    HoldemPlayer& p = players[i];
    if (p.fixed) continue;
    WeightedRange range;
    if (is_random(p.text)) {
      range = WeightedRange(parse_range("random"));
      p.random = true;
    } else {
      try {
        range = parse_weighted_range(p.text);
      } catch (const Error& e) {
        bool cards = true;  // a list of cards that is no range: say what a hand is
        try {
          parse_cards(p.text);
        } catch (const Error&) {
          cards = false;
        }
        if (cards) throw Error(ordinal(i) + ": a Hold'em hand is two cards, got '" + p.text + "'");
        throw Error(ordinal(i) + ": " + e.what());
      }
    }
    const std::vector<WeightedCombo> combos = range.combos();
    // Outside the full deck, a range naming a card the deck lacks (below six in the short deck) is
    // a mistake, not a filter; "random" is any hand of the deck.
    if (!p.random)
      for (const WeightedCombo& c : combos)
        if (const uint64_t outside = (uint64_t{1} << c.card1 | uint64_t{1} << c.card2) & ~deck)
          throw Error(ordinal(i) + ": the range '" + p.text + "' holds '" + card_to_string(std::countr_zero(outside)) +
                      "', which is not in the short deck (six to ace)");
    for (const WeightedCombo& c : combos) {
      const uint64_t mask = uint64_t{1} << c.card1 | uint64_t{1} << c.card2;
      if ((known & mask) || (deck & mask) != mask) continue;
      p.combos.push_back({{c.card1, c.card2}, mask, c.weight / 100});
    }
    if (p.combos.empty())
      throw Error(ordinal(i) + ": the range '" + p.text + "' has no hand left once the known cards are removed");
    p.weighted = std::any_of(p.combos.begin(), p.combos.end(),
                             [&](const Combo& c) { return c.weight != p.combos.front().weight; });
  }
  return players;
}

bool any_weighted(const std::vector<HoldemPlayer>& players) {
  return std::any_of(players.begin(), players.end(), [](const HoldemPlayer& p) { return p.weighted; });
}

bool dealable(const std::vector<HoldemPlayer>& players) {
  // Given hands never collide (they were checked as they were read), and every other player's hands
  // avoid them: with one player left to choose, any of its hands will do.
  if (std::count_if(players.begin(), players.end(), [](const HoldemPlayer& p) { return !p.fixed; }) <= 1) return true;
  // A depth-first search for one tuple, remembering the (player, cards used) states that failed:
  // many ways of dealing the first players leave the same cards, and each is tried once.
  std::vector<std::unordered_set<uint64_t>> failed(players.size());
  auto level = [&](auto& self, size_t i, uint64_t used) -> bool {
    if (i == players.size()) return true;
    if (failed[i].count(used)) return false;
    for (const Combo& c : players[i].combos)
      if (!(used & c.mask) && self(self, i + 1, used | c.mask)) return true;
    failed[i].insert(used);
    return false;
  };
  return level(level, 0, 0);
}

double tuple_bound(const std::vector<HoldemPlayer>& players) {
  double bound = 1;
  for (const HoldemPlayer& p : players) bound *= static_cast<double>(p.combos.size());
  return bound;
}

namespace {

using Key = unsigned __int128;

struct KeyHash {
  size_t operator()(Key k) const {
    const uint64_t lo = static_cast<uint64_t>(k), hi = static_cast<uint64_t>(k >> 64);
    return std::hash<uint64_t>()(lo * 0x9E3779B97F4A7C15ull ^ hi);
  }
};

}  // namespace

std::vector<TupleClass> tuple_classes(const std::vector<HoldemPlayer>& players,
                                      const std::vector<SuitPermutation>& perms, std::vector<TupleMember>* members,
                                      int focus) {
  const size_t n = players.size();
  std::vector<TupleClass> classes;
  if (tuple_bound(players) == 1) {  // given hands only: one tuple
    double weight = 1;
    for (const HoldemPlayer& p : players) weight *= p.combos[0].weight;
    classes.push_back({{}, 1, weight});
    for (size_t p = 0; p < n; ++p)
      for (int i = 0; i < 2; ++i) classes[0].holes[p][i] = static_cast<uint8_t>(players[p].combos[0].cards[i]);
    if (members) members->push_back({0, 0, weight});
    return classes;
  }
  std::unordered_map<Key, size_t, KeyHash> index;
  std::array<std::array<uint8_t, 2>, kMaxPlayers> holes{};
  std::array<uint16_t, kMaxPlayers> chosen{};
  // The class key: the smallest, over the permutations, of the tuple's hands (each sorted) packed
  // twelve bits a hand, the first player lowest.
  auto key_of = [&] {
    Key best = ~Key{0};
    for (const SuitPermutation& perm : perms) {
      Key key = 0;
      for (size_t p = n; p-- > 0;) {
        const int a = permute_card(holes[p][0], perm), b = permute_card(holes[p][1], perm);
        key = key << 12 | static_cast<Key>(std::min(a, b) * 52 + std::max(a, b));
      }
      best = std::min(best, key);
    }
    return best;
  };
  const bool symmetric = perms.size() > 1;  // else every tuple is a class of its own
  auto level = [&](auto& self, size_t i, uint64_t used, double weight) -> void {
    if (i == n) {
      size_t c = classes.size();
      if (!symmetric) {
        classes.push_back({holes, 1, weight});
      } else {
        const auto [it, added] = index.emplace(key_of(), classes.size());
        if (added) classes.push_back({holes, 0, 0});
        c = it->second;
        ++classes[c].tuples;
        classes[c].weight += weight;
      }
      if (members) members->push_back({static_cast<uint32_t>(c), chosen[static_cast<size_t>(focus)], weight});
      return;
    }
    const std::vector<Combo>& combos = players[i].combos;
    for (size_t k = 0; k < combos.size(); ++k) {
      const Combo& c = combos[k];
      if (used & c.mask) continue;
      holes[i] = {static_cast<uint8_t>(c.cards[0]), static_cast<uint8_t>(c.cards[1])};
      chosen[i] = static_cast<uint16_t>(k);
      self(self, i + 1, used | c.mask, weight * c.weight);
    }
  };
  level(level, 0, 0, 1.0);
  return classes;
}

}  // namespace pokermath::detail

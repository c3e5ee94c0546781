// pokermath::parse_omaha_range: the Omaha range language (docs/omaha-ranges.md). The text is read into
// a small syntax tree, which prints the canonical text and is evaluated into sorted holdings.
#include <algorithm>
#include <charconv>
#include <cmath>
#include <memory>

#include "ranges/omaha_range_internal.h"

namespace pokermath {

namespace {

constexpr std::string_view kRankChars = "23456789TJQKA";
constexpr std::string_view kSuitChars = "cdhs";
constexpr std::string_view kVariableChars = "wxyz";

// One position of a pattern: a rank (or any rank) and a real suit, a suit variable or no suit.
struct Position {
  int rank = -1;      // rank index 0..12, -1 for any rank
  int suit = -1;      // 0..3, -1 for none
  int variable = -1;  // 0..3 for w x y z, -1 for none
  bool constrained() const { return rank >= 0 || suit >= 0 || variable >= 0; }
  auto operator<=>(const Position&) const = default;
};
using Pattern = std::vector<Position>;

enum class Word { DoubleSuited, SingleSuited, Rainbow, NoPair, OnePair, TwoPair, Trips, Quads, Rundown, Broadway,
                  SuitedAce, Random };

struct WordName {
  std::string_view name;
  Word word;
};
constexpr WordName kWords[] = {{"ds", Word::DoubleSuited}, {"ss", Word::SingleSuited},  {"rainbow", Word::Rainbow},
                               {"np", Word::NoPair},       {"nopair", Word::NoPair},     {"onepair", Word::OnePair},
                               {"twopair", Word::TwoPair}, {"trips", Word::Trips},       {"quads", Word::Quads},
                               {"rundown", Word::Rundown}, {"broadway", Word::Broadway}, {"suitedace", Word::SuitedAce},
                               {"random", Word::Random},   {"any", Word::Random}};

enum class Kind { Pattern, Run, Word, Share, Not, Union, Intersect, Exclude, Group };

struct Node {
  Kind kind = Kind::Pattern;
  double weight = 100;            // applied by multiplying: a holding's weight * weight / 100
  std::vector<Pattern> patterns;  // Pattern: the one pattern; Run: every pattern of the run
  std::string text;               // Run and Word: the printed form ("KK+", "QQ-99", "ds")
  Word word = Word::Random;
  double share_from = 0, share_to = 0;  // Share: the ranking from share_from% to share_to%
  bool share_pair = false;              // written as "a%-b%"
  std::unique_ptr<Node> left, right;    // Not and Group: left; binary operators: both

  bool binary() const { return kind == Kind::Union || kind == Kind::Intersect || kind == Kind::Exclude; }
};
using NodePtr = std::unique_ptr<Node>;

NodePtr make_node(Kind kind, NodePtr left = nullptr, NodePtr right = nullptr) {
  auto node = std::make_unique<Node>();
  node->kind = kind;
  node->left = std::move(left);
  node->right = std::move(right);
  return node;
}

std::string pattern_text(const Pattern& pattern) {
  std::string text;
  for (const Position& p : pattern) {
    text += p.rank >= 0 ? kRankChars[static_cast<size_t>(p.rank)] : '*';
    if (p.suit >= 0) text += kSuitChars[static_cast<size_t>(p.suit)];
    if (p.variable >= 0) text += kVariableChars[static_cast<size_t>(p.variable)];
  }
  return text;
}

// ---- reading -----------------------------------------------------------------------------------

class Parser {
 public:
  Parser(std::string_view text, int hole_cards, const OmahaRanking* ranking)
      : m_text(text), m_holeCards(hole_cards), m_ranking(ranking) {}

  NodePtr parse() {
    skip_blanks();
    if (at_end()) fail(m_pos, "a range");
    NodePtr node = expression();
    if (!at_end()) fail(m_pos, "',', ':', '!', '@' or the end of the range");
    return node;
  }

 private:
  std::string_view m_text;
  size_t m_pos = 0;
  int m_holeCards;
  const OmahaRanking* m_ranking;
  int m_depth = 0;
  static constexpr int kMaxNesting = 200;

  bool at_end() const { return m_pos >= m_text.size(); }
  char peek() const { return at_end() ? '\0' : m_text[m_pos]; }
  void skip_blanks() {
    while (!at_end() && std::isspace(static_cast<unsigned char>(m_text[m_pos]))) ++m_pos;
  }

  [[noreturn]] void fail(size_t pos, const std::string& expected) const {
    const std::string got = pos >= m_text.size() ? "the end of the text" : "'" + std::string(1, m_text[pos]) + "'";
    throw Error("position " + std::to_string(pos + 1) + ": expected " + expected + ", got " + got);
  }
  [[noreturn]] void fail_plain(size_t pos, const std::string& message) const {
    throw Error("position " + std::to_string(pos + 1) + ": " + message);
  }

  // The terms of a union are joined as a balanced tree, so that a list of thousands of holdings
  // stays a few levels deep for the recursive evaluation and printing (a union prints as the flat
  // list either way). Nesting by parentheses, '!' and chains of ':' and '!' is limited instead.
  NodePtr expression() {
    std::vector<NodePtr> terms;
    terms.push_back(term());
    while (peek() == ',') {
      ++m_pos;
      terms.push_back(term());
    }
    while (terms.size() > 1) {
      std::vector<NodePtr> joined;
      for (size_t i = 0; i + 1 < terms.size(); i += 2)
        joined.push_back(make_node(Kind::Union, std::move(terms[i]), std::move(terms[i + 1])));
      if (terms.size() % 2) joined.push_back(std::move(terms.back()));
      terms = std::move(joined);
    }
    return std::move(terms[0]);
  }

  NodePtr term() {
    NodePtr node = operand();
    for (int chain = 0; peek() == ':' || peek() == '!'; ++chain) {
      if (chain == kMaxNesting) fail_plain(m_pos, "more than " + std::to_string(kMaxNesting) + " ':' and '!' in a row");
      const Kind kind = peek() == ':' ? Kind::Intersect : Kind::Exclude;
      ++m_pos;
      node = make_node(kind, std::move(node), operand());
    }
    return node;
  }

  // Counts one level of nesting ('(' or a leading '!') for the duration of a parse step.
  struct Nested {
    Parser& parser;
    Nested(Parser& p, size_t at) : parser(p) {
      if (++parser.m_depth > kMaxNesting)
        parser.fail_plain(at, "'(' and '!' nest more than " + std::to_string(kMaxNesting) + " deep");
    }
    ~Nested() { --parser.m_depth; }
  };

  // An operand: a primary, or '!' and an operand (every holding except it). Leaves the position after
  // any blanks that follow.
  NodePtr operand() {
    skip_blanks();
    if (peek() == '!') {
      const Nested nested(*this, m_pos);
      ++m_pos;
      return make_node(Kind::Not, operand());
    }
    NodePtr node = atom();
    skip_blanks();
    if (peek() == '@') {
      ++m_pos;
      skip_blanks();
      const size_t at = m_pos;
      const double w = number("a weight like '@50'");
      if (!(w > 0 && w <= 100)) fail(at, "a weight above 0 and at most 100");
      // A weight on an already weighted group multiplies; a group node keeps both for printing.
      if (node->weight != 100) node = make_node(Kind::Group, std::move(node));
      node->weight = w;
      skip_blanks();
    }
    return node;
  }

  NodePtr atom() {
    const char c = peek();
    if (c == '(') {
      const Nested nested(*this, m_pos);
      ++m_pos;
      NodePtr node = expression();
      if (peek() != ')') fail(m_pos, "',', ':', '!' or ')'");
      ++m_pos;
      return node;
    }
    if (std::isdigit(static_cast<unsigned char>(c)) || c == '.') {
      size_t end = m_pos;
      while (end < m_text.size() && (std::isdigit(static_cast<unsigned char>(m_text[end])) || m_text[end] == '.')) ++end;
      if (end < m_text.size() && m_text[end] == '%') return share();
    }
    if (std::isalpha(static_cast<unsigned char>(c))) {
      size_t end = m_pos;
      std::string lower;
      while (end < m_text.size() && std::isalpha(static_cast<unsigned char>(m_text[end])))
        lower += static_cast<char>(std::tolower(static_cast<unsigned char>(m_text[end++])));
      for (const WordName& w : kWords) {
        if (w.name != lower) continue;
        NodePtr node = make_node(Kind::Word);
        node->word = w.word;
        node->text = lower;
        m_pos = end;
        return node;
      }
    }
    if (position_start(c)) return run();
    fail(m_pos, "a rank, '*', a hand-type word, a share like '15%', '!' or '('");
  }

  double number(const std::string& expected) {
    const size_t start = m_pos;
    while (!at_end() && (std::isdigit(static_cast<unsigned char>(peek())) || peek() == '.')) ++m_pos;
    double value = 0;
    const auto [ptr, ec] = std::from_chars(m_text.data() + start, m_text.data() + m_pos, value);
    if (start == m_pos || ec != std::errc() || ptr != m_text.data() + m_pos) fail(start, expected);
    return value;
  }

  double percent() {
    const size_t start = m_pos;
    const double p = number("a share like '15%'");
    if (peek() != '%') fail(m_pos, "'%'");
    ++m_pos;
    if (p > 100) fail(start, "a share of at most 100%");
    return p;
  }

  NodePtr share() {
    const size_t start = m_pos;
    if (m_ranking == nullptr) fail_plain(start, "a share like '15%' needs a pre-flop ranking, and none was given");
    if (m_ranking->hole_cards != m_holeCards)
      fail_plain(start, "a share needs a ranking of " + std::to_string(m_holeCards) + "-card holdings, not " +
                            std::to_string(m_ranking->hole_cards) + "-card ones");
    if (m_ranking->equity.size() != m_ranking->classes.size())
      fail_plain(start, "the ranking given has " + std::to_string(m_ranking->classes.size()) + " classes but " +
                            std::to_string(m_ranking->equity.size()) + " equities");
    NodePtr node = make_node(Kind::Share);
    node->share_to = percent();
    skip_blanks();
    if (peek() == '-') {
      ++m_pos;
      skip_blanks();
      const size_t second = m_pos;
      node->share_pair = true;
      node->share_from = node->share_to;
      node->share_to = percent();
      if (!(node->share_from < node->share_to)) fail(second, "a share above " + detail::format_number(node->share_from) + "%");
    } else if (node->share_to <= 0) {
      fail(start, "a share above 0%");
    }
    return node;
  }

  static bool position_start(char c) {
    return c == '*' || c == 'X' || kRankChars.find(static_cast<char>(std::toupper(static_cast<unsigned char>(c)))) !=
                                       std::string_view::npos;
  }

  // A pattern: positions written together, each a rank or '*' and an optional suit or variable.
  Pattern pattern() {
    Pattern positions;
    std::vector<size_t> starts;
    while (!at_end() && position_start(peek())) {
      Position p;
      const char r = static_cast<char>(std::toupper(static_cast<unsigned char>(peek())));
      p.rank = r == '*' || r == 'X' ? -1 : static_cast<int>(kRankChars.find(r));
      starts.push_back(m_pos++);
      const char s = peek();
      if (const size_t i = kSuitChars.find(static_cast<char>(std::tolower(static_cast<unsigned char>(s))));
          s != '\0' && i != std::string_view::npos) {
        p.suit = static_cast<int>(i);
        ++m_pos;
      } else if (const size_t v = kVariableChars.find(s); s != '\0' && v != std::string_view::npos) {
        p.variable = static_cast<int>(v);
        ++m_pos;
      }
      if (static_cast<int>(positions.size()) == m_holeCards)
        fail_plain(starts.back(), "a pattern holds at most " + std::to_string(m_holeCards) + " cards");
      for (const Position& q : positions) {
        if (p.rank >= 0 && p.rank == q.rank && ((p.suit >= 0 && p.suit == q.suit) || (p.variable >= 0 && p.variable == q.variable)))
          fail_plain(starts.back(), "the card '" + std::string(m_text.substr(starts.back(), m_pos - starts.back())) +
                                        "' is written twice");
      }
      positions.push_back(p);
    }
    return positions;
  }

  // A pattern, or a run "P+" or "P1-P2".
  NodePtr run() {
    const size_t start = m_pos;
    const Pattern first = pattern();
    skip_blanks();
    if (peek() != '+' && peek() != '-') {
      NodePtr node = make_node(Kind::Pattern);
      node->patterns.push_back(first);
      return node;
    }
    const bool up = m_text[m_pos++] == '+';
    int high = -1;
    for (const Position& p : first) high = std::max(high, p.rank);
    if (high < 0) fail_plain(start, "a run needs a pattern with ranks, '" + pattern_text(first) + "' has none");
    NodePtr node = make_node(Kind::Run);
    int steps = 12 - high, step = 1;
    if (up) {
      node->text = pattern_text(first) + "+";
    } else {
      skip_blanks();
      const size_t second = m_pos;
      if (!position_start(peek())) fail(m_pos, "the pattern that ends the run");
      const Pattern last = pattern();
      const int shift = shape_shift(first, last);
      if (shift == kNoShift)
        fail_plain(second, "expected a pattern of the same shape as '" + pattern_text(first) +
                               "' (same positions and suits, same rank gaps), got '" + pattern_text(last) + "'");
      steps = std::abs(shift);
      step = shift < 0 ? -1 : 1;
      node->text = pattern_text(first) + "-" + pattern_text(last);
    }
    for (int k = 0; k <= steps; ++k) {
      Pattern p = first;
      for (Position& q : p)
        if (q.rank >= 0) q.rank += k * step;
      node->patterns.push_back(std::move(p));
    }
    return node;
  }

  static constexpr int kNoShift = 100;

  // The rank shift that turns `a` into `b`, or kNoShift when they differ in shape.
  static int shape_shift(const Pattern& a, const Pattern& b) {
    if (a.size() != b.size()) return kNoShift;
    int shift = kNoShift;
    for (size_t i = 0; i < a.size(); ++i) {
      if (a[i].suit != b[i].suit || a[i].variable != b[i].variable || (a[i].rank < 0) != (b[i].rank < 0))
        return kNoShift;
      if (a[i].rank < 0) continue;
      const int d = b[i].rank - a[i].rank;
      if (shift != kNoShift && d != shift) return kNoShift;
      shift = d;
    }
    return shift;
  }
};

// ---- printing ----------------------------------------------------------------------------------

std::string print(const Node& node);

std::string parenthesised(const std::string& text) {
  std::string out(1, '(');
  out += text;
  out += ')';
  return out;
}

// A binary node written as an operand of a tighter operator needs parentheses (a weighted one has
// them already).
std::string print_operand(const Node& node, bool wrap_binary) {
  const std::string text = print(node);
  return wrap_binary && node.binary() && node.weight == 100 ? parenthesised(text) : text;
}

std::string print(const Node& node) {
  std::string body;
  switch (node.kind) {
    case Kind::Pattern: body = pattern_text(node.patterns.front()); break;
    case Kind::Run:
    case Kind::Word: body = node.text; break;
    case Kind::Share:
      body = node.share_pair ? detail::format_number(node.share_from) + "%-" : "";
      body += detail::format_number(node.share_to) + "%";
      break;
    case Kind::Group: body = parenthesised(print(*node.left)); break;
    case Kind::Not: body = '!' + print_operand(*node.left, true); break;
    case Kind::Union: body = print(*node.left) + "," + print(*node.right); break;
    case Kind::Intersect:
    case Kind::Exclude:
      body = print_operand(*node.left, node.left->kind == Kind::Union) + (node.kind == Kind::Intersect ? ":" : "!") +
             print_operand(*node.right, true);
      break;
  }
  if (node.weight == 100) return body;
  if (node.binary() || node.kind == Kind::Not) body = parenthesised(body);
  return body + "@" + detail::format_number(node.weight);
}

// ---- evaluation --------------------------------------------------------------------------------

using Held = std::vector<OmahaHolding>;

bool word_matches(Word word, uint64_t cards) {
  if (word == Word::Random) return true;
  const OmahaHandType t = detail::hand_type_unchecked(cards);
  switch (word) {
    case Word::DoubleSuited: return t.suits == OmahaSuits::DoubleSuited;
    case Word::SingleSuited: return t.suits == OmahaSuits::SingleSuited;
    case Word::Rainbow: return t.suits == OmahaSuits::Rainbow;
    case Word::NoPair: return t.pairs == OmahaPairs::NoPair;
    case Word::OnePair: return t.pairs == OmahaPairs::OnePair;
    case Word::TwoPair: return t.pairs == OmahaPairs::TwoPair;
    case Word::Trips: return t.pairs == OmahaPairs::Trips;
    case Word::Quads: return t.pairs == OmahaPairs::Quads;
    case Word::Rundown: return t.rundown;
    case Word::Broadway: return t.broadway;
    case Word::SuitedAce: return t.suited_ace;
    case Word::Random: break;
  }
  return true;
}

// A tree of hand-type words under operators: its membership is a cheap test of one holding, so it
// filters the other side of ':' and '!' instead of being built.
bool is_word_test(const Node& node) {
  switch (node.kind) {
    case Kind::Word: return true;
    case Kind::Not:
    case Kind::Group: return is_word_test(*node.left);
    case Kind::Union:
    case Kind::Intersect:
    case Kind::Exclude: return is_word_test(*node.left) && is_word_test(*node.right);
    default: return false;
  }
}

// True when every holding of the node has weight 100.
bool full_weight(const Node& node) {
  if (node.weight != 100) return false;
  switch (node.kind) {
    case Kind::Group: return full_weight(*node.left);
    case Kind::Union:
    case Kind::Intersect: return full_weight(*node.left) && full_weight(*node.right);
    case Kind::Exclude: return full_weight(*node.left);
    default: return true;
  }
}

bool word_test(const Node& node, uint64_t cards) {
  switch (node.kind) {
    case Kind::Word: return word_matches(node.word, cards);
    case Kind::Not: return !word_test(*node.left, cards);
    case Kind::Group: return word_test(*node.left, cards);
    case Kind::Union: return word_test(*node.left, cards) || word_test(*node.right, cards);
    case Kind::Intersect: return word_test(*node.left, cards) && word_test(*node.right, cards);
    case Kind::Exclude: return word_test(*node.left, cards) && !word_test(*node.right, cards);
    default: return false;
  }
}

uint64_t choose(int n, int k) {
  if (k < 0 || k > n) return 0;
  uint64_t c = 1;
  for (int i = 0; i < k; ++i) c = c * static_cast<uint64_t>(n - i) / static_cast<uint64_t>(i + 1);
  return c;
}

uint64_t candidates(int rank, int suit) {
  uint64_t mask = 0;
  for (int s = 0; s < 4; ++s) {
    if (suit >= 0 && s != suit) continue;
    mask |= rank >= 0 ? uint64_t{1} << (13 * s + rank) : uint64_t{0x1FFF} << (13 * s);
  }
  return mask;
}

class Evaluator {
 public:
  Evaluator(int hole_cards, const OmahaRanking* ranking)
      : m_holeCards(hole_cards), m_ranking(ranking), m_universe(omaha_holdings_count(hole_cards)) {}

  Held eval(const Node& node) {
    Held held = eval_body(node);
    if (node.weight != 100)
      for (OmahaHolding& h : held) h.weight = h.weight * node.weight / 100;
    return held;
  }

 private:
  int m_holeCards;
  const OmahaRanking* m_ranking;
  uint64_t m_universe;

  template <class Keep>
  Held filter_universe(Keep keep, uint64_t expected = 0) const {
    Held out;
    out.reserve(expected);
    detail::for_each_holding(m_holeCards, [&](uint64_t cards) {
      if (keep(cards)) out.push_back({cards, 100});
    });
    return out;
  }

  template <class Keep>
  static Held filter(Held held, Keep keep) {
    held.erase(std::remove_if(held.begin(), held.end(), [&](const OmahaHolding& h) { return !keep(h.cards); }),
               held.end());
    return held;
  }

  Held eval_body(const Node& node) {
    switch (node.kind) {
      case Kind::Pattern:
      case Kind::Run: return patterns(node.patterns);
      case Kind::Word: return filter_universe([&](uint64_t c) { return word_matches(node.word, c); });
      case Kind::Share: return share(node.share_from, node.share_to);
      case Kind::Group: return eval(*node.left);
      case Kind::Not: {
        if (is_word_test(*node.left)) return filter_universe([&](uint64_t c) { return !word_test(*node.left, c); });
        const Held inner = eval(*node.left);
        size_t i = 0;
        return filter_universe([&](uint64_t c) {
          const bool held = i < inner.size() && inner[i].cards == c;
          i += held;
          return !held;
        });
      }
      case Kind::Union:
        return detail::merge_holdings(eval(*node.left), eval(*node.right), [](const OmahaHolding* a, const OmahaHolding* b) {
          return std::max(a ? a->weight : 0.0, b ? b->weight : 0.0);
        });
      case Kind::Intersect:
        if (is_word_test(*node.right) && full_weight(*node.right))
          return filter(eval(*node.left), [&](uint64_t c) { return word_test(*node.right, c); });
        if (is_word_test(*node.left) && full_weight(*node.left))
          return filter(eval(*node.right), [&](uint64_t c) { return word_test(*node.left, c); });
        return detail::merge_holdings(eval(*node.left), eval(*node.right), [](const OmahaHolding* a, const OmahaHolding* b) {
          return a && b ? std::min(a->weight, b->weight) : 0.0;
        });
      case Kind::Exclude:
        if (is_word_test(*node.right))
          return filter(eval(*node.left), [&](uint64_t c) { return !word_test(*node.right, c); });
        return detail::merge_holdings(eval(*node.left), eval(*node.right),
                     [](const OmahaHolding* a, const OmahaHolding* b) { return a && !b ? a->weight : 0.0; });
    }
    return {};
  }

  // ---- patterns

  // A position with its variable resolved: the cards it accepts.
  struct Slot {
    uint64_t cards = 0;
    bool same_as_previous = false;  // identical to the slot before: take a higher card, to skip reorderings
  };

  // Upper bound of the masks that expanding `pattern` writes (before duplicates are removed).
  uint64_t expansion_size(const Pattern& pattern) const {
    int constrained = 0, variables = 0;
    bool seen[4] = {false, false, false, false};
    uint64_t size = 1;
    for (const Position& p : pattern) {
      if (!p.constrained()) continue;
      ++constrained;
      if (p.variable >= 0 && !seen[p.variable]) {
        seen[p.variable] = true;
        ++variables;
      }
      size *= static_cast<uint64_t>(std::popcount(candidates(p.rank, p.suit >= 0 ? p.suit : p.variable >= 0 ? 0 : -1)));
    }
    for (int v = 0; v < variables; ++v) size *= static_cast<uint64_t>(4 - v);
    return size * choose(52 - constrained, m_holeCards - constrained);
  }

  Held patterns(const std::vector<Pattern>& list) const {
    bool free_only = false;
    uint64_t size = 0;
    for (const Pattern& p : list) {
      size += expansion_size(p);
      free_only |= std::none_of(p.begin(), p.end(), [](const Position& q) { return q.constrained(); });
    }
    if (free_only) return filter_universe([](uint64_t) { return true; }, m_universe);
    if (size > m_universe)
      return filter_universe([&](uint64_t c) {
        return std::any_of(list.begin(), list.end(), [&](const Pattern& p) { return matches(p, c); });
      });
    std::vector<uint64_t> masks;
    masks.reserve(size);
    for (const Pattern& p : list) expand(p, masks);
    std::sort(masks.begin(), masks.end());
    masks.erase(std::unique(masks.begin(), masks.end()), masks.end());
    Held out;
    out.reserve(masks.size());
    for (const uint64_t m : masks) out.push_back({m, 100});
    return out;
  }

  // Appends every holding that matches `pattern`: each way of giving the variables distinct suits,
  // then each choice of distinct cards for the constrained positions, then each combination of the
  // remaining cards for the free ones.
  void expand(const Pattern& pattern, std::vector<uint64_t>& out) const {
    std::vector<Position> constrained;
    for (const Position& p : pattern)
      if (p.constrained()) constrained.push_back(p);
    const int free = m_holeCards - static_cast<int>(constrained.size());
    int suit_of[4] = {-1, -1, -1, -1};
    const auto resolve = [&](auto&& self, int variable) -> void {
      if (variable == 4) {
        std::vector<Position> resolved = constrained;
        for (Position& p : resolved) {
          if (p.variable >= 0) p.suit = suit_of[p.variable];
          p.variable = -1;
        }
        std::sort(resolved.begin(), resolved.end());
        std::vector<Slot> slots;
        for (size_t i = 0; i < resolved.size(); ++i)
          slots.push_back({candidates(resolved[i].rank, resolved[i].suit), i > 0 && resolved[i] == resolved[i - 1]});
        assign(slots, 0, 0, -1, free, out);
        return;
      }
      const bool used = std::any_of(constrained.begin(), constrained.end(), [&](const Position& p) { return p.variable == variable; });
      if (!used) return self(self, variable + 1);
      for (int s = 0; s < 4; ++s) {
        if (std::find(suit_of, suit_of + 4, s) != suit_of + 4) continue;
        suit_of[variable] = s;
        self(self, variable + 1);
        suit_of[variable] = -1;
      }
    };
    resolve(resolve, 0);
  }

  static void assign(const std::vector<Slot>& slots, size_t i, uint64_t used, int last, int free,
                     std::vector<uint64_t>& out) {
    if (i == slots.size()) return fill(used, free, out);
    uint64_t cards = slots[i].cards & ~used;
    if (slots[i].same_as_previous) cards &= ~((uint64_t{2} << last) - 1);
    for (; cards; cards &= cards - 1) {
      const int c = std::countr_zero(cards);
      assign(slots, i + 1, used | (uint64_t{1} << c), c, free, out);
    }
  }

  // Appends `used` plus every combination of `free` cards not in it.
  static void fill(uint64_t used, int free, std::vector<uint64_t>& out) {
    if (free == 0) return out.push_back(used);
    int rest[52], n = 0;
    for (uint64_t left = detail::kFullDeck & ~used; left; left &= left - 1) rest[n++] = std::countr_zero(left);
    int index[6];
    for (int i = 0; i < free; ++i) index[i] = i;
    while (true) {
      uint64_t m = used;
      for (int i = 0; i < free; ++i) m |= uint64_t{1} << rest[index[i]];
      out.push_back(m);
      int i = free - 1;
      while (i >= 0 && index[i] == n - free + i) --i;
      if (i < 0) return;
      ++index[i];
      for (int j = i + 1; j < free; ++j) index[j] = index[j - 1] + 1;
    }
  }

  // Whether distinct cards of `cards` can be given to the constrained positions of `pattern`.
  static bool matches(const Pattern& pattern, uint64_t cards) {
    int suit_of[4] = {-1, -1, -1, -1};
    const auto step = [&](auto&& self, size_t i, uint64_t left) -> bool {
      while (i < pattern.size() && !pattern[i].constrained()) ++i;
      if (i == pattern.size()) return true;
      const Position& p = pattern[i];
      for (uint64_t c = left & candidates(p.rank, p.suit); c; c &= c - 1) {
        const int code = std::countr_zero(c);
        const int suit = code / 13;
        if (p.variable >= 0) {
          const int bound = suit_of[p.variable];
          if (bound >= 0 && bound != suit) continue;
          if (bound < 0) {
            if (std::find(suit_of, suit_of + 4, suit) != suit_of + 4) continue;
            suit_of[p.variable] = suit;
          }
          const bool ok = self(self, i + 1, left & ~(uint64_t{1} << code));
          if (bound < 0) suit_of[p.variable] = -1;
          if (ok) return true;
        } else if (self(self, i + 1, left & ~(uint64_t{1} << code))) {
          return true;
        }
      }
      return false;
    };
    return step(step, 0, cards);
  }

  // ---- shares

  // The holdings ranked from the top share_from% to the top share_to%. The top p% of N holdings are
  // the holdings whose ranked equity is at or above that of the k-th strongest, k = ceil(p N / 100):
  // whole classes, walked in order until k holdings are taken, and then the classes of equal
  // equity after them.
  Held share(double from, double to) const {
    const double n = static_cast<double>(m_universe);
    const auto& classes = m_ranking->classes;
    std::vector<uint64_t> members;
    const auto end_of = [&](double p) {  // the classes of the top p%: classes[0 .. end)
      const uint64_t k = p <= 0 ? 0 : static_cast<uint64_t>(std::ceil(p * n / 100));
      size_t end = 0;
      for (uint64_t added = 0; end < classes.size() && added < k; ++end) {
        members.clear();
        detail::append_suit_class_members(classes[end], members);
        added += members.size();
      }
      while (end > 0 && end < classes.size() && m_ranking->equity[end] == m_ranking->equity[end - 1]) ++end;
      return end;
    };
    const size_t first = end_of(from), last = end_of(to);
    std::vector<uint64_t> masks;
    for (size_t i = first; i < last; ++i) detail::append_suit_class_members(classes[i], masks);
    std::sort(masks.begin(), masks.end());
    masks.erase(std::unique(masks.begin(), masks.end()), masks.end());
    Held out;
    out.reserve(masks.size());
    for (const uint64_t m : masks)
      if (detail::valid_holding(m, m_holeCards)) out.push_back({m, 100});
    return out;
  }
};

}  // namespace

OmahaRange parse_omaha_range(std::string_view text, int hole_cards, const OmahaRanking* ranking) {
  omaha_holdings_count(hole_cards);  // checks the hole-card count
  const NodePtr tree = Parser(text, hole_cards, ranking).parse();
  Held held = Evaluator(hole_cards, ranking).eval(*tree);
  return OmahaRange(hole_cards, std::move(held), print(*tree));
}

}  // namespace pokermath

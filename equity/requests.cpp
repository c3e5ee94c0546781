// compute_equity: the checks every request shares, then the engine of its game.
#include "equity/requests.h"

#include <chrono>
#include <cmath>
#include <limits>

namespace pokermath {

namespace detail {

std::string ordinal(size_t i) { return "player " + std::to_string(i + 1); }

bool is_random(std::string_view text) {
  std::string lower(text);
  for (char& ch : lower) ch = static_cast<char>(std::tolower(static_cast<unsigned char>(ch)));
  return lower == "random" || lower == "any";
}

uint64_t check_request(const EquityRequest& request) {
  const size_t n = request.players.size();
  if (n < 2 || n > kMaxPlayers)
    throw Error("expected 2 to " + std::to_string(kMaxPlayers) + " players, got " + std::to_string(n));
  const size_t board = request.board.size();
  if (board == 1 || board == 2 || board > 5)
    throw Error("a board has 0, 3, 4 or 5 cards, got " + std::to_string(board));
  if (request.trials < 1 || request.trials > kMaxTrials)
    throw Error("trials must be 1 to " + std::to_string(kMaxTrials) + ", got " + std::to_string(request.trials));
  if (request.time_ms < 0) throw Error("a time limit cannot be negative, got " + std::to_string(request.time_ms));
  if (!(request.target_std_error >= 0) || std::isinf(request.target_std_error))
    throw Error("a target standard error must be a number 0 or more, got " + std::to_string(request.target_std_error));
  if (request.threads < 0) throw Error("threads cannot be negative, got " + std::to_string(request.threads));
  std::vector<int> known = request.board;
  known.insert(known.end(), request.dead.begin(), request.dead.end());
  return cards_to_mask(known);  // throws for a bad code or a card given twice
}

OmahaGame omaha_game(EquityGame game) {
  switch (game) {
    case EquityGame::Omaha: return {4, false};
    case EquityGame::Omaha5: return {5, false};
    case EquityGame::Omaha6: return {6, false};
    case EquityGame::OmahaHiLo: return {4, true};
    case EquityGame::Omaha5HiLo: return {5, true};
    case EquityGame::Omaha6HiLo: return {6, true};
    default: throw Error("only the Omaha games have holdings of 4 to 6 cards");
  }
}

double ways_to_deal(int from, int cards) {
  double n = 1;
  for (int i = 0; i < cards; ++i) n = n * (from - i) / (i + 1);
  return n;
}

RunControl run_control(const EquityRequest& request) {
  return {threads_for(request.threads), &request.on_progress, request.stop};
}

SampleLimits sample_limits(const EquityRequest& request) {
  return {request.trials, request.time_ms, request.target_std_error, request.seed};
}

EquityResult equity_result(const std::vector<std::string>& texts, const std::vector<PlayerShares>& shares, bool exact,
                           double deals) {
  EquityResult result;
  result.exact = exact;
  result.deals = deals;
  const double nan = std::numeric_limits<double>::quiet_NaN();
  for (size_t p = 0; p < texts.size(); ++p) {
    PlayerEquity e;
    e.hand = texts[p];
    e.win = shares[p].win;
    e.tie = shares[p].tie;
    e.equity = shares[p].equity;
    e.std_error = exact ? 0 : shares[p].std_error;
    e.high = e.low = e.scoop = nan;
    result.players.push_back(e);
  }
  return result;
}

}  // namespace detail

EquityGame equity_game_from_name(std::string_view name) {
  static constexpr std::pair<std::string_view, EquityGame> kGames[] = {
      {"holdem", EquityGame::Holdem},        {"omaha", EquityGame::Omaha},
      {"omaha5", EquityGame::Omaha5},        {"omaha6", EquityGame::Omaha6},
      {"omaha-hilo", EquityGame::OmahaHiLo}, {"omaha5-hilo", EquityGame::Omaha5HiLo},
      {"omaha6-hilo", EquityGame::Omaha6HiLo}, {"shortdeck", EquityGame::ShortDeck},
      {"china", EquityGame::ShortDeckChina}};
  for (const auto& [game_name, game] : kGames)
    if (game_name == name) return game;
  throw Error("unknown game '" + std::string(name) +
              "': holdem, omaha, omaha5, omaha6, omaha-hilo, omaha5-hilo, omaha6-hilo, shortdeck or china");
}

EquityResult compute_equity(const EquityRequest& request) {
  const auto start = std::chrono::steady_clock::now();
  const bool holdem = request.game == EquityGame::Holdem || request.game == EquityGame::ShortDeck ||
                      request.game == EquityGame::ShortDeckChina;
  EquityResult result = holdem ? detail::compute_holdem_equity(request) : detail::compute_omaha_equity(request);
  result.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  return result;
}

}  // namespace pokermath

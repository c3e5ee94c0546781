#include "progress.h"

#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <memory>
#include <string>

namespace pokermath::cli {

TableProgress stderr_progress() {
  struct State {
    std::string last_line;
    bool terminal = ::isatty(STDERR_FILENO) != 0;
  };
  auto state = std::make_shared<State>();
  return [state](std::string_view file, std::string_view stage, double fraction) {
    if (fraction == kNoticeFraction) {  // a notice: a line of its own, the message in `stage`
      std::fprintf(stderr, "%spokermath: %.*s\n", state->terminal ? "\r\033[K" : "", static_cast<int>(stage.size()),
                   stage.data());
      return;
    }
    const std::string head = "pokermath: " + std::string(file) + ": " + std::string(stage);
    if (state->terminal) {
      std::fprintf(stderr, "\r%s %3d%%\033[K", head.c_str(), static_cast<int>(fraction * 100));
      if (fraction >= 1.0 && stage == "done") std::fputc('\n', stderr);
    } else if (head != state->last_line) {
      std::fprintf(stderr, "%s\n", head.c_str());
      state->last_line = head;
    }
    std::fflush(stderr);
  };
}

WorkProgress stderr_work_progress(std::string label) {
  struct State {
    std::chrono::steady_clock::time_point start = std::chrono::steady_clock::now();
    int shown = -1;  // the last percentage written; -1 before the first
    bool terminal = ::isatty(STDERR_FILENO) != 0;
  };
  auto state = std::make_shared<State>();
  return [state, label = std::move(label)](double fraction) {
    if (std::chrono::steady_clock::now() - state->start < std::chrono::seconds(1)) return;
    const int percent = static_cast<int>(fraction * 100);
    // On a terminal one line rewritten in place; in a log a line every 10%.
    if (state->terminal) {
      if (percent == state->shown) return;
      std::fprintf(stderr, "\rpokermath: %s %3d%%\033[K", label.c_str(), percent);
      if (fraction >= 1.0) std::fputc('\n', stderr);
    } else {
      // The first line as soon as a second has passed, then one per 10% (-1 / 10 is 0, as 5 / 10 is).
      if (state->shown >= 0 && percent / 10 == state->shown / 10) return;
      std::fprintf(stderr, "pokermath: %s %d%%\n", label.c_str(), percent);
    }
    state->shown = percent;
    std::fflush(stderr);
  };
}

}  // namespace pokermath::cli

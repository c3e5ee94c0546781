#include "progress.h"

#include <unistd.h>

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

}  // namespace pokermath::cli

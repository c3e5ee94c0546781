#include "pokermath/support.h"

#include <cstdio>
#include <utility>

namespace {

MessageHandler& current_handler() {
  static MessageHandler handler;
  return handler;
}

}  // namespace

void ShowMessage(const CString& text) {
  if (const MessageHandler& handler = current_handler()) {
    handler(text);
    return;
  }
  const std::string line = pokermath::narrow(text) + "\n";
  std::fputs(line.c_str(), stderr);
}

MessageHandler SetMessageHandler(MessageHandler handler) {
  return std::exchange(current_handler(), std::move(handler));
}

#include "pictures.h"

#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fstream>

#include "pokermath/support.h"

namespace pokermath::cli {

void write_picture(const std::string& path, const std::string& svg) {
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  if (out) out << svg;
  if (!out || !out.flush())
    throw Error("cannot write the picture '" + path + "': " + std::strerror(errno ? errno : EIO));
}

bool stdout_is_terminal() { return ::isatty(STDOUT_FILENO) != 0; }

std::string percent_of(double fraction) {
  char text[32];
  std::snprintf(text, sizeof text, "%.2f%%", fraction * 100);
  return text;
}

}  // namespace pokermath::cli

// Runs the pokermath program (POKERMATH_CLI) as a user would and collects what it printed.
#pragma once

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <initializer_list>
#include <sstream>
#include <string>

namespace cli_run {

struct CliRun {
  int exit_code = -1;
  std::string out, err;
};

inline std::string slurp(const std::filesystem::path& path) {
  std::ifstream in(path);
  std::stringstream s;
  s << in.rdbuf();
  return s.str();
}

// `pokermath ARGS` through the shell, stdout and stderr captured separately.
inline CliRun run(const std::string& args) {
  const auto dir = std::filesystem::temp_directory_path();
  const std::string tag = std::to_string(::getpid());
  const auto out = dir / ("pokermath_cli_out_" + tag), err = dir / ("pokermath_cli_err_" + tag);
  const std::string command = std::string(POKERMATH_CLI) + " " + args + " >" + out.string() + " 2>" + err.string();
  const int status = std::system(command.c_str());
  CliRun r;
  r.exit_code = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  r.out = slurp(out);
  r.err = slurp(err);
  std::filesystem::remove(out);
  std::filesystem::remove(err);
  return r;
}

inline int lines(const std::string& text) { return static_cast<int>(std::count(text.begin(), text.end(), '\n')); }

// Runs `args` and expects what bad input gives: exit code 2, one line on stderr that holds
// `message`, and nothing on stdout.
inline void expect_bad_input(const std::string& args, const std::string& message) {
  const CliRun r = run(args);
  EXPECT_EQ(r.exit_code, 2) << args;
  EXPECT_EQ(lines(r.err), 1) << args << ": " << r.err;
  EXPECT_NE(r.err.find(message), std::string::npos) << args << ": " << r.err;
  EXPECT_TRUE(r.out.empty()) << args << ": " << r.out;
}

// Runs `args` and expects success with every one of `pieces` somewhere in stdout; returns the run.
inline CliRun expect_output(const std::string& args, std::initializer_list<std::string> pieces) {
  CliRun r = run(args);
  EXPECT_EQ(r.exit_code, 0) << args << ": " << r.err;
  for (const std::string& piece : pieces) EXPECT_NE(r.out.find(piece), std::string::npos) << piece << " in " << r.out;
  return r;
}

}  // namespace cli_run

// From the start of orvane to its end, over a small document, held against a program that does
// nothing.
#include <spawn.h>
#include <sys/wait.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <vector>

extern char** environ;

namespace {

constexpr int kRounds = 101;

/// Milliseconds from the start to the end; negative when it failed.
double Run(std::vector<const char*> arguments) {
  arguments.push_back(nullptr);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", 1, 0);
  const auto begin = std::chrono::steady_clock::now();
  pid_t process = 0;
  int nStatus = 1;
  if (posix_spawn(&process, arguments.front(), &actions, nullptr,
                  const_cast<char* const*>(arguments.data()), environ) == 0) {
    waitpid(process, &nStatus, 0);
  }
  const std::chrono::duration<double, std::milli> taken = std::chrono::steady_clock::now() - begin;
  posix_spawn_file_actions_destroy(&actions);
  return nStatus == 0 ? taken.count() : -1;
}

double Median(std::vector<double> values) {
  std::ranges::nth_element(values, values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2));
  return values[values.size() / 2];
}

}  // namespace

int main() {
  std::vector<double> program;
  std::vector<double> nothing;
  for (int n = 0; n < kRounds; ++n) {
    nothing.push_back(Run({"/bin/true"}));
    program.push_back(Run({ORVANE_PROGRAM, "tree", ORVANE_SAMPLE}));
  }
  if (std::ranges::min(program) < 0) {
    std::fprintf(stderr, "orvane failed; run \"%s tree %s\" to see why\n", ORVANE_PROGRAM,
                 ORVANE_SAMPLE);
    return 1;
  }
  std::printf(
      "orvane tree: median %.1f ms, slowest %.1f ms; a program that does nothing: %.1f ms\n",
      Median(program), std::ranges::max(program), Median(nothing));
  return 0;
}

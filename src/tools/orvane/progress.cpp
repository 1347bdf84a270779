#include "tools/orvane/progress.h"

#include <unistd.h>

#include <iostream>

namespace orvane::tools {

namespace {

constexpr std::chrono::milliseconds kBetweenTold(200);
/// To the beginning of the line, and all behind it away.
constexpr const char* kLineAnew = "\r\x1B[K";

}  // namespace

platform::Text RowsInWords(platform::RowIndex rows) {
  return std::to_string(rows) + (rows == 1 ? " row" : " rows");
}

Progress::Progress(bool bWanted) : m_bShows(bWanted && isatty(STDERR_FILENO) == 1) {}

Progress::~Progress() {
  if (m_bShown) std::cerr << kLineAnew << std::flush;
}

void Progress::Rows(platform::RowIndex rows) {
  if (!m_bShows) return;
  const auto now = std::chrono::steady_clock::now();
  if (now < m_next) return;
  m_next = now + kBetweenTold;
  m_bShown = true;
  std::cerr << kLineAnew << RowsInWords(rows) << " so far" << std::flush;
}

}  // namespace orvane::tools

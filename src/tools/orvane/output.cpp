#include "tools/orvane/output.h"

#include <unistd.h>

#include <cerrno>
#include <system_error>

#include "tools/orvane/statuses.h"

namespace orvane::tools {

namespace {

constexpr std::size_t kLarge = std::size_t{1} << 18;

}  // namespace

void Output::Write(std::string_view sText) {
  m_sBuffer += sText;
  FlushLarge();
}

void Output::FlushLarge() {
  if (m_sBuffer.size() >= kLarge) Flush();
}

void Output::Flush() {
  if (m_bHeld) return;
  std::string_view sLeft = m_sBuffer;
  while (!sLeft.empty()) {
    const ssize_t nWritten = write(m_nFile, sLeft.data(), sLeft.size());
    if (nWritten < 0) {
      if (errno == EINTR) continue;
      const int nError = errno;
      m_sBuffer.clear();
      if (nError == EPIPE) throw Ending(kOutputClosed, {});
      throw Ending(kFailed,
                   "The output cannot be written: " + std::generic_category().message(nError) +
                       "; make room, or send it elsewhere.");
    }
    sLeft.remove_prefix(static_cast<std::size_t>(nWritten));
  }
  m_sBuffer.clear();
}

}  // namespace orvane::tools

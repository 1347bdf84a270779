#include "provider/engines/postgres/stop_signal.h"

#include <sys/eventfd.h>

#include <algorithm>
#include <array>
#include <limits>

namespace orvane::provider::engines {

StopSignal::StopSignal(const std::stop_token& stop)
    : m_bell(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)), m_callback(stop, Ring{m_bell.Get()}) {}

void StopSignal::Ring::operator()() const noexcept {
  const eventfd_t kOnce = 1;
  if (file >= 0) (void)!eventfd_write(file, kOnce);
}

bool StopSignal::WaitFor(int file, short nEvents, std::chrono::milliseconds atMost) const {
  // Without a file of its own the stop is looked at now and then.
  constexpr std::chrono::milliseconds kLookAtStopEvery{20};
  if (!m_bell) atMost = atMost == kForever ? kLookAtStopEvery : std::min(atMost, kLookAtStopEvery);
  constexpr std::chrono::milliseconds::rep kMost = std::numeric_limits<int>::max();
  std::array<pollfd, 2> files = {{{file, nEvents, 0}, {m_bell.Get(), POLLIN, 0}}};
  const auto nMs = static_cast<int>(std::min(atMost.count(), kMost));
  if (poll(files.data(), files.size(), nMs) <= 0) return false;
  eventfd_t rung = 0;
  if (files[1].revents != 0) eventfd_read(m_bell.Get(), &rung);
  return files[0].revents != 0;
}

}  // namespace orvane::provider::engines

#include "provider/deadline.h"

#include <fmt/format.h>

#include <condition_variable>
#include <mutex>
#include <thread>

#include "platform/failure.h"

namespace orvane::provider {

using platform::Failure;
namespace failure = platform::failure;

namespace {

platform::Text InWords(std::chrono::milliseconds timeout) {
  if (timeout.count() % 1000 != 0) return fmt::format("{} milliseconds", timeout.count());
  const auto seconds = timeout.count() / 1000;
  return fmt::format("{} second{}", seconds, seconds == 1 ? "" : "s");
}

}  // namespace

Deadline::Deadline(std::stop_token stop, std::chrono::milliseconds timeout)
    : m_stop(std::move(stop)), m_timeout(timeout) {
  if (timeout.count() > 0) m_end = std::chrono::steady_clock::now() + timeout;
}

void Deadline::Check() const {
  if (m_stop.stop_requested()) {
    throw Failure(failure::kCancelled, "The statement was cancelled.");
  }
  if (m_end && std::chrono::steady_clock::now() >= *m_end) FailLate();
}

void Deadline::FailLate(bool bClosed) const {
  if (bClosed) {
    throw Failure(failure::kTimeout,
                  fmt::format("The statement did not end within its time-out of {}, and the server "
                              "did not answer, so that the connection is closed: connect again, "
                              "and allow it more time, or ask for less.",
                              InWords(m_timeout)));
  }
  throw Failure(failure::kTimeout,
                fmt::format("The statement did not end within its time-out of {}: allow it more "
                            "time, or ask for less.",
                            InWords(m_timeout)));
}

void Deadline::Run(const std::function<void(std::stop_token)>& work) const {
  if (!m_end) {
    work(m_stop);
    return;
  }
  std::stop_source either;
  const std::stop_callback forward(m_stop, [&] { either.request_stop(); });
  const std::jthread timer([&](const std::stop_token& done) {
    std::mutex mutex;
    std::condition_variable_any woken;
    std::unique_lock lock(mutex);
    woken.wait_until(lock, done, *m_end, [] { return false; });
    if (!done.stop_requested()) either.request_stop();
  });
  try {
    work(either.get_token());
  } catch (const Failure& failed) {
    if (failed.Number() != failure::kCancelled || m_stop.stop_requested()) throw;
    if (!either.stop_requested()) throw;
    FailLate(failed.NativeError() == failure::kObjectClosed);
  }
}

}  // namespace orvane::provider

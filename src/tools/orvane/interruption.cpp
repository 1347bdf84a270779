#include "tools/orvane/interruption.h"

#include <unistd.h>

#include <utility>

#include "tools/terminal/silent_terminal.h"

namespace orvane::tools {

namespace {

constexpr int kStatusOfSignals = 128;
/// Ends the listener.
constexpr int kEnough = SIGUSR1;

}  // namespace

Interruption::Interruption() {
  sigemptyset(&m_signals);
  sigaddset(&m_signals, kEnough);
  for (const int nSignal : {SIGINT, SIGTERM, SIGHUP}) {
    // Whoever has it ignored, such as nohup, wants the program to go on.
    struct sigaction present {};
    sigaction(nSignal, nullptr, &present);
    if (present.sa_handler != SIG_IGN) sigaddset(&m_signals, nSignal);
  }
  pthread_sigmask(SIG_BLOCK, &m_signals, nullptr);
  m_listener = std::thread([this] { Listen(); });
}

Interruption::~Interruption() {
  {
    const std::lock_guard lock(m_mutex);
    m_bEnding = true;
  }
  pthread_kill(m_listener.native_handle(), kEnough);
  m_listener.join();
}

void Interruption::Listen() {
  for (;;) {
    int nSignal = 0;
    if (sigwait(&m_signals, &nSignal) != 0) continue;
    const std::lock_guard lock(m_mutex);
    if (m_bEnding) return;
    if (nSignal == kEnough) continue;
    if (m_nSignal != 0 || !m_stop.stop_possible()) {
      SilentTerminal::GiveBack();
      _exit(kStatusOfSignals + nSignal);
    }
    m_nSignal = nSignal;
    m_stop.request_stop();
  }
}

void Interruption::Run(const platform::Text& /*sWhat*/,
                       const std::function<void(std::stop_token)>& work) {
  std::stop_token token;
  {
    const std::lock_guard lock(m_mutex);
    m_stop = std::stop_source();
    // What came too late for the work before is meant for all that is left.
    if (m_nSignal != 0) m_stop.request_stop();
    token = m_stop.get_token();
  }
  const struct Ran {
    Interruption& interruption;
    ~Ran() {
      const std::lock_guard lock(interruption.m_mutex);
      interruption.m_stop = std::stop_source(std::nostopstate);
    }
  } ran{*this};
  work(token);
}

int Interruption::ExitStatus() const {
  const std::lock_guard lock(m_mutex);
  return m_nSignal == 0 ? 0 : kStatusOfSignals + m_nSignal;
}

}  // namespace orvane::tools

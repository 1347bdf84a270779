// A way to the tests' PostgreSQL server that can be cut: a port of loopback that leads to the
// server's socket. Used by tests of links; one thread, which is the test's alone where the way has
// a network of its own.
#pragma once

#include <atomic>
#include <limits>
#include <string>
#include <thread>

namespace orvane::tests {

class WayToServer {
 public:
  WayToServer();
  WayToServer(const WayToServer&) = delete;
  WayToServer& operator=(const WayToServer&) = delete;
  ~WayToServer();

  int Port() const { return m_nPort; }
  /// Gives the calling thread, and those that it starts, a loopback of their own. False where this
  /// user may not do that.
  static bool MakeNetwork();
  /// From now on nothing arrives in that network, and nobody is told.
  static void SwallowEverything();
  /// From now on whoever connects is taken and hears nothing.
  void TakeNoMore() { m_bTakes = false; }
  /// From now on the server is heard for about that many bytes, and no further.
  void TellAtMost(std::size_t nBytes) { m_nToTell = nBytes; }

 private:
  void Forward();

  int m_nListening = -1;
  int m_nPort = 0;
  int m_nStop = -1;
  std::atomic<bool> m_bTakes = true;
  std::atomic<std::size_t> m_nToTell = std::numeric_limits<std::size_t>::max();
  std::thread m_forwards;
};

}  // namespace orvane::tests

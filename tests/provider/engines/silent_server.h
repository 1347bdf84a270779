// A server that takes calls and never says a word, on a port of loopback.
// Used by tests of what waits for servers; one thread.
#pragma once

#include <arpa/inet.h>
#include <sys/socket.h>
#include <unistd.h>

#include <stdexcept>
#include <string>

namespace orvane::tests {

class SilentServer {
 public:
  SilentServer() : m_nFile(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    auto* const any = reinterpret_cast<sockaddr*>(&address);
    if (bind(m_nFile, any, size) != 0 || listen(m_nFile, 5) != 0 ||
        getsockname(m_nFile, any, &size) != 0) {
      throw std::runtime_error("no port for the silent server");
    }
    m_nPort = ntohs(address.sin_port);
  }
  SilentServer(const SilentServer&) = delete;
  SilentServer& operator=(const SilentServer&) = delete;
  ~SilentServer() {
    HangUp();
    close(m_nFile);
  }

  std::string Port() const { return std::to_string(m_nPort); }
  std::string Address() const { return "postgresql://127.0.0.1:" + Port() + "/d"; }
  /// Waits for a caller, who is kept waiting.
  void TakeCall() { m_nCaller = accept4(m_nFile, nullptr, nullptr, SOCK_CLOEXEC); }
  void HangUp() {
    if (m_nCaller >= 0) close(m_nCaller);
    m_nCaller = -1;
  }

 private:
  int m_nFile;
  int m_nPort = 0;
  int m_nCaller = -1;
};

}  // namespace orvane::tests

#include "tests/provider/engines/way_to_server.h"

#include <arpa/inet.h>
#include <net/if.h>
#include <poll.h>
#include <sched.h>
#include <sys/eventfd.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <stdexcept>
#include <vector>

#include "tests/provider/engines/postgres_cluster.h"

namespace orvane::tests {

namespace {

bool SetLoopback(bool bUp) {
  const int file = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  ifreq request{};
  std::strcpy(request.ifr_name, "lo");
  request.ifr_flags = static_cast<short>(bUp ? IFF_UP | IFF_RUNNING : 0);
  const bool bDone = ioctl(file, SIOCSIFFLAGS, &request) == 0;
  close(file);
  return bDone;
}

int ConnectToCluster() {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  const auto path = PostgresCluster::Get().Folder() /
                    (".s.PGSQL." + std::to_string(PostgresCluster::Get().Port()));
  std::strncpy(address.sun_path, path.c_str(), sizeof address.sun_path - 1);
  const int file = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  // What cannot be reached ends at the first read.
  (void)connect(file, reinterpret_cast<const sockaddr*>(&address), sizeof address);
  return file;
}

// What is read on one file goes to the other; how much that is, 0 at the end.
std::size_t Pass(int from, int to) {
  std::array<char, 65536> bytes;
  const auto count = read(from, bytes.data(), bytes.size());
  for (ssize_t done = 0; done < count;) {
    const auto once =
        send(to, bytes.data() + done, static_cast<std::size_t>(count - done), MSG_NOSIGNAL);
    if (once <= 0) return 0;
    done += once;
  }
  return count > 0 ? static_cast<std::size_t>(count) : 0;
}

}  // namespace

void WayToServer::Forward() {
  std::vector<std::pair<int, int>> links;
  std::vector<int> unheard;
  for (;;) {
    std::vector<pollfd> files{{m_nStop, POLLIN, 0}, {m_nListening, POLLIN, 0}};
    for (const auto& [client, server] : links) {
      files.push_back({client, POLLIN, 0});
      files.push_back({m_nToTell == 0 ? -1 : server, POLLIN, 0});
    }
    poll(files.data(), files.size(), -1);
    if (files[0].revents != 0) break;
    for (std::size_t n = links.size(); n-- > 0;) {
      const auto [client, server] = links[n];
      bool bOpen = files[2 + 2 * n].revents == 0 || Pass(client, server) != 0;
      if (bOpen && files[3 + 2 * n].revents != 0) {
        const std::size_t nTold = Pass(server, client);
        bOpen = nTold != 0;
        m_nToTell -= std::min<std::size_t>(m_nToTell, nTold);
      }
      if (bOpen) continue;
      close(client);
      close(server);
      links.erase(links.begin() + static_cast<std::ptrdiff_t>(n));
    }
    if (files[1].revents != 0) {
      const int client = accept4(m_nListening, nullptr, nullptr, SOCK_CLOEXEC);
      if (m_bTakes) {
        links.emplace_back(client, ConnectToCluster());
      } else {
        unheard.push_back(client);
      }
    }
  }
  for (const auto& [client, server] : links) {
    close(client);
    close(server);
  }
  for (const int client : unheard) close(client);
}

bool WayToServer::MakeNetwork() {
  return unshare(CLONE_NEWNET) == 0 && SetLoopback(true);
}

void WayToServer::SwallowEverything() {
  SetLoopback(false);
}

WayToServer::WayToServer()
    : m_nListening(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)),
      m_nStop(eventfd(0, EFD_CLOEXEC)) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t size = sizeof address;
  auto* const any = reinterpret_cast<sockaddr*>(&address);
  if (bind(m_nListening, any, size) != 0 || listen(m_nListening, 5) != 0 ||
      getsockname(m_nListening, any, &size) != 0) {
    throw std::runtime_error("no port for the way to the server");
  }
  m_nPort = ntohs(address.sin_port);
  m_forwards = std::thread([this] { Forward(); });
}

WayToServer::~WayToServer() {
  eventfd_write(m_nStop, 1);
  m_forwards.join();
  close(m_nListening);
  close(m_nStop);
}

}  // namespace orvane::tests

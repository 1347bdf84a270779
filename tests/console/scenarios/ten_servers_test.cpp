// Ten servers in one document, three of which cannot be connected: each has its own connection, its
// own logon and its own state, and what one of them does touches no other.
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <QApplication>
#include <QPushButton>
#include <QTimer>

#include "tests/console/scenarios/host_driver.h"
#include "tests/scenarios/command_fixture.h"

namespace orvane::scenarios::commands {
namespace {

/// A port of this machine behind which nobody ever says a word; or, closed, nobody at all.
class SilentPort {
 public:
  SilentPort() : m_file(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    auto* const any = reinterpret_cast<sockaddr*>(&address);
    EXPECT_EQ(bind(m_file, any, size), 0);
    EXPECT_EQ(getsockname(m_file, any, &size), 0);
    m_sPort = std::to_string(ntohs(address.sin_port));
  }
  SilentPort(const SilentPort&) = delete;
  SilentPort& operator=(const SilentPort&) = delete;
  ~SilentPort() { close(m_file); }

  void Listen() const { EXPECT_EQ(listen(m_file, 8), 0); }
  Text Address() const { return "postgresql://127.0.0.1:" + m_sPort + "/d"; }

 private:
  int m_file;
  Text m_sPort;
};

class ten_servers : public command_scenario {
 protected:
  ten_servers() {
    m_silent.Listen();
    m_dead = {m_refusing.Address(), m_silent.Address(), "postgresql:///d?host=/nowhere"};
    for (int n = 1; n <= 7; ++n) {
      m_living.push_back("S" + std::to_string(n));
      driver->AddServer({m_living.back(), {}});
    }
    // A dead one before the first, between others, and behind the last.
    m_all = {m_dead[0], "S1", "S2", "S3", m_dead[1], "S4", "S5", "S6", "S7", m_dead[2]};
    driver->OpenDocument([&](PropertyBag& pb, platform::ObjectFactory&) {
      Write(pb, {.sServer = m_all[0]});
      pb.WriteProperty("ServersNode_ServerNodes_ServerNodeCount", Long{10});
      for (std::size_t n = 1; n < m_all.size(); ++n) {
        const Text sNode = "ServersNode_ServerNodes_ServerNode" + std::to_string(n + 1) + "_";
        pb.WriteProperty(sNode + "Provider", "ORVOLEDB");
        pb.WriteProperty(sNode + "Server", m_all[n]);
        pb.WriteProperty(sNode + "User", "orvanesnapin");
        pb.WriteProperty(sNode + "ExtendedOptions", "");
      }
    });
    driver->Expand(kStaticNode);
  }

  /// Expands the server and presses "Cancel" as soon as that is offered.
  void ExpandAndCancel(const Text& sServer) {
    QTimer cancelling;
    QObject::connect(&cancelling, &QTimer::timeout, [] {
      for (QWidget* const widget : QApplication::allWidgets()) {
        auto* const button = widget->objectName() == "waitingPanel"
                                 ? widget->findChild<QPushButton*>("m_btnCancel")
                                 : nullptr;
        if (button != nullptr && button->isVisible() && button->isEnabled()) button->click();
      }
    });
    cancelling.start(5);
    driver->Expand(sServer);
  }
  bool IsConnected(const Text& sServer) {
    return driver->Menu(sServer).at(1) == MenuEntry{"Disconnect", true};
  }

  SilentPort m_refusing;
  SilentPort m_silent;
  Texts m_living;
  Texts m_dead;
  Texts m_all;
};

TEST_F(ten_servers, are_each_connected_by_itself) {
  EXPECT_EQ(driver->Children(kStaticNode), m_all);
  EXPECT_EQ(driver->LogonsSeen(), 0) << "nothing is connected before it is asked for";

  driver->Expand(m_dead[0]);
  EXPECT_NE(ErrorBox().find("There is no connection to the server at 127.0.0.1"), Text::npos);
  driver->Expand("S1");
  ExpandAndCancel(m_dead[1]);
  EXPECT_EQ(ErrorBox(), "The connection was cancelled.");
  for (const char* const sServer : {"S2", "S3", "S4"}) driver->Expand(sServer);
  driver->Expand(m_dead[2]);
  EXPECT_NE(ErrorBox().find("There is no connection to the server at /nowhere"), Text::npos);
  for (const char* const sServer : {"S5", "S6", "S7"}) driver->Expand(sServer);
  ExpectNoBoxes();
  EXPECT_EQ(driver->LogonsSeen(), 10) << "one for each";

  for (const Text& sServer : m_living) {
    EXPECT_TRUE(IsConnected(sServer)) << sServer;
    driver->Expand(sServer + ".Catalogs");
    EXPECT_TRUE(driver->HasItem(sServer + ".Catalogs.Orvane")) << sServer;
  }
  for (const Text& sServer : m_dead) {
    EXPECT_FALSE(IsConnected(sServer)) << sServer;
    EXPECT_EQ(driver->Children(sServer), Texts()) << sServer;
  }

  driver->Choose("S4", "Disconnect");
  for (const Text& sServer : m_living) EXPECT_EQ(IsConnected(sServer), sServer != "S4") << sServer;
  ExpectNoBoxes();
}

}  // namespace
}  // namespace orvane::scenarios::commands

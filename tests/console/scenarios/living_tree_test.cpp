// The tree over a real server: what it tells of the connection, what others change meanwhile, and
// what is asked of the server for looking at a menu.
#include <QApplication>
#include <QLabel>
#include <QTest>

#include "tests/fakes/until.h"
#include "tests/scenarios/command_fixture.h"

namespace orvane::scenarios::commands {
namespace {

class living_tree : public command_scenario {
 protected:
  static QString ShownServer() {
    for (QWidget* widget : QApplication::allWidgets()) {
      if (widget->objectName() == "shownServer") return qobject_cast<QLabel*>(widget)->text();
    }
    return "no such label";
  }
};

TEST_F(living_tree, server_and_user_are_named_while_connected) {
  OpenServers();
  driver->Select(kServer);
  EXPECT_EQ(ShownServer(), "localhost, not connected");
  driver->Expand(kServer);
  EXPECT_EQ(ShownServer(), "localhost as orvanesnapin");
  driver->Choose(kServer, "Disconnect");
  EXPECT_EQ(ShownServer(), "localhost, not connected");
  driver->Choose(kServer, "Connect...");
  EXPECT_EQ(ShownServer(), "localhost as orvanesnapin");
  ExpectNoBoxes();
}

TEST_F(living_tree, reload_shows_what_another_program_made) {
  OpenTables();
  driver->AddServer({kServer, {{"Mill", {}}}});
  EXPECT_FALSE(driver->HasItem("localhost.Catalogs.Mill"));
  driver->Select(kCatalogs);
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_F5);
  EXPECT_TRUE(tests::Until([&] { return driver->HasItem("localhost.Catalogs.Mill"); }));
  EXPECT_TRUE(driver->HasItem(kPlant));
  EXPECT_EQ(driver->Selected(), kCatalogs);
  ExpectNoBoxes();
}

TEST_F(living_tree, menu_of_a_table_asks_the_server_for_nothing) {
  OpenTables();
  driver->Select(kServer);
  const auto lBefore = driver->StatementsSent();
  const auto entries = driver->Menu(kPumps, MenuWay::RightClick);
  ASSERT_EQ(entries.size(), 1U);
  EXPECT_EQ(entries.front().sCaption, "Query...");
  EXPECT_EQ(driver->Selected(), kServer);
  EXPECT_EQ(driver->StatementsSent(), lBefore);
}

}  // namespace
}  // namespace orvane::scenarios::commands

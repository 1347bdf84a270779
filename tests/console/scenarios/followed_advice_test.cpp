// What a failure advises can be done, and helps: played with the real window over a real server.
#include <QApplication>
#include <QFile>
#include <QTest>

#include "tests/console/scenarios/host_driver.h"
#include "tests/fakes/until.h"
#include "tests/scenarios/command_fixture.h"

namespace orvane::scenarios::commands {
namespace {

constexpr const char* kOptions = "ServersNode_ServerNodes_ServerNode1_ExtendedOptions";

class followed_advice : public command_scenario {
 protected:
  console::MainWindow& Window() { return static_cast<console::HostDriver&>(*driver).Window(); }
  /// Edits the first server's options in the open document as the guide says, and opens it again.
  void AddOptions(const QByteArray& sOptions) {
    const Text sPath = Window().Document().Path();
    QFile file(QString::fromStdString(sPath));
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    QByteArrayList lines = file.readAll().split('\n');
    int nEdited = 0;
    bool bPart = false;
    for (QByteArray& sLine : lines) {
      if (sLine.startsWith("{\"part\"")) bPart = sLine.contains("_ServerNodes_ServerNode1_\"}");
      if (!bPart || !sLine.startsWith("{\"name\":\"ExtendedOptions\"")) continue;
      ASSERT_TRUE(sLine.endsWith("\"}")) << sLine.constData();
      sLine.insert(sLine.size() - 2, sOptions);
      ++nEdited;
    }
    ASSERT_EQ(nEdited, 1);
    file.seek(0);
    file.write(lines.join('\n'));
    file.close();
    ASSERT_TRUE(Window().OpenDocument(sPath));
    driver->Expand(kStaticNode);
  }
};

TEST_F(followed_advice, options_of_a_server_are_corrected_in_its_document) {
  driver->OpenDocument([](PropertyBag& pb, platform::ObjectFactory& objects) {
    WriteDocument(pb, objects);
    pb.WriteProperty(kOptions, "Log Level = 7;");
  });
  driver->Expand(kStaticNode);
  driver->Expand(kServer);
  EXPECT_EQ(ErrorBox(),
            "\"Log Level\" is a number from 0 to 3; write one into the server's extended options.");
  EXPECT_FALSE(driver->HasItem(kCatalogs));
  AddOptions("Log Level = 0;Time Zone = Nowhere;");
  driver->Expand(kServer);
  EXPECT_EQ(ErrorBox(),
            "There is no time zone \"Nowhere\"; write Local, UTC or a name such as Europe/Madrid "
            "into the server's extended options.");
  AddOptions("Time Zone = UTC;");
  driver->Expand(kServer);
  ExpectNoBoxes();
  EXPECT_TRUE(driver->HasItem(kCatalogs));
}

TEST_F(followed_advice, options_are_there_to_be_edited_when_none_were_set) {
  driver->OpenDocument(
      [](PropertyBag& pb, platform::ObjectFactory& objects) { WriteDocument(pb, objects); });
  driver->SaveAndReopen();
  AddOptions("Identifier Prefixes = True;");
  driver->Expand(kServer);
  driver->Expand(kCatalogs);
  ExpectNoBoxes();
  EXPECT_TRUE(driver->HasItem("localhost.Catalogs.Orv_Plant"));
}

TEST_F(followed_advice, a_query_whose_key_was_taken_comes_into_the_tree) {
  OpenQueries();
  // Refused for its letters' case alone, the query leaves the list; its item stays as it is.
  Fill({{"m_txtName", "ALL FANS"}});
  driver->Choose(kAllPumps, "Edit...");
  ErrorBox();
  NewQuery("All pumps", "SELECT 1");
  EXPECT_EQ(ErrorBox(),
            "The tree already has an item with the key \"localhost.Queries.All pumps\"; remove or "
            "edit the item that has it, then disconnect its server and connect it again.");
  Fill({{"m_txtName", "Old pumps"}});
  driver->Choose(kAllPumps, "Edit...");
  driver->Choose(kServer, "Disconnect");
  driver->Choose(kServer, "Connect...");
  driver->Expand(kQueries);
  ExpectNoBoxes();
  EXPECT_EQ(driver->Children(kQueries),
            (Texts{"localhost.Queries.All fans", kAllPumps, "localhost.Queries.Old pumps"}));
}

TEST_F(followed_advice, a_server_is_reloaded_whose_catalogs_were_never_opened) {
  OpenQueries();
  EXPECT_FALSE(driver->HasItem(kPlant));
  driver->Select(kServer);
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_F5);
  EXPECT_TRUE(tests::Until([&] { return driver->HasItem(kPlant); }));
  EXPECT_EQ(driver->Selected(), kServer);
  ExpectNoBoxes();
}

}  // namespace
}  // namespace orvane::scenarios::commands

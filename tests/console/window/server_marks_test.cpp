// How the window tells which servers are connected, and as whom.
#include <gmock/gmock.h>

#include <QLabel>
#include <QPushButton>

#include "console/session/server_of.h"
#include "platform/console/server_tag.h"
#include "tests/console/window/main_window_fixture.h"

namespace orvane::console {
namespace {

using platform::Value;

class TextProperty final : public platform::Property {
 public:
  TextProperty(Text sName, Text sText) : m_sName(std::move(sName)), m_sText(std::move(sText)) {}
  const Text& Name() const override { return m_sName; }
  platform::Value Value() const override { return m_sText; }
  void Value(const platform::Value&) override {}

 private:
  Text m_sName;
  Text m_sText;
};

/// Open, and knows its user and its link only.
class OpenConnection final : public platform::Connection, public platform::Properties {
 public:
  explicit OpenConnection(Text sUser, Text sLink = {})
      : m_user("User ID", std::move(sUser)), m_link("Link in Use", std::move(sLink)) {}
  Text ConnectionString() const override { return {}; }
  void ConnectionString(const Text&) override {}
  platform::Properties& Properties() override { return *this; }
  void Open(const Text&, const Text&, const Text&, platform::Long) override {}
  void Close() override {}
  platform::Boolean IsOpen() const override { return true; }
  platform::RecordsetPtr OpenSchema(platform::SchemaNumber,
                                    std::span<const platform::Value>) override {
    return nullptr;
  }
  platform::Long Count() const override { return 2; }
  platform::Property& Item(const platform::Value& vtName) override {
    if (*vtName.As<Text>() == m_user.Name() && !m_user.Value().As<Text>()->empty()) return m_user;
    if (*vtName.As<Text>() == m_link.Name() && !m_link.Value().As<Text>()->empty()) return m_link;
    throw platform::Failure(platform::failure::kItemNotFound, "There is none.", "test");
  }

 private:
  TextProperty m_user;
  TextProperty m_link;
};

class TaggedServer final : public platform::Object, public platform::ServerTag {
 public:
  platform::ConnectionPtr OpenConnection() const override { return connection; }
  platform::ConnectionPtr connection;
};

/// The usual tree, with tags that say whether their server is connected. The command connects or
/// disconnects.
class ServerMarksTest : public MainWindowTest {
 protected:
  ServerMarksTest() {
    m_script->expand = [this](Services& services, const ScopeItemPtr& item) {
      fakes::ExpandUsualTree(services, item);
      if (item->NodeTypeName() == "Servers") {
        services.console->ScopeItems().Item("alpha")->Tag(m_alpha);
        services.console->ScopeItems().Item("beta")->Tag(std::make_shared<TaggedServer>());
      }
    };
    ClickExpandMark("");
  }

  void Connect(platform::ConnectionPtr connection) {
    m_script->menuClick = [&](Services&, const Text&, const platform::Selection&) {
      m_alpha->connection = std::move(connection);
    };
    Session().ClickMenu("m_mnuConnect", 1, HostedSelection({Find("alpha")}));
  }
  QImage Picture(const char* sKey) {
    return IndexOf(sKey).data(Qt::DecorationRole).value<QIcon>().pixmap(32, 32).toImage();
  }
  QString Described(const char* sKey) {
    return IndexOf(sKey).data(Qt::AccessibleDescriptionRole).toString();
  }
  QString Status() {
    const auto* label = m_window->findChild<QLabel*>("shownServer");
    return label->isVisible() ? label->text() : QString();
  }

  std::shared_ptr<TaggedServer> m_alpha = std::make_shared<TaggedServer>();
};

TEST_F(ServerMarksTest, connected_server_looks_connected_and_a_disconnected_one_does_not) {
  EXPECT_EQ(Picture("alpha"), Picture("beta"));
  EXPECT_EQ(Described("alpha"), "not connected");
  Connect(std::make_shared<OpenConnection>("operator"));
  EXPECT_NE(Picture("alpha"), Picture("beta"));
  EXPECT_EQ(Described("alpha"), "connected");
  EXPECT_EQ(Described("beta"), "not connected");
  Connect(nullptr);
  EXPECT_EQ(Picture("alpha"), Picture("beta"));
  EXPECT_EQ(Described("alpha"), "not connected");
}

TEST_F(ServerMarksTest, page_of_a_server_says_whether_it_is_connected_and_opens_it) {
  ClickItem("alpha");
  EXPECT_EQ(Results().Sentence(), "alpha is not connected.");
  Connect(std::make_shared<OpenConnection>("operator"));
  EXPECT_EQ(Results().Sentence(), "alpha is connected.");
  QTest::mouseClick(Results().findChild<QPushButton*>("messageButton"), Qt::LeftButton);
  Settle();
  EXPECT_EQ(Find("alpha")->State(), NodeState::Loaded);
  EXPECT_EQ(Results().Sentence(), QString());
}

TEST_F(ServerMarksTest, status_bar_names_server_and_user_of_what_is_shown) {
  EXPECT_EQ(Status(), QString());
  ClickItem("alpha");
  EXPECT_EQ(Status(), "alpha, not connected");
  Connect(std::make_shared<OpenConnection>("operator"));
  EXPECT_EQ(Status(), "alpha as operator");
  ClickExpandMark("alpha");
  ClickExpandMark("alpha.Catalogs");
  ClickItem("alpha.Catalogs.Machine");
  EXPECT_EQ(Status(), "alpha as operator");
  ClickItem("beta");
  EXPECT_EQ(Status(), "beta, not connected");
  ClickItem("");
  EXPECT_EQ(Status(), QString());
}

TEST_F(ServerMarksTest, status_bar_tells_whether_the_link_is_encrypted) {
  Connect(std::make_shared<OpenConnection>("operator", "not encrypted"));
  ClickItem("alpha");
  EXPECT_EQ(Status(), "alpha as operator, not encrypted");
  Connect(std::make_shared<OpenConnection>("operator", "encrypted to " + Text(90, 'h') + ".end"));
  EXPECT_THAT(Status().toStdString(), testing::StartsWith("alpha as operator, encrypted to h"));
  EXPECT_THAT(Status().toStdString(), testing::Not(testing::HasSubstr(".end")))
      << "no name holds the window open";
  EXPECT_THAT(m_window->findChild<QLabel*>("shownServer")->toolTip().toStdString(),
              testing::HasSubstr("hhh.end"));
}

TEST_F(ServerMarksTest, connection_that_does_not_tell_its_user_is_named_by_its_server) {
  Connect(std::make_shared<OpenConnection>(Text()));
  ClickItem("alpha");
  EXPECT_EQ(Status(), "alpha");
}

TEST_F(ServerMarksTest, folders_beneath_a_server_are_no_servers) {
  ClickExpandMark("alpha");
  Session().Tree().Find("alpha.Catalogs")->Tag(m_alpha);
  Connect(std::make_shared<OpenConnection>("operator"));
  EXPECT_EQ(Described("alpha.Catalogs"), QString());
}

}  // namespace
}  // namespace orvane::console

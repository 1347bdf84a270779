// What a document keeps of how its grids are laid out, through a file and out of a stranger's.
#include "console/window/kept_view.h"

#include <QFile>

#include "tests/console/window/main_window_fixture.h"

namespace orvane::console {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Pair;

class kept_view : public MainWindowTest {
 protected:
  platform::Control& Shown() { return *Session().CurrentResultView()->HostedControl(); }
  void ShowTags() {
    ExpandToTables();
    ClickItem("alpha.Catalogs.Machine.Tags");
  }
  std::string Content(const char* sName) {
    QFile file(QString::fromStdString(Path(sName)));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    return file.readAll().toStdString();
  }
};

TEST_F(kept_view, layouts_of_grids_come_back_with_their_document) {
  ShowTags();
  Shown().Layout("{\"version\":1}");
  ASSERT_TRUE(m_window->SaveTo(Path("a.orvc")));
  EXPECT_THAT(Content("a.orvc"), HasSubstr("{\"name\":\"Grid.Item1\",\"text\":\"alpha/"));
  m_window->NewDocument();
  EXPECT_THAT(Session().Layouts(), IsEmpty());
  ASSERT_TRUE(m_window->OpenDocument(Path("a.orvc")));
  EXPECT_THAT(Session().Layouts(),
              ElementsAre(Pair("alpha/Catalogs/Machine/Tags", "{\"version\":1}")));
  ShowTags();
  EXPECT_EQ(Shown().Layout(), "{\"version\":1}");
}

TEST_F(kept_view, names_that_are_no_utf8_are_kept) {
  Session().Layouts({{"alpha/Queries/Zust\xE4nde", "{}"}});
  ASSERT_TRUE(m_window->SaveTo(Path("a.orvc")));
  m_window->NewDocument();
  ASSERT_TRUE(m_window->OpenDocument(Path("a.orvc")));
  EXPECT_THAT(Session().Layouts(), ElementsAre(Pair("alpha/Queries/Zust\xE4nde", "{}")));
}

TEST_F(kept_view, a_layout_alone_is_no_unsaved_work) {
  ASSERT_TRUE(m_window->SaveTo(Path("a.orvc")));
  ShowTags();
  Shown().Layout("{\"version\":1}");
  ClickItem("alpha");
  // A command, whatever it does, has the document looked at.
  Session().ClickMenu("m_mnuOptions", 1, HostedSelection({Find("")}));
  EXPECT_FALSE(m_window->IsModified());
  EXPECT_FALSE(m_window->isWindowModified());
  DoWork();
  EXPECT_TRUE(m_window->IsModified());
}

TEST_F(kept_view, halves_and_other_kinds_of_a_layout_are_left_out) {
  ASSERT_TRUE(m_window->SaveTo(Path("a.orvc")));
  QFile file(QString::fromStdString(Path("a.orvc")));
  ASSERT_TRUE(file.open(QIODevice::ReadOnly));
  QByteArray content;
  // Without seals it reads as edited by hand.
  for (const QByteArray& sLine : file.readAll().split('\n')) {
    if (!sLine.startsWith("{\"seal\"") && !sLine.isEmpty()) content += sLine + '\n';
    if (sLine != "{\"section\":\"view\"}") continue;
    content +=
        "{\"name\":\"Grid.Item1\",\"text\":\"alpha/Queries/A\"}\n"
        "{\"name\":\"Grid.Item2\",\"integer\":5}\n"
        "{\"name\":\"Grid.Layout2\",\"text\":\"x\"}\n"
        "{\"name\":\"Grid.Item3\",\"text\":\"alpha/Queries/B\"}\n"
        "{\"name\":\"Grid.Layout3\",\"boolean\":true}\n"
        "{\"name\":\"Grid.Item\",\"text\":\"\"}\n"
        "{\"name\":\"Grid.Layout\",\"text\":\"y\"}\n"
        "{\"name\":\"Grid.Item9\",\"text\":\"alpha/Queries/C\"}\n"
        "{\"name\":\"Grid.Layout9\",\"text\":\"kept\"}\n";
  }
  file.close();
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  file.write(content);
  file.close();
  const DialogAnswer answer([](QWidget* box) {
    for (auto* button : box->findChildren<QAbstractButton*>()) {
      if (button->text() == "&Open") return button->click();
    }
  });
  m_window->NewDocument();
  m_window->OpenDocument(Path("a.orvc"));
  EXPECT_THAT(Session().Layouts(), ElementsAre(Pair("alpha/Queries/C", "kept")));
}

}  // namespace
}  // namespace orvane::console

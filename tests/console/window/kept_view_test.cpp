// What a document keeps of how its grids are laid out, through a file and out of a stranger's, and
// what a user keeps of how the window looks with it.
#include "console/window/kept_view.h"

#include <QFile>
#include <QProcess>
#include <QSplitter>
#include <QStatusBar>
#include <sstream>

#include "console/document/document_format.h"
#include "console/results/result_pane.h"
#include "tests/console/window/main_window_fixture.h"

namespace orvane::console {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
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
  /// Puts lines into the view of "a.orvc", and leaves the seals out.
  void AddToView(const std::string& sLines) {
    std::istringstream lines(Content("a.orvc"));
    std::string sContent;
    for (std::string sLine; std::getline(lines, sLine);) {
      if (sLine == "{\"section\":\"end\"}") sContent += "{\"section\":\"view\"}\n" + sLines;
      if (!sLine.starts_with("{\"seal\"")) sContent += sLine + "\n";
    }
    WriteContent(sContent);
  }
  void WriteContent(const std::string& sContent) {
    QFile file(QString::fromStdString(Path("a.orvc")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(QByteArray::fromStdString(sContent));
  }
  /// Of the question whether one that was changed outside is opened.
  static void PressOpen(QWidget* box) {
    for (auto* button : box->findChildren<QAbstractButton*>()) {
      if (button->text() == "&Open") return button->click();
    }
  }
};

TEST_F(kept_view, layouts_of_grids_come_back_with_their_document) {
  ShowTags();
  Shown().Layout("{\"version\":1}");
  ASSERT_TRUE(m_window->SaveTo(Path("a.orvc")));
  EXPECT_THAT(Content("a.orvc"), HasSubstr("_\"}\n{\"name\":\"Item\",\"text\":\"alpha/"));
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
  // Without seals it reads as edited by hand.
  AddToView(
      "{\"name\":\"Grid.Item1\",\"text\":\"alpha/Queries/A\"}\n"
      "{\"name\":\"Grid.Item2\",\"integer\":5}\n"
      "{\"name\":\"Grid.Layout2\",\"text\":\"x\"}\n"
      "{\"name\":\"Grid.Item3\",\"text\":\"alpha/Queries/B\"}\n"
      "{\"name\":\"Grid.Layout3\",\"boolean\":true}\n"
      "{\"name\":\"Grid.Item\",\"text\":\"\"}\n"
      "{\"name\":\"Grid.Layout\",\"text\":\"y\"}\n"
      "{\"name\":\"Grid.1_Item\",\"text\":\"alpha/Queries/D\"}\n"
      "{\"name\":\"Grid.Item9\",\"text\":\"alpha/Queries/C\"}\n"
      "{\"name\":\"Grid.Layout9\",\"text\":\"kept\"}\n");
  const DialogAnswer answer(PressOpen);
  m_window->NewDocument();
  m_window->OpenDocument(Path("a.orvc"));
  EXPECT_THAT(Session().Layouts(), ElementsAre(Pair("alpha/Queries/C", "kept")));
}

TEST_F(kept_view, a_document_says_nothing_of_the_window) {
  m_window->resize(760, 500);
  ASSERT_TRUE(m_window->SaveTo(Path("a.orvc")));
  const auto before = Content("a.orvc");
  m_window->resize(700, 400);
  Action("actStatusBar")->trigger();
  Action("actIcons")->trigger();
  Action("actLargeImages")->trigger();
  m_window->findChild<QSplitter*>("splitter")->setSizes({200, 500});
  Session().ClickMenu("m_mnuOptions", 1, HostedSelection({Find("")}));
  EXPECT_FALSE(m_window->IsModified());
  ASSERT_TRUE(m_window->Save());
  EXPECT_EQ(Content("a.orvc"), before);
  EXPECT_THAT(before, Not(HasSubstr("Window.")));
}

TEST_F(kept_view, the_window_looks_with_each_document_as_it_did_when_that_was_let_go) {
  ASSERT_TRUE(m_window->SaveTo(Path("a.orvc")));
  m_window->resize(700, 400);
  Action("actStatusBar")->trigger();
  Action("actIcons")->trigger();
  ASSERT_TRUE(m_window->SaveTo(Path("b.orvc")));
  m_window->resize(760, 500);
  Action("actStatusBar")->trigger();
  ASSERT_TRUE(m_window->OpenDocument(Path("a.orvc")));
  m_window->resize(650, 450);
  Action("actStatusBar")->trigger();
  // Not saved since, which is no matter of the document.
  ASSERT_TRUE(m_window->OpenDocument(Path("b.orvc")));
  EXPECT_EQ(m_window->size(), QSize(760, 500));
  EXPECT_TRUE(m_window->statusBar()->isVisible());
  ASSERT_TRUE(m_window->OpenDocument(Path("a.orvc")));
  EXPECT_EQ(m_window->size(), QSize(650, 450));
  EXPECT_FALSE(m_window->statusBar()->isVisible());
  // Another window of the same user, after this one was closed.
  m_window->resize(660, 460);
  m_window->close();
  m_window.reset();
  MakeWindow();
  ASSERT_TRUE(m_window->OpenDocument(Path("a.orvc")));
  EXPECT_EQ(m_window->size(), QSize(660, 460));
}

TEST_F(kept_view, a_document_that_was_moved_opens_with_the_usual_window) {
  m_window->resize(760, 500);
  Action("actStatusBar")->trigger();
  ASSERT_TRUE(m_window->SaveTo(Path("a.orvc")));
  m_window->NewDocument();
  m_window->resize(640, 480);
  m_window->close();
  ASSERT_TRUE(QFile::rename(m_folder.filePath("a.orvc"), m_folder.filePath("moved.orvc")));
  m_window.reset();
  MakeWindow();
  ASSERT_TRUE(m_window->OpenDocument(Path("moved.orvc")));
  EXPECT_EQ(m_window->size(), QSize(640, 480));
  EXPECT_TRUE(m_window->statusBar()->isVisible());
}

// Whatever somebody wrote into it, and in whichever version.
TEST_F(kept_view, a_document_does_not_move_the_window_nor_change_what_it_shows) {
  auto* splitter = m_window->findChild<QSplitter*>();
  m_window->resize(740, 520);
  splitter->setSizes({200, 500});
  const auto text = [](const char* sName, const QByteArray& value) {
    return Text("{\"name\":\"") + sName + "\",\"text\":\"" + value.toStdString() + "\"}\n";
  };
  const auto flag = [](const char* sName, bool bValue) {
    return Text("{\"name\":\"") + sName + "\",\"boolean\":" + (bValue ? "true" : "false") + "}\n";
  };
  const auto sLines = text("Window.Geometry", m_window->saveGeometry().toBase64()) +
                      text("Splitter.State", splitter->saveState().toBase64()) +
                      text("List.Columns.Catalogs", "100,200") + flag("Toolbar.Shown", false) +
                      flag("Toolbar.LargeIcons", true) + flag("StatusBar.Shown", false) +
                      flag("List.Icons", true) + "{\"end\":\"view\"}\n";
  m_window->resize(760, 500);
  splitter->setSizes({500, 200});
  ASSERT_TRUE(m_window->SaveTo(Path("a.orvc")));
  AddToView(sLines);
  auto sBytes = Content("a.orvc");
  for (const char cVersion : {'3', '2'}) {
    sBytes[sBytes.find("\"version\":") + 10] = cVersion;
    m_window->NewDocument();
    WriteContent(sBytes);
    m_settings.remove("DocumentViews");
    m_settings.setValue("Window/Geometry", m_window->saveGeometry());
    const DialogAnswer opens(&PressOpen);
    ASSERT_TRUE(m_window->OpenDocument(Path("a.orvc")));
    EXPECT_EQ(opens.Count(), 1);
    EXPECT_EQ(m_window->size(), QSize(760, 500)) << cVersion;
    EXPECT_GT(splitter->sizes().at(0), splitter->sizes().at(1)) << cVersion;
    EXPECT_TRUE(m_window->statusBar()->isVisible());
    EXPECT_TRUE(Action("actToolbar")->isChecked());
    EXPECT_TRUE(Action("actSmallImages")->isChecked());
    EXPECT_TRUE(Action("actDetails")->isChecked());
    EXPECT_TRUE(Results().ColumnWidths().empty());
    ASSERT_TRUE(m_window->Save());
    EXPECT_THAT(Content("a.orvc"), Not(HasSubstr("Geometry")));
  }
}

TEST_F(kept_view, layouts_of_different_grids_merge) {
  const std::map<Text, Text> base = {
      {"alpha/Queries/B", "1"}, {"alpha/Queries/D", "1"}, {"alpha/Queries/F", "1"}};
  const auto save = [&](const char* sName, const std::map<Text, Text>& changed) {
    auto layouts = base;
    for (const auto& [sPlace, sLayout] : changed) layouts[sPlace] = sLayout;
    Session().Layouts(layouts);
    m_window->resize(m_window->width() - 30, m_window->height() - 20);
    ASSERT_TRUE(m_window->SaveTo(Path(sName)));
  };
  save("base", {});
  save("ours", {{"alpha/Queries/B", "2"}, {"alpha/Queries/C", "new"}});
  save("theirs", {{"alpha/Queries/D", "2"}, {"alpha/Queries/G", "new"}});
  ASSERT_EQ(QProcess::execute("git", {"merge-file", m_folder.filePath("ours"),
                                      m_folder.filePath("base"), m_folder.filePath("theirs")}),
            0);
  m_window->NewDocument();
  ASSERT_TRUE(m_window->OpenDocument(Path("ours")));
  EXPECT_FALSE(m_window->Document().IsUnsaved());
  EXPECT_THAT(Session().Layouts(),
              ElementsAre(Pair("alpha/Queries/B", "2"), Pair("alpha/Queries/C", "new"),
                          Pair("alpha/Queries/D", "2"), Pair("alpha/Queries/F", "1"),
                          Pair("alpha/Queries/G", "new")));
}

}  // namespace
}  // namespace orvane::console

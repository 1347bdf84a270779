#include "console/window/main_window.h"

#include <gmock/gmock.h>

#include <QDialog>
#include <QDir>
#include <QHeaderView>
#include <QInputDialog>
#include <QLabel>
#include <QMenu>
#include <QScreen>
#include <QSplitter>
#include <QStatusBar>
#include <QTest>
#include <QTextBlock>
#include <QTimer>

#include "console/document/row_memory.h"
#include "console/results/result_pane.h"
#include "console/scope/scope_pane.h"
#include "console/window/guide_window.h"
#include "tests/console/window/main_window_fixture.h"

namespace orvane::console {
namespace {

using testing::Contains;
using testing::Not;

TEST_F(MainWindowTest, new_window_shows_the_static_node_selected_and_not_opened) {
  EXPECT_EQ(Scope().currentIndex().data().toString(), "ORVANE Servers");
  EXPECT_EQ(Results().Sentence(), "Not opened yet: ORVANE Servers");
  EXPECT_THAT(m_script->log, Not(Contains("Expand Servers")));
}

TEST_F(MainWindowTest, item_count_stands_in_the_status_bar) {
  ClickExpandMark("");
  ClickItem("");
  const auto* label = m_window->findChild<QLabel*>("itemCount");
  EXPECT_EQ(label->text(), "2 items");
  DetailsView()->selectAll();
  EXPECT_EQ(label->text(), "2 items, 2 selected");
}

TEST_F(MainWindowTest, f5_refreshes_where_the_verb_is_enabled) {
  ExpandToTables();
  EXPECT_FALSE(Action("actRefresh")->isEnabled());
  ClickItem("alpha.Catalogs.Machine.Tags");
  QTest::keyClick(m_window.get(), Qt::Key_F5);
  Settle();
  EXPECT_THAT(m_script->log, Contains("Refresh"));
}

TEST_F(MainWindowTest, f5_reloads_where_the_verb_is_not) {
  ExpandToTables();
  ClickItem("alpha.Catalogs");
  EXPECT_FALSE(Action("actRefresh")->isEnabled());
  EXPECT_TRUE(Action("actReload")->isEnabled());
  m_script->log.clear();
  QTest::keyClick(m_window.get(), Qt::Key_F5);
  Settle();
  EXPECT_THAT(m_script->log, Contains("Expand Catalogs"));
  EXPECT_THAT(m_script->log, Not(Contains("Refresh")));
  EXPECT_TRUE(Scope().isExpanded(IndexOf("alpha.Catalogs")));
  ClickExpandMark("alpha.Catalogs.Machine");
  ClickItem("alpha.Catalogs.Machine.Tags");
  EXPECT_FALSE(Action("actReload")->isEnabled());
}

TEST_F(MainWindowTest, f5_is_about_the_item_that_typing_has_marked) {
  ExpandToTables();
  ClickItem("beta");
  EXPECT_FALSE(Action("actReload")->isEnabled());
  EXPECT_FALSE(Action("actRefresh")->isEnabled());
  m_script->log.clear();
  Scope().setFocus();
  QTest::keyClicks(&Scope(), "Catal");
  ASSERT_EQ(Scope().currentIndex(), IndexOf("alpha.Catalogs"));
  ASSERT_EQ(Session().Selected(), Find("beta"));
  QTest::keyClick(m_window.get(), Qt::Key_F5);
  Settle();
  EXPECT_EQ(Session().Selected(), Find("alpha.Catalogs"));
  EXPECT_THAT(m_script->log, Contains("Expand Catalogs"));
}

TEST_F(MainWindowTest, owner_hears_of_the_end_of_each_event) {
  const int iBefore = m_iEventsEnded;
  ClickExpandMark("");
  EXPECT_GT(m_iEventsEnded, iBefore);
  const int iExpanded = m_iEventsEnded;
  ASSERT_TRUE(m_window->NewDocument());
  EXPECT_GT(m_iEventsEnded, iExpanded);
}

TEST_F(MainWindowTest, window_and_columns_come_back_with_the_document) {
  ClickExpandMark("");
  m_window->resize(700, 500);
  DetailsView()->header()->resizeSection(0, 333);
  Action("actStatusBar")->trigger();
  ASSERT_TRUE(m_window->SaveTo(Path("view.orvc")));
  m_window->NewDocument();
  m_window->resize(600, 400);
  ASSERT_TRUE(m_window->OpenDocument(Path("view.orvc")));
  EXPECT_EQ(m_window->size(), QSize(700, 500));
  EXPECT_FALSE(Action("actStatusBar")->isChecked());
  EXPECT_EQ(DetailsView()->header()->sectionSize(0), 333);
  EXPECT_FALSE(Scope().isExpanded(IndexOf("")));
}

TEST_F(MainWindowTest, new_window_is_on_the_screen_whole) {
  const QRect room = m_window->screen()->availableGeometry();
  m_window = nullptr;
  MakeWindow();
  EXPECT_TRUE(room.contains(m_window->frameGeometry()));
  // Its title too, once there is one.
  EXPECT_LT(m_window->height(), room.height());
}

TEST_F(MainWindowTest, window_of_a_document_is_kept_on_the_screen_with_its_title) {
  const QRect room = m_window->screen()->availableGeometry();
  for (const QRect& wanted : {QRect(-3000, -500, 600, 400), QRect(0, 0, 20000, 9000),
                              QRect(room.right() - 5, room.bottom() - 5, 500, 400)}) {
    m_window->setGeometry(wanted);
    Settle();
    ASSERT_TRUE(m_window->SaveTo(Path("far.orvc")));
    m_window->NewDocument();
    ASSERT_TRUE(m_window->OpenDocument(Path("far.orvc")));
    Settle();
    EXPECT_TRUE(room.contains(m_window->frameGeometry()))
        << wanted.x() << " " << wanted.y() << " " << m_window->frameGeometry().width();
  }
  m_window->showFullScreen();
  Settle();
  ASSERT_TRUE(m_window->SaveTo(Path("full.orvc")));
  m_window->NewDocument();
  m_window->showNormal();
  ASSERT_TRUE(m_window->OpenDocument(Path("full.orvc")));
  EXPECT_FALSE(m_window->isFullScreen());
}

TEST_F(MainWindowTest, document_says_of_the_panes_how_they_share_the_window_and_no_more) {
  auto* splitter = m_window->findChild<QSplitter*>("splitter");
  const int iHandle = splitter->handleWidth();
  splitter->setOrientation(Qt::Vertical);
  splitter->setHandleWidth(3000);
  splitter->setChildrenCollapsible(true);
  ASSERT_TRUE(m_window->SaveTo(Path("odd.orvc")));
  splitter->setOrientation(Qt::Horizontal);
  splitter->setHandleWidth(iHandle);
  splitter->setChildrenCollapsible(false);
  ASSERT_TRUE(m_window->OpenDocument(Path("odd.orvc")));
  EXPECT_EQ(splitter->orientation(), Qt::Horizontal);
  EXPECT_EQ(splitter->handleWidth(), iHandle);
  EXPECT_FALSE(splitter->childrenCollapsible());
}

TEST_F(MainWindowTest, window_can_be_as_small_as_a_small_screen_however_large_its_letters) {
  const auto before = QApplication::font();
  auto font = before;
  // 14 points at 160 dots an inch.
  font.setPixelSize(31);
  QApplication::setFont(font);
  m_script->menus["Table"] = {{"m_mnuQuery", "Query...", true}};
  ExpandToTables();
  for (const char* sKey : {"", "alpha", "alpha.Catalogs.Machine", "alpha.Catalogs.Machine.Tags"}) {
    ClickItem(sKey);
    const auto least = m_window->minimumSizeHint();
    EXPECT_LE(least.width(), 1366 - 8) << sKey;
    EXPECT_LE(least.height(), 768 - 60) << sKey;
  }
  QApplication::setFont(before);
}

TEST_F(MainWindowTest, name_of_the_server_does_not_hold_the_window_open) {
  const int iLeast = m_window->minimumSizeHint().width();
  m_script->expand = [](Services& services, const ScopeItemPtr& item) {
    fakes::AddItem(services, item, "Server", Text(900, 'm'), Text(900, 'm'), true);
  };
  ClickExpandMark("");
  ClickItem(Text(900, 'm'));
  EXPECT_LE(m_window->minimumSizeHint().width(), std::max(iLeast, 1000));
}

TEST_F(MainWindowTest, long_word_of_a_sentence_does_not_hold_the_window_open) {
  const QString sWord(900, 'm');
  Results().ShowSentence(QIcon(), sWord, {});
  EXPECT_LE(m_window->minimumSizeHint().width(), 1000);
  EXPECT_EQ(Results().Sentence(), sWord);
  Results().ShowSentence(QIcon(), "Failed.", sWord);
  EXPECT_LE(m_window->minimumSizeHint().width(), 1000);
}

TEST_F(MainWindowTest, the_memory_for_rows_is_set_in_the_menu) {
  const auto answer = [&](int nMegabytes) {
    Action("actRowMemory")->trigger();
    auto* dialog = m_window->findChild<QInputDialog*>("rowMemory");
    ASSERT_NE(dialog, nullptr);
    dialog->setIntValue(nMegabytes);
    dialog->accept();
    QCoreApplication::sendPostedEvents(dialog, QEvent::DeferredDelete);
  };
  answer(2048);
  EXPECT_EQ(RowMemory(m_settings), std::size_t{2048} << 20);
  answer(5);
  EXPECT_EQ(RowMemory(m_settings), std::size_t{16} << 20) << "as little as there may be";
  answer(0);
  EXPECT_EQ(RowMemory(m_settings), std::nullopt);
}

TEST_F(MainWindowTest, line_of_a_control_stands_in_the_one_bar_at_the_bottom) {
  ExpandToTables();
  ClickItem("alpha.Catalogs.Machine.Tags");
  auto* line = m_window->findChild<QWidget*>("fakeStatusLine");
  ASSERT_NE(line, nullptr);
  EXPECT_EQ(line->parentWidget(), m_window->statusBar());
  EXPECT_TRUE(line->isVisible());
  // Without the bar it stays with the control.
  Action("actStatusBar")->trigger();
  EXPECT_EQ(line->parentWidget(), m_window->findChild<QWidget*>("fakeControl"));
  Action("actStatusBar")->trigger();
  EXPECT_EQ(line->parentWidget(), m_window->statusBar());
  ClickItem("alpha");
  EXPECT_EQ(m_window->findChild<QWidget*>("fakeStatusLine"), nullptr);
  ClickItem("alpha.Catalogs.Machine.Tags");
  m_window->NewDocument();
  EXPECT_EQ(m_window->findChild<QWidget*>("fakeStatusLine"), nullptr);
}

TEST_F(MainWindowTest, f1_opens_the_guide_once) {
  QTest::keyClick(&Scope(), Qt::Key_F1);
  Settle();
  auto* guide = m_window->findChild<GuideWindow*>();
  ASSERT_NE(guide, nullptr);
  EXPECT_TRUE(guide->isVisible());
  EXPECT_TRUE(guide->toPlainText().contains("keyboard"));
  const auto format = guide->document()->begin().begin().fragment().charFormat();
  EXPECT_FALSE(format.hasProperty(QTextFormat::FontFamilies)) << "its letters are the window's";
  guide->setSource(QUrl("grids.html"));
  EXPECT_TRUE(guide->toPlainText().contains("The grids"));
  EXPECT_TRUE(guide->screen()->availableGeometry().contains(guide->frameGeometry()));
  QTest::keyClick(&Scope(), Qt::Key_F1);
  Settle();
  EXPECT_EQ(m_window->findChildren<GuideWindow*>().size(), 1);
  QTest::keyClick(guide, Qt::Key_Escape);
  EXPECT_TRUE(Waits([&] { return m_window->findChild<GuideWindow*>() == nullptr; }));
}

TEST_F(MainWindowTest, f1_opens_the_guide_in_a_dialog_and_leaves_it_to_the_window) {
  DialogAnswer answer([this](QWidget* box) {
    QTest::keyClick(box, Qt::Key_F1);
    const auto* guide = box->findChild<GuideWindow*>();
    ASSERT_NE(guide, nullptr);
    EXPECT_TRUE(guide->isVisible());
    // No other window than the dialog's own can be used while it is open.
    EXPECT_EQ(QApplication::activeModalWidget(), box);
    EXPECT_EQ(guide->parentWidget(), box);
    EXPECT_EQ(m_window->findChildren<GuideWindow*>(Qt::FindDirectChildrenOnly).size(), 0);
    Press(box, QMessageBox::Ok);
  });
  QTest::keyClick(&Scope(), Qt::Key_F1);
  for (int n = 1; n < 3; ++n) {
    Action("actAbout")->trigger();
    EXPECT_EQ(answer.Count(), n);
    const auto guides = m_window->findChildren<GuideWindow*>(Qt::FindDirectChildrenOnly);
    ASSERT_EQ(guides.size(), 1);
    EXPECT_TRUE(guides.front()->isVisible());
  }
}

TEST_F(MainWindowTest, guide_of_a_dialog_over_another_one_is_left_to_that) {
  GuideWindow* guide = nullptr;
  DialogAnswer answer([&](QWidget* box) {
    QDialog over(box);
    QTimer::singleShot(0, &over, [&] {
      QTest::keyClick(&over, Qt::Key_F1);
      guide = over.findChild<GuideWindow*>();
      over.accept();
    });
    over.exec();
    ASSERT_NE(guide, nullptr);
    EXPECT_EQ(guide->parentWidget(), box);
    EXPECT_TRUE(guide->isVisible());
    // Without another F1 there.
    Press(box, QMessageBox::Ok);
  });
  Action("actAbout")->trigger();
  EXPECT_EQ(answer.Count(), 1);
}

TEST_F(MainWindowTest, guide_is_looked_for_with_what_is_installed_and_where_it_was_built) {
  const QDir top(m_folder.path());
  const auto put = [&](const QString& sFile) {
    ASSERT_TRUE(top.mkpath(QFileInfo(sFile).path()));
    QFile file(top.filePath(sFile));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  };
  ASSERT_TRUE(top.mkpath("usr/bin"));
  ASSERT_TRUE(top.mkpath("build/release/bin"));
  EXPECT_EQ(GuideFor(top.filePath("usr/bin")), "");
  put("usr/share/orvane/guide/user-guide.html");
  put("build/release/guide/user-guide.html");
  EXPECT_EQ(GuideFor(top.filePath("usr/bin")),
            top.filePath("usr/share/orvane/guide/user-guide.html"));
  EXPECT_EQ(GuideFor(top.filePath("build/release/bin")),
            top.filePath("build/release/guide/user-guide.html"));
}

TEST_F(MainWindowTest, guide_that_is_not_there_is_told_of) {
  DialogAnswer answer([](QWidget* box) {
    EXPECT_TRUE(qobject_cast<QMessageBox*>(box)->text().startsWith("The guide is not there"));
    Press(box, QMessageBox::Ok);
  });
  GuideWindow::Open({}, m_window.get());
  EXPECT_EQ(answer.Count(), 1);
  EXPECT_EQ(m_window->findChild<GuideWindow*>(), nullptr);
}

TEST_F(MainWindowTest, snap_in_that_cannot_be_loaded_is_told_and_the_window_stays_usable) {
  ASSERT_TRUE(m_window->SaveTo(Path("plant.orvc")));
  m_script->bFailCreate = true;
  m_window->NewDocument();
  EXPECT_EQ(Results().Sentence(), "The snap-in cannot be loaded.");
  EXPECT_FALSE(Action("actSave")->isEnabled());
  EXPECT_FALSE(m_window->Save());
  m_script->bFailCreate = false;
  EXPECT_TRUE(m_window->OpenDocument(Path("plant.orvc")));
  EXPECT_EQ(Scope().currentIndex().data().toString(), "ORVANE Servers");
  EXPECT_TRUE(Action("actSave")->isEnabled());
}

TEST_F(MainWindowTest, item_asked_for_while_a_control_waits_is_shown_and_opened_afterwards) {
  ExpandToTables();
  ClickItem("alpha.Catalogs.Machine.Tags");
  m_script->log.clear();
  m_wait->bRunning = true;
  ClickItem("beta");
  ClickExpandMark("beta");
  RightClick("beta");
  EXPECT_THAT(m_script->log, testing::IsEmpty());
  EXPECT_EQ(Session().Selected(), Find("alpha.Catalogs.Machine.Tags"));
  m_wait->bRunning = false;
  EXPECT_TRUE(Waits([&] { return m_script->Has("Expand Server"); }));
  EXPECT_EQ(Session().Selected(), Find("beta"));
  EXPECT_TRUE(Waits([&] { return m_window->findChild<QMenu*>("contextMenu") != nullptr; }));
}

TEST_F(MainWindowTest, window_does_not_close_while_a_handler_runs) {
  bool bClosed = true;
  m_script->menuClick = [&](Services&, const Text&, const platform::Selection&) {
    bClosed = m_window->close();
  };
  DoWork("first");
  EXPECT_FALSE(bClosed);
  EXPECT_TRUE(m_window->isVisible());
}

TEST_F(MainWindowTest, tree_takes_a_third_of_a_small_window_at_most_until_somebody_moves_it) {
  m_window->resize(600, 500);
  Settle();
  EXPECT_LE(Scope().width(), 200);
  m_window->resize(1'200, 500);
  Settle();
  EXPECT_GT(Scope().width(), 200);
  auto* splitter = m_window->findChild<QSplitter*>("splitter");
  const int nHandle = splitter->handle(1)->x();
  QTest::mousePress(splitter->handle(1), Qt::LeftButton, {}, {2, 100});
  QTest::mouseMove(splitter->handle(1), {102, 100});
  QTest::mouseRelease(splitter->handle(1), Qt::LeftButton, {}, {2, 100});
  Settle();
  const int nMoved = splitter->handle(1)->x();
  EXPECT_GT(nMoved, nHandle);
  m_window->resize(1'210, 500);
  Settle();
  EXPECT_EQ(splitter->handle(1)->x(), nMoved);
}

}  // namespace
}  // namespace orvane::console

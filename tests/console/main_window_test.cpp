#include "console/window/main_window.h"

#include <gmock/gmock.h>

#include <QHeaderView>
#include <QLabel>
#include <QTest>

#include "console/results/result_pane.h"
#include "console/scope/scope_pane.h"
#include "tests/console/main_window_fixture.h"

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
  Results().List().DetailsView()->selectAll();
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
  m_window->resize(900, 500);
  Results().List().DetailsView()->header()->resizeSection(0, 333);
  Action("actStatusBar")->trigger();
  ASSERT_TRUE(m_window->SaveTo(Path("view.orvc")));
  m_window->resize(700, 400);
  Action("actStatusBar")->trigger();
  m_window->NewDocument();
  ASSERT_TRUE(m_window->OpenDocument(Path("view.orvc")));
  EXPECT_EQ(m_window->size(), QSize(900, 500));
  EXPECT_FALSE(Action("actStatusBar")->isChecked());
  EXPECT_EQ(Results().List().DetailsView()->header()->sectionSize(0), 333);
  EXPECT_FALSE(Scope().isExpanded(IndexOf("")));
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

TEST_F(MainWindowTest, window_does_not_close_while_a_handler_runs) {
  bool bClosed = true;
  m_script->menuClick = [&](Services&, const Text&, const platform::Selection&) {
    bClosed = m_window->close();
  };
  DoWork("first");
  EXPECT_FALSE(bClosed);
  EXPECT_TRUE(m_window->isVisible());
}

}  // namespace
}  // namespace orvane::console

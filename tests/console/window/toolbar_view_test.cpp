#include "console/window/toolbar_view.h"

#include <gmock/gmock.h>

#include <QSignalSpy>
#include <QStatusBar>
#include <QStatusTipEvent>
#include <QTest>

#include "console/scope/scope_pane.h"
#include "tests/console/window/main_window_fixture.h"

namespace orvane::console {
namespace {

using testing::Contains;
using testing::Not;

TEST_F(MainWindowTest, toolbar_shows_the_buttons_of_the_snap_in_with_their_states) {
  ExpandToTables();
  auto& toolbar = Toolbar();
  EXPECT_TRUE(toolbar.actions().isEmpty());
  ClickItem("alpha.Catalogs.Machine.Tags");
  ASSERT_TRUE(toolbar.isVisible());
  EXPECT_EQ(toolbar.actions().size(), 4);
  EXPECT_TRUE(toolbar.actions()[2]->isSeparator());
  EXPECT_EQ(ButtonAction("MoveFirst")->toolTip(), "Move to First Row");
  EXPECT_FALSE(ButtonAction("MoveFirst")->icon().isNull());
  EXPECT_TRUE(ButtonAction("MoveFirst")->isEnabled());
  EXPECT_FALSE(ButtonAction("MoveLast")->isEnabled());
  EXPECT_TRUE(ButtonAction("Sql")->isCheckable());
  ClickItem("alpha");
  EXPECT_TRUE(toolbar.actions().isEmpty());
}

TEST_F(MainWindowTest, toolbar_keeps_no_buttons_that_were_taken_out_of_it) {
  ExpandToTables();
  ClickItem("alpha.Catalogs.Machine.Tags");
  const auto shown = Toolbar().findChildren<QAction*>().size();
  for (int n = 0; n < 3; ++n) {
    ClickItem("alpha");
    ClickItem("alpha.Catalogs.Machine.Tags");
  }
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  EXPECT_EQ(Toolbar().findChildren<QAction*>().size(), shown);
}

TEST_F(MainWindowTest, toolbar_takes_no_room_without_buttons_and_moves_nothing_in_the_tree) {
  ExpandToTables();
  auto& toolbar = Toolbar();
  for (const char* sSize : {"actSmallImages", "actLargeImages"}) {
    Action(sSize)->trigger();
    ClickItem("alpha.Catalogs.Machine.Tags");
    const auto tree = Scope().geometry();
    EXPECT_TRUE(toolbar.isVisible());
    EXPECT_FALSE(toolbar.actions().isEmpty());
    EXPECT_GE(toolbar.mapToGlobal(QPoint()).x(), Results().mapToGlobal(QPoint()).x());
    const int iBelow = m_window->findChild<QWidget*>("resultStack")->height();
    ClickItem("alpha");
    EXPECT_TRUE(toolbar.isHidden());
    EXPECT_GT(m_window->findChild<QWidget*>("resultStack")->height(), iBelow);
    EXPECT_EQ(Scope().geometry(), tree) << sSize;
  }
  Action("actToolbar")->trigger();
  EXPECT_TRUE(toolbar.isHidden());
  ClickItem("alpha.Catalogs.Machine.Tags");
  EXPECT_TRUE(toolbar.isHidden());
  ClickItem("alpha");
  EXPECT_TRUE(toolbar.isHidden());
}

TEST_F(MainWindowTest, toolbar_covers_nothing_with_a_tip_once_a_button_was_pressed) {
  ExpandToTables();
  ClickItem("alpha.Catalogs.Machine.Tags");
  auto& toolbar = Toolbar();
  QStatusTipEvent tip(ButtonAction("MoveFirst")->statusTip());
  QCoreApplication::sendEvent(&toolbar, &tip);
  EXPECT_EQ(m_window->statusBar()->currentMessage(), "Move to First Row");
  ButtonAction("MoveFirst")->trigger();
  Settle();
  EXPECT_EQ(m_window->statusBar()->currentMessage(), "");
}

TEST_F(MainWindowTest, toolbar_is_reached_by_tab_and_pressed_by_space) {
  ExpandToTables();
  ClickItem("alpha.Catalogs.Machine.Tags");
  auto& toolbar = Toolbar();
  auto* button = toolbar.widgetForAction(ButtonAction("Sql"));
  for (int i = 0; i < 20 && !button->hasFocus(); ++i) {
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
  }
  ASSERT_TRUE(button->hasFocus());
  QSignalSpy pressed(ButtonAction("Sql"), &QAction::triggered);
  QTest::keyClick(button, Qt::Key_Space);
  EXPECT_EQ(pressed.count(), 1);
}

TEST_F(MainWindowTest, pressed_state_is_what_the_snap_in_made_of_the_click) {
  bool bPress = true;
  m_script->buttonClick = [&](Services&, platform::ToolbarButton& button) {
    button.Pressed(bPress);
  };
  ExpandToTables();
  ClickItem("alpha.Catalogs.Machine.Tags");
  auto& toolbar = Toolbar();
  auto* button = toolbar.widgetForAction(ButtonAction("Sql"));
  QTest::mouseClick(button, Qt::LeftButton);
  Settle();
  EXPECT_THAT(m_script->log, Contains("Button Sql"));
  EXPECT_TRUE(ButtonAction("Sql")->isChecked());
  // A click that the snap-in does not follow leaves the button as it is.
  QTest::mouseClick(button, Qt::LeftButton);
  Settle();
  EXPECT_TRUE(ButtonAction("Sql")->isChecked());
}

TEST_F(MainWindowTest, click_that_comes_while_the_snap_in_is_at_work_leaves_the_button_as_it_was) {
  ExpandToTables();
  ClickItem("alpha.Catalogs.Machine.Tags");
  auto& toolbar = Toolbar();
  auto* button = toolbar.widgetForAction(ButtonAction("Sql"));
  m_script->refresh = [&](Services&, platform::View&) {
    QTest::mouseClick(button, Qt::LeftButton);
    ASSERT_TRUE(ButtonAction("Sql")->isChecked());
    Settle();
    EXPECT_TRUE(Session().IsBusy());
    EXPECT_FALSE(ButtonAction("Sql")->isChecked());
  };
  Session().Refresh();
  EXPECT_THAT(m_script->log, Contains("Refresh"));
  EXPECT_THAT(m_script->log, Not(Contains("Button Sql")));
  EXPECT_FALSE(ButtonAction("Sql")->isChecked());
}

}  // namespace
}  // namespace orvane::console

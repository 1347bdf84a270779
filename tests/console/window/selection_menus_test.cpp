#include "console/window/selection_menus.h"

#include <gmock/gmock.h>

#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QStatusBar>
#include <QTest>

#include "console/results/result_pane.h"
#include "console/scope/scope_pane.h"
#include "tests/console/window/main_window_fixture.h"

namespace orvane::console {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

TEST_F(MainWindowTest,
       context_menu_has_the_commands_of_the_item_under_the_pointer_and_shows_nothing) {
  m_script->menus["Server"] = {{"m_mnuConnect", "Connect...", false},
                               {"m_mnuDisconnect", "Disconnect", true}};
  ClickExpandMark("");
  const auto at = Scope().visualRect(IndexOf("alpha")).center();
  QTest::mouseClick(Scope().viewport(), Qt::RightButton, {}, at);
  QContextMenuEvent event(QContextMenuEvent::Mouse, at, Scope().viewport()->mapToGlobal(at));
  QApplication::sendEvent(Scope().viewport(), &event);
  Settle();
  EXPECT_EQ(Session().Selected(), Find(""));
  EXPECT_EQ(Scope().currentIndex(), IndexOf(""));
  auto* menu = m_window->findChild<QMenu*>("contextMenu");
  ASSERT_NE(menu, nullptr);
  auto* connectAction = menu->findChild<QAction*>("m_mnuConnect");
  ASSERT_NE(connectAction, nullptr);
  EXPECT_EQ(connectAction->text(), "Connect...");
  EXPECT_FALSE(connectAction->isEnabled());
  auto* disconnectAction = menu->findChild<QAction*>("m_mnuDisconnect");
  QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(disconnectAction).center());
  Settle();
  EXPECT_THAT(m_script->log, Contains("Click m_mnuDisconnect 2"));
}

TEST_F(MainWindowTest, context_menu_of_a_list_row_is_about_that_row) {
  m_script->menus["Server"] = {{"m_mnuRemoveServer", "Remove", true}};
  Text sKey;
  m_script->menuClick = [&](Services&, const Text&, const platform::Selection& selection) {
    sKey = selection.ScopeItem(1)->Key();
  };
  ClickExpandMark("");
  auto* view = DetailsView();
  const auto at = view->visualRect(view->model()->index(1, 0)).center();
  QTest::mouseClick(view->viewport(), Qt::RightButton, {}, at);
  QContextMenuEvent event(QContextMenuEvent::Mouse, at, view->viewport()->mapToGlobal(at));
  QApplication::sendEvent(view->viewport(), &event);
  Settle();
  auto* menu = m_window->findChild<QMenu*>("contextMenu");
  ASSERT_NE(menu, nullptr);
  auto* action = menu->findChild<QAction*>("m_mnuRemoveServer");
  QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(action).center());
  Settle();
  EXPECT_EQ(sKey, "beta");
  EXPECT_EQ(Session().Selected(), Find(""));
}

TEST_F(MainWindowTest, menu_key_opens_the_menu_at_the_selected_item) {
  m_script->menus["Servers"] = {{"m_mnuOptions", "Options...", true}};
  Scope().setFocus();
  QContextMenuEvent event(QContextMenuEvent::Keyboard, {0, 0}, {0, 0});
  QApplication::sendEvent(&Scope(), &event);
  Settle();
  auto* menu = m_window->findChild<QMenu*>("contextMenu");
  ASSERT_NE(menu, nullptr);
  EXPECT_NE(menu->findChild<QAction*>("m_mnuOptions"), nullptr);
}

TEST_F(MainWindowTest, shift_f10_does_what_the_menu_key_does) {
  m_script->menus["Servers"] = {{"m_mnuOptions", "Options...", true}};
  Scope().setFocus();
  QTest::keyClick(&Scope(), Qt::Key_F10, Qt::ShiftModifier);
  Settle();
  auto* menu = m_window->findChild<QMenu*>("contextMenu");
  ASSERT_NE(menu, nullptr);
  EXPECT_NE(menu->findChild<QAction*>("m_mnuOptions"), nullptr);
}

TEST_F(MainWindowTest, right_click_on_a_table_and_its_command_do_not_run_its_query) {
  m_script->menus["Table"] = {{"m_mnuQuery", "Query...", true}};
  ExpandToTables();
  m_script->log.clear();
  RightClick("alpha.Catalogs.Machine.Tags");
  EXPECT_EQ(Session().Selected(), Find(""));
  EXPECT_THAT(m_script->log, IsEmpty());
  auto* menu = m_window->findChild<QMenu*>("contextMenu");
  ASSERT_NE(menu, nullptr);
  auto* query = menu->findChild<QAction*>("m_mnuQuery");
  ASSERT_NE(query, nullptr);
  QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(query).center());
  Settle();
  EXPECT_THAT(m_script->log, ElementsAre("Click m_mnuQuery 1"));
  EXPECT_EQ(Session().Selected(), Find(""));
}

TEST_F(MainWindowTest, command_on_an_item_with_a_list_takes_its_place_from_a_grid) {
  m_script->menus["Server"] = {{"m_mnuDisconnect", "Disconnect", true}};
  ExpandToTables();
  ClickItem("alpha.Catalogs.Machine.Tags");
  RightClick("beta");
  EXPECT_EQ(Session().Selected(), Find("alpha.Catalogs.Machine.Tags"));
  auto* menu = m_window->findChild<QMenu*>("contextMenu");
  ASSERT_NE(menu, nullptr);
  auto* disconnect = menu->findChild<QAction*>("m_mnuDisconnect");
  QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(disconnect).center());
  Settle();
  EXPECT_EQ(Session().Selected(), Find("beta"));
  EXPECT_EQ(m_script->log.back(), "Click m_mnuDisconnect 1");
}

/// The keys for an item's commands, pressed in the tree and in the list.
class CommandKeysTest : public MainWindowTest {
 protected:
  CommandKeysTest() {
    m_script->menus["Query"] = {{"m_mnuEdit", "Edit...", true}, {"m_mnuRemove", "Remove", true}};
    m_script->menus["Server"] = {{"m_mnuRemoveServer", "Remove", true}};
    m_script->menus["Catalog"] = {{"m_mnuCatalogRemove", "Remove", false}};
    m_script->menuClick = [this](Services&, const Text&, const platform::Selection& selection) {
      m_clicked.push_back(selection.ScopeItem(1)->Key());
    };
    ExpandToTables();
    ClickItem("alpha.Queries");
    QTest::keyClick(&Scope(), Qt::Key_Return);
    Settle();
    m_script->log.clear();
  }
  void Key(QWidget& pane, Qt::Key key) {
    pane.setFocus();
    QTest::keyClick(&pane, key);
    Settle();
  }
  std::vector<Text> Clicks() const {
    std::vector<Text> clicks;
    for (const auto& sEntry : m_script->log) {
      if (sEntry.starts_with("Click ")) clicks.push_back(sEntry);
    }
    return clicks;
  }

  std::vector<Text> m_clicked;
};

TEST_F(CommandKeysTest, f2_edits_and_delete_removes_the_item_marked_in_the_tree) {
  ClickItem("alpha.Queries.Load");
  Key(Scope(), Qt::Key_F2);
  Key(Scope(), Qt::Key_Delete);
  ClickItem("beta");
  Key(Scope(), Qt::Key_F2);
  Key(Scope(), Qt::Key_Delete);
  EXPECT_THAT(Clicks(),
              ElementsAre("Click m_mnuEdit 1", "Click m_mnuRemove 2", "Click m_mnuRemoveServer 1"));
  EXPECT_THAT(m_clicked, ElementsAre("alpha.Queries.Load", "alpha.Queries.Load", "beta"));
}

TEST_F(CommandKeysTest, keys_in_the_list_are_about_its_marked_row) {
  auto& list = *DetailsView();
  list.setCurrentIndex(list.model()->index(0, 0));
  Key(list, Qt::Key_F2);
  Key(list, Qt::Key_Delete);
  Action("actIcons")->trigger();
  Key(*Results().List().ActiveView(), Qt::Key_Delete);
  EXPECT_THAT(m_clicked,
              ElementsAre("alpha.Queries.Load", "alpha.Queries.Load", "alpha.Queries.Load"));
  EXPECT_EQ(Session().Selected(), Find("alpha.Queries"));
}

TEST_F(CommandKeysTest, nothing_happens_without_the_command_or_where_it_is_disabled) {
  ClickItem("alpha.Catalogs.Machine");
  Key(Scope(), Qt::Key_Delete);
  ClickItem("alpha.Catalogs.Machine.Tags");
  Key(Scope(), Qt::Key_Delete);
  Key(Scope(), Qt::Key_F2);
  ClickItem("alpha.Queries");
  auto& list = *DetailsView();
  list.clearSelection();
  Key(list, Qt::Key_Delete);
  EXPECT_THAT(Clicks(), IsEmpty());
}

TEST_F(CommandKeysTest, delete_in_a_control_is_the_controls_own) {
  ClickItem("alpha.Catalogs.Machine.Tags");
  m_script->menus["Table"] = {{"m_mnuRemove", "Remove", true}};
  auto* box = m_window->findChild<QLineEdit*>("fakeControl");
  box->setText("ab");
  box->setCursorPosition(0);
  Key(*box, Qt::Key_Delete);
  EXPECT_EQ(box->text(), "b");
  EXPECT_THAT(Clicks(), IsEmpty());
}

TEST_F(CommandKeysTest, key_that_is_held_down_removes_one_item) {
  ClickItem("beta");
  Scope().setFocus();
  QKeyEvent held(QEvent::KeyPress, Qt::Key_Delete, Qt::NoModifier, {}, true);
  QApplication::sendEvent(&Scope(), &held);
  Settle();
  EXPECT_THAT(Clicks(), IsEmpty());
}

TEST_F(MainWindowTest, item_that_its_command_removed_is_not_shown_afterwards) {
  m_script->menus["Table"] = {{"m_mnuRemove", "Remove", true}};
  m_script->menuClick = [](Services& services, const Text&, const platform::Selection& selection) {
    services.console->ScopeItems().Remove(selection.ScopeItem(1)->Key());
  };
  ExpandToTables();
  m_script->log.clear();
  RightClick("alpha.Catalogs.Machine.Tags");
  auto* menu = m_window->findChild<QMenu*>("contextMenu");
  ASSERT_NE(menu, nullptr);
  auto* remove = menu->findChild<QAction*>("m_mnuRemove");
  QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(remove).center());
  Settle();
  EXPECT_EQ(Session().Selected(), Find(""));
  EXPECT_THAT(m_script->log, ElementsAre("Click m_mnuRemove 1"));
}

TEST_F(MainWindowTest, menu_asked_for_while_a_table_is_being_shown_opens_afterwards) {
  m_script->menus["Server"] = {{"m_mnuRemoveServer", "Remove", true}};
  ExpandToTables();
  m_script->activate = [&](Services&, platform::ResultView& view) {
    if (view.Name() != "TableEditorOcxView") return;
    // A query that takes its time lets the window handle its events.
    RightClick("beta");
    EXPECT_EQ(m_window->findChild<QMenu*>("contextMenu"), nullptr);
  };
  ClickItem("alpha.Catalogs.Machine.Tags");
  Settle();
  auto* menu = m_window->findChild<QMenu*>("contextMenu");
  ASSERT_NE(menu, nullptr);
  EXPECT_NE(menu->findChild<QAction*>("m_mnuRemoveServer"), nullptr);
}

TEST_F(MainWindowTest, menu_of_an_item_that_went_meanwhile_does_not_open) {
  ExpandToTables();
  m_script->activate = [&](Services& services, platform::ResultView& view) {
    if (view.Name() != "TableEditorOcxView") return;
    RightClick("beta");
    services.console->ScopeItems().Remove("beta");
  };
  ClickItem("alpha.Catalogs.Machine.Tags");
  Settle();
  EXPECT_EQ(m_window->findChild<QMenu*>("contextMenu"), nullptr);
}

TEST_F(MainWindowTest, command_says_in_the_status_bar_what_comes_of_it) {
  m_script->menus["Catalog"] = {{"m_mnuCatalogRemove", "Remove", true, "Drops the catalog."}};
  ExpandToTables();
  RightClick("alpha.Catalogs.Machine");
  auto* menu = m_window->findChild<QMenu*>("contextMenu");
  ASSERT_NE(menu, nullptr);
  auto* remove = menu->findChild<QAction*>("m_mnuCatalogRemove");
  const auto* bar = m_window->statusBar();
  remove->hover();
  EXPECT_EQ(bar->currentMessage(), "Drops the catalog.");
  QString sDuring;
  m_script->menuClick = [&](Services&, const Text&, const platform::Selection&) {
    sDuring = bar->currentMessage();
  };
  QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(remove).center());
  Settle();
  EXPECT_EQ(sDuring, "Drops the catalog.");
  EXPECT_EQ(bar->currentMessage(), QString());
}

TEST_F(MainWindowTest, branch_beside_the_one_shown_is_reloaded_from_its_menu) {
  ExpandToTables();
  ClickItem("beta");
  m_script->log.clear();
  RightClick("alpha.Catalogs");
  auto* menu = m_window->findChild<QMenu*>("contextMenu");
  ASSERT_NE(menu, nullptr);
  auto* reload = menu->findChild<QAction*>("actReloadItem");
  ASSERT_NE(reload, nullptr);
  QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(reload).center());
  Settle();
  EXPECT_THAT(m_script->log, ElementsAre("Expand Catalogs"));
  EXPECT_EQ(Session().Selected(), Find("beta"));
}

TEST_F(MainWindowTest, rows_are_imported_from_a_tables_menu_which_shows_the_table) {
  ExpandToTables();
  ClickItem("beta");
  RightClick("alpha.Catalogs.Machine.Tags");
  auto* menu = m_window->findChild<QMenu*>("contextMenu");
  ASSERT_NE(menu, nullptr);
  auto* import = menu->findChild<QAction*>("actImportRows");
  ASSERT_NE(import, nullptr);
  QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(import).center());
  Settle();
  EXPECT_EQ(Session().Selected(), Find("alpha.Catalogs.Machine.Tags"));
  const auto* grid = m_window->findChild<QLineEdit*>("fakeControl");
  ASSERT_NE(grid, nullptr);
  EXPECT_EQ(grid->text(), "importing");
}

TEST_F(MainWindowTest, rows_are_imported_into_nothing_else_than_tables) {
  ExpandToTables();
  for (const char* sKey : {"", "alpha", "alpha.Catalogs", "alpha.Catalogs.Machine"}) {
    RightClick(sKey);
    auto* menu = m_window->findChild<QMenu*>("contextMenu");
    ASSERT_NE(menu, nullptr) << sKey;
    EXPECT_EQ(menu->findChild<QAction*>("actImportRows"), nullptr) << sKey;
    menu->close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    Settle();
  }
}

TEST_F(MainWindowTest, action_menu_has_the_commands_of_the_selection) {
  m_script->menus["Servers"] = {{"m_mnuServersConnect", "Connect...", true},
                                {"m_mnuOptions", "Options...", true}};
  auto* menu = m_window->findChild<QMenu*>("mnuAction");
  emit menu->aboutToShow();
  QStringList texts;
  for (auto* action : menu->actions()) {
    if (!action->isSeparator()) texts.append(action->text());
  }
  EXPECT_EQ(texts, QStringList({"&Open", "Connect...", "Options...", "&Refresh"}));
}

TEST_F(MainWindowTest, menus_have_the_heading_that_the_snap_in_gave_their_commands) {
  m_script->menus["Servers"] = {{"m_mnuOptions", "Options...", true}};
  auto* menu = m_window->findChild<QMenu*>("mnuAction");
  emit menu->aboutToShow();
  const auto actions = menu->actions();
  ASSERT_GE(actions.size(), 3);
  EXPECT_EQ(actions[0]->text(), "&Open");
  EXPECT_TRUE(actions[1]->isSeparator());
  EXPECT_EQ(actions[1]->text(), "Servers");
  EXPECT_EQ(actions[2]->text(), "Options...");
}

TEST_F(MainWindowTest, alt_with_a_letter_opens_the_menu_of_the_marked_row) {
  m_script->menus["Servers"] = {{"m_mnuOptions", "Options...", true}};
  m_script->menus["Server"] = {{"m_mnuConnect", "Connect...", true}};
  ClickExpandMark("");
  auto* view = DetailsView();
  view->setFocus();
  view->setCurrentIndex(view->model()->index(1, 0));
  QTest::keyClick(view, Qt::Key_A, Qt::AltModifier);
  Settle();
  auto* menu = m_window->findChild<QMenu*>("mnuAction");
  ASSERT_TRUE(menu->isVisible());
  EXPECT_NE(menu->findChild<QAction*>("m_mnuConnect"), nullptr);
  EXPECT_EQ(menu->findChild<QAction*>("m_mnuOptions"), nullptr);
}

TEST_F(MainWindowTest, alt_alone_and_arrows_open_the_menu_of_the_marked_row) {
  m_script->menus["Servers"] = {{"m_mnuOptions", "Options...", true}};
  m_script->menus["Server"] = {{"m_mnuConnect", "Connect...", true}};
  ClickExpandMark("");
  auto* view = DetailsView();
  auto* menu = m_window->findChild<QMenu*>("mnuAction");
  const auto openByAlt = [&](QWidget* from) {
    QTest::keyPress(from, Qt::Key_Alt, Qt::AltModifier);
    QTest::keyRelease(from, Qt::Key_Alt);
    ASSERT_TRUE(m_window->menuBar()->hasFocus());
    QTest::keyClick(m_window->menuBar(), Qt::Key_Right);
    QTest::keyClick(m_window->menuBar(), Qt::Key_Down);
    Settle();
    ASSERT_TRUE(menu->isVisible());
  };
  view->setFocus();
  view->setCurrentIndex(view->model()->index(1, 0));
  openByAlt(view);
  EXPECT_NE(menu->findChild<QAction*>("m_mnuConnect"), nullptr);
  EXPECT_EQ(menu->findChild<QAction*>("m_mnuOptions"), nullptr);
  QTest::keyClick(menu, Qt::Key_Escape);
  QTest::keyClick(m_window->menuBar(), Qt::Key_Escape);
  // The row stays marked, but the tree is where the user is.
  Scope().setFocus();
  openByAlt(&Scope());
  EXPECT_EQ(menu->findChild<QAction*>("m_mnuConnect"), nullptr);
  EXPECT_NE(menu->findChild<QAction*>("m_mnuOptions"), nullptr);
}

}  // namespace
}  // namespace orvane::console

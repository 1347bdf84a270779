#include "console/window/main_window.h"

#include <gmock/gmock.h>

#include <QAbstractItemModelTester>
#include <QElapsedTimer>
#include <QFile>
#include <QFileDialog>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QPushButton>
#include <QScrollBar>
#include <QSettings>
#include <QSignalSpy>
#include <QSplitter>
#include <QTabBar>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QToolButton>

#include "console/dialogs/message_boxes.h"
#include "console/results/result_pane.h"
#include "console/scope/scope_pane.h"
#include "console/window/notice_bar.h"
#include "console/window/selection_menus.h"
#include "console/window/toolbar_view.h"
#include "tests/console/main_window_fixture.h"

namespace orvane::console {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

TEST_F(MainWindowTest, new_window_shows_the_static_node_selected_and_not_opened) {
  EXPECT_EQ(Scope().currentIndex().data().toString(), "ORVANE Servers");
  EXPECT_EQ(Results().Sentence(), "ORVANE Servers has not been opened yet.");
  EXPECT_THAT(m_script->log, Not(Contains("Expand Servers")));
}

TEST_F(MainWindowTest, expand_mark_expands_by_mouse) {
  ExpandToTables();
  EXPECT_TRUE(Scope().isExpanded(IndexOf("alpha.Catalogs.Machine")));
  EXPECT_EQ(Session().Tree().rowCount(IndexOf("alpha.Catalogs.Machine")), 3);
}

TEST_F(MainWindowTest, tree_is_walked_and_opened_by_keys) {
  Scope().setFocus();
  QTest::keyClick(&Scope(), Qt::Key_Right);
  Settle();
  ASSERT_NE(Find("alpha"), nullptr);
  EXPECT_TRUE(Scope().isExpanded(IndexOf("")));
  QTest::keyClick(&Scope(), Qt::Key_Down);
  Settle();
  EXPECT_EQ(Session().Selected(), Find("alpha"));
  QTest::keyClick(&Scope(), Qt::Key_Return);
  Settle();
  EXPECT_NE(Find("alpha.Catalogs"), nullptr);
  EXPECT_TRUE(Scope().isExpanded(IndexOf("alpha")));
  QTest::keyClick(&Scope(), Qt::Key_Left);
  Settle();
  EXPECT_FALSE(Scope().isExpanded(IndexOf("alpha")));
  QTest::keyClick(&Scope(), Qt::Key_Right);
  Settle();
  EXPECT_THAT(m_script->log, Contains("Expand Server").Times(1));
}

TEST_F(MainWindowTest, mark_of_the_selected_item_spans_the_pane) {
  const auto spans = [&] {
    return Scope().visualRect(IndexOf("")).right() + 1 >= Scope().viewport()->width();
  };
  EXPECT_TRUE(spans());
  m_window->findChild<QSplitter*>("splitter")->setSizes({500, 500});
  Settle();
  EXPECT_TRUE(spans());
}

TEST_F(MainWindowTest, item_without_expand_mark_opens_by_double_click_enter_and_right) {
  for (const int iWay : {0, 1, 2}) {
    m_window->NewDocument();
    Settle();
    ClickExpandMark("");
    ClickExpandMark("alpha");
    ASSERT_FALSE(Session().Tree().hasChildren(IndexOf("alpha.Queries")));
    ClickItem("alpha.Queries");
    EXPECT_EQ(Find("alpha.Queries.Load"), nullptr);
    if (iWay == 0) {
      QTest::mouseDClick(Scope().viewport(), Qt::LeftButton, {},
                         Scope().visualRect(IndexOf("alpha.Queries")).center());
    } else {
      QTest::keyClick(&Scope(), iWay == 1 ? Qt::Key_Enter : Qt::Key_Right);
    }
    Settle();
    EXPECT_NE(Find("alpha.Queries.Load"), nullptr) << iWay;
    EXPECT_TRUE(Scope().isExpanded(IndexOf("alpha.Queries")));
  }
}

TEST_F(MainWindowTest, star_opens_one_level_only) {
  Scope().setFocus();
  QTest::keyClick(&Scope(), Qt::Key_Asterisk);
  Settle();
  QTest::keyClick(&Scope(), Qt::Key_Asterisk);
  Settle();
  EXPECT_THAT(m_script->log, Contains("Expand Servers"));
  EXPECT_THAT(m_script->log, Not(Contains("Expand Server")));
}

TEST_F(MainWindowTest, failed_expansion_is_folded_up_and_can_be_tried_again) {
  bool bFail = true;
  m_script->expand = [&](Services& services, const ScopeItemPtr& item) {
    if (bFail && item->NodeTypeName() == "Server") {
      throw platform::Failure(platform::failure::kServerNotFound, "The server does not answer.");
    }
    fakes::ExpandUsualTree(services, item);
  };
  ClickExpandMark("");
  {
    DialogAnswer answer([](QWidget* box) {
      EXPECT_EQ(box->windowTitle(), "Error");
      Press(box, QMessageBox::Ok);
    });
    ClickExpandMark("alpha");
    EXPECT_EQ(answer.Count(), 1);
  }
  EXPECT_EQ(Find("alpha")->State(), NodeState::Failed);
  EXPECT_FALSE(Scope().isExpanded(IndexOf("alpha")));
  bFail = false;
  ClickExpandMark("alpha");
  EXPECT_EQ(Find("alpha")->State(), NodeState::Loaded);
  EXPECT_TRUE(Scope().isExpanded(IndexOf("alpha")));
}

TEST_F(MainWindowTest, selected_failed_item_says_so_and_offers_another_try) {
  bool bFail = true;
  m_script->expand = [&](Services& services, const ScopeItemPtr& item) {
    if (bFail) throw platform::Failure(platform::failure::kServerNotFound, "No.");
    fakes::ExpandUsualTree(services, item);
  };
  {
    DialogAnswer answer([](QWidget* box) { Press(box, QMessageBox::Ok); });
    ClickExpandMark("");
  }
  EXPECT_EQ(Results().Sentence(), "ORVANE Servers could not be opened.");
  EXPECT_TRUE(Action("actRefresh")->isEnabled());
  bFail = false;
  QTest::mouseClick(m_window->findChild<QPushButton*>("messageButton"), Qt::LeftButton);
  Settle();
  EXPECT_THAT(ListTexts(), ElementsAre("alpha", "beta"));
  EXPECT_TRUE(Scope().isExpanded(IndexOf("")));
}

TEST_F(MainWindowTest, unexpanded_folder_shows_an_empty_list_until_it_is_expanded) {
  ClickExpandMark("");
  ClickExpandMark("alpha");
  ClickItem("alpha.Catalogs");
  EXPECT_TRUE(Results().IsListShown());
  EXPECT_TRUE(ListTexts().empty());
  EXPECT_THAT(m_script->log, Not(Contains("Expand Catalogs")));
  ClickExpandMark("alpha.Catalogs");
  EXPECT_THAT(ListTexts(), ElementsAre("Machine"));
  EXPECT_EQ(Results().Sentence(), "");
}

TEST_F(MainWindowTest, list_opens_items_by_double_click_and_goes_up_by_backspace) {
  ClickExpandMark("");
  ClickItem("");
  DoubleClickRow(0);
  EXPECT_EQ(Session().Selected(), Find("alpha"));
  EXPECT_EQ(Scope().currentIndex(), IndexOf("alpha"));
  EXPECT_THAT(ListTexts(), ElementsAre("Catalogs", "Queries"));
  DoubleClickRow(1);
  EXPECT_EQ(Session().Selected(), Find("alpha.Queries"));
  EXPECT_THAT(ListTexts(), ElementsAre("Load"));
  EXPECT_TRUE(Scope().isExpanded(IndexOf("alpha")));
  QTest::keyClick(Results().List().DetailsView(), Qt::Key_Backspace);
  Settle();
  EXPECT_EQ(Session().Selected(), Find("alpha"));
}

TEST_F(MainWindowTest, list_opens_the_current_row_by_enter) {
  ClickExpandMark("");
  auto* view = Results().List().DetailsView();
  view->setFocus();
  QTest::keyClick(view, Qt::Key_Down);
  view->setCurrentIndex(view->model()->index(1, 0));
  QTest::keyClick(view, Qt::Key_Return);
  Settle();
  EXPECT_EQ(Session().Selected(), Find("beta"));
}

TEST_F(MainWindowTest, list_shows_the_columns_that_its_rows_bring_along) {
  ClickExpandMark("");
  ClickExpandMark("alpha");
  ClickItem("alpha.Queries");
  const auto* view = Results().List().DetailsView();
  EXPECT_EQ(view->model()->columnCount(), 1);
  QTest::keyClick(&Scope(), Qt::Key_Return);
  Settle();
  ASSERT_EQ(view->model()->columnCount(), 2);
  EXPECT_EQ(view->model()->headerData(1, Qt::Horizontal).toString(), "Query");
  EXPECT_EQ(view->header()->sectionSize(0), 200);
  EXPECT_EQ(view->header()->sectionSize(1), 300);
  EXPECT_THAT(ListTexts(1), ElementsAre("SELECT 1"));
}

TEST_F(MainWindowTest, click_on_a_column_head_sorts_and_a_third_one_restores_the_order) {
  ExpandToTables();
  ClickItem("alpha.Catalogs.Machine");
  EXPECT_THAT(ListTexts(), ElementsAre("Tags", "Data10", "Data2"));
  auto* header = Results().List().DetailsView()->header();
  const auto click = [&] {
    QTest::mouseClick(header->viewport(), Qt::LeftButton, {},
                      {header->sectionViewportPosition(0) + 30, header->height() / 2});
  };
  click();
  EXPECT_THAT(ListTexts(), ElementsAre("Data2", "Data10", "Tags"));
  click();
  EXPECT_THAT(ListTexts(), ElementsAre("Tags", "Data10", "Data2"));
  click();
  EXPECT_THAT(ListTexts(), ElementsAre("Tags", "Data10", "Data2"));
  EXPECT_EQ(header->sortIndicatorSection(), -1);
}

TEST_F(MainWindowTest, list_follows_items_that_come_and_go) {
  ClickExpandMark("");
  ClickItem("");
  auto services = Session().Services();
  fakes::AddItem(services, Find(""), "Server", "gamma", "gamma", true);
  Session().Tree().Flush();
  EXPECT_THAT(ListTexts(), ElementsAre("alpha", "beta", "gamma"));
  Session().Tree().Remove("beta");
  EXPECT_THAT(ListTexts(), ElementsAre("alpha", "gamma"));
  Find("gamma")->ListSubItems().Add(1, "Name", "renamed");
  EXPECT_THAT(ListTexts(), ElementsAre("alpha", "renamed"));
}

TEST_F(MainWindowTest, item_count_stands_in_the_status_bar) {
  ClickExpandMark("");
  ClickItem("");
  const auto* label = m_window->findChild<QLabel*>("itemCount");
  EXPECT_EQ(label->text(), "2 items");
  Results().List().DetailsView()->selectAll();
  EXPECT_EQ(label->text(), "2 items, 2 selected");
}

TEST_F(MainWindowTest, tabs_choose_between_the_views_of_a_table) {
  m_script->initializeView = [](Services&, platform::ResultView& view) {
    if (view.Name() != "TableStructureListView") return;
    auto& row = view.ListItems().Add("Timestamp", 6);
    row.ListSubItems().Add(1, "", "Timestamp");
    row.ListSubItems().Add(2, "", "timestamp");
    row.ListSubItems().Add(3, "", "no");
  };
  ExpandToTables();
  EXPECT_TRUE(Results().ViewTabs().isHidden());
  ClickItem("alpha.Catalogs.Machine.Tags");
  auto& tabs = Results().ViewTabs();
  ASSERT_TRUE(tabs.isVisible());
  ASSERT_EQ(tabs.count(), 2);
  EXPECT_EQ(tabs.tabText(0), "Data");
  EXPECT_EQ(tabs.tabToolTip(0), "Displays table data.");
  EXPECT_EQ(tabs.tabText(1), "Structure");
  EXPECT_TRUE(m_window->findChild<QWidget*>("fakeControl")->isVisible());
  QTest::mouseClick(&tabs, Qt::LeftButton, {}, tabs.tabRect(1).center());
  Settle();
  EXPECT_EQ(Session().CurrentResultView()->Name(), "TableStructureListView");
  EXPECT_EQ(m_window->findChild<QWidget*>("fakeControl"), nullptr);
  EXPECT_THAT(ListTexts(0), ElementsAre("Timestamp"));
  EXPECT_THAT(ListTexts(1), ElementsAre("timestamp"));
  EXPECT_THAT(ListTexts(2), ElementsAre("no"));
  tabs.setFocus();
  QTest::keyClick(&tabs, Qt::Key_Left);
  Settle();
  EXPECT_EQ(Session().CurrentResultView()->Name(), "TableEditorOcxView");
  ClickItem("alpha.Catalogs.Machine.Data2");
  EXPECT_EQ(tabs.currentIndex(), 0);
}

TEST_F(MainWindowTest, control_is_in_its_pane_before_the_snap_in_hears_of_it) {
  bool bSeen = false;
  m_script->activate = [&](Services&, platform::ResultView& view) {
    if (view.Name() != "TableEditorOcxView") return;
    const auto control = std::dynamic_pointer_cast<platform::Control>(view.Control());
    bSeen = static_cast<QWidget*>(control->Window())->isVisible();
  };
  ExpandToTables();
  ClickItem("alpha.Catalogs.Machine.Tags");
  EXPECT_TRUE(bSeen);
}

TEST_F(MainWindowTest, walking_through_the_tree_stays_there_after_a_control_had_the_focus) {
  ExpandToTables();
  ClickItem("alpha.Catalogs.Machine.Tags");
  auto* control = m_window->findChild<QWidget*>("fakeControl");
  control->setFocusPolicy(Qt::StrongFocus);
  control->setFocus();
  ASSERT_TRUE(control->hasFocus());
  Scope().setFocus();
  QTest::keyClick(&Scope(), Qt::Key_Up);
  Settle();
  EXPECT_NE(Session().Selected(), Find("alpha.Catalogs.Machine.Tags"));
  EXPECT_TRUE(Scope().hasFocus());
}

TEST_F(MainWindowTest, control_that_cannot_be_created_shows_a_sentence) {
  m_script->bFailControl = true;
  ExpandToTables();
  ClickItem("alpha.Catalogs.Machine.Tags");
  EXPECT_EQ(Results().Sentence(), "This view cannot be shown.");
  ClickItem("alpha");
  EXPECT_THAT(ListTexts(), ElementsAre("Catalogs", "Queries"));
}

TEST_F(MainWindowTest, toolbar_shows_the_buttons_of_the_snap_in_with_their_states) {
  ExpandToTables();
  auto& toolbar = m_window->SnapInToolbar();
  EXPECT_TRUE(toolbar.actions().isEmpty());
  ClickItem("alpha.Catalogs.Machine.Tags");
  ASSERT_TRUE(toolbar.isVisible());
  EXPECT_EQ(toolbar.actions().size(), 4);
  EXPECT_TRUE(toolbar.actions()[2]->isSeparator());
  EXPECT_EQ(toolbar.ButtonAction("MoveFirst")->toolTip(), "Move to First Row");
  EXPECT_FALSE(toolbar.ButtonAction("MoveFirst")->icon().isNull());
  EXPECT_TRUE(toolbar.ButtonAction("MoveFirst")->isEnabled());
  EXPECT_FALSE(toolbar.ButtonAction("MoveLast")->isEnabled());
  EXPECT_TRUE(toolbar.ButtonAction("Sql")->isCheckable());
  ClickItem("alpha");
  EXPECT_TRUE(toolbar.actions().isEmpty());
}

TEST_F(MainWindowTest, toolbar_keeps_its_place_so_that_nothing_moves_under_the_pointer) {
  ExpandToTables();
  auto& toolbar = m_window->SnapInToolbar();
  for (const char* sSize : {"actSmallImages", "actLargeImages"}) {
    Action(sSize)->trigger();
    ClickItem("alpha.Catalogs.Machine.Tags");
    const auto with = toolbar.geometry();
    const auto tree = Scope().mapToGlobal(QPoint());
    EXPECT_FALSE(toolbar.actions().isEmpty());
    ClickItem("alpha");
    EXPECT_TRUE(toolbar.isVisible());
    EXPECT_TRUE(toolbar.actions().isEmpty());
    EXPECT_EQ(toolbar.geometry(), with) << sSize;
    EXPECT_EQ(Scope().mapToGlobal(QPoint()), tree) << sSize;
  }
  Action("actToolbar")->trigger();
  EXPECT_TRUE(toolbar.isHidden());
  ClickItem("alpha.Catalogs.Machine.Tags");
  EXPECT_TRUE(toolbar.isHidden());
  ClickItem("alpha");
  EXPECT_TRUE(toolbar.isHidden());
}

TEST_F(MainWindowTest, collapsing_a_branch_selects_it_when_the_selected_item_lies_beneath) {
  ExpandToTables();
  ClickItem("alpha.Catalogs.Machine.Tags");
  Scope().collapse(IndexOf("alpha.Catalogs"));
  Settle();
  EXPECT_EQ(Session().Selected(), Find("alpha.Catalogs"));
  EXPECT_THAT(ListTexts(), ElementsAre("Machine"));
  // Any other branch leaves the selection alone.
  ClickItem("alpha");
  Scope().expand(IndexOf("alpha.Catalogs"));
  Scope().collapse(IndexOf("alpha.Catalogs"));
  Settle();
  EXPECT_EQ(Session().Selected(), Find("alpha"));
}

TEST_F(MainWindowTest, toolbar_is_reached_by_tab_and_pressed_by_space) {
  ExpandToTables();
  ClickItem("alpha.Catalogs.Machine.Tags");
  auto& toolbar = m_window->SnapInToolbar();
  auto* button = toolbar.widgetForAction(toolbar.ButtonAction("Sql"));
  for (int i = 0; i < 20 && !button->hasFocus(); ++i) {
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
  }
  ASSERT_TRUE(button->hasFocus());
  QSignalSpy pressed(toolbar.ButtonAction("Sql"), &QAction::triggered);
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
  auto& toolbar = m_window->SnapInToolbar();
  auto* button = toolbar.widgetForAction(toolbar.ButtonAction("Sql"));
  QTest::mouseClick(button, Qt::LeftButton);
  Settle();
  EXPECT_THAT(m_script->log, Contains("Button Sql"));
  EXPECT_TRUE(toolbar.ButtonAction("Sql")->isChecked());
  // A click that the snap-in does not follow leaves the button as it is.
  QTest::mouseClick(button, Qt::LeftButton);
  Settle();
  EXPECT_TRUE(toolbar.ButtonAction("Sql")->isChecked());
}

TEST_F(MainWindowTest, click_that_comes_while_the_snap_in_is_at_work_leaves_the_button_as_it_was) {
  ExpandToTables();
  ClickItem("alpha.Catalogs.Machine.Tags");
  auto& toolbar = m_window->SnapInToolbar();
  auto* button = toolbar.widgetForAction(toolbar.ButtonAction("Sql"));
  m_script->refresh = [&](Services&, platform::View&) {
    QTest::mouseClick(button, Qt::LeftButton);
    ASSERT_TRUE(toolbar.ButtonAction("Sql")->isChecked());
    Settle();
    EXPECT_TRUE(Session().IsBusy());
    EXPECT_FALSE(toolbar.ButtonAction("Sql")->isChecked());
  };
  Session().Refresh();
  EXPECT_THAT(m_script->log, Contains("Refresh"));
  EXPECT_THAT(m_script->log, Not(Contains("Button Sql")));
  EXPECT_FALSE(toolbar.ButtonAction("Sql")->isChecked());
}

TEST_F(MainWindowTest, context_menu_has_the_commands_of_the_item_under_the_pointer) {
  m_script->menus["Server"] = {{"m_mnuConnect", "Connect...", false},
                               {"m_mnuDisconnect", "Disconnect", true}};
  ClickExpandMark("");
  const auto at = Scope().visualRect(IndexOf("alpha")).center();
  QContextMenuEvent event(QContextMenuEvent::Mouse, at, Scope().viewport()->mapToGlobal(at));
  QApplication::sendEvent(Scope().viewport(), &event);
  Settle();
  EXPECT_EQ(Session().Selected(), Find("alpha"));
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
  auto* view = Results().List().DetailsView();
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

TEST_F(MainWindowTest, menu_asked_for_while_its_item_is_being_shown_opens_afterwards) {
  m_script->menus["Table"] = {{"m_mnuQuery", "Query...", true}};
  ExpandToTables();
  m_script->activate = [&](Services&, platform::ResultView&) {
    // A query that takes its time lets the window handle its events.
    QCoreApplication::processEvents();
    EXPECT_EQ(m_window->findChild<QMenu*>("contextMenu"), nullptr);
  };
  const auto at = Scope().visualRect(IndexOf("alpha.Catalogs.Machine.Tags")).center();
  QContextMenuEvent event(QContextMenuEvent::Mouse, at, Scope().viewport()->mapToGlobal(at));
  QApplication::sendEvent(Scope().viewport(), &event);
  Settle();
  EXPECT_EQ(Session().Selected(), Find("alpha.Catalogs.Machine.Tags"));
  auto* menu = m_window->findChild<QMenu*>("contextMenu");
  ASSERT_NE(menu, nullptr);
  EXPECT_NE(menu->findChild<QAction*>("m_mnuQuery"), nullptr);
}

TEST_F(MainWindowTest, menu_of_an_item_that_went_meanwhile_does_not_open) {
  ExpandToTables();
  m_script->activate = [&](Services& services, platform::ResultView& view) {
    if (view.Name() != "TableEditorOcxView") return;
    QCoreApplication::processEvents();
    services.console->ScopeItems().Remove(view.ScopeItem()->Key());
  };
  const auto at = Scope().visualRect(IndexOf("alpha.Catalogs.Machine.Tags")).center();
  QContextMenuEvent event(QContextMenuEvent::Mouse, at, Scope().viewport()->mapToGlobal(at));
  QApplication::sendEvent(Scope().viewport(), &event);
  Settle();
  EXPECT_EQ(Session().Selected(), Find("alpha.Catalogs.Machine"));
  EXPECT_EQ(m_window->findChild<QMenu*>("contextMenu"), nullptr);
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
  QMenu menu;
  m_window->Menus().Fill(menu, HostedSelection({Find("")}));
  const auto actions = menu.actions();
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
  auto* view = Results().List().DetailsView();
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
  auto* view = Results().List().DetailsView();
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

TEST_F(MainWindowTest, refresh_button_does_what_f5_does) {
  ExpandToTables();
  auto* button = m_window->findChild<QToolButton*>("refreshButton");
  ASSERT_NE(button, nullptr);
  ASSERT_TRUE(button->isVisible());
  EXPECT_FALSE(button->isEnabled());
  QTest::mouseClick(button, Qt::LeftButton);
  Settle();
  EXPECT_THAT(m_script->log, Not(Contains("Refresh")));
  ClickItem("alpha.Catalogs.Machine.Tags");
  EXPECT_TRUE(button->isEnabled());
  EXPECT_EQ(button->toolTip(), "Refresh (F5)");
  EXPECT_FALSE(button->icon().isNull());
  const auto* focus = QApplication::focusWidget();
  QTest::mouseClick(button, Qt::LeftButton);
  Settle();
  EXPECT_THAT(m_script->log, Contains("Refresh").Times(1));
  EXPECT_EQ(QApplication::focusWidget(), focus);
  ClickItem("alpha");
  EXPECT_FALSE(button->isEnabled());
}

TEST_F(MainWindowTest, f5_refreshes_where_the_verb_is_enabled) {
  ExpandToTables();
  EXPECT_FALSE(Action("actRefresh")->isEnabled());
  ClickItem("alpha.Catalogs.Machine.Tags");
  QTest::keyClick(m_window.get(), Qt::Key_F5);
  Settle();
  EXPECT_THAT(m_script->log, Contains("Refresh"));
}

TEST_F(MainWindowTest, title_has_the_name_and_the_mark_of_unsaved_work) {
  EXPECT_EQ(m_window->windowTitle(), "Untitled[*] - ORVANE Console");
  EXPECT_FALSE(m_window->isWindowModified());
  DoWork();
  EXPECT_TRUE(Waits([&] { return m_window->isWindowModified(); }));
  DoWork("first");
  EXPECT_TRUE(Waits([&] { return !m_window->isWindowModified(); }));
}

TEST_F(MainWindowTest, browsing_is_no_unsaved_work) {
  m_script->expand = [this](Services& services, const ScopeItemPtr& item) {
    m_script->sSaved += " " + item->Key();
    fakes::ExpandUsualTree(services, item);
  };
  ExpandToTables();
  EXPECT_FALSE(m_window->IsModified());
  DoWork(m_script->sSaved);
  EXPECT_FALSE(m_window->IsModified());
  DoWork("work");
  EXPECT_TRUE(m_window->IsModified());
  ClickItem("beta");
  EXPECT_TRUE(m_window->IsModified());
}

TEST_F(MainWindowTest, work_before_browsing_stays_unsaved) {
  DoWork();
  ClickExpandMark("");
  EXPECT_TRUE(m_window->IsModified());
}

TEST_F(MainWindowTest, input_to_a_control_is_looked_at) {
  ExpandToTables();
  ClickItem("alpha.Catalogs.Machine.Tags");
  auto* box = m_window->findChild<QLineEdit*>("fakeControl");
  QTest::keyClick(box, Qt::Key_A);
  m_script->sSaved = "changed by the control";
  EXPECT_TRUE(Waits([&] { return m_window->isWindowModified(); }));
}

TEST_F(MainWindowTest, looking_for_unsaved_work_says_nothing_to_the_user) {
  m_script->bWriteWhole = false;
  DialogAnswer answer([](QWidget* box) { Press(box, QMessageBox::Ok); });
  DoWork();
  static_cast<void>(m_window->IsModified());
  EXPECT_EQ(answer.Count(), 0);
}

TEST_F(MainWindowTest, work_that_cannot_be_saved_counts_as_unsaved) {
  m_script->bWriteWhole = false;
  DoWork();
  EXPECT_TRUE(m_window->IsModified());
  DialogAnswer answer([](QWidget* box) {
    EXPECT_EQ(box->objectName(), "unsavedWorkBox");
    QTest::keyClick(box, Qt::Key_Escape);
  });
  EXPECT_FALSE(m_window->close());
  EXPECT_EQ(answer.Count(), 1);
}

TEST_F(MainWindowTest, moving_about_asks_the_snap_in_for_nothing_that_is_saved) {
  ExpandToTables();
  EXPECT_FALSE(m_window->IsModified());
  ASSERT_TRUE(Waits([&] { return m_script->iWrites >= 2; }));
  ClickItem("alpha.Catalogs.Machine.Tags");
  QTest::mouseClick(m_window->findChild<QLineEdit*>("fakeControl"), Qt::LeftButton);
  const int iBefore = m_script->iWrites;
  ClickItem("alpha.Catalogs.Machine.Data2");
  ClickItem("beta");
  EXPECT_EQ(m_script->iWrites, iBefore);
  // The click into the control is looked at when it is calm, and nothing else is.
  EXPECT_TRUE(Waits([&] { return m_script->iWrites == iBefore + 1; }));
  QElapsedTimer calm;
  calm.start();
  EXPECT_TRUE(Waits([&] { return calm.elapsed() > 800; }));
  EXPECT_EQ(m_script->iWrites, iBefore + 1);
}

TEST_F(MainWindowTest, owner_hears_of_the_end_of_each_event) {
  const int iBefore = m_iEventsEnded;
  ClickExpandMark("");
  EXPECT_GT(m_iEventsEnded, iBefore);
  const int iExpanded = m_iEventsEnded;
  ASSERT_TRUE(m_window->NewDocument());
  EXPECT_GT(m_iEventsEnded, iExpanded);
}

TEST_F(MainWindowTest, selection_spans_the_whole_row_of_the_scope_pane) {
  ClickExpandMark("");
  ClickItem("alpha");
  const auto rect = Scope().visualRect(IndexOf("alpha"));
  const int iMiddle = rect.center().y();
  const auto colours = [&] {
    const auto picture = Scope().viewport()->grab().toImage();
    return std::vector<QColor>{picture.pixelColor(1, iMiddle),
                               picture.pixelColor(picture.width() - 2, iMiddle)};
  };
  // The style shades the item a little.
  const auto isNear = [](const QColor& colour) {
    return testing::Truly([colour](const QColor& other) {
      return std::abs(colour.red() - other.red()) < 8 &&
             std::abs(colour.green() - other.green()) < 8 &&
             std::abs(colour.blue() - other.blue()) < 8;
    });
  };
  const auto highlight = isNear(Scope().palette().color(QPalette::Highlight));
  EXPECT_THAT(colours(), ElementsAre(highlight, highlight));
  // The row can be hit where it is seen, and leaves nothing behind.
  const auto other = Scope().visualRect(IndexOf("beta"));
  QTest::mouseClick(Scope().viewport(), Qt::LeftButton, {},
                    {Scope().viewport()->width() - 3, other.center().y()});
  Settle();
  EXPECT_EQ(Session().Selected(), Find("beta"));
  const auto base = isNear(Scope().palette().color(QPalette::Base));
  EXPECT_THAT(colours(), ElementsAre(base, base));
}

TEST_F(MainWindowTest, long_name_in_the_scope_pane_is_scrolled_to_and_a_wider_pane_shows_it) {
  m_script->expand = [](Services& services, const ScopeItemPtr& item) {
    fakes::AddItem(services, item, "Server", "long", Text(200, 'm'), true);
  };
  ClickExpandMark("");
  EXPECT_GT(Scope().horizontalScrollBar()->maximum(), 0);
  Session().Tree().Remove("long");
  Settle();
  EXPECT_TRUE(Waits([&] { return Scope().horizontalScrollBar()->maximum() == 0; }));
}

TEST_F(MainWindowTest, save_as_and_open_bring_everything_back) {
  DoWork("stored text");
  {
    DialogAnswer answer([this](QWidget* widget) {
      auto* dialog = qobject_cast<QFileDialog*>(widget);
      ASSERT_NE(dialog, nullptr);
      auto* name = dialog->findChild<QLineEdit*>("fileNameEdit");
      ASSERT_NE(name, nullptr);
      name->setText(m_folder.filePath("plant"));
      QTest::keyClick(name, Qt::Key_Return);
    });
    QTest::keyClick(m_window.get(), Qt::Key_S, Qt::ControlModifier);
    EXPECT_EQ(answer.Count(), 1);
  }
  EXPECT_TRUE(QFileInfo::exists(m_folder.filePath("plant.orvc")));
  EXPECT_EQ(m_window->windowTitle(), "plant[*] - ORVANE Console");
  EXPECT_FALSE(m_window->isWindowModified());
  m_window->NewDocument();
  EXPECT_EQ(m_window->windowTitle(), "Untitled[*] - ORVANE Console");
  EXPECT_TRUE(m_window->OpenDocument(Path("plant.orvc")));
  EXPECT_EQ(m_script->sRead, "stored text");
  EXPECT_FALSE(m_window->IsModified());
  DoWork("newer text");
  EXPECT_TRUE(m_window->Save());
  EXPECT_TRUE(m_window->OpenDocument(Path("plant.orvc")));
  EXPECT_EQ(m_script->sRead, "newer text");
  EXPECT_EQ(m_script->iAlive, 1);
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

TEST_F(MainWindowTest, question_before_unsaved_work_is_dropped_can_be_cancelled) {
  DoWork();
  DialogAnswer answer([](QWidget* box) {
    EXPECT_EQ(box->objectName(), "unsavedWorkBox");
    QTest::keyClick(box, Qt::Key_Escape);
  });
  EXPECT_FALSE(m_window->NewDocument());
  EXPECT_FALSE(m_window->OpenDocument(Path("any.orvc")));
  EXPECT_FALSE(m_window->close());
  EXPECT_EQ(answer.Count(), 3);
  EXPECT_TRUE(m_window->isVisible());
  EXPECT_TRUE(m_window->IsModified());
}

TEST_F(MainWindowTest, question_discards_or_saves_as_answered) {
  ASSERT_TRUE(m_window->SaveTo(Path("plant.orvc")));
  DoWork("one");
  {
    DialogAnswer answer([](QWidget* box) { Press(box, QMessageBox::Discard); });
    EXPECT_TRUE(m_window->NewDocument());
    EXPECT_EQ(answer.Count(), 1);
  }
  m_window->OpenDocument(Path("plant.orvc"));
  EXPECT_EQ(m_script->sRead, "first");
  DoWork("two");
  {
    DialogAnswer answer([](QWidget* box) { Press(box, QMessageBox::Save); });
    EXPECT_TRUE(m_window->NewDocument());
  }
  m_window->OpenDocument(Path("plant.orvc"));
  EXPECT_EQ(m_script->sRead, "two");
}

TEST_F(MainWindowTest, failed_save_shows_a_sentence_and_keeps_the_mark) {
  DoWork();
  Text sText;
  DialogAnswer answer([&](QWidget* box) {
    sText = qobject_cast<QMessageBox*>(box)->text().toStdString();
    Press(box, QMessageBox::Ok);
  });
  EXPECT_FALSE(m_window->SaveTo(Path("no/such/folder/plant.orvc")));
  EXPECT_EQ(answer.Count(), 1);
  EXPECT_THAT(sText, HasSubstr("plant.orvc"));
  EXPECT_TRUE(m_window->IsModified());
  EXPECT_EQ(m_window->windowTitle(), "Untitled[*] - ORVANE Console");
}

TEST_F(MainWindowTest, save_that_the_snap_in_cannot_complete_keeps_the_old_file) {
  ASSERT_TRUE(m_window->SaveTo(Path("plant.orvc")));
  m_script->bWriteWhole = false;
  m_script->sSaved = "half";
  DialogAnswer answer([](QWidget* box) {
    EXPECT_EQ(box->windowTitle(), "Error");
    Press(box, QMessageBox::Ok);
  });
  EXPECT_FALSE(m_window->Save());
  EXPECT_EQ(answer.Count(), 1);
  m_window->OpenDocument(Path("plant.orvc"));
  EXPECT_EQ(m_script->sRead, "first");
}

TEST_F(MainWindowTest, document_that_cannot_be_opened_leaves_the_present_one) {
  ASSERT_TRUE(m_window->SaveTo(Path("plant.orvc")));
  ClickExpandMark("");
  DialogAnswer answer([](QWidget* box) { Press(box, QMessageBox::Ok); });
  EXPECT_FALSE(m_window->OpenDocument(Path("missing.orvc")));
  EXPECT_EQ(answer.Count(), 1);
  EXPECT_EQ(m_window->windowTitle(), "plant[*] - ORVANE Console");
  EXPECT_NE(Find("alpha"), nullptr);
}

TEST_F(MainWindowTest, open_document_stays_when_opening_it_again_finds_it_damaged) {
  ASSERT_TRUE(m_window->SaveTo(Path("plant.orvc")));
  ClickExpandMark("");
  QFile file(m_folder.filePath("plant.orvc"));
  ASSERT_TRUE(file.open(QIODevice::ReadWrite));
  ASSERT_TRUE(file.resize(file.size() / 2));
  file.close();
  m_script->log.clear();
  {
    DialogAnswer answer([](QWidget* box) { Press(box, QMessageBox::Ok); });
    EXPECT_FALSE(m_window->OpenDocument(Path("plant.orvc")));
    EXPECT_EQ(answer.Count(), 1);
  }
  EXPECT_THAT(m_script->log, Not(Contains("Terminate")));
  EXPECT_NE(Find("alpha"), nullptr);
  EXPECT_EQ(m_window->windowTitle(), "plant[*] - ORVANE Console");
  // What is in memory can be saved over the damaged file.
  DialogAnswer answer([](QWidget* box) {
    EXPECT_EQ(box->objectName(), "changedOnDiskBox");
    for (auto* button : qobject_cast<QMessageBox*>(box)->buttons()) {
      if (button->text().contains("Replace")) button->click();
    }
  });
  EXPECT_TRUE(m_window->Save());
  EXPECT_TRUE(m_window->OpenDocument(Path("plant.orvc")));
  EXPECT_FALSE(m_window->Document().IsReadOnly());
}

TEST_F(MainWindowTest, saving_as_its_own_name_asks_before_a_change_of_another_program_is_replaced) {
  ASSERT_TRUE(m_window->SaveTo(Path("plant.orvc")));
  QFile file(m_folder.filePath("plant.orvc"));
  ASSERT_TRUE(file.open(QIODevice::Append));
  file.write("theirs");
  file.close();
  DialogAnswer answer([](QWidget* box) {
    EXPECT_EQ(box->objectName(), "changedOnDiskBox");
    QTest::keyClick(box, Qt::Key_Escape);
  });
  EXPECT_FALSE(m_window->SaveTo(Path("plant.orvc")));
  EXPECT_EQ(answer.Count(), 1);
  ASSERT_TRUE(file.open(QIODevice::ReadOnly));
  EXPECT_TRUE(file.readAll().endsWith("theirs"));
}

TEST_F(MainWindowTest, recent_document_is_forgotten_only_when_it_is_gone) {
  ASSERT_TRUE(m_window->SaveTo(Path("plant.orvc")));
  m_window->NewDocument();
  const auto recent = [&] { return m_settings.value("recentDocuments").toStringList().size(); };
  QFile file(m_folder.filePath("plant.orvc"));
  ASSERT_TRUE(file.resize(3));
  DialogAnswer answer([](QWidget* box) { Press(box, QMessageBox::Ok); });
  EXPECT_FALSE(m_window->OpenDocument(Path("plant.orvc")));
  EXPECT_EQ(recent(), 1);
  ASSERT_TRUE(file.remove());
  EXPECT_FALSE(m_window->OpenDocument(Path("plant.orvc")));
  EXPECT_EQ(recent(), 0);
}

TEST_F(MainWindowTest, failures_around_a_document_are_noted_in_the_log) {
  DialogAnswer answer([](QWidget* box) { Press(box, QMessageBox::Ok); });
  EXPECT_FALSE(m_window->OpenDocument(Path("missing.orvc")));
  ASSERT_EQ(m_log->failures.size(), 1U);
  EXPECT_EQ(m_log->failures[0].Number(), 3810);
  EXPECT_EQ(m_log->failures[0].Source(), "DocumentFile");
  EXPECT_EQ(m_log->failures[0].NativeError(), ENOENT);
  m_script->bFailCreate = true;
  m_window->NewDocument();
  ASSERT_EQ(m_log->failures.size(), 2U);
  EXPECT_EQ(m_log->failures[1].Number(), 3809);
}

TEST_F(MainWindowTest, second_opener_gets_the_document_read_only_and_is_told) {
  ASSERT_TRUE(m_window->SaveTo(Path("plant.orvc")));
  auto first = std::move(m_window);
  const auto script = std::make_shared<Script>();
  script->expand = fakes::ExpandUsualTree;
  m_script = script;
  MakeWindow();
  ASSERT_TRUE(m_window->OpenDocument(Path("plant.orvc")));
  EXPECT_TRUE(m_window->Document().IsReadOnly());
  EXPECT_EQ(m_window->findChild<QLabel*>("readOnlyMark")->text(), "Read-only");
  EXPECT_EQ(m_window->findChild<NoticeBar*>("noticeBar")->Sentence().toStdString(),
            m_window->Document().ReadOnlyReason());
  // Saving asks for another name.
  DialogAnswer answer([](QWidget* dialog) {
    EXPECT_EQ(dialog->objectName(), "saveDialog");
    QTest::keyClick(dialog, Qt::Key_Escape);
  });
  EXPECT_FALSE(m_window->Save());
  EXPECT_EQ(answer.Count(), 1);
}

TEST_F(MainWindowTest, document_not_read_whole_is_not_written_again) {
  ASSERT_TRUE(m_window->SaveTo(Path("plant.orvc")));
  m_script->bReadWhole = false;
  ASSERT_TRUE(m_window->OpenDocument(Path("plant.orvc")));
  EXPECT_FALSE(Action("actSave")->isEnabled());
  EXPECT_FALSE(Action("actSaveAs")->isEnabled());
  EXPECT_FALSE(m_window->Save());
  EXPECT_FALSE(m_window->SaveTo(Path("other.orvc")));
  EXPECT_FALSE(QFileInfo::exists(m_folder.filePath("other.orvc")));
  EXPECT_NE(m_window->findChild<NoticeBar*>("noticeBar")->Sentence(), "");
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

TEST_F(MainWindowTest, recent_documents_are_listed_and_opened) {
  ASSERT_TRUE(m_window->SaveTo(Path("a & b.orvc")));
  m_window->NewDocument();
  auto* menu = m_window->findChild<QMenu*>("mnuRecent");
  emit menu->aboutToShow();
  ASSERT_EQ(menu->actions().size(), 1);
  EXPECT_THAT(menu->actions()[0]->text().toStdString(), HasSubstr("a && b.orvc"));
  menu->actions()[0]->trigger();
  Settle();
  EXPECT_EQ(m_window->windowTitle(), "a & b[*] - ORVANE Console");
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

TEST_F(MainWindowTest, list_can_be_shown_as_icons) {
  ClickExpandMark("");
  Action("actIcons")->trigger();
  auto* icons = Results().List().ActiveView();
  EXPECT_EQ(icons->objectName(), "resultIcons");
  EXPECT_TRUE(icons->isVisible());
  EXPECT_EQ(icons->model()->rowCount(), 2);
  Action("actDetails")->trigger();
  EXPECT_EQ(Results().List().ActiveView()->objectName(), "resultDetails");
}

TEST_F(MainWindowTest, hundred_thousand_children_are_opened_without_a_stall) {
  m_script->expand = [](Services& services, const ScopeItemPtr& item) {
    for (int i = 0; i < 100'000; ++i) {
      const auto sName = std::to_string(i);
      services.console->ScopeItems()
          .Add("Server", sName, item->ScopeNode(), true)
          ->DisplayName(sName);
    }
  };
  QElapsedTimer elapsed;
  elapsed.start();
  ClickExpandMark("");
  EXPECT_EQ(Results().List().RowCount(), 100'000);
  Session().Select(Find("99999"));
  Settle();
  Session().Tree().Remove("50000");
  Settle();
  // Far above what it takes, far below what one sorting or layout for each item would.
  EXPECT_LT(elapsed.elapsed(), 20'000);
}

}  // namespace
}  // namespace orvane::console

#include "console/results/result_pane.h"

#include <gmock/gmock.h>

#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QToolButton>

#include "console/scope/scope_pane.h"
#include "tests/console/window/main_window_fixture.h"

namespace orvane::console {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::Not;

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

TEST_F(MainWindowTest, enter_presses_the_button_of_a_page) {
  auto* button = m_window->findChild<QPushButton*>("messageButton");
  ASSERT_TRUE(button->isVisible());
  button->setFocus();
  QTest::keyClick(button, Qt::Key_Return);
  Settle();
  EXPECT_THAT(ListTexts(), ElementsAre("alpha", "beta"));
}

TEST_F(MainWindowTest, selected_item_without_anything_in_it_says_so) {
  m_script->expand = [](Services&, const ScopeItemPtr&) {};
  ClickExpandMark("");
  EXPECT_EQ(Results().Sentence(), "There is nothing in \"ORVANE Servers\" yet.");
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

TEST_F(MainWindowTest, tabs_choose_between_the_views_of_a_table) {
  m_script->initializeView = [](Services&, platform::ResultView& view) {
    if (view.Name() != "TableStructureListView") return;
    auto& row = view.ListItems().Add("Timestamp", 6);
    row.ListSubItems().Add(1, "", "Timestamp");
    row.ListSubItems().Add(2, "", "timestamp");
    row.ListSubItems().Add(3, "", "no");
  };
  ExpandToTables();
  EXPECT_TRUE(ViewTabs().isHidden());
  ClickItem("alpha.Catalogs.Machine.Tags");
  auto& tabs = ViewTabs();
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

TEST_F(MainWindowTest, control_that_cannot_be_created_shows_a_sentence) {
  m_script->bFailControl = true;
  ExpandToTables();
  ClickItem("alpha.Catalogs.Machine.Tags");
  EXPECT_EQ(Results().Sentence(), "This view cannot be shown.");
  ClickItem("alpha");
  EXPECT_THAT(ListTexts(), ElementsAre("Catalogs", "Queries"));
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
  EXPECT_TRUE(button->isEnabled());
  EXPECT_EQ(button->toolTip(), "Reload (F5)");
  EXPECT_EQ(button->menu(), nullptr);
  m_script->log.clear();
  QTest::mouseClick(button, Qt::LeftButton);
  Settle();
  EXPECT_THAT(m_script->log, Contains("Expand Catalogs"));
  ClickItem("beta");
  EXPECT_FALSE(button->isEnabled());
}

}  // namespace
}  // namespace orvane::console

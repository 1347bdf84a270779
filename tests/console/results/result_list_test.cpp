#include "console/results/result_list.h"

#include <gmock/gmock.h>

#include <QHeaderView>
#include <QHelpEvent>
#include <QSplitter>
#include <QTest>
#include <QToolTip>

#include "console/results/result_pane.h"
#include "console/scope/scope_pane.h"
#include "tests/console/window/main_window_fixture.h"

namespace orvane::console {
namespace {

using testing::ElementsAre;

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
  QTest::keyClick(DetailsView(), Qt::Key_Backspace);
  Settle();
  EXPECT_EQ(Session().Selected(), Find("alpha"));
}

TEST_F(MainWindowTest, list_opens_the_current_row_by_enter) {
  ClickExpandMark("");
  auto* view = DetailsView();
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
  const auto* view = DetailsView();
  EXPECT_EQ(view->model()->columnCount(), 1);
  QTest::keyClick(&Scope(), Qt::Key_Return);
  Settle();
  ASSERT_EQ(view->model()->columnCount(), 2);
  EXPECT_EQ(view->model()->headerData(1, Qt::Horizontal).toString(), "Query");
  EXPECT_EQ(view->header()->sectionSize(0), 200);
  // The last one has the room that is left.
  EXPECT_EQ(view->header()->length(), view->viewport()->width());
  EXPECT_THAT(ListTexts(1), ElementsAre("SELECT 1"));
}

TEST_F(MainWindowTest, click_on_a_column_head_sorts_and_a_third_one_restores_the_order) {
  ExpandToTables();
  ClickItem("alpha.Catalogs.Machine");
  EXPECT_THAT(ListTexts(), ElementsAre("Tags", "Data10", "Data2"));
  auto* header = DetailsView()->header();
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

TEST_F(MainWindowTest, columns_take_the_room_until_somebody_chooses_their_widths) {
  ClickExpandMark("");
  const auto* view = DetailsView();
  const auto room = [&] { return view->viewport()->width(); };
  EXPECT_EQ(view->header()->sectionSize(0), room());
  m_window->resize(m_window->width() - 100, m_window->height());
  Settle();
  EXPECT_EQ(view->header()->sectionSize(0), room());
  m_window->findChild<QSplitter*>("splitter")->setSizes({2000, 1});
  Settle();
  EXPECT_GE(view->header()->sectionSize(0), 200);
  view->header()->resizeSection(0, 222);
  m_window->findChild<QSplitter*>("splitter")->setSizes({1, 2000});
  Settle();
  ClickItem("alpha");
  ClickItem("");
  Settle();
  EXPECT_EQ(view->header()->sectionSize(0), 222);
}

TEST_F(MainWindowTest, column_is_as_wide_as_its_texts_where_there_is_room) {
  m_script->expand = [](Services& services, const ScopeItemPtr& item) {
    auto query = fakes::AddItem(services, item, "Query", "long", Text(60, 'm'), false);
    query->ColumnHeaders().Add(2, "Query", "Query", 150);
    query->ListSubItems().Add(2, "Query", Text(3000, 'x'));
  };
  m_window->findChild<QSplitter*>("splitter")->setSizes({1, 2000});
  ClickExpandMark("");
  const auto* view = DetailsView();
  EXPECT_GT(view->header()->sectionSize(0), 200);
  EXPECT_EQ(view->header()->length(), view->viewport()->width());
  EXPECT_GE(view->header()->sectionSize(1), 150);
}

TEST_F(MainWindowTest, what_a_column_cuts_is_read_in_a_tool_tip) {
  ClickExpandMark("");
  ClickExpandMark("alpha");
  ClickItem("alpha.Queries");
  QTest::keyClick(&Scope(), Qt::Key_Return);
  Settle();
  auto* view = DetailsView();
  const auto tipAt = [&](QWidget* widget, const QPoint& at) {
    QToolTip::hideText();
    QHelpEvent event(QEvent::ToolTip, at, widget->mapToGlobal(at));
    QApplication::sendEvent(widget, &event);
    return QToolTip::text();
  };
  const auto ofHeading = [&] {
    return tipAt(view->header()->viewport(), {view->header()->sectionViewportPosition(1) + 5, 5});
  };
  const auto ofCell = [&] {
    return tipAt(view->viewport(), view->visualRect(view->model()->index(0, 1)).center());
  };
  EXPECT_EQ(view->header()->textElideMode(), Qt::ElideRight);
  EXPECT_EQ(ofHeading(), "");
  EXPECT_EQ(ofCell(), "");
  view->header()->setMinimumSectionSize(10);
  view->header()->resizeSection(1, 20);
  EXPECT_EQ(ofHeading(), "Query");
  EXPECT_EQ(ofCell(), "SELECT 1");
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

}  // namespace
}  // namespace orvane::console

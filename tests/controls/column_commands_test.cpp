// The commands of the columns, by keys and menus, in a whole grid.
#include "controls/view/column_commands.h"

#include <QContextMenuEvent>
#include <QDialog>
#include <QDialogButtonBox>
#include <QLineEdit>
#include <QListView>
#include <QMenu>
#include <QPushButton>
#include <QToolButton>

#include "controls/grid/grid_window.h"
#include "tests/controls/row_view_fixture.h"

namespace orvane::controls {
namespace {

class column_commands : public testing::Test {
 protected:
  column_commands() : m_window("Rows", std::make_shared<GridEvents>(), nullptr) {
    m_window.ShowRows(Plant(20), kUtcZone, nullptr, {}, "No rows", "None.");
    m_window.resize(700, 400);
    m_window.show();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(&m_window));
    Rows().setFocus();
  }
  RowView& Rows() { return m_window.Rows(); }
  void Press(int nKey, Qt::KeyboardModifiers modifiers) {
    QTest::keyClick(&Rows(), static_cast<Qt::Key>(nKey), modifiers);
  }
  QStringList Labels(const QMenu& menu) {
    QStringList labels;
    for (const QAction* action : menu.actions()) {
      if (!action->isSeparator()) labels << action->text().section(u'\t', 0, 0).remove(u'&');
    }
    return labels;
  }
  QMenu* MenuOfName(int nColumn) {
    QWidget* names = Rows().Names().viewport();
    const QPoint at(Rows().Names().LeftOf(nColumn) + 10, 8);
    QContextMenuEvent event(QContextMenuEvent::Mouse, at, names->mapToGlobal(at));
    QCoreApplication::sendEvent(names, &event);
    return Rows().findChild<QMenu*>(QString(), Qt::FindDirectChildrenOnly);
  }
  GridWindow m_window;
};

TEST_F(column_commands, keys_move_size_and_hide_the_current_column) {
  Rows().GoTo(0, 1);
  Press(Qt::Key_Left, Qt::AltModifier | Qt::ShiftModifier);
  EXPECT_EQ(Rows().Names().visualIndex(1), 0);
  Press(Qt::Key_Left, Qt::AltModifier | Qt::ShiftModifier);
  EXPECT_EQ(Rows().Names().visualIndex(1), 0);
  Press(Qt::Key_Right, Qt::AltModifier | Qt::ShiftModifier);
  EXPECT_EQ(Rows().Names().visualIndex(1), 1);
  const int nWidth = Rows().ColumnWidth(1);
  Press(Qt::Key_Right, Qt::AltModifier);
  EXPECT_EQ(Rows().ColumnWidth(1), nWidth + Rows().WidthOf(2));
  Press(Qt::Key_Left, Qt::AltModifier);
  EXPECT_EQ(Rows().ColumnWidth(1), nWidth);
  Press(Qt::Key_H, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_TRUE(Rows().Names().isSectionHidden(1));
}

TEST_F(column_commands, hiding_takes_all_selected_columns) {
  ClickColumnName(Rows(), 1);
  ClickColumnName(Rows(), 2, Qt::ShiftModifier);
  Press(Qt::Key_H, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_TRUE(Rows().Names().isSectionHidden(1));
  EXPECT_TRUE(Rows().Names().isSectionHidden(2));
  EXPECT_FALSE(Rows().Names().isSectionHidden(0));
  EXPECT_FALSE(Rows().Names().isSectionHidden(3));
}

TEST_F(column_commands, selected_rows_hide_the_current_column_alone) {
  Rows().GoTo(0, 2);
  Rows().selectAll();
  Press(Qt::Key_H, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_EQ(Rows().Names().Shown(), (std::vector<int>{0, 1, 3}));
}

TEST_F(column_commands, are_in_the_menu_of_a_name_about_its_column) {
  Rows().GoTo(0, 0);
  QMenu* menu = MenuOfName(2);
  ASSERT_NE(menu, nullptr);
  EXPECT_EQ(Rows().currentIndex().column(), 2);
  const QStringList labels = Labels(*menu);
  EXPECT_TRUE(labels.contains("Sort Ascending"));
  EXPECT_TRUE(labels.contains("Columns\u2026"));
  EXPECT_FALSE(labels.contains("Copy"));
  menu->actions().at(labels.indexOf("Hide") + 1)->trigger();  // behind the line
  menu->close();
  EXPECT_TRUE(Rows().Names().isSectionHidden(2));
}

TEST_F(column_commands, are_a_menu_within_that_of_the_cells) {
  Rows().GoTo(0, 1);
  QMenu menu;
  Rows().Commands().Fill(menu);
  const QMenu* columns = menu.actions().back()->menu();
  ASSERT_NE(columns, nullptr);
  EXPECT_EQ(Labels(*columns),
            (QStringList{"Columns\u2026", "Hide", "Move to the Left", "Move to the Right",
                         "Keep up to Here in Sight", "Scroll All", "Wider", "Narrower",
                         "As Wide as Needed", "As Fetched"}));
  columns->actions().at(4)->trigger();
  EXPECT_EQ(Rows().Names().HeldEnd(), 2);
  QMenu after;
  Rows().Commands().Fill(after);
  after.actions().back()->menu()->actions().at(5)->trigger();
  EXPECT_EQ(Rows().Names().HeldEnd(), 0);
}

TEST_F(column_commands, a_list_with_check_boxes_hides_and_shows) {
  Rows().HiddenColumns({true, false, false, false});
  Press(Qt::Key_K, Qt::ControlModifier | Qt::ShiftModifier);
  auto* dialog = m_window.findChild<QDialog*>("columnsDialog");
  ASSERT_NE(dialog, nullptr);
  auto* list = dialog->findChild<QListView*>("columnsList");
  EXPECT_EQ(list->model()->index(0, 0).data(Qt::CheckStateRole).toInt(), Qt::Unchecked);
  list->model()->setData(list->model()->index(0, 0), Qt::Checked, Qt::CheckStateRole);
  // A part of a name leaves the columns that have it.
  dialog->findChild<QLineEdit*>("columnsFilter")->setText("fla");
  ASSERT_EQ(list->model()->rowCount(), 1);
  list->setCurrentIndex(list->model()->index(0, 0));
  QTest::keyClick(list, Qt::Key_Space);
  dialog->accept();
  EXPECT_EQ(Rows().HiddenColumns(), (std::vector<bool>{false, false, true, false}));
}

TEST_F(column_commands, the_list_cannot_be_left_without_a_column) {
  Press(Qt::Key_K, Qt::ControlModifier | Qt::ShiftModifier);
  auto* dialog = m_window.findChild<QDialog*>("columnsDialog");
  ASSERT_NE(dialog, nullptr);
  auto* model = dialog->findChild<QListView*>("columnsList")->model();
  auto* ok = dialog->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok);
  for (int n = 0; n < model->rowCount(); ++n) {
    EXPECT_TRUE(ok->isEnabled());
    model->setData(model->index(n, 0), Qt::Unchecked, Qt::CheckStateRole);
  }
  EXPECT_FALSE(ok->isEnabled());
  dialog->findChild<QPushButton*>("columnsAll")->click();
  EXPECT_TRUE(ok->isEnabled());
  dialog->reject();
  EXPECT_EQ(Rows().Names().Shown().size(), 4U);
}

TEST_F(column_commands, an_open_list_does_nothing_to_rows_that_came_since) {
  Press(Qt::Key_K, Qt::ControlModifier | Qt::ShiftModifier);
  auto* dialog = m_window.findChild<QDialog*>("columnsDialog");
  ASSERT_NE(dialog, nullptr);
  auto* model = dialog->findChild<QListView*>("columnsList")->model();
  model->setData(model->index(3, 0), Qt::Unchecked, Qt::CheckStateRole);
  m_window.ShowRows(OneColumn({platform::Text("x")}), kUtcZone, nullptr, {}, "No rows", "None.");
  dialog->accept();
  EXPECT_EQ(Rows().Names().Shown(), (std::vector<int>{0}));
}

class hidden_columns : public column_commands {
 protected:
  QToolButton& Button() { return *m_window.findChild<QToolButton*>("hiddenColumns"); }
  QMenu* Menu() {
    emit Button().menu()->aboutToShow();
    return Button().menu();
  }
  void Hide(std::vector<bool> hidden) {
    Rows().HiddenColumns(hidden);
    QCoreApplication::processEvents();
  }
};

TEST_F(hidden_columns, are_told_in_the_strip) {
  EXPECT_FALSE(Button().isVisible());
  Hide({true, false, true, false});
  EXPECT_TRUE(Button().isVisible());
  EXPECT_EQ(Button().text(), "2 columns hidden");
  EXPECT_EQ(Button().accessibleName(), "2 columns hidden");
  Hide({true, false, false, false});
  EXPECT_EQ(Button().text(), "1 column hidden");
  // The arrow stands in the margin at the right, beside the text in the middle.
  const int nArrow = Button().style()->pixelMetric(QStyle::PM_MenuButtonIndicator);
  EXPECT_GE(Button().width() - Button().fontMetrics().horizontalAdvance(Button().text()),
            2 * nArrow);
  Rows().ForgetColumns();
  QCoreApplication::processEvents();
  EXPECT_FALSE(Button().isVisible());
  Press(Qt::Key_H, Qt::ControlModifier | Qt::ShiftModifier);
  QCoreApplication::processEvents();
  EXPECT_TRUE(Button().isVisible());
  m_window.ShowNothing();
  QCoreApplication::processEvents();
  EXPECT_FALSE(Button().isVisible()) << "there are no columns";
}

TEST_F(hidden_columns, are_told_of_rows_that_come_laid_out) {
  ColumnLayout layout;
  layout.columns = {{"Number", 0, true}};
  Rows().Layout(layout);
  m_window.ShowRows(Plant(20), kUtcZone, nullptr, {}, "No rows", "None.");
  QCoreApplication::processEvents();
  EXPECT_EQ(Button().text(), "1 column hidden");
}

TEST_F(hidden_columns, are_shown_again_from_there) {
  Hide({true, false, true, false});
  EXPECT_EQ(Labels(*Menu()), (QStringList{"Show All", "Number", "Flag"}));
  Menu()->actions().at(2)->trigger();
  EXPECT_EQ(Rows().HiddenColumns(), (std::vector<bool>{false, false, true, false}));
  Hide({true, false, true, false});
  Menu()->actions().front()->trigger();
  EXPECT_EQ(Rows().HiddenColumns(), std::vector<bool>(4, false));
}

}  // namespace
}  // namespace orvane::controls

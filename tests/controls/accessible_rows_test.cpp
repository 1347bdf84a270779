#include "controls/view/accessible_rows.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <limits>

#include "controls/view/spoken_events.h"
#include "controls/view/status_strip.h"
#include "tests/controls/row_view_fixture.h"
#include "tests/fakes/until.h"

namespace orvane::controls {
namespace {

using platform::ColumnIndex;

/// Three rows of a text and a number; row 1 has a number that was not sent, row 2 is to go.
class EditedRecordset : public FakeRecordset {
 public:
  EditedRecordset()
      : FakeRecordset(3, [](RowIndex row, ColumnIndex column) -> Value {
          if (row == 0 && column == 1) return {};
          return column == 0 ? Value("pump " + std::to_string(row)) : Value(0.5);
        }) {
    Column("Tag", platform::DataType::WChar).Column("Value", platform::DataType::Double);
  }
  platform::RowState StateAt(RowIndex row) const override {
    return row == 0   ? platform::RowState::Fetched
           : row == 1 ? platform::RowState::Edited
                      : platform::RowState::Deleted;
  }
  platform::Boolean IsEdited(RowIndex row, ColumnIndex column) const override {
    return row == 1 && column == 1;
  }
};

QAccessibleTableInterface* TableOf(RowView& view) {
  auto* told = QAccessible::queryAccessibleInterface(&view);
  return told ? told->tableInterface() : nullptr;
}

std::string Said(QAccessibleInterface* cell, QAccessible::Text kind) {
  return cell ? cell->text(kind).toStdString() : "(no cell)";
}

TEST(accessible_rows, tell_value_column_row_and_what_was_changed) {
  RowView view;
  view.ShowRows(std::make_shared<EditedRecordset>(), kUtcZone);
  auto* table = TableOf(view);
  ASSERT_NE(table, nullptr);
  EXPECT_EQ(table->rowCount(), 3);
  EXPECT_EQ(table->columnCount(), 2);
  EXPECT_EQ(table->columnDescription(1), "Value");
  const auto told = [&](int nRow, int nColumn) {
    auto* cell = table->cellAt(nRow, nColumn);
    return Said(cell, QAccessible::Name) + "; " + Said(cell, QAccessible::Description);
  };
  EXPECT_EQ(told(0, 0), "pump 0; Tag, row 1");
  EXPECT_EQ(told(0, 1), "NULL; Value, row 1, no value");
  EXPECT_EQ(told(1, 0), "pump 1; Tag, row 2");
  EXPECT_EQ(told(1, 1), "0.5; Value, row 2, changed");
  EXPECT_EQ(told(2, 0), "pump 2; Tag, row 3, to be deleted");
  auto* cell = table->cellAt(1, 1);
  ASSERT_NE(cell->tableCellInterface(), nullptr);
  EXPECT_EQ(cell->tableCellInterface()->rowIndex(), 1);
  EXPECT_EQ(Said(cell->tableCellInterface()->columnHeaderCells().value(0), QAccessible::Name),
            "Value");
  EXPECT_EQ(table->cellAt(3, 0), nullptr);
  EXPECT_EQ(table->cellAt(0, 2), nullptr);
}

TEST(accessible_rows, tell_where_the_keys_and_the_selection_are) {
  RowView view;
  view.ShowRows(Plant(50), kUtcZone);
  Show(view);
  view.activateWindow();
  view.setFocus();
  ClickCell(view, 3, 1);
  auto* told = QAccessible::queryAccessibleInterface(&view);
  EXPECT_EQ(told->role(), QAccessible::Table);
  EXPECT_EQ(Said(told->focusChild(), QAccessible::Name), "row 3");
  EXPECT_TRUE(told->focusChild()->state().selected);
  EXPECT_TRUE(told->focusChild()->state().focused);
  EXPECT_TRUE(told->focusChild()->state().readOnly);
  const QRect rect = told->focusChild()->rect();
  EXPECT_EQ(told->childAt(rect.center().x(), rect.center().y()), told->focusChild());
  EXPECT_EQ(told->child(told->indexOfChild(told->focusChild())), told->focusChild());
  view.SelectRow(7);
  EXPECT_EQ(TableOf(view)->selectedRows(), QList<int>{7});
  EXPECT_TRUE(TableOf(view)->isRowSelected(7));
  EXPECT_EQ(TableOf(view)->selectedCellCount(), 4);
}

TEST(accessible_rows, tell_that_a_hidden_column_is_not_in_sight) {
  RowView view;
  view.ShowRows(Plant(5), kUtcZone);
  Show(view);
  view.Names().setSectionHidden(1, true);
  EXPECT_TRUE(TableOf(view)->cellAt(0, 1)->state().invisible);
  EXPECT_FALSE(TableOf(view)->cellAt(0, 0)->state().invisible);
  const auto heads = TableOf(view)->cellAt(0, 1)->tableCellInterface()->columnHeaderCells();
  ASSERT_EQ(heads.size(), 1);
  EXPECT_TRUE(heads.front()->state().invisible);
}

TEST(accessible_rows, of_any_number_make_only_the_cells_that_are_asked_for) {
  RowView view;
  const auto rs = Plant(RowModel::kMaxRows);
  view.ShowRows(rs, kUtcZone);
  view.selectAll();
  rs->TakeRowsAsked();
  auto* told = QAccessible::queryAccessibleInterface(&view);
  EXPECT_EQ(told->childCount(), std::numeric_limits<int>::max());
  EXPECT_EQ(Said(TableOf(view)->cellAt(2'000'000'000, 0), QAccessible::Name), "2000000000");
  EXPECT_EQ(told->indexOfChild(TableOf(view)->cellAt(2'000'000'000, 0)), -1);
  EXPECT_EQ(TableOf(view)->selectedCells().size(), 1000);
  EXPECT_EQ(rs->TakeRowsAsked(), std::set<RowIndex>{2'000'000'000});
  for (int n = 0; n < 10'000; ++n) ASSERT_NE(TableOf(view)->cellAt(n, 0), nullptr);
}

TEST(accessible_rows, cells_whose_rows_are_gone_say_so) {
  RowView view;
  view.ShowRows(Plant(50), kUtcZone);
  auto* cell = TableOf(view)->cellAt(40, 0);
  EXPECT_TRUE(cell->isValid());
  view.ShowRows(Plant(5), kUtcZone);
  EXPECT_FALSE(cell->isValid());
  EXPECT_TRUE(cell->state().invalid);
  EXPECT_EQ(Said(cell, QAccessible::Name), "");
}

/// What is told while it lives, as "name; description".
class Heard {
 public:
  Heard() {
    HearInstead([this](const QAccessibleEvent& event) {
      const auto* told = event.accessibleInterface();
      m_told.emplace_back(event.type(), told->text(QAccessible::Name).toStdString() + "; " +
                                            told->text(QAccessible::Description).toStdString());
    });
  }
  Heard(const Heard&) = delete;
  Heard& operator=(const Heard&) = delete;
  ~Heard() { HearInstead(nullptr); }
  std::vector<std::string> Of(QAccessible::Event type) const {
    std::vector<std::string> texts;
    for (const auto& [told, sText] : m_told) {
      if (told == type) texts.push_back(sText);
    }
    return texts;
  }

 private:
  std::vector<std::pair<QAccessible::Event, std::string>> m_told;
};

TEST(accessible_rows, tell_that_the_current_cell_was_changed_where_it_stands) {
  RowView view;
  view.ShowRows(std::make_shared<EditedRecordset>(), kUtcZone);
  Show(view);
  view.activateWindow();
  view.setFocus();
  ASSERT_TRUE(tests::Until([&] { return view.hasFocus(); }));
  view.GoTo(1, 1);
  const Heard heard;
  view.Model().TellOfChange(std::vector<RowIndex>{0});
  EXPECT_TRUE(heard.Of(QAccessible::NameChanged).empty()) << "another row";
  view.Model().TellOfChange(std::vector<RowIndex>{1});
  const std::vector<std::string> expected = {"0.5; Value, row 2, changed"};
  EXPECT_EQ(heard.Of(QAccessible::NameChanged), expected);
  EXPECT_EQ(heard.Of(QAccessible::DescriptionChanged), expected);
}

TEST(accessible_rows, tell_which_rows_came_new) {
  RowView view;
  view.Model().NewRows({1});
  view.ShowRows(Plant(3), kUtcZone);
  EXPECT_EQ(Said(TableOf(view)->cellAt(1, 0), QAccessible::Description), "Number, row 2, came new");
  EXPECT_EQ(Said(TableOf(view)->cellAt(2, 0), QAccessible::Description), "Number, row 3");
}

TEST(accessible_rows, sentences_of_the_strip_are_told_once) {
  StatusStrip strip;
  const Heard heard;
  strip.Remark("The row was not stored.");
  strip.Remark("The row was not stored.");
  EXPECT_EQ(heard.Of(QAccessible::Alert),
            (std::vector<std::string>{"Notice; The row was not stored."}));
  strip.Remark({});
  strip.Remark("Exporting: 4 rows written so far\u2026", false);
  EXPECT_EQ(heard.Of(QAccessible::Alert).size(), 1U) << "what goes on is told when it is done";
  strip.Remark("Exported 5 rows to /tmp/out.csv", false);
  EXPECT_EQ(heard.Of(QAccessible::Alert).size(), 2U);
}

}  // namespace
}  // namespace orvane::controls

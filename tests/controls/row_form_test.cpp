#include "controls/view/row_form.h"

#include <QClipboard>
#include <QCoreApplication>
#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>
#include <QScrollBar>
#include <QTableView>
#include <QToolButton>

#include "tests/controls/row_view_fixture.h"
#include "tests/fakes/until.h"

namespace orvane::controls {
namespace {

/// A table that is wider than a screen.
std::shared_ptr<FakeRecordset> Wide(RowIndex rows) {
  auto rs = std::make_shared<FakeRecordset>(rows, [](auto row, auto column) -> Value {
    if (column == 3) return {};
    return platform::Text("r" + std::to_string(row) + "c" + std::to_string(column));
  });
  for (int n = 0; n < 200; ++n) {
    rs->Column("column " + std::to_string(n), platform::DataType::WChar);
  }
  return rs;
}

class row_form : public testing::Test {
 protected:
  row_form() {
    m_host.resize(800, 500);
    m_view->setGeometry(0, 0, 500, 500);
    m_form->setGeometry(500, 0, 300, 500);
    m_view->ShowRows(Wide(5), kUtcZone);
    m_host.show();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(&m_host));
  }
  void PressKeys() { QTest::keyClick(m_view, Qt::Key_F4); }
  QTableView& Lines() { return *m_form->findChild<QTableView*>("formLines"); }
  std::string Line(int nLine) {
    const auto* model = Lines().model();
    return (model->index(nLine, 0).data().toString() + "=" +
            model->index(nLine, 1).data().toString())
        .toStdString();
  }
  std::string Which() { return m_form->findChild<QLabel*>("formRow")->text().toStdString(); }

  QWidget m_host;
  RowView* m_view = new RowView(&m_host);
  RowForm* m_form = new RowForm(*m_view, &m_host);
};

TEST_F(row_form, shows_the_current_row_one_value_below_the_other) {
  EXPECT_TRUE(m_form->isHidden());
  m_view->GoTo(2, 5);
  PressKeys();
  ASSERT_TRUE(m_form->isVisible());
  EXPECT_EQ(Lines().model()->rowCount(), 200);
  EXPECT_EQ(Which(), "Row 3");
  EXPECT_EQ(Line(0), "column 0=r2c0");
  EXPECT_EQ(Line(3), "column 3=NULL");
  EXPECT_EQ(Line(199), "column 199=r2c199");
  EXPECT_EQ(Lines().currentIndex().row(), 5);
  EXPECT_TRUE(Lines().hasFocus());
  QTest::keyClick(&Lines(), Qt::Key_Escape);
  EXPECT_TRUE(m_form->isHidden());
  EXPECT_TRUE(m_view->hasFocus());
}

TEST_F(row_form, follows_the_current_cell_and_leads_it) {
  PressKeys();
  m_view->GoTo(4, 7);
  EXPECT_EQ(Which(), "Row 5");
  EXPECT_EQ(Line(7), "column 7=r4c7");
  EXPECT_EQ(Lines().currentIndex().row(), 7);
  EXPECT_FALSE(m_form->findChild<QToolButton*>("formNext")->isEnabled());
  QTest::mouseClick(m_form->findChild<QToolButton*>("formPrevious"), Qt::LeftButton);
  EXPECT_EQ(Current(*m_view), (std::pair{3, 7}));
  EXPECT_EQ(Line(7), "column 7=r3c7");
  QTest::keyClick(&Lines(), Qt::Key_Up, Qt::AltModifier);
  EXPECT_EQ(Current(*m_view), (std::pair{2, 7}));
  QTest::keyClick(&Lines(), Qt::Key_Down);
  EXPECT_EQ(Current(*m_view), (std::pair{2, 8}));
  QTest::keyClick(&Lines(), Qt::Key_Return);
  EXPECT_TRUE(m_view->hasFocus());
  EXPECT_TRUE(m_form->isVisible());
}

TEST_F(row_form, in_little_room_names_and_values_are_side_by_side) {
  QFont font = m_host.font();
  font.setPixelSize(26);
  m_form->setFont(font);
  m_form->setGeometry(500, 0, 270, 300);
  PressKeys();
  QCoreApplication::processEvents();
  const auto* model = Lines().model();
  const QRect name = Lines().visualRect(model->index(0, 0));
  const QRect value = Lines().visualRect(model->index(0, 1));
  EXPECT_EQ(name.left(), 0);
  EXPECT_TRUE(Lines().viewport()->rect().intersects(value));
  EXPECT_GT(value.left(), name.right()) << "a line lies between them";
}

TEST_F(row_form, finds_columns_by_their_names) {
  PressKeys();
  auto* filter = m_form->findChild<QLineEdit*>("formFilter");
  filter->setFocus();
  QTest::keyClicks(filter, "COLUMN 19");
  EXPECT_EQ(Lines().model()->rowCount(), 11);
  EXPECT_EQ(Line(0), "column 19=r0c19");
  EXPECT_EQ(Current(*m_view), (std::pair{0, 0})) << "looking for a column goes nowhere";
  EXPECT_EQ(Line(10), "column 199=r0c199");
  QTest::keyClick(filter, Qt::Key_Return);
  EXPECT_TRUE(Lines().hasFocus());
  QTest::keyClick(&Lines(), Qt::Key_End, Qt::ControlModifier);
  EXPECT_EQ(Current(*m_view), (std::pair{0, 199}));
}

TEST_F(row_form, shows_nothing_of_rows_that_are_gone) {
  PressKeys();
  m_view->GoTo(4, 1);
  m_view->ShowRows(nullptr, CellFormat());
  EXPECT_TRUE(tests::Until([this] { return Which() == "No row"; }));
  EXPECT_EQ(Lines().model()->rowCount(), 0);
  m_view->ShowRows(Wide(1), kUtcZone);
  EXPECT_TRUE(tests::Until([this] { return Which() == "Row 1"; }));
  EXPECT_EQ(Line(0), "column 0=r0c0");
}

TEST_F(row_form, copies_a_value_whole) {
  PressKeys();
  Lines().setCurrentIndex(Lines().model()->index(9, 1));
  QTest::keyClick(&Lines(), Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(QGuiApplication::clipboard()->text(), "r0c9");
}

TEST_F(row_form, costs_the_same_for_any_number_of_rows) {
  const auto rs = Wide(kMany);
  m_view->ShowRows(rs, kUtcZone);
  PressKeys();
  // What its opening has left in the event loop.
  QCoreApplication::processEvents();
  rs->TakeCellsAsked();
  m_view->GoTo(kMany - 1, 2);
  m_form->grab();
  EXPECT_EQ(Line(2), "column 2=r" + std::to_string(kMany - 1) + "c2");
  EXPECT_LT(rs->TakeCellsAsked(), 2000U);
}

TEST_F(row_form, stays_where_it_is_scrolled_when_the_rows_are_fetched_again) {
  m_view->GoTo(2, 5);
  PressKeys();
  auto& bar = *Lines().verticalScrollBar();
  bar.setValue(bar.maximum());
  const int nScrolled = bar.value();
  ASSERT_GT(nScrolled, 0);
  const RowsState state = m_view->State();
  m_view->ShowRows(Wide(9), kUtcZone, &state);
  QCoreApplication::processEvents();
  EXPECT_EQ(bar.value(), nScrolled);
  EXPECT_EQ(Which(), "Row 3");
  EXPECT_EQ(Line(199), "column 199=r2c199");
  EXPECT_TRUE(m_form->findChild<QToolButton*>("formNext")->isEnabled());
  // Other columns are other lines.
  m_view->ShowRows(Plant(3), kUtcZone);
  QCoreApplication::processEvents();
  EXPECT_EQ(Lines().model()->rowCount(), 4);
  EXPECT_EQ(Line(0), "Number=0");
}

}  // namespace
}  // namespace orvane::controls

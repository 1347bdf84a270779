// The parts of a grid around its rows as the console shows them: the filter row, the find bar, the
// strip and the form of a row. In a small window, in twice as large letters, on screens of two and
// three times as many dots, light and dark, nothing is cut, nothing lies over something else, and
// all can be read.
#include "tests/controls/grid_looks.h"

#include <QToolButton>

namespace orvane::controls {
namespace {

class grid_looks : public GridLooks {
 protected:
  grid_looks() { OpenIn("Pumps"); }
};

TEST_P(grid_looks, of_the_filter_row) {
  Press(Qt::Key_F, Qt::ControlModifier | Qt::ShiftModifier);
  auto& row = Part("filterRow");
  ExpectApart(row);
  const auto boxes = row.findChildren<QLineEdit*>();
  ASSERT_EQ(boxes.size(), 4);
  for (QLineEdit* const box : boxes) {
    ExpectRead(*box, console::kLeastContrast);
    EXPECT_GE(box->width(), Rows().Names().sectionSize(0) / 2);
    box->setFocus();
    QTest::keyClicks(box, "gjpq");
    Rows().setFocus();
    ExpectRead(*box, kReadable);
    box->clear();
    ExpectFocusOn(*box);
  }
  const QRect place(row.mapTo(&Rows(), QPoint()), row.size());
  EXPECT_FALSE(place.intersects(Rows().Names().geometry()));
  EXPECT_FALSE(place.intersects(Rows().viewport()->geometry()));
}

TEST_P(grid_looks, of_the_find_bar) {
  Press(Qt::Key_F, Qt::ControlModifier);
  auto& bar = Part("findBar");
  QTest::keyClicks(&Part<QLineEdit>("findText"), "gjpq");
  ExpectApart(bar);
  ExpectRead(Part("findText"), kReadable);
  ExpectRead(Part("findOutcome"), kReadable);
  for (const char* const sName : {"findPrevious", "findNext", "findClose"}) {
    ExpectRead(Part(sName), kReadable);
    ExpectFocusOn(Part(sName));
  }
  ExpectFocusOn(Part("findText"));
  EXPECT_GE(Part<QLabel>("findOutcome").width(), 10 * bar.fontMetrics().averageCharWidth())
      << "some of it is in sight";
}

TEST_P(grid_looks, of_the_strip) {
  GoTo(0, 2);
  Type("99");
  Press(Qt::Key_Tab);
  Rows().Filter({ColumnFilter::Read("e", 1, platform::DataType::WChar, CellFormat())});
  Settle();
  auto& strip = Part("status");
  ExpectApart(strip);
  ExpectRead(Part("rowCount"), kReadable);
  ExpectRead(Part("arrangement"), kReadable);
  ExpectRead(Part("pending"), kReadable);
  for (QToolButton* const button : strip.findChildren<QToolButton*>()) {
    if (!button->isVisible() || button->isChecked()) continue;
    ExpectRead(*button, kReadable);
    ExpectFocusOn(*button);
  }
  const auto& arrangement = Part<QLabel>("arrangement");
  EXPECT_GE(arrangement.width(), std::min(arrangement.sizeHint().width(),
                                          16 * arrangement.fontMetrics().averageCharWidth()));
}

TEST_P(grid_looks, of_the_form_of_a_row) {
  Press(Qt::Key_F4);
  auto& form = Part("rowForm");
  ExpectApart(form);
  GoTo(1, 0);
  for (const char* const sName : {"formPrevious", "formNext", "formClose"}) {
    ExpectRead(Part(sName), console::kLeastContrast);
    ExpectFocusOn(Part(sName));
  }
  for (QLineEdit* const box : form.findChildren<QLineEdit*>()) {
    ExpectRead(*box, console::kLeastContrast);
    ExpectFocusOn(*box);
  }
  auto* const values = form.findChild<QAbstractItemView*>();
  ASSERT_NE(values, nullptr);
  for (int n = 0; n < values->model()->rowCount(); ++n) {
    const QModelIndex name = values->model()->index(n, 0);
    const QRect place = values->visualRect(name);
    EXPECT_GE(place.height(), values->fontMetrics().height());
    EXPECT_GE(place.width(), values->fontMetrics().horizontalAdvance(name.data().toString()));
    EXPECT_TRUE(values->viewport()->rect().contains(place)) << n;
  }
}

TEST_P(grid_looks, of_the_line_that_is_typed_into) {
  GoTo(0, 1);
  const QRect cell = Rows().visualRect(Rows().currentIndex());
  Press(Qt::Key_F2);
  ASSERT_NE(Editor(), nullptr);
  EXPECT_EQ(Editor()->geometry(), cell);
  Editor()->setText("gjpq");
  Editor()->deselect();
  const QImage picture = Drawn(*Editor());
  const QColor frame = Editor()->palette().color(QPalette::Highlight);
  for (const int x : {0, picture.width() / 2, picture.width() - 1}) {
    for (const int y : {0, picture.height() - 1}) EXPECT_EQ(picture.pixelColor(x, y), frame) << x;
  }
  Editor()->setReadOnly(true);  // without a cursor
  ExpectRead(*Editor(), kReadable);
  Press(Qt::Key_Escape);
}

INSTANTIATE_TEST_SUITE_P(looks, grid_looks, testing::ValuesIn(kGridLooks),
                         [](const auto& tested) { return std::string(tested.param.sName); });

}  // namespace
}  // namespace orvane::controls

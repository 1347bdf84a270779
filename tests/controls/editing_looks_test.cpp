// What somebody who edits rows sees: where the typed text stands, what an empty cell of a new row
// says, how the question before rows are deleted speaks.
#include <QAbstractButton>
#include <QMenu>
#include <QTextEdit>

#include "tests/controls/pumps_fixture.h"

namespace orvane::controls {
namespace {

class editing_looks : public PumpsFixture {};

TEST_F(editing_looks, the_question_speaks_of_as_many_rows_as_there_are) {
  Open("Pumps");
  PressRowNumber(0);
  Press(Qt::Key_Delete);
  EXPECT_EQ(Window()->findChild<QMessageBox*>()->informativeText(),
            "The server deletes it at once; that cannot be undone.");
  Answer("Cancel");
  PressRowNumber(1, Qt::ShiftModifier);
  Press(Qt::Key_Delete);
  EXPECT_EQ(Window()->findChild<QMessageBox*>()->informativeText(),
            "The server deletes them at once; that cannot be undone.");
  Answer("Cancel");
}

TEST_F(editing_looks, the_question_is_laid_out_as_every_message) {
  Open("Pumps");
  PressRowNumber(0);
  Press(Qt::Key_Delete);
  auto* box = Window()->findChild<QMessageBox*>();
  ASSERT_NE(box->findChild<QTextEdit*>("m_txtMessage"), nullptr) << "a text of any length";
  const auto buttons = box->buttons();
  ASSERT_EQ(buttons.size(), 2);
  EXPECT_EQ(buttons[0]->width(), buttons[1]->width());
  Answer("Cancel");
}

TEST_F(editing_looks, what_is_typed_stands_where_the_value_stood) {
  Open("Pumps");
  GoTo(0, 1);
  Press(Qt::Key_F2);
  ASSERT_NE(Editor(), nullptr);
  EXPECT_EQ(Editor()->text().toStdString(), "feed");
  const auto firstInk = [](const QImage& picture) {
    const QRgb ground = picture.pixel(picture.width() - 4, picture.height() / 2);
    // Behind the frame of the current cell.
    for (int x = 4; x < picture.width(); ++x) {
      for (int y = 4; y < picture.height() - 4; ++y) {
        if (picture.pixel(x, y) != ground) return x;
      }
    }
    return -1;
  };
  Editor()->deselect();
  Editor()->end(false);
  Editor()->setReadOnly(true);  // without a cursor
  const int nTyped = firstInk(Editor()->grab().toImage());
  const QRect cell = Rows().visualRect(Rows().model()->index(0, 1));
  Press(Qt::Key_Escape);
  GoTo(2, 0);
  EXPECT_EQ(nTyped, firstInk(Rows().viewport()->grab(cell).toImage()));
}

TEST_F(editing_looks, the_menu_of_the_rows_is_not_higher_than_a_small_screen) {
  Open("Pumps");
  QMenu menu;
  // With the least of letters the number of entries counts, in lines of what a screen of 768 has.
  Rows().Commands().Fill(menu);
  constexpr int kHighest = 768;
  EXPECT_LT(menu.sizeHint().height(), kHighest) << menu.actions().size() << " entries";
}

TEST_F(editing_looks, what_is_left_to_the_server_is_not_called_null) {
  Open("Pumps");
  GoTo(3, 0);
  Type("9");
  Press(Qt::Key_Tab);
  EXPECT_EQ(Cell(3, 0), "9");
  EXPECT_EQ(Cell(3, 1), "");
  Press(Qt::Key_0, Qt::ControlModifier);
  EXPECT_EQ(Cell(3, 1), "NULL") << "that was chosen";
  Press(Qt::Key_Escape);
}

}  // namespace
}  // namespace orvane::controls

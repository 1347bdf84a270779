#include "console/dialogs/message_boxes.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>

namespace orvane::console {
namespace {

using platform::MsgBoxButtons;
using platform::MsgBoxIcon;
using platform::MsgBoxResult;
using platform::Text;

struct Box {
  const char* sText = "Text";
  MsgBoxButtons buttons = MsgBoxButtons::OkOnly;
  MsgBoxIcon icon = MsgBoxIcon::None;
  const char* sTitle = "Title";
};

/// Shows the box and takes the steps at it.
MsgBoxResult Show(const Box& box, const std::function<void(QMessageBox&)>& steps) {
  bool bSeen = false;
  QTimer timer;
  QObject::connect(&timer, &QTimer::timeout, [&] {
    auto* shown = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    if (!shown || bSeen) return;
    bSeen = true;
    EXPECT_TRUE(QTest::qWaitForWindowActive(shown));
    steps(*shown);
  });
  timer.start(5);
  MessageBoxes boxes;
  const MsgBoxResult result = boxes.MsgBox(box.sText, box.buttons, box.icon, box.sTitle);
  EXPECT_TRUE(bSeen);
  return result;
}

TEST(message_boxes, an_error_has_one_button_and_an_icon) {
  const Box box{"Table <b>x</b> is gone.", MsgBoxButtons::OkOnly, MsgBoxIcon::Critical, "Error"};
  EXPECT_EQ(Show(box,
                 [](QMessageBox& shown) {
                   EXPECT_EQ(shown.windowTitle(), "Error");
                   EXPECT_EQ(shown.text(), "Table <b>x</b> is gone.");
                   EXPECT_EQ(shown.textFormat(), Qt::PlainText);
                   EXPECT_EQ(shown.icon(), QMessageBox::Critical);
                   EXPECT_EQ(shown.standardButtons(), QMessageBox::Ok);
                   QTest::keyClick(&shown, Qt::Key_Return);
                 }),
            MsgBoxResult::Ok);
}

TEST(message_boxes, a_question_has_yes_first_and_by_default) {
  const Box box{"Remove?", MsgBoxButtons::YesNo, MsgBoxIcon::None, "Confirm Server Removal"};
  EXPECT_EQ(Show(box,
                 [](QMessageBox& shown) {
                   EXPECT_EQ(shown.icon(), QMessageBox::NoIcon);
                   EXPECT_EQ(shown.standardButtons(), QMessageBox::Yes | QMessageBox::No);
                   EXPECT_EQ(shown.defaultButton(), shown.button(QMessageBox::Yes));
                   QTest::keyClick(&shown, Qt::Key_Return);
                 }),
            MsgBoxResult::Yes);
}

TEST(message_boxes, a_question_is_answered_by_mouse) {
  const Box box{"Remove?", MsgBoxButtons::YesNo};
  EXPECT_EQ(Show(box,
                 [](QMessageBox& shown) {
                   QTest::mouseClick(shown.button(QMessageBox::No), Qt::LeftButton);
                 }),
            MsgBoxResult::No);
  EXPECT_EQ(Show(box,
                 [](QMessageBox& shown) {
                   QTest::mouseClick(shown.button(QMessageBox::Yes), Qt::LeftButton);
                 }),
            MsgBoxResult::Yes);
}

TEST(message_boxes, escape_is_no_where_there_is_a_no) {
  const auto escape = [](QMessageBox& shown) { QTest::keyClick(&shown, Qt::Key_Escape); };
  EXPECT_EQ(Show({"Remove?", MsgBoxButtons::YesNo}, escape), MsgBoxResult::No);
  EXPECT_EQ(Show({"Done.", MsgBoxButtons::OkOnly}, escape), MsgBoxResult::Ok);
}

TEST(message_boxes, access_keys_answer_a_question) {
  for (const auto& [key, answer] :
       {std::pair(Qt::Key_Y, MsgBoxResult::Yes), std::pair(Qt::Key_N, MsgBoxResult::No)}) {
    EXPECT_EQ(
        Show({"Remove?", MsgBoxButtons::YesNo},
             [key = key](QMessageBox& shown) { QTest::keyClick(&shown, key, Qt::AltModifier); }),
        answer);
  }
}

TEST(message_boxes, the_windows_own_button_is_no_where_there_is_a_no) {
  const auto close = [](QMessageBox& shown) { shown.close(); };
  EXPECT_EQ(Show({"Remove?", MsgBoxButtons::YesNo}, close), MsgBoxResult::No);
  EXPECT_EQ(Show({"Done.", MsgBoxButtons::OkOnly}, close), MsgBoxResult::Ok);
}

TEST(message_boxes, the_text_can_be_selected_by_mouse) {
  Show({"Table Pumps is gone."}, [](QMessageBox& shown) {
    auto* const label = shown.findChild<QLabel*>("qt_msgbox_label");
    ASSERT_NE(label, nullptr);
    QTest::mouseDClick(label, Qt::LeftButton, {}, {5, label->height() / 2});
    EXPECT_EQ(label->selectedText(), "Table");
    shown.accept();
  });
}

TEST(message_boxes, come_up_over_the_window_in_front_although_none_is_active) {
  QWidget window;
  window.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
  QApplication::setActiveWindow(nullptr);
  ASSERT_EQ(QApplication::activeWindow(), nullptr);
  Show({}, [&](QMessageBox& shown) {
    EXPECT_EQ(shown.parentWidget(), &window);
    shown.accept();
  });
}

TEST(message_boxes, come_up_over_the_modal_window_on_top) {
  QWidget window;
  window.show();
  QDialog modal;
  modal.setModal(true);
  modal.show();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&modal));
  QApplication::setActiveWindow(&window);
  MessageBoxes boxes;
  QTimer::singleShot(0, [&] {
    auto* const shown = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    ASSERT_NE(shown, nullptr);
    EXPECT_EQ(shown->parentWidget(), &modal);
    shown->accept();
  });
  boxes.MsgBox("Text", MsgBoxButtons::OkOnly, MsgBoxIcon::None, "Error");
}

TEST(message_boxes, an_empty_title_is_the_programs_own) {
  Show({"Text", MsgBoxButtons::OkOnly, MsgBoxIcon::None, ""}, [](QMessageBox& shown) {
    EXPECT_EQ(shown.windowTitle(), "ORVANE Console");
    shown.accept();
  });
}

TEST(message_boxes, show_nothing_while_they_are_suppressed) {
  MessageBoxes boxes;
  {
    const MessageBoxSuppression outer(boxes);
    EXPECT_EQ(boxes.MsgBox("One", MsgBoxButtons::OkOnly, MsgBoxIcon::None, "Error"),
              MsgBoxResult::Ok);
    {
      const MessageBoxSuppression inner(boxes);
      EXPECT_EQ(boxes.MsgBox("Two", MsgBoxButtons::YesNo, MsgBoxIcon::None, "Error"),
                MsgBoxResult::Yes);
      EXPECT_EQ(inner.Texts(), std::vector<Text>{"Two"});
    }
    EXPECT_EQ(outer.Texts(), std::vector<Text>{"One"});
  }
  QTimer::singleShot(0, [] {
    auto* shown = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    ASSERT_NE(shown, nullptr);
    shown->accept();
  });
  boxes.MsgBox("Three", MsgBoxButtons::OkOnly, MsgBoxIcon::None, "Error");
}

TEST(message_boxes, the_hourglass_stays_until_the_pointer_is_reset) {
  MessageBoxes boxes;
  EXPECT_EQ(boxes.MousePointer(), platform::kMousePointerDefault);
  boxes.MousePointer(platform::kMousePointerHourglass);
  boxes.MousePointer(platform::kMousePointerHourglass);
  EXPECT_EQ(boxes.MousePointer(), platform::kMousePointerHourglass);
  ASSERT_NE(QApplication::overrideCursor(), nullptr);
  EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::WaitCursor);
  boxes.MousePointer(platform::kMousePointerDefault);
  EXPECT_EQ(boxes.MousePointer(), platform::kMousePointerDefault);
  EXPECT_EQ(QApplication::overrideCursor(), nullptr);
  boxes.MousePointer(platform::kMousePointerDefault);
  EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}

TEST(message_boxes, the_hourglass_is_laid_aside_while_a_box_is_shown) {
  MessageBoxes boxes;
  boxes.MousePointer(platform::kMousePointerHourglass);
  bool bSeen = false;
  QTimer::singleShot(0, [&] {
    auto* const shown = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    ASSERT_NE(shown, nullptr);
    bSeen = true;
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
    EXPECT_EQ(boxes.MousePointer(), platform::kMousePointerHourglass);
    shown->accept();
  });
  boxes.MsgBox("Text", MsgBoxButtons::OkOnly, MsgBoxIcon::None, "Error");
  EXPECT_TRUE(bSeen);
  EXPECT_EQ(boxes.MousePointer(), platform::kMousePointerHourglass);
  ASSERT_NE(QApplication::overrideCursor(), nullptr);
  EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::WaitCursor);
  boxes.MousePointer(platform::kMousePointerDefault);
  EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}

TEST(message_boxes, a_beep_is_no_failure_where_nothing_sounds) {
  EXPECT_NO_THROW(MessageBoxes().Beep());
}

TEST(message_boxes, an_hourglass_left_on_goes_with_them) {
  {
    MessageBoxes boxes;
    boxes.MousePointer(platform::kMousePointerHourglass);
  }
  EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}

TEST(message_boxes, do_events_handles_what_is_pending) {
  MessageBoxes boxes;
  bool bHandled = false;
  QMetaObject::invokeMethod(
      qApp, [&] { bHandled = true; }, Qt::QueuedConnection);
  EXPECT_FALSE(bHandled);
  boxes.DoEvents();
  EXPECT_TRUE(bHandled);
}

}  // namespace
}  // namespace orvane::console

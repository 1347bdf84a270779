#include "console/dialogs/message_boxes.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
#include <QScreen>
#include <QScrollBar>
#include <QTest>
#include <QTextEdit>
#include <QTimer>

#include "console/look/control_style.h"
#include "tests/fakes/until.h"

namespace orvane::console {
namespace {

using platform::MsgBoxButtons;
using platform::MsgBoxIcon;
using platform::MsgBoxResult;

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
    auto* const text = shown.findChild<QTextEdit*>("m_txtMessage");
    ASSERT_NE(text, nullptr);
    QTest::mouseDClick(text->viewport(), Qt::LeftButton, {}, {5, text->height() / 2});
    EXPECT_EQ(text->textCursor().selectedText(), "Table");
    // The keys stay with the buttons.
    EXPECT_TRUE(shown.button(QMessageBox::Ok)->hasFocus());
    shown.accept();
  });
}

TEST(message_boxes, a_word_of_any_length_is_broken_and_nothing_of_it_is_cut) {
  const std::string sText = "The file /" + std::string(1500, 'x') + "/plant.orvc is gone.";
  Show({sText.c_str()}, [&](QMessageBox& shown) {
    const auto* const text = shown.findChild<QTextEdit*>("m_txtMessage");
    ASSERT_NE(text, nullptr);
    EXPECT_EQ(text->toPlainText().toStdString(), sText);
    EXPECT_LE(text->document()->idealWidth(), text->viewport()->width());
    EXPECT_LE(text->document()->size().height(), text->viewport()->height());
    EXPECT_TRUE(shown.screen()->availableGeometry().contains(shown.frameGeometry()));
    EXPECT_LT(shown.width(), 800);
    EXPECT_TRUE(shown.rect().contains(text->geometry()));
    shown.accept();
  });
}

TEST(message_boxes, a_text_too_long_for_the_screen_scrolls_and_the_buttons_stay) {
  std::string sText;
  for (int i = 0; i < 500; ++i) sText += "Line " + std::to_string(i) + "\n";
  Show({sText.c_str(), MsgBoxButtons::YesNo}, [](QMessageBox& shown) {
    auto* const text = shown.findChild<QTextEdit*>("m_txtMessage");
    EXPECT_TRUE(shown.screen()->availableGeometry().contains(shown.frameGeometry()));
    EXPECT_TRUE(text->verticalScrollBar()->isVisible());
    EXPECT_FALSE(shown.button(QMessageBox::No)->visibleRegion().isEmpty());
    // Keys reach the end of it.
    text->setFocus();
    QTest::keyClick(text, Qt::Key_End, Qt::ControlModifier);
    const auto* const bar = text->verticalScrollBar();
    EXPECT_TRUE(tests::Until([&] { return bar->value() == bar->maximum(); }));
    QTest::keyClick(text, Qt::Key_Escape);
  });
}

TEST(message_boxes, are_centred_over_their_window) {
  QWidget window;
  window.setGeometry(300, 100, 900, 600);
  window.show();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
  Show({"Remove the server from the tree?", MsgBoxButtons::YesNo}, [&](QMessageBox& shown) {
    EXPECT_NEAR(shown.frameGeometry().center().x(), window.frameGeometry().center().x(), 2);
    EXPECT_NEAR(shown.frameGeometry().center().y(), window.frameGeometry().center().y(), 2);
    shown.reject();
  });
}

TEST(message_boxes, a_short_text_makes_a_small_box) {
  Show({"Remove?", MsgBoxButtons::YesNo}, [](QMessageBox& shown) {
    EXPECT_LT(shown.width(), 400);
    EXPECT_LT(shown.height(), 200);
    shown.reject();
  });
}

TEST(message_boxes, have_buttons_of_one_width_at_the_end_and_without_pictures) {
  QApplication::setStyle(new ControlStyle);
  Show({"Remove the server with the long name from the tree?", MsgBoxButtons::YesNo},
       [](QMessageBox& shown) {
         const auto* const yes = shown.button(QMessageBox::Yes);
         const auto* const no = shown.button(QMessageBox::No);
         EXPECT_TRUE(yes->icon().isNull());
         EXPECT_TRUE(no->icon().isNull());
         EXPECT_EQ(yes->width(), no->width());
         const int iYes = yes->mapTo(&shown, QPoint()).x();
         const int iNo = no->mapTo(&shown, QPoint()).x();
         EXPECT_LT(iYes, iNo);
         EXPECT_LT(shown.width() - iNo - no->width(), 20);
         shown.reject();
       });
  QApplication::setStyle("Fusion");
}

TEST(message_boxes, have_their_text_as_far_from_the_edge_as_their_buttons) {
  for (const auto icon : {MsgBoxIcon::None, MsgBoxIcon::Critical}) {
    Show({"Remove the server from the tree?", MsgBoxButtons::YesNo, icon}, [&](QMessageBox& shown) {
      const auto* text = shown.findChild<QTextEdit*>("m_txtMessage");
      const auto* last = shown.button(QMessageBox::No);
      const int nBehind = shown.width() - last->mapTo(&shown, QPoint(last->width(), 0)).x();
      const int nBefore = text->mapTo(&shown, QPoint()).x();
      if (icon == MsgBoxIcon::None) {
        EXPECT_EQ(nBefore, nBehind);
      } else {
        EXPECT_GT(nBefore, 2 * nBehind) << "beside its picture";
      }
      QTest::keyClick(&shown, Qt::Key_Escape);
    });
  }
}

TEST(message_boxes, enter_presses_the_button_that_has_the_focus) {
  EXPECT_EQ(Show({"Remove?", MsgBoxButtons::YesNo},
                 [](QMessageBox& shown) {
                   shown.button(QMessageBox::No)->setFocus();
                   QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
                 }),
            MsgBoxResult::No);
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
    {
      const MessageBoxSuppression inner(boxes);
      EXPECT_EQ(boxes.MsgBox("One", MsgBoxButtons::YesNo, MsgBoxIcon::None, "Error"),
                MsgBoxResult::Yes);
    }
    EXPECT_EQ(boxes.MsgBox("Two", MsgBoxButtons::OkOnly, MsgBoxIcon::None, "Error"),
              MsgBoxResult::Ok);
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

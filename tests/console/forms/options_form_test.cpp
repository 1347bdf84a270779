#include <QClipboard>
#include <QLabel>
#include <QPushButton>

#include "dialogs/options_dlg.h"
#include "tests/console/forms/forms_fixture.h"

namespace orvane::console {
namespace {

struct options_form : FormsFixture {
  options_form() {
    dialog.MaxRows().Text("100");
    dialog.Timeout().Text("60");
    dialog.DefStartTime().Text("*-1h");
    dialog.DefEndTime().Text("*");
  }

  dialogs::OptionsDlg dialog{services};
};

TEST_F(options_form, opens_with_the_number_of_rows_selected) {
  Show(dialog, [](QWidget& window) {
    EXPECT_EQ(window.windowTitle(), "Options");
    EXPECT_EQ(Focus(), "m_txtMaxRows");
    EXPECT_EQ(Find<QLineEdit>(window, "m_txtMaxRows").selectedText(), "100");
  });
}

TEST_F(options_form, the_time_outs_unit_is_read_out_with_its_box) {
  Show(dialog, [](QWidget& window) {
    EXPECT_EQ(Find<QLabel>(window, "m_lblSeconds").text(), "[s]");
    EXPECT_EQ(Find(window, "m_txtTimeout").accessibleDescription(), "seconds");
    EXPECT_EQ(Find(window, "m_txtMaxRows").accessibleDescription(), "");
  });
}

TEST_F(options_form, a_letter_beeps_and_leaves_the_number) {
  Show(dialog, [this](QWidget& window) {
    auto& txt = Find<QLineEdit>(window, "m_txtMaxRows");
    Key(Qt::Key_End);
    Type("x");
    EXPECT_EQ(txt.text(), "100");
    EXPECT_EQ(ui->nBeeps, 1);
    EXPECT_EQ(dialog.MaxRows().Text(), "100");
    Type("5");
    EXPECT_EQ(txt.text(), "1005");
    EXPECT_EQ(ui->nBeeps, 1);
  });
}

TEST_F(options_form, a_refused_letter_leaves_the_caret_where_it_was) {
  Show(dialog, [](QWidget& window) {
    Key(Qt::Key_Home);
    Key(Qt::Key_Right);
    Type("x");
    EXPECT_EQ(Find<QLineEdit>(window, "m_txtMaxRows").cursorPosition(), 1);
    Type("7");
    EXPECT_EQ(Find<QLineEdit>(window, "m_txtMaxRows").text(), "1700");
  });
}

TEST_F(options_form, a_letter_over_the_selected_number_brings_the_number_back_selected) {
  Show(dialog, [this](QWidget& window) {
    auto& txt = Find<QLineEdit>(window, "m_txtMaxRows");
    Type("xyz");
    EXPECT_EQ(txt.text(), "100");
    EXPECT_EQ(txt.selectedText(), "100");
    EXPECT_EQ(ui->nBeeps, 3);
    Type("7");
    EXPECT_EQ(txt.text(), "7");
  });
}

TEST_F(options_form, a_refused_key_keeps_what_was_marked_from_either_end) {
  Show(dialog, [](QWidget& window) {
    auto& txt = Find<QLineEdit>(window, "m_txtMaxRows");
    Key(Qt::Key_End);
    Key(Qt::Key_Left, Qt::ShiftModifier);
    Type("x");
    EXPECT_EQ(txt.selectionStart(), 2);
    EXPECT_EQ(txt.selectedText(), "0");
    // The caret is where it was, so that the marking grows to the left.
    Key(Qt::Key_Left, Qt::ShiftModifier);
    EXPECT_EQ(txt.selectedText(), "00");
    Key(Qt::Key_Home);
    Key(Qt::Key_Right, Qt::ShiftModifier);
    Type("x");
    EXPECT_EQ(txt.selectedText(), "1");
    Key(Qt::Key_Right, Qt::ShiftModifier);
    EXPECT_EQ(txt.selectedText(), "10");
    Key(Qt::Key_Delete);
    EXPECT_EQ(txt.text(), "0");
    Type("x");
    EXPECT_EQ(txt.text(), "0");
    EXPECT_EQ(txt.cursorPosition(), 0);
    EXPECT_FALSE(txt.hasSelectedText());
  });
}

TEST_F(options_form, a_refused_text_that_is_pasted_keeps_the_marking) {
  QApplication::clipboard()->setText("many");
  Show(dialog, [](QWidget& window) {
    Key(Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(Find<QLineEdit>(window, "m_txtMaxRows").selectedText(), "100");
  });
}

TEST_F(options_form, a_letter_in_a_cleared_box_brings_the_last_number_back) {
  Show(dialog, [this](QWidget& window) {
    auto& txt = Find<QLineEdit>(window, "m_txtTimeout");
    QTest::mouseClick(&txt, Qt::LeftButton);
    Key(Qt::Key_End);
    Key(Qt::Key_Backspace);
    Key(Qt::Key_Backspace);
    EXPECT_EQ(txt.text(), "");
    EXPECT_EQ(ui->nBeeps, 0);
    Type("x");
    // Each key is a text of its own: "6" was accepted on the way to the empty box.
    EXPECT_EQ(txt.text(), "6");
    EXPECT_EQ(ui->nBeeps, 1);
  });
}

TEST_F(options_form, a_letter_in_a_box_cleared_at_once_brings_the_callers_number_back) {
  Show(dialog, [this](QWidget& window) {
    Key(Qt::Key_Delete);
    EXPECT_EQ(Find<QLineEdit>(window, "m_txtMaxRows").text(), "");
    Type("x");
    EXPECT_EQ(Find<QLineEdit>(window, "m_txtMaxRows").text(), "100");
    EXPECT_EQ(ui->nBeeps, 1);
  });
}

TEST_F(options_form, a_number_too_large_is_refused_like_a_letter) {
  Show(dialog, [this](QWidget& window) {
    Type("2147483647");
    EXPECT_EQ(ui->nBeeps, 0);
    Type("0");
    EXPECT_EQ(ui->nBeeps, 1);
    EXPECT_EQ(Find<QLineEdit>(window, "m_txtMaxRows").text(), "2147483647");
    Key(Qt::Key_Backspace);
    Type("8");
    EXPECT_EQ(ui->nBeeps, 2);
    EXPECT_EQ(Find<QLineEdit>(window, "m_txtMaxRows").text(), "214748364");
  });
}

TEST_F(options_form, a_negative_number_can_be_typed_around_the_sign) {
  Show(dialog, [this](QWidget& window) {
    Type("5");
    Key(Qt::Key_Home);
    Type("-");
    EXPECT_EQ(Find<QLineEdit>(window, "m_txtMaxRows").text(), "-5");
    EXPECT_EQ(ui->nBeeps, 0);
  });
}

TEST_F(options_form, times_take_any_text) {
  Show(dialog, [this](QWidget& window) {
    QTest::mouseClick(&Find(window, "m_txtDefStartTime"), Qt::LeftButton);
    Key(Qt::Key_End);
    Type(" or so");
    EXPECT_EQ(dialog.DefStartTime().Text(), "*-1h or so");
    EXPECT_EQ(ui->nBeeps, 0);
  });
}

TEST_F(options_form, enter_accepts) {
  Show(dialog, [](QWidget& window) {
    Type("250");
    Key(Qt::Key_Return);
    EXPECT_FALSE(window.isVisible());
  });
  EXPECT_TRUE(dialog.Accepted());
  EXPECT_EQ(dialog.MaxRows().Text(), "250");
}

TEST_F(options_form, enter_of_the_keypad_accepts) {
  Show(dialog, [](QWidget&) { Key(Qt::Key_Enter, Qt::KeypadModifier); });
  EXPECT_TRUE(dialog.Accepted());
}

TEST_F(options_form, escape_does_nothing) {
  Show(dialog, [](QWidget& window) {
    Key(Qt::Key_Escape);
    EXPECT_TRUE(window.isVisible());
    Find(window, "m_btnCancel").setFocus();
    Key(Qt::Key_Escape);
    EXPECT_TRUE(window.isVisible());
  });
  EXPECT_FALSE(dialog.Accepted());
}

TEST_F(options_form, a_click_on_ok_accepts) {
  Show(dialog, [](QWidget& window) {
    Click(window, "m_btnOK");
    EXPECT_FALSE(window.isVisible());
  });
  EXPECT_TRUE(dialog.Accepted());
}

TEST_F(options_form, cancel_after_editing_is_not_accepted) {
  Show(dialog, [](QWidget& window) {
    Type("7");
    Click(window, "m_btnCancel");
    EXPECT_FALSE(window.isVisible());
  });
  EXPECT_FALSE(dialog.Accepted());
}

TEST_F(options_form, space_and_enter_press_the_focused_button_and_ctrl_enter_the_default_one) {
  for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter}) {
    Show(dialog, [&](QWidget& window) {
      Find(window, "m_btnCancel").setFocus();
      Key(key);
      EXPECT_FALSE(window.isVisible());
    });
    EXPECT_FALSE(dialog.Accepted()) << key;
  }
  Show(dialog, [](QWidget& window) {
    Find(window, "m_btnCancel").setFocus();
    Key(Qt::Key_Return, Qt::ControlModifier);
  });
  EXPECT_TRUE(dialog.Accepted());
}

TEST_F(options_form, the_button_that_enter_presses_looks_like_it) {
  Show(dialog, [](QWidget& window) {
    const auto& ok = Find<QPushButton>(window, "m_btnOK");
    const auto& cancel = Find<QPushButton>(window, "m_btnCancel");
    EXPECT_TRUE(ok.isDefault());
    Find(window, "m_btnCancel").setFocus();
    EXPECT_FALSE(ok.isDefault());
    EXPECT_TRUE(cancel.isDefault());
    Find(window, "m_txtTimeout").setFocus();
    EXPECT_TRUE(ok.isDefault());
    EXPECT_FALSE(cancel.isDefault());
  });
}

TEST_F(options_form, closing_the_window_is_not_accepted) {
  Show(dialog, [](QWidget& window) { window.close(); });
  EXPECT_FALSE(dialog.Accepted());
}

TEST_F(options_form, a_key_held_down_since_before_does_not_accept) {
  Show(dialog, [](QWidget& window) {
    QKeyEvent held(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, "\r", true);
    QApplication::sendEvent(QApplication::focusWidget(), &held);
    EXPECT_TRUE(window.isVisible());
  });
  EXPECT_FALSE(dialog.Accepted());
}

TEST_F(options_form, tab_goes_from_top_to_bottom) {
  Show(dialog, [](QWidget&) {
    for (const char* const sNext : {"m_txtTimeout", "m_txtDefStartTime", "m_txtDefEndTime",
                                    "m_btnOK", "m_btnCancel", "m_txtMaxRows"}) {
      Key(Qt::Key_Tab);
      EXPECT_EQ(Focus(), sNext);
    }
  });
}

}  // namespace
}  // namespace orvane::console

#include <Qsci/qsciscintilla.h>

#include <QCheckBox>
#include <QLabel>
#include <QPushButton>

#include "console/forms/sql_view.h"
#include "dialogs/query_dlg.h"
#include "tests/console/forms/forms_fixture.h"

namespace orvane::console {
namespace {

struct query_form : FormsFixture {
  static QsciScintilla& Editor(QWidget& window) { return Find<QsciScintilla>(window, "m_sqlView"); }
  static bool OkEnabled(QWidget& window) { return Find(window, "m_btnOk").isEnabled(); }

  dialogs::QueryDlg dialog{services};
};

TEST_F(query_form, cannot_be_accepted_until_a_character_is_typed) {
  Show(dialog, [](QWidget& window) {
    EXPECT_EQ(window.windowTitle(), "Query");
    EXPECT_EQ(Focus(), "m_txtName");
    EXPECT_FALSE(OkEnabled(window));
    Key(Qt::Key_Return);
    EXPECT_TRUE(window.isVisible());
    Type("m");
    EXPECT_TRUE(OkEnabled(window));
    Key(Qt::Key_Backspace);
    EXPECT_FALSE(OkEnabled(window));
    Type(" ");
    EXPECT_TRUE(OkEnabled(window));
    Key(Qt::Key_Return);
    EXPECT_FALSE(window.isVisible());
  });
  EXPECT_TRUE(dialog.Accepted());
  EXPECT_EQ(dialog.Name().Text(), " ");
}

TEST_F(query_form, a_name_given_before_it_opens_is_selected_and_enables_ok) {
  dialog.Name().Text("Means");
  Show(dialog, [](QWidget& window) {
    EXPECT_TRUE(OkEnabled(window));
    EXPECT_EQ(Find<QLineEdit>(window, "m_txtName").selectedText(), "Means");
  });
}

TEST_F(query_form, escape_cancels_from_either_box) {
  dialog.Name().Text("Means");
  Show(dialog, [](QWidget& window) {
    Key(Qt::Key_Escape);
    EXPECT_FALSE(window.isVisible());
  });
  EXPECT_FALSE(dialog.Accepted());
  Show(dialog, [](QWidget& window) {
    Editor(window).setFocus();
    Key(Qt::Key_Escape);
    EXPECT_FALSE(window.isVisible());
  });
  EXPECT_FALSE(dialog.Accepted());
}

TEST_F(query_form, access_keys_press_ok_and_cancel) {
  dialog.Name().Text("Means");
  Show(dialog, [](QWidget& window) {
    EXPECT_TRUE(AccessKey(Qt::Key_C, [&] { return !window.isVisible(); }));
  });
  EXPECT_FALSE(dialog.Accepted());
  Show(dialog, [](QWidget& window) {
    Editor(window).setFocus();
    EXPECT_TRUE(AccessKey(Qt::Key_O, [&] { return !window.isVisible(); }));
  });
  EXPECT_TRUE(dialog.Accepted());
}

TEST_F(query_form, enter_breaks_the_line_of_the_statement_and_ctrl_enter_accepts) {
  dialog.Name().Text("Means");
  Show(dialog, [this](QWidget& window) {
    Key(Qt::Key_Tab);
    EXPECT_EQ(Focus(), "m_sqlView");
    Type("SELECT 1");
    Key(Qt::Key_Return);
    Type("FROM t");
    EXPECT_TRUE(window.isVisible());
    EXPECT_EQ(dialog.SqlStatement().Text(), "SELECT 1\nFROM t");
    Key(Qt::Key_Return, Qt::ControlModifier);
    EXPECT_FALSE(window.isVisible());
  });
  EXPECT_TRUE(dialog.Accepted());
  EXPECT_EQ(dialog.SqlStatement().Text(), "SELECT 1\nFROM t");
}

TEST_F(query_form, ctrl_enter_without_a_name_does_nothing_at_all) {
  dialog.SqlStatement().Text("SELECT 1");
  Show(dialog, [this](QWidget& window) {
    Editor(window).setFocus();
    Key(Qt::Key_Return, Qt::ControlModifier);
    EXPECT_TRUE(window.isVisible());
    EXPECT_EQ(dialog.SqlStatement().Text(), "SELECT 1");
  });
}

TEST_F(query_form, tab_leaves_the_editor_both_ways) {
  dialog.Name().Text("Means");
  Show(dialog, [this](QWidget&) {
    for (const char* const sNext :
         {"m_sqlView", "m_btnOk", "m_btnCancel", "m_txtName", "m_sqlView"}) {
      Key(Qt::Key_Tab);
      EXPECT_EQ(Focus(), sNext);
    }
    Key(Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_EQ(Focus(), "m_txtName");
    EXPECT_EQ(dialog.SqlStatement().Text(), "");
  });
}

TEST_F(query_form, the_editor_undoes_and_redoes_what_was_typed_but_not_what_was_given) {
  dialog.SqlStatement().Text("SELECT 1");
  Show(dialog, [this](QWidget& window) {
    Editor(window).setFocus();
    Key(Qt::Key_End, Qt::ControlModifier);
    Type("00");
    EXPECT_EQ(dialog.SqlStatement().Text(), "SELECT 100");
    Key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(dialog.SqlStatement().Text(), "SELECT 1");
    Key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(dialog.SqlStatement().Text(), "SELECT 1");
    Key(Qt::Key_Y, Qt::ControlModifier);
    EXPECT_EQ(dialog.SqlStatement().Text(), "SELECT 100");
  });
}

TEST_F(query_form, a_statement_that_is_only_looked_at_comes_back_byte_for_byte) {
  const platform::Text sText = "SELECT '\xC2\xA0\xC3\xA9'\r\n\tFROM t\rWHERE 1=1\n";
  dialog.Name().Text("Means");
  dialog.SqlStatement().Text(sText);
  Show(dialog, [](QWidget&) { Key(Qt::Key_Return); });
  EXPECT_TRUE(dialog.Accepted());
  EXPECT_EQ(dialog.SqlStatement().Text(), sText);
}

TEST_F(query_form, keywords_texts_numbers_and_comments_differ_from_names) {
  dialog.SqlStatement().Text("SELECT Value, 12, 'x' -- y");
  Show(dialog, [](QWidget& window) {
    auto& editor = Editor(window);
    editor.recolor();
    const auto style = [&](int iPosition) {
      return editor.SendScintilla(QsciScintillaBase::SCI_GETSTYLEAT, iPosition);
    };
    EXPECT_EQ(style(0), QsciLexerSQL::Keyword);
    EXPECT_EQ(style(7), QsciLexerSQL::Identifier);
    EXPECT_EQ(style(14), QsciLexerSQL::Number);
    EXPECT_EQ(style(18), QsciLexerSQL::SingleQuotedString);
    EXPECT_EQ(style(22), QsciLexerSQL::CommentLine);
    EXPECT_NE(editor.lexer()->color(QsciLexerSQL::Keyword),
              editor.lexer()->color(QsciLexerSQL::Identifier));
  });
}

TEST_F(query_form, lines_are_numbered_with_room_for_every_number) {
  Show(dialog, [this](QWidget& window) {
    EXPECT_EQ(Editor(window).marginType(0), QsciScintilla::NumberMargin);
    const int iWidth = Editor(window).marginWidth(0);
    EXPECT_GT(iWidth, 0);
    platform::Text sLines;
    for (int i = 0; i < 1200; ++i) sLines += "-\n";
    dialog.SqlStatement().Text(sLines);
    EXPECT_GT(Editor(window).marginWidth(0), iWidth);
  });
}

TEST_F(query_form, brackets_with_ctrl_indent_and_unindent_the_selected_lines) {
  dialog.SqlStatement().Text("a\nb");
  Show(dialog, [this](QWidget& window) {
    Editor(window).setFocus();
    Key(Qt::Key_A, Qt::ControlModifier);
    Key(Qt::Key_BracketRight, Qt::ControlModifier);
    EXPECT_EQ(dialog.SqlStatement().Text(), "    a\n    b");
    Key(Qt::Key_BracketLeft, Qt::ControlModifier);
    EXPECT_EQ(dialog.SqlStatement().Text(), "a\nb");
  });
}

TEST_F(query_form, ctrl_f_finds_while_typing_and_enter_goes_round) {
  dialog.Name().Text("Means");
  dialog.SqlStatement().Text("Value, tag, VALUE, valve");
  Show(dialog, [](QWidget& window) {
    auto& editor = Editor(window);
    EXPECT_FALSE(Find(window, "m_findBar").isVisible());
    Key(Qt::Key_F, Qt::ControlModifier);
    EXPECT_EQ(Focus(), "m_txtFind");
    const auto at = [&] { return editor.SendScintilla(QsciScintillaBase::SCI_GETSELECTIONSTART); };
    Type("val");
    EXPECT_EQ(editor.selectedText(), "Val");
    EXPECT_EQ(at(), 0);
    Key(Qt::Key_Return);
    EXPECT_EQ(at(), 12);
    Key(Qt::Key_Return);
    EXPECT_EQ(at(), 19);
    Key(Qt::Key_Return);
    EXPECT_EQ(at(), 0);
    Key(Qt::Key_Return, Qt::ShiftModifier);
    EXPECT_EQ(at(), 19);
    Type("u");
    EXPECT_EQ(editor.selectedText(), "Valu");
    EXPECT_EQ(at(), 0);
    Key(Qt::Key_F3);
    EXPECT_EQ(at(), 12);
    Key(Qt::Key_F3, Qt::ShiftModifier);
    EXPECT_EQ(at(), 0);
    // None of these keys was the form's.
    EXPECT_TRUE(window.isVisible());
  });
}

TEST_F(query_form, the_find_bar_says_when_there_is_nothing) {
  dialog.SqlStatement().Text("Value");
  Show(dialog, [](QWidget& window) {
    Key(Qt::Key_F, Qt::ControlModifier);
    Type("values");
    EXPECT_EQ(Find<QLabel>(window, "m_lblResult").text(), "Not found");
    Key(Qt::Key_Backspace);
    EXPECT_EQ(Find<QLabel>(window, "m_lblResult").text(), "");
    EXPECT_EQ(Editor(window).selectedText(), "Value");
    Click(window, "m_chkMatchCase");
    EXPECT_EQ(Find<QLabel>(window, "m_lblResult").text(), "Not found");
  });
}

TEST_F(query_form, escape_closes_the_find_bar_first_and_cancels_then) {
  Show(dialog, [](QWidget& window) {
    Key(Qt::Key_F, Qt::ControlModifier);
    Key(Qt::Key_Escape);
    EXPECT_TRUE(window.isVisible());
    EXPECT_FALSE(Find(window, "m_findBar").isVisible());
    EXPECT_EQ(Focus(), "m_sqlView");
    Key(Qt::Key_Escape);
    EXPECT_FALSE(window.isVisible());
  });
}

TEST_F(query_form, the_find_bar_takes_over_the_selection_and_its_buttons_work) {
  dialog.SqlStatement().Text("tag, tag");
  Show(dialog, [](QWidget& window) {
    auto& editor = Editor(window);
    editor.setFocus();
    editor.setSelection(0, 0, 0, 3);
    Key(Qt::Key_F, Qt::ControlModifier);
    EXPECT_EQ(Find<QLineEdit>(window, "m_txtFind").text(), "tag");
    QApplication::processEvents();
    Click(window, "m_btnFindNext");
    EXPECT_EQ(editor.SendScintilla(QsciScintillaBase::SCI_GETSELECTIONSTART), 5);
    Click(window, "m_btnFindPrevious");
    EXPECT_EQ(editor.SendScintilla(QsciScintillaBase::SCI_GETSELECTIONSTART), 0);
    Click(window, "m_btnFindClose");
    EXPECT_FALSE(Find(window, "m_findBar").isVisible());
  });
}

TEST_F(query_form, can_be_shown_again_with_its_texts) {
  Show(dialog, [](QWidget&) {
    Type("Means");
    Key(Qt::Key_Tab);
    Type("SELECT 2");
    Key(Qt::Key_Return, Qt::ControlModifier);
  });
  EXPECT_TRUE(dialog.Accepted());
  dialog.Accepted(false);
  Show(dialog, [](QWidget& window) {
    EXPECT_EQ(Find<QLineEdit>(window, "m_txtName").selectedText(), "Means");
    EXPECT_EQ(Focus(), "m_txtName");
    EXPECT_EQ(Editor(window).text(), "SELECT 2");
  });
  EXPECT_FALSE(dialog.Accepted());
}

TEST_F(query_form, the_editor_takes_what_the_form_grows_by) {
  Show(dialog, [](QWidget& window) {
    const QSize before = Editor(window).size();
    const int iName = Find(window, "m_txtName").height();
    window.resize(window.size() + QSize(100, 80));
    QApplication::processEvents();
    EXPECT_EQ(Editor(window).size(), before + QSize(100, 80));
    EXPECT_EQ(Find(window, "m_txtName").height(), iName);
  });
}

}  // namespace
}  // namespace orvane::console

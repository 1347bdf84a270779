#include "controls/view/value_dialog.h"

#include <gtest/gtest.h>

#include <QBuffer>
#include <QDialogButtonBox>
#include <QImage>
#include <QTableView>
#include <QTest>
#include <random>

#include "platform/conversions.h"
#include "tests/controls/editing_fixture.h"

namespace orvane::controls {
namespace {

using platform::DataType;
using platform::Text;
using platform::Value;

void LookAt(ValueDialog& dialog, int nPage) {
  dialog.findChild<QTabWidget*>()->setCurrentIndex(nPage);
}

platform::Bytes BytesOf(const QByteArray& raw) {
  platform::Bytes bytes;
  for (const char c : raw) bytes.push_back(static_cast<std::byte>(c));
  return bytes;
}

QPlainTextEdit& TypedIn(ValueDialog& dialog) {
  return *dialog.findChild<QPlainTextEdit*>("typed");
}

TEST(value_dialog, what_was_not_touched_is_no_value) {
  auto* dialog = new ValueDialog({Text("a\r\nb"), DataType::WChar, ValueInput()}, "Note", nullptr);
  dialog->setAttribute(Qt::WA_DeleteOnClose, false);
  dialog->accept();
  EXPECT_FALSE(dialog->Taken());
  delete dialog;
}

TEST(value_dialog, takes_what_is_typed_as_soon_as_it_is_shown) {
  for (const DataType type : {DataType::WChar, DataType::Binary}) {
    ValueDialog dialog({Value(), type, ValueInput()}, "Note", nullptr);
    dialog.setAttribute(Qt::WA_DeleteOnClose, false);
    dialog.show();
    dialog.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
    ASSERT_EQ(QApplication::focusWidget(), &TypedIn(dialog));
    QTest::keyClicks(QApplication::focusWidget(), "12");
    EXPECT_EQ(TypedIn(dialog).toPlainText(), "12");
  }
}

TEST(value_dialog, lines_keep_the_breaks_that_they_had) {
  EXPECT_EQ(WithLineBreaksOf("a\r\nb\nc", "a\nX\nc"), "a\r\nX\r\nc");
  EXPECT_EQ(WithLineBreaksOf("a\r\nb\nc", "a\nb\nc\nd"), "a\r\nb\nc\r\nd");
  EXPECT_EQ(WithLineBreaksOf("a\nb\r\nc", "new\na\nb\nc"), "new\na\nb\r\nc");
  EXPECT_EQ(WithLineBreaksOf("", "a\nb"), "a\nb");
}

TEST(value_dialog, a_text_that_did_not_change_comes_back_as_it_was) {
  std::mt19937 random(5);
  const std::vector<Text> pieces = {"a",      "b",      "\n",     "\r\n", "\r",
                                    "\u2029", "\u2028", "\u00a0", " "};
  for (int n = 0; n < 300; ++n) {
    Text sText;
    for (unsigned i = random() % 8; i > 0; --i) sText += pieces[random() % pieces.size()];
    QPlainTextEdit edit;
    edit.setPlainText(QString::fromStdString(sText));
    EXPECT_EQ(WithLineBreaksOf(sText, edit.document()->toRawText()), sText) << n;
  }
}

TEST(value_dialog, characters_that_mark_frames_to_the_toolkit_stay_what_they_are) {
  const Text sText = "a\uFDD0b\uFDD1\uFDD0c\uF8FF\n\uFDD1";
  ValueDialog dialog({sText, DataType::WChar, ValueInput()}, "Note", nullptr);
  dialog.setAttribute(Qt::WA_DeleteOnClose, false);
  EXPECT_EQ(TypedIn(dialog).document()->blockCount(), 2);
  TypedIn(dialog).textCursor().insertText("X");
  dialog.accept();
  ASSERT_TRUE(dialog.Taken());
  EXPECT_EQ(*dialog.Taken(), Value("X" + sText));
}

TEST(value_dialog, of_many_bytes_no_more_is_laid_out_than_is_looked_at) {
  ValueDialog dialog({BytesOf(QByteArray(2'000'000, 'x')), DataType::Binary, ValueInput()}, "Raw",
                     nullptr);
  dialog.setAttribute(Qt::WA_DeleteOnClose, false);
  const auto* text = dialog.findChild<QPlainTextEdit*>("asText");
  EXPECT_EQ(TypedIn(dialog).toPlainText(), "");
  EXPECT_EQ(text->document()->characterCount(), 1) << "nobody looks at it yet";
  LookAt(dialog, 1);
  EXPECT_EQ(text->toPlainText().size(), 250'000);
  EXPECT_EQ(dialog.findChild<QTabWidget*>()->tabToolTip(1), "The first 250,000 bytes as text");
  EXPECT_EQ(dialog.findChild<QLabel*>("length")->text(), "2,000,000 bytes");
}

TEST(value_dialog, a_picture_of_many_pixels_is_not_read) {
  QByteArray png;
  QBuffer buffer(&png);
  buffer.open(QIODevice::WriteOnly);
  QImage(6'000, 6'000, QImage::Format_Mono).save(&buffer, "PNG");
  ValueDialog dialog({BytesOf(png), DataType::Binary, ValueInput()}, "Picture", nullptr);
  dialog.setAttribute(Qt::WA_DeleteOnClose, false);
  LookAt(dialog, 2);
  EXPECT_EQ(dialog.findChild<QLabel*>("asPicture")->text(),
            "This picture is too large to be shown here.");
  EXPECT_TRUE(dialog.findChild<QLabel*>("asPicture")->pixmap().isNull());
}

TEST(value_dialog, bytes_are_shown_as_digits_as_text_and_as_a_picture) {
  QByteArray png;
  QBuffer buffer(&png);
  buffer.open(QIODevice::WriteOnly);
  QImage image(3, 2, QImage::Format_RGB32);
  image.fill(Qt::red);
  image.save(&buffer, "PNG");
  const platform::Bytes bytes = BytesOf(png);
  ValueDialog dialog({bytes, DataType::Binary, ValueInput()}, "Picture", nullptr);
  dialog.setAttribute(Qt::WA_DeleteOnClose, false);
  EXPECT_TRUE(TypedIn(dialog).toPlainText().startsWith("89 50 4E 47"));
  const auto length = [&] { return dialog.findChild<QLabel*>("length")->text().toStdString(); };
  EXPECT_EQ(length(), std::to_string(bytes.size()) + " bytes");
  LookAt(dialog, 2);
  EXPECT_EQ(dialog.findChild<QLabel*>("asPicture")->pixmap().size(), QSize(3, 2));
  LookAt(dialog, 1);
  EXPECT_TRUE(dialog.findChild<QPlainTextEdit*>("asText")->toPlainText().contains("PNG"));
  TypedIn(dialog).selectAll();
  QTest::keyClicks(&TypedIn(dialog), "48 6");
  dialog.accept();
  EXPECT_FALSE(dialog.Taken());
  EXPECT_FALSE(dialog.findChild<QLabel*>("sentence")->text().isEmpty());
  QTest::keyClicks(&TypedIn(dialog), "9");
  EXPECT_EQ(dialog.findChild<QPlainTextEdit*>("asText")->toPlainText(), "Hi");
  EXPECT_EQ(length(), "2 bytes");
  dialog.accept();
  ASSERT_TRUE(dialog.Taken());
  EXPECT_EQ(platform::ToText(*dialog.Taken()), "0x4869");
}

TEST(value_dialog, a_text_that_is_too_long_to_be_typed_can_be_looked_at) {
  const Text sLong = Text(249'999, 'a') + "\u20ac" + Text(9, 'b');
  ValueDialog dialog({sLong, DataType::WChar, ValueInput()}, "Note", nullptr);
  dialog.setAttribute(Qt::WA_DeleteOnClose, false);
  EXPECT_TRUE(TypedIn(dialog).isReadOnly());
  EXPECT_TRUE(TypedIn(dialog).toPlainText().endsWith(QString(u'a') + QChar(0x20ac)));
  EXPECT_EQ(TypedIn(dialog).toPlainText().size(), 250'000);
  const auto* sentence = dialog.findChild<QLabel*>("sentence");
  EXPECT_TRUE(sentence->isVisibleTo(&dialog));
  EXPECT_EQ(sentence->text(),
            "This text is too long to be typed here, and only its beginning is shown. Copy the "
            "cell to have it whole; change it by a statement.");
  dialog.accept();
  EXPECT_FALSE(dialog.Taken()) << "what is not seen is not cut off";
  ValueDialog shorter({Text(250'000, 'a'), DataType::WChar, ValueInput()}, "Note", nullptr);
  shorter.setAttribute(Qt::WA_DeleteOnClose, false);
  EXPECT_FALSE(TypedIn(shorter).isReadOnly());
  EXPECT_FALSE(shorter.findChild<QLabel*>("sentence")->isVisibleTo(&shorter));
}

class value_dialog_in_grid : public EditingFixture {
 protected:
  void OpenLong() {
    m_server->Run("CREATE TABLE P..Long (Id INTEGER PRIMARY KEY, Note TEXT, Picture BLOB)");
    m_server->Run("INSERT INTO P..Long VALUES (1, '" + Text(10'001, 'n') + "', x'" +
                  Text(10'002, '0') + "'), (2, '" + Text(10'000, 'n') + "', x'" +
                  Text(10'000, '0') + "')");
    Open("Long");
  }
  /// The one window there is, closed with what was typed into it.
  void TypeInWindow(const char* sText) {
    const auto dialogs = Window()->findChildren<ValueDialog*>();
    ASSERT_EQ(dialogs.size(), 1);
    EXPECT_EQ(Editor(), nullptr);
    TypedIn(*dialogs[0]).selectAll();
    QTest::keyClicks(&TypedIn(*dialogs[0]), sText);
    dialogs[0]->accept();
    Settle();
    ASSERT_EQ(Window()->findChild<ValueDialog*>(), nullptr);
  }
};

TEST_F(value_dialog_in_grid, what_is_too_long_for_a_line_is_typed_in_a_window) {
  OpenLong();
  for (const int nColumn : {1, 2}) {
    for (const int nKey : {int{Qt::Key_F2}, int{Qt::Key_Return}, int{Qt::Key_5}}) {
      GoTo(0, nColumn);
      Press(nKey);
      ASSERT_NE(Window()->findChild<ValueDialog*>(), nullptr) << nColumn << " " << nKey;
      Window()->findChild<ValueDialog*>()->reject();
      Settle();
    }
    GoTo(1, nColumn);
    Press(Qt::Key_F2);
    EXPECT_EQ(Window()->findChild<ValueDialog*>(), nullptr);
    ASSERT_NE(Editor(), nullptr) << "what is not longer than that is typed in its cell";
    EXPECT_GE(Editor()->text().size(), 10'000);
    Press(Qt::Key_Escape);
  }
  GoTo(0, 1);
  const QPoint point = Rows().visualRect(Rows().currentIndex()).center();
  QTest::mouseClick(Rows().viewport(), Qt::LeftButton, {}, point);
  QTest::mouseDClick(Rows().viewport(), Qt::LeftButton, {}, point);
  Settle();
  TypeInWindow("short");
  Press(Qt::Key_F2);
  EXPECT_NE(Editor(), nullptr);
  Press(Qt::Key_Escape);
  Press(Qt::Key_Return, Qt::ControlModifier);
  EXPECT_EQ(Stored("SELECT Note FROM P..Long WHERE Id = 1"), "short");
}

TEST_F(value_dialog_in_grid, the_form_of_a_row_opens_the_window_for_what_is_too_long_too) {
  OpenLong();
  GoTo(0, 2);
  QTest::keyClick(&Rows(), Qt::Key_F4);
  Settle();
  auto& lines = *Window()->findChild<QTableView*>("formLines");
  lines.setFocus();
  lines.setCurrentIndex(lines.model()->index(2, 1));
  for (const auto key : {Qt::Key_F2, Qt::Key_Return}) {
    QTest::keyClick(&lines, key);
    Settle();
    TypeInWindow(key == Qt::Key_F2 ? "41" : "42");
    EXPECT_EQ(Cell(0, 2), key == Qt::Key_F2 ? "0x41" : "0x42");
    Press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_TRUE(QString::fromStdString(Cell(0, 2)).startsWith("0x0000"));
  }
}

TEST_F(value_dialog_in_grid, a_text_of_several_lines_is_typed_in_a_window) {
  m_server->Run("CREATE TABLE P..Notes (Id INTEGER PRIMARY KEY, Note TEXT)");
  m_server->Run("INSERT INTO P..Notes VALUES (1, 'one'), (2, 'two')");
  Open("Notes");
  GoTo(0, 1);
  Press(Qt::Key_Return, Qt::AltModifier);
  auto* dialog = Window()->findChild<ValueDialog*>();
  ASSERT_NE(dialog, nullptr);
  TypedIn(*dialog).moveCursor(QTextCursor::End);
  QTest::keyClick(&TypedIn(*dialog), Qt::Key_Return);
  QTest::keyClicks(&TypedIn(*dialog), "more");
  dialog->accept();
  Settle();
  GoTo(1, 1);
  Settle();
  EXPECT_EQ(Stored("SELECT Note = 'one' || char(10) || 'more' FROM P..Notes WHERE Id = 1"), "1");
}

TEST_F(value_dialog_in_grid, what_cannot_be_edited_can_be_looked_at) {
  m_server->Run("CREATE TABLE P..Keyless (Picture BLOB, Note TEXT)");
  m_server->Run("INSERT INTO P..Keyless VALUES (x'" + Text(4096, '0') + "', 'a')");
  Open("Keyless");
  for (const int nColumn : {0, 1}) {
    GoTo(0, nColumn);
    Press(Qt::Key_Return, Qt::AltModifier);
    auto* dialog = Window()->findChild<ValueDialog*>();
    ASSERT_NE(dialog, nullptr);
    EXPECT_TRUE(TypedIn(*dialog).isReadOnly());
    EXPECT_EQ(TypedIn(*dialog).toPlainText().left(4), nColumn == 0 ? "00 0" : "a");
    if (nColumn == 0) {
      EXPECT_EQ(dialog->findChild<QLabel*>("length")->text(), "2,048 bytes");
    }
    auto* buttons = dialog->findChild<QDialogButtonBox*>();
    EXPECT_EQ(buttons->standardButtons(), QDialogButtonBox::Close);
    QTest::mouseClick(buttons->button(QDialogButtonBox::Close), Qt::LeftButton);
    Settle();
    EXPECT_EQ(Window()->findChild<ValueDialog*>(), nullptr);
  }
}

TEST_F(value_dialog_in_grid, an_empty_table_offers_its_first_row) {
  m_server->Run("CREATE TABLE P..Notes (Id INTEGER PRIMARY KEY, Note TEXT)");
  Open("Notes");
  EXPECT_EQ(Label("emptyTitle"), "No rows");
  EXPECT_FALSE(m_editor->CanMove());
  auto* notice = Window()->findChild<QPushButton*>("emptyButton");
  for (auto* button : Window()->findChildren<QPushButton*>()) {
    if (button->text() == "&Add a Row") notice = button;
  }
  ASSERT_NE(notice, nullptr);
  notice->click();
  Settle();
  GoTo(0, 1);
  Type("first");
  Press(Qt::Key_Return);
  EXPECT_EQ(Stored("SELECT Note FROM P..Notes"), "first");
}

}  // namespace
}  // namespace orvane::controls

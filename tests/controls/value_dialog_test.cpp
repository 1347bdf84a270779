#include "controls/view/value_dialog.h"

#include <gtest/gtest.h>

#include <QBuffer>
#include <QDialogButtonBox>
#include <QImage>
#include <QTest>
#include <random>

#include "platform/conversions.h"
#include "tests/controls/editing_fixture.h"

namespace orvane::controls {
namespace {

using platform::DataType;
using platform::Text;
using platform::Value;

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

TEST(value_dialog, bytes_are_shown_as_digits_as_text_and_as_a_picture) {
  QByteArray png;
  QBuffer buffer(&png);
  buffer.open(QIODevice::WriteOnly);
  QImage image(3, 2, QImage::Format_RGB32);
  image.fill(Qt::red);
  image.save(&buffer, "PNG");
  platform::Bytes bytes;
  for (const char c : png) bytes.push_back(static_cast<std::byte>(c));
  ValueDialog dialog({bytes, DataType::Binary, ValueInput()}, "Picture", nullptr);
  dialog.setAttribute(Qt::WA_DeleteOnClose, false);
  EXPECT_TRUE(TypedIn(dialog).toPlainText().startsWith("89 50 4E 47"));
  const auto length = [&] { return dialog.findChild<QLabel*>("length")->text().toStdString(); };
  EXPECT_EQ(length(), std::to_string(bytes.size()) + " bytes");
  EXPECT_EQ(dialog.findChild<QLabel*>("asPicture")->pixmap().size(), QSize(3, 2));
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

class value_dialog_in_grid : public EditingFixture {};

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

#include "tests/console/scenarios/shown_qt_form.h"

#include <QAbstractButton>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QStyle>
#include <QStyleOptionButton>
#include <QTest>
#include <QWindow>
#include <algorithm>
#include <stdexcept>

#include "console/forms/column_list.h"
#include "console/forms/sql_editor.h"
#include "console/forms/sql_view.h"

namespace orvane::console {

using platform::Boolean;
using platform::Text;

void ClickAt(QWidget& widget, const QPoint& at, Qt::MouseButton button) {
  auto* window = widget.window();
  QTest::mouseClick(window->windowHandle(), button, {}, widget.mapTo(window, at));
}

template <class W>
W& ShownQtForm::Find(const Text& sName) const {
  for (auto* widget : m_dialog.findChildren<QWidget*>(QString::fromStdString(sName))) {
    // Not every kind of widget has a meta-object of its own.
    if (auto* found = dynamic_cast<W*>(widget)) return *found;
  }
  throw std::runtime_error("the form has no such control as " + sName);
}

Text ShownQtForm::Title() const {
  return m_dialog.windowTitle().toStdString();
}

Boolean ShownQtForm::Enabled(const Text& sControl) const {
  return Find<QWidget>(sControl).isEnabled();
}

Text ShownQtForm::Label(const Text& sControl) const {
  auto& widget = Find<QWidget>(sControl);
  if (const auto* label = qobject_cast<QLabel*>(&widget)) return label->text().toStdString();
  return Find<QAbstractButton>(sControl).text().toStdString();
}

Text ShownQtForm::BoxText(const Text& sTextBox) const {
  auto& widget = Find<QWidget>(sTextBox);
  if (const auto* line = qobject_cast<QLineEdit*>(&widget)) return line->text().toStdString();
  if (const auto* memo = qobject_cast<QPlainTextEdit*>(&widget)) {
    return memo->toPlainText().toStdString();
  }
  return Find<SqlEditor>(sTextBox).View().text().toStdString();
}

void ShownQtForm::Type(const Text& sTextBox, const Text& sText) {
  auto& box = Find<QWidget>(sTextBox);
  ClickAt(box, {box.width() / 2, std::min(box.height() / 2, 12)});
  auto* focus = QApplication::focusWidget();
  if (!focus || (focus != &box && !box.isAncestorOf(focus))) return;  // a disabled box takes none
  auto* window = m_dialog.windowHandle();
  QTest::keyClick(window, Qt::Key_A, Qt::ControlModifier);
  if (sText.empty()) QTest::keyClick(window, Qt::Key_Delete);
  for (const char c : sText) QTest::keyClick(window, c);
}

Boolean ShownQtForm::Checked(const Text& sCheckBox) const {
  return Find<QCheckBox>(sCheckBox).isChecked();
}

void ShownQtForm::Click(const Text& sButtonOrCheckBox) {
  auto& button = Find<QAbstractButton>(sButtonOrCheckBox);
  // Of a check box only the mark and its text take the mouse.
  ClickAt(button, qobject_cast<QCheckBox*>(&button) ? QPoint(8, button.height() / 2)
                                                    : button.rect().center());
}

std::vector<Text> ShownQtForm::Entries(const Text& sList) const {
  std::vector<Text> entries;
  auto& widget = Find<QWidget>(sList);
  if (const auto* list = dynamic_cast<ColumnList*>(&widget)) {
    for (int i = 0; i < list->Names().rowCount(); ++i) entries.push_back(list->Names().At(i));
    return entries;
  }
  const auto& combo = Find<QComboBox>(sList);
  for (int i = 0; i < combo.count(); ++i) entries.push_back(combo.itemText(i).toStdString());
  return entries;
}

Text ShownQtForm::Chosen(const Text& sDropDownList) const {
  return Find<QComboBox>(sDropDownList).currentText().toStdString();
}

void ShownQtForm::Choose(const Text& sList, const Text& sEntry) {
  const auto entries = Entries(sList);
  const auto at = std::find(entries.begin(), entries.end(), sEntry);
  if (at == entries.end()) throw std::runtime_error(sList + " has no entry " + sEntry);
  const auto iRow = static_cast<int>(at - entries.begin());
  auto& widget = Find<QWidget>(sList);
  if (auto* list = dynamic_cast<ColumnList*>(&widget)) {
    const auto index = list->model()->index(iRow, 0);
    list->scrollTo(index);
    ClickAt(*list->viewport(), list->visualRect(index).center());
    return;
  }
  widget.setFocus(Qt::TabFocusReason);
  if (!widget.hasFocus()) return;  // a disabled list takes none
  auto* window = m_dialog.windowHandle();
  QTest::keyClick(window, Qt::Key_Home);
  for (int i = 0; i < iRow; ++i) QTest::keyClick(window, Qt::Key_Down);
}

}  // namespace orvane::console

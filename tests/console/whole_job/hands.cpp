#include "tests/console/whole_job/hands.h"

#include <Qsci/qsciscintilla.h>

#include <QAbstractItemView>
#include <QComboBox>
#include <QLineEdit>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QToolBar>
#include <QWindow>

namespace orvane::console {

void Hands::PressIn(QDialog* dialog, const char* sButton) {
  auto* button = m_stage.Ask([&] { return dialog->findChild<QAbstractButton*>(sButton); });
  if (!button) throw Stopped(Text("The dialog has no button ") + sButton + ".");
  Press(button);
}

void Hands::Answer(const char* sTitle, const Text& sText, const char* sButton) {
  auto* box = qobject_cast<QMessageBox*>(m_stage.WaitForDialog(sTitle));
  if (!box) throw Stopped(Text(sTitle) + " is no message box.");
  const auto sShown = m_stage.Ask([&] { return box->text().toStdString(); });
  if (sShown != sText) throw Stopped("The box says: " + sShown);
  auto* button = m_stage.Ask([&] {
    QAbstractButton* found = nullptr;
    for (auto* one : box->buttons()) {
      if (one->text() == sButton) found = one;
    }
    return found;
  });
  if (!button) throw Stopped(Text("The box has no button ") + sButton + ".");
  Press(button);
}

QWidget* Hands::WaitForPopup() {
  QWidget* popup = nullptr;
  m_stage.WaitFor("a menu or list is open", [&] {
    popup = QApplication::activePopupWidget();
    return popup && popup->windowHandle() && popup->windowHandle()->isExposed();
  });
  return popup;
}

void Hands::Type(const Text& sText) {
  for (const char c : sText) m_stage.Input().Type(c);
}

Hands::Text Hands::TextOf(QWidget* box) {
  if (auto* line = qobject_cast<QLineEdit*>(box)) return line->text().toStdString();
  if (auto* combo = qobject_cast<QComboBox*>(box)) return combo->currentText().toStdString();
  if (auto* memo = qobject_cast<QPlainTextEdit*>(box)) return memo->toPlainText().toStdString();
  if (auto* sql = qobject_cast<QsciScintilla*>(box)) return sql->text().toStdString();
  return {};
}

void Hands::Clicked(QAbstractButton* button, const std::function<void()>& act) {
  m_stage.WaitFor("the button can be pressed", [=] { return button->isEnabled(); });
  auto clicked = std::make_shared<bool>(false);
  m_stage.Ask([&] {
    QObject::connect(
        button, &QAbstractButton::clicked, qApp, [clicked] { *clicked = true; },
        Qt::SingleShotConnection);
  });
  m_stage.WaitFor(
      "the button was pressed", [clicked] { return *clicked; }, act);
}

bool Hands::IsEntry(const QAction& action, const char* sEntry) {
  const QString sWords = action.text().section(u'\t', 0, 0).remove(u'&');
  return action.objectName() == sEntry || sWords == QString::fromUtf8(sEntry);
}

QAbstractButton* Hands::ToolbarButtonOf(const char* sKey) {
  const auto& toolbar = *m_stage.Window().findChild<QToolBar*>("snapInToolbar");
  auto* action = toolbar.findChild<QAction*>(sKey);
  auto* button = action ? qobject_cast<QAbstractButton*>(toolbar.widgetForAction(action)) : nullptr;
  if (!button) throw Stopped(Text("The toolbar has no button ") + sKey + ".");
  return button;
}

void Hands::ToolbarButton(const char* sKey) {
  PressToolbar(sKey);
  m_stage.WaitUntilIdle();
}

int Hands::RowOf(QAbstractItemView* list, const Text& sText) {
  const int iRow = m_stage.Ask([&] {
    const auto* model = list->model();
    for (int i = 0; i < model->rowCount(); ++i) {
      if (model->index(i, 0).data().toString().toStdString() == sText) return i;
    }
    return -1;
  });
  if (iRow < 0) throw Stopped("The list has no row " + sText + ".");
  return iRow;
}

}  // namespace orvane::console

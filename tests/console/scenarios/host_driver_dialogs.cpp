// How the driver of the scenarios answers dialogs.
#include <gtest/gtest.h>

#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QTest>
#include <QWindow>

#include "tests/console/scenarios/host_driver.h"
#include "tests/console/scenarios/shown_qt_form.h"

namespace orvane::console {

using platform::Text;

void HostDriver::AnswerDialog() {
  auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
  if (!dialog || m_bAnswering) return;
  const QScopedValueRollback answering(m_bAnswering, true);
  EXPECT_TRUE(QTest::qWaitForWindowActive(dialog));
  if (auto* box = qobject_cast<QMessageBox*>(dialog)) {
    AnswerMessageBox(*box);
  } else if (dialog->objectName() == "logonDialog") {
    AnswerLogonDialog(*dialog);
  } else {
    AnswerFormDialog(*dialog);
  }
}

void HostDriver::AnswerMessageBox(QMessageBox& box) {
  if (box.objectName() == "unsavedWorkBox") {
    // The console's own question; a case that opens another document is done with the last one.
    ClickAt(*box.button(QMessageBox::Discard), box.button(QMessageBox::Discard)->rect().center());
    return;
  }
  if (box.objectName() == "doubtfulDocumentBox") {
    // The case has changed its document itself.
    for (auto* button : box.buttons()) {
      if (button->text() == "&Open") ClickAt(*button, button->rect().center());
    }
    return;
  }
  if (box.objectName() == "unsentRowsBox") return AnswerUnsentRows(box);
  const bool bYesNo = box.standardButtons().testFlag(QMessageBox::Yes);
  m_boxes.push_back({box.text().toStdString(), box.windowTitle().toStdString(),
                     bYesNo ? platform::MsgBoxButtons::YesNo : platform::MsgBoxButtons::OkOnly});
  auto button = bYesNo ? QMessageBox::Yes : QMessageBox::Ok;
  if (bYesNo && !m_boxAnswers.empty()) {
    if (m_boxAnswers.front() == scenarios::BoxAnswer::No) button = QMessageBox::No;
    m_boxAnswers.pop_front();
  }
  ClickAt(*box.button(button), box.button(button)->rect().center());
}

void HostDriver::AnswerUnsentRows(QMessageBox& box) {
  m_boxes.push_back(
      {box.text().toStdString(), box.windowTitle().toStdString(), platform::MsgBoxButtons::YesNo});
  if (m_boxAnswers.empty()) ADD_FAILURE() << "an unexpected question: " << box.text().toStdString();
  const bool bGiveUp = !m_boxAnswers.empty() && m_boxAnswers.front() == scenarios::BoxAnswer::Yes;
  if (!m_boxAnswers.empty()) m_boxAnswers.pop_front();
  if (!bGiveUp) {
    QTest::keyClick(&box, Qt::Key_Escape);
    return;
  }
  for (auto* button : box.buttons()) {
    if (button->text() == "&Discard Changes") ClickAt(*button, button->rect().center());
  }
}

void HostDriver::AnswerLogonDialog(QDialog& dialog) {
  ++m_lLogons;
  auto* server = dialog.findChild<QComboBox*>("m_cmbServer");
  if (server->isEnabled() && !m_sChosenServer.empty()) {
    ClickAt(*server, {12, server->height() / 2});
    QTest::keyClick(dialog.windowHandle(), Qt::Key_A, Qt::ControlModifier);
    for (const char c : m_sChosenServer) QTest::keyClick(dialog.windowHandle(), c);
  }
  auto* const password = dialog.findChild<QLineEdit*>("m_txtPassword");
  for (const char c : m_sPassword) QTest::keyClick(password, c);
  const bool bOk = m_logonAnswer == scenarios::LogonAnswer::Ok;
  auto* button = dialog.findChild<QPushButton*>(bOk ? "m_btnOk" : "m_btnCancel");
  ClickAt(*button, button->rect().center());
}

void HostDriver::AnswerFormDialog(QDialog& dialog) {
  const Text sTitle = dialog.windowTitle().toStdString();
  if (m_formUsers.empty()) {
    ADD_FAILURE() << "an unexpected dialog: " << sTitle;
    dialog.close();
    return;
  }
  const auto user = std::move(m_formUsers.front());
  m_formUsers.pop_front();
  ShownQtForm form(dialog);
  try {
    user(form);
  } catch (const std::exception& e) {
    ADD_FAILURE() << sTitle << ": " << e.what();
  }
  EXPECT_FALSE(dialog.isVisible()) << sTitle << " was left open";
  dialog.close();
}

}  // namespace orvane::console

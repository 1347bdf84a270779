#include "console/dialogs/message_boxes.h"

#include <QApplication>

#include "console/look/pointer_rest.h"
#include "console/look/program_title.h"
#include "console/look/window_in_front.h"
#include "widgets/message_box.h"

namespace orvane::console {

using platform::Long;
using platform::MsgBoxButtons;
using platform::MsgBoxIcon;
using platform::MsgBoxResult;
using platform::Text;

MessageBoxes::~MessageBoxes() {
  if (m_lPointer != platform::kMousePointerDefault && qApp) QApplication::restoreOverrideCursor();
}

MsgBoxResult MessageBoxes::MsgBox(const Text& sText, MsgBoxButtons buttons, MsgBoxIcon icon,
                                  const Text& sTitle) {
  const bool bYesNo = buttons == MsgBoxButtons::YesNo;
  if (m_iSuppressions > 0) return bYesNo ? MsgBoxResult::Yes : MsgBoxResult::Ok;
  const PointerRest rest;
  widgets::MessageBox box(WindowInFront());
  box.setObjectName("messageBox");
  box.setWindowTitle(sTitle.empty() ? ProgramTitle() : QString::fromStdString(sTitle));
  box.setText(QString::fromStdString(sText));
  box.setIcon(icon == MsgBoxIcon::Critical ? QMessageBox::Critical : QMessageBox::NoIcon);
  box.setStandardButtons(bYesNo ? QMessageBox::Yes | QMessageBox::No
                                : QMessageBox::StandardButtons(QMessageBox::Ok));
  box.setDefaultButton(bYesNo ? QMessageBox::Yes : QMessageBox::Ok);
  box.setEscapeButton(bYesNo ? QMessageBox::No : QMessageBox::Ok);
  const int iButton = box.exec();
  if (!bYesNo) return MsgBoxResult::Ok;
  return iButton == QMessageBox::Yes ? MsgBoxResult::Yes : MsgBoxResult::No;
}

void MessageBoxes::MousePointer(Long lPointer) {
  const bool bWasSet = m_lPointer != platform::kMousePointerDefault;
  m_lPointer = lPointer;
  if (lPointer == platform::kMousePointerDefault) {
    if (bWasSet) QApplication::restoreOverrideCursor();
    return;
  }
  const QCursor cursor(lPointer == platform::kMousePointerHourglass ? Qt::WaitCursor
                                                                    : Qt::ArrowCursor);
  if (bWasSet) {
    QApplication::changeOverrideCursor(cursor);
  } else {
    QApplication::setOverrideCursor(cursor);
  }
}

void MessageBoxes::Beep() {
  QApplication::beep();
}

void MessageBoxes::DoEvents() {
  QApplication::processEvents();
}

void MessageBoxes::Note(const platform::Failure& failure) noexcept {
  if (m_log && m_iSuppressions == 0) m_log->Note(failure);
}

MessageBoxSuppression::MessageBoxSuppression(MessageBoxes& boxes) : m_boxes(boxes) {
  ++boxes.m_iSuppressions;
}

MessageBoxSuppression::~MessageBoxSuppression() {
  --m_boxes.m_iSuppressions;
}

}  // namespace orvane::console

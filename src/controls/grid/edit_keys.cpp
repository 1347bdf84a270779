#include "controls/grid/edit_keys.h"

#include <QKeyEvent>
#include <utility>

#include "controls/grid/grid_window.h"
#include "controls/view/status_strip.h"

namespace orvane::controls {

namespace {

bool WouldType(const QKeyEvent& event) {
  const auto modifiers = event.modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier);
  return modifiers == Qt::NoModifier && !event.text().isEmpty() && event.text().at(0).isPrint();
}

}  // namespace

EditKeys::EditKeys(GridWindow& window, const EditSession& session, Actions actions, QObject* parent)
    : QObject(parent), m_window(window), m_session(session), m_actions(std::move(actions)) {
  RowView& rows = m_window.Rows();
  rows.installEventFilter(this);
  rows.viewport()->installEventFilter(this);
}

bool EditKeys::eventFilter(QObject* watched, QEvent* event) {
  const bool bKey = event->type() == QEvent::KeyPress;
  // Events also come while the window is taken down and has no rows any more.
  if (!bKey && event->type() != QEvent::MouseButtonDblClick) {
    return QObject::eventFilter(watched, event);
  }
  RowView& rows = m_window.Rows();
  if (bKey && watched == &rows && Press(*static_cast<QKeyEvent*>(event))) return true;
  if (!bKey && watched == rows.viewport()) RefuseEdit();
  return QObject::eventFilter(watched, event);
}

bool EditKeys::Press(const QKeyEvent& key) {
  const bool bEnter = key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter;
  const auto modifiers = key.modifiers() & ~Qt::KeypadModifier;
  if (bEnter && modifiers == Qt::NoModifier) {
    if (!RefuseEdit()) m_actions.start();
    return true;
  }
  if (key.key() == Qt::Key_Z && modifiers == (Qt::ControlModifier | Qt::ShiftModifier)) {
    m_actions.redo();
    return true;
  }
  if ((key.key() == Qt::Key_F2 || WouldType(key)) && RefuseEdit()) return true;
  return key.key() == Qt::Key_Delete && modifiers == Qt::NoModifier && RefuseDelete();
}

bool EditKeys::RefuseEdit() {
  const QModelIndex current = m_window.Rows().currentIndex();
  const QString sWhyNot =
      current.isValid() ? m_session.WhyNotEdited(m_window.Rows().Model().RecordRow(current.row()),
                                                 current.column())
                        : m_session.WhyNotEdited(current.column());
  if (sWhyNot.isEmpty()) return false;
  m_window.Status().Remark(sWhyNot);
  return true;
}

bool EditKeys::RefuseDelete() {
  if (!m_session.Recordset()) return false;
  if (!m_session.Updatability().bDelete) {
    m_window.Status().Remark(m_session.Updatability().sWhyNot);
  } else if (!m_window.Rows().RowsSelected()) {
    m_window.Status().Remark(
        "No row is selected to be deleted; click its number, or press Shift+Space, first.");
  } else {
    return false;
  }
  return true;
}

}  // namespace orvane::controls

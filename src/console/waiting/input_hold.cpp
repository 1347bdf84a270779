#include "console/waiting/input_hold.h"

#include <QApplication>
#include <QKeyEvent>
#include <QWidget>
#include <algorithm>

#include "platform/long_operation.h"

namespace orvane::console {

namespace {

bool IsInput(const QEvent& event) {
  switch (event.type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
    case QEvent::Wheel:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::ShortcutOverride:
    case QEvent::InputMethod:
    case QEvent::ContextMenu:
    case QEvent::DragEnter:
    case QEvent::DragMove:
    case QEvent::Drop:
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
    case QEvent::TabletPress:
    case QEvent::TabletMove:
    case QEvent::TabletRelease:
    case QEvent::NativeGesture:
    case QEvent::Close:
      return true;
    default:
      return false;
  }
}

bool IsEscape(const QEvent& event) {
  return event.type() == QEvent::KeyPress &&
         static_cast<const QKeyEvent&>(event).key() == Qt::Key_Escape;
}

bool HasOwnInput(const QObject* object) {
  for (; object; object = object->parent()) {
    if (object->property(platform::LongOperation::kOwnInput).toBool()) return true;
  }
  return false;
}

}  // namespace

InputHold::InputHold() = default;

void InputHold::Push(Run& run) {
  if (m_runs.empty()) QCoreApplication::instance()->installEventFilter(this);
  m_runs.push_back(&run);
}

void InputHold::Pop(Run& run) {
  std::erase(m_runs, &run);
  if (m_runs.empty()) QCoreApplication::instance()->removeEventFilter(this);
}

bool InputHold::eventFilter(QObject* watched, QEvent* event) {
  const bool bShortcut = event->type() == QEvent::Shortcut;
  if (!bShortcut && !IsInput(*event)) return false;
  // Windows of the platform hand their input on to widgets, which is where it is held back; a
  // shortcut goes to an action.
  if (!bShortcut && !watched->isWidgetType()) return false;
  // A run that is done holds nothing back: a box that opened meanwhile must be answered before
  // the run can return.
  const auto found =
      std::find_if(m_runs.rbegin(), m_runs.rend(), [](const Run* r) { return !r->isDone(); });
  if (found == m_runs.rend()) return false;
  Run& run = **found;

  const bool bShowing = run.bShown && HasOwnInput(watched);
  if (IsEscape(*event)) {
    // It closes a menu of the window that shows the run before it cancels the run.
    if (bShowing && QApplication::activePopupWidget()) return false;
    if (run.panel || run.bShown) run.cancel();
    return true;
  }
  const bool bOwn = run.panel && run.panel->Contains(watched);
  if (event->type() == QEvent::Close) {
    const auto& widget = *static_cast<QWidget*>(watched);
    if (!widget.isWindow()) return false;
    if (bShowing && widget.windowType() == Qt::Popup) return false;
    if (bOwn) run.cancel();
    event->ignore();
    return true;
  }
  if (bOwn || bShowing) return false;
  // An accepted override makes a shortcut a plain key, which is then held back.
  event->setAccepted(event->type() == QEvent::ShortcutOverride);
  return true;
}

}  // namespace orvane::console

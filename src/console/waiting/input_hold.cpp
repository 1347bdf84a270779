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

/// The object, or what it lies in, that has the property; null for none.
QObject* WithProperty(QObject* object, const char* sProperty) {
  while (object && !object->property(sProperty).toBool()) object = object->parent();
  return object;
}

bool HasOwnInput(QObject* object) {
  return WithProperty(object, platform::LongOperation::kOwnInput) != nullptr;
}

bool IsTyped(const QEvent& event) {
  return event.type() == QEvent::KeyPress || event.type() == QEvent::KeyRelease ||
         event.type() == QEvent::InputMethod;
}

bool IsClick(const QEvent& event) {
  return event.type() == QEvent::MouseButtonPress || event.type() == QEvent::MouseButtonDblClick ||
         event.type() == QEvent::TouchBegin || event.type() == QEvent::TabletPress;
}

}  // namespace

InputHold::InputHold() : m_given([this] { return m_runs.empty(); }, [this] { Uninstall(); }) {}

void InputHold::Push(Run& run) {
  if (IsIdle()) QCoreApplication::instance()->installEventFilter(this);
  m_runs.push_back(&run);
}

void InputHold::Pop(Run& run) {
  std::erase(m_runs, &run);
  if (!m_runs.empty()) return;
  m_bClicked = false;
  m_given.DoSoon();
  Uninstall();
  // Whoever waited for the run has to do with it first.
  if (!m_keys.empty()) {
    QMetaObject::invokeMethod(
        this, [this] { TypeKept(); }, Qt::QueuedConnection);
  }
}

void InputHold::Uninstall() {
  if (IsIdle()) QCoreApplication::instance()->removeEventFilter(this);
}

bool InputHold::Keep(const Run& run, QObject& watched, const QEvent& event) {
  if (IsClick(event)) m_bClicked = true;
  if (!IsTyped(event) || m_bClicked || run.panel || run.bShown) return false;
  auto* keeper =
      qobject_cast<QWidget*>(WithProperty(&watched, platform::LongOperation::kKeepsKeys));
  if (!keeper) return false;
  m_keys.push_back({keeper, std::unique_ptr<QEvent>(event.clone())});
  return true;
}

void InputHold::TypeKept() {
  // In the midst of another run, its end calls again.
  if (m_bTyping || !m_runs.empty()) return;
  m_bTyping = true;
  while (!m_keys.empty() && m_runs.empty()) {
    const Key key = std::move(m_keys.front());
    m_keys.pop_front();
    QWidget* focus = QApplication::focusWidget();
    const bool bElsewhere = !key.keeper || !focus || QApplication::activeModalWidget() ||
                            QApplication::activePopupWidget() ||
                            (focus != key.keeper && !key.keeper->isAncestorOf(focus));
    if (bElsewhere) {
      // A question came up, say: what was typed was no answer to it.
      m_keys.clear();
      break;
    }
    QCoreApplication::sendEvent(focus, key.event.get());
  }
  m_bTyping = false;
  Uninstall();
}

InputHold::Run* InputHold::Holding(const QObject& watched, const QEvent& event) {
  Run* holding = nullptr;
  for (auto run = m_runs.rbegin(); run != m_runs.rend(); ++run) {
    // A run that is done holds nothing back: a box that opened meanwhile must be answered before
    // the run can return.
    if ((*run)->isDone()) continue;
    if (!(*run)->bGivesWay) return *run;
    if (KeptInput::IsMeant(watched, event)) (*run)->cancel();
    holding = *run;
  }
  return holding;
}

bool InputHold::eventFilter(QObject* watched, QEvent* event) {
  const bool bShortcut = event->type() == QEvent::Shortcut;
  if (!bShortcut && !IsInput(*event)) return false;
  // Windows of the platform hand their input on to widgets, which is where it is held back; a
  // shortcut goes to an action.
  if (!bShortcut && !watched->isWidgetType()) return false;
  Run* run = Holding(*watched, *event);
  if (run ? run->bGivesWay : m_given.IsWaiting()) {
    if (!KeptInput::IsMeant(*watched, *event)) return false;
    m_given.Keep(*watched, *event);
    return true;
  }
  return run ? HoldBack(*run, watched, event) : HoldKeys(watched, *event);
}

// What comes while keys are kept stands behind them.
bool InputHold::HoldKeys(QObject* watched, const QEvent& event) {
  if (m_keys.empty() || m_bTyping) return false;
  QWidget* const keeper = m_keys.back().keeper;
  const bool bThere =
      keeper && (watched == keeper || keeper->isAncestorOf(static_cast<const QWidget*>(watched)));
  if (IsTyped(event) && bThere) {
    m_keys.push_back({keeper, std::unique_ptr<QEvent>(event.clone())});
    return true;
  }
  if (IsClick(event)) m_runs.empty() ? TypeKept() : m_keys.clear();
  return false;
}

bool InputHold::HoldBack(Run& run, QObject* watched, QEvent* event) {
  if (Keep(run, *watched, *event)) {
    event->accept();
    return true;
  }

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

#include "console/waiting/kept_input.h"

#include <QApplication>
#include <QWidget>

namespace orvane::console {

namespace {

bool IsKey(const QEvent& event) {
  return event.type() == QEvent::KeyPress || event.type() == QEvent::KeyRelease ||
         event.type() == QEvent::InputMethod;
}

/// Where the keys are now: what was done before may have moved them.
QWidget* WhoHasKeys(QWidget* otherwise) {
  if (QWidget* popup = QApplication::activePopupWidget()) {
    return popup->focusWidget() ? popup->focusWidget() : popup;
  }
  return QApplication::focusWidget() ? QApplication::focusWidget() : otherwise;
}

/// A question that came up since was not there when the widget was pressed.
bool IsBehindQuestion(const QWidget& widget) {
  const QWidget* modal = QApplication::activeModalWidget();
  return modal && widget.window() != modal && !QApplication::activePopupWidget();
}

}  // namespace

bool KeptInput::IsMeant(const QObject& watched, const QEvent& event) {
  switch (event.type()) {
    case QEvent::Shortcut:
      return true;
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::InputMethod:
    case QEvent::ContextMenu:
      return watched.isWidgetType();
    case QEvent::Close:
      return watched.isWidgetType() && static_cast<const QWidget&>(watched).isWindow();
    default:
      return false;
  }
}

void KeptInput::Keep(QObject& watched, QEvent& event) {
  m_inputs.push_back({&watched, std::unique_ptr<QEvent>(event.clone())});
  // What is accepted is offered to nobody else; a window whose close is ignored stays.
  event.setAccepted(event.type() != QEvent::Close);
}

void KeptInput::DoSoon() {
  if (m_inputs.empty()) return;
  QMetaObject::invokeMethod(
      this, [this] { DoNext(); }, Qt::QueuedConnection);
}

void KeptInput::DoNext() {
  if (m_inputs.empty() || !m_mayDo()) return;
  const Input input = std::move(m_inputs.front());
  m_inputs.pop_front();
  // It may open a question whose answer is waited for, or be the end of everything.
  DoSoon();
  const QPointer<KeptInput> self(this);
  ++m_nDoing;
  Do(input);
  if (!self) return;
  --m_nDoing;
  if (m_inputs.empty()) m_done();
}

void KeptInput::Do(const Input& input) {
  QEvent& event = *input.event;
  auto* widget = qobject_cast<QWidget*>(input.target.data());
  if (event.type() == QEvent::Shortcut) {
    if (input.target) QCoreApplication::sendEvent(input.target, &event);
  } else if (IsKey(event)) {
    if (QWidget* keys = WhoHasKeys(widget)) QCoreApplication::instance()->notify(keys, &event);
  } else if (!widget || IsBehindQuestion(*widget)) {
    return;
  } else if (event.type() == QEvent::Close) {
    widget->close();
  } else {
    // As it came from outside, so that a click takes the keys along.
    QCoreApplication::instance()->notify(widget, &event);
  }
}

}  // namespace orvane::console

#include "console/window/guide_key.h"

#include <QApplication>
#include <QKeyEvent>
#include <QWidget>

#include "console/window/guide_window.h"

namespace orvane::console {

GuideKey::GuideKey(QWidget& window) : QObject(&window), m_window(window) {
  qApp->installEventFilter(this);
}

bool GuideKey::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::KeyPress || !watched->isWidgetType()) return false;
  const auto* key = static_cast<QKeyEvent*>(event);
  if (key->key() != Qt::Key_F1 || key->modifiers() != Qt::NoModifier) return false;
  if (!QApplication::activeModalWidget() || QApplication::activePopupWidget()) return false;
  if (!key->isAutoRepeat()) GuideWindow::Open(&m_window);
  return true;
}

}  // namespace orvane::console

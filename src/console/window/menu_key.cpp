#include "console/window/menu_key.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QWidget>

namespace orvane::console {

MenuKey::MenuKey(QObject* parent) : QObject(parent) {
  qApp->installEventFilter(this);
}

bool MenuKey::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::KeyPress || !watched->isWidgetType()) return false;
  const auto* key = static_cast<QKeyEvent*>(event);
  if (key->key() != Qt::Key_F10 || key->modifiers() != Qt::ShiftModifier) return false;
  if (QApplication::activePopupWidget()) return false;
  auto* widget = static_cast<QWidget*>(watched);
  const QPoint at = widget->inputMethodQuery(Qt::ImCursorRectangle).toRect().center();
  QContextMenuEvent menu(QContextMenuEvent::Keyboard, at, widget->mapToGlobal(at));
  QCoreApplication::sendEvent(widget, &menu);
  return true;
}

}  // namespace orvane::console

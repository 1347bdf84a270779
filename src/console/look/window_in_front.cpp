#include "console/look/window_in_front.h"

#include <QApplication>
#include <QWidget>

namespace orvane::console {

QWidget* WindowInFront() {
  if (QWidget* const modal = QApplication::activeModalWidget()) return modal->window();
  // The toolkit takes a moment to notice that a window was hidden.
  if (QWidget* const active = QApplication::activeWindow(); active && active->isVisible()) {
    return active;
  }
  for (QWidget* const window : QApplication::topLevelWidgets()) {
    if (window->isVisible() && window->windowType() == Qt::Window) return window;
  }
  return nullptr;
}

}  // namespace orvane::console

// A widget of the window that the cases are put to, by its name. User-interface thread.
#pragma once

#include <QApplication>
#include <QWidget>

namespace orvane::scenarios {

/// The one that can be seen; null when there is none, or it is of another class.
template <class Widget>
Widget* Visible(const char* sName) {
  for (QWidget* widget : QApplication::allWidgets()) {
    if (widget->objectName() == sName && widget->isVisible()) return qobject_cast<Widget*>(widget);
  }
  return nullptr;
}

}  // namespace orvane::scenarios

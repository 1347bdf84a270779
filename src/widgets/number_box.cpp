#include "widgets/number_box.h"

#include <QWheelEvent>

namespace orvane::widgets {

NumberBox::NumberBox(QWidget* parent) : QSpinBox(parent) {
  setFocusPolicy(Qt::StrongFocus);
}

void NumberBox::wheelEvent(QWheelEvent* event) {
  if (hasFocus()) {
    QSpinBox::wheelEvent(event);
  } else {
    event->ignore();
  }
}

}  // namespace orvane::widgets

// The rule of all boxes whose value the wheel changes: only that of the one that has the focus.
// Used by the boxes of this folder; user-interface thread.
#pragma once

#include <QWheelEvent>

namespace orvane::widgets {

/// A box that takes the wheel only while it has the focus: what scrolls under the mouse changes
/// nothing.
template <class Box>
class WheelByFocus : public Box {
 public:
  explicit WheelByFocus(QWidget* parent = nullptr) : Box(parent) {
    this->setFocusPolicy(Qt::StrongFocus);
  }

 protected:
  void wheelEvent(QWheelEvent* event) override {
    if (this->hasFocus()) {
      Box::wheelEvent(event);
    } else {
      event->ignore();
    }
  }
};

}  // namespace orvane::widgets

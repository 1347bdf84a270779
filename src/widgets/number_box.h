// Box for a whole number, with arrows to step by. Used by the bars of the grids; user-interface
// thread.
#pragma once

#include <QSpinBox>

namespace orvane::widgets {

/// Takes the wheel only while it has the focus: what scrolls under the mouse changes nothing.
class NumberBox : public QSpinBox {
 public:
  explicit NumberBox(QWidget* parent = nullptr);

 protected:
  void wheelEvent(QWheelEvent* event) override;
};

}  // namespace orvane::widgets

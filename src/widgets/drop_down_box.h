// Drop-down list that shows fifteen entries at once and cuts what is too long for it. Used by the
// dialogs and the bars of the grids; user-interface thread.
#pragma once

#include <QComboBox>

namespace orvane::widgets {

/// Takes the wheel only while it has the focus: what scrolls under the mouse changes nothing. The
/// tool tip has the entry whole where it is cut.
class DropDownBox : public QComboBox {
 public:
  explicit DropDownBox(QWidget* parent = nullptr);

 protected:
  bool event(QEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
};

}  // namespace orvane::widgets

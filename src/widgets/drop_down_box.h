// Drop-down list that shows fifteen entries at once and cuts what is too long for it. Used by the
// dialogs and the bars of the grids; user-interface thread.
#pragma once

#include <QComboBox>

#include "widgets/wheel_by_focus.h"

namespace orvane::widgets {

/// The tool tip has the entry whole where it is cut.
class DropDownBox : public WheelByFocus<QComboBox> {
 public:
  explicit DropDownBox(QWidget* parent = nullptr);

 protected:
  bool event(QEvent* event) override;
};

}  // namespace orvane::widgets

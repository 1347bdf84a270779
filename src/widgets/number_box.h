// Box for a whole number, with arrows to step by. Used by the bars of the grids; user-interface
// thread.
#pragma once

#include <QSpinBox>

#include "widgets/wheel_by_focus.h"

namespace orvane::widgets {

using NumberBox = WheelByFocus<QSpinBox>;

}  // namespace orvane::widgets

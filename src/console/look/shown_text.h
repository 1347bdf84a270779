// A text of the model as the toolkit shows it. Used by the rooms that have a window.
// Any thread.
#pragma once

#include <QString>

#include "platform/types.h"

namespace orvane::console {

inline QString Shown(const platform::Text& sText) {
  return QString::fromStdString(sText);
}

}  // namespace orvane::console

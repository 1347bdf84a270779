// The colour of what matters less than the text beside it, and must be read all the same. Pure
// function, any thread.
#pragma once

#include <QColor>

namespace orvane::controls {

/// The text's colour on its way to the ground's, as far as the eye still tells it from the ground.
QColor FaintColor(const QColor& text, const QColor& ground);

}  // namespace orvane::controls

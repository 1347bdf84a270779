// The colour in which a text of a given colour is drawn on the desktop's own background.
// Used by the text boxes of the dialogs; pure.
#pragma once

#include <QColor>

#include "platform/forms/forms.h"

class QPalette;

namespace orvane::console {

/// Forms name colours as on a white page. Black is the palette's own text colour; any other is
/// taken as it is where it can be read, with its lightness turned over where it cannot, and
/// replaced by the text colour where even that is too faint.
QColor LegibleColor(platform::Color color, const QPalette& palette);

}  // namespace orvane::console

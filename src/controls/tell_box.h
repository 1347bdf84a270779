// A box with one sentence, for whatever a command of a grid's menu has met: nobody called it who
// could be told. User-interface thread.
#pragma once

#include <QString>

class QWidget;

namespace orvane::controls {

/// Returns when the box is closed; the parent may be gone then.
void TellInBox(QWidget& parent, const QString& sTitle, const QString& sSentence);

}  // namespace orvane::controls

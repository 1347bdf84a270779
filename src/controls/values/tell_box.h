// A box with one sentence, for whatever a command of a grid's menu has met: nobody called it who
// could be told. User-interface thread.
#pragma once

#include <QString>
#include <exception>

class QWidget;

namespace orvane::controls {

/// Returns when the box is closed; the parent may be gone then.
void TellInBox(QWidget& parent, const QString& sTitle, const QString& sSentence);

/// What is told of whatever has ended work on a file: of a failure its own sentence; no memory and
/// what the system refuses have one too.
QString SentenceOf(const std::exception& exception);

}  // namespace orvane::controls

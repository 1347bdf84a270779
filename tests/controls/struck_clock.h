// A clock that strikes when a test says so.
#pragma once

#include <QCoreApplication>
#include <QTimer>
#include <QTimerEvent>

namespace orvane::controls {

/// The clock, which is running, strikes now; nobody waits for it.
inline void StrikeNow(QTimer& clock) {
  QTimerEvent over(clock.timerId());
  QCoreApplication::sendEvent(&clock, &over);
}

}  // namespace orvane::controls

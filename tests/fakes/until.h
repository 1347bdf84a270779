// Waiting for what a program with windows does by its events.
// Used by tests, on the user-interface thread.
#pragma once

#include <QCoreApplication>
#include <QEvent>
#include <QTimer>

namespace orvane::tests {

/// Handles events until the condition holds; returns true, for EXPECT_TRUE. It has no limit of its
/// own, as a busy machine may take any time: a test that waits in vain is ended by its runner.
template <class Condition>
bool Until(const Condition& condition) {
  // Some conditions come true without an event, on another thread.
  QTimer looks;
  looks.start(1);
  while (!condition()) {
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }
  return true;
}

}  // namespace orvane::tests

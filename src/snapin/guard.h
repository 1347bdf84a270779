// The one guard around the handlers of console events, and the one way to ignore a failing step.
// Used by every file of handlers here; user-interface thread.
#pragma once

#include <exception>
#include <utility>

#include "platform/services.h"
#include "platform/told_failure.h"

namespace orvane::snapin {

/// Shows the failure in the "Error" box, and notes it.
inline void ShowError(const platform::Services& services, const platform::Failure& failure) {
  if (services.failures) services.failures->Note(failure);
  services.ui->MsgBox(failure.Description(), platform::MsgBoxButtons::OkOnly,
                      platform::MsgBoxIcon::None, "Error");
}

/// Runs the body of a handler. A failure ends it and is shown; what was done before stays done.
/// Returns whether the body ended without a failure.
template <class Body>
platform::Boolean Guarded(const platform::Services& services, Body&& body) {
  try {
    std::forward<Body>(body)();
    return true;
  } catch (const std::exception& exception) {
    ShowError(services, platform::ToldFailure(exception, platform::failure::kComponent, "snapin"));
  }
  return false;
}

/// Runs a step whose failure is ignored on purpose.
template <class Step>
void Suppressed(Step&& step) {
  try {
    std::forward<Step>(step)();
  } catch (const std::exception&) {
    // Ignored: the caller goes on with what it has.
  }
}

}  // namespace orvane::snapin

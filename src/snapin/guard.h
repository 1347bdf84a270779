// The one guard around the handlers of console events, and the one way to ignore a failing step.
// Used by every file of handlers here; user-interface thread.
#pragma once

#include <exception>
#include <utility>

#include "platform/failure_log.h"

namespace orvane::snapin {

/// Shows the failure in the "Error" box, and notes it.
inline void ShowError(platform::UserInterface& ui, const platform::Failure& failure) {
  platform::NoteFailure(ui, failure);
  ui.MsgBox(failure.Description(), platform::MsgBoxButtons::OkOnly, platform::MsgBoxIcon::None,
            "Error");
}

/// Runs the body of a handler. A failure ends it and is shown; what was done before stays done.
/// Returns whether the body ended without a failure.
template <class Body>
platform::Boolean Guarded(platform::UserInterface& ui, Body&& body) {
  try {
    std::forward<Body>(body)();
    return true;
  } catch (const platform::Failure& failure) {
    ShowError(ui, failure);
  } catch (const std::exception& exception) {
    ShowError(ui, {platform::failure::kComponent, exception.what(), "snapin"});
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

// Allows OK only while a name is typed; shared by the dialogs that ask for one.
// Owned by its dialog, like the controls that it listens to; user-interface thread.
#pragma once

#include "platform/forms/forms.h"

namespace orvane::dialogs {

/// Enables the button exactly while the box holds at least one character, blanks included. The
/// button is disabled at once; box and button must outlive the guard.
class NameGuard {
 public:
  NameGuard(platform::TextBox& txtName, platform::Button& btnOk);

 private:
  platform::Subscription m_change;
};

}  // namespace orvane::dialogs

// Allows OK only while a name is typed; shared by the dialogs that ask for one.
// Owned by its dialog, which tells it of every change of the name; user-interface thread.
#pragma once

#include "platform/forms/forms.h"

namespace orvane::dialogs {

/// Enables the button exactly while the box holds at least one character, blanks included. The
/// button is disabled at once; box and button must outlive the guard.
class NameGuard {
 public:
  NameGuard(platform::TextBox& txtName, platform::Button& btnOk);

  /// The text of the box has changed.
  void Change();

 private:
  platform::TextBox& m_txtName;
  platform::Button& m_btnOk;
};

}  // namespace orvane::dialogs

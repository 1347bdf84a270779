// Keeps a text box numeric while the administrator types: text that is no 32-bit integer is
// refused with a beep and the box returns to the last text that was one.
// Owned by the dialog of the box, which tells it of every change; user-interface thread.
#pragma once

#include "platform/forms/forms.h"
#include "platform/user_interface.h"

namespace orvane::dialogs {

/// Guards one text box; box and user interface must outlive it.
class NumericGuard {
 public:
  NumericGuard(platform::TextBox& txt, platform::UserInterface& ui);

  /// The text of the box has changed.
  void Change();

 private:
  platform::TextBox& m_txt;
  platform::UserInterface& m_ui;
  platform::Text m_sLastAccepted;
};

}  // namespace orvane::dialogs

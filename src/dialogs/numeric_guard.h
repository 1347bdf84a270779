// Keeps a text box numeric while the administrator types: text that is no 32-bit integer is
// refused with a beep and the box returns to the last text that was one.
#pragma once

#include "platform/forms/forms.h"
#include "platform/user_interface.h"

namespace orvane::dialogs {

/// Watches one text box for as long as it lives; box and user interface must outlive it.
class NumericGuard {
 public:
  NumericGuard(platform::TextBox& txt, platform::UserInterface& ui);

 private:
  void Change();

  platform::TextBox& m_txt;
  platform::UserInterface& m_ui;
  platform::Text m_sLastAccepted;
  platform::Subscription m_change;
};

}  // namespace orvane::dialogs

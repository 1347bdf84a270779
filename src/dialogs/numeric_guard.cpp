#include "dialogs/numeric_guard.h"

#include "platform/conversions.h"
#include "platform/failure.h"

namespace orvane::dialogs {

NumericGuard::NumericGuard(platform::TextBox& txt, platform::UserInterface& ui)
    : m_txt(txt), m_ui(ui) {}

void NumericGuard::Change() {
  const platform::Text sText = m_txt.Text();
  // An empty box is allowed, but never becomes the text to return to: a wrong key in a cleared
  // box brings back the number that stood there before.
  if (sText.empty()) return;
  try {
    platform::TextToLong(sText);
    m_sLastAccepted = sText;
  } catch (const platform::Failure&) {
    m_ui.Beep();
    m_txt.Text(m_sLastAccepted);
  }
}

}  // namespace orvane::dialogs

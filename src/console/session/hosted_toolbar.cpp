#include "console/session/hosted_toolbar.h"

#include <algorithm>

#include "platform/failure.h"

namespace orvane::console {

using platform::Boolean;
using platform::Long;
using platform::Text;

void HostedButton::Enabled(Boolean bEnabled) {
  if (bEnabled == m_bEnabled) return;
  m_bEnabled = bEnabled;
  m_toolbar.Changed(false);
}

void HostedButton::Pressed(Boolean bPressed) {
  if (bPressed == m_bPressed) return;
  m_bPressed = bPressed;
  m_toolbar.Changed(false);
}

platform::ToolbarButton& HostedToolbar::Add(Long lIndex, const Text& sKey, Long lImage,
                                            const Text& sToolTip, platform::ButtonStyle style) {
  const auto lAt = std::clamp<Long>(lIndex, 1, Count() + 1);
  auto& button =
      *m_buttons.insert(m_buttons.begin() + (lAt - 1),
                        std::make_unique<HostedButton>(*this, sKey, lImage, sToolTip, style));
  Changed(true);
  return *button;
}

platform::ToolbarButton& HostedToolbar::Item(const Text& sKey) {
  for (const auto& button : m_buttons) {
    if (!sKey.empty() && button->Key() == sKey) return *button;
  }
  throw platform::Failure(
      platform::failure::kInvalidArgument,
      "The toolbar has no button \"" + sKey + "\"; ask the snap-in's maker for a corrected one.",
      "console");
}

void HostedToolbar::Clear() {
  // The views let go of the buttons before these are destroyed.
  const auto buttons = std::move(m_buttons);
  m_buttons.clear();
  Changed(true);
}

void HostedControlBar::Attach(const platform::ToolbarPtr& toolbar) {
  m_attached = std::dynamic_pointer_cast<HostedToolbar>(toolbar);
  if (m_changed) m_changed();
}

void HostedControlBar::Detach(const platform::ToolbarPtr& toolbar) {
  if (toolbar != m_attached) return;
  Reset();
}

void HostedControlBar::Reset() {
  m_attached.reset();
  if (m_changed) m_changed();
}

}  // namespace orvane::console

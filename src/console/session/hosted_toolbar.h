// The toolbar as the snap-in fills it and the control bar that it attaches it to. The window's
// toolbar follows through the change handlers. User-interface thread.
#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "platform/console/toolbar.h"

namespace orvane::console {

class HostedToolbar;

class HostedButton final : public platform::ToolbarButton {
 public:
  HostedButton(HostedToolbar& toolbar, platform::Text sKey, platform::Long lImage,
               platform::Text sToolTip, platform::ButtonStyle style)
      : m_toolbar(toolbar),
        m_sKey(std::move(sKey)),
        m_lImage(lImage),
        m_sToolTip(std::move(sToolTip)),
        m_style(style) {}

  platform::Text Key() const override { return m_sKey; }
  platform::Boolean Enabled() const override { return m_bEnabled; }
  void Enabled(platform::Boolean bEnabled) override;
  platform::Boolean Pressed() const override { return m_bPressed; }
  void Pressed(platform::Boolean bPressed) override;

  platform::Long Image() const noexcept { return m_lImage; }
  const platform::Text& ToolTip() const noexcept { return m_sToolTip; }
  platform::ButtonStyle Style() const noexcept { return m_style; }

 private:
  HostedToolbar& m_toolbar;
  platform::Text m_sKey;
  platform::Long m_lImage;
  platform::Text m_sToolTip;
  platform::ButtonStyle m_style;
  bool m_bEnabled = true;
  bool m_bPressed = false;
};

class HostedToolbar final : public platform::Toolbar, public platform::ToolbarButtons {
 public:
  platform::ToolbarButtons& Buttons() override { return *this; }

  platform::ToolbarButton& Add(platform::Long lIndex, const platform::Text& sKey,
                               platform::Long lImage, const platform::Text& sToolTip,
                               platform::ButtonStyle style) override;
  platform::ToolbarButton& Item(const platform::Text& sKey) override;
  platform::Long Count() const override { return static_cast<platform::Long>(m_buttons.size()); }
  void Clear() override;

  const std::vector<std::unique_ptr<HostedButton>>& All() const noexcept { return m_buttons; }

  /// Called when buttons came or went (bButtons), or when a button's state has changed.
  void OnChange(std::function<void(bool bButtons)> handler) { m_changed = std::move(handler); }
  void Changed(bool bButtons) const {
    if (m_changed) m_changed(bButtons);
  }

 private:
  std::vector<std::unique_ptr<HostedButton>> m_buttons;
  std::function<void(bool)> m_changed;
};

class HostedControlBar final : public platform::ControlBar {
 public:
  void Attach(const platform::ToolbarPtr& toolbar) override;
  void Detach(const platform::ToolbarPtr& toolbar) override;

  /// The toolbar attached, or none.
  const std::shared_ptr<HostedToolbar>& Attached() const noexcept { return m_attached; }
  /// Called when another toolbar, or none, is attached.
  void OnChange(std::function<void()> handler) { m_changed = std::move(handler); }
  void Reset();

 private:
  std::shared_ptr<HostedToolbar> m_attached;
  std::function<void()> m_changed;
};

}  // namespace orvane::console

// The control bar and the toolbar that the snap-in attaches to it.
// Implemented by the host; user-interface thread.
#pragma once

#include <memory>

#include "platform/value.h"

namespace orvane::platform {

/// Button styles by the numbers that the console publishes.
enum class ButtonStyle : std::int32_t { Default = 0, Check = 1, Separator = 8 };

class ToolbarButton {
 public:
  ToolbarButton() = default;
  ToolbarButton(const ToolbarButton&) = delete;
  ToolbarButton& operator=(const ToolbarButton&) = delete;
  virtual ~ToolbarButton() = default;

  virtual Text Key() const = 0;
  virtual Boolean Enabled() const = 0;
  virtual void Enabled(Boolean bEnabled) = 0;
  virtual Boolean Pressed() const = 0;
  virtual void Pressed(Boolean bPressed) = 0;
};

/// The buttons in order, positions from 1.
class ToolbarButtons {
 public:
  ToolbarButtons() = default;
  ToolbarButtons(const ToolbarButtons&) = delete;
  ToolbarButtons& operator=(const ToolbarButtons&) = delete;
  virtual ~ToolbarButtons() = default;

  /// The image is a number of the toolbar's image list, from 1. A separator has an empty key.
  virtual ToolbarButton& Add(Long lIndex, const Text& sKey, Long lImage, const Text& sToolTip,
                             ButtonStyle style) = 0;
  /// Fails with 5 when no button has the key.
  virtual ToolbarButton& Item(const Text& sKey) = 0;
  virtual Long Count() const = 0;
  virtual void Clear() = 0;
};

class Toolbar {
 public:
  Toolbar() = default;
  Toolbar(const Toolbar&) = delete;
  Toolbar& operator=(const Toolbar&) = delete;
  virtual ~Toolbar() = default;

  virtual ToolbarButtons& Buttons() = 0;
};

using ToolbarPtr = std::shared_ptr<Toolbar>;

class ControlBar {
 public:
  ControlBar() = default;
  ControlBar(const ControlBar&) = delete;
  ControlBar& operator=(const ControlBar&) = delete;
  virtual ~ControlBar() = default;

  virtual void Attach(const ToolbarPtr& toolbar) = 0;
  virtual void Detach(const ToolbarPtr& toolbar) = 0;
};

}  // namespace orvane::platform

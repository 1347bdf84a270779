// Message box, mouse pointer, beep and pending events, as the console offers them.
// Implemented by the host, handed over in Services; user-interface thread.
#pragma once

#include <cstdint>

#include "platform/types.h"

namespace orvane::platform {

enum class MsgBoxButtons : std::uint8_t { OkOnly, YesNo };
enum class MsgBoxIcon : std::uint8_t { None, Critical };
enum class MsgBoxResult : std::uint8_t { Ok, Yes, No };

/// Mouse pointer shapes by the numbers that the console publishes.
constexpr Long kMousePointerDefault = 0;
constexpr Long kMousePointerHourglass = 11;

class UserInterface {
 public:
  UserInterface() = default;
  UserInterface(const UserInterface&) = delete;
  UserInterface& operator=(const UserInterface&) = delete;
  virtual ~UserInterface() = default;

  /// Shows a modal box and returns the button pressed; the first button is the default one. An
  /// empty title means the program's own.
  virtual MsgBoxResult MsgBox(const Text& sText, MsgBoxButtons buttons, MsgBoxIcon icon,
                              const Text& sTitle) = 0;
  virtual Long MousePointer() const = 0;
  virtual void MousePointer(Long lPointer) = 0;
  virtual void Beep() = 0;
  /// Handles pending user-interface events and returns.
  virtual void DoEvents() = 0;
};

}  // namespace orvane::platform

// Mouse and keyboard of a display: what is done here comes to the program as it does from the
// devices of a user. One thread at a time; knows nothing of the toolkit.
#pragma once

#include <memory>
#include <string>

namespace orvane::console {

class XInput {
 public:
  explicit XInput(const std::string& sDisplay);
  ~XInput();
  XInput(const XInput&) = delete;
  XInput& operator=(const XInput&) = delete;

  enum class Button { Left = 1, Right = 3 };

  /// In pixels of the screen.
  void MoveTo(int iX, int iY);
  void Click(Button button, int iTimes);
  /// A key by its name on this display, like "Return", "Menu" or "s", with keys held meanwhile,
  /// like "Control_L".
  void Key(const std::string& sKey, const std::string& sHeld = {});
  /// A letter of the keyboard, with Shift where it needs that.
  void Type(char c);

  /// The title that the window manager shows on the window; empty when it has none.
  std::string Title(unsigned long window);
  /// Where the window's upper left corner lies on the screen, as the server has it.
  void Place(unsigned long window, int& iX, int& iY);
  bool WaitForWindowManager(int iMilliseconds);
  /// From now on the display's bells are kept for whoever waits for them.
  void ListenForBells();
  /// Takes the next bell; false when nothing came for that long.
  bool WaitForBell(int iMilliseconds);

 private:
  struct Connection;
  void Send(unsigned int uKey, bool bDown);
  unsigned int KeyOf(unsigned long symbol, bool& bShift);

  std::unique_ptr<Connection> m_connection;
};

}  // namespace orvane::console

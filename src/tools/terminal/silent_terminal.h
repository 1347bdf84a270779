// The terminal of whoever started the program, with nothing shown of what is typed: for passwords,
// also where input and output are files. Used by the command-line programs; one thread.
#pragma once

#include <termios.h>

#include <optional>
#include <string_view>

#include "platform/types.h"

namespace orvane::tools {

/// Silent as long as it lives; there is one at a time. Ctrl+C ends the line instead of the program,
/// which would leave the terminal silent.
class SilentTerminal {
 public:
  SilentTerminal();
  SilentTerminal(const SilentTerminal&) = delete;
  SilentTerminal& operator=(const SilentTerminal&) = delete;
  ~SilentTerminal();

  bool IsThere() const { return m_bSilent; }
  /// Makes the terminal what it was, for a program that is ended while it is silent; from any
  /// thread.
  static void GiveBack();
  void Write(std::string_view sText) const;
  /// Nothing where Ctrl+C was pressed. The caller overwrites the text.
  platform::Text ReadLine() const;

 private:
  int m_file;
  termios m_before{};
  bool m_bSilent = false;
};

/// The line that is typed on the terminal behind the question, for all to see; none where there is
/// no terminal.
std::optional<platform::Text> AskedLine(std::string_view sQuestion);

/// The password that is typed on the terminal behind the question; nothing where there is none, or
/// nothing was typed. The caller overwrites it.
platform::Text AskedPassword(std::string_view sQuestion);

}  // namespace orvane::tools

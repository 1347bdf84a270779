// The terminal of whoever started the program, with nothing shown of what is typed: for passwords,
// also where input and output are files. Used by the command-line programs; one thread.
#pragma once

#include <termios.h>

#include <string_view>

#include "platform/types.h"

namespace orvane::tools {

/// Silent as long as it lives. Ctrl+C ends the line instead of the program, which would leave the
/// terminal silent.
class SilentTerminal {
 public:
  SilentTerminal();
  SilentTerminal(const SilentTerminal&) = delete;
  SilentTerminal& operator=(const SilentTerminal&) = delete;
  ~SilentTerminal();

  bool IsThere() const { return m_bSilent; }
  void Write(std::string_view sText) const;
  /// Nothing where Ctrl+C was pressed. The caller overwrites the text.
  platform::Text ReadLine() const;

 private:
  int m_file;
  termios m_before{};
  bool m_bSilent = false;
};

/// What is typed on the terminal behind the question; nothing where there is none, or nothing was
/// typed. The caller overwrites it.
platform::Text AskedPassword(std::string_view sQuestion);

}  // namespace orvane::tools

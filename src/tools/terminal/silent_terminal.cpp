#include "tools/terminal/silent_terminal.h"

#include <fcntl.h>
#include <unistd.h>

#include "ado/secret.h"

namespace orvane::tools {

using platform::Text;

namespace {

constexpr char kInterrupt = 3;
constexpr std::size_t kMostOfALine = 4096;

}  // namespace

SilentTerminal::SilentTerminal() : m_file(open("/dev/tty", O_RDWR | O_CLOEXEC)) {
  if (m_file < 0 || tcgetattr(m_file, &m_before) != 0) return;
  termios silent = m_before;
  silent.c_lflag &= ~static_cast<tcflag_t>(ECHO | ISIG);
  silent.c_cc[VEOL] = kInterrupt;
  m_bSilent = tcsetattr(m_file, TCSAFLUSH, &silent) == 0;
}

SilentTerminal::~SilentTerminal() {
  if (m_bSilent) tcsetattr(m_file, TCSAFLUSH, &m_before);
  if (m_file >= 0) close(m_file);
}

void SilentTerminal::Write(std::string_view sText) const {
  (void)!write(m_file, sText.data(), sText.size());
}

Text SilentTerminal::ReadLine() const {
  Text sLine;
  sLine.reserve(kMostOfALine);  // so that no copy is left behind
  for (char character = 0; read(m_file, &character, 1) == 1 && character != '\n';) {
    if (character == kInterrupt) {
      ado::Wipe(sLine);
      return {};
    }
    if (sLine.size() < kMostOfALine) sLine += character;
  }
  return sLine;
}

Text AskedPassword(std::string_view sQuestion) {
  const SilentTerminal terminal;
  if (!terminal.IsThere()) return {};
  terminal.Write(sQuestion);
  Text sTyped = terminal.ReadLine();
  terminal.Write("\n");
  return sTyped;
}

}  // namespace orvane::tools

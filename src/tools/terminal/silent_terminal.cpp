#include "tools/terminal/silent_terminal.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <memory>
#include <mutex>

#include "ado/secret.h"

namespace orvane::tools {

using platform::Text;

namespace {

constexpr char kInterrupt = 3;
constexpr std::size_t kMostOfALine = 4096;

/// The one that is silent now, for whoever ends the program.
std::mutex& PresentMutex() {
  static std::mutex mutex;
  return mutex;
}
const SilentTerminal* g_present = nullptr;

}  // namespace

SilentTerminal::SilentTerminal() : m_file(open("/dev/tty", O_RDWR | O_CLOEXEC)) {
  if (m_file < 0 || tcgetattr(m_file, &m_before) != 0) return;
  termios silent = m_before;
  silent.c_lflag &= ~static_cast<tcflag_t>(ECHO | ISIG);
  silent.c_cc[VEOL] = kInterrupt;
  const std::lock_guard lock(PresentMutex());
  m_bSilent = tcsetattr(m_file, TCSAFLUSH, &silent) == 0;
  if (m_bSilent) g_present = this;
}

SilentTerminal::~SilentTerminal() {
  const std::lock_guard lock(PresentMutex());
  g_present = nullptr;
  if (m_bSilent) tcsetattr(m_file, TCSAFLUSH, &m_before);
  if (m_file >= 0) close(m_file);
}

void SilentTerminal::GiveBack() {
  const std::lock_guard lock(PresentMutex());
  if (g_present) tcsetattr(g_present->m_file, TCSAFLUSH, &g_present->m_before);
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

std::optional<Text> AskedLine(std::string_view sQuestion) {
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> terminal(std::fopen("/dev/tty", "r+e"),
                                                                 std::fclose);
  if (!terminal) return std::nullopt;
  std::fwrite(sQuestion.data(), 1, sQuestion.size(), terminal.get());
  std::fflush(terminal.get());
  Text sLine;
  for (int c = 0; (c = std::fgetc(terminal.get())) != EOF && c != '\n';) {
    sLine += static_cast<char>(c);
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

#include "tools/orvane/logon.h"

#include <unistd.h>

#include <cerrno>
#include <system_error>

#include "ado/secret.h"
#include "platform/one_line.h"
#include "tools/orvane/statuses.h"
#include "tools/terminal/silent_terminal.h"

namespace orvane::tools {

using platform::Text;

namespace {

constexpr std::size_t kLongestPassword = 4096;

/// The first line of the file, without its end. What stands behind it is left there.
Text FirstLineOf(int nFile) {
  Text sLine;
  sLine.reserve(kLongestPassword);  // so that no copy is left behind
  for (char character = 0;;) {
    const ssize_t n = read(nFile, &character, 1);
    if (n < 0 && errno == EINTR) continue;
    if (n < 0) {
      const int nError = errno;
      ado::Wipe(sLine);
      throw Ending(kWrongUse, "The password cannot be read from the file descriptor " +
                                  std::to_string(nFile) + ": " +
                                  std::generic_category().message(nError) +
                                  "; open it for the program, such as with " +
                                  std::to_string(nFile) + "< FILE.");
    }
    if (n == 0 || character == '\n') return sLine;
    if (sLine.size() == kLongestPassword) {
      ado::Wipe(sLine);
      throw Ending(kWrongUse,
                   "The file of the password has a first line that is too long for one; name "
                   "another file descriptor.");
    }
    sLine += character;
  }
}

}  // namespace

Logon::~Logon() {
  ado::Wipe(m_sPassword);
}

bool Logon::AskTerminal(const Text& sServer) {
  if (m_options.nPasswordFile) return false;
  ado::Wipe(m_sPassword);
  m_sPassword = AskedPassword("Password for " + platform::OneLine(sServer) + ": ");
  return !m_sPassword.empty();
}

platform::Boolean Logon::Ask(ado::LogonRequest& request) {
  if (m_options.sUser) request.sUser = *m_options.sUser;
  if (m_options.nPasswordFile) {
    request.sPassword = FirstLineOf(*m_options.nPasswordFile);
  } else {
    request.sPassword = m_sPassword;
  }
  return true;
}

}  // namespace orvane::tools

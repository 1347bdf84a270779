#include "provider/historian/known_historians.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <string>

#include "files/private_files.h"
#include "platform/user_folders.h"

namespace orvane::provider::historian {
namespace {

namespace fs = std::filesystem;

// A folder as one line: a line break in a name is written so that it ends none.
std::string LineOf(const fs::path& folder) {
  std::error_code error;
  const fs::path whole = fs::absolute(folder, error).lexically_normal();
  std::string sLine;
  for (const char c : whole.string()) {
    if (c == '\n') {
      sLine += "%0A";
    } else if (c == '%') {
      sLine += "%25";
    } else {
      sLine += c;
    }
  }
  return sLine;
}

}  // namespace

KnownHistorians KnownHistorians::OfUser() {
  const auto state = platform::UserStateFolder();
  return state ? KnownHistorians(*state / "historians") : KnownHistorians();
}

bool KnownHistorians::Has(const fs::path& folder) const {
  std::error_code error;
  // Nothing but a file is read: a pipe would hold the reader up.
  if (m_file.empty() || !fs::is_regular_file(m_file, error)) return false;
  const std::string sWanted = LineOf(folder);
  std::ifstream stream(m_file, std::ios::binary);
  for (std::string sLine; std::getline(stream, sLine);) {
    if (sLine == sWanted) return true;
  }
  return false;
}

void KnownHistorians::Remember(const fs::path& folder) const {
  if (m_file.empty() || Has(folder)) return;
  std::error_code error;
  files::MakePrivateFolders(m_file.parent_path(), error);
  // What is written at once is written whole, also beside another program.
  const int nFile =
      open(m_file.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC,
           files::kPrivateFile);
  if (nFile < 0) return;
  // A line that broke off is ended by the break before this one.
  const std::string sLine = "\n" + LineOf(folder) + "\n";
  if (write(nFile, sLine.data(), sLine.size()) < 0) {
    // Then it is not remembered.
  }
  close(nFile);
}

}  // namespace orvane::provider::historian

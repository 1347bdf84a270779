#include "component/file_registrar.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <string_view>
#include <system_error>
#include <utility>

#include "component/class_file.h"
#include "component/trusted_path.h"
#include "platform/failure.h"

namespace orvane::component {
namespace {

namespace fs = std::filesystem;
using platform::Failure;
using platform::Text;

[[noreturn]] void FailFile(const fs::path& file, const char* sWhat, int nError) {
  throw Failure(platform::failure::kComponent,
                "The registration file \"" + file.string() + "\" cannot be " + sWhat + " (" +
                    std::generic_category().message(nError) +
                    "); register into a folder that you may write to, such as with --user.",
                "component", nError);
}

bool WriteAll(int nFile, std::string_view sContent) {
  while (!sContent.empty()) {
    const ssize_t nWritten = write(nFile, sContent.data(), sContent.size());
    if (nWritten < 0 && errno == EINTR) continue;
    if (nWritten < 0) return false;
    sContent.remove_prefix(static_cast<std::size_t>(nWritten));
  }
  return true;
}

// Through a file beside it that takes its name: readers see the old content or the new.
void WriteAtomically(const fs::path& file, std::string_view sContent) {
  Text sTemporary = file.string() + ".XXXXXX";
  const int nFile = mkstemp(sTemporary.data());
  if (nFile < 0) FailFile(file, "written", errno);
  int nError = 0;
  if (fchmod(nFile, 0644) != 0 || !WriteAll(nFile, sContent) || fsync(nFile) != 0) nError = errno;
  if (close(nFile) != 0 && nError == 0) nError = errno;
  if (nError == 0 && rename(sTemporary.c_str(), file.c_str()) != 0) nError = errno;
  if (nError != 0) {
    unlink(sTemporary.c_str());
    FailFile(file, "written", nError);
  }
}

// Whatever the umask, for this user alone to write. What goes wrong is told by the writing.
void MakeFolder(const fs::path& folder) {
  fs::path made;
  for (const auto& name : folder) {
    made /= name;
    mkdir(made.c_str(), 0755);
  }
}

}  // namespace

void FileRegistrar::Register(const platform::ComponentDescription& description) {
  m_registered.push_back(description);
}

void FileRegistrar::Unregister(const Text& sProgId) {
  m_sUnregistered.push_back(sProgId);
}

void FileRegistrar::Commit(const fs::path& folder, const fs::path& library) const {
  std::vector<std::pair<fs::path, Text>> files;
  for (const auto& description : m_registered) {
    files.emplace_back(folder / ClassFileName(description.sProgId),
                       WriteClassFile({description, library}));
  }
  if (!files.empty()) {
    MakeFolder(folder);
    // What is written where others can change it would not be used.
    RequireTrusted(files.front().first);
  }
  for (const auto& [file, sContent] : files) WriteAtomically(file, sContent);
  for (const auto& sProgId : m_sUnregistered) {
    const fs::path file = folder / ClassFileName(sProgId);
    if (unlink(file.c_str()) != 0 && errno != ENOENT && errno != ENOTDIR) {
      FailFile(file, "removed", errno);
    }
  }
}

}  // namespace orvane::component

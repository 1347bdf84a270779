#include "component/file_registrar.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <string_view>
#include <system_error>
#include <utility>

#include "component/class_file.h"
#include "component/trusted_path.h"
#include "files/replacement.h"
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

// What is registered may be read by everybody and written by nobody else, whatever was there
// before.
void WriteClass(const fs::path& file, std::string_view sContent) {
  constexpr mode_t kForAll = 0644;
  try {
    files::Replace(file, sContent, {.mode = kForAll, .bKeep = false});
  } catch (const std::system_error& e) {
    FailFile(file, "written", e.code().value());
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
  for (const auto& [file, sContent] : files) WriteClass(file, sContent);
  for (const auto& sProgId : m_sUnregistered) {
    const fs::path file = folder / ClassFileName(sProgId);
    if (unlink(file.c_str()) != 0 && errno != ENOENT && errno != ENOTDIR) {
      FailFile(file, "removed", errno);
    }
  }
}

}  // namespace orvane::component

#include "component/registry.h"

#include <algorithm>
#include <cerrno>
#include <set>
#include <span>
#include <system_error>
#include <utility>

#include "component/readable_file.h"
#include "component/trusted_path.h"
#include "platform/failure.h"
#include "platform/user_folders.h"

namespace orvane::component {
namespace {

namespace fs = std::filesystem;
using platform::Failure;
using platform::Text;

constexpr const char* kSubfolder = "components";
// A class is a few hundred bytes; what is larger is not one of ours.
constexpr std::size_t kLargestFile = 65536;

// The content, or nothing when there is no such file.
std::optional<Text> ReadFile(const fs::path& path) {
  const ReadableFile file(path);
  if (file.Error() == ENOENT || file.Error() == ENOTDIR) return {};
  if (!file.IsRegular()) {
    throw Failure(platform::failure::kComponent,
                  "The registration file \"" + path.string() +
                      "\" cannot be read; give yourself the right to read it or remove it.",
                  "component", file.Error());
  }
  RequireTrusted(path);
  // Too much of it is as good as damaged: the reader says so.
  if (file.Size() > kLargestFile) return Text();
  Text sContent(file.Size(), '\0');
  if (!file.Read(0, std::as_writable_bytes(std::span(sContent)))) sContent.clear();
  return sContent;
}

std::optional<RegisteredClass> ReadClass(const fs::path& file) {
  const auto sContent = ReadFile(file);
  if (!sContent) return {};
  return ReadClassFile(*sContent, file);
}

}  // namespace

Registry::Registry(std::vector<fs::path> folders) : m_folders(std::move(folders)) {}

Registry Registry::Standard(const std::optional<fs::path>& named,
                            const std::optional<fs::path>& program) {
  std::vector<fs::path> folders;
  // Programs lie in bin, whether they were built or installed.
  const fs::path prefix = program ? program->parent_path().parent_path() : fs::path();
  std::error_code none;
  if (named) folders.push_back(*named);
  if (program && fs::is_directory(prefix / kSubfolder, none)) {
    folders.push_back(prefix / kSubfolder);
  }
  try {
    folders.push_back(UserFolder());
  } catch (const Failure&) {
    // Without a home folder there is nothing of the user's own to be found.
  }
  const fs::path installed = prefix / "share/orvane" / kSubfolder;
  // The system's folders may hold it, too: who looks there twice finds the same.
  if (program && fs::is_directory(installed, none)) folders.push_back(installed);
  for (auto& folder : SystemFolders()) folders.push_back(std::move(folder));
  return Registry(std::move(folders));
}

std::optional<fs::path> Registry::RunningProgram() {
  std::error_code error;
  auto program = fs::read_symlink("/proc/self/exe", error);
  return error ? std::nullopt : std::optional(std::move(program));
}

fs::path Registry::UserFolder() {
  const auto data = platform::UserDataFolder();
  if (!data) {
    throw Failure(platform::failure::kComponent,
                  "There is no home folder to register components in; set HOME, or name a folder.",
                  "component");
  }
  return *data / kSubfolder;
}

std::vector<fs::path> Registry::SystemFolders() {
  auto folders = platform::SystemDataFolders();
  for (auto& folder : folders) folder /= kSubfolder;
  return folders;
}

std::optional<RegisteredClass> Registry::Find(std::string_view sProgId) const {
  const Text sName = ClassFileName(sProgId);
  for (const auto& folder : m_folders) {
    if (auto registered = ReadClass(folder / sName)) return registered;
  }
  return {};
}

Registry::Listing Registry::List() const {
  Listing listing;
  std::set<fs::path> seen;
  for (const auto& folder : m_folders) {
    std::error_code error;
    std::vector<fs::path> files;
    for (fs::directory_iterator it(folder, error), end; !error && it != end; it.increment(error)) {
      if (it->path().extension() == ".json") files.push_back(it->path());
    }
    std::sort(files.begin(), files.end());
    for (const auto& file : files) {
      if (!seen.insert(file.filename()).second) continue;
      try {
        if (auto registered = ReadClass(file)) listing.classes.push_back(std::move(*registered));
      } catch (const Failure& failure) {
        listing.sProblems.push_back(failure.Description());
      }
    }
  }
  return listing;
}

}  // namespace orvane::component

#include "component/registration.h"

#include <system_error>

#include "component/file_registrar.h"
#include "component/library.h"
#include "component/registry.h"
#include "platform/failure.h"

namespace orvane::component {
namespace {

namespace fs = std::filesystem;
using platform::Text;

// The path by which the library is found from anywhere.
fs::path Absolute(const fs::path& library) {
  std::error_code error;
  auto path = fs::weakly_canonical(fs::absolute(library, error), error);
  return error ? library : path;
}

// Unloads at the end, as the runtime would: nothing of the component is alive here.
class LoadedForNow {
 public:
  explicit LoadedForNow(const fs::path& path) : m_library(path) {}
  LoadedForNow(const LoadedForNow&) = delete;
  LoadedForNow& operator=(const LoadedForNow&) = delete;
  ~LoadedForNow() {
    if (m_library.CanUnloadNow()) m_library.Close();
  }
  const Library* operator->() const { return &m_library; }

 private:
  Library m_library;
};

}  // namespace

std::vector<Text> RegisterLibrary(const fs::path& library, const fs::path& folder) {
  const fs::path path = Absolute(library);
  const LoadedForNow loaded(path);
  FileRegistrar registrar;
  loaded->RegisterServer(registrar);
  std::vector<Text> sProgIds;
  for (const auto& description : registrar.Registered()) sProgIds.push_back(description.sProgId);
  if (sProgIds.empty()) {
    throw platform::Failure(
        platform::failure::kComponent,
        "The component \"" + path.string() + "\" registers no class; name another library.",
        "component");
  }
  registrar.Commit(folder, path);
  return sProgIds;
}

std::vector<Text> UnregisterLibrary(const fs::path& library, const fs::path& folder) {
  const fs::path path = Absolute(library);
  FileRegistrar registrar;
  std::error_code error;
  if (fs::exists(path, error)) {
    const LoadedForNow loaded(path);
    loaded->UnregisterServer(registrar);
  } else {
    for (const auto& registered : Registry({folder}).List().classes) {
      if (registered.library == path) registrar.Unregister(registered.description.sProgId);
    }
    if (registrar.Unregistered().empty()) {
      throw platform::Failure(platform::failure::kComponent,
                              "The library \"" + path.string() +
                                  "\" is missing and nothing is registered of it; name the path "
                                  "under which it was registered.",
                              "component");
    }
  }
  registrar.Commit(folder, path);
  return registrar.Unregistered();
}

}  // namespace orvane::component

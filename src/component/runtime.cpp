#include "component/runtime.h"

#include <exception>
#include <optional>
#include <system_error>
#include <utility>

#include "component/library.h"
#include "component/trusted_path.h"
#include "platform/failure.h"
#include "platform/told_failure.h"

namespace orvane::component {
namespace {

using platform::Failure;
using platform::ObjectPtr;
using platform::Text;

[[noreturn]] void FailToRun(const Text& sDescription, platform::Long lNativeError = 0) {
  throw Failure(platform::failure::kComponent, sDescription, "component", lNativeError);
}

// Calls the factory and turns what it throws into a failure that no longer refers to the library.
ObjectPtr Make(platform::ClassFactory& factory, const Text& sProgId,
               const platform::Services& services) {
  Text sWhat = "unknown exception";
  platform::Long lNativeError = 0;
  try {
    return factory.CreateInstance(services);
  } catch (const Failure& failure) {
    if (failure.Number() == platform::failure::kCancelled) throw Failure(failure);
    sWhat = failure.Description();
    lNativeError = failure.Number();
  } catch (const std::exception& exception) {
    sWhat = platform::ToldFailure(exception, 0, {}).Description();
  } catch (...) {
    // Told like any other, by the text above.
  }
  FailToRun("The component \"" + sProgId + "\" could not be created: " + sWhat, lNativeError);
}

}  // namespace

Runtime::Runtime(Registry registry) : m_registry(std::move(registry)) {}

Runtime::~Runtime() {
  UnloadUnused();
}

ObjectPtr Runtime::CreateInstance(const Text& sProgId, const platform::Services& services) {
  return Maker(sProgId)(services);
}

std::function<ObjectPtr(const platform::Services&)> Runtime::Maker(const Text& sProgId) {
  const auto registered = m_registry.Find(sProgId);
  if (!registered) {
    FailToRun("No component is registered as \"" + sProgId +
              "\"; register its library with orvane-regsvr.");
  }
  auto library = Load(registered->library);
  auto& factory = library->GetClassObject(registered->description.sProgId);
  return [sProgId, library = std::move(library),
          &factory](const platform::Services& services) -> ObjectPtr {
    ObjectPtr object = Make(factory, sProgId, services);
    if (!object) {
      FailToRun("The component \"" + sProgId +
                "\" gave no object when one was created; ask its maker for a corrected one.");
    }
    // The pointer handed out holds the object and then its library: the object goes first, while
    // its code is still there.
    auto* const raw = object.get();
    return {raw, [object = std::move(object), library](auto*) mutable {
              object.reset();
              library.reset();
            }};
  };
}

void Runtime::UnloadUnused() {
  const std::lock_guard lock(m_mutex);
  std::erase_if(m_libraries, [](const auto& entry) {
    const auto& library = entry.second;
    if (library.use_count() > 1 || !library->CanUnloadNow()) return false;
    library->Close();
    return true;
  });
}

std::vector<std::filesystem::path> Runtime::Loaded() const {
  const std::lock_guard lock(m_mutex);
  std::vector<std::filesystem::path> paths;
  for (const auto& [path, library] : m_libraries) paths.push_back(path);
  return paths;
}

void Runtime::FailOtherKind(const Text& sProgId) {
  FailToRun("The component \"" + sProgId +
            "\" is of another kind than is needed here; name a component of the right kind.");
}

std::shared_ptr<Library> Runtime::Load(const std::filesystem::path& path) {
  std::error_code error;
  auto canonical = std::filesystem::weakly_canonical(path, error);
  if (error) canonical = path;
  const std::lock_guard lock(m_mutex);
  auto& library = m_libraries[canonical];
  try {
    if (!library) {
      // The way by which it was named too: a link on it may be anybody's.
      RequireTrusted(path);
      library = std::make_shared<Library>(canonical);
    }
  } catch (...) {
    m_libraries.erase(canonical);
    throw;
  }
  return library;
}

}  // namespace orvane::component

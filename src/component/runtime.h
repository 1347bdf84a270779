// The in-process component runtime: makes objects from progids and keeps their libraries loaded
// for as long as one of them is alive. Owned by the host, one a process; handed on by reference.
// Safe to use from several threads; the objects it makes are as safe as they themselves say.
#pragma once

#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <vector>

#include "component/registry.h"
#include "platform/component.h"

namespace orvane::component {

class Library;

class Runtime {
 public:
  explicit Runtime(Registry registry);
  Runtime(const Runtime&) = delete;
  Runtime& operator=(const Runtime&) = delete;
  /// Unloads what is unused. A library with an object alive stays loaded until the process ends.
  ~Runtime();

  const Registry& Classes() const noexcept { return m_registry; }

  /// A new object of the class, never null; its library is loaded at the first. Fails with
  /// kComponent and a sentence of its own for each thing that can be wrong; a cancel by the user
  /// while the object was made passes through as it is.
  platform::ObjectPtr CreateInstance(const platform::Text& sProgId,
                                     const platform::Services& services);
  /// Makes objects of one class as CreateInstance does, for a caller who makes many of them: the
  /// class is looked up once, here. Keeps its library loaded, and must not outlive this runtime.
  std::function<platform::ObjectPtr(const platform::Services&)> Maker(
      const platform::Text& sProgId);
  /// The same as CreateInstance, as the interface wanted. Fails with kComponent when the object
  /// does not have it.
  template <class Interface>
  std::shared_ptr<Interface> Create(const platform::Text& sProgId,
                                    const platform::Services& services) {
    auto object = std::dynamic_pointer_cast<Interface>(CreateInstance(sProgId, services));
    if (!object) FailOtherKind(sProgId);
    return object;
  }

  /// Unloads each library that has no object alive and whose component agrees. Everything that
  /// came out of it must be gone: weak references and stored exceptions too.
  void UnloadUnused();
  /// The libraries that are loaded now.
  std::vector<std::filesystem::path> Loaded() const;

 private:
  [[noreturn]] static void FailOtherKind(const platform::Text& sProgId);
  std::shared_ptr<Library> Load(const std::filesystem::path& path);

  Registry m_registry;
  mutable std::mutex m_mutex;
  std::map<std::filesystem::path, std::shared_ptr<Library>> m_libraries;
};

}  // namespace orvane::component

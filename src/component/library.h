// One component's library: loaded, checked for its four entry points, and called through them.
// Used by the runtime and by orvane-regsvr. An exception that leaves an entry point is caught
// here and becomes a sentence. Any thread, as far as the component allows it.
#pragma once

#include <filesystem>

#include "platform/component.h"

namespace orvane::component {

class Library {
 public:
  /// Loads the file with everything it needs, sharing its names with no other library. Fails with
  /// kComponent when the file is missing, cut off, open to be changed by others, cannot be loaded
  /// or lacks an entry point.
  explicit Library(std::filesystem::path path);
  Library(const Library&) = delete;
  Library& operator=(const Library&) = delete;
  /// Leaves the library loaded: code of it may still be running or be needed. Close unloads.
  ~Library() = default;

  const std::filesystem::path& Path() const noexcept { return m_path; }

  /// The factory of the class, owned by the library. Fails with kComponent when the library is
  /// of another version, does not know the class, or its entry point goes wrong.
  platform::ClassFactory& GetClassObject(const platform::Text& sProgId) const;
  /// Has the component describe its classes to the registrar, or withdraw them. Fails with
  /// kComponent when the entry point says so or goes wrong.
  void RegisterServer(platform::ComponentRegistrar& registrar) const;
  void UnregisterServer(platform::ComponentRegistrar& registrar) const;
  /// Whether no object of the component is alive; an entry point that goes wrong means no.
  bool CanUnloadNow() const noexcept;
  /// Unloads. Nothing of the component may be alive or be called afterwards.
  void Close() noexcept;

 private:
  using RegisterFunction = platform::HResult (*)(platform::ComponentRegistrar*);
  using GetClassObjectFunction = platform::HResult (*)(const char*, const char*, void**);
  using CanUnloadNowFunction = platform::HResult (*)();

  template <class Function>
  Function EntryPoint(const char* sName) const;
  void Run(const char* sEntryPoint, RegisterFunction function,
           platform::ComponentRegistrar& registrar) const;

  std::filesystem::path m_path;
  void* m_handle = nullptr;
  RegisterFunction m_registerServer = nullptr;
  RegisterFunction m_unregisterServer = nullptr;
  GetClassObjectFunction m_getClassObject = nullptr;
  CanUnloadNowFunction m_canUnloadNow = nullptr;
};

}  // namespace orvane::component

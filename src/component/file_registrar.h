// Takes down what a component says of its classes, and then writes it into a registry folder.
// Used by orvane-regsvr through registration.h, on one thread.
#pragma once

#include <filesystem>
#include <vector>

#include "platform/component.h"

namespace orvane::component {

/// The files change in Commit only: a component that breaks off half-way changes nothing, and no
/// failure of a file has to travel through a component's entry point.
class FileRegistrar : public platform::ComponentRegistrar {
 public:
  void Register(const platform::ComponentDescription& description) override;
  void Unregister(const platform::Text& sProgId) override;

  /// The classes registered and withdrawn so far, in order.
  const std::vector<platform::ComponentDescription>& Registered() const { return m_registered; }
  const std::vector<platform::Text>& Unregistered() const { return m_sUnregistered; }

  /// Writes each registered class into the folder as made by the library, whole or not at all,
  /// then removes the withdrawn ones. Makes the folder if need be. Fails with kComponent.
  void Commit(const std::filesystem::path& folder, const std::filesystem::path& library) const;

 private:
  std::vector<platform::ComponentDescription> m_registered;
  std::vector<platform::Text> m_sUnregistered;
};

}  // namespace orvane::component

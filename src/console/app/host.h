// Everything behind the window: the component runtime and what the components are handed. Outlives
// every window and every document. User-interface thread.
#pragma once

#include <filesystem>
#include <memory>
#include <optional>

#include "component/runtime.h"
#include "console/window/main_window.h"

class QSettings;

namespace orvane::console {

class DataAccess;

class Host {
 public:
  /// With a folder, components registered there are found before those of the user and the system.
  /// The row memory is what all rows may take; none means a quarter of the machine's.
  explicit Host(const std::optional<std::filesystem::path>& registryFolder = {},
                std::optional<std::size_t> rowMemory = {});
  ~Host();

  /// What a window works with; the settings outlive it.
  WindowParts Parts(QSettings* settings);
  component::Runtime& Runtime() noexcept { return m_runtime; }

 private:
  component::Runtime m_runtime;
  std::shared_ptr<MessageBoxes> m_boxes;
  std::shared_ptr<DataAccess> m_dataAccess;
  platform::Services m_services;
};

}  // namespace orvane::console

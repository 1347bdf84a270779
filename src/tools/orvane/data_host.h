// What the commands work with: the components that are registered, and the way to data. It has no
// window, and so no component that needs one is loaded.
// Made once by the program; one thread.
#pragma once

#include <filesystem>
#include <memory>
#include <optional>

#include "component/runtime.h"
#include "console/data_access/data_access.h"
#include "tools/orvane/interruption.h"
#include "tools/orvane/logon.h"

namespace orvane::tools {

class DataHost final : public platform::ObjectFactory {
 public:
  /// Components of the folder, where one is given, are found before all others. The operations are
  /// stopped by the interruption, which outlives this.
  DataHost(const std::optional<std::filesystem::path>& registryFolder,
           std::shared_ptr<Interruption> interruption, LogonOptions logon);

  platform::ConnectionPtr CreateConnection() override { return m_dataAccess->CreateConnection(); }
  platform::CommandPtr CreateCommand() override { return m_dataAccess->CreateCommand(); }
  platform::TableQueryPtr CreateTableQuery() override;
  /// An empty object of the class, for one that lies in a document. Fails with failure::kComponent.
  platform::ObjectPtr CreateObject(const platform::Text& sProgId);

  console::DataAccess& DataAccess() { return *m_dataAccess; }
  tools::Logon& Logon() { return *m_logon; }

 private:
  component::Runtime m_runtime;
  std::shared_ptr<tools::Logon> m_logon;
  std::shared_ptr<console::DataAccess> m_dataAccess;
};

}  // namespace orvane::tools

#include "tools/orvane/data_host.h"

#include <utility>

#include "controls/statements/table_query.h"
#include "platform/case_folding.h"

namespace orvane::tools {

using platform::Text;

namespace {

platform::Services ServicesOf(std::shared_ptr<Interruption> interruption) {
  platform::Services services;
  services.longOperation = std::move(interruption);
  return services;
}

}  // namespace

DataHost::DataHost(const std::optional<std::filesystem::path>& registryFolder,
                   std::shared_ptr<Interruption> interruption, LogonOptions logon)
    : m_runtime(
          component::Registry::Standard(registryFolder, component::Registry::RunningProgram())),
      m_logon(std::make_shared<tools::Logon>(std::move(logon))),
      m_dataAccess(std::make_shared<console::DataAccess>(
          m_runtime, ServicesOf(std::move(interruption)), m_logon)) {}

platform::TableQueryPtr DataHost::CreateTableQuery() {
  return std::make_shared<controls::TableQuery>();
}

platform::ObjectPtr DataHost::CreateObject(const Text& sProgId) {
  // The grid library has windows in it; its query object, which has none, is linked.
  if (platform::FoldCase(sProgId) == platform::FoldCase(platform::kTableQueryProgId)) {
    return CreateTableQuery();
  }
  return m_dataAccess->CreateObject(sProgId);
}

}  // namespace orvane::tools

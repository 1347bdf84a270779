#include "console/data_access/data_access.h"

#include "ado/command.h"
#include "console/data_access/component_providers.h"
#include "platform/failure.h"

namespace orvane::console {

using platform::Text;

namespace {

LogFileConsent::Notice NoticeIn(const platform::Services& services) {
  return [ui = services.ui, failures = services.failures](const platform::Failure& failure) {
    if (failures) failures->Note(failure);
    if (!ui) return;
    ui->MsgBox(failure.Description(), platform::MsgBoxButtons::OkOnly, platform::MsgBoxIcon::None,
               "Log File");
  };
}

}  // namespace

DataAccess::DataAccess(component::Runtime& runtime, const platform::Services& services,
                       std::shared_ptr<ado::LogonPrompt> prompt,
                       LogFileConsent::Question logFileQuestion,
                       std::optional<std::size_t> rowMemory)
    : m_runtime(runtime),
      m_services(services),
      m_optionTexts(std::make_shared<console::OptionTexts>()),
      m_consent(std::make_shared<LogFileConsent>(std::move(logFileQuestion), NoticeIn(services))),
      m_connectionServices{
          std::make_shared<ComponentProviders>(runtime, services, m_optionTexts, m_consent),
          std::move(prompt), services.longOperation, m_consent,
          std::make_shared<ado::MemoryBudget>(
              rowMemory.value_or(ado::MemoryBudget::QuarterOfMachine()))} {}

platform::ConnectionPtr DataAccess::CreateConnection() {
  return std::make_shared<ado::Connection>(m_connectionServices);
}

platform::CommandPtr DataAccess::CreateCommand() {
  return std::make_shared<ado::Command>();
}

platform::TableQueryPtr DataAccess::CreateTableQuery() {
  auto query =
      std::dynamic_pointer_cast<platform::TableQuery>(CreateObject(platform::kTableQueryProgId));
  if (!query) {
    throw platform::Failure(platform::failure::kComponent,
                            Text("The component registered as ") + platform::kTableQueryProgId +
                                " is no table query; register the grid library again.");
  }
  return query;
}

platform::ObjectPtr DataAccess::CreateObject(const Text& sProgId) {
  auto found = m_makers.find(sProgId);
  if (found == m_makers.end()) {
    found = m_makers.emplace(sProgId, m_runtime.Maker(sProgId)).first;
  }
  return found->second(m_services);
}

}  // namespace orvane::console

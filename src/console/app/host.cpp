#include "console/app/host.h"

#include "component/file_version.h"
#include "console/data_access/data_access.h"
#include "console/dialogs/log_file_question.h"
#include "console/dialogs/logon_dialog.h"
#include "console/dialogs/message_boxes.h"
#include "console/dialogs/unsent_rows_question.h"
#include "console/document/unsent_rows.h"
#include "console/forms/qt_forms.h"
#include "console/log/log_file.h"
#include "console/waiting/waiting.h"

namespace orvane::console {

using platform::Text;

namespace {

std::shared_ptr<platform::FailureLog> StandardLog() {
  auto path = LogFile::StandardPath();
  return path ? std::make_shared<LogFile>(*std::move(path)) : nullptr;
}

}  // namespace

Host::Host(const std::optional<std::filesystem::path>& registryFolder,
           std::optional<std::size_t> rowMemory)
    : m_runtime(
          component::Registry::Standard(registryFolder, component::Registry::RunningProgram())),
      m_boxes(std::make_shared<MessageBoxes>(StandardLog())) {
  m_services.unsentRows = std::make_shared<UnsentRows>(AskToGiveRowsUp);
  m_services.ui = m_boxes;
  m_services.failures = m_boxes;
  m_services.forms = std::make_shared<QtForms>();
  m_services.fileVersion = std::make_shared<component::FileVersion>();
  m_services.longOperation = std::make_shared<Waiting>();
  m_dataAccess = std::make_shared<DataAccess>(
      m_runtime, m_services, std::make_shared<LogonDialogPrompt>(), AskToWriteLogFile, rowMemory);
  m_services.objects = m_dataAccess;
}

Host::~Host() = default;

WindowParts Host::Parts(QSettings* settings) {
  WindowParts parts;
  parts.create = [this](const Text& sProgId, const platform::Services& services) {
    return m_runtime.CreateInstance(sProgId, services);
  };
  parts.createStored = [this](const Text& sProgId) { return m_dataAccess->CreateObject(sProgId); };
  parts.services = m_services;
  parts.boxes = m_boxes.get();
  parts.documentOpened = [this](const DocumentContent& content) {
    m_dataAccess->DocumentOpened(content.Texts());
  };
  parts.optionTexts = [this] { return m_dataAccess->OptionTexts(); };
  parts.eventEnded = [this] { m_dataAccess->ForgetClasses(); };
  parts.settings = settings;
  return parts;
}

}  // namespace orvane::console

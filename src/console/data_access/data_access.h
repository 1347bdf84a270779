// Makes the objects that the components ask the host for: connections and commands of the
// connection layer, and whatever is registered as a component. User-interface thread.
#pragma once

#include <map>
#include <optional>

#include "ado/connection.h"
#include "component/runtime.h"
#include "console/data_access/log_file_consent.h"
#include "console/data_access/option_texts.h"

namespace orvane::console {

class DataAccess : public platform::ObjectFactory {
 public:
  /// The services are handed on to what is made here; their long operation is the one that
  /// connections wait through. The question is asked about a log file that a document brings. The
  /// row memory is what the rows of all connections may take, in bytes; none means a quarter of the
  /// machine's.
  /// The runtime must outlive this and all that it made.
  DataAccess(component::Runtime& runtime, const platform::Services& services,
             std::shared_ptr<ado::LogonPrompt> prompt,
             LogFileConsent::Question logFileQuestion = {},
             std::optional<std::size_t> rowMemory = {});

  platform::ConnectionPtr CreateConnection() override;
  platform::CommandPtr CreateCommand() override;
  platform::TableQueryPtr CreateTableQuery() override;

  /// An empty object of the class, for one that lies in a document. Fails with
  /// failure::kComponent. The class is looked up at the first only, until ForgetClasses: a document
  /// holds thousands of one.
  platform::ObjectPtr CreateObject(const platform::Text& sProgId);
  /// Looks every class up anew from now on. Called when an event of the console is over, so that a
  /// component registered meanwhile is found.
  void ForgetClasses() { m_makers.clear(); }

  /// There is another document, with these texts in it as it was read.
  void DocumentOpened(std::vector<platform::Text> sTexts) {
    m_consent->DocumentOpened(std::move(sTexts));
  }
  /// The option texts of all connections opened so far, for DocumentState.
  std::vector<platform::Text> OptionTexts() const { return m_optionTexts->All(); }

 private:
  using Maker = std::function<platform::ObjectPtr(const platform::Services&)>;

  component::Runtime& m_runtime;
  platform::Services m_services;
  std::shared_ptr<console::OptionTexts> m_optionTexts;
  std::shared_ptr<LogFileConsent> m_consent;
  ado::ConnectionServices m_connectionServices;
  std::map<platform::Text, Maker> m_makers;
};

}  // namespace orvane::console

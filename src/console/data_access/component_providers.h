// Providers out of the component runtime, for the connection layer; notes the option texts of the
// sessions that they open and the servers, which it has them offer again, and keeps from them a log
// file that the user does not want, or that cannot be written.
#pragma once

#include "ado/provider_source.h"
#include "component/runtime.h"
#include "console/data_access/earlier_servers.h"
#include "console/data_access/log_file_consent.h"
#include "console/data_access/option_texts.h"

namespace orvane::console {

class ComponentProviders : public ado::ProviderSource {
 public:
  /// The services are handed to the providers. The runtime must outlive every connection.
  ComponentProviders(component::Runtime& runtime, platform::Services services,
                     std::shared_ptr<OptionTexts> optionTexts,
                     std::shared_ptr<LogFileConsent> consent);

  std::shared_ptr<ado::Provider> Find(std::string_view sName) override;

 private:
  component::Runtime& m_runtime;
  platform::Services m_services;
  std::shared_ptr<OptionTexts> m_optionTexts;
  std::shared_ptr<LogFileConsent> m_consent;
  EarlierServers m_earlier = EarlierServers::OfUser();
};

}  // namespace orvane::console

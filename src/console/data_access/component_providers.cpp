#include "console/data_access/component_providers.h"

#include <algorithm>
#include <utility>

#include "console/data_access/unlogged_session.h"
#include "platform/ado/extended_options.h"
#include "platform/failure.h"

namespace orvane::console {

using platform::Failure;
using platform::Text;

namespace {

/// A provider, looked over the shoulder.
class NotedProvider final : public ado::Provider {
 public:
  NotedProvider(std::shared_ptr<ado::Provider> provider, std::shared_ptr<OptionTexts> optionTexts,
                std::shared_ptr<LogFileConsent> consent, EarlierServers earlier)
      : m_provider(std::move(provider)),
        m_optionTexts(std::move(optionTexts)),
        m_consent(std::move(consent)),
        m_earlier(std::move(earlier)) {}

  std::vector<ado::PropertyDescription> Properties() const override {
    return m_provider->Properties();
  }
  /// Those that the provider knows go first: the first of all is the default.
  std::vector<Text> KnownServers() const override {
    std::vector<Text> servers = m_provider->KnownServers();
    for (Text& sServer : m_earlier.All()) {
      if (std::ranges::find(servers, sServer) == servers.end()) {
        servers.push_back(std::move(sServer));
      }
    }
    return servers;
  }
  std::unique_ptr<ado::Session> Open(const ado::ConnectionSettings& settings, const Text& sPassword,
                                     std::stop_token stop) override {
    auto session = OpenAsWanted(settings, sPassword, std::move(stop));
    m_optionTexts->Note(*session);
    m_earlier.Remember(settings.Find(platform::kDataSource).value_or(Text()));
    return session;
  }

 private:
  std::unique_ptr<ado::Session> OpenAsWanted(const ado::ConnectionSettings& settings,
                                             const Text& sPassword, std::stop_token stop) {
    const Text sLogFile = settings.Find(platform::kLogFileOption).value_or(Text());
    if (!m_consent->IsRefused(sLogFile)) {
      try {
        return m_provider->Open(settings, sPassword, stop);
      } catch (const Failure& failed) {
        // No others: a wrong password is not tried twice.
        const bool bMayBeLog = failed.Number() == platform::failure::kStorage ||
                               failed.Number() == platform::failure::kInvalidArgument;
        if (sLogFile.empty() || !bMayBeLog) throw;
        // It was the log when it goes without.
        auto session = OpenUnlogged(settings, sPassword, std::move(stop));
        m_consent->LeftOut(sLogFile, failed);
        return session;
      }
    }
    return OpenUnlogged(settings, sPassword, std::move(stop));
  }
  std::unique_ptr<ado::Session> OpenUnlogged(const ado::ConnectionSettings& settings,
                                             const Text& sPassword, std::stop_token stop) {
    auto unlogged = settings;
    unlogged.Set(platform::kLogFileOption, "");
    return std::make_unique<UnloggedSession>(
        m_provider->Open(unlogged, sPassword, std::move(stop)),
        settings.Find(platform::kLogFileOption).value_or(Text()));
  }

  std::shared_ptr<ado::Provider> m_provider;
  std::shared_ptr<OptionTexts> m_optionTexts;
  std::shared_ptr<LogFileConsent> m_consent;
  EarlierServers m_earlier;
};

}  // namespace

ComponentProviders::ComponentProviders(component::Runtime& runtime, platform::Services services,
                                       std::shared_ptr<OptionTexts> optionTexts,
                                       std::shared_ptr<LogFileConsent> consent)
    : m_runtime(runtime),
      m_services(std::move(services)),
      m_optionTexts(std::move(optionTexts)),
      m_consent(std::move(consent)) {}

std::shared_ptr<ado::Provider> ComponentProviders::Find(std::string_view sName) {
  if (!m_runtime.Classes().Find(sName)) return nullptr;
  return std::make_shared<NotedProvider>(m_runtime.Create<ado::Provider>(Text(sName), m_services),
                                         m_optionTexts, m_consent, m_earlier);
}

}  // namespace orvane::console

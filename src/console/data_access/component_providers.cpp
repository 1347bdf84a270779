#include "console/data_access/component_providers.h"

#include <utility>

namespace orvane::console {

using platform::Text;

namespace {

/// A provider, looked over the shoulder.
class NotedProvider final : public ado::Provider {
 public:
  NotedProvider(std::shared_ptr<ado::Provider> provider, std::shared_ptr<OptionTexts> optionTexts)
      : m_provider(std::move(provider)), m_optionTexts(std::move(optionTexts)) {}

  std::vector<ado::PropertyDescription> Properties() const override {
    return m_provider->Properties();
  }
  std::vector<Text> KnownServers() const override { return m_provider->KnownServers(); }
  std::unique_ptr<ado::Session> Open(const ado::ConnectionSettings& settings, const Text& sPassword,
                                     std::stop_token stop) override {
    auto session = m_provider->Open(settings, sPassword, std::move(stop));
    m_optionTexts->Note(*session);
    return session;
  }

 private:
  std::shared_ptr<ado::Provider> m_provider;
  std::shared_ptr<OptionTexts> m_optionTexts;
};

}  // namespace

ComponentProviders::ComponentProviders(component::Runtime& runtime, platform::Services services,
                                       std::shared_ptr<OptionTexts> optionTexts)
    : m_runtime(runtime), m_services(std::move(services)), m_optionTexts(std::move(optionTexts)) {}

std::shared_ptr<ado::Provider> ComponentProviders::Find(std::string_view sName) {
  if (!m_runtime.Classes().Find(sName)) return nullptr;
  return std::make_shared<NotedProvider>(m_runtime.Create<ado::Provider>(Text(sName), m_services),
                                         m_optionTexts);
}

}  // namespace orvane::console

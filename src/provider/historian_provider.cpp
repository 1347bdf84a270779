#include "provider/historian_provider.h"

#include "platform/ado/extended_options.h"
#include "provider/engines/embedded/embedded_engine.h"
#include "provider/engines/postgres/postgres_engine.h"
#include "provider/engines/sqlite/sqlite_engine.h"
#include "provider/historian/data_folder.h"

namespace orvane::provider {
namespace {

platform::Timestamp Now() {
  using namespace std::chrono;
  return floor<microseconds>(system_clock::now());
}

}  // namespace

HistorianProvider::HistorianProvider()
    : HistorianProvider(
          SessionPlace{{std::make_shared<engines::PostgresEngine>(),
                        std::make_shared<engines::EmbeddedEngine>(engines::EmbeddedPlace{
                            historian::DefaultRoot(), std::make_shared<engines::SqliteEngine>(),
                            historian::KnownHistorians::OfUser()})},
                       Now}) {}

HistorianProvider::HistorianProvider(SessionPlace place) : m_place(std::move(place)) {}

std::vector<ado::PropertyDescription> HistorianProvider::Properties() const {
  auto properties = SessionOptions::Descriptions();
  properties.push_back({SessionOptions::kStatementMemory, SessionOptions::kInitialMegabytes});
  // Known only of an open connection.
  properties.push_back({platform::kLinkInUse, platform::Text()});
  properties.push_back({platform::kTimeZoneInUse, platform::Text()});
  return properties;
}

std::vector<platform::Text> HistorianProvider::KnownServers() const {
  std::vector<platform::Text> servers;
  for (auto engine = m_place.engines.rbegin(); engine != m_place.engines.rend(); ++engine) {
    for (auto& sServer : (*engine)->KnownServers()) servers.push_back(std::move(sServer));
  }
  return servers;
}

std::unique_ptr<ado::Session> HistorianProvider::Open(const ado::ConnectionSettings& settings,
                                                      const platform::Text& sPassword,
                                                      std::stop_token stop) {
  return std::make_unique<HistorianSession>(m_place, settings, sPassword, stop);
}

}  // namespace orvane::provider

// Historians on PostgreSQL servers: a database is a historian, its schemas are the catalogs.
// Made by the provider; any thread.
#pragma once

#include "provider/engines/engine.h"

namespace orvane::provider::engines {

class PostgresEngine final : public Engine {
 public:
  platform::Boolean Serves(const platform::Text& sDataSource) const override;
  /// The services of the user's service file.
  std::vector<platform::Text> KnownServers() const override;
  /// A server on another machine is to encrypt what is sent, unless the address says otherwise:
  /// where it does not, nothing is sent to it and a sentence says so.
  std::unique_ptr<EngineSession> Open(const Logon& logon, const platform::Text& sPassword,
                                      std::stop_token stop) override;
};

}  // namespace orvane::provider::engines

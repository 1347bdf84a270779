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
  /// Makes a historian's table of catalogs in the database, with the schemas that there are; one
  /// that is there stays as it is. Fails as Open does, and without the right to make a schema.
  void MakeHistorian(const Logon& logon, const platform::Text& sPassword,
                     const std::stop_token& stop);
};

}  // namespace orvane::provider::engines

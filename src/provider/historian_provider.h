// "ORVOLEDB": the provider through which the connection layer reaches historians.
// Made by the class factory of libORVOLEDB; one thread at a time.
#pragma once

#include <chrono>

#include "provider/session.h"

namespace orvane::provider {

class HistorianProvider : public ado::Provider {
 public:
  /// The historians of this user, PostgreSQL servers, and the clock of this machine.
  HistorianProvider();
  explicit HistorianProvider(SessionPlace place);

  std::vector<ado::PropertyDescription> Properties() const override;
  std::vector<platform::Text> KnownServers() const override;
  /// The password goes on to the engine of the server, and nowhere else.
  std::unique_ptr<ado::Session> Open(const ado::ConnectionSettings& settings,
                                     const platform::Text& sPassword,
                                     std::stop_token stop) override;

 private:
  SessionPlace m_place;
};

}  // namespace orvane::provider

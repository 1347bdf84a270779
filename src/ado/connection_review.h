// A last look at a connection that is about to be opened, by the host that knows its user.
// Called on the thread that opens the connection, after the logon.
#pragma once

#include "ado/connection_settings.h"

namespace orvane::ado {

class ConnectionReview {
 public:
  ConnectionReview() = default;
  ConnectionReview(const ConnectionReview&) = delete;
  ConnectionReview& operator=(const ConnectionReview&) = delete;
  virtual ~ConnectionReview() = default;

  /// The settings are those that the provider is handed next. May ask the user; a failure keeps the
  /// connection from being opened.
  virtual void Review(const ConnectionSettings& settings) = 0;
  /// The connection with these settings is open now. Must not fail.
  virtual void Opened(const ConnectionSettings& /*settings*/) {}
};

}  // namespace orvane::ado

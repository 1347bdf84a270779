// Where a PostgreSQL server is, as a data source says it: an address that begins with
// "postgresql://" or "postgres://", or "service=NAME" of the user's service file. Documents bring
// data sources from anywhere, so only settings that name a server and how to reach it are taken.
// Used by the engine on PostgreSQL; pure functions, any thread.
#pragma once

#include <string_view>
#include <utility>
#include <vector>

#include "platform/types.h"

namespace orvane::provider::engines {

/// The settings of a connection by libpq's keywords, without user and password.
struct PostgresAddress {
  std::vector<std::pair<platform::Text, platform::Text>> settings;
  /// A user that the address names; whoever logs on as another goes before it.
  platform::Text sUser;
  /// Nobody but RequireEncryption wants the server to encrypt.
  platform::Boolean bMustEncrypt = false;

  /// The setting's value, empty when it is not there.
  platform::Text Setting(std::string_view sKeyword) const;
  /// The server as a sentence names it: its hosts, or its service.
  platform::Text Shown() const;
};

/// True when the data source is for PostgreSQL.
bool IsPostgresAddress(std::string_view sDataSource);

/// Fails with failure::kInvalidArgument for what cannot be read, for a password, and for settings
/// that do more than name a server and the way to it.
PostgresAddress ReadPostgresAddress(const platform::Text& sDataSource);

/// Has a server on another machine encrypt what is sent, where neither the address nor the service
/// file or the environment says whether it must. To do so where it can is what libpq does anyway
/// and counts as nothing said, but in the address.
void RequireEncryption(PostgresAddress& address);

}  // namespace orvane::provider::engines

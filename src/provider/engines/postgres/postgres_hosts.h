// The hosts of an address one by one, so that each has its time to answer: libpq keeps that time
// only in calls that hear no stop. Used by LogOn, and by what asks which hosts an address has, on
// the thread of its caller.
#pragma once

#include <stop_token>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/types.h"
#include "provider/engines/postgres/postgres_handle.h"

namespace orvane::provider::engines {

/// Keywords of libpq and their values.
using PostgresSettings = std::vector<std::pair<platform::Text, platform::Text>>;

/// One that is tried: a socket of this machine, or an address in digits.
struct PostgresHost {
  platform::Text sName;     ///< as it was written; its certificate is asked for that
  platform::Text sAddress;  ///< empty for a socket
  platform::Text sPort;     ///< empty for the usual one
};

struct PostgresHosts {
  std::vector<PostgresHost> hosts;
  platform::Text sProblem;  ///< what keeps others from being tried; may be empty
};

/// The settings with what libpq adds to them: of the user's service file, of the environment, and
/// its own. Null where it cannot read them, for the reason that goes to sProblem.
PostgresOptions CompletedSettings(const PostgresSettings& settings, platform::Text& sProblem);
/// The parts of a list with commas, which has one more part than commas.
std::vector<platform::Text> PartsOf(const platform::Text& sList);
/// The value of an option, empty when it has none.
platform::Text OptionOf(const PQconninfoOption* options, std::string_view sKeyword);
/// Its hosts, names looked up. A stop ends the looking up; the rest is then missing.
PostgresHosts HostsOf(const PQconninfoOption* options, const std::stop_token& stop);
/// The same as settings, for libpq to try one after the other.
PostgresSettings SettingsOf(const std::vector<PostgresHost>& hosts);
/// Which one is tried now.
std::size_t TriedOf(const PGconn* connection, const std::vector<PostgresHost>& hosts);
/// Puts more words behind those that say why there is no connection.
void AddWords(platform::Text& sWords, const platform::Text& sMore);
/// What libpq says of a host whose time is over.
platform::Text SilenceOf(const PostgresHost& host);

}  // namespace orvane::provider::engines

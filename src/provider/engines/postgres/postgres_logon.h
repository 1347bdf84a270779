// Connecting to a PostgreSQL server so that a stop is heard meanwhile.
// Used by PostgresLink, on the thread of its caller: whatever ends it, nothing goes on behind it.
#pragma once

#include <stop_token>

#include "provider/engines/postgres/postgres_address.h"
#include "provider/engines/postgres/postgres_handle.h"

namespace orvane::provider::engines {

/// Connects as the user, or as whom the address and libpq itself name where he is empty. All hosts
/// of the address are tried, each as long as its time limit says. Fails with kServerNotFound,
/// kNoRights or kCancelled. A stop is answered at once. The password stays the caller's; libpq
/// keeps it as long as the connection.
PostgresHandle LogOn(const PostgresAddress& address, const platform::Text& sUser,
                     const platform::Text& sPassword, const std::stop_token& stop);

}  // namespace orvane::provider::engines

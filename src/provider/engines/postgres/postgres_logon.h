// Connecting to a PostgreSQL server so that a stop is heard meanwhile.
// Used by PostgresLink, on the thread of its caller; the connecting has a thread of its own.
#pragma once

#include <stop_token>

#include "provider/engines/postgres/postgres_address.h"
#include "provider/engines/postgres/postgres_handle.h"

namespace orvane::provider::engines {

/// Connects as the user, or as whom the address and libpq itself name where he is empty. All hosts
/// of the address are tried. Fails with kServerNotFound, kNoRights or kCancelled. A stop is
/// answered at once; what is tried at that moment ends by itself, at the latest with its time
/// limit.
PostgresHandle LogOn(const PostgresAddress& address, const platform::Text& sUser,
                     platform::Text sPassword, const std::stop_token& stop);

}  // namespace orvane::provider::engines

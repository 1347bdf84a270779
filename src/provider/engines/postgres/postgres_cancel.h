// Asking a server to end what a connection has it do.
// Used by PostgresLink; any thread, while nobody else uses the connection.
#pragma once

#include <libpq-fe.h>

#include <chrono>

namespace orvane::provider::engines {

/// Asks and waits until the server has heard it, at most as long as said. Nothing of it goes on
/// when this returns. Whether the server does as it is asked is told by the connection.
void AskToEnd(PGconn* connection, std::chrono::milliseconds patience) noexcept;

}  // namespace orvane::provider::engines

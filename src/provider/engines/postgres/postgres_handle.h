// Owners of what libpq hands out, and the texts it tells with it.
// Used by the engine on PostgreSQL alone; one thread at a time.
#pragma once

#include <libpq-fe.h>

#include <memory>

namespace orvane::provider::engines {

struct PostgresEnds {
  void operator()(PGconn* connection) const noexcept { PQfinish(connection); }
  void operator()(PGresult* result) const noexcept { PQclear(result); }
  void operator()(PGcancel* cancel) const noexcept { PQfreeCancel(cancel); }
  void operator()(PQconninfoOption* options) const noexcept { PQconninfoFree(options); }
};

using PostgresHandle = std::unique_ptr<PGconn, PostgresEnds>;
using PostgresResult = std::unique_ptr<PGresult, PostgresEnds>;
using PostgresCancel = std::unique_ptr<PGcancel, PostgresEnds>;
using PostgresOptions = std::unique_ptr<PQconninfoOption, PostgresEnds>;

}  // namespace orvane::provider::engines

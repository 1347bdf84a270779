// Owners of what libpq hands out, and the texts it tells with it.
// Used by the engine on PostgreSQL alone; one thread at a time.
#pragma once

#include <libpq-fe.h>

#include <cstring>
#include <memory>

namespace orvane::provider::engines {

struct PostgresEnds {
  void operator()(PGconn* connection) const noexcept { PQfinish(connection); }
  void operator()(PGresult* result) const noexcept { PQclear(result); }
  void operator()(PGcancel* cancel) const noexcept { PQfreeCancel(cancel); }
  /// The password of a connection is among its options.
  void operator()(PQconninfoOption* options) const noexcept {
    for (auto* option = options; option->keyword != nullptr; ++option) {
      if (option->val != nullptr) explicit_bzero(option->val, std::strlen(option->val));
    }
    PQconninfoFree(options);
  }
};

using PostgresHandle = std::unique_ptr<PGconn, PostgresEnds>;
using PostgresResult = std::unique_ptr<PGresult, PostgresEnds>;
using PostgresCancel = std::unique_ptr<PGcancel, PostgresEnds>;
using PostgresOptions = std::unique_ptr<PQconninfoOption, PostgresEnds>;

}  // namespace orvane::provider::engines

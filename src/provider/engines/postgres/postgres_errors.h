// What PostgreSQL's errors mean to the rest of the system: a number, and a sentence. States are the
// five characters of the server's SQLSTATE (Appendix A of its manual). Used by the engine on
// PostgreSQL; any thread.
#pragma once

#include <string_view>

#include "platform/failure.h"
#include "provider/engines/postgres/postgres_handle.h"

namespace orvane::provider::engines {

/// A statement that was to read was begun, but wants to change something.
inline constexpr std::string_view kReadOnlyTransaction = "25006";

/// The failure number for a state.
platform::Long NumberOfState(std::string_view sState) noexcept;

/// What the server says of an error.
struct PostgresError {
  platform::Text sState;
  platform::Text sMessage;
  platform::Text sHint;
  std::size_t nPosition = 0;  ///< of a character in the statement as it was sent, from 1; 0 is none
};

/// What an error result says, on one line each.
PostgresError ErrorOf(const PGresult* result);

/// The sentence: what was wrong, where, and what to do. The server is as a sentence names it; the
/// position is counted in the statement as it was given, 0 is none.
platform::Text SentenceOf(const PostgresError& error, std::string_view sServer,
                          std::size_t nPosition);

/// The failure for a link that is gone.
platform::Failure LinkLost(std::string_view sServer, std::string_view sDetail,
                           platform::Text sSql = {});

/// The text that libpq keeps for what went wrong last, on one line and without a full stop.
platform::Text LastWords(const PGconn* connection);

}  // namespace orvane::provider::engines

#include "provider/engines/postgres/postgres_errors.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <new>

#include "platform/one_line.h"

namespace orvane::provider::engines {

namespace failure = platform::failure;
using platform::Long;
using platform::Text;

namespace {

constexpr std::size_t kMostOfAText = 1000;

// On one line, without what would end a sentence.
Text Quotable(std::string_view sText) {
  while (!sText.empty() && (sText.back() == '\n' || sText.back() == '.' || sText.back() == ' ')) {
    sText.remove_suffix(1);
  }
  Text sLine(sText);
  std::ranges::replace(sLine, '\n', ' ');
  std::ranges::replace(sLine, '\t', ' ');
  return platform::OneLine(sLine, kMostOfAText);
}

std::string_view FieldOf(const PGresult* result, int nField) {
  const char* const sField = PQresultErrorField(result, nField);
  return sField == nullptr ? std::string_view() : std::string_view(sField);
}

Text Lowered(Text sText) {
  // A message begins a sentence of its own; here it goes on with one. Names and states stay.
  const bool bWord = sText.size() > 1 && sText[1] >= 'a' && sText[1] <= 'z';
  if (bWord && sText[0] >= 'A' && sText[0] <= 'Z') sText[0] = static_cast<char>(sText[0] + 32);
  return sText;
}

// What a server advises whoever asks it; not what only its administrator could do.
Text FollowedHint(const PostgresError& error) {
  for (const std::string_view sOfServer :
       {"configuration parameter", "max_locks_per_transaction", "postgresql.conf", "pg_hba.conf",
        "server log", "superuser", "operator class"}) {
    if (error.sHint.find(sOfServer) != Text::npos) return {};
  }
  if (const auto nCasts = error.sHint.find(". You might need to add"); nCasts != Text::npos) {
    return Lowered(error.sHint.substr(0, nCasts)) +
           ": write CAST(... AS type) where a value is of another one";
  }
  return Lowered(error.sHint);
}

}  // namespace

Long NumberOfState(std::string_view sState) noexcept {
  const std::string_view sClass = sState.substr(0, 2);
  if (sState == "57014") return failure::kCancelled;
  if (sState == kReadOnlyTransaction) return failure::kWouldChange;
  if (sState == "42501" || sClass == "28") return failure::kNoRights;
  if (sState == "57P01" || sState == "57P02" || sState == "57P03" || sClass == "08") {
    return failure::kObjectClosed;
  }
  if (sState == "3D000") return failure::kServerNotFound;
  if (sState == "40001" || sState == "40P01" || sState == "55P03" || sState == "55006") {
    return failure::kBusy;
  }
  if (sClass == "23") return failure::kConstraint;
  if (sClass == "53" || sClass == "58" || sClass == "XX") return failure::kStorage;
  if (sClass == "0A" || sState == "25001") return failure::kNotSupported;
  return failure::kSqlError;
}

PostgresError ErrorOf(const PGresult* result) {
  PostgresError error;
  error.sState = FieldOf(result, PG_DIAG_SQLSTATE);
  // It is libpq's own, which over an open connection has no memory for the result.
  if (error.sState.empty()) throw std::bad_alloc();
  error.sMessage = Quotable(FieldOf(result, PG_DIAG_MESSAGE_PRIMARY));
  if (error.sMessage.empty()) error.sMessage = Quotable(PQresultErrorMessage(result));
  error.sHint = Quotable(FieldOf(result, PG_DIAG_MESSAGE_HINT));
  const std::string_view sPosition = FieldOf(result, PG_DIAG_STATEMENT_POSITION);
  std::from_chars(sPosition.data(), sPosition.data() + sPosition.size(), error.nPosition);
  return error;
}

Text SentenceOf(const PostgresError& error, std::string_view sServer, std::size_t nPosition) {
  switch (NumberOfState(error.sState)) {
    case failure::kCancelled:
      return "The statement was cancelled.";
    case failure::kNoRights:
      return fmt::format(
          "The server at {} refuses this to you ({}): ask its administrator for the right, or log "
          "on as another user.",
          sServer, error.sMessage);
    case failure::kBusy:
      return fmt::format(
          "What the statement needs is held by another program ({}): try again when that is done.",
          error.sMessage);
    case failure::kConstraint:
      return fmt::format("A rule of the table refuses this: {}; correct the row.", error.sMessage);
    case failure::kStorage:
      return fmt::format(
          "The server at {} cannot do this, as something of its own failed ({}): let its "
          "administrator look at it.",
          sServer, error.sMessage);
    case failure::kNotSupported:
      return fmt::format("The server does not do this here ({}): write it in another way.",
                         error.sMessage);
    default:
      break;
  }
  // The second is what its parser says of nesting.
  if (error.sState.starts_with("54") || error.sMessage.starts_with("memory exhausted")) {
    return fmt::format(
        "The statement is more than the server at {} does at once ({}): ask for less, or write it "
        "in a simpler way.",
        sServer, error.sMessage);
  }
  Text sSentence = "The statement cannot be run: " + Lowered(error.sMessage);
  if (nPosition != 0) sSentence += fmt::format(" (character {} of the statement)", nPosition);
  if (const Text sHint = FollowedHint(error); !sHint.empty()) sSentence += "; " + sHint;
  return sSentence + "; correct it.";
}

platform::Failure LinkLost(std::string_view sServer, std::string_view sDetail, Text sSql) {
  return {failure::kObjectClosed,
          fmt::format("The connection to the server at {} was lost ({}): connect again.", sServer,
                      sDetail),
          "PostgreSQL", 0, std::move(sSql)};
}

Text LastWords(const PGconn* connection) {
  const Text sWords = Quotable(PQerrorMessage(connection));
  return sWords.empty() ? "the server ended it" : sWords;
}

}  // namespace orvane::provider::engines

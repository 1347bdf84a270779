#include "provider/engines/postgres/postgres_session.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <limits>
#include <new>
#include <string_view>
#include <utility>

#include "ado/out_of_memory.h"
#include "ado/row_collector.h"
#include "platform/conversions.h"
#include "platform/quoting.h"
#include "provider/engines/postgres/postgres_batch.h"
#include "provider/engines/postgres/postgres_errors.h"
#include "provider/engines/postgres/postgres_fetch.h"
#include "provider/engines/postgres/postgres_forms.h"
#include "provider/engines/postgres/postgres_historian.h"
#include "provider/engines/postgres/postgres_parameters.h"
#include "provider/engines/postgres/postgres_refused_names.h"
#include "provider/engines/postgres/postgres_schema.h"
#include "provider/engines/written_place.h"

namespace orvane::provider::engines {

using platform::Failure;
using platform::RecordsetPtr;
using platform::RowIndex;
using platform::Text;
using platform::Value;
namespace failure = platform::failure;

namespace {

// What statements begin with that end a transaction, change how the session works, or talk to the
// client in a way that is not that of rows.
constexpr std::array<std::string_view, 24> kRefused = {
    "abort",   "begin",   "close", "commit",   "copy",      "deallocate", "declare", "discard",
    "end",     "execute", "fetch", "listen",   "load",      "lock",       "move",    "notify",
    "prepare", "release", "reset", "rollback", "savepoint", "set",        "start",   "unlisten"};

// The first word, in lower case; comments and brackets before it are passed over.
Text FirstWord(std::string_view sSql) {
  std::size_t nPlace = 0;
  while (nPlace < sSql.size()) {
    const std::string_view sRest = sSql.substr(nPlace);
    if (sRest.starts_with("--")) {
      nPlace = std::min(sSql.find('\n', nPlace), sSql.size());
    } else if (sRest.starts_with("/*")) {
      std::size_t nDepth = 1;
      for (nPlace += 2; nPlace < sSql.size() && nDepth > 0; ++nPlace) {
        const std::string_view sTwo = sSql.substr(nPlace, 2);
        if (sTwo == "/*" || sTwo == "*/") {
          nDepth += sTwo == "/*" ? 1 : static_cast<std::size_t>(-1);
          ++nPlace;
        }
      }
    } else if (std::string_view(" \t\r\n\f\v(;").find(sSql[nPlace]) != std::string_view::npos) {
      ++nPlace;
    } else {
      break;
    }
  }
  Text sWord;
  for (; nPlace < sSql.size(); ++nPlace) {
    const char character = sSql[nPlace];
    if (character >= 'A' && character <= 'Z') {
      sWord += static_cast<char>(character - 'A' + 'a');
    } else if (character >= 'a' && character <= 'z') {
      sWord += character;
    } else {
      break;
    }
  }
  return sWord;
}

// What certainly changes something need not be tried as a reading statement first.
bool CertainlyChanges(std::string_view sWord) {
  constexpr std::array<std::string_view, 9> kChanging = {
      "alter", "comment", "create", "delete", "drop", "grant", "insert", "truncate", "update"};
  return std::ranges::find(kChanging, sWord) != kChanging.end();
}

// Whoever waits for a statement ends it by himself at its time-out; the server does so a while
// after that, should nobody be left to tell it.
Text ServerTimeOut(std::chrono::milliseconds timeout) {
  if (timeout.count() <= 0) return {};
  constexpr std::chrono::milliseconds kLater = std::chrono::seconds(5);
  constexpr std::chrono::milliseconds kMost(std::numeric_limits<std::int32_t>::max());
  const auto most = std::min(timeout, kMost - kLater) + kLater;
  return "; SET LOCAL statement_timeout = " + std::to_string(most.count());
}

platform::Long LongOf(RowIndex rows) {
  return static_cast<platform::Long>(
      std::min<RowIndex>(rows, std::numeric_limits<platform::Long>::max()));
}

bool BeginsCharacter(char character) {
  return (static_cast<unsigned char>(character) & 0xC0U) != 0x80U;
}

// Where the character of that number, from 1, begins.
std::size_t ByteOf(std::string_view sText, std::size_t nCharacter) {
  std::size_t nByte = 0;
  for (std::size_t n = 0; nByte < sText.size(); ++nByte) {
    if (BeginsCharacter(sText[nByte]) && ++n == nCharacter) break;
  }
  return nByte;
}

}  // namespace

// A statement on its way.
struct PostgresSession::Call {
  const EngineStatement& statement;
  NumberedText text;
  std::stop_token stop;
  ado::RowReceiver& rows;

  void RequireNoStop() const {
    if (!stop.stop_requested()) return;
    throw Failure(failure::kCancelled, "The statement was cancelled.", "PostgreSQL", 0,
                  statement.sSql);
  }
  void RequireValues(std::size_t nGiven) const {
    if (nGiven == text.nParameters) return;
    throw Failure(failure::kInvalidArgument,
                  "The statement takes " + std::to_string(text.nParameters) + " parameters, but " +
                      std::to_string(nGiven) + " were given; give one value for each.",
                  "PostgreSQL", 0, statement.sSql);
  }
};

void PostgresSession::RequireFewValues(const Call& call) {
  // libpq takes a description of 7,490 at most, and gives up the connection over a longer one.
  constexpr std::size_t kMostValues = 7'000;
  const std::size_t nValues = call.statement.parameters.size();
  if (nValues <= kMostValues) return;
  throw Failure(failure::kSqlError,
                "The statement has " + std::to_string(nValues) +
                    " times and values, more than the 7000 that a PostgreSQL server is sent in "
                    "one; send it in several statements, or put them into a table and join that.",
                "PostgreSQL", 0, call.statement.sSql);
}

PostgresSession::PostgresSession(std::unique_ptr<PostgresLink> link, const std::stop_token& stop)
    : m_link(std::move(link)), m_sLink(m_link->Way()) {
  // One that this user may not read is as good as none.
  constexpr const char* kMay =
      "SELECT coalesce(has_table_privilege(t, 'SELECT') AND has_schema_privilege(s, 'USAGE'), "
      "false), coalesce(has_table_privilege(t, 'INSERT') AND has_table_privilege(t, 'DELETE') AND "
      "has_table_privilege(t, 'UPDATE'), false) FROM (SELECT "
      "to_regclass('\"Orvane\".\"Historians\"') AS t, to_regnamespace('\"Orvane\"') AS s) AS o";
  const auto rs = Ask(kMay, {}, stop);
  m_bRecords = platform::ToBoolean(rs->ValueAt(0, 0));
  m_bKeepsRecords = m_bRecords && platform::ToBoolean(rs->ValueAt(0, 1));
}

Abilities PostgresSession::Can() const {
  return {.refusedNames = kPostgresRefusedNames, .form = &kPostgresForm};
}

EngineResult PostgresSession::Run(const EngineStatement& statement, std::stop_token stop) {
  RequireOpen();
  const Text sWord = FirstWord(statement.sSql);
  if (std::ranges::binary_search(kRefused, sWord)) {
    throw Failure(failure::kNotSupported,
                  "The statement is refused: transactions, settings and cursors of the session are "
                  "not for statements; leave them out.",
                  "PostgreSQL", 0, statement.sSql);
  }
  if (statement.bReadOnly && CertainlyChanges(sWord)) throw WouldChange(statement.sSql);
  ado::RowCollector held({statement.maxBytes == 0
                              ? nullptr
                              : std::make_shared<ado::MemoryBudget>(statement.maxBytes)});
  const Call call{statement,
                  NumberParameters(statement.sSql, !statement.parameters.empty() ||
                                                       static_cast<bool>(statement.batch)),
                  std::move(stop), statement.rows ? *statement.rows : held};
  call.RequireNoStop();
  return ado::TellingMemory([&] {
    std::optional<EngineResult> result;
    const bool bReadOnly =
        statement.bReadOnly ||
        (!statement.catalogs.empty() &&
         std::ranges::all_of(statement.catalogs, [](const auto& one) { return one.bReadOnly; }));
    if (bReadOnly || !(CertainlyChanges(sWord) || statement.batch)) {
      result = Try(call, true);
    }
    if (!result) {
      if (bReadOnly) throw WouldChange(statement.sSql);
      result = Try(call, false);
    }
    if (!statement.rows) result->recordset = held.Recordset();
    return std::move(*result);
  });
}

std::optional<EngineResult> PostgresSession::Try(const Call& call, bool bReads) {
  EngineResult result;
  bool bWouldChange = false;
  Text sBegin = bReads ? "BEGIN READ ONLY" : "BEGIN READ WRITE";
  // What a definition names without a catalog, such as what a view reads, lies in its own. Other
  // statements find the server's functions only, whatever others have put into their catalogs.
  if (FirstWord(call.statement.sSql) == "create" && !call.statement.catalogs.empty()) {
    sBegin += "; SET LOCAL search_path = pg_catalog";
    for (const Catalog& catalog : call.statement.catalogs) {
      sBegin += ", " + platform::QuotedName(catalog.sName);
    }
  }
  sBegin += ServerTimeOut(call.statement.timeout);
  m_link->Command(sBegin.c_str(), call.stop);
  try {
    RunIn(call, bReads, result, bWouldChange);
    if (bWouldChange) {
      m_link->Rollback();
      return std::nullopt;
    }
    Commit(call, bReads);
  } catch (...) {
    m_link->Rollback();
    throw;
  }
  return result;
}

void PostgresSession::RunIn(const Call& call, bool bReads, EngineResult& result,
                            bool& bWouldChange) {
  const EngineStatement& statement = call.statement;
  if (statement.batch) {
    result.lRecordsAffected = LongOf(RunBatch(call));
    return;
  }
  call.RequireValues(statement.parameters.size());
  RequireFewValues(call);
  const PostgresParameters parameters(statement.parameters);
  const PostgresResult described = m_link->Prepare(call.text.sSql, parameters, call.stop);
  if (PQresultStatus(described.get()) != PGRES_COMMAND_OK) Fail(call, described.get());
  if (FirstWord(statement.sSql).empty() && PQnfields(described.get()) == 0) {
    throw Failure(failure::kSqlError, "There is no statement to run: the text is empty; write one.",
                  "PostgreSQL", 0, statement.sSql);
  }
  m_link->Execute(parameters, engines::IsReadInBinary(described.get()), statement.maxBytes);
  PostgresFetch fetch(*m_link, described.get(), m_columns,
                      {statement.maxRows, statement.maxBytes, bReads}, call.rows);
  PostgresResult error;
  try {
    error = fetch.TakeAll(call.stop);
  } catch (...) {
    // What the receiver does not take any more is not waited for.
    m_link->Abandon();
    throw;
  }
  if (error != nullptr) {
    if (bReads && !fetch.Begun() && ErrorOf(error.get()).sState == kReadOnlyTransaction) {
      bWouldChange = true;
      return;
    }
    Fail(call, error.get());
  }
  const RowIndex changed = bReads ? 0 : fetch.Changed();
  if (statement.rowsExpected && changed != *statement.rowsExpected) {
    throw UnexpectedRows(changed, *statement.rowsExpected, statement.sSql);
  }
  call.RequireNoStop();
  call.rows.End(fetch.Truncated());
  result.lRecordsAffected = LongOf(changed);
}

RowIndex PostgresSession::RunBatch(const Call& call) {
  call.rows.Begin({}, false);
  const RowIndex changed =
      PostgresBatch(*m_link, call.statement, call.text, call.stop, [&](const PGresult* error) {
        Fail(call, error);
      }).Run();
  call.rows.End(false);
  return changed;
}

void PostgresSession::Commit(const Call& call, bool bReads) {
  if (!bReads) {
    call.RequireNoStop();
    if (call.statement.mayCommit && !call.statement.mayCommit()) {
      throw Failure(failure::kCancelled, "The statement was cancelled.", "PostgreSQL", 0,
                    call.statement.sSql);
    }
  }
  // From here on a stop comes too late.
  try {
    m_link->Command("COMMIT", {});
  } catch (const Failure& failed) {
    if (bReads || failed.Number() != failure::kObjectClosed) throw;
    throw Failure(failure::kObjectClosed,
                  "The connection to the server at " + m_link->Server() +
                      " was lost while the change was stored, and nobody can tell whether it was: "
                      "connect again and look.",
                  "PostgreSQL", 0, call.statement.sSql);
  }
}

// The server counts characters from 1, of the text as it was sent; who wrote the statement counts
// those of the text as it was written.
std::size_t PostgresSession::PlaceOf(const Call& call, std::size_t nCharacter) {
  return WrittenPlace(call.statement, call.text.PlaceBefore(ByteOf(call.text.sSql, nCharacter)));
}

void PostgresSession::Fail(const Call& call, const PGresult* error) {
  const PostgresError told = ErrorOf(error);
  if (NumberOfState(told.sState) == failure::kWouldChange) throw WouldChange(call.statement.sSql);
  if (NumberOfState(told.sState) == failure::kObjectClosed) {
    throw LinkLost(m_link->Server(), told.sMessage, call.statement.sSql);
  }
  if (NumberOfState(told.sState) == failure::kCancelled && !call.stop.stop_requested()) {
    throw Failure(failure::kTimeout,
                  "The server at " + m_link->Server() +
                      " ended the statement before it was done (" + told.sMessage +
                      "): ask for less, or ask its administrator to allow it more time.",
                  "PostgreSQL", 0, call.statement.sSql);
  }
  const std::size_t nPlace = told.nPosition == 0 ? 0 : PlaceOf(call, told.nPosition);
  throw Failure(NumberOfState(told.sState), SentenceOf(told, m_link->Server(), nPlace),
                "PostgreSQL", 0, call.statement.sSql);
}

RecordsetPtr PostgresSession::Ask(const Text& sSql, std::vector<Value> vtParameters,
                                  const std::stop_token& stop) {
  EngineStatement statement{sSql, std::move(vtParameters), {}};
  statement.bReadOnly = true;
  return Run(statement, stop).recordset;
}

std::vector<TableSchema> PostgresSession::Schema(const Catalog& catalog,
                                                 const SchemaRequest& request,
                                                 std::stop_token stop) {
  RequireOpen();
  if (IsPostgresSystemCatalog(catalog.sName)) {
    return PostgresSystemTables(catalog.sName, request, m_bRecords);
  }
  return ReadPostgresSchema(
      catalog.sName, request,
      [&](const Text& sSql, std::vector<Value> vtParameters) {
        return Ask(sSql, std::move(vtParameters), stop);
      },
      m_columns);
}

void PostgresSession::RequireOpen() const {
  if (m_link == nullptr) {
    throw Failure(failure::kObjectClosed, "The connection is closed; connect again.", "PostgreSQL");
  }
  m_link->RequireOpen();
}

}  // namespace orvane::provider::engines

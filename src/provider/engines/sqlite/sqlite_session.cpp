#include "provider/engines/sqlite/sqlite_session.h"

#include <algorithm>
#include <limits>
#include <new>
#include <utility>

#include "ado/row_collector.h"
#include "platform/row_failure.h"
#include "provider/engines/sqlite/sqlite_errors.h"
#include "provider/engines/sqlite/sqlite_files.h"
#include "provider/engines/sqlite/sqlite_functions.h"
#include "provider/engines/sqlite/sqlite_memory.h"
#include "provider/engines/sqlite/sqlite_refusals.h"
#include "provider/engines/sqlite/sqlite_room.h"
#include "provider/engines/sqlite/sqlite_schema.h"
#include "provider/engines/sqlite/sqlite_statement.h"
#include "provider/engines/sqlite/sqlite_stored_times.h"
#include "provider/engines/sqlite/sqlite_watch.h"

namespace orvane::provider::engines {

using platform::Failure;
using platform::Text;
namespace failure = platform::failure;

namespace {

ado::RowStorage BoundedBy(std::size_t bytes) {
  return {bytes == 0 ? nullptr : std::make_shared<ado::MemoryBudget>(bytes)};
}

}  // namespace

SqliteSession::SqliteSession(SqliteHandle database, Catalog main,
                             std::chrono::milliseconds lockWait, bool bUtf8)
    : m_database(std::move(database)),
      m_main(std::move(main)),
      m_lockWait(lockWait),
      m_bUtf8(bUtf8) {}

EngineResult SqliteSession::Run(const EngineStatement& statement, std::stop_token stop) {
  RequireOpen();
  const Text sSubject = SubjectOf(statement.catalogs);
  SqliteWatch watch(m_database.get(), std::move(stop), m_lockWait, statement.mayCommit);
  return watch.Guard(statement.sSql, [&] {
    try {
      const SqliteAttachments attachments(m_database.get(), m_attached, statement.catalogs);
      SqliteRefusals refusals(m_database.get());
      const SqliteMemory memory(m_database.get(), statement.maxBytes);
      SqliteFunctions functions(m_database.get(), statement.functions);
      return functions.Guard([&] { return RunAttached(statement, sSubject, refusals, watch); });
    } catch (const std::bad_alloc&) {
      throw FailureOf(SQLITE_NOMEM, sSubject, {}, statement.sSql);
    }
  });
}

EngineResult SqliteSession::RunAttached(const EngineStatement& statement, const Text& sSubject,
                                        SqliteRefusals& refusals, SqliteWatch& watch) {
  SqliteStatement prepared(m_database.get(), statement, sSubject);
  // SQLite says of EXPLAIN what it says of the statement behind it; but that does not run.
  const bool bReads = prepared.ReadsOnly() || prepared.Explains();
  if (statement.bReadOnly && !bReads) throw WouldChange(statement.sSql);
  if (!statement.batch) prepared.Bind(statement.parameters);
  const auto nChangesBefore = sqlite3_total_changes64(m_database.get());
  platform::RowIndex batchChanged = 0;
  const auto changed = [&]() -> platform::RowIndex {
    if (statement.batch) return batchChanged;
    // The count of changes stays that of an earlier statement when this one changed nothing.
    if (bReads || sqlite3_total_changes64(m_database.get()) == nChangesBefore) return 0;
    return sqlite3_changes64(m_database.get());
  };
  ado::RowCollector held(BoundedBy(statement.maxBytes));
  ado::RowReceiver& rows = statement.rows ? *statement.rows : held;
  const auto run = [&] {
    CheckStoredTimes(m_database.get(), statement.storedTimes, sSubject);
    if (statement.batch) {
      rows.Begin({}, bReads);
      batchChanged = RunBatch(statement, prepared, watch);
      rows.End(false);
      return;
    }
    prepared.Fetch({statement.maxRows, statement.maxBytes, m_bUtf8}, rows, &watch);
    if (statement.rowsExpected && changed() != *statement.rowsExpected) {
      throw UnexpectedRows(changed(), *statement.rowsExpected, statement.sSql);
    }
  };
  try {
    // What was looked at stays as it is while the statement runs.
    const bool bAlone = bReads && statement.storedTimes.empty();
    if (bAlone || sqlite3_get_autocommit(m_database.get()) == 0) {
      run();
    } else {
      refusals.InTransaction(sSubject, run);
    }
  } catch (const Failure& failed) {
    if ((failed.NativeError() & kPrimaryCode) == SQLITE_FULL) {
      FailWithoutRoom(failed, statement.catalogs, bReads);
    }
    throw;
  }
  EngineResult result;
  if (!statement.rows) result.recordset = held.Recordset();
  result.lRecordsAffected = static_cast<platform::Long>(
      std::min<platform::RowIndex>(changed(), std::numeric_limits<platform::Long>::max()));
  return result;
}

platform::RowIndex SqliteSession::RunBatch(const EngineStatement& statement,
                                           SqliteStatement& prepared,
                                           const SqliteWatch& watch) const {
  platform::RowIndex all = 0;
  std::int64_t llRow = 0;
  std::vector<platform::Value> values;
  while (statement.batch(values)) {
    // Short runs hardly let the watch look from inside.
    watch.Check(statement.sSql);
    ++llRow;
    const auto nChangesBefore = sqlite3_total_changes64(m_database.get());
    platform::RowIndex changed = 0;
    try {
      prepared.Bind(values);
      prepared.Run();
      prepared.Reset();
      const bool bChanged = sqlite3_total_changes64(m_database.get()) != nChangesBefore;
      changed = bChanged ? sqlite3_changes64(m_database.get()) : 0;
      if (statement.rowsExpected && changed != *statement.rowsExpected) {
        throw UnexpectedRows(changed, *statement.rowsExpected, statement.sSql);
      }
    } catch (const Failure& failed) {
      throw platform::RowFailure(failed, llRow);
    }
    all += changed;
  }
  return all;
}

std::vector<TableSchema> SqliteSession::Schema(const Catalog& catalog, const SchemaRequest& request,
                                               std::stop_token stop) {
  RequireOpen();
  const SqliteWatch watch(m_database.get(), std::move(stop), m_lockWait);
  return watch.Guard({}, [&] {
    const auto read = [&](const Text& sQualifier) {
      return SqliteSchema(m_database.get(), sQualifier, engines::SubjectOf(catalog), m_bUtf8)
          .Read(request);
    };
    // The session's own database needs no attaching.
    if (!m_main.sPlace.empty() && catalog.sPlace == m_main.sPlace) return read("main");
    const SqliteAttachments attachments(m_database.get(), m_attached, {&catalog, 1});
    return read(catalog.sName);
  });
}

void SqliteSession::InTransaction(std::span<const Catalog> catalogs,
                                  const std::function<void()>& work, std::stop_token stop) {
  RequireOpen();
  const Text sSubject = SubjectOf(catalogs);
  std::optional<SqliteAttachments> attachments;
  // A watch lives for one call only: the work has its own.
  const auto watched = [&](const auto& call) {
    SqliteWatch(m_database.get(), stop, m_lockWait).Guard({}, call);
  };
  watched([&] {
    attachments.emplace(m_database.get(), m_attached, catalogs);
    SqliteStatement::RunOnce(m_database.get(), "BEGIN IMMEDIATE", sSubject);
  });
  try {
    work();
    watched([&] { SqliteStatement::RunOnce(m_database.get(), "COMMIT", sSubject); });
  } catch (...) {
    // A failure may have rolled back on its own; then this has nothing left to do.
    sqlite3_exec(m_database.get(), "ROLLBACK", nullptr, nullptr, nullptr);
    throw;
  }
}

void SqliteSession::Close() {
  m_database.reset();
}

void SqliteSession::RequireOpen() const {
  if (m_database == nullptr) {
    throw Failure(failure::kObjectClosed, "The session is closed: connect again.", "SQLite");
  }
}

Text SqliteSession::SubjectOf(std::span<const Catalog> catalogs) const {
  if (catalogs.empty()) return engines::SubjectOf(m_main);
  if (catalogs.size() == 1) return engines::SubjectOf(catalogs.front());
  Text sNames;
  for (const Catalog& catalog : catalogs) {
    sNames += (sNames.empty() ? "\"" : ", \"") + catalog.sName + '"';
  }
  return "One of the catalogs " + sNames;
}

}  // namespace orvane::provider::engines

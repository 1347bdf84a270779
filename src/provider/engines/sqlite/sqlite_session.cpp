#include "provider/engines/sqlite/sqlite_session.h"

#include <fmt/format.h>

#include <algorithm>
#include <limits>
#include <new>
#include <utility>

#include "platform/case_folding.h"
#include "platform/conversions.h"
#include "provider/engines/sqlite/sqlite_errors.h"
#include "provider/engines/sqlite/sqlite_files.h"
#include "provider/engines/sqlite/sqlite_functions.h"
#include "provider/engines/sqlite/sqlite_statement.h"
#include "provider/engines/sqlite/sqlite_types.h"

namespace orvane::provider::engines {

using platform::Failure;
using platform::Text;
using platform::Value;
namespace failure = platform::failure;

namespace {

Text Quoted(std::string_view sName, char quote = '"') {
  Text sQuoted(1, quote);
  for (const char character : sName) {
    if (character == quote) sQuoted += quote;
    sQuoted += character;
  }
  return sQuoted += quote;
}

Text TextOf(const platform::Recordset& rs, platform::RowIndex row, platform::ColumnIndex column) {
  return platform::ToText(rs.ValueAt(row, column));
}

}  // namespace

// What would change the session itself is not for statements: catalogs are within reach only
// while a statement names them, and a transaction left open would keep them there.
class SqliteSession::Authorized {
 public:
  explicit Authorized(SqliteSession& session) : m_session(session) {
    sqlite3_set_authorizer(m_session.m_database.get(), Authorize, this);
  }
  Authorized(const Authorized&) = delete;
  Authorized& operator=(const Authorized&) = delete;
  ~Authorized() { sqlite3_set_authorizer(m_session.m_database.get(), nullptr, nullptr); }

  // Does the work of one statement in a transaction: where a rule of conflicts is FAIL, SQLite
  // keeps the rows before the refused one.
  template <class Work>
  void InTransaction(const Text& sSubject, Work&& work) {
    const auto run = [&](const char* sSql) {
      m_bOwn = true;
      const Text sText = sSql;
      try {
        m_session.RunOwn(sText, sSubject);
      } catch (...) {
        m_bOwn = false;
        throw;
      }
      m_bOwn = false;
    };
    run("BEGIN");
    try {
      std::forward<Work>(work)();
      run("COMMIT");
    } catch (const Failure& failed) {
      RollBack();
      // Refused by SQLite itself only because of the transaction.
      if (failed.Description().find("cannot VACUUM") != Text::npos) {
        throw FailureOf(SQLITE_AUTH, sSubject, {}, failed.SqlText());
      }
      throw;
    } catch (...) {
      RollBack();
      throw;
    }
  }

 private:
  // A failure may have rolled back on its own; then this has nothing left to do.
  void RollBack() {
    m_bOwn = true;
    sqlite3_exec(m_session.m_database.get(), "ROLLBACK", nullptr, nullptr, nullptr);
    m_bOwn = false;
  }

  static int Authorize(void* authorized, int nAction, const char*, const char*, const char*,
                       const char*) {
    switch (nAction) {
      case SQLITE_TRANSACTION:
        return static_cast<const Authorized*>(authorized)->m_bOwn ? SQLITE_OK : SQLITE_DENY;
      case SQLITE_ATTACH:
      case SQLITE_DETACH:
      case SQLITE_PRAGMA:
      case SQLITE_SAVEPOINT:
        return SQLITE_DENY;
      default:
        return SQLITE_OK;
    }
  }

  SqliteSession& m_session;
  bool m_bOwn = false;
};

// The catalogs of one call, within reach while this lives. Those that an outer call has attached
// already stay with that one.
class SqliteSession::Attachments {
 public:
  Attachments(SqliteSession& session, std::span<const Catalog> catalogs) : m_session(session) {
    try {
      for (const Catalog& catalog : catalogs) Attach(catalog);
    } catch (...) {
      Detach();
      throw;
    }
  }
  Attachments(const Attachments&) = delete;
  Attachments& operator=(const Attachments&) = delete;
  ~Attachments() { Detach(); }

 private:
  void Attach(const Catalog& catalog) {
    if (m_session.m_attached.contains(platform::FoldCase(catalog.sName))) return;
    if (sqlite3_get_autocommit(m_session.m_database.get()) == 0) {
      // It could not be detached again before the end of the transaction.
      throw Failure(failure::kInvalidArgument,
                    fmt::format("The catalog \"{}\" is not part of the transaction: name it when "
                                "the transaction begins.",
                                catalog.sName),
                    "SQLite");
    }
    m_session.m_attached.insert(platform::FoldCase(catalog.sName));
    m_names.push_back(catalog.sName);
    CheckFile(catalog);
    const Text sSubject = engines::SubjectOf(catalog);
    m_session.RunOwn("ATTACH " + Quoted(UriOf(catalog), '\'') + " AS " + Quoted(catalog.sName),
                     sSubject);
    if (catalog.llMaxKilobytes == 0 || catalog.bReadOnly) return;
    // The limit belongs to the connection, not to the file.
    constexpr std::int64_t kPageKilobytes = 4;
    m_session.RunOwn(
        "PRAGMA " + Quoted(catalog.sName) + ".max_page_count = " +
            std::to_string(std::max<std::int64_t>(catalog.llMaxKilobytes / kPageKilobytes, 1)),
        sSubject);
  }

  void Detach() noexcept {
    for (const Text& sName : m_names) {
      m_session.m_attached.erase(platform::FoldCase(sName));
      // Of a catalog that could not be attached this fails, as it should.
      sqlite3_exec(m_session.m_database.get(), ("DETACH " + Quoted(sName)).c_str(), nullptr,
                   nullptr, nullptr);
    }
  }

  SqliteSession& m_session;
  std::vector<Text> m_names;
};

SqliteSession::SqliteSession(SqliteHandle database, Catalog main,
                             std::chrono::milliseconds lockWait, bool bUtf8)
    : m_database(std::move(database)),
      m_main(std::move(main)),
      m_lockWait(lockWait),
      m_bUtf8(bUtf8) {}

EngineResult SqliteSession::Run(const EngineStatement& statement, std::stop_token stop) {
  RequireOpen();
  const SqliteWatch watch(m_database.get(), std::move(stop), statement.timeout, m_lockWait);
  const Text sSubject = SubjectOf(statement.catalogs);
  return watch.Guard(statement.sSql, [&] {
    try {
      const Attachments attachments(*this, statement.catalogs);
      Authorized authorized(*this);
      SqliteFunctions functions(m_database.get(), statement.functions);
      return functions.Guard(
          [&] { return RunAttached(statement, sSubject, watch.Start(), authorized); });
    } catch (const std::bad_alloc&) {
      throw FailureOf(SQLITE_NOMEM, sSubject, {}, statement.sSql);
    }
  });
}

EngineResult SqliteSession::RunAttached(const EngineStatement& statement, const Text& sSubject,
                                        SqliteWatch::Clock::time_point start,
                                        Authorized& authorized) {
  SqliteStatement prepared(m_database.get(), statement.sSql, sSubject);
  // SQLite says of EXPLAIN what it says of the statement behind it; but that does not run.
  const bool bReads = prepared.ReadsOnly() || prepared.Explains();
  if (statement.bReadOnly && !bReads) throw WouldChange(statement.sSql);
  prepared.Bind(statement.parameters);
  const auto nChangesBefore = sqlite3_total_changes64(m_database.get());
  ado::RecordsetBuilder builder(prepared.Columns());
  bool bTruncated = false;
  const auto run = [&] {
    if (prepared.HasRows()) {
      bTruncated = prepared.Fetch(builder, statement.maxRows, m_bUtf8);
    } else {
      prepared.Run();
    }
  };
  if (bReads || sqlite3_get_autocommit(m_database.get()) == 0) {
    run();
  } else {
    authorized.InTransaction(sSubject, run);
  }
  EngineResult result;
  // The count of changes stays that of an earlier statement when this one changed nothing.
  if (!bReads && sqlite3_total_changes64(m_database.get()) != nChangesBefore) {
    result.lRecordsAffected = static_cast<platform::Long>(std::min<sqlite3_int64>(
        sqlite3_changes64(m_database.get()), std::numeric_limits<platform::Long>::max()));
  }
  result.recordset = builder.Finish(
      bTruncated,
      std::chrono::duration_cast<std::chrono::microseconds>(SqliteWatch::Clock::now() - start));
  return result;
}

std::vector<TableSchema> SqliteSession::Schema(const Catalog& catalog, const SchemaRequest& request,
                                               std::stop_token stop) {
  RequireOpen();
  const SqliteWatch watch(m_database.get(), std::move(stop), {}, m_lockWait);
  return watch.Guard({}, [&] {
    // The session's own database needs no attaching.
    if (!m_main.sPlace.empty() && catalog.sPlace == m_main.sPlace) {
      return ReadSchema("main", catalog, request);
    }
    const Attachments attachments(*this, {&catalog, 1});
    return ReadSchema(catalog.sName, catalog, request);
  });
}

std::vector<TableSchema> SqliteSession::ReadSchema(const Text& sQualifier, const Catalog& catalog,
                                                   const SchemaRequest& request) {
  const Text sSubject = engines::SubjectOf(catalog);
  enum class Columns : std::uint8_t { None, OfTables, OfAll };
  const auto query = [&](Columns which, const std::optional<Text>& sTable) {
    const bool bColumns = which != Columns::None;
    Text sSql = "SELECT m.name, m.type";
    if (bColumns)
      sSql +=
          ", c.name, c.type, c.\"notnull\", c.pk, c.dflt_value, c.hidden, "
          "CASE m.type WHEN 'view' THEN m.sql END";
    sSql += " FROM " + Quoted(sQualifier) + ".sqlite_master AS m";
    if (bColumns) {
      // The hidden columns of virtual tables are no columns to anyone but their module.
      const char* const sOf =
          which == Columns::OfAll ? "m.name" : "CASE m.type WHEN 'table' THEN m.name END";
      sSql += " LEFT JOIN pragma_table_xinfo(" + Text(sOf) + ", " + Quoted(sQualifier, '\'') +
              ") AS c ON c.hidden <> 1";
    }
    sSql += " WHERE m.type IN ('table', 'view') AND m.name NOT LIKE 'sqlite\\_%' ESCAPE '\\'";
    if (sTable) sSql += " AND m.name = ? COLLATE NOCASE";
    sSql += " ORDER BY m.name COLLATE NOCASE, m.name";
    if (bColumns) sSql += ", c.cid";
    SqliteStatement statement(m_database.get(), sSql, sSubject);
    std::vector<Value> vtParameters;
    if (sTable) vtParameters.emplace_back(*sTable);
    statement.Bind(vtParameters);
    ado::RecordsetBuilder builder(statement.Columns());
    statement.Fetch(builder, 0, m_bUtf8);
    return builder.Finish();
  };

  std::vector<TableSchema> tables;
  const auto read = [&](const platform::Recordset& rs) {
    for (platform::RowIndex row = 0; row < rs.RecordCount(); ++row) {
      const Text sName = TextOf(rs, row, 0);
      if (tables.empty() || tables.back().sName != sName) {
        tables.push_back({sName, TextOf(rs, row, 1) == "view", {}, {}});
      }
      if (rs.FieldCount() == 2) continue;
      if (tables.back().bView && tables.back().sViewText.empty()) {
        tables.back().sViewText = TextOf(rs, row, 8);
      }
      if (rs.ValueAt(row, 2).IsNull()) continue;
      ColumnSchema column;
      column.sName = TextOf(rs, row, 2);
      column.sDeclaredType = TextOf(rs, row, 3);
      column.type = TypeOfDeclaration(column.sDeclaredType);
      column.bNullable = !platform::ToBoolean(rs.ValueAt(row, 4));
      column.lKeyOrdinal = platform::ToLong(rs.ValueAt(row, 5));
      if (!rs.ValueAt(row, 6).IsNull()) column.sDefault = TextOf(rs, row, 6);
      column.bGenerated = platform::ToLong(rs.ValueAt(row, 7)) != 0;
      tables.back().columns.push_back(std::move(column));
    }
  };

  const auto tried = [&](Columns which) {
    try {
      tables.clear();
      read(*query(which, request.sTable));
      return true;
    } catch (const Failure& failed) {
      if (failed.Number() != failure::kSqlError || which == Columns::None) throw;
      return false;
    }
  };
  if (!request.bColumns) {
    tried(Columns::None);
  } else if (!tried(Columns::OfAll)) {
    // One view over something that is gone fails all. Then the tables at once and the views one
    // by one; where a table cannot be read either, one by one too.
    if (!tried(Columns::OfTables)) tried(Columns::None);
    std::vector<TableSchema> all = std::move(tables);
    for (TableSchema& table : all) {
      if (!table.columns.empty()) continue;
      try {
        tables.clear();
        read(*query(Columns::OfAll, table.sName));
        if (!tables.empty()) table = std::move(tables.front());
      } catch (const Failure& ofOne) {
        if (ofOne.Number() != failure::kSqlError) throw;
      }
    }
    tables = std::move(all);
  }

  for (TableSchema& table : tables) {
    // A key of one INTEGER column is the row's own number, which is never null.
    const auto bKey = [](const ColumnSchema& column) { return column.lKeyOrdinal != 0; };
    if (std::ranges::count_if(table.columns, bKey) != 1) continue;
    ColumnSchema& key = *std::ranges::find_if(table.columns, bKey);
    if (sqlite3_stricmp(key.sDeclaredType.c_str(), "INTEGER") == 0) key.bNullable = false;
  }
  return tables;
}

void SqliteSession::InTransaction(std::span<const Catalog> catalogs,
                                  const std::function<void()>& work, std::stop_token stop) {
  RequireOpen();
  const Text sSubject = SubjectOf(catalogs);
  std::optional<Attachments> attachments;
  // A watch lives for one call only: the work has its own.
  const auto watched = [&](const auto& call) {
    SqliteWatch(m_database.get(), stop, {}, m_lockWait).Guard({}, call);
  };
  watched([&] {
    attachments.emplace(*this, catalogs);
    RunOwn("BEGIN IMMEDIATE", sSubject);
  });
  try {
    work();
    watched([&] { RunOwn("COMMIT", sSubject); });
  } catch (...) {
    // A failure may have rolled back on its own; then this has nothing left to do.
    sqlite3_exec(m_database.get(), "ROLLBACK", nullptr, nullptr, nullptr);
    throw;
  }
}

void SqliteSession::RunOwn(const Text& sSql, const Text& sSubject) {
  SqliteStatement(m_database.get(), sSql, sSubject).Run();
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

// One session of the SQLite engine: a database file of its own or none, and the catalogs that a
// statement names, attached while it runs.
// Made by the engine; calls come one at a time, from changing threads.
#pragma once

#include "provider/engines/file_engine.h"
#include "provider/engines/sqlite/sqlite_attachments.h"
#include "provider/engines/sqlite/sqlite_handle.h"

namespace orvane::provider::engines {

class SqliteRefusals;
class SqliteStatement;
class SqliteWatch;

class SqliteSession final : public FileSession {
 public:
  /// bUtf8 tells that the database keeps its texts in UTF-8.
  SqliteSession(SqliteHandle database, Catalog main, std::chrono::milliseconds lockWait,
                bool bUtf8);
  ~SqliteSession() override = default;

  EngineResult Run(const EngineStatement& statement, std::stop_token stop) override;
  std::vector<TableSchema> Schema(const Catalog& catalog, const SchemaRequest& request,
                                  std::stop_token stop) override;
  void InTransaction(std::span<const Catalog> catalogs, const std::function<void()>& work,
                     std::stop_token stop) override;
  void Close() override;

 private:
  void RequireOpen() const;
  platform::Text SubjectOf(std::span<const Catalog> catalogs) const;
  EngineResult RunAttached(const EngineStatement& statement, const platform::Text& sSubject,
                           SqliteRefusals& refusals, SqliteWatch& watch);
  // Gives the number of rows that were changed.
  platform::RowIndex RunBatch(const EngineStatement& statement, SqliteStatement& prepared,
                              const SqliteWatch& watch) const;

  SqliteHandle m_database;
  Catalog m_main;
  std::chrono::milliseconds m_lockWait;
  bool m_bUtf8 = false;
  SqliteAttachments::Attached m_attached;
};

}  // namespace orvane::provider::engines

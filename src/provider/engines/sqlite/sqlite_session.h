// One session of the SQLite engine: a database file of its own or none, and the catalogs that a
// statement names, attached while it runs.
#pragma once

#include <sqlite3.h>

#include <memory>
#include <set>

#include "provider/engines/engine.h"
#include "provider/engines/sqlite/sqlite_watch.h"

namespace orvane::provider::engines {

struct CloseDatabase {
  void operator()(sqlite3* database) const { sqlite3_close_v2(database); }
};
using SqliteHandle = std::unique_ptr<sqlite3, CloseDatabase>;

class SqliteSession final : public EngineSession {
 public:
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
  class Attachments;
  class Authorized;

  void RequireOpen() const;
  platform::Text SubjectOf(std::span<const Catalog> catalogs) const;
  EngineResult RunAttached(const EngineStatement& statement, const platform::Text& sSubject,
                           SqliteWatch::Clock::time_point start, Authorized& authorized);
  void RunOwn(const platform::Text& sSql, const platform::Text& sSubject);
  std::vector<TableSchema> ReadSchema(const platform::Text& sQualifier, const Catalog& catalog,
                                      const SchemaRequest& request);

  SqliteHandle m_database;
  Catalog m_main;
  std::chrono::milliseconds m_lockWait;
  bool m_bUtf8 = false;
  std::set<platform::Text> m_attached;  // names folded
};

}  // namespace orvane::provider::engines

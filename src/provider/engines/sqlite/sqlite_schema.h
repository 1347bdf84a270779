// The tables and views of a database with their columns, as SQLite tells them.
// Used by the session for its own database and for catalogs that it has attached.
#pragma once

#include "provider/engines/file_engine.h"
#include "provider/engines/sqlite/sqlite_handle.h"

namespace orvane::provider::engines {

class SqliteSchema {
 public:
  /// The qualifier is the name under which the database has the catalog; bUtf8 tells that the
  /// database keeps its texts in UTF-8. All must outlive this.
  SqliteSchema(sqlite3* database, platform::Text sQualifier, platform::Text sSubject, bool bUtf8);

  /// See FileSession::Schema.
  std::vector<TableSchema> Read(const SchemaRequest& request) const;

 private:
  // Whose columns come with the list of tables.
  enum class Columns : std::uint8_t { None, OfTables, OfAll };

  platform::RecordsetPtr Query(Columns which, const std::optional<platform::Text>& sTable) const;
  std::vector<TableSchema> ReadAll(const std::optional<platform::Text>& sTable) const;
  std::vector<TableSchema> ReadOneByOne(const std::optional<platform::Text>& sTable) const;
  void ReadIndexes(std::vector<TableSchema>& tables,
                   const std::optional<platform::Text>& sTable) const;
  std::optional<std::vector<TableSchema>> Try(Columns which,
                                              const std::optional<platform::Text>& sTable) const;

  sqlite3* m_database;
  platform::Text m_sQualifier;
  platform::Text m_sSubject;
  bool m_bUtf8;
};

}  // namespace orvane::provider::engines

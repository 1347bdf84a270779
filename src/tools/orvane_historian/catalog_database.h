// A catalog's file, open for writing many rows: prepared statements and one transaction.
// Used by the subcommands of orvane-historian.
#pragma once

#include <functional>
#include <string_view>

#include "platform/value.h"
#include "provider/engines/engine.h"
#include "provider/engines/sqlite/sqlite_handle.h"
#include "provider/historian/catalog_record.h"

namespace orvane::tools {

class CatalogDatabase;

/// A statement that is run many times.
class PreparedStatement {
 public:
  PreparedStatement(CatalogDatabase& database, std::string_view sSql);

  /// Binds the next parameter. Fails with failure::kTypeMismatch for an object.
  PreparedStatement& operator<<(const platform::Value& vtValue);
  /// Runs it and makes it ready for the next parameters, also when it fails. True when it gave a
  /// row.
  bool Run();

 private:
  void Check(int nCode);

  CatalogDatabase& m_database;
  provider::engines::SqliteStatementHandle m_statement;
  int m_nParameter = 0;
};

class CatalogDatabase {
 public:
  /// Opens the catalog's file. Waits ten seconds for the locks of others.
  explicit CatalogDatabase(const provider::historian::CatalogRecord& record);

  void Execute(const char* sSql);
  /// Does the work in one transaction: all of it is there afterwards, or nothing.
  void InTransaction(const std::function<void()>& work);
  /// True when the catalog's file was moved, removed or replaced since it was opened.
  bool HasMoved() const;
  /// Throws the failure for the last error; a full disk is told apart from a catalog at its limit.
  [[noreturn]] void Fail();
  sqlite3* Handle() const { return m_database.get(); }

 private:
  provider::engines::Catalog m_catalog;
  provider::engines::SqliteHandle m_database;
};

}  // namespace orvane::tools

// A catalog's file, open for writing many rows: prepared statements and one transaction.
// Used by the subcommands of orvane-historian.
#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <string_view>

#include "platform/value.h"
#include "provider/historian/catalog_record.h"

namespace orvane::tools {

class CatalogDatabase;

/// A statement that is run many times.
class PreparedStatement {
 public:
  PreparedStatement(CatalogDatabase& database, std::string_view sSql);

  /// Binds the next parameter.
  PreparedStatement& operator<<(const platform::Value& vtValue);
  PreparedStatement& operator<<(std::string_view sText);
  PreparedStatement& operator<<(const platform::Text& sText) {
    return *this << std::string_view(sText);
  }
  PreparedStatement& operator<<(double dValue);
  PreparedStatement& operator<<(std::int64_t llValue);
  /// Runs it and makes it ready for the next parameters, also when it fails.
  void Run();

 private:
  struct Finalize {
    void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
  };
  void Check(int nCode);

  CatalogDatabase& m_database;
  std::unique_ptr<sqlite3_stmt, Finalize> m_statement;
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
  /// Throws the failure for the last error.
  [[noreturn]] void Fail();
  sqlite3* Handle() const { return m_database.get(); }

 private:
  struct CloseDatabase {
    void operator()(sqlite3* database) const { sqlite3_close_v2(database); }
  };

  platform::Text m_sSubject;
  std::int64_t m_llKilobytes;
  std::unique_ptr<sqlite3, CloseDatabase> m_database;
};

}  // namespace orvane::tools

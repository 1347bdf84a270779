#include "tests/console/scenarios/embedded_servers.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <filesystem>

#include "platform/conversions.h"
#include "platform/failure.h"
#include "platform/quoting.h"
#include "provider/engines/sqlite/sqlite_engine.h"
#include "provider/historian/data_folder.h"
#include "provider/historian/historian.h"

namespace orvane::console {

using platform::Text;
using platform::Value;

namespace {

/// The catalog's file, written to beside the console.
class CatalogDatabase {
 public:
  explicit CatalogDatabase(const std::filesystem::path& file) {
    if (sqlite3_open(file.c_str(), &m_db) != SQLITE_OK) ADD_FAILURE() << sqlite3_errmsg(m_db);
  }
  ~CatalogDatabase() { sqlite3_close(m_db); }
  CatalogDatabase(const CatalogDatabase&) = delete;
  CatalogDatabase& operator=(const CatalogDatabase&) = delete;

  void Run(const Text& sSql) {
    EXPECT_EQ(sqlite3_exec(m_db, sSql.c_str(), nullptr, nullptr, nullptr), SQLITE_OK)
        << sqlite3_errmsg(m_db) << " in " << sSql;
  }
  void Insert(const Text& sTable, const std::vector<Value>& values) {
    Text sSql = "INSERT INTO " + platform::QuotedName(sTable) + " VALUES (";
    for (std::size_t n = 0; n < values.size(); ++n) {
      if (n > 0) sSql += ", ";
      if (values[n].IsNull()) {
        sSql += "NULL";
      } else if (values[n].Kind() == platform::ValueKind::Text) {
        sSql += platform::QuotedText(platform::ToText(values[n]));
      } else {
        sSql += platform::ToText(values[n]);
      }
    }
    Run(sSql + ")");
  }

 private:
  sqlite3* m_db = nullptr;
};

Text DeclaredType(platform::DataType type) {
  switch (type) {
    case platform::DataType::Double:
      return "REAL";
    case platform::DataType::DBTimeStamp:
      return "TIMESTAMP";
    case platform::DataType::Integer:
      return "INTEGER";
    default:
      return "TEXT";
  }
}

std::filesystem::path CatalogFile(const Text& sServer, const Text& sCatalog) {
  provider::engines::SqliteEngine engine;
  provider::historian::Historian historian(provider::historian::DefaultRoot(), sServer, engine, {});
  const auto record = historian.Find(sCatalog, {});
  if (record) return record->file;
  return historian.CreateCatalog(sCatalog, "", 0, {}).file;
}

}  // namespace

void MakeServer(const scenarios::ServerSetup& server) {
  try {
    provider::historian::Historian::Make(provider::historian::DefaultRoot(), server.sName);
  } catch (const platform::Failure& e) {
    EXPECT_EQ(e.Number(), platform::failure::kKeyExists) << e.Description();
  }
  for (const auto& catalog : server.catalogs) {
    CatalogDatabase database(CatalogFile(server.sName, catalog.sName));
    for (const auto& table : catalog.tables) {
      Text sColumns;
      Text sKey;
      for (const auto& column : table.columns) {
        if (!sColumns.empty()) sColumns += ", ";
        sColumns += platform::QuotedName(column.sName) + " " + DeclaredType(column.type);
        if (!column.bNullable) sColumns += " NOT NULL";
        if (column.bKey) sKey += (sKey.empty() ? "" : ", ") + platform::QuotedName(column.sName);
      }
      if (!sKey.empty()) sColumns += ", PRIMARY KEY (" + sKey + ")";
      // Every catalog begins with the tables of a historian.
      database.Run("CREATE TABLE IF NOT EXISTS " + platform::QuotedName(table.sName) + " (" +
                   sColumns + ")");
      for (const auto& row : table.rows) database.Insert(table.sName, row);
    }
  }
}

void AppendRow(const Text& sServer, const Text& sCatalog, const Text& sTable,
               const std::vector<platform::Value>& values) {
  CatalogDatabase(CatalogFile(sServer, sCatalog)).Insert(sTable, values);
}

}  // namespace orvane::console

// A historian under a root of its own for one test, and strangers at work in its files.
#pragma once

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <filesystem>
#include <memory>
#include <set>

#include "provider/historian/data_folder.h"
#include "provider/historian/historian.h"
#include "tests/provider/temporary_root.h"

namespace orvane::provider::historian {

class HistorianFixture : public testing::Test {
 protected:
  using Text = platform::Text;

  std::unique_ptr<Historian> Open(const Text& sServer = "localhost",
                                  const KnownHistorians& known = {}) {
    return std::make_unique<Historian>(m_root.Path(), sServer, m_engine, std::stop_token(), known);
  }
  Text OpenFailure(const Text& sServer = "localhost") {
    return FailureOf([&] { Open(sServer); });
  }
  static Text Names(Historian& opened) {
    Text sNames;
    for (const auto& record : opened.Catalogs({})) sNames += record.sName + " ";
    return sNames;
  }

  // What is in the folder and below it, by paths without the folder's own.
  static std::set<Text> Content(const std::filesystem::path& folder) {
    std::set<Text> content;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
      content.insert(entry.path().lexically_relative(folder).string());
    }
    return content;
  }
  // How many rows the catalog can be given and gives back: 1 when it is whole.
  Text Rows(const CatalogRecord& record) {
    const auto session = m_engine.Open(EngineCatalog(record, false), {});
    engines::EngineStatement statement;
    statement.sSql = "INSERT OR REPLACE INTO Tags (Tag) VALUES ('T')";
    session->Run(statement, {});
    statement.sSql = "SELECT count(*) FROM Tags WHERE Tag = 'T'";
    return platform::ToText(session->Run(statement, {}).recordset->ValueAt(0, 0));
  }

  TemporaryRoot m_root;
  engines::SqliteEngine m_engine{std::chrono::milliseconds(50)};
};

// Another program at work in the file.
class Stranger {
 public:
  Stranger(const std::filesystem::path& file, const char* sSql) {
    sqlite3_open(file.c_str(), &m_database);
    m_nResult = sqlite3_exec(m_database, sSql, nullptr, nullptr, nullptr);
  }
  Stranger(const Stranger&) = delete;
  Stranger& operator=(const Stranger&) = delete;
  ~Stranger() { sqlite3_close(m_database); }
  int Result() const { return m_nResult; }

 private:
  sqlite3* m_database = nullptr;
  int m_nResult = 0;
};

}  // namespace orvane::provider::historian

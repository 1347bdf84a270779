// Listing a catalog of 10,000 tables with all their columns through a session: the number of
// statements that reach the database, and the time against the raw query of the same data.
#include <sqlite3.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "platform/conversions.h"
#include "provider/engines/embedded/embedded_engine.h"
#include "provider/engines/sqlite/sqlite_engine.h"
#include "provider/historian_provider.h"

namespace {

using namespace orvane;
using Clock = std::chrono::steady_clock;

constexpr int kTables = 10'000;
constexpr int kRuns = 5;

std::atomic<int> g_nStatements{0};

// What the database runs itself to answer a statement of ours it marks as a comment.
int Count(unsigned, void*, void*, void* text) {
  const std::string_view sText = static_cast<const char*>(text);
  if (!sText.starts_with("--")) ++g_nStatements;
  return 0;
}

int Watch(sqlite3* database, char**, const void*) {
  return sqlite3_trace_v2(database, SQLITE_TRACE_STMT, &Count, nullptr);
}

class Folder {
 public:
  Folder() {
    std::string sTemplate = std::filesystem::temp_directory_path() / "orvane-bench-XXXXXX";
    if (::mkdtemp(sTemplate.data()) == nullptr) throw std::runtime_error("no temporary folder");
    m_path = sTemplate;
  }
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;
  ~Folder() { std::filesystem::remove_all(m_path); }
  const std::filesystem::path& Path() const { return m_path; }

 private:
  std::filesystem::path m_path;
};

std::unique_ptr<ado::Session> OpenSession(const std::filesystem::path& root) {
  using namespace provider::engines;
  provider::HistorianProvider provider(
      {{std::make_shared<EmbeddedEngine>(EmbeddedPlace{root, std::make_shared<SqliteEngine>()})},
       [] { return platform::Timestamp(); }});
  return provider.Open(ado::ConnectionSettings::Parse(""), "", {});
}

void MakeTables(const std::filesystem::path& file) {
  sqlite3* database = nullptr;
  sqlite3_open(file.c_str(), &database);
  sqlite3_exec(database, "BEGIN", nullptr, nullptr, nullptr);
  for (int i = 0; i < kTables; ++i) {
    const std::string sSql = "CREATE TABLE Table" + std::to_string(i) +
                             " (Tag TEXT NOT NULL, Timestamp TIMESTAMP NOT NULL, Value REAL, "
                             "Status TEXT, PRIMARY KEY (Tag, Timestamp)) WITHOUT ROWID";
    sqlite3_exec(database, sSql.c_str(), nullptr, nullptr, nullptr);
  }
  sqlite3_exec(database, "COMMIT", nullptr, nullptr, nullptr);
  sqlite3_close(database);
}

// As the console does it: the tables, and then the columns of each.
std::int64_t List(ado::Session& session) {
  const std::vector<platform::Value> vtCatalog = {platform::Value("Plant1")};
  const auto tables = session.OpenSchema(platform::SchemaNumber::Tables, vtCatalog, {});
  std::int64_t llColumns = 0;
  for (tables->MoveFirst(); !tables->Eof(); tables->MoveNext()) {
    const std::vector<platform::Value> vtTable = {platform::Value("Plant1"), platform::Value(),
                                                  tables->Fields().Item("TABLE_NAME").Value()};
    const auto columns = session.OpenSchema(platform::SchemaNumber::Columns, vtTable, {});
    llColumns += columns->RecordCount();
  }
  return llColumns;
}

std::int64_t ListRaw(const std::filesystem::path& file) {
  sqlite3* database = nullptr;
  sqlite3_open_v2(file.c_str(), &database, SQLITE_OPEN_READONLY, nullptr);
  sqlite3_stmt* statement = nullptr;
  sqlite3_prepare_v2(database,
                     "SELECT m.name, m.type, c.name, c.type, c.\"notnull\", c.pk, c.dflt_value "
                     "FROM sqlite_master AS m JOIN pragma_table_xinfo(m.name) AS c WHERE m.type IN "
                     "('table', 'view') ORDER BY m.name COLLATE NOCASE, c.cid",
                     -1, &statement, nullptr);
  std::int64_t llColumns = 0;
  std::size_t nBytes = 0;
  while (sqlite3_step(statement) == SQLITE_ROW) {
    for (int nColumn = 0; nColumn < 7; ++nColumn) {
      const auto* const text =
          reinterpret_cast<const char*>(sqlite3_column_text(statement, nColumn));
      if (text != nullptr) nBytes += std::string_view(text).size();
    }
    ++llColumns;
  }
  sqlite3_finalize(statement);
  sqlite3_close(database);
  return nBytes > 0 ? llColumns : 0;
}

template <class Work>
double Seconds(Work&& work, std::int64_t& llColumns) {
  const auto start = Clock::now();
  llColumns = work();
  return std::chrono::duration<double>(Clock::now() - start).count();
}

double Median(std::vector<double> times) {
  std::sort(times.begin(), times.end());
  return times[times.size() / 2];
}

}  // namespace

int main() {
  const Folder folder;
  auto session = OpenSession(folder.Path());
  session->Execute({"CREATE DATABASE \"Plant1\" ", 0, {}}, {});
  const auto file = folder.Path() / "historians" / "localhost" / "catalogs" / "Plant1.db";
  MakeTables(file);

  std::vector<double> ours;
  std::vector<double> raw;
  std::int64_t llOurs = 0;
  std::int64_t llRaw = 0;
  for (int run = 0; run < kRuns; ++run) {
    raw.push_back(Seconds([&] { return ListRaw(file); }, llRaw));
    ours.push_back(Seconds([&] { return List(*session); }, llOurs));
  }

  // Counted apart from the times, which counting would lengthen.
  sqlite3_auto_extension(reinterpret_cast<void (*)()>(&Watch));
  session = OpenSession(folder.Path());
  g_nStatements = 0;
  List(*session);
  std::printf("catalog_listing: %d tables, %lld columns: %d statements (at most 3)\n", kTables,
              static_cast<long long>(llOurs), g_nStatements.load());
  std::printf("catalog_listing: %.1f ms, raw %.1f ms: %.2f times the raw call (medians of %d)\n",
              Median(ours) * 1e3, Median(raw) * 1e3, Median(ours) / Median(raw), kRuns);
  return llOurs == llRaw && g_nStatements <= 3 ? 0 : 1;
}

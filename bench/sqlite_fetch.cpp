// Fetching a million rows of four columns from a SQLite file into a recordset, against a bare loop
// over sqlite3_step that reads each value; and the memory that the recordset holds.
#include <benchmark/benchmark.h>
#include <malloc.h>
#include <sqlite3.h>
#include <unistd.h>

#include <filesystem>
#include <stdexcept>
#include <string>

#include "provider/engines/sqlite/sqlite_engine.h"

namespace {

using orvane::provider::engines::SqliteEngine;

constexpr std::int64_t kRows = 1'000'000;

// History as a server keeps it: few tags, a time, a number, a status. And, for comparison, texts
// of which no two are equal.
constexpr const char* kHistory = "SELECT Tag, Timestamp, Value, Status FROM Data";
constexpr const char* kDistinct = "SELECT Text FROM Distinct_";

class File {
 public:
  File() {
    std::string sTemplate = std::filesystem::temp_directory_path() / "orvane-bench-XXXXXX";
    if (::mkdtemp(sTemplate.data()) == nullptr) throw std::runtime_error("mkdtemp");
    m_folder = sTemplate;
    sqlite3* database = nullptr;
    sqlite3_open(Path().c_str(), &database);
    const std::string sCount = std::to_string(kRows);
    const std::string sNumbers =
        "WITH RECURSIVE c(x) AS (SELECT 0 UNION ALL SELECT x + 1 FROM c LIMIT " + sCount + ") ";
    const std::string sSql =
        "PRAGMA journal_mode = WAL; BEGIN;"
        "CREATE TABLE Data(Tag TEXT NOT NULL, Timestamp TIMESTAMP NOT NULL, Value REAL, "
        "Status INTEGER);" +
        sNumbers +
        "INSERT INTO Data SELECT 'plant.unit' || (x % 20), 1700000000000000 + x * 50000, "
        "x / 7.0, x % 3 FROM c;"
        "CREATE TABLE Distinct_(Text TEXT);" +
        sNumbers + "INSERT INTO Distinct_ SELECT 'message number ' || x FROM c; COMMIT";
    char* sMessage = nullptr;
    if (sqlite3_exec(database, sSql.c_str(), nullptr, nullptr, &sMessage) != SQLITE_OK) {
      throw std::runtime_error(sMessage);
    }
    sqlite3_close(database);
  }
  File(const File&) = delete;
  File& operator=(const File&) = delete;
  ~File() { std::filesystem::remove_all(m_folder); }

  std::string Path() const { return m_folder / "bench.db"; }

 private:
  std::filesystem::path m_folder;
};

const File& TheFile() {
  static const File file;
  return file;
}

// Both sides open the file in the same way.
void Raw(benchmark::State& state, const char* sSql, const std::string& sTypes) {
  sqlite3* database = nullptr;
  sqlite3_open_v2(TheFile().Path().c_str(), &database, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX,
                  nullptr);
  for (auto _ : state) {
    sqlite3_stmt* statement = nullptr;
    sqlite3_prepare_v2(database, sSql, -1, &statement, nullptr);
    const int nColumns = sqlite3_column_count(statement);
    std::int64_t rows = 0;
    while (sqlite3_step(statement) == SQLITE_ROW) {
      for (int nColumn = 0; nColumn < nColumns; ++nColumn) {
        switch (sTypes[static_cast<std::size_t>(nColumn)]) {
          case 't':
            benchmark::DoNotOptimize(sqlite3_column_text(statement, nColumn));
            benchmark::DoNotOptimize(sqlite3_column_bytes(statement, nColumn));
            break;
          case 'd':
            benchmark::DoNotOptimize(sqlite3_column_double(statement, nColumn));
            break;
          default:
            benchmark::DoNotOptimize(sqlite3_column_int64(statement, nColumn));
        }
      }
      ++rows;
    }
    sqlite3_finalize(statement);
    if (rows != kRows) state.SkipWithError("not all rows came");
  }
  sqlite3_close(database);
}

double HeldBytes() {
  const struct mallinfo2 info = mallinfo2();
  return static_cast<double>(info.uordblks + info.hblkhd);
}

void Recordset(benchmark::State& state, const char* sSql) {
  const auto session = SqliteEngine().Open({"bench", TheFile().Path()}, {});
  // What SQLite keeps for itself after the first statement is not the recordset's.
  session->Run({sSql, {}, {}, 1}, {});
  double bytesPerRow = 0;
  for (auto _ : state) {
    const double before = HeldBytes();
    auto result = session->Run({sSql, {}, {}}, {});
    state.PauseTiming();
    bytesPerRow = (HeldBytes() - before) / static_cast<double>(kRows);
    if (result.recordset->RecordCount() != kRows) state.SkipWithError("not all rows came");
    result = {};
    state.ResumeTiming();
  }
  state.counters["held_bytes_per_row"] = bytesPerRow;
}

BENCHMARK_CAPTURE(Raw, history, kHistory, "tidi")
    ->Name("fetch_4_columns/raw")
    ->Unit(benchmark::kMillisecond)
    ->Iterations(1);
BENCHMARK_CAPTURE(Recordset, history, kHistory)
    ->Name("fetch_4_columns/recordset")
    ->Unit(benchmark::kMillisecond)
    ->Iterations(1);
BENCHMARK_CAPTURE(Raw, distinct, kDistinct, "t")
    ->Name("fetch_distinct_texts/raw")
    ->Unit(benchmark::kMillisecond)
    ->Iterations(1);
BENCHMARK_CAPTURE(Recordset, distinct, kDistinct)
    ->Name("fetch_distinct_texts/recordset")
    ->Unit(benchmark::kMillisecond)
    ->Iterations(1);

}  // namespace

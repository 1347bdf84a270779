// Exporting a million rows of four columns as CSV, streamed from a SQLite file, against the shell
// of SQLite writing the same rows with ".mode csv"; and the most memory that this program had
// resident.
#include <sqlite3.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

#include "ado/fetch.h"
#include "exports/row_export.h"
#include "provider/engines/sqlite/sqlite_engine.h"

namespace {

using namespace orvane;
using Clock = std::chrono::steady_clock;

constexpr std::int64_t kRows = 1'000'000;
constexpr int kRuns = 5;
constexpr const char* kSelect = "SELECT Tag, Timestamp, Value, Status FROM Data";

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
  std::string operator/(const char* sName) const { return m_path / sName; }

 private:
  std::filesystem::path m_path;
};

void Fill(const std::string& sPath) {
  sqlite3* database = nullptr;
  sqlite3_open(sPath.c_str(), &database);
  // The times are plain numbers for the shell, so they are for this program too: both write the
  // same digits.
  const std::string sSql =
      "BEGIN; CREATE TABLE Data(Tag TEXT NOT NULL, Timestamp INTEGER NOT NULL, Value REAL, "
      "Status INTEGER);"
      "WITH RECURSIVE c(x) AS (SELECT 0 UNION ALL SELECT x + 1 FROM c LIMIT " +
      std::to_string(kRows) +
      ") INSERT INTO Data SELECT 'plant.unit' || (x % 20), 1700000000000000 + x * 50000, x / 7.0, "
      "x % 3 FROM c; COMMIT";
  char* sMessage = nullptr;
  if (sqlite3_exec(database, sSql.c_str(), nullptr, nullptr, &sMessage) != SQLITE_OK) {
    throw std::runtime_error(sMessage);
  }
  sqlite3_close(database);
}

double Milliseconds(Clock::time_point since) {
  return std::chrono::duration<double, std::milli>(Clock::now() - since).count();
}

double Ours(const std::string& sDatabase, const std::string& sFile) {
  const auto start = Clock::now();
  exports::RowExport target({}, sFile);
  ado::FetchWishes wishes;
  wishes.sink = [&target](const platform::RecordsetPtr& rows) { target.Rows(*rows); };
  const auto fetch = std::make_shared<ado::Fetch>(std::move(wishes), nullptr);
  provider::engines::EngineStatement statement;
  statement.sSql = kSelect;
  statement.rows = fetch;
  provider::engines::SqliteEngine().Open({"bench", sDatabase}, {})->Run(statement, {});
  if (target.Finish(false).rows != kRows) throw std::runtime_error("not all rows came");
  return Milliseconds(start);
}

double Shell(const std::string& sDatabase, const std::string& sFile) {
  const std::string sCommand =
      "sqlite3 -csv -header '" + sDatabase + "' '" + kSelect + "' > '" + sFile + "'";
  const auto start = Clock::now();
  if (std::system(sCommand.c_str()) != 0) return 0;
  return Milliseconds(start);
}

double Median(std::vector<double> times) {
  std::ranges::sort(times);
  return times[times.size() / 2];
}

}  // namespace

int main() {
  const Folder folder;
  const std::string sDatabase = folder / "bench.db";
  Fill(sDatabase);
  std::vector<double> ours;
  std::vector<double> shell;
  for (int nRun = 0; nRun < kRuns; ++nRun) {
    ours.push_back(Ours(sDatabase, folder / "ours.csv"));
    shell.push_back(Shell(sDatabase, folder / "shell.csv"));
  }
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  std::printf("export of %lld rows: %.0f ms", static_cast<long long>(kRows), Median(ours));
  if (Median(shell) > 0) {
    std::printf(", the shell of SQLite %.0f ms: %.2f times that", Median(shell),
                Median(ours) / Median(shell));
  } else {
    std::printf("; the shell of SQLite (sqlite3) is not on this machine");
  }
  std::printf("\n%.1f MB resident at most\n", static_cast<double>(usage.ru_maxrss) / 1024);
  return 0;
}

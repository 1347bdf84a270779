// Importing a million rows of four columns from a file of comma-separated values, as a grid does:
// read row by row, checked, and stored in one transaction. Against the shell of SQLite, which
// imports the same file without looking at types; and the most memory that this program had
// resident.
#include <sqlite3.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "exports/row_import.h"
#include "provider/engines/sqlite/sqlite_engine.h"

namespace {

using namespace orvane;
using Clock = std::chrono::steady_clock;

constexpr std::int64_t kRows = 1'000'000;
constexpr int kRuns = 3;
constexpr const char* kTable =
    "CREATE TABLE Data(Tag TEXT NOT NULL, Timestamp TIMESTAMP NOT NULL, Value REAL, Status "
    "INTEGER)";

class ScratchFolder {
 public:
  ScratchFolder() {
    std::string sTemplate = std::filesystem::temp_directory_path() / "orvane-bench-XXXXXX";
    if (::mkdtemp(sTemplate.data()) == nullptr) throw std::runtime_error("no temporary folder");
    m_path = sTemplate;
  }
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;
  ~ScratchFolder() { std::filesystem::remove_all(m_path); }
  std::string operator/(const char* sName) const { return m_path / sName; }

 private:
  std::filesystem::path m_path;
};

void WriteRows(const std::string& sPath) {
  std::ofstream file(sPath, std::ios::binary);
  file << "Tag,Timestamp,Value,Status\r\n";
  for (std::int64_t i = 0; i < kRows; ++i) {
    const auto second = static_cast<int>(i % 60);
    const auto minute = static_cast<int>(i / 60 % 60);
    const auto hour = static_cast<int>(i / 3600 % 24);
    const auto day = static_cast<int>(i / 86400 % 28) + 1;
    char sRow[100];
    std::snprintf(sRow, sizeof sRow, "plant.unit%d,2024-05-%02d %02d:%02d:%02d+00:00,%.17g,%d\r\n",
                  static_cast<int>(i % 20), day, hour, minute, second, static_cast<double>(i) / 7.0,
                  static_cast<int>(i % 3));
    file << sRow;
  }
}

void MakeTable(const std::string& sDatabase) {
  std::filesystem::remove(sDatabase);
  sqlite3* database = nullptr;
  sqlite3_open(sDatabase.c_str(), &database);
  sqlite3_exec(database, kTable, nullptr, nullptr, nullptr);
  sqlite3_close(database);
}

double SinceThen(Clock::time_point since) {
  return std::chrono::duration<double, std::milli>(Clock::now() - since).count();
}

double OurImport(const std::string& sDatabase, const std::string& sFile) {
  using platform::DataType;
  MakeTable(sDatabase);
  const std::vector<exports::ImportColumn> columns{{"Tag", DataType::WChar},
                                                   {"Timestamp", DataType::DBTimeStamp},
                                                   {"Value", DataType::Double},
                                                   {"Status", DataType::BigInt}};
  const auto start = Clock::now();
  std::ifstream file(sFile, std::ios::binary);
  exports::RowImport rows(file, "Data", columns, zones::TimeZone::Utc());
  provider::engines::EngineStatement statement;
  statement.sSql = "INSERT INTO Data VALUES (?, ?, ?, ?)";
  statement.rowsExpected = 1;
  statement.batch = [&rows](std::vector<platform::Value>& values) { return rows.Next(values); };
  const auto result =
      provider::engines::SqliteEngine().Open({"bench", sDatabase}, {})->Run(statement, {});
  if (result.lRecordsAffected != kRows) throw std::runtime_error("not all rows were stored");
  return SinceThen(start);
}

double ShellImport(const std::string& sDatabase, const std::string& sFile) {
  MakeTable(sDatabase);
  const std::string sCommand =
      "sqlite3 '" + sDatabase + "' '.mode csv' '.import --skip 1 " + sFile + " Data'";
  const auto start = Clock::now();
  if (std::system(sCommand.c_str()) != 0) return 0;
  return SinceThen(start);
}

double MiddleOf(std::vector<double> times) {
  std::ranges::sort(times);
  return times[times.size() / 2];
}

}  // namespace

int main() {
  const ScratchFolder folder;
  const std::string sFile = folder / "rows.csv";
  WriteRows(sFile);
  std::vector<double> ours;
  std::vector<double> shell;
  for (int nRun = 0; nRun < kRuns; ++nRun) {
    ours.push_back(OurImport(folder / "ours.db", sFile));
    shell.push_back(ShellImport(folder / "shell.db", sFile));
  }
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  std::printf("import of %lld rows: %.0f ms", static_cast<long long>(kRows), MiddleOf(ours));
  if (MiddleOf(shell) > 0) {
    std::printf(", the shell of SQLite %.0f ms: %.2f times that", MiddleOf(shell),
                MiddleOf(ours) / MiddleOf(shell));
  } else {
    std::printf("; the shell of SQLite (sqlite3) is not on this machine");
  }
  std::printf("\n%.1f MB resident at most\n", static_cast<double>(usage.ru_maxrss) / 1024);
  return 0;
}

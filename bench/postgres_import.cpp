// Importing a million rows of four columns from a file of comma-separated values into a PostgreSQL
// server that is started for it: read row by row, checked, and stored in one transaction. Against
// \copy of the same file by the server's own terminal program, which leaves the checking to the
// server; into a plain table and into one with a key of two columns.
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
#include "provider/engines/postgres/postgres_engine.h"
#include "tests/provider/engines/postgres_cluster.h"

namespace {

using namespace orvane;
using Clock = std::chrono::steady_clock;

constexpr std::int64_t kRows = 1'000'000;
constexpr int kRuns = 3;
constexpr const char* kColumns =
    "(\"Tag\" text NOT NULL, \"Timestamp\" timestamptz NOT NULL, \"Value\" double precision, "
    "\"Status\" bigint";

void WriteRows(const std::string& sPath) {
  std::ofstream file(sPath, std::ios::binary);
  file << "Tag,Timestamp,Value,Status\r\n";
  for (std::int64_t i = 0; i < kRows; ++i) {
    char sRow[100];
    std::snprintf(sRow, sizeof sRow, "plant.unit%d,2024-05-%02d %02d:%02d:%02d+00:00,%.17g,%d\r\n",
                  static_cast<int>(i % 20), static_cast<int>(i / 86400 % 28) + 1,
                  static_cast<int>(i / 3600 % 24), static_cast<int>(i / 60 % 60),
                  static_cast<int>(i % 60), static_cast<double>(i) / 7.0, static_cast<int>(i % 3));
    file << sRow;
  }
}

double SinceThen(Clock::time_point since) {
  return std::chrono::duration<double, std::milli>(Clock::now() - since).count();
}

void MakeTable(const char* sKey) {
  tests::PostgresCluster::Get().Do("postgres", "DROP TABLE IF EXISTS data");
  tests::PostgresCluster::Get().Do("postgres", std::string("CREATE TABLE data") + kColumns + sKey);
}

double OurImport(const std::string& sFile, const char* sKey) {
  using platform::DataType;
  MakeTable(sKey);
  const std::vector<exports::ImportColumn> columns{{"Tag", DataType::WChar},
                                                   {"Timestamp", DataType::DBTimeStamp},
                                                   {"Value", DataType::Double},
                                                   {"Status", DataType::BigInt}};
  const auto session = provider::engines::PostgresEngine().Open(
      {tests::PostgresCluster::Get().Address(), "orvane"}, {}, {});
  const auto start = Clock::now();
  std::ifstream file(sFile, std::ios::binary);
  exports::RowImport rows(file, "data", columns, zones::TimeZone::Utc());
  provider::engines::EngineStatement statement;
  statement.sSql = "INSERT INTO public.data VALUES (?, ?, ?, ?)";
  statement.rowsExpected = 1;
  statement.batch = [&rows](std::vector<platform::Value>& values) { return rows.Next(values); };
  if (session->Run(statement, {}).lRecordsAffected != kRows) {
    throw std::runtime_error("not all rows were stored");
  }
  return SinceThen(start);
}

double CopyOfTerminal(const std::string& sFile, const char* sKey) {
  MakeTable(sKey);
  const std::string sCommand = "psql -q -d '" + tests::PostgresCluster::Get().Address() +
                               "' -U orvane -c \"\\copy data FROM '" + sFile + "' CSV HEADER\"";
  const auto start = Clock::now();
  if (std::system(sCommand.c_str()) != 0) throw std::runtime_error("psql does not copy");
  return SinceThen(start);
}

double MiddleOf(std::vector<double> times) {
  std::ranges::sort(times);
  return times[times.size() / 2];
}

void Compare(const char* sTable, const std::string& sFile, const char* sKey) {
  std::vector<double> ours;
  std::vector<double> copies;
  for (int nRun = 0; nRun < kRuns; ++nRun) {
    ours.push_back(OurImport(sFile, sKey));
    copies.push_back(CopyOfTerminal(sFile, sKey));
  }
  std::printf("import of %lld rows into %s: %.0f ms, \\copy %.0f ms: %.2f times that\n",
              static_cast<long long>(kRows), sTable, MiddleOf(ours), MiddleOf(copies),
              MiddleOf(ours) / MiddleOf(copies));
}

}  // namespace

int main() {
  const std::string sFile = tests::PostgresCluster::Get().Folder() / "rows.csv";
  WriteRows(sFile);
  Compare("a plain table", sFile, ")");
  Compare("a table with a key", sFile, ", PRIMARY KEY (\"Tag\", \"Timestamp\"))");
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  std::printf("%.1f MB resident at most\n", static_cast<double>(usage.ru_maxrss) / 1024);
  return 0;
}

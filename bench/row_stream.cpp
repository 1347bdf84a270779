// Ten million rows on their way: when the first of them are there, against the first sqlite3_step
// of the same statement; and the memory of the process while a sink takes them all, and while they
// are held with a memory budget of 64 MB.
#include <sqlite3.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <fstream>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "ado/fetch.h"
#include "provider/engines/sqlite/sqlite_engine.h"

namespace {

using namespace orvane;
using Clock = std::chrono::steady_clock;

constexpr int kRuns = 9;
constexpr platform::RowIndex kRows = 10'000'000;
constexpr const char* kStatement =
    "WITH RECURSIVE c(i) AS (SELECT 0 UNION ALL SELECT i + 1 FROM c LIMIT 10000000) SELECT "
    "'plant.unit' || (i % 20) AS Tag, 1700000000000000 + i * 50000 AS Timestamp, i / 7.0 AS Value, "
    "i % 3 AS Status FROM c";

double Milliseconds(Clock::time_point since) {
  return std::chrono::duration<double, std::milli>(Clock::now() - since).count();
}

double Median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

/// Of the process, without what files stand behind.
double AnonymousMegabytes() {
  std::ifstream file("/proc/self/smaps_rollup");
  std::string sWord;
  double kilobytes = 0;
  while (file >> sWord) {
    if (sWord == "Anonymous:") file >> kilobytes;
  }
  return kilobytes / 1024;
}

double FirstStep() {
  sqlite3* database = nullptr;
  sqlite3_open(":memory:", &database);
  const auto start = Clock::now();
  sqlite3_stmt* statement = nullptr;
  sqlite3_prepare_v2(database, kStatement, -1, &statement, nullptr);
  sqlite3_step(statement);
  const double time = Milliseconds(start);
  sqlite3_finalize(statement);
  sqlite3_close(database);
  return time;
}

void Run(provider::engines::FileSession& session, std::shared_ptr<ado::Fetch> fetch) {
  provider::engines::EngineStatement statement{kStatement, {}, {}};
  statement.rows = fetch;
  try {
    session.Run(statement, fetch->Stop());
  } catch (const platform::Failure& failed) {
    if (failed.Number() != platform::failure::kCancelled) throw;
  }
}

/// Until a handler has the first rows, with the ticks of a host's wait.
double FirstRows(provider::engines::FileSession& session) {
  std::stop_source stop;
  double time = 0;
  const auto start = Clock::now();
  const auto fetch =
      std::make_shared<ado::Fetch>(ado::FetchWishes{.bKeepRows = true,
                                                    .handler =
                                                        [&](const platform::RecordsetPtr&) {
                                                          if (time == 0) time = Milliseconds(start);
                                                          stop.request_stop();
                                                        },
                                                    .stop = stop.get_token()},
                                   nullptr);
  std::thread worker([&] { Run(session, fetch); });
  std::this_thread::sleep_for(std::chrono::milliseconds(10));
  while (!fetch->Show()) std::this_thread::sleep_for(std::chrono::milliseconds(20));
  worker.join();
  return time;
}

}  // namespace

int main() {
  const auto session = provider::engines::SqliteEngine().Open({}, {});
  std::vector<double> ours;
  std::vector<double> raw;
  for (int i = 0; i < kRuns; ++i) {
    raw.push_back(FirstStep());
    ours.push_back(FirstRows(*session));
  }
  std::printf("row_stream: first rows %.2f ms, first step %.2f ms (medians of %d)\n", Median(ours),
              Median(raw), kRuns);

  platform::RowIndex rows = 0;
  double before = AnonymousMegabytes();
  double most = before;
  auto start = Clock::now();
  Run(*session,
      std::make_shared<ado::Fetch>(
          ado::FetchWishes{.sink =
                               [&](const platform::RecordsetPtr& rs) {
                                 if (rows / 1'000'000 != (rows + rs->RecordCount()) / 1'000'000) {
                                   most = std::max(most, AnonymousMegabytes());
                                 }
                                 rows += rs->RecordCount();
                               }},
          nullptr));
  std::printf("row_stream: sink of %lld rows: %.0f ms, %.1f MB more at most\n",
              static_cast<long long>(rows), Milliseconds(start), most - before);

  before = AnonymousMegabytes();
  start = Clock::now();
  const auto fetch = std::make_shared<ado::Fetch>(
      ado::FetchWishes{}, std::make_shared<ado::MemoryBudget>(std::size_t{64} << 20));
  Run(*session, fetch);
  const auto rs = fetch->Recordset();
  std::printf("row_stream: holding %lld rows with 64 MB: %.0f ms, %.1f MB more\n",
              static_cast<long long>(rs->RecordCount()), Milliseconds(start),
              AnonymousMegabytes() - before);
  return rows == kRows && rs->RecordCount() == kRows ? 0 : 1;
}

#include "tools/orvane_historian/record.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <deque>
#include <iostream>
#include <memory>
#include <optional>
#include <set>
#include <utility>

#include "platform/failure.h"
#include "tools/orvane_historian/catalog_database.h"
#include "tools/orvane_historian/machine_counters.h"

namespace orvane::tools {
namespace {

using namespace std::chrono;
using platform::Failure;
using platform::Text;
using platform::Timestamp;
namespace failure = platform::failure;

// Holds the catalog for this recorder; the system lets go of it when the process ends.
class RecorderLock {
 public:
  explicit RecorderLock(const provider::historian::CatalogRecord& record)
      : m_sFile(record.file.string() + ".recorder"),
        m_nFile(::open(m_sFile.c_str(), O_CREAT | O_RDWR | O_CLOEXEC, 0644)) {
    if (m_nFile < 0) FailToLock(errno);
  }
  RecorderLock(const RecorderLock&) = delete;
  RecorderLock& operator=(const RecorderLock&) = delete;
  ~RecorderLock() { ::close(m_nFile); }

  // False while another recorder holds the catalog.
  bool Take() const {
    if (flock(m_nFile, LOCK_EX | LOCK_NB) == 0) return true;
    if (errno != EWOULDBLOCK) FailToLock(errno);
    return false;
  }
  // False when the catalog was dropped, and perhaps made anew, since the file was opened.
  bool IsOfCatalog() const {
    struct stat own {};
    struct stat named {};
    return fstat(m_nFile, &own) == 0 && ::stat(m_sFile.c_str(), &named) == 0 &&
           own.st_dev == named.st_dev && own.st_ino == named.st_ino;
  }

 private:
  [[noreturn]] void FailToLock(int nError) const {
    throw Failure(failure::kNoRights,
                  "The file " + m_sFile + " cannot be written; check your rights on its folder.",
                  "orvane-historian", nError);
  }

  Text m_sFile;
  int m_nFile = -1;
};

// SIGTERM and SIGINT, waited for instead of handled.
class StopSignals {
 public:
  StopSignals() {
    sigemptyset(&m_signals);
    sigaddset(&m_signals, SIGTERM);
    sigaddset(&m_signals, SIGINT);
    pthread_sigmask(SIG_BLOCK, &m_signals, nullptr);
  }
  // True when one came before the time.
  bool WaitUntil(steady_clock::time_point time) const {
    for (;;) {
      const auto left = std::max(time - steady_clock::now(), steady_clock::duration::zero());
      const auto whole = duration_cast<seconds>(left);
      timespec wait{};
      wait.tv_sec = static_cast<time_t>(whole.count());
      wait.tv_nsec = static_cast<long>(duration_cast<nanoseconds>(left - whole).count());
      if (sigtimedwait(&m_signals, nullptr, &wait) > 0) return true;
      if (errno == EAGAIN) return false;
    }
  }

 private:
  sigset_t m_signals{};
};

struct Sample {
  Timestamp time;
  std::vector<Counter> counters;
};

class Recorder {
 public:
  Recorder(CatalogDatabase& database, seconds keep)
      : m_database(database),
        m_keep(keep),
        m_insert(database, "INSERT OR IGNORE INTO Data (Tag, Timestamp, Value) VALUES (?, ?, ?)"),
        m_describe(database,
                   "INSERT INTO Tags (Tag, Description, Unit, Type) VALUES (?, ?, ?, 'number') "
                   "ON CONFLICT (Tag) DO UPDATE SET Description = excluded.Description, "
                   "Unit = excluded.Unit WHERE Description IS NOT excluded.Description OR "
                   "Unit IS NOT excluded.Unit"),
        m_forget(database, "DELETE FROM Data WHERE Timestamp < ?") {}

  void Take(Sample sample) {
    // An hour of samples at most; longer than that nobody holds a lock by mistake.
    constexpr std::size_t kMostWaiting = 3600;
    if (m_waiting.size() == kMostWaiting) m_waiting.pop_front();
    m_waiting.push_back(std::move(sample));
  }

  // Writes what waits; gives why it still waits where another program holds a lock or the disk is
  // full.
  std::optional<Failure> Write() {
    if (m_waiting.empty()) return std::nullopt;
    std::set<Text> described;
    const Timestamp last = m_waiting.back().time;
    const bool bForget = m_keep != seconds(0) && last >= m_nextForget;
    try {
      m_database.InTransaction([&] {
        for (const auto& sample : m_waiting) WriteSample(sample, described);
        if (bForget) Forget(last);
      });
    } catch (const Failure& failed) {
      if (failed.Number() != failure::kBusy && failed.Number() != failure::kStorage) throw;
      return failed;
    }
    // Only what is there for good need not be written again.
    m_described.merge(described);
    if (bForget) m_nextForget = last + minutes(1);  // once a minute is enough
    m_waiting.clear();
    return std::nullopt;
  }

 private:
  void WriteSample(const Sample& sample, std::set<Text>& described) {
    for (const auto& counter : sample.counters) {
      if (!m_described.contains(counter.sTag) && described.insert(counter.sTag).second) {
        m_describe << counter.sTag << counter.sDescription << counter.sUnit;
        m_describe.Run();
      }
      m_insert << counter.sTag << platform::Value(sample.time) << counter.dValue;
      m_insert.Run();
    }
  }

  void Forget(Timestamp now) {
    m_forget << platform::Value(now - m_keep);
    m_forget.Run();
  }

  CatalogDatabase& m_database;
  seconds m_keep;
  PreparedStatement m_insert;
  PreparedStatement m_describe;
  PreparedStatement m_forget;
  std::set<Text> m_described;
  std::deque<Sample> m_waiting;
  Timestamp m_nextForget{};
};

// The catalog and the hold on it; null when a signal came while another recorder was at work. A
// recorder without an end takes over from one that ends; one with a count has no time for that.
struct HeldCatalog {
  explicit HeldCatalog(provider::historian::CatalogRecord found)
      : record(std::move(found)), lock(record) {}

  provider::historian::CatalogRecord record;
  RecorderLock lock;
};

std::unique_ptr<HeldCatalog> Hold(const ServerPlace& place, const RecordOrder& order,
                                  const StopSignals& signals) {
  bool bTold = false;
  for (;;) {
    auto held = std::make_unique<HeldCatalog>(FindOrMakeCatalog(place, order.sCatalog));
    while (!held->lock.Take()) {
      if (order.llCount != 0) {
        throw Failure(failure::kBusy, "Another recorder is at work on the catalog " +
                                          held->record.sName +
                                          "; stop it first or record into another catalog.");
      }
      if (order.waits && !std::exchange(bTold, true)) order.waits();
      if (signals.WaitUntil(steady_clock::now() + seconds(1))) return nullptr;
    }
    if (held->lock.IsOfCatalog()) return held;
  }
}

// Says once why nothing can be written; a lock is too usual for that.
void Tell(const std::optional<Failure>& why, Text& sTold) {
  if (!why) {
    sTold.clear();
  } else if (why->Number() != failure::kBusy && why->Description() != sTold) {
    sTold = why->Description();
    std::cerr << sTold << " The recorder keeps trying.\n" << std::flush;
  }
}

}  // namespace

std::int64_t Record(const ServerPlace& place, const RecordOrder& order) {
  const StopSignals signals;
  const auto held = Hold(place, order, signals);
  if (!held) return 0;
  const auto& record = held->record;
  CatalogDatabase database(record);
  // The next second writes what this one cannot.
  sqlite3_busy_timeout(database.Handle(), 500);
  Recorder recorder(database, order.keep);
  MachineCounters counters(order.proc);
  Text sTold;
  std::int64_t llSamples = 0;
  auto last = steady_clock::now();
  auto next = last;
  while (order.llCount == 0 || llSamples < order.llCount) {
    // A machine that slept takes up the beat again instead of making up for it.
    next = std::max(next + seconds(1), steady_clock::now());
    if (signals.WaitUntil(next)) break;
    const auto now = steady_clock::now();
    recorder.Take({floor<milliseconds>(system_clock::now()), counters.Read(now - last)});
    last = now;
    ++llSamples;
    Tell(recorder.Write(), sTold);
  }
  // What still waits has ten seconds.
  sqlite3_busy_timeout(database.Handle(), 10'000);
  if (const auto why = recorder.Write()) {
    if (why->Number() != failure::kBusy) throw Failure(*why);
    throw Failure(failure::kBusy, "The catalog " + record.sName +
                                      " stayed locked by another program, so the last samples "
                                      "were not written; close that program and record again.");
  }
  return llSamples;
}

}  // namespace orvane::tools

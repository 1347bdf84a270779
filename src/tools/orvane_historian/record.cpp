#include "tools/orvane_historian/record.h"

#include <deque>
#include <iostream>
#include <memory>
#include <optional>
#include <set>
#include <utility>

#include "platform/failure.h"
#include "provider/historian/recorder_lock.h"
#include "tools/orvane_historian/catalog_database.h"
#include "tools/orvane_historian/sampling.h"

namespace orvane::tools {
namespace {

using namespace std::chrono;
using platform::Failure;
using platform::Text;
using platform::Timestamp;
namespace failure = platform::failure;

// What is written into a catalog's file, and the file.
class Rows {
 public:
  Rows(const provider::historian::CatalogRecord& record, seconds keep)
      : m_database(record),
        m_keep(keep),
        m_insert(m_database, "INSERT OR IGNORE INTO Data (Tag, Timestamp, Value) VALUES (?, ?, ?)"),
        // A tag that somebody else has described, or has rows of, stays his.
        m_describe(m_database,
                   "INSERT INTO Tags (Tag, Description, Unit, Type) SELECT ?1, ?2, ?3, 'number' "
                   "WHERE NOT EXISTS (SELECT 1 FROM Data WHERE Tag = ?1) "
                   "ON CONFLICT (Tag) DO NOTHING"),
        // Tags of counters, those of devices that are gone included, as they are described here.
        m_forget(m_database,
                 "DELETE FROM Data WHERE Timestamp < ?1 AND Tag IN (SELECT Tag FROM Tags WHERE "
                 "substr(Description, 1, length(?4)) = ?4 AND "
                 "Tag = ?2 || substr(Description, length(?4) + 1) || ?3)") {
    // The next second writes what this one cannot.
    WaitForLocks(milliseconds(500));
  }

  bool HasMoved() const { return m_database.HasMoved(); }
  void WaitForLocks(milliseconds longest) {
    sqlite3_busy_timeout(m_database.Handle(), static_cast<int>(longest.count()));
  }

  // All or nothing of the samples; gives why it is nothing where another program holds a lock, the
  // disk is full or the file is no longer that of the catalog.
  std::optional<Failure> Write(const std::deque<Sample>& samples) {
    std::set<Text> described;
    const Timestamp last = samples.back().time;
    const bool bForget = m_keep != seconds(0) && last >= m_nextForget;
    try {
      m_database.InTransaction([&] {
        for (const auto& sample : samples) WriteSample(sample, described);
        if (bForget) Forget(last);
      });
    } catch (const Failure& failed) {
      if (failed.Number() != failure::kBusy && failed.Number() != failure::kStorage &&
          !HasMoved()) {
        throw;
      }
      return failed;
    }
    // Only what is there for good need not be written again.
    m_described.merge(described);
    if (bForget) m_nextForget = last + minutes(1);  // once a minute is enough
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
    for (const CounterKind& kind : CounterKinds()) {
      m_forget << platform::Value(now - m_keep) << Text(kind.sTag) << Text(kind.sTagEnd)
               << Text(kind.sDescription);
      m_forget.Run();
    }
  }

  CatalogDatabase m_database;
  seconds m_keep;
  PreparedStatement m_insert;
  PreparedStatement m_describe;
  PreparedStatement m_forget;
  std::set<Text> m_described;
  Timestamp m_nextForget{};
};

// The catalog and the hold on it.
struct HeldCatalog {
  explicit HeldCatalog(provider::historian::CatalogRecord found)
      : record(std::move(found)), lock(record.file) {}

  provider::historian::CatalogRecord record;
  provider::historian::RecorderLock lock;
};

// Null when a signal came while another recorder was at work. A recorder without an end takes over
// from one that ends; one with a count has no time for that.
template <class Find>
std::unique_ptr<HeldCatalog> Hold(const RecordOrder& order, const StopSignals& signals,
                                  Find&& find) {
  bool bTold = false;
  for (;;) {
    auto held = std::make_unique<HeldCatalog>(find());
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

// Samples on their way into the catalog, which waits here while its file cannot be written.
class Recorder {
 public:
  Recorder(const ServerPlace& place, const RecordOrder& order, const StopSignals& signals)
      : m_place(place), m_order(order), m_signals(signals) {}

  // False when a signal came while another recorder was at work.
  bool Begin() {
    return Open([&] { return FindOrMakeCatalog(m_place, m_order.sCatalog, {}); });
  }

  void Take(Sample sample) {
    // An hour of samples at most; longer than that nobody holds a lock by mistake.
    constexpr std::size_t kMostWaiting = 3600;
    if (m_waiting.size() == kMostWaiting) m_waiting.pop_front();
    m_waiting.push_back(std::move(sample));
  }

  // False when a signal came while another recorder was at work.
  bool Write() {
    if (m_rows->HasMoved() && !FollowCatalog()) return false;
    const auto why = WriteWaiting();
    // What was refused because the file has just gone is written into the next one.
    if (!m_rows->HasMoved()) Tell(why, m_sTold);
    return true;
  }

  // What still waits has ten seconds.
  void End() {
    if (m_rows->HasMoved() && !FollowCatalog()) return;
    m_rows->WaitForLocks(seconds(10));
    const auto why = WriteWaiting();
    if (!why) return;
    if (why->Number() != failure::kBusy) throw Failure(*why);
    throw Failure(failure::kBusy, "The catalog " + m_held->record.sName +
                                      " stayed locked by another program, so the last samples "
                                      "were not written; close that program and record again.");
  }

 private:
  template <class Find>
  bool Open(Find&& find) {
    m_held = Hold(m_order, m_signals, std::forward<Find>(find));
    if (m_held) m_rows.emplace(m_held->record, m_order.keep);
    return m_held != nullptr;
  }

  // Goes on in the file that the catalog has now. A catalog that was removed is not made again.
  bool FollowCatalog() {
    std::cerr << "The file " << m_held->record.file.string() << " of the catalog "
              << m_held->record.sName
              << " was removed or replaced; the recorder looks for the catalog anew.\n"
              << std::flush;
    m_rows.reset();
    m_held.reset();
    return Open([&] { return FindCatalog(m_place, m_order.sCatalog); });
  }

  std::optional<Failure> WriteWaiting() {
    if (m_waiting.empty()) return std::nullopt;
    auto why = m_rows->Write(m_waiting);
    if (!why) m_waiting.clear();
    return why;
  }

  const ServerPlace& m_place;
  const RecordOrder& m_order;
  const StopSignals& m_signals;
  std::unique_ptr<HeldCatalog> m_held;
  std::optional<Rows> m_rows;
  std::deque<Sample> m_waiting;
  Text m_sTold;
};

}  // namespace

std::int64_t Record(const ServerPlace& place, const RecordOrder& order) {
  const StopSignals signals;
  Recorder recorder(place, order, signals);
  if (!recorder.Begin()) return 0;
  bool bHolds = true;
  const auto llSamples = TakeSamples(order, signals, [&](Sample sample) {
    recorder.Take(std::move(sample));
    return bHolds = recorder.Write();
  });
  if (bHolds) recorder.End();
  return llSamples;
}

}  // namespace orvane::tools

#include "tools/orvane_historian/server_rows.h"

#include <deque>
#include <iostream>
#include <optional>
#include <set>
#include <utility>

#include "exports/row_import.h"
#include "platform/conversions.h"
#include "platform/failure.h"
#include "platform/quoting.h"
#include "tools/orvane_historian/sampling.h"

namespace orvane::tools {

using namespace std::chrono;
using platform::Failure;
using platform::QuotedName;
using platform::Text;
using platform::Value;
namespace failure = platform::failure;

namespace {

Text InsertInto(const ServerCatalog& catalog, const provider::engines::TableSchema& table,
                const std::vector<exports::ImportColumn>& columns, bool bReplace) {
  Text sNames;
  Text sMarks;
  Text sSets;
  for (const auto& column : columns) {
    const Text sName = QuotedName(column.sName);
    sNames += (sNames.empty() ? "" : ", ") + sName;
    sMarks += sMarks.empty() ? "?" : ", ?";
    sSets += (sSets.empty() ? "" : ", ") + sName + " = excluded." + sName;
  }
  const Text sInsert =
      "INSERT INTO " + catalog.Named(table.sName) + " (" + sNames + ") VALUES (" + sMarks + ")";
  Text sKey;
  for (const auto& column : table.columns) {
    if (column.lKeyOrdinal == 0) continue;
    sKey += (sKey.empty() ? "" : ", ") + QuotedName(column.sName);
  }
  if (!bReplace || sKey.empty()) return sInsert;
  return sInsert + " ON CONFLICT (" + sKey + ") DO UPDATE SET " + sSets;
}

// The rows of a statement, out of a list of them.
platform::ParameterRows RowsOf(std::vector<std::vector<Value>> rows) {
  return [rows = std::move(rows), n = std::size_t{0}](std::vector<Value>& values) mutable {
    if (n == rows.size()) return false;
    values = std::move(rows[n++]);
    return true;
  };
}

class ServerRecorder {
 public:
  ServerRecorder(const Text& sServer, const RecordOrder& order)
      : m_catalog(sServer, order.sCatalog, true), m_order(order) {}

  // False when a signal came while another recorder was at work.
  bool Begin(const StopSignals& signals) {
    bool bTold = false;
    while (!Hold()) {
      if (m_order.llCount != 0) {
        throw Failure(failure::kBusy, "Another recorder is at work on the catalog " +
                                          m_catalog.Name() +
                                          "; stop it first or record into another catalog.");
      }
      if (m_order.waits && !std::exchange(bTold, true)) m_order.waits();
      if (signals.WaitUntil(steady_clock::now() + seconds(1))) return false;
    }
    return true;
  }

  void Take(Sample sample) {
    constexpr std::size_t kMostWaiting = 3600;
    if (m_waiting.size() == kMostWaiting) m_waiting.pop_front();
    m_waiting.push_back(std::move(sample));
  }

  // What the server does not take now waits for the next second.
  void Write() {
    try {
      WriteWaiting();
      m_sTold.clear();
    } catch (const Failure& failed) {
      Tell(failed);
    }
  }
  void End() { WriteWaiting(); }

 private:
  // Ends with the connection.
  bool Hold() {
    const auto rs = m_catalog.Ask("SELECT pg_try_advisory_lock(hashtext('orvane recorder ' || ?))",
                                  {Value(m_catalog.Name())});
    return platform::ToBoolean(rs->ValueAt(0, 0));
  }

  void WriteWaiting() {
    if (m_waiting.empty()) return;
    if (m_bLost) {
      m_catalog.Reopen();
      m_bLost = false;
      // The lost connection may have it for a while yet.
      Hold();
    }
    try {
      Describe();
      std::vector<std::vector<Value>> rows;
      for (const auto& sample : m_waiting) {
        for (const auto& counter : sample.counters) {
          rows.push_back({counter.sTag, sample.time, counter.dValue});
        }
      }
      m_catalog.Run(
          "INSERT INTO " + m_catalog.Named("Data") +
              " (\"Tag\", \"Timestamp\", \"Value\") VALUES (?, ?, ?) ON CONFLICT DO NOTHING",
          RowsOf(std::move(rows)));
      const auto last = m_waiting.back().time;
      m_waiting.clear();
      Forget(last);
    } catch (const Failure& failed) {
      m_bLost = failed.Number() == failure::kObjectClosed;
      throw;
    }
  }

  // A tag that somebody else has described, or has rows of, stays his.
  void Describe() {
    std::set<Text> described;
    std::vector<std::vector<Value>> rows;
    for (const auto& sample : m_waiting) {
      for (const auto& counter : sample.counters) {
        if (m_described.contains(counter.sTag) || !described.insert(counter.sTag).second) continue;
        rows.push_back({counter.sTag, counter.sDescription, counter.sUnit, counter.sTag});
      }
    }
    if (rows.empty()) return;
    m_catalog.Run(
        "INSERT INTO " + m_catalog.Named("Tags") +
            " (\"Tag\", \"Description\", \"Unit\") SELECT ?::text, ?::text, ?::text WHERE "
            "NOT EXISTS (SELECT 1 FROM " +
            m_catalog.Named("Data") + " WHERE \"Tag\" = ?) ON CONFLICT DO NOTHING",
        RowsOf(std::move(rows)));
    m_described.merge(described);
  }

  // Tags of counters, those of devices that are gone included, as they are described here.
  void Forget(platform::Timestamp now) {
    if (m_order.keep == seconds(0) || now < m_nextForget) return;
    std::vector<std::vector<Value>> rows;
    for (const CounterKind& kind : CounterKinds()) {
      const Text sDescription = kind.sDescription;
      rows.push_back({now - m_order.keep, sDescription, sDescription, Text(kind.sTag), sDescription,
                      Text(kind.sTagEnd)});
    }
    m_catalog.Run(
        "DELETE FROM " + m_catalog.Named("Data") +
            " WHERE \"Timestamp\" < ? AND \"Tag\" IN (SELECT \"Tag\" FROM " +
            m_catalog.Named("Tags") +
            " WHERE left(\"Description\", length(?::text)) = ?::text AND \"Tag\" = ?::text || "
            "substr(\"Description\", length(?::text) + 1) || ?::text)",
        RowsOf(std::move(rows)));
    m_nextForget = now + minutes(1);
  }

  void Tell(const Failure& failed) {
    if (failed.Description() == m_sTold) return;
    m_sTold = failed.Description();
    std::cerr << m_sTold << " The recorder keeps trying.\n" << std::flush;
  }

  ServerCatalog m_catalog;
  const RecordOrder& m_order;
  std::deque<Sample> m_waiting;
  std::set<Text> m_described;
  platform::Timestamp m_nextForget{};
  Text m_sTold;
  bool m_bLost = false;
};

}  // namespace

std::int64_t ImportToServer(ServerCatalog& catalog, std::istream& stream,
                            const ImportOrder& order) {
  const auto table = catalog.Table(order.sTable);
  std::vector<exports::ImportColumn> columns;
  for (const auto& column : table.columns) {
    columns.push_back(
        {column.sName, column.type, column.bGenerated, column.bRounds, column.bBeyond});
  }
  exports::RowImport rows(stream, table.sName, columns, order.zone);
  std::int64_t llRows = 0;
  try {
    catalog.Run(InsertInto(catalog, table, rows.Columns(), order.bReplace),
                [&](std::vector<Value>& values) {
                  if (!rows.Next(values)) return false;
                  ++llRows;
                  return true;
                });
  } catch (const Failure&) {
    rows.RethrowOfRow();
  }
  return llRows;
}

std::int64_t RecordOnServer(const Text& sServer, const RecordOrder& order) {
  const StopSignals signals;
  ServerRecorder recorder(sServer, order);
  if (!recorder.Begin(signals)) return 0;
  const auto llSamples = TakeSamples(order, signals, [&](Sample sample) {
    recorder.Take(std::move(sample));
    recorder.Write();
    return true;
  });
  recorder.End();
  return llSamples;
}

}  // namespace orvane::tools

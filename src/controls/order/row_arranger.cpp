#include "controls/order/row_arranger.h"

#include <algorithm>
#include <chrono>
#include <numeric>
#include <utility>

#include "controls/values/tell_box.h"

namespace orvane::controls {

using platform::RowIndex;

namespace {

/// As many are read, and sorted, in less time than anybody notices.
constexpr RowIndex kAtOnce = 20'000;
constexpr std::chrono::milliseconds kSlice(12);
constexpr std::chrono::milliseconds kUntilNextTry(50);
constexpr RowIndex kRowsBetweenClocks = 512;
/// A few of those who have more bytes take as long as thousands of others.
constexpr std::size_t kBytesOfLarge = 4096;

bool IsLarge(const platform::Value& vtValue) {
  if (const auto* text = vtValue.As<platform::Text>()) return text->size() > kBytesOfLarge;
  const auto* bytes = vtValue.As<platform::Bytes>();
  return bytes && bytes->size() > kBytesOfLarge;
}

}  // namespace

struct RowArranger::Work {
  explicit Work(platform::RecordsetPtr which)
      : rs(std::move(which)), memory(rs ? rs->Memory() : nullptr) {}

  platform::RecordsetPtr rs;
  std::shared_ptr<std::pmr::memory_resource> memory;  ///< outlives what lies in it
  Arrangement arrangement;
  CellFormat format;
  Done done;
  bool bAtOnce = false;
  RowIndex fetched = 0;  ///< rows that are arranged
  RowOrder::Numbers rows{memory ? memory.get() : std::pmr::new_delete_resource()};
  RowOrder::Numbers byRow{rows.get_allocator()};
  RowIndex read = 0;  ///< rows that were filtered, or read for the keys
  bool bFiltered = false;
  std::size_t sorts = 0;  ///< columns still to be sorted by, the last one first
  std::optional<SortKeys> keys;
  QString sWhyNot;  ///< what kept them from being sorted
};

RowArranger::RowArranger(QObject* parent) : QObject(parent) {}

RowArranger::~RowArranger() {
  Cancel();
}

void RowArranger::Arrange(platform::RecordsetPtr rs, const Arrangement& arrangement,
                          const CellFormat& format, Done done) {
  Cancel();
  m_work = std::make_unique<Work>(std::move(rs));
  m_work->arrangement = arrangement;
  m_work->format = format;
  m_work->done = std::move(done);
  m_work->fetched = m_work->rs ? m_work->rs->FetchedCount() : 0;
  m_work->bAtOnce = m_work->fetched <= kAtOnce;
  m_work->sorts = arrangement.bSortedByServer ? 0 : arrangement.sort.size();
  if (arrangement.NeedsNoWork() || !m_work->rs) {
    const Done tell = std::exchange(m_work, nullptr)->done;
    return tell(nullptr, {});
  }
  Next();
}

void RowArranger::Cancel() {
  m_bStop = true;
  if (m_worker.joinable()) m_worker.join();
  m_bStop = false;
  ++m_nRun;
  m_work.reset();
}

bool RowArranger::Slice() {
  Work& work = *m_work;
  try {
    return SliceOf(work);
  } catch (const std::exception& failed) {
    work.sWhyNot = SentenceOf(failed);
    return true;
  }
}

bool RowArranger::SliceOf(Work& work) {
  const auto end = std::chrono::steady_clock::now() + kSlice;
  bool bLarge = false;  // the value that was read last
  const auto goOn = [&] {
    const bool bSoon = !bLarge && (work.bAtOnce || work.read % kRowsBetweenClocks != 0);
    return bSoon || std::chrono::steady_clock::now() < end;
  };
  const auto valueAt = [&](RowIndex row, platform::ColumnIndex column) {
    platform::Value vtValue = work.rs->ValueAt(row, column);
    bLarge = IsLarge(vtValue);
    return vtValue;
  };
  if (!work.bFiltered) {
    if (work.arrangement.filters.empty()) {
      work.rows.reserve(static_cast<std::size_t>(work.fetched));
    }
    for (; work.read < work.fetched; ++work.read) {
      if (!goOn()) return false;
      const bool bSeen = std::ranges::all_of(work.arrangement.filters, [&](const auto& filter) {
        return filter.Holds(valueAt(work.read, filter.Column()), work.format);
      });
      if (bSeen) work.rows.push_back(static_cast<RowOrder::Number>(work.read));
    }
    work.bFiltered = true;
    work.read = 0;
  }
  if (work.sorts == 0) return true;
  const auto count = static_cast<RowIndex>(work.rows.size());
  const platform::ColumnIndex column = work.arrangement.sort[work.sorts - 1].column;
  if (!work.keys) {
    const platform::Field& field = work.rs->FieldAt(column);
    work.keys.emplace(work.rows.size(), ValueOrder{field.TextOrder(), field.NullIsLast()},
                      work.rows.get_allocator().resource());
  }
  for (; work.read < count; ++work.read) {
    if (!goOn()) return false;
    work.keys->Append(valueAt(work.rows[static_cast<std::size_t>(work.read)], column));
  }
  return true;
}

void RowArranger::Next() {
  while (true) {
    if (!Slice()) {
      // The events between two slices may be the end of it all.
      QTimer::singleShot(0, this, [this, nRun = m_nRun] {
        if (nRun == m_nRun) Next();
      });
      return;
    }
    if (!m_work->sWhyNot.isEmpty()) return Finish(QString(m_work->sWhyNot));
    if (m_work->sorts == 0) return Finish();
    if (!m_work->bAtOnce) return StartSorting();
    SortByKeys(*m_work);
    SortedBy();
  }
}

void RowArranger::SortByKeys(Work& work) {
  try {
    work.keys->Sort(work.rows, work.arrangement.sort[work.sorts - 1].bAscending, m_bStop);
    if (work.sorts == 1) work.byRow = RowOrder::ByRow(work.rows, work.fetched, m_bStop);
  } catch (const std::exception& failed) {
    work.sWhyNot = SentenceOf(failed);
  }
}

void RowArranger::SortedBy() {
  m_work->keys.reset();
  m_work->read = 0;
  --m_work->sorts;
}

void RowArranger::StartSorting() {
  if (m_worker.joinable()) m_worker.join();
  m_worker = std::thread([this, work = m_work.get(), nRun = m_nRun] {
    SortByKeys(*work);
    if (m_bStop) return;
    QMetaObject::invokeMethod(
        this,
        [this, nRun] {
          if (nRun != m_nRun) return;  // it was cancelled meanwhile
          SortedBy();
          if (!m_work->sWhyNot.isEmpty()) return Finish(QString(m_work->sWhyNot));
          Next();
        },
        Qt::QueuedConnection);
  });
}

void RowArranger::Finish(const QString& sWhyNot) {
  if (m_holding && !m_work->bAtOnce && m_holding()) {
    QTimer::singleShot(kUntilNextTry, this, [this, nRun = m_nRun, sWhyNot] {
      if (nRun == m_nRun) Finish(sWhyNot);
    });
    return;
  }
  ++m_nRun;
  if (m_worker.joinable()) m_worker.join();
  const std::unique_ptr<Work> work = std::exchange(m_work, nullptr);
  std::shared_ptr<const RowOrder> order;
  if (sWhyNot.isEmpty()) {
    order = std::make_shared<const RowOrder>(std::move(work->rows), std::move(work->byRow),
                                             work->fetched, work->memory);
  }
  work->done(std::move(order), sWhyNot);
}

}  // namespace orvane::controls

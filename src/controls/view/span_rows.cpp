#include "controls/view/span_rows.h"

#include <QElapsedTimer>
#include <utility>

#include "controls/statements/time_column.h"
#include "controls/view/row_model.h"

namespace orvane::controls {

namespace {

/// Short enough that nobody sees a picture late.
constexpr qint64 kSliceMs = 8;
constexpr int kRowsAtOnceInSlice = 500;

}  // namespace

SpanRows::SpanRows(RowModel& model, QObject* parent) : QObject(parent), m_model(model) {
  m_slices.setInterval(0);
  connect(&m_slices, &QTimer::timeout, this, [this] { LookAtSlice(); });
  connect(&model, &QAbstractItemModel::modelReset, this, [this] { Stop(); });
  connect(&model, &QAbstractItemModel::layoutChanged, this, [this] { Stop(); });
}

void SpanRows::Look(const trend::TrendSpan& span, std::function<void(const Found&)> handler) {
  m_span = span;
  m_handler = std::move(handler);
  m_found.clear();
  m_nPlace = 0;
  m_nFirst = -1;
  m_slices.start();
}

void SpanRows::LookAtSlice() {
  const auto& rs = m_model.Recordset();
  const auto column = rs ? TimeColumnOf(*rs) : std::nullopt;
  if (!column) return Stop();
  const int nPlaces = m_model.Places();
  QElapsedTimer timer;
  timer.start();
  while (m_nPlace < nPlaces && timer.elapsed() < kSliceMs) {
    const int nEnd = std::min(nPlaces, m_nPlace + kRowsAtOnceInSlice);
    for (; m_nPlace < nEnd; ++m_nPlace) {
      const auto time = TimeIn(m_model.ValueAt(m_nPlace, *column), m_model.Format().Zone());
      const bool bWithin = time && *time >= m_span.from && *time <= m_span.to;
      if (bWithin == (m_nFirst >= 0)) continue;
      if (bWithin) {
        m_nFirst = m_nPlace;
        continue;
      }
      m_found.append({m_model.index(std::exchange(m_nFirst, -1), 0),
                      m_model.index(m_nPlace - 1, m_model.columnCount() - 1)});
      if (m_found.size() > kMostPieces) return End(true);
    }
  }
  if (m_nPlace >= nPlaces) End(false);
}

void SpanRows::End(bool bTooMany) {
  Stop();
  if (m_nFirst >= 0 && !bTooMany) {
    m_found.append({m_model.index(m_nFirst, 0),
                    m_model.index(m_model.Places() - 1, m_model.columnCount() - 1)});
  }
  Found found{bTooMany ? QItemSelection() : std::exchange(m_found, {}), bTooMany};
  m_found.clear();
  // The handler may look for others.
  if (const auto handler = std::exchange(m_handler, nullptr)) handler(found);
}

}  // namespace orvane::controls

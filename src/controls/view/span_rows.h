// Finds the rows whose times lie between two instants, a slice at a time, so that nobody waits for
// it. Used by a grid's trend; user-interface thread.
#pragma once

#include <QItemSelection>
#include <QObject>
#include <QTimer>
#include <functional>

#include "trend/trend_view.h"

namespace orvane::controls {

class RowModel;

class SpanRows : public QObject {
 public:
  /// Pieces of rows that stand together; of more a selection would be slow ever after.
  static constexpr qsizetype kMostPieces = 5'000;

  /// What was found: all cells of the rows. Empty and bTooMany where they lie in too many pieces.
  struct Found {
    QItemSelection rows;
    bool bTooMany = false;
  };

  SpanRows(RowModel& model, QObject* parent);

  /// Calls the handler once, from the event loop, unless the rows change before or others are
  /// looked for.
  void Look(const trend::TrendSpan& span, std::function<void(const Found&)> handler);
  void Stop() { m_slices.stop(); }
  bool Looking() const { return m_slices.isActive(); }

 private:
  void LookAtSlice();
  void End(bool bTooMany);

  RowModel& m_model;
  QTimer m_slices;
  trend::TrendSpan m_span;
  std::function<void(const Found&)> m_handler;
  QItemSelection m_found;
  int m_nPlace = 0;
  int m_nFirst = -1;  ///< of the piece that has begun
};

}  // namespace orvane::controls

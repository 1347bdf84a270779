// A line of boxes beneath the column names, each with a condition on its column; only rows that are
// here are looked at. Laid out by the view of the rows; user-interface thread.
#pragma once

#include <QLineEdit>
#include <QTimer>
#include <QWidget>
#include <functional>
#include <map>
#include <utility>

#include "controls/view/row_view.h"

namespace orvane::controls {

class FilterRow final : public QWidget {
 public:
  explicit FilterRow(RowView& rows);

  /// The box of a column.
  QLineEdit& Box(int nColumn);
  /// Shows what the rows are filtered by now.
  void ShowFilters();
  /// Called when a box says nothing that its column could hold, with the sentence; empty when all
  /// boxes do.
  void OnRefused(std::function<void(const QString&)> handler) { m_refused = std::move(handler); }
  QSize sizeHint() const override;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void LayOut();
  void Apply();

  RowView& m_rows;
  std::map<int, QLineEdit*> m_boxes;
  QTimer m_pause;
  std::function<void(const QString&)> m_refused;
};

}  // namespace orvane::controls

// The column names of a grid, their texts in line with those of the cells.
// Used by the view of the rows; user-interface thread.
#pragma once

#include <QHeaderView>
#include <functional>
#include <utility>
#include <vector>

#include "controls/arrangement.h"

namespace orvane::controls {

class HeaderView : public QHeaderView {
 public:
  /// Shows the names of the model's columns. It never asks for the model's rows: what a header
  /// does with a selected column would take a step for each of them.
  HeaderView(const QAbstractItemModel& source, QWidget* parent);

  /// The order that is told by arrows, with numbers where there are several columns.
  void Sorted(std::vector<SortColumn> sort);
  /// The column that offers a pale arrow to sort by; -1 for none.
  void Offer(int nColumn);
  /// Called when an arrow was clicked.
  void OnArrow(std::function<void(int nColumn, Qt::KeyboardModifiers)> handler) {
    m_arrow = std::move(handler);
  }
  /// Where a column's arrow is in the viewport; empty where it has none.
  QRect ArrowOf(int nColumn) const;

 protected:
  void mousePressEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void paintSection(QPainter* painter, const QRect& rect, int nSection) const override;
  QSize sectionSizeFromContents(int nSection) const override;
  void initStyleOptionForIndex(QStyleOptionHeader* option, int nSection) const override;

 private:
  QString Label(int nSection) const;
  QRect ArrowWithin(const QRect& section, int nColumn) const;
  /// Place among those that are sorted by; -1 for none.
  int RankOf(int nColumn) const;
  void PaintArrow(QPainter& painter, const QRect& rect, int nColumn) const;

  std::vector<SortColumn> m_sort;
  int m_nOffered = -1;
  int m_nPressed = -1;
  std::function<void(int, Qt::KeyboardModifiers)> m_arrow;
};

}  // namespace orvane::controls

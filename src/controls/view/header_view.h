// The column names of a grid, their texts in line with those of the cells. A name that is dragged
// moves its column; the first columns can stay in sight while the others are scrolled: they are
// said to be held. Used by the view of the rows; user-interface thread.
#pragma once

#include <QHeaderView>
#include <QTimer>
#include <functional>
#include <utility>
#include <vector>

#include "controls/order/arrangement.h"

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

  /// So many columns from the left are held, hidden ones included, as far as they leave room for
  /// others beside them.
  void Hold(int nColumns);
  int Held() const { return m_nHeld; }
  /// The place behind the last column that is held now, by their order.
  int HeldEnd() const;
  /// Pixels that the held columns take.
  int HeldWidth() const;
  bool IsHeld(int nColumn) const { return visualIndex(nColumn) < HeldEnd(); }
  /// Where a column begins in the viewport; a scrolled one may lie beneath those that are held.
  int LeftOf(int nColumn) const;
  /// The column at a place of the viewport; -1 for none.
  int ColumnAt(int x) const;
  /// The columns that are not hidden, as they stand.
  std::vector<int> Shown() const;
  /// Called while a name is dragged at an edge: columns further that way are to come into sight.
  void OnScrollWanted(std::function<void(int nDirection)> handler) {
    m_scroll = std::move(handler);
  }
  /// Other columns have come: what is being dragged is none of them.
  void reset() override;

 protected:
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  bool viewportEvent(QEvent* event) override;
  void paintSection(QPainter* painter, const QRect& rect, int nSection) const override;
  QSize sectionSizeFromContents(int nSection) const override;
  void initStyleOptionForIndex(QStyleOptionHeader* option, int nSection) const override;

 private:
  QString Label(int nSection) const;
  int ArrowSize() const;
  QRect ArrowWithin(const QRect& section, int nColumn) const;
  /// Place among those that are sorted by; -1 for none.
  int RankOf(int nColumn) const;
  void PaintArrow(QPainter& painter, const QRect& rect, int nColumn) const;
  int HeldEdgeAt(int x) const;
  void FollowDrag(QPoint at);
  void Drop();
  void ScrollAtEdge();

  std::vector<SortColumn> m_sort;
  int m_nOffered = -1;
  int m_nPressed = -1;
  int m_nHeld = 0;
  int m_nHandShift = 0;  ///< of the mouse, as long as a button is down
  int m_nSized = -1;     ///< the held column whose edge is dragged
  int m_nNamePressed = -1;
  QPoint m_pressedAt;
  bool m_bDragging = false;
  QPoint m_draggedTo;
  int m_nDropPlace = -1;  ///< where the dragged column would stand
  QTimer m_atEdge;
  std::function<void(int)> m_scroll;
  std::function<void(int, Qt::KeyboardModifiers)> m_arrow;
};

}  // namespace orvane::controls

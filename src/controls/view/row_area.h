// Where the cells of a grid are on the screen. Everything is measured in rows: the vertical scroll
// bar counts them, and only those in sight are looked at, so that two thousand million rows scroll
// and paint like ten. Column names stand above, row numbers at the left.
// Base of the view of the rows; user-interface thread.
#pragma once

#include <QAbstractItemView>
#include <optional>
#include <vector>

#include "controls/order/column_layout.h"

namespace orvane::controls {

class HeaderView;
class RowNumbers;

class RowArea : public QAbstractItemView {
 public:
  static constexpr int kLeastColumnWidth = ColumnLayout::kLeastWidth;

  /// Becomes the model's owner.
  RowArea(QAbstractItemModel* model, QWidget* parent);
  ~RowArea() override;

  HeaderView& Names() const { return *m_names; }
  RowNumbers& Numbers() const { return *m_numbers; }

  int RowHeight() const { return m_nRowHeight; }
  /// The width of so many characters as the rows are written now.
  int WidthOf(int nCharacters) const { return nCharacters * fontMetrics().averageCharWidth(); }
  /// First row in sight.
  int TopRow() const;
  /// Rows that fit in whole, one at least.
  int RowsInSight() const;
  /// The row at a height of the viewport; -1 where there is none.
  int RowAt(int y) const;
  /// Height in the viewport at which a row begins; of one far out of sight a height far outside.
  int YOf(int nRow) const;
  int ColumnWidth(int nColumn) const;
  void ColumnWidth(int nColumn, int nWidth);
  /// As wide as the rows in sight need.
  void FitColumn(int nColumn);

  /// The first column that is not hidden.
  int FirstShown() const;
  /// Scrolls sideways until the column is in sight.
  void ShowColumn(int nColumn);
  /// Places a widget between the names and the rows while it is to be seen, as high as it wishes.
  void PutBeneathNames(QWidget* widget);
  /// The height above the first row.
  int HeadHeight() const;

  QRect visualRect(const QModelIndex& index) const override;
  void scrollTo(const QModelIndex& index, ScrollHint hint = EnsureVisible) override;
  QModelIndex indexAt(const QPoint& point) const override;

 protected:
  struct Scroll {
    int nTopRow = 0;
    int nLeftOffset = 0;
  };
  /// Where the view stands, or is to stand as soon as it has room to.
  Scroll ScrolledTo() const;
  void ScrollBackTo(Scroll scroll);
  void ForgetScroll() { m_scroll.reset(); }

  /// The cell that is closest to a point of the viewport, which may lie outside.
  QModelIndex CellNear(QPoint point) const;

  void paintEvent(QPaintEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void changeEvent(QEvent* event) override;
  void scrollContentsBy(int dx, int dy) override;
  void updateEditorGeometries() override;
  void updateGeometries() override;
  void rowsInserted(const QModelIndex& parent, int nFirst, int nLast) override;
  /// In pixels; vertically in rows, as nothing else would fit an int.
  int horizontalOffset() const override;
  int verticalOffset() const override;
  bool isIndexHidden(const QModelIndex& index) const override;
  QRegion visualRegionForSelection(const QItemSelection& selection) const override;

 private:
  void PaintPart(QPainter& painter, const QRect& area, int nFirstVisual, int nLastVisual);
  void PaintRow(QPainter& painter, const QStyleOptionViewItem& look, int nRow, int nFirstVisual,
                int nLastVisual);
  void FitRowHeight();
  void FitParts();
  int HeightBeneathNames() const;

  HeaderView* m_names;
  RowNumbers* m_numbers;
  QWidget* m_beneathNames = nullptr;
  int m_nRowHeight = 1;
  bool m_bFitting = false;
  /// Kept until the user scrolls: a window that is not yet in its place has no room to scroll in.
  std::optional<Scroll> m_scroll;
};

}  // namespace orvane::controls

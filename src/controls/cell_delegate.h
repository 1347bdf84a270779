// Draws one cell of a grid: the text on its side, null in italics, the current cell framed.
// It asks the model once a cell, so that a page is drawn in the time of its cells alone.
#pragma once

#include <QStyledItemDelegate>

namespace orvane::controls {

class RowModel;

/// The frame of what has the keys: the current cell, or a part of the grid that has no cells.
void DrawFocus(QPainter& painter, const QRect& rect, const QColor& colour);

class CellDelegate : public QStyledItemDelegate {
 public:
  /// Pixels between a cell's edge and its text.
  static constexpr int kMargin = 6;

  CellDelegate(const RowModel& model, QObject* parent)
      : QStyledItemDelegate(parent), m_model(model) {}

  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override;
  /// The whole value of a cell whose text does not fit or was cut.
  bool helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                 const QModelIndex& index) override;

 private:
  const RowModel& m_model;
};

}  // namespace orvane::controls

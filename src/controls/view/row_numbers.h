// The numbers of a grid's rows at their left, and what is done with the mouse there: a press
// selects the row, a drag the rows it goes over, the corner above selects all.
// Owned by the view of the rows; user-interface thread.
#pragma once

#include <QWidget>

namespace orvane::controls {

class RowArea;

class RowNumbers : public QWidget {
  Q_OBJECT

 public:
  explicit RowNumbers(RowArea& area);

  /// Width that the number of the last row needs.
  int FittingWidth() const;
  /// The height of this widget at which the row begins.
  int YOf(int nRow) const;

 signals:
  /// The row was pressed, or with bDragged gone over by the mouse that had pressed another one.
  void Pressed(int nRow, Qt::KeyboardModifiers modifiers, bool bDragged);
  void CornerPressed();
  void MenuAsked(int nRow, QPoint where);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  bool event(QEvent* event) override;

 private:
  int HeadHeight() const;
  int MarkWidth() const;
  void PaintNumber(QPainter& painter, int nRow) const;

  RowArea& m_area;
  bool m_bPressed = false;
};

}  // namespace orvane::controls

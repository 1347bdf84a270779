// Draws one cell of a grid: the text on its side, null in italics, the current cell framed.
// It asks the model once a cell, so that a page is drawn in the time of its cells alone.
#pragma once

#include <QStyledItemDelegate>
#include <functional>
#include <initializer_list>
#include <utility>

#include "controls/view/row_model.h"

namespace orvane::controls {

struct Cell;
class CellEditor;

/// The frame of what has the keys: the current cell, or a part of the grid that has no cells.
void DrawFocus(QPainter& painter, const QRect& rect, const QColor& colour);

class CellDelegate : public QStyledItemDelegate {
 public:
  /// Pixels between a cell's edge and its text.
  static constexpr int kMargin = 6;

  /// The width of a cell in which so many pixels of a text fit.
  static int WidthFor(int nText);

  CellDelegate(RowModel& model, QObject* parent) : QStyledItemDelegate(parent), m_model(model) {}

  /// Called when a cell was painted that did not fit.
  using TooNarrow = std::function<void(int nColumn, const Cell&, const QFontMetrics&)>;
  void OnTooNarrow(TooNarrow handler) { m_tooNarrow = std::move(handler); }

  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override;
  /// Called for a value that is too long to be typed in a line, with its cell among the rows.
  void OnTooLong(std::function<void(const QModelIndex&)> handler) {
    m_tooLong = std::move(handler);
  }
  /// True where that is so: the value is edited elsewhere then.
  bool EditsElsewhere(const QModelIndex& index) const;

  /// A line in which the value is typed; none for what is edited elsewhere.
  QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                        const QModelIndex& index) const override;
  /// Does nothing: the line was made with the value.
  void setEditorData(QWidget* /*editor*/, const QModelIndex& /*index*/) const override {}
  /// Hands over what was typed; nothing when nothing was.
  void setModelData(QWidget* editor, QAbstractItemModel* model,
                    const QModelIndex& index) const override;
  /// The whole cell.
  void updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option,
                            const QModelIndex& index) const override;
  /// The whole value of a cell whose text does not fit or was cut.
  bool helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                 const QModelIndex& index) override;

  /// Called when something is typed into a cell, before it becomes its value; none for nobody.
  void OnTyped(std::function<void()> handler) { m_typed = std::move(handler); }

  /// The keys that end the typing: Enter and the arrows up and down, Tab, Escape.
  bool eventFilter(QObject* watched, QEvent* event) override;

 protected:
  /// The cell of the rows that an index of the view stands for; invalid for none.
  virtual QModelIndex CellOf(const QModelIndex& index) const { return index; }
  virtual Cell ShownAt(const QModelIndex& index) const {
    return m_model.CellAt(index.row(), index.column());
  }
  /// Where the cell beside one is; Qt::Key_Left or Qt::Key_Right.
  virtual int KeyToBeside(int nKey) const { return nKey; }
  RowModel& Rows() const { return m_model; }

 private:
  void Leave(CellEditor& editor, std::initializer_list<int> keys);

  RowModel& m_model;
  std::function<void()> m_typed;
  TooNarrow m_tooNarrow;
  std::function<void(const QModelIndex&)> m_tooLong;
};

}  // namespace orvane::controls

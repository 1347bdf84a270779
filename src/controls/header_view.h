// The column names of a grid, their texts in line with those of the cells.
// Used by the view of the rows; user-interface thread.
#pragma once

#include <QHeaderView>

namespace orvane::controls {

class HeaderView : public QHeaderView {
 public:
  /// Shows the names of the model's columns. It never asks for the model's rows: what a header
  /// does with a selected column would take a step for each of them.
  HeaderView(const QAbstractItemModel& source, QWidget* parent);

 protected:
  void paintSection(QPainter* painter, const QRect& rect, int nSection) const override;
  QSize sectionSizeFromContents(int nSection) const override;
  void initStyleOptionForIndex(QStyleOptionHeader* option, int nSection) const override;

 private:
  QString Label(int nSection) const;
};

}  // namespace orvane::controls

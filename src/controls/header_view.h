// The column names or row numbers of a grid, their texts in line with those of the cells.
// Used by the view of the rows; user-interface thread.
#pragma once

#include <QHeaderView>

namespace orvane::controls {

class HeaderView : public QHeaderView {
 public:
  HeaderView(Qt::Orientation orientation, QWidget* parent);

 protected:
  void paintSection(QPainter* painter, const QRect& rect, int nSection) const override;
  QSize sectionSizeFromContents(int nSection) const override;
  void initStyleOptionForIndex(QStyleOptionHeader* option, int nSection) const override;

 private:
  QString Label(int nSection) const;
};

}  // namespace orvane::controls

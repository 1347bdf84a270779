#include "controls/header_view.h"

#include <QAbstractTableModel>
#include <QPainter>
#include <QStyleOptionHeader>
#include <algorithm>

#include "controls/cell_delegate.h"

namespace orvane::controls {

namespace {

/// What is longer ends in an ellipsis, and the tool tip has it.
constexpr int kMostWidth = 1000;

QFont Strong(QFont font) {
  font.setBold(true);
  return font;
}

/// The columns of another model, without its rows.
class ColumnsAlone : public QAbstractTableModel {
 public:
  ColumnsAlone(const QAbstractItemModel& source, QObject* parent)
      : QAbstractTableModel(parent), m_source(source) {
    connect(&source, &QAbstractItemModel::modelAboutToBeReset, this, [this] { beginResetModel(); });
    connect(&source, &QAbstractItemModel::modelReset, this, [this] { endResetModel(); });
    connect(&source, &QAbstractItemModel::headerDataChanged, this,
            [this](Qt::Orientation orientation, int nFirst, int nLast) {
              if (orientation == Qt::Horizontal) emit headerDataChanged(orientation, nFirst, nLast);
            });
  }
  int rowCount(const QModelIndex& /*parent*/ = {}) const override { return 0; }
  int columnCount(const QModelIndex& parent = {}) const override {
    return parent.isValid() ? 0 : m_source.columnCount();
  }
  QVariant data(const QModelIndex& /*index*/, int /*nRole*/) const override { return {}; }
  QVariant headerData(int nSection, Qt::Orientation orientation, int nRole) const override {
    return orientation == Qt::Horizontal ? m_source.headerData(nSection, orientation, nRole)
                                         : QVariant();
  }

 private:
  const QAbstractItemModel& m_source;
};

}  // namespace

HeaderView::HeaderView(const QAbstractItemModel& source, QWidget* parent)
    : QHeaderView(Qt::Horizontal, parent) {
  setModel(new ColumnsAlone(source, this));
  setSectionsClickable(true);
  setHighlightSections(false);
}

void HeaderView::paintSection(QPainter* painter, const QRect& rect, int nSection) const {
  painter->save();
  QHeaderView::paintSection(painter, rect, nSection);
  painter->restore();

  const QRect text = rect.adjusted(CellDelegate::kMargin, 0, -CellDelegate::kMargin, 0);
  const int nAlignment =
      model()->headerData(nSection, orientation(), Qt::TextAlignmentRole).toInt();
  painter->setFont(font());
  style()->drawItemText(painter, text, nAlignment, palette(), isEnabled(),
                        fontMetrics().elidedText(Label(nSection), Qt::ElideRight, text.width()),
                        QPalette::ButtonText);
}

QSize HeaderView::sectionSizeFromContents(int nSection) const {
  const QFontMetrics metrics(Strong(font()));
  const int nWidth = metrics.horizontalAdvance(Label(nSection)) + 2 * CellDelegate::kMargin + 1;
  return {std::min(nWidth, kMostWidth), metrics.height() + 8};
}

void HeaderView::initStyleOptionForIndex(QStyleOptionHeader* option, int nSection) const {
  QHeaderView::initStyleOptionForIndex(option, nSection);
  // The style draws the section only; it would put the text closer to the edge than a cell's.
  option->text.clear();
}

QString HeaderView::Label(int nSection) const {
  return model()->headerData(nSection, orientation(), Qt::DisplayRole).toString();
}

}  // namespace orvane::controls

#include "controls/header_view.h"

#include <QAbstractTableModel>
#include <QMouseEvent>
#include <QPainter>
#include <QStyleOptionHeader>
#include <algorithm>

#include "controls/cell_delegate.h"

namespace orvane::controls {

namespace {

/// What is longer ends in an ellipsis, and the tool tip has it.
constexpr int kMostWidth = 1000;
constexpr int kArrow = 8;
constexpr int kArrowGap = 4;

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

  QRect text = rect.adjusted(CellDelegate::kMargin, 0, -CellDelegate::kMargin, 0);
  if (const QRect arrow = ArrowWithin(rect, nSection); arrow.isValid()) {
    PaintArrow(*painter, arrow, nSection);
    text.setRight(arrow.left() - kArrowGap);
  }
  const int nAlignment =
      model()->headerData(nSection, orientation(), Qt::TextAlignmentRole).toInt();
  painter->setFont(font());
  style()->drawItemText(painter, text, nAlignment, palette(), isEnabled(),
                        fontMetrics().elidedText(Label(nSection), Qt::ElideRight, text.width()),
                        QPalette::ButtonText);
}

// ---- arrows

int HeaderView::RankOf(int nColumn) const {
  const auto found = std::ranges::find(m_sort, nColumn, &SortColumn::column);
  return found == m_sort.end() ? -1 : static_cast<int>(found - m_sort.begin());
}

void HeaderView::Sorted(std::vector<SortColumn> sort) {
  m_sort = std::move(sort);
  viewport()->update();
}

void HeaderView::Offer(int nColumn) {
  if (nColumn == m_nOffered) return;
  m_nOffered = nColumn;
  viewport()->update();
}

QRect HeaderView::ArrowOf(int nColumn) const {
  return ArrowWithin(
      {sectionViewportPosition(nColumn), 0, sectionSize(nColumn), viewport()->height()}, nColumn);
}

QRect HeaderView::ArrowWithin(const QRect& section, int nColumn) const {
  const int nRank = RankOf(nColumn);
  if (nRank < 0 && nColumn != m_nOffered) return {};
  const bool bNumbered = nRank >= 0 && m_sort.size() > 1;
  const int nNumber = bNumbered ? fontMetrics().horizontalAdvance(QString::number(nRank + 1)) : 0;
  const int nWidth = kArrow + nNumber;
  return {section.right() - CellDelegate::kMargin - nWidth, section.top(), nWidth,
          section.height()};
}

void HeaderView::PaintArrow(QPainter& painter, const QRect& rect, int nColumn) const {
  const int nRank = RankOf(nColumn);
  const bool bUp = nRank < 0 || m_sort[static_cast<std::size_t>(nRank)].bAscending;
  const QColor colour =
      palette().color(nRank < 0 ? QPalette::PlaceholderText : QPalette::ButtonText);
  const int nMiddle = rect.center().y();
  const int nTip = bUp ? nMiddle - kArrow / 4 - 1 : nMiddle + kArrow / 4 + 1;
  const int nFoot = bUp ? nMiddle + kArrow / 4 : nMiddle - kArrow / 4;
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(colour);
  painter.drawPolygon(QPolygon(
      {{rect.left(), nFoot}, {rect.left() + kArrow, nFoot}, {rect.left() + kArrow / 2, nTip}}));
  if (nRank >= 0 && m_sort.size() > 1) {
    painter.setPen(colour);
    painter.drawText(rect, Qt::AlignRight | Qt::AlignVCenter, QString::number(nRank + 1));
  }
  painter.restore();
}

void HeaderView::mousePressEvent(QMouseEvent* event) {
  const int nColumn = logicalIndexAt(event->pos());
  const QRect arrow = nColumn < 0 ? QRect() : ArrowOf(nColumn);
  m_nPressed = event->button() == Qt::LeftButton && arrow.contains(event->pos()) ? nColumn : -1;
  if (m_nPressed < 0) QHeaderView::mousePressEvent(event);
}

void HeaderView::mouseReleaseEvent(QMouseEvent* event) {
  const int nPressed = std::exchange(m_nPressed, -1);
  if (nPressed < 0) return QHeaderView::mouseReleaseEvent(event);
  const bool bClicked = ArrowOf(nPressed).contains(event->pos());
  if (bClicked && m_arrow) m_arrow(nPressed, event->modifiers());
}

QSize HeaderView::sectionSizeFromContents(int nSection) const {
  const QFontMetrics metrics(Strong(font()));
  const int nWidth = metrics.horizontalAdvance(Label(nSection)) + 2 * CellDelegate::kMargin + 1 +
                     kArrow + kArrowGap;
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

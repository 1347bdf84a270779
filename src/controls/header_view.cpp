#include "controls/header_view.h"

#include <QAbstractItemView>
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

}  // namespace

HeaderView::HeaderView(Qt::Orientation orientation, QWidget* parent)
    : QHeaderView(orientation, parent) {
  setSectionsClickable(true);
  setHighlightSections(false);
}

void HeaderView::paintSection(QPainter* painter, const QRect& rect, int nSection) const {
  painter->save();
  QHeaderView::paintSection(painter, rect, nSection);
  painter->restore();

  const auto* view = qobject_cast<const QAbstractItemView*>(parentWidget());
  const bool bCurrentRow =
      orientation() == Qt::Vertical && view != nullptr && view->currentIndex().row() == nSection;
  const QFont labelFont = bCurrentRow ? Strong(font()) : font();
  const QRect text = rect.adjusted(CellDelegate::kMargin, 0, -CellDelegate::kMargin, 0);
  const int nAlignment =
      model()->headerData(nSection, orientation(), Qt::TextAlignmentRole).toInt();
  painter->setFont(labelFont);
  style()->drawItemText(
      painter, text, nAlignment, palette(), isEnabled(),
      QFontMetrics(labelFont).elidedText(Label(nSection), Qt::ElideRight, text.width()),
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

#include "controls/cell_delegate.h"

#include <QAbstractItemView>
#include <QHelpEvent>
#include <QPainter>
#include <QToolTip>
#include <algorithm>

#include "controls/row_model.h"
#include "controls/tip_text.h"

namespace orvane::controls {

namespace {

QFont FontOf(const Cell& cell, const QFont& font) {
  QFont cellFont = font;
  cellFont.setItalic(cell.bNull);
  return cellFont;
}

QString Fitting(const QString& sText, const QFontMetrics& metrics, int nWidth) {
  // Shaping a text costs time for each character, so the part that can never be in sight is left
  // out before the rest is measured. Nothing that is drawn is narrower than two pixels.
  const int nCharacters = std::max(0, nWidth) / 2 + 1;
  if (sText.size() <= nCharacters) return metrics.elidedText(sText, Qt::ElideRight, nWidth);
  return metrics.elidedText(sText.left(nCharacters) + QChar(0x2026), Qt::ElideRight, nWidth);
}

}  // namespace

void DrawFocus(QPainter& painter, const QRect& rect, const QColor& colour) {
  constexpr int kWidth = 2;
  painter.save();
  QPen pen(colour, kWidth);
  pen.setJoinStyle(Qt::MiterJoin);
  painter.setPen(pen);
  painter.setBrush(Qt::NoBrush);
  painter.drawRect(rect.adjusted(kWidth / 2, kWidth / 2, -kWidth / 2, -kWidth / 2));
  painter.restore();
}

void CellDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                         const QModelIndex& index) const {
  const Cell cell = m_model.CellAt(index.row(), index.column());
  const bool bSelected = option.state.testFlag(QStyle::State_Selected);
  const auto group =
      option.state.testFlag(QStyle::State_Active) ? QPalette::Active : QPalette::Inactive;
  if (bSelected) painter->fillRect(option.rect, option.palette.brush(group, QPalette::Highlight));

  const auto role = bSelected    ? QPalette::HighlightedText
                    : cell.bNull ? QPalette::PlaceholderText
                                 : QPalette::Text;
  const QFont font = FontOf(cell, option.font);
  const QRect text = option.rect.adjusted(kMargin, 0, -kMargin, 0);
  painter->setFont(font);
  painter->setPen(option.palette.color(group, role));
  painter->drawText(text, static_cast<int>(cell.alignment) | Qt::TextSingleLine,
                    Fitting(cell.sText, QFontMetrics(font), text.width()));

  if (option.state.testFlag(QStyle::State_HasFocus)) {
    const auto frame = bSelected ? QPalette::HighlightedText : QPalette::Highlight;
    DrawFocus(*painter, option.rect, option.palette.color(group, frame));
  }
}

bool CellDelegate::helpEvent(QHelpEvent* event, QAbstractItemView* /*view*/,
                             const QStyleOptionViewItem& option, const QModelIndex& index) {
  if (event->type() != QEvent::ToolTip || !index.isValid()) return false;
  const platform::Value vtValue = m_model.ValueAt(index.row(), index.column());
  const Cell cell = m_model.CellAt(index.row(), index.column());
  const int nWidth = QFontMetrics(FontOf(cell, option.font)).horizontalAdvance(cell.sText);
  const QString sWhole = m_model.Format().Whole(vtValue);
  const bool bWholeInSight =
      nWidth <= option.rect.width() - 2 * kMargin && (cell.bNull || cell.sText == sWhole);
  if (bWholeInSight) {
    QToolTip::hideText();
    return true;
  }
  QToolTip::showText(event->globalPos(),
                     TipText(sWhole, "To see it whole, copy the cell with Ctrl+C."));
  return true;
}

}  // namespace orvane::controls

#include "controls/view/row_numbers.h"

#include <QContextMenuEvent>
#include <QCoreApplication>
#include <QHelpEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <QStyleOptionHeader>
#include <QToolTip>
#include <algorithm>

#include "controls/view/cell_delegate.h"
#include "controls/view/header_view.h"
#include "controls/view/row_area.h"
#include "controls/view/row_model.h"

namespace orvane::controls {

namespace {

constexpr int kLeastDigits = 2;

QFont Bold(QFont font) {
  font.setBold(true);
  return font;
}

}  // namespace

RowNumbers::RowNumbers(RowArea& area) : QWidget(&area), m_area(area) {
  setObjectName("rowNumbers");
  setAccessibleName("Row numbers");
}

int RowNumbers::HeadHeight() const {
  return m_area.HeadHeight();
}

int RowNumbers::FittingWidth() const {
  const auto nDigits =
      std::max<qsizetype>(kLeastDigits, QString::number(m_area.model()->rowCount()).size());
  const QFontMetrics metrics(Bold(font()));
  return metrics.horizontalAdvance(QString(nDigits, u'8')) + 2 * CellDelegate::kMargin + 1 +
         MarkWidth();
}

int RowNumbers::MarkWidth() const {
  if (m_area.editTriggers() == QAbstractItemView::NoEditTriggers) return 0;
  return QFontMetrics(Bold(font())).horizontalAdvance(u'+') + CellDelegate::kMargin;
}

int RowNumbers::YOf(int nRow) const {
  return HeadHeight() + m_area.YOf(nRow);
}

void RowNumbers::paintEvent(QPaintEvent* event) {
  if (width() == 0) return;  // there is nothing to paint on
  QPainter painter(this);
  QStyleOptionHeader head;
  head.initFrom(this);
  head.orientation = Qt::Vertical;
  head.rect = {0, 0, width(), HeadHeight()};
  // Without columns there is no corner, and the toolkit complains when it is to draw one.
  if (!head.rect.isEmpty()) style()->drawControl(QStyle::CE_HeaderSection, &head, &painter, this);
  painter.setClipRect(event->rect() & QRect(0, HeadHeight(), width(), height() - HeadHeight()));
  head.rect = {0, HeadHeight(), width(), height() - HeadHeight()};
  style()->drawControl(QStyle::CE_HeaderEmptyArea, &head, &painter, this);
  const int nFirst = m_area.RowAt(std::max(0, event->rect().top() - HeadHeight()));
  if (nFirst < 0) return;
  const int nRows = m_area.model()->rowCount();
  for (int nRow = nFirst; nRow < nRows && YOf(nRow) <= event->rect().bottom(); ++nRow) {
    PaintNumber(painter, nRow);
  }
}

void RowNumbers::PaintNumber(QPainter& painter, int nRow) const {
  QStyleOptionHeader section;
  section.initFrom(this);
  section.orientation = Qt::Vertical;
  section.section = nRow;
  section.rect = {0, YOf(nRow), width(), m_area.RowHeight()};
  section.position = QStyleOptionHeader::Middle;
  style()->drawControl(QStyle::CE_HeaderSection, &section, &painter, this);
  if (m_area.model()->headerData(nRow, Qt::Vertical, RowModel::kNewRole).toBool()) {
    const QRect mark(section.rect.left() + 2, section.rect.top() + 3, 4, section.rect.height() - 6);
    painter.fillRect(mark, palette().color(QPalette::Highlight));
  }
  const bool bCurrent = m_area.currentIndex().row() == nRow;
  painter.setFont(bCurrent ? Bold(font()) : font());
  const QRect text = section.rect.adjusted(CellDelegate::kMargin, 0, -CellDelegate::kMargin, 0);
  style()->drawItemText(
      &painter, text, static_cast<int>(Qt::AlignRight | Qt::AlignVCenter), palette(), isEnabled(),
      m_area.model()->headerData(nRow, Qt::Vertical).toString(), QPalette::ButtonText);
  const QString sMark =
      m_area.model()->headerData(nRow, Qt::Vertical, Qt::DecorationRole).toString();
  if (sMark.isEmpty()) return;
  painter.setFont(Bold(font()));
  style()->drawItemText(&painter, text, static_cast<int>(Qt::AlignLeft | Qt::AlignVCenter),
                        palette(), isEnabled(), sMark, QPalette::ButtonText);
}

void RowNumbers::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  const int y = event->pos().y() - HeadHeight();
  if (y < 0) {
    emit CornerPressed();
    return;
  }
  const int nRow = m_area.RowAt(y);
  if (nRow < 0) return;
  m_bPressed = true;
  emit Pressed(nRow, event->modifiers(), false);
}

void RowNumbers::mouseMoveEvent(QMouseEvent* event) {
  const int nRows = m_area.model()->rowCount();
  if (!m_bPressed || nRows == 0) return;
  // Beyond the edge the rows come along, one with each move.
  const int y = event->pos().y() - HeadHeight();
  int nRow = m_area.RowAt(std::min(y, height() - HeadHeight() - 1));
  if (y < 0) nRow = std::max(0, m_area.TopRow() - 1);
  if (nRow < 0) nRow = nRows - 1;
  emit Pressed(nRow, event->modifiers(), true);
}

void RowNumbers::mouseReleaseEvent(QMouseEvent* /*event*/) {
  m_bPressed = false;
}

void RowNumbers::wheelEvent(QWheelEvent* event) {
  QCoreApplication::sendEvent(m_area.verticalScrollBar(), event);
}

void RowNumbers::contextMenuEvent(QContextMenuEvent* event) {
  const int nRow = m_area.RowAt(event->pos().y() - HeadHeight());
  if (nRow >= 0) emit MenuAsked(nRow, event->globalPos());
}

bool RowNumbers::event(QEvent* event) {
  if (event->type() == QEvent::ToolTip) {
    const auto& help = *static_cast<QHelpEvent*>(event);
    const int nRow = m_area.RowAt(help.pos().y() - HeadHeight());
    QToolTip::showText(
        help.globalPos(),
        nRow < 0 ? QString()
                 : m_area.model()->headerData(nRow, Qt::Vertical, Qt::ToolTipRole).toString(),
        this);
    return true;
  }
  // A row's number is bold while its cell is the current one.
  if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) update();
  return QWidget::event(event);
}

}  // namespace orvane::controls

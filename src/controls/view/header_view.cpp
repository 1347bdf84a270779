#include "controls/view/header_view.h"

#include <QAbstractTableModel>
#include <QApplication>
#include <QHelpEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QStyleOptionHeader>
#include <algorithm>
#include <chrono>

#include "controls/view/cell_delegate.h"

namespace orvane::controls {

namespace {

/// What has more characters ends in an ellipsis, and the tool tip has it.
constexpr int kMostNameWidth = 144;
constexpr int kArrowGap = 4;
/// Held columns leave at least so many characters to the others.
constexpr int kLeastBesideHeld = 14;
constexpr int kDropMark = 3;
constexpr std::chrono::milliseconds kEdgeStep(60);

QFont Strong(QFont font) {
  font.setBold(true);
  return font;
}

/// The toolkit looks for held names where they would be if they were scrolled.
QMouseEvent Shifted(const QMouseEvent& event, int nShift) {
  return {event.type(),          event.position() - QPointF(nShift, 0),
          event.scenePosition(), event.globalPosition(),
          event.button(),        event.buttons(),
          event.modifiers()};
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
  m_atEdge.setInterval(kEdgeStep);
  m_atEdge.callOnTimeout(this, [this] { ScrollAtEdge(); });
  // Not pressed where a width is dragged.
  connect(this, &QHeaderView::sectionPressed, this, [this](int n) { m_nNamePressed = n; });
}

// ---- held columns

void HeaderView::Hold(int nColumns) {
  m_nHeld = std::max(0, nColumns);
  viewport()->update();
  emit geometriesChanged();
}

int HeaderView::HeldEnd() const {
  int nWidth = 0;
  int nEnd = 0;
  for (; nEnd < std::min(m_nHeld, count()); ++nEnd) {
    nWidth += sectionSize(logicalIndex(nEnd));
    const int nOthers = kLeastBesideHeld * fontMetrics().averageCharWidth();
    if (nWidth > viewport()->width() - nOthers) break;
  }
  return nEnd;
}

int HeaderView::HeldWidth() const {
  int nWidth = 0;
  for (int nVisual = HeldEnd() - 1; nVisual >= 0; --nVisual) {
    nWidth += sectionSize(logicalIndex(nVisual));
  }
  return nWidth;
}

int HeaderView::LeftOf(int nColumn) const {
  return m_nHeld > 0 && IsHeld(nColumn) ? sectionPosition(nColumn)
                                        : sectionViewportPosition(nColumn);
}

int HeaderView::ColumnAt(int x) const {
  return logicalIndexAt(x >= 0 && x < HeldWidth() ? x - offset() : x);
}

std::vector<int> HeaderView::Shown() const {
  std::vector<int> columns;
  for (int nVisual = 0; nVisual < count(); ++nVisual) {
    const int nColumn = logicalIndex(nVisual);
    if (!isSectionHidden(nColumn)) columns.push_back(nColumn);
  }
  return columns;
}

void HeaderView::paintEvent(QPaintEvent* event) {
  QHeaderView::paintEvent(event);
  const int nHeld = HeldEnd();
  if (nHeld == 0 && !m_bDragging) return;
  QPainter painter(viewport());
  for (int nVisual = 0; nVisual < nHeld; ++nVisual) {
    const int nColumn = logicalIndex(nVisual);
    if (isSectionHidden(nColumn)) continue;
    paintSection(&painter, {LeftOf(nColumn), 0, sectionSize(nColumn), viewport()->height()},
                 nColumn);
  }
  if (!m_bDragging || m_nDropPlace < 0) return;
  const int nAt = logicalIndex(m_nDropPlace);
  const bool bBehind = m_nDropPlace > visualIndex(m_nNamePressed);
  const int x = LeftOf(nAt) + (bBehind ? sectionSize(nAt) : 0);
  painter.fillRect(x - kDropMark / 2, 0, kDropMark, viewport()->height(),
                   palette().color(QPalette::Highlight));
}

void HeaderView::paintSection(QPainter* painter, const QRect& rect, int nSection) const {
  painter->save();
  const int nHeldWidth = HeldWidth();
  const bool bScrolled = nHeldWidth > 0 && !IsHeld(nSection);
  if (bScrolled) {
    painter->setClipRect(nHeldWidth, 0, viewport()->width(), viewport()->height());
  }
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
  painter->restore();
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
  return ArrowWithin({LeftOf(nColumn), 0, sectionSize(nColumn), viewport()->height()}, nColumn);
}

int HeaderView::ArrowSize() const {
  // An even number, so that its tip is in the middle.
  return fontMetrics().height() / 4 * 2;
}

QRect HeaderView::ArrowWithin(const QRect& section, int nColumn) const {
  const int nRank = RankOf(nColumn);
  if (nRank < 0 && nColumn != m_nOffered) return {};
  const bool bNumbered = nRank >= 0 && m_sort.size() > 1;
  const int nNumber = bNumbered ? fontMetrics().horizontalAdvance(QString::number(nRank + 1)) : 0;
  const int nWidth = ArrowSize() + nNumber;
  return {section.right() - CellDelegate::kMargin - nWidth, section.top(), nWidth,
          section.height()};
}

void HeaderView::PaintArrow(QPainter& painter, const QRect& rect, int nColumn) const {
  const int nRank = RankOf(nColumn);
  const bool bUp = nRank < 0 || m_sort[static_cast<std::size_t>(nRank)].bAscending;
  const QColor colour =
      palette().color(nRank < 0 ? QPalette::PlaceholderText : QPalette::ButtonText);
  const int nMiddle = rect.center().y();
  const int nArrow = ArrowSize();
  const int nTip = bUp ? nMiddle - nArrow / 4 - 1 : nMiddle + nArrow / 4 + 1;
  const int nFoot = bUp ? nMiddle + nArrow / 4 : nMiddle - nArrow / 4;
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  // One that is only offered is hollow: filled, it would say that the rows stand in that order.
  painter.setPen(nRank < 0 ? QPen(colour) : QPen(Qt::NoPen));
  painter.setBrush(nRank < 0 ? QBrush(Qt::NoBrush) : QBrush(colour));
  painter.drawPolygon(QPolygon(
      {{rect.left(), nFoot}, {rect.left() + nArrow, nFoot}, {rect.left() + nArrow / 2, nTip}}));
  if (nRank >= 0 && m_sort.size() > 1) {
    painter.setPen(colour);
    painter.drawText(rect, Qt::AlignRight | Qt::AlignVCenter, QString::number(nRank + 1));
  }
  painter.restore();
}

// ---- mouse

int HeaderView::HeldEdgeAt(int x) const {
  const int nGrip = style()->pixelMetric(QStyle::PM_HeaderGripMargin, nullptr, this);
  for (int nVisual = HeldEnd() - 1; nVisual >= 0; --nVisual) {
    const int nColumn = logicalIndex(nVisual);
    const int nEdge = LeftOf(nColumn) + sectionSize(nColumn);
    if (!isSectionHidden(nColumn) && std::abs(x - nEdge) <= nGrip) return nColumn;
  }
  return -1;
}

void HeaderView::mousePressEvent(QMouseEvent* event) {
  const int nColumn = ColumnAt(event->pos().x());
  const QRect arrow = nColumn < 0 ? QRect() : ArrowOf(nColumn);
  m_nPressed = event->button() == Qt::LeftButton && arrow.contains(event->pos()) ? nColumn : -1;
  m_nNamePressed = -1;
  if (m_nPressed >= 0) return;
  m_pressedAt = event->pos();
  if (event->button() == Qt::LeftButton) m_nSized = HeldEdgeAt(event->pos().x());
  if (m_nSized >= 0) return;
  m_nHandShift = event->pos().x() < HeldWidth() ? offset() : 0;
  QMouseEvent press = Shifted(*event, m_nHandShift);
  QHeaderView::mousePressEvent(&press);
  // With these keys a drag extends the selection.
  if (event->modifiers() & (Qt::ShiftModifier | Qt::ControlModifier)) m_nNamePressed = -1;
}

void HeaderView::mouseMoveEvent(QMouseEvent* event) {
  const bool bDown = event->buttons().testFlag(Qt::LeftButton);
  // The toolkit follows no edge that it thinks to be scrolled out of sight.
  if (bDown && m_nSized >= 0) {
    const int nWidth = event->pos().x() - LeftOf(m_nSized);
    return resizeSection(m_nSized, std::max(nWidth, minimumSectionSize()));
  }
  if (!bDown && HeldEdgeAt(event->pos().x()) >= 0) return setCursor(Qt::SplitHCursor);
  if (!bDown && event->pos().x() < HeldWidth()) unsetCursor();
  if (bDown && m_nNamePressed >= 0) {
    const int nMoved = std::abs(event->pos().x() - m_pressedAt.x());
    if (m_bDragging || nMoved >= QApplication::startDragDistance()) FollowDrag(event->pos());
    return;
  }
  if (!bDown) m_nHandShift = event->pos().x() < HeldWidth() ? offset() : 0;
  QMouseEvent move = Shifted(*event, m_nHandShift);
  QHeaderView::mouseMoveEvent(&move);
  if (m_nHeld > 0) viewport()->update();
}

void HeaderView::mouseReleaseEvent(QMouseEvent* event) {
  const int nPressed = std::exchange(m_nPressed, -1);
  if (nPressed >= 0) {
    const bool bClicked = ArrowOf(nPressed).contains(event->pos());
    if (bClicked && m_arrow) m_arrow(nPressed, event->modifiers());
    return;
  }
  if (std::exchange(m_nSized, -1) >= 0) return;
  if (m_bDragging) {
    FollowDrag(event->pos());
    // A name that was dragged was not clicked.
    QMouseEvent elsewhere(event->type(), QPointF(-1, -1), event->globalPosition(), event->button(),
                          event->buttons(), event->modifiers());
    QHeaderView::mouseReleaseEvent(&elsewhere);
    Drop();
  } else {
    QMouseEvent release = Shifted(*event, m_nHandShift);
    QHeaderView::mouseReleaseEvent(&release);
  }
  m_nNamePressed = -1;
}

bool HeaderView::viewportEvent(QEvent* event) {
  if (event->type() != QEvent::ToolTip) return QHeaderView::viewportEvent(event);
  const auto& help = *static_cast<QHelpEvent*>(event);
  const int nShift = help.pos().x() < HeldWidth() ? offset() : 0;
  QHelpEvent shifted(help.type(), help.pos() - QPoint(nShift, 0), help.globalPos());
  return QHeaderView::viewportEvent(&shifted);
}

void HeaderView::mouseDoubleClickEvent(QMouseEvent* event) {
  const int nEdge = HeldEdgeAt(event->pos().x());
  if (nEdge >= 0) return emit sectionHandleDoubleClicked(nEdge);
  QMouseEvent click = Shifted(*event, event->pos().x() < HeldWidth() ? offset() : 0);
  QHeaderView::mouseDoubleClickEvent(&click);
}

void HeaderView::FollowDrag(QPoint at) {
  m_bDragging = true;
  m_draggedTo = at;
  const int nLast = std::max(0, std::min(viewport()->width(), length() - offset()) - 1);
  const int nColumn = ColumnAt(std::clamp(at.x(), 0, nLast));
  m_nDropPlace = nColumn < 0 ? -1 : visualIndex(nColumn);
  if (at.x() < HeldWidth() || at.x() >= viewport()->width()) {
    if (!m_atEdge.isActive()) m_atEdge.start();
  } else {
    m_atEdge.stop();
  }
  viewport()->update();
}

void HeaderView::reset() {
  m_atEdge.stop();
  m_bDragging = false;
  m_nDropPlace = -1;
  m_nNamePressed = -1;
  m_nSized = -1;
  QHeaderView::reset();
}

void HeaderView::ScrollAtEdge() {
  if (m_scroll) m_scroll(m_draggedTo.x() < HeldWidth() ? -1 : 1);
  FollowDrag(m_draggedTo);
}

void HeaderView::Drop() {
  m_atEdge.stop();
  m_bDragging = false;
  const int nFrom = m_nNamePressed < count() ? visualIndex(m_nNamePressed) : -1;
  const int nTo = std::exchange(m_nDropPlace, -1);
  if (nFrom >= 0 && nTo >= 0 && nTo < count() && nFrom != nTo) moveSection(nFrom, nTo);
  viewport()->update();
}

QSize HeaderView::sectionSizeFromContents(int nSection) const {
  const QFontMetrics metrics(Strong(font()));
  const int nWidth = metrics.horizontalAdvance(Label(nSection)) + 2 * CellDelegate::kMargin + 1 +
                     ArrowSize() + kArrowGap;
  return {std::min(nWidth, kMostNameWidth * fontMetrics().averageCharWidth()),
          metrics.height() + 8};
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

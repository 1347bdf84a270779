#include "controls/view/row_area.h"

#include <QPaintEvent>
#include <QPainter>
#include <QScrollBar>
#include <algorithm>
#include <cstdint>

#include "controls/view/cell_delegate.h"
#include "controls/view/header_view.h"
#include "controls/view/row_numbers.h"

namespace orvane::controls {

namespace {

constexpr int kRowPadding = 8;
/// Further away a cell is not told from one that is a little nearer.
constexpr std::int64_t kFarthest = 1 << 28;

int DivideDown(int n, int nBy) {
  return n >= 0 ? n / nBy : -((nBy - 1 - n) / nBy);
}

}  // namespace

RowArea::RowArea(QAbstractItemModel* model, QWidget* parent)
    : QAbstractItemView(parent),
      m_names(new HeaderView(*model, this)),
      m_numbers(new RowNumbers(*this)) {
  model->setParent(this);
  setModel(model);
  setFrameShape(QFrame::NoFrame);
  setVerticalScrollMode(ScrollPerItem);
  setHorizontalScrollMode(ScrollPerPixel);

  m_names->setSectionResizeMode(QHeaderView::Interactive);
  m_names->setMinimumSectionSize(kLeastColumnWidth);
  m_names->setTextElideMode(Qt::ElideRight);
  m_names->setFocusProxy(this);
  connect(m_names, &QHeaderView::sectionResized, this, [this] {
    updateGeometries();
    viewport()->update();
  });
  connect(m_names, &QHeaderView::geometriesChanged, this, [this] { updateGeometries(); });
  connect(m_names, &QHeaderView::sectionMoved, this, [this] { viewport()->update(); });
  m_names->OnScrollWanted([this](int nDirection) {
    QScrollBar* bar = horizontalScrollBar();
    bar->setValue(bar->value() + nDirection * bar->singleStep());
  });
  connect(m_names, &QHeaderView::sectionHandleDoubleClicked, this,
          [this](int nColumn) { FitColumn(nColumn); });
  connect(model, &QAbstractItemModel::headerDataChanged, m_numbers,
          [this] { m_numbers->update(); });
  connect(model, &QAbstractItemModel::rowsRemoved, this, [this] { updateGeometries(); });

  const auto forgetScroll = [this] { ForgetScroll(); };
  for (const QScrollBar* bar : {verticalScrollBar(), horizontalScrollBar()}) {
    connect(bar, &QScrollBar::actionTriggered, this, forgetScroll);
    connect(bar, &QScrollBar::sliderPressed, this, forgetScroll);
  }
  FitRowHeight();
}

RowArea::~RowArea() {
  // The names tell of themselves while the window is taken down, when this is no area any more.
  m_names->disconnect(this);
}

// ---- rows and pixels

int RowArea::TopRow() const {
  return verticalScrollBar()->value();
}

int RowArea::RowsInSight() const {
  return std::max(1, viewport()->height() / m_nRowHeight);
}

int RowArea::RowAt(int y) const {
  if (y < 0) return -1;
  const std::int64_t row = std::int64_t{TopRow()} + y / m_nRowHeight;
  return row < model()->rowCount() ? static_cast<int>(row) : -1;
}

int RowArea::YOf(int nRow) const {
  const std::int64_t y = (std::int64_t{nRow} - TopRow()) * m_nRowHeight;
  return static_cast<int>(std::clamp(y, -kFarthest, kFarthest));
}

int RowArea::ColumnWidth(int nColumn) const {
  return m_names->sectionSize(nColumn);
}

void RowArea::ColumnWidth(int nColumn, int nWidth) {
  m_names->resizeSection(nColumn, nWidth);
}

void RowArea::FitColumn(int nColumn) {
  ColumnWidth(nColumn, std::max({sizeHintForColumn(nColumn), m_names->sectionSizeHint(nColumn),
                                 kLeastColumnWidth}));
}

QRect RowArea::visualRect(const QModelIndex& index) const {
  if (!index.isValid() || m_names->isSectionHidden(index.column())) return {};
  // One pixel at the right and beneath is the line of the grid.
  return {m_names->LeftOf(index.column()), YOf(index.row()), ColumnWidth(index.column()) - 1,
          m_nRowHeight - 1};
}

QModelIndex RowArea::indexAt(const QPoint& point) const {
  const int nRow = RowAt(point.y());
  const int nColumn = m_names->ColumnAt(point.x());
  return nRow < 0 || nColumn < 0 ? QModelIndex() : model()->index(nRow, nColumn);
}

QModelIndex RowArea::CellNear(QPoint point) const {
  const int nRows = model()->rowCount();
  if (nRows == 0 || m_names->count() == 0) return {};
  const std::int64_t row = std::int64_t{TopRow()} + DivideDown(point.y(), m_nRowHeight);
  const int x = std::clamp(point.x(), 0, std::max(0, viewport()->width() - 1));
  int nColumn = m_names->ColumnAt(x);
  if (nColumn < 0) {  // beside the last one
    int nVisual = m_names->count() - 1;
    while (nVisual > 0 && m_names->isSectionHidden(m_names->logicalIndex(nVisual))) --nVisual;
    nColumn = m_names->logicalIndex(nVisual);
  }
  return model()->index(static_cast<int>(std::clamp<std::int64_t>(row, 0, nRows - 1)), nColumn);
}

void RowArea::scrollTo(const QModelIndex& index, ScrollHint hint) {
  if (!index.isValid() || isIndexHidden(index)) return;
  const int nRow = index.row();
  const int nInSight = RowsInSight();
  const bool bAbove = nRow < TopRow();
  const bool bBelow = nRow - TopRow() >= nInSight;
  if (hint == PositionAtCenter) {
    verticalScrollBar()->setValue(nRow - nInSight / 2);
  } else if (hint == PositionAtTop || (hint == EnsureVisible && bAbove)) {
    verticalScrollBar()->setValue(nRow);
  } else if (hint == PositionAtBottom || (hint == EnsureVisible && bBelow)) {
    verticalScrollBar()->setValue(nRow - nInSight + 1);
  }

  ShowColumn(index.column());
}

int RowArea::FirstShown() const {
  for (int nVisual = 0; nVisual < m_names->count(); ++nVisual) {
    const int nColumn = m_names->logicalIndex(nVisual);
    if (!m_names->isSectionHidden(nColumn)) return nColumn;
  }
  return 0;
}

void RowArea::ShowColumn(int nColumn) {
  if (m_names->IsHeld(nColumn)) return;
  const int nLeft = m_names->sectionPosition(nColumn);
  const int nRight = nLeft + ColumnWidth(nColumn);
  const int nHeld = m_names->HeldWidth();
  QScrollBar* bar = horizontalScrollBar();
  if (nLeft < bar->value() + nHeld || nRight - nLeft > viewport()->width() - nHeld) {
    bar->setValue(nLeft - nHeld);
  } else if (nRight > bar->value() + viewport()->width()) {
    bar->setValue(nRight - viewport()->width());
  }
}

int RowArea::horizontalOffset() const {
  return m_names->offset();
}

int RowArea::verticalOffset() const {
  return TopRow();
}

bool RowArea::isIndexHidden(const QModelIndex& index) const {
  return m_names->isSectionHidden(index.column());
}

QRegion RowArea::visualRegionForSelection(const QItemSelection& selection) const {
  QRegion region;
  const int nLastRow = TopRow() + RowsInSight() + 1;
  for (const QItemSelectionRange& range : selection) {
    const int nTop = std::max(range.top(), TopRow());
    const int nBottom = std::min(range.bottom(), nLastRow);
    if (!range.isValid() || nTop > nBottom) continue;
    for (int n = range.left(); n <= range.right(); ++n) {
      region += visualRect(model()->index(nTop, n)) | visualRect(model()->index(nBottom, n));
    }
  }
  return region & viewport()->rect();
}

void RowArea::PutBeneathNames(QWidget* widget) {
  m_beneathNames = widget;
  updateGeometries();
}

int RowArea::HeadHeight() const {
  return m_names->sizeHint().height() + HeightBeneathNames();
}

int RowArea::HeightBeneathNames() const {
  const bool bShown = m_beneathNames && !m_beneathNames->isHidden();
  return bShown ? m_beneathNames->sizeHint().height() : 0;
}

// ---- scrolling

RowArea::Scroll RowArea::ScrolledTo() const {
  return m_scroll.value_or(Scroll{TopRow(), horizontalScrollBar()->value()});
}

void RowArea::ScrollBackTo(Scroll scroll) {
  m_scroll = scroll;
  updateGeometries();
}

void RowArea::wheelEvent(QWheelEvent* event) {
  ForgetScroll();
  QAbstractItemView::wheelEvent(event);
}

void RowArea::scrollContentsBy(int dx, int /*dy*/) {
  if (dx != 0) {
    m_names->setOffset(horizontalScrollBar()->value());
    // The toolkit moves what it has painted, and held names are not to move.
    if (m_names->Held() > 0) m_names->viewport()->update();
  }
  viewport()->update();
  m_numbers->update();
  updateEditorGeometries();
}

void RowArea::updateEditorGeometries() {
  QAbstractItemView::updateEditorGeometries();
  QWidget* editor = currentIndex().isValid() ? indexWidget(currentIndex()) : nullptr;
  if (!editor) return;
  // One that is scrolled does not lie over the columns that are held.
  const int nCovered = m_names->HeldWidth() - editor->x();
  if (nCovered <= 0 || m_names->IsHeld(currentIndex().column())) return editor->clearMask();
  editor->setMask(QRegion(editor->rect().adjusted(nCovered, 0, 0, 0)) +
                  QRegion(-2, -2, 1, 1));  // an empty mask would be none
}

void RowArea::updateGeometries() {
  // Scroll bars that come or go change the room that they were worked out for.
  if (m_bFitting) return;
  m_bFitting = true;
  QSize room;
  for (int n = 0; n < 3 && room != viewport()->size(); ++n) {
    room = viewport()->size();
    FitParts();
  }
  m_bFitting = false;
  QAbstractItemView::updateGeometries();
}

void RowArea::FitParts() {
  const int nHeight = HeadHeight();
  const int nBeneath = HeightBeneathNames();
  const int nNames = nHeight - nBeneath;
  const int nNumbers = m_numbers->FittingWidth();
  setViewportMargins(nNumbers, nHeight, 0, 0);
  const QRect area = viewport()->geometry();
  m_names->setGeometry(area.left(), area.top() - nHeight, area.width(), nNames);
  if (nBeneath > 0) {
    m_beneathNames->setGeometry(area.left(), area.top() - nBeneath, area.width(), nBeneath);
  }
  m_numbers->setGeometry(area.left() - nNumbers, area.top() - nHeight, nNumbers,
                         area.height() + nHeight);

  const int nInSight = RowsInSight();
  verticalScrollBar()->setRange(0, std::max(0, model()->rowCount() - nInSight));
  verticalScrollBar()->setPageStep(nInSight);
  verticalScrollBar()->setSingleStep(1);
  horizontalScrollBar()->setRange(0, std::max(0, m_names->length() - area.width()));
  horizontalScrollBar()->setPageStep(area.width());
  horizontalScrollBar()->setSingleStep(std::max(kLeastColumnWidth / 2, 1));
  if (m_scroll) {
    verticalScrollBar()->setValue(m_scroll->nTopRow);
    horizontalScrollBar()->setValue(m_scroll->nLeftOffset);
  }
  m_names->setOffset(horizontalScrollBar()->value());
}

void RowArea::rowsInserted(const QModelIndex& parent, int nFirst, int nLast) {
  QAbstractItemView::rowsInserted(parent, nFirst, nLast);
  updateGeometries();
  viewport()->update();
  m_numbers->update();
}

void RowArea::changeEvent(QEvent* event) {
  QAbstractItemView::changeEvent(event);
  if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) FitRowHeight();
}

void RowArea::FitRowHeight() {
  m_nRowHeight = fontMetrics().height() + kRowPadding;
  updateGeometries();
}

// ---- painting

void RowArea::paintEvent(QPaintEvent* event) {
  QPainter painter(viewport());
  if (hasFocus() && !currentIndex().isValid()) {
    // No cell can show that the keys are here.
    DrawFocus(painter, viewport()->rect(), palette().color(QPalette::Highlight));
  }
  const QRect area = event->rect();
  const int nHeld = m_names->HeldEnd();
  const int nHeldWidth = m_names->HeldWidth();
  const QRect scrolled = area.intersected(viewport()->rect().adjusted(nHeldWidth, 0, 0, 0));
  const int nFirstVisual = std::max(nHeld, m_names->visualIndexAt(scrolled.left()));
  int nLastVisual = m_names->visualIndexAt(scrolled.right());
  if (nLastVisual < 0) nLastVisual = m_names->count() - 1;
  PaintPart(painter, scrolled, nFirstVisual, nLastVisual);
  if (nHeldWidth == 0) return;
  const QRect held(0, 0, nHeldWidth, viewport()->height());
  PaintPart(painter, area.intersected(held), 0, nHeld - 1);
  painter.setClipping(false);
  // What stays is told from what is scrolled.
  painter.setPen(palette().color(QPalette::Dark));
  painter.drawLine(nHeldWidth - 1, 0, nHeldWidth - 1, YOf(model()->rowCount()) - 1);
}

void RowArea::PaintPart(QPainter& painter, const QRect& area, int nFirstVisual, int nLastVisual) {
  const int nRows = model()->rowCount();
  if (nRows == 0 || nLastVisual < 0 || area.isEmpty()) return;
  painter.setClipRect(area);
  QStyleOptionViewItem look;
  initViewItemOption(&look);
  look.widget = this;
  const std::int64_t first = std::int64_t{TopRow()} + area.top() / m_nRowHeight;
  const std::int64_t last =
      std::min<std::int64_t>(nRows - 1, std::int64_t{TopRow()} + area.bottom() / m_nRowHeight);
  for (std::int64_t row = first; row <= last; ++row) {
    PaintRow(painter, look, static_cast<int>(row), nFirstVisual, nLastVisual);
  }
}

void RowArea::PaintRow(QPainter& painter, const QStyleOptionViewItem& look, int nRow,
                       int nFirstVisual, int nLastVisual) {
  const QColor line = QColor::fromRgba(
      static_cast<QRgb>(style()->styleHint(QStyle::SH_Table_GridLineColor, &look, this)));
  for (int nVisual = nFirstVisual; nVisual <= nLastVisual; ++nVisual) {
    const int nColumn = m_names->logicalIndex(nVisual);
    if (m_names->isSectionHidden(nColumn)) continue;
    const QModelIndex index = model()->index(nRow, nColumn);
    QStyleOptionViewItem option = look;
    option.rect = visualRect(index);
    if (selectionModel()->isSelected(index)) option.state |= QStyle::State_Selected;
    if (hasFocus() && index == currentIndex()) option.state |= QStyle::State_HasFocus;
    itemDelegate()->paint(&painter, option, index);
    const int nRight = option.rect.right() + 1;
    const int nBottom = option.rect.bottom() + 1;
    painter.setPen(line);
    painter.drawLine(nRight, option.rect.top(), nRight, nBottom);
    painter.drawLine(option.rect.left(), nBottom, nRight, nBottom);
  }
}

}  // namespace orvane::controls

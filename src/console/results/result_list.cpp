#include "console/results/result_list.h"

#include <QCollator>
#include <QContextMenuEvent>
#include <QHeaderView>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QListView>
#include <QScopedValueRollback>
#include <QSortFilterProxyModel>
#include <QToolTip>
#include <QTreeView>
#include <algorithm>
#include <numeric>
#include <utility>

#include "console/look/roomy_rows.h"
#include "widgets/tool_tip.h"

namespace orvane::console {

namespace {

/// Of a column without a width of its own.
constexpr int kUsualCharacters = 23;
constexpr int kLeastCharacters = 7;

int OwnWidth(const ResultListModel::Column& column, const QWidget& list) {
  if (column.iWidth > 0) return column.iWidth;
  return kUsualCharacters * list.fontMetrics().averageCharWidth();
}

}  // namespace

/// Tells how wide its columns would have to be.
class ResultListDetails final : public QTreeView {
 public:
  using QTreeView::QTreeView;
  using QTreeView::sizeHintForColumn;
};

/// Rows by the text of a column as people read it: without regard to case, numbers by their value.
/// Without a column, rows are in the order in which they were added.
class ResultListOrder final : public QSortFilterProxyModel {
 public:
  explicit ResultListOrder(QObject* parent) : QSortFilterProxyModel(parent) {
    // The plain locale compares bytes.
    if (m_collator.locale() == QLocale::c()) m_collator.setLocale(QLocale(QLocale::English));
    m_collator.setNumericMode(true);
    m_collator.setCaseSensitivity(Qt::CaseInsensitive);
  }

 protected:
  bool lessThan(const QModelIndex& left, const QModelIndex& right) const override {
    const int iOrder = m_collator.compare(left.data().toString(), right.data().toString());
    return iOrder != 0 ? iOrder < 0 : left.row() < right.row();
  }

 private:
  QCollator m_collator;
};

/// Items as large as their cells: a name is cut only where its cell ends.
class WholeCells final : public QStyledItemDelegate {
 public:
  explicit WholeCells(QListView* view) : QStyledItemDelegate(view), m_view(view) {}

  QSize sizeHint(const QStyleOptionViewItem& /*option*/,
                 const QModelIndex& /*index*/) const override {
    return m_view->gridSize() - QSize(m_view->spacing(), m_view->spacing());
  }

 protected:
  void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override {
    QStyledItemDelegate::initStyleOption(option, index);
    // A name of one line stands right beneath its picture.
    option->displayAlignment = Qt::AlignHCenter | Qt::AlignTop;
  }

 private:
  QListView* m_view;
};

ResultList::ResultList(QWidget* parent)
    : QStackedWidget(parent),
      m_details(new ResultListDetails(this)),
      m_icons(new QListView(this)),
      m_order(new ResultListOrder(this)) {
  m_details->setObjectName("resultDetails");
  m_details->setItemDelegate(new RoomyRows(this));
  m_details->setRootIsDecorated(false);
  m_details->setItemsExpandable(false);
  m_details->setUniformRowHeights(true);
  m_details->setAllColumnsShowFocus(true);
  m_details->setSortingEnabled(true);
  m_details->setIconSize({16, 16});
  m_details->header()->setSortIndicatorClearable(true);
  m_details->header()->setSortIndicator(-1, Qt::AscendingOrder);
  m_details->header()->setStretchLastSection(false);
  m_details->header()->setTextElideMode(Qt::ElideRight);
  m_details->header()->viewport()->installEventFilter(this);
  m_details->header()->setHighlightSections(false);
  m_details->header()->setMinimumSectionSize(kLeastCharacters * fontMetrics().averageCharWidth());

  m_icons->setObjectName("resultIcons");
  m_icons->setViewMode(QListView::IconMode);
  m_icons->setIconSize({32, 32});
  SetGrid();
  m_icons->setMovement(QListView::Static);
  m_icons->setResizeMode(QListView::Adjust);
  m_icons->setUniformItemSizes(true);
  m_icons->setLayoutMode(QListView::Batched);
  m_icons->setWordWrap(true);
  m_icons->setTextElideMode(Qt::ElideMiddle);
  m_icons->setSpacing(4);
  m_icons->setItemDelegate(new WholeCells(m_icons));

  for (QAbstractItemView* view :
       {static_cast<QAbstractItemView*>(m_details), static_cast<QAbstractItemView*>(m_icons)}) {
    Prepare(view);
    addWidget(view);
  }
  connect(m_details->header(), &QHeaderView::sectionResized, this, [this] {
    if (!m_bSettingWidths) m_bChosenWidths = true;
  });
  setCurrentWidget(m_details);
  m_order->sort(-1);
  for (auto signal : {&QAbstractItemModel::rowsInserted, &QAbstractItemModel::rowsRemoved}) {
    connect(m_order, signal, this, [this] { emit RowsChanged(); });
  }
  connect(m_order, &QAbstractItemModel::modelReset, this, [this] { emit RowsChanged(); });
  for (auto signal : {&QAbstractItemModel::rowsInserted, &QAbstractItemModel::rowsRemoved}) {
    connect(m_order, signal, this, &ResultList::FillRoomLater);
  }
  connect(m_order, &QAbstractItemModel::columnsInserted, this,
          [this](const QModelIndex&, int iFirst) {
            SetWidths(m_bChosenWidths || m_bGivenWidths ? iFirst : 0);
          });
  m_icons->setSelectionModel(m_details->selectionModel());
}

ResultList::~ResultList() = default;

void ResultList::Prepare(QAbstractItemView* view) {
  view->setModel(m_order);
  view->setAccessibleName(tr("Contents"));
  view->setFrameShape(QFrame::NoFrame);
  view->setSelectionMode(QAbstractItemView::ExtendedSelection);
  view->setSelectionBehavior(QAbstractItemView::SelectRows);
  view->setEditTriggers(QAbstractItemView::NoEditTriggers);
  view->setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
  view->installEventFilter(this);
  view->viewport()->installEventFilter(this);
  connect(view, &QAbstractItemView::doubleClicked, this, [this](const QModelIndex& index) {
    const auto item = m_model ? m_model->ItemAt(m_order->mapToSource(index).row()) : nullptr;
    if (!item) return;
    QMetaObject::invokeMethod(
        this, [this, item] { emit ItemOpened(item); }, Qt::QueuedConnection);
  });
  connect(view->selectionModel(), &QItemSelectionModel::selectionChanged, this,
          [this] { emit SelectionChanged(); });
}

void ResultList::SetGrid() {
  // Room for the picture and two lines of text beneath it.
  constexpr int kCharacters = 17;
  constexpr int kLines = 2;
  constexpr int kSpace = 14;
  const QFontMetrics metrics(m_icons->font());
  const auto picture = m_icons->iconSize();
  m_icons->setGridSize(
      {std::max(picture.width(), kCharacters * metrics.averageCharWidth()) + kSpace,
       picture.height() + kLines * metrics.lineSpacing() + kSpace});
}

void ResultList::ShowModel(std::unique_ptr<ResultListModel> model) {
  m_order->setSourceModel(model.get());
  m_model = std::move(model);
  m_details->header()->setSortIndicator(-1, Qt::AscendingOrder);
  m_order->sort(-1);
  m_bChosenWidths = false;
  m_bGivenWidths = false;
  SetWidths(0);
  m_details->scrollToTop();
  m_icons->scrollToTop();
  emit RowsChanged();
}

void ResultList::SetWidths(int iFirstColumn) {
  if (!m_model) return;
  const QScopedValueRollback setting(m_bSettingWidths, true);
  const auto& columns = m_model->Columns();
  for (auto n = static_cast<std::size_t>(iFirstColumn); n < columns.size(); ++n) {
    m_details->header()->resizeSection(static_cast<int>(n), OwnWidth(columns[n], *m_details));
  }
  FillRoom();
}

void ResultList::FillRoom() {
  m_bFillPosted = false;
  if (!m_model || m_bChosenWidths || m_bGivenWidths) return;
  const QScopedValueRollback setting(m_bSettingWidths, true);
  auto* header = m_details->header();
  const auto& columns = m_model->Columns();
  const int iCount = std::min(static_cast<int>(columns.size()), header->count());
  std::vector<int> widths;
  for (int i = 0; i < iCount; ++i)
    widths.push_back(OwnWidth(columns[static_cast<std::size_t>(i)], *m_details));
  if (widths.empty()) return;
  int iSpare = m_details->viewport()->width() - std::accumulate(widths.begin(), widths.end(), 0);
  // From the left, as far as it goes; what nobody needs is the last one's.
  for (int i = 0; i + 1 < iCount && iSpare > 0; ++i) {
    auto& iWidth = widths[static_cast<std::size_t>(i)];
    const int iNeeded = m_details->sizeHintForColumn(i);
    const int iMore = std::clamp(iNeeded - iWidth, 0, iSpare);
    iWidth += iMore;
    iSpare -= iMore;
  }
  widths.back() += std::max(0, iSpare);
  for (int i = 0; i < iCount; ++i) header->resizeSection(i, widths[static_cast<std::size_t>(i)]);
}

void ResultList::FillRoomLater() {
  if (std::exchange(m_bFillPosted, true)) return;
  QMetaObject::invokeMethod(
      this, [this] { FillRoom(); }, Qt::QueuedConnection);
}

bool ResultList::ShowsTip(const QHelpEvent& event, bool bHeading) {
  auto* header = m_details->header();
  QString sTip;
  if (bHeading) {
    const int iColumn = header->logicalIndexAt(event.pos());
    const auto sText =
        iColumn < 0 ? QString() : m_order->headerData(iColumn, Qt::Horizontal).toString();
    if (header->sectionSizeHint(iColumn) > header->sectionSize(iColumn)) {
      sTip = widgets::ToolTipOf(sText);
    }
  } else if (const auto index = m_details->indexAt(event.pos()); index.isValid()) {
    // What is seen whole needs no tip.
    if (m_details->sizeHintForIndex(index).width() <= m_details->visualRect(index).width()) {
      QToolTip::hideText();
      return true;
    }
    return false;
  }
  QToolTip::showText(event.globalPos(), sTip, bHeading ? header : m_details->viewport());
  return true;
}

void ResultList::Style(ListStyle style) {
  m_style = style;
  setCurrentWidget(style == ListStyle::Icons ? static_cast<QWidget*>(m_icons) : m_details);
}

QAbstractItemView* ResultList::ActiveView() const {
  if (m_style == ListStyle::Icons) return m_icons;
  return m_details;
}

int ResultList::SelectedRows() const {
  return static_cast<int>(m_details->selectionModel()->selectedRows().size());
}

std::vector<ScopeTreeItemPtr> ResultList::SelectedItems() const {
  std::vector<ScopeTreeItemPtr> items;
  if (!m_model) return items;
  auto rows = m_details->selectionModel()->selectedRows();
  std::sort(rows.begin(), rows.end());
  for (const auto& row : rows) {
    if (auto item = m_model->ItemAt(m_order->mapToSource(row).row())) {
      items.push_back(std::move(item));
    }
  }
  return items;
}

int ResultList::RowCount() const {
  return m_order->rowCount();
}

std::vector<int> ResultList::ColumnWidths() const {
  std::vector<int> widths;
  for (int i = 0; i < m_details->header()->count(); ++i) {
    widths.push_back(m_details->header()->sectionSize(i));
  }
  return widths;
}

void ResultList::ColumnWidths(const std::vector<int>& widths) {
  const QScopedValueRollback setting(m_bSettingWidths, true);
  m_bGivenWidths = true;
  const int iCount = std::min(static_cast<int>(widths.size()), m_details->header()->count());
  for (int i = 0; i < iCount; ++i) {
    m_details->header()->resizeSection(i, widths[static_cast<std::size_t>(i)]);
  }
}

bool ResultList::eventFilter(QObject* watched, QEvent* event) {
  if (watched == m_details->viewport() && event->type() == QEvent::Resize) FillRoom();
  const bool bHeading = watched == m_details->header()->viewport();
  if (event->type() == QEvent::ToolTip && (bHeading || watched == m_details->viewport())) {
    return ShowsTip(*static_cast<QHelpEvent*>(event), bHeading);
  }
  if (bHeading) return QStackedWidget::eventFilter(watched, event);
  if (watched == m_icons && event->type() == QEvent::FontChange) SetGrid();
  if (event->type() == QEvent::KeyPress) {
    const auto* key = static_cast<QKeyEvent*>(event);
    if (key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter) {
      const auto index = ActiveView()->currentIndex();
      const auto item =
          m_model && index.isValid() ? m_model->ItemAt(m_order->mapToSource(index).row()) : nullptr;
      if (item) {
        QMetaObject::invokeMethod(
            this, [this, item] { emit ItemOpened(item); }, Qt::QueuedConnection);
      }
      return true;
    }
    if (key->key() == Qt::Key_Backspace) {
      QMetaObject::invokeMethod(
          this, [this] { emit UpRequested(); }, Qt::QueuedConnection);
      return true;
    }
  }
  if (event->type() == QEvent::ContextMenu) {
    const auto* menu = static_cast<QContextMenuEvent*>(event);
    auto* view = ActiveView();
    auto position = menu->globalPos();
    if (menu->reason() == QContextMenuEvent::Mouse) {
      // Beside all rows, the menu is about the item whose list this is.
      if (watched == view->viewport() && !view->indexAt(menu->pos()).isValid()) {
        view->clearSelection();
      }
    } else if (const auto index = view->currentIndex(); index.isValid()) {
      position = view->viewport()->mapToGlobal(view->visualRect(index).bottomLeft());
    }
    QMetaObject::invokeMethod(
        this, [this, position] { emit MenuRequested(position); }, Qt::QueuedConnection);
    return true;
  }
  return QStackedWidget::eventFilter(watched, event);
}

}  // namespace orvane::console

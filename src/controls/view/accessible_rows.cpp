#include "controls/view/accessible_rows.h"

#include <QAccessibleWidget>
#include <algorithm>
#include <deque>
#include <initializer_list>
#include <limits>
#include <map>

#include "controls/view/header_view.h"
#include "controls/view/row_area.h"
#include "controls/view/spoken_events.h"

namespace orvane::controls {

namespace {

/// Place of the names among the rows of a table that is told of.
constexpr int kHeadRow = -1;

/// One cell, or one column's name.
class AccessibleCell : public QAccessibleInterface, public QAccessibleTableCellInterface {
 public:
  AccessibleCell(RowArea& area, int nRow, int nColumn)
      : m_area(&area), m_nRow(nRow), m_nColumn(nColumn) {}

  bool isValid() const override {
    return m_area && m_nColumn < m_area->model()->columnCount() &&
           (IsHead() || m_nRow < m_area->model()->rowCount());
  }
  QObject* object() const override { return nullptr; }
  QAccessibleInterface* parent() const override {
    return QAccessible::queryAccessibleInterface(m_area);
  }
  QAccessibleInterface* child(int /*n*/) const override { return nullptr; }
  QAccessibleInterface* childAt(int /*x*/, int /*y*/) const override { return nullptr; }
  int childCount() const override { return 0; }
  int indexOfChild(const QAccessibleInterface* /*child*/) const override { return -1; }
  QAccessible::Role role() const override {
    return IsHead() ? QAccessible::ColumnHeader : QAccessible::Cell;
  }
  QString text(QAccessible::Text kind) const override {
    if (!isValid()) return {};
    if (kind == QAccessible::Name || kind == QAccessible::Value) {
      return IsHead() ? m_area->model()->headerData(m_nColumn, Qt::Horizontal).toString()
                      : Index().data().toString();
    }
    if (kind == QAccessible::Description && !IsHead()) {
      return Index().data(Qt::AccessibleDescriptionRole).toString();
    }
    return {};
  }
  void setText(QAccessible::Text /*kind*/, const QString& /*sText*/) override {}
  QRect rect() const override {
    if (!isValid()) return {};
    const QRect inside = IsHead() ? QRect(m_area->Names().LeftOf(m_nColumn), 0,
                                          m_area->ColumnWidth(m_nColumn), m_area->Names().height())
                                  : m_area->visualRect(Index());
    const QWidget* on = IsHead() ? m_area->Names().viewport() : m_area->viewport();
    return {on->mapToGlobal(inside.topLeft()), inside.size()};
  }
  QAccessible::State state() const override {
    QAccessible::State state;
    if (!isValid()) {
      state.invalid = true;
      return state;
    }
    // The rows have it, the eyes do not.
    state.invisible = m_area->Names().isSectionHidden(m_nColumn);
    if (IsHead()) return state;
    const QModelIndex index = Index();
    state.selectable = true;
    state.focusable = true;
    state.selected = isSelected();
    state.focused = m_area->hasFocus() && m_area->currentIndex() == index;
    state.active = m_area->currentIndex() == index;
    const bool bEditable = index.flags().testFlag(Qt::ItemIsEditable);
    state.editable = bEditable;
    state.readOnly = !bEditable;
    state.offscreen = !m_area->viewport()->rect().intersects(m_area->visualRect(index));
    return state;
  }
  void* interface_cast(QAccessible::InterfaceType type) override {
    if (type != QAccessible::TableCellInterface) return nullptr;
    return static_cast<QAccessibleTableCellInterface*>(this);
  }

  int columnExtent() const override { return 1; }
  int rowExtent() const override { return 1; }
  int columnIndex() const override { return m_nColumn; }
  int rowIndex() const override { return m_nRow; }
  bool isSelected() const override {
    return isValid() && !IsHead() && m_area->selectionModel()->isSelected(Index());
  }
  QList<QAccessibleInterface*> columnHeaderCells() const override;
  QList<QAccessibleInterface*> rowHeaderCells() const override { return {}; }
  QAccessibleInterface* table() const override { return parent(); }

 private:
  bool IsHead() const { return m_nRow == kHeadRow; }
  QModelIndex Index() const { return m_area->model()->index(m_nRow, m_nColumn); }

  QPointer<RowArea> m_area;
  int m_nRow;
  int m_nColumn;
};

class AccessibleRows : public QAccessibleWidget, public QAccessibleTableInterface {
 public:
  explicit AccessibleRows(RowArea* area)
      : QAccessibleWidget(area, QAccessible::Table), m_area(*area) {}
  AccessibleRows(const AccessibleRows&) = delete;
  AccessibleRows& operator=(const AccessibleRows&) = delete;
  ~AccessibleRows() override {
    for (const auto& [place, id] : m_ids) QAccessible::deleteAccessibleInterface(id);
  }

  void* interface_cast(QAccessible::InterfaceType type) override {
    if (type == QAccessible::TableInterface) return static_cast<QAccessibleTableInterface*>(this);
    return QAccessibleWidget::interface_cast(type);
  }

  /// The names come first, then the cells row by row.
  QAccessibleInterface* child(int n) const override {
    const int nColumns = columnCount();
    if (n < 0 || nColumns == 0) return nullptr;
    return Made(n / nColumns - 1, n % nColumns);
  }
  int childCount() const override {
    const std::int64_t cells = (std::int64_t{rowCount()} + 1) * columnCount();
    return static_cast<int>(std::min<std::int64_t>(cells, std::numeric_limits<int>::max()));
  }
  int indexOfChild(const QAccessibleInterface* child) const override {
    const auto* cell = dynamic_cast<const AccessibleCell*>(child);
    if (!cell) return -1;
    const std::int64_t place =
        (std::int64_t{cell->rowIndex()} + 1) * columnCount() + cell->columnIndex();
    return place < childCount() ? static_cast<int>(place) : -1;
  }
  QAccessibleInterface* childAt(int x, int y) const override {
    const QModelIndex index = m_area.indexAt(m_area.viewport()->mapFromGlobal(QPoint(x, y)));
    return index.isValid() ? Made(index.row(), index.column()) : nullptr;
  }
  QAccessibleInterface* focusChild() const override {
    const QModelIndex current = m_area.currentIndex();
    return current.isValid() ? Made(current.row(), current.column()) : nullptr;
  }

  QAccessibleInterface* caption() const override { return nullptr; }
  QAccessibleInterface* summary() const override { return nullptr; }
  QAccessibleInterface* cellAt(int nRow, int nColumn) const override { return Made(nRow, nColumn); }
  /// Of the selected cells the first ones: nobody listens to a million.
  QList<QAccessibleInterface*> selectedCells() const override {
    QList<QAccessibleInterface*> cells;
    for (const QItemSelectionRange& range : m_area.selectionModel()->selection()) {
      for (int nRow = range.top(); nRow <= range.bottom(); ++nRow) {
        for (int n = range.left(); n <= range.right(); ++n) {
          if (cells.size() == kMostListed) return cells;
          cells << Made(nRow, n);
        }
      }
    }
    return cells;
  }
  int selectedCellCount() const override {
    std::int64_t cells = 0;
    for (const QItemSelectionRange& range : m_area.selectionModel()->selection()) {
      cells += std::int64_t{range.height()} * range.width();
    }
    return static_cast<int>(std::min<std::int64_t>(cells, std::numeric_limits<int>::max()));
  }
  QString columnDescription(int nColumn) const override {
    return m_area.model()->headerData(nColumn, Qt::Horizontal).toString();
  }
  QString rowDescription(int nRow) const override {
    return m_area.model()->headerData(nRow, Qt::Vertical).toString();
  }
  int selectedColumnCount() const override { return static_cast<int>(selectedColumns().size()); }
  int selectedRowCount() const override {
    int nRows = 0;
    for (const QItemSelectionRange& range : m_area.selectionModel()->selection()) {
      if (range.width() == columnCount()) nRows += range.height();
    }
    return nRows;
  }
  int columnCount() const override { return m_area.model()->columnCount(); }
  int rowCount() const override { return m_area.model()->rowCount(); }
  QList<int> selectedColumns() const override {
    QList<int> columns;
    for (int n = 0; n < columnCount(); ++n) {
      if (isColumnSelected(n)) columns << n;
    }
    return columns;
  }
  QList<int> selectedRows() const override {
    QList<int> rows;
    for (const QItemSelectionRange& range : m_area.selectionModel()->selection()) {
      if (range.width() != columnCount()) continue;
      for (int nRow = range.top(); nRow <= range.bottom(); ++nRow) {
        if (rows.size() == kMostListed) return rows;
        rows << nRow;
      }
    }
    return rows;
  }
  bool isColumnSelected(int nColumn) const override {
    return std::ranges::any_of(m_area.selectionModel()->selection(), [&](const auto& range) {
      return range.left() <= nColumn && nColumn <= range.right() && range.height() == rowCount();
    });
  }
  bool isRowSelected(int nRow) const override {
    return std::ranges::any_of(m_area.selectionModel()->selection(), [&](const auto& range) {
      return range.top() <= nRow && nRow <= range.bottom() && range.width() == columnCount();
    });
  }
  bool selectRow(int nRow) override { return Select(nRow, 0, nRow, columnCount() - 1, true); }
  bool selectColumn(int nColumn) override {
    return Select(0, nColumn, rowCount() - 1, nColumn, true);
  }
  bool unselectRow(int nRow) override { return Select(nRow, 0, nRow, columnCount() - 1, false); }
  bool unselectColumn(int nColumn) override {
    return Select(0, nColumn, rowCount() - 1, nColumn, false);
  }
  /// Cells are known by their places, so that an exchange of the rows leaves them true.
  void modelChange(QAccessibleTableModelChangeEvent* /*event*/) override {}

 private:
  static constexpr qsizetype kMostListed = 1000;
  static constexpr std::size_t kMostCells = 4096;

  bool Select(int nTop, int nLeft, int nBottom, int nRight, bool bSelect) {
    const QModelIndex one = m_area.model()->index(nTop, nLeft);
    const QModelIndex other = m_area.model()->index(nBottom, nRight);
    if (!one.isValid() || !other.isValid()) return false;
    m_area.selectionModel()->select(
        QItemSelection(one, other),
        bSelect ? QItemSelectionModel::Select : QItemSelectionModel::Deselect);
    return true;
  }

  /// The cell; of many that were asked for, the oldest are let go.
  QAccessibleInterface* Made(int nRow, int nColumn) const {
    if (nRow < kHeadRow || nRow >= rowCount() || nColumn < 0 || nColumn >= columnCount()) {
      return nullptr;
    }
    const std::pair place(nRow, nColumn);
    if (const auto known = m_ids.find(place); known != m_ids.end()) {
      return QAccessible::accessibleInterface(known->second);
    }
    if (m_ids.size() >= kMostCells) {
      QAccessible::deleteAccessibleInterface(m_ids.at(m_oldest.front()));
      m_ids.erase(m_oldest.front());
      m_oldest.pop_front();
    }
    auto* cell = new AccessibleCell(m_area, nRow, nColumn);
    m_ids.emplace(place, QAccessible::registerAccessibleInterface(cell));
    m_oldest.push_back(place);
    return cell;
  }

  RowArea& m_area;
  mutable std::map<std::pair<int, int>, QAccessible::Id> m_ids;
  mutable std::deque<std::pair<int, int>> m_oldest;
};

QList<QAccessibleInterface*> AccessibleCell::columnHeaderCells() const {
  auto* table = dynamic_cast<AccessibleRows*>(parent());
  if (!table || IsHead()) return {};
  return {table->cellAt(kHeadRow, m_nColumn)};
}

QAccessibleInterface* MakeAccessibleRows(const QString& /*sClass*/, QObject* object) {
  auto* area = dynamic_cast<RowArea*>(object);
  return area ? new AccessibleRows(area) : nullptr;
}

int nOffers = 0;

void TellOfCurrentCell(RowArea& area, std::initializer_list<QAccessible::Event> what) {
  if (!IsHeard()) return;
  auto* table = dynamic_cast<AccessibleRows*>(QAccessible::queryAccessibleInterface(&area));
  QAccessibleInterface* cell = table ? table->focusChild() : nullptr;
  if (!cell) return;
  for (const QAccessible::Event type : what) {
    QAccessibleEvent event(cell, type);
    Speak(event);
  }
}

}  // namespace

AccessibleRowsOffer::AccessibleRowsOffer() {
  if (nOffers++ == 0) QAccessible::installFactory(MakeAccessibleRows);
}

AccessibleRowsOffer::~AccessibleRowsOffer() {
  if (--nOffers == 0) QAccessible::removeFactory(MakeAccessibleRows);
}

void TellFocus(RowArea& area) {
  TellOfCurrentCell(area, {QAccessible::Focus});
}

void TellChange(RowArea& area) {
  TellOfCurrentCell(area, {QAccessible::NameChanged, QAccessible::DescriptionChanged});
}

}  // namespace orvane::controls

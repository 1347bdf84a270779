#include "console/forms/column_list.h"

#include <QHeaderView>
#include <QMouseEvent>
#include <QScrollBar>

#include "widgets/tool_tip.h"

namespace orvane::console {
namespace {

constexpr int kCharactersShown = 26;
constexpr int kRowsShown = 10;
constexpr int kLeastNameCharacters = 14;
constexpr int kLeastRows = 4;

QSize SizeFor(const QTreeView& list, int iCharacters, int iRows) {
  const QFontMetrics metrics = list.fontMetrics();
  const int iFrame = 2 * list.frameWidth();
  return {metrics.averageCharWidth() * iCharacters + list.verticalScrollBar()->sizeHint().width() +
              iFrame,
          list.header()->sizeHint().height() + (metrics.height() + 4) * iRows + iFrame};
}

}  // namespace

void ColumnListModel::Append(const platform::Text& sName) {
  const int iRow = rowCount();
  beginInsertRows({}, iRow, iRow);
  m_names.push_back(sName);
  endInsertRows();
}

void ColumnListModel::Remove(int iRow) {
  beginRemoveRows({}, iRow, iRow);
  m_names.erase(m_names.begin() + iRow);
  endRemoveRows();
}

void ColumnListModel::Clear() {
  beginResetModel();
  m_names.clear();
  endResetModel();
}

int ColumnListModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(m_names.size());
}

QVariant ColumnListModel::data(const QModelIndex& index, int iRole) const {
  if (!index.isValid() || (iRole != Qt::DisplayRole && iRole != Qt::ToolTipRole)) return {};
  const QString sName = QString::fromStdString(At(index.row()));
  return iRole == Qt::ToolTipRole ? widgets::ToolTipOf(sName) : sName;
}

QVariant ColumnListModel::headerData(int iSection, Qt::Orientation orientation, int iRole) const {
  if (orientation == Qt::Horizontal && iSection == 0 && iRole == Qt::DisplayRole) {
    return tr("Column");
  }
  return QAbstractListModel::headerData(iSection, orientation, iRole);
}

ColumnList::ColumnList(QWidget* parent) : QTreeView(parent) {
  setModel(&m_names);
  setRootIsDecorated(false);
  setItemsExpandable(false);
  setUniformRowHeights(true);
  setAllColumnsShowFocus(true);
  setSelectionMode(QAbstractItemView::ExtendedSelection);
  setEditTriggers(QAbstractItemView::NoEditTriggers);
  setTabKeyNavigation(false);
  setTextElideMode(Qt::ElideMiddle);
  header()->setSectionsMovable(false);
  header()->setSectionsClickable(false);
  header()->setStretchLastSection(true);
  header()->setDefaultAlignment(Qt::AlignLeading | Qt::AlignVCenter);
}

void ColumnList::Choose(int iRow, bool bChosen) {
  const QModelIndex index = m_names.index(iRow);
  selectionModel()->select(index,
                           bChosen ? QItemSelectionModel::Select : QItemSelectionModel::Deselect);
  // The arrow keys go on from there.
  if (bChosen) selectionModel()->setCurrentIndex(index, QItemSelectionModel::NoUpdate);
}

QSize ColumnList::sizeHint() const {
  return SizeFor(*this, kCharactersShown, kRowsShown);
}

QSize ColumnList::minimumSizeHint() const {
  return SizeFor(*this, kLeastNameCharacters, kLeastRows);
}

void ColumnList::mouseReleaseEvent(QMouseEvent* event) {
  QTreeView::mouseReleaseEvent(event);
  // Every button chooses the row that it is pressed on.
  if (m_choice) m_choice();
}

void ColumnList::mouseDoubleClickEvent(QMouseEvent* event) {
  const bool bOnRow = event->button() == Qt::LeftButton && indexAt(event->pos()).isValid();
  QTreeView::mouseDoubleClickEvent(event);
  if (bOnRow && m_dblClick) m_dblClick();
}

void ColumnList::keyPressEvent(QKeyEvent* event) {
  QTreeView::keyPressEvent(event);
  // Rows are chosen by arrows, Space, Ctrl+A or a letter just as well as by a click.
  if (m_choice) m_choice();
}

}  // namespace orvane::console

#include "controls/view/row_form_model.h"

#include <utility>

namespace orvane::controls {

RowFormModel::RowFormModel(RowModel& rows, QObject* parent)
    : QAbstractTableModel(parent), m_rows(rows) {
  connect(&rows, &QAbstractItemModel::modelReset, this, [this] {
    m_nPlace = -1;
    TakeColumns();
  });
  connect(&rows, &QAbstractItemModel::dataChanged, this, [this] { ValuesChanged(); });
  connect(&rows, &QAbstractItemModel::rowsRemoved, this, [this] { ValuesChanged(); });
  TakeColumns();
}

void RowFormModel::TakeColumns() {
  QStringList names;
  for (int n = 0; n < m_rows.columnCount(); ++n) names << m_rows.ColumnName(n);
  if (names == m_names) return ValuesChanged();
  beginResetModel();
  m_names = std::move(names);
  endResetModel();
}

void RowFormModel::Place(int nPlace) {
  if (nPlace == m_nPlace) return;
  m_nPlace = nPlace;
  ValuesChanged();
}

void RowFormModel::ValuesChanged() {
  if (rowCount() > 0) emit dataChanged(index(0, ValueSection), index(rowCount() - 1, ValueSection));
}

int RowFormModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(m_names.size());
}

QVariant RowFormModel::data(const QModelIndex& index, int nRole) const {
  if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
  const int nColumn = index.row();
  // Between the rows before and those that come there may be fewer columns.
  if (nColumn >= m_rows.columnCount()) return {};
  if (index.column() == NameSection) {
    if (nRole == Qt::TextAlignmentRole) return static_cast<int>(Qt::AlignLeft | Qt::AlignVCenter);
    return nRole == Qt::EditRole ? QVariant(m_rows.ColumnName(nColumn))
                                 : m_rows.headerData(nColumn, Qt::Horizontal, nRole);
  }
  if (m_nPlace < 0 || m_nPlace >= m_rows.rowCount()) return {};
  // Beneath each other, values of all kinds begin where the eye looks for them.
  if (nRole == Qt::TextAlignmentRole) return static_cast<int>(Qt::AlignLeft | Qt::AlignVCenter);
  return m_rows.data(m_rows.index(m_nPlace, nColumn), nRole);
}

Qt::ItemFlags RowFormModel::flags(const QModelIndex& index) const {
  const Qt::ItemFlags shown = QAbstractTableModel::flags(index);
  const bool bCell = index.isValid() && index.column() == ValueSection && m_nPlace >= 0 &&
                     m_nPlace < m_rows.rowCount();
  if (!bCell) return shown;
  return shown | (m_rows.flags(m_rows.index(m_nPlace, index.row())) & Qt::ItemIsEditable);
}

QVariant RowFormModel::headerData(int nSection, Qt::Orientation orientation, int nRole) const {
  if (orientation != Qt::Horizontal || nRole != Qt::DisplayRole) return {};
  return nSection == NameSection ? QStringLiteral("Column") : QStringLiteral("Value");
}

}  // namespace orvane::controls

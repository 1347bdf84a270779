#include "controls/view/form_delegate.h"

#include "controls/view/row_form_model.h"

namespace orvane::controls {

QModelIndex FormDelegate::CellOf(const QModelIndex& index) const {
  if (index.column() != RowFormModel::ValueSection || m_form.Place() < 0) return {};
  return Rows().index(m_form.Place(), m_found.mapToSource(index).row());
}

Cell FormDelegate::ShownAt(const QModelIndex& index) const {
  const QModelIndex at = CellOf(index);
  if (!at.isValid()) return {};
  Cell cell = Rows().CellAt(at.row(), at.column());
  // Beneath each other, values of all kinds begin where the eye looks for them.
  cell.alignment = Qt::AlignLeft | Qt::AlignVCenter;
  return cell;
}

}  // namespace orvane::controls

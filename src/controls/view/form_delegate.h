// Draws and edits the values in the form of a row as the cells are that they stand for, one below
// the other. Set into the form's lines; user-interface thread.
#pragma once

#include <QSortFilterProxyModel>

#include "controls/view/cell_delegate.h"

namespace orvane::controls {

class RowFormModel;

class FormDelegate final : public CellDelegate {
 public:
  /// Of lines that are seen through `found`.
  FormDelegate(RowModel& rows, const RowFormModel& form, const QSortFilterProxyModel& found,
               QObject* parent)
      : CellDelegate(rows, parent), m_form(form), m_found(found) {}

 protected:
  QModelIndex CellOf(const QModelIndex& index) const override;
  Cell ShownAt(const QModelIndex& index) const override;
  int KeyToBeside(int nKey) const override {
    return nKey == Qt::Key_Left ? Qt::Key_Up : Qt::Key_Down;
  }

 private:
  const RowFormModel& m_form;
  const QSortFilterProxyModel& m_found;
};

}  // namespace orvane::controls

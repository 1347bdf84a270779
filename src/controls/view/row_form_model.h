// One row of a grid as a list: a line for each column, with its name and its value. Nothing is
// copied; each value is asked of the rows when it is looked at.
// Used by the form of a row, on the user-interface thread.
#pragma once

#include <QAbstractTableModel>
#include <QPointer>

#include "controls/view/row_model.h"

namespace orvane::controls {

class RowFormModel : public QAbstractTableModel {
 public:
  enum Section : std::uint8_t { NameSection, ValueSection };

  RowFormModel(RowModel& rows, QObject* parent);

  /// The place of the row in the view of the rows; -1 is none, and no line has a value then.
  void Place(int nPlace);
  int Place() const { return m_nPlace; }

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override {
    return parent.isValid() ? 0 : 2;
  }
  QVariant data(const QModelIndex& index, int nRole = Qt::DisplayRole) const override;
  QVariant headerData(int nSection, Qt::Orientation orientation,
                      int nRole = Qt::DisplayRole) const override;
  /// A value can be edited where its cell can.
  Qt::ItemFlags flags(const QModelIndex& index) const override;

 private:
  void ValuesChanged();
  /// Other rows of the same columns are other values in the same lines.
  void TakeColumns();

  RowModel& m_rows;
  QStringList m_names;  ///< of the columns, each of which has a line
  int m_nPlace = -1;
};

}  // namespace orvane::controls

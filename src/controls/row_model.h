// The rows of a recordset as an item model, without a copy of any cell: each is asked for by number
// when it is looked at. Used by a grid's view on the user-interface thread.
#pragma once

#include <QAbstractTableModel>
#include <QFont>

#include "controls/cell_format.h"
#include "platform/ado/recordset.h"

namespace orvane::controls {

/// What is to be drawn of one cell.
struct Cell {
  QString sText;
  Qt::Alignment alignment;
  bool bNull = false;
};

class RowModel : public QAbstractTableModel {
 public:
  /// More rows than a view can measure in pixels are not offered; see AllRowsFit.
  static constexpr platform::RowIndex kMaxRows = 50'000'000;

  explicit RowModel(QObject* parent = nullptr) : QAbstractTableModel(parent) {}

  const platform::RecordsetPtr& Recordset() const { return m_recordset; }
  /// Shows the rows of a recordset; none empties the model.
  void Recordset(platform::RecordsetPtr rs, CellFormat format);
  bool AllRowsFit() const;

  const CellFormat& Format() const { return m_format; }
  Cell CellAt(int nRow, int nColumn) const;
  /// The typed value, for everything that must not go through what is shown.
  platform::Value ValueAt(int nRow, int nColumn) const;
  QString ColumnName(int nColumn) const;

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  /// Under Qt::EditRole the value in its own type, from which an editor starts: an invalid QVariant
  /// is null, and a value of a kind that the toolkit lacks is a platform::Value. What is shown is
  /// under Qt::DisplayRole.
  QVariant data(const QModelIndex& index, int nRole = Qt::DisplayRole) const override;
  QVariant headerData(int nSection, Qt::Orientation orientation,
                      int nRole = Qt::DisplayRole) const override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;

 private:
  platform::RecordsetPtr m_recordset;
  CellFormat m_format;
};

}  // namespace orvane::controls

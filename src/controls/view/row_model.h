// The rows of a recordset as an item model, without a copy of any cell: each is asked for by number
// when it is looked at. Rows and places are told apart: a row is counted in the recordset, a place
// in the view, where an order may have moved rows about or left them out.
// Used by a grid's view on the user-interface thread.
#pragma once

#include <QAbstractTableModel>
#include <QFont>
#include <functional>
#include <limits>
#include <memory>
#include <optional>
#include <set>
#include <span>
#include <utility>
#include <vector>

#include "controls/order/row_order.h"
#include "controls/values/cell_format.h"
#include "controls/view/gone_places.h"
#include "controls/view/row_editing.h"
#include "platform/ado/recordset.h"

namespace orvane::controls {

/// What is to be drawn of one cell.
struct Cell {
  QString sText;
  Qt::Alignment alignment;
  bool bNull = false;
  bool bEdited = false;  ///< was given a value that was not sent yet
  bool bDeleted = false;
  bool bNumber = false;
};

class RowModel : public QAbstractTableModel {
 public:
  /// The toolkit counts rows with 31 bits; more are not offered, see AllRowsFit. One is left for
  /// the empty row at the end.
  static constexpr platform::RowIndex kMaxRows = std::numeric_limits<int>::max() - 1;

  /// Of a row's number: true where the row was not there when rows were fetched before.
  static constexpr int kNewRole = Qt::UserRole;

  explicit RowModel(QObject* parent = nullptr) : QAbstractTableModel(parent) {}

  const platform::RecordsetPtr& Recordset() const { return m_recordset; }
  /// Shows the rows of a recordset; none empties the model.
  void Recordset(platform::RecordsetPtr rs, CellFormat format);
  bool AllRowsFit() const;
  /// Shows the times of a column with as many digits of a second as these rows need, if that is
  /// more than before; true then. Of the places up to, without, the last.
  bool FitTimes(int nFirst, int nEnd);
  /// Takes in the rows that came, or were added, since the recordset was last asked for their
  /// number, and out those that are to be seen no more.
  void TakeRowsIn();
  /// The same where no others than these changed: those that went before are not looked at.
  void TakeRowsIn(std::span<const platform::RowIndex> changed);

  /// The order in which rows stand; none is that of the recordset.
  const std::shared_ptr<const RowOrder>& Order() const { return m_order; }
  void Order(std::shared_ptr<const RowOrder> order);
  /// True when each row stands at the place of its number.
  bool IsAsFetched() const { return !m_order && m_gone.Empty(); }
  /// The recordset's row at a place of the view; of the empty row at the end, that behind the last.
  platform::RowIndex RecordRow(int nPlace) const;
  /// The same of the places as they are now, also when others are shown meanwhile.
  std::function<platform::RowIndex(int)> RecordRows() const;
  /// Which rows of the recordset stand somewhere, as they are now; empty where all do.
  std::function<bool(platform::RowIndex)> SeenRows() const;
  /// Where a row of the recordset stands; -1 where it does not.
  int PlaceOf(platform::RowIndex row) const;

  /// Who edits the rows, or nobody; must live as long as it is set.
  void Editing(RowEditing* editing);
  /// Rows that stand in the view, without the empty row at the end.
  int Places() const { return m_nPlaces; }
  bool IsEmptyRow(int nPlace) const { return nPlace == m_nPlaces; }
  /// Tells those who look at rows of the recordset that these changed.
  void TellOfChange(std::span<const platform::RowIndex> rows);

  const CellFormat& Format() const { return m_format; }
  Cell CellAt(int nPlace, int nColumn) const;
  /// The typed value, for everything that must not go through what is shown.
  platform::Value ValueAt(int nPlace, int nColumn) const;
  /// Marks rows of the recordset that is shown next as new among others that were there before.
  void NewRows(std::set<platform::RowIndex> rows) { m_nextNewRows = std::move(rows); }
  bool IsNew(int nPlace) const;
  /// Lays the value over the cell; false where the rows are not edited. Values go this way and not
  /// through setData: the toolkit keeps what it was told of a type for ever, and a library that was
  /// unloaded and loaded again would lose them in there.
  bool Edit(const QModelIndex& index, const platform::Value& vtValue);
  /// What was made of the row at the place.
  platform::RowState StateAt(int nPlace) const;
  QString ColumnName(int nColumn) const;

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  /// Under Qt::EditRole the value in its own type: an invalid QVariant is null, and a value of a
  /// kind that the toolkit lacks is its whole text. What is shown is under Qt::DisplayRole.
  QVariant data(const QModelIndex& index, int nRole = Qt::DisplayRole) const override;
  /// Of a row beside its number a mark of what was made of it, under Qt::DecorationRole, and as its
  /// tip why it could not be stored.
  QVariant headerData(int nSection, Qt::Orientation orientation,
                      int nRole = Qt::DisplayRole) const override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;

 private:
  int CountPlaces() const;
  static platform::RowIndex RecordRowAt(const RowOrder* order, const GonePlaces& gone, int nPlace);
  bool OffersNewRow() const;
  /// Takes out those among the places of the order that still stand.
  void TakeOut(std::vector<platform::RowIndex> gone);
  void FollowCount();
  void FindGonePlaces();
  /// Of the rows that are to be seen no more; in ascending order.
  template <class Rows>
  std::vector<platform::RowIndex> GonePlacesOf(const Rows& rows) const;
  void TellOfPlaces(int nFirst, int nLast);
  std::optional<platform::RowIndex> OrderedPlaceOf(platform::RowIndex row) const;
  QString MarkOf(int nPlace) const;
  QString RemarkAt(int nPlace) const;
  QString Spoken(const QModelIndex& index) const;

  platform::RecordsetPtr m_recordset;
  std::shared_ptr<const RowOrder> m_order;
  RowEditing* m_editing = nullptr;
  GonePlaces m_gone;
  std::size_t m_nGoneRows = 0;   ///< rows that were taken out, filtered ones too
  std::vector<int> m_fractions;  ///< digits of a second, a column
  bool m_bEmptyRow = false;      ///< as told to those who look
  int m_nPlaces = 0;             ///< as told to those who look, without the empty row
  CellFormat m_format;
  std::set<platform::RowIndex> m_newRows;
  std::set<platform::RowIndex> m_nextNewRows;
};

}  // namespace orvane::controls

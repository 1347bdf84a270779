// Asks what becomes of a row that somebody else has changed meanwhile: mine, theirs and the
// original side by side, settled value by value. Shown by the editing of a grid; user-interface
// thread.
#pragma once

#include <QButtonGroup>
#include <QDialog>
#include <map>
#include <vector>

#include "controls/statements/row_conflict.h"
#include "controls/values/cell_format.h"

class QGridLayout;
class QPushButton;

namespace orvane::controls {

class ConflictDialog : public QDialog {
  Q_OBJECT

 public:
  /// What was answered, as the dialog's result; "Later" leaves everything as it is.
  enum Answer { kLater = Rejected, kSettle = Accepted, kDelete, kAddAsNew };

  /// bDelete of a row that I wanted to delete. The recordset gives the names of the columns; sRow
  /// tells which row it is.
  ConflictDialog(const RowConflict& conflict, const platform::Recordset& rs, bool bDelete,
                 const QString& sRow, const CellFormat& format, QWidget* parent);

  /// Offers to add a row that is gone as a new one; not where none can be added.
  void OfferNewRow(bool bOffered);
  /// The columns in which mine is to stand.
  std::vector<platform::ColumnIndex> Mine() const;

 private:
  void AddColumn(const ColumnConflict& column, const QString& sName, const CellFormat& format);
  void AddChoice(QButtonGroup& group, int nColumn, const platform::Value& vtValue,
                 const QString& sSpoken, const CellFormat& format);
  void UpdateStore();

  QGridLayout* m_values;
  QPushButton* m_store;
  QPushButton* m_addAsNew = nullptr;  ///< of a row that is gone
  std::map<platform::ColumnIndex, QButtonGroup*> m_choices;
};

}  // namespace orvane::controls

// The rows of a grid on the screen: what they show, how wide their columns are, what goes to the
// clipboard, and the state of looking at them. Nothing it does costs more for a million rows than
// for a thousand.
#pragma once

#include <functional>
#include <utility>

#include "controls/accessible_rows.h"
#include "controls/grid_commands.h"
#include "controls/row_model.h"
#include "controls/row_picker.h"
#include "controls/rows_states.h"

namespace orvane::controls {

class RowView : public RowPicker {
  Q_OBJECT

 public:
  /// More rows are not copied at once: the text would be of no use and take the memory of two.
  static constexpr platform::RowIndex kMostCopiedRows = 100'000;

  explicit RowView(QWidget* parent = nullptr);

  RowModel& Model() { return *m_model; }
  const RowModel& Model() const { return *m_model; }
  /// What can be done to the rows, in their menu and by keys.
  GridCommands& Commands() { return m_commands; }
  /// Shows the rows, or none, as a state left them; without one from the first cell on, with the
  /// columns as wide as their first rows need, or as they were if they are the same columns.
  /// Raises no signal of the selection.
  void ShowRows(platform::RecordsetPtr rs, CellFormat format, const RowsState* state = nullptr);
  /// The state of looking at the rows now; its SQL text is left empty.
  RowsState State() const;

  /// Puts the selection, or else the current cell, on the clipboard; with nothing of both, or with
  /// more than can be copied at once, keeps what is there.
  void Copy(bool bNames) const;
  /// Called after each copy with why there was none, as a sentence; empty when there was one.
  void OnCopied(std::function<void(const QString& sWhyNot)> handler) {
    m_copied = std::move(handler);
  }

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  /// Width that a column's cells need, measured in the rows in sight and a few more.
  int sizeHintForColumn(int nColumn) const override;

 private:
  void AddCommands();
  void OpenMenu(QPoint where);
  void Copied(const QString& sWhyNot) const;
  void FitColumns();
  std::vector<int> ColumnWidths() const;
  bool ColumnWidths(const std::vector<int>& widths);
  QStringList ColumnSignature() const;
  void Restore(const RowsState& state);

  AccessibleRowsOffer m_accessible;
  RowModel* m_model;
  GridCommands m_commands;
  std::function<void(const QString&)> m_copied;
  QStringList m_lastColumns;
  std::vector<int> m_lastWidths;
};

}  // namespace orvane::controls

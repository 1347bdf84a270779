// The rows of a grid on the screen: keys, mouse, selection, clipboard, and the state of looking at
// them. Nothing it does costs more for a million rows than for a thousand.
#pragma once

#include <QTableView>
#include <functional>
#include <optional>
#include <utility>

#include "controls/row_model.h"
#include "controls/rows_states.h"

namespace orvane::controls {

class RowView : public QTableView {
 public:
  /// More rows are not copied at once: the text would be of no use and take the memory of two.
  static constexpr platform::RowIndex kMostCopiedRows = 100'000;

  explicit RowView(QWidget* parent = nullptr);

  const RowModel& Model() const { return *m_model; }
  /// Shows the rows, or none, as a state left them; without one from the first cell on, with the
  /// columns as wide as their first rows need, or as they were if they are the same columns.
  /// Raises no signal of the selection.
  void ShowRows(platform::RecordsetPtr rs, CellFormat format, const RowsState* state = nullptr);
  /// The state of looking at the rows now; its SQL text is left empty.
  RowsState State() const;

  bool HasRows() const { return m_model->rowCount() > 0; }
  /// True when whole rows are selected. In a grid of one column a selected cell is no row.
  bool RowsSelected() const;
  /// Makes the row's cell in the current column the current one and selects the row.
  void SelectRow(int nRow);
  /// Puts the selection, or else the current cell, on the clipboard; with nothing of both, or with
  /// more than can be copied at once, keeps what is there.
  void Copy(bool bNames) const;
  /// Called after each copy with why there was none, as a sentence; empty when there was one.
  void OnCopied(std::function<void(const QString& sWhyNot)> handler) {
    m_copied = std::move(handler);
  }

  void selectAll() override;
  /// Does nothing: a search would read every row.
  void keyboardSearch(const QString&) override {}

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void changeEvent(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;
  void updateGeometries() override;
  /// Width that a column's cells need, measured in the rows in sight and a few more.
  int sizeHintForColumn(int nColumn) const override;

 private:
  struct Scroll {
    int nTopRow = 0;
    int nLeftOffset = 0;
  };

  void Copied(const QString& sWhyNot) const;
  void FitRowHeight();
  void FitColumns();
  std::vector<int> ColumnWidths() const;
  bool ColumnWidths(const std::vector<int>& widths);
  QStringList ColumnSignature() const;
  void Restore(const RowsState& state);

  RowModel* m_model;
  std::function<void(const QString&)> m_copied;
  bool m_bRowsChosen = false;
  /// Kept until the user scrolls: a window that is not yet in its place has no room to scroll in.
  std::optional<Scroll> m_scroll;
  QStringList m_lastColumns;
  std::vector<int> m_lastWidths;
};

}  // namespace orvane::controls

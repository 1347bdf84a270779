// Tells in the strip beneath the rows how many of their columns are hidden, with a menu that shows
// them again: who opens a table that somebody has laid out is not to miss what he does not see.
// Owned by the grid's window; user-interface thread.
#pragma once

#include <QTimer>
#include <QToolButton>

namespace orvane::controls {

class RowView;

class HiddenColumns final : public QToolButton {
 public:
  /// More are not named in the menu, which offers the list of all columns.
  static constexpr int kMostNamed = 20;

  explicit HiddenColumns(RowView& rows);
  /// With room for the arrow beside the text.
  QSize sizeHint() const override;

 private:
  void Count();
  void FillMenu();

  RowView& m_rows;
  QTimer m_counting;  ///< many columns may come and go at once
};

}  // namespace orvane::controls

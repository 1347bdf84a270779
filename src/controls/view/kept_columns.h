// The columns of a grid as their user has them: chosen widths, order, hidden ones, and those that
// stay at the left. What he chose is kept by the columns' names, through rows of other columns, and
// is given to and taken from the host as a layout. What the grid works out by itself is not kept.
// Owned by the view of the rows; user-interface thread.
#pragma once

#include <QObject>
#include <functional>
#include <map>
#include <vector>

#include "controls/order/column_layout.h"

namespace orvane::controls {

class HeaderView;

class KeptColumns final : public QObject {
 public:
  explicit KeptColumns(HeaderView& names, QObject* parent);

  /// As it is to be given back; about the columns that are shown and others that were.
  ColumnLayout Layout() const;
  /// Holds for columns that are shown from now on.
  void Layout(ColumnLayout layout) { m_layout = std::move(layout); }
  /// The columns are about to go.
  void Remember() { m_layout = Layout(); }
  /// Lays out columns that were fetched under these names; the function makes them as wide as they
  /// are where nobody chose a width.
  void Show(std::vector<platform::Text> names, const std::function<void()>& fit);
  /// The width of a column, also of a hidden one.
  int WidthOf(int nColumn) const;
  /// True for a column that is narrower, and whose width nobody chose.
  bool MayGrow(int nColumn, int nTo) const;
  /// The column is to be as wide as this, if it is narrower, once painting is over.
  void Grow(int nColumn, int nWidth);

  /// Hides or shows columns, one flag for each; does nothing where none would be left.
  void Hide(const std::vector<bool>& hidden);
  /// Moves a column by a place among those that are shown.
  void Move(int nColumn, int nStep);
  /// The columns up to this one stay in sight; none does for -1.
  void HoldUpTo(int nColumn);

 private:
  std::vector<LaidOutColumn> Present() const;
  void Resized(int nColumn, int nWidth);
  void GrowNow();

  struct Width {
    int nPixels = 0;
    bool bChosen = false;
  };

  HeaderView& m_names;
  ColumnLayout m_layout;
  std::vector<platform::Text> m_fetched;
  std::vector<Width> m_widths;
  std::map<int, int> m_wanted;
  bool m_bByItself = false;  ///< widths change that nobody chose
};

}  // namespace orvane::controls

// Puts values into cells that were not typed there: those of a query, and blocks from the
// clipboard. Every value is checked against its column before anything is changed. Owned by the
// editing of a grid; user-interface thread.
#pragma once

#include <QObject>
#include <QPointer>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "controls/editing/edit_session.h"
#include "controls/view/copied_cells.h"

namespace orvane::controls {

class CellQueryDialog;
class GridWindow;

class CellFilling final : public QObject {
 public:
  /// Runs a statement that only reads and gives its first rows; null without a connection. Fails as
  /// the server does, and may handle events while it waits.
  using Asker = std::function<platform::RecordsetPtr(const platform::Text& sSqlText)>;
  /// More values of a statement are not asked for.
  static constexpr platform::Long kMostValues = 10'000;

  /// More cells are not changed at once.
  static constexpr int kMostCells = 100'000;

  /// The statements asked last, the latest first, are shared by all grids.
  CellFilling(GridWindow& window, EditSession& session, Asker asker,
              std::shared_ptr<QStringList> last);

  /// True when the current cell takes values.
  bool CanFill() const;
  /// Why it takes none, as a sentence.
  platform::Text WhyNotFilled() const;
  /// Asks for a statement whose first value goes into the current cell as an edit; of several, all
  /// go down from there after a question.
  void CellQuery();
  /// Lays the block on the clipboard over the cells from the current one on, or says why not.
  void Paste();

 private:
  void Run(CellQueryDialog& dialog, platform::RowIndex row, platform::ColumnIndex column);
  void Fill(std::vector<platform::Value> values);
  /// The value as the column keeps it; fails with a sentence where that cannot be.
  platform::Value Fitting(const platform::Value& vtValue, platform::ColumnIndex column) const;
  void Lay(const CopiedCells& block);
  std::vector<int> ColumnsFrom(int nColumn) const;

  GridWindow& m_window;
  EditSession& m_session;
  Asker m_asker;
  std::shared_ptr<QStringList> m_last;
};

}  // namespace orvane::controls

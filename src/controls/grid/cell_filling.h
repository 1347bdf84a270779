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

  /// Blocks that are large are read beside the window.
  void ReadBeside(Beside beside) { m_beside = std::move(beside); }

  /// True when the current cell takes values.
  bool CanFill() const;
  /// Why it takes none, as a sentence.
  platform::Text WhyNotFilled() const;
  /// Asks for a statement whose first value goes into the current cell as an edit; of several, the
  /// others go down from there after a question.
  void CellQuery();
  /// Lays the block on the clipboard over the cells from the current one on, or says why not.
  void Paste();

 private:
  void Run(CellQueryDialog& dialog, platform::RowIndex row, platform::ColumnIndex column);
  /// The values go down from the current cell on, or from so many rows below.
  /// Of many the grid may be gone afterwards.
  void Fill(const std::vector<platform::Value>& values, int nBelow = 0);
  /// Asks whether the values behind the first one go into the cells beneath the current one, or
  /// says why they do not.
  void FillDown(const platform::Recordset& answer, platform::ColumnIndex column);
  /// Of so many that were given these fit in.
  void AskToFillDown(std::vector<platform::Value> others, platform::RowIndex given);
  /// The value as the column keeps it; fails with a sentence where that cannot be.
  platform::Value Fitting(const platform::Value& vtValue, platform::ColumnIndex column) const;
  /// Where a block goes, as it was when it was pasted.
  struct Target {
    platform::RecordsetPtr rs;
    int nRow = 0;
    int nPlaces = 0;
    std::vector<int> columns;  ///< from the current one on
    std::function<platform::RowIndex(int)> recordRow;
  };
  /// The edits that lay the block there, by the rules of a session that nobody edits; fails where
  /// one of them cannot be. On any thread.
  static std::vector<CellEdit> EditsOf(const CopiedCells& block, const Target& target,
                                       const EditSession& rules, const std::stop_token& stop);
  std::vector<int> ColumnsFrom(int nColumn) const;

  GridWindow& m_window;
  EditSession& m_session;
  Asker m_asker;
  Beside m_beside;
  std::shared_ptr<QStringList> m_last;
};

}  // namespace orvane::controls

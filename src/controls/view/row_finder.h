// Looks through the rows of a grid for a text, in slices, so that the window goes on and the search
// can be ended. Used by the find bar; user-interface thread.
#pragma once

#include <QObject>
#include <QString>
#include <functional>
#include <map>
#include <optional>
#include <vector>

#include "controls/values/text_sought.h"
#include "controls/view/row_model.h"

namespace orvane::controls {

struct CellPlace {
  int nRow = -1;
  int nColumn = -1;
  friend bool operator==(const CellPlace&, const CellPlace&) = default;
};

class RowFinder final : public QObject {
 public:
  /// In no slice more of texts is looked through, but for the value in which that is reached.
  static constexpr std::size_t kMostBytesInSlice = std::size_t{8} << 20;

  RowFinder(const RowModel& model, QObject* parent);

  /// What came of a search: a cell, or none; whether it went past an end of the rows.
  using Found = std::function<void(std::optional<CellPlace> cell, bool bWrapped)>;

  /// Looks through the columns, in their order, from the cell behind `from` on, or before it, and
  /// on from the other end until that cell again. Calls `found` before it returns where few rows
  /// are looked at.
  void Find(TextSought sought, std::vector<int> columns, CellPlace from, bool bForward,
            Found found);
  bool Busy() const { return m_search.has_value(); }
  /// Ends the search; `found` is not called.
  void Cancel();
  /// Called when others came in the place of the rows that were looked through, which ends it.
  void OnLost(std::function<void()> handler) { m_lost = std::move(handler); }

 private:
  /// Rows that lie together, of a column.
  struct Run {
    platform::RowIndex begin = 0;
    platform::RowIndex end = 0;
    bool bMay = true;  ///< one of them may have the text
  };
  using Runs = std::map<platform::RowIndex, Run>;
  struct Search {
    TextSought sought;
    std::vector<int> columns;
    bool bForward;
    Found found;
    std::int64_t cell;       ///< next one, counted row by row in the columns looked through
    std::int64_t remaining;  ///< cells still to be looked at
    bool bWrapped;
    std::vector<Runs> seen;  ///< for each column, by the first row
    std::size_t bytes = 0;   ///< looked through in this slice
  };
  /// The run around the cell, looked at once.
  Run RunOf(platform::RowIndex row, std::size_t column);
  bool IsAt(const CellPlace& place, std::size_t column);
  std::int64_t RowsToPass(int nRow);
  void Go();
  void End(std::optional<CellPlace> cell);

  const RowModel& m_model;
  std::optional<Search> m_search;
  std::function<void()> m_lost;
  int m_nRun = 0;
};

}  // namespace orvane::controls

// The import of a table's grid: asks for a file of comma-separated values and inserts its rows into
// the table, all of them or none, then has the rows shown anew. The file is read where the
// statement runs, row by row; none is kept.
// Owned by the table's grid; user-interface thread.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/grids/table_query.h"

namespace orvane::controls {

class GridCore;

class GridImport {
 public:
  /// What the table's grid does for it.
  struct Grid {
    std::function<platform::TableQueryPtr()> query;
    std::function<void()> requery;
    /// False while there is what showing the rows anew would take away.
    std::function<bool()> mayRequery;
  };

  /// Adds itself to what can be done to the rows of the grid's window.
  GridImport(GridCore& core, Grid grid);

  /// True where there is a table that takes rows, and nothing else is at work.
  bool CanRun() const;
  /// Asks and imports. What goes wrong, or that it cannot be, is told in a box; what was done,
  /// beneath the rows.
  void Run();

 private:
  void Import(const std::string& sPath);
  /// Gives the number of rows.
  std::int64_t Insert(const std::string& sPath);
  void ShowRows();

  GridCore& m_core;
  Grid m_grid;
  std::shared_ptr<void> m_life = std::make_shared<char>();
};

}  // namespace orvane::controls

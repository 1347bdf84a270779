// Counts the rows of a table at the server when somebody asks for it, and says their number beneath
// the rows. Owned by the table's grid; user-interface thread.
#pragma once

#include <functional>
#include <memory>

#include "platform/types.h"

namespace orvane::controls {

class GridCore;

class RowCount {
 public:
  /// What is counted: a table, as SQL names it, and the filter that is in force, which may be
  /// blank.
  struct Counted {
    platform::Text sTable;
    platform::Text sFilter;
  };

  /// Adds itself to what can be done to the rows of the grid's window, and to its strip where the
  /// row limit has cut the rows.
  RowCount(GridCore& core, std::function<Counted()> counted);

  /// Counts, however long it takes; Cancel ends it.
  void Run();

 private:
  GridCore& m_core;
  std::function<Counted()> m_counted;
  std::shared_ptr<void> m_life = std::make_shared<char>();
};

}  // namespace orvane::controls

// How far a fetch is, on the terminal that the standard error is; nothing where it is none.
// Used by the fetch of rows; one thread at a time.
#pragma once

#include <chrono>

#include "platform/ado/recordset.h"

namespace orvane::tools {

/// "1 row", "7 rows".
platform::Text RowsInWords(platform::RowIndex rows);

class Progress {
 public:
  /// Where it is not wanted nothing is shown, whatever the standard error is.
  explicit Progress(bool bWanted);
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;
  /// Clears what was shown.
  ~Progress();

  /// So many rows have come; shown a few times a second.
  void Rows(platform::RowIndex rows);

 private:
  bool m_bShows;
  bool m_bShown = false;
  std::chrono::steady_clock::time_point m_next{};
};

}  // namespace orvane::tools

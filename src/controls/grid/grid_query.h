// What a grid runs: a statement with its limits, and what is said when it has no rows. Made by the
// grid controls, run by their core; plain values.
#pragma once

#include <QString>
#include <cstdint>
#include <optional>
#include <vector>

#include "controls/order/arrangement.h"
#include "controls/statements/row_statements.h"

namespace orvane::controls {

/// What a grid says when a recordset has no rows.
struct NoRowsTexts {
  QString sTitle;
  QString sSentence;
};

struct GridQuery {
  platform::Text sSqlText;
  platform::Long lMaxRows = 0;       ///< 0 or less is no limit
  platform::Long lQueryTimeout = 0;  ///< seconds; 0 or less waits for ever
  NoRowsTexts noRows;
  std::optional<RowTable> table = {};  ///< none where only the recordset can tell
  /// The rows are the same in the order of these columns, which are marked then. Where they cannot
  /// be had, those shown stay, with the order that they have.
  std::optional<std::vector<SortColumn>> sorted = {};
  /// Why the rows can only be looked at, as a sentence, where the statement is not the one that the
  /// user knows; empty where what the recordset says of it is true.
  platform::Text sWhyNotEdited = {};
};

/// What a statement may do: showing is reading, and only a press of the button lets it change.
enum class Access : std::uint8_t { Read, Change };

}  // namespace orvane::controls

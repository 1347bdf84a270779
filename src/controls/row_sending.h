// What came of sending a row of a grid. Between the editing, which shows it, and the grid's core,
// which has the connection.
#pragma once

#include <QString>
#include <optional>

#include "controls/row_changes.h"

namespace orvane::controls {

/// What the server said; without an answer one sentence with what failed.
struct Sent {
  std::optional<SentRow> answer = {};
  QString sWhyNot = {};
};

}  // namespace orvane::controls

// What a screen reader is told of a grid: a table whose cells are made when they are asked for,
// each with its value, column, row and what was done to it. Used by the view of the rows;
// user-interface thread.
#pragma once

#include <QAccessible>

namespace orvane::controls {

class RowArea;

/// As long as one lives, accessibility is answered for views of rows. The toolkit knows no other
/// way to tell it of a class that is its own; a library may be unloaded, so the last one takes the
/// answer back.
class AccessibleRowsOffer {
 public:
  AccessibleRowsOffer();
  AccessibleRowsOffer(const AccessibleRowsOffer&) = delete;
  AccessibleRowsOffer& operator=(const AccessibleRowsOffer&) = delete;
  ~AccessibleRowsOffer();
};

/// Tells whoever listens that the keys are in the current cell.
void TellFocus(RowArea& area);
/// Tells whoever listens that the current cell has another value, or another state.
void TellChange(RowArea& area);

}  // namespace orvane::controls

// Prints rows as a list or a grid shows them, in columns that stand under each other. For the tour;
// user-interface thread.
#pragma once

#include <iosfwd>

class QAbstractItemModel;

namespace orvane::console {

/// The headings and at most that many rows.
void PrintRows(std::ostream& out, const QAbstractItemModel& model, int nMostRows);

}  // namespace orvane::console

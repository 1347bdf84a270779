// The commands that fetch rows: printed, again and again on a screen, or exported into a file; and
// the structure of a table.
// Commands of the program orvane; each fails with an Ending or as the server does. One thread.
#pragma once

#include <chrono>

#include "exports/row_writer.h"
#include "tools/orvane/output.h"
#include "tools/orvane/row_source.h"

namespace orvane::tools {

/// How rows are wanted.
struct RowWishes {
  exports::WriterOptions writer;  ///< zone and table are those of the rows
  Running running;
  std::optional<controls::TimeRange> range;
};

struct Repetition {
  std::chrono::seconds pause{2};
  platform::Long lTimes = 0;  ///< 0 for ever
};

void PrintRows(const ServerAccess& access, const RowSource& source, const RowWishes& wishes,
               Output& output);
/// Prints them again and again, with only what is new on a screen; the end is that of the last
/// time.
void WatchRows(const ServerAccess& access, const RowSource& source, const RowWishes& wishes,
               const Repetition& repetition, Output& output);
/// Writes them into a file as the export of a grid does, and tells which.
void ExportRows(const ServerAccess& access, const RowSource& source, const RowWishes& wishes,
                const platform::Text& sFile, Output& output);
/// The columns of the table.
void PrintStructure(const ServerAccess& access, const platform::Text& sPath, bool bJson,
                    Output& output);

/// The form of a file of that name, by what it ends in: comma-separated values unless it says
/// another.
exports::Form FormOfFile(const platform::Text& sFile);

}  // namespace orvane::tools

// All that is selected, written at once; as copying does it in slices.
#pragma once

#include "controls/view/cells_writer.h"

namespace orvane::controls {

inline void WriteAll(const RowModel& model, const QItemSelection& selection,
                     const std::vector<int>& columns, CellsWriter& writer) {
  CellsWriter* const writers[] = {&writer};
  for (const RowBand& band : BandsOf(selection, columns)) {
    for (int n = band.nFirst; n <= band.nLast; ++n) WriteRow(model, band, n, columns, writers);
  }
}

}  // namespace orvane::controls

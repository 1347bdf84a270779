// All that is selected, written at once; as copying does it in slices.
#pragma once

#include "controls/view/cells_writer.h"

namespace orvane::controls {

inline void WriteAll(const RowModel& model, const QItemSelection& selection,
                     const std::vector<int>& columns, CellsWriter& writer) {
  CellsReader reader(model, columns);
  for (const RowBand& band : BandsOf(selection, columns)) {
    for (int n = band.nFirst; n <= band.nLast; ++n) reader.WriteRow(band, n, writer);
  }
}

}  // namespace orvane::controls

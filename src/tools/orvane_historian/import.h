// orvane-historian import: the rows of a file into a table, all of them or none.
// Run by the program alone; one transaction.
#pragma once

#include <istream>

#include "tools/orvane_historian/opened_catalog.h"
#include "zones/time_zone.h"

namespace orvane::tools {

struct ImportOrder {
  platform::Text sTable;
  zones::TimeZone zone;                ///< of times without an offset
  platform::Boolean bReplace = false;  ///< rows of a key that is there already take its place
};

/// Reads comma-separated values whose first line names columns of the table, checks every value
/// against its column's type and inserts the rows in one transaction; gives their number. A field
/// without anything, not even quotes, is null. Fails with the number of the first bad line.
std::int64_t Import(const provider::historian::CatalogRecord& record, std::istream& stream,
                    const ImportOrder& order);

}  // namespace orvane::tools

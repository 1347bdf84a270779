// Whose rows a statement gives: those of one table, each once, or what it makes of several.
// Used by the translator, once for each statement, when its tables are known.
#pragma once

#include "platform/ado/recordset.h"
#include "provider/dialect/time_analysis.h"

namespace orvane::provider::dialect {

/// The table and its columns where each row that is put out is one row of it and nothing says
/// otherwise; in doubt none, with a sentence that says why. A view counts as a table here.
platform::RowSource SourceOf(const StatementTree& tree, const TableNames& names,
                             TimeAnalysis& times);

}  // namespace orvane::provider::dialect

// Cells as PostgreSQL sends them, appended to columns: in its binary form, which is that of its
// sources' send functions, or as its text where a column of the result has no binary form that is
// known here. Both give the same values. Times without a zone come as texts, as nobody can tell
// which moment they are; so do infinite times and years outside of 1 to 9999.
// Used by the engine on PostgreSQL; pure functions, any thread.
#pragma once

#include <libpq-fe.h>

#include <string_view>

#include "ado/column.h"

namespace orvane::provider::engines {

/// Appends a value that is not null. Fails with failure::kSqlError for bytes that are no value of
/// the type.
void AppendBinary(ado::Column& column, Oid type, std::string_view sBytes);
void AppendTextForm(ado::Column& column, Oid type, std::string_view sText);

}  // namespace orvane::provider::engines

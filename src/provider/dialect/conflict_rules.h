// What a table says of rows that conflict with others: its ON CONFLICT clauses, by which a row can
// be given up without a word. Used by the translator and by imports. Pure functions, any thread.
#pragma once

#include <string_view>

#include "provider/dialect/statement_work.h"

namespace orvane::provider::dialect {

/// Whether a table that was made by this statement gives rows up instead of refusing one: leaves
/// out the one that comes, or deletes those that have its key. An empty text is no such table; of
/// one that cannot be read that is taken for granted. A null that becomes the default harms no row.
bool GivesRowsUp(std::string_view sDefinition, StatementWork& work);

}  // namespace orvane::provider::dialect

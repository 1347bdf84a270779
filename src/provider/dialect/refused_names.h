// Names that no statement may hold: what the engine refuses, and what is the translation's own.
// Used by the translator for each statement, and for each view that a statement reads.
#pragma once

#include <span>
#include <string_view>
#include <vector>

#include "provider/dialect/lexer.h"
#include "provider/dialect/statement_work.h"

namespace orvane::provider::dialect {

/// Fails with failure::kSqlError at the first name that is refused, whatever it is a name of. Those
/// that the engine refuses are as engines::Abilities has them.
void RefuseNames(std::string_view sStatement, const std::vector<Token>& tokens,
                 std::span<const std::string_view> refused, StatementWork& work);

}  // namespace orvane::provider::dialect

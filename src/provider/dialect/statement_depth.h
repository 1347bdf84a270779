// How deep and how large a statement may be, how much work it may take, and how often that looks at
// its deadline. Used by whatever reads or translates statements.
#pragma once

#include <cstddef>

namespace orvane::provider::dialect {

/// Brackets, queries and cases inside one another: deeper than anyone writes, and far from the end
/// of the stack.
constexpr int kMostNested = 250;
/// Operators that follow one another. The embedded engine takes no more either.
constexpr int kMostOperators = 1000;
/// As many as the embedded engine knows.
constexpr std::size_t kMostColumns = 2000;
/// The same; one more cannot be joined.
constexpr std::size_t kMostTables = 64;
/// Columns of all queries of a statement together.
constexpr std::size_t kMostColumnsInAll = 200'000;
/// SELECTs, each counted as often as it is run: a named query that is read twice counts twice.
constexpr std::size_t kMostSelects = 5000;
constexpr std::size_t kMostTokens = 1'000'000;
/// Of StatementWork: far more than any statement of that many tokens has use for.
constexpr std::size_t kMostSteps = 500'000'000;
constexpr std::size_t kStepsBetweenLooks = 1024;

}  // namespace orvane::provider::dialect

// CREATE DATABASE and DROP DATABASE, which the historian carries out itself.
// Read from the statement before anything reaches an engine. Pure functions, any thread.
#pragma once

#include <optional>
#include <string_view>
#include <variant>
#include <vector>

#include "provider/dialect/lexer.h"

namespace orvane::provider::dialect {

struct CreateDatabase {
  platform::Text sName;
  platform::Text sPath;          ///< the folder for the catalog's file; empty for the usual one
  std::int64_t llKilobytes = 0;  ///< limit of the catalog's file; 0 is none
};

struct DropDatabase {
  platform::Text sName;
};

using CatalogStatement = std::variant<CreateDatabase, DropDatabase>;

/// CREATE DATABASE name [ON (PATH='folder', SIZE=kilobytes)] or DROP DATABASE name; none for any
/// other statement. Either item, or both in any order. Fails with failure::kSqlError when it is
/// not written so.
std::optional<CatalogStatement> ReadCatalogStatement(std::string_view sStatement,
                                                     const std::vector<Token>& tokens);

}  // namespace orvane::provider::dialect

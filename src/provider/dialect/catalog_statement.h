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
  platform::Text sFile;          ///< a catalog's file that is taken in; empty for a new one
};

struct DropDatabase {
  platform::Text sName;
};

using CatalogStatement = std::variant<CreateDatabase, DropDatabase>;

/// CREATE DATABASE name [ON (PATH='folder', SIZE=kilobytes)], CREATE DATABASE name ON (FILE='file')
/// or DROP DATABASE name; none for any other statement. Path and size stand alone or both in any
/// order, a file alone. Fails with failure::kSqlError when it is
/// not written so.
std::optional<CatalogStatement> ReadCatalogStatement(std::string_view sStatement,
                                                     const std::vector<Token>& tokens);

}  // namespace orvane::provider::dialect

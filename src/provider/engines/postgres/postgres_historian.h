// The catalogs Orvane and Functions on a PostgreSQL server, of which any database can be browsed as
// it stands: their tables are worked out by queries. Where a historian was made in the database,
// its table of catalogs has what the server does not know, such as when a catalog was made. Used by
// the session; pure functions.
#pragma once

#include <vector>

#include "provider/engines/engine.h"

namespace orvane::provider::engines {

/// True for "Orvane" and "Functions".
bool IsPostgresSystemCatalog(const platform::Text& sName);

/// The query whose rows are the table Historians, with its columns in their order. With records
/// what the historian's own table has comes first.
platform::Text PostgresHistoriansQuery(bool bRecords);

/// The tables of a system catalog, as EngineSession::Schema gives them.
std::vector<TableSchema> PostgresSystemTables(const platform::Text& sCatalog,
                                              const SchemaRequest& request, bool bRecords);

/// The statements that make a historian in a database; done again they change nothing.
extern const char* const kNewPostgresHistorian;

}  // namespace orvane::provider::engines

// Catalogs, tables and columns of a server, read row by row through its schema rowsets.
// Every operation here fails with 91 when it is given no connection, and otherwise as the
// connection does, unless its comment says what it suppresses.
#pragma once

#include <functional>
#include <vector>

#include "platform/ado/connection.h"
#include "platform/grids/table_query.h"

namespace orvane::access {

using UseName = std::function<void(const platform::Text&)>;

/// Hands over the server's catalogs, each as soon as it is read.
void ForEachCatalog(const platform::ConnectionPtr& cn, const UseName& use);

/// Hands over the catalog's tables, each as soon as it is read.
void ForEachTable(const platform::ConnectionPtr& cn, const platform::Text& sCatalog,
                  const UseName& use);

/// The server's columns of the query's table, in the server's order.
std::vector<platform::Text> ColumnNames(platform::TableQuery& query,
                                        const platform::ConnectionPtr& cn);

/// Brings the query's column list in line with the server. An empty list takes every column in
/// the server's order. Another one only loses names that the server does not have, walking up to
/// the count it started with: the entry behind a removed one is not looked at, and as soon as the
/// walk leaves the shortened list it fails with 9; doing it again goes on with what is left.
void GetTableColumns(platform::TableQuery& query, const platform::ConnectionPtr& cn);

/// One column of a table's structure.
struct TableStructureRow {
  platform::Text sColumn;
  platform::Text sTypeName;  ///< empty when the first best match for the type cannot be named
  platform::Boolean bKey = false;
  /// Reads whether the column accepts nulls: last, when its item is already listed.
  std::function<platform::Boolean()> nullable;
};

/// Hands over the table's columns, each as soon as it is read. Without a connection, or when one
/// of the three rowsets or their fields cannot be had, there is nothing to hand over and no
/// failure; all three are asked for. Failures while looking for a column's key and type are
/// suppressed; those of the column's own fields and of what is done with the row are not.
void ForEachStructureRow(const platform::ConnectionPtr& cn, const platform::Text& sCatalog,
                         const platform::Text& sTable,
                         const std::function<void(const TableStructureRow&)>& use);

}  // namespace orvane::access

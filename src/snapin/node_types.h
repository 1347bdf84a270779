// Names that the console, the static description and the handlers share.
// Used by every file of handlers here; constant.
#pragma once

#include "platform/types.h"

namespace orvane::snapin {

namespace node_type {

constexpr const char* kServers = "Servers";
constexpr const char* kServer = "Server";
constexpr const char* kCatalogs = "Catalogs";
constexpr const char* kCatalog = "Catalog";
constexpr const char* kTable = "Table";
constexpr const char* kQueries = "Queries";
constexpr const char* kQuery = "Query";

}  // namespace node_type

namespace view_name {

constexpr const char* kDefaultList = "DefaultListView";
constexpr const char* kQueriesList = "QueriesListView";
constexpr const char* kTableStructureList = "TableStructureListView";
constexpr const char* kTableEditor = "TableEditorOcxView";
constexpr const char* kQueryResults = "QueryResultsOcxView";

}  // namespace view_name

/// Images of the folder lists by their numbers, from 1.
namespace image {

constexpr platform::Long kServers = 1;
constexpr platform::Long kServer = 2;
constexpr platform::Long kFolder = 3;
constexpr platform::Long kTable = 4;
constexpr platform::Long kColumn = 5;
constexpr platform::Long kKeyColumn = 6;
constexpr platform::Long kCatalog = 7;
constexpr platform::Long kQuery = 8;

}  // namespace image

constexpr platform::Long kNameWidth = 200;
constexpr platform::Long kQueryWidth = 300;

}  // namespace orvane::snapin

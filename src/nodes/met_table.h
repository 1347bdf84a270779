// A table that a server has, as it stands in the model from then on. Used wherever tables of a
// server are met: by the snap-in and by programs without a window; one thread.
#pragma once

#include "nodes/catalog_node.h"
#include "nodes/servers_node.h"
#include "nodes/table_node.h"

namespace orvane::nodes {

/// The catalog's node of the table. One that is met for the first time is filed with the options of
/// the root. Its list of columns is brought in line with the server. Fails as the server does.
TableNodePtr MeetTable(const ServersNode& root, CatalogNode& catalog,
                       const platform::ConnectionPtr& cn, const platform::Text& sTable);

}  // namespace orvane::nodes

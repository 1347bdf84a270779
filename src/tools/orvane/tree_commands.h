// What a document keeps, told without asking a server: its tree, and its options.
// Commands of the program orvane; one thread.
#pragma once

#include "nodes/servers_node.h"
#include "tools/orvane/output.h"

namespace orvane::tools {

/// The servers of the document, each with its catalogs, their tables, and its queries. Fails with
/// an Ending where there is no server.
void Tree(const nodes::ServersNode& root, bool bJson, Output& output);
void Options(const nodes::ServersNode& root, bool bJson, Output& output);

/// Appends the text as JSON; one that is no UTF-8 as {"bytes":"0x..."}.
void AppendJson(platform::Text& sTo, const platform::Text& sText);

}  // namespace orvane::tools

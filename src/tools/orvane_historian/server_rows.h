// import, record and generate on servers that are reached by an address.
// Run by the program alone.
#pragma once

#include <istream>

#include "tools/orvane_historian/generate.h"
#include "tools/orvane_historian/import.h"
#include "tools/orvane_historian/record.h"
#include "tools/orvane_historian/server_catalog.h"

namespace orvane::tools {

/// As Import does, into a table of the server's catalog.
std::int64_t ImportToServer(ServerCatalog& catalog, std::istream& stream, const ImportOrder& order);

/// As Generate does; a catalog of the name is filled when it was made now, or here before.
std::int64_t GenerateOnServer(ServerCatalog& catalog, const GenerateOrder& order);

/// As Record does. While the server cannot be reached samples wait, an hour of them at most; the
/// recorder comes back to it by itself.
std::int64_t RecordOnServer(const platform::Text& sServer, const RecordOrder& order);

}  // namespace orvane::tools

// The servers of the scenarios: embedded historians in the user's data folder, written to beside
// the console. For the driver; one thread.
#pragma once

#include "tests/scenarios/driver.h"

namespace orvane::console {

/// Makes the server with its catalogs, tables and rows; what is there already stays.
void MakeServer(const scenarios::ServerSetup& server);
void AppendRow(const platform::Text& sServer, const platform::Text& sCatalog,
               const platform::Text& sTable, const std::vector<platform::Value>& values);

}  // namespace orvane::console

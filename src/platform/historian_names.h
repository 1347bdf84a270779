// The names that every historian has: the server that is made at first use and its own catalogs.
// Used by the provider, which makes them, and by the model, which treats them apart. Each compares
// them in its own way. Constants, any thread.
#pragma once

namespace orvane::platform {

/// The server that is made at first use, and a new server's data source.
constexpr const char* kDefaultServer = "localhost";
/// The system catalog, with the table Historians.
constexpr const char* kSystemCatalog = "Orvane";
/// The read-only catalog of what statements can use.
constexpr const char* kFunctionsCatalog = "Functions";

}  // namespace orvane::platform

// The tables with which catalogs begin, as statements.
// Used where files of catalogs are made.
#pragma once

#include <string_view>

namespace orvane::provider::historian {

/// Of a new catalog: Tags, Data and Data2.
extern const std::string_view kNewCatalog;
/// Of the system catalog: Historians.
extern const std::string_view kNewSystemCatalog;

}  // namespace orvane::provider::historian

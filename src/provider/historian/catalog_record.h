// What a historian knows of each of its catalogs.
// A row of the table Historians in the catalog Orvane; plain values.
#pragma once

#include <cstdint>
#include <filesystem>

#include "platform/value.h"

namespace orvane::provider::historian {

struct CatalogRecord {
  platform::Text sName;
  platform::Text sIdentity;      ///< "{8-4-4-4-12}"; empty for the historian's own catalogs
  std::filesystem::path file;    ///< absolute
  std::filesystem::path stored;  ///< the same, but without the historian's folder if it lies there
  std::int64_t llKilobytes = 0;  ///< limit of the file; 0 is none
  platform::Text sDescription;
  platform::Boolean bOwn = false;  ///< one of the historian's own, which statements only read
};

/// Fails with failure::kInvalidArgument when no catalog can be called so.
void CheckCatalogName(const platform::Text& sName);

}  // namespace orvane::provider::historian

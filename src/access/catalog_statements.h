// The statements that create and drop catalogs, and the two operations that send them.
// Used by ServerNode; everything is concatenated as it stands, nothing is quoted or escaped.
#pragma once

#include "platform/services.h"

namespace orvane::access {

/// The create statement. An empty path and a size below 1 (kilobytes) are left out.
platform::Text FormCreateDatabase(const platform::Text& sName, const platform::Text& sPath,
                                  platform::Long lSize);
platform::Text FormIdentityLookup(const platform::Text& sName);
platform::Text FormDropDatabase(const platform::Text& sName);

/// Creates the catalog, under the hourglass, and returns the identifier by which the server knows
/// it: its name, or, where historians are known by GUID, its identity; empty, after a message,
/// when the server tells none. Failures pass through; the hourglass then stays.
platform::Text CreateCatalog(platform::ObjectFactory& objects, platform::UserInterface& ui,
                             const platform::ConnectionPtr& cn, const platform::Text& sName,
                             const platform::Text& sPath, platform::Long lSize);

/// Drops the catalog. Failures pass through.
void DropCatalog(platform::ObjectFactory& objects, const platform::ConnectionPtr& cn,
                 const platform::Text& sName);

}  // namespace orvane::access

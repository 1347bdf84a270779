// Where the historians of this user live, and what a "Data Source" text says about that.
// Used by the provider and the command-line program; any thread.
#pragma once

#include <filesystem>
#include <string_view>
#include <vector>

#include "platform/types.h"

namespace orvane::provider::historian {

/// The folder of all that belongs to this user; empty without a home.
std::filesystem::path DefaultRoot();

/// The folder of one historian, whether or not there is one. Fails with kServerNotFound when there
/// is no root.
std::filesystem::path HistorianFolder(const std::filesystem::path& root,
                                      const platform::Text& sServer);

/// The name of an embedded historian from a "Data Source"; an empty one is the default server.
/// Fails with failure::kInvalidArgument when it holds a password, with kNotSupported when it
/// means a server of another kind, with kServerNotFound when it is no name.
platform::Text ServerFromDataSource(std::string_view sDataSource);

/// The historians that there are, the default server always and first.
std::vector<platform::Text> KnownServers(const std::filesystem::path& root);

}  // namespace orvane::provider::historian

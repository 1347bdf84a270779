// What holds for the text that names a server, whichever engine it is of.
// Used before a server is opened; pure.
#pragma once

#include <string_view>

namespace orvane::provider::engines {

/// Fails with failure::kInvalidArgument when the text holds a password, without repeating it.
void RefusePassword(std::string_view sDataSource);

}  // namespace orvane::provider::engines

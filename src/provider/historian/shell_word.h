// A word as it is typed behind the name of a program, for sentences that say what to type.
// Pure, any thread.
#pragma once

#include "platform/types.h"

namespace orvane::provider::historian {

/// The word as it is, or between single quotes where a shell would take it apart.
platform::Text InShell(const platform::Text& sWord);

}  // namespace orvane::provider::historian

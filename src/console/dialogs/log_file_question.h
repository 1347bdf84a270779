// The question whether a log file that a document brings may be written.
// Asked when a server is connected; user-interface thread, returns when it is answered.
#pragma once

#include "platform/types.h"

namespace orvane::console {

/// True for "Yes". Escape and the window's own button answer "No", which is the default as well.
platform::Boolean AskToWriteLogFile(const platform::Text& sFile);

}  // namespace orvane::console

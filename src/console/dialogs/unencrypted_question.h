// The question whether to log on to a server on another machine that does not encrypt.
// Asked after the logon dialog, before anything is sent; user-interface thread, returns when it is
// answered.
#pragma once

#include "platform/types.h"

namespace orvane::console {

/// True for "Yes". Escape and the window's own button answer "No", which is the default as well.
platform::Boolean AskToGoUnencrypted(const platform::Text& sServer);

}  // namespace orvane::console

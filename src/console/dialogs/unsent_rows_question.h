// The question whether rows that a grid has changed and not stored may be given up.
// Asked before a document, a connection or a catalog goes; user-interface thread, returns when it
// is answered.
#pragma once

#include "platform/types.h"

namespace orvane::console {

/// The sentence says which rows. True for "Discard Changes"; Escape and the window's own button
/// answer "Cancel", which is the default as well.
platform::Boolean AskToGiveRowsUp(const platform::Text& sSentence);

}  // namespace orvane::console

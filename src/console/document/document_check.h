// A document looked through whole, further than an opening does: every object in it is made.
// Used by programs without a window; a pure function.
#pragma once

#include <string_view>

#include "console/document/document_bag.h"

namespace orvane::console {

/// Reads all of a document. Fails with failure::kDocument for the first line that is wrong: as
/// ReadDocument does, for an object that cannot be made of its line, and where the seals do not
/// fit. The name is used in sentences only.
void CheckDocument(std::string_view sBytes, const platform::Text& sName,
                   const DocumentBag::ObjectCreator& creator);

}  // namespace orvane::console

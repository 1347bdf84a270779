// A text as a JSON string, for what is written by hand where documents with a hundred thousand
// tables go by: without an object in between. Used by the documents and the states of queries;
// pure, any thread.
#pragma once

#include <string_view>

#include "platform/types.h"

namespace orvane::platform {

/// Appends the text, which is UTF-8, between double quotes with what JSON has escaped.
void AppendJsonString(Text& sTo, std::string_view sText);

}  // namespace orvane::platform

// The lines of the commands that change what a document keeps.
// Used where the command line of the program orvane is described.
#pragma once

#include <array>

#include "tools/orvane/command_line.h"

namespace orvane::tools {

/// "server", "catalog" and, where verbs are wanted, "query", each with its verbs.
void DescribeChanges(CLI::App& line, Arguments& arguments, bool bQueryVerbs);
const std::array<platform::Text, 4>& QueryVerbs();

}  // namespace orvane::tools

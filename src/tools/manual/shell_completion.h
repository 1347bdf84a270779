// What shells need to complete the words of a program's command line.
// Used when the program is built; pure functions.
#pragma once

#include "tools/manual/described.h"

namespace orvane::tools {

std::string BashCompletion(const DescribedProgram& program);
std::string ZshCompletion(const DescribedProgram& program);
std::string FishCompletion(const DescribedProgram& program);

}  // namespace orvane::tools

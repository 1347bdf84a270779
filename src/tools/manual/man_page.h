// The manual page of a program.
// Used when the program is built; a pure function.
#pragma once

#include "tools/manual/described.h"

namespace orvane::tools {

/// In the language of man, section 1, the same for the same program on every day.
std::string ManPage(const DescribedProgram& program);

}  // namespace orvane::tools

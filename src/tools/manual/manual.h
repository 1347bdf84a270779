// A program that tells its own manual page and completions: "PROGRAM --manual FORM", which help
// does not show, as it is for whoever builds and packs the program.
// Used by the main functions of all programs, before they do anything else.
#pragma once

#include <functional>
#include <optional>

#include "tools/manual/described.h"

namespace orvane::tools {

/// Writes what was asked for to the standard output and gives the exit status; nothing when the
/// program was called for something else. The forms are man, bash, zsh and fish.
std::optional<int> ToldManual(int argc, const char* const* argv,
                              const std::function<DescribedProgram()>& describe);

}  // namespace orvane::tools

// The standard input, output and error where a program was started without them: whatever it opens
// next would take their numbers, and what it prints would be written into that.
// Called first by the main functions of programs, before there is anything else open.
#pragma once

namespace orvane::tools {

/// Holds the numbers of those that are closed, so that reading and writing them still fails.
void HoldStandardFiles();

}  // namespace orvane::tools

// The system's basic types under the names its interfaces use.
// Everything that crosses a component border is made of these, of Value and of
// the interfaces of this folder; nothing here knows a toolkit, a database or a file.
#pragma once

#include <cstdint>
#include <string>

namespace orvane::platform {

/// UTF-8 text.
using Text = std::string;
/// Signed 32-bit integer.
using Long = std::int32_t;
using Boolean = bool;

}  // namespace orvane::platform

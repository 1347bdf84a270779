// Who may read and write a file, as a list of users and groups by name.
// Used where a file is to be open to those who may use another one, and its group is not its
// maker's to give; any thread.
#pragma once

#include "files/descriptor.h"

namespace orvane::files {

/// Opens the new file to those who may read or write the old one: its owner, its group and all that
/// are named in its own list, each by name, and to nobody else. For one who may not give the new
/// file the group of the old one (TakeAccess). False where the file system has no such lists. The
/// old file is not opened.
bool ListAccess(const platform::Text& sFrom, const Descriptor& to);

}  // namespace orvane::files

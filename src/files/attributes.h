// What a file is beside its bytes: owner, group, mode, access list, extended attributes.
// Used where a file takes the place of another one.
#pragma once

#include <sys/stat.h>

#include "files/descriptor.h"

namespace orvane::files {

/// Makes the new file what the old one is beside its bytes. False when that cannot be done whole,
/// as only an administrator may give files away; the new file must not take the old one's place
/// then.
bool TakeAttributes(const Descriptor& from, const Descriptor& to);

/// Opens the new file to those who may read or write the old one, by its group, mode and access
/// list, and to nobody else; its owner stays who made it. False when it cannot have them, as one
/// who is not of the group may not give it. The old file is not opened: whoever has locks on it
/// would lose them as it was closed.
bool TakeAccess(const platform::Text& sFrom, const Descriptor& to);

}  // namespace orvane::files

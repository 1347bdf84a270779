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

}  // namespace orvane::files

// Where a host is, asked so that a stop is heard although the resolver hears none.
// Used by LogOn, on the thread of its caller.
#pragma once

#include <stop_token>
#include <vector>

#include "platform/types.h"

namespace orvane::provider::engines {

struct HostAddresses {
  std::vector<platform::Text> addresses;  ///< in digits, in the order in which they are to be tried
  platform::Text sProblem;                ///< why there are none
};

/// Asks the system for the addresses of a name; digits are an address by themselves. Ends without
/// any when the stop is requested. The question may then go on: by a thread of the C library, which
/// uses nothing of this library, and some hundred bytes stay with it.
HostAddresses LookUpHost(const platform::Text& sName, const std::stop_token& stop);

}  // namespace orvane::provider::engines

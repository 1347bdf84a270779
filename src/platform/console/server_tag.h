// What the tag of a scope item may tell the console of the server that the item stands for, so that
// the console can show whether it is connected, and as whom. User-interface thread.
#pragma once

#include "platform/ado/connection.h"

namespace orvane::platform {

class ServerTag {
 public:
  ServerTag() = default;
  ServerTag(const ServerTag&) = delete;
  ServerTag& operator=(const ServerTag&) = delete;
  virtual ~ServerTag() = default;

  /// The open connection, or none.
  virtual ConnectionPtr OpenConnection() const = 0;
};

}  // namespace orvane::platform

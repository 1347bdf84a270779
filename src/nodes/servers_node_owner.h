// Whoever owns the root of the model: told of every persistent change beneath it.
// Implemented by the snap-in and by tests; called on the thread that made the change.
#pragma once

namespace orvane::nodes {

class ServersNodeOwner {
 public:
  ServersNodeOwner() = default;
  ServersNodeOwner(const ServersNodeOwner&) = delete;
  ServersNodeOwner& operator=(const ServersNodeOwner&) = delete;
  virtual ~ServersNodeOwner() = default;

  /// Called after a setting of the root or anything in its tree has changed.
  virtual void ServersNodeChanged() = 0;
};

}  // namespace orvane::nodes

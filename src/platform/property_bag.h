// The console document's store of named values: flat, one value a key.
// Supplied by the console; written and read by the snap-in on the user-interface thread.
#pragma once

#include <optional>
#include <string_view>

#include "platform/value.h"

namespace orvane::platform {

/// An object that saves its own state into one bag value and is rebuilt from it.
class PersistedObject : public Object {
 public:
  /// The progid under which an empty object of this class can be created again.
  virtual Text ProgId() const = 0;
  /// The whole state as text; any bytes of UTF-8, line breaks included.
  virtual Text WriteState() const = 0;
  /// Replaces the whole state. Fails with 13, unchanged, when the text is no state of this class.
  virtual void ReadState(const Text& sState) = 0;
};

class PropertyBag {
 public:
  PropertyBag() = default;
  PropertyBag(const PropertyBag&) = delete;
  PropertyBag& operator=(const PropertyBag&) = delete;
  virtual ~PropertyBag() = default;

  /// Stores a Boolean, integer, text or PersistedObject under the name, replacing any earlier
  /// value; an object is asked for its state at once. With a default, a value equal to it is not
  /// stored. Fails with 13 for a value of another kind.
  virtual void WriteProperty(std::string_view sName, const Value& vtValue,
                             const std::optional<Value>& vtDefault = std::nullopt) = 0;
  /// The stored value, or the default when the name is absent. A stored object is created anew
  /// from its progid and its state at every read; failures of that pass through.
  virtual Value ReadProperty(std::string_view sName, const Value& vtDefault) const = 0;
};

}  // namespace orvane::platform

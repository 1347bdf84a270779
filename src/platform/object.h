// The root of everything that can be held by reference across a component border:
// model nodes, connections, recordsets, grids.
#pragma once

#include <memory>

namespace orvane::platform {

/// Base of all objects that travel in a Value, a scope item's tag or a class factory.
/// Ownership is always std::shared_ptr; an object never refers to itself strongly.
class Object {
 public:
  Object() = default;
  Object(const Object&) = delete;
  Object& operator=(const Object&) = delete;
  Object(Object&&) = delete;
  Object& operator=(Object&&) = delete;
  virtual ~Object() = default;
};

using ObjectPtr = std::shared_ptr<Object>;

}  // namespace orvane::platform

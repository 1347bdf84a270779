// Counts the living objects of the model, so that the component knows when its library may be
// unloaded: console items and grids may hold nodes longer than the snap-in object lives.
#pragma once

#include "platform/types.h"

namespace orvane::nodes {

class Counted {
 public:
  Counted(const Counted&) = delete;
  Counted& operator=(const Counted&) = delete;

  /// Number of objects alive in this library.
  static platform::Long Alive() noexcept;

 protected:
  Counted() noexcept;
  ~Counted();
};

}  // namespace orvane::nodes

// What is told of something that was thrown, whatever it is: memory that runs out has no sentence
// of its own. Used where exceptions end: guards of handlers, documents, components, programs. Pure,
// any thread.
#pragma once

#include <new>
#include <stdexcept>

#include "platform/failure.h"

namespace orvane::platform {

/// A failure is told as it is. Of anything else the words are those that it has, with that number
/// and source.
inline Failure ToldFailure(const std::exception& exception, Long lNumber, const Text& sSource) {
  if (const auto* const failure = dynamic_cast<const Failure*>(&exception)) return *failure;
  if (dynamic_cast<const std::bad_alloc*>(&exception) != nullptr ||
      dynamic_cast<const std::length_error*>(&exception) != nullptr) {
    return {failure::kStorage,
            "There is not enough memory for this; close other programs and try again.", sSource};
  }
  return {lNumber, exception.what(), sSource};
}

}  // namespace orvane::platform

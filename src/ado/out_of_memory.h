// Memory that runs out is told as a failure with a sentence, whoever needed it.
// Used by the connection around each call of a provider, and by providers that log what failed;
// on the thread of the call.
#pragma once

#include <new>
#include <stdexcept>
#include <utility>

#include "platform/failure.h"

namespace orvane::ado {

/// What a statement fails with that needs more memory than there is, or than it may use.
inline platform::Failure OutOfMemory() {
  return platform::Failure(
      platform::failure::kStorage,
      "There is not enough memory for the statement: set a row limit, or narrow it down.");
}

/// Does the work; fails with OutOfMemory when its memory runs out.
template <class Work>
auto TellingMemory(Work&& work) {
  try {
    return std::forward<Work>(work)();
  } catch (const std::bad_alloc&) {
    throw OutOfMemory();
  } catch (const std::length_error&) {
    throw OutOfMemory();
  }
}

}  // namespace orvane::ado

// The number and the sentence with which a call fails, for tests.
#pragma once

#include <functional>

#include "platform/failure.h"

namespace orvane::controls {

/// 0 when the call does not fail.
inline platform::Long FailureNumberOf(const std::function<void()>& call) {
  try {
    call();
  } catch (const platform::Failure& failure) {
    return failure.Number();
  }
  return 0;
}

inline platform::Text SentenceOf(const std::function<void()>& call) {
  try {
    call();
  } catch (const platform::Failure& failure) {
    return failure.Description();
  }
  return {};
}

}  // namespace orvane::controls

// What a call failed with, for tests that look at number and sentence.
#pragma once

#include <ostream>
#include <utility>

#include "platform/failure.h"

namespace orvane::tests {

struct Told {
  platform::Long lNumber = 0;  ///< 0 when the call did not fail
  platform::Text sSentence;
  friend bool operator==(const Told&, const Told&) = default;
};

inline void PrintTo(const Told& told, std::ostream* stream) {
  *stream << told.lNumber << ' ' << told.sSentence;
}

template <class Call>
Told FailureOf(Call&& call) {
  try {
    std::forward<Call>(call)();
  } catch (const platform::Failure& failed) {
    return {failed.Number(), failed.Description()};
  }
  return {};
}

}  // namespace orvane::tests

// What is given for the parameters of a statement that runs once for each row of values. Where it
// meets a time it is looked at when it comes, by the rules for what a single statement is given,
// which is looked at while that is translated.
// Told by the analysis of times, used by the session. Owns all that it needs: any thread.
#pragma once

#include <functional>
#include <vector>

#include "platform/ado/connection.h"
#include "platform/failure.h"

namespace orvane::provider::dialect {

using Fits = std::function<bool(const platform::Value& vtValue)>;

struct GivenValue {
  std::size_t parameter = 0;  ///< its number, from 0
  Fits fits;
  platform::Failure refusal;  ///< of a value that does not fit
};

bool IsNullOrNumber(const platform::Value& vtValue);
/// Null, or a point in time.
bool IsNullOrTime(const platform::Value& vtValue);

/// The same rows, each looked at before it is handed on. They fail with a platform::RowFailure at
/// the first value that does not fit.
platform::ParameterRows LookedAt(platform::ParameterRows rows, std::vector<GivenValue> given);

}  // namespace orvane::provider::dialect

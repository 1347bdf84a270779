// What a statement fails with that runs once for each of many rows of values, when one of them is
// what it fails for. Thrown by engines; caught by who gave the rows and can tell where they came
// from; everyone else sees the failure in it. Any thread.
#pragma once

#include <cstdint>

#include "platform/failure.h"

namespace orvane::platform {

/// Values are asked for before the runs they are for: when a run fails, so many rows behind its own
/// may have been given already, and no more.
inline constexpr std::int64_t kMostRowsAhead = 8192;

class RowFailure final : public Failure {
 public:
  RowFailure(const Failure& failed, std::int64_t llRow) : Failure(failed), m_llRow(llRow) {}

  /// The row as ParameterRows gave it, from 1.
  std::int64_t Row() const noexcept { return m_llRow; }

 private:
  std::int64_t m_llRow;
};

}  // namespace orvane::platform

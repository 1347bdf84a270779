// The beat of the recorders: a sample of this machine's counters each second.
// Used by record, on this machine and on servers; one thread.
#pragma once

#include <functional>

#include "tools/orvane_historian/machine_counters.h"
#include "tools/orvane_historian/record.h"
#include "tools/orvane_historian/stop_signals.h"

namespace orvane::tools {

struct Sample {
  platform::Timestamp time;
  std::vector<Counter> counters;
};

/// Hands on as many samples as the order says, or until a signal comes or `take` gives false. Gives
/// their number.
std::int64_t TakeSamples(const RecordOrder& order, const StopSignals& signals,
                         const std::function<bool(Sample sample)>& take);

}  // namespace orvane::tools

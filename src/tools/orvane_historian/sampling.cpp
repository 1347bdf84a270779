#include "tools/orvane_historian/sampling.h"

#include <algorithm>

namespace orvane::tools {

using namespace std::chrono;

std::int64_t TakeSamples(const RecordOrder& order, const StopSignals& signals,
                         const std::function<bool(Sample sample)>& take) {
  MachineCounters counters(order.proc);
  std::int64_t llSamples = 0;
  auto last = steady_clock::now();
  auto next = last;
  while (order.llCount == 0 || llSamples < order.llCount) {
    // A machine that slept takes up the beat again instead of making up for it.
    next = std::max(next + seconds(1), steady_clock::now());
    if (signals.WaitUntil(next)) break;
    const auto now = steady_clock::now();
    Sample sample{floor<milliseconds>(system_clock::now()), counters.Read(now - last)};
    last = now;
    ++llSamples;
    if (!take(std::move(sample))) break;
  }
  return llSamples;
}

}  // namespace orvane::tools

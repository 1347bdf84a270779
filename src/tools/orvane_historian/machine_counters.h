// This machine's own counters, read from /proc: processors, memory, load, disks, network.
// Used by the subcommand record, once a second.
#pragma once

#include <chrono>
#include <filesystem>
#include <map>
#include <span>
#include <vector>

#include "platform/types.h"

namespace orvane::tools {

struct Counter {
  platform::Text sTag;
  platform::Text sDescription;
  platform::Text sUnit;
  double dValue = 0;
};

/// What tags and descriptions are made of; a device's name comes behind sTag and sDescription.
struct CounterKind {
  const char* sTag;
  const char* sTagEnd;
  const char* sDescription;
  const char* sUnit;
};

/// All that a machine can have.
std::span<const CounterKind> CounterKinds();

class MachineCounters {
 public:
  /// Takes the first readings, from which the next ones count.
  explicit MachineCounters(std::filesystem::path proc = "/proc");

  /// What can be read now; rates are those since the last reading, which the given time passed.
  /// What this machine does not offer is left out.
  std::vector<Counter> Read(std::chrono::duration<double> passed);

 private:
  using Totals = std::map<platform::Text, double>;

  void AppendProcessors(std::vector<Counter>& counters);
  void AppendMemory(std::vector<Counter>& counters) const;
  void AppendLoad(std::vector<Counter>& counters) const;
  void AppendDisks(std::vector<Counter>& counters, double dSeconds);
  void AppendNetwork(std::vector<Counter>& counters, double dSeconds);
  /// What the total grew by since it was last asked for; none the first time, or when it shrank.
  bool Grown(const platform::Text& sName, double dTotal, double& dGrown);
  /// The counter has the total, in its place comes the rate.
  void AppendRate(std::vector<Counter>& counters, Counter counter, double dSeconds);

  std::filesystem::path m_proc;
  Totals m_totals;
};

}  // namespace orvane::tools

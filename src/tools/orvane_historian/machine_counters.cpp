#include "tools/orvane_historian/machine_counters.h"

#include <algorithm>
#include <cmath>
#include <fstream>
#include <sstream>

namespace orvane::tools {
namespace {

using platform::Text;

enum Kind {
  kAllProcessors,
  kProcessor,
  kAvailable,
  kUsed,
  kSwapped,
  kOneMinute,
  kFiveMinutes,
  kFifteenMinutes,
  kRead,
  kWritten,
  kReceived,
  kSent
};

// In the order of their numbers.
constexpr CounterKind kKinds[] = {
    {"cpu.load", "", "Use of all processors together", "%"},
    {"cpu.", ".load", "Use of processor ", "%"},
    {"memory.available", "", "Memory that programs can still get", "MB"},
    {"memory.used", "", "Memory in use", "MB"},
    {"memory.swapped", "", "Memory moved out to disk", "MB"},
    {"load.1", "", "Mean number of processes that run or wait, over 1 minute", "processes"},
    {"load.5", "", "Mean number of processes that run or wait, over 5 minutes", "processes"},
    {"load.15", "", "Mean number of processes that run or wait, over 15 minutes", "processes"},
    {"disk.", ".read", "Read from disk ", "kB/s"},
    {"disk.", ".written", "Written to disk ", "kB/s"},
    {"network.", ".received", "Received over ", "kB/s"},
    {"network.", ".sent", "Sent over ", "kB/s"},
};

Counter CounterOf(Kind kind, double dValue, const Text& sDevice = {}) {
  const CounterKind& of = kKinds[kind];
  return {of.sTag + sDevice + of.sTagEnd, of.sDescription + sDevice, of.sUnit, dValue};
}

// A whole disk, not a part of one, and not a file or memory dressed up as a disk.
bool IsDisk(const Text& sName) {
  for (const char* const sOther : {"loop", "ram", "zram", "fd", "sr", "dm-", "md"}) {
    if (sName.starts_with(sOther)) return false;
  }
  const bool bNumbered = !sName.empty() && sName.back() >= '0' && sName.back() <= '9';
  if (!bNumbered) return true;
  // nvme0n1 and mmcblk0 are disks, nvme0n1p1 and mmcblk0p1 parts of them.
  const bool bByNumber = sName.starts_with("nvme") || sName.starts_with("mmcblk");
  return bByNumber && sName.find('p') == Text::npos;
}

}  // namespace

std::span<const CounterKind> CounterKinds() {
  return kKinds;
}

MachineCounters::MachineCounters(std::filesystem::path proc) : m_proc(std::move(proc)) {
  Read(std::chrono::seconds(1));
}

std::vector<Counter> MachineCounters::Read(std::chrono::duration<double> passed) {
  std::vector<Counter> counters;
  AppendProcessors(counters);
  AppendMemory(counters);
  AppendLoad(counters);
  AppendDisks(counters, passed.count());
  AppendNetwork(counters, passed.count());
  // What lies behind is the clock's noise, not the machine's work.
  for (auto& counter : counters) counter.dValue = std::round(counter.dValue * 1000) / 1000;
  return counters;
}

bool MachineCounters::Grown(const Text& sName, double dTotal, double& dGrown) {
  const auto [known, bNew] = m_totals.try_emplace(sName, dTotal);
  if (bNew) return false;
  dGrown = dTotal - known->second;
  known->second = dTotal;
  return dGrown >= 0;
}

void MachineCounters::AppendRate(std::vector<Counter>& counters, Counter counter, double dSeconds) {
  double dGrown = 0;
  if (!Grown(counter.sTag, counter.dValue, dGrown) || dSeconds <= 0) return;
  counter.dValue = dGrown / dSeconds;
  counters.push_back(std::move(counter));
}

void MachineCounters::AppendProcessors(std::vector<Counter>& counters) {
  std::ifstream stream(m_proc / "stat");
  for (Text sLine; std::getline(stream, sLine);) {
    if (!sLine.starts_with("cpu")) continue;
    std::istringstream fields(sLine);
    Text sName;
    fields >> sName;
    double dTotal = 0;
    double dIdle = 0;
    // user, nice, system, idle, waiting, interrupts (2), stolen; what follows is in user already.
    for (int i = 0; i < 8; ++i) {
      double dTicks = 0;
      if (!(fields >> dTicks)) break;
      dTotal += dTicks;
      if (i == 3 || i == 4) dIdle += dTicks;
    }
    double dAll = 0;
    double dUnused = 0;
    const bool bAll = Grown(sName + " total", dTotal, dAll);
    const bool bIdle = Grown(sName + " idle", dIdle, dUnused);
    if (!bAll || !bIdle || dAll <= 0) continue;
    const Text sNumber = sName.substr(3);
    const double dLoad = std::clamp(100.0 * (1.0 - dUnused / dAll), 0.0, 100.0);
    counters.push_back(CounterOf(sNumber.empty() ? kAllProcessors : kProcessor, dLoad, sNumber));
  }
}

void MachineCounters::AppendMemory(std::vector<Counter>& counters) const {
  std::map<Text, double> megabytes;
  std::ifstream stream(m_proc / "meminfo");
  for (Text sLine; std::getline(stream, sLine);) {
    std::istringstream fields(sLine);
    Text sName;
    double dKilobytes = 0;
    if (fields >> sName >> dKilobytes) megabytes[sName] = dKilobytes / 1024;
  }
  if (megabytes.contains("MemTotal:") && megabytes.contains("MemAvailable:")) {
    const double dTotal = megabytes["MemTotal:"];
    const double dAvailable = megabytes["MemAvailable:"];
    counters.push_back(CounterOf(kAvailable, dAvailable));
    counters.push_back(CounterOf(kUsed, dTotal - dAvailable));
  }
  if (megabytes.contains("SwapTotal:") && megabytes.contains("SwapFree:")) {
    counters.push_back(CounterOf(kSwapped, megabytes["SwapTotal:"] - megabytes["SwapFree:"]));
  }
}

void MachineCounters::AppendLoad(std::vector<Counter>& counters) const {
  std::ifstream stream(m_proc / "loadavg");
  for (const Kind kind : {kOneMinute, kFiveMinutes, kFifteenMinutes}) {
    double dLoad = 0;
    if (!(stream >> dLoad)) return;
    counters.push_back(CounterOf(kind, dLoad));
  }
}

void MachineCounters::AppendDisks(std::vector<Counter>& counters, double dSeconds) {
  std::ifstream stream(m_proc / "diskstats");
  for (Text sLine; std::getline(stream, sLine);) {
    std::istringstream fields(sLine);
    Text sName;
    double dSkipped = 0;
    double dRead = 0;
    double dWritten = 0;
    fields >> dSkipped >> dSkipped >> sName;
    fields >> dSkipped >> dSkipped >> dRead >> dSkipped;
    fields >> dSkipped >> dSkipped >> dWritten;
    if (!fields || !IsDisk(sName)) continue;
    // Counted in sectors of 512 bytes, whatever the disk's own are.
    AppendRate(counters, CounterOf(kRead, dRead / 2, sName), dSeconds);
    AppendRate(counters, CounterOf(kWritten, dWritten / 2, sName), dSeconds);
  }
}

void MachineCounters::AppendNetwork(std::vector<Counter>& counters, double dSeconds) {
  std::ifstream stream(m_proc / "net" / "dev");
  for (Text sLine; std::getline(stream, sLine);) {
    const auto colon = sLine.find(':');
    if (colon == Text::npos) continue;
    const auto first = sLine.find_first_not_of(' ');
    const Text sName = sLine.substr(first, colon - first);
    std::istringstream fields(sLine.substr(colon + 1));
    double dReceived = 0;
    double dSkipped = 0;
    double dSent = 0;
    fields >> dReceived;
    for (int i = 0; i < 7; ++i) fields >> dSkipped;
    fields >> dSent;
    if (!fields || sName == "lo") continue;
    AppendRate(counters, CounterOf(kReceived, dReceived / 1024, sName), dSeconds);
    AppendRate(counters, CounterOf(kSent, dSent / 1024, sName), dSeconds);
  }
}

}  // namespace orvane::tools

#include "tools/orvane_historian/machine_counters.h"

#include <gtest/gtest.h>

#include <fstream>

#include "tests/provider/temporary_root.h"

namespace orvane::tools {
namespace {

using platform::Text;

class machine_counters : public testing::Test {
 protected:
  machine_counters() { std::filesystem::create_directories(m_root.Path() / "net"); }
  void Write(const char* sFile, const Text& sContent) {
    std::ofstream(m_root.Path() / sFile) << sContent;
  }
  static Text AsText(const std::vector<Counter>& counters) {
    Text sText;
    for (const auto& counter : counters) {
      sText += counter.sTag + " " + platform::ToText(platform::Value(counter.dValue)) + " " +
               counter.sUnit + "\n";
    }
    return sText;
  }
  provider::TemporaryRoot m_root;
};

TEST_F(machine_counters, are_what_grew_since_the_last_reading) {
  Write("stat", "cpu  10 0 10 80 0 0 0 0 0 0\ncpu0 10 0 10 80 0 0 0 0 0 0\nintr 1\n");
  Write("meminfo",
        "MemTotal: 4096 kB\nMemFree: 10 kB\nMemAvailable: 1024 kB\nSwapTotal: 2048 kB\nSwapFree: "
        "1024 kB\n");
  Write("loadavg", "0.50 0.25 0.10 1/100 1234\n");
  Write("diskstats",
        "   8 0 sda 1 0 100 0 1 0 200 0 0 0 0\n   8 1 sda1 1 0 100 0 1 0 200 0 0 0 0\n"
        "   7 0 loop0 1 0 100 0 1 0 200 0 0 0 0\n 259 0 nvme0n1 1 0 0 0 1 0 0 0 0 0 0\n"
        " 259 1 nvme0n1p1 1 0 0 0 1 0 0 0 0 0 0\n");
  Write(
      "net/dev",
      "Inter-|   Receive  |  Transmit\n face |bytes packets\n    lo: 5 0 0 0 0 0 0 0 5 0 0 0 0 0 0 "
      "0\n  eth0: 1024 0 0 0 0 0 0 0 2048 0 0 0 0 0 0 0\n");
  MachineCounters counters(m_root.Path());
  Write("stat", "cpu  30 0 30 140 0 0 0 0 0 0\ncpu0 30 0 30 140 0 0 0 0 0 0\n");
  Write("diskstats",
        "   8 0 sda 1 0 140 0 1 0 200 0 0 0 0\n 259 0 nvme0n1 1 0 0 0 1 0 8 0 0 0 0\n");
  Write("net/dev", "h\nh\n  eth0: 3072 0 0 0 0 0 0 0 2048 0 0 0 0 0 0 0\n");
  EXPECT_EQ(AsText(counters.Read(std::chrono::seconds(2))),
            "cpu.load 40 %\n"
            "cpu.0.load 40 %\n"
            "memory.available 1 MB\n"
            "memory.used 3 MB\n"
            "memory.swapped 1 MB\n"
            "load.1 0.5 processes\n"
            "load.5 0.25 processes\n"
            "load.15 0.1 processes\n"
            "disk.sda.read 10 kB/s\n"
            "disk.sda.written 0 kB/s\n"
            "disk.nvme0n1.read 0 kB/s\n"
            "disk.nvme0n1.written 2 kB/s\n"
            "network.eth0.received 1 kB/s\n"
            "network.eth0.sent 0 kB/s\n");
}

TEST_F(machine_counters, leave_out_what_is_not_there_or_shrank) {
  MachineCounters counters(m_root.Path());
  EXPECT_EQ(AsText(counters.Read(std::chrono::seconds(1))), "");
  Write("net/dev", "eth0: 100 0 0 0 0 0 0 0 100 0\n");
  EXPECT_EQ(AsText(counters.Read(std::chrono::seconds(1))), "");
  Write("net/dev", "eth0: 50 0 0 0 0 0 0 0 100 0\n");
  EXPECT_EQ(AsText(counters.Read(std::chrono::seconds(1))), "network.eth0.sent 0 kB/s\n");
}

TEST_F(machine_counters, come_from_this_machine) {
  MachineCounters counters;
  Text sTags;
  for (const auto& counter : counters.Read(std::chrono::seconds(1))) sTags += counter.sTag + " ";
  EXPECT_NE(sTags.find("memory.used "), Text::npos);
  EXPECT_NE(sTags.find("load.1 "), Text::npos);
}

}  // namespace
}  // namespace orvane::tools

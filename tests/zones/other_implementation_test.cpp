// The zones against another implementation of them, which reads the same database.
#include <gtest/gtest.h>

#include <cstdlib>
#include <map>
#include <sstream>
#include <string>

#include "tests/shell_command.h"
#include "zones/time_zone.h"

namespace orvane::zones {
namespace {

using platform::Timestamp;
using std::chrono::seconds;

struct Known {
  std::string sZone;
  bool bLocal = false;
  seconds time{0};
  seconds offset{0};
};

std::vector<Known> AskTheOther(int nRandomTimes, const std::string& sZones) {
  const auto outcome = tests::RunInShell(std::string("python3 " ORVANE_TIMES_SCRIPT " ") +
                                         std::to_string(nRandomTimes) + " " + sZones);
  EXPECT_EQ(outcome.nStatus, 0) << "the comparison needs Python 3 and the time zone database";
  std::istringstream lines(outcome.sOutput);
  std::vector<Known> known;
  std::string sZone;
  std::string sKind;
  long long llTime = 0;
  long long llOffset = 0;
  while (lines >> sZone >> sKind >> llTime >> llOffset) {
    known.push_back({sZone, sKind == "local", seconds(llTime), seconds(llOffset)});
  }
  return known;
}

/// The times at which the zone differs, the first few of them in words.
int Differences(const TimeZone& zone, const std::vector<Known>& known, const std::string& sZone) {
  int nDifferent = 0;
  for (const Known& time : known) {
    if (time.sZone != sZone) continue;
    const LocalTime local(time.time);
    const seconds offset = time.bLocal
                               ? date::floor<seconds>(local.time_since_epoch() -
                                                      zone.ToTimestamp(local).time_since_epoch())
                               : zone.OffsetAt(Timestamp(time.time));
    if (offset == time.offset) continue;
    if (++nDifferent < 4) {
      ADD_FAILURE() << sZone << (time.bLocal ? " local " : " UTC ")
                    << date::format("%F %T", date::sys_seconds(time.time)) << ": " << offset.count()
                    << ", and " << time.offset.count() << " elsewhere";
    }
  }
  return nDifferent;
}

class OfEnvironment {
 public:
  explicit OfEnvironment(const std::string& sZone) {
    if (const char* const sBefore = std::getenv("TZ")) m_before = sBefore;
    setenv("TZ", sZone.c_str(), 1);
  }
  OfEnvironment(const OfEnvironment&) = delete;
  OfEnvironment& operator=(const OfEnvironment&) = delete;
  ~OfEnvironment() {
    if (m_before) {
      setenv("TZ", m_before->c_str(), 1);
    } else {
      unsetenv("TZ");
    }
  }

 private:
  std::optional<std::string> m_before;
};

TEST(other_implementation, knows_20000_random_times_and_those_around_changes_alike) {
  const std::string sZones =
      "Europe/Madrid Europe/Dublin America/New_York America/Nuuk America/Santiago "
      "Australia/Lord_Howe Pacific/Auckland Pacific/Apia Africa/Casablanca Africa/Monrovia "
      "Antarctica/Troll Asia/Gaza Asia/Jerusalem Asia/Kolkata America/Sao_Paulo Etc/UTC";
  const auto known = AskTheOther(700, sZones);
  ASSERT_GE(known.size(), 20'000U);
  std::istringstream names(sZones);
  for (std::string sZone; names >> sZone;) {
    EXPECT_EQ(Differences(TimeZone(sZone), known, sZone), 0) << sZone;
    const OfEnvironment machine(sZone);
    EXPECT_EQ(Differences(TimeZone("Local"), known, sZone), 0) << sZone << " as Local";
  }
}

}  // namespace
}  // namespace orvane::zones

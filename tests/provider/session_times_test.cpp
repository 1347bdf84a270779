// Times through a session: how they are read and how they come out.
#include "tests/provider/session_fixture.h"

namespace orvane::provider {
namespace {

class session_times : public SessionFixture {};

TEST_F(session_times, tells_the_zone_in_which_it_counts) {
  const char* const sBefore = std::getenv("TZ");
  const Text sKept = sBefore != nullptr ? sBefore : "";
  setenv("TZ", "Asia/Kolkata", 1);
  const auto opened = Open();
  // What the machine's zone becomes later is not that of this connection.
  setenv("TZ", "CET-1CEST", 1);
  const auto other = Open();
  if (sBefore != nullptr) {
    setenv("TZ", sKept.c_str(), 1);
  } else {
    unsetenv("TZ");
  }
  EXPECT_EQ(opened->PropertyValue("Time Zone"), Value("Local"));
  EXPECT_EQ(opened->PropertyValue("time zone in use"), Value("Asia/Kolkata"));
  // A rule instead of a name: the zone is that of the machine, which has a name.
  EXPECT_NE(other->PropertyValue("Time Zone in Use"), Value("CET-1CEST"));
  EXPECT_NE(other->PropertyValue("Time Zone in Use"), Value(""));
  opened->PropertyValue("Time Zone", "Europe/Berlin");
  EXPECT_EQ(opened->PropertyValue("Time Zone in Use"), Value("Europe/Berlin"));
  EXPECT_EQ(FailureOf([&] { opened->PropertyValue("Time Zone in Use", "UTC"); }),
            "3808: The property \"Time Zone in Use\" can be read, but not set; set \"Time Zone\".");
}

TEST_F(session_times, shows_numbers_as_numbers_where_others_are_times) {
  const auto opened = OpenPlant("Time Zone = UTC;");
  for (const bool bTimeAsDouble : {false, true}) {
    opened->PropertyValue("Time as Double", bTimeAsDouble);
    EXPECT_EQ(Select(*opened, "EXPLAIN QUERY PLAN SELECT Timestamp, Timestamp FROM Plant1..Data")
                  .find('-'),
              Text::npos);
    EXPECT_EQ(Select(*opened,
                     "SELECT x FROM (SELECT Timestamp AS x FROM Plant1..Data WHERE "
                     "Timestamp = '*' UNION ALL SELECT 5) ORDER BY x"),
              "5\n1715774400000000\n");
    EXPECT_EQ(Select(*opened,
                     "SELECT 5 UNION ALL SELECT Timestamp FROM Plant1..Data WHERE "
                     "Timestamp = '*'"),
              "5\n1715774400000000\n");
  }
}

TEST_F(session_times, refuses_texts_in_columns_of_times) {
  const auto opened = OpenPlant();
  EXPECT_EQ(Failing(*opened, "INSERT INTO Plant1..Data (Tag, Timestamp) VALUES ('T1', 'tomorrow')"),
            "3805: 'tomorrow' is no time (character 57 of the statement); at its character 2 + or "
            "- must follow.");
  EXPECT_EQ(
      Failing(*opened, "INSERT INTO Plant1..Data (Tag, Timestamp) VALUES ('T1', 'a' || 'b')"),
      "3805: 'ab' is compared with a time or stored as one, and is none: at its character 1 it "
      "must begin with *, t, y or a date such as 2024-05-31.");
}

}  // namespace
}  // namespace orvane::provider

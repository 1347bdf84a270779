// Times through a session: how they are read and how they come out.
#include "tests/provider/session_fixture.h"

namespace orvane::provider {
namespace {

class session_times : public SessionFixture {};

TEST_F(session_times, gives_times_as_times_also_where_the_engine_sees_numbers) {
  const auto opened = OpenPlant();
  const auto rs = Run(*opened,
                      "SELECT max(Timestamp) AS last, count(*) AS n FROM Plant1..Data GROUP BY Tag "
                      "HAVING last = '*'")
                      .recordset;
  EXPECT_EQ(Rows(*rs), "2024-05-15 12:00:00|24\n");
  EXPECT_EQ(rs->FieldAt(0).Type(), platform::DataType::DBTimeStamp);
  EXPECT_EQ(rs->FieldAt(0).Name(), "last");
  EXPECT_EQ(rs->FieldAt(1).Type(), platform::DataType::BigInt);
  EXPECT_EQ(rs->ValueAt(0, 0), Value(FixedNow()));
}

TEST_F(session_times, gives_times_as_days_where_the_option_says_so) {
  const auto opened = OpenPlant("Time as Double = True;Time Zone = UTC;");
  const Text sStatement =
      "SELECT Timestamp, min(Value) FROM Plant1..Data WHERE Timestamp >= 45427.5";
  auto rs = Run(*opened, sStatement).recordset;
  EXPECT_EQ(Rows(*rs), "45427.5|0.5\n");
  EXPECT_EQ(rs->FieldAt(0).Type(), platform::DataType::Double);
  opened->PropertyValue("Time Zone", "Asia/Tokyo");
  EXPECT_EQ(Select(*opened, "SELECT max(Timestamp) FROM Plant1..Data WHERE Timestamp <= 45427.875"),
            "45427.875\n");
  opened->PropertyValue("Time as Double", false);
  EXPECT_EQ(Select(*opened, "SELECT max(Timestamp) FROM Plant1..Data"), "2024-05-15 12:00:00\n");
}

TEST_F(session_times, reads_days_in_its_time_zone) {
  const auto opened = OpenPlant("Time Zone = UTC;");
  const Text sStatement = "SELECT count(*) FROM Plant1..Data WHERE Timestamp >= 't'";
  EXPECT_EQ(Select(*opened, sStatement), "13\n");
  opened->PropertyValue("Time Zone", "Asia/Tokyo");
  EXPECT_EQ(Select(*opened, sStatement), "22\n");
}

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
  opened->PropertyValue("Time as Double", false);
  EXPECT_EQ(Select(*opened,
                   "SELECT max(Timestamp) OVER (), lag(Timestamp) OVER w FROM Plant1..Data "
                   "WHERE Timestamp >= '*-1h' WINDOW w AS (ORDER BY Timestamp)"),
            "2024-05-15 12:00:00|\n2024-05-15 12:00:00|2024-05-15 11:00:00\n");
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

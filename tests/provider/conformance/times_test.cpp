// Times: how they are read and how they come out.
#include "tests/provider/conformance/conformance.h"

namespace orvane::provider::conformance {
namespace {

class times : public Conformance {};

ORVANE_ON_EVERY_ENGINE(times);

TEST_P(times, gives_times_as_times_also_where_the_engine_sees_numbers) {
  const auto opened = OpenPlant();
  const auto rs = Run(*opened,
                      "SELECT max(Timestamp) AS last, count(*) AS n FROM Plant1..Data GROUP BY Tag "
                      "HAVING max(Timestamp) = '*'")
                      .recordset;
  EXPECT_EQ(Rows(*rs), "2024-05-15 12:00:00|24\n");
  EXPECT_EQ(rs->FieldAt(0).Type(), platform::DataType::DBTimeStamp);
  EXPECT_EQ(rs->FieldAt(0).Name(), "last");
  EXPECT_EQ(rs->FieldAt(1).Type(), platform::DataType::BigInt);
  EXPECT_EQ(rs->ValueAt(0, 0), Value(FixedNow()));
}

TEST_P(times, gives_times_as_days_where_the_option_says_so) {
  const auto opened = OpenPlant("Time as Double = True;Time Zone = UTC;");
  const Text sStatement = "SELECT Timestamp, Value FROM Plant1..Data WHERE Timestamp >= 45427.5";
  auto rs = Run(*opened, sStatement).recordset;
  EXPECT_EQ(Rows(*rs), "45427.5|0.5\n");
  EXPECT_EQ(rs->FieldAt(0).Type(), platform::DataType::Double);
  opened->PropertyValue("Time Zone", "Asia/Tokyo");
  EXPECT_EQ(Select(*opened, "SELECT max(Timestamp) FROM Plant1..Data WHERE Timestamp <= 45427.875"),
            "45427.875\n");
  opened->PropertyValue("Time as Double", false);
  EXPECT_EQ(Select(*opened, "SELECT max(Timestamp) FROM Plant1..Data"), "2024-05-15 12:00:00\n");
}

TEST_P(times, reads_days_in_its_time_zone) {
  const auto opened = OpenPlant("Time Zone = UTC;");
  const Text sStatement = "SELECT count(*) FROM Plant1..Data WHERE Timestamp >= 't'";
  EXPECT_EQ(Select(*opened, sStatement), "13\n");
  opened->PropertyValue("Time Zone", "Asia/Tokyo");
  EXPECT_EQ(Select(*opened, sStatement), "22\n");
}

TEST_P(times, are_times_behind_windows_and_subqueries) {
  const auto opened = OpenPlant("Time Zone = UTC;");
  EXPECT_EQ(Select(*opened,
                   "SELECT max(Timestamp) OVER (), lag(Timestamp) OVER w FROM Plant1..Data "
                   "WHERE Timestamp >= '*-1h' WINDOW w AS (ORDER BY Timestamp)"),
            "2024-05-15 12:00:00|\n2024-05-15 12:00:00|2024-05-15 11:00:00\n");
  EXPECT_EQ(Select(*opened,
                   "WITH recent AS (SELECT Timestamp AS t FROM Plant1..Data WHERE Timestamp > "
                   "'*-2h') SELECT t FROM recent WHERE t < '*' ORDER BY t"),
            "2024-05-15 11:00:00\n");
}

TEST_P(times, have_a_type_of_four_words_as_well) {
  const auto opened = OpenPlant("Time Zone = UTC;");
  Run(*opened,
      "CREATE TABLE Plant1..Stamped (Id INTEGER PRIMARY KEY, At TIMESTAMP WITH TIME ZONE)");
  Run(*opened, "INSERT INTO Plant1..Stamped VALUES (1, '*'), (2, '*-1h')");
  EXPECT_EQ(Select(*opened, "SELECT Id, At FROM Plant1..Stamped WHERE At < '*'"),
            "2|2024-05-15 11:00:00\n");
}

TEST_P(times, are_read_from_texts_while_a_statement_runs) {
  const auto opened = OpenPlant("Time Zone = UTC;");
  Run(*opened, "INSERT INTO Plant1..Tags (Tag, Description) VALUES ('T1', '*-1h')");
  const Text sStatement =
      "SELECT Value FROM Plant1..Data WHERE Timestamp IN (SELECT Description FROM Plant1..Tags)";
  if (Differs(Difference::kNoStatementTimes)) {
    EXPECT_EQ(Failing(*opened, sStatement).substr(0, 4), "3805");
  } else {
    EXPECT_EQ(Select(*opened, sStatement), "1.5\n");
  }
}

TEST_P(times, that_are_none_are_told_with_their_place) {
  const auto opened = OpenPlant();
  EXPECT_EQ(Failing(*opened, "INSERT INTO Plant1..Data (Tag, Timestamp) VALUES ('T1', 'tomorrow')"),
            "3805: 'tomorrow' is no time (character 57 of the statement); at its character 2 + or "
            "- must follow.");
}

}  // namespace
}  // namespace orvane::provider::conformance

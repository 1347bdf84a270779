// Parameters in the dialect: what each value means where it meets a time, and in which order the
// engine gets them.
#include "provider/dialect/statement_parameters.h"

#include "tests/provider/dialect/translated.h"

namespace orvane::provider::dialect {
namespace {

using platform::Text;
using platform::Value;

platform::Timestamp Noon() {
  return std::chrono::sys_days(std::chrono::year{2024} / 5 / 15) + std::chrono::hours(12);
}

// The SQL with its parameters behind it, or the failure.
Text SqlWith(const Text& sStatement, const std::vector<Value>& values, bool bTimeAsDouble = false) {
  TwoPlants schema;
  try {
    const Deadline deadline({}, {});
    StatementWork work(deadline);
    auto tokens = ReadTokens(sStatement, work);
    GiveParameters(sStatement, tokens, values);
    const auto translation =
        Translate(sStatement, std::move(tokens), schema,
                  {zones::TimeZone("UTC"), Noon(), false, bTimeAsDouble}, work, values);
    Text sText = translation.sSql;
    for (const auto& parameter : translation.parameters) {
      sText += " | " + platform::ToText(parameter);
    }
    return sText;
  } catch (const platform::Failure& failed) {
    return std::to_string(failed.Number()) + ": " + failed.Description();
  }
}

const Text kWhere = "SELECT 1 FROM Plant1..Data WHERE ";
const Text kOut = "SELECT 1 FROM \"Plant1\".\"Data\" WHERE ";

TEST(statement_parameters, stand_among_those_of_time_literals_in_the_order_of_their_places) {
  EXPECT_EQ(SqlWith(kWhere + "Tag = ? AND Timestamp >= '*-1h' AND Value < ? AND Timestamp < 't' "
                             "AND ? = Status",
                    {"T1", 5, "ok"}),
            kOut +
                "Tag = ? AND Timestamp >= ? AND Value < ? AND Timestamp < ? AND ? = Status | T1 "
                "| 2024-05-15 11:00:00 | 5 | 2024-05-15 00:00:00 | ok");
}

TEST(statement_parameters, stand_in_every_kind_of_statement) {
  EXPECT_EQ(
      SqlWith("INSERT INTO Plant1..Data (Value, Timestamp, Tag) VALUES (?, '*', ?)", {1, "a"}),
      "INSERT INTO \"Plant1\".\"Data\" (Value, Timestamp, Tag) VALUES (?, ?, ?) | 1 | "
      "2024-05-15 12:00:00 | a");
  EXPECT_EQ(SqlWith("UPDATE Plant1..Data SET Value = ?, Timestamp = ? WHERE Timestamp IS ?",
                    {Value(), Noon(), Value()}),
            "UPDATE \"Plant1\".\"Data\" SET Value = ?, Timestamp = ? WHERE Timestamp IS ? |  | "
            "2024-05-15 12:00:00 | ");
  EXPECT_EQ(SqlWith("DELETE FROM Plant1..Data WHERE Tag IN (?, ?) LIMIT ?", {"a", "b", 1}),
            "DELETE FROM \"Plant1\".\"Data\" WHERE Tag IN (?, ?) LIMIT ? | a | b | 1");
  EXPECT_EQ(SqlWith("SELECT ? FROM Plant1..Data WHERE Timestamp BETWEEN ? AND ?", {1, "t", Noon()}),
            "SELECT ? AS \"?\" FROM \"Plant1\".\"Data\" WHERE Timestamp BETWEEN ? AND ? | 1 | "
            "2024-05-15 00:00:00 | 2024-05-15 12:00:00");
}

TEST(statement_parameters, a_text_or_a_date_that_meets_a_time_is_read_as_a_literal_is) {
  using std::chrono::hours;
  EXPECT_EQ(SqlWith(kWhere + "Timestamp = ?", {"*-1h"}),
            kOut + "Timestamp = ? | 2024-05-15 11:00:00");
  EXPECT_EQ(SqlWith(kWhere + "Timestamp = (+?)", {"t"}),
            kOut + "Timestamp = (+?) | 2024-05-15 00:00:00");
  EXPECT_EQ(SqlWith(kWhere + "Timestamp = ?", {platform::Date(std::chrono::year{2024} / 2 / 29)}),
            kOut + "Timestamp = ? | 2024-02-29 00:00:00");
  EXPECT_EQ(SqlWith(kWhere + "Timestamp = ?", {"noon"}),
            SqlWith(kWhere + "Timestamp = 'noon'", {}));
  EXPECT_EQ(SqlWith(kWhere + "Timestamp = ?", {platform::TimeOfDay(hours(12))}),
            SqlWith(kWhere + "Timestamp = '12:00:00'", {}));
  EXPECT_EQ(SqlWith("INSERT INTO Plant1..Data (Timestamp) VALUES (?)", {"*"}),
            "INSERT INTO \"Plant1\".\"Data\" (Timestamp) VALUES (?) | 2024-05-15 12:00:00");
}

TEST(statement_parameters, a_sentence_quotes_only_the_beginning_of_a_long_text) {
  const Text sFailure = SqlWith(kWhere + "Timestamp = ?", {Text(100000, 'x')});
  EXPECT_TRUE(sFailure.starts_with("3805: 'xxx")) << sFailure.substr(0, 100);
  EXPECT_LT(sFailure.size(), 300U);
}

TEST(statement_parameters, a_number_is_a_time_only_where_times_are_numbers) {
  for (const Value& vtNumber : {Value(45427.5), Value(45427), Value(std::int64_t{45427})}) {
    EXPECT_EQ(SqlWith(kWhere + "Timestamp > ?", {vtNumber}),
              "3805: A number stands where a time is meant (character 46 of the statement); write "
              "a time between single quotes, such as '*-1h'.");
  }
  EXPECT_EQ(SqlWith(kWhere + "Timestamp > ? AND Value = ?", {45427.5, 45427.5}, true),
            kOut + "Timestamp > ? AND Value = ? | 2024-05-15 12:00:00 | 45427.5");
  EXPECT_EQ(SqlWith(kWhere + "Timestamp > -?", {-45427.5}, true),
            kOut + "Timestamp > ? | 2024-05-15 12:00:00");
  const double dInfinite = std::numeric_limits<double>::infinity();
  EXPECT_TRUE(SqlWith(kWhere + "Timestamp > ?", {dInfinite}, true).starts_with("3805: "));
}

TEST(statement_parameters, what_can_be_no_time_is_refused_where_one_is_meant) {
  const Text sRefused =
      "3805: This is not understood as a time (character 46 of the statement); write a time "
      "between single quotes, such as '*-1h', or what datetime() gives.";
  EXPECT_EQ(SqlWith(kWhere + "Timestamp > ?", {platform::Bytes(3)}), sRefused);
  EXPECT_EQ(SqlWith(kWhere + "Timestamp > ?", {platform::Guid{}}), sRefused);
  EXPECT_EQ(SqlWith(kWhere + "Timestamp > ?", {platform::Decimal{"1.5"}}), sRefused);
}

TEST(statement_parameters, a_time_meets_times_only) {
  EXPECT_EQ(SqlWith(kWhere + "Timestamp > ?", {Noon()}),
            kOut + "Timestamp > ? | 2024-05-15 12:00:00");
  EXPECT_EQ(SqlWith("UPDATE Plant1..Data SET Value = ?", {Noon()}),
            "3805: A time is stored in a column of another type (character 33 of the statement); "
            "store what datetime() makes of it, or declare the column as TIMESTAMP.");
  EXPECT_EQ(SqlWith(kWhere + "? > '*-1h'", {Noon()}), kOut +
                                                          "? > ? | 2024-05-15 12:00:00 | "
                                                          "2024-05-15 11:00:00");
}

TEST(statement_parameters, there_must_be_one_value_for_each) {
  EXPECT_EQ(SqlWith(kWhere + "Tag = ? AND Value = ?", {"a"}),
            "5: The statement takes 2 parameters, but 1 were given; give one value for each.");
  EXPECT_EQ(SqlWith(kWhere + "Tag = '?' -- ?", {"a"}),
            "5: The statement takes 0 parameters, but 1 were given; give one value for each.");
  EXPECT_EQ(SqlWith(kWhere + "Tag = ?", {}),
            "3805: There is a parameter mark (character 40 of the statement); write the value "
            "itself into the statement.");
}

TEST(statement_parameters, are_no_names) {
  for (const Value& vt : {Value(), Value("Plant1"), Value(5), Value(Noon())}) {
    for (const char* const sStatement :
         {"SELECT 1 FROM ?..Data", "SELECT 1 FROM Plant1..?",
          "INSERT INTO Plant1..Data (?) VALUES (1)", "UPDATE Plant1..Data SET ? = 1",
          "SELECT 1 FROM Plant1..Data WHERE Tag NOT ?"}) {
      const Text sFailure = SqlWith(sStatement, {vt});
      EXPECT_TRUE(sFailure.starts_with("3805: ")) << sStatement << "\n" << sFailure;
    }
  }
}

TEST(statement_parameters, no_definition_keeps_one) {
  for (const char* const sStatement :
       {"CREATE TABLE Plant1..T (a INT DEFAULT (?))",
        "CREATE TABLE Plant1..T (a INT CHECK (a < ?))", "CREATE VIEW Plant1..V AS SELECT ? AS a",
        "CREATE TABLE Plant1..T AS SELECT ? AS a"}) {
    const Text sFailure = SqlWith(sStatement, {1});
    EXPECT_TRUE(sFailure.starts_with("3805: A parameter stands in a definition")) << sFailure;
  }
}

}  // namespace
}  // namespace orvane::provider::dialect
